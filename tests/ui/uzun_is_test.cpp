#include "ui/uzun_is.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

#include "screen.h"
#include "ui/is_paneli.h"

namespace {

using namespace screen;
using namespace std::chrono_literals;

struct Pencere : QWidget {
  Pencere() {
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(&alan);
    layout->addWidget(&dugme);
    connect(&dugme, &QPushButton::clicked, this, [this] { ++basildi; });
    resize(600, 400);
    screen::show(*this);
    dugme.setFocus();
  }
  ~Pencere() override {
    alan.setParent(nullptr);
    dugme.setParent(nullptr);
  }
  QLineEdit alan;
  QPushButton dugme{"Bas"};
  int basildi = 0;
};

class UzunIs : public testing::Test, protected support::FakeSurroundings {
 protected:
  // Works until the screen's side has done `while_` and the panel has come.
  ui::IsSonucu run(const std::function<void()>& while_, ui::Vazgec vazgec = ui::Vazgec::Yok) {
    std::atomic<bool> yeter{false};
    QTimer::singleShot(500, &pencere, [&] {
      while_();
      yeter = true;
    });
    return ui::uzunIs(&pencere, oturum, {"Deneme", vazgec}, [&] {
      while (!yeter && !oturum.ilerleme->cancelled()) std::this_thread::sleep_for(5ms);
    });
  }
  Pencere pencere;
};

TEST_F(UzunIs, EverythingTypedOrClickedMeanwhileIsDropped) {
  EXPECT_EQ(
      run([&] {
        for (QWidget* hedef : {static_cast<QWidget*>(&pencere.alan), static_cast<QWidget*>(&pencere.dugme),
                               static_cast<QWidget*>(&pencere)}) {
          QTest::keyClick(hedef, Qt::Key_Space);
          QTest::keyClick(hedef, Qt::Key_Return);
          QTest::keyClicks(hedef, "abc");
          QTest::mouseClick(hedef, Qt::LeftButton);
        }
        EXPECT_FALSE(pencere.close());
        EXPECT_FALSE(pencere.dugme.isEnabled());
        EXPECT_TRUE(find<QWidget>(pencere, "IsPaneli")->isVisible());
      }),
      ui::IsSonucu::Bitti);
  QTest::qWait(20);
  EXPECT_EQ(pencere.basildi, 0);
  EXPECT_EQ(pencere.alan.text(), "");
  EXPECT_TRUE(pencere.isVisible());
  EXPECT_EQ(pencere.findChild<QWidget*>("IsPaneli"), nullptr);
  EXPECT_TRUE(pencere.dugme.isEnabled());
  EXPECT_EQ(QApplication::focusWidget(), &pencere.dugme);
  QTest::mouseClick(&pencere.dugme, Qt::LeftButton);
  EXPECT_EQ(pencere.basildi, 1);
}

TEST_F(UzunIs, ASecondStartIsRefused) {
  bool ikinci = false;
  run([&] {
    EXPECT_TRUE(ui::isSuruyor());
    EXPECT_EQ(ui::uzunIs(&pencere, oturum, {"İkinci"}, [&] { ikinci = true; }), ui::IsSonucu::Reddedildi);
  });
  EXPECT_FALSE(ikinci);
  EXPECT_FALSE(ui::isSuruyor());
}

TEST_F(UzunIs, VazgecByButtonAndEscapeReachesTheWork) {
  EXPECT_EQ(run([] {}, ui::Vazgec::Var), ui::IsSonucu::Bitti);
  EXPECT_EQ(run([&] { QTest::mouseClick(find<QPushButton>(pencere, "IsVazgecBtn"), Qt::LeftButton); },
                ui::Vazgec::Var),
            ui::IsSonucu::Vazgecildi);
  const auto escape = [&] { QTest::keyClick(find<QPushButton>(pencere, "IsVazgecBtn"), Qt::Key_Escape); };
  EXPECT_EQ(run(escape, ui::Vazgec::Var), ui::IsSonucu::Vazgecildi);
  EXPECT_EQ(run(escape, ui::Vazgec::Yok), ui::IsSonucu::Bitti);
}

TEST_F(UzunIs, BoxesAndProgressOfTheWorkComeToTheScreen) {
  const auto ekran = std::this_thread::get_id();
  std::thread::id kutu;
  bool panelAcik = false;
  boxes.onMessage = [&](const std::string&) {
    kutu = std::this_thread::get_id();
    QTest::qWait(400);
    panelAcik = panelAcik || find<QWidget>(pencere, "IsPaneli")->isVisible();
  };
  boxes.answers = {true, false};
  std::vector<bool> yanitlar;
  QString metin;
  QTimer::singleShot(1000, &pencere, [&] { metin = find<QLabel>(pencere, "MesajLbl")->text(); });
  ui::uzunIs(&pencere, oturum, {"Deneme"}, [&] {
    yanitlar = {oturum.kutular->ask("Bir?"), oturum.kutular->ask("İki?")};
    oturum.kutular->message("Üç", session::Icon::Stop, "Başlık");
    oturum.ilerleme->text("STOKKART");
    std::this_thread::sleep_for(700ms);
  });
  EXPECT_EQ(yanitlar, (std::vector<bool>{true, false}));
  EXPECT_EQ(boxes.texts(), (std::vector<std::string>{"Bir?", "İki?", "Üç"}));
  EXPECT_EQ(boxes.shown[2].icon, session::Icon::Stop);
  EXPECT_EQ(boxes.shown[2].title, "Başlık");
  EXPECT_EQ(kutu, ekran);
  EXPECT_FALSE(panelAcik) << "a box at once stands over the screen, not over the panel";
  EXPECT_EQ(metin, "STOKKART");
  EXPECT_EQ(oturum.kutular, &boxes);
  EXPECT_EQ(oturum.ilerleme, &progress);
}

TEST_F(UzunIs, WhatTheWorkThrowsIsThrownHere) {
  EXPECT_THROW(ui::uzunIs(&pencere, oturum, {"Deneme"}, [] { throw std::runtime_error("olmadı"); }),
               std::runtime_error);
  EXPECT_FALSE(ui::isSuruyor());
  EXPECT_EQ(oturum.kutular, &boxes);
}

TEST_F(UzunIs, WorkThatHangsIsLeftBehindAndChangesNothing) {
  oturum.Kullanici_Adi = "ESKİ";
  const auto devam = std::make_shared<std::atomic<bool>>(false);
  QTimer::singleShot(500, &pencere,
                     [&] { QTest::mouseClick(find<QPushButton>(pencere, "IsVazgecBtn"), Qt::LeftButton); });
  EXPECT_EQ(ui::birakilabilirIs(&pencere, oturum, "Bekleniyor",
                                [devam](session::Oturum& ayri) {
                                  while (!*devam) std::this_thread::sleep_for(5ms);
                                  ayri.Kullanici_Adi = "GEÇ";
                                  ayri.kutular->message("Kimse görmemeli");
                                }),
            ui::IsSonucu::Vazgecildi);
  EXPECT_TRUE(ui::birakilanIsVar());
  *devam = true;
  for (int i = 0; i < 200 && ui::birakilanIsVar(); ++i) QTest::qWait(5);
  EXPECT_FALSE(ui::birakilanIsVar());
  EXPECT_EQ(oturum.Kullanici_Adi, "ESKİ");
  EXPECT_TRUE(boxes.shown.empty());

  EXPECT_EQ(ui::birakilabilirIs(&pencere, oturum, "Bekleniyor",
                                [](session::Oturum& ayri) { ayri.Kullanici_Adi = "YENİ"; }),
            ui::IsSonucu::Bitti);
  EXPECT_EQ(oturum.Kullanici_Adi, "YENİ");
  EXPECT_EQ(oturum.kutular, &boxes);
}

TEST(IsPaneli, TimesAreToldAsPeopleSayThem) {
  const std::pair<qint64, const char*> sureler[] = {
      {0, "0 sn"}, {59, "59 sn"}, {60, "1 dk 0 sn"}, {3599, "59 dk 59 sn"}, {3840, "1 sa 4 dk"}};
  for (const auto& [saniye, yazi] : sureler) EXPECT_EQ(ui::sureYazisi(saniye), yazi);
  const struct {
    qint64 gecen;
    double pay;
    const char* yazi;
  } kalanlar[] = {
      {1400, .5, ""}, {10000, .01, ""}, {10000, .25, "30 sn"}, {60000, .5, "1 dk 0 sn"}, {9000, 1, ""}};
  for (const auto& k : kalanlar)
    EXPECT_EQ(ui::kalanYazisi(k.gecen, k.pay), k.yazi) << k.gecen << " " << k.pay;
}

}  // namespace
