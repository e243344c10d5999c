// A card that makes a company.
#pragma once

#include <string>

#include "company/firma_karti.h"

namespace support {

inline company::FirmaKarti firmaKarti(const std::string& ad, const std::string& kod = "00001") {
  company::FirmaKarti kart;
  kart.Firma_Adi = kart.Firma_Unvani = ad;
  kart.Firma_Kodu = kod;
  kart.Bas_Tar = "01/01/2012";
  kart.Bit_Tar = "31/12/2012";
  return kart;
}

}  // namespace support
