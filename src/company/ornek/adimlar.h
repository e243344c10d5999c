// The steps of the generator; each is a file of its own.
#pragma once

#include <functional>
#include <vector>

#include "company/ornek/baglam.h"

namespace company::ornek {

// A kind of document: how many at scale 1, and how one is written.
struct Is {
  int adet;
  std::function<void(Baglam&, const An&)> yaz;
};
using Isler = std::vector<Is>;

void faturaIsleri(Isler& isler);
void stokFisiIsleri(Isler& isler);
void kasaBankaIsleri(Isler& isler);
void siparisIsleri(Isler& isler);

// In their order.
void tanimlariYaz(Baglam& b);
void kartlariYaz(Baglam& b);
void acilislariYaz(Baglam& b);
void gunleriYaz(Baglam& b);  // the documents of all kinds, day by day
void evraklariYaz(Baglam& b);
void muhasebeYaz(Baglam& b);
void sayaclariYaz(Baglam& b);

}  // namespace company::ornek
