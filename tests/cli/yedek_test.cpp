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
  std::string cikti() const { return genel(satir.out); }
  std::string genel(std::string metin) const {
    const auto degistir = [&](const std::string& ne, const std::string& neyle) {
      for (auto at = metin.find(ne); at != std::string::npos; at = metin.find(ne, at + neyle.size()))
        metin.replace(at, ne.size(), neyle);
    };
    degistir(hedef.string(), "HEDEF");
    degistir(satir.dizin.string(), "DİZİN");
    degistir(gun(), "GÜN");
    degistir(gun("%d/%m/%Y"), "GÜN");
    return metin;
  }
  static std::string gun(const char* bicim = "%Y_%m_%d") {
    const std::time_t simdi = std::time(nullptr);
    char metin[16];
    std::strftime(metin, sizeof metin, bicim, std::localtime(&simdi));
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
  EXPECT_EQ(satir.calistir({"yedek-denetle", klasor, "--bicim", "tsv", "--tablolar"}), 0);
  EXPECT_TRUE(satir.out.starts_with("Tablo\tSatır\tToplam\nACILIS\t0\t0000000000000000\n")) << satir.out;
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

struct Komut {
  std::vector<std::string> argumanlar;
  int kod;
  std::string out, err, girdi = {};
};

// One day of an administrator, each command by its whole output.
TEST_F(YedekKomutlari, MaintenanceFromTheShell) {
  const std::string kaynak = (satir.dizin / "eski").string(), yedek = (hedef / ("MAGAZA_" + gun())).string();
  const std::string deyim =
      "INSERT INTO AMBARKILIT DEFAULT VALUES INSERT INTO FATURAKART(Tarih,Fis_No,Islem_Tipi,Cari_Kod) "
      "VALUES ('20120502','F1','Satış','C1')";
  const std::string sube =
      "CREATE TABLE OFFLINEAYARLAR(Sube_Kodu CHAR(10) NULL,Merkez_IP CHAR(20) NULL,Merkez_Adi CHAR(20) "
      "NULL,MerkezSa CHAR(20) NULL,MerkezSaSifre CHAR(20) NULL,MerkezFirma CHAR(20) NULL,SonTransferFirma "
      "CHAR(20) NULL,SonAlimTarih CHAR(10) NULL,SonAlimSaat CHAR(8) NULL,GonAralik INT NULL,OtoGon BIT NULL)";
  const std::string geriSorusu =
      "Geri Alınmak İstenen Firmanın Şu An Var Olan Bilgileri Daha Yeni Yeni Olabilir.\n"
      "Bu durumda Eski Verilere Tekrar Ulaşamayacaksınız.\nÖnerilen :\n"
      "Önce Var Olan Bilgilerin Bir Yedeği Alınıp, Daha Sonra Yedekten Geri Alma İşlemi Yapmaktır.\n"
      "Yinede Devam Etmek İstiyormusunuz? [e/H] ";
  const std::string subeDegil =
      "Bilgisayarınıza Kurulmuş Olan Korvena Offline Çalışan bir Korvena Programı Değildir.\n"
      "Eğer İsteğiniz Buysa Lütfen Program Satıcınızla Görüşünüz.\n";
  const Komut komutlar[] = {
      {{"firma-olustur", "--ad", "MAGAZA", "--kod", "1", "--unvan", "M"}, 0, "*", "*"},
      {{"sql", "--db", "MAGAZA", deyim}, 0, "*", "*"},
      {{"servis", "--ad", "YOK", "--kilitler"}, 1, "", "Bu isimle bir firma yok: YOK\n"},
      {{"servis", "--ad", "MAGAZA"}, 2, "", "--kilitler, --baglantilar ya da --denetle verilmeli.\n"},
      {{"servis", "--ad", "MAGAZA", "--kilitler"}, 0, "", "Kullanıcı Kontrolü Yapıldı\n"},
      {{"sql", "--db", "MAGAZA", "SELECT COUNT(*) AS N FROM AMBARKILIT"}, 0, "N\n0\n", "*"},
      {{"servis", "--ad", "MAGAZA", "--baglantilar"},
       1,
       "## Stok fişi olmayan faturalar\nFatura_ID\tTarih\tFis_No\n1\t02/05/2012\tF1\n",
       "Faturası olmayan irsaliyeler: 0\nStok fişi olmayan faturalar: 1\n"},
      {{"yedekle", "--ad", "magaza", "--hedef", hedef.string(), "--denetimsiz"},
       0,
       "HEDEF/MAGAZA_GÜN\n",
       "*"},
      {{"yedek-listele"}, 0, "Firma\tSon_Yedek\tKlasör\nMAGAZA\tGÜN\tHEDEF/MAGAZA_GÜN\n", ""},
      {{"yedek-listele", "--hedef", kaynak}, 1, "", "Klasör bulunamadı: DİZİN/eski\n"},
      {{"sql", "--db", "MAGAZA", "DELETE FROM FATURAKART"}, 0, "*", "*"},
      {{"geri-al", yedek}, 1, "", geriSorusu + "H\nOnay için --evet seçeneğini verin.\n"},
      {{"servis", "--ad", "MAGAZA", "--baglantilar"},
       0,
       "",
       "Faturası olmayan irsaliyeler: 0\nStok fişi olmayan faturalar: 0\n"},
      {{"geri-al", yedek, "--evet"}, 0, "", geriSorusu + "e\nGeri Alma İşlemi Başarı İle Tamamlanmıştır\n"},
      {{"sql", "--db", "MAGAZA", "SELECT Fis_No FROM FATURAKART"}, 0, "Fis_No\nF1\n", "*"},
      {{"geri-al"}, 2, "", "KLASOR ya da --sunucu-dosyasi ile --ad verilmeli.\n"},
      {{"geri-al", hedef.string(), "--evet"},
       1,
       "",
       "Bu Klasör Geri Alınabilecek Bir Firma Bilgisi İçermiyor.\n"},
      {{"tasi", "--kaynak", hedef.string(), "--ad", "X"}, 1, "", "Klasörde böyle bir veritabanı yok: X\n"},
      {{"tasi", "--kaynak", hedef.string()}, 1, "", "Aktarılacak bir veritabanı seçiniz.\n"},
      {{"tasi", "--kaynak", (satir.dizin / "veri").string()},
       1,
       "",
       "Programın Kurulu Olduğu Dizin İle Seçmiş Olduğunuz Dizin Aynı Lütfen Kontrol Ediniz.\n"},
      {{"tasi", "--kaynak", yedek, "--genel"},
       1,
       "",
       "Aynı Olan Dosyalar Değiştirilecek Devam Etmek İstediğinize Eminmisiniz ? [e/H] H\n"
       "Onay için --evet seçeneğini verin.\n"},
      {{"sunucu"}, 0, "sunucu\t(yerel)\nsql-giris\tsa\nsifre\tvar\ngirisde-degisir\t0\n", ""},
      {{"sunucu", "--girisde-degisir", "2"}, 2, "", "--girisde-degisir 1 ya da 0 olmalı: 2\n"},
      {{"sunucu", "--sifre", "--dene"},
       1,
       "",
       "\"(yerel)\" sunucusu cevap veriyor, ama bu SQL kullanıcı adını ya da şifresini kabul etmiyor.\n",
       "yanlış\n"},
      {{"sunucu", "--sifre"},
       1,
       "",
       "Sunucu adında, SQL kullanıcı adında ve şifresinde noktalı virgül (;) ve satır sonu kullanılamaz.\n",
       "a;b\n"},
      {{"sunucu", "--girisde-degisir", "1", "--dene"},
       0,
       "",
       "Bağlantı kuruldu; sunucuda tanım veritabanı var.\n"},
      {{"sunucu"}, 0, "sunucu\t(yerel)\nsql-giris\tsa\nsifre\tvar\ngirisde-degisir\t1\n", ""},
      {{"offline"}, 1, "", subeDegil},
      {{"sql", "--db", "Defination_DB", sube}, 0, "*", "*"},
      {{"offline", "--yaz", "Sube_Kodu=Ş1", "--yaz", "OtoGon=1", "--sifre"}, 0, "", "", "merkez\n"},
      {{"offline", "--yaz", "SonTransferFirma=X"},
       2,
       "",
       "Yazılabilen böyle bir ayar yok: SonTransferFirma\n"},
      {{"offline", "--yaz", "SonAlimTarih=1/2/2006"},
       1,
       "",
       "Lütfen Son Bilgi Alım Tarihini gg/aa/yyyy Formatında Geçerli Bir Tarih Olarak Giriniz.\n"},
      {{"offline"},
       0,
       "Sube_Kodu\tŞ1\nMerkez_IP\t\nMerkez_Adi\t\nMerkezSa\t\nMerkezSaSifre\tvar\nMerkezFirma\t\n"
       "SonTransferFirma\t\nSonAlimTarih\t01/01/1900\nSonAlimSaat\t00:00:01\nGonAralik\t0\nOtoGon\t1\n",
       ""},
  };
  for (const Komut& komut : komutlar) {
    SCOPED_TRACE(testing::PrintToString(komut.argumanlar));
    EXPECT_EQ(satir.calistir(komut.argumanlar, komut.girdi), komut.kod);
    if (komut.out != "*") {
      EXPECT_EQ(cikti(), komut.out);
    }
    if (komut.err != "*") {
      EXPECT_EQ(genel(satir.err), komut.err);
    }
  }
}

// The unit files of a user's own, as they are written and taken away again.
TEST_F(YedekKomutlari, TheTimerIsWrittenAndTakenAway) {
  const fs::path birimler = satir.dizin / "ayar" / "systemd" / "user";
  const std::string yol = std::getenv("PATH");
  ::setenv("XDG_CONFIG_HOME", (satir.dizin / "ayar").c_str(), 1);
  ::setenv("PATH", satir.dizin.c_str(), 1);
  // Without a manager to ask the files are there all the same, and it is told how to go on.
  EXPECT_EQ(satir.calistir({"yedek-zamanla", "--hedef", hedef.string(), "--saat", "07:30", "--sakla", "3"}),
            1);
  EXPECT_EQ(satir.err,
            "Zamanlama yazıldı, ama sistem onu devreye alamadı: systemctl: No such file or directory\n"
            "Devreye almak için: systemctl --user enable --now zembera-yedek.timer\n");
  EXPECT_EQ(satir.out, (birimler / "zembera-yedek.timer").string() + "\n");
  std::ifstream in(birimler / "zembera-yedek.service");
  const std::string servis{std::istreambuf_iterator<char>(in), {}};
  EXPECT_NE(servis.find("\"yedekle\" \"--hepsi\" \"--hedef\" \"" + hedef.string() +
                        "\" \"--sakla\" \"3\" \"--canli\""),
            std::string::npos)
      << servis;
  for (const char* const beklenen : {"Zamanlama kaldırıldı.\n", "Kurulu bir zamanlama yok.\n"}) {
    EXPECT_EQ(satir.calistir({"yedek-zamanla", "--kaldir"}), 0);
    EXPECT_EQ(satir.out, beklenen);
  }
  EXPECT_TRUE(fs::is_empty(birimler));
  ::unsetenv("XDG_CONFIG_HOME");
  ::setenv("PATH", yol.c_str(), 1);
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
