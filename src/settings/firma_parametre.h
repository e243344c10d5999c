// The company's parameters in the session record.
#pragma once

#include <cstdint>
#include <string>

#include "session/oturum.h"

namespace settings {

// "#,##0" and, for `hane` above 0, "." and as many zeros.
std::string sayiBicimi(std::int64_t hane);

// Reads the company's row of sysfrmlng through Baglanti, which must stand on the catalog, and fills the
// number formats and Oturum::Parametre. False when there is no such row or it cannot be read; Son_Hata
// then tells why and the session keeps what it had.
bool Firma_Parametre_Yukle(session::Oturum& oturum, std::int64_t sysfrm_ID);

}  // namespace settings
