#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QTreeWidget>

#include "company/ui/ekranlar.h"
#include "screen.h"
#include "session/firma_bilgisi.h"
#include "session/ui/zembera_menu.h"
#include "ui/fields.h"
#include "ui/kart.h"

namespace {

using namespace screen;

struct BosKart : ui::Kart {
  using Kart::Kart;
  void ac() override {}
};

// Every screen that a button or a command names, and the company card itself.
ui::EkranKaydi herEkran() {
  ui::EkranKaydi kayit;
  const auto bos = [&](std::string_view ad) {
    kayit.tanit(std::string(ad),
                [](session::Oturum&, ui::ConsolePort&) -> ui::Kart* { return new BosKart("firma", "Boş"); });
  };
  for (const session::MenuButonu& buton : session::menuButonlari()) bos(buton.ekran);
  bos(session::raporEvrakButonu.ekran);
  for (int i = 1; i <= static_cast<int>(session::Ekran::MNRenkTanim); ++i)
    bos(session::ekranBilgisi(static_cast<session::Ekran>(i)).ad);
  company_ui::ekranlariTanit(kayit);
  return kayit;
}

class KonsolEkrani : public testing::Test, protected support::FakeSurroundings {
 protected:
  void SetUp() override {
    oturum.Supervisor = true;
    oturum.Kullanici_Adi = "KORVENA";
    server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"},
                {{4, "MAGAZA   ", "00001"}, {5, "ŞUBE", "00002"}});
    server.rows("FROM sysuslng", {"sysus_ID", "sysus_nm", "sysus"}, {{1, "KORVENA", ""}, {7, "İNCİ", ""}});
  }
  // The node of that text becomes current.
  static QTreeWidgetItem* select(QTreeWidget& tree, const char* text) {
    const auto found = tree.findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    EXPECT_EQ(found.size(), 1) << text;
    if (found.isEmpty()) return nullptr;
    tree.setFocus();
    tree.setCurrentItem(found.front());
    return found.front();
  }
  // What the panel tells of the current node.
  static std::string values(QWidget& console) {
    std::string all;
    for (QLineEdit* edit : console.findChildren<QLineEdit*>())
      if (edit->property("rol") == "deger" && edit->isVisible()) all += edit->text().toStdString() + "\n";
    return all;
  }
  static QString status(QWidget& console) { return find<QLabel>(console, "DurumBbg_2")->text(); }
  bool ran(const std::string& part) const {
    for (const std::string& statement : server.statements)
      if (statement.find(part) != std::string::npos) return true;
    return false;
  }
};

TEST_F(KonsolEkrani, TreeShowsCompaniesAndUsersWithTheFirstNodeCurrent) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  auto* tree = find<QTreeWidget>(konsol, "AlanTreeList");
  ASSERT_EQ(tree->topLevelItemCount(), 2);
  EXPECT_EQ(tree->currentItem(), tree->topLevelItem(0));
  EXPECT_EQ(tree->topLevelItem(0)->text(0), "Firma Tanımları");
  EXPECT_EQ(tree->topLevelItem(0)->child(1)->text(0), "ŞUBE");
  EXPECT_EQ(tree->topLevelItem(1)->child(1)->text(0), "İNCİ");
}

