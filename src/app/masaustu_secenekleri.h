// The options of the desktop program, for its parser and its manual page.
#pragma once

#include "cli/komut.h"

namespace app {

inline constexpr std::array<std::string_view, 3> renkDuzenleri = {"masaustu", "acik", "koyu"};
inline constexpr std::array<cli::Secenek, 3> masaustuSecenekleri = {
    {{"--dizin", "Programın klasörü: sys.inf burada durur", false, cli::Secenek::Tur::Metin, "DİZİN"},
     {"--surum", "Sürümü yazar", false, cli::Secenek::Tur::Bayrak, ""},
     {"--renkler", "Renk düzeni", false, cli::Secenek::Tur::Metin, "DÜZEN", renkDuzenleri, "renk düzeni"}}};
inline constexpr std::string_view masaustuAciklamasi = "Zembera yönetim konsolu";
inline constexpr cli::CikisKodlari masaustuKodlari = {"tamam", "program açılamadı", "yanlış kullanım"};

}  // namespace app
