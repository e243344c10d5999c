#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <thread>

#include "platform/files.h"
#include "session/sys_inf.h"
#include "support/fakes.h"
#include "support/komut_satiri.h"

namespace {

using testing::Test;

class KomutTest : public Test {
 protected:
  support::FakeServer server;
  support::KomutSatiri cli{[this](const auto&) { return std::make_unique<support::FakeFactory>(server); }};

  void SetUp() override { session::Sys_Inf_Yaz(cli.dizin, {"SUNUCU", "sa", "gizli", false}); }
  void rows(const std::string& part, const std::string& value) { server.rows(part, {"a"}, {{value}}); }
};

TEST_F(KomutTest, HelpOfEveryCommandIsTurkish) {
  for (const char* command : {"kur",
                              "sql",
                              "firma-listele",
                              "firma-olustur",
                              "firma-sil",
                              "guncelle",
                              "ornek-veri",
                              "sema",
                              "parametre",
                              "parametre-kopyala",
                              "parametre-karsilastir",
                              "numara",
                              "tanim",
                              "kullanici-listele",
                              "kullanici-ekle",
                              "kullanici-degistir",
                              "kullanici-sil",
                              "yetki-goster",
                              "yetki-yaz",
                              "yetki-kopyala",
                              "yetki-karsilastir",
                              "yetki-cizelge",
                              "kasiyer-goster",
                              "kasiyer-yaz"}) {
    EXPECT_EQ(cli.calistir({command, "--help"}), 0) << command;
    EXPECT_NE(cli.out.find("Kullanım: zembera-cli " + std::string(command)), std::string::npos) << cli.out;
    EXPECT_NE(cli.out.find("Çıkış kodları"), std::string::npos) << cli.out;
    for (const char* english : {"Usage", "Options", "REQUIRED", "TEXT", "Print"})
      EXPECT_EQ(cli.out.find(english), std::string::npos) << cli.out;
  }
}

TEST_F(KomutTest, WrongUseEndsWithTwoAndATurkishText) {
  struct Case {
    std::vector<std::string> arguments;
    const char* text;
  };
  const Case cases[] = {{{}, "Komut verilmedi."},
                        {{"yok"}, "Bilinmeyen komut: yok"},
                        {{"sql"}, "Zorunlu seçenek verilmedi: --db"},
                        {{"sql", "--db"}, "Seçeneğin değeri eksik"},
                        {{"sql", "--db", "x", "--yok"}, "Beklenmeyen bağımsız değişken: --yok"},
                        {{"sql", "--db", "x", "--bicim", "xml", "SELECT 1"}, "Bilinmeyen biçim: xml"},
                        {{"sql", "--db", "x", "-i", "f", "SELECT 1"}, "birlikte verilemez"},
                        {{"firma-sil"}, "Zorunlu seçenek verilmedi: --ad"},
                        {{"guncelle"}, "Zorunlu seçenek verilmedi: --ad"},
                        {{"ornek-veri"}, "Zorunlu seçenek verilmedi: --ad"},
                        {{"ornek-veri", "--ad", "a", "--olcek", "0"}, "Ölçek 1 ile 1000"},
                        {{"ornek-veri", "--ad", "a", "--olcek", "1001"}, "Ölçek 1 ile 1000"},
                        {{"ornek-veri", "--ad", "a", "--olcek", "2x"}, "Ölçek 1 ile 1000"},
                        {{"ornek-veri", "--ad", "a", "--tohum", "-1"}, "Tohum bir sayı"},
                        {{"sema"}, "Ya --ad AD ya da"},
                        {{"sema", "--karsilastir", "a"}, "Ya --ad AD ya da"},
                        {{"sema", "--ad", "a", "--karsilastir", "a", "b"}, "Ya --ad AD ya da"},
                        {{"sema", "--ad", "a", "--bicim", "xml"}, "Bilinmeyen biçim: xml"}};
  for (const Case& c : cases) {
    EXPECT_EQ(cli.calistir(c.arguments), 2) << c.text;
    EXPECT_NE(cli.err.find(c.text), std::string::npos) << cli.err;
    EXPECT_EQ(cli.out, "");
  }
  EXPECT_TRUE(server.statements.empty());
}

TEST_F(KomutTest, MissingParameterFileIsTold) {
  std::filesystem::remove(session::sysInfYolu(cli.dizin));
  for (const char* command : {"sql", "firma-listele"}) {
    std::vector<std::string> arguments{command};
    if (std::string(command) == "sql") arguments.insert(arguments.end(), {"--db", "x", "SELECT 1"});
    EXPECT_EQ(cli.calistir(arguments), 1);
    EXPECT_NE(cli.err.find("zembera-cli kur"), std::string::npos) << cli.err;
  }
}

TEST_F(KomutTest, SqlWritesResultsBatchByBatch) {
  rows("BIR", "x");
  rows("IKI", "y");
  EXPECT_EQ(cli.calistir({"sql", "--db", "D", "SELECT BIR\nGO 2\nSELECT IKI"}), 0);
  EXPECT_EQ(cli.out, "a\nx\n\na\nx\n\na\ny\n");
  EXPECT_EQ(cli.err, "(1 satır)\n(1 satır)\n(1 satır)\n");
  EXPECT_EQ(server.openings.back().database, "D");
}

TEST_F(KomutTest, SqlReadsFileAndStandardInput) {
  rows("ışık", "x");
  EXPECT_EQ(cli.calistir({"sql", "--db", "D"}, "\xEF\xBB\xBFSELECT 'ışık'"), 0);
  EXPECT_EQ(cli.out, "a\nx\n");
  std::ofstream(cli.dizin / "a.sql") << "SELECT '\xFD\xFE\xFDk'";  // code page 1254
  EXPECT_EQ(cli.calistir({"sql", "--db", "D", "-i", (cli.dizin / "a.sql").string()}), 0);
  EXPECT_EQ(cli.out, "a\nx\n");
  for (const auto& unreadable : {cli.dizin / "yok.sql", cli.dizin}) {
    EXPECT_EQ(cli.calistir({"sql", "--db", "D", "-i", unreadable.string()}), 1);
    EXPECT_EQ(cli.err, "Dosya okunamadı: " + unreadable.string() + "\n");
  }
}

// What a shell hands over as <(command) or /dev/stdin is a pipe with a name.
TEST_F(KomutTest, SqlReadsAPipe) {
  rows("BIR", "x");
  const std::string pipe = (cli.dizin / "boru").string();
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  std::thread writer([&] { std::ofstream(pipe) << "SELECT BIR"; });
  EXPECT_EQ(cli.calistir({"sql", "--db", "D", "-i", pipe}), 0) << cli.err;
  writer.join();
  EXPECT_EQ(cli.out, "a\nx\n");
}

TEST_F(KomutTest, ErrorEndsItsBatchOnly) {
  rows("BIR", "x");
  server.fail("KOTU", db::SqlError(db::ErrorKind::StatementRefused, 208, "Invalid\r\nobject"));
  const std::string script = "KOTU\nGO\nSELECT BIR";
  EXPECT_EQ(cli.calistir({"sql", "--db", "D", script}), 1);
  EXPECT_EQ(cli.out, "a\nx\n");
  EXPECT_EQ(cli.err, "Msg 208: Invalid object\n(1 satır)\n");

  EXPECT_EQ(cli.calistir({"sql", "--db", "D", "--dur", script}), 1);
  EXPECT_EQ(cli.out, "");

  EXPECT_EQ(cli.calistir({"sql", "--db", "D", "--yanki", script}), 1);
  EXPECT_EQ(cli.out, "## KOTU\n!! Msg 208: Invalid object\n## SELECT BIR\na\nx\n");
  EXPECT_EQ(cli.err, "(1 satır)\n");
}

TEST_F(KomutTest, RefusedLoginTellsNumberAndNoPassword) {
  for (int i = 0; i < 2; ++i)
    server.failOpening(db::SqlError(db::ErrorKind::LoginRefused, 18456, "Login failed"));
  EXPECT_EQ(cli.calistir({"sql", "--db", "D", "SELECT 1"}), 1);
  EXPECT_EQ(cli.err, "Msg 18456: Login failed\n");
}

TEST_F(KomutTest, LostOutputIsAFailure) {
  rows("BIR", "x");
  cli.doluDisk = true;
  EXPECT_EQ(cli.calistir({"sql", "--db", "D", "SELECT BIR"}), 1);
  EXPECT_NE(cli.err.find("Çıktı yazılamadı."), std::string::npos) << cli.err;
}

TEST_F(KomutTest, DizinNamesTheFolderOfSysInf) {
  const auto other = cli.dizin / "baska";
  std::filesystem::create_directories(other);
  session::Sys_Inf_Yaz(other, {"BASKA", "sa", "x", false});
  rows("BIR", "x");
  EXPECT_EQ(cli.calistir({"--dizin", other.string(), "sql", "--db", "D", "SELECT BIR"}), 0);
  EXPECT_EQ(server.openings.back().server, "BASKA");
}

TEST_F(KomutTest, DeletionWithoutATerminalNeedsYes) {
  server.rows("FROM sysDTYL", {"sysdtyl"}, {{"/srv"}});
  server.rows("SELECT sysus_nm", {"sysus_nm"}, {{"KORVENA"}});
  server.rows("SELECT sysfrm_ID", {"sysfrm_ID", "sysfrm_dbnm", ""}, {{3, "DENEME  ", ""}});
  EXPECT_EQ(cli.calistir({"firma-sil", "--ad", "DENEME"}), 1);
  EXPECT_EQ(cli.calistir({"firma-sil", "--ad", "YOK", "--evet"}), 1);
  EXPECT_NE(cli.err.find("Bu isimle bir firma yok: YOK"), std::string::npos);
  const auto dropped = [&] {
    return std::count(server.statements.begin(), server.statements.end(), "DROP DATABASE DENEME");
  };
  EXPECT_EQ(dropped(), 0);
  EXPECT_EQ(cli.calistir({"firma-sil", "--ad", "deneme", "--evet"}), 1);
  EXPECT_EQ(dropped(), 0);  // the server knows no database of that name
  server.rows("DB_ID('deneme')", {"sysfrm_ID", "sysfrm_dbnm", ""}, {{3, "DENEME  ", "AYNI"}});
  EXPECT_EQ(cli.calistir({"firma-sil", "--ad", "deneme", "--evet"}), 0);
  EXPECT_EQ(dropped(), 1);
  cli.terminal = true;
  EXPECT_EQ(cli.calistir({"firma-sil", "--ad", "DENEME"}, "h\n"), 1);
  EXPECT_EQ(cli.calistir({"firma-sil", "--ad", "DENEME"}, "evet\n"), 0);
  EXPECT_EQ(dropped(), 2);
}

TEST_F(KomutTest, SchemaIsListedInSectionsAndCompared) {
  server.rows("syscolumns.isnullable", {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"},
              {{"KASAKART", "Kasa_Kod", "char", 26, 26, 0, 0, 0, 0, "Turkish_CI_AS"}});
  server.rows("FROM syscomments", {"id", "text"}, {{7, "CREATE VIEW KB AS\nSELECT 1 AS a"}});
  server.rows("LEFT JOIN sysobjects", {"a", "b", "c", "d"}, {{7, "KB", "V", db::Value()}});
  const std::string middle = "\ntablo\tanahtar\tkolonlar\tkume\n\ntablo\tdizin\ttekil\tkume\tkolonlar\n\n";
  EXPECT_EQ(cli.calistir({"sema", "--ad", "D"}), 0);
  EXPECT_EQ(cli.out,
            "tablo\tkolon\ttip\tnull\tvarsayilan\tkimlik\nKASAKART\tKasa_Kod\tCHAR(26)\tNOT NULL\t\t\n" +
                middle + "gorunum\nKB\n\ntetikleyici\ttablo\n");
  EXPECT_EQ(cli.calistir({"sema", "--ad", "D", "--metin"}), 0);
  EXPECT_EQ(cli.out,
            "tablo\tkolon\ttip\tnull\tvarsayilan\tkimlik\tsiralama\n"
            "KASAKART\tKasa_Kod\tCHAR(26)\tNOT NULL\t\t\tTurkish_CI_AS\n" +
                middle +
                "gorunum\tmetin\nKB\tCREATE VIEW KB AS\\nSELECT 1 AS a\n\ntetikleyici\ttablo\tmetin\n");
  EXPECT_EQ(cli.calistir({"sema", "--ad", "D", "--bicim", "json"}), 0);
  EXPECT_TRUE(cli.out.starts_with("{\"kolonlar\": [")) << cli.out;
  EXPECT_EQ(cli.calistir({"sema", "--karsilastir", "D", "E"}), 0);
  EXPECT_EQ(cli.out, "");
  EXPECT_EQ(cli.err, "Fark sayısı: 0\n");
}

TEST_F(KomutTest, UpgradeOfAnUnknownCompanyIsRefused) {
  server.rows("FROM sysDTYL", {"sysdtyl"}, {{"/srv"}});
  server.rows("SELECT sysus_nm", {"sysus_nm"}, {{"KORVENA"}});
  server.rows("SELECT sysfrm_ID", {"sysfrm_ID"}, {});
  EXPECT_EQ(cli.calistir({"guncelle", "--ad", "YOK"}), 1);
  EXPECT_NE(cli.err.find("\"YOK\" adında bir firma tanımlı değil."), std::string::npos) << cli.err;
  EXPECT_EQ(cli.out, "");
}

// --- kur on a server on the network

TEST_F(KomutTest, KurLeavesAnExistingCatalogAlone) {
  server.rows("FROM sysdatabases", {"name"}, {{"Defination_DB"}});
  EXPECT_EQ(cli.calistir({"kur", "--sunucu", "YENI", "--sql-giris", "yonetici"}, "p w\n"), 0);
  EXPECT_NE(cli.out.find("zaten var"), std::string::npos);
  EXPECT_EQ(session::Sys_Inf_Oku(cli.dizin), "YENI;yonetici;p w;0;");
  for (const auto& statement : server.statements) EXPECT_TRUE(statement.starts_with("SELECT")) << statement;
}

TEST_F(KomutTest, KurRefusesWhatCannotBeKept) {
  server.rows("FROM sysdatabases", {"name"}, {});
  struct Case {
    std::vector<std::string> more;
    const char* input;
    const char* text;
  };
  const Case cases[] = {
      {{}, "", "SQL şifresi okunamadı"},
      {{}, "a;b\nSifre1\n", "';' olamaz"},
      {{}, "gizli\n", "Yönetici şifresi okunamadı"},
      {{}, "gizli\n   \n", "Yönetici şifresi boş olamaz"},
      {{}, "gizli\nşifre\n", "Türkçe harf"},
      {{}, "gizli\n1234567890123456\n", "en çok 15"},
      {{"--yonetici", "ONALTIHARFLIADIM"}, "gizli\nSifre1\n", "Yönetici adı"},
      {{"--sql-giris", "a;b"}, "gizli\nSifre1\n", "';' olamaz"},
  };
  for (const Case& c : cases) {
    std::vector<std::string> arguments{"kur", "--sunucu", "YENI"};
    arguments.insert(arguments.end(), c.more.begin(), c.more.end());
    EXPECT_EQ(cli.calistir(arguments, c.input), 1) << c.text;
    EXPECT_NE(cli.err.find(c.text), std::string::npos) << cli.err;
    EXPECT_EQ(session::Sys_Inf_Oku(cli.dizin), "SUNUCU;sa;gizli;0;") << c.text;  // as it was
  }
}

TEST_F(KomutTest, KurThatCannotConnectKeepsTheOldFile) {
  for (int i = 0; i < 2; ++i) server.failOpening(db::SqlError(db::ErrorKind::LoginRefused, 18456, "no"));
  EXPECT_EQ(cli.calistir({"kur", "--sunucu", "YENI"}, "kotu-sifre\nSifre1\n"), 1);
  EXPECT_EQ(session::Sys_Inf_Oku(cli.dizin), "SUNUCU;sa;gizli;0;");
  EXPECT_EQ(
      cli.err,
      "Sunucuya bağlanılamadı: SQL Admin Kullanıcı Adı ve/veya Şifresi Hatalıdır. Giriş İzni Alınamıyor. "
      "(Msg 18456: no)\n");
}

TEST_F(KomutTest, TwoDifferentPasswordsAreAskedForAgain) {
  server.rows("FROM sysdatabases", {"name"}, {});
  cli.terminal = true;
  server.fail("CREATE DATABASE", db::SqlError(db::ErrorKind::StatementRefused, 1802, "dolu"));
  EXPECT_EQ(cli.calistir({"kur", "--sunucu", "YENI"}, "gizli\nbir\niki\nbir\nbir\n"), 1);
  EXPECT_NE(cli.err.find("Şifreler aynı değil"), std::string::npos) << cli.err;
  EXPECT_EQ(session::Sys_Inf_Oku(cli.dizin), "SUNUCU;sa;gizli;0;");  // the server refused: put back
}

}  // namespace
