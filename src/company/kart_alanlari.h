// The card's texts and the columns of sysfrmlng behind them.
#pragma once

#include <span>
#include <string_view>
#include <utility>

#include "company/firma_karti.h"
#include "db/value.h"

namespace company {

struct KartAlani {
  std::string_view column;
  std::string FirmaKarti::*text;
  std::string_view caption;
  bool tarih = false;           // a date
  bool zorunlu = false;         // always written; the others only when they are not empty
  std::string_view kilit = {};  // second column that takes the date of a new company
};

// In the order in which they are written.
std::span<const KartAlani> kartAlanlari();

// By its column, as it is spelt above.
const KartAlani& kartAlani(std::string_view column);
// Characters that the column takes; 0 for one without a limit.
std::size_t kartAlaniGenisligi(std::string_view column);

// What goes into sysfrmlng for the text of one field: a date or the trimmed text.
db::Value kartDegeri(const FirmaKarti& kart, const KartAlani& alan);

// The fixed values of the row of a new company, in the order in which they are written.
std::span<const std::pair<std::string_view, db::Value>> yeniFirmaDegerleri();

}  // namespace company
