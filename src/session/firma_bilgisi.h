// What an administrator opens the console for: the state of one company.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "session/konsol.h"

namespace session {

struct FirmaBilgisi {
  bool veritabaniVar = true;
  std::optional<double> boyut;            // bytes of the database's files
  std::optional<std::int64_t> kullanici;  // users who may use it
  std::optional<db::DateTime> sonYedek;   // none: no backup of this database is known
};

// When a company's database was last backed up, where that is known. Called from any thread.
class YedekBilgisi {
 public:
  virtual ~YedekBilgisi() = default;
  virtual std::optional<db::DateTime> sonYedek(const std::string& sunucu, const std::string& veritabani) = 0;
};

// Reads on connections of its own, shows nothing, and leaves out what cannot be read.
FirmaBilgisi Firma_Bilgisi_Oku(const OturumDegerleri& oturum, const Dugum& firma);

// "1,4 GB"
std::string boyutYazisi(double bayt);

}  // namespace session