TEST_F(KonsolEkrani, RightClickMakesCurrentAndEnablesByKindAndRight) {
  const struct {
    bool supervisor;
    const char* node;
    std::vector<const char*> on;
  } cases[] = {
      {true, "MAGAZA", {"MNEkle", "MNDegistir", "MNIncele", "MNSil", "MNTanimlar"}},
      {false, "MAGAZA", {"MNIncele"}},
      {true, "İNCİ", {"MNEkle", "MNDegistir", "MNIncele", "MNSil", "MNYetki", "MNYetkiKasiyer"}},
      {false, "İNCİ", {"MNIncele", "MNYetkiKasiyer"}},
      {true, "Firma Tanımları", {"MNEkle"}},
      {false, "Kullanıcı Tanımları", {}},
  };
  for (const auto& c : cases) {
    oturum.Supervisor = c.supervisor;
    session_ui::ZemberaMenu konsol(oturum, herEkran());
    screen::show(konsol);
    auto* tree = find<QTreeWidget>(konsol, "AlanTreeList");
    const auto found = tree->findItems(c.node, Qt::MatchExactly | Qt::MatchRecursive);
    tree->setCurrentItem(found.front()->parent() ? found.front()->parent() : found.front()->child(0));
    const QPoint place = tree->visualItemRect(found.front()).center();
    emit tree->customContextMenuRequested(place);
    EXPECT_EQ(tree->currentItem(), found.front());
    auto* popup = find<QMenu>(konsol, "Menu");
    EXPECT_TRUE(popup->isVisible());
    for (const char* name : {"MNEkle", "MNDegistir", "MNIncele", "MNSil", "MNYetki", "MNYetkiKasiyer"}) {
      const bool wanted = std::find_if(c.on.begin(), c.on.end(), [&](const char* each) {
                            return std::string(each) == name;
                          }) != c.on.end();
      EXPECT_EQ(konsol.findChild<QAction*>(name)->isEnabled(), wanted) << c.node << " " << name;
    }
    const bool definitions = !c.on.empty() && std::string(c.on.back()) == "MNTanimlar";
    EXPECT_EQ(find<QMenu>(konsol, "MNTanimlar")->menuAction()->isEnabled(), definitions) << c.node;
    popup->close();
  }
}

TEST_F(KonsolEkrani, KeysOpenTheCardForTheSupervisorOnly) {
  const struct {
    bool supervisor;
    const char* node;
    Qt::Key key;
    bool opens, newRow;
  } cases[] = {{true, "MAGAZA", Qt::Key_Return, true, false},
               {true, "MAGAZA", Qt::Key_Insert, true, true},
               {true, "Firma Tanımları", Qt::Key_Insert, true, true},
               {true, "Firma Tanımları", Qt::Key_Return, false, false},
               {false, "MAGAZA", Qt::Key_Return, false, false},
               {false, "MAGAZA", Qt::Key_Insert, false, false}};
  for (const auto& c : cases) {
    oturum.Supervisor = c.supervisor;
    session_ui::ZemberaMenu konsol(oturum, herEkran());
    screen::show(konsol);
    select(*find<QTreeWidget>(konsol, "AlanTreeList"), c.node);
    key(c.key);
    EXPECT_EQ(find<QWidget>(konsol, "anapanel")->isHidden(), c.opens) << c.node << c.key;
    if (!c.opens) continue;
    EXPECT_EQ(oturum.Yeni_Kayit, c.newRow);
    EXPECT_EQ(status(konsol), c.newRow ? "Yeni Firma Oluşturuluyor" : status(konsol));
    key(Qt::Key_Escape);
    EXPECT_TRUE(find<QWidget>(konsol, "anapanel")->isVisible());
    EXPECT_EQ(focusName(), "AlanTreeList");
  }
}

TEST_F(KonsolEkrani, DeleteAsksThenDropsAndRefills) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  auto* tree = find<QTreeWidget>(konsol, "AlanTreeList");
  select(*tree, "ŞUBE");
  key(Qt::Key_Delete);  // answered No
  EXPECT_FALSE(ran("DROP DATABASE"));
  boxes.answers = {true};
  server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"}, {{4, "MAGAZA", "00001"}});
  key(Qt::Key_Delete);
  EXPECT_TRUE(ran("DROP DATABASE ŞUBE"));
  EXPECT_TRUE(ran("DELETE FROM sysfrmlng WHERE sysfrm_ID='5'"));
  EXPECT_EQ(tree->topLevelItem(0)->childCount(), 1);
}

TEST_F(KonsolEkrani, DeleteOnABranchDoesNothing) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "Firma Tanımları");
  boxes.answers = {true};
  key(Qt::Key_Delete);
  EXPECT_TRUE(boxes.shown.empty());
  EXPECT_FALSE(ran("DROP DATABASE"));
}

