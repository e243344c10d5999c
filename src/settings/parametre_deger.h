// Values of sysfrmlng between column and control, by the column's type in the catalog's definition.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "db/value.h"
#include "settings/parametre.h"

namespace settings {

// A number as a person reads it: decimals with `nokta`, no zeros at its end.
std::string sayiMetni(const db::Value& deger, char nokta);

// A numeric text as the column stores it, fractions rounded half to even where it takes whole numbers. Empty
// with the reason in `hata` when it does not fit. `nokta`: the decimal separator of `metin`.
std::optional<db::Value> sayiDegeri(const Parametre& parametre, std::string_view metin, char nokta,
                                    std::string& hata);
// A text for a text column; empty with the reason in `hata`.
std::optional<db::Value> yaziDegeri(const Parametre& parametre, std::string metin, std::string& hata);

bool ayniDeger(const Parametre& parametre, const db::Value& a, const db::Value& b);

}  // namespace settings
