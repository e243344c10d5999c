// YedekFrm without its screen: a backup is a folder that holds the two files of one company, copied while
// the server's service is stopped, and nothing else.
//
//   FOLDER = company "_" year "_" month "_" day [ "_" counter ]
//   data   = the last part of sysdatabases.filename, as it is
//   log    = the data file's name without its last four characters, and "_LOG.ldf"
//
// A folder under its final name is whole: until then it is called FOLDER.yarim.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "db/value.h"
#include "session/oturum.h"

namespace maintenance {

// Where the server keeps the files of one database, as this machine reaches them.
struct VeriDosyalari {
  std::filesystem::path data, log;
  std::string dataAdi, logAdi;  // their names in a backup
};

std::string yedekKlasorAdi(const std::string& firma, const db::DateTime& gun);
// The name of the next try when `ad` is taken; `sayac` counts from 0.
std::string sonrakiKlasorAdi(const std::string& ad, int& sayac);
// The log's name behind a data file's.
std::string logAdi(std::string_view dataAdi);
// The file in the folder of `yol` whose name is the same but for letter case; `yol` itself when there is
// none.
std::filesystem::path gercekDosya(const std::filesystem::path& yol);

struct YedekSonucu {
  bool tamam = false;
  std::string hata;                 // what went wrong, as it was shown
  std::filesystem::path klasor;     // the folder made
  double kesinti = 0;               // seconds that the service was down
  std::string dataOzeti, logOzeti;  // BLAKE2b of both files as they were copied
};
// How many seconds the service will be down for it, by the last backup's speed; empty when that cannot be
// told.
std::optional<double> Beklenen_Kesinti(session::Oturum& oturum, const std::string& firma);
// Progress: 48 steps. What went wrong has been shown; then nothing is left behind and the service runs.
YedekSonucu Yedekle(session::Oturum& oturum, const std::string& firma, const std::filesystem::path& dizin);

// The same without a stop, from the embedded server alone: the company as it is at one moment, while others
// go on writing.
YedekSonucu Canli_Yedekle(session::Oturum& oturum, const std::string& firma,
                          const std::filesystem::path& dizin);

// The company whose files lie in the folder; empty when it holds no backup. File names in the order of the
// file list.
std::string yedekFirmasi(const std::vector<std::string>& dosyalar, std::string& data, std::string& log);
std::vector<std::string> klasorDosyalari(const std::filesystem::path& klasor);
// Asks, stops, puts the folder's files in the place of the live ones, starts. False when it was declined or
// failed, which has been shown; then the company is as it was.
bool Geri_Al(session::Oturum& oturum, const std::filesystem::path& klasor);

// A SQL Server on another machine writes and reads the file itself; `yol` is a path of that machine.
bool Sunucuda_Yedekle(session::Oturum& oturum, const std::string& firma, const std::string& yol);
bool Sunucuda_Geri_Al(session::Oturum& oturum, const std::string& firma, const std::string& yol);

// The popup menu of Dir1. Each gives the folder to stand on afterwards; empty after a failure, in `hata`.
std::string yeniKlasorAdi(const std::filesystem::path& dizin);
std::filesystem::path klasorOlustur(const std::filesystem::path& dizin, const std::string& ad,
                                    std::string& hata);
std::filesystem::path klasorAdlandir(const std::filesystem::path& klasor, const std::string& ad,
                                     std::string& hata);
inline constexpr std::string_view klasorSilSorusu =
    "Klasörü Silmek İstediniz. Eğer Silerseniz Geri Alamayacaksınız. Devam Etmek İstiyormusunuz ?";
// Files of the folder and of its subfolders, one level deep; a deeper folder makes it fail before anything
// is deleted.
std::filesystem::path klasorSil(session::Oturum& oturum, const std::filesystem::path& klasor,
                                std::string& hata);

// The backups below a folder, by company, oldest first.
struct YedekKaydi {
  std::filesystem::path klasor;
  std::string firma;
  std::uintmax_t boyut = 0;
  db::DateTime gun;   // of the folder's name
  int sira = 0;       // its counter
  bool adli = false;  // the folder's name is one that a backup gets
};
std::vector<YedekKaydi> yedekleriListele(const std::filesystem::path& dizin);

}  // namespace maintenance
