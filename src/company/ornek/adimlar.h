// The steps of the generator; each is a file of its own.
#pragma once

#include "company/ornek/baglam.h"

namespace company::ornek {

// In their order.
void tanimlariYaz(Baglam& b);
void kartlariYaz(Baglam& b);
void acilislariYaz(Baglam& b);
void faturalariYaz(Baglam& b);
void stokFisleriniYaz(Baglam& b);
void kasaBankaYaz(Baglam& b);
void evraklariYaz(Baglam& b);
void siparisleriYaz(Baglam& b);
void muhasebeYaz(Baglam& b);
void sayaclariYaz(Baglam& b);

}  // namespace company::ornek
