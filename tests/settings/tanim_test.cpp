#include "settings/tanim.h"

#include <functional>

#include "company/sirket.h"
#include "support/izleyen_surucu.h"

namespace {

using settings::IzgaraSatirlari;
using settings::TanimTuru;

const TanimTuru& tur(std::string_view ad) {
  return *settings::tanimBul(ad);
}

class TanimTest : public company::test::SirketTest {
 protected:
  void SetUp() override {
    oturum().surucu = &izleyen;
    oturum().Kullanici_ID = 1;
    oturum().Secili_Firma = "GUNCEL2012";
    sirket().s.boxes.shown.clear();
    ASSERT_EQ(settings::Tanim_Firma_Bagla(oturum()), "");
    sirket().run(
        "DELETE FROM AMBAR INSERT INTO AMBAR(Ambar_No,Ambar_Ad,Merkez_Ambar) VALUES(1,'Merkez',1) "
        "DELETE FROM ISYERITANIM WHERE Isyeri_ID<>1 DELETE FROM SATICI WHERE Kullanici_ID<>0 DELETE FROM "
        "DOVIZTANIM WHERE Kullanici_ID<>0 DELETE FROM RENKTANIM DELETE FROM ISYERIBAGAMBAR DELETE FROM "
        "ISYERIBAGSATICI DELETE FROM KASAHAREKET DELETE FROM STOKHAREKET");
  }
  void TearDown() override { oturum().surucu = sirket().factory.get(); }
  session::Oturum& oturum() { return sirket().s.oturum; }
  IzgaraSatirlari yukle(std::string_view ad) {
    auto liste = settings::Tanim_Yukle(oturum(), tur(ad));
    EXPECT_EQ(liste.hata, "");
    return liste.satirlar;
  }
  std::string rows(const std::string& sql) { return sirket().rows(sql); }
  support::IzleyenSurucu izleyen{db::makeConnectionFactory(sirket().folder)};
};

TEST(SonrakiKod, FollowsItsSequencesAndItsOddities) {
  const std::pair<const char*, const char*> ciftler[] = {
      {"AZ", "BA"}, {"Z", "AA"}, {"Y", "ZZ"},    {"99", "00"}, {"", ""},      {"A9", "B0"},
      {"C", "Ç"},   {"ı", "i"},  {"p", "r"},     {"q", "q"},   {"ZZ", "AAA"}, {"a-9", "a-0"},
      {"y", "zz"},  {"z", "aa"}, {"009", "010"}, {"AY", "AZ"}, {"M1", "M2"}};
  for (const auto& [kod, sonraki] : ciftler) EXPECT_EQ(settings::Sonraki_Kod(kod), sonraki) << kod;
}

// Rows of a grid that has only some of its columns: code, name and flags by their places.
struct Durum {
  const char* tur;
  IzgaraSatirlari satirlar;
  int satir;
  const char* hata;
};

TEST(TanimKontrol, EachMemberSaysItInItsWords) {
  const Durum durumlar[] = {
      {"isyeri", {{{"1", "A", "", "", "1"}, true}}, 0, "Bütün İşyerlerini Silemezsiniz."},
      {"isyeri", {{{"", "A", "", "", ""}}}, 0, "Bütün İşyerlerini Silemezsiniz."},
      {"isyeri",
       {{{"1", "A", "", "", ""}}, {{"2", "", "", "", ""}}},
       0,
       "2. Satırda İşyerinin Adı Girilmemiştir. Lütfen Kontrol Ediniz"},
      {"isyeri",
       {{{"1", "A", "", "", ""}}, {{"", "B", "", "", ""}}},
       0,
       "2. Satırda İşyeri Kodu Girilmemiş.Lütfen Girişleri KOntrol Ediniz"},
      {"isyeri", {{{"1", "A", "", "", ""}}, {{"", "B", "", "", ""}}}, 1, ""},
      {"isyeri",
       {{{"1", "A", "", "", ""}}, {{"2", "B", "", "", ""}}, {{"1", "C", "", "", ""}}},
       0,
       "1. Satırla 3. Satırda Aynı İşyeri Koduna Rastlanmıştır"},
      {"isyeri", {{{"1", "A", "", "", "5"}, true}, {{"1", "B", "", "", ""}}}, 0, ""},
      {"isyeri", {{{"1", "A", "", "", ""}}, {{"1", "B", "", "", "5"}, true}}, 0, ""},
      {"satici", {}, -1, "Fis Boş Kaydedilemez"},
      {"satici",
       {{{"1", "A", "", "", ""}}, {{"1", "B", "", "", ""}}},
       0,
       "1. Satırla 2. Satırdsa Aynı Satıcı Koduna Rastlanmıştır"},
      {"ambar", {{{"", "", "", ""}}}, 0, "Fis Boş Kaydedilemez"},
      {"ambar", {{{"", "", "Depo", ""}}}, 0, "Lütfen Ambar Numarası Giriniz"},
      {"ambar", {{{"", "", "Depo", ""}}}, -1, "1 Nolu Satırdaki Ambar Numarası Boş Geçilmiştir."},
      {"ambar", {{{"", "1x", "Depo", ""}}}, 0, "Lütfen Ambar Numarasına Sayı Giriniz"},
      {"ambar",
       {{{"", "1x", "Depo", ""}}},
       -1,
       "1 Nolu Satırdaki Ambar Numarası İçinde Harflere yada Noktalama İşaretlerine Rastlandı. \nLütfen "
       "Girişleri Düzeltiniz"},
      {"ambar",
       {{{"", "0", "Depo", "1"}}},
       0,
       "1 Nolu Satırda 0(SIFIR) Nolu Ambar Tanıtılmıştır. Lütfen Bu Ambarın Numarasını Değiştiriniz"},
      {"ambar",
       {{{"", "1", "A", "1"}}, {{"", "5", "", ""}}},
       0,
       "2 Nolu Satırdaki Ambar Adı Boş Geçilmiştir."},
      {"ambar", {{{"", "1", "A", "1"}}, {{"", "2", "", ""}}}, 0, ""},
      {"ambar",
       {{{"", "1", "A", "1"}}, {{"", "01", "B", ""}}},
       1,
       "Su An Girmiş Olduğunuz Ambar Numarası Daha Önceden Bir Ambara Verilmiştir Lütfen Değiştirin"},
      {"ambar",
       {{{"", "1", "A", "0"}}},
       0,
       "Hiçbir Ambar Merkez Olarak Belirlenmemiş Lütfen Ambarlardan Merkez Ambar Olarak Belirleyiniz."},
      {"fiyat",
       {{{"1", "A", "0", "0", ""}}, {{"1", "B", "1", "0", ""}}},
       0,
       "Su An Girmiş olduğunuz Fiyat Numarası Daha Önceden Bir Fiyata Verilmiştir Lütfen Değiştirin"},
      {"fiyat", {{{"", "A", "1", "0", ""}}}, 0, "Lütfen Fiyat Numarası Giriniz"},
      {"fiyat",
       {{{"1", "A", "0", "0", ""}}},
       0,
       "Lütfen Fiyatlardan Birini Aktif Fiyat Olarak İşaretleyiniz"},
      {"doviz", {{{"", "", "Dolar", ""}}}, 0, "Lütfen Döviz Kodunu Giriniz"},
      {"doviz",
       {{{"", "USD", "Dolar", ""}}, {{"", "", "Avro", ""}}},
       0,
       "2 Nolu Döviz Kodu Boş Geçilmiştir."},
      {"doviz",
       {{{"", "USD", "Dolar", ""}}, {{"", "USD", "Avro", ""}}},
       1,
       "Şu An Girmiş olduğunuz Döviz Kodu Daha Önceden Bir Dövize Verilmiştir lütfen Değiştirin"}};
  for (const Durum& d : durumlar) EXPECT_EQ(tur(d.tur).kontrol(d.satirlar, d.satir).hata, d.hata) << d.tur;
}

TEST_F(TanimTest, WorkplacesAreUpdatedAddedAndRemovedInOneTransaction) {
  auto satirlar = yukle("isyeri");
  ASSERT_EQ(satirlar.size(), 1U);
  satirlar[0].hucreler[1] = "Kasap'ın Yeri";
  satirlar.push_back({{"12345678901", "İKİNCİ", "1", "1", ""}});
  satirlar.push_back({{"3", "ÜÇÜNCÜ", "", "", ""}});
  izleyen.izleme.sifirla();
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("isyeri"), satirlar), "");
  EXPECT_EQ(izleyen.izleme.deyimler.size(), 2U) << "the rows and their commit";
  EXPECT_EQ(
      rows("SELECT Isyeri_Kodu,Isyeri_Adi,Ambar_No,Durum,Kullanici_ID FROM ISYERITANIM ORDER BY Isyeri_ID"),
      "1|Kasap'ın Yeri|0|1|1\n1234567890|İKİNCİ|1|1|1\n3|ÜÇÜNCÜ|0|0|1");
  satirlar = yukle("isyeri");
  satirlar[1].gizli = true;
  satirlar.push_back({{"1234567890", "YENİDEN", "0", "1", ""}});
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("isyeri"), satirlar), "");
  EXPECT_EQ(rows("SELECT Isyeri_Kodu,Isyeri_Adi FROM ISYERITANIM ORDER BY Isyeri_ID"),
            "1|Kasap'ın Yeri\n3|ÜÇÜNCÜ\n1234567890|YENİDEN");
}

