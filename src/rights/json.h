// The little of JSON that rights are exchanged in: one object of texts, whole numbers, nulls and lists of
// such objects. Each value knows its line, so that a refusal can name it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rights {

struct JsonDeger;
using JsonNesne = std::vector<std::pair<std::string, JsonDeger>>;

enum class JsonTuru : std::uint8_t { Null, Sayi, Metin, Liste };

struct JsonDeger {
  JsonTuru tur = JsonTuru::Null;
  std::int64_t sayi = 0;
  std::string metin;
  std::vector<JsonNesne> liste;
  int satir = 1;  // from 1
};

struct JsonSonucu {
  JsonNesne nesne;
  std::string hata;  // with its line; empty when the text was read
};
JsonSonucu jsonOku(std::string_view text);

std::string jsonMetin(std::string_view text);  // in quotation marks

}  // namespace rights
