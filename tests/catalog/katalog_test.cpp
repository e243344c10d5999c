#include "catalog/katalog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "catalog/create_database.h"
#include "catalog/sunucu_hazirla.h"
#include "session/statements.h"
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

// Statements with the texts of the tables, which other tests know, left out.
std::vector<std::string> kisa(const std::vector<std::string>& log) {
  std::vector<std::string> out;
  for (const std::string& line : log) {
    const bool table =
        line.find("> CREATE TABLE ") != std::string::npos || line.find("> ALTER ") != std::string::npos;
    const std::size_t end = line.find_first_of("(", 0);
    const std::string shown = table && line.find(" ADD ") != std::string::npos
                                  ? line.substr(0, line.find(" ADD ") + 5)
                              : table ? line.substr(0, end)
                                      : line;
    // One line for all columns of a table.
    if (!table || out.empty() || out.back() != shown) out.push_back(shown);
  }
  return out;
}

const std::vector<std::string> katalogGunlugu = {
    "Defination_DB> CREATE TABLE VRSYN ",
    "Defination_DB> CREATE TABLE sysDTYL ",
    "Defination_DB> INSERT INTO sysDTYL(sysdtyl) VALUES ('\\Data')",
    "Defination_DB> CREATE TABLE sysuslng ",
    "Defination_DB> " + std::string(catalog::refusedSupervisorRow),
    "Defination_DB> CREATE TABLE sysfrmlng ",
    "Defination_DB> CREATE TABLE sysusfrmlng ",
    "Defination_DB> CREATE TABLE Kullanici ",
    "Defination_DB> CREATE TABLE FILTRELER ",
    "Defination_DB> CREATE TABLE Kullanici_Menu ",
    "Defination_DB> CREATE TABLE DISVERITANIM ",
    "Defination_DB> CREATE TABLE OKODLABELS "};

TEST(Katalog, RunGoesOnBehindTheRefusedRow) {
  FreshServer s;
  session::Katalog_Bagla(s.oturum, "Defination_DB");
  catalog::Katalog_Olustur(s.oturum);
  EXPECT_EQ(s.boxes.texts(), (std::vector<std::string>{std::string("-2147217900 : ") + refusedNull.what(),
                                                       std::string(catalog::refusedSupervisorRow)}));
  EXPECT_EQ(kisa(s.server.connectionLogs.at(0)), katalogGunlugu);
}

TEST(SunucuHazirla, MakesCatalogAndSupervisorWithoutABox) {
  FreshServer s;
  const auto rapor = catalog::Sunucu_Hazirla(s.oturum, {" korvena ", " abc ", ""});
  EXPECT_EQ(rapor.sonuc, KurulumSonucu::Hazirlandi);
  EXPECT_EQ(rapor.metin, "Sunucu hazırlandı.");
  EXPECT_EQ(s.boxes.texts(), std::vector<std::string>{});
  EXPECT_EQ(s.oturum.kutular, &s.boxes);
  EXPECT_EQ(s.oturum.Son_Hata, "");
  EXPECT_EQ(s.oturum.Baglanti->parts().database, "Defination_DB");
  std::vector<std::string> expected = {
      "master> SELECT name FROM  sysdatabases where name='Defination_DB'",
      "master> SELECT filename FROM sysdatabases WHERE name='master'",
      "master> CREATE DATABASE Defination_DB ON ( NAME = Defination_DB,FILENAME = "
      "'C:\\SQL\\DATA\\Defination_DB.mdf', "
      "SIZE = 10, MAXSIZE = UNLIMITED, FILEGROWTH = 10 )  LOG ON ( NAME = 'Defination_DB_log',  FILENAME = "
      "'C:\\SQL\\DATA\\Defination_DB_log.ldf', SIZE = 5MB, MAXSIZE = UNLIMITED, FILEGROWTH = 10 )"};
  expected.insert(expected.end(), katalogGunlugu.begin(), katalogGunlugu.end());
  for (const char* eklenen :
       {"ALTER TABLE sysuslng ADD ", "ALTER TABLE sysfrmlng ADD ", "ALTER TABLE Kullanici ADD ",
        "CREATE TABLE KASIYERCONFIG ", "CREATE TABLE KSKISAYOL ", "CREATE TABLE TSRSQL "})
    expected.push_back(std::string("Defination_DB> ") + eklenen);
  expected.insert(expected.end(),
                  {"Defination_DB> INSERT INTO VRSYN(DEFDBVRSYN) VALUES ('2012.002')",
                   "Defination_DB> UPDATE sysDTYL SET sysdtyl='C:\\SQL\\DATA'",
                   // "abc" scrambled: code * 2 + position.
                   "Defination_DB> SET IDENTITY_INSERT sysuslng ON INSERT INTO "
                   "sysuslng(sysus_ID,sysus_nm,sysus_lgn,sysus,Yonetici,"
                   "sendusing,smtpserver,smtpserverport,smtpauthenticate,sendusername,sendpassword) VALUES "
                   "(1,'KORVENA','KORVENA','ÃÆÉ',1,1,' ',' ',1,' ',' ') SET IDENTITY_INSERT sysuslng OFF"});
  std::vector<std::string> sent;
  for (const auto& log : s.server.connectionLogs) sent.insert(sent.end(), log.begin(), log.end());
  EXPECT_EQ(kisa(sent), expected);
}

