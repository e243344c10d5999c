#include "rollover/maliyet.h"

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

}  // namespace rollover
