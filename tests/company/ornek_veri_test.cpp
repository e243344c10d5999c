#include "company/ornek_veri.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "company/ornek/baglam.h"
#include "company/ornek/kelimeler.h"
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
  sirket().bagla(Sirket::baz);
  const auto rows = sirket().s.oturum.Baglanti->query(
      "SELECT Stok_ID,Ambar_No,SUM(G-C) FROM AMBBAK GROUP BY Stok_ID,Ambar_No");
  ASSERT_EQ(rows->count(), static_cast<std::int64_t>(sirket().bazToplam.ambar.size()));
  for (std::int64_t i = 0; i < rows->count(); ++i) {
    const auto told = sirket().bazToplam.ambar.find(
        {rows->value(i, 0).integer(), static_cast<int>(rows->value(i, 1).integer())});
    ASSERT_NE(told, sirket().bazToplam.ambar.end());
    EXPECT_EQ(rows->value(i, 2).integer(), told->second);
  }
}

// Whether stock may go below nothing is the company's own choice, the last entry of its list.
TEST_F(OrnekVeri, NoStockBelowNothingWhereTheCompanyForbidsIt) {
  sirket().yarat("EKSISIZ", "00004");
  sirket().bagla("Defination_DB");
  sirket().run("UPDATE sysfrmlng SET StokSFRSeviye=2 WHERE sysfrm_dbnm='EKSISIZ'");
  Toplamlar toplam;
  sirket().doldur("EKSISIZ", toplam);
  for (const auto& [key, kalan] : toplam.ambar) EXPECT_GE(kalan, 0) << key.first << " " << key.second;
}

// The ledger holds what the modules hold, at the opening and at the end.
TEST_F(OrnekVeri, LedgerFitsItsSubLedgers) {
  sirket().bagla(Sirket::baz);
  const std::string stok = "FROM STOKHAREKET WHERE Satir_Tipi='Mal' AND Islem_Tipi",
                    fatura = "FROM FATURAKART WHERE Islem_Tipi IN ('Satış Faturası','Peşin Satış Faturası')",
                    cek = "FROM CEKKART WHERE Durum IN ('Portföyde','Bankada Tahsilde','Bankada Teminatta')";
  const auto cari = [](const char* hesap) {
    return "SELECT SUM(CB.Bakiye) FROM CB,CARIKART c WHERE c.Cari_ID=CB.Cari_ID AND c.MHesap_Kod='" +
           std::string(hesap) + "'";
  };
  struct Case {
    const char* hesap;
    std::string acilis, son;
  };
  const Case cases[] = {
      {"100", "SELECT SUM(BTutar-ATutar) FROM KASAHAREKET WHERE Islem_Tipi='Kasa Açılış Fişi'",
       "SELECT SUM(Bakiye) FROM KB"},
      {"102", "SELECT SUM(BTutar-ATutar) FROM BANKAHAREKET WHERE Islem_Tipi='Banka Açılış Fişi'",
       "SELECT SUM(Bakiye) FROM BB"},
      {"120", "SELECT SUM(BTutar) FROM ACILIS", cari("120")},
      {"320", "SELECT -SUM(ATutar) FROM ACILIS", cari("320")},
      {"153", "SELECT SUM(Tutar) " + stok + "='Açılış Fişi'",
       "SELECT SUM((Giris-Cikis)*Maliyet) " + stok + " NOT LIKE 'Konsinye%'"},
      {"600", "SELECT 0", "SELECT -SUM(Ara_Toplam) " + fatura},
      {"101", "SELECT 0",
       "SELECT SUM(Tutar)+(SELECT SUM(k.Tutar-p.Tahsil_Tutar) FROM CEKKART k,CEKPARCALI p WHERE "
       "p.Cek_ID=k.Cek_ID) " +
           cek},
  };
  const auto sayi = [](const std::string& sql) {
    return sirket().s.oturum.Baglanti->query(sql)->value(0, 0).real();
  };
  for (const Case& c : cases) {
    const std::string hesap = "FROM MUHFISHAR WHERE MHesap_Kod='" + std::string(c.hesap) + "'";
    EXPECT_NEAR(sayi("SELECT ISNULL(SUM(BTutar-ATutar),0) " + hesap + " AND Islem_Tipi='Açılış Fişi'"),
                sayi(c.acilis), 0.005)
        << c.hesap;
    EXPECT_NEAR(sayi("SELECT SUM(BTutar-ATutar) " + hesap), sayi(c.son), 0.005) << c.hesap;
  }
  // Every document is tied to one slip of its day, and the other way about.
  const std::pair<std::string, int> belgeler[] = {
      {"SELECT Fatura_ID,Islem_Tipi,Tarih FROM FATURAKART", 3},
      {"SELECT Bordro_ID,Islem_Tipi,Tarih FROM BORDRO WHERE Islem_Tipi NOT LIKE '%Çıkış(Banka%' AND "
       "Islem_Tipi NOT IN ('Çek Tahsilatı','Senet Tahsilatı','Parçalı Çek Tahsilatı','Parçalı Senet "
       "Tahsilatı','Senet Ödemesi')",
       7},
      {"SELECT Kasa_Hareket_ID,Islem_Tipi,Tarih FROM KASAHAREKET WHERE Islem_Tipi NOT IN ('Kasa Virman "
       "Fişi','Peşin Satış Faturası','Peşin İade Faturası')",
       1},
      {"SELECT Hareket_ID,Islem_Tipi,Tarih FROM BANKAHAREKET WHERE Islem_Tipi<>'Banka Virman Fişi'", 6},
      {"SELECT Stok_HareketKart_ID,Islem_Tipi,Tarih FROM STOKHAREKETKART WHERE Fatura_ID=0 AND Islem_Tipi "
       "NOT LIKE 'Ambar%' AND Islem_Tipi NOT LIKE 'Konsinye%'",
       4}};
  for (const auto& [sql, modul] : belgeler)
    EXPECT_EQ(sirket().rows(
                  "SELECT COUNT(*) FROM (" + sql +
                  ") d WHERE (SELECT COUNT(*) FROM MUHASEBEBAGLANTI b,MUHFISKART f WHERE b.Modul_No=" +
                  std::to_string(modul) + " AND b.Entegre_ID=d." + sql.substr(7, sql.find(',') - 7) +
                  " AND b.Entegre_Islem_Tipi=d.Islem_Tipi AND f.Fis_ID=b.MFis_ID AND f.Tarih=d.Tarih)<>1"),
              "0")
        << sql;
  EXPECT_EQ(
      sirket().rows("SELECT COUNT(*) FROM MUHFISKART f WHERE NOT EXISTS (SELECT * FROM MUHASEBEBAGLANTI b "
                    "WHERE b.MFis_ID=f.Fis_ID)"),
      "0");
  // The journal numbers the slips without a gap, day after day.
  const auto fisler =
      sirket().s.oturum.Baglanti->query("SELECT Yevmiye_No FROM MUHFISKART ORDER BY Tarih,Fis_Sira_Tipi");
  for (std::int64_t i = 0; i < fisler->count(); ++i)
    EXPECT_EQ(fisler->value(i, 0).trimmed(), std::to_string(i + 1));
}

