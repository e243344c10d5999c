// Openings of a small company, worked out by hand.
#include <random>

#include "rollover/devir_ortami.h"
#include "rollover/maliyet_gecmisi.h"

namespace rollover::test {
namespace {

using AcilisTest = DevirTest;

TEST_F(AcilisTest, CashAndBank) {
  s().run(
      "INSERT INTO KASAKART (Kasa_Kod,Kasa_Ad) VALUES ('K1','Merkez') INSERT INTO KASAKART "
      "(Kasa_Kod,Kasa_Ad) VALUES ('K''2','Şube')"
      "INSERT INTO KASAKART (Kasa_Kod,Kasa_Ad) VALUES ('K3','Depo')");
  const std::string k =
      "INSERT INTO KASAHAREKET (Tarih,Fis_No,Islem_Tipi,Kasa_ID,Kasa_Kod,BTutar,ATutar) SELECT "
      "'20120301','1','Tahsilat',Kasa_ID,Kasa_Kod,";
  s().run(k + "100.005,0 FROM KASAKART WHERE Kasa_Kod='K1'");
  s().run(k + "50,50 FROM KASAKART WHERE Kasa_Kod='K''2'");
  s().run(k + "10,35.5 FROM KASAKART WHERE Kasa_Kod='K3'");
  s().run("INSERT INTO HESAPKART (Hesap_No,Hesap_Ad,Banka_Ad) VALUES ('12-3','Vadesiz','Banka A')");
  s().run(
      "INSERT INTO BANKAHAREKET (Tarih,Islem_Tipi,Hesap_ID,Hesap_No,BTutar,ATutar) SELECT '20120401','Para "
      "Çekme',Hesap_ID,Hesap_No,0,70 FROM HESAPKART");
  const auto sonuc = devret(girdi());
  // The balanced box uses up its number.
  EXPECT_EQ(satirlar("SELECT "
                     "Tarih,Fis_No,Cari_Unvan,Islem_Tipi,Kasa_Kod,Kasa_Ad,Btutar,Atutar,Gun,AY_Index,Ay,"
                     "Hafta,Satici_ID,Doviz_ID,KUR,Dovizli_Tutar FROM "
                     "KASAHAREKET ORDER BY Kasa_Hareket_ID"),
            "2013-01-01 00:00:00.000|1|Merkez|Kasa Açılış Fişi|K1|Merkez|100.01|0|01|01|OCAK|1|1|1|0|0\n"
            "2013-01-01 00:00:00.000|3|Depo|Kasa Açılış Fişi|K3|Depo|0|25.5|01|01|OCAK|1|1|1|0|0");
  EXPECT_EQ(satirlar("SELECT Fis_No,Islem_Tipi,h.Hesap_No,h.Hesap_Ad,h.Banka_Ad,BTutar,ATutar,CASE WHEN "
                     "h.Hesap_ID=k.Hesap_ID THEN 1 END FROM BANKAHAREKET h,HESAPKART k WHERE "
                     "k.Hesap_No='12-3'"),
            "1|Banka Açılış Fişi|12-3|Vadesiz|Banka A|0|70|1");
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM sysobjects WHERE name LIKE 'IP_KNTF%'"), "3");
  EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0);
  EXPECT_EQ(sonuc.kanit.satirlar[0].fark().birim, 50);
  EXPECT_EQ(sonuc.kanit.satirlar[1].kod + ": " + sonuc.kanit.satirlar[1].neden,
            "K1: Para biçimine yuvarlama");
  // Repeated onto the same target: openings do not add up, counters get one more row.
  devret(girdi());
  EXPECT_EQ(satirlar("SELECT COUNT(*),SUM(Btutar) FROM KASAHAREKET"), "2|100.01");
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM IP_KNTF1"), "2");
}

TEST_F(AcilisTest, AccountsKeepTheirAverageDueDay) {
  s().run(
      "INSERT INTO CARIKART (Cari_Kod,Unvan) VALUES ('C1','Alacaklı') INSERT INTO CARIKART (Cari_Kod,Unvan) "
      "VALUES ('C2','Borçlu') "
      "INSERT INTO CARIKART (Cari_Kod,Unvan) VALUES ('C3','Kapanmış') INSERT INTO CARIKART (Cari_Kod,Unvan) "
      "VALUES ('C4','Uzak')");
  const auto hareket = [&](const std::string& kod, const std::string& tarih, int vade, const std::string& b,
                           const std::string& a) {
    s().run(
        "INSERT INTO CARIHAREKET (Tarih,Fis_No,Islem_Tipi,Cari_ID,Cari_Kod,Vade,BTutar,ATutar,Dovizli_Tutar) "
        "SELECT '" +
        tarih + "','1','Borç Dekontu',Cari_ID,Cari_Kod," + std::to_string(vade) + "," + b + "," + a +
        ",0 FROM CARIKART WHERE Cari_Kod='" + kod + "'");
  };
  hareket("C1", "20120101", 30, "0", "100");  // A = 30
  hareket("C1", "20120101", 10, "40", "0");   // B = 10; credit: 10 days from 01.01.2012
  hareket("C2", "20120101", 60, "100", "0");  // B = 60
  hareket("C2", "20120101", 20, "0", "25");   // A = 20; debit: 2 * 60 - 20 = 100
  hareket("C3", "20120101", 0, "5", "5");
  hareket("C4", "20120101", 2000, "1", "0");  // 4000 days: beyond 1000
  devret(girdi());
  EXPECT_EQ(satirlar("SELECT a.Fis_No,a.Cari_Kod,a.Cari_Unvan,a.BTutar,a.ATutar,a.Vade,a.Dovizli_Borc,CASE "
                     "WHEN a.CariHareket_Fis_ID=h.Cari_Hareket_ID THEN 1 END FROM ACILIS "
                     "a,CARIHAREKET h ORDER BY a.Cari_Hareket_ID"),
            "1|C1|Alacaklı|0|60|-356|0|1\n2|C2|Borçlu|75|0|-266|0|1\n4|C4|Uzak|1|0|0|0|1");
  EXPECT_EQ(satirlar("SELECT Fis_No,Islem_Tipi,ATutar,BTutar,Tarih FROM CARIHAREKET"),
            "1|Açılış Fişi|0|0|2013-01-01 00:00:00.000");
}

TEST_F(AcilisTest, StockPerWarehouseAtOneCost) {
  s().run(
      "INSERT INTO STOKKART (Stok_Kod,Stok_Ad,Ana_Birim) VALUES ('S1','Bir','ADET') INSERT INTO STOKKART "
      "(Stok_Kod,Stok_Ad,Ana_Birim) VALUES ('S2','Eksi','KG') "
      "INSERT INTO STOKKART (Stok_Kod,Stok_Ad,Ana_Birim) VALUES ('S3','Emanet','KG')");
  s().run(
      "DELETE FROM AMBAR INSERT INTO AMBAR (Ambar_No,Ambar_Ad) VALUES (2,'B') INSERT INTO AMBAR "
      "(Ambar_No,Ambar_Ad) VALUES (1,'A')");
  const auto h = [&](const std::string& kod, const std::string& tarih, int ambar, const std::string& giris,
                     const std::string& cikis, const std::string& maliyet,
                     const std::string& tip = "Alış Faturası") {
    s().run(
        "INSERT INTO STOKHAREKET "
        "(Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,Maliyet) SELECT '" +
        tarih + "','1','" + tip + "','Mal',Stok_ID,Stok_Kod," + std::to_string(ambar) + "," + giris + "," +
        cikis + "," + maliyet + " FROM STOKKART WHERE Stok_Kod='" + kod + "'");
  };
  // Typed exit first; within the day the entry is replayed first: U = 5, then (6 * 5 + 4 * 10) / 10 = 7.
  h("S1", "20120105", 1, "0", "4", "0", "Satış Faturası");
  h("S1", "20120105", 1, "10", "0", "5");
  h("S1", "20120210", 2, "4", "0", "10");
  h("S1", "20130110", 1, "1", "0", "999");  // behind the period's end: counted in quantity, not in cost
  h("S2", "20120301", 1, "0", "3", "0", "Satış Faturası");  // below nought
  h("S3", "20120301", 2, "7", "0", "8", "Konsinye Giriş");  // on consignment: no cost
  DevirGirdisi g = girdi();
  auto sonuc = devret(g);
  const std::string sql =
      "SELECT "
      "h.Fis_No,h.Islem_No,h.Stok_Kod,h.Ambar_No,h.Birim,h.Miktar,h.Birim_Fiyat,h.Tutar,h.Giris,h.Cikis,h."
      "Maliyet,k.Net_Tutar FROM STOKHAREKET h,STOKHAREKETKART k WHERE "
      "k.Stok_HareketKart_ID=h.Stok_HareketKart_ID ORDER BY h.Stok_Hareket_ID";
  EXPECT_EQ(satirlar(sql),
            "0001|1|S1|1|ADET|7|7|49|7|0|7|49\n"
            "0002|1|S1|2|ADET|4|7|28|4|0|7|28\n"
            "0002|2|S3|2|KG|7|0|0|7|0|0|28");
  EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
  std::string degerler;
  for (const KanitSatiri& satir : sonuc.kanit.satirlar)
    if (satir.tur.rfind("Stok değeri", 0) == 0)
      degerler += satir.tur + " " + sqlMetni(satir.kaynak) + " " + sqlMetni(satir.hedef) + "\n";
  EXPECT_EQ(degerler, "Stok değeri, ambar 1 49 49\nStok değeri, ambar 2 28 28\n");
  // With items below nought: quantity and amount negative, the exit positive, the line number that of the
  // row.
  g = girdi();
  g.STEksi = true;
  sonuc = devret(g);
  EXPECT_EQ(satirlar(sql),
            "0001|1|S1|1|ADET|7|7|49|7|0|7|49\n"
            "0001|2|S2|1|KG|-3|0|0|0|3|0|49\n"
            "0002|1|S1|2|ADET|4|7|28|4|0|7|28\n"
            "0002|2|S3|2|KG|7|0|0|7|0|0|28");
  EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
}

// Histories of every kind: the openings are the balances at the costs of the replay, and the proof, which
// reckons for itself, finds the same. A cost that is changed on its way into the target does not escape it.
TEST_F(AcilisTest, TheProofReckonsCostsForItself) {
  std::mt19937 rastgele(20121231);
  const auto sayi = [&](int ust) { return std::to_string(rastgele() % static_cast<unsigned>(ust)); };
  std::string sql = "SET NOCOUNT ON ";
  for (int i = 1; i <= 30; ++i)
    sql += "INSERT INTO STOKKART (Stok_Kod) VALUES ('R" + std::to_string(i) + "') ";
  for (int i = 0; i < 900; ++i) {
    const bool giris = rastgele() % 2 == 0;
    const std::string miktar = sayi(40) + "." + sayi(1000);
    sql += std::string(
               "INSERT INTO STOKHAREKET "
               "(Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Ambar_No,Giris,Cikis,Maliyet,Stok_ID,Stok_Kod) "
               "SELECT '20120") +
           std::to_string(1 + rastgele() % 9) + "1" + sayi(9) + "','1','" +
           (rastgele() % 20 == 0 ? "Konsinye" : "x") + "','Mal'," + std::to_string(1 + rastgele() % 2) + "," +
           (giris ? miktar + "," + (rastgele() % 9 == 0 ? miktar : "0") : "0," + miktar) + "," +
           (rastgele() % 15 == 0 ? "NULL" : sayi(90) + "." + sayi(10000)) +
           ",Stok_ID,Stok_Kod FROM STOKKART WHERE Stok_Kod='R" + std::to_string(1 + rastgele() % 30) + "' ";
  }
  s().run(
      "DELETE FROM AMBAR INSERT INTO AMBAR (Ambar_No) VALUES (1) INSERT INTO AMBAR (Ambar_No) VALUES (2)");
  s().run(sql);
  DevirGirdisi g = girdi();
  g.STEksi = true;
  const auto sonuc = devret(g);
  EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM STOKHAREKET WHERE Maliyet>0 AND Miktar<0") != "0", true);
  for (const char* const kod : {"R1", "R17", "R30"}) {
    const auto gecmis = Maliyet_Gecmisi(s().s.oturum, kaynak, kod);
    s().bagla("YENI2013");
    EXPECT_EQ(
        satirlar(std::string("SELECT DISTINCT CONVERT(MONEY,Maliyet) FROM STOKHAREKET WHERE Stok_Kod='") +
                 kod + "'"),
        db::Value(db::Decimal{gecmis.satirlar.back().birimMaliyet.birim, 4}).text())
        << kod;
  }
  s().run(
      "CREATE TRIGGER KAYAN ON STOKHAREKET FOR INSERT AS UPDATE STOKHAREKET SET Tutar=Tutar*1.01 WHERE "
      "Stok_Kod='R17' AND Ambar_No=1");
  DevirGirdisi yine = girdi();
  yine.STEksi = true;
  const auto kayan = devret(yine);
  EXPECT_EQ(kayan.kanit.aciklanmayan(), 2) << kanitMetni(kayan.kanit, true);
}

TEST_F(AcilisTest, PersonnelFollowsTheRowBehindTheLastFocus) {
  s().run("INSERT INTO PERSONELKARTI (Kod,Adi) VALUES ('P1','Ayşe')");
  s().run(
      "INSERT INTO PERSONELHAREKET (Islem_Tipi,Personel_ID,Kod,BTutar,ATutar) SELECT "
      "'Maaş',Personel_ID,Kod,0,1200 FROM PERSONELKARTI");
  DevirGirdisi g = girdi();
  g.secenekler.koy(*Secenekler::bul("6.1"), false);  // "Karşılıksız Senetler" follows the last focused row
  devret(g);
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM PERSONELHAREKET"), "0");
  EXPECT_EQ(satirlar("SELECT Kod FROM PERSONELKARTI"), "P1");
  devret(girdi());
  EXPECT_EQ(satirlar("SELECT h.Fis_No,h.Kod,h.Adi,h.ATutar,h.BTutar,h.Islem_Tipi FROM PERSONELHAREKET "
                     "h,PERSONELHAREKETKART k WHERE "
                     "k.Personel_HareketKart_ID=h.Personel_HareketKart_ID"),
            "1|P1|Ayşe|1200|0|Açılış Fişi");
}

}  // namespace
}  // namespace rollover::test
