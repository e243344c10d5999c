// What the procedures of this room share: the catalog, one transaction, and texts of columns.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "session/oturum.h"

namespace rights {

inline constexpr std::string_view katalogAdi = session::katalogVeritabani;

// How a save begins: it waits five seconds at most for what another program holds.
inline constexpr std::string_view islemBasi = "SET LOCK_TIMEOUT 5000\nBEGIN TRAN";

// Baglanti to the catalog; false when it cannot be had, with the reason shown.
bool katalogaBaglan(session::Oturum& oturum);

// Runs `is` as one transaction on Baglanti, whole or not at all. False when it gave false or a statement
// failed; a failure is told in one box behind `yapilamadi` and left in Son_Hata, without its statement,
// which may hold a password.
bool tekIslem(session::Oturum& oturum, std::string_view yapilamadi, const std::function<bool()>& is);

// Runs `is`; a failure is told in the same way.
bool hatayiGoster(session::Oturum& oturum, std::string_view yapilamadi, const std::function<bool()>& is);

// Why the text does not fit a column of a catalog table, in Turkish; empty when it does.
std::string sigmazHatasi(std::string_view tablo, std::string_view kolon, std::string_view yazi,
                         const std::string& metin);
// Characters of a text column of a catalog table; 0 for one without a limit.
int kolonGenisligi(std::string_view tablo, std::string_view kolon);

// "1,2,3" for IN (...).
template <class List, class Text>
std::string birlestir(const List& liste, Text metin) {
  std::string out;
  for (const auto& each : liste) out += (out.empty() ? "" : ",") + metin(each);
  return out;
}

}  // namespace rights
