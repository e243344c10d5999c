#include "settings/parametre_deger.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>

#include "catalog/katalog.h"
#include "session/izgara.h"
#include "session/metin.h"
#include "session/sayi.h"
#include "session/tarih.h"

namespace settings {

namespace {

struct Aralik {
  std::string_view tip;
  double enAz, enCok;
};
constexpr Aralik araliklar[] = {{"BIT", 0, 1},
                                {"SMALLINT", -32768, 32767},
                                {"INT", -2147483648.0, 2147483647},
                                {"REAL", -16777216, 16777216},  // whole numbers that single precision keeps
                                {"FLOAT", -1e308, 1e308}};

const std::string& sutunTipi(std::string_view sutun) {
  static const std::map<std::string, std::string, std::less<>> tipler = [] {
    std::map<std::string, std::string, std::less<>> sonuc;
    for (const catalog::TableDef& tablo : catalog::catalogTables())
      if (tablo.name == "sysfrmlng")
        for (const catalog::ColumnDef& kolon : tablo.columns) sonuc[kolon.name] = kolon.type;
    return sonuc;
  }();
  static const std::string bilinmeyen;
  const auto at = tipler.find(sutun);
  return at == tipler.end() ? bilinmeyen : at->second;
}

// Digits of a numeric text with "." before the decimals and nothing between thousands.
std::string duz(std::string_view metin, char nokta) {
  std::string sonuc;
  for (const char c : session::Trim(metin)) {
    if (c == nokta)
      sonuc += '.';
    else if (c != ',' && c != '.' && c != '+')
      sonuc += c;
  }
  return sonuc;
}

std::string cokBuyuk(const Parametre& parametre, std::string_view metin) {
  return parametreAdi(parametre) + ": “" + std::string(metin) + "” bu alana sığmıyor.";
}

// Exact to four decimals, half to even; empty when 64 bits do not hold it.
std::optional<db::Decimal> para(const std::string& sayi) {
  const bool eksi = sayi.starts_with('-');
  const std::size_t nokta = std::min(sayi.find('.'), sayi.size());
  std::string rakamlar = sayi.substr(eksi ? 1 : 0, nokta - (eksi ? 1 : 0));
  std::string kesir = nokta < sayi.size() ? sayi.substr(nokta + 1) : "";
  const std::string kalan = kesir.size() > 4 ? kesir.substr(4) : "";
  kesir.resize(4, '0');
  rakamlar += kesir;
  if (rakamlar.size() > 18 + rakamlar.find_first_not_of('0')) return std::nullopt;
  std::int64_t deger = std::atoll(rakamlar.c_str());
  if (!kalan.empty()) {
    const bool yarim = kalan[0] == '5' && kalan.find_first_not_of('0', 1) == std::string::npos;
    if (yarim ? deger % 2 != 0 : kalan[0] >= '5') ++deger;
  }
  return db::Decimal{eksi ? -deger : deger, 4};
}

}  // namespace

std::string sayiMetni(const db::Value& deger, char nokta) {
  std::string metin = deger.trimmed();
  if (deger.as<db::Decimal>() && metin.find('.') != std::string::npos) {
    while (metin.back() == '0') metin.pop_back();
    if (metin.back() == '.') metin.pop_back();
  }
  if (const auto* gercek = deger.as<double>();
      gercek && std::fabs(*gercek) < 1e15 && *gercek == std::trunc(*gercek))
    metin = std::to_string(static_cast<std::int64_t>(*gercek));
  if (nokta != '.') std::ranges::replace(metin, '.', nokta);
  return metin;
}

std::optional<db::Value> sayiDegeri(const Parametre& parametre, std::string_view metin, char nokta,
                                    std::string& hata) {
  const std::string sayi = duz(metin, nokta);
  const std::string& tip = sutunTipi(parametre.sutun);
  if (tip == "MONEY") {
    if (const auto tutar = para(sayi)) return db::Value(*tutar);
    hata = cokBuyuk(parametre, metin);
    return std::nullopt;
  }
  const double deger = std::strtod(sayi.c_str(), nullptr);
  const auto* aralik = std::ranges::find(araliklar, tip, &Aralik::tip);
  const double yuvarlak = tip == "FLOAT" ? deger : std::nearbyint(deger);
  if (aralik == std::end(araliklar) || !(yuvarlak >= aralik->enAz && yuvarlak <= aralik->enCok)) {
    hata = cokBuyuk(parametre, metin);
    return std::nullopt;
  }
  if (tip == "FLOAT") return db::Value(deger);
  return db::Value(static_cast<std::int64_t>(yuvarlak));
}

std::optional<db::Value> yaziDegeri(const Parametre& parametre, std::string metin, std::string& hata) {
  const std::string& tip = sutunTipi(parametre.sutun);
  session::IzgaraKolonu kolon;
  const std::string ad = parametreAdi(parametre);
  kolon.baslik = ad;
  if (const std::size_t parantez = tip.find('('); parantez != std::string::npos)
    kolon.sinir = std::atoi(tip.c_str() + parantez + 1);
  hata = session::hucreDenetle(kolon, metin);
  if (!hata.empty()) return std::nullopt;
  return db::Value(std::move(metin));
}

std::string depoMetni(const Parametre& parametre, const db::Value& deger) {
  if (deger.isNull()) return "NULL";
  if (const auto* tarih = deger.as<db::DateTime>()) return session::tarihYaz(*tarih);
  if (deger.as<std::string>())
    return parametre.tur == ParametreTuru::UzunYazi ? deger.text() : deger.trimmed();
  return sayiMetni(deger, '.');
}

bool ayniDeger(const Parametre& parametre, const db::Value& a, const db::Value& b) {
  return a.isNull() == b.isNull() && depoMetni(parametre, a) == depoMetni(parametre, b);
}

std::optional<db::Value> depoDegeri(const Parametre& parametre, std::string_view metin, std::string& hata) {
  hata.clear();
  const std::string ad = parametreAdi(parametre);
  const std::string kirpik = session::Trim(metin);
  const auto red = [&](const std::string& neden) {
    hata = ad + ": “" + std::string(metin) + "” " + neden;
    return std::nullopt;
  };
  switch (parametre.tur) {
    case ParametreTuru::Yazi:
    case ParametreTuru::Firma:
      return yaziDegeri(parametre, kirpik, hata);
    case ParametreTuru::UzunYazi:
      return yaziDegeri(parametre, std::string(metin), hata);
    case ParametreTuru::YaziListesi:
      if (std::ranges::find(parametre.secenekler, kirpik) == parametre.secenekler.end())
        return red("listede yok.");
      return db::Value(kirpik);
    case ParametreTuru::Tarih: {
      db::DateTime tarih;
      if (!session::tarihOku(kirpik, tarih)) return red("bir tarih değil (GG/AA/YYYY).");
      return db::Value(tarih);
    }
    default:
      break;
  }
  // Both separators mean decimals here: there are no thousands to separate in a stored value.
  const char nokta = kirpik.find(',') != std::string::npos ? ',' : '.';
  std::string virgullu = kirpik;
  std::ranges::replace(virgullu, '.', ',');
  if (!session::sayiMi(virgullu)) return red("bir sayı değil.");
  const auto deger = sayiDegeri(parametre, kirpik, nokta, hata);
  if (!deger) return deger;
  const std::int64_t tam = deger->integer();
  const auto sayi = static_cast<std::int64_t>(parametre.secenekler.size());
  if ((parametre.tur == ParametreTuru::Liste || parametre.tur == ParametreTuru::Secim) &&
      (tam < parametre.taban || tam >= parametre.taban + sayi))
    return red("listede yok (" + std::to_string(parametre.taban) + " - " +
               std::to_string(parametre.taban + sayi - 1) + ").");
  if (parametre.tur == ParametreTuru::Tik && tam != 0 && tam != 1) return red("0 ya da 1 değil.");
  if (parametre.tur == ParametreTuru::Yonelim && (tam < -1 || tam == 0 || tam > 3))
    return red("bir yönelim değil (-1 Varsayılan, 1 Dikey, 2 Yatay).");
  if (parametre.tur == ParametreTuru::Renk && (tam < 0 || tam > 0xFFFFFF)) return red("bir renk değil.");
  return deger;
}

}  // namespace settings
