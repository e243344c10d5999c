// The proof asks both companies anew; nothing that the run has counted goes into its figures.
#include "rollover/kanit_sorgulari.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <span>

#include "rollover/adimlar.h"
#include "rollover/kanit_turleri.h"
#include "session/tarih.h"

namespace rollover {

namespace {

constexpr std::size_t demet = 8, sayacDemeti = 40;

// Both sides of a kind by code, one row per code.
std::string birlesik(const KanitTuru& t) {
  return "(SELECT x.kod,x.ad,x.deger AS kaynak,0 AS hedef FROM (" + t.kaynak +
         ") x UNION ALL SELECT y.kod,y.ad,0,y.deger FROM (" + t.hedef + ") y) u";
}

class Hazirlayici {
 public:
  explicit Hazirlayici(Baglam& b) : b_(b) {}

  Kanit hazirla() {
    basliklar();
    const std::vector<KanitTuru> turler = kanitTurleri(b_);
    for (std::size_t i = 0; i < turler.size(); i += demet) {
      demetEkle(std::span(turler).subspan(i, std::min(demet, turler.size() - i)));
      b_.adim(1, 1);
    }
    for (KanitDokumu& dokum : stokKaniti(b_)) ekle(std::move(dokum.toplam), std::move(dokum.ayrintilar));
    sayaclar();
    kanit_.atlananlar = b_.sonuc.atlananlar;
    kanit_.atlananSayisi = b_.sonuc.atlananSayisi;
    return std::move(kanit_);
  }

 private:
  void basliklar() {
    const auto donem = [](const DevirTarafi& t) { return t.Bas_Tar + " - " + t.Bit_Tar; };
    kanit_.kaynak = b_.kaynakAdi;
    kanit_.hedef = b_.hedefAdi;
    kanit_.kaynakDonemi = donem(b_.g.taraf[0]);
    kanit_.hedefDonemi = donem(b_.g.taraf[1]);
    kanit_.deneme = b_.g.deneme;
    const db::DateTime t = b_.o.saat->now();
    std::array<char, 24> buffer{};
    std::snprintf(buffer.data(), buffer.size(), " %02d:%02d", t.hour % 24, t.minute % 60);
    kanit_.zaman = session::tarihYaz(t) + buffer.data();
  }

  // Totals of several kinds in one question; the items of a kind only where some differ.
  void demetEkle(std::span<const KanitTuru> turler) {
    std::string sql;
    for (std::size_t i = 0; i < turler.size(); ++i)
      sql += (i == 0 ? "SELECT " : " UNION ALL SELECT ") + std::to_string(i) +
             " AS sira,SUM(g.kaynak) AS kaynak,SUM(g.hedef) AS hedef,SUM(CASE WHEN "
             "ABS(g.kaynak-g.hedef)>=0.00005 THEN 1 ELSE 0 END) AS farkli FROM (SELECT "
             "u.kod,SUM(u.kaynak) AS kaynak,SUM(u.hedef) AS hedef FROM " +
             birlesik(turler[i]) + " GROUP BY u.kod) g";
    const auto rows = b_.oku(sql + " ORDER BY sira");
    for (std::int64_t i = 0; i < rows->count(); ++i) {
      const KanitTuru& t = turler[static_cast<std::size_t>(i)];
      KanitSatiri toplam;
      toplam.tur = t.ad;
      toplam.toplam = true;
      toplam.kaynak = Para::sayidan(rows->value(i, 1).real());
      toplam.hedef = Para::sayidan(rows->value(i, 2).real());
      ekle(std::move(toplam), rows->value(i, 3).integer() > 0 ? ayrintilar(t) : std::vector<KanitSatiri>{});
    }
  }

  std::vector<KanitSatiri> ayrintilar(const KanitTuru& t) {
    const auto rows =
        b_.oku("SELECT TOP " + std::to_string(ayrintiSiniri) +
               " u.kod,MAX(u.ad) AS ad,SUM(u.kaynak) AS kaynak,SUM(u.hedef) AS hedef FROM " + birlesik(t) +
               " GROUP BY u.kod HAVING ABS(SUM(u.kaynak)-SUM(u.hedef))>=0.00005 ORDER BY u.kod");
    std::vector<KanitSatiri> out;
    for (std::int64_t i = 0; i < rows->count(); ++i) {
      KanitSatiri a;
      a.tur = t.ad;
      a.kod = rows->value(i, 0).trimmed();
      a.ad = rows->value(i, 1).trimmed();
      a.kaynak = Para::sayidan(rows->value(i, 2).real());
      a.hedef = Para::sayidan(rows->value(i, 3).real());
      a.neden = neden(t, a);
      out.push_back(std::move(a));
    }
    return out;
  }

