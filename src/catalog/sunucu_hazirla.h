// Preparation of a fresh server: the catalog database with its supervisor.
#pragma once

#include <cstdint>
#include <string>

#include "session/oturum.h"

namespace catalog {

struct KurulumBilgisi {
  std::string yonetici;     // the supervisor's name as typed; stored in capitals
  std::string sifre;        // his password as typed; stored scrambled
  std::string veriKlasoru;  // folder of the database files as the server sees it; empty: where master lies
};

enum class KurulumSonucu : std::uint8_t {
  Hazirlandi,  // Baglanti stands on the catalog
  ZatenVar,    // there is a catalog already; nothing was changed
  Reddedildi,  // name or password cannot be stored; nothing was changed
  Basarisiz,   // the server refused something; a half-made catalog was dropped again
};

struct KurulumRaporu {
  KurulumSonucu sonuc = KurulumSonucu::Basarisiz;
  std::string metin;  // Turkish, for a box or the terminal; never holds a password
};

// Why the supervisor's name or password cannot be stored, in Turkish; empty when they can.
std::string yoneticiHatasi(const std::string& ad, const std::string& sifre);

// Works with Server_Adi, SQL_Login and SQL_Sifre of the session; shows no box.
KurulumRaporu Sunucu_Hazirla(session::Oturum& oturum, const KurulumBilgisi& bilgi);

}  // namespace catalog
