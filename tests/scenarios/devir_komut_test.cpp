// The rollover and the costing from the shell, as people type them.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <memory>

#include "support/komut_satiri.h"
#include "support/surucu.h"

namespace {

class DevirKomutTest : public testing::Test {
 protected:
  // The source is made once; each test rolls it over to A2013.
  inline static std::unique_ptr<support::KomutSatiri> program;
  inline static std::string firmalar;
  support::KomutSatiri& cli = *program;

  static void SetUpTestSuite() {
    program = std::make_unique<support::KomutSatiri>(support::surucuYap);
    kur(*program);
  }
  static void TearDownTestSuite() { program.reset(); }
  void TearDown() override {
    cli.terminal = false;
    cli.calistir({"firma-sil", "--ad", "A2013", "--evet"});
  }
  static void kur(support::KomutSatiri& cli) {
    ASSERT_EQ(cli.calistir({"kur", "--sunucu", "(yerel)"}, "Parola1\nabcdefgh\n"), 0) << cli.err;
    ASSERT_EQ(cli.calistir({"firma-olustur", "--ad", "A2012", "--kod", "00001", "--unvan", "A Ltd",
                            "--baslangic", "01/01/2012", "--bitis", "31/12/2012"}),
              0)
        << cli.err;
    ASSERT_EQ(cli.calistir({"guncelle", "--ad", "A2012"}), 0) << cli.err;
    sql(cli,
        "INSERT INTO KASAKART (Kasa_Kod,Kasa_Ad) VALUES ('K1','Merkez') INSERT INTO KASAHAREKET "
        "(Tarih,Fis_No,Islem_Tipi,Kasa_ID,BTutar,ATutar) SELECT '20120301','1','x',Kasa_ID,12.5,0 FROM "
        "KASAKART "
        "INSERT INTO STOKKART (Stok_Kod,Stok_Ad,Ana_Birim) VALUES ('S1','Bir','ADET') INSERT INTO STOKKART "
        "(Stok_Kod,Stok_Ad,Ana_Birim) VALUES ('S2','Eksi','ADET') INSERT INTO CEKKART "
        "(Cek_No,Portfoy_No,Durum,Vade,Tutar) VALUES ('1','1','Cirolu','20121220',100) INSERT INTO CEKDURUM "
        "(Cek_ID,Bordro_ID,Durum) SELECT Cek_ID,3,Durum FROM CEKKART");
    hareket(cli, "S1", "20120105", "Satış Faturası", "0", "4", "0");
    hareket(cli, "S1", "20120105", "Alış Faturası", "10", "0", "5");
    hareket(cli, "S1", "20120210", "Alış Faturası", "4", "0", "10");
    hareket(cli, "S1", "20120301", "Konsinye Giriş", "7", "0", "99");
    hareket(cli, "S2", "20120301", "Satış Faturası", "0", "3", "0");
    cli.calistir({"firma-listele"});
    firmalar = cli.out;
  }
  static void hareket(support::KomutSatiri& cli, const std::string& kod, const std::string& tarih,
                      const std::string& tip, const std::string& giris, const std::string& cikis,
                      const std::string& maliyet) {
    sql(cli,
        "INSERT INTO STOKHAREKET (Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,"
        "Maliyet) SELECT '" +
            tarih + "','F','" + tip + "','Mal',Stok_ID,Stok_Kod,1," + giris + "," + cikis + "," + maliyet +
            " FROM STOKKART WHERE Stok_Kod='" + kod + "'");
  }
  static void sql(support::KomutSatiri& cli, const std::string& deyim, const std::string& ad = "A2012") {
    ASSERT_EQ(cli.calistir({"sql", "--db", ad}, deyim), 0) << cli.err << deyim;
  }
  int devir(std::vector<std::string> argumanlar, const std::string& girdi = "") {
    argumanlar.insert(argumanlar.begin(), {"devir", "--kaynak", "A2012"});
    return cli.calistir(argumanlar, girdi);
  }
  static std::string oku(const std::filesystem::path& yol) {
    std::ifstream dosya(yol, std::ios::binary);
    return {std::istreambuf_iterator<char>(dosya), {}};
  }
  bool satirVar(const std::string& bas, const std::string& icerik) const {
    std::istringstream satirlar(cli.out);
    for (std::string satir; std::getline(satirlar, satir);)
      if (satir.find(bas) != std::string::npos && satir.find(icerik) != std::string::npos) return true;
    return false;
  }
};

TEST_F(DevirKomutTest, WrongUseSaysWhatIsWrong) {
  struct Durum {
    std::vector<std::string> argumanlar;
    int kod;
    std::string metin;
  };
  const std::string adKurali =
      "\nDatabase Adı Harf ile Başlar ve Harf ve Numara Dışında Noktalama İşaretleri ve Boşluk Gibi "
      "Karakterler "
      "Kulanılamaz.\nTürkçe Karakterler Kullanılamaz (Ş,Ç,Ö,Ü,İ,ı) ";
  const Durum durumlar[] = {
      {{"devir"}, 2, "--kaynak verilmeli.\n"},
      {{"devir", "--kaynak", "A2012"}, 2, "--hedef ya da --yeni-ad, ikisinden biri verilmeli.\n"},
      {{"devir", "--kaynak", "A2012", "--hedef", "B", "--yeni-ad", "C"},
       2,
       "--hedef ya da --yeni-ad, ikisinden biri verilmeli.\n"},
      {{"devir", "--kaynak", "A2012", "--yeni-ad", "B", "--baslangic", "31/02/2013"},
       2,
       "Tarih GG/AA/YYYY biçiminde olmalı: 31/02/2013\n"},
      {{"devir", "--kaynak", "A2012", "--yeni-ad", "B", "--bicim", "xml"},
       2,
       "Bilinmeyen biçim: xml (tsv, tablo, json ya da metin)\n"},
      {{"devir", "--kaynak", "A2012", "--yeni-ad", "B", "--ciro-suresi", "12x"},
       2,
       "Ciro takip süresi 0 ile 36500 arasında bir gün sayısı olmalı: 12x\n"},
      {{"devir", "--kaynak", "A2012", "--yeni-ad", "B", "--kapat", "4.2"},
       2,
       "Böyle bir devir seçeneği yok: 4.2 (--secenekler hepsini yazar)\n"},
      {{"devir", "--kaynak", "YOK", "--yeni-ad", "B"}, 1, "Kaynak firma bulunamadı: YOK\n"},
      {{"devir", "--kaynak", "A2012", "--hedef", "YOK"}, 1, "Hedef firma bulunamadı: YOK\n"},
      {{"devir", "--kaynak", "A2012", "--hedef", "A2012"}, 1, "Firmalar Kendi Üzerlerine Devredilemez\n"},
      {{"devir", "--kaynak", "A2012", "--yeni-ad", "B 1"},
       1,
       "Database Adı içinde Boşluk Olamaz." + adKurali + "\n"},
      {{"devir", "--kaynak", "A2012", "--yeni-ad", "1B"}, 1, "Database Adı Numara ile Başlayamaz\n"},
      {{"devir", "--kaynak", "A2012", "--yeni-ad", "B", "--baslangic", "15/01/2013", "--bitis", "01/12/2013"},
       1,
       "Baslangıç ve Bitiş Tarihini Düzeltiniz.\n"},
      {{"devir", "--kaynak", "A2012", "--yeni-ad", "master"},
       1,
       "Bu İsimle Bir Firma veya Database Zaten Var.\nHedefte hiçbir şey değişmedi.\n"},
      {{"maliyet", "--ad", "YOK", "--stok", "S1"}, 1, "Firma bulunamadı: YOK\n"},
      {{"maliyet", "--ad", "A2012", "--stok", "O'NEIL"}, 1, "Stok kartı bulunamadı: O'NEIL\n"},
  };
  for (const Durum& d : durumlar) {
    EXPECT_EQ(cli.calistir(d.argumanlar), d.kod) << d.metin;
    EXPECT_EQ(cli.err, d.metin);
    EXPECT_EQ(cli.out, "");
  }
  cli.calistir({"firma-listele"});
  EXPECT_EQ(cli.out, firmalar);
}

TEST_F(DevirKomutTest, OptionsAreNamedByTheirPlace) {
  EXPECT_EQ(cli.calistir({"devir", "--secenekler"}), 0);
  EXPECT_EQ(
      cli.out,
      "0\tKasa\n0.1\tKasa Bakiyeleri Devredilsin mi ?\n1\tCari Hesap\n1.1\tCari Hesap  Bakiyeleri "
      "Devredilsin mi "
      "?\n1.2\tVadelendirme Yapılsın mı ?\n2\tStok\n2.1\tStok  Bakiyeleri Devredilsin mi ?\n2.2\tBirim "
      "Maliyetler Devredilsin mi ?\n2.3\tSatış Fiyatları devredilsin mi ?\n2.4\tAlış Fiyatları devredilsin "
      "mi "
      "?\n3\tBanka\n3.1\tBanka Bakiyeleri Devredilsin mi ?\n3.2\tPos Hareketleri Devredilsin mi "
      "?\n4\tSipariş\n4.1\tYalnızca Bekleyen Miktarları Aktar\n5\tÇek\n5.1\tKarşılksız Çekler Devredilsin "
      "mi?\n6\tSenet\n6.1\tKarşılıksız Senetler Devredilsin mi ?\n7\tMuhasebe\n7.1\tHesap Bakiyeleri "
      "Devredilsin mi?\n8\tÜretim Reçeteleri Devredilsin mi ?\n9\tDöviz Tanımları Devredilsin mi "
      "?\n10\tSatıcı "
      "Tanımları Devredilsin mi ?\n11\tAmbar Tanımları Devredilsin mi ?\n12\tHizmet Tanımları Devredilsin mi "
      "?\n13\tMasraf Tanımları Devredilsin mi ?\n14\tİndirim Tanımları Devredilsin mi ?\n15\tFiyat Tanımları "
      "Devredilsin mi ?\n16\tMüstahsil Tanımları Devredilsin mi ?\n17\tÖdeme Şablonları Tanımları "
      "Devredilsin mi "
      "?\n18\tFiş Numaraları Devredilsin mi ?\n19\tİşyeri Tanımları Devredilsin mi ?\n");
}

TEST_F(DevirKomutTest, ATrialAndThenTheYear) {
  const auto kanit = cli.dizin / "kanit.json";
  EXPECT_EQ(devir({"--yeni-ad", "A2013", "--dene", "--bicim", "json", "--kanit", kanit.string()}), 0)
      << cli.err;
  EXPECT_EQ(cli.out.rfind("{\"kaynak\":\"A2012\",\"hedef\":\"A2013\",\"kaynakDonemi\":\"01.01.2012 - "
                          "31.12.2012\",\"hedefDonemi\":\"01.01.2013 - 31.12.2013\"",
                          0),
            0U)
      << cli.out;
  EXPECT_NE(cli.out.find("\"deneme\":true,\"aciklanmayan\":0"), std::string::npos);
  EXPECT_EQ(oku(kanit), cli.out);
  // Not a terminal: a line for each step of the run, in its order.
  const auto kasa = cli.err.find(
                 "\nKasa Kartları Devrediliyor....!\nKasa Fiş Numarası Ayarları Yapılıyor....!\n"),
             stok = cli.err.find("\n1 Nolu Ambara Ait Stok Açılış İşlemleri Yapılıyor...!\n"),
             son = cli.err.find("\nDeneme tamamlandı; hiçbir şey yazılmadı.\n");
  EXPECT_LT(kasa, stok) << cli.err;
  EXPECT_LT(stok, son) << cli.err;
  EXPECT_NE(son, std::string::npos) << cli.err;
  cli.calistir({"firma-listele"});
  EXPECT_EQ(cli.out, firmalar);

  EXPECT_EQ(devir({"--yeni-ad", "A2013", "--yeni-kod", "00077", "--unvan", "Yeni Ünvan", "--baslangic",
                   "01.01.2013", "--bitis", "30/06/2013", "--eksi-stok", "--ciro-suresi", "30", "--kapat",
                   "0.1,2.2"}),
            0)
      << cli.err;
  EXPECT_TRUE(satirVar("Kasa bakiyeleri", "Seçenek kapalı: Kasa Bakiyeleri Devredilsin mi ?")) << cli.out;
  EXPECT_TRUE(satirVar("Stok değeri", "Seçenek kapalı: Birim Maliyetler Devredilsin mi ?")) << cli.out;
  cli.calistir(
      {"sql", "--db", "A2013"},
      "SELECT sysfrm_kd,sysfrm_nm,Mali_Yil_Baslangic,Mali_Yil_Bitis FROM Defination_DB.dbo.sysfrmlng WHERE "
      "sysfrm_dbnm='A2013'");
  for (const char* const parca : {"00077", "Yeni Ünvan", "2013-01-01", "2013-06-30"})
    EXPECT_NE(cli.out.find(parca), std::string::npos) << cli.out;
  cli.calistir(
      {"sql", "--db", "A2013"},
      "SELECT Stok_Kod+':'+CONVERT(VARCHAR,Giris)+'/'+CONVERT(VARCHAR,Cikis)+'/'+CONVERT(VARCHAR,Maliyet) "
      "FROM "
      "STOKHAREKET SELECT Portfoy_No+'|'+Durum FROM CEKKART SELECT 'kasa '+CONVERT(VARCHAR,COUNT(*)) FROM "
      "KASAHAREKET");
  for (const char* const parca : {":17/0/0", ":0/3/0", "|Cirolu", "kasa 0"})
    EXPECT_NE(cli.out.find(parca), std::string::npos) << parca << cli.out;
}

TEST_F(DevirKomutTest, ATargetWithDataIsAskedFor) {
  ASSERT_EQ(devir({"--yeni-ad", "A2013"}), 0) << cli.err;
  sql(cli, "UPDATE STOKKART SET Stok_Ad='Hedefte'", "A2013");
  const auto adlar = [&] {
    cli.calistir({"sql", "--db", "A2013"}, "SELECT Stok_Ad FROM STOKKART WHERE Stok_Kod='S1'");
    return cli.out.find("Hedefte") != std::string::npos ? "hedefte" : "kaynaktan";
  };
  const std::string soru =
      "\"A2013\" firmasında veri var: 3 kartın üzerine yazılacak, 2 açılış kaydı yenilenecek.\nDevir "
      "yapılsın mı? "
      "[e/H] ";
  EXPECT_EQ(devir({"--hedef", "A2013"}), 1);
  EXPECT_EQ(cli.err, soru + "H\nOnay için --evet seçeneğini verin.\n");
  EXPECT_STREQ(adlar(), "hedefte");
  cli.terminal = true;
  EXPECT_EQ(devir({"--hedef", "A2013"}, "h\n"), 1);
  EXPECT_STREQ(adlar(), "hedefte");
  // A trial asks nothing: it leaves nothing.
  EXPECT_EQ(devir({"--hedef", "A2013", "--dene"}), 0) << cli.err;
  EXPECT_STREQ(adlar(), "hedefte");
  EXPECT_EQ(devir({"--hedef", "A2013"}, "e\n"), 0) << cli.err;
  EXPECT_STREQ(adlar(), "kaynaktan");
  cli.terminal = false;
  sql(cli, "UPDATE STOKKART SET Stok_Ad='Hedefte'", "A2013");
  EXPECT_EQ(devir({"--hedef", "A2013", "--evet"}), 0) << cli.err;
  EXPECT_STREQ(adlar(), "kaynaktan");
}

TEST_F(DevirKomutTest, ADifferenceWithoutAReasonIsTheExitCode) {
  ASSERT_EQ(devir({"--yeni-ad", "A2013"}), 0) << cli.err;
  sql(cli,
      "CREATE TRIGGER FAZLA ON KASAHAREKET FOR INSERT AS UPDATE KASAHAREKET SET BTutar=BTutar+1 WHERE "
      "Islem_Tipi='Kasa Açılış Fişi'",
      "A2013");
  for (const char* const uzanti : {"html", "csv", "txt", "json"}) {
    const auto dosya = cli.dizin / (std::string("kanit.") + uzanti);
    EXPECT_EQ(devir({"--hedef", "A2013", "--evet", "--yalnizca-farklar", "--kanit", dosya.string()}), 1);
    EXPECT_TRUE(satirVar("K1 Merkez", "AÇIKLANMAYAN FARK")) << cli.out;
    EXPECT_FALSE(satirVar("Stok kartları", "")) << cli.out;
    EXPECT_NE(cli.out.find("Açıklanmayan fark: 2 satır.\n"), std::string::npos);
    const std::string icerik = oku(dosya);
    const std::map<std::string, std::string> beklenen = {
        {"html", "<td>AÇIKLANMAYAN FARK</td>"},
        {"csv", "\"Kasa bakiyeleri\";\"K1\";\"Merkez\";12,5;13,5;1;\"AÇIKLANMAYAN FARK\"\r\n"},
        {"txt", "Açıklanmayan fark: 2 satır.\n"},
        {"json",
         "\"kod\":\"K1\",\"ad\":\"Merkez\",\"toplam\":false,\"kaynak\":12.5,\"hedef\":13.5,\"fark\":1,"
         "\"neden\":"
         "\"\""}};
    EXPECT_NE(icerik.find(beklenen.at(uzanti)), std::string::npos) << icerik;
  }
  EXPECT_EQ(devir({"--hedef", "A2013", "--evet", "--yalnizca-farklar", "--bicim", "tsv"}), 1);
  EXPECT_EQ(cli.out.rfind("Tür\tKod\tAd\tKaynak\tHedef\tFark\tNeden\n"
                          "Kasa bakiyeleri\t\tTOPLAM\t12.5\t13.5\t1\tAÇIKLANMAYAN FARK\n"
                          "Kasa bakiyeleri\tK1\tMerkez\t12.5\t13.5\t1\tAÇIKLANMAYAN FARK\n",
                          0),
            0U)
      << cli.out;
  // A place where no file can be written: said, and told by the exit code.
  EXPECT_EQ(devir({"--hedef", "A2013", "--evet", "--kanit", "/yok/kanit.html"}), 1);
  EXPECT_NE(cli.err.find("/yok/kanit.html yazılamadı: "), std::string::npos) << cli.err;
}

TEST_F(DevirKomutTest, CostingRowByRow) {
  EXPECT_EQ(cli.calistir({"maliyet", "--ad", "A2012", "--stok", "S1"}), 0);
  // The entry of the day goes first, consignment stays out: 10 at 5, 4 leave, 4 at 10 make 70 / 10.
  EXPECT_EQ(
      cli.out,
      "Tarih\tFiş No\tİşlem Tipi\tAmbar\tGiriş\tÇıkış\tMaliyet\tKalan Miktar\tKalan Değer\tBirim Maliyet\n"
      "05.01.2012\tF\tAlış Faturası\t1\t10,00\t0,00\t5,00\t10,00\t50,00\t5,00\n"
      "05.01.2012\tF\tSatış Faturası\t1\t0,00\t4,00\t0,00\t6,00\t30,00\t5,00\n"
      "10.02.2012\tF\tAlış Faturası\t1\t4,00\t0,00\t10,00\t10,00\t70,00\t7,00\n");
  EXPECT_EQ(cli.err, "S1 Bir: 3 hareket, birim maliyet 7,00\n");
}

}  // namespace
