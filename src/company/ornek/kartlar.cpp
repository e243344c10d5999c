// Stock cards with prices, current account cards, and the opening rows of everything.
#include <stdexcept>

#include "company/ornek/adimlar.h"
#include "company/ornek/kelimeler.h"
#include "company/ornek/satirlar.h"

namespace company::ornek {

namespace {

using Tur = OrnekHareketi::Tur;

// Cards are found again by counting from the first one's identity: nothing may lie between them.
std::int64_t ilkNumara(Baglam& b, const std::string& tablo, const std::string& kolon, const std::string& kod,
                       std::int64_t adet) {
  b.y.bosalt();
  const auto rows =
      b.y.baglanti().query("SELECT MIN(" + kolon + "),MAX(" + kolon + ") FROM " + tablo + " WHERE " + kod);
  const std::int64_t ilk = rows->value(0, 0).integer(), son = rows->value(0, 1).integer();
  if (son - ilk + 1 != adet) throw std::runtime_error(tablo + " tablosuna başka bir program da yazıyor.");
  return ilk;
}

void stokKarti(Baglam& b, const Stok& stok, int hiz, const An& an) {
  Kayit kayit = b.kayit("STOKKART");
  kayit.metin("Stok_Kod", stok.kod).metin("Stok_Ad", stok.ad).metin("Uretici_Firma", stok.marka);
  kayit.metin("Grup_Kod", stok.grup).sayi("KDV", stok.kdv).metin("Ana_Birim", stok.birim);
  kayit.metin("Ana_Birim_Barkod", stok.barkod).sayi("Ana_Birim_Barkod_Tipi", 1);
  kayit.metin("Birim2", stok.birim2)
      .sayi("Birim2_Katsayi", stok.katsayi)
      .metin("Birim2_Barkod", stok.barkod2);
  kayit.sayi("Birim2_Barkod_Tipi", 1).metin("AktifBirim_Barkod", stok.barkod);
  kayit.metin("AktifBirim", stok.birim).sayi("AktifBirim_Katsayi", 1).sayi("Kullanici_ID", 1);
  kayit.sayi("Doviz_Tanim", 0)
      .sayi("Doviz_ID", b.lira().dovizId)
      .sayi("StokMinSeviye", 2 * hiz)
      .sayi("StokMaxSeviye", 20 * hiz);
  kayit.sayi("StokOptSeviye", 10 * hiz).metin("ISK_Alis", "0").metin("ISK_Satis", "0").sayi("Aktif", 1);
  kayit.metin("AlimMHesap_Kod", "153").metin("SatisMHesap_Kod", "600");
  b.y.biriktir(izAlanlari(kayit, an));
}

void stokFiyatlari(Baglam& b, const Stok& stok, const An& an) {
  for (int sira = 1; sira <= 2; ++sira) {
    Kayit kayit = b.kayit("STOKFIYAT");
    kayit.sayi("Stok_ID", stok.id)
        .sayi("Fiyat_Sira_No", sira)
        .metin("Fiyat_Aciklama", "Fiyat " + std::to_string(sira));
    kayit.para("Ana_Birim_Fiyat", sira == 1 ? stok.satis : stok.satis * 95 / 100).sayi("Kullanici_ID", 1);
    kurAlanlari(kayit, b.lira()).para("Ana_Birim_Fiyat_Alis", stok.alis);
    b.y.biriktir(izAlanlari(kayit, an));
  }
}

void cariKarti(Baglam& b, const Cari& cari, const An& an) {
  const auto secim = static_cast<std::size_t>(b.r.arasi(0, 1'000'000));
  const Sehir& sehir = sehirler()[secim % sehirler().size()];
  const std::string alan = "(0" + std::string(sehir.alanKodu) + ") 555 ";
  const std::string son = std::to_string(1000 + secim % 9000);
  Kayit kayit = b.kayit("CARIKART");
  kayit.metin("Cari_Kod", cari.kod).metin("Unvan", cari.unvan);
  kayit.metin("Adres1",
              std::string(sokaklar()[secim % sokaklar().size()]) + " No:" + std::to_string(1 + secim % 180));
  kayit.metin("PK", sehir.postaKodu).metin("Sehir", sehir.ad).metin("Ilce", sehir.ilce);
  kayit.metin("Tel1", alan + son).metin("Fax", alan + std::to_string(1000 + (secim + 1) % 9000));
  kayit.metin("Vergi_Dairesi", sehir.vergiDairesi);
  kayit.metin("Vergi_No", std::to_string(1'000'000'000 + b.r.arasi(0, 8'999'999'999)));
  kayit.metin("Yetkili", cari.yetkili);
  kayit.metin("Grup_Kod", cari.hesap == "120" ? "ALICI" : "SATICI")
      .sayi("Fiyat_Tipi", 1)
      .sayi("Kullanim_Durumu", 1);
  kayit.sayi("Kullanici_ID", 1).para("Kredi_Limit", (1 + static_cast<std::int64_t>(secim % 20)) * 500'000);
  kayit.sayi("Odeme_Gun", 30).sayi("Satici_ID", b.birKisi()).metin("MHesap_Kod", cari.hesap);
  b.y.biriktir(izAlanlari(kayit, an));
}

// One slip per warehouse; the first one holds most.
void stokAcilisi(Baglam& b, int ambar, bool merkez, const An& an) {
  const std::string fisNo = "000" + std::to_string(ambar);
  Kayit kart = b.kayit("STOKHAREKETKART");
  kart.zaman("Tarih", an.tarih)
      .metin("Fis_No", fisNo)
      .metin("Islem_Tipi", "Açılış Fişi")
      .sayi("Ambar_No", ambar);
  kart.sayi("ATutar", 0).sayi("BTutar", 0).sayi("Fatura_ID", 0).sayi("KDV_Dahil", 0).sayi("Dovizli_Tutar", 0);
  gunAlanlari(genelAlanlar(kart, b, b.t.saticilar[0]), an);
  const std::int64_t id = b.y.numara(izAlanlari(kart, an).sql() + "SELECT SCOPE_IDENTITY()", 1);
  std::int64_t toplam = 0, satirNo = 0;
  for (std::int64_t i = 0; i < b.stokSayisi(); ++i) {
    const Stok stok = b.stok(i);
    const StokOzu ozu = b.stokOzu(i);
    if (ozu.tukenen && !merkez) continue;
    const std::int64_t miktar = ozu.tukenen ? ozu.hiz : alimMiktari(b, ozu, ambar);
    Kayit satir = b.kayit("STOKHAREKET");
    satir.sayi("Stok_HareketKart_ID", id)
        .zaman("Tarih", an.tarih)
        .metin("Fis_No", fisNo)
        .sayi("Islem_No", ++satirNo);
    satir.metin("Islem_Tipi", "Açılış Fişi").metin("Satir_Tipi", "Mal").sayi("Stok_ID", stok.id);
    satir.metin("Stok_Kod", stok.kod)
        .metin("Stok_Ad", stok.ad)
        .sayi("Ambar_No", ambar)
        .metin("Birim", stok.birim);
    satir.sayi("Miktar", miktar)
        .sayi("RB_Takip", 0)
        .para("Birim_Fiyat", stok.alis)
        .sayi("KDV", 0)
        .metin("ISK", "0");
    satir.sayi("ISK_Tutar", 0).sayi("KDV_Tutar", 0).para("Tutar", miktar * stok.alis).sayi("Carpan", 1);
    satir.varsaSayi("TpISK", 0)
        .varsaSayi("TpISK_Tutar", 0)
        .varsaPara("KDVSizNet_Tutar", miktar * stok.alis)
        .varsaPara("KDVLiNet_Tutar", miktar * stok.alis);
    satir.sayi("Giris", miktar).sayi("Cikis", 0).para("Maliyet", stok.alis).sayi("Fatura_ID", 0);
    gunAlanlari(genelAlanlar(satir, b, b.t.saticilar[0]), an);
    b.y.biriktir(izAlanlari(satir.sayi("Dovizli_Tutar", 0), an));
    toplam += miktar * stok.alis;
    b.bildir(Tur::Stok, stok.id, miktar, ambar);
  }
  const std::string tutar = paraMetni(toplam);
  b.y.calistir("UPDATE STOKHAREKETKART SET Burut_Tutar=" + tutar + ",Ara_Toplam=" + tutar +
                   ",Net_Tutar=" + tutar + " WHERE Stok_HareketKart_ID =" + std::to_string(id),
               0);
}

void cariAcilislari(Baglam& b, const An& an) {
  Kayit fis = b.kayit("CARIHAREKET");
  fis.zaman("Tarih", an.tarih)
      .metin("Fis_No", "1")
      .metin("Islem_Tipi", "Açılış Fişi")
      .sayi("ATutar", 0)
      .sayi("BTutar", 0);
  const std::int64_t fisId = b.y.numara(izAlanlari(fis, an).sql() + "SELECT SCOPE_IDENTITY()", 1);
  std::int64_t no = 0;
  for (std::int64_t i = 0; i < b.cariSayisi(); ++i) {
    if (!b.r.yuzde(60)) continue;
    const Cari cari = b.cari(i);
    const std::int64_t tutar = b.r.arasi(5'000, 900'000);
    const bool borclu = !Baglam::saticiMi(i);
    const Kur kur = b.kur(cari, an.tarih);
    const std::int64_t dovizli = kur.tutar(tutar);
    Kayit kayit = b.kayit("ACILIS");
    kayit.zaman("Tarih", an.tarih).metin("Fis_No", std::to_string(++no)).metin("Islem_Tipi", "Açılış Fişi");
    cariAlanlari(kayit, cari).sayi("Vade", b.r.arasi(0, 60));
    kayit.para("ATutar", borclu ? 0 : tutar)
        .para("BTutar", borclu ? tutar : 0)
        .sayi("CariHareket_Fis_ID", fisId);
    kayit.para("Dovizli_Borc", borclu ? dovizli : 0).para("Dovizli_Alacak", borclu ? 0 : dovizli);
    gunAlanlari(genelAlanlar(kayit.para("Dovizli_Tutar", dovizli), b.t.saticilar[0], kur), an);
    b.y.biriktir(izAlanlari(kayit, an));
    b.bildir(Tur::Cari, cari.id, borclu ? tutar : -tutar);
  }
  b.y.bosalt();
}

void bankaAcilisi(Baglam& b, const Banka& banka, const Kur& kur, const std::string& fisNo, const An& an) {
  const std::int64_t tutar = b.r.arasi(2'000'000, 9'000'000);
  Kayit kayit = b.kayit("BANKAHAREKET");
  kayit.zaman("Tarih", an.tarih).metin("Fis_No", fisNo).metin("Islem_Tipi", "Banka Açılış Fişi");
  kayit.sayi("Hesap_ID", banka.id).metin("Hesap_No", banka.no).metin("Hesap_Ad", banka.ad);
  kayit.metin("Banka_Ad", banka.banka).para("BTutar", tutar).sayi("ATutar", 0);
  gunAlanlari(genelAlanlar(kayit.para("Dovizli_Tutar", kur.tutar(tutar)), b.t.saticilar[0], kur), an);
  b.y.calistir(izAlanlari(kayit, an).sql(), 1);
  b.bildir(Tur::Banka, banka.id, tutar);
}

void kasaBankaAcilislari(Baglam& b, const An& an) {
  int no = 0;
  for (const Kasa& kasa : b.t.kasalar) {
    const std::int64_t tutar = b.r.arasi(500'000, 2'500'000);
    Kayit kayit = b.kayit("KASAHAREKET");
    kayit.zaman("Tarih", an.tarih).metin("Fis_No", std::to_string(++no)).metin("Cari_Unvan", kasa.ad);
    kayit.metin("Islem_Tipi", "Kasa Açılış Fişi").sayi("Kasa_ID", kasa.id).metin("Kasa_Kod", kasa.kod);
    kayit.metin("Kasa_Ad", kasa.ad).para("BTutar", tutar).sayi("ATutar", 0).sayi("Dovizli_Tutar", 0);
    gunAlanlari(genelAlanlar(kayit, b, b.t.saticilar[0]), an);
    b.y.calistir(izAlanlari(kayit, an).sql(), 1);
    b.bildir(Tur::Kasa, kasa.id, tutar);
  }
  no = 0;
  for (const Banka& banka : b.t.bankalar) bankaAcilisi(b, banka, b.lira(), std::to_string(++no), an);
  bankaAcilisi(b, b.t.dovizHesabi, b.kur(b.cari(7), an.tarih), std::to_string(++no), an);
}

}  // namespace

void kartlariYaz(Baglam& b) {
  const An an = b.donem.an(0, acilisSaati);
  b.adim("Stok kartları yazılıyor");
  for (std::int64_t i = 0; i < b.stokSayisi(); ++i) {
    stokKarti(b, b.stok(i), b.stokOzu(i).hiz, an);
    b.ilerle(i, b.stokSayisi());
  }
  b.ilkStok = ilkNumara(b, "STOKKART", "Stok_ID", "Stok_ID>0", b.stokSayisi());
  b.adim("Fiyatlar yazılıyor");
  for (std::int64_t i = 0; i < b.stokSayisi(); ++i) stokFiyatlari(b, b.stok(i), an);
  b.y.bosalt();
  const std::int64_t once = b.y.numara("SELECT ISNULL(MAX(Cari_ID),0) FROM CARIKART", 0);
  b.adim("Cari kartlar yazılıyor");
  for (std::int64_t i = 0; i < b.cariSayisi(); ++i) {
    cariKarti(b, b.cari(i), an);
    b.ilerle(i, b.cariSayisi());
  }
  b.ilkCari = ilkNumara(b, "CARIKART", "Cari_ID", "Cari_ID>" + std::to_string(once), b.cariSayisi());
}

void acilislariYaz(Baglam& b) {
  b.adim("Açılış fişleri yazılıyor");
  const An an = b.donem.an(0, acilisSaati);
  for (std::size_t i = 0; i < 3; ++i) stokAcilisi(b, b.t.ambarlar[i], i == 0, an);
  cariAcilislari(b, an);
  kasaBankaAcilislari(b, an);
}

}  // namespace company::ornek