// The columns that the first text does not have come by one statement each.
TEST(SunucuHazirla, AddsEveryColumnOfTheLaterTexts) {
  FreshServer s;
  catalog::Sunucu_Hazirla(s.oturum, {"KORVENA", "abc", ""});
  for (const TableDef& table : catalogTables()) {
    std::vector<std::string> added;
    for (const auto& column : table.columns)
      if (table.stage == Stage::Base && column.stage == Stage::Upgrade)
        added.push_back("ALTER TABLE " + table.name + " ADD " + columnText(table, column, Stage::Upgrade));
    EXPECT_EQ(s.having("ALTER TABLE " + table.name + " "), added);
    EXPECT_EQ(s.having("CREATE TABLE " + table.name + " "),
              std::vector<std::string>{createStatement(table, table.stage)});
  }
}

TEST(SunucuHazirla, LeavesAnExistingCatalogAlone) {
  FreshServer s;
  s.server.rows("sysdatabases where name='Defination_DB'", {"name"}, {{"Defination_DB"}});
  const auto rapor = catalog::Sunucu_Hazirla(s.oturum, {"KORVENA", "abc", ""});
  EXPECT_EQ(rapor.sonuc, KurulumSonucu::ZatenVar);
  EXPECT_EQ(rapor.metin, "Bu sunucu daha önce hazırlanmış. Hiçbir şey değiştirilmedi.");
  EXPECT_EQ(s.server.statements.size(), 1u);
}

TEST(SunucuHazirla, AsksForAFolderThatTheServerDoesNotTell) {
  for (const std::vector<std::vector<db::Value>>& rows :
       {std::vector<std::vector<db::Value>>{}, std::vector<std::vector<db::Value>>{{"master.mdf"}}}) {
    FreshServer s;
    s.server.rows("SELECT filename", {"filename"}, rows);
    const auto rapor = catalog::Sunucu_Hazirla(s.oturum, {"KORVENA", "abc", ""});
    EXPECT_EQ(rapor.sonuc, KurulumSonucu::Reddedildi);
    EXPECT_EQ(rapor.metin, "Veri klasörü bulunamadı. Lütfen klasörü belirtiniz.");
    EXPECT_EQ(s.server.statements.size(), 2u);
  }
}

TEST(CreateDatabase, QuotesNamesInTextsOnly) {
  EXPECT_EQ(catalog::dataFile("A'B", "C:\\V"), "C:\\V\\A'B.mdf");
  EXPECT_EQ(
      catalog::createDatabaseStatement("A'B", "C:\\O'V"),
      "CREATE DATABASE A'B ON ( NAME = A'B,FILENAME = 'C:\\O''V\\A''B.mdf', SIZE = 10, MAXSIZE = UNLIMITED, "
      "FILEGROWTH = 10 )  LOG ON ( NAME = 'A''B_log',  FILENAME = 'C:\\O''V\\A''B_log.ldf', SIZE = 5MB, "
      "MAXSIZE = UNLIMITED, FILEGROWTH = 10 )");
}

TEST(SunucuHazirla, RefusesNamesAndPasswordsBeforeItConnects) {
  struct Case {
    const char *yonetici, *sifre, *metin;
  };
  const Case cases[] = {
      {"  ", "Gizli", "Yönetici adı boş olamaz."},
      {"ABCDEFGHIJKLMNOP", "Gizli", "Yönetici adı en çok 15 karakter olabilir."},
      {"ΩMEGA", "Gizli", "Yönetici adında Türkçe kod sayfasında (1254) olmayan karakter var."},
      {"KORVENA", " ", "Yönetici şifresi boş olamaz."},
      {"KORVENA", "Gizli12345678901", "Yönetici şifresi en çok 15 karakter olabilir."},
      {"KORVENA", "Gizliş",
       "Yönetici şifresinde Türkçe harf ya da bu şifrelemeye sığmayan karakter olamaz."}};
  for (const Case& c : cases) {
    FreshServer s;
    const auto rapor = catalog::Sunucu_Hazirla(s.oturum, {c.yonetici, c.sifre, "C:\\V"});
    EXPECT_EQ(rapor.sonuc, KurulumSonucu::Reddedildi) << c.metin;
    EXPECT_EQ(rapor.metin, c.metin);
    EXPECT_TRUE(s.server.openings.empty()) << c.metin;
  }
  EXPECT_EQ(catalog::yoneticiHatasi("İĞÜŞÖÇABCDEFGHI", "Gizli1234567890"), "");  // 15 of each
}

struct FailureCase {
  const char *name, *statement;
};
class FailureOnTheWay : public testing::TestWithParam<FailureCase> {};

TEST_P(FailureOnTheWay, DropsTheHalfMadeCatalog) {
  FreshServer s;
  s.server.fail(GetParam().statement, db::SqlError(db::ErrorKind::StatementRefused, 1105, "disk full"), 1);
  const auto rapor = catalog::Sunucu_Hazirla(s.oturum, {"KORVENA", "abc", "C:\\V"});
  EXPECT_EQ(rapor.sonuc, KurulumSonucu::Basarisiz);
  EXPECT_TRUE(rapor.metin.starts_with("Sunucu hazırlanamadı: ") && rapor.metin.ends_with("disk full"))
      << rapor.metin;
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
