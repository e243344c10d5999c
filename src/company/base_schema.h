// The schema of a new company database.
#pragma once

#include <cstdint>
#include <string>

#include "session/oturum.h"

namespace company {

// Runs the base schema on Baglanti, which must stand on a fresh company database: tables with their first
// rows and indexes, views, triggers, in their order, with progress by object. A refused statement shows
// its boxes and leaves its error in Son_Hata; the run goes on.
enum class SemaYazimi : std::uint8_t {
  Tamam,
  Kesildi,     // at a failure that all later statements would meet, too: link broken, disk full
  Vazgecildi,  // between two objects; the caller takes the database back
};
SemaYazimi Firma_Tablolari_Olustur(session::Oturum& oturum);

// The two texts that fill <date> and <time> of first rows: MM/DD/YYYY and HH:MM:SS.
std::string kayitTarihi(const db::DateTime& now);
std::string kayitSaati(const db::DateTime& now);
// `statement` with its marks filled.
std::string isaretleriDoldur(std::string statement, const db::DateTime& now);

}  // namespace company