TEST_F(TanimTest, AFailureInTheMiddleLeavesTheTableAsItWas) {
  const std::string once = rows("SELECT Ambar_No,Ambar_Ad,Merkez_Ambar FROM AMBAR");
  IzgaraSatirlari satirlar{{{"", "1", "A", "1"}}, {{"", "2", "ÇOK UZUN BİR AMBAR ADI", "0"}}};
  EXPECT_NE(settings::Tanim_Kaydet(oturum(), tur("ambar"), satirlar), "");
  EXPECT_EQ(rows("SELECT Ambar_No,Ambar_Ad,Merkez_Ambar FROM AMBAR"), once);
  EXPECT_EQ(rows("SELECT @@TRANCOUNT"), "0");
  // The same in the second batch: the first one is taken back, too.
  satirlar.clear();
  for (int i = 1; i <= 150; ++i) satirlar.push_back({{"", std::to_string(i), "A", "0"}});
  satirlar[140].hucreler[2] = "ÇOK UZUN BİR AMBAR ADI";
  EXPECT_NE(settings::Tanim_Kaydet(oturum(), tur("ambar"), satirlar), "");
  EXPECT_EQ(rows("SELECT Ambar_No,Ambar_Ad,Merkez_Ambar FROM AMBAR"), once);
}

