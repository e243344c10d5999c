// What `guncelle --dene` prints, run by `sql -i`, makes of a company what `guncelle` makes of it.
#include <gtest/gtest.h>

#include <fstream>

#include "support/komut_satiri.h"
#include "support/surucu.h"

namespace {

class GuncelleBetigi : public testing::Test {
 protected:
  support::KomutSatiri cli{support::surucuYap};

  void calistir(const std::vector<std::string>& arguments, const std::string& input = "") {
    ASSERT_EQ(cli.calistir(arguments, input), 0) << cli.out << cli.err;
  }
  void firma(const std::string& ad, const std::string& kod) {
    calistir({"firma-olustur", "--ad", ad, "--kod", kod, "--unvan", "U", "--baslangic", "01/01/2012",
              "--bitis", "31/12/2012"});
    // Rows that are filled, moved and copied, and a table that is rebuilt.
    calistir({"sql", "--db", ad,
              "DROP TABLE KASAKART\nGO\n"
              "CREATE TABLE KASAKART (Kasa_ID INT NOT NULL IDENTITY, Kasa_Kod CHAR(10) NOT NULL, Kasa_Ad "
              "CHAR(50), "
              "O_Kod CHAR(21), Kullanici_ID INT, MHesap_ID INT, MHesap_Kod CHAR(26))\nGO\n"
              "INSERT INTO KASAKART (Kasa_Kod,Kasa_Ad) VALUES ('K1','Merkez')\n"
              "ALTER TABLE FATURAHAREKET ALTER COLUMN ISK VARCHAR(30)\n"
              "INSERT INTO FATURAHAREKET (Stok_Kod,Fis_No,ISK) VALUES ('A','F1','10+5')\n"
              "INSERT INTO POSHAREKET (Islem_Tipi,Fis_No,Tutar,Cari_ID) VALUES ('Kredi Kartı "
              "Tahsilat','P1',7,3)"});
  }
  std::string liste(const std::string& ad, const std::string& sql) {
    EXPECT_EQ(cli.calistir({"sql", "--db", ad, sql}), 0) << cli.err;
    return cli.out;
  }
};

TEST_F(GuncelleBetigi, ScriptOfATrialDoesWhatTheRunDoes) {
  calistir({"kur", "--sunucu", "(yerel)"}, "sql-gizli\nFabrika1\n");
  firma("BETIK", "00001");
  firma("DOGRUDAN", "00002");
  calistir({"guncelle", "--ad", "BETIK", "--dene"});
  const std::string script = cli.out, counts = cli.err;
  EXPECT_TRUE(script.starts_with("USE [BETIK]\nGO\nSET XACT_ABORT ON\nGO\n")) << script.substr(0, 200);
  EXPECT_NE(script.find("\nGO\nUSE [Defination_DB]\nGO\n"), std::string::npos);
  EXPECT_NE(script.find("\n-- Sunucu reddeder: ALTER TABLE MUHFISKART ADD FisKartKontrol_No "),
            std::string::npos);
  const auto file = cli.dizin / "betik.sql";
  std::ofstream(file) << script;
  calistir({"sql", "--db", "master", "-i", file.string()});
  calistir({"guncelle", "--ad", "DOGRUDAN"});
  EXPECT_EQ(cli.out, counts);
  // Letter for letter, the texts of the views too.
  calistir({"sema", "--ad", "BETIK", "--metin"});
  const std::string betik = cli.out;
  calistir({"sema", "--ad", "DOGRUDAN", "--metin"});
  EXPECT_EQ(betik, cli.out);
  for (const char* sql :
       {"SELECT Kasa_Kod,Kasa_Ad,Isyeri_ID,Kilit FROM KASAKART",
        "SELECT Stok_Kod,ISK,ISKYEDEK FROM FATURAHAREKET",
        "SELECT Fis_No,ATutar,Doviz_ID,Iptal FROM CARIHAREKET", "SELECT Fis_No,Satis_ID FROM POSHAREKET"})
    EXPECT_EQ(liste("BETIK", sql), liste("DOGRUDAN", sql));
  EXPECT_EQ(liste("Defination_DB", "SELECT sysfrm_dbnm,DBVRSYN FROM sysfrmlng"),
            "sysfrm_dbnm\tDBVRSYN\nBETIK\t2012.002\nDOGRUDAN\t2012.002\n");
  // The same script once more: what is refused now is taken back whole.
  cli.calistir({"sql", "--db", "master", "-i", file.string()});
  EXPECT_EQ(liste("BETIK", "SELECT Kasa_Kod,Kasa_Ad,Isyeri_ID,Kilit FROM KASAKART"),
            "Kasa_Kod\tKasa_Ad\tIsyeri_ID\tKilit\nK1\tMerkez\t1\t0\n");
  EXPECT_EQ(liste("BETIK", "SELECT ISK FROM FATURAHAREKET"), "ISK\n10+5\n");
}

}  // namespace
