// The costing of the rollover: the moving weighted average over an item's whole history.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "rollover/para.h"

namespace rollover {

// One row of the history; an empty value is a NULL of the table.
struct MaliyetHareketi {
  std::optional<Para> giris, cikis, maliyet;
};

// Replays rows one after another.
class Maliyetlendirme_AOG {
 public:
  void isle(const MaliyetHareketi& hareket);
  Para miktar() const { return miktar_; }
  Para deger() const { return deger_; }
  Para birimMaliyet() const { return birim_; }

 private:
  Para miktar_, birim_, deger_;
};

// Costs of all items by their source ids.
struct Maliyetler {
  std::vector<std::pair<std::int64_t, Para>> birim;  // in the order of the ids

  // 0 for an item without a history.
  Para bul(std::int64_t stok) const;
};

}  // namespace rollover