TEST_F(KonsolEkrani, FailedLoginLeavesTheRepairScreensOnly) {
  oturum.Giris_Hatali = -1;
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  EXPECT_EQ(find<QTreeWidget>(konsol, "AlanTreeList")->topLevelItemCount(), 0);
  const auto buttons = konsol.findChildren<QToolButton*>("Menu_Buton");
  ASSERT_EQ(buttons.size(), 11);
  for (const QToolButton* button : buttons) {
    const int index = button->property(ui::indexProperty).toInt();
    EXPECT_EQ(button->isEnabled(), index >= 9) << index;
  }
  for (const Qt::Key each : {Qt::Key_Insert, Qt::Key_Delete})
    QTest::keyClick(find<QTreeWidget>(konsol, "AlanTreeList"), each);
  EXPECT_TRUE(find<QWidget>(konsol, "anapanel")->isVisible());
  EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(KonsolEkrani, ButtonsOpenTheirScreensAndThoseWithoutOneAreNotDrawn) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  auto buttons = konsol.findChildren<QToolButton*>("Menu_Buton");
  buttons.append(find<QToolButton>(konsol, "Command1"));
  for (QToolButton* button : buttons) {
    ASSERT_TRUE(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(find<QWidget>(konsol, "anapanel")->isVisible()) << button->text().toStdString();
    emit qobject_cast<ui::Kart*>(konsol.findChild<QStackedWidget*>()->currentWidget())->kapandi();
  }
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "MAGAZA");
  konsol.findChild<QAction*>("MNDoviz")->trigger();
  EXPECT_EQ(oturum.Secili_Firma, "MAGAZA");
  EXPECT_FALSE(find<QWidget>(konsol, "anapanel")->isVisible());
  // The card's own search has the key that goes to the filter of the hidden tree.
  QWidget* card = konsol.findChild<QStackedWidget*>()->currentWidget();
  QShortcut own(QKeySequence::Find, card);
  QSignalSpy searched(&own, &QShortcut::activated);
  card->setFocusPolicy(Qt::StrongFocus);
  card->setFocus();
  key(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(searched.count(), 1);

  session_ui::ZemberaMenu bos(oturum, ui::EkranKaydi());
  screen::show(bos);
  for (const QToolButton* button : bos.findChildren<QToolButton*>())
    EXPECT_EQ(button->isVisible(), button->objectName() == "Tus" || button->text() == "Sil")
        << button->text().toStdString();
  EXPECT_FALSE(find<QMenu>(bos, "MNTanimlar")->menuAction()->isVisible());
}

TEST_F(KonsolEkrani, AnOpenCardIsNotCoveredByAnotherScreen) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "MAGAZA");
  key(Qt::Key_Insert);
  for (const QToolButton* button : konsol.findChildren<QToolButton*>("Menu_Buton"))
    EXPECT_FALSE(button->isEnabled());
  key(Qt::Key_Escape);
  for (const QToolButton* button : konsol.findChildren<QToolButton*>("Menu_Buton"))
    EXPECT_TRUE(button->isEnabled());
}

// A notebook's screen at one and a half times the usual size has about this much room.
TEST_F(KonsolEkrani, NothingIsOutOfReachInASmallWindow) {
  oturum.Veri_Klasoru = "/" + std::string(120, 'x');
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  QTest::qWait(1);
  konsol.resize(910, 480);
  EXPECT_EQ(konsol.size(), QSize(910, 480));
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "MAGAZA");
  EXPECT_EQ(konsol.size(), QSize(910, 480)) << "a long path must not widen the window";
  auto* last = find<QToolButton>(konsol, "Command1");
  last->setFocus(Qt::TabFocusReason);
  EXPECT_FALSE(last->visibleRegion().isEmpty());

  find<QTreeWidget>(konsol, "AlanTreeList")->setFocus();
  key(Qt::Key_Insert);
  for (int i = 0; i < 13; ++i) {
    EXPECT_FALSE(QApplication::focusWidget()->visibleRegion().isEmpty()) << focusName();
    key(Qt::Key_Down);
  }
  EXPECT_EQ(focusName(), "StandartHesapPlani");
  EXPECT_FALSE(find<QPushButton>(konsol, "KaydetBtn")->visibleRegion().isEmpty());
}

