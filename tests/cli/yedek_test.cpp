// The commands of backup, whole texts.
#include <gtest/gtest.h>

#include <fstream>

#include "db/drivers.h"
#include "support/komut_satiri.h"

namespace {

namespace fs = std::filesystem;

class YedekKomutlari : public testing::Test {
 protected:
  YedekKomutlari() : satir([](const fs::path& dizin) { return db::makeConnectionFactory(dizin); }) {
    hedef = satir.dizin / "yedek İı";
    fs::create_directory(hedef);
    EXPECT_EQ(satir.calistir({"kur", "--sunucu", "(yerel)"}, "gizli\nabc\n"), 0) << satir.err;
  }
  // The lines of the output, the target folder as HEDEF and today's date as GÜN.
  std::string cikti() const {
    std::string metin = satir.out;
    const auto degistir = [&](const std::string& ne, const std::string& neyle) {
      for (auto at = metin.find(ne); at != std::string::npos; at = metin.find(ne, at + neyle.size()))
        metin.replace(at, ne.size(), neyle);
    };
    degistir(hedef.string(), "HEDEF");
    degistir(gun(), "GÜN");
    return metin;
  }
  static std::string gun() {
    const std::time_t simdi = std::time(nullptr);
    char metin[16];
    std::strftime(metin, sizeof metin, "%Y_%m_%d", std::localtime(&simdi));
    return metin;
  }

  support::KomutSatiri satir;
  fs::path hedef;
};

TEST_F(YedekKomutlari, AllAtOnceOneLineEachAndProvedLater) {
  ASSERT_EQ(satir.calistir({"firma-olustur", "--ad", "MAGAZA", "--kod", "1", "--unvan", "M"}), 0)
      << satir.err;
  EXPECT_EQ(satir.calistir({"yedekle", "--hepsi", "--hedef", hedef.string(), "--sakla", "14", "--canli"}), 0)
      << satir.err;
  EXPECT_EQ(cikti(), "MAGAZA\ttamam\tHEDEF/MAGAZA_GÜN\nDefination_DB\ttamam\tHEDEF/Defination_DB_GÜN\n");
  EXPECT_EQ(satir.calistir({"yedekle", "--ad", "MAGAZA", "--hedef", hedef.string(), "--denetimsiz"}), 0);
  EXPECT_EQ(cikti(), "HEDEF/MAGAZA_GÜN_1\n");
  EXPECT_EQ(satir.err.find("Yedek denetlendi"), std::string::npos);

  const std::string klasor = (hedef / ("MAGAZA_" + gun())).string();
  EXPECT_EQ(satir.calistir({"yedek-denetle", klasor, "--bicim", "tsv"}), 0) << satir.err;
  EXPECT_NE(satir.err.find("MAGAZA: yedek sağlam. Bundan önce "), std::string::npos) << satir.err;
  std::fstream(fs::path(klasor) / "MAGAZA.mdf", std::ios::in | std::ios::out | std::ios::binary).seekp(70000)
      << "!";
  EXPECT_EQ(satir.calistir({"yedek-denetle", klasor, "--bicim", "tsv"}), 1);
  EXPECT_EQ(satir.out.substr(0, satir.out.find('\n', 40) + 1),
            "Konu\tDurum\tAçıklama\nDosyalar\tKusurlu\tMAGAZA.mdf yedek alındığı andaki dosya değil.\n");
  EXPECT_NE(satir.err.find("MAGAZA: YEDEK KUSURLU."), std::string::npos) << satir.err;

  // A company whose file is gone does not keep the others from being backed up.
  fs::remove(satir.dizin / "veri" / "MAGAZA.mdf");
  EXPECT_EQ(satir.calistir({"yedekle", "--hepsi", "--hedef", hedef.string(), "--canli"}), 1);
  EXPECT_EQ(cikti().substr(0, 12), "MAGAZA\tHATA\t");
  EXPECT_NE(cikti().find("\nDefination_DB\ttamam\tHEDEF/Defination_DB_GÜN_1\n"), std::string::npos)
      << satir.out;
}

TEST_F(YedekKomutlari, WrongUseIsRefusedBeforeAnything) {
  const std::vector<std::vector<std::string>> yanlislar = {
      {"yedekle", "--hedef", hedef.string()},
      {"yedekle", "--hepsi", "--ad", "X", "--hedef", hedef.string()},
      {"yedekle", "--hepsi"},
      {"yedekle", "--hepsi", "--sunucu-dosyasi", "/x"},
      {"yedekle", "--ad", "X", "--hedef", hedef.string(), "--sakla", "3"},
      {"yedekle", "--hepsi", "--hedef", hedef.string(), "--sakla", "0"},
      {"yedekle", "--hepsi", "--hedef", hedef.string(), "--sakla", "3x"},
      {"yedek-zamanla"},
      {"yedek-zamanla", "--hedef", hedef.string(), "--kaldir"},
      {"yedek-zamanla", "--hedef", hedef.string(), "--saat", "24:00"},
      {"yedek-zamanla", "--hedef", hedef.string(), "--saat", "7:30"},
      {"yedek-denetle", hedef.string(), "--bicim", "xml"},
  };
  for (const auto& komut : yanlislar) {
    EXPECT_EQ(satir.calistir(komut), 2) << testing::PrintToString(komut);
    EXPECT_NE(satir.err, "") << testing::PrintToString(komut);
  }
  EXPECT_TRUE(fs::is_empty(hedef));
  EXPECT_EQ(satir.calistir({"yedek-denetle", hedef.string()}), 1);
  EXPECT_EQ(satir.calistir({"yedek-zamanla", "--hedef", (hedef / "yok").string()}), 1);
}

}  // namespace
