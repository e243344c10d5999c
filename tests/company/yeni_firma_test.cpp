// A fresh embedded server, its catalog and a company, without a single message box.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <regex>
#include <set>

#include "catalog/sunucu_hazirla.h"
#include "company/schema/schema.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "support/fakes.h"
#include "support/firma_karti.h"

namespace {

namespace fs = std::filesystem;
namespace schema = company::schema;

class YeniFirma : public testing::Test {
 protected:
  YeniFirma() {
    std::string name = (fs::path(testing::TempDir()) / "yeni_firma_XXXXXX").string();
    folder = mkdtemp(name.data());
    engine::Server::create(folder / "veri", "sa", "gizli");
    factory = db::makeConnectionFactory(folder);
    s.oturum.surucu = factory.get();
    s.oturum.Server_Adi = "(yerel)";
    s.oturum.Tanim_DB_Versiyon = "2012.002";
    s.platform.folder = ZEMBERA_DATA;
  }
  ~YeniFirma() override {
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
    factory.reset();
    fs::remove_all(folder);
  }

  void hazirla() {
    const auto rapor = catalog::Sunucu_Hazirla(s.oturum, {"Korvena", "abc", ""});
    ASSERT_EQ(rapor.sonuc, catalog::KurulumSonucu::Hazirlandi) << rapor.metin;
    s.oturum.Veri_Klasoru = text("SELECT sysdtyl FROM sysDTYL");
    ASSERT_FALSE(s.oturum.Veri_Klasoru.empty());
  }
  bool firmaYarat(const std::string& ad, bool plan = false) {
    s.oturum.Yeni_Kayit = true;
    auto kart = support::firmaKarti(ad);
    kart.Firma_Unvani = "Ali'nin Dükkanı";
    kart.StandartHesapPlani = plan;
    return company::Kaydet(s.oturum, kart);
  }
  // Rows joined by newlines, values by '|'.
  std::string rows(const std::string& database, const std::string& sql) {
    session::Katalog_Bagla(s.oturum, database);
    const auto found = s.oturum.Baglanti->query(sql);
    std::string out;
    for (std::int64_t r = 0; found && r < found->count(); ++r, out += '\n')
      for (std::size_t c = 0; c < found->fields().size(); ++c)
        out += found->fields()[c].name + "=" + found->value(r, static_cast<int>(c)).text() + "|";
    return out;
  }
  // All that the catalog holds but the users, the server's databases, the files of its folder.
  std::string ayaktaKalan() {
    std::string out = rows("master", "SELECT name FROM sysdatabases ORDER BY name");
    for (const char* table : {"sysfrmlng", "sysusfrmlng", "Kullanici", "Kullanici_Menu"})
      out += rows("Defination_DB", std::string("SELECT * FROM ") + table);
    session::Katalog_Bagla(s.oturum, "master");
    std::set<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder / "veri")) files.insert(entry.path().filename());
    for (const std::string& file : files) out += file + "\n";
    return out;
  }
  // First value of the first row.
  std::string text(const std::string& sql) {
    const auto rows = s.oturum.Baglanti->query(sql);
    return rows && rows->count() > 0 ? rows->value(0, 0).trimmed() : "";
  }
  void noBoxes() const {
    for (const std::string& shown : s.boxes.texts()) {
      ADD_FAILURE() << shown.substr(0, 600);
    }
  }

  fs::path folder;
  support::FakeSurroundings s;
  std::unique_ptr<db::ConnectionFactory> factory;
};

TEST_F(YeniFirma, ServerIsPreparedOnce) {
  hazirla();
  EXPECT_EQ(text("SELECT sysus_nm FROM sysuslng WHERE sysus_ID=1"), "KORVENA");
  EXPECT_EQ(text("SELECT sysus FROM sysuslng"), "ÃÆÉ");
  EXPECT_EQ(text("SELECT DEFDBVRSYN FROM VRSYN"), "2012.002");
  EXPECT_EQ(catalog::Sunucu_Hazirla(s.oturum, {"Baska", "abc", ""}).sonuc, catalog::KurulumSonucu::ZatenVar);
  noBoxes();
}

TEST_F(YeniFirma, CompanyIsMadeWithoutABox) {
  hazirla();
  EXPECT_TRUE(firmaYarat("ORNEK2012"));
  noBoxes();
  ASSERT_EQ(s.oturum.Son_Hata, "");
  session::Katalog_Bagla(s.oturum, "ORNEK2012");
  EXPECT_EQ(text("SELECT COUNT(*) FROM sysobjects WHERE type='U'"), "127");
  EXPECT_EQ(text("SELECT COUNT(*) FROM sysobjects WHERE type='V'"), "80");
  EXPECT_EQ(text("SELECT COUNT(*) FROM sysobjects WHERE type='TR'"), "23");
  EXPECT_EQ(text("SELECT COUNT(*) FROM FIYATTANIM WHERE YR_Kullanici=1 AND YR_Tarih='03/14/2012'"), "10");
  EXPECT_EQ(text("SELECT IP FROM IP_BARKOD"), "00000000000000000000000");
  session::Katalog_Bagla(s.oturum, "Defination_DB");
  EXPECT_EQ(text("SELECT sysfrm_nm FROM sysfrmlng WHERE sysfrm_dbnm='ORNEK2012'"), "Ali'nin Dükkanı");
  EXPECT_EQ(text("SELECT KHE FROM Kullanici WHERE Kullanici_ID=1"), "11111111111111");
  EXPECT_EQ(text("SELECT COUNT(*) FROM sysusfrmlng WHERE sysus_ID=1"), "1");
}

