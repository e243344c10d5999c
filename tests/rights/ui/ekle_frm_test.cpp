#include "rights/ui/ekle_frm.h"

#include <QCheckBox>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>

#include "ekran.h"

namespace {

using namespace screen;

class EkleFrmTest : public rights::test::EkranTest {
 protected:
  void ac(bool yeni, std::int64_t id = 0, bool inceleme = false) {
    o().Yeni_Kayit = yeni;
    o().Inceleme = inceleme;
    o().Secili_ID = id;
    screen::show(kart);
    kart.ac();
    s.boxes.shown.clear();
  }
  QLineEdit* alan(const char* name) { return find<QLineEdit>(kart, name); }
  rights_ui::EkleFrm kart{o(), konsol};
  QSignalSpy kapandi{&kart, &ui::Kart::kapandi};
};

TEST_F(EkleFrmTest, AUserIsMadeWithKeysAlone) {
  ac(true);
  EXPECT_EQ(focusName(), "Kullanici_Adi");
  type(alan("Kullanici_Adi"), "çiğdem");
  key(Qt::Key_Return);
  EXPECT_EQ(focusName(), "Kullanici_Sifre");
  type(alan("Kullanici_Sifre"), "kale7");
  key(Qt::Key_Down);
  type(alan("Sifre_Onay"), "kale");
  key(Qt::Key_F2);
  EXPECT_EQ(s.boxes.last(), "Lütfen Bu Kullanıcı İçin Enaz Bir Firma Seçiniz");
  alan("Sifre_Onay")->setFocus();
  key(Qt::Key_Right);
  EXPECT_EQ(focusName(), "Firmatreelist");
  key(Qt::Key_Down);
  key(Qt::Key_Space);
  EXPECT_EQ(alan("KonumText")->text(), "Firma 2 / 2, seçili 1");
  key(Qt::Key_F2);
  EXPECT_EQ(s.boxes.last(), "Şifreniz tutarlı değil!");
  type(alan("Sifre_Onay"), "kale7");
  key(Qt::Key_F2);
  EXPECT_EQ(kapandi.count(), 1);
  EXPECT_EQ(konsol.dolduruldu, 1);
  EXPECT_EQ(rows("SELECT S.sysus_nm,F.sysfrm_ID FROM sysuslng S,sysusfrmlng F WHERE S.sysus_ID=F.sysus_ID "
                 "AND S.sysus_ID=2"),
            "ÇİĞDEM|2");
}

TEST_F(EkleFrmTest, ACardShowsItsUserAndIsChanged) {
  const auto id = kullanici("ALİ", "abc", {1});
  ac(false, id);
  EXPECT_EQ(alan("Kullanici_Adi")->text(), "ALİ");
  EXPECT_EQ(alan("Kullanici_Sifre")->text(), "abc");
  EXPECT_EQ(alan("Kullanici_Sifre")->echoMode(), QLineEdit::Password);
  auto* firmalar = find<QListWidget>(kart, "Firmatreelist");
  EXPECT_EQ(firmalar->item(0)->checkState(), Qt::Checked);
  EXPECT_EQ(firmalar->item(1)->checkState(), Qt::Unchecked);
  QTest::mouseClick(find<QCheckBox>(kart, "Yonetici"), Qt::LeftButton, {}, QPoint(8, 12));
  type(alan("sendusername"), "ali@example");
  QTest::mouseClick(find<QPushButton>(kart, "Ekle_Tamam"), Qt::LeftButton);
  EXPECT_EQ(s.boxes.last(), "Yaptığınız değişiklikler kayda alındı.");
  EXPECT_EQ(rows("SELECT Yonetici,sendusername FROM sysuslng WHERE sysus_ID=2"), "1|ali@example");
  // A bad password brings the focus back to its field.
  ac(false, id);
  type(alan("Kullanici_Sifre"), "ığ");
  alan("smtpserver")->setFocus();
  key(Qt::Key_F2);
  EXPECT_EQ(focusName(), "Kullanici_Sifre");
  EXPECT_EQ(kapandi.count(), 1);
}

TEST_F(EkleFrmTest, InspectionIsClosedAndNothingOfItIsLeft) {
  const auto id = kullanici("ALİ", "abc", {1});
  ac(false, id, true);
  for (const char* name : {"Kullanici_Adi", "Kullanici_Sifre", "Sifre_Onay", "smtpserver", "sendpassword"})
    EXPECT_TRUE(alan(name)->isEnabled() && alan(name)->isReadOnly()) << name;
  EXPECT_FALSE(find<QPushButton>(kart, "Ekle_Tamam")->isEnabled());
  key(Qt::Key_F2);
  EXPECT_EQ(kapandi.count(), 0);
  key(Qt::Key_Escape);
  EXPECT_EQ(kapandi.count(), 1);
  ac(true);
  EXPECT_FALSE(alan("Kullanici_Adi")->isReadOnly());
  EXPECT_EQ(alan("Kullanici_Adi")->text(), "");
  EXPECT_EQ(find<QListWidget>(kart, "Firmatreelist")->item(0)->checkState(), Qt::Unchecked);
}

TEST_F(EkleFrmTest, FieldsAreAsLongAsTheirColumnsAndEnterWalksThem) {
  ac(true);
  const std::pair<const char*, int> widths[] = {{"Kullanici_Adi", 15},  {"Kullanici_Sifre", 15},
                                                {"Sifre_Onay", 15},     {"smtpserver", 50},
                                                {"smtpserverport", 10}, {"sendpassword", 50}};
  for (const auto& [name, width] : widths) {
    type(alan(name), QString(width + 1, 'a'));
    EXPECT_EQ(alan(name)->text().size(), width) << name;
  }
  alan("Kullanici_Adi")->setFocus();
  for (const char* next : {"Kullanici_Sifre", "Sifre_Onay", "Yonetici", "smtpserver", "smtpserverport",
                           "sendusername", "sendpassword", "Firmatreelist"}) {
    key(std::string(next) == "smtpserver" ? Qt::Key_Down : Qt::Key_Return);
    EXPECT_EQ(focusName(), next);
  }
}

}  // namespace
