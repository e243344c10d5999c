#include "company/ornek/baglam.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <numeric>

#include "company/ornek/kelimeler.h"
#include "company/schema/schema.h"
#include "session/metin.h"

namespace company::ornek {

using Tur = OrnekHareketi::Tur;

namespace {

using namespace std::chrono;

enum CardKind : std::uint64_t { stokTuru = 1, cariTuru = 2, hizTuru = 3 };

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
      dinleyici_(dinleyici),
      stoklar_(static_cast<std::size_t>(stokSayisi())),
      cariler_(static_cast<std::size_t>(cariSayisi())) {}

namespace {

// The place of thing `sira` among the `kac` names that there are: no two of the same round share one, and the
// seed shifts them.
std::size_t adSirasi(std::uint64_t tohum, std::uint64_t tur, std::int64_t sira, std::size_t kac) {
  const std::uint64_t n = kac;
  std::uint64_t adim = n * 618 / 1000 + 1;  // far apart, and without a common divisor it meets every place
  while (std::gcd(adim, n) != 1) ++adim;
  return static_cast<std::size_t>((static_cast<std::uint64_t>(sira) % n * adim + karistir(tohum, tur, 0)) %
                                  n);
}

// Initials for the second and later bearers of a person's name: none, "A.", "B." ... "A. A."
std::string arali(std::int64_t tur) {
  constexpr std::string_view harfler = "ABCDEFGHKLMNRSTYZ";
  std::string out;
  for (; tur > 0; tur /= static_cast<std::int64_t>(harfler.size()))
    out = std::string(
              1, harfler[static_cast<std::size_t>((tur - 1) % static_cast<std::int64_t>(harfler.size()))]) +
          ". " + out;
  return out;
}

}  // namespace

Stok Baglam::stok(std::int64_t sira) const {
  Secim secim(karistir(tohum_, stokTuru, static_cast<std::uint64_t>(sira)));
  const auto grupSayisi = static_cast<std::int64_t>(urunGruplari().size());
  const UrunGrubu& grup = urunGruplari()[static_cast<std::size_t>(sira % grupSayisi)];
  const std::int64_t gruptaki = sira / grupSayisi;
  const std::size_t adSayisi = grup.urunler.size() * markalar().size() * cesitler().size();
  Secim ad(adSirasi(tohum_, stokTuru, gruptaki, adSayisi));
  const Urun& urun = ad.biri(grup.urunler);
  Stok out;
  out.id = ilkStok + sira;
  out.kod = std::string(grup.kod) + sirali(".%06lld", sira + 1);
  out.marka = ad.biri(markalar());
  const std::string_view cesit = ad.biri(cesitler());
  const std::int64_t kacinci = gruptaki / static_cast<std::int64_t>(adSayisi);
  out.ad = out.marka + " " + std::string(urun.ad) + (cesit.empty() ? "" : " ") + std::string(cesit) +
           (kacinci == 0 ? "" : sirali(" M%lld", kacinci + 1));
  out.birim = grup.birim;
  out.birim2 = grup.birim2;
  out.katsayi = grup.katsayi;
  out.grup = grup.ad;
  out.kdv = grup.kdv;
  out.barkod = barkodu(2 * sira);
  out.barkod2 = barkodu(2 * sira + 1);
  out.alis = urun.fiyat * static_cast<std::int64_t>(80 + secim.sonraki(45)) / 100;
  out.satis = out.alis * static_cast<std::int64_t>(115 + secim.sonraki(40)) / 100;
  return out;
}

Cari Baglam::cari(std::int64_t sira) const {
  Secim secim(karistir(tohum_, cariTuru, static_cast<std::uint64_t>(sira)));
  const bool satici = saticiMi(sira);
  Cari out;
  out.id = ilkCari + sira;
  out.hesap = satici ? "320" : "120";
  out.kod = out.hesap + sirali(".%06lld", sira + 1);
  out.doviz = dovizi(sira);
  const std::size_t kisi = secim.sonraki(adlar().size());
  if (!satici && secim.sonraki(4) == 0) {
    const std::size_t kac = adlar().size() * soyadlar().size();
    Secim ad(adSirasi(tohum_, cariTuru, sira, kac));
    out.yetkili = ad.biri(adlar());
    out.unvan =
        out.yetkili + " " + arali(sira / static_cast<std::int64_t>(kac)) + std::string(ad.biri(soyadlar()));
  } else {
    const std::size_t kac = firmaKokleri().size() * isKollari().size() * firmaEkleri().size();
    Secim ad(adSirasi(tohum_, cariTuru, sira, kac));
    const std::int64_t kacinci = sira / static_cast<std::int64_t>(kac);
    out.unvan = std::string(ad.biri(firmaKokleri())) + " " + std::string(ad.biri(isKollari())) + " " +
                std::string(ad.biri(firmaEkleri())) +
                (kacinci == 0 ? "" : sirali(" %lld. ŞUBE", kacinci + 1));
    out.yetkili = std::string(adlar()[kisi]) + " " + std::string(hitap(kisi));
  }
  return out;
}

StokOzu Baglam::stokOzu(std::int64_t sira) const {
  Secim secim(karistir(tohum_, hizTuru, static_cast<std::uint64_t>(sira)));
  const std::size_t satilan = secim.sonraki(10);
  return {sira, satilan < 2 ? 8 : satilan < 5 ? 3 : 1, secim.sonraki(23) == 0};
}

StokOzu Baglam::birStok() {
  constexpr int enIyi = 8;
  for (;;) {
    const StokOzu out = stokOzu(r.arasi(0, stokSayisi() - 1));
    if (r.arasi(1, enIyi) <= out.hiz) return out;
  }
}

std::int64_t Baglam::birCari(bool satici) {
  const std::int64_t besli = r.arasi(0, cariSayisi() / 5 - 1);
  return besli * 5 + (satici ? 4 : r.arasi(0, 3));
}

Cari Baglam::birAlici() {
  return cari(birCari(false));
}

Cari Baglam::birSatici() {
  return cari(birCari(true));
}

Baglam::Hesaplasma Baglam::hesaplasma(bool satici, std::int64_t enAz, std::int64_t enCok) {
  constexpr int deneme = 20;
  std::int64_t enBorclu = -1, enCokBorc = 0;
  for (int i = 0; i < deneme || enBorclu < 0; ++i) {
    const std::int64_t sira = birCari(satici);
    if (dovizi(sira) != 0) continue;
    const std::int64_t borc = cariler_[static_cast<std::size_t>(sira)] * (satici ? -1 : 1);
    if (borc >= enAz) return {cari(sira), std::min(borc, r.arasi(enAz, enCok))};
    if (enBorclu >= 0 && borc <= enCokBorc) continue;
    enBorclu = sira;
    enCokBorc = borc;
  }
  return {cari(enBorclu), enAz};  // an advance by the one that owes most
}

// Rates rise over the year, by a little every week.
Kur Baglam::kur(const Cari& cari, const db::DateTime& gun) const {
  if (cari.doviz == 0) return lira();
  constexpr std::array<std::int64_t, 2> yilbasi = {17'860, 23'120}, haftalik = {15, 11};
  const auto i = static_cast<std::size_t>(cari.doviz - 1);
  return {t.dovizler[i + 1], yilbasi[i] + haftalik[i] * (haftaNo(gun) - 1)};
}

std::int64_t Baglam::kalan(std::int64_t sira, int ambar) const {
  const auto at = std::ranges::find(t.ambarlar, ambar) - t.ambarlar.begin();
  return stoklar_[static_cast<std::size_t>(sira)][static_cast<std::size_t>(at)];
}

std::int64_t Baglam::bakiye(Tur tur, std::int64_t id) const {
  if (tur == Tur::Cari) return cariler_[static_cast<std::size_t>(id - ilkCari)];
  const auto at = bakiyeler_.find({tur, id});
  return at == bakiyeler_.end() ? 0 : at->second;
}

void Baglam::bildir(Tur tur, std::int64_t id, std::int64_t deger, int ambar) {
  if (tur == Tur::Stok || tur == Tur::Transfer) {
    const auto at = std::ranges::find(t.ambarlar, ambar) - t.ambarlar.begin();
    stoklar_[static_cast<std::size_t>(id - ilkStok)][static_cast<std::size_t>(at)] +=
        static_cast<std::int32_t>(deger);
  } else if (tur == Tur::Cari) {
    cariler_[static_cast<std::size_t>(id - ilkCari)] += deger;
  } else if (tur != Tur::Hesap) {
    bakiyeler_[{tur, id}] += deger;
  }
  if (dinleyici_) dinleyici_({tur, id, deger, ambar});
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

std::string onBindeMetni(std::int64_t onBinde) {
  return std::to_string(onBinde / 10'000) + sirali(".%04lld", onBinde % 10'000);
}

Kayit& kurAlanlari(Kayit& kayit, const Kur& kur) {
  kayit.sayi("Doviz_ID", kur.dovizId);
  return kur.onBinde == 0 ? kayit.sayi("KUR", 0) : kayit.metin("KUR", onBindeMetni(kur.onBinde));
}

Kayit& genelAlanlar(Kayit& kayit, const Baglam& b, std::int64_t satici) {
  return genelAlanlar(kayit, satici, b.lira());
}

Kayit& genelAlanlar(Kayit& kayit, std::int64_t satici, const Kur& kur) {
  return kurAlanlari(kayit.sayi("Kullanici_ID", 1).sayi("Satici_ID", satici).sayi("Ozel", 0), kur);
}

}  // namespace company::ornek
