// What the card refuses, in its words.
#include <gtest/gtest.h>

#include "company/kart_alanlari.h"
#include "support/firma_karti.h"

namespace {

using company::FirmaKarti;

const std::string hint =
    "\nDatabase Adı Harf ile Başlar ve Harf ve Numara Dışında Noktalama İşaretleri ve Boşluk Gibi "
    "Karakterler Kulanılamaz.\nTürkçe Karakterler Kullanılamaz (Ş,Ç,Ö,Ü,İ,ı) ";
const std::string start = "Firmamnın Mali Başlangıç Tarihi Girilmemiş Yada Yanlış Girilmiş",
                  end = "Firmamnın Mali Bitiş Tarihi Girilmemiş Yada Yanlış Girilmiş",
                  order = "Baslangıç ve Bitiş Tarihini Düzeltiniz.",
                  unusable = "Database Adı içinde Kullanılamayan Karakter Var." + hint;

constexpr auto adi = &FirmaKarti::Firma_Adi;
constexpr auto unvan = &FirmaKarti::Firma_Unvani;
constexpr auto bas = &FirmaKarti::Bas_Tar;
constexpr auto bit = &FirmaKarti::Bit_Tar;

// The fault of a card that is good but for one text, and the column of the field at fault.
std::string kusur(std::string FirmaKarti::*alan, const std::string& text) {
  FirmaKarti kart = support::firmaKarti("ORNEK2012");
  kart.Hata_Metni = "old";
  kart.*alan = text;
  company::Kayit_Kontrol(kart);
  return kart.Hata_Metni + (kart.Hatali_Alan.empty() ? "" : "|" + std::string(kart.Hatali_Alan));
}

TEST(KartKontrol, LeavesTheFirstFaultAndItsField) {
  const struct {
    std::string FirmaKarti::*alan;
    const char* text;
    std::string fault;  // "" for none
  } cases[] = {
      {adi, "ORNEK", ""},
      {bas, "", start + "|Mali_Yil_Baslangic"},
      {bas, "1/1/2012", start + "|Mali_Yil_Baslangic"},
      {bas, "31/02/2012", start + "|Mali_Yil_Baslangic"},
      {bas, "31/12/1752", start + "|Mali_Yil_Baslangic"},
      {bas, "01/01/1753", ""},
      {bit, "  /  /    ", end + "|Mali_Yil_Bitis"},
      {bit, "31/12/1752", end + "|Mali_Yil_Bitis"},
      {bit, "01/01/2011", order + "|Mali_Yil_Bitis"},  // the texts are compared, day first
      {bit, "31/01/2001", ""},
      {bas, "31/12/2012", ""},
      {bas, "15/01/2013", ""},
      {&FirmaKarti::Firma_Kodu, " ", "Firma Kodunu boş geçemezsiniz.|sysfrm_kd"},
      {adi, "", "Database Adını boş geçemezsiniz.|sysfrm_dbnm"},
      {unvan, "", "Firma Ünvanını boş geçemezsiniz.|sysfrm_nm"},
      {adi, "0A", "Database Adı Numara ile Başlayamaz|sysfrm_dbnm"},
      {adi, "9A", "Database Adı Numara ile Başlayamaz|sysfrm_dbnm"},
      {adi, "A)B,C", "Database Adı içinde Virgül(,) Olamaz." + hint + "|sysfrm_dbnm"},
      {adi, "A;B", unusable + "|sysfrm_dbnm"},
      {adi, "A[B", unusable + "|sysfrm_dbnm"},
      {adi, "A`B", unusable + "|sysfrm_dbnm"},
      {adi, "A{B", unusable + "|sysfrm_dbnm"},
      {adi, "A\tB", unusable + "|sysfrm_dbnm"},
      {adi, "@A", unusable + "|sysfrm_dbnm"},
      {adi, "AZaz09_@ŞİRKET", ""},
      {adi, "ORDERS", ""},
      {adi, "AΩ", "Database Adı içinde Türkçe kod sayfasında (1254) olmayan karakter var.|sysfrm_dbnm"},
      {unvan, "東京", "Firma Unvanı içinde Türkçe kod sayfasında (1254) olmayan karakter var.|sysfrm_nm"},
      {unvan, "A\nB", "Firma Unvanı içinde satır sonu ya da başka bir denetim karakteri olamaz.|sysfrm_nm"},
      {unvan, "A\x7F", "Firma Unvanı içinde satır sonu ya da başka bir denetim karakteri olamaz.|sysfrm_nm"},
      {unvan, "A B", ""}};
  for (const auto& c : cases) EXPECT_EQ(kusur(c.alan, c.text), c.fault) << c.text;
}

TEST(KartKontrol, EachForbiddenSignHasItsText) {
  // Texts of three signs name another sign than their own; so they stand.
  const std::pair<const char*, const char*> signs[] = {{" ", "Boşluk"},
                                                       {",", "Virgül(,)"},
                                                       {".", "Nokta (.)"},
                                                       {"+", "Artı(+) İşareti"},
                                                       {"-", "Eksi(+) İşareti"},
                                                       {"/", "Eksi(+) İşareti"},
                                                       {":", "İki Nokta(:) İşareti"},
                                                       {"*", "Yıldız(:) İşareti"},
                                                       {"\"", "ÇiftTırnak ( \") İşareti"},
                                                       {"'", "TekTırnak(') İşareti"},
                                                       {"^", "TekTırnak(^) İşareti"},
                                                       {"!", "Ünlem(!) İşareti"},
                                                       {"#", "Diez(#) İşareti"},
                                                       {"$", "Dolar($) İşareti"},
                                                       {"%", "Yüzde(%) İşareti"},
                                                       {"&", "AND(&) İşareti"},
                                                       {"(", "Aç Parantez( ( ) İşareti"},
                                                       {")", "Kapa Parantez( ) ) İşareti"}};
  std::string before, beforeFault;
  for (const auto& [sign, text] : signs) {
    const std::string fault = std::string("Database Adı içinde ") + text + " Olamaz." + hint + "|sysfrm_dbnm";
    EXPECT_EQ(kusur(adi, "A" + std::string(sign)), fault);
    if (!before.empty()) {
      EXPECT_EQ(kusur(adi, std::string("A") + sign + before), beforeFault);  // the tests' order
    }
    beforeFault = fault;
    before = sign;
  }
}

TEST(KartKontrol, WordsOfTheLanguageAreNoNames) {
  for (const char* const word : {"ADD", "order", "Select", "TRAN", "SESSION_USER", "WRITETEXT"})
    EXPECT_EQ(kusur(adi, word),
              std::string("\"") + word +
                  "\" SQL Server'ın ayrılmış bir sözcüğüdür; Database Adı Olamaz.|sysfrm_dbnm");
}

TEST(KartKontrol, TextsFitTheirColumns) {
  const struct {
    std::string FirmaKarti::*alan;
    const char *column, *caption;
    int width;  // 0: no limit
  } fields[] = {{unvan, "sysfrm_nm", "Firma Unvanı", 0},
                {adi, "sysfrm_dbnm", "Database Adı", 50},
                {&FirmaKarti::Firma_Kodu, "sysfrm_kd", "Firma Kodu", 50},
                {bas, "Mali_Yil_Baslangic", "Mali Yıl Başlangıç", 0},
                {bit, "Mali_Yil_Bitis", "Mali Yıl Bitiş", 0},
                {&FirmaKarti::Adres, "Adres", "Adres", 50},
                {&FirmaKarti::Sehir, "sehir", "Şehir", 20},
                {&FirmaKarti::Ulke, "Ulke", "Ülke", 20},
                {&FirmaKarti::Tel1, "Tel1", "Telefon (1)", 17},
                {&FirmaKarti::Tel2, "Tel2", "Telefon (2)", 17},
                {&FirmaKarti::Fax, "Fax", "Fax", 17},
                {&FirmaKarti::Vergi_Dairesi, "Vergi_Dairesi", "Vergi Dairesi", 20},
                {&FirmaKarti::Vergi_Numarasi, "Vergi_Numarasi", "Vergi Numarası", 20}};
  ASSERT_EQ(std::size(fields), company::kartAlanlari().size());
  for (const auto& f : fields) {
    EXPECT_EQ(company::kartAlaniGenisligi(f.column), static_cast<std::size_t>(f.width)) << f.column;
    if (f.alan == bas || f.alan == bit) continue;
    std::string text;  // one byte a letter in the column
    for (int i = 0; i < (f.width == 0 ? 500 : f.width); ++i) text += "Ş";
    EXPECT_EQ(kusur(f.alan, text), "") << f.column;
    if (f.width != 0)
      EXPECT_EQ(kusur(f.alan, text + "Ş"), std::string(f.caption) + " en çok " + std::to_string(f.width) +
                                               " karakter olabilir.|" + f.column);
    else
      EXPECT_EQ(kusur(f.alan, "\x1f"), std::string(f.caption) +
                                           " içinde satır sonu ya da başka bir denetim karakteri olamaz.|" +
                                           f.column);
  }
}

}  // namespace
