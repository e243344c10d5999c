// The proof of the stock: one question asks what both companies hold by warehouse and item, and one walk over
// its answer gives quantities and values of all warehouses. The unit costs are the proof's own.
#include <array>
#include <cstdlib>
#include <set>

#include "rollover/adimlar.h"
#include "rollover/kanit_maliyeti.h"
#include "rollover/kanit_turleri.h"

namespace rollover {

namespace {

// Per warehouse and code of the source (its first card of that code) the items of the source and the openings
// of the target.
std::string stokSorusu(const Baglam& b) {
  const std::string ilkKart = "(SELECT MIN(k.Stok_ID) FROM " + b.k("STOKKART") + " k WHERE k.Stok_Kod=";
  return "SELECT x.Ambar_No,x.Kod,x.Stok_ID,SUM(x.kaynak) AS kaynak,SUM(x.hedef) AS hedef,SUM(x.tutar) AS "
         "tutar FROM (SELECT a.Ambar_No," +
         ilkKart +
         "s.Stok_Kod) AS Kod,s.Stok_ID,a.net AS kaynak,0 AS hedef,0 AS tutar FROM (SELECT "
         "Stok_ID,Ambar_No,SUM(ISNULL(G,0)-ISNULL(C,0)) AS net FROM " +
         b.k("AMBBAK") + " GROUP BY Stok_ID,Ambar_No) a," + b.k("STOKKART") +
         " s WHERE s.Stok_ID=a.Stok_ID UNION ALL SELECT h.Ambar_No," + ilkKart + "h.Stok_Kod)," + ilkKart +
         "h.Stok_Kod),0,ISNULL(h.Giris,0)-ISNULL(h.Cikis,0),ISNULL(h.Tutar,0) FROM STOKHAREKET h WHERE "
         "h.Islem_Tipi='Açılış Fişi') x WHERE x.Kod IS NOT NULL GROUP BY x.Ambar_No,x.Kod,x.Stok_ID ORDER BY "
         "x.Ambar_No,x.Kod,x.Stok_ID";
}

class StokKaniti {
 public:
  explicit StokKaniti(Baglam& b) : b_(b), maliyet_(b) {
    const Secenekler& s = b.g.secenekler;
    miktarKapali_ = kapaliMetni(s, ustStok, 1);
    degerKapali_ = miktarKapali_.empty() ? kapaliMetni(s, ustStok, 2) : miktarKapali_;
  }

  std::vector<KanitDokumu> hazirla() {
    ambarlariAc();
    b_.akit(stokSorusu(b_), [&](const db::Rows& rows, std::int64_t i) { satir(rows, i); });
    kapat();
    adlandir();
    std::vector<KanitDokumu> out;
    for (auto& [no, a] : ambarlar_) out.push_back(std::move(a.miktar));
    if (tanimsiz_.miktar.toplam.kaynak != Para{} || !tanimsiz_.miktar.ayrintilar.empty())
      out.push_back(std::move(tanimsiz_.miktar));
    for (auto& [no, a] : ambarlar_) out.push_back(std::move(a.deger));
    return out;
  }

 private:
  struct Ambar {
    KanitDokumu miktar, deger;
  };
  struct Kalem {
    std::int64_t kod = 0;
    Ambar* ambar = nullptr;
    Para kaynak, hedef, kaynakDegeri, hedefDegeri;
  };

  static KanitDokumu dokum(std::string tur) {
    KanitDokumu d;
    d.toplam.tur = std::move(tur);
    d.toplam.toplam = true;
    return d;
  }
  void ambarlariAc() {
    const auto rows =
        b_.kaynakOku("SELECT DISTINCT Ambar_No FROM AMBAR WHERE Ambar_No IS NOT NULL ORDER BY Ambar_No");
    for (std::int64_t i = 0; i < rows->count(); ++i) {
      const std::string no = rows->value(i, 0).text();
      ambarlar_[rows->value(i, 0).integer()] = {dokum("Stok miktarı, ambar " + no),
                                                dokum("Stok değeri, ambar " + no)};
    }
    tanimsiz_ = {dokum("Stok miktarı, tanımsız ambar"), dokum("")};
  }