// What an accountant would look at first. Each question is answered by a count that must lie in a range.
TEST_F(OrnekVeri, AnAccountantBelievesIt) {
  sirket().bagla(Sirket::baz);
  struct Case {
    const char* sql;
    std::int64_t enAz, enCok;
  };
  const Case cases[] = {
      // Papers are settled on or after their day, and none is open beyond it.
      {"SELECT COUNT(*) FROM CEKDURUM d,CEKKART k WHERE k.Cek_ID=d.Cek_ID AND d.Durum IN ('Tahsil "
       "Edildi','Ödendi','Karşılıksız','Parçalı Tahsil') AND d.Durum_Tarih<k.Vade",
       0, 0},
      {"SELECT COUNT(*) FROM SENETDURUM d,SENETKART k WHERE k.Senet_ID=d.Senet_ID AND d.Durum IN ('Tahsil "
       "Edildi','Ödendi','Karşılıksız','Parçalı Tahsil') AND d.Durum_Tarih<k.Vade",
       0, 0},
      {"SELECT COUNT(*) FROM CEKKART WHERE Durum IN ('Portföyde','Bankada Tahsilde','Bankada "
       "Teminatta','Kendi Çekimiz') AND Vade<='20121231'",
       0, 0},
      // The shelves hold some months' sales, and some are empty.
      {"SELECT 100*(SELECT SUM(Kalan) FROM SB)/(SELECT SUM(Cikis) FROM STOKHAREKET)", 15, 60},
      {"SELECT COUNT(*) FROM SB WHERE Kalan=0", 5, 60},
      {"SELECT COUNT(*) FROM SB WHERE Kalan<0", 1, 50},
      // Who owes whom.
      {"SELECT 100*SUM(CASE WHEN CB.Bakiye>0 THEN 1 ELSE 0 END)/SUM(CASE WHEN CB.Bakiye<>0 THEN 1 ELSE 0 "
       "END) FROM CB,CARIKART c WHERE c.Cari_ID=CB.Cari_ID AND c.MHesap_Kod='120'",
       85, 100},
      {"SELECT 100*SUM(CASE WHEN CB.Bakiye<0 THEN 1 ELSE 0 END)/SUM(CASE WHEN CB.Bakiye<>0 THEN 1 ELSE 0 "
       "END) FROM CB,CARIKART c WHERE c.Cari_ID=CB.Cari_ID AND c.MHesap_Kod='320'",
       85, 100},
      {"SELECT COUNT(*) FROM KB WHERE Bakiye<0", 0, 0},
      {"SELECT COUNT(*) FROM BB WHERE Bakiye<0", 0, 0},
      // Openings come first on their day.
      {"SELECT COUNT(*) FROM STOKHAREKET a,STOKHAREKET h WHERE a.Islem_Tipi='Açılış Fişi' AND a.Islem_No=1 "
       "AND a.Ambar_No=1 AND h.Tarih=a.Tarih AND h.Islem_Tipi<>a.Islem_Tipi AND h.Saat<=a.Saat",
       0, 0},
      // Packs, and lines in them.
      {"SELECT COUNT(*) FROM STOKKART WHERE Birim2_Katsayi>1 AND Birim2<>Ana_Birim AND Birim2_Barkod<>''",
       500, 500},
      {"SELECT COUNT(*) FROM STOKHAREKET WHERE Carpan>1", 500, 5000},
      {"SELECT COUNT(*) FROM STOKHAREKET h,STOKKART k WHERE k.Stok_ID=h.Stok_ID AND (h.Giris+h.Cikis<>"
       "h.Miktar*h.Carpan OR h.Carpan<>CASE WHEN h.Birim=k.Birim2 THEN k.Birim2_Katsayi ELSE 1 END)",
       0, 0},
      {"SELECT COUNT(*) FROM (SELECT Ilce FROM CARIKART GROUP BY Ilce HAVING COUNT(DISTINCT "
       "Vergi_Dairesi)<>1) x",
       0, 0},
      {"SELECT COUNT(DISTINCT Vergi_Dairesi) FROM CARIKART", 12, 12},
      // A rollover finds something of everything.
      {"SELECT COUNT(*) FROM CEKKART WHERE Durum='Cirolu'", 10, 50},
      {"SELECT COUNT(*) FROM CEKKART WHERE Durum='Karşılıksız'", 3, 20},
      {"SELECT COUNT(*) FROM SIPARISHAREKET WHERE Sevk_Edilen>0 AND Kalan>0", 10, 200},
      {"SELECT COUNT(*) FROM CB WHERE DovizBakiye<>0", 5, 12},
      {"SELECT COUNT(*) FROM BANKAHAREKET WHERE Dovizli_Tutar>0 AND KUR>0 AND BTutar>0", 2, 200},
      {"SELECT COUNT(*) FROM FATURAKART WHERE Cari_ID>0 AND ABS(Dovizli_Tutar*KUR-Net_Tutar)>0.03 AND KUR>0",
       0, 0},
      {"SELECT COUNT(*) FROM POSHAREKET WHERE Hesaba_Aktarim_Tarih>'20121231' AND Hesaba_Aktarildi=0", 1, 30},
      {"SELECT COUNT(*) FROM STOKHAREKET WHERE Islem_Tipi LIKE 'Konsinye%'", 20, 100},
  };
  for (const Case& c : cases) {
    const std::int64_t n = sirket().s.oturum.Baglanti->query(c.sql)->value(0, 0).integer();
    EXPECT_TRUE(n >= c.enAz && n <= c.enCok) << n << ": " << c.sql;
  }
  // Contacts are addressed as their names ask for.
  const auto kisiler = sirket().s.oturum.Baglanti->query(
      "SELECT Yetkili FROM CARIKART WHERE RTRIM(Yetkili) LIKE '% %' UNION ALL SELECT Ilgili FROM HESAPKART");
  ASSERT_GT(kisiler->count(), 100);
  for (std::int64_t i = 0; i < kisiler->count(); ++i) {
    const std::string kisi = kisiler->value(i, 0).trimmed(), ad = kisi.substr(0, kisi.find(' '));
    const auto at = std::ranges::find(company::ornek::adlar(), ad) - company::ornek::adlar().begin();
    EXPECT_EQ(kisi, ad + (at % 2 == 0 ? " Bey" : " Hanım"));
  }
}

TEST(OrnekVeriAdlari, NoNameComesTwice) {
  support::FakeSurroundings s;
  support::FakeServer server;
  support::FakeFactory factory(server);
  s.oturum.Baglanti = factory.make("");
  const company::OrnekDinleyici kimse;
  const company::ornek::Baglam b(s.oturum, {}, {100, 7}, kimse);  // more than there are words for
  std::set<std::string> adlar;
  for (std::int64_t i = 0; i < b.stokSayisi(); ++i) {
    const std::string ad = b.stok(i).ad;
    EXPECT_TRUE(adlar.insert(ad).second) << ad;
  }
  for (std::int64_t i = 0; i < b.cariSayisi(); ++i) {
    const std::string ad = b.cari(i).unvan;
    EXPECT_TRUE(adlar.insert(ad).second) << ad;
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
       "WHERE h.Fatura_ID=k.Fatura_ID))>0.001",
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
