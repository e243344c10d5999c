// What a backup held when it was made, kept beside sys.inf: the backup's own folder holds its two files and
// nothing else. A backup is known by the hashes of its files, wherever its folder stands by now.
//
//   yedek_kanit/FIRMA_HASH.kanit = "kanit 1" LF { line LF }
//   line = "firma" TAB name | "klasor" TAB path | "zaman" TAB "YYYY-MM-DD HH:MM:SS"     when it was made
//        | "dosya" TAB ( "data" | "log" ) TAB BLAKE2b in hexadecimal TAB bytes
//        | "kesinti" TAB seconds                                 that the service was down for it
//        | "sonradan"                                            first seen by a proof: "zaman" is that one's
//        | "tablo" TAB name TAB rows TAB sum in hexadecimal      as the live tables were then
//        | "denetim" TAB "YYYY-MM-DD HH:MM:SS" TAB ( "saglam" | "kusurlu" )             the last proof
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "db/connection.h"
#include "session/oturum.h"

namespace maintenance {

struct DosyaOzeti {
  std::string ozet;
  std::uintmax_t boyut = 0;
  bool operator==(const DosyaOzeti&) const = default;
};

struct YedekKaniti {
  std::string firma;
  std::filesystem::path klasor;
  db::DateTime zaman;
  DosyaOzeti data, log;
  double kesinti = 0;
  bool sonradan = false;
  std::vector<db::TableDigest> tablolar;  // empty until they were counted
  std::optional<db::DateTime> denetim;    // of the last proof
  bool saglam = false;                    // its result
};

// The record of a backup by its data file's hash, or the newest that names the folder.
std::optional<YedekKaniti> kanitBul(const session::Oturum& oturum, const std::string& firma,
                                    const std::string& dataOzeti);
std::optional<YedekKaniti> klasorunKaniti(const session::Oturum& oturum, const std::filesystem::path& klasor);
// What is known of a folder that has gone must not be held against a new one of its name.
void klasorunKanitlariniSil(const session::Oturum& oturum, const std::filesystem::path& klasor);
// All of them, or those of one company, oldest first.
std::vector<YedekKaniti> kanitlar(const session::Oturum& oturum);
std::vector<YedekKaniti> kanitlar(const session::Oturum& oturum, const std::string& firma);
// Whose backup the data file is when it was made here for another company than `firma`, as a sentence.
std::string baskasininYedegi(const session::Oturum& oturum, const std::string& firma,
                             const std::string& dataOzeti);
// Empty, or a Turkish text.
std::string kanitYaz(const session::Oturum& oturum, const YedekKaniti& kanit);

// "23/11/2026 14:05"
std::string anYaz(const db::DateTime& an);

}  // namespace maintenance
