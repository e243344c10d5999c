// What the till's settings are made of, as tables that reading, writing, screen and shell walk.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "rights/sozluk.h"

namespace rights {

// A list from which a value of FisGrd or a shortcut is chosen.
enum class AramaTuru : std::uint8_t { Yok, Kasa, Cari, Ambar, Satici, Isyeri, Fiyat, Kullanici, Stok };
struct AramaTanimi {
  AramaTuru tur;
  std::string_view tablo, id, kod, ad;  // `id` is what is stored, `kod` what is shown
  std::string_view kodBasligi, adBasligi;
  bool sayi;       // the shown code is a number
  bool katalogda;  // lies in the catalog, not in the company
};
const AramaTanimi& aramaTanimi(AramaTuru tur);

// The words of a yes/no right.
struct Soz {
  std::string_view evet, hayir;
};
inline constexpr Soz degistirir{"Değiştirebilir", "Değiştiremez"}, alir{"Alır", "Alamaz"},
    yapar{"Yapar", "Yapamaz"};

// A row of FisGrd: a value in `Yetkisi`, a word in `Yetkisi2`, or both.
struct FisTanimi {
  std::string_view yazi;
  std::string_view deger;  // column of Kullanici; empty: no value
  AramaTuru arama = AramaTuru::Yok;
  std::string_view hak = {};  // BIT of Kullanici; empty: no word
  Soz soz = {};
};
std::span<const FisTanimi> fisTanimlari();

// The columns of Kullanici outside FisGrd.
std::span<const Kolon> kasiyerKolonlari();

// KASIYERCONFIG: the boxes by the name of their control, four texts, the objects of NesnelerGRD. `Teraziler`
// stands by itself.
enum class AyarTuru : std::uint8_t { Kutu, Metin, Nesne };
struct AyarTanimi {
  AyarTuru tur;
  std::string_view kolon;
  std::string_view yazi;
  std::string_view kontrol;  // name of the check box; of an object its own
};
std::span<const AyarTanimi> ayarTanimlari();

}  // namespace rights
