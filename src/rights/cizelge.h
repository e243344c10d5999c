// The sheet of a company: rights as rows, users as columns.
#pragma once

#include <string>
#include <vector>

#include "rights/yetki_satiri.h"
#include "session/oturum.h"

namespace rights {

struct Cizelge {
  std::string firma;
  std::vector<std::string> kullanicilar;  // by name
  std::vector<YetkiSatiri> yetkiler;      // of each
};

// One read. False with the reason shown.
bool cizelgeOku(session::Oturum& oturum, const std::string& firma, Cizelge& cizelge);

struct CizelgeSuzgeci {
  std::string ara;            // words that a right's way must have
  std::string dal;            // a branch or part by the beginning of its caption
  bool yalnizFarkli = false;  // rights that some have and others lack
};
// Indexes into bayraklar().
std::vector<std::size_t> cizelgeSatirlari(const Cizelge& cizelge, const CizelgeSuzgeci& suzgec);

// The sheet as texts: first the headings (right, column, place, users), then a row of each right, "1" and "0"
// under the users.
std::vector<std::vector<std::string>> cizelgeTablosu(const Cizelge& cizelge,
                                                     const std::vector<std::size_t>& satirlar);
// UTF-8 with its mark, semicolons between: what spreadsheets of a Turkish workstation open by themselves.
std::string cizelgeCsv(const Cizelge& cizelge, const std::vector<std::size_t>& satirlar);
// A page by itself, with a search and filters of its own.
std::string cizelgeHtml(const Cizelge& cizelge, const std::vector<std::size_t>& satirlar);

}  // namespace rights
