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

#include "session/ui/dugum_paneli.h"
#include "ui/fields.h"
#include "ui/kart.h"
#include "ui/tekrar.h"
#include "ui/theme.h"
#include "ui/uzun_is.h"

namespace session_ui {
namespace {

// The smallest fits a notebook's screen at one and a half times the usual size of letters.
constexpr QSize smallestWindow(910, 480), usualWindow(1120, 720);

enum DugumRolu { KindRole = Qt::UserRole, IdRole, BaglarRole };

// Image list of the tree by image index.
QString dugumResmi(std::string_view kind) {
  if (kind == session::dugum::FT) return "firmalar";
  if (kind == session::dugum::KT) return "kullanicilar";
  return session::resimSirasi(kind) == 1 ? "firma" : "kullanici";
}

// The screen that a command opens on a company and on a user.
struct KomutEkrani {
  const char* komut;
  session::Ekran firma, kullanici;
};
constexpr KomutEkrani komutEkranlari[] = {
    {"MNEkle", session::Ekran::Firma_Tanim, session::Ekran::Ekle_Frm},
    {"MNDegistir", session::Ekran::Firma_Tanim, session::Ekran::Ekle_Frm},
    {"MNIncele", session::Ekran::Firma_Tanim, session::Ekran::Ekle_Frm},
    {"MNYetki", session::Ekran::Yetki_Frm, session::Ekran::Yetki_Frm},
    {"MNYetkiKasiyer", session::Ekran::KasiyerYetkiFrm, session::Ekran::KasiyerYetkiFrm},
};

}  // namespace

ZemberaMenu::ZemberaMenu(session::Oturum& oturum, ui::EkranKaydi ekranlar)
    : oturum_(oturum), ekranlar_(std::move(ekranlar)) {
  setObjectName("Zembera_Menu");
  setWindowTitle("Korvena Zembera");
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
  ekranlariGoster();
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

void ZemberaMenu::ekranTanit(const std::string& ad, ui::EkranKaydi::Yapici yapici) {
  ekranlar_.tanit(ad, std::move(yapici));
  ekranlariGoster();
  dugumDegisti();
}

// What leads to a screen that does not exist is not drawn.
void ZemberaMenu::ekranlariGoster() {
  const auto tablo = session::menuButonlari();
  for (std::size_t i = 0; i < menuButonlari_.size(); ++i)
    menuButonlari_[i]->setVisible(ekranlar_.var(std::string(tablo[i].ekran)));
  command1_->setVisible(ekranlar_.var(std::string(session::raporEvrakButonu.ekran)));
  bool tanimVar = false;
  for (QAction* action : tanimlar_->actions()) {
    action->setVisible(ekranlar_.var(action->objectName().toStdString()));
    tanimVar = tanimVar || action->isVisible();
  }
  tanimlar_->menuAction()->setVisible(tanimVar);
}

void ZemberaMenu::Durum_Yaz(const QString& text) {
  durum_->setText(text);
}

void ZemberaMenu::Alan_Listesi_Doldur() {
  const session::Dugum eski = dugum(agac_->currentItem());
  std::vector<session::Dugum> dugumler;
  if (ui::uzunIs(this, oturum_, {"Liste okunuyor"},
                 [&] { dugumler = session::Alan_Listesi_Doldur(oturum_); }) == ui::IsSonucu::Reddedildi)
    return;
  const QSignalBlocker quiet(agac_);
  agac_->clear();
  QTreeWidgetItem* dal = nullptr;
  QTreeWidgetItem* secili = nullptr;
  for (const session::Dugum& d : dugumler) {
    const bool yaprak = d.kind == session::dugum::F || d.kind == session::dugum::K;
    auto* oge = yaprak && dal ? new QTreeWidgetItem(dal) : new QTreeWidgetItem(agac_);
    if (!yaprak) dal = oge;
    oge->setText(0, ui::text(d.text));
    oge->setText(1, ui::text(d.kod));
    oge->setIcon(0, ui::icon(dugumResmi(d.kind)));
    oge->setData(0, KindRole, ui::text(d.kind));
    oge->setData(0, IdRole, QVariant::fromValue<qlonglong>(d.id));
    oge->setData(0, BaglarRole, ui::text(d.baglar));
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
  sonuc.baglar = ui::utf8(oge->data(0, BaglarRole).toString());
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
  const bool kullanici = secili.kind == session::dugum::K || secili.kind == session::dugum::KT;
  for (const KomutEkrani& komut : komutEkranlari) {
    const auto& ekran = session::ekranBilgisi(kullanici ? komut.kullanici : komut.firma);
    komutlar_.at(komut.komut)->setVisible(ekranlar_.var(std::string(ekran.ad)));
  }
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
  constexpr const char* adlar[] = {"MNEkle", "MNDegistir", "MNSil"};  // in the order of session::Komut
  komutlar_.at(adlar[static_cast<std::size_t>(*komut)])->trigger();
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

void ZemberaMenu::komut(const QString& yazi,
                        const std::function<session::KomutSonucu(const session::Dugum&)>& islem) {
  if (ekranAcik()) return;
  const session::Dugum secili = dugum(agac_->currentItem());
  session::KomutSonucu sonuc;
  ui::uzunIs(this, oturum_, {yazi}, [&] { sonuc = islem(secili); });
  sonucuUygula(sonuc);
}

void ZemberaMenu::sonucuUygula(const session::KomutSonucu& sonuc) {
  if (!sonuc.durum.empty()) Durum_Yaz(ui::text(sonuc.durum));
  if (sonuc.listeyiYenile) Alan_Listesi_Doldur();
  if (sonuc.ekran == session::Ekran::Yok) return;
  const session::EkranBilgisi& ekran = session::ekranBilgisi(sonuc.ekran);
  ekranAc(std::string(ekran.ad), ui::text(ekran.yazi));
}

void ZemberaMenu::menuButonu(const session::MenuButonu& buton, const QString& yazi) {
  if (ekranAcik()) return;
  if (!buton.durum.empty()) Durum_Yaz(ui::text(buton.durum));
  ekranAc(std::string(buton.ekran), yazi);
}

void ZemberaMenu::ekranAc(const std::string& ad, const QString& yazi) {
  if (ekranAcik()) return;
  if (!ekranlar_.var(ad)) {
    Durum_Yaz(yazi + ": bu ekran programın bu sürümünde bulunmuyor.");
    return;
  }
  ui::Kart*& kart = kartlar_[ad];
  if (!kart) {
    kart = ekranlar_.yap(ad, oturum_, *this);
    yigin_->addWidget(kart);
    connect(kart, &ui::Kart::kapandi, this, [this, kapanan = kart] { kartKapandi(kapanan); });
  }
  kenarAc(false);
  yigin_->setCurrentWidget(kart);
  ui::ekranDegisti();
  kart->ac();
}

bool ZemberaMenu::ekranAcik() const {
  return yigin_->currentWidget() != anapanel_;
}

void ZemberaMenu::kartKapandi(const ui::Kart* kart) {
  if (yigin_->currentWidget() != kart) return;
  yigin_->setCurrentWidget(anapanel_);
  kenarAc(true);
  Durum_Yaz({});
  agac_->setFocus();
  ui::ekranDegisti();
}

// Screens are shown one at a time: an open card must not be covered by another screen.
void ZemberaMenu::kenarAc(bool acik) {
  const auto tablo = session::menuButonlari();
  for (std::size_t i = 0; i < menuButonlari_.size(); ++i)
    menuButonlari_[i]->setEnabled(acik && (oturum_.Giris_Hatali == 0 || tablo[i].eksikteAcik));
  command1_->setEnabled(acik);
}

}  // namespace session_ui
