// Definitions: the first half of the run, step by step.
#include <array>

#include "rollover/adimlar.h"

namespace rollover {

namespace {

constexpr int herZaman = -1;

struct TanimAdimi {
  int ust;                 // top row that decides; herZaman without one
  std::string_view mesaj;  // empty: the text before stays
  void (*yap)(Baglam& b, std::string_view tablo);
  std::string_view tablo;
};

void muhasebe(Baglam& b, std::string_view) {
  Muhasebe_Kartlari_Devret(b);
}
void mustahsil(Baglam& b, std::string_view) {
  mustahsilAktar(b);
}
void sablonHareket(Baglam& b, std::string_view tablo) {
  cocuklariSil(b, tablo);
  Alt_Tablo_Aktar(b, tablo);
}

constexpr std::array<TanimAdimi, 19> adimlar = {{
    {ustMuhasebe, "Muhasebe Hesap Kartları Devrediliyor....!", muhasebe, ""},
    {ustDoviz, "Döviz Tanımları Devrediliyor....!", Tablo_Aktar, "DOVIZTANIM"},
    {ustSatici, "Satıcı Tanımları Devrediliyor....!", Tablo_Aktar, "SATICI"},
    {ustAmbar, "Ambar Tanımları Devrediliyor....!", Tablo_Aktar, "AMBAR"},
    {ustHizmet, "Hizmet Tanımları Devrediliyor....!", Tablo_Aktar, "HIZMETTANIM"},
    {ustMasraf, "Masraf Tanımları Devrediliyor....!", Tablo_Aktar, "MASRAFTANIM"},
    {ustIndirim, "İndirim Tanımları Devrediliyor....!", Tablo_Aktar, "INDIRIMTANIM"},
    {ustFiyat, "Fiyat Tanımları Devrediliyor....!", Tablo_Aktar, "FIYATTANIM"},
    {ustMustahsil, "Müstahsil Tanımları Devrediliyor....!", mustahsil, ""},
    {ustSablon, "Ödeme Şablon Kartları Tanımları Devrediliyor....!", Tablo_Aktar, "SABLONKART"},
    {ustSablon, "Ödeme Şablon Hareketleri Tanımları Devrediliyor....!", sablonHareket, "SABLONHAREKET"},
    {ustIsyeri, "İşyeri Tanımları Devrediliyor....!", Tablo_Aktar, "ISYERITANIM"},
    {herZaman, "KDV Grup Tanımları Devrediliyor....!", Tablo_Aktar, "KDVGRUPLARI"},
    {herZaman, "Barkod Gramaj Tanımları Devrediliyor....!", Tablo_Aktar, "TARTIBARKOD"},
    {herZaman, "", Tablo_Aktar, "RENKTANIM"},
    {herZaman, "", Tablo_Aktar, "BEDENTANIM"},
    {herZaman, "", Tablo_Aktar, "DROPTANIM"},
    {herZaman, "", Tablo_Aktar, "BEDENSTANDARTLARI"},
    // Not emptied before: a repeated run doubles the details.
    {herZaman, "", Alt_Tablo_Aktar, "BEDENSTANDARTLARIDETAY"},
}};

struct KartAdimi {
  int ust;
  bool odak;  // the top row takes the focus first
  void (*yap)(Baglam& b);
};
constexpr std::array<KartAdimi, 10> kartAdimlari = {{
    {ustKasa, true, Kasa_Kartlari_Devret},
    {ustCari, true, Cari_Kartlari_Devret},
    {ustStok, true, Stok_Kartlari_Devret},
    {ustBanka, true, Banka_Kartlari_Devret},
    {ustSiparis, true, Siparisleri_Devret},
    {ustCek, true, Cekleri_Devret},
    {ustSenet, true, Senetleri_Devret},
    {ustRecete, false, Uretimreceteleri_Devret},
    // Takes no focus of its own: it asks the row behind the one that had it last.
    {herZaman, false, Personel_Kartlari_Devret},
    {ustFisNo, false, Fis_Numaralari_Devret},
}};

constexpr auto butunAdimlar = static_cast<std::int64_t>(adimlar.size() + kartAdimlari.size());

}  // namespace

void Tanimlari_Devret(Baglam& b) {
  std::int64_t biten = 0;
  for (const TanimAdimi& adim : adimlar) {
    b.o.ilerleme->whole(biten++, butunAdimlar);
    if (adim.ust != herZaman && !b.g.secenekler.ust(adim.ust)) continue;
    if (!adim.mesaj.empty()) b.mesaj(std::string(adim.mesaj));
    adim.yap(b, adim.tablo);
    b.adim(1, 1);
  }
}

void Kartlari_Devret(Baglam& b) {
  auto biten = static_cast<std::int64_t>(adimlar.size());
  for (const KartAdimi& adim : kartAdimlari) {
    b.o.ilerleme->whole(biten++, butunAdimlar);
    if (adim.ust != herZaman && !b.g.secenekler.ust(adim.ust)) continue;
    if (adim.odak) b.odak.ustte(adim.ust);
    adim.yap(b);
    b.adim(1, 1);
  }
  b.o.ilerleme->whole(butunAdimlar, butunAdimlar);
}

}  // namespace rollover