TEST_F(TanimTest, WarehousesAreRewrittenWithNewIds) {
  auto satirlar = yukle("ambar");
  const std::string eski = satirlar[0].hucreler[0];
  satirlar.push_back({{"", "2", "DEPO", "0"}});
  satirlar.push_back({{"", "3", "", ""}});
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("ambar"), satirlar), "");
  EXPECT_EQ(rows("SELECT Ambar_No,Ambar_Ad,Merkez_Ambar,Kullanici_ID FROM AMBAR ORDER BY Ambar_No"),
            "1|Merkez|1|NULL\n2|DEPO|0|NULL\n3||0|NULL");
  EXPECT_NE(yukle("ambar")[0].hucreler[0], eski);
}

TEST_F(TanimTest, PricesCarryTheirDescriptionIntoStockPrices) {
  sirket().run("DELETE FROM STOKFIYAT INSERT INTO STOKFIYAT(Fiyat_Sira_No,Stok_ID) VALUES(2,7)");
  auto satirlar = yukle("fiyat");
  ASSERT_EQ(satirlar.size(), 10U);
  satirlar[1].hucreler[1] = "TOPTAN";
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("fiyat"), satirlar), "");
  EXPECT_EQ(rows("SELECT Fiyat_Aciklama FROM STOKFIYAT"), "TOPTAN");
  EXPECT_EQ(rows("SELECT Sira_No,Fiyat_Aciklama,On_Deger,Ambar_Fiyati FROM FIYATTANIM WHERE Sira_No<3"),
            "1|Fiyat 1|1|0\n2|TOPTAN|0|0");
  sirket().run("DELETE FROM STOKFIYAT");
}

