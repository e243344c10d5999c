// The till's settings as text: one object whose keys are the columns of Kullanici and KASIYERCONFIG, with the
// codes that the screen shows in place of numbers; "Teraziler" as it is stored; and
//
//   "kisayollar": [{"sira": 1, "stok": "ELMA"}, ...]
#pragma once

#include <string>
#include <vector>

#include "rights/kasiyer.h"

namespace rights {

std::string kasiyerJson(const KasiyerDuzeni& duzen);
// Caption, column, value.
std::vector<std::vector<std::string>> kasiyerListesi(const KasiyerDuzeni& duzen);

// Reads an object, or a part of one, over what `duzen` holds; a shortcut's card is looked up in the company.
// Empty on success; else the first fault with its line, and `duzen` is as before.
std::string kasiyerJsonOku(session::Oturum& oturum, std::string_view json, KasiyerDuzeni& duzen);

// Opens the settings of a user, by name, in the company of that database. False with the reason shown.
bool kasiyerAc(session::Oturum& oturum, KasiyerDuzeni& duzen, const std::string& kullanici,
               const std::string& firma);

}  // namespace rights
