// Cheques and notes in every state, each with the slips that brought it there.
#include <array>
#include <span>

#include "company/ornek/adimlar.h"
#include "company/ornek/kelimeler.h"
#include "company/ornek/satirlar.h"

namespace company::ornek {

namespace {

using Tur = OrnekHareketi::Tur;

// Cheques and notes have twin tables.
struct Aile {
  std::string ad;  // "Çek", "Senet": also the beginning of the slips' type strings
  std::string kart, hareket, durum, parcali, id, no;
  const char* portfoySayaci;
};
const std::array aileler = {
    Aile{"Çek", "CEKKART", "CEK", "CEKDURUM", "CEKPARCALI", "Cek_ID", "Cek_No", "CEKPORNO"},
    Aile{"Senet", "SENETKART", "SENET", "SENETDURUM", "SENETPARCALI", "Senet_ID", "Senet_No", "SENETPORNO"}};

enum class Karsi { Musteri, Satici, Banka, Kasa };

// One slip in the life of a cheque or note. `tip` holds * where the family's name stands.
struct Hareket {
  const char* tip;
  const char* durum;  // the state it leaves; empty: the family's own word, see kendiDurumu
  Karsi karsi;
  int cari;  // effect on the account: +1 debit, -1 credit
  int para;  // effect on the bank account or cash box
};

constexpr Hareket giris{"* Giriş", "Portföyde", Karsi::Musteri, -1, 0};
constexpr Hareket ciro{"* Çıkış(C/H)", "Cirolu", Karsi::Satici, 1, 0};
constexpr Hareket tahsile{"* Çıkış(Banka Tahsil)", "Bankada Tahsilde", Karsi::Banka, 0, 0};
constexpr Hareket teminata{"* Çıkış(Banka Teminat)", "Bankada Teminatta", Karsi::Banka, 0, 0};
constexpr Hareket bankadanTahsil{"Bankadaki Müş. * Tahsili", "Tahsil Edildi", Karsi::Banka, 0, 1};
constexpr Hareket kasadanTahsil{"* Tahsilatı", "Tahsil Edildi", Karsi::Kasa, 0, 1};
constexpr Hareket iade{"* Çıkış(Müşteriye İade)", "Müşteriye İade", Karsi::Musteri, 1, 0};
constexpr Hareket karsiliksiz{"Karşılıksız Müşteri *", "Karşılıksız", Karsi::Musteri, 0, 0};
constexpr Hareket parcali{"Parçalı * Tahsilatı", "Parçalı Tahsil", Karsi::Kasa, 0, 1};
constexpr Hareket kendi{"* Çıkış(C/H)", "", Karsi::Satici, 1, 0};
constexpr Hareket bankadanOdeme{"Bankadan * Ödemesi", "Ödendi", Karsi::Banka, 0, -1};
constexpr Hareket kasadanOdeme{"* Ödemesi", "Ödendi", Karsi::Kasa, 0, -1};

// Where a life ends: on or soon after the due date, not within the period, or before, when it went on.
enum class Son { Vadede, Acik, Once };

struct Yol {
  int adet;  // of cheques at scale 1; notes are half as many
  bool bizim;
  std::array<Hareket, 3> hareketler;
  int uzunluk;
  Son son;
};
constexpr std::array yollar = {
    Yol{24, false, {giris}, 1, Son::Acik},
    Yol{24, false, {giris, ciro}, 2, Son::Once},
    Yol{16, false, {giris, tahsile}, 2, Son::Acik},
    Yol{8, false, {giris, teminata}, 2, Son::Acik},
    Yol{24, false, {giris, tahsile, bankadanTahsil}, 3, Son::Vadede},
    Yol{12, false, {giris, kasadanTahsil}, 2, Son::Vadede},
    Yol{6, false, {giris, iade}, 2, Son::Once},
    Yol{6, false, {giris, karsiliksiz}, 2, Son::Vadede},
    Yol{8, false, {giris, parcali}, 2, Son::Vadede},
    Yol{14, true, {kendi}, 1, Son::Acik},
    Yol{14, true, {kendi, bankadanOdeme}, 2, Son::Vadede},
};

std::string turAdi(const Aile& aile, const Hareket& h) {
  std::string out = h.tip;
  out.replace(out.find('*'), 1, aile.ad);
  return out;
}

std::string durumAdi(const Aile& aile, const Hareket& h) {
  if (h.durum[0] != '\0') return h.durum;
  return aile.ad == "Çek" ? "Kendi Çekimiz" : "Kendi Senedimiz";
}

// A note of ours is paid in cash: the bank counts collected notes only.
Hareket aileninki(const Aile& aile, const Hareket& h) {
  return aile.ad == "Senet" && std::string_view(h.tip) == bankadanOdeme.tip ? kasadanOdeme : h;
}

struct Evrak {
  const Aile& aile;
  bool bizim;
  std::string no, portfoyNo;
  std::int64_t tutar;
  Cari sahibi;  // who gave it to us, or whom we gave it
  Cari ciro;    // whom it went on to
  const Banka& banka;
  db::DateTime vade;
  std::int64_t satici;
};

// What card and movement have in common.
Kayit& evrakAlanlari(Kayit& kayit, const Baglam& b, const Evrak& e, const std::string& tip,
                     const std::string& durum, const An& an) {
  kayit.ham("Bordro_ID", "@R")
      .metin(e.aile.no, e.no)
      .metin("Islem_Tipi", tip)
      .metin("Portfoy_No", e.portfoyNo);
  kayit.zaman("Vade", e.vade).para("Tutar", e.tutar).sayi("Ciro", 0).metin("Odeme_Yeri", "İSTANBUL");
  kayit.metin("Borclu", e.bizim ? "" : e.sahibi.unvan)
      .metin("Banka_Adi", e.banka.banka)
      .metin("Sube_Adi", e.banka.sube);
  kayit.metin("Banka_Hesap_No", e.banka.no).metin("Durum", durum).zaman("Durum_Tarih", an.tarih);
  kayit.metin("Sahip", e.bizim ? "K" : "M").sayi("Isyeri_ID", b.t.isyerleri.front());
  if (e.aile.ad == "Senet") kayit.zaman("Tanzim_Tarih", an.tarih).sayi("Pul", 0);
  return izAlanlari(gunAlanlari(genelAlanlar(kayit, b, e.satici), an), an);
}

Kayit& karsiAlanlari(Kayit& kayit, const Evrak& e, Karsi karsi) {
  const bool carili = karsi == Karsi::Musteri || karsi == Karsi::Satici;
  if (carili)
    cariAlanlari(kayit, karsi == Karsi::Satici && !e.bizim ? e.ciro : e.sahibi);
  else
    kayit.sayi("Cari_ID", 0);
  return kayit.sayi("Hesap_ID", karsi == Karsi::Banka ? e.banka.id : 0);
}

const Cari& etkilenen(const Evrak& e, Karsi karsi) {
  return karsi == Karsi::Satici && !e.bizim ? e.ciro : e.sahibi;
}

// The slip; its number stays in @R.
std::string bordroSql(Baglam& b, const Evrak& e, const Hareket& h, const An& an) {
  Kayit kayit = b.kayit("BORDRO");
  kayit.metin("Bordro_No", b.fisNo("BORNO")).metin("Islem_Tipi", turAdi(e.aile, h)).zaman("Tarih", an.tarih);
  karsiAlanlari(kayit, e, h.karsi).sayi("Kayit_Sayisi", 1).para("Toplam_Tutar", e.tutar);
  kayit.zaman("Ortalama_Vade", e.vade)
      .para("Borc", h.cari > 0 ? e.tutar : 0)
      .para("Alacak", h.cari < 0 ? e.tutar : 0);
  kayit.sayi("Dovizli_Tutar", 0).sayi("Isyeri_ID", b.t.isyerleri.front());
  gunAlanlari(genelAlanlar(kayit, b, e.satici), an);
  if (h.cari != 0) b.bildir(Tur::Cari, etkilenen(e, h.karsi).id, h.cari * e.tutar);
  return izAlanlari(kayit, an).sql() + "SET @R=SCOPE_IDENTITY()\n";
}

std::string kartSql(const Baglam& b, const Evrak& e, const Hareket& ilk, const Hareket& son, const An& an) {
  Kayit kayit = b.kayit(e.aile.kart);
  cariAlanlari(kayit, e.sahibi).sayi("Hesap_ID", e.bizim || son.karsi == Karsi::Banka ? e.banka.id : 0);
  evrakAlanlari(kayit, b, e, turAdi(e.aile, ilk), durumAdi(e.aile, son), an).sayi("Dovizli_Tutar", 0);
  kayit.para("Borc", e.bizim ? e.tutar : 0).para("Alacak", e.bizim ? 0 : e.tutar);
  return kayit.sql() + "SET @E=SCOPE_IDENTITY()\n";
}

std::string hareketSql(const Baglam& b, const Evrak& e, const Hareket& h, const An& an) {
  const bool borc = h.cari > 0 || h.para > 0;
  Kayit kayit = b.kayit(e.aile.hareket);
  kayit.ham(e.aile.id, "@E");
  evrakAlanlari(karsiAlanlari(kayit, e, h.karsi), b, e, turAdi(e.aile, h), durumAdi(e.aile, h), an);
  kayit.para("Borc", borc ? e.tutar : 0).para("Alacak", !borc && (h.cari != 0 || h.para != 0) ? e.tutar : 0);
  return kayit.sql();
}

std::string durumSql(const Baglam& b, const Evrak& e, const Hareket& h, const An& an) {
  Kayit kayit = b.kayit(e.aile.durum);
  kayit.ham("Bordro_ID", "@R")
      .ham(e.aile.id, "@E")
      .metin("Durum", durumAdi(e.aile, h))
      .zaman("Durum_Tarih", an.tarih);
  kayit.metin("Islem_Tipi", turAdi(e.aile, h))
      .metin("Cari_Unvan", etkilenen(e, h.karsi).unvan)
      .sayi("Kullanici_ID", 1);
  return kayit.sayi("Ozel", 0).sayi("ATutar", 0).sayi("BTutar", 0).sql();
}

// What is paid over the counter also goes through a cash box; a part of it is noted on its own.
std::string kasaSql(Baglam& b, const Evrak& e, const Hareket& h, const An& an, std::int64_t& adet) {
  const Kasa& kasa = b.t.kasalar.front();
  const bool parca = h.durum == std::string_view(parcali.durum);
  const std::int64_t tutar = parca ? e.tutar / 2 : e.tutar;
  const std::string fisNo = b.fisNo((h.para > 0 ? "KNTF" : "KNOF") + std::to_string(kasa.id));
  const Odeme odeme{turAdi(e.aile, h), fisNo, "", an, std::nullopt, e.satici, b.lira()};
  std::string sql = kasaKaydi(b, kasa, odeme, h.para * tutar).ham(e.aile.id, "@E").sql();
  ++adet;
  if (!parca) return sql;
  Kayit kayit = b.kayit(e.aile.parcali);
  kayit.ham(e.aile.id, "@E").ham("Kasa_Hareket_ID", "SCOPE_IDENTITY()").zaman("Tahsil_Tarih", an.tarih);
  kayit.para("Tahsil_Tutar", tutar).metin("Fis_No", fisNo).sayi("Dovizli_Tutar", 0);
  ++adet;
  return sql + izAlanlari(kayit, an).sql();
}

// The days of a life: when it begins, when it is due. The `i`-th of `adet` lie in order over the days that
// leave room for what is to come.
struct Gunler {
  std::int64_t ilk = 0, vade = 0;
};
Gunler gunleri(Baglam& b, Son son, std::int64_t i, std::int64_t adet) {
  const std::int64_t kacGun = b.donem.gunler, enUzun = std::min<std::int64_t>(120, kacGun / 3);
  const std::int64_t sure = b.r.arasi(std::min<std::int64_t>(20, enUzun), enUzun);
  if (son == Son::Acik) {  // due after the period
    const std::int64_t gun = kacGun - 1 - i * std::max<std::int64_t>(sure, 1) / adet;
    return {gun, gun + std::max<std::int64_t>(sure, 1)};
  }
  const std::int64_t gun = i * (kacGun - (son == Son::Vadede ? sure : 0)) / adet;
  return {gun, gun + sure};
}

// A paper comes at the price of what its owner owes; ours for what we owe.
void birEvrak(Baglam& b, const Aile& aile, const Yol& yol, std::int64_t i, std::int64_t adet) {
  const Gunler gunler = gunleri(b, yol.son, i, adet);
  const auto [sahibi, tutar] = yol.bizim ? b.birAlacakli(20'000, 800'000) : b.birBorclu(20'000, 800'000);
  const Evrak e{aile,
                yol.bizim,
                std::to_string(b.r.arasi(1'000'000, 9'999'999)),
                b.fisNo(aile.portfoySayaci),
                tutar,
                sahibi,
                b.birAlacakli(tutar, tutar).cari,
                b.t.bankalar[static_cast<std::size_t>(b.r.arasi(0, 2))],
                gunSonra(b.donem.bas, gunler.vade),
                b.birKisi()};
  std::string sql = "DECLARE @R INT DECLARE @E INT\n";
  std::int64_t satir = 1;
  for (int n = 0; n < yol.uzunluk; ++n) {
    const bool bitis = n + 1 == yol.uzunluk;
    const Hareket h = aileninki(aile, yol.hareketler[static_cast<std::size_t>(n)]);
    const Hareket son = aileninki(aile, yol.hareketler[static_cast<std::size_t>(yol.uzunluk - 1)]);
    // Steps on the way are a week apart at most.
    const std::int64_t gun = bitis && n > 0 && yol.son == Son::Vadede
                                 ? gunler.vade + b.r.arasi(0, 3)
                                 : std::min<std::int64_t>(gunler.ilk + 7 * n, gunler.vade);
    const An an = b.donem.an(std::min<std::int64_t>(gun, b.donem.gunler - 1), 10 * birSaat + 600 * n);
    sql += bordroSql(b, e, h, an);
    if (n == 0) sql += kartSql(b, e, h, son, an);
    sql += hareketSql(b, e, h, an) + durumSql(b, e, h, an);
    satir += 3;
    if (h.karsi == Karsi::Kasa) sql += kasaSql(b, e, h, an, satir);
    if (h.karsi == Karsi::Banka && h.para != 0) b.bildir(Tur::Banka, e.banka.id, h.para * e.tutar);
  }
  b.y.calistir(sql, satir);
}

}  // namespace

void evraklariYaz(Baglam& b) {
  for (const Aile& aile : aileler) {
    b.adim(aile.ad + " bordroları yazılıyor");
    for (const Yol& yol : yollar) {
      const std::int64_t adet = static_cast<std::int64_t>(yol.adet) * b.olcek / (aile.ad == "Senet" ? 2 : 1);
      for (std::int64_t i = 0; i < adet; ++i) {
        birEvrak(b, aile, yol, i, adet);
        b.ilerle(i, adet);
      }
    }
  }
}

}  // namespace company::ornek
