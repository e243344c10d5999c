#include "session/izgara.h"

#include <algorithm>
#include <array>

#include "platform/code_page.h"
#include "session/metin.h"

namespace session {

namespace {

// How people and spreadsheets write a tick. Compared without case: "true" has the letters that change.
struct Tik {
  std::string_view yazi, deger;
};
constexpr std::array tikler = {Tik{"", ""},        Tik{"0", "0"},     Tik{"1", "1"},     Tik{"-1", "1"},
                               Tik{"hayır", "0"},  Tik{"evet", "1"},  Tik{"false", "0"}, Tik{"true", "1"},
                               Tik{"yanlış", "0"}, Tik{"doğru", "1"}, Tik{"x", "1"}};

const Tik* tikBul(std::string_view metin) {
  const std::string buyuk = Buyuk_Harf(Trim(metin));
  for (const Tik& tik : tikler)
    if (Buyuk_Harf(tik.yazi) == buyuk || Trim(metin) == tik.yazi) return &tik;
  std::string ascii = Trim(metin);
  for (char& c : ascii) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  for (const Tik& tik : tikler)
    if (ascii == tik.yazi) return &tik;
  return nullptr;
}

// The cell that begins at `at`; leaves `at` on the tab or line break behind it.
std::string hucreOku(std::string_view metin, std::size_t& at) {
  std::string hucre;
  if (at < metin.size() && metin[at] == '"') {
    for (++at; at < metin.size(); ++at) {
      if (metin[at] != '"') {
        hucre += metin[at];
      } else if (at + 1 < metin.size() && metin[at + 1] == '"') {
        hucre += '"';
        ++at;
      } else {
        ++at;
        break;
      }
    }
  }
  while (at < metin.size() && metin[at] != '\t' && metin[at] != '\n') hucre += metin[at++];
  if (!hucre.empty() && hucre.back() == '\r') hucre.pop_back();
  return hucre;
}

}  // namespace

int kolonSirasi(std::span<const IzgaraKolonu> kolonlar, std::string_view anahtar) {
  const auto at = std::ranges::find(kolonlar, anahtar, &IzgaraKolonu::anahtar);
  return at == kolonlar.end() ? -1 : static_cast<int>(at - kolonlar.begin());
}

std::optional<std::string> yabanciHarf(std::string_view metin) {
  for (const char32_t harf : platform::toUtf32(metin))
    if (!platform::byteOf(harf)) return platform::toUtf8(std::u32string(1, harf));
  return std::nullopt;
}

std::size_t harfSayisi(std::string_view metin) {
  return platform::toUtf32(metin).size();
}

std::string ilkHarfler(std::string_view metin, std::size_t sayi) {
  const std::u32string harfler = platform::toUtf32(metin);
  return harfler.size() <= sayi ? std::string(metin) : platform::toUtf8(harfler.substr(0, sayi));
}

std::string hucreDenetle(const IzgaraKolonu& kolon, std::string& metin) {
  const std::string baslik(kolon.baslik);
  if (kolon.tur == HucreTuru::Tik) {
    const Tik* tik = tikBul(metin);
    if (!tik) return baslik + ": “" + metin + "” evet ya da hayır değil.";
    metin = tik->deger;
    return {};
  }
  if (const auto harf = yabanciHarf(metin))
    return baslik + ": “" + *harf + "” harfi kullanılamaz (1254 Türkçe kod sayfasında yok).";
  if (kolon.buyuk) metin = Buyuk_Harf(metin);
  if (kolon.sinir > 0 && harfSayisi(metin) > static_cast<std::size_t>(kolon.sinir))
    return baslik + ": “" + metin + "” çok uzun, en çok " + std::to_string(kolon.sinir) +
           " karakter girilebilir.";
  return {};
}

std::vector<std::vector<std::string>> tabloOku(std::string_view metin) {
  std::vector<std::vector<std::string>> satirlar;
  std::size_t at = 0;
  while (at < metin.size()) {
    std::vector<std::string> satir{hucreOku(metin, at)};
    while (at < metin.size() && metin[at] == '\t') satir.push_back(hucreOku(metin, ++at));
    if (at < metin.size()) ++at;  // the line break
    satirlar.push_back(std::move(satir));
  }
  return satirlar;
}

std::string tabloYaz(const std::vector<std::vector<std::string>>& satirlar) {
  std::string metin;
  for (const auto& satir : satirlar) {
    if (!metin.empty()) metin += '\n';
    for (std::size_t i = 0; i < satir.size(); ++i) {
      if (i) metin += '\t';
      const std::string& hucre = satir[i];
      const bool tirnak = hucre.find_first_of("\t\n\r") != std::string::npos || hucre.starts_with('"');
      if (!tirnak) {
        metin += hucre;
        continue;
      }
      metin += '"';
      for (const char c : hucre) metin += c == '"' ? std::string("\"\"") : std::string(1, c);
      metin += '"';
    }
  }
  return metin;
}

}  // namespace session
