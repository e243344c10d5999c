// Yedek Denetimi: the proof that a backup can be restored. The copy is opened on its own, never over the live
// one, and stays as it is.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "maintenance/yedek_kanit.h"

namespace maintenance {

struct DenetimSatiri {
  enum class Durum : std::uint8_t { Saglam, Bilgi, Kusur };
  std::string konu;  // "Dosyalar", "Sayfalar ve dizinler", "Şema", "Tablolar"
  std::string aciklama;
  Durum durum = Durum::Saglam;
};

struct YedekDenetimi {
  bool calisti = false;  // false: nothing could be said, the reason has been shown
  bool vazgecildi = false;
  bool saglam = false;  // no row is a Kusur
  std::string firma;
  std::vector<DenetimSatiri> satirlar;
  std::optional<db::DateTime> onceki;  // when it was last found whole
  std::int64_t tablo = 0, satir = 0;   // counted in the copy
  std::vector<db::TableDigest> tablolar;
};

// Reads both files whole, then pages, indexes, schema and every table of the copy, and holds them against
// what was kept when the backup was made: the tables of a live backup as they were counted and summed in the
// live database at its moment; the bytes of a stopping one as they were read from the stopped server's files,
// so that what is counted in equal bytes was in the live tables. The result is kept with it. Only for the
// embedded server's files; a cancelled one keeps nothing.
YedekDenetimi Yedek_Denetle(session::Oturum& oturum, const std::filesystem::path& klasor);

// The sum over all tables, as people compare it.
std::string toplamYaz(std::uint64_t toplam);
// "Sağlam", "Bilgi", "Kusurlu"
std::string_view durumYazisi(DenetimSatiri::Durum durum);

}  // namespace maintenance