TEST_F(YeniFirma, ViewsCanBeRead) {
  hazirla();
  ASSERT_TRUE(firmaYarat("ORNEK2012"));
  session::Katalog_Bagla(s.oturum, "ORNEK2012");
  for (const std::string& view : schema::viewOrder(schema::Stage::Base)) {
    EXPECT_NO_THROW(s.oturum.Baglanti->query("SELECT * FROM " + view)) << view;
  }
}

TEST_F(YeniFirma, ChartIsLoadedWhole) {
  hazirla();
  ASSERT_TRUE(firmaYarat("ORNEK2012", true));
  noBoxes();
  session::Katalog_Bagla(s.oturum, "ORNEK2012");
  EXPECT_EQ(text("SELECT COUNT(*) FROM MUHKART"), text("SELECT COUNT(*) FROM MUHBAKIYE"));
  EXPECT_EQ(text("SELECT MHesap_Ad FROM MUHKART WHERE MHesap_Kod='100'"), "KASA");
  EXPECT_EQ(text("SELECT AnaHesaptir FROM MUHKART WHERE MHesap_Kod='100'"), "1");
  EXPECT_EQ(text("SELECT COUNT(*) FROM MUHASEBEMALITABLOKART"), "2");
  EXPECT_NE(text("SELECT COUNT(*) FROM MUHASEBEMALITABLOHAREKET"), "0");
}

TEST_F(YeniFirma, ACreationThatIsGivenUpLeavesNothing) {
  hazirla();
  ASSERT_TRUE(firmaYarat("KOMSU2012", true));
  const int asked = s.progress.asked;
  const std::string before = ayaktaKalan();
  // Before the database, before the first table, in the schema, at its end, in the chart, at the last row.
  for (const int at : {0, 1, 90, 230, 300, asked - 1}) {
    s.progress.asked = 0;
    s.progress.cancelAt = at;
    EXPECT_FALSE(firmaYarat("YENI2012", true)) << at;
    EXPECT_EQ(ayaktaKalan(), before) << at;
    noBoxes();
  }
  s.progress.cancelAt = -1;
  ASSERT_TRUE(firmaYarat("YENI2012", true));
  EXPECT_EQ(rows("YENI2012", "SELECT * FROM MUHKART"), rows("KOMSU2012", "SELECT * FROM MUHKART"));
}

// What a broken creation leaves in the list is nobody's: the new company has the rows of any new company.
TEST_F(YeniFirma, ARowThatWasLeftBehindIsWrittenAnew) {
  hazirla();
  ASSERT_TRUE(firmaYarat("ORNEK2012"));
  const auto company = [&](const std::string& id) {
    std::string out;
    for (const char* table : {"sysfrmlng WHERE sysfrm_ID=", "sysusfrmlng WHERE sysfrm_ID=",
                              "Kullanici WHERE Firma_ID=", "Kullanici_Menu WHERE Firma_ID="})
      out += rows("Defination_DB", std::string("SELECT * FROM ") + table + id);
    for (const std::string& key : {"sysfrm_ID=" + id + "|", "Firma_ID=" + id + "|"})
      for (auto at = out.find(key); at != std::string::npos; at = out.find(key)) out.erase(at, key.size());
    return std::regex_replace(out, std::regex("\nID=[0-9]+"), "");
  };
  const std::string fresh = company("1");
  EXPECT_NE(fresh.find("Kullanici_Ad=KORVENA"), std::string::npos);
  s.oturum.Baglanti->execute(
      "INSERT INTO sysuslng (sysus_nm,sysus_lgn) VALUES ('ALI','ALI')\n"
      "INSERT INTO sysusfrmlng (sysfrm_ID,sysus_ID) VALUES (1,2)\n"
      "INSERT INTO Kullanici (Firma_ID,Kullanici_ID,Kullanici_Ad,KHE) VALUES (1,2,'ALI','1')\n"
      "INSERT INTO Kullanici_Menu (Kullanici_ID,Firma_ID,Menu) VALUES (2,1,'M')\n"
      "UPDATE Kullanici SET KHE='0',Def_Kasa_ID=9 WHERE Kullanici_ID=1\n"
      "UPDATE sysfrmlng SET Adres='Eski Yol',Tel1='555',DefKDV=8,MuafGun=30,TransferFirma='X',PuanVar=1");
  s.oturum.Yeni_Kayit = false;
  session::Katalog_Bagla(s.oturum, "master");
  s.oturum.Baglanti->execute("DROP DATABASE ORNEK2012");
  ASSERT_TRUE(firmaYarat("ORNEK2012"));
  noBoxes();
  EXPECT_EQ(company("2"), fresh);
  EXPECT_EQ(company("1"), "");
}

TEST_F(YeniFirma, NameIsTakenOnce) {
  hazirla();
  ASSERT_TRUE(firmaYarat("ORNEK2012"));
  ASSERT_TRUE(firmaYarat("ORNEK2012"));
  EXPECT_EQ(s.oturum.Son_Hata, "Bu İsimle Bir Firma Zaten Var.");
  session::Katalog_Bagla(s.oturum, "Defination_DB");
  EXPECT_EQ(text("SELECT COUNT(*) FROM sysfrmlng"), "1");
}

}  // namespace