  // The total is explained when each of its differing items is.
  void ekle(KanitSatiri toplam, std::vector<KanitSatiri> ayrintilar) {
    if (toplam.fark() != Para{}) {
      const bool acik =
          std::any_of(ayrintilar.begin(), ayrintilar.end(), [](const auto& a) { return a.neden.empty(); });
      const bool tek = !ayrintilar.empty() &&
                       std::all_of(ayrintilar.begin(), ayrintilar.end(),
                                   [&](const auto& a) { return a.neden == ayrintilar.front().neden; });
      if (!acik && !ayrintilar.empty()) toplam.neden = tek ? ayrintilar.front().neden : "Ayrıntıda açıklandı";
      // Sums of many floating numbers differ in their last digits.
      if (ayrintilar.empty() && std::llabs(toplam.fark().birim) <= yuvarlamaPayi(toplam))
        toplam.neden = "Toplamın kesir yuvarlaması";
    }
    kanit_.satirlar.push_back(std::move(toplam));
    for (KanitSatiri& a : ayrintilar) kanit_.satirlar.push_back(std::move(a));
  }
  static std::int64_t yuvarlamaPayi(const KanitSatiri& s) {
    return 100 + std::llabs(s.kaynak.birim) / 1'000'000'000;
  }

  std::string neden(const KanitTuru& t, const KanitSatiri& s) const {
    if (!t.kapali.empty()) return "Seçenek kapalı: " + t.kapali;
    if (std::string metin = atlananNedeni(b_, t.tablolar, s.kod); !metin.empty()) return metin;
    if (t.ozel) {
      std::string metin = t.ozel(s);
      if (!metin.empty()) return metin;
    }
    const std::int64_t fark = std::llabs(s.fark().birim);
    if (t.yuvarlama > 0 && fark <= t.yuvarlama) return "Para biçimine yuvarlama";
    if (t.yuvarlama == 0 && t.miktar && miktarYuvarlamasi(s)) return "Miktarın kesir yuvarlaması";
    return "";
  }

  // First numbers of the counters, by their names; those of many in one question.
  std::map<std::string, Para> sayacDegerleri(const std::vector<std::string>& adlar, bool kaynakta) {
    std::map<std::string, Para> out;
    for (std::size_t i = 0; i < adlar.size(); i += sayacDemeti) {
      std::string sql;
      for (std::size_t j = i; j < std::min(i + sayacDemeti, adlar.size()); ++j)
        sql += (j == i ? "SELECT " : " UNION ALL SELECT ") + tirnakli(adlar[j]) +
               " AS ad,(SELECT TOP 1 IP FROM " + (kaynakta ? b_.k(adlar[j]) : adlar[j]) + ") AS IP";
      const auto rows = b_.oku(sql);
      for (std::int64_t r = 0; r < rows->count(); ++r)
        if (!rows->value(r, 1).isNull())
          out[rows->value(r, 0).trimmed()] =
              Para::sayidan(std::strtod(rows->value(r, 1).trimmed().c_str(), nullptr));
    }
    return out;
  }

  void sayaclar() {
    const auto rows = b_.kaynakOku(
        "SELECT name FROM sysobjects WHERE name NOT LIKE 'IP_KN%' AND name LIKE 'IP_%' AND type='U' ORDER BY "
        "name");
    std::vector<std::string> adlar, hedeftekiler;
    for (std::int64_t i = 0; i < rows->count(); ++i) {
      adlar.push_back(rows->value(i, 0).trimmed());
      if (b_.hedefte(adlar.back())) hedeftekiler.push_back(adlar.back());
    }
    const auto kaynak = sayacDegerleri(adlar, true);
    auto hedef = sayacDegerleri(hedeftekiler, false);
    KanitSatiri toplam;
    toplam.tur = "Fiş numaraları";
    toplam.toplam = true;
    std::vector<KanitSatiri> ayrintilar;
    for (const auto& [ad, deger] : kaynak) {
      KanitSatiri a;
      a.tur = toplam.tur;
      a.kod = ad;
      a.kaynak = deger;
      a.hedef = hedef[ad];
      if (!b_.hedefte(ad)) a.neden = "Hedefte bu sayaç yok";
      toplam.kaynak = toplam.kaynak + a.kaynak;
      toplam.hedef = toplam.hedef + a.hedef;
      if (!b_.g.secenekler.ust(ustFisNo)) a.neden = "Seçenek kapalı: Fiş Numaraları Devredilsin mi ?";
      if (a.fark() != Para{}) ayrintilar.push_back(std::move(a));
    }
    ekle(std::move(toplam), std::move(ayrintilar));
  }

  Baglam& b_;
  Kanit kanit_;
};

}  // namespace

Kanit kanitHazirla(Baglam& b) {
  return Hazirlayici(b).hazirla();
}

}  // namespace rollover
