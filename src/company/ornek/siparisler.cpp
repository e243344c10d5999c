// Orders: closed ones with the slip that delivered them, open ones delivered in part or not at all.
#include <array>

#include "company/ornek/adimlar.h"
#include "company/ornek/satirlar.h"

namespace company::ornek {

namespace {

struct SiparisTuru {
  const char* tip;
  int adet;  // at scale 1
  const char* sayac;
  bool alinan;
  const char* irsaliye;
  const char* irsaliyeSayaci;
};
constexpr std::array siparisTurleri = {
    SiparisTuru{"Alınan Sipariş", 100, "ALSIPFIS", true, "Satış İrsaliyesi", "SATSTKFIS"},
    SiparisTuru{"Verilen Sipariş", 50, "VERSIPFIS", false, "Alış İrsaliyesi", "ALSTKFIS"}};

enum class Teslim { Yok, Kismi, Tam };

std::int64_t sevkEdilen(Teslim teslim, const Satir& satir) {
  return teslim == Teslim::Tam ? satir.miktar : teslim == Teslim::Kismi ? satir.miktar / 2 : 0;
}

Kayit siparisKarti(const Baglam& b, const Belge& belge, const Toplam& toplam, Teslim teslim) {
  Kayit kart = b.kayit("SIPARISKART");
  toplamAlanlari(belgeAlanlari(kart, belge), toplam, belge.kur)
      .zaman("Sevk_Tarih", gunSonra(belge.an.tarih, 7));
  kart.sayi("Vade", belge.vade).metin("Durum", teslim == Teslim::Tam ? "KAPALI" : "AÇIK");
  kart.para("ATutar", belge.giris ? toplam.net() : 0).para("BTutar", belge.giris ? 0 : toplam.net());
  return kart;
}

Kayit siparisSatiri(const Baglam& b, const Belge& belge, const Satir& satir, int sira, Teslim teslim) {
  const std::int64_t sevk = sevkEdilen(teslim, satir);
  Kayit kayit = b.kayit("SIPARISHAREKET");
  kayit.ham("Siparis_ID", "@O").zaman("Sevk_Tarih", gunSonra(belge.an.tarih, 7));
  satirAlanlari(belgeAlanlari(kayit, belge), satir, sira);
  kayit.sayi("Giris", belge.giris ? satir.adet() : 0).sayi("Cikis", belge.giris ? 0 : satir.adet());
  return kayit.sayi("Sevk_Edilen", sevk).sayi("Kalan", satir.miktar - sevk);
}

std::string degisken(int sira) {
  return "@H" + std::to_string(sira);
}

// The delivery and its link to the order.
std::string teslimSql(Baglam& b, const SiparisTuru& tur, const Belge& siparis,
                      const std::vector<Satir>& satirlar, Teslim teslim, std::int64_t& adet) {
  Belge belge = siparis;
  belge.tip = tur.irsaliye;
  belge.fisNo = b.fisNo(tur.irsaliyeSayaci);
  belge.degisti();
  std::vector<Satir> giden;
  std::vector<Kayit> kayitlar;
  for (std::size_t i = 0; i < satirlar.size(); ++i) {
    Satir satir = satirlar[i];
    satir.miktar = sevkEdilen(teslim, satir);
    if (satir.miktar == 0) continue;
    giden.push_back(satir);
    kayitlar.push_back(
        stokSatiri(b, belge, satir, static_cast<int>(giden.size()), "0", degisken(static_cast<int>(i))));
  }
  if (giden.empty()) return "";
  const Toplam toplam = topla(giden);
  Kayit bag = b.kayit("SIPARISBAGLANTI");
  bag.ham("Siparis_ID", "@O")
      .ham("Islem_ID", "@S")
      .zaman("Tarih", belge.an.tarih)
      .metin("Fis_No", belge.fisNo);
  bag.metin("Islem_Tipi", belge.tip)
      .para("Tutar", toplam.net())
      .sayi("Kullanici_ID", 1)
      .sayi("Satici_ID", belge.satici);
  kurAlanlari(bag, belge.kur);
  adet += 2 + static_cast<std::int64_t>(giden.size());
  return "DECLARE @S INT\n" + stokFisKarti(b, belge, toplam, "0").sql() + "SET @S=SCOPE_IDENTITY()\n" +
         topluSql(kayitlar) + izAlanlari(bag, belge.an).sql();
}

void birSiparis(Baglam& b, const SiparisTuru& tur, const An& an) {
  Belge belge;
  belge.tip = tur.tip;
  belge.an = an;
  belge.fisNo = b.fisNo(tur.sayac);
  belge.cari = tur.alinan ? b.birAlici() : b.birSatici();
  belge.kur = b.kur(*belge.cari, an.tarih);
  belge.ambar = b.t.ambarlar.front();
  belge.giris = !tur.alinan;
  belge.satici = b.birKisi();
  belge.isyeri = b.t.isyerleri.front();
  belge.vade = 30;
  const std::vector<Satir> satirlar = malSatirlari(b, 1, 4, !tur.alinan, belge.giris, belge.ambar);
  const std::int64_t zar = b.r.arasi(0, 3);
  const Teslim teslim = zar < 2 ? Teslim::Tam : zar == 2 ? Teslim::Kismi : Teslim::Yok;
  std::int64_t adet = 1 + static_cast<std::int64_t>(satirlar.size());
  std::string sql = "DECLARE @O INT\n" + siparisKarti(b, belge, topla(satirlar), teslim).sql() +
                    "SET @O=SCOPE_IDENTITY()\n";
  for (int i = 0; i < static_cast<int>(satirlar.size()); ++i)
    sql += siparisSatiri(b, belge, satirlar[static_cast<std::size_t>(i)], i + 1, teslim).sql() + "DECLARE " +
           degisken(i) + " INT SET " + degisken(i) + "=SCOPE_IDENTITY()\n";
  b.y.calistir(sql + teslimSql(b, tur, belge, satirlar, teslim, adet), adet);
}

}  // namespace

void siparisIsleri(Isler& isler) {
  for (const SiparisTuru& tur : siparisTurleri)
    isler.push_back({tur.adet, [&tur](Baglam& b, const An& an) { birSiparis(b, tur, an); }});
}

}  // namespace company::ornek
