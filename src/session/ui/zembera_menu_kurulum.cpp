// The console's widgets, built once.
#include <QAction>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "session/ui/agac_paneli.h"
#include "session/ui/dugum_paneli.h"
#include "session/ui/zembera_menu.h"
#include "ui/fields.h"
#include "ui/theme.h"

namespace session_ui {
namespace {

constexpr int sideWidth = 256, treeWidth = 430, smallestTree = 230, menuIcon = 24;

struct ButonGorunusu {
  const char* yazi;
  const char* resim;
};
// Captions and pictures of Menu_Buton(0) to (10).
constexpr ButonGorunusu butonGorunusleri[] = {
    {"Sabit Tanımlamalar", "sabit"},
    {"Numaratör Tanımlamaları", "numarator"},
    {"Yedekleme İşlemleri", "yedek"},
    {"Servis İşlemleri", "servis"},
    {"Tartı Barkod Tanımları", "terazi"},
    {"Firma Devri", "devir"},
    {"Taksitli Satış Parametreleri", "taksit"},
    {"El Terminali Tanımları", "terminal"},
    {"Offline Bağlantı Ayarları", "sube"},
    {"Server Parametre Tanımları", "sunucu"},
    {"Database Aktar", "aktar"},
};

// Entries of the menu bar; an entry without text is a separator. Only ZMCikis acts.
struct MenuSatiri {
  const char* ust;
  const char* ad;
  const char* yazi;
};
constexpr MenuSatiri menuSatirlari[] = {
    {"ZMDosya", "ZMFirmaT", "&Firma Tanımları"},
    {"ZMDosya", "ZMKullaniciT", "&Kullanıcı Tanımları"},
    {"ZMDosya", "ZMCizgi", ""},
    {"ZMDosya", "ZMCikis", "Çı&kış"},
    {"ZMTerminal", "ZMTerIslem", "&Terminal İşlemleri"},
    {"ZMServis", "ZMSerİslem", "&Servis İşlemleri"},
    {"ZMServis", "ZMYedek", "Yedekle"},
};
constexpr MenuSatiri menuler[] = {
    {"", "ZMDosya", "&Dosya"}, {"", "ZMTerminal", "Terminal"}, {"", "ZMServis", "Servis"}};

struct TanimSatiri {
  session::Ekran ekran;
  const char* resim;
};
constexpr TanimSatiri tanimSatirlari[] = {
    {session::Ekran::MNIsyeri, "isyeri"}, {session::Ekran::MNAmbar, "ambar"},
    {session::Ekran::MnSatici, "satici"}, {session::Ekran::MNDoviz, "doviz"},
    {session::Ekran::MNFiyat, "fiyat"},   {session::Ekran::MNRenkTanim, "renk"},
};

QToolButton* kenarButonu(const char* ad, const QString& yazi, const QString& resim) {
  auto* button = new QToolButton;
  button->setObjectName(ad);
  button->setProperty("rol", "menu");
  button->setText(yazi);
  button->setIcon(ui::captionIcon(resim));
  button->setIconSize(ui::captionIconSize(menuIcon));
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  button->setFocusPolicy(Qt::TabFocus);
  ui::pressByEnter(button);
  return button;
}

}  // namespace

void ZemberaMenu::menuleriKur() {
  std::map<QString, QMenu*> ustler;
  for (const MenuSatiri& satir : menuler) {
    QMenu* menu = menuBar()->addMenu(satir.yazi);
    menu->setObjectName(satir.ad);
    ustler[satir.ad] = menu;
  }
  for (const MenuSatiri& satir : menuSatirlari) {
    QMenu* menu = ustler.at(satir.ust);
    QAction* action = *satir.yazi ? menu->addAction(satir.yazi) : menu->addSeparator();
    action->setObjectName(satir.ad);
    action->setEnabled(false);
    if (action->objectName() != "ZMCikis") continue;
    action->setEnabled(true);
    action->setIcon(ui::icon("cikis"));
    connect(action, &QAction::triggered, this, &ZemberaMenu::cikis);
  }
}

QAction* ZemberaMenu::komutEkle(const char* ad, const QString& yazi, const QString& resim, Islem islem) {
  auto* action = new QAction(ui::captionIcon(resim), yazi, this);
  action->setObjectName(ad);
  connect(action, &QAction::triggered, this,
          [this, yazi, islem] { komut(yazi, [&](const session::Dugum& d) { return islem(oturum_, d); }); });
  komutlar_[ad] = action;
  return action;
}

void ZemberaMenu::popupKur() {
  popup_ = new QMenu(this);
  popup_->setObjectName("Menu");
  popup_->addAction(komutEkle("MNEkle", "Ekle", "ekle", session::MNEkle));
  popup_->addAction(komutEkle("MNDegistir", "Değiştir", "degistir", session::MNDegistir));
  popup_->addAction(komutEkle("MNIncele", "İncele", "incele", session::MNIncele));
  popup_->addAction(komutEkle("MNSil", "Sil", "sil", session::MNSil));
  popup_->addSeparator();
  popup_->addAction(komutEkle("MNYetki", "Kullanıcı Yetkileri", "yetki", session::MNYetki));
  popup_->addAction(komutEkle("MNYetkiKasiyer", "Kasiyer Yetkileri", "kasiyer", session::MNYetkiKasiyer));
  tanimlar_ = popup_->addMenu(ui::icon("tanimlar"), "Tanımlar");
  tanimlar_->setObjectName("MNTanimlar");
  for (const TanimSatiri& satir : tanimSatirlari) {
    const session::EkranBilgisi& ekran = session::ekranBilgisi(satir.ekran);
    QAction* action = tanimlar_->addAction(ui::icon(satir.resim), ui::text(ekran.yazi));
    action->setObjectName(ui::text(ekran.ad));
    connect(action, &QAction::triggered, this, [this, satir, action] {
      komut(action->text(),
            [&](const session::Dugum& d) { return session::MNTanim(oturum_, d, satir.ekran); });
    });
  }
  popup_->addSeparator();
  QAction* vazgec = popup_->addAction(ui::icon("vazgec"), "Vazgeç");
  vazgec->setObjectName("MNVazgec");
}

// On a low screen the buttons scroll; the way out stays in sight.
QWidget* ZemberaMenu::kenarCubugu() {
  auto* side = new QWidget;
  side->setProperty("rol", "kenar");
  side->setAttribute(Qt::WA_StyledBackground);
  side->setFixedWidth(sideWidth);
  auto* buttons = new QWidget;
  auto* layout = new QVBoxLayout(buttons);
  layout->setContentsMargins(ui::gapSmall, ui::gap, ui::gapSmall, ui::gap);
  layout->setSpacing(2);
  const auto tablo = session::menuButonlari();
  for (std::size_t i = 0; i < tablo.size(); ++i) {
    const ButonGorunusu& gorunus = butonGorunusleri[i];
    QToolButton* button = kenarButonu("Menu_Buton", gorunus.yazi, gorunus.resim);
    button->setProperty(ui::indexProperty, static_cast<int>(i));
    connect(button, &QToolButton::clicked, this,
            [this, i, gorunus] { menuButonu(session::menuButonlari()[i], gorunus.yazi); });
    menuButonlari_.push_back(button);
    layout->addWidget(button);
  }
  layout->addSpacing(ui::gap);
  command1_ = kenarButonu("Command1", "Rapor Evrak Tasarımları", "tasarim");
  connect(command1_, &QToolButton::clicked, this,
          [this] { menuButonu(session::raporEvrakButonu, command1_->text()); });
  layout->addWidget(command1_);
  layout->addStretch(1);
  auto* scroll = new QScrollArea;
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(buttons);
  connect(qApp, &QApplication::focusChanged, scroll, [scroll, buttons](QWidget*, QWidget* now) {
    if (now && buttons->isAncestorOf(now)) scroll->ensureWidgetVisible(now);
  });

  tus_ = kenarButonu("Tus", "Programdan Çık", "cikis");
  connect(tus_, &QToolButton::clicked, this, &ZemberaMenu::cikis);
  auto* last = new QHBoxLayout;
  last->setContentsMargins(ui::gapSmall, ui::gapSmall, ui::gapSmall, ui::gap);
  last->addWidget(tus_);
  auto* all = new QVBoxLayout(side);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(0);
  all->addWidget(scroll, 1);
  all->addLayout(last);
  return side;
}

QWidget* ZemberaMenu::anaPanel() {
  agacPaneli_ = new AgacPaneli;
  agac_ = agacPaneli_->agac();
  agac_->installEventFilter(this);
  connect(agacPaneli_, &AgacPaneli::seciliDegisti, this, &ZemberaMenu::dugumDegisti);
  connect(agacPaneli_, &AgacPaneli::yenidenBaglan, this, &ZemberaMenu::yenile);
  connect(agac_, &QTreeWidget::customContextMenuRequested, this, &ZemberaMenu::popupGoster);
  connect(agac_, &QTreeWidget::itemDoubleClicked, this, [this] { agacOlayi(session::AgacOlayi::CiftTik); });

  ayrinti_ = new DugumPaneli(
      oturum_, {komutlar_.at("MNEkle"), komutlar_.at("MNDegistir"), komutlar_.at("MNIncele"),
                komutlar_.at("MNSil"), komutlar_.at("MNYetki"), komutlar_.at("MNYetkiKasiyer")});
  auto* splitter = new QSplitter;
  splitter->setChildrenCollapsible(false);
  splitter->setHandleWidth(ui::gap);
  connect(ayrinti_, &DugumPaneli::guncelle, this, &ZemberaMenu::guncelle);
  connect(ayrinti_, &DugumPaneli::girisAc, this, &ZemberaMenu::girisAc);
  connect(ayrinti_, &DugumPaneli::baglantiAyari, this, &ZemberaMenu::baglantiAyari);
  agacPaneli_->setMinimumWidth(smallestTree);
  splitter->addWidget(agacPaneli_);
  // On a low screen the panel scrolls.
  auto* scroll = new QScrollArea;
  scroll->setWidgetResizable(true);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(ayrinti_);
  splitter->addWidget(scroll);
  splitter->setSizes({treeWidth, treeWidth + 100});
  splitter->setStretchFactor(1, 1);
  auto* panel = new QWidget;
  panel->setObjectName("anapanel");
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(ui::gap, ui::gap, ui::gap, ui::gap);
  layout->addWidget(splitter);
  return panel;
}

void ZemberaMenu::durumCubugu() {
  auto* bar = statusBar();
  bar->setObjectName("DurumBbg");
  bar->setSizeGripEnabled(false);
  auto* session = new QLabel;
  session->setObjectName("DurumBbg_1");
  session->setTextFormat(Qt::PlainText);
  session->setText(oturum_.Giris_Hatali == 0
                       ? ui::text(oturum_.Kullanici_Adi) + "  @  " + ui::text(oturum_.Server_Adi)
                       : QString("Bağlantı yok"));
  durum_ = new QLabel;
  durum_->setObjectName("DurumBbg_2");
  durum_->setTextFormat(Qt::PlainText);
  bar->addWidget(session);
  bar->addWidget(durum_, 1);
}

}  // namespace session_ui
