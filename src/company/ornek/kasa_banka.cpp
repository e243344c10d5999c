// Payments in cash, by transfer and by card; slips between boxes and banks; debit and credit notes.
#include <algorithm>
#include <array>

#include "company/ornek/adimlar.h"
#include "company/ornek/satirlar.h"

namespace company::ornek {

namespace {

using Tur = OrnekHareketi::Tur;
using Yazan = void (*)(Baglam&, const char* tip, const An&);

template <class T>
const T& biri(Baglam& b, const std::vector<T>& liste) {
  return liste[static_cast<std::size_t>(b.r.arasi(0, static_cast<std::int64_t>(liste.size()) - 1))];
}

// The one that has most.
template <class T>
const T& dolusu(const Baglam& b, Tur tur, const std::vector<T>& liste) {
  return *std::ranges::max_element(liste, {}, [&](const T& each) { return b.bakiye(tur, each.id); });
}

Odeme odeme(Baglam& b, const char* tip, std::string fisNo, const An& an, std::optional<Cari> cari) {
  const Kur kur = cari ? b.kur(*cari, an.tarih) : b.lira();
  return {tip, std::move(fisNo), "", an, std::move(cari), b.birKisi(), kur};
}

void tahsilat(Baglam& b, const char* tip, const An& an) {
  const Kasa& kasa = biri(b, b.t.kasalar);
  const auto [cari, tutar] = b.birBorclu(1'000, 250'000);
  const Odeme o = odeme(b, tip, b.fisNo("KNTF" + std::to_string(kasa.id)), an, cari);
  b.y.calistir(kasaKaydi(b, kasa, o, tutar).sql(), 1);
}

void odemeFisi(Baglam& b, const char* tip, const An& an) {
  const Kasa& kasa = dolusu(b, Tur::Kasa, b.t.kasalar);
  const auto [cari, tutar] =
      b.birAlacakli(1'000, std::clamp<std::int64_t>(b.bakiye(Tur::Kasa, kasa.id), 1'000, 120'000));
  const Odeme o = odeme(b, tip, b.fisNo("KNOF" + std::to_string(kasa.id)), an, cari);
  b.y.calistir(kasaKaydi(b, kasa, o, -tutar).sql(), 1);
}

// Cash taken to the bank or fetched from it: one row, which counts on both sides.
void kasaBanka(Baglam& b, const char* tip, const An& an, bool yatirma) {
  const Kasa& kasa = yatirma ? dolusu(b, Tur::Kasa, b.t.kasalar) : b.t.kasalar.back();
  const Banka& banka = yatirma ? biri(b, b.t.bankalar) : dolusu(b, Tur::Banka, b.t.bankalar);
  // What a till holds beyond its change goes to the bank.
  const std::int64_t tutar = yatirma ? std::max<std::int64_t>(b.bakiye(Tur::Kasa, kasa.id) * 3 / 4, 1'000)
                                     : b.r.arasi(20'000, 100'000);
  const std::string sayac = (yatirma ? "KNOF" : "KNTF") + std::to_string(kasa.id);
  Kayit kayit = kasaKaydi(b, kasa, odeme(b, tip, b.fisNo(sayac), an, std::nullopt), yatirma ? -tutar : tutar);
  kayit.sayi("Hesap_ID", banka.id).metin("Hesap_No", banka.no).metin("Hesap_Ad", banka.ad);
  b.y.calistir(kayit.sql(), 1);
  b.bildir(Tur::Banka, banka.id, yatirma ? tutar : -tutar);
}
void yatirma(Baglam& b, const char* tip, const An& an) {
  kasaBanka(b, tip, an, true);
}
void cekme(Baglam& b, const char* tip, const An& an) {
  kasaBanka(b, tip, an, false);
}

void kasaVirman(Baglam& b, const char* tip, const An& an) {
  const Kasa& kaynak = dolusu(b, Tur::Kasa, b.t.kasalar);
  const Kasa& hedef = kaynak.id == b.t.kasalar.back().id ? b.t.kasalar.front() : b.t.kasalar.back();
  const std::int64_t tutar =
      std::clamp<std::int64_t>(b.bakiye(Tur::Kasa, kaynak.id), 100, b.r.arasi(5'000, 80'000));
  const Odeme o = odeme(b, tip, b.fisNo("KASVIR"), an, std::nullopt);
  b.y.calistir(kasaKaydi(b, kaynak, o, -tutar).sql(), 1);
  b.y.calistir(kasaKaydi(b, hedef, o, tutar).sql(), 1);
}

// Some of the transfers are those of accounts in a currency, customers' to the account in it.
void havale(Baglam& b, const char* tip, const An& an, bool gelen) {
  constexpr std::int64_t dovizliAralik = 50, enAz = 10'000;
  auto [cari, tutar] = gelen ? b.birBorclu(enAz, 600'000) : b.birAlacakli(enAz, 600'000);
  Cari yabanci = b.cari(b.r.arasi(0, b.cariSayisi() / dovizliAralik - 1) * dovizliAralik + (gelen ? 7 : 39));
  const std::int64_t borc = b.bakiye(Tur::Cari, yabanci.id) * (gelen ? 1 : -1);
  const bool dovizli = borc >= enAz && b.r.yuzde(15);
  if (dovizli) {
    cari = std::move(yabanci);
    tutar = std::min(tutar, borc);
  }
  const Banka& banka = dovizli && gelen ? b.t.dovizHesabi
                       : gelen          ? biri(b, b.t.bankalar)
                                        : dolusu(b, Tur::Banka, b.t.bankalar);
  const Odeme o = odeme(b, tip, b.fisNo("BANFIS"), an, cari);
  b.y.calistir(bankaKaydi(b, banka, o, gelen ? tutar : -tutar).sql(), 1);
}
void gelenHavale(Baglam& b, const char* tip, const An& an) {
  havale(b, tip, an, true);
}
void gidenHavale(Baglam& b, const char* tip, const An& an) {
  havale(b, tip, an, false);
}

void bankaMasrafi(Baglam& b, const char* tip, const An& an) {
  Odeme o = odeme(b, tip, b.fisNo("BANFIS"), an, std::nullopt);
  o.aciklama = "Hesap işletim ücreti";
  b.y.calistir(bankaKaydi(b, biri(b, b.t.bankalar), o, -b.r.arasi(500, 6'000)).sql(), 1);
}

void bankaVirman(Baglam& b, const char* tip, const An& an) {
  const std::int64_t tutar = b.r.arasi(50'000, 400'000);
  const Odeme o = odeme(b, tip, b.fisNo("BANFIS"), an, std::nullopt);
  const Banka& kaynak = dolusu(b, Tur::Banka, b.t.bankalar);
  const Banka& hedef = kaynak.id == b.t.bankalar.front().id ? b.t.bankalar.back() : b.t.bankalar.front();
  b.y.calistir(bankaKaydi(b, kaynak, o, -tutar).sql(), 1);
  b.y.calistir(bankaKaydi(b, hedef, o, tutar).sql(), 1);
}

// A note on an account: `kurus` debited, credited when negative.
Kayit cariKaydi(Baglam& b, const Odeme& o, std::int64_t kurus) {
  Kayit kayit = b.kayit("CARIHAREKET");
  kayit.zaman("Tarih", o.an.tarih)
      .metin("Fis_No", o.fisNo)
      .metin("Islem_Tipi", o.tip)
      .metin("Aciklama", o.aciklama);
  cariAlanlari(kayit, *o.cari)
      .sayi("Vade", 0)
      .sayi("Dovizli_Tutar", 0)
      .sayi("Isyeri_ID", b.t.isyerleri.front());
  kayit.para("BTutar", kurus > 0 ? kurus : 0).para("ATutar", kurus < 0 ? -kurus : 0);
  izAlanlari(gunAlanlari(genelAlanlar(kayit, b, o.satici), o.an), o.an);
  b.bildir(Tur::Cari, o.cari->id, kurus);
  return kayit;
}

void borcDekontu(Baglam& b, const char* tip, const An& an) {
  const auto [cari, tutar] = b.birBorclu(500, 40'000);
  b.y.calistir(cariKaydi(b, odeme(b, tip, b.fisNo("BODEK"), an, cari), tutar).sql(), 1);
}
void alacakDekontu(Baglam& b, const char* tip, const An& an) {
  const auto [cari, tutar] = b.birAlacakli(500, 40'000);
  b.y.calistir(cariKaydi(b, odeme(b, tip, b.fisNo("ALDEK"), an, cari), -tutar).sql(), 1);
}

// A customer's debt set off against what a supplier is owed.
void cariVirman(Baglam& b, const char* tip, const An& an) {
  const auto [alici, borc] = b.birBorclu(5'000, 60'000);
  const auto [satici, tutar] = b.birAlacakli(1'000, std::max<std::int64_t>(borc, 1'000));
  Odeme o = odeme(b, tip, b.fisNo("CARVIR"), an, alici);
  b.y.calistir(cariKaydi(b, o, -tutar).sql(), 1);
  o.cari = satici;
  b.y.calistir(cariKaydi(b, o, tutar).sql(), 1);
}

// A card receipt stands on the account and, through its agreement, with the bank.
void kartTahsilati(Baglam& b, const char* tip, const An& an) {
  const Banka& banka = biri(b, b.t.bankalar);
  const Anlasma& anlasma = banka.anlasmalar[b.r.yuzde(60) ? 0 : 1];
  const auto [cari, tutar] = b.birBorclu(2'000, 150'000);
  const Odeme o = odeme(b, tip, b.fisNo("KREDIKARTI"), an, cari);
  Kayit kayit = cariKaydi(b, o, -tutar);
  kayit.sayi("Hesap_ID", banka.id).sayi("Anlasma_ID", anlasma.id);
  std::int64_t adet = 1;
  const std::string pos = posSql(b, banka, anlasma, o, tutar, "@C", adet);
  b.y.calistir("DECLARE @C INT\n" + kayit.sql() + "SET @C=SCOPE_IDENTITY()\n" + pos, adet);
}

struct FisTuru {
  const char* tip;
  int adet;  // at scale 1
  Yazan yaz;
};

constexpr std::array fisTurleri = {
    FisTuru{"Nakit Tahsilat Fişi", 300, tahsilat},      FisTuru{"Nakit Ödeme Fişi", 120, odemeFisi},
    FisTuru{"Bankaya Yatırılan", 40, yatirma},          FisTuru{"Bankadan Çekilen", 20, cekme},
    FisTuru{"Kasa Virman Fişi", 20, kasaVirman},        FisTuru{"Gelen Havale", 120, gelenHavale},
    FisTuru{"Giden Havale", 90, gidenHavale},           FisTuru{"Banka İşlem Fişi", 24, bankaMasrafi},
    FisTuru{"Banka Virman Fişi", 10, bankaVirman},      FisTuru{"Borç Dekontu", 15, borcDekontu},
    FisTuru{"Alacak Dekontu", 15, alacakDekontu},       FisTuru{"Cari Virman Fişi", 10, cariVirman},
    FisTuru{"Kredi Kartı Tahsilat", 80, kartTahsilati},
};

}  // namespace

void kasaBankaIsleri(Isler& isler) {
  for (const FisTuru& tur : fisTurleri)
    isler.push_back({tur.adet, [&tur](Baglam& b, const An& an) { tur.yaz(b, tur.tip, an); }});
}

}  // namespace company::ornek
