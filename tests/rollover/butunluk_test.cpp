// A run is whole: refused statements at any place, cancelling, trials, leftovers; the source keeps every
// byte.
#include <fstream>

#include "rollover/devir_ortami.h"
#include "support/izleyen_surucu.h"

namespace rollover::test {
namespace {

class ButunlukTest : public DevirTest {
 protected:
  void SetUp() override {
    DevirTest::SetUp();
    s().run(
        "INSERT INTO KASAKART (Kasa_Kod,Kasa_Ad) VALUES ('K1','Merkez') INSERT INTO KASAHAREKET "
        "(Tarih,Fis_No,Islem_Tipi,Kasa_ID,BTutar,ATutar) SELECT '20120301','1','x',Kasa_ID,5,0 "
        "FROM KASAKART INSERT INTO STOKKART (Stok_Kod) VALUES ('S1') INSERT INTO CARIKART (Cari_Kod) VALUES "
        "('C1')");
  }
  // All that the server knows of companies and users.
  std::string katalog() {
    s().bagla("Defination_DB");
    return satirlar("SELECT name FROM master.dbo.sysdatabases ORDER BY name") + "\n" +
           satirlar("SELECT * FROM sysfrmlng ORDER BY sysfrm_ID") + "\n" +
           satirlar("SELECT * FROM sysusfrmlng ORDER BY sysfrm_ID") + "\n" +
           satirlar("SELECT * FROM Kullanici ORDER BY ID");
  }
  std::string hedefIcerigi(const std::string& ad) {
    s().bagla(ad);
    std::string out = satirlar("SELECT name FROM sysobjects WHERE xtype='U' ORDER BY name");
    for (const char* const tablo :
         {"KASAKART", "KASAHAREKET", "STOKKART", "CARIKART", "ODEMEHAREKET", "IP_KNTF1", "SATICI"})
      out += "\n" + satirlar(std::string("SELECT * FROM ") + tablo);
    return out;
  }
};

TEST_F(ButunlukTest, TrialLeavesNothingOfANewTarget) {
  const std::string once = katalog();
  DevirGirdisi g = girdi();
  g.deneme = true;
  const auto sonuc = devret(g);
  EXPECT_TRUE(sonuc.kanit.deneme);
  EXPECT_EQ(sonuc.kanit.satirlar[0].hedef, Para::tam(5));
  EXPECT_EQ(katalog(), once);
}

TEST_F(ButunlukTest, TrialLeavesAnExistingTargetAsItWas) {
  devret(girdi());
  s().run("UPDATE STOKKART SET Stok_Ad='hedefte' INSERT INTO SATICI (Satici_Kodu) VALUES ('YENI')");
  const std::string once = hedefIcerigi("YENI2013"), katalogOnce = katalog();
  DevirGirdisi g = girdi();
  g.deneme = true;
  devret(g);
  EXPECT_EQ(hedefIcerigi("YENI2013"), once);
  EXPECT_EQ(katalog(), katalogOnce);
}

TEST_F(ButunlukTest, CancelTakesEverythingBack) {
  const std::string once = katalog();
  DevirGirdisi g = girdi();
  int soru = 0;
  g.iptal = [&] { return ++soru > 20; };
  const DevirSonucu sonuc = Devret(s().s.oturum, g);
  EXPECT_FALSE(sonuc.tamam);
  EXPECT_TRUE(sonuc.iptal);
  EXPECT_EQ(katalog(), once);
  devret(girdi());  // and the next run succeeds
}

TEST_F(ButunlukTest, LostLinkAtAnyStatementLeavesNothing) {
  const std::string once = katalog();
  auto izleyen = std::make_unique<support::IzleyenSurucu>(std::move(sirket().factory));
  support::Izleme& izleme = izleyen->izleme;
  sirket().factory = std::move(izleyen);
  s().s.oturum.surucu = sirket().factory.get();
  s().s.oturum.Baglanti.reset();
  devret(girdi());
  kaldir();
  const std::size_t toplam = [&] {
    izleme.sifirla();
    DevirGirdisi g = girdi();
    const auto sonuc = devret(g);
    EXPECT_TRUE(sonuc.tamam);
    return izleme.deyimler.size();
  }();
  kaldir();
  // Behind the schema every few statements; the schema itself at a handful of places.
  for (std::size_t n = 40; n < toplam; n += n < toplam - 350 ? 211 : 29) {
    const DevirGirdisi g = girdi();
    izleme.sifirla();
    bool koptu = false;
    izleme.once = [&](std::size_t i) {
      if (i != n) return;
      koptu = true;
      throw db::SqlError(db::ErrorKind::LinkBroken, 0, "bağlantı koptu");
    };
    s().s.boxes.shown.clear();
    const DevirSonucu sonuc = Devret(s().s.oturum, g);
    izleme.sifirla();
    if (!koptu) break;
    if (sonuc.tamam) {
      kaldir();  // what broke did not matter to the run
      continue;
    }
    EXPECT_EQ(katalog(), once) << n << "/" << toplam << " " << sonuc.hata;
    EXPECT_FALSE(sonuc.hata.empty()) << n;
  }
}

TEST_F(ButunlukTest, LeftoverOfABrokenRunMakesWay) {
  s().bagla("master");
  s().run("CREATE DATABASE YENI2013");
  s().run("CREATE TABLE YENI2013.dbo.DEVIR_YARIM (ID INT)");
  devret(girdi());
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM sysobjects WHERE name LIKE 'DEVIR%'"), "0");
  kaldir();
  // An empty one may be someone's: asked, in both answers.
  s().bagla("master");
  s().run("CREATE DATABASE YENI2013");
  s().bagla("Defination_DB");
  s().s.boxes.answers = {false};
  EXPECT_EQ(Devret(s().s.oturum, girdi()).hata, "Bu İsimle Bir Firma veya Database Zaten Var.");
  s().s.boxes.answers = {true};
  devret(girdi());
  kaldir();
  s().bagla("master");
  s().run("CREATE DATABASE YENI2013");
  s().run("CREATE TABLE YENI2013.dbo.BASKASININ (ID INT)");
  s().bagla("Defination_DB");
  EXPECT_EQ(Devret(s().s.oturum, girdi()).hata, "Bu İsimle Bir Firma veya Database Zaten Var.");
}

TEST_F(ButunlukTest, SourceKeepsEveryByte) {
  // Both files of the database, as they lie while the server runs and nobody is connected.
  const auto oku = [&] {
    s().s.oturum.Kayitlar.close();
    s().bagla("master");
    std::string out;
    for (const auto& girdi : std::filesystem::recursive_directory_iterator(sirket().folder))
      if (girdi.path().filename().string().rfind(kaynak, 0) == 0 && girdi.path().extension() != ".shm") {
        std::ifstream dosya(girdi.path(), std::ios::binary);
        out.append(std::istreambuf_iterator<char>(dosya), {});
      }
    return out;
  };
  oku();
  const std::string once = oku();
  ASSERT_GT(once.size(), 100'000U);
  devret(girdi());
  EXPECT_TRUE(oku() == once);
}

TEST_F(ButunlukTest, OldTargetIsSentToTheUpgrade) {
  s().bagla("Defination_DB");
  DevirGirdisi g = girdi(company::test::Sirket::baz);
  const DevirSonucu sonuc = Devret(s().s.oturum, g);
  EXPECT_NE(sonuc.hata.find("Önce firmayı güncelleyin"), std::string::npos) << sonuc.hata;
}

TEST_F(ButunlukTest, WarnsOfATargetThatHoldsData) {
  EXPECT_EQ(hedefUyarisi(s().s.oturum, girdi()), "");
  devret(girdi());
  EXPECT_EQ(hedefUyarisi(s().s.oturum, girdi()),
            "\"YENI2013\" firmasında veri var: 3 kartın üzerine yazılacak, 1 açılış kaydı "
            "yenilenecek.\nDevir yapılsın mı?");
}

}  // namespace
}  // namespace rollover::test