TEST_F(KonsolEkrani, AListThatCannotBeReadKeepsTheOldOneUntilItIsReadAnew) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  auto* tree = find<QTreeWidget>(konsol, "AlanTreeList");
  auto* again = find<QPushButton>(konsol, "YenidenBaglanBtn");
  EXPECT_FALSE(again->isVisible());
  select(*tree, "ŞUBE");
  for (int i = 0; i < 2; ++i) server.failOpening(db::SqlError(db::ErrorKind::LinkBroken, 0, "sunucu gitti"));
  key(Qt::Key_F5);
  EXPECT_EQ(boxes.texts(), std::vector<std::string>{"sunucu gitti"});
  EXPECT_EQ(tree->topLevelItem(0)->childCount(), 2);
  EXPECT_EQ(tree->currentItem()->text(0), "ŞUBE");
  ASSERT_TRUE(again->isVisible());
  server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"},
              {{4, "MAGAZA", "00001"}, {5, "ŞUBE", "00002"}, {9, "KABUKTAN", "00003"}});
  QTest::mouseClick(again, Qt::LeftButton);
  EXPECT_EQ(tree->topLevelItem(0)->childCount(), 3);
  EXPECT_EQ(tree->currentItem()->text(0), "ŞUBE");
  EXPECT_FALSE(again->isVisible());
}

TEST_F(KonsolEkrani, TheFilterFindsByNameTitleAndCode) {
  server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"},
              {{4, "MAGAZA", "00001"}, {5, "SUBE", "00002"}, {6, "DEPO", "00042"}});
  server.rows("DBVRSYN FROM sysfrmlng",
              {"sysfrm_ID", "sysfrm_nm", "Mali_Yil_Baslangic", "Mali_Yil_Bitis", "DBVRSYN"},
              {{4, "Işık Mağazacılık", {}, {}, ""}, {5, "İnci Şubesi", {}, {}, ""}, {6, "Depo", {}, {}, ""}});
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  auto* tree = find<QTreeWidget>(konsol, "AlanTreeList");
  const auto visible = [&] {
    std::string names;
    for (int i = 0; i < tree->topLevelItem(0)->childCount(); ++i)
      if (!tree->topLevelItem(0)->child(i)->isHidden())
        names += tree->topLevelItem(0)->child(i)->text(0).toStdString() + " ";
    return names;
  };
  const std::pair<const char*, const char*> cases[] = {{"ışık", "MAGAZA "}, {"inci", "SUBE "},
                                                       {"42", "DEPO "},     {"0000", "MAGAZA SUBE "},
                                                       {"yok", ""},         {"", "MAGAZA SUBE DEPO "}};
  auto* filter = find<QLineEdit>(konsol, "Suzgec");
  for (const auto& [text, names] : cases) {
    tree->setFocus();
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(focusName(), "Suzgec");
    filter->setText(text);
    EXPECT_EQ(visible(), names) << text;
  }
  filter->setText("42");
  key(Qt::Key_Return);
  EXPECT_EQ(focusName(), "AlanTreeList");
  EXPECT_EQ(tree->currentItem()->text(0), "DEPO");
  filter->setFocus();
  key(Qt::Key_Escape);
  EXPECT_EQ(visible(), "MAGAZA SUBE DEPO ");
}

