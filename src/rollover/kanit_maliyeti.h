// Unit costs for the proof, apart from those of the run: a reading of its own, in another order, with another
// reckoning.
#pragma once

#include <unordered_map>

#include "rollover/baglam.h"

namespace rollover {

class KanitMaliyeti {
 public:
  explicit KanitMaliyeti(Baglam& b);  // reads the movements of the source
  // What so much of an item is worth; `stok` is the source's id.
  Para degeri(std::int64_t stok, Para miktar) const;

 private:
  // In ten-thousandths.
  struct Kalem {
    std::int64_t miktar = 0, deger = 0, birim = 0;
  };
  static void isle(Kalem& kalem, std::int64_t net, const std::int64_t* maliyet);
  std::unordered_map<std::int64_t, Kalem> kalemler_;
};

}  // namespace rollover
