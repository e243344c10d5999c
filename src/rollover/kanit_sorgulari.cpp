// The proof asks both companies anew; nothing that the run has counted goes into its figures.
#include "rollover/kanit_sorgulari.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "rollover/adimlar.h"
#include "rollover/kanit_turleri.h"
#include "session/tarih.h"

namespace rollover {

namespace {

constexpr int ayrintiSiniri = 5000;  // differing items of a kind that are listed

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
    for (const KanitTuru& tur : kanitTurleri(b_)) {
      turEkle(tur);
      b_.adim(1, 1);
    }
    stokDegerleri();
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

  void turEkle(const KanitTuru& t) {
    const auto toplam = b_.oku("SELECT SUM(u.kaynak),SUM(u.hedef) FROM " + birlesik(t));
    KanitSatiri satir;
    satir.tur = t.ad;
    satir.toplam = true;
    satir.kaynak = Para::sayidan(toplam->value(0, 0).real());
    satir.hedef = Para::sayidan(toplam->value(0, 1).real());
    const auto rows =
        b_.oku("SELECT TOP " + std::to_string(ayrintiSiniri) +
               " u.kod,MAX(u.ad) AS ad,SUM(u.kaynak) AS kaynak,SUM(u.hedef) AS hedef FROM " + birlesik(t) +
               " GROUP BY u.kod HAVING ABS(SUM(u.kaynak)-SUM(u.hedef))>=0.00005 ORDER BY u.kod");
    std::vector<KanitSatiri> ayrintilar;
    for (std::int64_t i = 0; i < rows->count(); ++i) {
      KanitSatiri a;
      a.tur = t.ad;
      a.kod = rows->value(i, 0).trimmed();
      a.ad = rows->value(i, 1).trimmed();
      a.kaynak = Para::sayidan(rows->value(i, 2).real());
      a.hedef = Para::sayidan(rows->value(i, 3).real());
      a.neden = neden(t, a);
      ayrintilar.push_back(std::move(a));
    }
    ekle(std::move(satir), std::move(ayrintilar));
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
    for (const auto& a : b_.sonuc.atlananlar)
      if (!a.ad.empty() && a.ad == s.kod.substr(0, s.kod.find(' ')) &&
          t.tablolar.find(a.tablo) != std::string::npos)
        return "Kayıt aktarılamadı: " + a.neden;
    if (t.ozel) {
      std::string metin = t.ozel(s);
      if (!metin.empty()) return metin;
    }
    const std::int64_t fark = std::llabs(s.fark().birim);
    if (t.yuvarlama > 0 && fark <= t.yuvarlama) return "Para biçimine yuvarlama";
    // Quantities stand in single precision.
    constexpr double tekDuyarlik = 1e-6;
    if (t.yuvarlama == 0 && t.miktar &&
        static_cast<double>(fark) <= 1 + std::fabs(static_cast<double>(s.kaynak.birim)) * tekDuyarlik)
      return "Miktarın kesir yuvarlaması";
    return "";
  }

  // The value is what the histories give, replayed once more.
  void stokDegerleri() {
    if (!b_.ikisinde("STOKKART") || !b_.ikisinde("STOKHAREKET") || !b_.kaynakta("AMBAR")) return;
    const Maliyetler maliyetler = maliyetleriHesapla(b_);
    const auto ambarlar =
        b_.kaynakOku("SELECT DISTINCT Ambar_No FROM AMBAR WHERE Ambar_No IS NOT NULL ORDER BY Ambar_No");
    for (std::int64_t i = 0; i < ambarlar->count(); ++i)
      ambarDegeri(ambarlar->value(i, 0).text(), maliyetler);
  }

  std::string stokKapali() const {
    const Secenekler& s = b_.g.secenekler;
    for (const int cocuk : {0, 1, 2})
      if (!(cocuk == 0 ? s.ust(ustStok) : s.cocuk(ustStok, cocuk)))
        for (const SecenekSatiri& satir : secenekSatirlari())
          if (satir.ust == ustStok && satir.cocuk == cocuk)
            return "Seçenek kapalı: " + std::string(satir.metin);
    return "";
  }

