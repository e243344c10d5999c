#include "company/sema.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "company/deyim_esit.h"

namespace company {

namespace {

using Satir = std::vector<std::string>;
using Basliklar = std::span<const std::string_view>;

constexpr std::string_view siralamaBasligi = "siralama";
constexpr std::array<std::string_view, 7> kolonBasliklari = {"tablo",      "kolon",  "tip",          "null",
                                                             "varsayilan", "kimlik", siralamaBasligi};
constexpr std::array<std::string_view, 4> anahtarBasliklari = {"tablo", "anahtar", "kolonlar", "kume"};
constexpr std::array<std::string_view, 5> dizinBasliklari = {"tablo", "dizin", "tekil", "kume", "kolonlar"};
constexpr std::array<std::string_view, 2> gorunumBasliklari = {"gorunum", "metin"};
constexpr std::array<std::string_view, 3> tetikBasliklari = {"tetikleyici", "tablo", "metin"};

// Bits of sysindexes.status.
constexpr std::int64_t tekilBit = 2, kumeBit = 16, istatistikBit = 64, birincilBit = 2048,
                       tekilKisitBit = 4096, otomatikIstatistikBit = 8388608;

std::string buyuk(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

template <class Function>
void herSatir(db::Connection& connection, std::string_view sql, Function&& function) {
  const auto rows = connection.query(sql);
  if (!rows) return;
  for (std::int64_t r = 0; r < rows->count(); ++r)
    function([&](int column) { return rows->value(r, column); });
}

// Servers differ in how many brackets they put around a default.
std::string_view parantezsiz(std::string_view text) {
  while (text.size() >= 2 && text.front() == '(' && text.back() == ')') {
    int depth = 0;
    const auto closes = std::find_if(text.begin(), text.end(), [&](char c) {
      depth += (c == '(') - (c == ')');
      return depth == 0;
    });
    if (closes + 1 != text.end()) break;
    text = text.substr(1, text.size() - 2);
  }
  return text;
}

using Metinler = std::map<std::int64_t, std::string>;

// Texts of defaults, views and triggers by object; long ones come in pieces.
Metinler metinleriOku(db::Connection& connection) {
  Metinler out;
  herSatir(connection, "SELECT id, text FROM syscomments ORDER BY id, colid",
           [&](const auto& field) { out[field(0).integer()] += field(1).text(); });
  return out;
}

SemaBolumu kolonlariOku(db::Connection& connection, const Metinler& metinler) {
  SemaBolumu out{"kolonlar", kolonBasliklari, 2, 1, {}};
  herSatir(
      connection,
      "SELECT sysobjects.name, syscolumns.name, systypes.name, syscolumns.length, syscolumns.prec, "
      "syscolumns.scale, syscolumns.isnullable, syscolumns.cdefault, syscolumns.colstat, "
      "syscolumns.collation "
      "FROM sysobjects, syscolumns, systypes WHERE syscolumns.id=sysobjects.id AND sysobjects.type='U' AND "
      "systypes.xtype=syscolumns.xtype AND systypes.xusertype=systypes.xtype "
      "ORDER BY sysobjects.name, syscolumns.colid",
      [&](const auto& field) {
        const auto text = metinler.find(field(7).integer());
        out.satirlar.push_back(
            {field(0).trimmed(), field(1).text(),
             tipMetni(field(2).trimmed(), field(3).integer(), field(4).integer(), field(5).integer()),
             field(6).boolean() ? "NULL" : "NOT NULL",
             text == metinler.end() ? "" : std::string(parantezsiz(text->second)),
             (field(8).integer() & 1) != 0 ? "IDENTITY" : "", field(9).trimmed()});
      });
  return out;
}

struct DizinSatiri {
  std::string tablo, ad;
  std::int64_t durum = 0;
  std::string kolonlar;

  bool anahtar() const { return (durum & (birincilBit | tekilKisitBit)) != 0; }
};

std::vector<DizinSatiri> dizinleriOku(db::Connection& connection) {
  std::vector<DizinSatiri> out;
  herSatir(
      connection,
      "SELECT sysobjects.name, sysindexes.name, sysindexes.status, syscolumns.name, sysindexkeys.keyno FROM "
      "sysobjects, sysindexes, sysindexkeys, syscolumns WHERE sysobjects.type='U' AND "
      "sysindexes.id=sysobjects.id AND sysindexes.indid>0 AND sysindexkeys.id=sysindexes.id AND "
      "sysindexkeys.indid=sysindexes.indid AND syscolumns.id=sysindexkeys.id AND "
      "syscolumns.colid=sysindexkeys.colid "
      "ORDER BY sysobjects.name, sysindexes.indid, sysindexkeys.keyno",
      [&](const auto& field) {
        const std::int64_t durum = field(2).integer();
        if ((durum & (istatistikBit | otomatikIstatistikBit)) != 0) return;
        const std::string tablo = field(0).trimmed(), ad = field(1).trimmed();
        if (out.empty() || out.back().tablo != tablo || out.back().ad != ad)
          out.push_back({tablo, ad, durum, ""});
        std::string& kolonlar = out.back().kolonlar;
        kolonlar += (kolonlar.empty() ? "" : ",") + field(3).trimmed();
      });
  return out;
}

std::string kumeMetni(std::int64_t durum) {
  return (durum & kumeBit) != 0 ? "CLUSTERED" : "NONCLUSTERED";
}

void dizinleriBol(const std::vector<DizinSatiri>& hepsi, SemaBolumu& anahtarlar, SemaBolumu& dizinler) {
  for (const DizinSatiri& d : hepsi) {
    if (d.anahtar())
      anahtarlar.satirlar.push_back(
          {d.tablo, (d.durum & birincilBit) != 0 ? "PRIMARY KEY" : "UNIQUE", d.kolonlar, kumeMetni(d.durum)});
    else
      dizinler.satirlar.push_back(
          {d.tablo, d.ad, (d.durum & tekilBit) != 0 ? "UNIQUE" : "", kumeMetni(d.durum), d.kolonlar});
  }
}

void nesneleriOku(db::Connection& connection, const Metinler& metinler, SemaBolumu& gorunumler,
                  SemaBolumu& tetikler) {
  herSatir(connection,
           "SELECT sysobjects.id, sysobjects.name, sysobjects.type, tablo.name FROM sysobjects LEFT JOIN "
           "sysobjects AS tablo ON (tablo.id=sysobjects.parent_obj) WHERE sysobjects.type IN ('V','TR') "
           "ORDER BY sysobjects.name",
           [&](const auto& field) {
             const auto text = metinler.find(field(0).integer());
             const bool view = field(2).trimmed() == "V";
             SemaBolumu& bolum = view ? gorunumler : tetikler;
             bolum.satirlar.push_back(view ? Satir{field(1).trimmed()}
                                           : Satir{field(1).trimmed(), field(3).trimmed()});
             bolum.satirlar.back().push_back(text == metinler.end() ? "" : text->second);
           });
}

std::string adi(const SemaBolumu& bolum, const Satir& satir) {
  std::string out;
  for (std::size_t i = 0; i < bolum.anahtar; ++i) out += (i == 0 ? "" : ".") + satir[i];
  return out;
}

std::map<std::string, std::size_t> siralar(const SemaBolumu& bolum) {
  std::map<std::string, std::size_t> out;
  for (std::size_t i = 0; i < bolum.satirlar.size(); ++i) out[buyuk(adi(bolum, bolum.satirlar[i]))] = i;
  return out;
}

std::set<std::string> tablolar(const Sema& sema) {
  std::set<std::string> out;
  for (const Satir& satir : sema.bolumler.front().satirlar) out.insert(buyuk(satir.front()));
  return out;
}

// Compares two schemas; things of a table that only one of them has are left to the table's own line.
class Karsilastirma {
 public:
  Karsilastirma(const Sema& a, const Sema& b, bool siralama)
      : a_(a), b_(b), siralama_(siralama), tablolarA_(tablolar(a)), tablolarB_(tablolar(b)) {}

  std::vector<SemaFarki> yap() {
    eksikTablolar(tablolarA_, tablolarB_, SemaFarki::Tur::YalnizBirinci);
    eksikTablolar(tablolarB_, tablolarA_, SemaFarki::Tur::YalnizIkinci);
    for (std::size_t i = 0; i < a_.bolumler.size(); ++i) bolum(a_.bolumler[i], b_.bolumler[i]);
    return std::move(out_);
  }

 private:
  void eksikTablolar(const std::set<std::string>& biri, const std::set<std::string>& oteki,
                     SemaFarki::Tur tur) {
    for (const std::string& ad : biri)
      if (!oteki.contains(ad)) out_.push_back({tur, "tablolar", ad, "", "", ""});
  }

  bool tablosuEksik(const SemaBolumu& bolum, const Satir& satir) const {
    const auto at = std::find(bolum.basliklar.begin(), bolum.basliklar.end(), "tablo");
    if (at == bolum.basliklar.end()) return false;
    const std::string ad = buyuk(satir[static_cast<std::size_t>(at - bolum.basliklar.begin())]);
    return !tablolarA_.contains(ad) || !tablolarB_.contains(ad);
  }

  void bolum(const SemaBolumu& a, const SemaBolumu& b) {
    const auto siraA = siralar(a), siraB = siralar(b);
    for (const auto& [ad, i] : siraA) {
      const auto other = siraB.find(ad);
      if (other == siraB.end())
        eksik(a, a.satirlar[i], SemaFarki::Tur::YalnizBirinci);
      else
        alanlar(a, i, b, other->second);
    }
    for (const auto& [ad, i] : siraB)
      if (!siraA.contains(ad)) eksik(b, b.satirlar[i], SemaFarki::Tur::YalnizIkinci);
  }

  void eksik(const SemaBolumu& bolum, const Satir& satir, SemaFarki::Tur tur) {
    if (!tablosuEksik(bolum, satir))
      out_.push_back({tur, std::string(bolum.ad), adi(bolum, satir), "", "", ""});
  }

  void alanlar(const SemaBolumu& a, std::size_t i, const SemaBolumu& b, std::size_t j) {
    const Satir &x = a.satirlar[i], &y = b.satirlar[j];
    for (std::size_t f = a.anahtar; f < x.size(); ++f)
      if ((siralama_ || a.basliklar[f] != siralamaBasligi) && !deyimEsit(x[f], y[f]))
        degisik(a, x, a.basliklar[f], x[f], y[f]);
  }

  void degisik(const SemaBolumu& bolum, const Satir& satir, std::string_view alan, const std::string& x,
               const std::string& y) {
    out_.push_back(
        {SemaFarki::Tur::Degisik, std::string(bolum.ad), adi(bolum, satir), std::string(alan), x, y});
  }

  const Sema &a_, &b_;
  bool siralama_;
  std::set<std::string> tablolarA_, tablolarB_;
  std::vector<SemaFarki> out_;
};

}  // namespace

std::string tipMetni(std::string_view tip, std::int64_t boy, std::int64_t hane, std::int64_t ondalik) {
  std::string ad = buyuk(tip);
  if (ad == "DECIMAL" || ad == "NUMERIC")
    return ad + "(" + std::to_string(hane) + "," + std::to_string(ondalik) + ")";
  if (!ad.ends_with("CHAR") && !ad.ends_with("BINARY")) return ad;
  if (boy < 0) return ad + "(MAX)";
  return ad + "(" + std::to_string(ad.front() == 'N' ? boy / 2 : boy) + ")";
}

Sema semaOku(db::Connection& connection) {
  const Metinler metinler = metinleriOku(connection);
  Sema sema;
  sema.bolumler = {kolonlariOku(connection, metinler),
                   {"anahtarlar", anahtarBasliklari, 3, 0, {}},
                   {"dizinler", dizinBasliklari, 2, 0, {}},
                   {"gorunumler", gorunumBasliklari, 1, 1, {}},
                   {"tetikleyiciler", tetikBasliklari, 1, 1, {}}};
  dizinleriBol(dizinleriOku(connection), sema.bolumler[1], sema.bolumler[2]);
  nesneleriOku(connection, metinler, sema.bolumler[3], sema.bolumler[4]);
  return sema;
}

SemaBolumu SemaBolumu::ayrintisiz() const {
  SemaBolumu out = *this;
  out.basliklar = basliklar.first(basliklar.size() - ayrinti);
  out.ayrinti = 0;
  for (Satir& satir : out.satirlar) satir.resize(out.basliklar.size());
  return out;
}

std::vector<SemaFarki> semaKarsilastir(const Sema& birinci, const Sema& ikinci, bool siralama) {
  return Karsilastirma(birinci, ikinci, siralama).yap();
}

}  // namespace company
