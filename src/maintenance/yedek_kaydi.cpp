#include "maintenance/yedek_kaydi.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "platform/files.h"
#include "session/metin.h"

namespace maintenance {

namespace {

std::vector<std::string> parcala(std::string_view metin, char ayrac) {
  std::vector<std::string> parcalar;
  while (true) {
    const auto son = metin.find(ayrac);
    parcalar.emplace_back(metin.substr(0, son));
    if (son == std::string_view::npos) return parcalar;
    metin.remove_prefix(son + 1);
  }
}

bool ayniAd(const std::string& a, const std::string& b) {
  return session::Buyuk_Harf(a) == session::Buyuk_Harf(b);
}

std::string zamanYaz(const db::DateTime& z) {
  std::array<char, 80> metin{};
  std::snprintf(metin.data(), metin.size(), "%04d-%02d-%02d %02d:%02d:%02d", z.year, z.month, z.day, z.hour,
                z.minute, z.second);
  return metin.data();
}

bool zamanOku(const std::string& metin, db::DateTime& z) {
  return std::sscanf(metin.c_str(), "%d-%d-%d %d:%d:%d", &z.year, &z.month, &z.day, &z.hour, &z.minute,
                     &z.second) == 6;
}

}  // namespace

// A line that is not of this form is passed over: it hides one date, not the others.
std::vector<SonYedek> YedekKayitlari::oku() const {
  std::vector<SonYedek> kayitlar;
  const auto metin = platform::readFile(dosya_);
  if (!metin) return kayitlar;
  for (const std::string& satir : parcala(*metin, '\n')) {
    const auto alanlar = parcala(satir, '\t');
    SonYedek kayit;
    if (alanlar.size() != 4 || !zamanOku(alanlar[2], kayit.zaman)) continue;
    kayit.sunucu = alanlar[0];
    kayit.veritabani = alanlar[1];
    kayit.yer = alanlar[3];
    kayitlar.push_back(std::move(kayit));
  }
  return kayitlar;
}

std::optional<db::DateTime> YedekKayitlari::sonYedek(const std::string& sunucu,
                                                     const std::string& veritabani) {
  for (const SonYedek& kayit : oku())
    if (ayniAd(kayit.sunucu, sunucu) && ayniAd(kayit.veritabani, veritabani)) return kayit.zaman;
  return std::nullopt;
}

std::vector<SonYedek> YedekKayitlari::sonYedekler(const std::string& sunucu) const {
  auto kayitlar = oku();
  std::erase_if(kayitlar, [&](const SonYedek& k) { return !ayniAd(k.sunucu, sunucu); });
  std::ranges::sort(kayitlar, {}, &SonYedek::veritabani);
  return kayitlar;
}

std::string YedekKayitlari::yaz(const SonYedek& yedek) const {
  std::string metin;
  auto kayitlar = oku();
  std::erase_if(kayitlar, [&](const SonYedek& k) {
    return ayniAd(k.sunucu, yedek.sunucu) && ayniAd(k.veritabani, yedek.veritabani);
  });
  kayitlar.push_back(yedek);
  for (const SonYedek& k : kayitlar)
    metin += k.sunucu + "\t" + k.veritabani + "\t" + zamanYaz(k.zaman) + "\t" + k.yer + "\n";
  const std::error_code hata = platform::writeFileSafely(dosya_, metin);
  return hata ? dosya_.string() + ": " + hata.message() : std::string();
}

void Yedegi_Kaydet(session::Oturum& oturum, const std::string& firma, const std::string& yer) {
  const YedekKayitlari kayitlar(oturum.platform->programFolder());
  const std::string hata = kayitlar.yaz({oturum.Server_Adi, firma, oturum.saat->now(), yer});
  if (!hata.empty())
    oturum.kutular->message("Yedek alındı, ama yedek tarihi yazılamadı.\n" + hata, session::Icon::Warning);
}

}  // namespace maintenance
