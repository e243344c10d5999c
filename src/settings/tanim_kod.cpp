#include <algorithm>
#include <array>

#include "platform/code_page.h"
#include "session/metin.h"
#include "settings/tanim.h"
#include "settings/tanim_kontrol.h"

namespace settings {

namespace {

// The small letters have no "q".
constexpr std::array<std::u32string_view, 3> diziler = {U"ABCÇDEFGĞHIİJKLMNOÖPQRSTUÜVWXYZ",
                                                        U"abcçdefgğhıijklmnoöprstuüvwxyz", U"0123456789"};

char32_t sonraki(char32_t harf) {
  for (const auto dizi : diziler)
    if (const auto yer = dizi.find(harf); yer != std::u32string_view::npos)
      return dizi[(yer + 1) % dizi.size()];
  return harf;
}

}  // namespace

std::string Sonraki_Kod(std::string_view kod) {
  std::u32string harfler = platform::toUtf32(kod);
  for (std::size_t i = harfler.size(); i-- > 0;) {
    const char32_t yeni = sonraki(harfler[i]);
    harfler[i] = yeni;
    if (i == 0) {
      if (yeni == U'A' || yeni == U'a' || yeni == U'Z' || yeni == U'z') harfler.insert(harfler.begin(), yeni);
      break;
    }
    if (yeni != U'A' && yeni != U'a' && yeni != U'0') break;
  }
  return platform::toUtf8(harfler);
}

AnahtarSayaci::AnahtarSayaci(const TanimTuru& tur, const IzgaraSatirlari& satirlar)
    : sayi_(tur.kolonlar[static_cast<std::size_t>(kolonu(tur, tur.kod))].tur == session::HucreTuru::Sayi) {
  const auto kod = static_cast<std::size_t>(kolonu(tur, tur.kod));
  for (const auto& satir : satirlar)
    if (!satir.gizli) ++sayilar_[norm(satir.hucreler[kod])];
}

std::string AnahtarSayaci::norm(const std::string& metin) const {
  return anahtarNormu(sayi_, metin);
}

bool AnahtarSayaci::baskasinda(const std::string& eski, const std::string& yeni) const {
  const auto at = sayilar_.find(norm(yeni));
  return at != sayilar_.end() && at->second > (norm(eski) == norm(yeni) ? 1 : 0);
}

void AnahtarSayaci::degisti(const std::string& eski, const std::string& yeni) {
  --sayilar_[norm(eski)];
  ++sayilar_[norm(yeni)];
}

}  // namespace settings
