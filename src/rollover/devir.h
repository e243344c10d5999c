// The rollover of a company into its next fiscal period: definitions and cards by their codes, balances as
// opening slips, items at their cost.
//
// A run is whole: what it writes into the target and into the catalog stands together or not at all, and the
// source is only read.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "rollover/kanit.h"
#include "rollover/secenekler.h"
#include "session/oturum.h"

namespace rollover {

inline constexpr std::string_view yeniFirmaAc = "Yeni Firma Aç";

// One side of the screen: 0 the source, 1 the target. Dates as DD.MM.YYYY.
struct DevirTarafi {
  std::string Firma_ID;  // "0" on the target: a new company
  std::string Firma_Unvani, Firma_Kodu, Firma_Adi;
  std::string Bas_Tar, Bit_Tar;
};

struct DevirGirdisi {
  std::array<DevirTarafi, 2> taraf;
  Secenekler secenekler;
  bool STEksi = false;            // items below nought open, too
  std::string Ciro_Takip_Suresi;  // days; not a number counts as 0
  bool deneme = false;            // everything is done, shown and taken back
  std::function<bool()> iptal;    // asked between pages of rows; true ends the run
};

struct DevirSonucu {
  bool tamam = false;
  bool iptal = false;
  std::string hata;                 // what to show when it is neither; empty when a box has been shown
  std::vector<Atlanan> atlananlar;  // rows and values that could not be written
  std::int64_t atlananSayisi = 0;   // all of them; the list keeps the first ones
  std::int64_t eklenen = 0, guncellenen = 0;
  Kanit kanit;
};

// An entry of the combo lists: database name and code.
struct FirmaSatiri {
  std::string ad, kod;
};
std::vector<FirmaSatiri> Firmalari_Yukle(session::Oturum& oturum);
// Fills one side from the catalog; false when there is no such company.
bool Firma_Kayit_Getir(session::Oturum& oturum, const std::string& ad, DevirTarafi& taraf);
// The proposal of a new target for the source on side 0.
void Yeni_Firma_Bilgileri_Olustur(session::Oturum& oturum, std::array<DevirTarafi, 2>& taraf);

// The first fault of the two sides; empty when there is none.
std::string Devir_kontrol(const std::array<DevirTarafi, 2>& taraf);

// What has to be asked before the run: a target that holds data already. Empty when there is nothing.
std::string hedefUyarisi(session::Oturum& oturum, const DevirGirdisi& girdi);

// The run after its checks. Shows no box but those of the schema; leaves Baglanti on the catalog.
DevirSonucu Devret(session::Oturum& oturum, const DevirGirdisi& girdi);

}  // namespace rollover