  // Two cards may share a code: their rows are neighbours and make one item.
  void satir(const db::Rows& rows, std::int64_t i) {
    const auto at = rows.value(i, 0).isNull() ? ambarlar_.end() : ambarlar_.find(rows.value(i, 0).integer());
    Ambar* const ambar = at == ambarlar_.end() ? &tanimsiz_ : &at->second;
    const std::int64_t kod = rows.value(i, 1).integer();
    if (kalem_.ambar != ambar || kalem_.kod != kod) kapat();
    kalem_.ambar = ambar;
    kalem_.kod = kod;
    const Para net = Para::sayidan(rows.value(i, 3).real());
    kalem_.kaynak = kalem_.kaynak + net;
    kalem_.hedef = kalem_.hedef + Para::sayidan(rows.value(i, 4).real());
    kalem_.kaynakDegeri = kalem_.kaynakDegeri + maliyet_.degeri(rows.value(i, 2).integer(), net);
    kalem_.hedefDegeri = kalem_.hedefDegeri + Para::sayidan(rows.value(i, 5).real());
  }
  void kapat() {
    if (kalem_.ambar != nullptr) {
      ekle(kalem_.ambar->miktar, kalem_.kaynak, kalem_.hedef);
      ekle(kalem_.ambar->deger, kalem_.kaynakDegeri, kalem_.hedefDegeri);
    }
    kalem_ = {};
  }
  void ekle(KanitDokumu& d, Para kaynak, Para hedef) {
    d.toplam.kaynak = d.toplam.kaynak + kaynak;
    d.toplam.hedef = d.toplam.hedef + hedef;
    if (kaynak == hedef || d.ayrintilar.size() >= ayrintiSiniri) return;
    KanitSatiri s;
    s.tur = d.toplam.tur;
    s.kaynak = kaynak;
    s.hedef = hedef;
    d.ayrintilar.push_back(std::move(s));
    adsizlar_.push_back({&d, d.ayrintilar.size() - 1, kalem_.kod});
  }

  // Codes, names and reasons of the items that differ.
  void adlandir() {
    constexpr std::size_t liste = 500;
    for (std::size_t i = 0; i < adsizlar_.size(); i += liste) {
      const std::size_t son = std::min(i + liste, adsizlar_.size());
      std::set<std::int64_t> kodlar;
      for (std::size_t j = i; j < son; ++j) kodlar.insert(adsizlar_[j].kod);
      std::string in;
      for (const std::int64_t kod : kodlar) in += (in.empty() ? "" : ",") + std::to_string(kod);
      const auto rows = b_.oku("SELECT Stok_ID,Stok_Kod,Stok_Ad FROM " + b_.k("STOKKART") +
                               " WHERE Stok_ID IN (" + in + ")");
      std::map<std::int64_t, std::int64_t> yeri;
      for (std::int64_t r = 0; r < rows->count(); ++r) yeri[rows->value(r, 0).integer()] = r;
      for (std::size_t j = i; j < son; ++j) {
        KanitSatiri& s = adsizlar_[j].dokum->ayrintilar[adsizlar_[j].sira];
        const auto at = yeri.find(adsizlar_[j].kod);
        if (at != yeri.end()) {
          s.kod = rows->value(at->second, 1).trimmed();
          s.ad = rows->value(at->second, 2).trimmed();
        }
        s.neden = neden(*adsizlar_[j].dokum, s);
      }
    }
    adsizlar_.clear();
  }

  std::string neden(const KanitDokumu& d, const KanitSatiri& s) const {
    if (&d == &tanimsiz_.miktar) return "Ambarın tanımı yok; açılış fişi yazılmaz";
    const bool deger = d.toplam.tur.rfind("Stok değeri", 0) == 0;
    const std::string& kapali = deger ? degerKapali_ : miktarKapali_;
    if (!kapali.empty()) return "Seçenek kapalı: " + kapali;
    if (std::string metin = atlananNedeni(b_, "STOKKART,STOKHAREKET", s.kod); !metin.empty()) return metin;
    if (!b_.g.STEksi && s.kaynak < Para{} && s.hedef == Para{}) return "Eksi stok devredilmedi";
    if (!deger) return miktarYuvarlamasi(s) ? "Miktarın kesir yuvarlaması" : "";
    constexpr std::int64_t birlik = 10'000;
    return std::llabs(s.fark().birim) <= 1 + std::llabs(s.kaynak.birim) / (100 * birlik)
               ? "Değerin kesir yuvarlaması"
               : "";
  }

  struct Adsiz {
    KanitDokumu* dokum;
    std::size_t sira;
    std::int64_t kod;
  };

  Baglam& b_;
  const KanitMaliyeti maliyet_;
  std::string miktarKapali_, degerKapali_;
  std::map<std::int64_t, Ambar> ambarlar_;
  Ambar tanimsiz_;
  Kalem kalem_;
  std::vector<Adsiz> adsizlar_;
};

}  // namespace

std::vector<KanitDokumu> stokKaniti(Baglam& b) {
  if (!b.ikisinde("STOKKART") || !b.ikisinde("STOKHAREKET") || !b.kaynakta("AMBAR")) return {};
  return StokKaniti(b).hazirla();
}

}  // namespace rollover
