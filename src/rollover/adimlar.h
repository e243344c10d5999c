// The steps of a run, each a routine of the screen.
#pragma once

#include "rollover/baglam.h"

namespace rollover {

void Tanimlari_Devret(Baglam& b);
void Kartlari_Devret(Baglam& b);

// Definitions and cards
void Tablo_Aktar(Baglam& b, std::string_view tablo);
void Alt_Tablo_Aktar(Baglam& b, std::string_view tablo);
void mustahsilAktar(Baglam& b);
// Deletes the target's children of every parent that the source has.
void cocuklariSil(Baglam& b, std::string_view tablo);
void Muhasebe_Kartlari_Devret(Baglam& b);
void Kasa_Kartlari_Devret(Baglam& b);
void Cari_Kartlari_Devret(Baglam& b);
void Stok_Kartlari_Devret(Baglam& b);
void Banka_Kartlari_Devret(Baglam& b);
void Personel_Kartlari_Devret(Baglam& b);
void Stok_Fiyatlari_Devret(Baglam& b);
void Sablon_Baglantisi_Duzelt(Baglam& b);

// Openings
void Kasa_Acilis_Devret(Baglam& b);
void Banka_Acilis_Devret(Baglam& b);
void Pos_Hareket_Devret(Baglam& b);
void Cari_Acilis_Devret(Baglam& b);
void Personel_Acilis_Devret(Baglam& b);
void Stok_Acilis_Devret(Baglam& b);

// Documents, recipes, counters
void Siparisleri_Devret(Baglam& b);
void Cekleri_Devret(Baglam& b);
void Senetleri_Devret(Baglam& b);
void Uretimreceteleri_Devret(Baglam& b);
void Fis_Numaralari_Devret(Baglam& b);

// Cost of every item at the source's end, by one reading of all histories. The proof works them out anew in
// a way of its own.
Maliyetler maliyetler(Baglam& b);

// Sums of one account in the source: amounts and amounts times days from the period's start.
struct ValorToplami {
  double AT = 0, BT = 0, AA = 0, BA = 0;
};
// Days from the target's start to the account's average due day. `kesirli`: the workstation writes a point,
// so that quotients keep their fractions.
std::int64_t Valor_Hesapla(const ValorToplami& t, const std::string& basTar0, const std::string& basTar1,
                           bool kesirli);

}  // namespace rollover