TEST_F(TanimTest, CurrenciesOutsideTheGridGoButNeverTheSystems) {
  EXPECT_EQ(
      settings::Tanim_Kaydet(oturum(), tur("doviz"),
                             {{{"", "USD", "Dolar", "1"}}, {{"", "EUR", "Avro", "0"}}, {{"", "", "", ""}}}),
      "");
  auto satirlar = yukle("doviz");
  ASSERT_EQ(satirlar.size(), 2U);
  satirlar.erase(satirlar.begin());
  satirlar[0].hucreler[2] = "Euro";
  satirlar.push_back({{"99999", "GBP", "Sterlin", "0"}});  // its row is gone: it comes back
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("doviz"), satirlar), "");
  EXPECT_EQ(rows("SELECT Doviz_Kod,Doviz_Ad,Default_Doviz,Kullanici_ID FROM DOVIZTANIM ORDER BY Doviz_ID"),
            "Yok|Yok|0|0\nEUR|Euro|0|1\nGBP|Sterlin|0|1");
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("doviz"), {}), "");
  EXPECT_EQ(rows("SELECT Doviz_Kod FROM DOVIZTANIM"), "Yok");
}

TEST_F(TanimTest, ColoursAreAddedAndChangedAndNeverDeleted) {
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("renk"), {{{"", "K1", "Kırmızı"}}, {{"", "M1", "Mavi"}}}),
            "");
  auto satirlar = yukle("renk");
  satirlar.erase(satirlar.begin());
  satirlar[0].hucreler[2] = "Lacivert";
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("renk"), satirlar), "");
  EXPECT_EQ(rows("SELECT Renk_Kod,Renk_Adi,Kullanici_ID FROM RENKTANIM ORDER BY Renk_ID"),
            "K1|Kırmızı|1\nM1|Lacivert|1");
}

