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

}  // namespace rollover
