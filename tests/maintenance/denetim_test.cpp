#include "maintenance/yedek.h"
#include "maintenance/yedek_denetim.h"
#include "maintenance/yedek_saklama.h"
#include "ortam.h"
#include "platform/files.h"
#include "support/firma_karti.h"

namespace maintenance::test {
namespace {

class Denetim : public testing::Test {
 protected:
  Denetim() : hedef(o.klasor / "yedek İı") {
    fs::create_directory(hedef);
    o.calistir("Defination_DB", "CREATE TABLE NOTLAR(A INT NULL, M VARCHAR(40) NULL)");
    o.calistir("Defination_DB", "INSERT INTO NOTLAR VALUES(1,'bir') INSERT INTO NOTLAR VALUES(2,'iki')");
    o.s.boxes.shown.clear();
  }
  fs::path yedekle(bool canli = false) {
    const auto sonuc = canli ? Canli_Yedekle(o.s.oturum, "Defination_DB", hedef)
                             : Yedekle(o.s.oturum, "Defination_DB", hedef);
    EXPECT_TRUE(sonuc.tamam) << sonuc.hata;
    return sonuc.klasor;
  }
  // The rows of the proof, each as KONU|DURUM|AÇIKLAMA; the folder stays as it is.
  Adlar denetle(const fs::path& klasor) {
    std::vector<std::pair<std::string, std::string>> once, sonra;
    const auto baytlar = [&](auto& liste) {
      for (const std::string& ad : icerik(klasor)) liste.emplace_back(ad, *platform::readFile(klasor / ad));
    };
    baytlar(once);
    sonuc = Yedek_Denetle(o.s.oturum, klasor);
    baytlar(sonra);
    EXPECT_EQ(once, sonra);
    Adlar satirlar;
    for (const auto& s : sonuc.satirlar)
      satirlar.push_back(s.konu + "|" + std::string(durumYazisi(s.durum)) + "|" + s.aciklama);
    return satirlar;
  }
  // How the row of the tables begins.
  std::string tablolar() const {
    std::uint64_t toplam = 0;
    for (const auto& t : sonuc.tablolar) toplam += t.sum;
    return "Tablolar|Sağlam|" + std::to_string(sonuc.tablo) + " tablo, " + std::to_string(sonuc.satir) +
           " satır, toplamı " + toplamYaz(toplam);
  }
  static void degistir(const fs::path& dosya, const std::function<void(std::string&)>& is) {
    std::string bayt = *platform::readFile(dosya);
    is(bayt);
    std::ofstream(dosya, std::ios::binary | std::ios::trunc) << bayt;
  }

