// The files of the standard chart: line files that end in a line "<END>" in any letter case, in UTF-8 or
// code page 1254.
//
//   StandartPlan.txt           line = code ";" name ; a line without ";" is skipped
//   BILANCO.txt, KARZARAR.txt  line = { value ";" } ; text behind the last ";" is dropped
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace company {

// What was read, or the fault: Turkish, with the file's name and line.
template <class Row>
struct Okunan {
  std::vector<Row> rows;
  std::string hata;
};

struct HesapSatiri {
  std::string kod, ad;
  friend bool operator==(const HesapSatiri&, const HesapSatiri&) = default;
};
using TabloSatiri = std::vector<std::string>;

// `text` is the file's content; `dosya` its name as shown. Codes and names are measured and codes must not
// repeat; template values are checked against the columns of MUHASEBEMALITABLOHAREKET behind Rapor_ID.
Okunan<HesapSatiri> hesapPlaniOku(std::string_view text, const std::string& dosya);
Okunan<TabloSatiri> maliTabloOku(std::string_view text, const std::string& dosya);

// Columns that the values of a template line fill, in order.
const std::vector<std::string>& maliTabloKolonlari();

}  // namespace company