TEST_F(KonsolEkrani, UsersAreOneTabAwayAndColumnsSort) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  auto* tree = find<QTreeWidget>(konsol, "AlanTreeList");
  auto* tabs = find<QTabBar>(konsol, "Dallar");
  EXPECT_EQ(tabs->tabText(0) + tabs->tabText(1), "Firmalar (2)Kullanıcılar (2)");
  EXPECT_TRUE(tree->topLevelItem(1)->isHidden());
  tabs->setCurrentIndex(1);
  EXPECT_TRUE(tree->topLevelItem(0)->isHidden());
  EXPECT_EQ(tree->currentItem(), tree->topLevelItem(1));
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                    tree->viewport()->rect().bottomLeft() + QPoint(40, -4));
  EXPECT_TRUE(tree->currentItem()->isSelected()) << "a click beside the rows";
  select(*tree, "MAGAZA");
  EXPECT_EQ(tabs->currentIndex(), 0);
  tree->sortByColumn(0, Qt::DescendingOrder);
  EXPECT_EQ(tree->topLevelItem(0)->text(0), "Firma Tanımları");
  EXPECT_EQ(tree->topLevelItem(0)->child(0)->text(0), "ŞUBE");
  tree->sortByColumn(0, Qt::AscendingOrder);
  EXPECT_EQ(tree->topLevelItem(0)->child(0)->text(0), "MAGAZA");
}

TEST_F(KonsolEkrani, TheNeighbourFollowsADeletionAndTheNewOneACreation) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  auto* tree = find<QTreeWidget>(konsol, "AlanTreeList");
  select(*tree, "MAGAZA");
  boxes.answers = {true};
  server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"}, {{5, "ŞUBE", "00002"}});
  key(Qt::Key_Delete);
  EXPECT_EQ(tree->currentItem()->text(0), "ŞUBE");
  server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"},
              {{5, "ŞUBE", "00002"}, {6, "YENI", "3"}});
  konsol.Alan_Listesi_Doldur();
  EXPECT_EQ(tree->currentItem()->text(0), "ŞUBE");
  konsol.Eklenen_Sec("YENI");
  EXPECT_EQ(tree->currentItem()->text(0), "YENI");
  EXPECT_EQ(status(konsol), "Eklendi: YENI");
}

TEST_F(KonsolEkrani, TheKeyboardOpensTheMenu) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "MAGAZA");
  key(Qt::Key_F10, Qt::ShiftModifier);
  auto* popup = find<QMenu>(konsol, "Menu");
  EXPECT_TRUE(popup->isVisible());
  popup->close();
}

TEST_F(KonsolEkrani, TheKeysStayOnAnOpenCard) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "MAGAZA");
  key(Qt::Key_Return);
  const QWidget* kart = konsol.findChild<QStackedWidget*>()->currentWidget();
  for (int i = 0; i < 40; ++i) {
    key(Qt::Key_Tab);
    ASSERT_TRUE(kart->isAncestorOf(QApplication::focusWidget())) << i << focusName();
  }
  EXPECT_EQ(konsol.windowTitle(), "MAGAZA – Korvena Zembera – SUNUCU");
  EXPECT_EQ(status(konsol), "Firma Tanımı Değiştiriliyor");
  konsol.setFocus();  // wherever the focus is
  QTest::keyClick(&konsol, Qt::Key_Escape);
  EXPECT_TRUE(find<QWidget>(konsol, "anapanel")->isVisible());
  EXPECT_EQ(konsol.windowTitle(), "Korvena Zembera – SUNUCU");
  konsol.findChildren<QToolButton*>("Menu_Buton").front()->click();
  EXPECT_FALSE(find<QWidget>(konsol, "anapanel")->isVisible());
  EXPECT_EQ(konsol.windowTitle(), "Korvena Zembera – SUNUCU") << "it picks its company itself";
}

TEST_F(KonsolEkrani, TheReducedConsoleLeadsBackToTheLogin) {
  oturum.Giris_Hatali = -1;
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  QSignalSpy geri(&konsol, &session_ui::ZemberaMenu::girisAc),
      ayar(&konsol, &session_ui::ZemberaMenu::baglantiAyari);
  screen::show(konsol);
  QTest::mouseClick(find<QPushButton>(konsol, "GiriseDonBtn"), Qt::LeftButton);
  QTest::mouseClick(find<QPushButton>(konsol, "BaglantiAyariBtn"), Qt::LeftButton);
  EXPECT_EQ(geri.count() + ayar.count(), 2);
}

