#include "rights/sozluk.h"

#include <gtest/gtest.h>

#include <map>

#include "catalog/katalog.h"
#include "rights/kasiyer_sozluk.h"
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

std::uint32_t toplam(const std::string& text) {
  std::uint32_t sum = 2166136261U;
  for (const char c : text) sum = (sum ^ static_cast<unsigned char>(c)) * 16777619U;
  return sum;
}

// The words as the suite's users know them, letter by letter, with their columns and order. Who changes one
// on purpose puts the new sum here.
TEST(Sozluk, EveryWordStands) {
  std::string agac, kolon, fis, ayar;
  const auto ekle = [](std::string& to, auto&&... parts) {
    ((to += std::string(parts) + "|"), ...);
    to += "\n";
  };
  const auto no = [](auto value) { return std::to_string(static_cast<int>(value)); };
  for (const auto& row : rights::yetkiAgaci().satirlar) ekle(agac, no(row.seviye), row.yazi, row.anahtar);
  for (const Hak& hak : rights::yetkiAgaci().haklar)
    ekle(agac, no(hak.satir), rights::kolonlar()[hak.kolon].ad, rights::kolonlar()[hak.okunan].ad,
         no(hak.yer));
  for (const auto& columns : {rights::kolonlar(), rights::kasiyerKolonlari()})
    for (const Kolon& k : columns) ekle(kolon, k.ad, no(k.tur), no(k.genislik), no(k.bolum), k.yazi);
  for (const auto& f : rights::fisTanimlari())
    ekle(fis, f.yazi, f.deger, no(f.arama), f.hak, f.soz.evet, f.soz.hayir);
  for (const auto tur : {1, 2, 3, 4, 5, 6, 7, 8}) {
    const auto& a = rights::aramaTanimi(static_cast<rights::AramaTuru>(tur));
    ekle(fis, a.tablo, a.id, a.kod, a.ad, a.kodBasligi, a.adBasligi, no(a.sayi), no(a.katalogda));
  }
  for (const auto& a : rights::ayarTanimlari()) ekle(ayar, no(a.tur), a.kolon, a.yazi, a.kontrol);
  EXPECT_EQ(toplam(agac), 1516779065U);
  EXPECT_EQ(toplam(kolon), 4033332376U);
  EXPECT_EQ(toplam(fis), 1924912776U);
  EXPECT_EQ(toplam(ayar), 3467167802U);
}

// Whole statements; a new company's also lets cash box and account be changed at the till.
TEST(VarsayilanSatir, OfANewCompanyAndOfANewUser) {
  using rights::VarsayilanTur;
  EXPECT_EQ(toplam(rights::varsayilanSatir(VarsayilanTur::YeniFirma, "7", "1", "O'NEIL", "x")), 3677805635U);
  EXPECT_EQ(toplam(rights::varsayilanSatir(VarsayilanTur::YeniKullanici, "7", "3", "A", "x'y")), 2847909837U);
}

}  // namespace
