// What the members of the family check, each in its own words.
#pragma once

#include "settings/tanim.h"

namespace settings {

Kontrol isyeriKontrol(const IzgaraSatirlari& satirlar, int satir);
Kontrol saticiKontrol(const IzgaraSatirlari& satirlar, int satir);
Kontrol ambarKontrol(const IzgaraSatirlari& satirlar, int satir);
Kontrol fiyatKontrol(const IzgaraSatirlari& satirlar, int satir);
Kontrol dovizKontrol(const IzgaraSatirlari& satirlar, int satir);
Kontrol kontrolsuz(const IzgaraSatirlari& satirlar, int satir);

// A key as it is compared: numbers by their value.
std::string anahtarNormu(bool sayi, const std::string& metin);

std::string ambarKodKontrol(const std::string& metin, const std::string& isim, bool ayniVar);
std::string fiyatKodKontrol(const std::string& metin, const std::string& isim, bool ayniVar);
std::string dovizKodKontrol(const std::string& metin, const std::string& isim, bool ayniVar);

}  // namespace settings