TEST_F(KonsolEkrani, ThePanelTellsTheCompanyAndItsBackup) {
  struct Yedek : session::YedekBilgisi {
    std::optional<db::DateTime> sonYedek(const std::string& sunucu, const std::string& ad) override {
      return sunucu + ad == "SUNUCUMAGAZA" ? std::optional(db::DateTime{2012, 3, 1, 18, 5}) : std::nullopt;
    }
  } yedek;
  oturum.yedekler = &yedek;
  server.rows("DBVRSYN FROM sysfrmlng",
              {"sysfrm_ID", "sysfrm_nm", "Mali_Yil_Baslangic", "Mali_Yil_Bitis", "DBVRSYN"},
              {{4, "Mağaza A.Ş.", db::DateTime{2012, 1, 1}, db::DateTime{2012, 12, 31}, "2011.001"}});
  server.rows("COUNT(*) FROM sysusfrmlng WHERE sysfrm_ID=4", {"n"}, {{3}});
  server.rows("SELECT DB_ID", {"id"}, {{7}});
  server.rows("dbo.sysfiles", {"n"}, {{2560.0}});
  server.rows("SELECT name, type FROM MAGAZA.dbo.sysobjects", {"name", "type"}, {{"CARIKART", "U"}});
  server.rows(
      "FROM MAGAZA.dbo.syscolumns", {"table", "name", "type", "length", "isnullable", "colstat", "cdefault"},
      {{"CARIKART", "Cari_Kod", "char", 26, false, 0, 0}, {"CARIKART", "Unvan", "char", 5, true, 0, 0}});
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "MAGAZA");
  ASSERT_TRUE(QTest::qWaitFor([&] { return values(konsol).find("okunuyor") == std::string::npos; }, 3000));
  EXPECT_EQ(values(konsol),
            "Mağaza A.Ş.\n00001\n01/01/2012 – 31/12/2012\n20,0 MB\n"
            "2011.001, güncel: 2012.002\n3\n(yok)\n01/03/2012  "
            "18:05\nSUNUCU\n\n");
  EXPECT_TRUE(find<QPushButton>(konsol, "GuncelleBtn")->isVisible());
  EXPECT_EQ(find<QLabel>(konsol, "GerideLbl")->text(),
            "Veritabanının şeması geride: 193 tablo, 61 kolon, 106 görünüm eksik.");

  // The database was made after the backup of its name.
  server.rows("SELECT crdate", {"crdate"}, {{db::DateTime{2012, 3, 2}}});
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "ŞUBE");
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "MAGAZA");
  ASSERT_TRUE(QTest::qWaitFor([&] { return values(konsol).find("okunuyor") == std::string::npos; }, 3000));
  EXPECT_NE(values(konsol).find("\nkayıtlı yedek yok\n"), std::string::npos) << values(konsol);
}

TEST_F(KonsolEkrani, SupervisorIsGuarded) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  screen::show(konsol);
  select(*find<QTreeWidget>(konsol, "AlanTreeList"), "KORVENA");
  const std::pair<const char*, const char*> cases[] = {
      {"MNIncele", "Supervisor olan kullanıcıyı inceleyemezsiniz!"},
      {"MNYetki", "Supervisor olan kullanıcı için yetkilendirme yapamazsınız!"},
      {"MNSil", "Supervisor olan kullanıcıyı silemezsiniz!"}};
  for (const auto& [command, text] : cases) {
    konsol.findChild<QAction*>(command)->trigger();
    EXPECT_EQ(boxes.last(), text);
  }
}

TEST_F(KonsolEkrani, ExitByButtonAndMenu) {
  session_ui::ZemberaMenu konsol(oturum, herEkran());
  QSignalSpy cikis(&konsol, &session_ui::ZemberaMenu::cikis);
  screen::show(konsol);
  QTest::mouseClick(find<QToolButton>(konsol, "Tus"), Qt::LeftButton);
  konsol.findChild<QAction*>("ZMCikis")->trigger();
  EXPECT_EQ(cikis.count(), 2);
}

}  // namespace
