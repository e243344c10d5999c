#include "company/ornek/baglam.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "company/ornek/kelimeler.h"
#include "company/schema/schema.h"
#include "session/metin.h"

namespace company::ornek {

namespace {

using namespace std::chrono;

enum CardKind : std::uint64_t { stokTuru = 1, cariTuru = 2 };

sys_days gunu(const db::DateTime& t) {
  return sys_days{year{t.year} / month{static_cast<unsigned>(t.month)} / day{static_cast<unsigned>(t.day)}};
}

db::DateTime tarihi(sys_days gun) {
  const year_month_day ymd{gun};
  db::DateTime out;
  out.year = static_cast<int>(ymd.year());
  out.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
  out.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
  return out;
}

std::string sirali(const char* bicim, std::int64_t sayi) {
  char text[32];
  std::snprintf(text, sizeof text, bicim, static_cast<long long>(sayi));
  return text;
}

// Twelve digits and their check digit.
std::string barkodu(std::int64_t sira) {
  std::string text = sirali("869%09lld", sira + 1);
  int toplam = 0;
  for (std::size_t i = 0; i < text.size(); ++i) toplam += (text[i] - '0') * (i % 2 == 0 ? 1 : 3);
  text += static_cast<char>('0' + (10 - toplam % 10) % 10);
  return text;
}

// Picks by one digit of a card's own number after another.
class Secim {
 public:
  explicit Secim(std::uint64_t sayi) : sayi_(sayi) {}
  template <class T>
  const T& biri(std::span<const T> liste) {
    return liste[sonraki(liste.size())];
  }
  std::size_t sonraki(std::size_t kac) {
    const std::size_t out = sayi_ % kac;
    sayi_ /= kac;
    return out;
  }

