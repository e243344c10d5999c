// The later of two administrators is told what the other one stored, and chooses.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "session/oturum.h"

namespace settings_ui {

// `ne`: what was changed, as "Bu tanımlar". True when the user's own work is to be stored all the same.
bool uzerineSorulur(session::Oturum& oturum, std::string_view ne, const std::vector<std::string>& farklar);

}  // namespace settings_ui
