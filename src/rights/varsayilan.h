// The row of Kullanici that gives everything: of a new user in a company, of user 1 in a new company.
#pragma once

#include <cstdint>
#include <string>

namespace rights {

enum class VarsayilanTur : std::uint8_t {
  YeniKullanici,
  YeniFirma,  // also lets cash box and account be changed at the till
};

// One INSERT; the ids as text, name and scrambled password as they are stored.
std::string varsayilanSatir(VarsayilanTur tur, const std::string& firmaId, const std::string& kullaniciId,
                            const std::string& ad, const std::string& sifreli);

}  // namespace rights
