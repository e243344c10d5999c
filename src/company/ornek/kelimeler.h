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
  std::string_view birim2;  // what it is packed in
  int katsayi;              // pieces in it
  std::span<const Urun> urunler;
};
struct Sehir {
  std::string_view ad, ilce, postaKodu, alanKodu, vergiDairesi;
};

std::span<const UrunGrubu> urunGruplari();
std::span<const std::string_view> markalar();
std::span<const std::string_view> cesitler();
std::span<const Sehir> sehirler();
// Men's and women's in turn, so that hitap() knows which.
std::span<const std::string_view> adlar();
std::string_view hitap(std::size_t ad);  // the form of address that goes with a name
std::span<const std::string_view> soyadlar();
std::span<const std::string_view> firmaKokleri();
std::span<const std::string_view> isKollari();
std::span<const std::string_view> firmaEkleri();
std::span<const std::string_view> sokaklar();
std::span<const std::string_view> bankaSubeleri();

}  // namespace company::ornek
