#include "rights/kasiyer.h"

#include "rights/ortam.h"

namespace {

using rights::KasiyerDuzeni;
using Texts = std::vector<std::string>;

class KasiyerTest : public rights::test::OrtamTest {
 protected:
  void SetUp() override {
    id = kullanici("ALİ", "abc", {1, 2});
    kullanici("VELİ", "abc", {1, 2});
    run("INSERT INTO MERKEZ.dbo.KASAKART(Kasa_Kod,Kasa_Ad) VALUES('K1','Ana') INSERT INTO "
        "MERKEZ.dbo.KASAKART(Kasa_Kod,Kasa_Ad) "
        "VALUES('K''2','Yan') INSERT INTO MERKEZ.dbo.CARIKART(Cari_Kod,Unvan) VALUES('P','Peşin') INSERT "
        "INTO MERKEZ.dbo.SATICI(Satici_Kodu,Satici_Adi) VALUES('S1','Ayşe') INSERT INTO "
        "MERKEZ.dbo.TARTIBARKOD(Bayrak_Kodu,Master_Kod) "
        "VALUES('27',5) INSERT INTO MERKEZ.dbo.TARTIBARKOD(Bayrak_Kodu,Master_Kod,Adetli) VALUES('28',5,1)");
    for (const char* kod : {"ELMA", "ARMUT", "AYVA"})
      run("INSERT INTO MERKEZ.dbo.STOKKART(Stok_Kod,Stok_Ad,Aktif) VALUES('" + std::string(kod) + "','" +
          kod + " taze'," + (kod == std::string("AYVA") ? "0" : "1") + ")");
  }
  KasiyerDuzeni ac() {
    KasiyerDuzeni duzen;
    o().Secili_ID = id;
    EXPECT_TRUE(rights::Kasiyer_Yukle(o(), duzen));
    EXPECT_TRUE(duzen.okundu) << s.boxes.last();
    s.boxes.shown.clear();
    surucu.izleme.sifirla();
    return duzen;
  }
  static rights::FisDegeri& fis(KasiyerDuzeni& duzen, std::string_view yazi) {
    for (std::size_t i = 0; i < duzen.FisGrd.size(); ++i)
      if (rights::fisTanimlari()[i].yazi == yazi) return duzen.FisGrd[i];
    throw std::logic_error("no row");
  }
  static db::Value& ayar(KasiyerDuzeni& duzen, std::string_view kolon) {
    for (std::size_t i = 0; i < duzen.ayarlar.size(); ++i)
      if (rights::ayarTanimlari()[i].kolon == kolon) return duzen.ayarlar[i];
    throw std::logic_error("no setting");
  }
  static void doldur(KasiyerDuzeni& duzen) {
    fis(duzen, "Kasa Kodu") = {"K'2", "", true};
    fis(duzen, "Virman Kasa Kodu").Yetkisi = "K1";
    fis(duzen, "Cari Kodu") = {"P", "", false};
    fis(duzen, "Ambar No").Yetkisi = "1";
    fis(duzen, "Satıcı Kodu") = {"S1", "", true};
    fis(duzen, "İşyeri Kodu").Yetkisi = "1";
    fis(duzen, "Fiyat No") = {"3", "", false};
    fis(duzen, "Devredilen Kullanıcı").Yetkisi = "VELİ";
    fis(duzen, "Nakit").Yetkisi2 = true;
    fis(duzen, "İskonto").Yetkisi2 = true;
    for (std::size_t i = 0; i < duzen.kolonlar.size(); ++i)
      duzen.kolonlar[i] = rights::kasiyerKolonlari()[i].tur == rights::KolonTuru::Bit
                              ? db::Value(i % 2 == 0)
                              : db::Value("COM'" + std::to_string(i));
    for (const char* on : {"YakaKarti", "SesliUyari", "Kisayol", "FisNo", "SatirAciklama"})
      ayar(duzen, on) = true;
    ayar(duzen, "FaturaDizayn") = "fatura.ftr";
    duzen.TeraziGRD[1].Sec = true;
    duzen.StokFlx = {{1, "", ""}, {}, {3, "", ""}};
  }
  std::string durum() {
    return rows("SELECT * FROM Kullanici ORDER BY ID") + "#" + rows("SELECT * FROM KASIYERCONFIG") + "#" +
           rows("SELECT * FROM KSKISAYOL");
  }
  std::int64_t id = 0;
};

TEST_F(KasiyerTest, ThreeStoresAreWrittenAndReadBackAsShown) {
  KasiyerDuzeni duzen = ac();
  ASSERT_EQ(duzen.TeraziGRD.size(), 2u);
  EXPECT_TRUE(fis(duzen, "İskonto").Yetkisi.empty());
  doldur(duzen);
  ASSERT_TRUE(rights::Kasiyer_Yetki_Kaydet(o(), duzen)) << s.boxes.last();
  EXPECT_EQ(s.boxes.texts(), Texts{"Yetkilendirme İşlemi Başarı İle Tamamlandı."});
  EXPECT_EQ(rows("SELECT "
                 "Def_Kasa_ID,Vir_Kasa_ID,Def_Cari_Kod,Def_Ambar_No,Def_Satici,DEF_Isyeri_Kod,Kullanici_"
                 "Fiyat,Dvt_Kullanici,KS_Degistirsin,"
                 "CR_Degistirsin,SAK_Degistirsin,FiyatDegistirsin,Nakit,Veresiye,Iskonto,ISK,MiktarDegistir,"
                 "TerPort,GosMesaj,KHE FROM Kullanici WHERE Kullanici_ID=2 AND Firma_ID=1"),
            "2|1|P|1|2|1|3|3|1|0|1|0|1|0|1|1|0|COM'3|COM'8|11111111111111");
  EXPECT_EQ(rows("SELECT "
                 "Kullanici_ID,Firma_ID,DokunmatikEkran,YakaKarti,SesliUyari,Kisayol,FaturaDizayn,"
                 "RaporYazici,Teraziler,FisNo,Tarih,SatirAciklama FROM "
                 "KASIYERCONFIG"),
            "2|1|0|1|1|1|fatura.ftr||28|1|0|1");
  EXPECT_EQ(rows("SELECT Kullanici_ID,Firma_ID,S_No,Stok_ID FROM KSKISAYOL ORDER BY S_No"),
            "2|1|1|1\n2|1|3|3");

  KasiyerDuzeni again = ac();
  for (std::size_t i = 0; i < duzen.FisGrd.size(); ++i) {
    EXPECT_EQ(again.FisGrd[i].Yetkisi, duzen.FisGrd[i].Yetkisi) << rights::fisTanimlari()[i].yazi;
    EXPECT_EQ(again.FisGrd[i].Yetkisi2, duzen.FisGrd[i].Yetkisi2) << rights::fisTanimlari()[i].yazi;
  }
  EXPECT_EQ(fis(again, "Satıcı Kodu").ad, "Ayşe");
  EXPECT_EQ(again.StokFlx[2].Stok_Adi, "AYVA taze");
  EXPECT_EQ(again.StokFlx[1].Stok_ID, 0);
  EXPECT_TRUE(again.TeraziGRD[1].Sec);
  for (std::size_t i = 0; i < duzen.ayarlar.size(); ++i)
    EXPECT_EQ(again.ayarlar[i].boolean(), duzen.ayarlar[i].boolean()) << rights::ayarTanimlari()[i].kolon;

  // Saved again: still one row, an unticked scale leaves an empty text, the other company has nothing.
  again.TeraziGRD[1].Sec = false;
  again.StokFlx.clear();
  ASSERT_TRUE(rights::Kasiyer_Yetki_Kaydet(o(), again));
  EXPECT_EQ(
      rows("SELECT COUNT(*),MAX(DATALENGTH(Teraziler)) FROM KASIYERCONFIG") + rows("SELECT * FROM KSKISAYOL"),
      "1|0");
  ASSERT_TRUE(rights::Kasiyer_Firma_Sec(o(), again, "SUBE"));
  EXPECT_EQ(fis(again, "Kasa Kodu").Yetkisi, "");
  EXPECT_FALSE(ayar(again, "YakaKarti").boolean());
}

TEST_F(KasiyerTest, AValueWhoseRowHasGoneShowsEmptyAndAnUnknownCodeIsRefused) {
  KasiyerDuzeni duzen = ac();
  doldur(duzen);
  ASSERT_TRUE(rights::Kasiyer_Yetki_Kaydet(o(), duzen));
  run("DELETE FROM MERKEZ.dbo.KASAKART WHERE Kasa_ID=2 DELETE FROM MERKEZ.dbo.TARTIBARKOD WHERE "
      "Bayrak_Kodu='28'");
  KasiyerDuzeni again = ac();
  EXPECT_EQ(fis(again, "Kasa Kodu").Yetkisi, "");
  ASSERT_EQ(again.TeraziGRD.size(), 2u);
  EXPECT_EQ(again.TeraziGRD[1].aciklama, "tanımı silinmiş");
  EXPECT_TRUE(again.TeraziGRD[1].Sec);
  const std::string before = durum();
  s.boxes.shown.clear();
  EXPECT_FALSE(rights::Kasiyer_Yetki_Kaydet(o(), duzen));
  EXPECT_EQ(s.boxes.texts(), Texts{"Kasa Kodu bulunamadı: K'2"});
  EXPECT_EQ(durum(), before);
}

TEST_F(KasiyerTest, ListsAreSearchedByTheBeginningOfTheSortedColumn) {
  const KasiyerDuzeni duzen = ac();
  std::vector<rights::AramaSatiri> found;
  const auto kodlar = [&](rights::AramaTuru tur, const char* text, bool adaGore, rights::ListeTipi tip) {
    EXPECT_TRUE(rights::aramaListesi(o(), duzen, tur, text, adaGore, tip, found)) << s.boxes.last();
    std::string out;
    for (const auto& each : found) out += each.kod + " ";
    return out;
  };
  using rights::AramaTuru;
  using rights::ListeTipi;
  EXPECT_EQ(kodlar(AramaTuru::Stok, "", false, ListeTipi::Tumu), "ARMUT AYVA ELMA ");
  EXPECT_EQ(kodlar(AramaTuru::Stok, "a", false, ListeTipi::Aktif), "ARMUT ");
  EXPECT_EQ(kodlar(AramaTuru::Stok, "", false, ListeTipi::AktifOlmayan), "AYVA ");
  EXPECT_EQ(kodlar(AramaTuru::Stok, "%ma", true, ListeTipi::Tumu), "ELMA ");
  EXPECT_EQ(surucu.izleme.deyimler.back(),
            "SELECT TOP 1000 Stok_ID AS Deger,Stok_Kod AS Kod,Stok_Ad AS Ad FROM STOKKART WHERE Stok_Ad LIKE "
            "'%ma%' ORDER BY Stok_Ad");
  EXPECT_EQ(kodlar(AramaTuru::Kasa, "K'", false, ListeTipi::Tumu), "K'2 ");
  EXPECT_EQ(kodlar(AramaTuru::Fiyat, "1", false, ListeTipi::Tumu), "1 10 ");
  // The user himself is left out; another with two companies comes once.
  EXPECT_EQ(kodlar(AramaTuru::Kullanici, "", false, ListeTipi::Tumu), "KORVENA VELİ ");
}

TEST(AramaTus, KeysOfTheSearch) {
  const struct {
    const char* before;
    char32_t key;
    bool changed;
    const char* after;
  } cases[] = {{"ab", 27, false, "ab"}, {"ab", 10, false, "ab"}, {"ab", 9, false, "ab"},
               {"aş", 8, true, "a"},    {"", 8, false, ""},      {"", U' ', true, "%"},
               {"a", U' ', true, "a "}, {"a", U'ğ', true, "ağ"}, {"", U'%', true, "%"}};
  for (const auto& c : cases) {
    std::string text = c.before;
    EXPECT_EQ(rights::Arama_Tus(text, c.key), c.changed) << c.before;
    EXPECT_EQ(text, c.after);
  }
}

TEST_F(KasiyerTest, ACompanyThatIsGoneIsToldAndNothingIsWritten) {
  KasiyerDuzeni duzen = ac();
  o().Baglanti3.reset();
  bagla("master");
  o().Baglanti->execute("DROP DATABASE SUBE");
  EXPECT_FALSE(rights::Kasiyer_Firma_Sec(o(), duzen, "SUBE"));
  EXPECT_TRUE(s.boxes.last().starts_with("\"SUBE\" firmasının veritabanına ulaşılamadı.")) << s.boxes.last();
  const std::string before = durum();
  EXPECT_FALSE(rights::Kasiyer_Yetki_Kaydet(o(), duzen));
  EXPECT_EQ(s.boxes.last(), "Bu firmadaki kasiyer ayarları okunamadı; hiçbir şey yazılmadı.");
  EXPECT_EQ(durum(), before);
}

}  // namespace
