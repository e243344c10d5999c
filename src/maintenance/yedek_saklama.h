// Which backups stay: all of the last days, then one a week, then one a month.
#pragma once

#include <filesystem>
#include <vector>

#include "maintenance/yedek.h"

namespace maintenance {

inline constexpr int saklananHafta = 8, saklananAy = 12;

// Of one company's backups, those that go. Kept are all of the last `gun` days, the newest of each of the
// eight weeks before and of each of the twelve months before those, the newest of all, and `kanitli`, the
// one that was proved last.
std::vector<YedekKaydi> seyreltilecekler(const std::vector<YedekKaydi>& yedekler, const db::DateTime& bugun,
                                         int gun, const std::filesystem::path& kanitli);

// What the company called `firma` has below `dizin` too many is deleted. Empty, or what could not be.
std::string Yedekleri_Seyrelt(session::Oturum& oturum, const std::filesystem::path& dizin,
                              const std::string& firma, int gun);

}  // namespace maintenance
