#include "maintenance/yedek_kanit.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <tuple>

#include "maintenance/kayit_metni.h"
#include "platform/files.h"
#include "session/metin.h"
#include "session/tarih.h"

namespace maintenance {

namespace {

namespace fs = std::filesystem;
using session::Oturum;

constexpr std::string_view bas = "kanit 1";
constexpr std::size_t adBoyu = 16;  // digits of the hash in the file's name

auto sirasi(const db::DateTime& z) {
  return std::tuple(z.year, z.month, z.day, z.hour, z.minute, z.second);
}

template <class Sayi>
Sayi sayi(const std::string& metin, int taban = 10) {
  Sayi deger = 0;
  std::from_chars(metin.data(), metin.data() + metin.size(), deger, taban);
  return deger;
}

fs::path kanitKlasoru(const Oturum& oturum) {
  return oturum.platform->programFolder() / "yedek_kanit";
}

std::optional<YedekKaniti> oku(const fs::path& dosya) {
  const auto metin = platform::readFile(dosya);
  if (!metin) return std::nullopt;
  const auto satirlar = parcala(*metin, '\n');
  if (satirlar.front() != bas) return std::nullopt;
  YedekKaniti kanit;
  for (const std::string& satir : satirlar) {
    const auto a = parcala(satir, '\t');
    if (a[0] == "firma" && a.size() == 2) kanit.firma = a[1];
    if (a[0] == "klasor" && a.size() == 2) kanit.klasor = a[1];
    if (a[0] == "zaman" && a.size() == 2) kanit.zaman = zamanOku(a[1]).value_or(db::DateTime{});
    if (a[0] == "dosya" && a.size() == 4)
      (a[1] == "data" ? kanit.data : kanit.log) = {a[2], sayi<std::uintmax_t>(a[3])};
    if (a[0] == "kesinti" && a.size() == 2) kanit.kesinti = std::strtod(a[1].c_str(), nullptr);
    if (a[0] == "sonradan") kanit.sonradan = true;
    if (a[0] == "tablo" && a.size() == 4)
      kanit.tablolar.push_back({a[1], sayi<std::int64_t>(a[2]), sayi<std::uint64_t>(a[3], 16)});
    if (a[0] == "denetim" && a.size() == 3) {
      kanit.denetim = zamanOku(a[1]);
      kanit.saglam = a[2] == "saglam";
    }
  }
  if (kanit.firma.empty() || kanit.data.ozet.empty()) return std::nullopt;
  return kanit;
}

std::string dosyaSatiri(const char* tur, const DosyaOzeti& dosya) {
  return std::string("dosya\t") + tur + "\t" + dosya.ozet + "\t" + std::to_string(dosya.boyut) + "\n";
}

}  // namespace

std::vector<YedekKaniti> kanitlar(const Oturum& oturum) {
  std::vector<YedekKaniti> out;
  std::error_code hata;
  for (fs::directory_iterator it(kanitKlasoru(oturum), hata), son; !hata && it != son; it.increment(hata))
    if (auto kanit = oku(it->path())) out.push_back(std::move(*kanit));
  std::ranges::sort(out, {}, [](const YedekKaniti& k) { return sirasi(k.zaman); });
  return out;
}

std::optional<YedekKaniti> kanitBul(const Oturum& oturum, const std::string& firma,
                                    const std::string& dataOzeti) {
  const auto kanit = oku(kanitKlasoru(oturum) / (firma + "_" + dataOzeti.substr(0, adBoyu) + ".kanit"));
  return kanit && kanit->data.ozet == dataOzeti ? kanit : std::nullopt;
}

std::optional<YedekKaniti> klasorunKaniti(const Oturum& oturum, const fs::path& klasor) {
  std::optional<YedekKaniti> bulunan;
  for (YedekKaniti& kanit : kanitlar(oturum))
    if (kanit.klasor == klasor) bulunan = std::move(kanit);
  return bulunan;
}

void klasorunKanitlariniSil(const Oturum& oturum, const fs::path& klasor) {
  std::vector<fs::path> eskiler;
  std::error_code hata;
  for (fs::directory_iterator it(kanitKlasoru(oturum), hata), son; !hata && it != son; it.increment(hata))
    if (const auto kanit = oku(it->path()); kanit && kanit->klasor == klasor) eskiler.push_back(it->path());
  for (const fs::path& eski : eskiler) fs::remove(eski, hata);
}

std::vector<YedekKaniti> kanitlar(const Oturum& oturum, const std::string& firma) {
  auto out = kanitlar(oturum);
  std::erase_if(
      out, [&](const YedekKaniti& k) { return session::Buyuk_Harf(k.firma) != session::Buyuk_Harf(firma); });
  return out;
}

std::string baskasininYedegi(const Oturum& oturum, const std::string& firma, const std::string& dataOzeti) {
  for (const YedekKaniti& kanit : kanitlar(oturum))
    if (kanit.data.ozet == dataOzeti && session::Buyuk_Harf(kanit.firma) != session::Buyuk_Harf(firma))
      return "Bu dosyalar \"" + kanit.firma + "\" firmasının " + anYaz(kanit.zaman) + " tarihli yedeği.";
  return {};
}

std::string kanitYaz(const Oturum& oturum, const YedekKaniti& kanit) {
  std::string metin = std::string(bas) + "\nfirma\t" + kanit.firma + "\nklasor\t" + kanit.klasor.string() +
                      "\nzaman\t" + zamanYaz(kanit.zaman) + "\n" + dosyaSatiri("data", kanit.data) +
                      dosyaSatiri("log", kanit.log);
  if (kanit.kesinti > 0) metin += "kesinti\t" + std::to_string(kanit.kesinti) + "\n";
  if (kanit.sonradan) metin += "sonradan\n";
  for (const db::TableDigest& t : kanit.tablolar) {
    std::array<char, 24> toplam{};
    std::snprintf(toplam.data(), toplam.size(), "%016llx", static_cast<unsigned long long>(t.sum));
    metin += "tablo\t" + t.name + "\t" + std::to_string(t.rows) + "\t" + toplam.data() + "\n";
  }
  if (kanit.denetim)
    metin += "denetim\t" + zamanYaz(*kanit.denetim) + "\t" + (kanit.saglam ? "saglam" : "kusurlu") + "\n";
  const fs::path klasor = kanitKlasoru(oturum);
  std::error_code hata;
  if (fs::create_directory(klasor, hata)) fs::permissions(klasor, fs::perms::owner_all, hata);
  hata = platform::writeFileSafely(
      klasor / (kanit.firma + "_" + kanit.data.ozet.substr(0, adBoyu) + ".kanit"), metin);
  return hata ? "Yedeğin kanıtı yazılamadı (" + klasor.string() + "): " + hata.message() : std::string();
}

std::string anYaz(const db::DateTime& an) {
  std::array<char, 40> saat{};
  std::snprintf(saat.data(), saat.size(), " %02d:%02d", an.hour, an.minute);
  return session::tarihYaz(an) + saat.data();
}

}  // namespace maintenance
