// Keys in bursts, as fingers send them to a slow machine: what was pressed twice happens once, and what was
// pressed while a work ran does not happen at all.
#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <thread>

#include "company/ui/firma_tanim.h"
#include "screen.h"
#include "session/metin.h"
#include "session/ui/pencereler.h"
#include "ui/boxes.h"
#include "ui/tekrar.h"

namespace {

using namespace screen;

constexpr Qt::Key butunTuslar[] = {Qt::Key_Return, Qt::Key_Return, Qt::Key_F2,     Qt::Key_F2,
                                   Qt::Key_Delete, Qt::Key_Insert, Qt::Key_Escape, Qt::Key_Escape,
                                   Qt::Key_Space,  Qt::Key_Tab,    Qt::Key_F5,     Qt::Key_Return};

// To whatever has the focus at that moment.
void yolla(Qt::Key tus) {
  QWidget* hedef = QApplication::focusWidget();
  if (!hedef) hedef = QApplication::activeWindow();
  if (hedef) QTest::keyClick(hedef, tus);
}

class ArdArda : public testing::Test, protected support::FakeSurroundings {
 protected:
  void SetUp() override {
    QApplication::setDoubleClickInterval(400);
    QWidget baska;
    QTest::keyClick(&baska, Qt::Key_A);  // the last key of the test before is forgotten
    oturum.Supervisor = true;
    oturum.Tanim_DB_Versiyon = "2012.002";
    oturum.Veri_Klasoru = "/yok";
    server.rows("FROM sysDTYL", {"sysdtyl"}, {{"/veri"}});
    server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"},
                {{4, "MAGAZA", "00001"}, {5, "SUBE", "00002"}});
    for (const char* sorgu : {"FROM sysfrmlng WHERE sysfrm_ID=", "from sysfrmlng WHERE sysfrm_ID="})
      server.rows(
          sorgu,
          {"sysfrm_ID", "sysfrm_nm", "sysfrm_dbnm", "sysfrm_kd", "Mali_Yil_Baslangic", "Mali_Yil_Bitis",
           "Adres", "sehir", "Ulke", "Tel1", "Tel2", "Fax", "Vergi_Dairesi", "Vergi_Numarasi"},
          {{4,
            "Mağaza",
            "MAGAZA",
            "00001",
            db::DateTime{2012, 1, 1},
            db::DateTime{2012, 12, 31},
            {},
            {},
            {},
            {},
            {},
            {},
            {},
            {}}});
    server.rows("FROM sysuslng", {"sysus_ID", "sysus_nm", "sysus"},
                {{1, "KORVENA", *session::Sifrele("Gizli1")}});
  }
  void TearDown() override {
    QApplication::setDoubleClickInterval(0);
    QTest::qWait(1);
  }
  int kac(const std::string& part) const {
    return static_cast<int>(std::ranges::count_if(
        server.statements, [&](const std::string& s) { return s.find(part) != std::string::npos; }));
  }
  static QWidget* pencere(const char* ad) {
    for (QWidget* each : QApplication::topLevelWidgets())
      if (each->objectName() == ad && each->isVisible()) return each;
    return nullptr;
  }
};

TEST_F(ArdArda, TwoEntersAtTheLoginOpenOneConsole) {
  const session_ui::Pencereler pencereler(oturum, {});
  QWidget* giris = pencere("Giris_Frm");
  ASSERT_TRUE(QTest::qWaitForWindowActive(giris));
  type(find<QLineEdit>(*giris, "Sifre"), "Gizli1");
  auto* tamam = find<QPushButton>(*giris, "TamamBtn");
  yolla(Qt::Key_Return);
  yolla(Qt::Key_Return);
  tamam->click();
  QTest::qWait(50);
  yolla(Qt::Key_Return);
  EXPECT_EQ(pencere("Giris_Frm"), nullptr);
  EXPECT_EQ(std::ranges::count_if(QApplication::topLevelWidgets(),
                                  [](QWidget* w) { return w->objectName() == "Zembera_Menu"; }),
            1);
}

