// Definitions by their codes, prices, orders, cheques and notes, recipes.
#include "rollover/devir_ortami.h"

namespace rollover::test {
namespace {

using BelgeTest = DevirTest;

TEST_F(BelgeTest, ReferencesAreTranslatedByCode) {
  // Ids of the source have gaps: nothing is where it was.
  s().run(
      "INSERT INTO SATICI (Satici_Kodu,Satici_Adi) VALUES ('BOS','x') INSERT INTO SATICI "
      "(Satici_Kodu,Satici_Adi) VALUES ('AHMET','Ahmet') DELETE FROM SATICI WHERE Satici_Kodu='BOS' "
      "INSERT INTO MUHKART (MHesap_Kod,MHesap_Ad) VALUES ('999','x') INSERT INTO MUHKART "
      "(MHesap_Kod,MHesap_Ad) VALUES ('120','Alıcılar') "
      "INSERT INTO MUHKART (MHesap_Kod,MHesap_Ad) VALUES ('120.01','Şube') DELETE FROM MUHKART WHERE "
      "MHesap_Kod='999'");
  s().run(
      "INSERT INTO CARIKART (Cari_Kod,Unvan,Satici_ID,MHesap_ID,Adres1) SELECT 'C''1','O''Neil "
      "',Satici_ID,MHesap_ID,'  iç ' FROM SATICI,MUHKART WHERE Satici_Kodu='AHMET' AND "
      "MHesap_Kod='120.01' INSERT INTO CARIKART (Cari_Kod,Unvan,Satici_ID,MHesap_ID) VALUES "
      "('C2','Boş',NULL,98765)");
  DevirGirdisi g = girdi();
  auto sonuc = devret(g);
  EXPECT_EQ(sonuc.atlananSayisi, 0);
  // A number without a row in the source stays, an empty one becomes 0; texts lose their blanks at both ends.
  const std::string sql =
      "SELECT c.Cari_Kod,c.Unvan,c.Adres1,s.Satici_Kodu,m.MHesap_Kod,CASE WHEN c.Satici_ID=0 THEN 0 END,CASE "
      "WHEN c.MHesap_ID=98765 THEN 98765 END FROM CARIKART c "
      "LEFT JOIN SATICI s ON s.Satici_ID=c.Satici_ID LEFT JOIN MUHKART m ON m.MHesap_ID=c.MHesap_ID ORDER BY "
      "c.Cari_ID";
  EXPECT_EQ(satirlar(sql), "C'1|O'Neil|iç|AHMET|120.01|NULL|NULL\nC2|Boş|NULL|NULL|NULL|0|98765");
  // The chart's triggers have looked at every row by itself.
  EXPECT_EQ(
      satirlar("SELECT m.MHesap_Kod,m.AnaHesaptir,a.MHesap_Kod,b.Bakiye FROM MUHKART m,MUHKART a,MUHBAKIYE b "
               "WHERE a.MHesap_ID=m.Ana_Hesap_ID AND b.MHesap_ID=m.MHesap_ID ORDER BY m.MHesap_Kod"),
      "120|1|120|0\n120.01|0|120|0");
  // Again, with the sellers left out: a code that the target lacks becomes the first definition.
  s().run("DELETE FROM SATICI WHERE Satici_Kodu='AHMET' UPDATE CARIKART SET Unvan='Hedefte'");
  g = girdi();
  g.secenekler.koy(*Secenekler::bul("10"), false);
  sonuc = devret(g);
  EXPECT_EQ(satirlar("SELECT Satici_ID,Unvan FROM CARIKART ORDER BY Cari_ID"), "1|O'Neil\n0|Boş");
  EXPECT_EQ(sonuc.guncellenen > 0, true);
}

TEST_F(BelgeTest, RowsOfOneCodeOverwriteEachOther) {
  s().run(
      "INSERT INTO HESAPKART (Hesap_No,Hesap_Ad) VALUES ('iki','ilk') INSERT INTO HESAPKART "
      "(Hesap_No,Hesap_Ad) VALUES ('tek','tek') INSERT INTO HESAPKART (Hesap_No,Hesap_Ad) VALUES "
      "('İKİ','son')");
  s().run(
      "INSERT INTO POSANLASMA (Hesap_ID,Taksit_Sayisi,Aciklama) SELECT Hesap_ID,'3',Hesap_Ad FROM HESAPKART "
      "INSERT INTO POSANLASMA (Hesap_ID,Taksit_Sayisi) VALUES (777,'3')");
  devret(girdi());
  EXPECT_EQ(satirlar("SELECT Hesap_No,Hesap_Ad FROM HESAPKART ORDER BY Hesap_ID"), "İKİ|son\ntek|tek");
  EXPECT_EQ(satirlar("SELECT h.Hesap_No,p.Taksit_Sayisi,p.Aciklama FROM POSANLASMA p,HESAPKART h WHERE "
                     "h.Hesap_ID=p.Hesap_ID ORDER BY p.Anlasma_ID"),
            "İKİ|3|son\ntek|3|tek");
}

TEST_F(BelgeTest, WhatDoesNotFitIsPassedOverByItselfAndNamed) {
  s().run(
      "INSERT INTO STOKKART (Stok_Kod,Stok_Ad,Ana_Birim) VALUES ('A','Bir','ADET') INSERT INTO STOKKART "
      "(Stok_Kod,Stok_Ad,Ana_Birim) VALUES ('B','Uzun adlı','KG') INSERT INTO STOKKART "
      "(Stok_Kod,Stok_Ad,Ana_Birim) VALUES ('C','Üç','KG')");
  s().run(
      "INSERT INTO CARIKART (Cari_Kod) VALUES ('C1') INSERT INTO CARISTOKFIYAT "
      "(Cari_ID,Stok_ID,Fiyat_Sira_No) SELECT Cari_ID,Stok_ID,1 FROM CARIKART,STOKKART");
  devret(girdi());
  s().run(
      "DELETE FROM STOKKART WHERE Stok_Kod<>'A' DELETE FROM CARISTOKFIYAT WHERE Stok_ID<>(SELECT Stok_ID "
      "FROM STOKKART) ALTER TABLE STOKKART ALTER COLUMN Stok_Ad CHAR(5) NULL");
  const auto sonuc = devret(girdi());
  EXPECT_EQ(satirlar("SELECT Stok_Kod,Stok_Ad,Ana_Birim FROM STOKKART ORDER BY Stok_Kod"),
            "A|Bir|ADET\nB|NULL|KG\nC|Üç|KG");
  // The price of A stands already: its key is refused, the other two come.
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM CARISTOKFIYAT"), "3");
  ASSERT_EQ(sonuc.atlananlar.size(), 2U);
  EXPECT_EQ(sonuc.atlananlar[0].tablo + "/" + sonuc.atlananlar[0].ad + "/" + sonuc.atlananlar[0].neden,
            "STOKKART/B/Stok_Ad değeri hedef kolona sığmadığı için aktarılmadı.");
  EXPECT_EQ(sonuc.atlananlar[1].tablo, "CARISTOKFIYAT");
  EXPECT_NE(sonuc.atlananlar[1].neden.find("PRIMARY KEY"), std::string::npos);
}

TEST_F(BelgeTest, PricesFollowTheirOptions) {
  s().run(
      "INSERT INTO STOKKART (Stok_Kod) VALUES ('A') INSERT INTO STOKFIYAT "
      "(Stok_ID,Fiyat_Sira_No,Fiyat_Aciklama,Ana_Birim_Fiyat,Birim2_Fiyat,Ana_Birim_Fiyat_Alis,KUR) SELECT "
      "Stok_ID,2,'Perakende',5.5,NULL,4.25,3 FROM STOKKART");
  const std::string sql =
      "SELECT "
      "s.Stok_Kod,f.Fiyat_Sira_No,f.Fiyat_Aciklama,f.Ana_Birim_Fiyat,f.Birim2_Fiyat,f.Ana_Birim_Fiyat_Alis,f."
      "KUR FROM STOKFIYAT f,STOKKART s WHERE s.Stok_ID=f.Stok_ID";
  struct {
    const char* kapali;
    const char* satir;
  } const durumlar[] = {
      {"", "A|2|Perakende|5.5|0|4.25|3"}, {"2.4", "A|2|Perakende|5.5|0|0|3"}, {"2.3", "A|0|0|0|0|4.25|3"}};
  for (const auto& d : durumlar) {
    DevirGirdisi g = girdi();
    if (*d.kapali != 0) g.secenekler.koy(*Secenekler::bul(d.kapali), false);
    devret(g);
    EXPECT_EQ(satirlar(sql), d.satir) << d.kapali;
    kaldir();
  }
}

TEST_F(BelgeTest, OrdersWithWhatIsStillToBeDelivered) {
  const auto siparis = [&](const std::string& no, const std::string& tip, const std::string& durum) {
    s().run("INSERT INTO SIPARISKART (Tarih,Fis_No,Islem_Tipi,Durum,Kullanici_ID) VALUES ('20121101','" + no +
            "','" + tip + "','" + durum + "',7)");
  };
  const auto satir = [&](const std::string& no, const std::string& tip, int sira, double miktar,
                         double sevk) {
    s().run(
        "INSERT INTO SIPARISHAREKET "
        "(Siparis_ID,Tarih,Fis_No,Islem_Tipi,Islem_No,Stok_Kod,Miktar,Sevk_Edilen,Kalan,Kullanici_ID) SELECT "
        "TOP 1 Siparis_ID,'20121101',Fis_No,Islem_Tipi," +
        std::to_string(sira) + ",'S'," + std::to_string(miktar) + "," + std::to_string(sevk) + "," +
        std::to_string(miktar - sevk) + ",7 FROM SIPARISKART WHERE Fis_No='" + no + "' AND Islem_Tipi='" +
        tip + "'");
  };
  siparis("1", "Alınan Sipariş", "AÇIK");
  siparis("1", "Verilen Sipariş", "KAPALI");
  siparis("2", "Alınan Sipariş", "AÇIK");
  satir("1", "Alınan Sipariş", 1, 10, 4);
  satir("1", "Alınan Sipariş", 2, 5, 5);
  satir("1", "Verilen Sipariş", 1, 8, 2);  // of another type with the same number: comes along
  satir("2", "Alınan Sipariş", 1, 3, 0);
  const std::string
      kartlar = "SELECT Fis_No,Islem_Tipi,Durum,Kullanici_ID FROM SIPARISKART ORDER BY Siparis_ID",
      satirSql =
          "SELECT h.Fis_No,h.Islem_Tipi,h.Islem_No,h.Miktar,h.Sevk_Edilen,h.Kalan,h.Kullanici_ID,k.Fis_No "
          "FROM SIPARISHAREKET h LEFT JOIN SIPARISKART k ON "
          "k.Siparis_ID=h.Siparis_ID AND k.Islem_Tipi=h.Islem_Tipi ORDER BY h.Islem_Tipi,h.Fis_No,h.Islem_No";
  auto sonuc = devret(girdi());
  EXPECT_EQ(satirlar(kartlar), "1|Alınan Sipariş|AÇIK|-1\n2|Alınan Sipariş|AÇIK|-1");
  EXPECT_EQ(
      satirlar(satirSql),
      "1|Alınan Sipariş|1|6|0|6|-1|1\n2|Alınan Sipariş|1|3|0|3|-1|2\n1|Verilen Sipariş|1|6|0|6|-1|NULL");
  EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
  // The new period takes order 2 over and links order 1; order 3 is new. Quantities now as they were.
  s().run(
      "UPDATE SIPARISKART SET Kullanici_ID=5,Durum='KAPALI' WHERE Fis_No='2' INSERT INTO SIPARISBAGLANTI "
      "(Siparis_ID,Fis_No) SELECT Siparis_ID,'F1' FROM SIPARISKART WHERE Fis_No='1'");
  s().bagla(kaynak);
  siparis("3", "Alınan Sipariş", "AÇIK");
  satir("3", "Alınan Sipariş", 1, 9, 1);
  DevirGirdisi g = girdi();
  g.secenekler.koy(*Secenekler::bul("4.1"), false);
  sonuc = devret(g);
  EXPECT_EQ(satirlar(kartlar),
            "1|Alınan Sipariş|AÇIK|-1\n2|Alınan Sipariş|KAPALI|5\n3|Alınan Sipariş|AÇIK|-1");
  EXPECT_EQ(satirlar(satirSql),
            "1|Alınan Sipariş|1|6|0|6|-1|1\n2|Alınan Sipariş|1|3|0|3|-1|2\n3|Alınan "
            "Sipariş|1|9|1|8|-1|3\n1|Verilen Sipariş|1|6|0|6|-1|NULL");
}

TEST_F(BelgeTest, ChequesThatAreAlive) {
  s().run(
      "INSERT INTO CARIKART (Cari_Kod,Unvan) VALUES ('A','Keşideci') INSERT INTO CARIKART (Cari_Kod,Unvan) "
      "VALUES ('B','Ciro Edilen')");
  const auto cek = [&](const std::string& no, const std::string& durum, const std::string& vade) {
    s().run(
        "INSERT INTO CEKKART "
        "(Cek_No,Portfoy_No,Durum,Vade,Tutar,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi,Bordro_ID,Ciro) SELECT "
        "'" +
        no + "','" + no + "','" + durum + "','" + vade +
        "',100,Cari_ID,Cari_Kod,Unvan,'Çek Giriş',1,0 FROM CARIKART WHERE Cari_Kod='A'");
    for (const char* const bordro : {"1", "2"}) {
      s().run("INSERT INTO CEKDURUM (Cek_ID,Bordro_ID,Durum) SELECT Cek_ID," + std::string(bordro) +
              ",Durum FROM CEKKART WHERE Portfoy_No='" + no + "'");
      s().run(
          "INSERT INTO CEK "
          "(Cek_ID,Cek_No,Portfoy_No,Bordro_ID,Durum,Tutar,Cari_ID,Cari_Kod,Cari_Unvan,Islem_Tipi) SELECT "
          "k.Cek_ID,k.Cek_No,k.Portfoy_No," +
          std::string(bordro) +
          ",k.Durum,k.Tutar,c.Cari_ID,c.Cari_Kod,c.Unvan,'Çek Çıkış(C/H)' FROM CEKKART k,CARIKART c WHERE "
          "k.Portfoy_No='" +
          no + "' AND c.Cari_Kod='B'");
    }
  };
  cek("1", "Portföyde", "20130301");
  cek("2", "Karşılıksız", "20120101");
  cek("3", "Cirolu", "20121215");  // 17 days before the start
  cek("4", "Cirolu", "20121101");
  cek("5", "Parçalı Tahsil", "20120901");
  cek("6", "Ödendi", "20120901");
  s().run(
      "INSERT INTO CEKPARCALI (Cek_ID,Kasa_Hareket_ID,Tahsil_Tarih,Tahsil_Tutar,Fis_No,Dovizli_Tutar) SELECT "
      "Cek_ID,55,'20121001',30,'77',0 FROM CEKKART WHERE Portfoy_No='5'");
  DevirGirdisi g = girdi();
  g.Ciro_Takip_Suresi = "20";
  g.secenekler.koy(*Secenekler::bul("5.1"), false);
  s().s.oturum.Kullanici_ID = 9;
  auto sonuc = devret(g);
  EXPECT_EQ(
      satirlar("SELECT k.Portfoy_No,k.Durum,k.Islem_Tipi,k.Bordro_No,c.Cari_Kod,b.Islem_Tipi,b.Toplam_Tutar "
               "FROM CEKKART k,CARIKART c,BORDRO b WHERE c.Cari_ID=k.Cari_ID AND "
               "b.Bordro_ID=k.Bordro_ID ORDER BY k.Cek_ID"),
      "1|Portföyde|Çek Devir Bordrosu|1|A|Çek Devir Bordrosu|0\n3|Cirolu|Çek Devir Bordrosu|1|A|Çek Devir "
      "Bordrosu|0\n5|Parçalı Tahsil|Çek Devir Bordrosu|1|A|Çek Devir Bordrosu|0");
  EXPECT_EQ(
      satirlar(
          "SELECT k.Portfoy_No,d.Durum,d.Durum_Tarih,d.Bordro_No,d.Cari_Unvan,d.Islem_Tipi,d.Kullanici_ID "
          "FROM CEKDURUM d,CEKKART k WHERE k.Cek_ID=d.Cek_ID ORDER BY d.Durum_ID"),
      "1|Portföyde|2013-01-01 00:00:00.000|1|Keşideci|Çek Devir Bordrosu|9\n3|Cirolu|2013-01-01 "
      "00:00:00.000|1|Keşideci|Çek Devir Bordrosu|9\n5|Parçalı "
      "Tahsil|2013-01-01 00:00:00.000|1|Keşideci|Çek Devir Bordrosu|9");
  // Movements at the latest slip; the endorsed ones stand in the name of the party that has them. The card of
  // 4 is past its days, its movement is not asked for them and hangs on the first cheque.
  EXPECT_EQ(satirlar("SELECT h.Portfoy_No,h.Islem_Tipi,h.Cari_Kod,c.Cari_Kod,h.Cari_Unvan,k.Portfoy_No FROM "
                     "CEK h,CARIKART c,CEKKART k WHERE c.Cari_ID=h.Cari_ID AND k.Cek_ID=h.Cek_ID ORDER BY "
                     "h.Cek_Hareket_ID"),
            "1|Çek Devir Bordrosu|A|A|Keşideci|1\n3|Çek Devir Bordrosu|B|B|Ciro Edilen|3\n4|Çek Devir "
            "Bordrosu|B|B|Ciro Edilen|1\n5|Çek Devir Bordrosu|A|A|Keşideci|5");
  EXPECT_EQ(satirlar("SELECT k.Portfoy_No,p.Kasa_Hareket_ID,p.Tahsil_Tutar,p.Fis_No FROM CEKPARCALI "
                     "p,CEKKART k WHERE k.Cek_ID=p.Cek_ID"),
            "5|0|30|77");
  EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
  // The new period moves cheque 1: it is left alone, the slip is used again.
  s().run(
      "UPDATE CEKKART SET Durum='Tahsil' WHERE Portfoy_No='1' INSERT INTO CEKDURUM (Cek_ID,Durum) SELECT "
      "Cek_ID,'Tahsil' FROM CEKKART WHERE Portfoy_No='1' UPDATE CEKKART SET Tutar=1 WHERE "
      "Portfoy_No='5'");
  s().bagla("Defination_DB");
  g = girdi();
  sonuc = devret(g);
  EXPECT_EQ(satirlar("SELECT Portfoy_No,Durum,Tutar FROM CEKKART ORDER BY Cek_ID"),
            "1|Tahsil|100\n3|Cirolu|100\n5|Parçalı Tahsil|100\n2|Karşılıksız|100");
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM BORDRO"), "1");
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM CEKPARCALI"), "1");
}

TEST_F(BelgeTest, CardReceiptsOfTheCatalogAndTheUsers) {
  s().run(
      "INSERT INTO HESAPKART (Hesap_No,Hesap_Ad) VALUES ('H1','A') INSERT INTO HESAPKART (Hesap_No,Hesap_Ad) "
      "VALUES ('H2','B')");
  s().run(
      "INSERT INTO POSANLASMA (Hesap_ID,Taksit_Sayisi) SELECT Hesap_ID,'6' FROM HESAPKART ORDER BY Hesap_ID");
  const auto pos = [&](const std::string& no, const std::string& tarih, const std::string& aktarildi) {
    s().run(
        "INSERT INTO POSHAREKET "
        "(Hesap_ID,Anlasma_ID,Satis_ID,Fis_No,Islem_Tarih,Hesaba_Aktarim_Tarih,Tutar,Hesaba_Aktarildi,Cari_"
        "ID) SELECT h.Hesap_ID,a.Anlasma_ID,3,'" +
        no + "','20121220','" + tarih + "',10," + aktarildi +
        ",4 FROM HESAPKART h,POSANLASMA a WHERE a.Hesap_ID=h.Hesap_ID AND h.Hesap_No='H2'");
  };
  pos("1", "20121231", "0");  // on the last day: not carried
  pos("2", "20130101", "NULL");
  pos("3", "20130105", "1");  // paid already
  s().run(
      "UPDATE Defination_DB.dbo.sysfrmlng SET SatisYapma=3,TahsilatYapma=8,AnaParaVirgul=2 WHERE "
      "sysfrm_dbnm='GUNCEL2012'");
  for (int i = 0; i < 2; ++i) devret(girdi());
  // The agreement is the first with that number of instalments, whatever its account.
  EXPECT_EQ(satirlar("SELECT p.Fis_No,h.Hesap_No,a.Anlasma_ID,p.Cari_ID,p.Satis_ID,p.Tutar FROM POSHAREKET "
                     "p,HESAPKART h,POSANLASMA a WHERE h.Hesap_ID=p.Hesap_ID AND a.Anlasma_ID=p.Anlasma_ID"),
            "2|H2|1|-1|-1|10");
  EXPECT_EQ(satirlar("SELECT sysfrm_kd,SatisYapma,TahsilatYapma,Mali_Yil_Baslangic,KilitBitTarih FROM "
                     "Defination_DB.dbo.sysfrmlng WHERE sysfrm_dbnm='YENI2013'"),
            "00003|3|3|2013-01-01 00:00:00.000|2013-12-31 00:00:00.000");
  EXPECT_EQ(
      satirlar(
          "SELECT COUNT(*),MIN(u.sysus_ID) FROM Defination_DB.dbo.sysusfrmlng u,Defination_DB.dbo.sysfrmlng "
          "f,Defination_DB.dbo.Kullanici k WHERE f.sysfrm_dbnm='YENI2013' AND "
          "u.sysfrm_ID=f.sysfrm_ID AND k.Firma_ID=f.sysfrm_ID"),
      "1|1");
}

}  // namespace
}  // namespace rollover::test
