// Counters, scale layouts, terminal files, report texts.
#include <fstream>

#include "company/sirket.h"
#include "settings/firma_baglanti.h"
#include "settings/numara.h"
#include "settings/rapor.h"
#include "settings/tarti.h"
#include "settings/terminal.h"
#include "support/izleyen_surucu.h"
#include "support/temp_folder.h"

namespace {

using session::IzgaraSatirlari;
using settings::TerminalTanimi;

class SayacTest : public company::test::SirketTest {
 protected:
  void SetUp() override {
    oturum().surucu = &izleyen;
    sirket().s.boxes.shown.clear();
    ASSERT_EQ(settings::Firma_Bagla(oturum(), "GUNCEL2012"), "");
    sirket().bagla("Defination_DB");
    izleyen.izleme.sifirla();
  }
  void TearDown() override {
    oturum().Baglanti2.reset();
    oturum().surucu = sirket().factory.get();
  }
  session::Oturum& oturum() { return sirket().s.oturum; }
  std::string firmada(const std::string& sql) {
    sirket().bagla("GUNCEL2012");
    std::string sonuc = sirket().rows(sql);
    sirket().bagla("Defination_DB");
    return sonuc;
  }
  support::IzleyenSurucu izleyen{db::makeConnectionFactory(sirket().folder)};
};

TEST_F(SayacTest, TwentyEightCountersAndTwoForEachCashAccount) {
  oturum().Baglanti2->execute(
      "DELETE FROM KASAKART INSERT INTO KASAKART(Kasa_Kod,Kasa_Ad) VALUES('MRK','Merkez Kasa') UPDATE "
      "IP_BODEK SET IP='0000000042'");
  const std::string id = firmada("SELECT Kasa_ID FROM KASAKART");
  oturum().Baglanti2->execute("CREATE TABLE IP_KNTF" + id + "(IP CHAR(10)) INSERT INTO IP_KNTF" + id +
                              "(IP) VALUES('7')");
  izleyen.izleme.sifirla();
  const auto liste = settings::Numaralari_Oku(oturum());
  EXPECT_LE(izleyen.izleme.deyimler.size(), 3U);
  ASSERT_EQ(liste.numaralar.size(), 30U);
  const auto satir = [&](std::size_t i) {
    const auto& n = liste.numaralar[i];
    return n.etiket + "|" + n.anahtar + "|" + n.numara + (n.var ? "" : "|yok");
  };
  EXPECT_EQ(satir(0), "Satış Faturası|SATFATFIS|0000000000");
  EXPECT_EQ(satir(7), "Borç Dekontu|BODEK|0000000042");
  EXPECT_EQ(satir(17), "BARKOD|BARKOD|00000000000000000000000");
  EXPECT_EQ(satir(27), "Peşin İade Faturası|PESIADFIS|0000000000");
  EXPECT_EQ(satir(28), "MRK Kodlu Kasa Tahsilat|KNTF" + id + "|7");
  EXPECT_EQ(satir(29), "MRK Kodlu Kasa Ödeme|KNOF" + id + "||yok");
  EXPECT_EQ(
      settings::Numaralari_Yaz(oturum(), {{"BODEK", "A'12345678901"}, {"BARKOD", std::string(25, '9')}}), "");
  EXPECT_EQ(firmada("SELECT IP FROM IP_BODEK UNION ALL SELECT IP FROM IP_BARKOD"),
            "A'12345678\n" + std::string(23, '9'));
  EXPECT_NE(settings::Numaralari_Yaz(oturum(), {{"BODEK", "1"}, {"YOK", "1"}}), "");
  EXPECT_EQ(firmada("SELECT IP FROM IP_BODEK"), "A'12345678") << "the first of them is taken back";
  oturum().Baglanti2->execute("DROP TABLE IP_KNTF" + id + " DELETE FROM KASAKART");
}

TEST(TartiKontrol, FollowsItsOrder) {
  const auto satir = [](const char* bayrak, const char* kod, const char* kg, const char* gr) {
    return session::IzgaraSatiri{{"", "0", bayrak, kod, kg, gr, "1"}};
  };
  const struct {
    IzgaraSatirlari satirlar;
    const char* hata;
  } durumlar[] = {
      {{satir("7", "5", "2", "3")}, ""},
      {{satir("x", "5", "2", "3")}, "Lütfen 1. satırdaki Bayrak Koduna Sayısal Bir Deger giriniz"},
      {{satir("0", "5", "2", "3")},
       "Lütfen 1. satırdaki Bayrak Koduna lütfen 0(Sıfır)'dan büyük bir değer giriniz"},
      {{satir("0", "5", "2", "3"), satir("100", "5", "2", "3")},
       "Lütfen 2. satırdaki Bayrak Koduna 2 Haneli bir Sayı Giriniz."},
      {{satir("27", "", "2", "3")},
       "Lütfen 1. satırdaki Stok Kod Hane Sayısı İçin Lütfen Sayısal Bir Değer Giriniz"},
      {{satir("27", "5", "", "3")},
       "Lütfen 1. satırdaki KG(Kilogram) Hane Sayısı İçin Lütfen Sayısal Bir Değer Giriniz"},
      {{satir("27", "5", "2", "")},
       "Lütfen 1. satırdaki GR(Gram) Hane Sayısı İçin Lütfen Sayısal Bir Değer Giriniz"},
      {{satir("27", "6", "2", "3")}, "Lütfen 1. satırdaki barkod tasarımını 13 Haneye Tamamlayınız"},
      {{satir("27", "5", "2", "3"), satir("", "", "", "")},
       "Lütfen 2. satırdaki Bayrak Koduna Sayısal Bir Deger giriniz"}};
  for (const auto& d : durumlar) {
    auto satirlar = d.satirlar;
    EXPECT_EQ(settings::Tarti_Kontrol(satirlar), d.hata);
  }
  IzgaraSatirlari bir{satir("7", "5", "2", "3")};
  settings::Tarti_Kontrol(bir);
  EXPECT_EQ(bir[0].hucreler[settings::Bayrak_Kodu], "07");
  bir[0].gizli = true;
  bir[0].hucreler[settings::Bayrak_Kodu] = "x";
  EXPECT_EQ(settings::Tarti_Kontrol(bir), "");
}

TEST_F(SayacTest, LayoutsAreInsertedUpdatedAndDeleted) {
  oturum().Baglanti2->execute("DELETE FROM TARTIBARKOD");
  EXPECT_EQ(settings::Tarti_Kaydet(oturum(),
                                   {{{"", "1", "27", "5", "2", "3", "1"}},
                                    {{"", "", "28", "5", "2", "3", "1"}},
                                    {{"", "0", "29", "5", "2", "3", "1"}, true},
                                    {{"", "0", "30", "6", "1", "3", "1"}}},
                                   {})
                .hata,
            "");
  EXPECT_EQ(firmada("SELECT Bayrak_Kodu,Master_Kod,KG,GR,Adetli FROM TARTIBARKOD"), "27|5|2|3|1\n30|6|1|3|0");
  auto liste = settings::Tarti_Yukle(oturum());
  ASSERT_EQ(liste.satirlar.size(), 2U);
  const auto okunan = liste.satirlar;
  EXPECT_EQ(liste.satirlar[0].hucreler[settings::CD], "1");
  liste.satirlar[0].gizli = true;
  liste.satirlar[1].hucreler[settings::KG] = "2";
  liste.satirlar[1].hucreler[settings::Master_Kod] = "5";
  EXPECT_EQ(settings::Tarti_Kaydet(oturum(), liste.satirlar, okunan).hata, "");
  EXPECT_EQ(firmada("SELECT Bayrak_Kodu,Master_Kod,KG,GR,Adetli FROM TARTIBARKOD"), "30|5|2|3|0");
}

TEST(TartiBarkodu, IsDividedByItsLayout) {
  const IzgaraSatirlari tasarimlar{{{"1", "0", "27", "5", "2", "3", "1"}},
                                   {{"2", "1", "28", "5", "2", "3", "1"}}};
  const auto coz = [&](const char* barkod) {
    const auto b = settings::Tarti_Coz(tasarimlar, barkod);
    if (!b.onUcHane) return std::string("uzunluk");
    if (!b.tasarimVar) return std::string("tasarım yok");
    return b.bayrak + "|" + b.stokKodu + "|" + b.kg + "|" + b.gr + "|" +
           (b.kontrolDogru ? "doğru" : "yanlış") + (b.adetli ? "|adet" : "");
  };
  EXPECT_EQ(coz("2712345012501"), "27|12345|01|250|yanlış");
  std::string dogru = "2712345012500";
  dogru.back() = settings::Tarti_Coz(tasarimlar, dogru).beklenen;
  EXPECT_EQ(coz(dogru.c_str()), "27|12345|01|250|doğru");
  EXPECT_EQ(settings::Tarti_Coz({}, "4006381333931").kontrolDogru, true) << "a barcode of a shop shelf";
  EXPECT_EQ(coz("2812345000120").substr(0, 16), "28|12345|00|012|");
  EXPECT_EQ(coz("2912345012501"), "tasarım yok");
  EXPECT_EQ(coz("271234501250"), "uzunluk");
  EXPECT_EQ(coz("27123450125ab"), "uzunluk");
}

TEST_F(SayacTest, TerminalDefinitionsAreWrittenByCode) {
  sirket().run("DELETE FROM DISVERITANIM");
  TerminalTanimi t;
  t.Tanim_Kod = "T1";
  t.Tanim_Ad = "Depo";
  t.AyiracVar = true;
  t.Ayirac = ";";
  t.ParcaAdedi = "3";
  t.ogeler[0] = {true, "1", "13"};
  t.ogeler[3] = {true, "x", ""};
  EXPECT_EQ(settings::Terminal_Kaydet(oturum(), t, false),
            "Kaydedilecek tanım yok. Yeni bir tanım için önce Yeni düğmesine basınız.");
  EXPECT_EQ(settings::Terminal_Kaydet(oturum(), t, true), "");
  EXPECT_EQ(settings::Terminal_Kaydet(oturum(), t, true), "“T1” kodlu bir tanım zaten var.");
  auto okunan = settings::Terminal_Oku(oturum(), "T1");
  ASSERT_TRUE(okunan);
  EXPECT_EQ(okunan->ParcaAdedi, "0") << "quantities are not in parts";
  EXPECT_EQ(okunan->ogeler[0], (TerminalTanimi::Oge{true, "1", "13"}));
  EXPECT_EQ(okunan->ogeler[3], (TerminalTanimi::Oge{true, "0", "0"}));
  okunan->AyiracVar = false;
  okunan->MiktarParcali = true;
  okunan->ParcaAdedi = "a";
  EXPECT_EQ(settings::Terminal_Kaydet(oturum(), *okunan, false), "Parça adedi bir sayı değil: “a”");
  okunan->ParcaAdedi = "2";
  EXPECT_EQ(settings::Terminal_Kaydet(oturum(), *okunan, false), "");
  EXPECT_EQ(
      sirket().rows("SELECT Tanim_Kod,Tanim_Ad,AyiracVar,Ayirac,MiktarParcali,ParcaAdedi,Barkod_Hane FROM "
                    "DISVERITANIM"),
      "T1|Depo|0||1|2|13");
}

TEST(TerminalOnizleme, CutsLinesAsDefined) {
  const support::TempFolder klasor;
  const auto dosya = klasor.path / "terminal.txt";
  std::ofstream(dosya, std::ios::binary) << "8690000000017Kola  0012\r\n869\xDEi\xFE"
                                            "e 1;2;3\r\n";
  TerminalTanimi t;
  t.ogeler[0] = {true, "1", "13"};
  t.ogeler[2] = {true, "14", "6"};
  t.ogeler[3] = {true, "20", "4"};
  const auto sabit = settings::Terminal_Onizle(t, dosya);
  EXPECT_EQ(sabit.basliklar, (std::vector<std::string>{"Barkod", "Stok Adı", "Miktar"}));
  EXPECT_EQ(sabit.satirlar, (std::vector<std::vector<std::string>>{{"8690000000017", "Kola", "0012"},
                                                                   {"869Şişe 1;2;3", "", ""}}));
  t.AyiracVar = true;
  t.Ayirac = ";";
  t.ogeler[0].Bas = "2";
  t.ogeler[2].Bas = "3";
  t.ogeler[3].Bas = "9";
  EXPECT_EQ(settings::Terminal_Onizle(t, dosya).satirlar[1], (std::vector<std::string>{"2", "3", ""}));
  EXPECT_EQ(settings::Terminal_Onizle(t, klasor.path / "yok").hata,
            "Dosya okunamadı: " + (klasor.path / "yok").string());
}

TEST_F(SayacTest, ReportTextsAreAddedAndTheFirstIsShown) {
  sirket().run("DELETE FROM TSRSQL");
  EXPECT_FALSE(settings::Rapor_Kaydet(oturum(), 0, 1, "x"));
  EXPECT_FALSE(settings::Rapor_Kaydet(oturum(), 1, 0, "x"));
  EXPECT_TRUE(sirket().s.boxes.shown.empty());
  EXPECT_EQ(settings::Rapor_Oku(oturum(), 3, 2), "");
  EXPECT_TRUE(settings::Rapor_Kaydet(oturum(), 3, 2, "SELECT 'ilk'"));
  EXPECT_TRUE(settings::Rapor_Kaydet(oturum(), 3, 2, "SELECT 'ikinci'"));
  EXPECT_EQ(settings::Rapor_Oku(oturum(), 3, 2), "SELECT 'ilk'");
  EXPECT_EQ(sirket().rows("SELECT Modul,Kisim,DEF_SQL FROM TSRSQL ORDER BY TSR_ID"),
            "3|2|SELECT 'ilk'\n3|2|SELECT 'ikinci'");
}

}  // namespace
