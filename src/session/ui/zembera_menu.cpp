#include "session/ui/zembera_menu.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeWidget>

#include "company/ui/firma_tanim.h"
#include "rights/ui/ekle_frm.h"
#include "session/ui/dugum_paneli.h"
#include "ui/fields.h"
#include "ui/kart.h"
#include "ui/theme.h"

namespace session_ui {
namespace {

// The smallest fits a notebook's screen at one and a half times the usual size of letters.
constexpr QSize smallestWindow(910, 480), usualWindow(1120, 720);

enum DugumRolu { KindRole = Qt::UserRole, IdRole, KodRole };

// Image list of the tree by image index.
QString dugumResmi(std::string_view kind) {
  if (kind == session::dugum::FT) return "firmalar";
  if (kind == session::dugum::KT) return "kullanicilar";
  return session::resimSirasi(kind) == 1 ? "firma" : "kullanici";
}

// Names of the screens behind the commands, in the order of session::Ekran.
constexpr const char* ekranAdlari[] = {
    "",        "Firma_Tanım", "Ekle_Frm", "Yetki_Frm", "KasiyerYetkiFrm", "MNIsyeri",
    "MNAmbar", "MnSatici",    "MNDoviz",  "MNFiyat",   "MNRenkTanim"};
constexpr const char* ekranYazilari[] = {"",
                                         "Firma Tanımı",
                                         "Kullanıcı Tanımı",
                                         "Kullanıcı Yetkileri",
                                         "Kasiyer Yetkileri",
                                         "İşyeri Tanımları",
                                         "Ambar Tanımları",
                                         "Satıcı Tanımları",
                                         "Döviz Tanımları",
                                         "Fiyat Tanımları",
                                         "Renk Beden Drop Tanımları"};

}  // namespace

ZemberaMenu::ZemberaMenu(session::Oturum& oturum) : oturum_(oturum) {
  setObjectName("Zembera_Menu");
  setWindowTitle("Korvena Zembera");
  ekranTanit("Firma_Tanım", [](session::Oturum& o, ui::ConsolePort& konsol) -> ui::Kart* {
    return new company_ui::FirmaTanim(o, konsol);
  });
  ekranTanit("Ekle_Frm", [](session::Oturum& o, ui::ConsolePort& konsol) -> ui::Kart* {
    return new rights_ui::EkleFrm(o, konsol);
  });
  popupKur();
  menuleriKur();
  yigin_ = new QStackedWidget;
  anapanel_ = anaPanel();
  yigin_->addWidget(anapanel_);
  auto* all = new QWidget;
  auto* layout = new QHBoxLayout(all);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(kenarCubugu());
  layout->addWidget(yigin_, 1);
  setCentralWidget(all);
  durumCubugu();
  yerlestir();

  if (oturum_.Giris_Hatali == 0) {
    Alan_Listesi_Doldur();
    agac_->setFocus();
  } else {
    kenarAc(true);
    dugumDegisti();
  }
}

// In the middle of the screen, and never larger than it.
void ZemberaMenu::yerlestir() {
  const QRect room = screen()->availableGeometry();
  setMinimumSize(smallestWindow.boundedTo(room.size()));
  resize(usualWindow.boundedTo(room.size()));
  move(room.center() - rect().center());
}

void ZemberaMenu::ekranTanit(const std::string& ad, EkranYapici yapici) {
  yapicilar_[ad] = std::move(yapici);
}

void ZemberaMenu::Durum_Yaz(const QString& text) {
  durum_->setText(text);
}

void ZemberaMenu::Alan_Listesi_Doldur() {
  const session::Dugum eski = dugum(agac_->currentItem());
  const QSignalBlocker quiet(agac_);
  agac_->clear();
  QTreeWidgetItem* dal = nullptr;
  QTreeWidgetItem* secili = nullptr;
  for (const session::Dugum& d : session::Alan_Listesi_Doldur(oturum_)) {
    const bool yaprak = d.kind == session::dugum::F || d.kind == session::dugum::K;
    auto* oge = yaprak && dal ? new QTreeWidgetItem(dal) : new QTreeWidgetItem(agac_);
    if (!yaprak) dal = oge;
    oge->setText(0, ui::text(d.text));
    oge->setText(1, ui::text(d.kod));
    oge->setIcon(0, ui::icon(dugumResmi(d.kind)));
    oge->setData(0, KindRole, ui::text(d.kind));
    oge->setData(0, IdRole, QVariant::fromValue<qlonglong>(d.id));
    if (!yaprak) oge->setFirstColumnSpanned(true);
    if (yaprak && d.kind == eski.kind && d.id == eski.id) secili = oge;
  }
  agac_->expandAll();
  agac_->setCurrentItem(secili ? secili : agac_->topLevelItem(0));
  dugumDegisti();
}

session::Dugum ZemberaMenu::dugum(const QTreeWidgetItem* oge) const {
  session::Dugum sonuc;
  if (!oge) return sonuc;
  sonuc.kind = ui::utf8(oge->data(0, KindRole).toString());
  sonuc.text = ui::utf8(oge->text(0));
  sonuc.id = oge->data(0, IdRole).toLongLong();
  sonuc.kod = ui::utf8(oge->text(1));
  return sonuc;
}

// Which commands stand open on the current node; the popup and the panel beside the tree show the same.
void ZemberaMenu::dugumDegisti() {
  const QTreeWidgetItem* oge = agac_->currentItem();
  const session::Dugum secili = dugum(oge);
  const session::MenuDurumu durum =
      oge ? session::menuDurumu(secili.kind, oturum_.Supervisor) : session::MenuDurumu{};
  const std::pair<const char*, bool> haller[] = {
      {"MNEkle", durum.ekle}, {"MNDegistir", durum.degistir}, {"MNIncele", durum.incele},
      {"MNSil", durum.sil},   {"MNYetki", durum.yetki},       {"MNYetkiKasiyer", durum.yetkiKasiyer},
  };
  for (const auto& [ad, acik] : haller) komutlar_.at(ad)->setEnabled(acik);
  tanimlar_->menuAction()->setEnabled(durum.tanimlar);
  if (oge)
    ayrinti_->goster(secili, oge->childCount());
  else
    ayrinti_->bos();
}

void ZemberaMenu::popupGoster(const QPoint& yer) {
  QTreeWidgetItem* oge = agac_->itemAt(yer);
  if (!oge) return;
  agac_->setCurrentItem(oge);
  dugumDegisti();
  popup_->popup(agac_->viewport()->mapToGlobal(yer));
}

void ZemberaMenu::agacOlayi(session::AgacOlayi olay) {
  const session::Dugum secili = dugum(agac_->currentItem());
  const auto komut = session::agacKomutu(olay, secili.kind, oturum_.Supervisor);
  if (!komut) return;
  switch (*komut) {
    case session::Komut::MNEkle:
      calistir(session::MNEkle(oturum_, secili));
      break;
    case session::Komut::MNDegistir:
      calistir(session::MNDegistir(oturum_, secili));
      break;
    case session::Komut::MNSil:
      calistir(session::MNSil(oturum_, secili));
      break;
  }
}

bool ZemberaMenu::eventFilter(QObject* watched, QEvent* event) {
  if (watched == agac_ && event->type() == QEvent::KeyPress) {
    switch (static_cast<QKeyEvent*>(event)->key()) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
        agacOlayi(session::AgacOlayi::Enter);
        return true;
      case Qt::Key_Insert:
        agacOlayi(session::AgacOlayi::Insert);
        return true;
      case Qt::Key_Delete:
        agacOlayi(session::AgacOlayi::Delete);
        return true;
      default:
        break;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

void ZemberaMenu::calistir(const session::KomutSonucu& sonuc) {
  if (!sonuc.durum.empty()) Durum_Yaz(ui::text(sonuc.durum));
  if (sonuc.listeyiYenile) Alan_Listesi_Doldur();
  if (sonuc.ekran == session::Ekran::Yok) return;
  const auto sira = static_cast<std::size_t>(sonuc.ekran);
  ekranAc(ekranAdlari[sira], ekranYazilari[sira]);
}

void ZemberaMenu::menuButonu(const session::MenuButonu& buton, const QString& yazi) {
  if (!buton.durum.empty()) Durum_Yaz(ui::text(buton.durum));
  ekranAc(std::string(buton.ekran), yazi);
}

void ZemberaMenu::ekranAc(const std::string& ad, const QString& yazi) {
  const auto yapici = yapicilar_.find(ad);
  if (yapici == yapicilar_.end()) {
    Durum_Yaz(yazi + ": bu ekran programın bu sürümünde bulunmuyor.");
    return;
  }
  ui::Kart*& kart = kartlar_[ad];
  if (!kart) {
    kart = yapici->second(oturum_, *this);
    yigin_->addWidget(kart);
    connect(kart, &ui::Kart::kapandi, this, &ZemberaMenu::kartKapandi);
  }
  kenarAc(false);
  yigin_->setCurrentWidget(kart);
  kart->ac();
}

void ZemberaMenu::kartKapandi() {
  yigin_->setCurrentWidget(anapanel_);
  kenarAc(true);
  Durum_Yaz({});
  agac_->setFocus();
}

// Screens are shown one at a time: an open card must not be covered by another screen.
void ZemberaMenu::kenarAc(bool acik) {
  const auto tablo = session::menuButonlari();
  for (std::size_t i = 0; i < menuButonlari_.size(); ++i)
    menuButonlari_[i]->setEnabled(acik && (oturum_.Giris_Hatali == 0 || tablo[i].eksikteAcik));
  command1_->setEnabled(acik);
}

}  // namespace session_ui
