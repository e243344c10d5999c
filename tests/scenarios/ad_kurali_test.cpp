// Names of companies that differ in the case of a letter, or in its dot alone: card, shell and console hold
// them for one or for two exactly as the server does.
#include <gtest/gtest.h>

#include <fstream>

#include "session/firma_bul.h"
#include "session/konsol.h"
#include "session/statements.h"
#include "support/fakes.h"
#include "support/firma_karti.h"
#include "support/komut_satiri.h"
#include "support/surucu.h"

namespace {

namespace fs = std::filesystem;

class AdKurali : public testing::Test {
 protected:
  support::KomutSatiri cli{support::surucuYap};
  std::unique_ptr<db::ConnectionFactory> surucu;
  support::FakeSurroundings s;

  void SetUp() override {
    ASSERT_EQ(cli.calistir({"kur", "--sunucu", "(yerel)"}, "gizli\nFabrika1\n"), 0) << cli.err;
    surucu = support::surucuYap(cli.dizin);
    s.oturum.surucu = surucu.get();
    s.oturum.Server_Adi = "(yerel)";
    s.oturum.Tanim_DB_Versiyon = "2012.002";
    s.oturum.Veri_Klasoru = (cli.dizin / "veri").string();
    s.platform.folder = ZEMBERA_DATA;
  }
  void TearDown() override {
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
  }

