// Two administrators on one list: what the other one stored since it was read, and both works put together.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "session/izgara.h"

namespace settings {

struct CakismaKurali {
  std::span<const session::IzgaraKolonu> kolonlar;
  int kimlik = -1;             // column that tells rows apart; -1: by `kod`
  int kod = 0, ad = 0;         // what people know a row by; rows without `kod` end the grid
  std::vector<int> tekTikler;  // ticks that only one row has
};

// What came of saving lists that somebody else may have changed.
struct ListeKaydi {
  std::string hata;                               // refused; nothing was written
  std::vector<std::string> aradaki;               // what others changed since; nothing was written
  std::vector<session::IzgaraSatirlari> simdiki;  // the lists as they are now
};

// One line for each row that others added, changed or removed; empty when nothing is different.
std::vector<std::string> aradakiFarklar(const CakismaKurali& kural, const session::IzgaraSatirlari& okunan,
                                        const session::IzgaraSatirlari& simdiki);

// The user's grid with what only others changed: a row that both changed is the user's, and the user's
// single ticks win.
session::IzgaraSatirlari birlestir(const CakismaKurali& kural, const session::IzgaraSatirlari& okunan,
                                   const session::IzgaraSatirlari& simdiki,
                                   const session::IzgaraSatirlari& kullanicinin);

}  // namespace settings
