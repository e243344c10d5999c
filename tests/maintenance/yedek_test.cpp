#include "maintenance/yedek.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "maintenance/bakim.h"
#include "maintenance/servis_kontrol.h"
#include "ortam.h"

namespace maintenance::test {
namespace {

using session::Icon;

constexpr const char* soru =
    "Geri Alınmak İstenen Firmanın Şu An Var Olan Bilgileri Daha Yeni Yeni Olabilir.\n"
    "Bu durumda Eski Verilere Tekrar Ulaşamayacaksınız.\n"
    "Önerilen :\n"
    "Önce Var Olan Bilgilerin Bir Yedeği Alınıp, Daha Sonra Yedekten Geri Alma İşlemi Yapmaktır.\n"
    "Yinede Devam Etmek İstiyormusunuz?";

TEST(YedekAdi, CountsAndKeepsAStrayMarkFromTenOn) {
  EXPECT_EQ(yedekKlasorAdi("MAĞAZA", {2012, 3, 4}), "MAĞAZA_2012_03_04");
  std::string ad = "F_2012_03_04";
  int sayac = 0;
  Adlar denenen;
  for (int i = 0; i < 12; ++i) denenen.push_back(ad = sonrakiKlasorAdi(ad, sayac));
  const std::string f = "F_2012_03_04";
  EXPECT_EQ(denenen, (Adlar{f + "_1", f + "_2", f + "_3", f + "_4", f + "_5", f + "_6", f + "_7", f + "_8",
                            f + "_9", f + "_10", f + "__11", f + "___12"}));
  EXPECT_EQ(logAdi("M1.mdf"), "M1_LOG.ldf");
}

class Yedek : public testing::Test {
 protected:
  Yedek() : hedef(o.klasor / "yedek ğüş İı") {
    fs::create_directory(hedef);
    o.firma("MAGAZA", "eski");
    o.firma("KOMSU", "komşu");
    o.s.boxes.shown.clear();
    o.s.progress.texts.clear();
    o.s.progress.steps.clear();
    once = icerik(o.veri);
  }
  fs::path yedekle() {
    const YedekSonucu sonuc = Yedekle(o.s.oturum, "MAGAZA", hedef);
    EXPECT_TRUE(sonuc.tamam);
    return sonuc.klasor;
  }
  // Nothing but the server's own files lies about, and the service runs.
  void temiz() {
    EXPECT_TRUE(o.calisiyor());
    EXPECT_EQ(icerik(o.veri), once);
    EXPECT_FALSE(fs::exists(o.klasor / "bakim.kayit"));
    EXPECT_EQ(o.deger("KOMSU"), "komşu");
  }