TEST_F(ArdArda, TwoEntersOnSaveDoNotOpenTheCardAgain) {
  session_ui::ZemberaMenu konsol(oturum);
  screen::show(konsol);
  auto* agac = find<QTreeWidget>(konsol, "AlanTreeList");
  agac->setFocus();
  agac->setCurrentItem(agac->topLevelItem(0)->child(0));
  yolla(Qt::Key_Return);
  ASSERT_FALSE(find<QWidget>(konsol, "anapanel")->isVisible());
  find<QPushButton>(konsol, "KaydetBtn")->setFocus();
  QTest::qWait(450);
  for (int i = 0; i < 5; ++i) yolla(Qt::Key_Return);
  EXPECT_TRUE(find<QWidget>(konsol, "anapanel")->isVisible());
  QTest::qWait(450);
  yolla(Qt::Key_Return);
  EXPECT_FALSE(find<QWidget>(konsol, "anapanel")->isVisible()) << "only haste is dropped";
}

TEST_F(ArdArda, WhatIsTypedDuringASaveActsOnNothing) {
  session_ui::ZemberaMenu konsol(oturum);
  QSignalSpy cikis(&konsol, &session_ui::ZemberaMenu::cikis);
  screen::show(konsol);
  auto* agac = find<QTreeWidget>(konsol, "AlanTreeList");
  agac->setCurrentItem(agac->topLevelItem(0)->child(0));
  agac->setFocus();
  yolla(Qt::Key_Return);
  server.beforeRun = [](std::string_view sql) {
    if (sql.find("sysfrm_ID= ") != std::string_view::npos)
      std::this_thread::sleep_for(std::chrono::milliseconds(700));
  };
  for (const int an : {60, 500})
    QTimer::singleShot(an, &konsol, [&] {
      for (const Qt::Key tus : butunTuslar) yolla(tus);
      for (QToolButton* dugme : konsol.findChildren<QToolButton*>()) QTest::mouseClick(dugme, Qt::LeftButton);
      for (QPushButton* dugme : konsol.findChildren<QPushButton*>()) QTest::mouseClick(dugme, Qt::LeftButton);
      konsol.close();
    });
  yolla(Qt::Key_F2);
  EXPECT_TRUE(find<QWidget>(konsol, "anapanel")->isVisible());
  EXPECT_TRUE(konsol.isVisible());
  EXPECT_EQ(cikis.count(), 0);
  EXPECT_EQ(kac("sysfrm_ID= 4"), 1);
  EXPECT_EQ(boxes.texts(), std::vector<std::string>{});
}

TEST_F(ArdArda, EveryScreenSurvivesBurstsOfEveryKey) {
  session_ui::ZemberaMenu konsol(oturum);
  screen::show(konsol);
  auto* agac = find<QTreeWidget>(konsol, "AlanTreeList");
  agac->setFocus();
  agac->setCurrentItem(agac->topLevelItem(0)->child(0));
  for (int tur = 0; tur < 3; ++tur)
    for (const Qt::Key tus : butunTuslar)
      for (int i = 0; i < 3; ++i) yolla(tus);
  for (int i = 0; i < 2; ++i) QTest::keyClick(&konsol, Qt::Key_Escape);
  EXPECT_TRUE(konsol.isVisible());
  EXPECT_EQ(kac("DROP DATABASE"), 0);
}

TEST_F(ArdArda, ScreensAskedTwiceOpenAndCloseOnce) {
  session_ui::ZemberaMenu konsol(oturum);
  screen::show(konsol);
  auto* agac = find<QTreeWidget>(konsol, "AlanTreeList");
  agac->setCurrentItem(agac->topLevelItem(0)->child(0));
  konsol.findChild<QAction*>("MNDegistir")->trigger();
  oturum.Secili_ID = 99;
  konsol.findChild<QAction*>("MNDegistir")->trigger();
  EXPECT_EQ(oturum.Secili_ID, 99) << "a command must not move the session under an open card";
  auto* kart = konsol.findChild<company_ui::FirmaTanim*>();
  emit kart->kapandi();
  konsol.Durum_Yaz("sonra");
  emit kart->kapandi();
  EXPECT_EQ(find<QLabel>(konsol, "DurumBbg_2")->text(), "sonra");
}

TEST_F(ArdArda, TheSecondEnterDoesNotAnswerTheBoxOfTheFirst) {
  QWidget pencere;
  screen::show(pencere);
  QTest::keyClick(&pencere, Qt::Key_Return);
  QTimer::singleShot(0, [] {
    QWidget* kutu = QApplication::activeModalWidget();
    ASSERT_NE(kutu, nullptr);
    QTest::keyClick(kutu, Qt::Key_Return);
    EXPECT_TRUE(kutu->isVisible());
    QTest::keyClick(kutu, Qt::Key_Escape);
  });
  ui::DesktopBoxes().message("Bir hata oldu.");
}

}  // namespace
