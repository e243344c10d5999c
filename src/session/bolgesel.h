// Registry access of the procedures and the regional check.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/oturum.h"

namespace session {

inline constexpr std::string_view kokKullanici = "HKEY_CURRENT_USER";
inline constexpr std::string_view kokMakine = "HKEY_LOCAL_MACHINE";

// A missing key or value gives an empty text; a text is cut at its first NUL.
std::string Kayit_Oku(Oturum& oturum, std::string_view root, std::string_view key, std::string_view value);
void Kayit_Yaz(Oturum& oturum, std::string_view root, std::string_view key, std::string_view value,
               std::string_view text);

enum class BolgeselSonuc : std::uint8_t {
  Tamam,
  ProgramBitsin,  // the user refused, or a restart has been asked for: the program ends at once
};
// Separators and date form of the workstation; fills Ondalik_Ayrac and Binlik_Ayrac. A fresh account gets
// the wanted values without a question; where they cannot be written, this is said and the run goes on
// with them.
BolgeselSonuc BolgeselAyarlariAyarla(Oturum& oturum);

}  // namespace session