  Ortam o;
  fs::path hedef;
  Adlar once;
};

TEST_F(Yedek, IsAFolderOfTwoFilesMadeWhileTheServiceIsDown) {
  bool durdu = false;
  o.s.progress.onPump = [&] { durdu = durdu || !o.surucu->local("(yerel)")->running(); };
  const fs::path klasor = yedekle();
  EXPECT_TRUE(durdu);
  EXPECT_EQ(klasor, hedef / "MAGAZA_2012_03_14");
  EXPECT_EQ(icerik(klasor), (Adlar{"MAGAZA.mdf", "MAGAZA_LOG.ldf"}));
  EXPECT_EQ(o.s.progress.texts,
            (Adlar{"Yedekleme İçin Gerekli Bilgiler Toplanıyor", "Dosyalar Yedekleniyor !!",
                   "Data Dosyası Yedekleniyor", "LOG Dosyası Yedekleniyor", "İşlem Tamamlandı."}));
  std::vector<std::pair<std::int64_t, std::int64_t>> adimlar;
  for (std::int64_t i = 0; i <= 9; ++i) adimlar.emplace_back(i, 48);
  EXPECT_EQ(o.s.progress.steps, adimlar);
  ASSERT_EQ(o.s.boxes.shown.size(), 1U);
  EXPECT_EQ(o.s.boxes.shown[0].text, "Yedekleme İşlemi Başarı İle Tamamlanmıştır");
  EXPECT_EQ(o.s.boxes.shown[0].icon, Icon::Information);
  EXPECT_EQ(yedekle(), hedef / "MAGAZA_2012_03_14_1");
  EXPECT_EQ(yedekle(), hedef / "MAGAZA_2012_03_14_2");
  const auto liste = yedekleriListele(hedef);
  ASSERT_EQ(liste.size(), 3U);
  EXPECT_EQ(liste[2].klasor, hedef / "MAGAZA_2012_03_14_2");
  EXPECT_EQ(liste[2].firma, "MAGAZA");
  EXPECT_EQ(liste[2].gun, (db::DateTime{2012, 3, 14}));
  temiz();
}

TEST_F(Yedek, GivesTheCompanyBackOnlyWhenAnsweredYes) {
  const fs::path klasor = yedekle();
  o.yaz("MAGAZA", "yeni");
  for (const bool evet : {false, true}) {
    o.s.boxes.shown.clear();
    o.s.boxes.answers = {evet};
    EXPECT_EQ(Geri_Al(o.s.oturum, klasor), evet);
    EXPECT_EQ(o.s.boxes.shown[0].text, soru);
    EXPECT_EQ(o.s.boxes.shown.size(), evet ? 2U : 1U);
    if (evet) {
      EXPECT_EQ(o.s.boxes.last(), "Geri Alma İşlemi Başarı İle Tamamlanmıştır");
    }
    EXPECT_EQ(o.deger("MAGAZA"), evet ? "eski" : "yeni");
    temiz();
  }
  EXPECT_EQ(icerik(klasor), (Adlar{"MAGAZA.mdf", "MAGAZA_LOG.ldf"}));
}

TEST_F(Yedek, RefusesFoldersThatHoldNoBackupOfAKnownCompany) {
  struct Durum {
    const char* ad;
    Adlar dosyalar;
    const char* metin;
  };
  const char* const yok = "Bu Klasör Geri Alınabilecek Bir Firma Bilgisi İçermiyor.";
  const Durum durumlar[] = {
      {"bos", {}, yok},
      {"logsuz", {"MAGAZA.mdf"}, yok},
      {"datasiz", {"MAGAZA_LOG.ldf", "x.txt"}, yok},
      {"baska log", {"MAGAZA.mdf", "KOMSU_LOG.ldf"}, yok},
      {"bilinmeyen",
       {"YOK.MDF", "yok_log.LDF"},
       "Bu Firmanın Kaydı Bulanamadı. Lütfen Önce Firmayı Oluşturun."},
  };
  for (const Durum& durum : durumlar) {
    const fs::path klasor = hedef / durum.ad;
    fs::create_directory(klasor);
    for (const std::string& dosya : durum.dosyalar) std::ofstream(klasor / dosya) << "x";
    o.s.boxes.shown.clear();
    EXPECT_FALSE(Geri_Al(o.s.oturum, klasor)) << durum.ad;
    EXPECT_EQ(o.s.boxes.texts(), Adlar{durum.metin}) << durum.ad;
  }
  temiz();
}

TEST_F(Yedek, LeavesTheCompanyAsItWasWhenTheCopyIsNoGood) {
  const fs::path klasor = yedekle();
  o.yaz("MAGAZA", "yeni");
  const auto boy = fs::file_size(klasor / "MAGAZA.mdf");
  const fs::path komsu = Yedekle(o.s.oturum, "KOMSU", hedef).klasor;
  const std::function<void()> bozulmalar[] = {
      [&] { fs::resize_file(klasor / "MAGAZA.mdf", boy / 2); },
      [&] { fs::resize_file(klasor / "MAGAZA.mdf", 0); },
      [&] {
        fs::copy_file(komsu / "KOMSU_LOG.ldf", klasor / "MAGAZA_LOG.ldf",
                      fs::copy_options::overwrite_existing);
      },
  };
  const fs::path temizKopya = o.klasor / "temiz";
  fs::copy(klasor, temizKopya);
  for (const auto& boz : bozulmalar) {
    for (const auto& giris : fs::directory_iterator(temizKopya))
      fs::copy_file(giris.path(), klasor / giris.path().filename(), fs::copy_options::overwrite_existing);
    boz();
    o.s.boxes.shown.clear();
    o.s.boxes.answers = {true};
    EXPECT_FALSE(Geri_Al(o.s.oturum, klasor));
    ASSERT_EQ(o.s.boxes.shown.size(), 2U);
    EXPECT_EQ(o.s.boxes.last().rfind("Bu yedek kullanılamaz: ", 0), 0U) << o.s.boxes.last();
    EXPECT_EQ(o.deger("MAGAZA"), "yeni");
    temiz();
  }
}

TEST_F(Yedek, TellsWhatIsInTheWayAndStartsTheServiceAgain) {
  const fs::path dosya = o.klasor / "dosya";
  std::ofstream(dosya) << "x";
  for (const fs::path& yer : {o.klasor / "yok", dosya}) {
    o.s.boxes.shown.clear();
    EXPECT_FALSE(Yedekle(o.s.oturum, "MAGAZA", yer).tamam);
    EXPECT_EQ(o.s.boxes.texts(), Adlar{"Klasör bulunamadı: " + yer.string()});
  }
  o.s.boxes.shown.clear();
  EXPECT_FALSE(Yedekle(o.s.oturum, "YOK", hedef).tamam);
  EXPECT_EQ(o.s.boxes.texts(), Adlar{"Bu Firmanın Kaydı Bulanamadı. Lütfen Önce Firmayı Oluşturun."});
  // Something takes the log's name in the new folder while the data file is being copied.
  o.s.progress.onPump = [&] {
    std::error_code hata;
    for (const auto& giris : fs::directory_iterator(hedef))
      fs::create_directory(giris.path() / "MAGAZA_LOG.ldf", hata);
  };
  o.s.boxes.shown.clear();
  EXPECT_FALSE(Yedekle(o.s.oturum, "MAGAZA", hedef).tamam);
  EXPECT_EQ(o.s.boxes.last().rfind("Log dosyası yazılamadı (", 0), 0U) << o.s.boxes.last();
  o.s.progress.onPump = {};
  EXPECT_EQ(icerik(hedef), Adlar{});
  temiz();
}

// A child works until its n-th sign of life and is killed there; the next start ends what it left.
TEST_F(Yedek, EndsWhatAKilledRunLeft) {
  const fs::path klasor = yedekle();
  o.yaz("MAGAZA", "yeni");
  for (const bool geri : {false, true}) {
    bool bitti = false;
    for (int n = 1; !bitti; n += geri ? 1 : 4) {
      o.birak();
      const pid_t cocuk = ::fork();
      if (cocuk == 0) {
        o.bagla();
        int kalan = n;
        o.s.progress.onPump = [&] {
          if (--kalan == 0) ::raise(SIGKILL);
        };
        o.s.boxes.answers = {true};
        if (geri)
          Geri_Al(o.s.oturum, klasor);
        else
          Yedekle(o.s.oturum, "MAGAZA", hedef);
        ::_exit(0);
      }
      int durum = 0;
      ::waitpid(cocuk, &durum, 0);
      bitti = WIFEXITED(durum);
      o.bagla();
      const bool yarim = fs::exists(o.klasor / "bakim.kayit");
      const std::string metin = Bakimi_Tamamla(o.s.oturum);
      EXPECT_EQ(metin.empty(), !yarim);
      if (!o.calisiyor()) o.surucu->local("(yerel)")->start();
      const std::string simdi = o.deger("MAGAZA");
      EXPECT_TRUE(simdi == "yeni" || (geri && simdi == "eski")) << n << ": " << simdi;
      if (bitti && geri) {
        EXPECT_EQ(simdi, "eski");
      }
      for (const std::string& ad : icerik(hedef)) EXPECT_EQ(ad.find(".yarim"), std::string::npos) << n;
      temiz();
      o.yaz("MAGAZA", "yeni");
    }
  }
}

TEST_F(Yedek, KeepsFoldersInOrder) {
  std::string hata;
  EXPECT_EQ(yeniKlasorAdi(hedef), "Yeni");
  EXPECT_EQ(klasorOlustur(hedef, "Yeni", hata), hedef);
  EXPECT_EQ(yeniKlasorAdi(hedef), "Yeni1");
  EXPECT_EQ(klasorOlustur(hedef, "Yeni", hata), fs::path());
  EXPECT_EQ(klasorOlustur(hedef, "../kaçak", hata), fs::path());
  EXPECT_EQ(klasorAdlandir(hedef / "Yeni", "Arşiv", hata), hedef / "Arşiv");
  fs::create_directories(hedef / "Arşiv" / "alt");
  std::ofstream(hedef / "Arşiv" / "alt" / "dosya") << "x";
  for (const bool evet : {false, true}) {
    o.s.boxes.answers = {evet};
    o.s.boxes.shown.clear();
    EXPECT_EQ(klasorSil(o.s.oturum, hedef / "Arşiv", hata), evet ? hedef : fs::path());
    EXPECT_EQ(o.s.boxes.shown[0].text, klasorSilSorusu);
    EXPECT_EQ(o.s.boxes.shown[0].icon, Icon::Stop);
    EXPECT_EQ(fs::exists(hedef / "Arşiv"), !evet);
  }
  fs::create_directories(hedef / "a" / "b" / "c");
  o.s.boxes.answers = {true};
  EXPECT_EQ(klasorSil(o.s.oturum, hedef / "a", hata), fs::path());
  EXPECT_TRUE(fs::exists(hedef / "a" / "b" / "c"));
  o.s.boxes.shown.clear();
  EXPECT_EQ(klasorSil(o.s.oturum, "/", hata), fs::path());
  EXPECT_TRUE(o.s.boxes.shown.empty());
}

}  // namespace
}  // namespace maintenance::test
