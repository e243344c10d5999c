// The standard chart of accounts and the two financial statement templates of a new company.
#pragma once

#include <cstdint>
#include <string>

#include "session/oturum.h"

namespace company {

// Fills MUHKART and the two statement templates of the company database `veritabani` from the files in
// "Muhasebe Parametre" under the program's folder. All three files are read and checked first; a fault is
// shown in a box and nothing is written. A row that the server refuses is shown too, and what was written
// before it is taken back, as it is when the user gives it up, which is shown nowhere.
enum class PlanSonucu : std::uint8_t { Yuklendi, Yuklenemedi, Vazgecildi };
PlanSonucu Standart_Plan_Yukle(session::Oturum& oturum, const std::string& veritabani);

}  // namespace company
