#include "maintenance/kayit_metni.h"

#include <array>
#include <cstdio>

namespace maintenance {

std::vector<std::string> parcala(std::string_view metin, char ayrac) {
  std::vector<std::string> parcalar;
  while (true) {
    const auto son = metin.find(ayrac);
    parcalar.emplace_back(metin.substr(0, son));
    if (son == std::string_view::npos) return parcalar;
    metin.remove_prefix(son + 1);
  }
}

std::string zamanYaz(const db::DateTime& z) {
  std::array<char, 80> metin{};
  std::snprintf(metin.data(), metin.size(), "%04d-%02d-%02d %02d:%02d:%02d", z.year, z.month, z.day, z.hour,
                z.minute, z.second);
  return metin.data();
}

std::optional<db::DateTime> zamanOku(const std::string& metin) {
  db::DateTime z;
  if (std::sscanf(metin.c_str(), "%d-%d-%d %d:%d:%d", &z.year, &z.month, &z.day, &z.hour, &z.minute,
                  &z.second) != 6)
    return std::nullopt;
  return z;
}

}  // namespace maintenance
