// The upgrade as a screen wants it: one call, one text.
#pragma once

#include <string>

#include "session/oturum.h"

namespace company::upgrade {

// Upgrades the company, or with `deneme` tries it and takes it back. What came of it in Turkish, a reason why
// nothing was done included; empty when a box has told already.
std::string guncellemeRaporu(session::Oturum& oturum, const std::string& firmaAdi, bool deneme);

}  // namespace company::upgrade
