#include "maintenance/aktar.h"

#include "ortam.h"

namespace maintenance::test {
namespace {

using session::Icon;

// Another installation whose files are taken over; its server is stopped, as its administrator left it.
class Aktarma : public testing::Test {
 protected:
  Aktarma() {
    {
      Ortam eski;
      eski.firma("TASINAN", "taşınan");
      eski.firma("IKINCI", "ikinci");
      eski.surucu->local("(yerel)")->stop();
      fs::create_directory(kaynak);
      for (const auto& giris : fs::directory_iterator(eski.veri))
        if (giris.path().extension() == ".mdf" || giris.path().extension() == ".ldf")
          fs::copy_file(giris.path(), kaynak / giris.path().filename());
    }
    o.firma("KOMSU", "komşu");
    o.s.boxes.shown.clear();
  }
  bool aktar(Adlar secilen, bool genel = false) {
    auto satirlar = aktarListesi(kaynak);
    for (AktarSatiri& satir : satirlar)
      satir.Sec = std::find(secilen.begin(), secilen.end(), satir.Database) != secilen.end();
    return Aktar(o.s.oturum, kaynak, o.veri.string(), satirlar, genel);
  }
  Adlar firmalar() {
    return o.oku("Defination_DB", "SELECT sysfrm_dbnm FROM sysfrmlng ORDER BY sysfrm_dbnm");
  }

