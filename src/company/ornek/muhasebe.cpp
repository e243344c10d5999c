// Ledger slips, and the accounts that they need.
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <memory>
#include <set>
#include <span>
#include <tuple>
#include <utility>

#include "company/ornek/adimlar.h"
#include "company/ornek/muhasebe_kurallari.h"
#include "company/ornek/satirlar.h"

namespace company::ornek {

namespace {

using Tur = OrnekHareketi::Tur;

void hesaplariHazirla(Baglam& b) {
  const An an = b.donem.an(0, acilisSaati);
  for (const Hesap& hesap : hesaplar()) {
    const std::string sorgu =
        std::string("SELECT MHesap_ID FROM MUHKART WHERE MHesap_Kod='") + hesap.kod + "'";
    std::int64_t id = b.y.numara(sorgu, 0);
    if (id == 0) {
      Kayit kayit = b.kayit("MUHKART");
      kayit.metin("MHesap_Kod", hesap.kod).metin("MHesap_Ad", hesap.ad).metin("Ana_Hesap_Kod", hesap.kod);
      kayit.sayi("HesapSeviyesi", 1).sayi("Doviz_ID", b.lira().dovizId).sayi("Kullanici_ID", 1);
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
  std::int64_t yevmiye = 0;  // its place in the journal
  An an;
  std::vector<FisSatiri> satirlar;
};

std::int64_t fisKarti(Baglam& b, const Fis& fis) {
  std::int64_t toplam = 0;
  for (const FisSatiri& satir : fis.satirlar) toplam += satir.borc;
  Kayit kayit = b.kayit("MUHFISKART");
  kayit.zaman("Tarih", fis.an.tarih)
      .metin("Fis_No", fis.no)
      .metin("Yevmiye_No", std::to_string(fis.yevmiye))
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

Kayit fisSatiri(Baglam& b, const Fis& fis, std::int64_t fisId, int sira, const FisSatiri& satir) {
  const std::int64_t hesapId = b.t.hesaplar.at(satir.hesap);
  Kayit kayit = b.kayit("MUHFISHAR");
  kayit.sayi("FisSat_No", sira)
      .sayi("Fis_ID", fisId)
      .zaman("Tarih", fis.an.tarih)
      .sayi("BorcAlacak_ID", satir.borc > 0 ? 1 : 2);
  kayit.sayi("Ana_Hesap_ID", hesapId).sayi("MHesap_ID", hesapId).metin("MHesap_Kod", satir.hesap);
  kayit.metin("MFHAciklama", fis.aciklama).para("BTutar", satir.borc).para("ATutar", satir.alacak);
  kurAlanlari(kayit.sayi("Dv_BTutar", 0).sayi("Dv_Atutar", 0), b.lira());
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

std::int64_t fisYaz(Baglam& b, SatirDeposu& depo, const Fis& fis) {
  const std::int64_t id = fisKarti(b, fis);
  int sira = 0;
  for (const FisSatiri& satir : fis.satirlar) depo.ekle(satir.hesap, fisSatiri(b, fis, id, ++sira, satir));
  return id;
}

// A day has one slip of each kind: what comes into the till, what goes out of it, the rest.
struct FisTuru {
  const char* tip;
  const char* sayac;
  int siraTipi;
  const char* aciklama;
};
constexpr FisTuru acilisTuru{"Açılış Fişi", "MUHACILIS", 1, "Dönem açılışı"};
constexpr std::array gunTurleri = {FisTuru{"Tahsil Fişi", "MUHTAHSIL", 2, "Günün tahsilatları"},
                                   FisTuru{"Tediye Fişi", "MUHTEDIYE", 3, "Günün ödemeleri"},
                                   FisTuru{"Mahsup Fişi", "MUHMAHSUP", 4, "Günün mahsupları"}};

const FisTuru& turu(const Kural& kural) {
  const auto kasada = [](const char* hesap) { return std::string_view(hesap) == "100"; };
  return std::ranges::any_of(kural.borc, kasada)     ? gunTurleri[0]
         : std::ranges::any_of(kural.alacak, kasada) ? gunTurleri[1]
                                                     : gunTurleri[2];
}

// Debit and credit of one slip by account.
using Toplamlar = std::map<std::string, std::array<std::int64_t, 2>>;

void topluyaEkle(Toplamlar& to, const Kural& kural, const db::Rows& rows, std::int64_t row) {
  for (std::size_t i = 0; i < 3; ++i) {
    const bool borclu = *kural.borc[i] != 0, alacakli = *kural.alacak[i] != 0;
    if (!borclu && !alacakli) continue;
    const std::int64_t kurus = std::llround(rows.value(row, static_cast<int>(i) + 2).real() * 100);
    if (borclu) to[kural.borc[i]][0] += kurus;
    if (alacakli) to[kural.alacak[i]][1] += kurus;
  }
}

// Sums of documents by day and kind; one query serves all rules that ask for the same.
class GunlukToplamlar {
 public:
  explicit GunlukToplamlar(Baglam& b) : b_(b) {}

  void topla(const Kural& kural, const std::function<Toplamlar&(std::int64_t gun)>& to) {
    const auto [at, yeni] = bilinen_.try_emplace({kural.kaynak, kural.tutarlar});
    if (yeni) at->second = oku(kural);
    const db::Rows& rows = *at->second;
    for (std::int64_t r = 0; r < rows.count(); ++r)
      if (rows.value(r, 1).trimmed() == kural.tip)
        topluyaEkle(to(rows.value(r, 0).integer()), kural, rows, r);
  }

 private:
  std::unique_ptr<db::Rows> oku(const Kural& kural) {
    std::string toplamlar(kural.tutarlar);
    for (std::size_t at = toplamlar.find(','); at != std::string::npos; at = toplamlar.find(',', at + 6))
      toplamlar.replace(at, 1, "),SUM(");
    return b_.y.baglanti().query("SELECT DATEDIFF(d," + db::literal(b_.donem.bas) +
                                 ",d.Tarih),d.Islem_Tipi,SUM(" + toplamlar + ") FROM " + kural.kaynak +
                                 " GROUP BY d.Tarih,d.Islem_Tipi");
  }

  Baglam& b_;
  std::map<std::pair<std::string, std::string>, std::unique_ptr<db::Rows>> bilinen_;
};

std::vector<FisSatiri> satirlari(const Toplamlar& toplamlar) {
  std::vector<FisSatiri> out;
  for (const std::size_t yan : {0U, 1U})
    for (const auto& [hesap, tutar] : toplamlar)
      if (tutar[yan] != 0) out.push_back({hesap, yan == 0 ? tutar[0] : 0, yan == 1 ? tutar[1] : 0});
  return out;
}

// Each document is tied to the slip that holds it. Kinds that lie in one table and come into slips of one
// kind are tied together: the table is read once for all of them.
class Baglantilar {
 public:
  void ekle(const Kural& kural, const FisTuru& tur) {
    if (kural.numara != nullptr)
      turler_[{kural.kaynak, kural.numara, kural.modul, tur.tip}].insert(kural.tip);
  }
  void yaz(Baglam& b) const {
    const An an = b.donem.an(b.donem.gunler - 1, 20 * birSaat);
    for (const auto& [yer, tipler] : turler_) {
      const auto& [kaynak, numara, modul, fisTipi] = yer;
      std::string liste;
      for (const std::string& tip : tipler) liste += (liste.empty() ? "'" : ",'") + tip + "'";
      b.y.topluEkle(
          "INSERT INTO MUHASEBEBAGLANTI (MFis_ID,Entegre_ID,Entegre_Islem_Tipi,Modul_No,YR_Kullanici,"
          "YR_Tarih,YR_Saat,Deg_Kullanici,Deg_Tarih,Deg_Saat) SELECT DISTINCT f.Fis_ID,d." +
          numara + ",d.Islem_Tipi," + std::to_string(modul) + "," + an.izDegerleri + " FROM MUHFISKART f," +
          kaynak + " AND d.Islem_Tipi IN (" + liste + ") AND f.Tarih=d.Tarih AND f.Islem_Tipi='" + fisTipi +
          "'");
    }
  }

 private:
  std::map<std::tuple<std::string, std::string, int, std::string>, std::set<std::string>> turler_;
};

void acilisFisi(Baglam& b, SatirDeposu& depo, GunlukToplamlar& gunluk) {
  constexpr std::int64_t demirbas = 2'500'000;
  Toplamlar toplamlar;
  for (const Kural& kural : acilisKurallari()) {
    gunluk.topla(kural, [&](std::int64_t) -> Toplamlar& { return toplamlar; });
  }
  toplamlar["255"][0] = demirbas;
  std::int64_t& sermaye = toplamlar["500"][1];
  sermaye += demirbas - toplamlar["500"][0];
  toplamlar["500"][0] = 0;
  fisYaz(b, depo,
         {acilisTuru.tip, b.fisNo(acilisTuru.sayac), acilisTuru.aciklama, acilisTuru.siraTipi, 1,
          b.donem.an(0, acilisSaati), satirlari(toplamlar)});
  Baglantilar baglantilar;
  for (const Kural& kural : acilisKurallari()) baglantilar.ekle(kural, acilisTuru);
  baglantilar.yaz(b);
}

}  // namespace

// The ledger is what the modules tell, day by day, so that each of its accounts holds what its module holds.
void muhasebeYaz(Baglam& b) {
  b.adim("Muhasebe fişleri yazılıyor");
  hesaplariHazirla(b);
  SatirDeposu depo(b);
  GunlukToplamlar gunluk(b);
  acilisFisi(b, depo, gunluk);
  std::vector<std::array<Toplamlar, gunTurleri.size()>> gunler(static_cast<std::size_t>(b.donem.gunler));
  for (const Kural& kural : kurallar()) {
    const auto yer = static_cast<std::size_t>(&turu(kural) - gunTurleri.data());
    gunluk.topla(kural,
                 [&](std::int64_t gun) -> Toplamlar& { return gunler[static_cast<std::size_t>(gun)][yer]; });
  }
  std::int64_t yevmiye = 1;
  for (std::int64_t gun = 0; gun < b.donem.gunler; ++gun) {
    const auto& toplamlar = gunler[static_cast<std::size_t>(gun)];
    for (std::size_t n = 0; n < toplamlar.size(); ++n) {
      if (toplamlar[n].empty()) continue;
      const FisTuru& tur = gunTurleri[n];
      fisYaz(b, depo,
             {tur.tip, b.fisNo(tur.sayac), tur.aciklama, tur.siraTipi, ++yevmiye,
              b.donem.an(gun, 19 * birSaat + 600 * static_cast<std::int64_t>(n)), satirlari(toplamlar[n])});
    }
    b.ilerle(gun, b.donem.gunler);
  }
  depo.bosalt();
  Baglantilar baglantilar;
  for (const Kural& kural : kurallar()) baglantilar.ekle(kural, turu(kural));
  baglantilar.yaz(b);
}

}  // namespace company::ornek
