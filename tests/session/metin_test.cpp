#include "session/metin.h"

#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "session/sayi.h"
#include "session/tarih.h"
#include "support/fakes.h"

namespace {

using namespace session;

TEST(Metin, BuyukHarf) {
  const std::pair<const char*, const char*> cases[] = {{"korvena", "KORVENA"}, {"istanbul", "İSTANBUL"},
                                                       {"ısı", "ISI"},         {"şçöğü", "ŞÇÖĞÜ"},
                                                       {"İI", "İI"},           {"", ""},
                                                       {"a1-ß", "A1-ß"}};
  for (const auto& [in, out] : cases) {
    EXPECT_EQ(Buyuk_Harf(in), out);
    EXPECT_EQ(Buyuk_Harf_Arama(in), out);
  }
}

TEST(Metin, SifreleByHand) {
  // a: 97*2+1 = 195 (Ã), b: 98*2+2 = 198 (Æ), 1: 49*2+3 = 101 (e)
  EXPECT_EQ(Sifrele("ab1"), "ÃÆe");
  EXPECT_EQ(Sifrele("Torkul"), "©àçÚïŞ");
  EXPECT_EQ(Sifrele(""), "");
}

TEST(Metin, SifreleRoundTripOfEveryCodeThatFits) {
  for (int code = 1; code < 128; ++code) {
    const std::string text(1, static_cast<char>(code));
    const auto scrambled = Sifrele(text);
    if (code * 2 + 1 > 255) {
      EXPECT_FALSE(scrambled) << code;
      continue;
    }
    ASSERT_TRUE(scrambled) << code;
    EXPECT_EQ(Sifre_Coz(*scrambled), text) << code;
  }
  EXPECT_EQ(Sifre_Coz(*Sifrele("Fabrika.2012-@GH")), "Fabrika.2012-@GH");
}

TEST(Metin, SifreleStopsAboveAByte) {
  EXPECT_FALSE(Sifrele("ş"));
  EXPECT_FALSE(Sifrele("中"));
  EXPECT_TRUE(Sifrele("aaaaaz"));          // 122*2+6 = 250
  EXPECT_FALSE(Sifrele("aaaaaaaaaaaaz"));  // 122*2+13 = 257
  EXPECT_FALSE(Sifre_Coz("\x01\x01"));
}

TEST(Metin, KodArtir) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},     {"00001", "00002"}, {"00009", "00010"}, {"99", "00"}, {"A", "B"},
      {"C", "Ç"},   {"I", "İ"},         {"AZ", "BA"},       {"z", "a"},   {"h", "ı"},
      {"A9", "B0"}, {"A-9", "B-0"},     {"ŞZ9", "TA0"},     {"--", "--"}};
  for (const auto& [in, out] : cases) EXPECT_EQ(Kod_Artir(in), out) << in;
}

TEST(Metin, ListeMetni) {
  EXPECT_EQ(Liste_Metni("1\tBir|2\tİki|3", 0), "1");
  EXPECT_EQ(Liste_Metni("1\tBir|2\tİki|3", 1), "2");
  EXPECT_EQ(Liste_Metni("1\tBir|2\tİki|3", 2), "3");
  EXPECT_EQ(Liste_Metni("1|2", 5), "");
  EXPECT_EQ(Liste_Metni("1|2", -1), "");
}

TEST(Metin, AyAdi) {
  EXPECT_EQ(Ay_Adi(4), "NİSAN");
  EXPECT_EQ(Ay_Adi(6), "HAZIRAN");
  EXPECT_EQ(Ay_Adi(9), "EYLUL");
  EXPECT_EQ(Ay_Adi(0) + Ay_Adi(13), "");
}

TEST(Sayi, Bicimle) {
  Oturum o;
  o.AnaPara_Format = "#,##0.00";
  o.Kur_Format = "#,##0.0000";
  struct Case {
    const char* in;
    SayiTuru tur;
    const char* out;
  };
  const Case cases[] = {{"1234567,5", SayiTuru::Tutar, "1.234.567,50"},
                        {" 1.234,5 ", SayiTuru::Tutar, "1.234,50"},
                        {"-0,125", SayiTuru::Tutar, "-0,13"},
                        {"2,675", SayiTuru::Tutar, "2,68"},
                        {"1,8", SayiTuru::Kur, "1,8000"},
                        {"1999,5", SayiTuru::DovizTutar, "2.000"},
                        {",", SayiTuru::Tutar, "0,"},
                        {"-12a,3,4", SayiTuru::Tutar, "-12,34"},
                        {"4-5x", SayiTuru::Tutar, "45"},
                        {"abc", SayiTuru::Tutar, ""}};
  for (const Case& c : cases) EXPECT_EQ(Sayi_Bicimle(o, c.in, c.tur), c.out) << c.in;
}

TEST(Sayi, RakamTemizle) {
  EXPECT_EQ(Rakam_Temizle("-12a-3", 1, 4), "123");
  EXPECT_EQ(Rakam_Temizle("ab12", 3, 4), "ab12");
  EXPECT_EQ(Rakam_Temizle("ab12", 1, 3), "12");
}

TEST(Sayi, YuzdeGoster) {
  YuzdeCubugu bar{0, 8, ""};
  int pumped = 0;
  const auto pump = [&] { ++pumped; };
  Yuzde_Goster(bar, 0, pump);
  EXPECT_EQ(bar.label, "%");
  Yuzde_Goster(bar, 3, pump);
  EXPECT_EQ(bar.label, "38%");
  Yuzde_Goster(bar, 100, pump);  // past the maximum: nothing moves
  EXPECT_EQ(bar.label, "38%");
  EXPECT_EQ(pumped, 3);
}