TEST_F(TanimTest, RemovalIsGuardedAndConfirmedInTheMembersOrder) {
  sirket().run(
      "INSERT INTO ISYERITANIM(Isyeri_Kodu,Isyeri_Adi) VALUES('2','İKİ') INSERT INTO "
      "DOVIZTANIM(Doviz_Kod,Kullanici_ID) VALUES('USD',1)");
  auto& boxes = sirket().s.boxes;
  const std::string iki = rows("SELECT Isyeri_ID FROM ISYERITANIM WHERE Isyeri_Kodu='2'");
  const session::IzgaraSatiri bir{{"1", "A", "0", "1", "1"}}, isyeri{{"2", "İKİ", "0", "1", iki}},
      ambar{{"", "1", "A", "1"}}, yeni{{"", "Y", "Yeni", ""}};
  const struct {
    const char* tur;
    session::IzgaraSatiri satir;
    std::deque<bool> cevaplar;
    bool silinir;
    std::vector<std::string> kutular;
  } durumlar[] = {{"isyeri", bir, {}, false, {"Bu İşyeri Silinemez!"}},
                  {"isyeri", isyeri, {true}, true, {"Satırı silmek istediğinizden emin misiniz?"}},
                  {"isyeri", isyeri, {false}, false, {"Satırı silmek istediğinizden emin misiniz?"}},
                  {"ambar", ambar, {true}, true, {"Ambar Tanımını Silmek istediğinizden Eminmisiniz"}},
                  {"doviz", yeni, {true}, true, {"Döviz Tanımını Slmek İstediğinizden Eminmisiniz ?"}},
                  {"doviz", yeni, {false}, false, {"Döviz Tanımını Slmek İstediğinizden Eminmisiniz ?"}}};
  for (const auto& d : durumlar) {
    boxes.shown.clear();
    boxes.answers = d.cevaplar;
    EXPECT_EQ(settings::Satir_Silinir(oturum(), tur(d.tur), d.satir), d.silinir) << d.tur;
    EXPECT_EQ(boxes.texts(), d.kutular);
  }
  // With movements: each guard in its place before or behind the question.
  sirket().run("INSERT INTO SATICI(Satici_Kodu,Satici_Adi,Kullanici_ID) VALUES('S','SATICI',1)");
  const std::string usd = rows("SELECT Doviz_ID FROM DOVIZTANIM WHERE Doviz_Kod='USD'"),
                    satici = rows("SELECT Satici_ID FROM SATICI WHERE Satici_Kodu='S'");
  sirket().run(
      "INSERT INTO STOKHAREKET(Islem_Tipi,Ambar_No,Fis_No,Stok_Kod) VALUES('Mal',1,'1','A') INSERT INTO "
      "KASAHAREKET(Isyeri_ID,Satici_ID,Doviz_ID,Fis_No,Islem_Tipi) VALUES(" +
      iki + "," + satici + "," + usd + ",'1','Nakit Tahsilat')");
  const struct {
    const char* tur;
    session::IzgaraSatiri satir;
    std::vector<std::string> kutular;
    session::Icon ikon;
  } engelli[] = {
      {"isyeri", isyeri, {"Bu İşyerine ait hareketler var.Silinemez!"}, session::Icon::Information},
      {"ambar", ambar, {"Bu Ambar Hareket Görmüştür. Silinemez"}, session::Icon::Stop},
      {"satici",
       {{"S", "SATICI", "0", "1", satici}},
       {"Satırı silmek istediğinizden emin misiniz?", "Bu satıcıya ait hareketler var.Silinemez!"},
       session::Icon::Information},
      {"doviz",
       {{usd, "USD", "", "0"}},
       {"Döviz Tanımını Slmek İstediğinizden Eminmisiniz ?",
        "Bu döviz koduyla işlemleriniz mevcut. Silinemez"},
       session::Icon::Stop}};
  for (const auto& d : engelli) {
    boxes.shown.clear();
    boxes.answers = {true};
    EXPECT_FALSE(settings::Satir_Silinir(oturum(), tur(d.tur), d.satir)) << d.tur;
    EXPECT_EQ(boxes.texts(), d.kutular);
    EXPECT_EQ(boxes.shown.back().icon, d.ikon) << d.tur;
  }
  boxes.answers.clear();
  EXPECT_TRUE(settings::Ambar_Hareketli(oturum(), "1"));
  EXPECT_FALSE(settings::Ambar_Hareketli(oturum(), "2"));
}

TEST_F(TanimTest, LinksOfAWorkplaceAreStoredAtOnce) {
  auto baglar = settings::Bag_Listele(oturum(), settings::Bag::Ambar, "1");
  EXPECT_EQ(baglar.hata, "");
  ASSERT_EQ(baglar.satirlar.size(), 1U);
  EXPECT_EQ(baglar.satirlar[0].hucreler[3], "0");
  baglar.satirlar[0].hucreler[3] = "1";
  EXPECT_EQ(settings::Bag_Kaydet(oturum(), settings::Bag::Ambar, "0", baglar.satirlar, {}, 0).hata, "");
  EXPECT_EQ(rows("SELECT COUNT(*) FROM ISYERIBAGAMBAR"), "0");
  EXPECT_EQ(settings::Bag_Kaydet(oturum(), settings::Bag::Ambar, "1", baglar.satirlar, {}, 0).hata, "");
  EXPECT_EQ(rows("SELECT Isyeri_ID,Ambar_No FROM ISYERIBAGAMBAR"), "1|1");
  izleyen.izleme.sifirla();
  EXPECT_EQ(settings::Bag_Listele(oturum(), settings::Bag::Ambar, "1").satirlar[0].hucreler[3], "1");
  EXPECT_EQ(izleyen.izleme.deyimler.size(), 1U) << "one statement however many warehouses";
}

