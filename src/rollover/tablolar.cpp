// The table of tables: what is copied, by which key, with which children.
#include <algorithm>
#include <array>

#include "rollover/adimlar.h"
#include "rollover/kopya.h"

namespace rollover {

namespace {

struct TabloTanimi {
  std::string_view tablo, anahtar;
  bool tirnakli = true;
  bool tekEkle = false;  // a trigger for INSERT looks at one row
};
constexpr std::array<TabloTanimi, 22> tablolar = {{
    {"MUHKART", "MHesap_Kod", true, true},
    {"DOVIZTANIM", "Doviz_Kod"},
    {"SATICI", "Satici_Kodu"},
    {"AMBAR", "Ambar_No", false},
    {"HIZMETTANIM", "Kod"},
    {"MASRAFTANIM", "Kod"},
    {"INDIRIMTANIM", "Kod"},
    {"FIYATTANIM", "Sira_No", false},
    {"SABLONKART", "Sablon_Kod"},
    {"ISYERITANIM", "Isyeri_Kodu"},
    {"KDVGRUPLARI", "Departman_No", false},
    {"TARTIBARKOD", "Bayrak_Kodu"},
    {"RENKTANIM", "Renk_Adi"},
    {"BEDENTANIM", "Beden_Adi"},
    {"DROPTANIM", "Drop_Adi"},
    {"BEDENSTANDARTLARI", "Standart_Kod"},
    {"KASAKART", "Kasa_Kod"},
    {"CARIKART", "Cari_Kod"},
    {"PERSONELKARTI", "Kod"},
    {"STOKKART", "Stok_Kod"},
    {"HESAPKART", "Hesap_No"},
    {"RECETEKART", "Recete_Kod"},
}};

struct CocukTanimi {
  std::string_view tablo, bag;
  Ref ana;
  std::string_view ikinci;  // second key of a keyed child; empty for the others
};
constexpr std::array<CocukTanimi, 4> cocuklar = {{
    {"SABLONHAREKET", "Sablon_ID", Ref::Sablon, ""},
    {"BEDENSTANDARTLARIDETAY", "Standart_ID", Ref::Standart, ""},
    {"POSANLASMA", "Hesap_ID", Ref::Banka, "Taksit_Sayisi"},
    {"RECETEHAREKET", "Recete_ID", Ref::Recete, ""},
}};

template <class Dizi>
const auto& bul(const Dizi& dizi, std::string_view tablo) {
  for (const auto& t : dizi)
    if (t.tablo == tablo) return t;
  throw DevirKesildi("Devir tablosu tanınmıyor: " + std::string(tablo));
}

}  // namespace

void Tablo_Aktar(Baglam& b, std::string_view tablo) {
  if (!b.ikisinde(tablo)) return;
  const TabloTanimi& t = bul(tablolar, tablo);
  const std::string anahtar(t.anahtar);
  const auto esit = [&](const std::string& sol, const std::string& sag) {
    return sol + "." + anahtar + "=" +
           (t.tirnakli ? "ISNULL(" + sag + "." + anahtar + ",'')" : sag + "." + anahtar);
  };
  Kopya k;
  k.tablo = tablo;
  k.kimlik = kimlikKolonu(b, k.tablo);
  k.kolonlar = kolonlariKur(b, k.tablo, {});
  k.esle = esit("h", "s");
  k.tekrar = {"s." + anahtar};
  k.ad = "s." + anahtar;
  k.tekEkle = t.tekEkle;
  if (!t.tirnakli) {
    // Without a number there is nothing to look for.
    k.kosul = "s." + anahtar + " IS NOT NULL";
    const auto rows = b.oku("SELECT COUNT(*) FROM " + b.k(tablo) + " s WHERE s." + anahtar + " IS NULL");
    for (std::int64_t i = 0; i < rows->value(0, 0).integer(); ++i) b.atla(tablo, "", anahtar + " boş.");
  }
  kopyala(b, k);
}

void Alt_Tablo_Aktar(Baglam& b, std::string_view tablo) {
  if (!b.ikisinde(tablo)) return;
  const CocukTanimi& c = bul(cocuklar, tablo);
  const Referans& ana = referans(c.ana);
  if (!b.ikisinde(ana.tablo)) return;
  const std::string bag(c.bag), hedefAna = b.kesinKod(c.ana, "s." + bag);
  Kopya k;
  k.tablo = tablo;
  k.kimlik = kimlikKolonu(b, k.tablo);
  k.kolonlar = kolonlariKur(b, k.tablo, {Kirpma::Ham, false, false}, {{bag, hedefAna}});
  k.kosul = hedefAna + " IS NOT NULL";
  k.ad = "s." + bag;
  if (c.ikinci.empty()) {
    k.sifirKolon = bag;
    k.sifirIfade = hedefAna;
  } else {
    const std::string ikinci(c.ikinci);
    k.esle = "h." + bag + "=" + hedefAna + " AND h." + ikinci + "=s." + ikinci;
    k.tekrar = {hedefAna, "s." + ikinci};
  }
  kopyala(b, k);
}

void cocuklariSil(Baglam& b, std::string_view tablo) {
  const CocukTanimi& c = bul(cocuklar, tablo);
  const Referans& ana = referans(c.ana);
  if (!b.ikisinde(ana.tablo) || !b.hedefte(tablo)) return;
  const std::string t(tablo), a(ana.tablo), id(ana.kimlik), kod(ana.kod);
  b.yap("DELETE FROM " + t + " FROM " + a + " WHERE " + a + "." + id + "=" + t + "." + id + " AND " + a +
        "." + kod + " IN (SELECT ISNULL(s." + kod + ",'') FROM " + b.k(a) + " s)");
}

// An unkeyed copy of a table without identity: a row with 0 in Stopaj is overwritten by the next.
void mustahsilAktar(Baglam& b) {
  const std::string tablo = "MUSTAHSIL";
  if (b.hedefte(tablo)) b.yap("DELETE FROM MUSTAHSIL");
  if (!b.ikisinde(tablo)) return;
  const auto kolonlar = kolonlariKur(b, tablo, {});
  std::string ifadeler, adlar;
  int stopaj = -1, at = 0;
  for (const KopyaKolonu& kolon : kolonlar) {
    ifadeler += (at == 0 ? "" : ",") + kolon.ifade;
    adlar += (at == 0 ? "[" : ",[") + kolon.ad + "]";
    if (kolon.ad == "Stopaj") stopaj = at;
    ++at;
  }
  const auto rows = b.oku("SELECT " + ifadeler + " FROM " + b.k(tablo) + " s");
  std::vector<std::int64_t> kalan;  // source row of each row of the target
  for (std::int64_t i = 0; rows && i < rows->count(); ++i) {
    const auto sifir = std::find_if(kalan.begin(), kalan.end(), [&](std::int64_t r) {
      const db::Value v = stopaj < 0 ? db::Value() : rows->value(r, stopaj);
      return !v.isNull() && v.real() == 0;
    });
    if (sifir != kalan.end())
      *sifir = i;
    else
      kalan.push_back(i);
  }
  SatirYazici yazici(b, tablo, adlar, false);
  for (const std::int64_t r : kalan) {
    std::string degerler;
    for (int c = 0; c < at; ++c) degerler += (c == 0 ? "" : ",") + db::literal(rows->value(r, c));
    yazici.ekle(std::move(degerler), std::to_string(r + 1));
  }
  yazici.bosalt();
}

}  // namespace rollover