  void ambarDegeri(const std::string& ambar, const Maliyetler& maliyetler) {
    const auto rows =
        b_.oku("SELECT s.Stok_ID,s.Stok_Kod,SUM(u.net) AS net,SUM(u.tutar) AS tutar FROM " +
               b_.k("STOKKART") + " s,(SELECT Stok_ID,ISNULL(G,0)-ISNULL(C,0) AS net,0 AS tutar FROM " +
               b_.k("AMBBAK") + " WHERE Ambar_No=" + ambar +
               " UNION ALL SELECT k.Stok_ID,0,h.Tutar FROM STOKHAREKET h," + b_.k("STOKKART") +
               " k WHERE k.Stok_Kod=h.Stok_Kod AND h.Islem_Tipi='Açılış Fişi' AND h.Ambar_No=" + ambar +
               ") u WHERE u.Stok_ID=s.Stok_ID GROUP BY s.Stok_ID,s.Stok_Kod ORDER BY s.Stok_Kod");
    const std::string kapali = stokKapali();
    KanitSatiri toplam;
    toplam.tur = "Stok değeri, ambar " + ambar;
    toplam.toplam = true;
    std::vector<KanitSatiri> ayrintilar;
    for (std::int64_t i = 0; i < rows->count(); ++i) {
      const auto m = maliyetler.find(rows->value(i, 0).integer());
      KanitSatiri a;
      a.tur = toplam.tur;
      a.kaynak = Para::sayidan(rows->value(i, 2).real()) * (m == maliyetler.end() ? Para{} : m->second);
      a.hedef = Para::sayidan(rows->value(i, 3).real());
      toplam.kaynak = toplam.kaynak + a.kaynak;
      toplam.hedef = toplam.hedef + a.hedef;
      if (a.fark() == Para{} || ayrintilar.size() >= ayrintiSiniri) continue;
      a.kod = rows->value(i, 1).trimmed();
      constexpr std::int64_t birlik = 10'000;
      if (!kapali.empty())
        a.neden = kapali;
      else if (!b_.g.STEksi && a.kaynak < Para{} && a.hedef == Para{})
        a.neden = "Eksi stok devredilmedi";
      else if (std::llabs(a.fark().birim) <= 1 + std::llabs(a.kaynak.birim) / (100 * birlik))
        a.neden = "Değerin kesir yuvarlaması";
      ayrintilar.push_back(std::move(a));
    }
    ekle(std::move(toplam), std::move(ayrintilar));
  }

  void sayaclar() {
    const auto adlar = b_.kaynakOku(
        "SELECT name FROM sysobjects WHERE name NOT LIKE 'IP_KN%' AND name LIKE 'IP_%' AND type='U' ORDER BY "
        "name");
    KanitSatiri toplam;
    toplam.tur = "Fiş numaraları";
    toplam.toplam = true;
    std::vector<KanitSatiri> ayrintilar;
    const auto sayi = [](const db::Value& v) {
      return Para::sayidan(std::strtod(v.trimmed().c_str(), nullptr));
    };
    for (std::int64_t i = 0; i < adlar->count(); ++i) {
      KanitSatiri a;
      a.tur = toplam.tur;
      a.kod = adlar->value(i, 0).trimmed();
      const auto kaynak = b_.kaynakOku("SELECT * FROM " + a.kod);
      if (kaynak->count() == 0) continue;
      a.kaynak = sayi(kaynak->value(0, 0));
      if (b_.hedefte(a.kod)) {
        const auto hedef = b_.oku("SELECT * FROM " + a.kod);
        if (hedef->count() > 0) a.hedef = sayi(hedef->value(0, 0));
      } else {
        a.neden = "Hedefte bu sayaç yok";
      }
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