TEST_F(TanimTest, ALinkToAVanishedWorkplaceSavesTheGridAndKeepsOldLinksOfSalespeople) {
  sirket().run("INSERT INTO SATICI(Satici_Kodu,Satici_Adi,Kullanici_ID) VALUES('S','SATICI',1)");
  auto baglar = settings::Bag_Listele(oturum(), settings::Bag::Satici, "77").satirlar;
  ASSERT_EQ(baglar.size(), 2U);
  for (auto& bag : baglar) bag.hucreler[3] = "1";
  const IzgaraSatirlari isyerleri{{{"1", "MERKEZ", "0", "1", "1"}}, {{"9", "DOKUZ", "0", "1", "77"}}};
  EXPECT_EQ(settings::Bag_Kaydet(oturum(), settings::Bag::Satici, "77", baglar, isyerleri, 1).hata, "");
  const std::string id = rows("SELECT Isyeri_ID FROM ISYERITANIM WHERE Isyeri_Kodu='9'");
  EXPECT_EQ(rows("SELECT COUNT(*) FROM ISYERIBAGSATICI WHERE Isyeri_ID=" + id), "2");
}

TEST_F(TanimTest, ThousandsOfCurrenciesAreSavedAndThoseTakenOutGo) {
  IzgaraSatirlari satirlar;
  for (int i = 0; i < 1500; ++i) satirlar.push_back({{"", "K" + std::to_string(i), "Para", "0"}});
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("doviz"), satirlar), "");
  satirlar = yukle("doviz");
  ASSERT_EQ(satirlar.size(), 1500U);
  satirlar.pop_back();
  EXPECT_EQ(settings::Tanim_Kaydet(oturum(), tur("doviz"), satirlar), "");
  EXPECT_EQ(rows("SELECT COUNT(*) FROM DOVIZTANIM WHERE Kullanici_ID<>0"), "1499");
}

TEST_F(TanimTest, AnOldDatabaseIsToldWithTheWayOut) {
  oturum().Secili_Firma = "BAZ2012";
  ASSERT_EQ(settings::Tanim_Firma_Bagla(oturum()), "");
  EXPECT_NE(settings::Tanim_Yukle(oturum(), tur("renk")).hata.find("zembera-cli guncelle --ad BAZ2012"),
            std::string::npos);
  oturum().Secili_Firma = "YOK";
  EXPECT_EQ(settings::Tanim_Firma_Bagla(oturum()), "\"YOK\" adında bir firma tanımlı değil.");
}

TEST_F(TanimTest, TheWarehouseListFollowsTheRights) {
  sirket().run(
      "INSERT INTO AMBAR(Ambar_No,Ambar_Ad) VALUES(2,'Depo') DELETE FROM KULLANICIAMBAR INSERT INTO "
      "KULLANICIAMBAR(Kullanici_ID,Ambar_No) VALUES(5,2)");
  const auto liste = [&] {
    std::string metin;
    for (const auto& secenek : settings::Bagli_Ambarlar(oturum())) metin += secenek.yazi + "|";
    return metin;
  };
  EXPECT_EQ(liste(), "0  Bağlı Değil|1  Merkez|2  Depo|");
  oturum().Kullanici_ID = 5;
  EXPECT_EQ(liste(), "0  Bağlı Değil|1  Merkez|2  Depo|");
  oturum().Parametre.AmbarYetkiyeBagli = true;
  EXPECT_EQ(liste(), "0  Bağlı Değil|2  Depo|");
  oturum().Kullanici_ID = 1;
  EXPECT_EQ(liste(), "0  Bağlı Değil|1  Merkez|2  Depo|");
  oturum().Parametre.AmbarYetkiyeBagli = false;
}

}  // namespace
