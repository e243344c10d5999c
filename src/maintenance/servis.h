// ServisMenu without its screen: clears the record locks of a company and looks for what does not fit
// together in its books. Nothing is repaired.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "session/oturum.h"

namespace maintenance {

// Company databases in the order of the catalog, for Firma_Combo. Leaves Baglanti on Defination_DB; a
// failure is shown and gives an empty list.
std::vector<std::string> firmaAdlari(session::Oturum& oturum);

// Baglanti on the company, as BaslaBtn does it. False after a failure, which is shown.
bool servisFirmasi(session::Oturum& oturum, const std::string& firma);

std::span<const std::string_view> kilitTablolari();  // in the order in which they are cleared

// Clears all of them on Baglanti and tells it. False when one was refused.
bool Kilitleri_Temizle(session::Oturum& oturum);

// Who has a record open, by lock table.
struct Kilit {
  std::string tablo;
  std::int64_t kayitlar = 0;
};
std::vector<Kilit> kilitler(session::Oturum& oturum);

enum class DenetimGrubi : std::uint8_t {
  FaturaIrsaliye,  // the two queries between invoices and stock slips
  Defter,          // everything else
};
struct Denetim {
  std::string_view ad;
  std::string_view anlam;  // what a row of it means, in a sentence
  std::string_view sql;    // "@BAS" and "@BIT" stand for the first and last day of the fiscal period
  DenetimGrubi grup = DenetimGrubi::Defter;
};
std::span<const Denetim> denetimler();

// What one check found; `hata` when the company's tables could not answer it.
struct Bulgu {
  const Denetim* denetim = nullptr;
  std::vector<std::string> basliklar;
  std::vector<std::vector<std::string>> satirlar;
  std::string hata;
};
// Runs the checks of Baglanti's company, which `firma` names in the catalog.
std::vector<Bulgu> Denetle(session::Oturum& oturum, const std::string& firma);
// The two queries between invoices and stock slips alone.
std::vector<Bulgu> Fatura_Irsaliye_Baglantilari(session::Oturum& oturum);

}  // namespace maintenance
