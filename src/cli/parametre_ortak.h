// What the commands on company parameters share.
#pragma once

#include <array>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"
#include "settings/parametre.h"

namespace cli {

void farklariYaz(std::ostream& out, const std::vector<settings::ParametreFarki>& farklar);
// Why the new values may not be stored, as the screen would say; empty when they may.
std::string parametreEngeli(KomutOturumu& komut, const settings::FirmaKaydi& kayit,
                            const std::vector<db::Value>& yeni);
inline constexpr std::array<std::string_view, 5> degisiklikBasliklari = {"Firma", "Kolon", "Eski", "Yeni",
                                                                         "Baslik"};
// Stores them, or with `dene` only tells what would change. An exit code.
int parametreYaz(KomutOturumu& komut, settings::FirmaKaydi& kayit, const std::vector<db::Value>& yeni,
                 bool dene, Degisiklikler& rapor);

}  // namespace cli
