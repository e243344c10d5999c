// The program's folder as a whole: what of it others may read, and a copy of it elsewhere.
#include <gtest/gtest.h>

#include <map>

#include "platform/files.h"
#include "support/komut_satiri.h"
#include "support/surucu.h"

namespace {

namespace fs = std::filesystem;

class Klasor : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(cli.calistir({"kur", "--sunucu", "(yerel)"}, "gizli\nabc\n"), 0) << cli.err;
    ASSERT_EQ(cli.calistir({"firma-olustur", "--ad", "MAGAZA", "--kod", "1", "--unvan", "M"}), 0) << cli.err;
  }
  std::string sql(const fs::path& dizin, const std::string& db, const std::string& statement) {
    EXPECT_EQ(cli.calistir({"--dizin", dizin.string(), "sql", "--db", db, statement}), 0) << cli.err;
    return cli.out;
  }
  // Name and content of every file below.
  static std::map<std::string, std::string> icerik(const fs::path& dizin) {
    std::map<std::string, std::string> all;
    for (const auto& entry : fs::recursive_directory_iterator(dizin))
      if (entry.is_regular_file())
        all[fs::relative(entry.path(), dizin).string()] = *platform::readFile(entry.path());
    return all;
  }
  static std::string haklar(const fs::path& path) {
    char text[8];
    std::snprintf(text, sizeof text, "%o",
                  static_cast<unsigned>(fs::status(path).permissions() & fs::perms::all));
    return text;
  }

  support::KomutSatiri cli{support::surucuYap};
};

TEST_F(Klasor, OpenOnesAreToldUntilTheyAreClosed) {
  const fs::path veri = cli.dizin / "veri", sysInf = cli.dizin / "sys.inf";
  const std::vector<std::string> acik = {"MAGAZA.mdf", "MAGAZA_log.ldf", "master_log.ldf"};
  fs::permissions(veri, fs::perms(0755));
  fs::permissions(sysInf, fs::perms(0640));
  for (const std::string& name : acik) fs::permissions(veri / name, fs::perms(0644));
  const std::string uyari =
      "Uyarı: " + sysInf.string() +
      " başkalarınca okunabiliyor; içinde SQL şifresi var. Kapatmak için: chmod 600 sys.inf\nUyarı: " +
      veri.string() +
      " ve 3 dosya daha başkalarına açık; içlerinde şifreler var. Kapatmak için: zembera-cli denetle "
      "--onar\n";
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(cli.calistir({"denetle", "--ad", "MAGAZA"}), 0);
    EXPECT_EQ(cli.out, "MAGAZA: sağlam\n");
    EXPECT_EQ(cli.err, uyari);
  }
  EXPECT_EQ(haklar(veri) + haklar(veri / "MAGAZA.mdf") + haklar(sysInf), "755644640");
  EXPECT_EQ(cli.calistir({"denetle", "--onar", "--ad", "MAGAZA"}), 0);
  EXPECT_EQ(cli.err, "");
  EXPECT_EQ(haklar(veri) + haklar(sysInf), "700600");
  for (const auto& entry : fs::directory_iterator(veri))
    EXPECT_EQ(haklar(entry.path()), "600") << entry.path();
  EXPECT_EQ(cli.calistir({"denetle"}), 0);
  EXPECT_EQ(cli.err, "");
}

TEST_F(Klasor, CopyAndMovedOneWorkOnTheirOwnFiles) {
  const fs::path burasi = cli.dizin / "burasi", kopya = cli.dizin / "kopya", yeni = cli.dizin / "yeni";
  fs::create_directory(burasi);
  for (const char* name : {"sys.inf", "veri"}) fs::rename(cli.dizin / name, burasi / name);
  EXPECT_EQ(sql(burasi, "MAGAZA", "CREATE TABLE IZ (A INT) INSERT INTO IZ VALUES (1)"), "");
  fs::copy(burasi, kopya, fs::copy_options::recursive);
  const auto once = icerik(burasi);
  const auto olustur = [&](const fs::path& dizin, const char* ad) {
    return cli.calistir(
        {"--dizin", dizin.string(), "firma-olustur", "--ad", ad, "--kod", "2", "--unvan", "I"});
  };
  ASSERT_EQ(olustur(kopya, "IKINCI"), 0) << cli.err;
  EXPECT_EQ(sql(kopya, "MAGAZA", "INSERT INTO IZ VALUES (2)"), "");
  EXPECT_EQ(cli.calistir({"--dizin", kopya.string(), "guncelle", "--ad", "MAGAZA"}), 0) << cli.err;
  EXPECT_TRUE(fs::exists(kopya / "veri" / "IKINCI.mdf"));
  EXPECT_TRUE(icerik(burasi) == once);
  // Where the original has gone, nothing is made anew.
  fs::rename(burasi, yeni);
  ASSERT_EQ(olustur(yeni, "UCUNCU"), 0) << cli.err;
  EXPECT_EQ(sql(yeni, "MAGAZA", "SELECT A FROM IZ"), "A\n1\n");
  EXPECT_EQ(sql(kopya, "MAGAZA", "SELECT A FROM IZ ORDER BY A"), "A\n1\n2\n");
  EXPECT_EQ(sql(yeni, "master", "SELECT name FROM sysdatabases WHERE dbid>5 ORDER BY dbid"),
            "name\nMAGAZA\nUCUNCU\n");
  EXPECT_TRUE(fs::exists(yeni / "veri" / "UCUNCU.mdf"));
  EXPECT_FALSE(fs::exists(burasi));
  ASSERT_EQ(cli.calistir({"--dizin", yeni.string(), "firma-sil", "--ad", "UCUNCU", "--evet"}), 0) << cli.err;
  EXPECT_FALSE(fs::exists(yeni / "veri" / "UCUNCU.mdf"));
}

}  // namespace
