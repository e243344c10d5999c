// The console's widgets, built once.
#include <QAction>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
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

// The commands on a node; `ayri`: a line above it.
constexpr KomutSatiri komutSatirlari[] = {
    {"MNEkle", "Ekle", "ekle", "Yeni firma ya da kullanıcı (Insert)", session::MNEkle, false},
    {"MNDegistir", "Değiştir", "degistir", "Kartını açar (Enter ya da çift tıklama)", session::MNDegistir,
     false},
    {"MNIncele", "İncele", "incele", "Kartını değiştirmeden gösterir", session::MNIncele, false},
    {"MNSil", "Sil", "sil", "Önce sorar; geri alınamaz (Delete)", session::MNSil, false},
    {"MNYetki", "Kullanıcı Yetkileri", "yetki", "Bir firmada neleri yapabileceği", session::MNYetki, true},
    {"MNYetkiKasiyer", "Kasiyer Yetkileri", "kasiyer", "Satış noktasındaki yetkileri ve ayarları",
     session::MNYetkiKasiyer, false},
};

struct TanimSatiri {
  session::Ekran ekran;
  const char* resim;
};
constexpr TanimSatiri tanimSatirlari[] = {
    {session::Ekran::MNIsyeri, "isyeri"}, {session::Ekran::MNAmbar, "ambar"},
    {session::Ekran::MnSatici, "satici"}, {session::Ekran::MNDoviz, "doviz"},
    {session::Ekran::MNFiyat, "fiyat"},   {session::Ekran::MNRenkTanim, "renk"},
};

QToolButton* kenarDugmesi(const char* ad, const QString& yazi, const QString& resim) {
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

QToolButton* ZemberaMenu::kenarButonu(const char* ad, const session::MenuButonu& buton) {
  QToolButton* button = kenarDugmesi(ad, ui::text(buton.yazi), ui::text(buton.resim));
  button->setToolTip(ui::text(buton.ipucu));
  connect(button, &QToolButton::clicked, this, [this, &buton] { menuButonu(buton); });
  return button;
}

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

QAction* ZemberaMenu::komutEkle(const KomutSatiri& satir) {
  auto* action = new QAction(ui::captionIcon(satir.resim), satir.yazi, this);
  action->setObjectName(satir.ad);
  action->setToolTip(satir.ipucu);
  connect(action, &QAction::triggered, this, [this, &satir] {
    komut(satir.yazi, [&](const session::Dugum& d) { return satir.islem(oturum_, d); });
  });
  komutlar_[satir.ad] = action;
  return action;
}

void ZemberaMenu::popupKur() {
  popup_ = new QMenu(this);
  popup_->setObjectName("Menu");
  for (const KomutSatiri& satir : komutSatirlari) {
    if (satir.ayri) popup_->addSeparator();
    popup_->addAction(komutEkle(satir));
  }
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
  auto* buttons = new QWidget;
  auto* layout = new QVBoxLayout(buttons);
  layout->setContentsMargins(ui::gapSmall, ui::gap, ui::gapSmall, ui::gap);
  layout->setSpacing(2);
  const auto tablo = session::menuButonlari();
  for (std::size_t i = 0; i < tablo.size(); ++i) {
    QToolButton* button = kenarButonu("Menu_Buton", tablo[i]);
    button->setProperty(ui::indexProperty, static_cast<int>(i));
    menuButonlari_.push_back(button);
    layout->addWidget(button);
  }
  layout->addSpacing(ui::gap);
  command1_ = kenarButonu("Command1", session::raporEvrakButonu);
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

  tus_ = kenarDugmesi("Tus", "Programdan Çık", "cikis");
  connect(tus_, &QToolButton::clicked, this, &ZemberaMenu::cikis);
  auto* last = new QHBoxLayout;
  last->setContentsMargins(ui::gapSmall, ui::gapSmall, ui::gapSmall, ui::gap);
  last->addWidget(tus_);
  auto* all = new QVBoxLayout(side);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(0);
  all->addWidget(scroll, 1);
  all->addLayout(last);
  // A larger letter of the desktop's makes the captions wider.
  side->ensurePolished();
  side->setFixedWidth(
      std::max(sideWidth, buttons->sizeHint().width() + scroll->verticalScrollBar()->sizeHint().width()));
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