  Ortam o;
  const fs::path kaynak = o.klasor / "eski kurulum";
};

TEST_F(Aktarma, ListsTheDatabasesOfAFolderWithoutTheCatalog) {
  Adlar adlar;
  for (const AktarSatiri& satir : aktarListesi(kaynak)) {
    adlar.push_back(satir.Database);
    EXPECT_FALSE(satir.Sec);
  }
  EXPECT_EQ(adlar, (Adlar{"IKINCI", "master", "TASINAN"}));
}

TEST_F(Aktarma, MakesWhatTheServerDoesNotKnowAndGivesItToTheFirstUser) {
  EXPECT_TRUE(aktar({"TASINAN"}));
  EXPECT_EQ(o.s.boxes.texts(), Adlar{"Aktarım İşlemi Başarı İle Gerçekleştirildi."});
  EXPECT_EQ(o.deger("TASINAN"), "taşınan");
  EXPECT_EQ(firmalar(), (Adlar{"KOMSU", "TASINAN"}));
  EXPECT_EQ(
      o.oku("Defination_DB",
            "SELECT sysfrm_nm,sysfrm_kd,Mali_Yil_Baslangic,Mali_Yil_Bitis,KilitBasTarih,KilitBitTarih,YR_DT,"
            "HesapTakipTipi,DipNotTahsilat,DipNotAlisVeris,DBVRSYN,TahsilatYapma FROM sysfrmlng WHERE "
            "sysfrm_dbnm='TASINAN'"),
      Adlar{"TASINAN|TASINAN|2012-01-01 00:00:00.000|2012-12-31 00:00:00.000|2012-01-01 00:00:00.000|"
            "2012-12-31 00:00:00.000|2012-03-14 00:00:00.000|Aylık|ÖDEMENİZ İÇİN TEŞEKKÜR EDERİZ|"
            "MAĞAZAMIZI TERCİH ETTİĞİNİZ İÇİN TEŞEKKÜR EDERİZ|2012.002|3"});
  EXPECT_EQ(o.oku("Defination_DB",
                  "SELECT COUNT(*) FROM sysusfrmlng U JOIN sysfrmlng F ON F.sysfrm_ID=U.sysfrm_ID WHERE "
                  "F.sysfrm_dbnm='TASINAN' AND U.sysus_ID=1"),
            Adlar{"1"});
  EXPECT_EQ(o.oku("Defination_DB",
                  "SELECT COUNT(*) FROM Kullanici K JOIN sysfrmlng F ON F.sysfrm_ID=K.Firma_ID WHERE "
                  "F.sysfrm_dbnm='TASINAN' AND K.Kullanici_ID=1"),
            Adlar{"1"});
  // Again, onto what the server knows by now: the files alone change.
  o.yaz("TASINAN", "değişti");
  EXPECT_TRUE(aktar({"TASINAN"}));
  EXPECT_EQ(o.deger("TASINAN"), "taşınan");
  EXPECT_EQ(firmalar(), (Adlar{"KOMSU", "TASINAN"}));
  EXPECT_EQ(o.deger("KOMSU"), "komşu");
  EXPECT_TRUE(o.calisiyor());
}

TEST_F(Aktarma, MovesNothingWhenOneCannotBeMoved) {
  const Adlar once = icerik(o.veri);
  fs::resize_file(kaynak / "TASINAN.mdf", 5000);
  EXPECT_FALSE(aktar({"IKINCI", "TASINAN"}));
  ASSERT_EQ(o.s.boxes.shown.size(), 1U);
  EXPECT_EQ(o.s.boxes.last().rfind("\"TASINAN\" aktarılamaz: ", 0), 0U) << o.s.boxes.last();
  fs::remove(kaynak / "TASINAN_log.ldf");
  o.s.boxes.shown.clear();
  EXPECT_FALSE(aktar({"IKINCI", "TASINAN"}));
  EXPECT_EQ(o.s.boxes.last().rfind("Kaynak dosya okunamadı (", 0), 0U) << o.s.boxes.last();
  EXPECT_EQ(firmalar(), Adlar{"KOMSU"});
  EXPECT_EQ(icerik(o.veri), once);
  EXPECT_TRUE(o.calisiyor());

  std::ofstream(o.veri / "IKINCI.mdf") << "başkasının";
  o.s.boxes.shown.clear();
  EXPECT_FALSE(aktar({"IKINCI"}));
  ASSERT_EQ(o.s.boxes.shown.size(), 2U);
  EXPECT_EQ(
      o.s.boxes.shown[0].text,
      "Bu Firma SQL SERVER Tarafından Tanınmıyor Ama Dosyası var.\nDosya için Lütfen" + o.veri.string() +
          "\\IKINCI.mdf Yoluna Bakınız.\n"
          "Eğer Bu Firmayı Oluşturmak istiyorsanız.Aşağıdaki Adımları Uygulayınız.\n"
          "1- Bu Dosyayı Yukarıda Belirtilen Yoldan Başka Bir Yere Alınız.\n"
          "2- Firmayı Oluşturunuz.\n"
          "3- Muhtemelen Var Olan Dosya Bir Korven Firmasının Bilgilerini İçerdiği İçin.\n"
          "   Bu Bilgileri Geri alabilmek SQL SERVER'i Durdurduktan Sonra Buradn Aldığınız Dosyayı Üzerine "
          "Kopyalayınız.\n"
          "YADA Lütfen Proram Satıcınızı Arayınız.");
  std::ifstream in(o.veri / "IKINCI.mdf");
  std::string icindeki;
  std::getline(in, icindeki);
  EXPECT_EQ(icindeki, "başkasının");
  EXPECT_EQ(firmalar(), Adlar{"KOMSU"});
}

TEST_F(Aktarma, TakesTheCatalogAlongAfterAQuestion) {
  const char* const soru = "Aynı Olan Dosyalar Değiştirilecek Devam Etmek İstediğinize Eminmisiniz ?";
  o.s.boxes.answers = {false};
  EXPECT_FALSE(aktar({"TASINAN", "IKINCI"}, true));
  ASSERT_EQ(o.s.boxes.texts(), Adlar{soru});
  EXPECT_EQ(o.s.boxes.shown[0].icon, Icon::Stop);
  EXPECT_EQ(firmalar(), Adlar{"KOMSU"});
  o.s.boxes.shown.clear();
  o.s.boxes.answers = {true};
  EXPECT_TRUE(aktar({"TASINAN", "IKINCI"}, true));
  EXPECT_EQ(o.s.boxes.texts(), (Adlar{soru, "Aktarım İşlemi Başarı İle Gerçekleştirildi."}));
  EXPECT_EQ(firmalar(), (Adlar{"IKINCI", "TASINAN"}));
  EXPECT_EQ(o.deger("TASINAN"), "taşınan");
  EXPECT_EQ(o.deger("IKINCI"), "ikinci");
  EXPECT_EQ(o.oku("Defination_DB", "SELECT sysdtyl FROM sysDTYL"), Adlar{o.veri.string()});
}

TEST_F(Aktarma, RefusesItsOwnFolder) {
  EXPECT_FALSE(Aktar(o.s.oturum, o.veri / ".." / "veri", o.veri.string(), {{"KOMSU", true}}, false));
  EXPECT_EQ(o.s.boxes.texts(),
            Adlar{"Programın Kurulu Olduğu Dizin İle Seçmiş Olduğunuz Dizin Aynı Lütfen Kontrol Ediniz."});
  EXPECT_TRUE(o.calisiyor());
}

}  // namespace
}  // namespace maintenance::test
