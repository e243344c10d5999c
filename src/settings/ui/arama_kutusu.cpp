#include "settings/ui/arama_kutusu.h"

#include <QKeyEvent>

#include "session/metin.h"
#include "ui/izgara.h"
#include "ui/theme.h"

namespace settings_ui {

AramaKutusu::AramaKutusu(ui::Izgara& izgara) : izgara_(izgara) {
  setObjectName(izgara.objectName() + "_Arama");
  setPlaceholderText("Ara…");
  setClearButtonEnabled(true);
  setAccessibleName("Satır ara");
  setToolTip("Yazdıkça satıra gider; Enter sonraki satıra, aşağı ok tabloya geçer");
  connect(this, &QLineEdit::textEdited, this, [this](const QString& metin) {
    const QString buyuk = ui::text(session::Buyuk_Harf_Arama(ui::utf8(metin)));
    if (buyuk != metin) {
      const int yer = cursorPosition();
      setText(buyuk);
      setCursorPosition(yer);
    }
    ara(0);
  });
}

void AramaKutusu::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return ara(izgara_.satir() + 1);
    case Qt::Key_Down:
      return izgara_.setFocus();
    default:
      QLineEdit::keyPressEvent(event);
  }
}

void AramaKutusu::ara(int ilk) {
  const std::string aranan = session::Trim(ui::utf8(text()));
  const ui::IzgaraModeli& veri = izgara_.veri();
  if (aranan.empty() || veri.adet() == 0) return;
  for (const bool bastan : {true, false})
    for (int i = 0; i < veri.adet(); ++i) {
      const int satir = (ilk + i) % veri.adet();
      if (veri.gizli(satir)) continue;
      for (std::size_t k = 0; k < veri.kolonlar().size(); ++k) {
        const auto& kolon = veri.kolonlar()[k];
        if (kolon.gizli || kolon.tur == session::HucreTuru::Tik || kolon.tur == session::HucreTuru::Liste)
          continue;
        const auto yer = session::Buyuk_Harf_Arama(veri.hucre(satir, static_cast<int>(k))).find(aranan);
        if (bastan ? yer == 0 : yer != std::string::npos) return izgara_.git(satir, static_cast<int>(k));
      }
    }
}

}  // namespace settings_ui
