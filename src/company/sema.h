// What a database holds, as lines of text, and how two databases differ.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"

namespace company {

// One kind of thing: columns, keys, indexes, views, triggers. The first `anahtar` fields of a row name the
// thing, the others tell what it is like. The last `ayrinti` of them are listed on request only: the
// collation of a column, the text of a view or trigger as the server has it.
struct SemaBolumu {
  std::string_view ad;
  std::span<const std::string_view> basliklar;
  std::size_t anahtar = 1;
  std::size_t ayrinti = 0;
  std::vector<std::vector<std::string>> satirlar;

  SemaBolumu ayrintisiz() const;
};

struct Sema {
  // In this order: kolonlar, anahtarlar, dizinler, gorunumler, tetikleyiciler.
  std::vector<SemaBolumu> bolumler;
};

// Reads the catalog of the connection's database in four queries. Tables come by name, columns in their
// order. Throws db::SqlError.
Sema semaOku(db::Connection& connection);

struct SemaFarki {
  enum class Tur : std::uint8_t { YalnizBirinci, YalnizIkinci, Degisik };
  Tur tur = Tur::Degisik;
  std::string bolum;
  std::string ad;               // "STOKKART.Stok_Kod"
  std::string alan;             // the property that differs; empty unless Degisik
  std::string birinci, ikinci;  // its two values
};

// By name, ASCII case ignored, texts by their tokens. The order of columns does not count, nor does the name
// of a key, which the server makes up, nor, unless `siralama`, the collation, which follows the server's. A
// missing table is one difference, not one per column.
std::vector<SemaFarki> semaKarsilastir(const Sema& birinci, const Sema& ikinci, bool siralama = false);

// "CHAR", 26 gives CHAR(26); `boy` in bytes as syscolumns.length tells it, -1 for MAX.
std::string tipMetni(std::string_view tip, std::int64_t boy, std::int64_t hane, std::int64_t ondalik);

}  // namespace company