TEST(Tarih, AlanDogrula) {
  struct Case {
    const char* in;
    bool uzun;
    const char* text;
    const char* message;
  };
  const Case cases[] = {{"01/02/2012", true, "01/02/2012", ""},
                        {"31.02.2012", true, "31/02/2012", ""},  // no month-length check
                        {"01022012", false, "01/02/2012", ""},
                        {"32012012", true, "", "Gün alanını yanlış girdiniz."},
                        {"01132012", true, "", "Ay alanını yanlış girdiniz."},
                        {"01", true, "01", ""},
                        {"0102", true, "01/02", ""},
                        {"0102", false, "01/02/", ""},
                        {"abc", true, "", ""}};
  for (const Case& c : cases) {
    support::FakeBoxes boxes;
    EXPECT_EQ(Tarih_Alan_Dogrula(boxes, c.in, c.uzun), c.text) << c.in;
    EXPECT_EQ(boxes.last(), c.message) << c.in;
  }
}

TEST(Tarih, SaatAlanDogrula) {
  const std::array<std::array<const char*, 3>, 5> cases = {
      {{"235959", "23:59:59", ""},
       {"9", "9", ""},
       {"240000", "", "Saat Alanını Yanlış Girdiniz."},
       {"1260", "", "Dakika Alanını Yanlış Girdiniz."},
       {"12:30:61", "", "Saniye Alanını Yanlış Girdiniz."}}};
  for (const auto& c : cases) {
    support::FakeBoxes boxes;
    EXPECT_EQ(Saat_Alan_Dogrula(boxes, c[0]), c[1]);
    EXPECT_EQ(boxes.last(), c[2]);
  }
}

TEST(Tarih, MaskePlacesSeparatorsAndCaret) {
  struct Case {
    const char* in;
    int caret;
    bool deleting;
    const char* out;
    int outCaret;
  };
  const Case cases[] = {{"0", 1, false, "0", 1},
                        {"01", 2, false, "01/", 3},
                        {"01/0", 4, false, "01/0", 4},
                        {"01/02", 5, false, "01/02/", 6},
                        {"01/02/20123", 11, false, "01/02/2012", 10},
                        {"01/", 3, true, "01", 2},
                        {"01/02", 5, true, "01/02", 5},
                        {"01/02/2012", 0, false, "01/02/2012", 0},
                        {"0x1", 3, false, "01/", 3},
                        {"", 0, true, "", 0},
                        {"0102", 4, false, "01/02/", 6},
                        // a typed separator ends its part, and one more ends nothing
                        {"1/", 2, false, "01/", 3},
                        {"1.", 2, false, "01/", 3},
                        {"01//", 4, false, "01/", 3},
                        {"01/2/", 5, false, "01/02/", 6},
                        {"/", 1, false, "", 0},
                        // pasted whole
                        {"1/2/2012", 8, false, "01/02/2012", 10},
                        {"1.2.2012", 8, false, "01/02/2012", 10},
                        {"2012-03-15", 10, false, "15/03/2012", 10},
                        {"15032012", 8, false, "15/03/2012", 10},
                        // no digit leaves its part
                        {"1/02/2012", 0, true, "1/02/2012", 0},
                        {"/02/2012", 0, true, "/02/2012", 0},
                        {"01//2012", 3, true, "01//2012", 3},
                        {"301/02/2012", 1, false, "30/02/2012", 1},
                        {"01/302/2012", 4, false, "01/30/2012", 4},
                        {"01/02/02012", 7, false, "01/02/0201", 7}};
  for (const Case& c : cases) {
    const auto result = tarihMaskesi(c.in, c.caret, c.deleting);
    EXPECT_EQ(result.metin, c.out) << c.in;
    EXPECT_EQ(result.imlec, c.outCaret) << c.in;
  }
}

TEST(Tarih, PartsOfOneDigitAreCompleted) {
  const std::pair<const char*, const char*> cases[] = {
      {"1/02/2012", "01/02/2012"},  {"1/2/2012", "01/02/2012"},
      {"01/02/2012", "01/02/2012"}, {"", ""},
      {"2012-03-15", "15/03/2012"}, {"5", "05"}};
  for (const auto& [in, out] : cases) EXPECT_EQ(tarihTamamla(in), out);
}

TEST(Tarih, TarihMi) {
  EXPECT_TRUE(tarihMi("29/02/2012"));
  for (const char* bad :
       {"29/02/2013", "31/04/2012", "1/1/2012", "01/13/2012", "00/01/2012", "aa/bb/cccc", ""})
    EXPECT_FALSE(tarihMi(bad)) << bad;
}

TEST(Tarih, HaftaBasi) {
  const auto monday = [](int y, int m, int d) { return Hafta_Basi(db::DateTime{y, m, d}); };
  EXPECT_EQ(tarihYaz(monday(2012, 3, 14).tarih), "12/03/2012");
  EXPECT_EQ(tarihYaz(monday(2012, 3, 18).tarih), "12/03/2012");
  EXPECT_EQ(monday(2012, 3, 12).adim, 0);
  // 1 January 2013 was a Tuesday: its Monday lies in 2012 and is stepped on by one week
  EXPECT_EQ(tarihYaz(monday(2013, 1, 1).tarih), "07/01/2013");
  EXPECT_EQ(monday(2013, 1, 1).adim, 1);
}

}  // namespace
