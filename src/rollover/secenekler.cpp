#include "rollover/secenekler.h"

#include <array>

namespace rollover {

namespace {

// Blanks and the missing letter of "Karşılksız" as the tree has always shown them.
constexpr std::array<SecenekSatiri, 33> satirlar = {{
    {"Kasa", ustKasa, 0},
    {"Kasa Bakiyeleri Devredilsin mi ?", ustKasa, 1},
    {"Cari Hesap", ustCari, 0},
    {"Cari Hesap  Bakiyeleri Devredilsin mi ?", ustCari, 1},
    {"Vadelendirme Yapılsın mı ?", ustCari, 2},
    {"Stok", ustStok, 0},
    {"Stok  Bakiyeleri Devredilsin mi ?", ustStok, 1},
    {"Birim Maliyetler Devredilsin mi ?", ustStok, 2},
    {"Satış Fiyatları devredilsin mi ?", ustStok, 3},
    {"Alış Fiyatları devredilsin mi ?", ustStok, 4},
    {"Banka", ustBanka, 0},
    {"Banka Bakiyeleri Devredilsin mi ?", ustBanka, 1},
    {"Pos Hareketleri Devredilsin mi ?", ustBanka, 2},
    {"Sipariş", ustSiparis, 0},
    {"Yalnızca Bekleyen Miktarları Aktar", ustSiparis, 1},
    {"Çek", ustCek, 0},
    {"Karşılksız Çekler Devredilsin mi?", ustCek, 1},
    {"Senet", ustSenet, 0},
    {"Karşılıksız Senetler Devredilsin mi ?", ustSenet, 1},
    {"Muhasebe", ustMuhasebe, 0},
    {"Hesap Bakiyeleri Devredilsin mi?", ustMuhasebe, 1},
    {"Üretim Reçeteleri Devredilsin mi ?", ustRecete, 0},
    {"Döviz Tanımları Devredilsin mi ?", ustDoviz, 0},
    {"Satıcı Tanımları Devredilsin mi ?", ustSatici, 0},
    {"Ambar Tanımları Devredilsin mi ?", ustAmbar, 0},
    {"Hizmet Tanımları Devredilsin mi ?", ustHizmet, 0},
    {"Masraf Tanımları Devredilsin mi ?", ustMasraf, 0},
    {"İndirim Tanımları Devredilsin mi ?", ustIndirim, 0},
    {"Fiyat Tanımları Devredilsin mi ?", ustFiyat, 0},
    {"Müstahsil Tanımları Devredilsin mi ?", ustMustahsil, 0},
    {"Ödeme Şablonları Tanımları Devredilsin mi ?", ustSablon, 0},
    {"Fiş Numaraları Devredilsin mi ?", ustFisNo, 0},
    {"İşyeri Tanımları Devredilsin mi ?", ustIsyeri, 0},
}};

}  // namespace

std::span<const SecenekSatiri> secenekSatirlari() {
  return satirlar;
}

std::string secenekYolu(const SecenekSatiri& satir) {
  return std::to_string(satir.ust) + (satir.cocuk == 0 ? "" : "." + std::to_string(satir.cocuk));
}

Secenekler::Secenekler() : isaret_(satirlar.size(), true) {}

std::size_t Secenekler::dugum(int ust, int cocuk) {
  for (std::size_t i = 0; i < satirlar.size(); ++i)
    if (satirlar[i].ust == ust && satirlar[i].cocuk == cocuk) return i;
  return 0;
}

void Secenekler::tikla(std::size_t satir, bool deger) {
  isaret_[satir] = deger;
  const SecenekSatiri& tiklanan = satirlar[satir];
  int kardes = 0;
  bool kardesIsaretli = false;
  for (std::size_t i = 0; i < satirlar.size(); ++i) {
    if (satirlar[i].ust != tiklanan.ust || satirlar[i].cocuk == 0 || i == satir) continue;
    if (tiklanan.cocuk == 0) isaret_[i] = deger;
    ++kardes;
    kardesIsaretli = kardesIsaretli || isaret_[i];
  }
  if (tiklanan.cocuk == 0 || kardesIsaretli || (!deger && kardes == 0)) return;
  isaret_[dugum(tiklanan.ust, 0)] = deger;
}

std::optional<std::size_t> Secenekler::bul(std::string_view yol) {
  for (std::size_t i = 0; i < satirlar.size(); ++i)
    if (secenekYolu(satirlar[i]) == yol) return i;
  return std::nullopt;
}

void SecenekOdagi::ustte(int n) {
  for (std::size_t i = 0; i < satirlar.size(); ++i)
    if (satirlar[i].ust == n && satirlar[i].cocuk == 0) satir_ = i;
}

bool SecenekOdagi::sonraki(int k) const {
  if (!satir_ || *satir_ + static_cast<std::size_t>(k) >= satirlar.size()) return false;
  return secenekler_.isaretli(*satir_ + static_cast<std::size_t>(k));
}

}  // namespace rollover
