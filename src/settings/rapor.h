// Default SQL texts of reports and documents: the table TSRSQL of the catalog.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "session/oturum.h"

namespace settings {

std::span<const std::string_view, 10> raporModulleri();  // module number from 1
std::span<const std::string_view, 5> raporKisimlari();   // kind from 1

// Closes Baglanti when open and connects it to the catalog; a failure is shown.
bool Rapor_Bagla(session::Oturum& oturum);
// The first text of the pair, empty without any.
std::string Rapor_Oku(session::Oturum& oturum, int modul, int kisim);
// Adds a text; nothing without module or kind. A later text is stored beside the earlier one and is not what
// the screen shows next. True when it was added; failures are shown.
bool Rapor_Kaydet(session::Oturum& oturum, int modul, int kisim, const std::string& metin);

struct RaporMetni {
  int modul = 0, kisim = 0;
  std::string metin;
};
std::vector<RaporMetni> Rapor_Tumu(session::Oturum& oturum);

}  // namespace settings
