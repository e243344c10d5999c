#include "company/ornek_veri.h"

#include <cmath>
#include <map>

#include "company/ornek/baglam.h"
#include "company/sema.h"
#include "company/sirket.h"

namespace {

using company::OrnekHareketi;
using company::test::Sirket;
using Tur = OrnekHareketi::Tur;

// Sums kept while the rows are written, without any SQL.
struct Toplamlar {
  std::map<std::pair<Tur, std::int64_t>, std::int64_t> kart;
  std::map<std::pair<std::int64_t, int>, std::int64_t> ambar;

  company::OrnekDinleyici dinleyici() {
    return [this](const OrnekHareketi& h) {
      kart[{h.tur, h.id}] += h.deger;
      if (h.tur == Tur::Stok || h.tur == Tur::Transfer) ambar[{h.id, h.ambar}] += h.deger;
    };
  }
};

// The card's company and, when a test asks for it, the upgraded one: filled from the same seed.
struct DoluSirket : Sirket {
  DoluSirket() { doldur(baz, bazToplam); }
  void guncelDoldur() {
    if (guncelToplam.kart.empty()) doldur(guncel, guncelToplam);
  }
  void doldur(const char* firma, Toplamlar& toplam) {
    EXPECT_EQ(company::Ornek_Veri_Yaz(s.oturum, firma, {1, 42}, toplam.dinleyici()).hata, "") << firma;
  }
  Toplamlar bazToplam, guncelToplam;
};

class OrnekVeri : public testing::Test {
 protected:
  static DoluSirket& sirket() {
    static DoluSirket made;
    return made;
  }

  // Each row is an identity and a balance; those that were never told must be zero.
  static void bakiyeler(const Toplamlar& toplam, Tur tur, const std::string& sql, double birim) {
    const auto rows = sirket().s.oturum.Baglanti->query(sql);
    ASSERT_GT(rows->count(), 0) << sql;
    std::map<std::int64_t, double> found;
    for (std::int64_t i = 0; i < rows->count(); ++i)
      found[rows->value(i, 0).integer()] += rows->value(i, 1).real();
    std::size_t told = 0;
    for (const auto& [key, deger] : toplam.kart) {
      if (key.first != tur) continue;
      ++told;
      EXPECT_NEAR(found[key.second], static_cast<double>(deger) / birim, 0.005) << sql << " " << key.second;
      found.erase(key.second);
    }
    EXPECT_GT(told, 0U) << sql;
    for (const auto& [id, bakiye] : found) EXPECT_NEAR(bakiye, 0, 0.005) << sql << " " << id;
  }

