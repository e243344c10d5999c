#include "session/giris.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/files.h"
#include "session/metin.h"
#include "session/sys_inf.h"
#include "support/fakes.h"
#include "support/temp_folder.h"

namespace {

using namespace session;
namespace fs = std::filesystem;

using Adim = GirisSonucu::Adim;
constexpr std::string_view regional = "Control Panel\\International";

class GirisTest : public testing::Test, protected support::FakeSurroundings {
 protected:
  void SetUp() override {
    platform.folder = temporary.path;
    server.rows("FROM sysDTYL", {"sysdtyl"}, {{"/srv/veri   "}});
    server.rows("FROM sysuslng", {"sysus_ID", "sysus_nm", "sysus"}, {});
    server.rows("sysus_nm='KORVENA'", {"sysus_ID", "sysus_nm", "sysus"},
                {{1, "KORVENA        ", *Sifrele("Gizli1") + "         "}});
    server.rows("sysus_nm='İNCİ'", {"sysus_ID", "sysus_nm", "sysus"}, {{7, "İNCİ", *Sifrele("x")}});
  }
  const support::TempFolder temporary;

  void writeInf(const std::string& text) { std::ofstream(sysInfYolu(platform.folder)) << text; }
};

TEST_F(GirisTest, SysInfFieldsByPosition) {
  struct Case {
    const char* file;
    const char *server, *login, *password;
  };
  const Case cases[] = {{"SRV;sa;x", "SRV", "sa", "x"},
                        {"SRV;sa;x;1;\r\nsecond line;a;b", "SRV", "sa", "x"},
                        {"a;b;c;d;e;f;g;h\n", "a", "b", "c"},
                        {"\xEF\xBB\xBF SRV ; sa;x ", "SRV", " sa", "x "},
                        {"SRV", "SRV", "", ""},
                        {"", "", "", ""},
                        {"S;\xFE;\xDD", "S", "ş", "İ"}};  // a file in code page 1254
  for (const Case& c : cases) {
    writeInf(c.file);
    sysInfYukle(oturum);
    EXPECT_EQ(oturum.Server_Adi, c.server) << c.file;
    EXPECT_EQ(oturum.SQL_Login, c.login) << c.file;
    EXPECT_EQ(oturum.SQL_Sifre, c.password) << c.file;
  }
  // Of a file without an end no more is read than a line can hold.
  writeInf("S;sa;x;0;\n");
  fs::resize_file(sysInfYolu(platform.folder), 200'000'000);
  EXPECT_EQ(Sys_Inf_Oku(platform.folder), "S;sa;x;0;");
  writeInf(std::string(5000, 'S'));
  fs::resize_file(sysInfYolu(platform.folder), 200'000'000);
  EXPECT_EQ(Sys_Inf_Oku(platform.folder), std::string(4096, 'S'));
  EXPECT_EQ(sysInfBol("a;b;c;d;e;f;g"), (std::array<std::string, 6>{"", "a", "b", "c", "d", "e"}));
  fs::remove(sysInfYolu(platform.folder));
  EXPECT_EQ(Sys_Inf_Oku(platform.folder), "");
}

TEST_F(GirisTest, SysInfOpenToOthersIsTold) {
  ASSERT_EQ(Sys_Inf_Yaz(platform.folder, {"S", "sa", "x", false}), "");
  EXPECT_EQ(sysInfUyarisi(platform.folder), "");
  fs::permissions(sysInfYolu(platform.folder), fs::perms::group_read, fs::perm_options::add);
  EXPECT_EQ(sysInfUyarisi(platform.folder),
            sysInfYolu(platform.folder).string() +
                " başkalarınca okunabiliyor; içinde SQL şifresi var. Kapatmak için: chmod 600 sys.inf");
}

TEST_F(GirisTest, SysInfWriteAndReadBack) {
  EXPECT_EQ(sysInfSatiri({" SRV ", "sa", "x", true}), "SRV;sa;x;1;");
  ASSERT_EQ(Sys_Inf_Yaz(platform.folder, {"(yerel):/srv/ışık", "sa", " p w ", false}), "");
  EXPECT_EQ(Sys_Inf_Oku(platform.folder), "(yerel):/srv/ışık;sa; p w ;0;");
  EXPECT_EQ(platform::readFile(sysInfYolu(platform.folder)), "(yerel):/srv/ışık;sa; p w ;0;\n");
  const std::string error = Sys_Inf_Yaz(platform.folder / "yok", {"S", "sa", "cokgizli", false});
  EXPECT_NE(error, "");
  EXPECT_EQ(error.find("cokgizli"), std::string::npos);
  EXPECT_FALSE(sysInfAlaniUygun("a;b"));
  EXPECT_FALSE(sysInfAlaniUygun(std::string("a\0b", 3)));
  EXPECT_TRUE(sysInfAlaniUygun("a b'ş"));
}

TEST_F(GirisTest, FreshAccountGetsTheWantedValuesWithoutAQuestion) {
  EXPECT_EQ(BolgeselAyarlariAyarla(oturum), BolgeselSonuc::Tamam);
  EXPECT_TRUE(boxes.shown.empty());
  EXPECT_EQ(oturum.Ondalik_Ayrac + oturum.Binlik_Ayrac, ",.");
  EXPECT_EQ(Kayit_Oku(oturum, kokKullanici, regional, "sShortDate"), "dd.MM.yyyy");
  EXPECT_EQ(BolgeselAyarlariAyarla(oturum), BolgeselSonuc::Tamam);  // and the next start asks nothing
  EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(GirisTest, OtherRegionalValuesAskAndRestart) {
  const std::pair<const char*, const char*> cases[] = {
      {"sDecimal", "ONDALIK"}, {"sThousand", "BASAMAK"}, {"sDate", "TARIH"}, {"sShortDate", "TARIH"}};
  for (const auto& [value, marker] : cases) {
    BolgeselAyarlariAyarla(oturum);
    platform.registryWrite(kokKullanici, regional, value, "#");
    oturum.Son_Hata.clear();
    boxes.shown.clear();
    EXPECT_EQ(BolgeselAyarlariAyarla(oturum), BolgeselSonuc::ProgramBitsin);  // No
    EXPECT_EQ(oturum.Son_Hata, marker);
    ASSERT_EQ(boxes.shown.size(), 1U);
    EXPECT_EQ(Kayit_Oku(oturum, kokKullanici, regional, value), "#");
    EXPECT_EQ(platform.restarts, 0);

    boxes.answers = {true};
    EXPECT_EQ(BolgeselAyarlariAyarla(oturum), BolgeselSonuc::ProgramBitsin);
    EXPECT_EQ(boxes.last(), "Sistem Ayarlanız Tamamlandı.Bilgisayarınızın Yeniden Başlatılması Gerekiyor");
    EXPECT_EQ(platform.restarts, 1);
    EXPECT_NE(Kayit_Oku(oturum, kokKullanici, regional, value), "#");
    platform.restarts = 0;
  }
}

TEST_F(GirisTest, SettingsThatCannotBeWrittenDoNotKeepAnyoneOut) {
  BolgeselAyarlariAyarla(oturum);
  platform.registryWrite(kokKullanici, regional, "sDecimal", ".");
  platform.readOnly = true;
  for (int start = 1; start <= 2; ++start) {
    EXPECT_EQ(BolgeselAyarlariAyarla(oturum), BolgeselSonuc::Tamam);
    EXPECT_EQ(boxes.texts(),
              std::vector<std::string>(static_cast<std::size_t>(start),
                                       "Bölgesel ayarlar yazılamadı; program bu oturumda gereken ayarlarla "
                                       "sürdürülecek.\nAyar dosyasının yazma iznini denetleyiniz."));
    EXPECT_FALSE(boxes.shown.back().question);
  }
  EXPECT_EQ(Kayit_Oku(oturum, kokKullanici, regional, "sDecimal"), ".");
  EXPECT_EQ(platform.restarts, 0);
  EXPECT_EQ(oturum.Ondalik_Ayrac + oturum.Binlik_Ayrac, ",.");
  EXPECT_EQ(oturum.Son_Hata, "");
}

TEST_F(GirisTest, LoadReadsVersionAndToolPath) {
  writeInf("SRV;sa;x;0;");
  platform.registryWrite(kokMakine, "SOFTWARE\\Microsoft\\©àçÚïŞ", "SQLVER", "2");
  platform.registryWrite(kokMakine, "Software\\Microsoft\\Microsoft SQL Server\\80\\Tools\\ClientSetup",
                         "SQLPath", "C:\\SQL");
  EXPECT_EQ(Giris_Yukle(oturum), BolgeselSonuc::Tamam);
  EXPECT_EQ(oturum.Server_Adi, "SRV");
  EXPECT_EQ(oturum.SQL_Surum, 2);
  EXPECT_EQ(oturum.SCM_Yolu, "C:\\SQL\\Binn\\scm.exe ");
}

TEST_F(GirisTest, SupervisorLogsIn) {
  const auto result = Giris_Tamam(oturum, " korvena ", " Gizli1 ");
  EXPECT_EQ(result.adim, Adim::KonsolTam);
  EXPECT_TRUE(oturum.Supervisor);
  EXPECT_EQ(oturum.Kullanici_ID, 1);
  EXPECT_EQ(oturum.Veri_Klasoru, "/srv/veri");
  EXPECT_EQ(oturum.Tanim_DB_Versiyon, "2012.002");
  EXPECT_EQ(oturum.Giris_Hatali, 0);
  EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(GirisTest, OtherUserIsNoSupervisor) {
  EXPECT_EQ(Giris_Tamam(oturum, "inci", "x").adim, Adim::KonsolTam);
  EXPECT_FALSE(oturum.Supervisor);
  EXPECT_EQ(oturum.Kullanici_ID, 7);
}

TEST_F(GirisTest, UnknownUserStays) {
  const auto result = Giris_Tamam(oturum, "YOK", "x");
  EXPECT_EQ(result.adim, Adim::EkrandaKal);
  EXPECT_EQ(result.odak, GirisOdak::Kullanici);
  EXPECT_EQ(boxes.last(), "Kullanıcı Adınız Geçerli Değil!");
}

TEST_F(GirisTest, WrongPasswordStaysAndEmptiesTheField) {
  for (const char* password : {"gizli1", "", "şifre"}) {
    const auto result = Giris_Tamam(oturum, "KORVENA", password);
    EXPECT_EQ(result.adim, Adim::EkrandaKal) << password;
    EXPECT_EQ(result.odak, GirisOdak::Sifre);
    EXPECT_TRUE(result.sifreyiBosalt);
    EXPECT_EQ(boxes.last(), "Şifreniz Geçerli Değil!");
    EXPECT_EQ(boxes.shown.back().icon, Icon::Information);
  }
  EXPECT_EQ(Giris_Tamam(oturum, "KORVENA", "Gizli1").adim, Adim::KonsolTam);
}

TEST_F(GirisTest, ApostropheInTheNameIsData) {
  Giris_Tamam(oturum, "a' OR '1'='1", "x");
  EXPECT_EQ(server.statements.back(), "SELECT * FROM sysuslng WHERE sysus_nm='A'' OR ''1''=''1'");
}

TEST_F(GirisTest, RefusedSqlLoginBringsTheReducedConsole) {
  const db::SqlError refused(db::ErrorKind::LoginRefused, 18456, "Login failed");
  for (int i = 0; i < 2; ++i) server.failOpening(refused);
  EXPECT_EQ(Giris_Tamam(oturum, "KORVENA", "Gizli1").adim, Adim::KonsolEksik);
  EXPECT_EQ(oturum.Giris_Hatali, -1);
  EXPECT_EQ(boxes.last(), "SQL Admin Kullanıcı Adı ve/veya Şifresi Hatalıdır. Giriş İzni Alınamıyor.");
  EXPECT_EQ(Giris_Tamam(oturum, "KORVENA", "Gizli1").adim, Adim::KonsolTam);  // the next try starts afresh
  EXPECT_EQ(oturum.Giris_Hatali, 0);
}

TEST_F(GirisTest, UnreachableServerShowsItsOwnTextAndIsNotAskedAThirdTime) {
  const db::SqlError broken(db::ErrorKind::LinkBroken, 0, "sunucu yok");
  for (int i = 0; i < 2; ++i) server.failOpening(broken);
  EXPECT_EQ(Giris_Tamam(oturum, "KORVENA", "Gizli1").adim, Adim::KonsolEksik);
  EXPECT_EQ(boxes.last(), "sunucu yok");
  EXPECT_EQ(server.openings.size(), 2U);
}

TEST_F(GirisTest, WithoutAServerNameTheParameterFileIsTold) {
  const std::pair<const char*, const char*> cases[] = {{"", " bulunamadı."},
                                                       {";sa;x", " okunamadı ya da sunucu adı yok."}};
  for (const auto& [file, text] : cases) {
    fs::remove(sysInfYolu(platform.folder));
    if (*file) writeInf(file);
    sysInfYukle(oturum);
    EXPECT_EQ(Giris_Tamam(oturum, "KORVENA", "Gizli1").adim, Adim::KonsolEksik);
    EXPECT_EQ(boxes.last(), sysInfYolu(platform.folder).string() + text);
    EXPECT_TRUE(server.openings.empty()) << "no name is not this machine";
  }
}

TEST_F(GirisTest, MissingCatalogIsToldWithoutABox) {
  server.failOpening(db::SqlError(db::ErrorKind::LinkBroken, 4060, "Cannot open database"));
  server.failOpening(db::SqlError(db::ErrorKind::LoginRefused, 18452, "no integrated login"));
  server.rows("FROM sysdatabases", {"name"}, {});
  const auto result = Giris_Tamam(oturum, "KORVENA", "Gizli1");
  EXPECT_EQ(result.adim, Adim::KatalogYok);
  EXPECT_TRUE(boxes.shown.empty());
  EXPECT_EQ(server.openings.back().database, "master");
  EXPECT_EQ(Giris_Basarisiz(oturum, result.hataNo, result.hataMetni).adim, Adim::KonsolEksik);
  EXPECT_EQ(oturum.Giris_Hatali, -1);
}

TEST_F(GirisTest, DamagedCatalogBringsTheReducedConsole) {
  server.fail("FROM sysDTYL",
              db::SqlError(db::ErrorKind::StatementRefused, 208, "Invalid object name 'sysDTYL'."));
  EXPECT_EQ(Giris_Tamam(oturum, "KORVENA", "Gizli1").adim, Adim::KonsolEksik);
  ASSERT_EQ(boxes.shown.size(), 3U);  // number and text, the statement, the failed field
  EXPECT_EQ(boxes.shown[1].text, "SELECT * FROM sysDTYL");
  EXPECT_EQ(oturum.Giris_Hatali, -1);
}

}  // namespace
