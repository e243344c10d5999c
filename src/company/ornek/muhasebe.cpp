// Ledger slips, and the accounts that they need.
#include <algorithm>
#include <array>
#include <span>

#include "company/ornek/adimlar.h"
#include "company/ornek/satirlar.h"

namespace company::ornek {

namespace {

using Tur = OrnekHareketi::Tur;

struct Hesap {
  const char* kod;
  const char* ad;
};
constexpr std::array hesaplar = {
    Hesap{"100", "KASA"},        Hesap{"101", "ALINAN ÇEKLER"},     Hesap{"102", "BANKALAR"},
    Hesap{"120", "ALICILAR"},    Hesap{"153", "TİCARİ MALLAR"},     Hesap{"191", "İNDİRİLECEK KDV"},
    Hesap{"255", "DEMİRBAŞLAR"}, Hesap{"320", "SATICILAR"},         Hesap{"391", "HESAPLANAN KDV"},
    Hesap{"500", "SERMAYE"},     Hesap{"600", "YURT İÇİ SATIŞLAR"}, Hesap{"770", "GENEL YÖNETİM GİDERLERİ"}};

// A line takes `pay` percent of the slip's amount, tax 18 percent of it; the last line takes what is missing.
struct Kalip {
  const char* hesap;
  bool borc;
  int pay;
};
struct FisTuru {
  const char* tip;
  const char* sayac;
  int adet;  // at scale 1
  int siraTipi;
  const char* aciklama;
  std::array<Kalip, 3> satirlar;
  int uzunluk;
};
constexpr std::array fisTurleri = {
    FisTuru{"Mahsup Fişi",
            "MUHMAHSUP",
            90,
            4,
            "Satış faturası",
            {{{"120", true, 118}, {"600", false, 100}, {"391", false, 0}}},
            3},
    FisTuru{"Mahsup Fişi",
            "MUHMAHSUP",
            50,
            4,
            "Alış faturası",
            {{{"153", true, 100}, {"191", true, 18}, {"320", false, 0}}},
            3},
    FisTuru{"Mahsup Fişi", "MUHMAHSUP", 25, 4, "Gelen havale", {{{"102", true, 100}, {"120", false, 0}}}, 2},
    FisTuru{"Mahsup Fişi", "MUHMAHSUP", 15, 4, "Alınan çek", {{{"101", true, 100}, {"120", false, 0}}}, 2},
    FisTuru{
        "Tahsil Fişi", "MUHTAHSIL", 40, 2, "Nakit tahsilat", {{{"100", true, 100}, {"120", false, 0}}}, 2},
    FisTuru{"Tediye Fişi", "MUHTEDIYE", 15, 3, "Nakit ödeme", {{{"320", true, 100}, {"100", false, 0}}}, 2},
    FisTuru{"Tediye Fişi",
            "MUHTEDIYE",
            15,
            3,
            "Gider ödemesi",
            {{{"770", true, 100}, {"191", true, 18}, {"100", false, 0}}},
            3},
};

void hesaplariHazirla(Baglam& b) {
  const An an = b.donem.an(0, 9 * birSaat);
  for (const Hesap& hesap : hesaplar) {
    const std::string sorgu =
        std::string("SELECT MHesap_ID FROM MUHKART WHERE MHesap_Kod='") + hesap.kod + "'";
    std::int64_t id = b.y.numara(sorgu, 0);
    if (id == 0) {
      Kayit kayit = b.kayit("MUHKART");
      kayit.metin("MHesap_Kod", hesap.kod).metin("MHesap_Ad", hesap.ad).metin("Ana_Hesap_Kod", hesap.kod);
      kayit.sayi("HesapSeviyesi", 1).sayi("Doviz_ID", b.t.dovizId).sayi("Kullanici_ID", 1);
      kayit.zaman("Ekleme_Tarihi", an.tarih).zaman("Ekleme_Saati", an.saat);
      b.y.calistir(izAlanlari(kayit, an).sql(), 1);
      id = b.y.numara(sorgu, 0);
    }
    b.t.hesaplar[hesap.kod] = id;
  }
}

std::string saatMetni(const db::DateTime& t) {
  const auto iki = [](int n) { return (n < 10 ? "0" : "") + std::to_string(n); };
  return iki(t.hour) + ":" + iki(t.minute) + ":" + iki(t.second);
}

// Lines wait until enough of their account are there: the balance trigger reads all lines of the one account
// that a statement touched, so the statements never mix accounts, and are the fewer the more lines there are.
class SatirDeposu {
 public:
  explicit SatirDeposu(Baglam& b) : boy_(enAz * static_cast<std::size_t>(std::min(b.olcek, 5))), b_(b) {}
  void ekle(const std::string& hesap, Kayit kayit) {
    std::vector<Kayit>& liste = bekleyen_[hesap];
    liste.push_back(std::move(kayit));
    if (liste.size() < boy_) return;
    yaz(liste);
    liste.clear();
  }
  void bosalt() {
    for (const auto& [hesap, liste] : bekleyen_) yaz(liste);
    bekleyen_.clear();
  }

