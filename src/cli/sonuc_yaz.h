// Result sets as text, the same whatever the driver.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "db/connection.h"

namespace cli {

enum class Bicim { Tsv, Tablo, Json };
std::optional<Bicim> bicimOku(std::string_view ad);  // "tsv", "tablo", "json"

// tsv:   a line of column names, then a line per row, tab between. NULL as NULL; CHAR without trailing
//        blanks; tab, line feed, carriage return, backslash as \t, \n, \r, \\; bits 0 and 1; FLOAT and
//        REAL in the shortest form that reads back the same; MONEY and DECIMAL with their declared
//        decimals; dates YYYY-MM-DD HH:MM:SS.mmm; binary 0x....
// tablo: the same values in columns of equal width.
// json:  an array of one object per row; NULL as null, numbers as numbers. A column without a name is
//        called kolonN by its position from 1, a name that came before gets _N behind it.
void sonucYaz(std::ostream& out, const db::Rows& rows, Bicim bicim);

// One value as tsv shows it, before its escapes.
std::string degerMetni(const db::Value& value, const db::FieldInfo& field);

}  // namespace cli
