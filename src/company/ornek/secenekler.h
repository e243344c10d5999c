// What a caller of the generator gives it: how much, and who listens.
#pragma once

#include <cstdint>
#include <functional>

namespace company {

struct OrnekVeriSecenekleri {
  int olcek = 1;            // 1 to 1,000
  std::uint64_t tohum = 1;  // the same seed gives the same rows
};

// One effect on a balance, told as it is written.
struct OrnekHareketi {
  enum class Tur : std::uint8_t {
    Kasa,      // kuruş into a cash box
    Banka,     // kuruş into a bank account
    Cari,      // kuruş, debit positive
    Hesap,     // kuruş on a ledger account, debit positive
    Stok,      // pieces into a warehouse
    Transfer,  // pieces into a warehouse, out of another
  };
  Tur tur = Tur::Kasa;
  std::int64_t id = 0;  // the card's identity
  std::int64_t deger = 0;
  int ambar = 0;
};
using OrnekDinleyici = std::function<void(const OrnekHareketi&)>;

}  // namespace company
