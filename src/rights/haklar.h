// Every right as one list with its words: what a search finds, a comparison tells and the sheet shows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rights/yetki_duzeni.h"

namespace rights {

// A stored flag: a place of a string, or a BIT.
struct Bayrak {
  std::string yol;  // its words from the top: "Kasa › Kasa Kartı › Sil"
  std::size_t kolon = 0;
  int yer = 0;
  int satir = -1;  // of the tree; -1 for a flag outside it
};
// The tree in its order, then the grids and boxes beside it.
const std::vector<Bayrak>& bayraklar();

// "Kasa › Kasa Kartı › Sil"
std::string hakYolu(int satir);

// Whether the text has every word, whatever its letters' case.
bool sozlerVar(std::string_view metin, std::string_view sozler);
// Rows of the tree that the words mean: those that have them in their own caption, then those that have
// them on their way from the top. Of a row and those below it only the row.
std::vector<int> hakAra(std::string_view sozler);

struct Fark {
  std::string yol;
  std::string sol, sag;  // "var" and "yok", or two values
  int satir = -1;
  friend bool operator==(const Fark&, const Fark&) = default;
};
// What one has and the other lacks.
std::vector<Fark> farklar(const YetkiSatiri& sol, const YetkiSatiri& sag);
// The same with warehouses and workplaces, which say something only in one company.
std::vector<Fark> farklar(const YetkiDuzeni& sol, const YetkiDuzeni& sag);

// Number, name and companies of a user, and the database among them that is meant. False with the reason
// shown.
bool kullaniciyiBul(session::Oturum& oturum, YetkiDuzeni& duzen, const std::string& kullanici,
                    const std::string& firma);
// Opens the rights of a user, by name, in the company of that database. False with the reason shown.
bool yetkiAc(session::Oturum& oturum, YetkiDuzeni& duzen, const std::string& kullanici,
             const std::string& firma);

}  // namespace rights
