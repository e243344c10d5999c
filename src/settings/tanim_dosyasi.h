// Definition lists as text files, through the checks of their screens.
//
//   file  = header { line }          UTF-8; lines end with a line feed
//   header, line = cell { TAB cell }
//   cell  = text                     a backslash before t, n, r stands for tab, line feed, carriage return;
//                                    a backslash of the text is doubled
//
// The header names grid columns, in any order; columns that are not named keep what they have. A line belongs
// to the row with its key; identities differ from company to company and only tell rows of one key apart, or
// stand in for a key that the file does not have. Without such a row the line is a new one.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "settings/tanim.h"

namespace settings {

struct ListeTuru {
  std::string_view ad;
  bool firmali = true;  // lies in a company's database; otherwise in the catalog
  std::vector<IzgaraKolonu> kolonlar;
  std::string_view kimlik, kod;  // columns that find a row again; empty: every line is a new row
  TanimListesi (*yukle)(session::Oturum&, const ListeTuru&) = nullptr;
  // The fault of the grid; `dokunulan` holds the rows that the file names.
  Kontrol (*kontrol)(session::Oturum&, const ListeTuru&, IzgaraSatirlari&,
                     const std::vector<int>& dokunulan) = nullptr;
  // `okunan`: the list as it was read. The reason when nothing was written.
  std::string (*kaydet)(session::Oturum&, const ListeTuru&, const IzgaraSatirlari& okunan,
                        const IzgaraSatirlari&, const std::vector<int>& dokunulan) = nullptr;
};

const ListeTuru* listeTuru(std::string_view ad);
std::string listeTurleri();  // their names, comma between

// Connects to the company (or the catalog); the reason when it cannot.
std::string Liste_Bagla(session::Oturum& oturum, const ListeTuru& tur, const std::string& firma);

// A row that the file brings or changes; one without columns is new.
struct SatirFarki {
  struct Kolon {
    std::string ad, eski, yeni;
  };
  std::string satir;  // how people know it: its code
  std::vector<Kolon> kolonlar = {};
};

struct DosyaSonucu {
  std::string hata = {};  // names its line; nothing was written
  int eklenen = 0, degisen = 0;
  std::vector<SatirFarki> farklar = {};
};
// Takes a file into the list. With `dene` nothing is written.
DosyaSonucu Liste_Yukle(session::Oturum& oturum, const ListeTuru& tur, std::string_view dosya, bool dene);

}  // namespace settings