 private:
  static constexpr std::size_t enAz = 40;

  // In a few lengths only: each has to be prepared.
  void yaz(std::span<const Kayit> kayitlar) {
    for (const std::size_t boy : {boy_, enAz, std::size_t{10}, std::size_t{1}})
      for (; kayitlar.size() >= boy; kayitlar = kayitlar.subspan(boy))
        b_.y.calistir(topluSql(kayitlar.first(boy)), static_cast<std::int64_t>(boy));
  }

  std::size_t boy_;
  Baglam& b_;
  std::map<std::string, std::vector<Kayit>> bekleyen_;
};

struct FisSatiri {
  std::string hesap;
  std::int64_t borc = 0, alacak = 0;
};

struct Fis {
  std::string tip, no, aciklama;
  int siraTipi = 4;
  An an;
  std::vector<FisSatiri> satirlar;
};

std::int64_t fisKarti(Baglam& b, const Fis& fis) {
  std::int64_t toplam = 0;
  for (const FisSatiri& satir : fis.satirlar) toplam += satir.borc;
  Kayit kayit = b.kayit("MUHFISKART");
  kayit.zaman("Tarih", fis.an.tarih)
      .metin("Fis_No", fis.no)
      .metin("Islem_Tipi", fis.tip)
      .metin("MFAciklama", fis.aciklama);
  kayit.para("BTutar", toplam).para("ATutar", toplam).sayi("Aktif", 1).metin("Saat", saatMetni(fis.an.saat));
  kayit.metin("Gun", gunMetni(fis.an.tarih))
      .metin("Ay_Index", ayMetni(fis.an.tarih))
      .metin("Ay", ayAdi(fis.an.tarih));
  kayit.sayi("Hafta", haftaNo(fis.an.tarih))
      .metin("Yil", std::to_string(fis.an.tarih.year))
      .sayi("Kullanici_ID", 1);
  kayit.zaman("Ekleme_Tarihi", fis.an.tarih).metin("Ekleme_Saati", saatMetni(fis.an.saat));
  kayit.sayi("Fis_Sira_Tipi", fis.siraTipi).sayi("Entegre_ID", 0).sayi("Modul_No", 0).sayi("Y_Sayisi", 0);
  return b.y.numara(izAlanlari(kayit, fis.an).sql() + "SELECT SCOPE_IDENTITY()", 1);
}

Kayit fisSatiri(const Baglam& b, const Fis& fis, std::int64_t fisId, int sira, const FisSatiri& satir) {
  const std::int64_t hesapId = b.t.hesaplar.at(satir.hesap);
  Kayit kayit = b.kayit("MUHFISHAR");
  kayit.sayi("FisSat_No", sira)
      .sayi("Fis_ID", fisId)
      .zaman("Tarih", fis.an.tarih)
      .sayi("BorcAlacak_ID", satir.borc > 0 ? 1 : 2);
  kayit.sayi("Ana_Hesap_ID", hesapId).sayi("MHesap_ID", hesapId).metin("MHesap_Kod", satir.hesap);
  kayit.metin("MFHAciklama", fis.aciklama).para("BTutar", satir.borc).para("ATutar", satir.alacak);
  kayit.sayi("Dv_BTutar", 0).sayi("Dv_Atutar", 0).sayi("Doviz_ID", b.t.dovizId).sayi("Kur", 0);
  kayit.sayi("Masraf_Merkezi_ID", 0).sayi("Entegre_ID", 0).sayi("Modul_No", 0).sayi("BorcMiktar", 0);
  kayit.sayi("AlacakMiktar", 0)
      .metin("Birim", "")
      .metin("Saat", saatMetni(fis.an.saat))
      .metin("Gun", gunMetni(fis.an.tarih));
  kayit.sayi("Hafta", haftaNo(fis.an.tarih))
      .metin("AY", ayAdi(fis.an.tarih))
      .metin("AY_Index", ayMetni(fis.an.tarih));
  kayit.metin("Yil", std::to_string(fis.an.tarih.year)).metin("Islem_Tipi", fis.tip).sayi("Aktif", 1);
  b.bildir(Tur::Hesap, hesapId, satir.borc - satir.alacak);
  return izAlanlari(kayit, fis.an);
}

void fisYaz(Baglam& b, SatirDeposu& depo, const Fis& fis) {
  const std::int64_t id = fisKarti(b, fis);
  int sira = 0;
  for (const FisSatiri& satir : fis.satirlar) depo.ekle(satir.hesap, fisSatiri(b, fis, id, ++sira, satir));
}

void acilisFisi(Baglam& b, SatirDeposu& depo) {
  Fis fis{"Açılış Fişi", b.fisNo("MUHACILIS"), "Dönem açılışı", 1, b.donem.an(0, 9 * birSaat), {}};
  std::int64_t toplam = 0;
  for (const char* hesap : {"100", "102", "120", "153", "255"}) {
    const std::int64_t tutar = b.r.arasi(1'000'000, 9'000'000);
    fis.satirlar.push_back({hesap, tutar, 0});
    toplam += tutar;
  }
  const std::int64_t saticilar = toplam / 3;
  fis.satirlar.push_back({"320", 0, saticilar});
  fis.satirlar.push_back({"500", 0, toplam - saticilar});
  fisYaz(b, depo, fis);
}

Fis donemFisi(Baglam& b, const FisTuru& tur, const An& an) {
  Fis fis{tur.tip, b.fisNo(tur.sayac), tur.aciklama, tur.siraTipi, an, {}};
  const std::int64_t tutar = b.r.arasi(50, 5'000) * 100;
  std::int64_t fark = 0;
  for (int i = 0; i < tur.uzunluk; ++i) {
    const Kalip& kalip = tur.satirlar[static_cast<std::size_t>(i)];
    const bool son = i + 1 == tur.uzunluk;
    const std::int64_t deger = son ? (kalip.borc ? -fark : fark) : tutar * kalip.pay / 100;
    fis.satirlar.push_back({kalip.hesap, kalip.borc ? deger : 0, kalip.borc ? 0 : deger});
    fark += kalip.borc ? deger : -deger;
  }
  return fis;
}

}  // namespace

void muhasebeYaz(Baglam& b) {
  b.adim("Muhasebe fişleri yazılıyor");
  hesaplariHazirla(b);
  SatirDeposu depo(b);
  acilisFisi(b, depo);
  for (const FisTuru& tur : fisTurleri) {
    const std::int64_t adet = static_cast<std::int64_t>(tur.adet) * b.olcek;
    for (std::int64_t i = 0; i < adet; ++i) {
      fisYaz(b, depo, donemFisi(b, tur, b.an(i, adet)));
      b.ilerle(i, adet);
    }
  }
  depo.bosalt();
}

}  // namespace company::ornek
