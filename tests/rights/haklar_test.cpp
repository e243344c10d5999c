#include "rights/haklar.h"

#include "rights/ortam.h"

namespace {

using Texts = std::vector<std::string>;

Texts yollar(const char* sozler) {
  Texts out;
  for (const int row : rights::hakAra(sozler)) out.push_back(rights::hakYolu(row));
  return out;
}

TEST(HakArama, FindsARightByItsWordsOwnCaptionsFirst) {
  const Texts found = yollar("çek iade");
  ASSERT_GE(found.size(), 4u);
  EXPECT_EQ((Texts{found.begin(), found.begin() + 3}),
            (Texts{"Çek Senet › Çek Senet Hareketleri › Çek Giriş (Bankadan İade)",
                   "Çek Senet › Çek Senet Hareketleri › Müşteriye Çek İade",
                   "Çek Senet › Çek Senet Hareketleri › Müşteriden Çek İade"}));
  EXPECT_EQ(found[3], "Çek Senet › Çek Senet Hareketleri › Senet Giriş (Bankadan İade)");
  EXPECT_EQ(yollar("MAAS"), Texts{});
  EXPECT_EQ(yollar("kasa nakit sil"), (Texts{"Kasa › Kasa Hareketleri › Nakit Ödeme Fişi › Sil",
                                             "Kasa › Kasa Hareketleri › Nakit Tahsilat Fişi › Sil"}));
  EXPECT_EQ(yollar("maaş fiş"), Texts{"Personel › Personel Hareketleri › Maaş Fişi"});
  EXPECT_EQ(yollar("kredi açar"), Texts{"Cari Hesap › Cari Hesap Kartı › Cari Hesaba Kredi Açar"});
  EXPECT_EQ(yollar("banka kartı sil"), Texts{"Banka › Banka Kartı › Sil"});
  EXPECT_EQ(yollar("  "), Texts{});
}

TEST(Bayraklar, AreEveryStoredFlagOnce) {
  std::size_t places = 0;
  for (const auto& kolon : rights::kolonlar())
    if (kolon.tur == rights::KolonTuru::Bit || kolon.tur == rights::KolonTuru::Dizi)
      places += static_cast<std::size_t>(std::max(kolon.genislik, 1));
  EXPECT_EQ(rights::bayraklar().size(), places);
}

class FarkTest : public rights::test::OrtamTest {};

TEST_F(FarkTest, TellsWhatOneHasAndTheOtherLacks) {
  kullanici("ALİ", "abc", {1, 2});
  kullanici("VELİ", "abc", {1});
  run("UPDATE Kullanici SET KHI='11111111111110',KASA=0,KntGun=7,EOV=1,MFN='100000' WHERE Kullanici_ID=3");
  run("INSERT INTO MERKEZ.dbo.KULLANICIAMBAR(Kullanici_ID,Ambar_No,Merkez_Ambar) VALUES(2,1,1)");
  rights::YetkiDuzeni ali, veli, sube;
  ASSERT_TRUE(rights::yetkiAc(o(), ali, "ali", "merkez"));
  ASSERT_TRUE(rights::yetkiAc(o(), veli, "VELİ", "MERKEZ"));
  ASSERT_TRUE(rights::yetkiAc(o(), sube, "ALİ", "SUBE"));
  EXPECT_EQ(rights::farklar(ali, veli),
            (std::vector<rights::Fark>{{"Kasa", "var", "yok", 0},
                                       {"Kasa › Kasa Hareketleri › Parçalı Senet Tahsilatı › İncele", "var",
                                        "yok", rights::hakAra("parçalı senet")[0] + 3},
                                       {"Muhasebe › Fiş Numaralama İşlemleri › Açılış Fişlerini Numaralandır",
                                        "yok", "var", rights::hakAra("açılış fişlerini")[0]},
                                       {"Onaylar ve Kısıtlar › Ekle Onayı Verebilir", "yok", "var", -1},
                                       {"Onaylar ve Kısıtlar › Gün Geçmiş Ödemeleri Kontrol Et", "", "7", -1},
                                       {"Ambarlar › 1 Merkez", "var, merkez", "yok", -1}}));
  EXPECT_TRUE(rights::farklar(ali, sube).empty());

  // The numbering of slips shows another column: what it stores counts until its tick is changed.
  const auto shown = [&] {
    return rights::farklar(rights::gosterilenSatir(veli.treelist, veli.satir), veli.satir);
  };
  veli.satir["Kullanici_Fiyat"] = db::Value();
  EXPECT_TRUE(shown().empty());
  const rights::YetkiSatiri sifir = veli.satir;
  veli.satir["Kullanici_Fiyat"] = 0;
  EXPECT_TRUE(rights::farklar(veli.satir, sifir).empty());
  const int first = rights::hakAra("açılış fişlerini")[0];
  veli.treelist.degistir(first, false);
  EXPECT_EQ(shown(),
            (std::vector<rights::Fark>{{"Muhasebe › Fiş Numaralama İşlemleri › Açılış Fişlerini Numaralandır",
                                        "yok", "var", first}}));
}

TEST_F(FarkTest, WhatCannotBeOpenedIsTold) {
  kullanici("ALİ", "abc", {1});
  rights::YetkiDuzeni duzen;
  EXPECT_FALSE(rights::yetkiAc(o(), duzen, "o'neil", "MERKEZ"));
  EXPECT_EQ(s.boxes.last(), "Bu isimle bir kullanıcı yok: O'NEİL");
  EXPECT_FALSE(rights::yetkiAc(o(), duzen, "ALİ", "SUBE"));
  EXPECT_EQ(s.boxes.last(), "ALİ kullanıcısının bu firmada yetki kaydı yok: SUBE");
}

}  // namespace
