// Stock groups of a company: main groups, their headings, the groups below; stored row by row. All on
// Baglanti2, the company's connection.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "session/izgara.h"
#include "session/oturum.h"

namespace settings {

enum class Grup : std::uint8_t { AnaGrup, AltBaslik, AltGrup };

struct GrupSecimi {
  std::int64_t Secili_Ana_Grup_ID = 0, Secili_Alt_Grup_BasID = 0;
};

std::span<const session::IzgaraKolonu> grupKolonlari(Grup grup);
// Column of the name; the ID is column 0.
int grupAdKolonu(Grup grup);

struct GrupListesi {
  session::IzgaraSatirlari satirlar;
  std::string hata;  // why there are none, empty when they were read
};
// AnaGrup_Listele, AltBaslik_Listele, AltGrup_Listele.
GrupListesi Grup_Listele(session::Oturum& oturum, Grup grup, const GrupSecimi& secim);

struct GrupKaydi {
  std::string kimlik;  // of the row after storing; empty when nothing was stored
  std::string hata;    // for an error box
};
// AnaGrup_Kaydet, AltBaslik_Kaydet, AltGrup_Kaydet: stores row `satir` (from 0) of the grid.
GrupKaydi Grup_Kaydet(session::Oturum& oturum, Grup grup, const session::IzgaraSatirlari& satirlar,
                      std::size_t satir, const GrupSecimi& secim);

}  // namespace settings
