// What may stand in a company and should not stop its rollover: codes of every kind, empty values, a source
// without rows; and what has to stop it, with nothing changed: databases that are gone or in use.
#include "rollover/devir_ortami.h"

namespace rollover::test {
namespace {

using KotuGirdiTest = DevirTest;

TEST_F(KotuGirdiTest, CodesOfEveryKindFindThemselves) {
  // A code is its row in the target whatever it holds; those that the server takes for one are one card.
  for (const char* const kod : {"O''NEIL", "İĞNE", "ığne", "BOŞLUKLU KOD", "%_[a]", "--", "ÇŞÖÜ ğ"})
    s().run(std::string("INSERT INTO CARIKART (Cari_Kod,Unvan) VALUES ('") + kod + "','" + kod +
            "') INSERT INTO STOKKART (Stok_Kod,Stok_Ad) VALUES ('" + kod + "','" + kod + "')");
  s().run(
      "INSERT INTO CARIHAREKET (Tarih,Fis_No,Islem_Tipi,Cari_ID,BTutar,ATutar,Vade,Dovizli_Tutar) SELECT "
      "'20120101','1','Borç Dekontu',Cari_ID,Cari_ID*10,0,0,0 FROM CARIKART");
  s().run(
      "INSERT INTO STOKHAREKET "
      "(Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,Maliyet) "
      "SELECT '20120101','1','Alış','Mal',Stok_ID,Stok_Kod,1,Stok_ID,0,3 FROM STOKKART");
  const auto kaynakta = [&](const std::string& sql) {
    s().bagla(kaynak);
    return satirlar(sql);
  };
  const std::string cari = "SELECT Cari_Kod,Unvan FROM CARIKART ORDER BY Cari_Kod",
                    stok = "SELECT Stok_Kod,Stok_Ad FROM STOKKART ORDER BY Stok_Kod",
                    bakiye =
                        "SELECT c.Cari_Kod,SUM(h.BTutar) FROM CARIKART c,CARIHAREKET h WHERE "
                        "h.Cari_ID=c.Cari_ID GROUP BY c.Cari_Kod ORDER BY c.Cari_Kod",
                    miktar =
                        "SELECT s.Stok_Kod,SUM(h.Giris) FROM STOKKART s,STOKHAREKET h WHERE "
                        "h.Stok_ID=s.Stok_ID GROUP BY s.Stok_Kod ORDER BY s.Stok_Kod";
  const std::string cariler = kaynakta(cari), stoklar = satirlar(stok), bakiyeler = satirlar(bakiye),
                    miktarlar = satirlar(miktar);
  for (int i = 0; i < 2; ++i) {
    const auto sonuc = devret(girdi());
    EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
    EXPECT_EQ(satirlar(cari), cariler);
    EXPECT_EQ(satirlar(stok), stoklar);
    EXPECT_EQ(
        satirlar("SELECT c.Cari_Kod,SUM(h.BTutar) FROM CARIKART c,ACILIS h WHERE h.Cari_ID=c.Cari_ID AND "
                 "h.Cari_Kod=c.Cari_Kod GROUP BY c.Cari_Kod ORDER BY c.Cari_Kod"),
        bakiyeler);
    EXPECT_EQ(satirlar(miktar), miktarlar);
  }
}

TEST_F(KotuGirdiTest, ReferencesIntoNowhereStayAndThoseWithoutATargetBecomeTheFirst) {
  s().run(
      "INSERT INTO SATICI (Satici_Kodu) VALUES ('Bizim') INSERT INTO CARIKART (Cari_Kod,Satici_ID,MHesap_ID) "
      "VALUES ('YOK',987654,876543) INSERT INTO CARIKART (Cari_Kod,Satici_ID) SELECT 'BIZIM',Satici_ID FROM "
      "SATICI WHERE Satici_Kodu='Bizim' INSERT INTO CARIHAREKET (Tarih,Fis_No,Islem_Tipi,Cari_ID,BTutar,"
      "ATutar,Vade,Dovizli_Tutar) VALUES ('20120101','1','Borç Dekontu',765432,10,0,0,0) INSERT INTO "
      "STOKHAREKET (Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,Maliyet) VALUES "
      "('20120101','1','Alış','Mal',654321,'YOK',1,9,0,3) INSERT INTO CARISTOKFIYAT (Cari_ID,Stok_ID) VALUES "
      "(543210,432109)");
  DevirGirdisi g = girdi();
  g.secenekler.koy(*Secenekler::bul("10"), false);  // the sellers stay behind
  const auto sonuc = devret(g);
  EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
  EXPECT_EQ(satirlar("SELECT Cari_Kod,Satici_ID,MHesap_ID FROM CARIKART ORDER BY Cari_Kod"),
            "BIZIM|1|0\nYOK|987654|876543");
  EXPECT_EQ(satirlar("SELECT Cari_ID,Stok_ID FROM CARISTOKFIYAT"), "543210|432109");
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM ACILIS") + satirlar("SELECT COUNT(*) FROM STOKHAREKET"), "00");
}

TEST_F(KotuGirdiTest, EmptyValuesAndGapsStopNothing) {
  // A row of NULLs wherever the schema lets one stand, between ids that are gone.
  for (const char* const tablo :
       {"STOKHAREKET",    "STOKFIYAT",     "AMBTRS",        "CARIHAREKET",     "ACILIS",     "KASAKART",
        "KASAHAREKET",    "HESAPKART",     "BANKAHAREKET",  "POSANLASMA",      "POSHAREKET", "SIPARISKART",
        "SIPARISHAREKET", "CEKKART",       "CEK",           "CEKDURUM",        "CEKPARCALI", "SENETKART",
        "SENET",          "SENETDURUM",    "PERSONELKARTI", "PERSONELHAREKET", "SABLONKART", "SABLONHAREKET",
        "RECETEKART",     "RECETEHAREKET", "AMBAR",         "SATICI",          "DOVIZTANIM", "HIZMETTANIM"}) {
    // Columns that may not be empty get an empty text or 0.
    std::string adlar, degerler;
    const auto alanlar = s().s.oturum.Baglanti->query(std::string("SELECT * FROM ") + tablo + " WHERE 1=0");
    for (const db::FieldInfo& alan : alanlar->fields()) {
      if (alan.identity) continue;
      const bool metin = alan.type == db::FieldType::Char || alan.type == db::FieldType::VarChar;
      adlar += (adlar.empty() ? "[" : ",[") + alan.name + "]";
      degerler += (degerler.empty() ? "" : ",") + std::string(alan.nullable ? "NULL" : metin ? "''" : "0");
    }
    s().run(std::string("INSERT INTO ") + tablo + " (" + adlar + ") VALUES (" + degerler + ")");
  }
  const auto sonuc = devret(girdi());
  EXPECT_EQ(sonuc.kanit.aciklanmayan(), 0) << kanitMetni(sonuc.kanit, true);
  devret(girdi());
  // The next test finds a source with its definitions.
  s().bagla(kaynak);
  s().run(
      "DELETE FROM AMBAR WHERE Ambar_No IS NULL DELETE FROM SATICI WHERE Satici_Kodu IS NULL OR "
      "Satici_Kodu='' "
      "DELETE FROM DOVIZTANIM WHERE Doviz_Kod IS NULL OR Doviz_Kod='' DELETE FROM HIZMETTANIM");
}

TEST_F(KotuGirdiTest, ASourceWithoutRowsOpensNothing) {
  const auto sonuc = devret(girdi());
  for (const KanitSatiri& satir : sonuc.kanit.satirlar)
    if (satir.toplam) {
      EXPECT_EQ(satir.fark(), Para{}) << satir.tur;
    }
  for (const char* const tablo : {"KASAHAREKET", "BANKAHAREKET", "ACILIS", "STOKHAREKET", "STOKHAREKETKART",
                                  "CARIHAREKET", "PERSONELHAREKETKART", "BORDRO", "SIPARISKART"})
    EXPECT_EQ(satirlar(std::string("SELECT COUNT(*) FROM ") + tablo), "0") << tablo;
}

TEST_F(KotuGirdiTest, DatabasesThatAreGoneOrStopEndTheRunWithAText) {
  const struct {
    int taraf;
    const char* metin;
  } durumlar[] = {{0, "Devredilen Firmaya Bağlanılamadı\n"}, {1, "Devrin Yapıldığı Firmaya Bağlanılamadı\n"}};
  devret(girdi());
  s().bagla("Defination_DB");
  const std::string firmalar = satirlar("SELECT * FROM sysfrmlng ORDER BY sysfrm_ID");
  for (const auto& d : durumlar) {
    DevirGirdisi g = girdi();
    g.taraf[static_cast<std::size_t>(d.taraf)].Firma_Adi = "GITTI2012";
    const DevirSonucu sonuc = Devret(s().s.oturum, g);
    EXPECT_FALSE(sonuc.tamam);
    EXPECT_EQ(sonuc.hata.rfind(d.metin, 0), 0U) << sonuc.hata;
    s().bagla("Defination_DB");
    EXPECT_EQ(satirlar("SELECT * FROM sysfrmlng ORDER BY sysfrm_ID"), firmalar);
  }
}

// The server keeps both databases for the run: nobody takes them away while it reads and writes.
TEST_F(KotuGirdiTest, NobodyDropsADatabaseUnderTheRun) {
  s().run("INSERT INTO KASAKART (Kasa_Kod,Kasa_Ad) VALUES ('K1','Merkez')");
  devret(girdi());
  s().run("UPDATE KASAKART SET Kasa_Ad='Hedefte'");
  auto kim = s().s.oturum.Baglanti->parts();
  kim.database = "master";
  DevirGirdisi g = girdi();
  for (const std::string ad : {kaynak, "YENI2013"}) {
    int deneme = 0;
    g.iptal = [&] {
      if (++deneme != 25) return false;
      auto baskasi = sirket().factory->make("(yerel)");
      baskasi->open(kim);
      try {
        baskasi->execute("DROP DATABASE " + ad);
        ADD_FAILURE() << ad;
      } catch (const db::SqlError& hata) {
        EXPECT_EQ(hata.serverNumber(), 3702) << ad << ": " << hata.what();
      }
      return false;
    };
    devret(g);
    EXPECT_GT(deneme, 25);
    EXPECT_EQ(satirlar("SELECT Kasa_Ad FROM KASAKART"), "Merkez");
    s().bagla("Defination_DB");
  }
}

TEST_F(KotuGirdiTest, ATargetInUseIsLeftAsItWas) {
  s().run("INSERT INTO KASAKART (Kasa_Kod,Kasa_Ad) VALUES ('K1','Merkez')");
  devret(girdi());
  // Another program holds the card that the run has to overwrite.
  auto baskasi = sirket().factory->make("(yerel)");
  auto kim = s().s.oturum.Baglanti->parts();
  kim.database = "YENI2013";
  baskasi->open(kim);
  baskasi->execute("BEGIN TRAN UPDATE KASAKART SET Kasa_Ad='Başkası'");
  const DevirGirdisi g = girdi();
  const DevirSonucu sonuc = Devret(s().s.oturum, g);
  EXPECT_FALSE(sonuc.tamam);
  EXPECT_FALSE(sonuc.hata.empty());
  baskasi->execute("ROLLBACK TRAN");
  baskasi.reset();
  s().bagla("YENI2013");
  EXPECT_EQ(satirlar("SELECT Kasa_Ad FROM KASAKART"), "Merkez");
  EXPECT_EQ(satirlar("SELECT COUNT(*) FROM sysobjects WHERE name LIKE 'DEVIR%'"), "0");
  devret(girdi());
}

}  // namespace
}  // namespace rollover::test
