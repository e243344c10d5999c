// What a database holds, read in two queries and kept in step by whoever changes it.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "db/connection.h"

namespace company::upgrade {

struct KolonDurumu {
  std::string type;  // upper case, as systypes names it: CHAR, INT, DATETIME
  int length = 0;    // as syscolumns.length reports it
  bool nullable = true;
  bool identity = false;
  bool varsayilanli = false;  // has a declared default
};

class SemaGoruntusu {
 public:
  // Reads the catalog of the connection's database, or of `veritabani` on the same server. Throws
  // db::SqlError.
  static SemaGoruntusu oku(db::Connection& connection, const std::string& veritabani = {});

  // `tip` is "U", "V" or "TR". Names compare as the server compares them: without case.
  bool nesneVar(std::string_view ad, std::string_view tip) const;
  // Null when the column is missing. The name must match whole, a trailing blank included.
  const KolonDurumu* kolon(std::string_view tablo, std::string_view kolon) const;
  std::size_t tabloSayisi() const;

  void nesneEkle(std::string_view ad, std::string_view tip);
  void nesneSil(std::string_view ad);
  void kolonYaz(std::string_view tablo, std::string_view kolon, KolonDurumu durum);
  void kolonSil(std::string_view tablo, std::string_view kolon);
  void varsayilanlariSil(std::string_view tablo);

 private:
  std::map<std::string, std::string> nesneler_;  // folded name -> type
  std::map<std::string, std::map<std::string, KolonDurumu>> kolonlar_;
};

// "CHAR(26)" taken apart: "CHAR" and the length that syscolumns reports for it (DECIMAL without digits: 9).
struct TipBoy {
  std::string type;
  int length = 0;
};
TipBoy tipBoy(std::string_view declaration);

}  // namespace company::upgrade
