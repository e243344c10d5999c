// What the records beside sys.inf are made of: lines whose fields stand between tabs, and times.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/value.h"

namespace maintenance {

// The parts between the separators; always one more than there are separators.
std::vector<std::string> parcala(std::string_view metin, char ayrac);

// 2026-03-14 12:05:00
std::string zamanYaz(const db::DateTime& zaman);
std::optional<db::DateTime> zamanOku(const std::string& metin);

}  // namespace maintenance
