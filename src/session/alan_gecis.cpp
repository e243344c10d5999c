#include "session/alan_gecis.h"

#include <charconv>

#include "session/metin.h"

namespace session {

namespace {

// Cuts the text at every separator.
std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const auto at = text.find(separator);
    parts.push_back(text.substr(0, at));
    if (at == std::string_view::npos) return parts;
    text.remove_prefix(at + 1);
  }
}

std::size_t partOf(GecisTusu tus) {
  switch (tus) {
    case GecisTusu::Sol:
      return 0;
    case GecisTusu::Yukari:
      return 1;
    case GecisTusu::Sag:
      return 2;
    default:
      return 3;
  }
}

GecisAdayi candidateOf(std::string_view text) {
  GecisAdayi aday;
  const auto open = text.find('(');
  aday.ad = Trim(text.substr(0, open));
  if (open == std::string_view::npos) return aday;
  int index = 0;
  const char* first = text.data() + open + 1;
  if (std::from_chars(first, text.data() + text.size(), index).ec == std::errc()) aday.sira = index;
  return aday;
}

bool staysInText(const GecisKonumu& konum, GecisTusu tus) {
  if (!konum.metinde) return false;
  if (tus == GecisTusu::Sol) return konum.imlec != 0;
  return tus == GecisTusu::Sag && konum.imlec != konum.uzunluk;
}

bool names(const GecisAdayi& aday, const GecisAlani& alan) {
  return (!aday.sira || aday.sira == alan.sira) && Buyuk_Harf(aday.ad) == Buyuk_Harf(alan.ad);
}

}  // namespace

std::optional<GecisTusu> gecisTusu(int key) {
  if ((key >= 37 && key <= 40) || key == 13) return static_cast<GecisTusu>(key);
  return std::nullopt;
}

std::vector<GecisAdayi> gecisAdaylari(std::string_view tag, GecisTusu tus) {
  const auto parts = split(tag, ';');
  const std::size_t part = partOf(tus);
  std::vector<GecisAdayi> adaylar;
  if (part >= parts.size()) return adaylar;
  for (const auto text : split(parts[part], '|')) {
    GecisAdayi aday = candidateOf(text);
    if (!aday.ad.empty()) adaylar.push_back(std::move(aday));
  }
  return adaylar;
}

std::optional<std::size_t> alanGecis(std::span<const GecisAlani> alanlar, const GecisKonumu& konum, int key) {
  const auto tus = gecisTusu(key);
  if (!tus || staysInText(konum, *tus)) return std::nullopt;
  for (const GecisAdayi& aday : gecisAdaylari(konum.tag, *tus)) {
    for (std::size_t i = 0; i < alanlar.size(); ++i) {
      if (!names(aday, alanlar[i])) continue;
      if (alanlar[i].acik && alanlar[i].gorunur) return i;
      break;  // only the first control of that name counts
    }
  }
  return std::nullopt;
}

}  // namespace session
