#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

#include "screen.h"
#include "session/metin.h"
#include "session/ui/pencereler.h"
#include "session/ui/sunucu_hazirlama.h"

namespace {

using namespace screen;

class GirisEkrani : public testing::Test, protected support::FakeSurroundings {
 protected:
  void SetUp() override {
    server.rows("FROM sysDTYL", {"sysdtyl"}, {{"/veri"}});
    server.rows("FROM sysuslng", {"sysus_ID", "sysus_nm", "sysus"}, {});
    server.rows("sysus_nm='KORVENA'", {"sysus_ID", "sysus_nm", "sysus"},
                {{1, "KORVENA", *session::Sifrele("Gizli1")}});
  }
  void failBothAttempts(int number = 4060) {
    for (int i = 0; i < 2; ++i)
      server.failOpening(db::SqlError(db::ErrorKind::LinkBroken, number, "Sunucuya ulaşılamıyor"));
  }
};

TEST_F(GirisEkrani, OpensOnThePasswordWithItsColours) {
  session_ui::GirisFrm giris(oturum, {});
  screen::show(giris);
  EXPECT_EQ(giris.windowTitle(), "Zembera");
  EXPECT_EQ(focusName(), "Sifre");
  EXPECT_EQ(find<QLineEdit>(giris, "Kullanici")->text(), "Korvena");
  EXPECT_EQ(background(*find<QLineEdit>(giris, "Sifre")), 0xF8FBD5U);
  EXPECT_EQ(background(*find<QLineEdit>(giris, "Kullanici")), 0xF9F9F9U);
}

TEST_F(GirisEkrani, WrongPasswordUnknownNameThenRight) {
  session_ui::GirisFrm giris(oturum, {});
  QSignalSpy konsol(&giris, &session_ui::GirisFrm::konsolAc);
  screen::show(giris);
  auto* kullanici = find<QLineEdit>(giris, "Kullanici");
  auto* sifre = find<QLineEdit>(giris, "Sifre");

  type(sifre, "yanlis");
  key(Qt::Key_Return);
  EXPECT_EQ(boxes.last(), "Şifreniz Geçerli Değil!");
  EXPECT_EQ(sifre->text(), "");
  EXPECT_EQ(focusName(), "Sifre");

  type(kullanici, "yok");
  key(Qt::Key_Return);
  EXPECT_EQ(boxes.last(), "Kullanıcı Adınız Geçerli Değil!");
  EXPECT_EQ(focusName(), "Kullanici");
  EXPECT_EQ(konsol.count(), 0);

  type(kullanici, "korvena");
  type(sifre, "  Gizli1 ");
  QTest::mouseClick(find<QPushButton>(giris, "TamamBtn"), Qt::LeftButton);
  EXPECT_EQ(konsol.count(), 1);
  EXPECT_EQ(oturum.Giris_Hatali, 0);
  EXPECT_EQ(boxes.shown.size(), 2U);
}

TEST_F(GirisEkrani, GoesWhenTheConsoleComes) {
  const session_ui::Pencereler pencereler(oturum, {});
  QPointer<QWidget> giris;
  for (QWidget* pencere : QApplication::topLevelWidgets())
    if (pencere->objectName() == "Giris_Frm") giris = pencere;
  ASSERT_TRUE(giris);
  type(find<QLineEdit>(*giris, "Sifre"), "Gizli1");
  find<QPushButton>(*giris, "TamamBtn")->click();
  QCoreApplication::processEvents();
  EXPECT_FALSE(giris);
  EXPECT_TRUE(std::ranges::any_of(QApplication::topLevelWidgets(), [](QWidget* pencere) {
    return pencere->objectName() == "Zembera_Menu" && pencere->isVisible();
  }));
}

TEST_F(GirisEkrani, UnreachableServerBringsTheReducedConsole) {
  session_ui::GirisFrm giris(oturum, {});
  QSignalSpy konsol(&giris, &session_ui::GirisFrm::konsolAc);
  screen::show(giris);
  failBothAttempts(0);
  key(Qt::Key_Return);
  EXPECT_EQ(boxes.texts(), std::vector<std::string>{"Sunucuya ulaşılamıyor"});
  EXPECT_EQ(konsol.count(), 1);
  EXPECT_EQ(oturum.Giris_Hatali, -1);
}

TEST_F(GirisEkrani, MissingCatalogOffersToPrepareTheServer) {
  std::string prepared;
  session_ui::GirisFrm giris(oturum, [&](session::Oturum&, const std::string& ad, const std::string& sifre) {
    prepared = ad + "/" + sifre;
    return std::string();
  });
  QSignalSpy konsol(&giris, &session_ui::GirisFrm::konsolAc);
  screen::show(giris);
  failBothAttempts();
  server.rows("FROM sysdatabases", {"name"}, {});
  whenModal<session_ui::SunucuHazirlama>([](session_ui::SunucuHazirlama& shown) {
    auto* dialog = &shown;
    EXPECT_EQ(find<QLineEdit>(*dialog, "YoneticiAdi")->text(), "KORVENA");
    type(find<QLineEdit>(*dialog, "YoneticiSifre"), "Gizli890123456xy");
    EXPECT_EQ(find<QLineEdit>(*dialog, "YoneticiSifre")->text().size(), 16) << "cut short in silence";
    type(find<QLineEdit>(*dialog, "YoneticiSifre"), "Gizli1");
    QTest::mouseClick(find<QPushButton>(*dialog, "HazirlaBtn"), Qt::LeftButton);
    EXPECT_EQ(find<QLabel>(*dialog, "HataLbl")->text(), "İki şifre birbirinden farklı.");
    EXPECT_EQ(dialog->focusWidget()->objectName(), "YoneticiSifre2");
    type(find<QLineEdit>(*dialog, "YoneticiSifre2"), "Gizli1");
    QTest::keyClick(find<QLineEdit>(*dialog, "YoneticiSifre2"), Qt::Key_Return);
  });
  key(Qt::Key_Return);
  EXPECT_EQ(prepared, "KORVENA/Gizli1");
  EXPECT_EQ(konsol.count(), 1);
  EXPECT_EQ(oturum.Giris_Hatali, 0);
  EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(GirisEkrani, DecliningThePreparationEndsAsAFailedLogin) {
  session_ui::GirisFrm giris(oturum, [](session::Oturum&, const std::string&, const std::string&) {
    ADD_FAILURE();
    return std::string();
  });
  screen::show(giris);
  failBothAttempts();
  server.rows("FROM sysdatabases", {"name"}, {});
  whenModal<QDialog>([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  key(Qt::Key_Return);
  EXPECT_EQ(boxes.last(), "Sunucuya ulaşılamıyor");
  EXPECT_EQ(oturum.Giris_Hatali, -1);
}

TEST_F(GirisEkrani, KeysGoRoundTheVisibleFields) {
  session_ui::GirisFrm giris(oturum, {});
  screen::show(giris);
  const struct {
    bool all;
    std::vector<Qt::Key> keys;
    const char* end;
  } cases[] = {{false, {Qt::Key_Down}, "Kullanici"},
               {false, {Qt::Key_Down, Qt::Key_Down}, "Sifre"},
               {false, {Qt::Key_Up, Qt::Key_Up}, "Sifre"},
               {true, {Qt::Key_Down}, "Server"},
               {true, {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down}, "Kullanici"},
               {true, {Qt::Key_Up, Qt::Key_Up}, "SQLsaSifreTxt"}};
  for (const auto& c : cases) {
    find<QWidget>(giris, "SunucuFrm")->setVisible(c.all);
    find<QLineEdit>(giris, "Sifre")->setFocus();
    for (const Qt::Key each : c.keys) key(each);
    EXPECT_EQ(focusName(), c.end) << c.all << c.keys.size();
  }
  find<QWidget>(giris, "SunucuFrm")->setVisible(false);
  find<QPushButton>(giris, "TamamBtn")->setFocus();
  key(Qt::Key_Right);
  EXPECT_EQ(focusName(), "CikisBtn");
  key(Qt::Key_Left);
  EXPECT_EQ(focusName(), "TamamBtn");
  key(Qt::Key_Up);
  EXPECT_EQ(focusName(), "Sifre");
}

TEST_F(GirisEkrani, VersionBoxAndExit) {
  session_ui::GirisFrm giris(oturum, {});
  QSignalSpy cikis(&giris, &session_ui::GirisFrm::cikis);
  screen::show(giris);
  key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_NE(boxes.last().find("Versiyon Bilgisi :"), std::string::npos);
  QTest::mouseClick(find<QPushButton>(giris, "CikisBtn"), Qt::LeftButton);
  EXPECT_EQ(cikis.count(), 1);
}

}  // namespace
