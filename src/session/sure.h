// How long something takes, in words.
#pragma once

#include <cstdint>
#include <string>

namespace session {

// "8 sn", "2 dk 5 sn", "1 sa 4 dk"
std::string sureYazisi(std::int64_t saniye);
// What is left of a run that did `pay` (0 to 1) of the whole in `gecen` milliseconds; empty while that
// cannot be told.
std::string kalanYazisi(std::int64_t gecen, double pay);

}  // namespace session
