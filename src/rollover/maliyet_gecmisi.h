// The history of one item as the costing replays it, row by row.
#pragma once

#include <string>
#include <vector>

#include "rollover/para.h"
#include "session/oturum.h"

namespace rollover {

struct MaliyetSatiri {
  std::string tarih;  // DD.MM.YYYY
  std::string fisNo, islemTipi;
  int ambar = 0;
  Para giris, cikis, maliyet;        // of the row
  Para miktar, deger, birimMaliyet;  // after it
};

struct MaliyetGecmisi {
  std::string hata;  // empty when the item was found
  std::string firma, stokKod, stokAd;
  std::vector<MaliyetSatiri> satirlar;
};

// Up to the end of the company's period; consignment is left out, as in the costing. Reads only.
MaliyetGecmisi Maliyet_Gecmisi(session::Oturum& oturum, const std::string& firmaAdi,
                               const std::string& stokKod);

}  // namespace rollover
