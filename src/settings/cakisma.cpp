#include "settings/cakisma.h"

#include <algorithm>
#include <map>

#include "session/metin.h"

namespace settings {

namespace {

using session::IzgaraSatiri;
using session::IzgaraSatirlari;

const std::string& hucre(const IzgaraSatiri& satir, int kolon) {
  return satir.hucreler[static_cast<std::size_t>(kolon)];
}

std::string anahtar(const CakismaKurali& kural, const IzgaraSatiri& satir) {
  return session::Trim(hucre(satir, kural.kimlik >= 0 ? kural.kimlik : kural.kod));
}

using Dizin = std::map<std::string, const IzgaraSatiri*>;

Dizin dizin(const CakismaKurali& kural, const IzgaraSatirlari& satirlar) {
  Dizin sonuc;
  for (const IzgaraSatiri& satir : satirlar)
    if (std::string a = anahtar(kural, satir); !a.empty()) sonuc.emplace(std::move(a), &satir);
  return sonuc;
}

// Columns without a heading are the table's own business: identities that a save gives anew.
bool sayilir(const CakismaKurali& kural, std::size_t kolon) {
  return !kural.kolonlar[kolon].baslik.empty();
}

bool ayni(const CakismaKurali& kural, const IzgaraSatiri& a, const IzgaraSatiri& b) {
  if (a.gizli != b.gizli) return false;
  for (std::size_t k = 0; k < kural.kolonlar.size(); ++k)
    if (sayilir(kural, k) && a.hucreler[k] != b.hucreler[k]) return false;
  return true;
}

std::string adi(const CakismaKurali& kural, const IzgaraSatiri& satir) {
  const std::string kod = hucre(satir, kural.kod), ad = hucre(satir, kural.ad);
  return kural.kod == kural.ad || ad.empty() ? kod : kod + " " + ad;
}

std::string degeri(const session::IzgaraKolonu& kolon, const std::string& metin) {
  if (kolon.tur == session::HucreTuru::Tik) return metin == "1" ? "evet" : "hayır";
  return metin.empty() ? "boş" : metin;
}

std::string degisimi(const CakismaKurali& kural, const IzgaraSatiri& eski, const IzgaraSatiri& yeni) {
  std::string metin;
  for (std::size_t k = 0; k < kural.kolonlar.size(); ++k)
    if (sayilir(kural, k) && eski.hucreler[k] != yeni.hucreler[k])
      metin += (metin.empty() ? "" : ", ") + std::string(kural.kolonlar[k].baslik) + ": " +
               degeri(kural.kolonlar[k], eski.hucreler[k]) + " → " +
               degeri(kural.kolonlar[k], yeni.hucreler[k]);
  return metin;
}

void tikleriAyir(const CakismaKurali& kural, const Dizin& kullanicinin, IzgaraSatirlari& satirlar) {
  for (const int tik : kural.tekTikler) {
    const auto isaretli = [&](const IzgaraSatiri& s) { return hucre(s, tik) == "1"; };
    if (std::ranges::count_if(satirlar, isaretli) < 2) continue;
    const auto kalan = std::ranges::find_if(satirlar, [&](const IzgaraSatiri& s) {
      const auto benim = kullanicinin.find(anahtar(kural, s));
      return isaretli(s) &&
             (benim == kullanicinin.end() ? anahtar(kural, s).empty() : isaretli(*benim->second));
    });
    for (auto it = satirlar.begin(); it != satirlar.end(); ++it)
      if (it != kalan && isaretli(*it)) it->hucreler[static_cast<std::size_t>(tik)] = "0";
  }
}

}  // namespace

std::vector<std::string> aradakiFarklar(const CakismaKurali& kural, const IzgaraSatirlari& okunan,
                                        const IzgaraSatirlari& simdiki) {
  std::vector<std::string> farklar;
  const Dizin eskiler = dizin(kural, okunan), yeniler = dizin(kural, simdiki);
  for (const auto& [a, eski] : eskiler) {
    const auto yeni = yeniler.find(a);
    if (yeni == yeniler.end())
      farklar.push_back(adi(kural, *eski) + ": silindi");
    else if (!ayni(kural, *eski, *yeni->second))
      farklar.push_back(adi(kural, *eski) + ": " + degisimi(kural, *eski, *yeni->second));
  }
  for (const auto& [a, yeni] : yeniler)
    if (!eskiler.contains(a)) farklar.push_back(adi(kural, *yeni) + ": eklendi");
  return farklar;
}

IzgaraSatirlari birlestir(const CakismaKurali& kural, const IzgaraSatirlari& okunan,
                          const IzgaraSatirlari& simdiki, const IzgaraSatirlari& kullanicinin) {
  const Dizin eskiler = dizin(kural, okunan), yeniler = dizin(kural, simdiki),
              benimkiler = dizin(kural, kullanicinin);
  IzgaraSatirlari sonuc;
  for (const IzgaraSatiri& satir : kullanicinin) {
    const std::string a = anahtar(kural, satir);
    const auto eski = eskiler.find(a), yeni = yeniler.find(a);
    const bool dokunulmadi = eski != eskiler.end() && ayni(kural, satir, *eski->second);
    if (!dokunulmadi)
      sonuc.push_back(satir);
    else if (yeni != yeniler.end())
      sonuc.push_back(*yeni->second);
  }
  // Before the first row without a code: saving ends there.
  auto yer = std::ranges::find_if(
      sonuc, [&](const IzgaraSatiri& s) { return session::Trim(hucre(s, kural.kod)).empty(); });
  for (const IzgaraSatiri& satir : simdiki)
    if (const std::string a = anahtar(kural, satir); !eskiler.contains(a) && !benimkiler.contains(a))
      yer = sonuc.insert(yer, satir) + 1;
  tikleriAyir(kural, benimkiler, sonuc);
  return sonuc;
}

}  // namespace settings
