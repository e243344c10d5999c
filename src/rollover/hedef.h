// The target of a run: a new database and its rows in the catalog.
#pragma once

#include <string>

#include "rollover/baglam.h"

namespace rollover {

// Makes the database of a new target with schema and upgrade, outside of any transaction; it carries a mark
// until the run is whole. Empty on success, else why not; nothing is left behind then.
std::string Firmayi_Olustur(session::Oturum& oturum, const DevirGirdisi& girdi);
// Takes a database made by Firmayi_Olustur away again.
void firmayiKaldir(session::Oturum& oturum, const std::string& ad);

// In the run's transaction: the company's row (hedefID is set), the users' rights, and the mark goes.
void katalogaYaz(Baglam& b);
void Kullanici_Yetkilerini_Devret(Baglam& b);

// Why an existing target cannot take the run: its schema is older than the program's. Empty when it can.
std::string eskiHedef(Baglam& b);

}  // namespace rollover
