// The card's tests, in their order.
#include <array>

#include "catalog/katalog.h"
#include "company/firma_karti.h"
#include "company/kart_alanlari.h"
#include "session/metin.h"
#include "session/tarih.h"

namespace company {

namespace {

struct YasakKarakter {
  char character;
  std::string_view metin;
};

// Messages of three signs name another sign than their own; so they stand.
constexpr YasakKarakter yasaklar[] = {
    {' ', "Database Adı içinde Boşluk Olamaz."},
    {',', "Database Adı içinde Virgül(,) Olamaz."},
    {'.', "Database Adı içinde Nokta (.) Olamaz."},
    {'+', "Database Adı içinde Artı(+) İşareti Olamaz."},
    {'-', "Database Adı içinde Eksi(+) İşareti Olamaz."},
    {'/', "Database Adı içinde Eksi(+) İşareti Olamaz."},
    {':', "Database Adı içinde İki Nokta(:) İşareti Olamaz."},
    {'*', "Database Adı içinde Yıldız(:) İşareti Olamaz."},
    {'"', "Database Adı içinde ÇiftTırnak ( \") İşareti Olamaz."},
    {'\'', "Database Adı içinde TekTırnak(') İşareti Olamaz."},
    {'^', "Database Adı içinde TekTırnak(^) İşareti Olamaz."},
    {'!', "Database Adı içinde Ünlem(!) İşareti Olamaz."},
    {'#', "Database Adı içinde Diez(#) İşareti Olamaz."},
    {'$', "Database Adı içinde Dolar($) İşareti Olamaz."},
    {'%', "Database Adı içinde Yüzde(%) İşareti Olamaz."},
    {'&', "Database Adı içinde AND(&) İşareti Olamaz."},
    {'(', "Database Adı içinde Aç Parantez( ( ) İşareti Olamaz."},
    {')', "Database Adı içinde Kapa Parantez( ) ) İşareti Olamaz."},
};

constexpr std::string_view yasakAciklamasi =
    "\nDatabase Adı Harf ile Başlar ve Harf ve Numara Dışında Noktalama İşaretleri ve Boşluk Gibi "
    "Karakterler Kulanılamaz.\nTürkçe Karakterler Kullanılamaz (Ş,Ç,Ö,Ü,İ,ı) ";

bool tarihGecerli(const std::string& metin) {
  return metin.size() == 10 && session::tarihMi(metin);
}
bool dolu(const std::string& metin) {
  return !session::Trim(metin).empty();
}

struct Sinama {
  bool (*gecer)(const FirmaKarti&);
  std::string_view metin;
};

constexpr Sinama sinamalar[] = {
    {[](const FirmaKarti& k) { return tarihGecerli(k.Bas_Tar); },
     "Firmamnın Mali Başlangıç Tarihi Girilmemiş Yada Yanlış Girilmiş"},
    {[](const FirmaKarti& k) { return tarihGecerli(k.Bit_Tar); },
     "Firmamnın Mali Bitiş Tarihi Girilmemiş Yada Yanlış Girilmiş"},
    // Compared as the texts stand, day first: the later date of two may sort before the earlier one.
    {[](const FirmaKarti& k) { return k.Bas_Tar <= k.Bit_Tar; }, "Baslangıç ve Bitiş Tarihini Düzeltiniz."},
    {[](const FirmaKarti& k) { return dolu(k.Firma_Kodu); }, "Firma Kodunu boş geçemezsiniz."},
    {[](const FirmaKarti& k) { return dolu(k.Firma_Adi); }, "Database Adını boş geçemezsiniz."},
    {[](const FirmaKarti& k) { return dolu(k.Firma_Unvani); }, "Firma Ünvanını boş geçemezsiniz."},
    {[](const FirmaKarti& k) { return k.Firma_Adi[0] < '0' || k.Firma_Adi[0] > '9'; },
     "Database Adı Numara ile Başlayamaz"},
};

std::size_t karakterSayisi(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text) {
    count += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
  }
  return count;
}

// Width of a CHAR column of sysfrmlng; 0 for any other type.
std::size_t genislik(std::string_view column) {
  static const catalog::TableDef* const firmalar = [] {
    for (const catalog::TableDef& table : catalog::catalogTables()) {
      if (table.name == "sysfrmlng") {
        return &table;
      }
    }
    return static_cast<const catalog::TableDef*>(nullptr);
  }();
  const std::string& type = firmalar->column(column)->type;
  return type.starts_with("CHAR(") ? std::stoul(type.substr(5)) : 0;
}

std::string uzunAlan(const FirmaKarti& kart) {
  for (const KartAlani& alan : kartAlanlari()) {
    const std::size_t limit = genislik(alan.column);
    if (limit != 0 && karakterSayisi(session::Trim(kart.*alan.text)) > limit) {
      return std::string(alan.caption) + " en çok " + std::to_string(limit) + " karakter olabilir.";
    }
  }
  return "";
}

}  // namespace

void Kayit_Kontrol(FirmaKarti& kart) {
  kart.Hata_Metni.clear();
  for (const Sinama& sinama : sinamalar) {
    if (!sinama.gecer(kart)) {
      kart.Hata_Metni = sinama.metin;
      return;
    }
  }
  for (const YasakKarakter& yasak : yasaklar) {
    if (kart.Firma_Adi.find(yasak.character) != std::string::npos) {
      kart.Hata_Metni = std::string(yasak.metin) + std::string(yasakAciklamasi);
      return;
    }
  }
  kart.Hata_Metni = uzunAlan(kart);
}

}  // namespace company
