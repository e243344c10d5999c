#include "session/ui/zembera_menu.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

#include "company/upgrade/rapor.h"
#include "session/ui/agac_paneli.h"
#include "session/ui/dugum_paneli.h"
#include "ui/fields.h"
#include "ui/kart.h"
#include "ui/tekrar.h"
#include "ui/theme.h"
#include "ui/uzun_is.h"
#include "ui/yer.h"

namespace session_ui {
namespace {

constexpr QSize usualWindow(1120, 720);

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
  ui::yerlestir(*this, *oturum_.platform, "Zembera_Menu",
                {ui::byLetters(usualWindow.width()), usualWindow.height()});

  // The panel's own: over it a card has these keys for itself.
  for (const auto& [tus, islem] : {std::pair{QKeySequence(Qt::Key_F5), &ZemberaMenu::yenile},
                                   {QKeySequence(Qt::CTRL | Qt::Key_F), &ZemberaMenu::suzgeceGit}})
    connect(new QShortcut(tus, anapanel_), &QShortcut::activated, this, islem);
  adlariYaz();

  if (oturum_.Giris_Hatali == 0) {
    Alan_Listesi_Doldur();
    agac_->setFocus();
  } else {
    agacPaneli_->setEnabled(false);
    kenarAc(true);
    dugumDegisti();
  }
}

// Server and, over its card, the company that is open.
void ZemberaMenu::adlariYaz() {
  const QString sunucu = oturum_.Giris_Hatali != 0 ? "bağlantı yok" : ui::text(oturum_.Server_Adi);
  const session::Dugum secili = agacPaneli_->secili();
  const bool firma = dugumEkrani_ && ekranAcik() && secili.kind == session::dugum::F && !oturum_.Yeni_Kayit;
  setWindowTitle((firma ? ui::text(secili.text) + " – " : QString()) + "Korvena Zembera" +
                 (sunucu.isEmpty() ? QString() : " – " + sunucu));
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
  listeyiOku(false);
}

// What was read before stays when the list cannot be read. Left behind it may be only where nothing but the
// list hangs on the connection.
void ZemberaMenu::listeyiOku(bool birakilir) {
  ayrinti_->birak();
  std::optional<std::vector<session::Dugum>> dugumler;
  const QString baslik = "Firma ve kullanıcı listesi okunuyor";
  if (birakilir) {
    const auto okunan = std::make_shared<std::optional<std::vector<session::Dugum>>>();
    const auto sonuc = ui::birakilabilirIs(
        this, oturum_, baslik, [okunan](session::Oturum& o) { *okunan = session::Alan_Listesi_Doldur(o); });
    if (sonuc == ui::IsSonucu::Reddedildi) return;
    if (sonuc == ui::IsSonucu::Bitti) dugumler = std::move(*okunan);
  } else if (ui::uzunIs(this, oturum_, {baslik}, [&] { dugumler = session::Alan_Listesi_Doldur(oturum_); }) ==
             ui::IsSonucu::Reddedildi) {
    return;
  }
  agacPaneli_->baglantiKoptu(!dugumler);
  if (dugumler) agacPaneli_->doldur(std::move(*dugumler));
}

void ZemberaMenu::yenile() {
  if (ekranAcik() || oturum_.Giris_Hatali != 0) return;
  listeyiOku(true);
}

void ZemberaMenu::suzgeceGit() {
  if (!ekranAcik() && oturum_.Giris_Hatali == 0) agacPaneli_->suzgeceGit();
}

void ZemberaMenu::Eklenen_Sec(const QString& ad) {
  if (agacPaneli_->sec(ad)) Durum_Yaz("Eklendi: " + ad);
}

// Which commands stand open on the current node; the popup and the panel beside the tree show the same.
void ZemberaMenu::dugumDegisti() {
  const session::Dugum secili = agacPaneli_->secili();
  const bool var = !secili.kind.empty();
  const session::MenuDurumu durum =
      var ? session::menuDurumu(secili.kind, oturum_.Supervisor) : session::MenuDurumu{};
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
  if (var)
    ayrinti_->goster(secili, agacPaneli_->altSayisi());
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
  const session::Dugum secili = agacPaneli_->secili();
  const auto komut = session::agacKomutu(olay, secili.kind, oturum_.Supervisor);
  if (!komut) return;
  constexpr const char* adlar[] = {"MNEkle", "MNDegistir", "MNSil"};  // in the order of session::Komut
  komutlar_.at(adlar[static_cast<std::size_t>(*komut)])->trigger();
}

bool ZemberaMenu::eventFilter(QObject* watched, QEvent* event) {
  if (watched == agac_ && event->type() == QEvent::KeyPress) {
    const auto* basilan = static_cast<QKeyEvent*>(event);
    const int tus = basilan->key();
    if (tus == Qt::Key_Menu || (tus == Qt::Key_F10 && basilan->modifiers() == Qt::ShiftModifier)) {
      if (agac_->currentItem()) popupGoster(agac_->visualItemRect(agac_->currentItem()).center());
      return true;
    }
    static const std::map<int, session::AgacOlayi> olaylar = {{Qt::Key_Return, session::AgacOlayi::Enter},
                                                              {Qt::Key_Enter, session::AgacOlayi::Enter},
                                                              {Qt::Key_Insert, session::AgacOlayi::Insert},
                                                              {Qt::Key_Delete, session::AgacOlayi::Delete}};
    if (const auto olay = olaylar.find(tus); olay != olaylar.end()) {
      agacOlayi(olay->second);
      return true;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

// The frame of the window system is known once the window stands on the screen.
void ZemberaMenu::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  QTimer::singleShot(0, this, [this] { ui::ekranaSigdir(*this); });
}

void ZemberaMenu::closeEvent(QCloseEvent* event) {
  ui::yeriSakla(*this, *oturum_.platform, "Zembera_Menu");
  QMainWindow::closeEvent(event);
}

void ZemberaMenu::komut(const QString& yazi,
                        const std::function<session::KomutSonucu(const session::Dugum&)>& islem) {
  if (ekranAcik()) return;
  const session::Dugum secili = agacPaneli_->secili();
  session::KomutSonucu sonuc;
  ayrinti_->birak();
  ui::uzunIs(this, oturum_, {yazi}, [&] { sonuc = islem(secili); });
  sonucuUygula(sonuc);
}

void ZemberaMenu::sonucuUygula(const session::KomutSonucu& sonuc) {
  if (!sonuc.durum.empty()) Durum_Yaz(ui::text(sonuc.durum));
  if (sonuc.listeyiYenile) Alan_Listesi_Doldur();
  if (sonuc.ekran == session::Ekran::Yok) return;
  const session::EkranBilgisi& ekran = session::ekranBilgisi(sonuc.ekran);
  dugumEkrani_ = true;
  ekranAc(std::string(ekran.ad), ui::text(ekran.yazi));
}

void ZemberaMenu::menuButonu(const session::MenuButonu& buton) {
  if (ekranAcik()) return;
  if (!buton.durum.empty()) Durum_Yaz(ui::text(buton.durum));
  dugumEkrani_ = false;  // such a screen picks its company itself
  ekranAc(std::string(buton.ekran), ui::text(buton.yazi));
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
  adlariYaz();
  kart->ac();
  if (durum_->text().isEmpty()) Durum_Yaz(yazi);
}

bool ZemberaMenu::ekranAcik() const {
  return yigin_->currentWidget() != anapanel_;
}

void ZemberaMenu::kartKapandi(const ui::Kart* kart) {
  if (yigin_->currentWidget() != kart) return;
  yigin_->setCurrentWidget(anapanel_);
  kenarAc(true);
  Durum_Yaz({});
  adlariYaz();
  agac_->setFocus();
  ui::ekranDegisti();
}

// Screens are shown one at a time: an open card must not be covered by another screen.
void ZemberaMenu::kenarAc(bool acik) {
  const auto tablo = session::menuButonlari();
  for (std::size_t i = 0; i < menuButonlari_.size(); ++i)
    menuButonlari_[i]->setEnabled(acik && (oturum_.Giris_Hatali == 0 || tablo[i].eksikteAcik));
  command1_->setEnabled(acik);
  // The way out stays open to the mouse; the keys stay on the card.
  tus_->setFocusPolicy(acik ? Qt::TabFocus : Qt::NoFocus);
}

// First a trial on request: it tells what the run would do, and takes it back.
void ZemberaMenu::guncelle(bool deneme) {
  const session::Dugum firma = agacPaneli_->secili();
  if (ekranAcik() || firma.kind != session::dugum::F) return;
  const QString ad = ui::text(firma.text);
  if (!deneme && !oturum_.kutular->ask("\"" + firma.text +
                                       "\" veritabanının şeması güncellenecek. Önce yedek almanız önerilir.\n"
                                       "Güncelleme başlasın mı?"))
    return;
  ayrinti_->birak();
  std::string sonuc;
  const QString baslik = ad + (deneme ? ": güncelleme deneniyor" : ": şema güncelleniyor");
  ui::uzunIs(this, oturum_, {baslik},
             [&] { sonuc = company::upgrade::guncellemeRaporu(oturum_, firma.text, deneme); });
  if (!sonuc.empty()) oturum_.kutular->message(sonuc, session::Icon::Information);
  Alan_Listesi_Doldur();
}

}  // namespace session_ui
