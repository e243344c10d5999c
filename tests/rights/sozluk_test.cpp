#include "rights/sozluk.h"

#include <gtest/gtest.h>

#include <map>

#include "catalog/katalog.h"
#include "rights/varsayilan.h"

namespace {

using rights::Hak;
using rights::Kolon;
using rights::KolonTuru;

const catalog::TableDef& kullanici() {
  for (const auto& table : catalog::catalogTables())
    if (table.name == "Kullanici") return table;
  throw std::logic_error("no table Kullanici");
}

std::string tipi(const Kolon& kolon) {
  switch (kolon.tur) {
    case KolonTuru::Bit:
      return "BIT";
    case KolonTuru::Sayi:
      return kolon.ad == "Kullanici_Fiyat" ? "SMALLINT" : "INT";
    default:
      return "CHAR(" + std::to_string(kolon.genislik) + ")";
  }
}

TEST(Sozluk, ColumnsAreThoseOfTheCatalog) {
  for (const Kolon& kolon : rights::kolonlar()) {
    const auto* column = kullanici().column(kolon.ad);
    ASSERT_NE(column, nullptr) << kolon.ad;
    EXPECT_EQ(column->type, tipi(kolon)) << kolon.ad;
    EXPECT_EQ(column->nullable, kolon.bosOlur) << kolon.ad;
  }
}

// Each place of each string, and each BIT of the tree, is shown by exactly one row; only the eighth document
// of the invoices lies behind its column, and only the two BITs of Üretim share a row.
TEST(Sozluk, EveryPlaceOfTheTreesColumnsHasItsRow) {
  std::map<std::pair<std::size_t, int>, int> shown;
  std::map<int, int> columnsOfRow;
  std::vector<std::string> behind;
  for (const Hak& hak : rights::yetkiAgaci().haklar) {
    ++shown[{hak.kolon, hak.yer}];
    ++columnsOfRow[hak.satir];
    const Kolon& kolon = rights::kolonlar()[hak.kolon];
    if (hak.yer >= std::max(kolon.genislik, 1)) behind.emplace_back(kolon.ad);
  }
  EXPECT_EQ(behind, (std::vector<std::string>{"FHE", "FHD", "FHI", "FHS"}));
  for (std::size_t i = 0; i < rights::kolonlar().size(); ++i) {
    const Kolon& kolon = rights::kolonlar()[i];
    for (int place = 0; place < std::max(kolon.genislik, 1); ++place)
      EXPECT_EQ(shown[std::pair(i, place)], kolon.bolum == rights::Bolum::Agac ? 1 : 0)
          << kolon.ad << " " << place;
  }
  std::vector<std::string> shared;
  for (const auto& [row, columns] : columnsOfRow)
    if (columns > 1) shared.push_back(rights::yetkiAgaci().satirlar[static_cast<std::size_t>(row)].yazi);
  EXPECT_EQ(shared, std::vector<std::string>{"Üretim"});
}

// A row by its words from the top, and the place that it stands for.
TEST(Sozluk, RowsStandForTheirPlaces) {
  const struct {
    const char *yol, *kolon, *okunan;
    int yer;
  } cases[] = {
      {"Kasa", "KASA", "KASA", 0},
      {"Kasa/Kasa Kartı/Sil", "KK", "KK", 3},
      {"Kasa/Kasa Kartı/Bakiye", "KB", "KB", 0},
      {"Kasa/Kasa Hareketleri/Parçalı Senet Tahsilatı/İncele", "KHI", "KHI", 13},
      {"Cari Hesap/Cari Hesap Kartı/Cari Hesaba Kredi Açar", "CARK", "CARK", 4},
      {"Cari Hesap/Cari Hesap Kartı/Bakiye", "CARB", "CARB", 0},
      {"Cari Hesap/Cari Ödeme Şablonu/Değiştir", "CAROS", "CAROS", 1},
      {"Stok/Stok Parametreleri/Beden Grupları", "STP", "STP", 3},
      {"Fatura/Fatura Hareketleri/Müstahsil Makbuzu/Ekle", "FHE", "FHE", 6},
      {"Fatura/Fatura Hareketleri/Masraf Hizmet Ödeme/Ekle", "FHE", "FHE", 7},
      {"Fatura/Parametreler/Müstahsil Tanımları", "FP", "FP", 5},
      {"Fatura/Fatura Kar Gösterimi", "FKG", "FKG", 0},
      {"Çek Senet/Çek Senet Hareketleri/Müşteriye Çek İade/Sil", "BORHS", "BORHS", 15},
      {"Üretim/Üretim Hareketleri/Üretim Emirleri/Değiştir", "UEK", "UEK", 1},
      {"Üretim/Üretim Hareketleri/Üretim Reçeteleri/Sil", "URK", "URK", 3},
      {"Döviz/Döviz Tanımları", "DT", "DT", 0},
      {"Muhasebe/Fiş Numaralama İşlemleri/Yevmiye Numaralandır", "MFN", "FP", 5},
      {"Muhasebe/Entegrasyon Tanımları/Ekle", "MET", "MET", 0},
  };
  const auto& agac = rights::yetkiAgaci();
  std::map<std::string, Hak> byPath;
  std::vector<std::string> open(5);
  for (const Hak& hak : agac.haklar) {
    std::string path;
    for (int row = hak.satir, level = 0; row >= 0; --row) {
      const auto& s = agac.satirlar[static_cast<std::size_t>(row)];
      if (level != 0 && s.seviye != level - 1) continue;
      level = s.seviye;
      path = s.yazi + (path.empty() ? "" : "/" + path);
      if (level == 1) break;
    }
    byPath.emplace(path, hak);
  }
  for (const auto& c : cases) {
    const auto at = byPath.find(c.yol);
    ASSERT_NE(at, byPath.end()) << c.yol;
    EXPECT_EQ(rights::kolonlar()[at->second.kolon].ad, c.kolon) << c.yol;
    EXPECT_EQ(rights::kolonlar()[at->second.okunan].ad, c.okunan) << c.yol;
    EXPECT_EQ(at->second.yer, c.yer) << c.yol;
  }
}

// The whole statement of a new company, as the suite has always written it.
TEST(VarsayilanSatir, OfANewCompany) {
  EXPECT_EQ(
      rights::varsayilanSatir(rights::VarsayilanTur::YeniFirma, "7", "1", "O'NEIL", "x"),
      "INSERT INTO Kullanici "
      "(Firma_ID,Kullanici_ID,Kullanici_Ad,Kullanici_Sifre,KASA,KHE,KHD,KHI,KHS,KK,KB,KR,CARI,CARHE,CARHD,"
      "CARHI,CARHS,CARK,CARB,CARR,CAROS,STOK,STHE,STHD,"
      "STHI,STHS,STK,STB,STR,STP,FATURA,FHE,FHD,FHI,FHS,FP,FR,BORDRO,BORHE,BORHD,BORHI,BORHS,CEKL,SENETL,"
      "BORR,URETIMEMIR,"
      "URETIMRECETE,URK,UEK,UR,DI,DT,DR,BANKA,BHE,BHD,BHI,BHS,BK,BB,BR,SIPARIS,SIPHE,SIPHD,SIPHI,SIPHS,"
      "SIPR,SATR,FKG,KS_Degistirsin,CR_Degistirsin,Def_Isyeri_Kod,Kullanici_Fiyat)"
      "Values"
      "('7','1','O''NEIL','x"
      "','1','11111111111111','11111111111111','11111111111111','11111111111111','1111','1','1','1','11111','"
      "11111','11111','11111',"
      "'11111','1','1','1111','1','1111111111111111','1111111111111111','1111111111111111',"
      "'1111111111111111','1111','1','1','1111','1','1111111','1111111',"
      "'1111111','1111111','111111','1','1','11111111111111111111111','11111111111111111111111','"
      "11111111111111111111111','11111111111111111111111','1',"
      "'1','1','1','1','1111','1111','1','1','1','1','1','111111','111111','111111','111111','1111','1','1',"
      "'1','11','11','11','11','1','1','1',1,1,'1',0)");
}

// A new user's row lacks the two columns of the till.
TEST(VarsayilanSatir, OfANewUser) {
  std::string company = rights::varsayilanSatir(rights::VarsayilanTur::YeniFirma, "7", "3", "A", "x");
  const std::string user = rights::varsayilanSatir(rights::VarsayilanTur::YeniKullanici, "7", "3", "A", "x");
  for (const std::string_view gone : {"KS_Degistirsin,CR_Degistirsin,", "1,1,'1',0)"}) {
    const auto at = company.find(gone);
    ASSERT_NE(at, std::string::npos);
    company.replace(at, gone.size(), gone.front() == 'K' ? "" : "'1',0)");
  }
  EXPECT_EQ(user, company);
}

}  // namespace
