#include "rights/islem.h"
#include "rights/ortam.h"
#include "rights/varsayilan.h"
#include "session/metin.h"

namespace {

using rights::FirmaSatiri;
using rights::KullaniciKarti;
using rights::KullaniciOdak;
using Texts = std::vector<std::string>;

class KullaniciTest : public rights::test::OrtamTest {
 protected:
  KullaniciKarti yeni(const std::string& ad, const std::string& sifre = "abc") {
    o().Yeni_Kayit = true;
    o().Inceleme = false;
    KullaniciKarti kart;
    rights::Kullanici_Karti_Ac(o(), kart);
    kart.Kullanici_Adi = ad;
    kart.Kullanici_Sifre = kart.Sifre_Onay = sifre;
    kart.Firmatreelist.at(0).secili = true;
    return kart;
  }
  KullaniciKarti ac(std::int64_t id) {
    o().Yeni_Kayit = false;
    o().Inceleme = false;
    o().Secili_ID = id;
    KullaniciKarti kart;
    EXPECT_TRUE(rights::Kullanici_Karti_Ac(o(), kart));
    return kart;
  }
  bool kaydet(KullaniciKarti& kart) {
    s.boxes.shown.clear();
    return rights::Ekle_Tamam(o(), kart).kaydedildi;
  }
  std::string kullanicilar() {
    return rows("SELECT sysus_ID,sysus_nm,sysus_lgn,sysus,Yonetici FROM sysuslng ORDER BY sysus_ID");
  }
  std::string firmalari(std::int64_t id) {
    return rows("SELECT sysfrm_ID FROM sysusfrmlng WHERE sysus_ID=" + std::to_string(id) +
                " ORDER BY sysfrm_ID");
  }
  std::string yetkileri(std::int64_t id) {
    return rows(
        "SELECT "
        "Firma_ID,Kullanici_Ad,Kullanici_Sifre,KASA,KHE,BORHS,FKG,Personel,KS_Degistirsin,DEF_Isyeri_Kod,"
        "Kullanici_Fiyat,KRVN FROM Kullanici WHERE Kullanici_ID=" +
        std::to_string(id) + " ORDER BY Firma_ID");
  }
};

constexpr const char* seven = "|1|11111111111111|11111111111111111111111|1|NULL|NULL|1|0|1";

TEST_F(KullaniciTest, ANewUserHasEverythingInEachTickedCompany) {
  KullaniciKarti kart = yeni("o'neil", "Kale99");
  EXPECT_EQ(kart.Firmatreelist.size(), 2u);
  kart.smtpserver = "posta.example";
  surucu.izleme.sifirla();
  EXPECT_TRUE(kaydet(kart));
  EXPECT_TRUE(s.boxes.shown.empty());
  EXPECT_EQ(
      rows(
          "SELECT sysus_nm,sysus_lgn,sysus,Yonetici,sendusing,smtpauthenticate,DATALENGTH(RTRIM(smtpserver)) "
          "FROM sysuslng WHERE sysus_ID=2"),
      "O'NEİL|O'NEİL|" + *session::Sifrele("Kale99") + "|0|1|1|13");
  EXPECT_EQ(firmalari(2), "1");
  EXPECT_EQ(yetkileri(2), "1|O'NEİL|" + *session::Sifrele("Kale99") + seven);
  // The log as sent: whole texts, each value where it belongs.
  const std::string sifreli = *session::Sifrele("Kale99");
  EXPECT_EQ(
      surucu.izleme.deyimler,
      (Texts{std::string(rights::islemBasi), "SELECT * FROM sysuslng WHERE sysus_nm='O''NEİL'",
             "INSERT INTO sysuslng(sysus_nm,sysus_lgn,sysus,Yonetici,sendusing,smtpserver,smtpserverport,"
             "smtpauthenticate,sendusername,sendpassword) VALUES ('O''NEİL','O''NEİL','" +
                 sifreli + "',0,1,'posta.example',' ',1,' ',' ')",
             "Select sysus_ID FROM sysuslng WHERE sysus_nm ='O''NEİL'",
             "INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) SELECT sysfrm_ID,2 FROM sysfrmlng WHERE sysfrm_ID "
             "IN (1)",
             "SELECT sysfrm_ID FROM sysusfrmlng WHERE sysus_ID=2",
             "SELECT Firma_ID FROM Kullanici WHERE Kullanici_ID=2",
             rights::varsayilanSatir(rights::VarsayilanTur::YeniKullanici, "1", "2", "O'NEİL", sifreli),
             "COMMIT TRAN"}));
}

TEST_F(KullaniciTest, RefusalsComeInTheirOrderAndWriteNothing) {
  const std::string before = kullanicilar(), uzun(200, 'x');
  constexpr auto Ad = KullaniciOdak::Kullanici_Adi, Sifre = KullaniciOdak::Kullanici_Sifre;
  const struct {
    bool firma;
    std::string ad, sifre, onay, sunucu;
    const char* text;
    KullaniciOdak odak;
  } cases[] = {
      {false, "ALİ", "ş", "a", "", "Lütfen Bu Kullanıcı İçin Enaz Bir Firma Seçiniz", KullaniciOdak::Yok},
      {true, "ALİ", "kÜp", "a", "", "Lütfen şifrenizde Türkçe karakter kullanmayınız.", Sifre},
      {true, "ALİ", "a中", "a中", "", "Şifrede bu şifrelemeye sığmayan karakter olamaz.", Sifre},
      {true, "ALİ", uzun, uzun, "", "Şifre en çok 15 karakter olabilir.", Sifre},
      {true, " ", "abc", "abd", "", "Şifreniz tutarlı değil!", KullaniciOdak::Yok},
      {true, " ", "a", "a", "", "Kullanıcı Adı Boş Olamaz...", Ad},
      {true, uzun, "a", "a", "", "Kullanıcı adı en çok 15 karakter olabilir.", Ad},
      {true, "中", "a", "a", "", "Kullanıcı adı Türkçe kod sayfasında (1254) olmayan karakter içeriyor.", Ad},
      {true, "A\x01Z", "a", "a", "",
       "Kullanıcı adı içinde satır sonu ya da başka bir denetim karakteri olamaz.", Ad},
      {true, "korvena", "a", "a", "",
       "Aynı adlı bir kullanıcı bulunmaktadır.Lütfen Kullanıcı adını değiştiriniz...", Ad},
      {true, "ALİ", "a", "a", uzun, "Posta sunucusu en çok 50 karakter olabilir.", Ad},
  };
  for (const auto& c : cases) {
    KullaniciKarti kart = yeni(c.ad, c.sifre);
    kart.Firmatreelist[0].secili = c.firma;
    kart.Sifre_Onay = c.onay;
    kart.smtpserver = c.sunucu;
    s.boxes.shown.clear();
    const auto sonuc = rights::Ekle_Tamam(o(), kart);
    EXPECT_FALSE(sonuc.kaydedildi) << c.text;
    EXPECT_EQ(s.boxes.texts(), Texts{c.text});
    EXPECT_EQ(sonuc.odak, c.odak) << c.text;
  }
  EXPECT_EQ(kullanicilar(), before);
  KullaniciKarti kart = yeni("ALİ");
  o().Inceleme = true;
  EXPECT_FALSE(kaydet(kart));
  EXPECT_TRUE(s.boxes.shown.empty());
}

TEST_F(KullaniciTest, EachOfTheTwelveLettersIsRefusedBeforeTheDatabase) {
  for (const char* harf : {"Ç", "ç", "Ğ", "ğ", "İ", "ı", "Ö", "ö", "Ş", "ş", "Ü", "ü"}) {
    KullaniciKarti kart = yeni("ALİ", std::string("a") + harf);
    surucu.izleme.sifirla();
    EXPECT_FALSE(kaydet(kart));
    EXPECT_EQ(s.boxes.last(), "Lütfen şifrenizde Türkçe karakter kullanmayınız.") << harf;
    EXPECT_TRUE(surucu.izleme.deyimler.empty()) << harf;
  }
  rights::Sifre_Kontrol(o(), "âêÀ");  // not on the list
  EXPECT_EQ(o().Son_Hata, "");
}

// Scrambled texts may hold characters that look odd; each password must come back as typed.
TEST_F(KullaniciTest, PasswordsComeBackAsTheyWereTyped) {
  for (const char* sifre : {"Fabc", "", "O'Neil", "Zz19_-%", "~", "@@@@@@@@@@@@@@@"}) {
    const auto id = kullanici("K" + std::to_string(sifre[0]) + "A", sifre, {1});
    EXPECT_EQ(ac(id).Kullanici_Sifre, sifre);
    EXPECT_EQ(rows("SELECT COUNT(*) FROM Kullanici K,sysuslng S WHERE K.Kullanici_ID=S.sysus_ID AND "
                   "K.Kullanici_Sifre=S.sysus AND "
                   "S.sysus_ID=" +
                   std::to_string(id)),
              "1")
        << sifre;
  }
}

TEST_F(KullaniciTest, AChangeKeepsGivenRightsAndTakesThoseOfALostCompany) {
  const auto id = kullanici("ALİ", "abc", {1});
  run("UPDATE Kullanici SET KHE='10000000000000',KASA=0 WHERE Kullanici_ID=2");
  KullaniciKarti kart = ac(id);
  EXPECT_EQ(kart.Kullanici_Sifre, "abc");
  EXPECT_TRUE(kart.Firmatreelist[0].secili);
  EXPECT_FALSE(kart.Firmatreelist[1].secili);
  kart.Kullanici_Adi = "o'neil";
  kart.Yonetici = true;
  kart.Firmatreelist[1].secili = true;
  EXPECT_TRUE(kaydet(kart));
  EXPECT_EQ(s.boxes.texts(), Texts{"Yaptığınız değişiklikler kayda alındı."});
  EXPECT_EQ(s.boxes.shown[0].icon, session::Icon::Information);
  EXPECT_EQ(rows("SELECT sysus_nm,Yonetici,smtpserver FROM sysuslng WHERE sysus_ID=2"), "O'NEİL|1|");
  EXPECT_EQ(firmalari(id), "1\n2");
  const std::string x = *session::Sifrele("abc");
  EXPECT_EQ(
      yetkileri(id),
      "1|ALİ|" + x + "|0|10000000000000|11111111111111111111111|1|NULL|NULL|1|0|1\n2|O'NEİL|" + x + seven);

  kart = ac(id);
  kart.Firmatreelist[0].secili = false;
  EXPECT_TRUE(kaydet(kart));
  EXPECT_EQ(firmalari(id), "2");
  EXPECT_EQ(yetkileri(id), "2|O'NEİL|" + x + seven);
}

TEST_F(KullaniciTest, UserOneKeepsHisCompaniesAndTakesNameAndPassword) {
  KullaniciKarti kart = ac(1);
  kart.Firmatreelist[1].secili = false;
  kart.Kullanici_Adi = "Patron";
  kart.Kullanici_Sifre = kart.Sifre_Onay = "xyz";
  EXPECT_TRUE(kaydet(kart));
  EXPECT_EQ(s.boxes.texts(), Texts{"Yaptığınız değişiklikler kayda alındı."});
  EXPECT_EQ(firmalari(1), "1\n2");
  EXPECT_EQ(rows("SELECT Firma_ID,Kullanici_Ad,Kullanici_Sifre FROM Kullanici WHERE Kullanici_ID=1 ORDER BY "
                 "Firma_ID"),
            "1|PATRON|" + *session::Sifrele("xyz") + "\n2|PATRON|" + *session::Sifrele("xyz"));
}

TEST_F(KullaniciTest, APasswordThatCannotBeReadStaysUntilAnotherIsTyped) {
  const auto id = kullanici("ALİ", "abc", {1});
  run("UPDATE sysuslng SET sysus=' !' WHERE sysus_ID=2");
  run("UPDATE sysuslng SET sysus=CHAR(1)+CHAR(1) WHERE sysus_ID=2");
  KullaniciKarti kart = ac(id);
  EXPECT_EQ(kart.Kullanici_Sifre, "");
  EXPECT_TRUE(kaydet(kart));
  EXPECT_EQ(rows("SELECT sysus FROM sysuslng WHERE sysus_ID=2"), "\x01\x01");
  kart = ac(id);
  kart.Kullanici_Sifre = kart.Sifre_Onay = "yeni";
  EXPECT_TRUE(kaydet(kart));
  EXPECT_EQ(ac(id).Kullanici_Sifre, "yeni");
}

TEST_F(KullaniciTest, AUserDeletedMeanwhileIsToldAndNothingIsWritten) {
  const auto id = kullanici("ALİ", "abc", {1});
  KullaniciKarti kart = ac(id);
  run("DELETE FROM sysuslng WHERE sysus_ID=2 DELETE FROM sysusfrmlng WHERE sysus_ID=2 DELETE FROM Kullanici "
      "WHERE Kullanici_ID=2");
  EXPECT_FALSE(kaydet(kart));
  EXPECT_EQ(s.boxes.texts(), Texts{"Bu kullanıcı başka bir yerden silinmiş; kaydedilemedi."});
  EXPECT_EQ(firmalari(id) + yetkileri(id), "");
  s.boxes.shown.clear();
  EXPECT_FALSE(rights::Kullanici_Karti_Ac(o(), kart));
  EXPECT_EQ(s.boxes.texts(), Texts{"Bu kullanıcı bulunamadı; başka bir yerden silinmiş olabilir."});
}

TEST_F(KullaniciTest, CopyingMovesIdsNameAndPasswordOnly) {
  const auto id = kullanici("ALİ", "abc", {1});
  run("UPDATE Kullanici SET KHE='10000000000000' WHERE Kullanici_ID=2");
  KullaniciKarti kart = ac(id);
  kart.Kullanici_Adi = "veli";
  kart.Sifreli_sifre = "yz";
  EXPECT_TRUE(rights::Kullanici_Yetki_Kopyala(o(), kart, 1, id));
  EXPECT_EQ(rows("SELECT Firma_ID,Kullanici_Ad,Kullanici_Sifre,KHE FROM Kullanici WHERE Kullanici_ID=2"),
            "1|VELİ|yz|10000000000000");
  EXPECT_FALSE(rights::Kullanici_Yetki_Kopyala(o(), kart, 2, id));
}

TEST_F(KullaniciTest, ServerLoginAndDatabaseUsersFollowTheTicks) {
  const auto id = kullanici("ALİ", "abc", {1});
  KullaniciKarti kart = ac(id);
  EXPECT_TRUE(rights::Sql_Girisi_Olustur(o(), kart, "ali", "abc"));
  EXPECT_TRUE(s.boxes.shown.empty()) << s.boxes.last();
  const auto user = [&](const std::string& database) {
    return rows("SELECT COUNT(*) FROM " + database + ".dbo.sysusers WHERE name='ALİ'");
  };
  EXPECT_EQ(rows("SELECT COUNT(*) FROM master.dbo.sysxlogins WHERE name='ALİ'"), "1");
  EXPECT_EQ(user("Defination_DB") + user("MERKEZ") + user("SUBE"), "110");

  // A second time: the password is changed, an unticked company loses its user.
  kart.Firmatreelist[0].secili = false;
  kart.Firmatreelist[1].secili = true;
  EXPECT_TRUE(rights::Sql_Girisi_Olustur(o(), kart, "ali", "def"));
  EXPECT_EQ(user("MERKEZ") + user("SUBE"), "01");
  auto login = bakan->make("(yerel)");
  EXPECT_NO_THROW(login->open({"(yerel)", "ALİ", "DEF", "SUBE", false}));
  login->close();

  kart.ID = "1";
  kart.Eski_SQL_Sifre = "DEF";
  EXPECT_TRUE(rights::Sql_Girisi_Olustur(o(), kart, "ali", "def"));
  EXPECT_EQ(user("MERKEZ") + user("SUBE"), "11");
}

TEST_F(KullaniciTest, ARefusedPasswordOfTheServerLoginEndsItsRoutine) {
  surucu.izleme.once = [&](std::size_t) {
    if (surucu.izleme.deyimler.back().starts_with("exec sp_password"))
      throw db::SqlError(db::ErrorKind::StatementRefused, 15151, "eski şifre");
  };
  KullaniciKarti kart = ac(kullanici("ALİ", "abc", {1}));
  ASSERT_TRUE(rights::Sql_Girisi_Olustur(o(), kart, "ali", "abc"));
  surucu.izleme.deyimler.clear();
  EXPECT_FALSE(rights::Sql_Girisi_Olustur(o(), kart, "ali", "abc"));
  EXPECT_EQ(s.boxes.last(), "Kullanıcını Şifresi ile Oynanmış Bu kullanıcı Kullanılamaz");
  EXPECT_EQ(surucu.izleme.deyimler.back(), "exec sp_password 'ABC','ABC','ALİ'");
}

}  // namespace
