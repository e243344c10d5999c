// The parameters of the company in work, one field for each column of sysfrmlng with that name.
// Firma_Parametre_Yukle (settings/) fills them; until then they have the values of a fresh company.
#pragma once

#include <cstdint>
#include <string>

#include "db/value.h"

namespace session {

struct FirmaParametreleri {
  bool DovizVar = false, RenkBedenVar = false, PosVar = false, BarkodVar = false, EmanetVar = false,
       OnceEmanetAl = false, HareketKilit = false, SatirISK_Dahil = false, FaturaAltiISK_Dahil = false,
       Masraflar_Dahil = false, StokSeviyeOzelKontrol = false, KDV_Dahildir = false,
       CariStokFiyatBagli = false, FarkliFiyatBirlessin = false, FarkliISKBirlessin = false,
       TaksitliSatisModu = false, PuanVar = false, Ana_Birim = true, Birim2 = false, Birim3 = false,
       AktifBirim = false, OnlineMuhasebe = false, MuhBenzerSatirBirlestir = true, AmbarKarNoktasidir = false,
       AmbarBakiyesiGoster = false, AmbarYetkiyeBagli = false, IsyeriYetkiyeBagli = false,
       MasraflarSatistaKardir = true;
  std::int32_t Renk_Ozel = 0, Renk_TL = 0, Renk_Doviz = 0, StokMinRenk = 0, StokMaxRenk = 0, StokSFRRenk = 0;
  int OzelRenkli = 0, StokMinSeviye = 0, StokMaxSeviye = 0, StokSFRSeviye = 0;
  int AlisverisNusha = 1, TahsilNusha = 1, DefKDV = 0;
  double PesinIndirimi = 0, SecimdeGelecekMiktar = 1;
  int IrsTakipSuresi = 7, KasaHareketListeTipi = 1, KasiyerStokListeTipi = 1, AlistaFiyatDegis = 0,
      SatistaFiyatDegis = 0, MuhasebelesecekFisler = 1;
  std::string TransferFirma;
  db::DateTime KilitBasTarih, KilitBitTarih;
  db::DateTime Mali_Yil_Baslangic, Mali_Yil_Bitis;  // the fiscal year that stands in for missing lock dates
};

}  // namespace session
