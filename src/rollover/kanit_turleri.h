// The kinds of the proof, told as data: what either side holds, by code.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "rollover/baglam.h"

namespace rollover {

struct KanitTuru {
  std::string ad;
  // SELECT kod, ad, deger; each side its own, for the target's connection.
  std::string kaynak, hedef;
  std::string kapali;          // caption of the option that is off; empty when all are on
  std::string tablolar;        // whose passed over rows explain a difference
  std::int64_t yuvarlama = 0;  // ten-thousandths that the money format may take; 0: it is no money
  bool miktar = false;
  std::function<std::string(const KanitSatiri&)> ozel;  // its own reasons
};

std::vector<KanitTuru> kanitTurleri(Baglam& b);

constexpr std::size_t ayrintiSiniri = 5000;  // differing items of a kind that are listed

// A kind worked out: its total and the items that differ.
struct KanitDokumu {
  KanitSatiri toplam;
  std::vector<KanitSatiri> ayrintilar;
};
// Stock quantity and value of every warehouse, and whether the costing has seen every movement.
std::vector<KanitDokumu> stokKaniti(Baglam& b);

// Caption of the option that keeps a row of the tree from being carried; empty when none does.
std::string kapaliMetni(const Secenekler& s, int ust, int cocuk);
// Why a row that could not be written is missing; empty when it is not among them.
std::string atlananNedeni(const Baglam& b, std::string_view tablolar, const std::string& kod);
// Quantities stand in single precision.
bool miktarYuvarlamasi(const KanitSatiri& s);

}  // namespace rollover