  static void herBakiye(const std::string& firma, const Toplamlar& toplam) {
    sirket().bagla(firma);
    bakiyeler(toplam, Tur::Kasa, "SELECT Kasa_ID,Bakiye FROM KB", 100);
    bakiyeler(toplam, Tur::Banka, "SELECT Hesap_ID,Bakiye FROM BB", 100);
    bakiyeler(toplam, Tur::Cari, "SELECT Cari_ID,Bakiye FROM CB", 100);
    bakiyeler(toplam, Tur::Hesap, "SELECT MHesap_ID,Bakiye FROM MUHBAKIYE", 100);
    bakiyeler(toplam, Tur::Stok, "SELECT Stok_ID,Kalan FROM SB", 1);
  }
};

TEST_F(OrnekVeri, BalancesOfTheViewsAreTheSumsOfWhatWasWritten) {
  sirket().guncelDoldur();
  herBakiye(Sirket::baz, sirket().bazToplam);
  herBakiye(Sirket::guncel, sirket().guncelToplam);
  // Warehouses, too, and none holds less than nothing.
  sirket().bagla(Sirket::baz);
  const auto rows = sirket().s.oturum.Baglanti->query(
      "SELECT Stok_ID,Ambar_No,SUM(G-C) FROM AMBBAK GROUP BY Stok_ID,Ambar_No");
  ASSERT_EQ(rows->count(), static_cast<std::int64_t>(sirket().bazToplam.ambar.size()));
  for (std::int64_t i = 0; i < rows->count(); ++i) {
    const auto told = sirket().bazToplam.ambar.find(
        {rows->value(i, 0).integer(), static_cast<int>(rows->value(i, 1).integer())});
    ASSERT_NE(told, sirket().bazToplam.ambar.end());
    EXPECT_EQ(rows->value(i, 2).integer(), told->second);
    EXPECT_GE(told->second, 0);
  }
}

TEST_F(OrnekVeri, SameSeedGivesSameRowsWhateverTheStage) {
  sirket().guncelDoldur();
  for (const char* tablo :
       {"STOKKART",      "STOKFIYAT",       "CARIKART",    "KASAKART",    "HESAPKART",      "FATURAKART",
        "FATURAHAREKET", "STOKHAREKETKART", "STOKHAREKET", "AMBTRS",      "KASAHAREKET",    "BANKAHAREKET",
        "POSHAREKET",    "CARIHAREKET",     "ACILIS",      "BORDRO",      "CEKKART",        "CEK",
        "CEKDURUM",      "SENETKART",       "SENET",       "SIPARISKART", "SIPARISHAREKET", "SIPARISBAGLANTI",
        "MUHFISKART",    "MUHFISHAR",       "ODEMEHAREKET"}) {
    std::string kolonlar;
    for (const auto& kolon : company::schema::table(tablo)->columns)
      if (kolon.stage == company::schema::Stage::Base && !kolon.dropped)
        kolonlar += (kolonlar.empty() ? "" : ",") + kolon.name;
    const std::string sql = "SELECT " + kolonlar + " FROM " + tablo + " ORDER BY 1";
    sirket().bagla(Sirket::baz);
    const std::string baz = sirket().rows(sql);
    sirket().bagla(Sirket::guncel);
    EXPECT_NE(baz, "") << tablo;
    EXPECT_TRUE(baz == sirket().rows(sql)) << tablo;
  }
}

TEST_F(OrnekVeri, ColumnsOfTheUpgradeAreWrittenWhereTheyExist) {
  sirket().guncelDoldur();
  sirket().bagla(Sirket::guncel);
  int dolu = 0;
  for (const std::string& ad : company::schema::tableOrder(company::schema::Stage::Base)) {
    std::string bosmu;
    for (const auto& kolon : company::schema::table(ad)->columns)
      if (kolon.stage == company::schema::Stage::Upgrade && kolon.hasFill && !kolon.dropped)
        bosmu += (bosmu.empty() ? "" : " OR ") + kolon.name + " IS NULL";
    if (bosmu.empty()) continue;
    EXPECT_EQ(sirket().rows("SELECT COUNT(*) FROM " + ad + " WHERE " + bosmu), "0") << ad;
    dolu += sirket().rows("SELECT COUNT(*) FROM " + ad) != "0" ? 1 : 0;
  }
  EXPECT_GT(dolu, 20);
  for (const char* sql :
       {"SELECT COUNT(*) FROM POSHAREKET WHERE ATutar<>Tutar OR BTutar<>0",
        "SELECT COUNT(*) FROM STOKHAREKET WHERE ABS(KDVSizNet_Tutar-(Tutar-ISK_Tutar))>0.001 OR "
        "TpISK_Tutar<>ISK_Tutar OR ABS(TpISK*Tutar/100-ISK_Tutar)>0.02",
        "SELECT COUNT(*) FROM FATURAKART k WHERE ABS(k.Net_Tutar-(SELECT SUM(h.KDVLiNet_Tutar) FROM "
        "FATURAHAREKET h WHERE h.Fatura_ID=k.Fatura_ID))>0.001"})
    EXPECT_EQ(sirket().rows(sql), "0") << sql;
}

TEST_F(OrnekVeri, HoldsWhatItPromisesWithinThePeriodAndNumbersIt) {
  sirket().bagla(Sirket::baz);
  for (const char* tablo :
       {"FATURAKART", "STOKHAREKET", "KASAHAREKET", "BANKAHAREKET", "BORDRO", "MUHFISKART"})
    EXPECT_EQ(sirket().rows(std::string("SELECT COUNT(*) FROM ") + tablo +
                            " WHERE Tarih<'20120101' OR Tarih>'20121231'"),
              "0")
        << tablo;
  EXPECT_EQ(sirket().rows("SELECT IP FROM IP_PESSATFIS"),
            sirket().rows("SELECT MAX(Fis_No) FROM FATURAKART WHERE Islem_Tipi='Peşin Satış Faturası'"));
  EXPECT_EQ(sirket().rows("SELECT IP FROM IP_CEKPORNO"),
            sirket().rows("SELECT MAX(Portfoy_No) FROM CEKKART"));
  EXPECT_EQ(
      sirket().rows("SELECT IP FROM IP_KNTF1"),
      sirket().rows("SELECT MAX(Fis_No) FROM KASAHAREKET WHERE Kasa_ID=1 AND Islem_Tipi IN ('Nakit Tahsilat "
                    "Fişi','Bankadan Çekilen','Çek Tahsilatı','Senet Tahsilatı','Parçalı Çek "
                    "Tahsilatı','Parçalı Senet Tahsilatı')"));
  struct Case {
    const char* sql;
    const char* answer;
  };
  const Case cases[] = {
      {"SELECT COUNT(*) FROM STOKKART", "500"},
      {"SELECT COUNT(*) FROM CARIKART", "300"},
      {"SELECT COUNT(*) FROM AMBAR", "3"},
      {"SELECT COUNT(*) FROM KASAKART", "4"},
      {"SELECT COUNT(DISTINCT Hesap_ID) FROM POSANLASMA", "3"},
      {"SELECT COUNT(*) FROM FATURAKART", "1520"},
      {"SELECT COUNT(DISTINCT Durum) FROM CEKKART", "10"},
      {"SELECT COUNT(DISTINCT Durum) FROM SENETKART", "10"},
      {"SELECT COUNT(DISTINCT Durum) FROM SIPARISKART", "2"},
      // Slips balance, and their lines bear them out.
      {"SELECT COUNT(*) FROM (SELECT Fis_ID FROM MUHFISHAR GROUP BY Fis_ID HAVING "
       "ABS(SUM(BTutar-ATutar))>0.001) x",
       "0"},
      {"SELECT COUNT(*) FROM MUHFISKART k WHERE ABS(k.BTutar-(SELECT SUM(h.BTutar) FROM MUHFISHAR h WHERE "
       "h.Fis_ID=k.Fis_ID))>0.001",
       "0"},
      {"SELECT COUNT(*) FROM FATURAKART k WHERE ABS(k.Burut_Tutar-(SELECT SUM(h.Tutar) FROM FATURAHAREKET h "
       "WHERE "
       "h.Fatura_ID=k.Fatura_ID))>0.001",
       "0"},
      // An invoice of goods has its slip, and copies of names follow the cards.
      {"SELECT COUNT(*) FROM FATURAHAREKET h LEFT JOIN STOKHAREKETKART s ON "
       "s.Stok_HareketKart_ID=h.Stok_HareketKart_ID AND s.Fatura_ID=h.Fatura_ID WHERE h.Satir_Tipi='Mal' AND "
       "s.Fatura_ID IS NULL",
       "0"},
      {"SELECT COUNT(*) FROM STOKHAREKET h,STOKKART k WHERE k.Stok_ID=h.Stok_ID AND "
       "(k.Stok_Kod<>h.Stok_Kod OR k.Stok_Ad<>h.Stok_Ad)",
       "0"},
      {"SELECT COUNT(*) FROM FATURAKART f LEFT JOIN CARIKART c ON c.Cari_ID=f.Cari_ID WHERE f.Cari_ID>0 AND "
       "(c.Cari_Kod IS NULL OR c.Cari_Kod<>f.Cari_Kod)",
       "0"},
      // A closed order has nothing left, an open one has.
      {"SELECT COUNT(*) FROM SIPARISKART k WHERE CASE WHEN (SELECT SUM(h.Kalan) FROM SIPARISHAREKET h WHERE "
       "h.Siparis_ID=k.Siparis_ID)=0 THEN 'KAPALI' ELSE 'AÇIK' END<>k.Durum",
       "0"},
      // Each payment left its row in the payment plan.
      {"SELECT COUNT(*) FROM KASAHAREKET k WHERE NOT EXISTS(SELECT * FROM ODEMEHAREKET o WHERE "
       "o.Islem_ID=k.Kasa_Hareket_ID AND o.Islem_Tipi=k.Islem_Tipi)",
       "0"},
  };
  for (const Case& c : cases) EXPECT_EQ(sirket().rows(c.sql), c.answer) << c.sql;

  // A second filling is refused, and so is a company that there is not.
  const auto ikinci = company::Ornek_Veri_Yaz(sirket().s.oturum, Sirket::baz, {1, 1});
  EXPECT_NE(ikinci.hata.find("zaten stok kartı var"), std::string::npos) << ikinci.hata;
  EXPECT_FALSE(ikinci.yarida);
  EXPECT_EQ(ikinci.satir, 0);
  EXPECT_NE(company::Ornek_Veri_Yaz(sirket().s.oturum, "YOK'", {1, 1}).hata.find("YOK'"), std::string::npos);
}

TEST(OrnekVeriTohumu, OtherSeedGivesOtherCards) {
  support::FakeSurroundings s;
  support::FakeServer server;
  support::FakeFactory factory(server);
  s.oturum.Baglanti = factory.make("");
  const company::OrnekDinleyici kimse;
  const company::ornek::Baglam bir(s.oturum, {}, {1, 1}, kimse), iki(s.oturum, {}, {1, 2}, kimse);
  int ayni = 0;
  for (std::int64_t i = 0; i < 100; ++i) ayni += bir.stok(i).ad == iki.stok(i).ad ? 1 : 0;
  EXPECT_LT(ayni, 20);
}

TEST(SemaAlike, CompaniesMadeAlikeDifferInNothingButADroppedColumn) {
  Sirket sirket;
  sirket.yarat("IKIZ", "00003");
  sirket.bagla(Sirket::baz);
  const company::Sema baz = company::semaOku(*sirket.s.oturum.Baglanti);
  ASSERT_GT(baz.bolumler[0].satirlar.size(), 1000U);
  for (const auto& bolum : baz.bolumler) EXPECT_FALSE(bolum.satirlar.empty()) << bolum.ad;
  sirket.bagla("IKIZ");
  EXPECT_TRUE(company::semaKarsilastir(baz, company::semaOku(*sirket.s.oturum.Baglanti)).empty());
  sirket.run("ALTER TABLE CARIKART DROP COLUMN Web_Adres");
  const auto farklar = company::semaKarsilastir(baz, company::semaOku(*sirket.s.oturum.Baglanti));
  ASSERT_EQ(farklar.size(), 1U);
  EXPECT_EQ(farklar.front().ad, "CARIKART.Web_Adres");
  EXPECT_EQ(farklar.front().tur, company::SemaFarki::Tur::YalnizBirinci);
}

}  // namespace