 private:
  std::uint64_t sayi_;
};

}  // namespace

db::DateTime gunSonra(const db::DateTime& tarih, std::int64_t gun) {
  return tarihi(gunu(tarih) + days{gun});
}

An::An(const db::DateTime& gun, const db::DateTime& zaman) : tarih(gun), saat(zaman) {
  const std::string gunSql = db::literal(gun), saatSql = db::literal(zaman);
  gunDegerleri = saatSql + ",'" + gunMetni(gun) + "','" + ayMetni(gun) + "'," + db::literal(ayAdi(gun)) +
                 "," + std::to_string(haftaNo(gun));
  const std::string iz = "1," + gunSql + "," + saatSql;
  izDegerleri = iz + "," + iz;
}

An Donem::an(std::int64_t gun, std::int64_t saniye) const {
  db::DateTime saat;
  saat.hour = static_cast<int>(saniye / 3600);
  saat.minute = static_cast<int>(saniye / 60 % 60);
  saat.second = static_cast<int>(saniye % 60);
  return {gunSonra(bas, gun), saat};
}

// Weeks begin on Monday; what lies before the year's first Monday is week 1.
int haftaNo(const db::DateTime& tarih) {
  const sys_days gun = gunu(tarih), yilbasi = sys_days{year{tarih.year} / January / 1};
  const auto kayma = static_cast<int>(weekday{yilbasi}.iso_encoding()) - 1;
  return (static_cast<int>((gun - yilbasi).count()) + kayma) / 7 + 1;
}

Baglam::Baglam(session::Oturum& oturum, Donem d, const OrnekVeriSecenekleri& secenekler,
               const OrnekDinleyici& dinleyici)
    : y(*oturum.Baglanti),
      r(secenekler.tohum),
      donem(d),
      olcek(secenekler.olcek),
      oturum_(oturum),
      tohum_(secenekler.tohum),
      dinleyici_(dinleyici) {}

Stok Baglam::stok(std::int64_t sira) const {
  Secim secim(karistir(tohum_, stokTuru, static_cast<std::uint64_t>(sira)));
  const UrunGrubu& grup = urunGruplari()[static_cast<std::size_t>(sira) % urunGruplari().size()];
  const Urun& urun = secim.biri(grup.urunler);
  Stok out;
  out.id = ilkStok + sira;
  out.kod = std::string(grup.kod) + sirali(".%06lld", sira + 1);
  out.marka = secim.biri(markalar());
  const std::string_view cesit = secim.biri(cesitler());
  out.ad = out.marka + " " + std::string(urun.ad) + (cesit.empty() ? "" : " ") + std::string(cesit);
  out.birim = grup.birim;
  out.grup = grup.ad;
  out.kdv = grup.kdv;
  out.barkod = barkodu(sira);
  out.alis = urun.fiyat * static_cast<std::int64_t>(80 + secim.sonraki(45)) / 100;
  out.satis = out.alis * static_cast<std::int64_t>(115 + secim.sonraki(40)) / 100;
  return out;
}

Cari Baglam::cari(std::int64_t sira) const {
  Secim secim(karistir(tohum_, cariTuru, static_cast<std::uint64_t>(sira)));
  Cari out;
  out.id = ilkCari + sira;
  out.hesap = saticiMi(sira) ? "320" : "120";
  out.kod = out.hesap + sirali(".%06lld", sira + 1);
  if (!saticiMi(sira) && secim.sonraki(4) == 0) {
    out.unvan = std::string(secim.biri(adlar())) + " " + std::string(secim.biri(soyadlar()));
  } else {
    out.unvan = std::string(secim.biri(firmaKokleri())) + " " + std::string(secim.biri(isKollari())) + " " +
                std::string(secim.biri(firmaEkleri()));
  }
  return out;
}

Cari Baglam::birAlici() {
  const std::int64_t besli = r.arasi(0, cariSayisi() / 5 - 1);
  return cari(besli * 5 + r.arasi(0, 3));
}

Cari Baglam::birSatici() {
  return cari(r.arasi(0, cariSayisi() / 5 - 1) * 5 + 4);
}

// Most of the work is done in the first warehouse.
int Baglam::birAmbar() {
  const std::int64_t zar = r.arasi(0, 9);
  return t.ambarlar[zar < 7 ? 0 : zar < 9 ? 1 : 2];
}

std::int64_t Baglam::birKisi() {
  return t.saticilar[static_cast<std::size_t>(r.arasi(0, static_cast<std::int64_t>(t.saticilar.size()) - 1))];
}

An Baglam::an(std::int64_t i, std::int64_t adet) {
  constexpr std::int64_t acilis = 8 * birSaat + birSaat / 2, kapanis = 19 * birSaat;
  return donem.an(i * donem.gunler / adet, r.arasi(acilis, kapanis));
}

std::string Baglam::fisNo(const std::string& anahtar) {
  const auto [at, yeni] = sayaclar_.try_emplace(anahtar, 0);
  if (yeni) at->second = y.numara("SELECT IP FROM IP_" + anahtar, 0);
  return sirali("%010lld", ++at->second);
}

namespace {

// Columns of the upgrade that the generator itself writes, each in every row of its table.
constexpr std::array yazilanlar = {"POSHAREKET.ATutar", "POSHAREKET.BTutar"};
constexpr std::array satirdaYazilanlar = {"TpISK", "TpISK_Tutar", "KDVSizNet_Tutar", "KDVLiNet_Tutar"};

bool yazilir(const std::string& tablo, const std::string& kolon) {
  return std::ranges::find(yazilanlar, tablo + "." + kolon) != yazilanlar.end() ||
         std::ranges::find(satirdaYazilanlar, kolon) != satirdaYazilanlar.end();
}

}  // namespace

void Baglam::ekleriOku() {
  const auto rows = y.baglanti().query(
      "SELECT o.name,c.name FROM sysobjects o,syscolumns c WHERE c.id=o.id AND o.type='U'");
  for (std::int64_t i = 0; rows && i < rows->count(); ++i) {
    const schema::TableDef* tablo = schema::table(rows->value(i, 0).trimmed());
    const schema::ColumnDef* kolon = tablo ? tablo->column(rows->value(i, 1).trimmed()) : nullptr;
    if (!kolon || kolon->stage != schema::Stage::Upgrade) continue;
    TabloEki& ek = ekler_[tablo->name];
    ek.kolonlar.insert(kolon->name);
    if (!kolon->hasFill || yazilir(tablo->name, kolon->name)) continue;
    ek.dolguKolonlari += "," + kolon->name;
    ek.dolgular += "," + (kolon->type.starts_with("CHAR") ? db::literal(kolon->fill) : kolon->fill);
  }
}

Kayit Baglam::kayit(std::string_view tablo) const {
  const auto ek = ekler_.find(tablo);
  return Kayit(tablo, ek == ekler_.end() ? nullptr : &ek->second);
}

void Baglam::adim(const std::string& ad) {
  oturum_.ilerleme->text(ad);
}

void Baglam::ilerle(std::int64_t i, std::int64_t adet) {
  oturum_.ilerleme->step(i + 1, adet);
  oturum_.ilerleme->pump();
}

std::string ayAdi(const db::DateTime& tarih) {
  return session::Ay_Adi(tarih.month);
}

std::string ayMetni(const db::DateTime& tarih) {
  return sirali("%02lld", tarih.month);
}

std::string gunMetni(const db::DateTime& tarih) {
  return sirali("%02lld", tarih.day);
}

Kayit& gunAlanlari(Kayit& kayit, const An& an) {
  return kayit.ham("Saat,Gun,AY_Index,Ay,Hafta", an.gunDegerleri);
}

Kayit& izAlanlari(Kayit& kayit, const An& an) {
  return kayit.ham("YR_Kullanici,YR_Tarih,YR_Saat,Deg_Kullanici,Deg_Tarih,Deg_Saat", an.izDegerleri);
}

Kayit& cariAlanlari(Kayit& kayit, const Cari& cari) {
  return kayit.sayi("Cari_ID", cari.id).metin("Cari_Kod", cari.kod).metin("Cari_Unvan", cari.unvan);
}

Kayit& genelAlanlar(Kayit& kayit, const Baglam& b, std::int64_t satici) {
  return kayit.sayi("Kullanici_ID", 1)
      .sayi("Satici_ID", satici)
      .sayi("Ozel", 0)
      .sayi("Doviz_ID", b.t.dovizId)
      .sayi("KUR", 0);
}

}  // namespace company::ornek
