#include "session/sure.h"

#include <cmath>

namespace session {

namespace {

constexpr std::int64_t ilkTahmin = 1500;  // milliseconds; before that a guess would jump
constexpr double ilkPay = 0.02;

}  // namespace

std::string sureYazisi(std::int64_t saniye) {
  if (saniye < 60) return std::to_string(saniye) + " sn";
  if (saniye < 3600) return std::to_string(saniye / 60) + " dk " + std::to_string(saniye % 60) + " sn";
  return std::to_string(saniye / 3600) + " sa " + std::to_string(saniye % 3600 / 60) + " dk";
}

std::string kalanYazisi(std::int64_t gecen, double pay) {
  if (gecen < ilkTahmin || pay < ilkPay || pay >= 1) return {};
  return sureYazisi(std::llround(static_cast<double>(gecen) / pay * (1 - pay) / 1000));
}

}  // namespace session
