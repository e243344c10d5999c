// The catalog database: its tables and the bootstrap of a fresh server.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalog/definition.h"
#include "session/oturum.h"

namespace catalog {

inline constexpr std::string_view catalogDatabase = session::katalogVeritabani;

// The statement of Katalog_Olustur that always fails: it leaves out sysus_lgn, which may not be NULL.
inline constexpr std::string_view refusedSupervisorRow =
    "INSERT INTO sysuslng(sysus_nm,sysus) VALUES ('','' )";

// The tables of the catalog in the order of their creation; parsed at the first call.
const std::vector<TableDef>& catalogTables();
std::span<const EmbeddedText> embeddedTexts();

// Creates the ten tables of the catalog's first text on Baglanti, which must stand on the freshly made
// database. One of its statements always fails and shows the usual two boxes; the run goes on.
void Katalog_Olustur(session::Oturum& oturum);

}  // namespace catalog
