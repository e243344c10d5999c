// What all steps of the generator share: the period, the definitions, the cards and the counters.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "company/ornek/rastgele.h"
#include "company/ornek/secenekler.h"
#include "company/ornek/yazici.h"
#include "session/oturum.h"

namespace company::ornek {

// A moment of work: the day and, in columns of its own, the time. Nearly every row tells it in many columns,
// so their values are written out once.
struct An {
  An() = default;
  An(const db::DateTime& gun, const db::DateTime& zaman);
  db::DateTime tarih, saat;
  std::string gunDegerleri, izDegerleri;  // of gunAlanlari and izAlanlari
};

// The day `gun` days after `tarih`.
db::DateTime gunSonra(const db::DateTime& tarih, std::int64_t gun);

constexpr std::int64_t birSaat = 3600;  // saniye

struct Donem {
  db::DateTime bas;
  int gunler = 0;  // days in it
  An an(std::int64_t gun, std::int64_t saniye) const;
  db::DateTime bit() const { return gunSonra(bas, gunler - 1); }  // the last one
};

struct Stok {
  std::int64_t id = 0;
  std::string kod, ad, birim, barkod, grup, marka;
  std::int64_t alis = 0, satis = 0;  // kuruş, without tax
  int kdv = 0;
};
struct Cari {
  std::int64_t id = 0;
  std::string kod, unvan;
  std::string hesap;  // ledger account
};

struct Kasa {
  std::int64_t id = 0;
  std::string kod, ad;
};
struct Anlasma {
  std::int64_t id = 0;
  int binde = 0;  // bank's share in thousandths
  int gun = 0;
};
struct Banka {
  std::int64_t id = 0;
  std::string no, ad, banka, sube;
  std::vector<Anlasma> anlasmalar;
};
struct Tanim {  // a service or an expense
  std::int64_t id = 0;
  std::string kod, ad;
  std::int64_t fiyat = 0;
};

struct Tanimlar {
  std::vector<std::int64_t> saticilar;  // of them the first stands for none
  std::int64_t dovizId = 1;             // no currency
  std::vector<int> ambarlar;
  std::vector<std::int64_t> isyerleri;
  std::vector<Kasa> kasalar;
  std::vector<Banka> bankalar;
  std::vector<Tanim> hizmetler, masraflar;
  std::map<std::string, std::int64_t> hesaplar;  // ledger accounts by code
};

class Baglam {
 public:
  Baglam(session::Oturum& oturum, Donem donem, const OrnekVeriSecenekleri& secenekler,
         const OrnekDinleyici& dinleyici);

  Yazici y;
  Rastgele r;
  Donem donem;
  int olcek;
  Tanimlar t;
  std::int64_t ilkStok = 0, ilkCari = 0;  // identities of the first cards; the others follow

  std::int64_t stokSayisi() const { return 500LL * olcek; }
  std::int64_t cariSayisi() const { return 300LL * olcek; }
  Stok stok(std::int64_t sira) const;
  Cari cari(std::int64_t sira) const;
  static bool saticiMi(std::int64_t sira) { return sira % 5 == 4; }  // every fifth account sells to us
  Stok birStok() { return stok(r.arasi(0, stokSayisi() - 1)); }
  Cari birAlici();
  Cari birSatici();
  int birAmbar();
  std::int64_t birKisi();  // a salesperson

  // The moment of the `i`-th of `adet` documents of a kind: they lie in order over the whole period.
  An an(std::int64_t i, std::int64_t adet);
  // The next number of the counter IP_`anahtar`, zero padded to ten.
  std::string fisNo(const std::string& anahtar);
  const std::map<std::string, std::int64_t>& sayaclar() const { return sayaclar_; }

  // Looks which columns the upgrade has added; without it rows are those of a base company.
  void ekleriOku();
  Kayit kayit(std::string_view tablo) const;

  void bildir(OrnekHareketi::Tur tur, std::int64_t id, std::int64_t deger, int ambar = 0) const {
    if (dinleyici_) dinleyici_({tur, id, deger, ambar});
  }
  // Names the step; then each document of it moves the bar.
  void adim(const std::string& ad);
  void ilerle(std::int64_t i, std::int64_t adet);

 private:
  session::Oturum& oturum_;
  std::uint64_t tohum_;
  const OrnekDinleyici& dinleyici_;
  std::map<std::string, std::int64_t> sayaclar_;
  std::map<std::string, TabloEki, std::less<>> ekler_;
};

// Blocks of columns that most tables have.
Kayit& gunAlanlari(Kayit& kayit, const An& an);  // Saat, Gun, AY_Index, Ay, Hafta
Kayit& izAlanlari(Kayit& kayit, const An& an);   // who wrote the row and when
Kayit& cariAlanlari(Kayit& kayit, const Cari& cari);
// Kullanici_ID, Satici_ID, Ozel, Doviz_ID, KUR
Kayit& genelAlanlar(Kayit& kayit, const Baglam& b, std::int64_t satici);
int haftaNo(const db::DateTime& tarih);
std::string ayAdi(const db::DateTime& tarih);     // OCAK
std::string ayMetni(const db::DateTime& tarih);   // 01
std::string gunMetni(const db::DateTime& tarih);  // 31

}  // namespace company::ornek
