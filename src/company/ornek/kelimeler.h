// The words that example data is made of: invented goods, makers, people and firms.
#pragma once

#include <span>
#include <string_view>

namespace company::ornek {

struct Urun {
  std::string_view ad;
  int fiyat;  // kuruş, without tax
};
struct UrunGrubu {
  std::string_view kod, ad, birim;
  int kdv;
  std::span<const Urun> urunler;
};
struct Sehir {
  std::string_view ad, ilce, postaKodu, alanKodu;
};

std::span<const UrunGrubu> urunGruplari();
std::span<const std::string_view> markalar();
std::span<const std::string_view> cesitler();
std::span<const Sehir> sehirler();
std::span<const std::string_view> adlar();
std::span<const std::string_view> soyadlar();
std::span<const std::string_view> firmaKokleri();
std::span<const std::string_view> isKollari();
std::span<const std::string_view> firmaEkleri();
std::span<const std::string_view> sokaklar();
std::span<const std::string_view> vergiDaireleri();
std::span<const std::string_view> bankaSubeleri();

}  // namespace company::ornek
