// Recipes, counters and notes.
#include "rollover/devir_ortami.h"

namespace rollover::test {
namespace {

using ReceteSayacTest = DevirTest;

TEST_F(ReceteSayacTest, RecipesFindTheirItemsByCode) {
  s().run(
      "INSERT INTO STOKKART (Stok_Kod) VALUES ('BOS') DELETE FROM STOKKART INSERT INTO STOKKART (Stok_Kod) "
      "VALUES ('EKMEK') INSERT INTO STOKKART (Stok_Kod) VALUES ('UN')");
  s().run(
      "INSERT INTO RECETEKART (Recete_Kod,Recete_Ad,Stok_ID,Stok_Kod,Miktar) SELECT 'R''1','Ekmek "
      "',Stok_ID,Stok_Kod,10 FROM STOKKART WHERE Stok_Kod='EKMEK'");
  s().run(
      "INSERT INTO RECETEHAREKET (Satir_Tipi,Recete_ID,Recete_Kod,Stok_ID,Stok_Kod,Miktar,Fire) SELECT "
      "'Mal',r.Recete_ID,r.Recete_Kod,s.Stok_ID,s.Stok_Kod,0.75,0.5 FROM RECETEKART r,STOKKART s WHERE "
      "s.Stok_Kod='UN' INSERT INTO RECETEHAREKET (Satir_Tipi,Recete_ID,Stok_ID,Stok_Kod,Miktar) SELECT "
      "'Mal',Recete_ID,4711,'HEDEFTE YOK',2 FROM RECETEKART INSERT INTO RECETEHAREKET (Recete_ID,Stok_Kod) "
      "VALUES (99,'SAHIPSIZ')");
  const std::string sql =
      "SELECT r.Recete_Kod,r.Recete_Ad,a.Stok_Kod,h.Satir_Tipi,h.Stok_Kod,h.Miktar,h.Fire,b.Stok_Kod,CASE "
      "WHEN b.Stok_ID IS NULL THEN h.Stok_ID END FROM RECETEKART r JOIN STOKKART a ON a.Stok_ID=r.Stok_ID "
      "JOIN "
      "RECETEHAREKET h ON h.Recete_ID=r.Recete_ID LEFT JOIN STOKKART b ON b.Stok_ID=h.Stok_ID ORDER BY "
      "h.ReceteHareket_ID";
  const std::string beklenen =
      "R'1|Ekmek|EKMEK|Mal|UN|0.75|0.5|UN|NULL\nR'1|Ekmek|EKMEK|Mal|HEDEFTE YOK|2|NULL|NULL|4711";
  devret(girdi());
  EXPECT_EQ(satirlar(sql), beklenen);
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM RECETEHAREKET"), "2");
  // The lines of every recipe of the source are written again; one of the target's own stays.
  s().run(
      "INSERT INTO RECETEKART (Recete_Kod) VALUES ('KENDI') INSERT INTO RECETEHAREKET (Recete_ID,Stok_Kod) "
      "SELECT Recete_ID,'KENDI' FROM RECETEKART WHERE Recete_Kod='KENDI' UPDATE RECETEHAREKET SET Miktar=99");
  devret(girdi());
  EXPECT_EQ(satirlar(sql), beklenen);
  EXPECT_EQ(satirlar("SELECT Stok_Kod,Miktar FROM RECETEHAREKET ORDER BY Stok_Kod"),
            "HEDEFTE YOK|2\nKENDI|99\nUN|0.75");
  kaldir();
  DevirGirdisi g = girdi();
  g.secenekler.koy(*Secenekler::bul("8"), false);
  devret(g);
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM RECETEKART"), "0");
}

TEST_F(ReceteSayacTest, CountersGoOnWhereTheOldPeriodStopped) {
  s().run(
      "UPDATE IP_KASFAT SET IP='0000000042' DELETE FROM IP_STKVIR UPDATE IP_BORNO SET IP='AB''7' CREATE "
      "TABLE "
      "IP_ESKI (IP CHAR(10)) INSERT INTO IP_ESKI VALUES ('5')");
  s().run(
      "INSERT INTO KASAKART (Kasa_Kod) VALUES ('BOS') DELETE FROM KASAKART INSERT INTO KASAKART "
      "(Kasa_Kod,Kasa_Ad) VALUES ('K1','Merkez')");
  const std::string id = satirlar("SELECT Kasa_ID FROM KASAKART");
  s().run("CREATE TABLE IP_KNTF" + id + " (IP CHAR(10)) CREATE TABLE IP_KNOF" + id +
          " (IP CHAR(10)) INSERT INTO IP_KNTF" + id + " VALUES ('0000000017') INSERT INTO IP_KNOF" + id +
          " VALUES ('0000000018')");
  const auto sayaclar = [&] {
    return satirlar("SELECT IP FROM IP_KASFAT") + " " + satirlar("SELECT IP FROM IP_STKVIR") + " " +
           satirlar("SELECT IP FROM IP_BORNO") + " " +
           satirlar("SELECT COUNT(*) FROM sysobjects WHERE name='IP_ESKI'") + " " +
           satirlar("SELECT IP FROM IP_KNTF1") + " " + satirlar("SELECT IP FROM IP_KNOF1");
  };
  const struct {
    const char* kapali;
    const char* beklenen;
  } durumlar[] = {
      {"", "0000000042 0000000000 AB'7 0 0000000017 0000000018"},
      {"18", "0000000000 0000000000 0000000000 0 0000000017 0000000018"},
      // The numbers of a cash box follow the payment templates.
      {"17", "0000000042 0000000000 AB'7 0 0000000000 0000000000"},
  };
  for (const auto& d : durumlar) {
    DevirGirdisi g = girdi();
    if (*d.kapali != 0) g.secenekler.koy(*Secenekler::bul(d.kapali), false);
    const auto sonuc = devret(g);
    EXPECT_EQ(sayaclar(), d.beklenen) << d.kapali;
    EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
    kaldir();
  }
  s().bagla(kaynak);
  s().run(
      "DROP TABLE IP_ESKI DROP TABLE IP_KNTF" + id + " DROP TABLE IP_KNOF" + id +
      " INSERT INTO IP_STKVIR VALUES ('0000000000') UPDATE IP_KASFAT SET IP='0000000000' UPDATE IP_BORNO SET "
      "IP='0000000000'");
}

TEST_F(ReceteSayacTest, NotesAreTheTwinsOfCheques) {
  s().run("INSERT INTO CARIKART (Cari_Kod,Unvan) VALUES ('A','Borçlu')");
  const auto senet = [&](const std::string& no, const std::string& durum, const std::string& vade) {
    s().run(
        "INSERT INTO SENETKART (Senet_No,Portfoy_No,Durum,Vade,Tutar,Cari_ID,Cari_Kod,Cari_Unvan) SELECT '" +
        no + "','" + no + "','" + durum + "','" + vade +
        "',250,Cari_ID,Cari_Kod,Unvan FROM CARIKART INSERT INTO SENETDURUM (Senet_ID,Bordro_ID,Durum) SELECT "
        "Senet_ID,4,Durum FROM SENETKART WHERE Portfoy_No='" +
        no +
        "' INSERT INTO SENET (Senet_ID,Senet_No,Portfoy_No,Bordro_ID,Durum,Tutar,Cari_ID,Tanzim_Tarih,"
        "Pul,Gerekli_Pul,Kefil_Adi) SELECT Senet_ID,Senet_No,Portfoy_No,4,Durum,Tutar,Cari_ID,'20120105',1.5,"
        "2.5,'Kefil ' FROM SENETKART WHERE Portfoy_No='" +
        no + "'");
  };
  senet("1", "Kendi Senedimiz", "20130301");
  senet("2", "Karşılıksız", "20120101");
  senet("3", "Cirolu", "20121231");
  senet("4", "Parçalı Tahsil", "20120901");
  senet("5", "Tahsil Edildi", "20120901");
  s().run(
      "INSERT INTO SENETPARCALI (Senet_ID,Kasa_Hareket_ID,Tahsil_Tarih,Tahsil_Tutar,Fis_No,Dovizli_Tutar) "
      "SELECT "
      "Senet_ID,8,'20121002',75,'12',3 FROM SENETKART WHERE Portfoy_No='4'");
  const struct {
    const char* kapali;
    const char* sure;
    const char* numaralar;
  } durumlar[] = {{"6.1", "", "1\n4"}, {"", "0", "1\n2\n4"}, {"", "1", "1\n2\n3\n4"}, {"6.1", "abc", "1\n4"}};
  for (const auto& d : durumlar) {
    DevirGirdisi g = girdi();
    g.Ciro_Takip_Suresi = d.sure;
    if (*d.kapali != 0) g.secenekler.koy(*Secenekler::bul(d.kapali), false);
    const auto sonuc = devret(g);
    EXPECT_EQ(satirlar("SELECT Portfoy_No FROM SENETKART ORDER BY Senet_ID"), d.numaralar);
    EXPECT_EQ(satirlar("SELECT Portfoy_No FROM SENET ORDER BY Cek_Hareket_ID"), d.numaralar);
    EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
    EXPECT_EQ(satirlar("SELECT Bordro_No,Islem_Tipi,Toplam_Tutar FROM BORDRO"), "2|Senet Devir Bordrosu|0");
    EXPECT_EQ(
        satirlar("SELECT h.Bordro_No,h.Islem_Tipi,h.Tanzim_Tarih,h.Pul,h.Gerekli_Pul,h.Kefil_Adi FROM SENET "
                 "h WHERE h.Portfoy_No='1'"),
        "2|Senet Devir Bordrosu|2012-01-05 00:00:00.000|1.5|2.5|Kefil");
    EXPECT_EQ(satirlar("SELECT k.Portfoy_No,p.Kasa_Hareket_ID,p.Tahsil_Tutar,p.Fis_No,p.Dovizli_Tutar FROM "
                       "SENETPARCALI p,SENETKART k WHERE k.Senet_ID=p.Senet_ID"),
              "4|0|75|12|3");
    kaldir();
  }
}

}  // namespace
}  // namespace rollover::test
