// A user's rights as text: the JSON object, the tree, the list; and the object's way back.
//
//   object = the columns of rights as they are stored (strings of '0' and '1', BITs 0 and 1, numbers, texts,
//            null), "ambarlar": [{"no": 1, "merkez": 1}, ...], "isyerleri": [{"kod": "1", "varsayilan": 1},
//            ...]
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "rights/yetki_duzeni.h"

namespace rights {

std::string yetkiJson(const YetkiDuzeni& duzen);
std::string yetkiAgacMetni(const YetkiDuzeni& duzen);
// Each right with its words, its column, its place from 1 and what is stored there.
std::vector<std::vector<std::string>> yetkiListesi(const YetkiDuzeni& duzen);

// Reads an object, or a part of one, over what `duzen` holds. Places that a list of warehouses or workplaces
// does not name are unticked. Empty on success; else the first fault with its line, and `duzen` is as before.
struct JsonKapsami {
  std::vector<std::size_t> kolonlar;  // the columns named
  bool ambarlar = false, isyerleri = false;
};
std::string yetkiJsonOku(std::string_view json, YetkiDuzeni& duzen, JsonKapsami& kapsam);

// Writes the columns named and the lists given, whole or not at all.
bool yetkiJsonYaz(session::Oturum& oturum, YetkiDuzeni& duzen, const JsonKapsami& kapsam);

// Writes what `duzen` holds, as it is stored, to another user or into another company that `hedef` has open.
bool yetkiKopyala(session::Oturum& oturum, YetkiDuzeni duzen, const YetkiDuzeni& hedef);

}  // namespace rights
