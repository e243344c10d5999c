// Data migrations that hang on the outcome of one column.
#pragma once

#include <string>

#include "company/upgrade/kolonlar.h"

namespace company::upgrade {

// What must follow when columns of `tablo` are added now: for each such column its statements. Reads
// the rows that a migration walks.
Gocler eklenenGocleri(Yurutucu& yurutucu, const SemaGoruntusu& sema, const std::string& tablo);

// The rest, once the table's columns stand: migrations of changed columns and those that tell the
// administrator of their failure.
void sonrakiGocler(Yurutucu& yurutucu, const std::string& tablo, const TabloSonucu& sonuc);

}  // namespace company::upgrade
