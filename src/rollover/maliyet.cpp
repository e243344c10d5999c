#include "rollover/maliyet.h"

#include <algorithm>

namespace rollover {

void Maliyetlendirme_AOG::isle(const MaliyetHareketi& h) {
  const bool ikisi = h.giris && h.cikis;
  const Para net = ikisi ? *h.giris - *h.cikis : Para{};
  miktar_ = miktar_ + net;
  if (net > Para{}) {
    if (h.maliyet) deger_ = deger_ + net * *h.maliyet;
    // Without stock the last entry's own cost stands; the value is left as it comes.
    birim_ = miktar_ > Para{} ? deger_ / miktar_ : h.maliyet.value_or(Para{});
    if (birim_ < Para{}) birim_ = {};
  } else {
    deger_ = deger_ + net * birim_;
  }
}

Para Maliyetler::bul(std::int64_t stok) const {
  const auto at = std::lower_bound(birim.begin(), birim.end(), stok,
                                   [](const auto& m, std::int64_t id) { return m.first < id; });
  return at == birim.end() || at->first != stok ? Para{} : at->second;
}

}  // namespace rollover