  int olustur(const std::string& ad) {
    return cli.calistir({"firma-olustur", "--ad", ad, "--kod", "00001", "--unvan", ad, "--evet"});
  }
  std::string kartla(const std::string& ad) {
    auto kart = support::firmaKarti(ad, "00002");
    s.oturum.Yeni_Kayit = true;
    s.boxes.answers = {true};
    company::Kaydet(s.oturum, kart);
    s.boxes.answers.clear();
    return s.oturum.Son_Hata;
  }
  std::string sql(const std::string& database, const std::string& statement) {
    EXPECT_EQ(cli.calistir({"sql", "--db", database, statement}), 0) << statement << " " << cli.err;
    return cli.out;
  }
  std::string liste() { return sql("Defination_DB", "SELECT sysfrm_dbnm FROM sysfrmlng ORDER BY sysfrm_ID"); }
  std::string veritabanlari() {
    return sql("master", "SELECT name FROM sysdatabases WHERE dbid>5 ORDER BY dbid");
  }
  void kayitEkle(const std::string& ad) {
    sql("Defination_DB",
        "INSERT INTO sysfrmlng (sysfrm_kd,sysfrm_nm,sysfrm_dbnm) VALUES ('9','HAYALET','" + ad + "')");
  }
  session::KomutSonucu konsoldaSil(const std::string& ad) {
    for (const auto& dugum : session::Firma_Listesi_Doldur(s.oturum))
      if (dugum.text == ad) return session::MNSil(s.oturum, dugum);
    ADD_FAILURE() << ad;
    return {};
  }
};

const std::string zatenVar = "Bu İsimle Bir Firma Zaten Var.";

TEST_F(AdKurali, OneRuleForEveryLetterInCardAndShell) {
  ASSERT_EQ(olustur("ISIL12"), 0) << cli.err;
  sql("ISIL12", "CREATE TABLE ISARET (A INT) INSERT INTO ISARET VALUES (7)");
  for (const char* ayni : {"isil12", "ISIL12", "Isil12", "iSIL12"}) {
    EXPECT_EQ(olustur(ayni), 1) << ayni;
    EXPECT_NE(cli.err.find(zatenVar), std::string::npos) << ayni << cli.err;
    EXPECT_EQ(kartla(ayni), zatenVar) << ayni;
  }
  EXPECT_EQ(liste(), "sysfrm_dbnm\nISIL12\n");
  // Letters that differ by their dot are other letters.
  ASSERT_EQ(olustur("İSİL12"), 0) << cli.err;
  EXPECT_EQ(kartla("ısıl12"), "");
  EXPECT_EQ(liste(), "sysfrm_dbnm\nISIL12\nİSİL12\nısıl12\n");
  EXPECT_EQ(veritabanlari(), "name\nISIL12\nİSİL12\nısıl12\n");
  EXPECT_EQ(sql("Defination_DB", "SELECT sysfrm_ID FROM sysusfrmlng ORDER BY sysfrm_ID"),
            "sysfrm_ID\n1\n2\n3\n");
  // Each is deleted alone, whatever case its name is typed in.
  ASSERT_EQ(cli.calistir({"firma-sil", "--ad", "İSİl12", "--evet"}), 0) << cli.err;
  EXPECT_EQ(veritabanlari(), "name\nISIL12\nısıl12\n");
  s.boxes.answers = {true};
  EXPECT_TRUE(konsoldaSil("ısıl12").listeyiYenile);
  EXPECT_EQ(veritabanlari(), "name\nISIL12\n");
  EXPECT_EQ(cli.calistir({"firma-sil", "--ad", "ısıl12", "--evet"}), 1);
  EXPECT_EQ(cli.calistir({"firma-sil", "--ad", "İSİL12", "--evet"}), 1);
  EXPECT_EQ(sql("isil12", "SELECT COUNT(*) AS n FROM ISARET"), "n\n1\n");
  ASSERT_EQ(cli.calistir({"firma-sil", "--ad", "isil12", "--evet"}), 0) << cli.err;
  EXPECT_EQ(veritabanlari(), "name\n");
  EXPECT_EQ(liste(), "sysfrm_dbnm\n");
}

// Two companies whose names the catalog's collation holds for one: every command reaches the one that is
// meant, in either case, and nothing of the other.
TEST_F(AdKurali, CommandsReachTheCompanyThatIsMeant) {
  const std::string i = "ISIL12", j = "ısıl12", g = "KORVENA";
  ASSERT_EQ(olustur(i), 0) << cli.err;
  EXPECT_EQ(cli.calistir({"parametre", "--ad", j, "--yaz", "PosVar=0"}), 1);
  for (const std::vector<std::string>& komut :
       {std::vector<std::string>{"yetki-goster", "--kullanici", g, "--firma", j},
        {"yetki-cizelge", "--firma", j},
        {"kasiyer-goster", "--kullanici", g, "--firma", j},
        {"kullanici-ekle", "--ad", "ALI", "--firma", j},
        {"numara", "--ad", j},
        {"tanim", "satici", "--ad", j},
        {"maliyet", "--ad", j, "--stok", "X"},
        {"devir", "--kaynak", j, "--yeni-ad", "YENI", "--dene", "--evet"},
        {"ornek-veri", "--ad", j},
        {"guncelle", "--ad", j}})
    EXPECT_EQ(cli.calistir(komut, "abcd\n"), 1) << komut[0] << cli.out;
  EXPECT_EQ(sql("Defination_DB", "SELECT COUNT(*) AS n FROM sysuslng"), "n\n1\n");

  ASSERT_EQ(kartla(j), "");
  sql("Defination_DB", "UPDATE sysfrmlng SET DBVRSYN='eski',Mali_Yil_Baslangic='20100101'");
  sql("Defination_DB", "UPDATE sysfrmlng SET Mali_Yil_Baslangic='20110101' WHERE sysfrm_ID=2");
  ASSERT_EQ(cli.calistir({"parametre", "--ad", j, "--yaz", "PosVar=0"}), 0) << cli.err;
  ASSERT_EQ(cli.calistir({"parametre-kopyala", "--kaynak", "isil12", "--hedef", j, "--kolon", "PosVar"}), 0)
      << cli.err;
  ASSERT_EQ(cli.calistir({"parametre", "--ad", "isil12", "--yaz", "PosVar=0"}), 0) << cli.err;
  ASSERT_EQ(
      cli.calistir({"yetki-yaz", "--kullanici", g, "--firma", j, "-i", "-"}, "{\"KHE\": \"10101010101010\"}"),
      1);  // the supervisor's stay
  ASSERT_EQ(cli.calistir({"kullanici-ekle", "--ad", "ALI", "--firma", j}, "abcd\n"), 0) << cli.err;
  ASSERT_EQ(cli.calistir({"kullanici-ekle", "--ad", "VELI", "--firma", "iSIL12," + j}, "abcd\n"), 0)
      << cli.err;
  for (const char* kim : {"ALI", "VELI"})
    ASSERT_EQ(cli.calistir({"yetki-yaz", "--kullanici", kim, "--firma", j, "-i", "-"},
                           "{\"KHE\": \"10101010101010\"}"),
              0)
        << cli.err;
  ASSERT_EQ(cli.calistir({"kasiyer-yaz", "--kullanici", "VELI", "--firma", j, "-i", "-"},
                         "{\"TerPort\": \"COM3\"}"),
            0)
      << cli.err;
  ASSERT_EQ(cli.calistir({"numara", "--ad", j, "--yaz", "SATFATFIS=7"}), 0) << cli.err;
  ASSERT_EQ(cli.calistir({"guncelle", "--ad", j}), 0) << cli.err;
  EXPECT_EQ(sql("Defination_DB", "SELECT sysfrm_dbnm,PosVar,DBVRSYN FROM sysfrmlng ORDER BY sysfrm_ID"),
            "sysfrm_dbnm\tPosVar\tDBVRSYN\nISIL12\t0\teski\nısıl12\t1\t2012.002\n");
  EXPECT_EQ(sql("Defination_DB",
                "SELECT u.sysus_nm,k.Firma_ID,k.KHE,k.TerPort FROM Kullanici k,sysuslng u WHERE "
                "u.sysus_ID=k.Kullanici_ID AND u.sysus_ID>1 ORDER BY u.sysus_ID,k.Firma_ID"),
            "sysus_nm\tFirma_ID\tKHE\tTerPort\nALI\t2\t10101010101010\tNULL\nVELI\t1\t11111111111111\tNULL\n"
            "VELI\t2\t10101010101010\tCOM3\n");
  EXPECT_EQ(sql(i, "SELECT IP FROM IP_SATFATFIS"), "IP\n0000000000\n");
  EXPECT_EQ(sql(j, "SELECT IP FROM IP_SATFATFIS"), "IP\n7\n");
  ASSERT_EQ(cli.calistir({"yetki-cizelge", "--firma", j}), 0) << cli.err;
  EXPECT_EQ(cli.out.substr(0, cli.out.find('\n')), "\xEF\xBB\xBFYetki;Kolon;Yer;ALI;KORVENA;VELI\r");
  // A rollover reads the period and the rows of the one, and takes the other's name for no new company.
  ASSERT_EQ(cli.calistir({"devir", "--kaynak", j, "--yeni-ad", "SONRA", "--evet"}), 0) << cli.err;
  EXPECT_EQ(sql("SONRA", "SELECT IP FROM IP_SATFATFIS"), sql(j, "SELECT IP FROM IP_SATFATFIS"));
  EXPECT_EQ(cli.calistir({"devir", "--kaynak", j, "--yeni-ad", "isil12", "--evet"}), 1);
  EXPECT_EQ(cli.calistir({"denetle"}), 0) << cli.err;
}

TEST_F(AdKurali, RowThatIsNotTheDatabasesOwnGoesWithoutIt) {
  ASSERT_EQ(olustur("FIRMA2012"), 0) << cli.err;
  sql("FIRMA2012", "CREATE TABLE ISARET (A INT) INSERT INTO ISARET VALUES (7)");
  kayitEkle("firma2012");
  const std::string soru =
      "\"firma2012\" kaydı, listedeki \"FIRMA2012\" firmasının veritabanını gösteriyor. Bu veritabanı "
      "silinmeyecek.\nYalnızca bu kayıt listeden silinsin mi?";
  s.boxes.answers = {true, false};
  EXPECT_FALSE(konsoldaSil("firma2012").listeyiYenile);
  EXPECT_EQ(s.boxes.shown.at(1).text, soru);
  EXPECT_EQ(liste(), "sysfrm_dbnm\nFIRMA2012\nfirma2012\n");
  s.boxes.answers = {true, true};
  EXPECT_TRUE(konsoldaSil("firma2012").listeyiYenile);
  EXPECT_EQ(liste(), "sysfrm_dbnm\nFIRMA2012\n");
  EXPECT_EQ(sql("FIRMA2012", "SELECT COUNT(*) AS n FROM ISARET"), "n\n1\n");

  kayitEkle("Firma2012");
  kayitEkle("FIRMA2012");  // twice the same
  ASSERT_EQ(cli.calistir({"firma-sil", "--ad", "Firma2012", "--evet"}), 0) << cli.err;
  ASSERT_EQ(cli.calistir({"firma-sil", "--ad", "FIRMA2012", "--evet"}), 0) << cli.err;
  EXPECT_EQ(sql("FIRMA2012", "SELECT COUNT(*) AS n FROM ISARET"), "n\n1\n");
  EXPECT_EQ(liste(), "sysfrm_dbnm\nFIRMA2012\n");
  ASSERT_EQ(cli.calistir({"firma-sil", "--ad", "FIRMA2012", "--evet"}), 0) << cli.err;
  EXPECT_EQ(veritabanlari(), "name\n");
}

TEST_F(AdKurali, FilesOfAnotherSpellingAreInTheWay) {
  std::ofstream(cli.dizin / "veri" / "Magaza.MDF") << "x";
  EXPECT_EQ(olustur("MAGAZA"), 1);
  EXPECT_NE(cli.err.find("Ama Dosyası var."), std::string::npos) << cli.err;
  EXPECT_EQ(liste(), "sysfrm_dbnm\n");
  // The server's own answer, when nobody looked before.
  EXPECT_EQ(cli.calistir({"sql", "--db", "master", "CREATE DATABASE MAGAZA"}), 1);
  EXPECT_NE(cli.err.find("5170"), std::string::npos) << cli.err;
  fs::remove(cli.dizin / "veri" / "Magaza.MDF");
  EXPECT_EQ(olustur("MAGAZA"), 0) << cli.err;
}

// What the catalog of a database knows by name compares by the rule of its names.
TEST_F(AdKurali, ExistenceTestsAnswerAsTheStatementsDo) {
  sql("master", "CREATE DATABASE IKI");
  sql("IKI", "CREATE TABLE IZIN (ID INT, [Şık] INT)");
  struct Case {
    const char* name;
    int there;
  };
  for (const Case& c : {Case{"IZIN", 1}, {"izin", 1}, {"İZİN", 0}, {"ızın", 0}, {"izin   ", 1}}) {
    const std::string n = std::to_string(c.there);
    EXPECT_EQ(sql("IKI", std::string("SELECT COUNT(*) AS n FROM sysobjects WHERE name='") + c.name + "'"),
              "n\n" + n + "\n")
        << c.name;
    EXPECT_EQ(sql("IKI",
                  std::string("SELECT CASE WHEN OBJECT_ID('") + c.name + "') IS NULL THEN 0 ELSE 1 END AS n"),
              "n\n" + (std::string(c.name).ends_with(' ') ? "0" : n) + "\n")
        << c.name;
  }
  EXPECT_EQ(sql("IKI", "SELECT COUNT(*) AS n FROM syscolumns WHERE name='id' OR name='şık'"), "n\n1\n");
  EXPECT_EQ(sql("IKI", "SELECT COUNT(*) AS n FROM sysobjects WHERE name IN ('izin')"), "n\n1\n");
  for (const auto& [name, there] : {std::pair{"iki", "1"}, {"ıkı", "0"}, {"İKİ", "0"}})
    EXPECT_EQ(sql("master", std::string("SELECT COUNT(*) AS n FROM sysdatabases WHERE name='") + name + "'"),
              std::string("n\n") + there + "\n")
        << name;
  EXPECT_EQ(sql("IKI", "SELECT name FROM sysobjects WHERE type='U' AND name LIKE 'iz%'"), "name\nIZIN\n");
}

}  // namespace
