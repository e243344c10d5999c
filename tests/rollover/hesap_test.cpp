// Currency, costing, due day, options and checks: worked out by hand.
#include <gtest/gtest.h>

#include "rollover/adimlar.h"
#include "rollover/devir.h"
#include "rollover/maliyet.h"

namespace rollover {
namespace {

TEST(Para, RoundsHalvesToTheEvenTenThousandth) {
  EXPECT_EQ(Para::sayidan(0.00005).birim, 0);
  EXPECT_EQ(Para::sayidan(2.00015).birim, 20002);
  EXPECT_EQ(Para::sayidan(-1.5).birim, -15000);
  EXPECT_EQ((Para{15000} * Para{1}).birim, 2);  // 0.00015 lies between 1 and 2
  EXPECT_EQ((Para{25000} * Para{1}).birim, 2);  // 0.00025 between 2 and 3
  EXPECT_EQ((Para{-25000} * Para{1}).birim, -2);
  EXPECT_EQ((Para::tam(10) / Para::tam(3)).birim, 33333);
}

TEST(Para, MoneyFormatRoundsWhatFifteenDigitsShowAwayFromZero) {
  struct {
    double deger;
    int hane;
    std::int64_t birim;
  } const durumlar[] = {
      {1.005, 2, 10100},     {-1.005, 2, -10100}, {2.675, 2, 26800},  {0.004, 2, 0},        {0.005, 2, 100},
      {1234.5, 0, 12350000}, {0.5, 0, 10000},     {9.995, 2, 100000}, {0.1 + 0.2, 4, 3000}, {0, 2, 0}};
  for (const auto& d : durumlar)
    EXPECT_EQ(paraBicimle(d.deger, d.hane).birim, d.birim) << d.deger << " " << d.hane;
}

TEST(Para, TextOfATotalLosesItsSign) {
  EXPECT_EQ(UnVey_Frmt(Para{-12345000}, "."), "1234.5");
  EXPECT_EQ(UnVey_Frmt(Para{}, "."), "0");
  EXPECT_EQ(sqlMetni(Para{-500}), "-0.05");
  EXPECT_EQ(paraMetni(Para{-12345678901}), "-1.234.567,8901");
}

struct Adim {
  double giris, cikis, maliyet;
};
Para maliyet(std::initializer_list<Adim> adimlar, Para* miktar = nullptr, Para* deger = nullptr) {
  Maliyetlendirme_AOG m;
  for (const Adim& a : adimlar)
    m.isle({Para::sayidan(a.giris), Para::sayidan(a.cikis), Para::sayidan(a.maliyet)});
  if (miktar != nullptr) *miktar = m.miktar();
  if (deger != nullptr) *deger = m.deger();
  return m.birimMaliyet();
}

TEST(Maliyet, MovingAverage) {
  Para q, v;
  EXPECT_EQ(maliyet({}), Para{});
  // 10 at 5, 10 at 7: 120 / 20 = 6; 5 leave at 6; 5 at 9: (90 + 45) / 20 = 6.75
  EXPECT_EQ(maliyet({{10, 0, 5}, {10, 0, 7}, {0, 5, 0}, {5, 0, 9}}, &q, &v).birim, 67500);
  EXPECT_EQ(q, Para::tam(20));
  EXPECT_EQ(v, Para::tam(135));
  // Only exits: nothing to value.
  EXPECT_EQ(maliyet({{0, 4, 3}}, &q), Para{});
  EXPECT_EQ(q, Para::tam(-4));
  // Negative before and behind the entry: its own cost stands. 0 - 10; +4 at 3 -> Q -6, U 3; +10 at 5: V 12 +
  // 50 = 62, Q 4.
  EXPECT_EQ(maliyet({{0, 10, 0}, {4, 0, 3}}).birim, 30000);
  EXPECT_EQ(maliyet({{0, 10, 0}, {4, 0, 3}, {10, 0, 5}}).birim, 155000);
  // A return is an entry at the cost on it: 10 at 4, 6 leave (V 16, Q 4), 2 come back at 10: 36 / 6 = 6.
  EXPECT_EQ(maliyet({{10, 0, 4}, {0, 6, 0}, {2, 0, 10}}).birim, 60000);
  // Equal sides change nothing; an average below nought is nought.
  EXPECT_EQ(maliyet({{10, 0, 4}, {3, 3, 99}}).birim, 40000);
  EXPECT_EQ(maliyet({{10, 0, -4}}).birim, 0);
  // A third is kept in four decimals, and so is what leaves at it: 3 at 10/3.
  EXPECT_EQ(maliyet({{1, 0, 10}, {2, 0, 0}}).birim, 33333);
  EXPECT_EQ(maliyet({{1, 0, 10}, {2, 0, 0}, {0, 2, 0}}, nullptr, &v), Para{33333});
  EXPECT_EQ(v.birim, 100000 - 66666);
}

TEST(Maliyet, EmptySidesOfARowCountForNothing) {
  Maliyetlendirme_AOG m;
  m.isle({Para::tam(10), Para{}, Para::tam(2)});
  m.isle({std::nullopt, Para::tam(3), Para::tam(9)});
  m.isle({Para::tam(5), Para{}, std::nullopt});  // an entry without cost: 20 / 15
  EXPECT_EQ(m.miktar(), Para::tam(15));
  EXPECT_EQ(m.birimMaliyet().birim, 13333);
}

TEST(Valor, CreditTakesBAndDebitTwiceBLessA) {
  // A = 3000/100 = 30, B = 500/50 = 10; credit: D = B = 10. Debit: D = 2B - A.
  EXPECT_EQ(Valor_Hesapla({100, 50, 3000, 500}, "01.01.2012", "01.01.2012", false), 10);
  EXPECT_EQ(Valor_Hesapla({50, 100, 500, 6000}, "01.01.2012", "01.01.2012", false), 2 * 60 - 10);
  // Counted from the target's start: 2012 has 366 days.
  EXPECT_EQ(Valor_Hesapla({100, 50, 3000, 500}, "01.01.2012", "01.01.2013", false), 10 - 366);
  // A quotient of 3.75 reads back as 3 where the workstation writes a comma; with a point 2 * 3.75 - 0 = 7.5
  // -> 8.
  EXPECT_EQ(Valor_Hesapla({0, 4, 0, 15}, "01.01.2012", "01.01.2012", false), 6);
  EXPECT_EQ(Valor_Hesapla({0, 4, 0, 15}, "01.01.2012", "01.01.2012", true), 8);
  EXPECT_EQ(Valor_Hesapla({}, "01.01.2012", "01.01.2012", false), 0);
}

TEST(Secenekler, ClickSpreadsButAnOnlyChildLeavesItsParent) {
  const auto satir = [](const char* yol) { return *Secenekler::bul(yol); };
  Secenekler s;
  s.tikla(satir("4.1"), false);
  EXPECT_TRUE(s.ust(ustSiparis));
  s.tikla(satir("3.1"), false);
  EXPECT_TRUE(s.ust(ustBanka));
  s.tikla(satir("3.2"), false);
  EXPECT_FALSE(s.ust(ustBanka));
  s.tikla(satir("3.2"), true);
  EXPECT_TRUE(s.ust(ustBanka));
  EXPECT_FALSE(s.cocuk(ustBanka, 1));
  s.tikla(satir("2"), false);
  for (int k = 1; k <= 4; ++k) EXPECT_FALSE(s.cocuk(ustStok, k)) << k;
  s.koy(satir("1"), false);
  EXPECT_TRUE(s.cocuk(ustCari, 1));
  EXPECT_FALSE(Secenekler::bul("8.1"));
  EXPECT_FALSE(Secenekler::bul("20"));
}

TEST(Secenekler, FocusLooksAtTheRowsBehindIt) {
  Secenekler s;
  SecenekOdagi odak(s);
  EXPECT_FALSE(odak.sonraki());  // nothing focused
  odak.ustte(ustStok);
  s.koy(*Secenekler::bul("2.3"), false);
  EXPECT_TRUE(odak.sonraki(1));
  EXPECT_FALSE(odak.sonraki(3));
  EXPECT_TRUE(odak.sonraki(4));
  odak.ustte(ustIsyeri);
  EXPECT_FALSE(odak.sonraki());  // behind the last row
}

TEST(DevirKontrol, FirstFaultWins) {
  const DevirTarafi kaynak{"1", "A", "00001", "A2012", "01.01.2012", "31.12.2012"};
  const DevirTarafi iyi{"0", "B", "00002", "B_2013ş", "01.01.2013", "31.12.2013"};
  const std::string kural =
      "\nDatabase Adı Harf ile Başlar ve Harf ve Numara Dışında Noktalama İşaretleri ve Boşluk Gibi "
      "Karakterler Kulanılamaz.\n"
      "Türkçe Karakterler Kullanılamaz (Ş,Ç,Ö,Ü,İ,ı) ";
  struct {
    std::string DevirTarafi::*alan;
    const char* deger;
    std::string beklenen;
  } const durumlar[] = {
      {&DevirTarafi::Firma_Kodu, "00002", ""},
      {&DevirTarafi::Firma_Adi, " A2012 ", "Firmalar Kendi Üzerlerine Devredilemez"},
      {&DevirTarafi::Bas_Tar, "31.02.2013",
       "Devirin Yapılacağı Firmamnın Mali Başlangıç Tarihi Yanlış Girilmiş"},
      {&DevirTarafi::Bas_Tar, "1.1.2013",
       "Devirin Yapılacağı Firmamnın Mali Başlangıç Tarihi Yanlış Girilmiş"},
      {&DevirTarafi::Bit_Tar, "32.12.2013", "Devirin Yapılacağı Firmamnın Mali Bitiş Tarihi Yanlış Girilmiş"},
      {&DevirTarafi::Firma_Kodu, "", "Firma Kodunu boş geçemezsiniz."},
      {&DevirTarafi::Firma_Adi, "", "Database Adını boş geçemezsiniz."},
      {&DevirTarafi::Firma_Unvani, "", "Firma Ünvanını boş geçemezsiniz."},
      {&DevirTarafi::Firma_Adi, "1A2012", "Database Adı Numara ile Başlayamaz"},
      {&DevirTarafi::Firma_Adi, "A B,C", "Database Adı içinde Boşluk Olamaz." + kural},
      {&DevirTarafi::Firma_Adi, "A/B", "Database Adı içinde Eksi(+) İşareti Olamaz." + kural},
      {&DevirTarafi::Firma_Adi, "A'B", "Database Adı içinde TekTırnak(') İşareti Olamaz." + kural},
      {&DevirTarafi::Firma_Adi, "A)B", "Database Adı içinde Kapa Parantez( ) ) İşareti Olamaz." + kural},
  };
  for (const auto& d : durumlar) {
    DevirTarafi hedef = iyi;
    hedef.*d.alan = d.deger;
    EXPECT_EQ(Devir_kontrol({kaynak, hedef}), d.beklenen) << d.deger;
  }
  DevirTarafi hedef = iyi;
  hedef.Bas_Tar = "15.01.2006";
  hedef.Bit_Tar = "01.12.2006";
  EXPECT_EQ(Devir_kontrol({kaynak, hedef}), "Baslangıç ve Bitiş Tarihini Düzeltiniz.");
  hedef = iyi;
  hedef.Bit_Tar = "yanlış";
  hedef.Firma_Kodu.clear();  // a wrong date does not stop the later tests
  EXPECT_EQ(Devir_kontrol({kaynak, hedef}), "Firma Kodunu boş geçemezsiniz.");
}

}  // namespace
}  // namespace rollover
