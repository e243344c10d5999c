// What a company database lacks of the current schema: what the upgrade would add or change.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "company/upgrade/sema_goruntusu.h"
#include "session/oturum.h"

namespace company::upgrade {

struct SemaEksigi {
  std::int64_t tablolar = 0;    // missing
  std::int64_t kolonlar = 0;    // missing from tables that are there, or of another type or length
  std::int64_t gorunumler = 0;  // missing views and triggers
  bool var() const { return tablolar + kolonlar + gorunumler > 0; }
};

SemaEksigi semaEksigi(const SemaGoruntusu& sema);

// "3 tablo, 12 kolon eksik"; empty where nothing is missing.
std::string eksikYazisi(const SemaEksigi& eksik);

// Reads on a connection of its own to the catalog, so that it holds no database open. Nothing when it cannot
// be read.
std::optional<SemaEksigi> Sema_Eksigi_Oku(const session::OturumDegerleri& oturum, const std::string& firma);

}  // namespace company::upgrade
