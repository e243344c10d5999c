#include "maintenance/yedek_kaydi.h"

#include <algorithm>

#include "maintenance/kayit_metni.h"
#include "platform/files.h"
#include "session/metin.h"

namespace maintenance {

namespace {

bool ayniAd(const std::string& a, const std::string& b) {
  return session::Buyuk_Harf(a) == session::Buyuk_Harf(b);
}

}  // namespace

// A line that is not of this form is passed over: it hides one date, not the others.
std::vector<SonYedek> YedekKayitlari::oku() const {
  std::vector<SonYedek> kayitlar;
  const auto metin = platform::readFile(dosya_);
  if (!metin) return kayitlar;
  for (const std::string& satir : parcala(*metin, '\n')) {
    const auto alanlar = parcala(satir, '\t');
    if (alanlar.size() != 4) continue;
    if (const auto zaman = zamanOku(alanlar[2]))
      kayitlar.push_back({alanlar[0], alanlar[1], *zaman, alanlar[3]});
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
