#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QToolButton>
#include <QTreeWidget>

#include "company/ui/ekranlar.h"
#include "screen.h"
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
    select(*tree, "KORVENA");
    const auto found = tree->findItems(c.node, Qt::MatchExactly | Qt::MatchRecursive);
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
  find<QTreeWidget>(konsol, "AlanTreeList")->setFocus();
  for (const Qt::Key each : {Qt::Key_Return, Qt::Key_Insert, Qt::Key_Delete}) key(each);
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
  konsol.resize(910, 480);
  screen::show(konsol);
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
