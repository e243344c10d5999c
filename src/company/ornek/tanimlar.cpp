// Definitions: warehouses, workplaces, salespeople, tax groups, cash boxes, banks, services, expenses.
#include <array>
#include <utility>

#include "company/ornek/adimlar.h"
#include "company/ornek/kelimeler.h"

namespace company::ornek {

namespace {

template <class T>
void listeOku(Baglam& b, const std::string& sql, std::vector<T>& liste) {
  const auto rows = b.y.baglanti().query(sql);
  for (std::int64_t i = 0; rows && i < rows->count(); ++i)
    liste.push_back(static_cast<T>(rows->value(i, 0).integer()));
}

std::int64_t ekleVeNumara(Baglam& b, const Kayit& kayit) {
  return b.y.numara(kayit.sql() + "SELECT SCOPE_IDENTITY()", 1);
}

void ambarlar(Baglam& b, const An& an) {
  listeOku(b, "SELECT Ambar_No FROM AMBAR ORDER BY Ambar_No", b.t.ambarlar);
  constexpr std::array<std::string_view, 3> adlari = {"Merkez", "Şube", "Depo"};
  for (int no = 1; b.t.ambarlar.size() < adlari.size(); ++no) {
    if (std::find(b.t.ambarlar.begin(), b.t.ambarlar.end(), no) != b.t.ambarlar.end()) continue;
    Kayit kayit = b.kayit("AMBAR");
    kayit.sayi("Ambar_No", no)
        .metin("Ambar_Ad", adlari[b.t.ambarlar.size()])
        .sayi("Merkez_Ambar", b.t.ambarlar.empty() ? 1 : 0)
        .sayi("Kullanici_ID", 1);
    b.y.biriktir(izAlanlari(kayit, an));
    b.t.ambarlar.push_back(no);
  }
  b.y.bosalt();
}

void isyerleri(Baglam& b, const An& an) {
  Kayit kayit = b.kayit("ISYERITANIM");
  kayit.metin("Isyeri_Kodu", "ŞUBE").metin("Isyeri_Adi", "ÇARŞI ŞUBESİ").sayi("Ambar_No", b.t.ambarlar[1]);
  kayit.sayi("Durum", 1).sayi("Kullanici_ID", 1);
  const auto var = b.y.baglanti().query("SELECT Isyeri_ID FROM ISYERITANIM WHERE Isyeri_Kodu='ŞUBE'");
  if (!var || var->count() == 0) b.y.calistir(izAlanlari(kayit, an).sql(), 1);
  listeOku(b, "SELECT Isyeri_ID FROM ISYERITANIM ORDER BY Isyeri_ID", b.t.isyerleri);
}

void saticilar(Baglam& b, const An& an) {
  constexpr int adet = 5;
  for (std::size_t i = 0; i < adet; ++i) {
    Kayit kayit = b.kayit("SATICI");
    kayit.metin("Satici_Kodu", "S0" + std::to_string(i + 1))
        .metin("Satici_Adi", std::string(adlar()[i * 3]) + " " + std::string(soyadlar()[i * 2]))
        .sayi("Ambar_No", b.t.ambarlar[0])
        .sayi("Durum", 1)
        .sayi("Kullanici_ID", 1);
    b.y.biriktir(izAlanlari(kayit, an));
  }
  b.y.bosalt();
  listeOku(b, "SELECT Satici_ID FROM SATICI ORDER BY Satici_ID", b.t.saticilar);
}

void kdvGruplari(Baglam& b, const An& an) {
  int no = 1;
  for (const auto& [ad, oran] : {std::pair{"GIDA", 8}, std::pair{"TEMEL GIDA", 1}}) {
    Kayit kayit = b.kayit("KDVGRUPLARI");
    kayit.sayi("Departman_No", ++no).metin("Departman_Adi", ad).metin("KDV", std::to_string(oran));
    b.y.biriktir(izAlanlari(kayit.sayi("Kullanici_ID", 1), an));
  }
  b.y.bosalt();
}

// The company's own money comes first. Rates are told once a week.
void dovizler(Baglam& b, const An& an) {
  for (const auto& [kod, ad] : {std::pair{"USD", "AMERİKAN DOLARI"}, std::pair{"EUR", "AVRO"}}) {
    const std::string var = std::string("SELECT COUNT(*) FROM DOVIZTANIM WHERE Doviz_Kod='") + kod + "'";
    if (b.y.numara(var, 0) > 0) continue;
    Kayit kayit = b.kayit("DOVIZTANIM");
    kayit.metin("Doviz_Kod", kod).metin("Doviz_Ad", ad).sayi("Default_Doviz", 0).sayi("Kullanici_ID", 1);
    b.y.calistir(izAlanlari(kayit, an).sql(), 1);
  }
  b.t.dovizler.push_back(b.y.numara("SELECT MIN(Doviz_ID) FROM DOVIZTANIM", 0));
  for (const char* kod : {"USD", "EUR"})
    b.t.dovizler.push_back(
        b.y.numara(std::string("SELECT Doviz_ID FROM DOVIZTANIM WHERE Doviz_Kod='") + kod + "'", 0));
  Cari dovizli;
  for (std::int64_t gun = 0; gun < b.donem.gunler; gun += 7) {
    const An o = b.donem.an(gun, acilisSaati);
    for (dovizli.doviz = 1; dovizli.doviz <= 2; ++dovizli.doviz) {
      const Kur kur = b.kur(dovizli, o.tarih);
      Kayit kayit = b.kayit("GUNLUKDOVIZ");
      kayit.sayi("Doviz_ID", kur.dovizId).metin("KUR", onBindeMetni(kur.onBinde)).zaman("Tarih", o.tarih);
      b.y.biriktir(izAlanlari(kayit, o));
    }
  }
  b.y.bosalt();
}

// Each cash box has two counters of its own.
void kasaSayaclari(Baglam& b, std::int64_t kasaId) {
  for (const char* anahtar : {"KNTF", "KNOF"}) {
    const std::string tablo = "IP_" + (anahtar + std::to_string(kasaId));
    const auto var =
        b.y.baglanti().query("SELECT id FROM sysobjects WHERE name='" + tablo + "' AND type='U'");
    if (var && var->count() > 0) continue;
    b.y.calistir("CREATE TABLE " + tablo + "(IP CHAR(10))", 0);
    b.y.calistir("INSERT INTO " + tablo + "(IP) VALUES ('0000000000')", 1);
  }
}

void kasalar(Baglam& b, const An& an) {
  constexpr std::array<std::pair<const char*, const char*>, 4> liste = {{{"MERKEZ", "MERKEZ KASA"},
                                                                         {"SUBE", "ŞUBE KASASI"},
                                                                         {"DEPO", "DEPO KASASI"},
                                                                         {"MASRAF", "MASRAF KASASI"}}};
  for (std::size_t i = 0; i < liste.size(); ++i) {
    Kasa kasa{0, std::string("KS.") + liste[i].first, liste[i].second};
    Kayit kayit = b.kayit("KASAKART");
    kayit.metin("Kasa_Kod", kasa.kod).metin("Kasa_Ad", kasa.ad).sayi("Kullanici_ID", 1);
    kayit.sayi("Isyeri_ID", b.t.isyerleri[i == 1 ? b.t.isyerleri.size() - 1 : 0]).metin("MHesap_Kod", "100");
    kasa.id = ekleVeNumara(b, izAlanlari(kayit, an));
    kasaSayaclari(b, kasa.id);
    b.t.kasalar.push_back(std::move(kasa));
  }
}

void anlasmalar(Baglam& b, Banka& banka, const An& an) {
  struct Sart {
    const char* taksit;
    const char* aciklama;
    int binde, gun;
  };
  for (const Sart& sart : {Sart{"1", "Tek Çekim", 18, 1}, Sart{"6", "Altı Taksit", 52, 30}}) {
    Kayit kayit = b.kayit("POSANLASMA");
    kayit.sayi("Hesap_ID", banka.id)
        .metin("Kesinti_Orani", paraMetni(std::int64_t{sart.binde} * 10))
        .sayi("Opsiyon_Gun", sart.gun);
    kayit.metin("Taksit_Sayisi", sart.taksit).metin("Aciklama", sart.aciklama).sayi("Aktif", 1);
    banka.anlasmalar.push_back({ekleVeNumara(b, izAlanlari(kayit, an)), sart.binde, sart.gun});
  }
}

Banka bankaHesabi(Baglam& b, std::size_t sira, std::string ad, std::string_view bankaAdi, const An& an) {
  Banka banka;
  banka.no = "10" + std::to_string(sira + 1) + "-4455" + std::to_string(661 + 7 * sira);
  banka.ad = std::move(ad);
  banka.banka = bankaAdi;
  banka.sube = bankaSubeleri()[sira];
  const std::size_t ilgili = 3 * sira + 4;
  Kayit kayit = b.kayit("HESAPKART");
  kayit.metin("Hesap_No", banka.no).metin("Hesap_Ad", banka.ad).metin("Banka_Ad", banka.banka);
  kayit.metin("Sube", banka.sube)
      .metin("Ilgili", std::string(adlar()[ilgili]) + " " + std::string(hitap(ilgili)));
  kayit.metin("Tel", "(0212) 555 0" + std::to_string(100 + sira)).sayi("POS", 1).metin("MHesap_Kod", "102");
  banka.id = ekleVeNumara(b, izAlanlari(kayit.sayi("Kullanici_ID", 1), an));
  return banka;
}

void bankalar(Baglam& b, const An& an) {
  constexpr std::array<std::string_view, 3> adlari = {"BATIYURT BANK", "ANAYOL BANKASI", "KUZEYKÖY BANK"};
  for (std::size_t i = 0; i < adlari.size(); ++i) {
    Banka banka = bankaHesabi(b, i, "TİCARİ MEVDUAT " + std::to_string(i + 1), adlari[i], an);
    anlasmalar(b, banka, an);
    b.t.bankalar.push_back(std::move(banka));
  }
  b.t.dovizHesabi = bankaHesabi(b, adlari.size(), "DÖVİZ TEVDİAT (USD)", adlari.front(), an);
}

struct TanimSatiri {
  const char* kod;
  const char* ad;
  std::int64_t fiyat;
};

void tanimListesi(Baglam& b, const An& an, std::string_view tablo, std::span<const TanimSatiri> satirlar,
                  std::vector<Tanim>& liste) {
  for (const TanimSatiri& satir : satirlar) {
    Kayit kayit = b.kayit(tablo);
    kayit.metin("Kod", satir.kod)
        .metin("Ad", satir.ad)
        .sayi("KDV", 18)
        .sayi("KDV_Dahil", 0)
        .sayi("Kullanici_ID", 1);
    liste.push_back({ekleVeNumara(b, izAlanlari(kayit, an)), satir.kod, satir.ad, satir.fiyat});
  }
}

constexpr std::array hizmetSatirlari = {
    TanimSatiri{"H.001", "NAKLİYE BEDELİ", 7500}, TanimSatiri{"H.002", "MONTAJ HİZMETİ", 12000},
    TanimSatiri{"H.003", "BAKIM HİZMETİ", 15000}, TanimSatiri{"H.004", "PAKETLEME HİZMETİ", 2500}};
constexpr std::array masrafSatirlari = {
    TanimSatiri{"M.001", "ELEKTRİK GİDERİ", 85000},  TanimSatiri{"M.002", "KİRA GİDERİ", 450000},
    TanimSatiri{"M.003", "AKARYAKIT GİDERİ", 32000}, TanimSatiri{"M.004", "TELEFON GİDERİ", 18000},
    TanimSatiri{"M.005", "KIRTASİYE GİDERİ", 9500},  TanimSatiri{"M.006", "BAKIM ONARIM GİDERİ", 54000}};
constexpr std::array indirimSatirlari = {TanimSatiri{"I.001", "SATIŞ İSKONTOSU", 0}};

}  // namespace

void tanimlariYaz(Baglam& b) {
  b.adim("Tanımlar yazılıyor");
  const An an = b.donem.an(0, acilisSaati);
  ambarlar(b, an);
  isyerleri(b, an);
  saticilar(b, an);
  kdvGruplari(b, an);
  dovizler(b, an);
  kasalar(b, an);
  bankalar(b, an);
  tanimListesi(b, an, "HIZMETTANIM", hizmetSatirlari, b.t.hizmetler);
  tanimListesi(b, an, "MASRAFTANIM", masrafSatirlari, b.t.masraflar);
  std::vector<Tanim> indirimler;
  tanimListesi(b, an, "INDIRIMTANIM", indirimSatirlari, indirimler);
}

}  // namespace company::ornek
