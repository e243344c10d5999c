// What commands write, whole, in each form that they can be asked for; and what they keep to themselves when
// told.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <regex>
#include <sstream>
#include <thread>

#include "cli/komut.h"
#include "cli/kutular.h"
#include "db/drivers.h"
#include "settings/tanim_dosyasi.h"
#include "support/komut_satiri.h"

namespace {

class CiktiTest : public testing::Test {
 protected:
  support::KomutSatiri satir{[](const auto& dizin) { return db::makeConnectionFactory(dizin); }};

  void SetUp() override {
    ::setenv("XDG_CONFIG_HOME", satir.dizin.c_str(), 1);  // no units of whoever runs the tests
    ASSERT_EQ(satir.calistir({"--sessiz", "kur", "--sunucu", "(yerel)"}, "gizli\nabc\n"), 0) << satir.err;
    ASSERT_EQ(satir.calistir({"firma-olustur", "--ad", "MAGAZA", "--kod", "1", "--unvan", "Şık \"M\"",
                              "--baslangic", "01/01/2012", "--bitis", "31/12/2012"}),
              0)
        << satir.err;
  }
  std::string yerinde(std::string metin) const {
    for (std::size_t at; (at = metin.find(satir.dizin.string())) != std::string::npos;)
      metin.replace(at, satir.dizin.string().size(), "DİZİN");
    return metin;
  }
};

struct Durum {
  std::vector<std::string> argumanlar;
  int kod;
  const char *out, *err;
};

TEST_F(CiktiTest, EveryFormWhole) {
  const Durum durumlar[] = {
      {{"firma-listele"},
       0,
       "Ad\tKod\tUnvan\tBaslangic\tBitis\nMAGAZA\t1\tŞık \"M\"\t01/01/2012\t31/12/2012\n",
       ""},
      {{"firma-listele", "--bicim", "metin"},
       0,
       "Ad      Kod  Unvan    Baslangic   Bitis\n------  ---  -------  ----------  ----------\n"
       "MAGAZA  1    Şık \"M\"  01/01/2012  31/12/2012\n",
       ""},
      {{"firma-listele", "--bicim", "json"},
       0,
       "[\n  {\"Ad\": \"MAGAZA\", \"Kod\": \"1\", \"Unvan\": \"Şık \\\"M\\\"\", \"Baslangic\": "
       "\"01/01/2012\", "
       "\"Bitis\": \"31/12/2012\"}\n]\n",
       ""},
      {{"kullanici-listele", "--bicim", "json"},
       0,
       "[\n  {\"Ad\": \"KORVENA\", \"No\": \"1\", \"Yonetici\": \"1\", \"Firmalar\": \"MAGAZA\"}\n]\n",
       ""},
      {{"sunucu"}, 0, "sunucu\t(yerel)\nsql-giris\tsa\nsifre\tvar\ngirisde-degisir\t0\n", ""},
      {{"sunucu", "--bicim", "tablo"},
       0,
       "Alan             Deger\n---------------  -------\nsunucu           (yerel)\nsql-giris        sa\n"
       "sifre            var\ngirisde-degisir  0\n",
       ""},
      {{"sunucu-durum"}, 0, "klasor\tDİZİN/veri\nsunucu\tçalışıyor\nag\tkapalı\n", ""},
      {{"sunucu-durum", "--bicim", "json"},
       0,
       "[\n  {\"Alan\": \"klasor\", \"Deger\": \"DİZİN/veri\"},\n"
       "  {\"Alan\": \"sunucu\", \"Deger\": \"çalışıyor\"},\n"
       "  {\"Alan\": \"ag\", \"Deger\": \"kapalı\"}\n]\n",
       ""},
      {{"parametre", "--ad", "MAGAZA", "--yaz", "DefKDV=20", "--dene", "--sessiz"},
       0,
       "MAGAZA: 1 parametre değişecek\nDefKDV: 18 -> 20  (KDV Ön Değeri %)\n",
       ""},
      {{"parametre", "--ad", "MAGAZA", "--yaz", "DefKDV=20", "--bicim", "json"},
       0,
       "[\n  {\"Firma\": \"MAGAZA\", \"Kolon\": \"DefKDV\", \"Eski\": \"18\", \"Yeni\": \"20\", \"Baslik\": "
       "\"KDV Ön "
       "Değeri %\"}\n]\n",
       ""},
      {{"parametre", "--ad", "MAGAZA", "--yaz", "DefKDV=18", "--sessiz"}, 0, "", ""},
      {{"parametre-kopyala", "--kaynak", "MAGAZA", "--hedef", "MAGAZA", "--bicim", "tsv"},
       0,
       "Firma\tKolon\tEski\tYeni\tBaslik\n",
       ""},
      {{"numara", "--ad", "MAGAZA", "--yaz", "BODEK=7", "--dene", "--bicim", "tsv"},
       0,
       "Anahtar\tEski\tYeni\nBODEK\t0000000000\t7\n",
       ""},
      {{"denetle", "--ad", "MAGAZA"}, 0, "MAGAZA: sağlam\n", ""},
      {{"denetle", "--ad", "MAGAZA", "--sessiz"}, 0, "", ""},
      {{"denetle", "--ad", "MAGAZA", "--bicim", "tsv"}, 0, "Ad\tDurum\tIletiler\nMAGAZA\tsağlam\t\n", ""},
      {{"denetle", "--ad", "YOK", "--bicim", "json"},
       1,
       "[\n  {\"Ad\": \"YOK\", \"Durum\": \"HATA\", \"Iletiler\": \"Msg 911: Database 'YOK' does not exist. "
       "Make sure "
       "that the name is entered correctly.\"}\n]\n",
       ""},
      {{"sql", "--db", "MAGAZA", "SELECT 1 AS a"}, 0, "a\n1\n", "(1 satır)\n"},
      {{"sql", "--db", "MAGAZA", "--sessiz", "SELECT 1 AS a"}, 0, "a\n1\n", ""},
      {{"servis", "--ad", "MAGAZA", "--baglantilar", "--bicim", "json", "--sessiz"}, 0, "{}\n", ""},
      {{"sunucu-baslat"}, 0, "Sunucu zaten çalışıyor.\n", ""},
      {{"--sessiz", "sunucu-baslat"}, 0, "", ""},
      {{"guncelle", "--ad", "YOK", "--sessiz"}, 1, "", "\"YOK\" adında bir firma tanımlı değil.\n"},
      {{"yetki-goster", "--kullanici", "KORVENA", "--firma", "MAGAZA", "--bicim", "xml"},
       2,
       "",
       "Bilinmeyen biçim: xml (agac, tsv, tablo, json ya da metin)\n"},
      {{"sunucu-ayarla", "--dayaniklilik", "yok"},
       2,
       "",
       "Bilinmeyen dayanıklılık: yok (tam ya da ertelenmis)\n"},
      {{"tamamla", "firma"}, 0, "MAGAZA\n", ""},
      {{"tamamla", "kullanici"}, 0, "KORVENA\n", ""},
      {{"--dizin", "/yok", "tamamla", "firma"}, 0, "", ""},
      {{"--surum"}, 0, "Zembera 2012.002\n", ""},
      {{"yok"}, 2, "", "Bilinmeyen komut: yok\nYardım için: zembera-cli [KOMUT] --help\n"},
  };
  for (const Durum& d : durumlar) {
    EXPECT_EQ(satir.calistir(d.argumanlar), d.kod) << testing::PrintToString(d.argumanlar);
    EXPECT_EQ(yerinde(satir.out), d.out) << testing::PrintToString(d.argumanlar);
    EXPECT_EQ(satir.err, d.err) << testing::PrintToString(d.argumanlar);
  }
}

TEST_F(CiktiTest, ATimerHearsOnlyOfWhatFailed) {
  const auto hedef = satir.dizin / "yedek";
  std::filesystem::create_directory(hedef);
  const std::vector<std::string> yedekle = {"--sessiz", "yedekle", "--hepsi", "--canli", "--hedef"};
  auto argumanlar = yedekle;
  argumanlar.push_back(hedef.string());
  EXPECT_EQ(satir.calistir(argumanlar), 0);
  EXPECT_EQ(satir.out + satir.err, "");
  argumanlar.insert(argumanlar.end(), {"--bicim", "json"});
  EXPECT_EQ(satir.calistir(argumanlar), 0);
  EXPECT_EQ(std::count(satir.out.begin(), satir.out.end(), '{'), 2) << satir.out;
  argumanlar = yedekle;
  argumanlar.push_back((satir.dizin / "sys.inf").string());  // no folder
  EXPECT_EQ(satir.calistir(argumanlar), 1);
  EXPECT_EQ(satir.out.substr(0, 12), "MAGAZA\tHATA\t") << satir.out;
}

// A refusal that the procedure shows as news comes out when the command fails.
TEST_F(CiktiTest, QuietFailureStillTellsItsReason) {
  EXPECT_EQ(satir.calistir({"--sessiz", "kullanici-sil", "--ad", "KORVENA", "--evet"}), 1);
  EXPECT_NE(satir.err, "");
  EXPECT_EQ(satir.out, "");
}

TEST_F(CiktiTest, ColoursOnlyWhereTheyMayBe) {
  satir.renkli = true;
  EXPECT_EQ(satir.calistir({"sunucu", "--bicim", "tablo"}), 0);
  EXPECT_EQ(satir.out.substr(0, 31), "\033[1mAlan             Deger\n\033[0m");
  for (const char* bicim : {"tsv", "json"}) {
    EXPECT_EQ(satir.calistir({"sunucu", "--bicim", bicim}), 0);
    EXPECT_EQ(satir.out.find('\033'), std::string::npos) << satir.out;
  }
}

// Whatever can be seen in the help can be asked for: codes and forms are told by every command.
TEST(Komutlar, TellTheirCodesAndForms) {
  support::KomutSatiri satir{[](const auto& dizin) { return db::makeConnectionFactory(dizin); }};
  for (const auto yap : cli::komutlar()) {
    const cli::Komut& komut = yap();
    ASSERT_EQ(satir.calistir({std::string(komut.ad), "--help"}), 0) << komut.ad;
    std::string kodlar = "Çıkış kodları: 0 " + std::string(komut.kodlar[0]) + ", 1 " +
                         std::string(komut.kodlar[1]) + ", 2 " + std::string(komut.kodlar[2]) + ".";
    EXPECT_NE(satir.out.find(kodlar), std::string::npos) << satir.out;
    for (const cli::Secenek& secenek : komut.secenekler)
      if (secenek.ad == "--bicim") {
        EXPECT_NE(std::find(secenek.secimler.begin(), secenek.secimler.end(), "json"), secenek.secimler.end())
            << komut.ad;
        EXPECT_NE(std::find(secenek.secimler.begin(), secenek.secimler.end(), "metin"),
                  secenek.secimler.end())
            << komut.ad;
      }
  }
}

// The choices are written out for the parser; the room of settings knows the kinds themselves.
TEST(Komutlar, KnowEveryKindOfDefinition) {
  std::string turler;
  for (const std::string_view tur : cli::tanimKomutu().secenekler[0].secimler)
    turler.append(turler.empty() ? "" : ", ").append(tur);
  EXPECT_EQ(turler, settings::listeTurleri());
}

// From the first time that a work asks, Ctrl-C is a wish; afterwards it ends the program as ever.
TEST(Ilerleme, TellsWhatIsLeftAndHearsCtrlC) {
  std::istringstream in;
  std::ostringstream out, err;
  cli::Ortam ortam{.in = in, .out = out, .err = err, .dizin = {}, .surucuYap = {}};
  ortam.hataTerminal = true;
  cli::KomutIlerlemesi ilerleme(ortam);
  ilerleme.text("Data Dosyası Yedekleniyor");
  ilerleme.whole(0, 100);
  std::this_thread::sleep_for(std::chrono::milliseconds(1600));
  ilerleme.whole(50, 100);
  EXPECT_TRUE(std::regex_search(
      err.str(), std::regex("\r\033\\[K%50 Data Dosyası Yedekleniyor, kalan yaklaşık [2-9] sn$")))
      << err.str();
  EXPECT_FALSE(ilerleme.cancelled());
  std::raise(SIGINT);
  EXPECT_TRUE(ilerleme.cancelled());
  ilerleme.bitir();
  EXPECT_TRUE(err.str().ends_with("\r\033[K"));
  EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_DFL);
  EXPECT_EQ(out.str(), "");
}

}  // namespace
