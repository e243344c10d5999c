#include "company/ornek/satirlar.h"

#include <algorithm>
#include <cstdlib>

namespace company::ornek {

namespace {

using Tur = OrnekHareketi::Tur;

}  // namespace

Toplam topla(const std::vector<Satir>& satirlar) {
  Toplam out;
  for (const Satir& satir : satirlar) {
    out.burut += satir.tutar();
    out.iskonto += satir.iskontoTutari();
    out.kdv += satir.kdvTutari();
  }
  return out;
}

namespace {

// Shares of the warehouses in the business, in hundredths of the first one's.
std::int64_t payi(const Baglam& b, int ambar) {
  return ambar == b.t.ambarlar[0] ? 100 : ambar == b.t.ambarlar[1] ? 35 : 20;
}

void paketle(Satir& satir, const Stok& stok, std::int64_t paket) {
  satir.miktar = paket;
  satir.carpan = stok.katsayi;
  satir.fiyat *= stok.katsayi;
  satir.birim = stok.birim2;
  satir.barkod = stok.barkod2;
}

// How many pieces of the item this line is about; none when it cannot be one.
std::int64_t miktari(Baglam& b, const StokOzu& stok, bool alisFiyati, bool giris, int ambar) {
  constexpr int azSayilan = 5;  // pieces for each step of the item's selling speed
  const std::int64_t mevcut = b.kalan(stok.sira, ambar);
  if (giris && !alisFiyati) return b.r.arasi(1, 5);
  if (giris)
    return stok.tukenen || mevcut > stok.hiz * azSayilan * payi(b, ambar) / 100 ? 0
                                                                                : alimMiktari(b, stok, ambar);
  const std::int64_t istenen = b.r.arasi(2, 20);
  if (mevcut >= istenen) return istenen;
  const bool eksiye = b.eksiStok && stok.hiz == 1 && b.r.yuzde(10);
  return eksiye ? istenen : std::max<std::int64_t>(mevcut, 0);
}

Satir malSatiri(Baglam& b, const StokOzu& ozu, std::int64_t miktar, bool alisFiyati, bool giris) {
  const Stok stok = b.stok(ozu.sira);
  Satir satir;
  satir.id = stok.id;
  satir.kod = stok.kod;
  satir.ad = stok.ad;
  satir.birim = stok.birim;
  satir.barkod = stok.barkod;
  satir.miktar = miktar;
  satir.fiyat = alisFiyati ? stok.alis : stok.satis;
  satir.maliyet = stok.alis;
  satir.kdv = stok.kdv;
  satir.iskonto = !alisFiyati && b.r.yuzde(15) ? 5 : 0;
  if (giris && alisFiyati && b.r.yuzde(60))
    paketle(satir, stok, (miktar + stok.katsayi - 1) / stok.katsayi);
  else if (!giris && miktar >= stok.katsayi && b.r.yuzde(30))
    paketle(satir, stok, miktar / stok.katsayi);
  return satir;
}

}  // namespace

std::int64_t alimMiktari(Baglam& b, const StokOzu& stok, int ambar) {
  return std::max<std::int64_t>(1, stok.hiz * b.r.arasi(4, 8) * payi(b, ambar) / 100);
}

std::vector<Satir> malSatirlari(Baglam& b, int enAz, int enCok, bool alisFiyati, bool giris, int ambar) {
  constexpr std::int64_t deneme = 15;  // for each line; a document may come out shorter
  std::vector<Satir> out;
  const std::int64_t kac = b.r.arasi(enAz, enCok);
  for (std::int64_t i = 0; static_cast<std::int64_t>(out.size()) < kac && i < kac * deneme; ++i) {
    const StokOzu ozu = b.birStok();
    const std::int64_t id = b.ilkStok + ozu.sira;
    if (std::any_of(out.begin(), out.end(), [&](const Satir& s) { return s.id == id; })) continue;
    if (const std::int64_t miktar = miktari(b, ozu, alisFiyati, giris, ambar); miktar > 0)
      out.push_back(malSatiri(b, ozu, miktar, alisFiyati, giris));
  }
  // No document without a line: whatever there is of anything, or one piece of the first.
  for (std::int64_t i = 0; out.empty(); ++i) {
    const bool sonCare = i >= b.stokSayisi();
    const StokOzu ozu = b.stokOzu(sonCare ? 0 : i);
    if (const std::int64_t miktar = sonCare ? 1 : miktari(b, ozu, alisFiyati, giris, ambar); miktar > 0)
      out.push_back(malSatiri(b, ozu, miktar, alisFiyati, giris));
  }
  return out;
}

namespace {

void ortakAlanlar(Kayit& kayit, const Belge& belge) {
  kayit.zaman("Tarih", belge.an.tarih).metin("Fis_No", belge.fisNo).metin("Belge_No", belge.belgeNo);
  kayit.metin("Islem_Tipi", belge.tip);
  if (belge.cari)
    cariAlanlari(kayit, *belge.cari);
  else
    kayit.sayi("Cari_ID", 0);
  kayit.sayi("Ambar_No", belge.ambar).sayi("Isyeri_ID", belge.isyeri);
  izAlanlari(gunAlanlari(genelAlanlar(kayit, belge.satici, belge.kur), belge.an), belge.an);
}

}  // namespace

Kayit& belgeAlanlari(Kayit& kayit, const Belge& belge) {
  if (belge.ortakKolonlar.empty()) {
    Kayit ortak("");
    ortakAlanlar(ortak, belge);
    belge.ortakKolonlar = ortak.kolonlar();
    belge.ortakDegerler = ortak.degerler();
  }
  return kayit.ham(belge.ortakKolonlar, belge.ortakDegerler);
}

Kayit& toplamAlanlari(Kayit& kayit, const Toplam& toplam, const Kur& kur) {
  return kayit.para("Burut_Tutar", toplam.burut)
      .para("Indirim_Toplam", toplam.iskonto)
      .para("Ara_Toplam", toplam.burut - toplam.iskonto)
      .para("KDV_Toplam", toplam.kdv)
      .para("Net_Tutar", toplam.net())
      .sayi("KDV_Dahil", 0)
      .para("Dovizli_Tutar", kur.tutar(toplam.net()));
}

Kayit& satirAlanlari(Kayit& kayit, const Satir& satir, int sira) {
  return kayit.sayi("Islem_No", sira)
      .metin("Satir_Tipi", satir.tip)
      .sayi("Stok_ID", satir.id)
      .metin("Stok_Kod", satir.kod)
      .metin("Stok_Ad", satir.ad)
      .metin("Birim", satir.birim)
      .metin("Barkod", satir.barkod)
      .sayi("Miktar", satir.miktar)
      .sayi("RB_Takip", 0)
      .para("Birim_Fiyat", satir.fiyat)
      .sayi("KDV", satir.kdv)
      .metin("ISK", std::to_string(satir.iskonto))
      .para("ISK_Tutar", satir.iskontoTutari())
      .para("KDV_Tutar", satir.kdvTutari())
      .para("Tutar", satir.tutar())
      .sayi("Carpan", satir.carpan)
      .varsaSayi("TpISK", satir.iskonto)
      .varsaPara("TpISK_Tutar", satir.iskontoTutari())
      .varsaPara("KDVSizNet_Tutar", satir.tutar() - satir.iskontoTutari())
      .varsaPara("KDVLiNet_Tutar", satir.tutar() - satir.iskontoTutari() + satir.kdvTutari());
}

Kayit stokFisKarti(const Baglam& b, const Belge& belge, const Toplam& toplam, const std::string& faturaId) {
  Kayit kart = b.kayit("STOKHAREKETKART");
  toplamAlanlari(belgeAlanlari(kart, belge), toplam, belge.kur);
  const bool carili = belge.cari.has_value();
  kart.para("Toplam_KDV", toplam.kdv).sayi("Vade", belge.vade).ham("Fatura_ID", faturaId);
  kart.para("ATutar", carili && belge.giris ? toplam.net() : 0);
  return kart.para("BTutar", carili && !belge.giris ? toplam.net() : 0);
}

Kayit stokSatiri(Baglam& b, const Belge& belge, const Satir& satir, int sira, const std::string& faturaId,
                 const std::string& siparisId) {
  Kayit kayit = b.kayit("STOKHAREKET");
  kayit.ham("Stok_HareketKart_ID", "@S");
  satirAlanlari(belgeAlanlari(kayit, belge), satir, sira);
  kayit.sayi("Giris", belge.giris ? satir.adet() : 0).sayi("Cikis", belge.giris ? 0 : satir.adet());
  kayit.para("Maliyet", satir.maliyet)
      .para("Toplam_KDV", satir.kdvTutari())
      .para("Dovizli_Tutar", belge.kur.tutar(satir.tutar() - satir.iskontoTutari() + satir.kdvTutari()));
  kayit.ham("Fatura_ID", faturaId).ham("Siparis_Hareket_ID", siparisId);
  b.bildir(Tur::Stok, satir.id, belge.giris ? satir.adet() : -satir.adet(), belge.ambar);
  return kayit;
}

std::string stokFisiSql(Baglam& b, const Belge& belge, const std::vector<Satir>& satirlar,
                        const std::string& faturaId, std::int64_t& satirSayisi) {
  std::vector<Kayit> kayitlar;
  for (const Satir& satir : satirlar)
    if (satir.tip == "Mal")
      kayitlar.push_back(stokSatiri(b, belge, satir, static_cast<int>(kayitlar.size()) + 1, faturaId, "0"));
  if (kayitlar.empty()) return "";
  satirSayisi += 1 + static_cast<std::int64_t>(kayitlar.size());
  return stokFisKarti(b, belge, topla(satirlar), faturaId).sql() + "SET @S=SCOPE_IDENTITY()\n" +
         topluSql(kayitlar);
}

namespace {

Kayit& odemeAlanlari(Kayit& kayit, const Baglam& b, const Odeme& odeme) {
  kayit.metin("Fis_No", odeme.fisNo).metin("Islem_Tipi", odeme.tip).metin("Aciklama", odeme.aciklama);
  if (odeme.cari)
    cariAlanlari(kayit, *odeme.cari);
  else
    kayit.sayi("Cari_ID", 0);
  gunAlanlari(kayit, odeme.an).sayi("Kullanici_ID", 1).sayi("Satici_ID", odeme.satici).sayi("Ozel", 0);
  return izAlanlari(kayit.sayi("Isyeri_ID", b.t.isyerleri.front()), odeme.an);
}

Kayit& tutarlar(Kayit& kayit, const Kur& kur, std::int64_t kurus) {
  kurAlanlari(kayit, kur).para("Dovizli_Tutar", kur.tutar(std::llabs(kurus)));
  return kayit.para("BTutar", std::max<std::int64_t>(kurus, 0))
      .para("ATutar", std::max<std::int64_t>(-kurus, 0));
}

}  // namespace

Kayit kasaKaydi(Baglam& b, const Kasa& kasa, const Odeme& odeme, std::int64_t kurus) {
  Kayit kayit = b.kayit("KASAHAREKET");
  kayit.zaman("Tarih", odeme.an.tarih)
      .sayi("Kasa_ID", kasa.id)
      .metin("Kasa_Kod", kasa.kod)
      .metin("Kasa_Ad", kasa.ad);
  tutarlar(odemeAlanlari(kayit, b, odeme), odeme.kur, kurus);
  b.bildir(Tur::Kasa, kasa.id, kurus);
  if (odeme.cari) b.bildir(Tur::Cari, odeme.cari->id, -kurus);
  return kayit;
}

Kayit bankaKaydi(Baglam& b, const Banka& banka, const Odeme& odeme, std::int64_t kurus) {
  Kayit kayit = b.kayit("BANKAHAREKET");
  kayit.zaman("Tarih", odeme.an.tarih).sayi("Hesap_ID", banka.id).metin("Hesap_No", banka.no);
  kayit.metin("Hesap_Ad", banka.ad).metin("Banka_Ad", banka.banka).sayi("Islem_No", 1);
  tutarlar(odemeAlanlari(kayit, b, odeme), odeme.kur, kurus);
  b.bildir(Tur::Banka, banka.id, kurus);
  if (odeme.cari) b.bildir(Tur::Cari, odeme.cari->id, -kurus);
  return kayit;
}

namespace {

Kayit posKaydi(const Baglam& b, const Banka& banka, const Anlasma& anlasma, const Odeme& odeme,
               std::int64_t kurus, std::int64_t kesinti, const std::string& satisId) {
  const db::DateTime aktarim = gunSonra(odeme.an.tarih, anlasma.gun);
  const bool aktarildi = aktarim <= b.donem.bit();
  Kayit kayit = b.kayit("POSHAREKET");
  kayit.sayi("Hesap_ID", banka.id).sayi("Anlasma_ID", anlasma.id).ham("Satis_ID", satisId);
  kayit.zaman("Islem_Tarih", odeme.an.tarih).zaman("Hesaba_Aktarim_Tarih", aktarim);
  odemeAlanlari(kayit, b, odeme)
      .para("Tutar", kurus)
      .metin("Kesinti_Orani", paraMetni(std::int64_t{anlasma.binde} * 10));
  kayit.para("Kesinti_Tutar", kesinti).para("Hesaba_Gececek_Tutar", kurus - kesinti);
  kayit.metin("GunPOS", gunMetni(aktarim))
      .metin("AY_IndexPOS", ayMetni(aktarim))
      .metin("AyPOS", ayAdi(aktarim))
      .sayi("HaftaPOS", haftaNo(aktarim));
  kayit.varsaPara("ATutar", kurus).varsaPara("BTutar", 0);
  return kayit.sayi("Hesaba_Aktarildi", aktarildi ? 1 : 0).sayi("Kasa_ID", 0);
}

}  // namespace

std::string posSql(Baglam& b, const Banka& banka, const Anlasma& anlasma, const Odeme& odeme,
                   std::int64_t kurus, const std::string& satisId, std::int64_t& satirSayisi) {
  const std::int64_t kesinti = (kurus * anlasma.binde + 500) / 1000;
  std::string sql = posKaydi(b, banka, anlasma, odeme, kurus, kesinti, satisId).sql();
  ++satirSayisi;
  const db::DateTime aktarim = gunSonra(odeme.an.tarih, anlasma.gun);
  if (aktarim > b.donem.bit()) return sql;
  const Odeme gecis{"Pos Aktarım Fişi", b.fisNo("BANFIS"), "",      An(aktarim, odeme.an.saat),
                    std::nullopt,       odeme.satici,      b.lira()};
  satirSayisi += 2;
  return sql + "DECLARE @P INT DECLARE @B INT SET @P=SCOPE_IDENTITY()\n" +
         bankaKaydi(b, banka, gecis, kurus - kesinti).sql() + "SET @B=SCOPE_IDENTITY()\n" +
         Kayit("BANKAPOSBAGLANTI").ham("BankaHareket_ID", "@B").ham("POSHareket_ID", "@P").sql();
}

}  // namespace company::ornek
