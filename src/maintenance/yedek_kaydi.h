// When each company was last backed up, and where to: a file beside sys.inf, written after a whole backup.
//
//   yedek.kayit = { server TAB database TAB "YYYY-MM-DD HH:MM:SS" TAB place LF }
//
// The last backup of a database only. Names compare without letter case, as the server compares them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "session/firma_bilgisi.h"
#include "session/oturum.h"

namespace maintenance {

struct SonYedek {
  std::string sunucu, veritabani;
  db::DateTime zaman;
  std::string yer;  // folder of this machine, or file of the server's
};

class YedekKayitlari : public session::YedekBilgisi {
 public:
  explicit YedekKayitlari(const std::filesystem::path& programKlasoru)
      : dosya_(programKlasoru / "yedek.kayit") {}

  std::optional<db::DateTime> sonYedek(const std::string& sunucu, const std::string& veritabani) override;
  // By database.
  std::vector<SonYedek> sonYedekler(const std::string& sunucu) const;
  // Empty, or why it could not be written; the backup itself stands all the same.
  std::string yaz(const SonYedek& yedek) const;

 private:
  std::vector<SonYedek> oku() const;
  std::filesystem::path dosya_;
};

// Notes that `firma` has just been backed up to `yer`.
void Yedegi_Kaydet(session::Oturum& oturum, const std::string& firma, const std::string& yer);

}  // namespace maintenance
