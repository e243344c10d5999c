// Payments in cash, by transfer and by card; slips between boxes and banks; debit and credit notes.
#include <array>

#include "company/ornek/adimlar.h"
#include "company/ornek/satirlar.h"

namespace company::ornek {

namespace {

using Tur = OrnekHareketi::Tur;
using Yazan = void (*)(Baglam&, const char* tip, const An&);

const Kasa& birKasa(Baglam& b) {
  return b.t
      .kasalar[static_cast<std::size_t>(b.r.arasi(0, static_cast<std::int64_t>(b.t.kasalar.size()) - 1))];
}

const Banka& birBanka(Baglam& b) {
  return b.t
      .bankalar[static_cast<std::size_t>(b.r.arasi(0, static_cast<std::int64_t>(b.t.bankalar.size()) - 1))];
}

Odeme odeme(Baglam& b, const char* tip, std::string fisNo, const An& an, std::optional<Cari> cari) {
  return {tip, std::move(fisNo), "", an, std::move(cari), b.birKisi()};
}

void tahsilat(Baglam& b, const char* tip, const An& an) {
  const Kasa& kasa = birKasa(b);
  const Odeme o = odeme(b, tip, b.fisNo("KNTF" + std::to_string(kasa.id)), an, b.birAlici());
  b.y.calistir(kasaKaydi(b, kasa, o, b.r.arasi(1'000, 250'000)).sql(), 1);
}

void odemeFisi(Baglam& b, const char* tip, const An& an) {
  const Kasa& kasa = birKasa(b);
  const Odeme o = odeme(b, tip, b.fisNo("KNOF" + std::to_string(kasa.id)), an, b.birSatici());
  b.y.calistir(kasaKaydi(b, kasa, o, -b.r.arasi(1'000, 120'000)).sql(), 1);
}

// Cash taken to the bank or fetched from it: one row, which counts on both sides.
void kasaBanka(Baglam& b, const char* tip, const An& an, bool yatirma) {
  const Kasa& kasa = b.t.kasalar.front();
  const Banka& banka = birBanka(b);
  const std::int64_t tutar = b.r.arasi(20'000, 300'000);
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
  const std::int64_t tutar = b.r.arasi(5'000, 80'000);
  const Odeme o = odeme(b, tip, b.fisNo("KASVIR"), an, std::nullopt);
  const auto hedef =
      static_cast<std::size_t>(b.r.arasi(1, static_cast<std::int64_t>(b.t.kasalar.size()) - 1));
  b.y.calistir(kasaKaydi(b, b.t.kasalar.front(), o, -tutar).sql(), 1);
  b.y.calistir(kasaKaydi(b, b.t.kasalar[hedef], o, tutar).sql(), 1);
}

void havale(Baglam& b, const char* tip, const An& an, bool gelen) {
  const std::int64_t tutar = b.r.arasi(10'000, 600'000);
  const Odeme o = odeme(b, tip, b.fisNo("BANFIS"), an, gelen ? b.birAlici() : b.birSatici());
  b.y.calistir(bankaKaydi(b, birBanka(b), o, gelen ? tutar : -tutar).sql(), 1);
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
  b.y.calistir(bankaKaydi(b, birBanka(b), o, -b.r.arasi(500, 6'000)).sql(), 1);
}

void bankaVirman(Baglam& b, const char* tip, const An& an) {
  const std::int64_t tutar = b.r.arasi(50'000, 400'000);
  const Odeme o = odeme(b, tip, b.fisNo("BANFIS"), an, std::nullopt);
  const auto ilk = static_cast<std::size_t>(b.r.arasi(0, 2));
  b.y.calistir(bankaKaydi(b, b.t.bankalar[ilk], o, -tutar).sql(), 1);
  b.y.calistir(bankaKaydi(b, b.t.bankalar[(ilk + 1) % 3], o, tutar).sql(), 1);
}

// A note on an account: `kurus` debited, credited when negative.
Kayit cariKaydi(const Baglam& b, const Odeme& o, std::int64_t kurus) {
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
  b.y.calistir(cariKaydi(b, odeme(b, tip, b.fisNo("BODEK"), an, b.birAlici()), b.r.arasi(500, 40'000)).sql(),
               1);
}
void alacakDekontu(Baglam& b, const char* tip, const An& an) {
  b.y.calistir(
      cariKaydi(b, odeme(b, tip, b.fisNo("ALDEK"), an, b.birSatici()), -b.r.arasi(500, 40'000)).sql(), 1);
}

void cariVirman(Baglam& b, const char* tip, const An& an) {
  const std::int64_t tutar = b.r.arasi(5'000, 60'000);
  Odeme o = odeme(b, tip, b.fisNo("CARVIR"), an, b.birAlici());
  b.y.calistir(cariKaydi(b, o, -tutar).sql(), 1);
  o.cari = b.birSatici();
  b.y.calistir(cariKaydi(b, o, tutar).sql(), 1);
}

// A card receipt stands on the account and, through its agreement, with the bank.
void kartTahsilati(Baglam& b, const char* tip, const An& an) {
  const Banka& banka = birBanka(b);
  const Anlasma& anlasma = banka.anlasmalar[b.r.yuzde(60) ? 0 : 1];
  const std::int64_t tutar = b.r.arasi(2'000, 150'000);
  const Odeme o = odeme(b, tip, b.fisNo("KREDIKARTI"), an, b.birAlici());
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

void kasaBankaYaz(Baglam& b) {
  for (const FisTuru& tur : fisTurleri) {
    b.adim(std::string(tur.tip) + " yazılıyor");
    const std::int64_t adet = static_cast<std::int64_t>(tur.adet) * b.olcek;
    for (std::int64_t i = 0; i < adet; ++i) {
      tur.yaz(b, tur.tip, b.an(i, adet));
      b.ilerle(i, adet);
    }
  }
}

}  // namespace company::ornek
