// Scale barcode layouts: how a 13-digit barcode printed by a weighing scale is divided.
//
//   barcode = flag(2) stock-code(Master_Kod) kilograms(KG) grams(GR) check-digit(1)     13 digits in all
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "session/izgara.h"
#include "session/oturum.h"
#include "settings/cakisma.h"

namespace settings {

// Columns of FisGrd, in this order.
enum TartiKolonu { Tasarim_ID, Adetli, Bayrak_Kodu, Master_Kod, KG, GR, CD };
std::span<const session::IzgaraKolonu> tartiKolonlari();
session::IzgaraSatiri bosTartiSatiri();  // "1" in CD

struct TartiListesi {
  session::IzgaraSatirlari satirlar;
  std::string hata;
};
TartiListesi Tarti_Yukle(session::Oturum& oturum);  // on Baglanti2
// The message of the checks, empty without a fault. Gives flags of one character their leading "0".
std::string Tarti_Kontrol(session::IzgaraSatirlari& satirlar);
// On Baglanti2, in one transaction, over a table that is still as it was read.
ListeKaydi Tarti_Kaydet(session::Oturum& oturum, const session::IzgaraSatirlari& satirlar,
                        const session::IzgaraSatirlari& okunan);
CakismaKurali tartiCakismasi();

// A barcode read by the layouts.
struct TartiBarkodu {
  bool onUcHane = false, tasarimVar = false, kontrolDogru = false, adetli = false;
  std::string bayrak, stokKodu, kg, gr;
  char kontrol = 0, beklenen = 0;  // check digit as it stands and as it should
};
TartiBarkodu Tarti_Coz(const session::IzgaraSatirlari& satirlar, std::string_view barkod);

}  // namespace settings