  Ortam o;
  fs::path hedef;
  YedekDenetimi sonuc;
};

const std::string zaman = "14/03/2012 15:09";
const std::string dosyalarSaglam = "Dosyalar|Sağlam|İki dosya da " + zaman + " tarihinde alındığı gibi.";
const std::string sayfalarSaglam = "Sayfalar ve dizinler|Sağlam|Hepsi okundu, hasar yok.";

TEST_F(Denetim, AWholeBackupIsProvedAndItsProofKept) {
  const fs::path klasor = yedekle();
  const std::string ilk = denetle(klasor).back();
  EXPECT_EQ(denetle(klasor),
            (Adlar{dosyalarSaglam, sayfalarSaglam, tablolar() + ": yedek alındığı andaki gibi."}));
  EXPECT_EQ(ilk, tablolar() + ": duran sunucunun dosyalarıyla aynı baytlarda sayıldı.");
  EXPECT_TRUE(sonuc.saglam);
  EXPECT_EQ(anYaz(*sonuc.onceki), zaman);
  EXPECT_EQ(icerik(klasor), (Adlar{"Defination_DB.mdf", "Defination_DB_LOG.ldf"}));
  // Under another name it is the same backup.
  fs::rename(klasor, hedef / "taşındı");
  EXPECT_EQ(denetle(hedef / "taşındı").front(), dosyalarSaglam);
  // Another machine knows nothing of it.
  fs::remove_all(o.klasor / "yedek_kanit");
  EXPECT_EQ(denetle(hedef / "taşındı").front(),
            "Dosyalar|Bilgi|Bu yedeğin alındığı andaki özeti burada kayıtlı değil; yalnız kendi içinde "
            "denetlendi.");
  EXPECT_TRUE(sonuc.saglam);
  EXPECT_FALSE(sonuc.onceki);
  EXPECT_EQ(sonuc.satirlar.back().aciklama + "|",
            tablolar().substr(std::string("Tablolar|Sağlam|").size()) + ": yalnız yedekte sayıldı.|");
  // What a proof has seen first is no witness of the moment of the backup.
  EXPECT_EQ(
      denetle(hedef / "taşındı"),
      (Adlar{"Dosyalar|Bilgi|Alındığı andaki özeti burada kayıtlı değil; iki dosya da ilk denetlendiği " +
                 zaman + " tarihindeki gibi.",
             sayfalarSaglam, tablolar() + ": ilk denetlendiği andaki gibi."}));
}

// As after a kill between the two files and their record, in the place of a folder that was taken away by
// hand.
TEST_F(Denetim, ANewBackupIsNotHeldAgainstAnOlderOneOfItsName) {
  const fs::path ilk = yedekle();
  fs::remove_all(ilk);
  o.calistir("Defination_DB", "INSERT INTO NOTLAR VALUES(3,'üç')");
  const fs::path klasor = yedekle();
  ASSERT_EQ(klasor, ilk);
  const auto sonKanit = [&] {
    fs::path son;
    for (const auto& dosya : fs::directory_iterator(o.klasor / "yedek_kanit"))
      if (son.empty() || dosya.last_write_time() > fs::last_write_time(son)) son = dosya.path();
    return son;
  };
  fs::remove(sonKanit());
  EXPECT_EQ(denetle(klasor).front(),
            "Dosyalar|Bilgi|Bu yedeğin alındığı andaki özeti burada kayıtlı değil; yalnız kendi içinde "
            "denetlendi.");
  EXPECT_TRUE(sonuc.saglam);
}

TEST_F(Denetim, ALiveBackupStopsNobodyAndIsHeldAgainstTheLiveTables) {
  auto baska = o.surucu->make("(yerel)");
  baska->open({"(yerel)", "sa", "gizli", "Defination_DB", false});
  baska->execute("BEGIN TRAN INSERT INTO NOTLAR VALUES(3,'yarım')");
  const fs::path klasor = yedekle(true);
  baska->execute("COMMIT");
  EXPECT_EQ(o.s.boxes.texts(), Adlar{"Yedekleme İşlemi Başarı İle Tamamlanmıştır"});
  EXPECT_EQ(icerik(klasor), (Adlar{"Defination_DB.mdf", "Defination_DB_LOG.ldf"}));
  const std::string satir = denetle(klasor).back();
  EXPECT_EQ(satir, tablolar() + ": yedek alındığı andaki gibi.");
  EXPECT_EQ(o.oku("Defination_DB", "SELECT COUNT(*) FROM NOTLAR"), Adlar{"3"});
  // What the tables held then is held against what they hold now: a row more is seen.
  const auto kanit = kanitlar(o.s.oturum, "defination_db").back();
  YedekKaniti baskasi = kanit;
  for (auto& tablo : baskasi.tablolar)
    if (tablo.name == "NOTLAR") ++tablo.rows;
  ASSERT_EQ(kanitYaz(o.s.oturum, baskasi), "");
  EXPECT_EQ(denetle(klasor).back(),
            "Tablolar|Kusurlu|NOTLAR: yedek alınırken 3 satırdı, yedekte 2 satır var.");
  EXPECT_FALSE(sonuc.saglam);
  baska.reset();
  o.s.boxes.answers = {true};
  EXPECT_TRUE(Geri_Al(o.s.oturum, klasor));
  EXPECT_EQ(o.oku("Defination_DB", "SELECT COUNT(*) FROM NOTLAR"), Adlar{"2"});
}

struct Birakan : session::Progress {
  void text(const std::string&) override {}
  void step(std::int64_t, std::int64_t) override {}
  void whole(std::int64_t deger, std::int64_t ust) override { paylar.emplace_back(deger, ust); }
  void pump() override {}
  bool cancelled() override { return birak; }
  std::vector<std::pair<std::int64_t, std::int64_t>> paylar;
  bool birak = true;
};

TEST_F(Denetim, TellsItsBytesAndABrokenOffOneKeepsNothing) {
  const fs::path klasor = yedekle();
  const auto bayt = static_cast<std::int64_t>(fs::file_size(klasor / "Defination_DB.mdf") +
                                              fs::file_size(klasor / "Defination_DB_LOG.ldf"));
  Birakan ilerleme;
  o.s.oturum.ilerleme = &ilerleme;
  const Adlar kanitlar = icerik(o.klasor / "yedek_kanit");
  EXPECT_EQ(denetle(klasor), Adlar{});
  EXPECT_TRUE(sonuc.vazgecildi);
  EXPECT_FALSE(sonuc.calisti);
  EXPECT_EQ(icerik(o.klasor / "yedek_kanit"), kanitlar);
  ilerleme.birak = false;
  ilerleme.paylar.clear();
  EXPECT_EQ(denetle(klasor).size(), 3U);
  EXPECT_FALSE(sonuc.onceki);
  EXPECT_TRUE(std::ranges::is_sorted(ilerleme.paylar));
  EXPECT_EQ(ilerleme.paylar.back(), std::pair(bayt, bayt));
}

TEST_F(Denetim, ABrokenOffLiveBackupLeavesNothing) {
  Birakan birakan;
  o.s.oturum.ilerleme = &birakan;
  EXPECT_EQ(Canli_Yedekle(o.s.oturum, "Defination_DB", hedef).hata, "Vazgeçildi; hiçbir şey değişmedi.");
  EXPECT_EQ(icerik(hedef), Adlar{});
  EXPECT_FALSE(fs::exists(o.klasor / "bakim.kayit"));
}

TEST_F(Denetim, DamageIsNamed) {
  const fs::path saglam = yedekle();
  denetle(saglam);
  const std::string mdf = "Defination_DB.mdf", ldf = "Defination_DB_LOG.ldf";
  const std::string degil = " yedek alındığı andaki dosya değil.";
  struct Hasar {
    const char* ad;
    std::function<void(const fs::path&)> is;
    std::string dosyalar, sonraki;  // first row whole, beginning of the next one
  };
  const Hasar hasarlar[] = {
      {"flipped byte",
       [&](const fs::path& k) { degistir(k / mdf, [](std::string& b) { b[b.size() - 3000] ^= 4; }); },
       "Dosyalar|Kusurlu|" + mdf + degil, "Sayfalar ve dizinler|Kusurlu|Msg 824: "},
      {"cut short",
       [&](const fs::path& k) { degistir(k / mdf, [](std::string& b) { b.resize(b.size() / 2); }); },
       "Dosyalar|Kusurlu|" + mdf + degil, "Açılış|Kusurlu|"},
      {"empty", [&](const fs::path& k) { degistir(k / mdf, [](std::string& b) { b.clear(); }); },
       "Dosyalar|Kusurlu|" + mdf + degil, "Açılış|Kusurlu|"},
      {"another's log",
       [&](const fs::path& k) {
         fs::copy_file(o.veri / "master_log.ldf", k / ldf, fs::copy_options::overwrite_existing);
       },
       "Dosyalar|Kusurlu|" + ldf + degil, "Açılış|Kusurlu|"},
  };
  for (const Hasar& hasar : hasarlar) {
    SCOPED_TRACE(hasar.ad);
    fs::remove_all(hedef / "bozuk");
    fs::copy(saglam, hedef / "bozuk");
    hasar.is(hedef / "bozuk");
    // A folder that is known: the damaged files stand in the place of the whole ones.
    fs::rename(saglam, hedef / "kenarda");
    fs::rename(hedef / "bozuk", saglam);
    const Adlar satirlar = denetle(saglam);
    ASSERT_GE(satirlar.size(), 2U);
    EXPECT_EQ(satirlar[0], hasar.dosyalar);
    EXPECT_EQ(satirlar[1].substr(0, hasar.sonraki.size()), hasar.sonraki);
    EXPECT_FALSE(sonuc.saglam);
    fs::remove_all(saglam);
    fs::rename(hedef / "kenarda", saglam);
  }
  // The record of the whole one has not suffered.
  EXPECT_EQ(denetle(saglam).front(), dosyalarSaglam);
  EXPECT_TRUE(sonuc.saglam);
  EXPECT_TRUE(sonuc.onceki);
  o.s.boxes.shown.clear();
  EXPECT_FALSE(Yedek_Denetle(o.s.oturum, hedef).calisti);
  EXPECT_EQ(o.s.boxes.texts(), Adlar{"Bu Klasör Geri Alınabilecek Bir Firma Bilgisi İçermiyor."});
}

TEST_F(Denetim, TheSchemaMustBeACompanys) {
  o.s.oturum.Yeni_Kayit = true;
  auto kart = support::firmaKarti("GERCEK");
  ASSERT_TRUE(company::Kaydet(o.s.oturum, kart)) << o.s.boxes.last();
  const auto semasi = [&](const std::string& firma) {
    const auto yedek = Yedekle(o.s.oturum, firma, hedef);
    for (const std::string& satir : denetle(yedek.klasor))
      if (satir.starts_with("Şema")) return satir;
    return std::string("yok");
  };
  EXPECT_EQ(semasi("GERCEK").substr(0, 37), "Şema|Bilgi|Önceki sürümden: yeni ");
  EXPECT_TRUE(sonuc.saglam);
  o.calistir("GERCEK", "CREATE TABLE YARINKI (A INT NULL)");
  EXPECT_EQ(semasi("GERCEK"),
            "Şema|Bilgi|Bu programın bilmediği tablolar var, daha yeni bir sürümden olabilir: YARINKI");
  EXPECT_TRUE(sonuc.saglam);
  o.calistir("GERCEK", "DROP TABLE YARINKI");
  o.calistir("GERCEK", "ALTER TABLE CARIKART DROP COLUMN Unvan");
  o.calistir("GERCEK", "DROP TABLE AMBARKILIT");
  EXPECT_EQ(semasi("GERCEK"),
            "Şema|Kusurlu|Bir firmada bulunması gerekenler eksik: CARIKART.Unvan, AMBARKILIT");
  EXPECT_FALSE(sonuc.saglam);
}

TEST(Saklama, DaysThenWeeksThenMonthsAndNeverTheProvedOrTheNewest) {
  std::vector<YedekKaydi> yedekler;
  const auto ekle = [&](int yil, int ay, int gun, int sira = 0) {
    YedekKaydi kayit;
    kayit.gun = {yil, ay, gun};
    kayit.sira = sira;
    kayit.klasor = std::to_string(yil) + "." + std::to_string(ay) + "." + std::to_string(gun) +
                   (sira ? "_" + std::to_string(sira) : "");
    yedekler.push_back(kayit);
  };
  const auto gidenler = [&](int gun, const std::string& kanitli = "") {
    Adlar adlar;
    for (const auto& kayit : seyreltilecekler(yedekler, {2012, 3, 14}, gun, kanitli))
      adlar.push_back(kayit.klasor.string());
    return adlar;
  };
  EXPECT_EQ(gidenler(3), Adlar{});
  ekle(2009, 5, 1);
  EXPECT_EQ(gidenler(3), Adlar{});  // the only one is the newest
  ekle(2012, 3, 14), ekle(2012, 3, 14, 1), ekle(2012, 3, 12);
  EXPECT_EQ(gidenler(3), Adlar{"2009.5.1"});
  EXPECT_EQ(gidenler(3, "2009.5.1"), Adlar{});
  // 5 to 11 March 2012 is one week, Monday to Sunday; the newest of it stays.
  ekle(2012, 3, 5), ekle(2012, 3, 8), ekle(2012, 3, 11), ekle(2012, 3, 4);
  EXPECT_EQ(gidenler(3), (Adlar{"2009.5.1", "2012.3.5", "2012.3.8"}));
  // Weekly ones begin behind the days (11 March) and end eight weeks before (15 January).
  ekle(2012, 1, 16), ekle(2012, 1, 15), ekle(2012, 1, 3), ekle(2011, 12, 31), ekle(2011, 12, 1);
  EXPECT_EQ(gidenler(3), (Adlar{"2009.5.1", "2011.12.1", "2012.1.3", "2012.3.5", "2012.3.8"}));
  // Twelve months, the one of the boundary counted.
  ekle(2011, 2, 20), ekle(2011, 1, 31);
  EXPECT_EQ(gidenler(3), (Adlar{"2009.5.1", "2011.1.31", "2011.12.1", "2012.1.3", "2012.3.5", "2012.3.8"}));
}

TEST_F(Denetim, ThinningLeavesWhatIsNotABackupAlone) {
  for (const char* ad : {"Defination_DB_2011_01_02", "Defination_DB_2011_01_03", "Defination_DB_2011_01_04",
                         "Defination_DB_eski", "KOMSU_2011_01_02"}) {
    fs::create_directory(hedef / ad);
    const std::string db = std::string(ad).starts_with("KOMSU") ? "KOMSU" : "Defination_DB";
    for (const char* ek : {".mdf", "_LOG.ldf"}) std::ofstream(hedef / ad / (db + ek)) << "x";
  }
  std::ofstream(hedef / "Defination_DB_2011_01_03" / "notlarım.txt") << "önemli";
  yedekle();
  EXPECT_EQ(Yedekleri_Seyrelt(o.s.oturum, hedef, "Defination_DB", 1), "");
  EXPECT_EQ(icerik(hedef), (Adlar{"Defination_DB_2011_01_03", "Defination_DB_2012_03_14",
                                  "Defination_DB_eski", "KOMSU_2011_01_02"}));
}

}  // namespace
}  // namespace maintenance::test
