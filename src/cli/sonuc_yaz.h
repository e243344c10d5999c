// Result sets as text, the same whatever the driver.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "cli/komut.h"
#include "db/connection.h"

namespace cli {

enum class Bicim { Tsv, Tablo, Json };
// What --bicim asks for, which is one of tabloBicimleri.
Bicim bicimi(const Degerler& degerler, Bicim yoksa);

// tsv:   a line of column names, then a line per row, tab between. NULL as NULL; CHAR without trailing
//        blanks; tab, line feed, carriage return, backslash as \t, \n, \r, \\; bits 0 and 1; FLOAT and
//        REAL in the shortest form that reads back the same; MONEY and DECIMAL with their declared
//        decimals; dates YYYY-MM-DD HH:MM:SS.mmm; binary 0x....
// tablo: the same values in columns of equal width; the names stand out where colours may be written.
// json:  an array of one object per row; NULL as null, numbers as numbers. A column without a name is
//        called kolonN by its position from 1, a name that came before gets _N behind it.
void sonucYaz(std::ostream& out, const db::Rows& rows, Bicim bicim, bool renkli = false);
void sonucYaz(Ortam& ortam, const db::Rows& rows, Bicim bicim);

// Pairs of a name and a value: "metin" is a line each with a tab between, the other forms have headings.
void ikilileriYaz(Ortam& ortam, const Degerler& degerler, std::span<const std::string_view> basliklar,
                  const std::vector<std::vector<std::string>>& satirlar);
// What a writing command has changed, or would change with --dene: texts to be read, each as soon as it is
// known, or with --bicim one table of everything.
class Degisiklikler {
 public:
  Degisiklikler(Ortam& ortam, const Degerler& degerler, std::span<const std::string_view> basliklar)
      : ortam_(ortam), degerler_(degerler), basliklar_(basliklar) {}
  void ekle(std::string_view metin, std::vector<std::vector<std::string>> satirlar);
  void bitir();  // writes the table

 private:
  bool tablo() const { return degerler_.metin("bicim", "metin") != "metin"; }

  Ortam& ortam_;
  const Degerler& degerler_;
  std::span<const std::string_view> basliklar_;
  std::vector<std::vector<std::string>> satirlar_;
};
// A text as JSON writes it, with its quotes.
std::string jsonMetni(std::string_view text);

// One value as tsv shows it, before its escapes.
std::string degerMetni(const db::Value& value, const db::FieldInfo& field);

}  // namespace cli
