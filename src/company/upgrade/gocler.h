// Data migrations that hang on the outcome of one column.
#pragma once

#include <string>
#include <vector>

#include "company/upgrade/kolonlar.h"

namespace company::upgrade {

// What must follow the column: its statements, or none. Reads the rows that a migration walks.
Gocler kolonGocu(Yurutucu& yurutucu, const SemaGoruntusu& sema, const std::string& tablo,
                 const std::string& kolon, Sonuc sonuc);

// The rest, once the table's columns stand: what is served only when the table has rows, and the boxes
// about refused migrations.
void gocleriBitir(Yurutucu& yurutucu, const std::string& tablo, const TabloSonucu& sonuc);

}  // namespace company::upgrade
