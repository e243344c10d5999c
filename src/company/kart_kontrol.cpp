// The card's tests, in their order.
#include <algorithm>

#include "company/firma_karti.h"
#include "company/kart_alanlari.h"
#include "db/table_name.h"
#include "platform/code_page.h"
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

// The server's own dates begin here.
constexpr int ilkYil = 1753;

bool tarihGecerli(const std::string& metin) {
  db::DateTime tarih;
  return metin.size() == 10 && session::tarihOku(metin, tarih) && tarih.year >= ilkYil;
}
bool dolu(const std::string& metin) {
  return !session::Trim(metin).empty();
}

struct Sinama {
  std::string_view alan;  // the column of the field at fault
  bool (*gecer)(const FirmaKarti&);
  std::string_view metin;
};

constexpr Sinama sinamalar[] = {
    {"Mali_Yil_Baslangic", [](const FirmaKarti& k) { return tarihGecerli(k.Bas_Tar); },
     "Firmamnın Mali Başlangıç Tarihi Girilmemiş Yada Yanlış Girilmiş"},
    {"Mali_Yil_Bitis", [](const FirmaKarti& k) { return tarihGecerli(k.Bit_Tar); },
     "Firmamnın Mali Bitiş Tarihi Girilmemiş Yada Yanlış Girilmiş"},
    // Compared as the texts stand, day first: the later date of two may sort before the earlier one.
    {"Mali_Yil_Bitis", [](const FirmaKarti& k) { return k.Bas_Tar <= k.Bit_Tar; },
     "Baslangıç ve Bitiş Tarihini Düzeltiniz."},
    {"sysfrm_kd", [](const FirmaKarti& k) { return dolu(k.Firma_Kodu); }, "Firma Kodunu boş geçemezsiniz."},
    {"sysfrm_dbnm", [](const FirmaKarti& k) { return dolu(k.Firma_Adi); },
     "Database Adını boş geçemezsiniz."},
    {"sysfrm_nm", [](const FirmaKarti& k) { return dolu(k.Firma_Unvani); },
     "Firma Ünvanını boş geçemezsiniz."},
    {"sysfrm_dbnm", [](const FirmaKarti& k) { return k.Firma_Adi[0] < '0' || k.Firma_Adi[0] > '9'; },
     "Database Adı Numara ile Başlayamaz"},
};

// Words of the language stand for themselves where a name stands unquoted. DUMMY is one of old servers alone.
bool ayrilmisSozcuk(const std::string& ad) {
  return db::reservedWord(ad) || db::sameName(ad, "DUMMY");
}

// The signs above are those with a text of their own. Any other that a name cannot hold would end in a
// refused CREATE DATABASE, and the company would stand in the list without one.
std::string adHatasi(const FirmaKarti& kart) {
  const auto olur = [](char c) {
    const bool harf =
        (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
    return harf || (c >= '0' && c <= '9') || c == '_' || c == '@';
  };
  if (ayrilmisSozcuk(kart.Firma_Adi)) {
    return "\"" + kart.Firma_Adi + "\" SQL Server'ın ayrılmış bir sözcüğüdür; Database Adı Olamaz.";
  }
  const bool uygun =
      kart.Firma_Adi[0] != '@' && std::all_of(kart.Firma_Adi.begin(), kart.Firma_Adi.end(), olur);
  return uygun ? "" : "Database Adı içinde Kullanılamayan Karakter Var." + std::string(yasakAciklamasi);
}

// Why the text of a field cannot be stored as it is: the columns hold one byte of code page 1254 per letter.
std::string sigmazlik(const FirmaKarti& kart, const KartAlani& alan) {
  const std::size_t limit = kartAlaniGenisligi(alan.column);
  const std::string metin = session::Trim(kart.*alan.text);
  if (session::denetimKarakteriVar(metin)) {
    return std::string(alan.caption) + " içinde satır sonu ya da başka bir denetim karakteri olamaz.";
  }
  const auto sayfa = platform::encode1254Exactly(metin);
  if (!sayfa) {
    return std::string(alan.caption) + " içinde Türkçe kod sayfasında (1254) olmayan karakter var.";
  }
  if (limit != 0 && sayfa->size() > limit) {
    return std::string(alan.caption) + " en çok " + std::to_string(limit) + " karakter olabilir.";
  }
  return "";
}

struct Kusur {
  std::string metin;
  std::string_view alan;
};

// The first fault; without a text there is none.
Kusur ilkKusur(const FirmaKarti& kart) {
  constexpr std::string_view ad = "sysfrm_dbnm";
  for (const Sinama& sinama : sinamalar) {
    if (!sinama.gecer(kart)) {
      return {std::string(sinama.metin), sinama.alan};
    }
  }
  for (const YasakKarakter& yasak : yasaklar) {
    if (kart.Firma_Adi.find(yasak.character) != std::string::npos) {
      return {std::string(yasak.metin) + std::string(yasakAciklamasi), ad};
    }
  }
  if (std::string metin = adHatasi(kart); !metin.empty()) {
    return {std::move(metin), ad};
  }
  for (const KartAlani& alan : kartAlanlari()) {
    if (std::string metin = sigmazlik(kart, alan); !metin.empty()) {
      return {std::move(metin), alan.column};
    }
  }
  return {};
}

}  // namespace

void Kayit_Kontrol(FirmaKarti& kart) {
  Kusur kusur = ilkKusur(kart);
  kart.Hata_Metni = std::move(kusur.metin);
  kart.Hatali_Alan = kusur.alan;
}

}  // namespace company
