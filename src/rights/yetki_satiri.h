// A user's rights in one company as columns, and their way into the tree and back.
#pragma once

#include <string>
#include <vector>

#include "db/recordset.h"
#include "rights/sozluk.h"

namespace rights {

struct YetkiSatiri {
  std::vector<db::Value> degerler = std::vector<db::Value>(kolonlar().size());  // in the order of kolonlar()

  db::Value& operator[](std::string_view kolon) { return degerler[*kolonSirasi(kolon)]; }
  const db::Value& operator[](std::string_view kolon) const { return degerler[*kolonSirasi(kolon)]; }
};

// Out of the current row. A column that the catalog does not have reads as NULL.
YetkiSatiri yetkiSatiriOku(const db::Recordset& kayitlar);

// Whether the place is granted: '1' in a string, a BIT that is set. NULL, a string that is too short and any
// other character are none.
bool verilmis(const YetkiSatiri& satir, std::size_t kolon, int yer);

// Ticks of the tree out of the columns: a top row by the BITs of its branch, where it has any; every other
// row with rows below it by what is ticked there.
void agacaYaz(const YetkiSatiri& satir, session::TikAgaci& agac);
// What a comparison takes for the ticks of the tree: its columns, but rows that show another column than
// they write keep what is stored until their tick is changed.
YetkiSatiri gosterilenSatir(const session::TikAgaci& agac, const YetkiSatiri& okunan);
// The columns of the tree out of its ticks: strings of their full width, what lies behind it is cut.
void agactanOku(const session::TikAgaci& agac, YetkiSatiri& satir);

}  // namespace rights
