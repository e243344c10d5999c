// Where the console stands: inside the screen with its frame and status bar, and where it was left. Run at
// several scales and sizes (tests/CMakeLists.txt).
#include "ui/yer.h"

#include <QScreen>
#include <QStatusBar>
#include <QTemporaryDir>
#include <cstdlib>

#include "screen.h"
#include "session/ui/ilk_kurulum_penceresi.h"
#include "session/ui/pencereler.h"
#include "session/ui/zembera_menu.h"

namespace {

using namespace screen;

class PencereYeri : public testing::Test, protected support::FakeSurroundings {
 protected:
  static QRect oda() { return QGuiApplication::primaryScreen()->availableGeometry(); }
  static void gorun(QWidget& pencere) {
    screen::show(pencere);
    QTest::qWait(20);
  }
  // Frame, status bar and the buttons of an open card stand inside the screen.
  static void icerde(QMainWindow& pencere) {
    EXPECT_TRUE(oda().contains(pencere.frameGeometry()))
        << pencere.frameGeometry().bottom() << " of " << oda().bottom();
    const QWidget* bar = pencere.statusBar();
    EXPECT_TRUE(bar->isVisible());
    EXPECT_LE(bar->mapToGlobal(bar->rect().bottomLeft()).y(), oda().bottom());
    EXPECT_FALSE(bar->visibleRegion().isEmpty());
  }
  void sakli(const std::string& deger) {
    platform.registry["HKEY_CURRENT_USER\\Software\\Korvena\\Zembera\\Pencereler\\Zembera_Menu"] = deger;
  }
};

// What a window manager without opinions leaves where the program has put it.
TEST_F(PencereYeri, TheLoginAndTheFirstWindowStandInTheMiddle) {
  const auto ortada = [](const QWidget& pencere) {
    const QPoint uzak = pencere.frameGeometry().center() - oda().center();
    const bool sigar = pencere.frameGeometry().height() + 40 <= oda().height();
    EXPECT_LE(std::abs(uzak.x()), 8) << pencere.objectName().toStdString();
    EXPECT_LE(sigar ? std::abs(uzak.y()) : pencere.frameGeometry().top(), 40)
        << pencere.objectName().toStdString();
  };
  const QTemporaryDir folder;
  platform.folder = folder.path().toStdString();
  oturum.Server_Adi = "";
  session_ui::Pencereler pencereler(oturum, {});
  bool goruldu = false;
  whenModal<session_ui::IlkKurulumPenceresi>([&](session_ui::IlkKurulumPenceresi& ilk) {
    goruldu = true;
    ortada(ilk);
    ortada(*ilk.parentWidget());
    ilk.reject();
  });
  ASSERT_TRUE(QTest::qWaitFor([&] { return goruldu; }, 20000));
}

TEST_F(PencereYeri, TheFirstTimeItFitsWithFrameAndStatusBar) {
  session_ui::ZemberaMenu konsol(oturum);
  gorun(konsol);
  icerde(konsol);
  EXPECT_GE(konsol.width(), std::min(1100, oda().width() - 20)) << "as large as usual where there is room";
}

TEST_F(PencereYeri, WhatWasKeptIsBroughtBackIntoTheScreen) {
  const std::string en = std::to_string(oda().width()), boy = std::to_string(oda().height());
  for (const std::string& kayit :
       {std::string("5000,4000,900,640,0"), std::string("-700,-300,900,640,0"),
        "0,0," + en + "," + boy + ",0", std::string("0,0,9000,9000,0"), std::string("bozuk"),
        std::string("0,0,0,0,0"), std::string("10,10,900")}) {
    sakli(kayit);
    session_ui::ZemberaMenu konsol(oturum);
    gorun(konsol);
    icerde(konsol);
  }
}

TEST_F(PencereYeri, SizePlaceAndMaximisedAreRemembered) {
  const QSize boy(oda().width() - 60, oda().height() - 70);
  QPoint yer;
  {
    session_ui::ZemberaMenu konsol(oturum);
    gorun(konsol);
    konsol.resize(boy);
    konsol.move(oda().topLeft() + QPoint(30, 25));
    QTest::qWait(20);
    yer = konsol.pos();
    konsol.close();
  }
  {
    session_ui::ZemberaMenu konsol(oturum);
    gorun(konsol);
    EXPECT_EQ(konsol.size(), boy);
    EXPECT_EQ(konsol.pos(), yer);
    konsol.showMaximized();
    QTest::qWait(20);
    konsol.close();
  }
  session_ui::ZemberaMenu konsol(oturum);
  gorun(konsol);
  EXPECT_TRUE(konsol.isMaximized());
  konsol.showNormal();
  QTest::qWait(20);
  EXPECT_EQ(konsol.size(), boy) << "what it had before it was maximised";
}

}  // namespace
