#include "catalog/katalog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "catalog/sunucu_hazirla.h"
#include "support/fakes.h"

namespace {

using catalog::catalogTables;
using catalog::KurulumSonucu;
using catalog::Stage;
using catalog::TableDef;

const TableDef& katalogTablosu(std::string_view name) {
  const auto& all = catalogTables();
  return *std::find_if(all.begin(), all.end(), [&](const TableDef& t) { return t.name == name; });
}

const db::SqlError refusedNull(db::ErrorKind::StatementRefused, 515,
                               "Cannot insert the value NULL into column 'sysus_lgn'");

// A server that answers as a fresh one does: no catalog, and the one INSERT that it refuses.
struct FreshServer : support::FakeSurroundings {
  FreshServer() {
    server.fail(std::string(catalog::refusedSupervisorRow), refusedNull);
    server.rows("SELECT filename", {"filename"}, {{"C:\\SQL\\DATA\\master.mdf"}});
  }
  std::vector<std::string> having(std::string_view part) const {
    std::vector<std::string> out;
    std::copy_if(server.statements.begin(), server.statements.end(), std::back_inserter(out),
                 [&](const std::string& s) { return s.find(part) != std::string::npos; });
    return out;
  }
};

TEST(Katalog, FirstTextHasTenTables) {
  std::vector<std::string> names;
  for (const TableDef& table : catalogTables()) {
    if (table.stage == Stage::Base) {
      names.push_back(table.name);
    }
  }
  EXPECT_EQ(names,
            (std::vector<std::string>{"VRSYN", "sysDTYL", "sysuslng", "sysfrmlng", "sysusfrmlng", "Kullanici",
                                      "FILTRELER", "Kullanici_Menu", "DISVERITANIM", "OKODLABELS"}));
  EXPECT_EQ(katalogTablosu("FILTRELER").columns.size(), 201u);
  EXPECT_EQ(katalogTablosu("FILTRELER").column("Bas53"), nullptr);
  EXPECT_EQ(katalogTablosu("FILTRELER").column("Bit53"), nullptr);
}

TEST(Katalog, DefaultsStandInTheText) {
  const std::string text = createStatement(katalogTablosu("sysfrmlng"), Stage::Base);
  for (const char* part :
       {"HesapTakipTipi CHAR(8) NOT NULL DEFAULT 'Aylık'", "MakBuzOr SMALLINT NOT NULL DEFAULT -1",
        "MakBuzSol SMALLINT NOT NULL DEFAULT 200", "IrsTakipSuresi INT NOT NULL DEFAULT 7"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(text.find("Yazarkasa"), std::string::npos);
}

TEST(Katalog, RunGoesOnBehindTheRefusedRow) {
  FreshServer s;
  s.oturum.Baglanti = s.factory.make("");
  catalog::Katalog_Olustur(s.oturum);
  EXPECT_EQ(s.boxes.shown.size(), 2u);
  EXPECT_EQ(s.server.statements.size(), 12u);
  EXPECT_EQ(s.server.statements[2], "INSERT INTO sysDTYL(sysdtyl) VALUES ('\\Data')");
  EXPECT_EQ(s.server.statements.back().rfind("CREATE TABLE OKODLABELS", 0), 0u);
}

TEST(SunucuHazirla, MakesCatalogAndSupervisorWithoutABox) {
  FreshServer s;
  const auto rapor = catalog::Sunucu_Hazirla(s.oturum, {" korvena ", "abc", ""});
  EXPECT_EQ(rapor.sonuc, KurulumSonucu::Hazirlandi) << rapor.metin;
  EXPECT_TRUE(s.boxes.shown.empty());
  EXPECT_EQ(s.oturum.Son_Hata, "");
  EXPECT_EQ(s.oturum.Baglanti->parts().database, "Defination_DB");
  EXPECT_EQ(s.having("FILENAME = 'C:\\SQL\\DATA\\Defination_DB.mdf'").size(), 1u);
  EXPECT_EQ(s.having("UPDATE sysDTYL SET sysdtyl='C:\\SQL\\DATA'").size(), 1u);
  const auto supervisor = s.having("IDENTITY_INSERT sysuslng ON");
  ASSERT_EQ(supervisor.size(), 1u);
  // "abc" scrambled: code * 2 + position.
  EXPECT_NE(supervisor[0].find("VALUES (1,'KORVENA','KORVENA','ÃÆÉ',"), std::string::npos) << supervisor[0];
  for (const char* table : {"KASIYERCONFIG", "KSKISAYOL", "TSRSQL"}) {
    EXPECT_EQ(s.having(std::string("CREATE TABLE ") + table).size(), 1u) << table;
  }
  EXPECT_TRUE(s.having("OFFLINEAYARLAR").empty());
}

TEST(SunucuHazirla, LeavesAnExistingCatalogAlone) {
  FreshServer s;
  s.server.rows("sysdatabases where name='Defination_DB'", {"name"}, {{"Defination_DB"}});
  EXPECT_EQ(catalog::Sunucu_Hazirla(s.oturum, {"KORVENA", "abc", ""}).sonuc, KurulumSonucu::ZatenVar);
  EXPECT_EQ(s.server.statements.size(), 1u);
}

struct RefusedCase {
  const char *name, *yonetici, *sifre;
};
class RefusedInput : public testing::TestWithParam<RefusedCase> {};

TEST_P(RefusedInput, ChangesNothing) {
  FreshServer s;
  const auto rapor = catalog::Sunucu_Hazirla(s.oturum, {GetParam().yonetici, GetParam().sifre, "C:\\V"});
  EXPECT_EQ(rapor.sonuc, KurulumSonucu::Reddedildi);
  EXPECT_FALSE(rapor.metin.empty());
  EXPECT_EQ(rapor.metin.find("Gizli"), std::string::npos);
  EXPECT_TRUE(s.server.openings.empty());
}

INSTANTIATE_TEST_SUITE_P(SunucuHazirla, RefusedInput,
                         testing::Values(RefusedCase{"NoName", "  ", "Gizli"},
                                         RefusedCase{"LongName", "ABCDEFGHIJKLMNOP", "Gizli"},
                                         RefusedCase{"ForeignName", "ΩMEGA", "Gizli"},
                                         RefusedCase{"NoPassword", "KORVENA", " "},
                                         RefusedCase{"LongPassword", "KORVENA", "Gizli12345678901"},
                                         RefusedCase{"TurkishPassword", "KORVENA", "Gizliş"}),
                         [](const auto& info) { return std::string(info.param.name); });

struct FailureCase {
  const char *name, *statement;
};
class FailureOnTheWay : public testing::TestWithParam<FailureCase> {};

TEST_P(FailureOnTheWay, DropsTheHalfMadeCatalog) {
  FreshServer s;
  s.server.fail(GetParam().statement, db::SqlError(db::ErrorKind::StatementRefused, 1105, "disk full"), 1);
  const auto rapor = catalog::Sunucu_Hazirla(s.oturum, {"KORVENA", "abc", "C:\\V"});
  EXPECT_EQ(rapor.sonuc, KurulumSonucu::Basarisiz);
  EXPECT_NE(rapor.metin.find("disk full"), std::string::npos);
  EXPECT_EQ(s.having("DROP DATABASE Defination_DB").size(), 1u);
  EXPECT_EQ(s.oturum.Baglanti->parts().database, "master");
  EXPECT_TRUE(s.boxes.shown.empty());
}

INSTANTIATE_TEST_SUITE_P(SunucuHazirla, FailureOnTheWay,
                         testing::Values(FailureCase{"Table", "CREATE TABLE Kullanici "},
                                         FailureCase{"Columns", "ALTER TABLE sysfrmlng"},
                                         FailureCase{"Supervisor", "IDENTITY_INSERT"}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(SunucuHazirla, ReportsARefusedCreation) {
  FreshServer s;
  s.server.fail("CREATE DATABASE", db::SqlError(db::ErrorKind::StatementRefused, 5170, "file exists"));
  EXPECT_EQ(catalog::Sunucu_Hazirla(s.oturum, {"KORVENA", "abc", "C:\\V"}).sonuc, KurulumSonucu::Basarisiz);
  EXPECT_TRUE(s.having("DROP DATABASE").empty());
}

}  // namespace
