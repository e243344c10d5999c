// Chance that is the same everywhere: the distributions of the library may differ between compilers.
#pragma once

#include <cstdint>
#include <random>

namespace company::ornek {

class Rastgele {
 public:
  explicit Rastgele(std::uint64_t tohum) : motor_(tohum) {}

  // From `enAz` to `enCok`, both included.
  std::int64_t arasi(std::int64_t enAz, std::int64_t enCok) {
    return enAz + static_cast<std::int64_t>(motor_() % static_cast<std::uint64_t>(enCok - enAz + 1));
  }
  bool yuzde(int olasilik) { return arasi(0, 99) < olasilik; }

 private:
  std::mt19937_64 motor_;
};

// A number for thing `sira` of kind `tur`: cards are made from it whenever they are needed, so that none has
// to be kept.
inline std::uint64_t karistir(std::uint64_t tohum, std::uint64_t tur, std::uint64_t sira) {
  std::uint64_t z = tohum * 0x9E3779B97F4A7C15ULL + tur * 0xD1B54A32D192ED03ULL + sira + 1;
  z *= 0x9E3779B97F4A7C15ULL;
  z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27U)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31U);
}

}  // namespace company::ornek
