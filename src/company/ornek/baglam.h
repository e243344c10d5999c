// What all steps of the generator share: the period, the definitions, the cards and the counters.
#pragma once

#include <array>
#include <map>
#include <string>
#include <utility>
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
  std::string birim2, barkod2;  // what it is packed in
  int katsayi = 1;              // pieces in a pack
  // Kuruş, without tax. The buying price of an item never changes, so that its cost is the same by every way
  // of reckoning: the ledger's, the slips' and the moving average of a rollover.
  std::int64_t alis = 0, satis = 0;
  int kdv = 0;
};
// What chance asks of an item before its card is made.
struct StokOzu {
  std::int64_t sira = 0;
  int hiz = 1;           // how well it sells, 1 to 8
  bool tukenen = false;  // no longer bought
};
struct Cari {
  std::int64_t id = 0;
  std::string kod, unvan;
  std::string yetkili;  // whom one speaks to
  std::string hesap;    // ledger account
  int doviz = 0;        // place of the account's currency among the company's; 0 for none
};

// What one unit of a currency costs; for none 0, and then the amount in it is 0, too.
struct Kur {
  std::int64_t dovizId = 1;
  std::int64_t onBinde = 0;  // ten-thousandths of a lira
  std::int64_t tutar(std::int64_t kurus) const { return onBinde == 0 ? 0 : kurus * 10'000 / onBinde; }
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
  std::vector<std::int64_t> dovizler;   // of them the first stands for none
  std::vector<int> ambarlar;
  std::vector<std::int64_t> isyerleri;
  std::vector<Kasa> kasalar;
  std::vector<Banka> bankalar;
  Banka dovizHesabi;  // in dollars
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
  bool eksiStok = false;                  // the company lets stock go below nothing

  std::int64_t stokSayisi() const { return 500LL * olcek; }
  std::int64_t cariSayisi() const { return 300LL * olcek; }
  Stok stok(std::int64_t sira) const;
  Cari cari(std::int64_t sira) const;
  static bool saticiMi(std::int64_t sira) { return sira % 5 == 4; }  // every fifth account sells to us
  StokOzu stokOzu(std::int64_t sira) const;
  // An item, the better selling ones more often.
  StokOzu birStok();
  // Place of an account's currency among the company's; 0 for none.
  static int dovizi(std::int64_t sira) { return sira % 50 == 7 ? 1 : sira % 50 == 39 ? 2 : 0; }
  Cari birAlici();
  Cari birSatici();
  // Who owes what can be collected, or is owed what can be paid: an account in the company's own money and an
  // amount of at most `enCok` that leaves it on its side.
  struct Hesaplasma {
    Cari cari;
    std::int64_t tutar = 0;
  };
  Hesaplasma birBorclu(std::int64_t enAz, std::int64_t enCok) { return hesaplasma(false, enAz, enCok); }
  Hesaplasma birAlacakli(std::int64_t enAz, std::int64_t enCok) { return hesaplasma(true, enAz, enCok); }
  Kur kur(const Cari& cari, const db::DateTime& gun) const;
  Kur lira() const { return {t.dovizler.front(), 0}; }
  int birAmbar();
  // What the warehouse holds of an item, and what stands in a cash box, bank account or current account.
  std::int64_t kalan(std::int64_t sira, int ambar) const;
  std::int64_t bakiye(OrnekHareketi::Tur tur, std::int64_t id) const;
  std::int64_t birKisi();  // a salesperson

  // The moment of the `i`-th of `adet` documents of a kind: they lie in order over the whole period.
  An an(std::int64_t i, std::int64_t adet);
  // The next number of the counter IP_`anahtar`, zero padded to ten.
  std::string fisNo(const std::string& anahtar);
  const std::map<std::string, std::int64_t>& sayaclar() const { return sayaclar_; }

  // Looks which columns the upgrade has added; without it rows are those of a base company.
  void ekleriOku();
  Kayit kayit(std::string_view tablo) const;

  void bildir(OrnekHareketi::Tur tur, std::int64_t id, std::int64_t deger, int ambar = 0);
  // Names the step; then each document of it moves the bar.
  void adim(const std::string& ad);
  void ilerle(std::int64_t i, std::int64_t adet);

 private:
  Hesaplasma hesaplasma(bool satici, std::int64_t enAz, std::int64_t enCok);
  std::int64_t birCari(bool satici);

  session::Oturum& oturum_;
  std::uint64_t tohum_;
  const OrnekDinleyici& dinleyici_;
  // The only things that grow with the scale: twenty bytes for an item or an account.
  std::vector<std::array<std::int32_t, 3>> stoklar_;
  std::vector<std::int64_t> cariler_;
  std::map<std::pair<OrnekHareketi::Tur, std::int64_t>, std::int64_t> bakiyeler_;
  std::map<std::string, std::int64_t> sayaclar_;
  std::map<std::string, TabloEki, std::less<>> ekler_;
};

// Blocks of columns that most tables have.
Kayit& gunAlanlari(Kayit& kayit, const An& an);  // Saat, Gun, AY_Index, Ay, Hafta
Kayit& izAlanlari(Kayit& kayit, const An& an);   // who wrote the row and when
Kayit& cariAlanlari(Kayit& kayit, const Cari& cari);
// Kullanici_ID, Satici_ID, Ozel, Doviz_ID, KUR
Kayit& genelAlanlar(Kayit& kayit, const Baglam& b, std::int64_t satici);
Kayit& genelAlanlar(Kayit& kayit, std::int64_t satici, const Kur& kur);
Kayit& kurAlanlari(Kayit& kayit, const Kur& kur);  // Doviz_ID, KUR
std::string onBindeMetni(std::int64_t onBinde);    // "1.8050"
constexpr std::int64_t acilisSaati = 8 * birSaat;  // before any other document of the day
int haftaNo(const db::DateTime& tarih);
std::string ayAdi(const db::DateTime& tarih);     // OCAK
std::string ayMetni(const db::DateTime& tarih);   // 01
std::string gunMetni(const db::DateTime& tarih);  // 31

}  // namespace company::ornek
