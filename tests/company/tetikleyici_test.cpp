// What the triggers of a company make of the rows that the suite's programs write.
#include <vector>

#include "company/sirket.h"

namespace {

using company::test::Sirket;

struct Durum {
  std::string ad;
  std::string yazilan;   // statements, one batch each, separated by ";;"
  std::string beklenen;  // rows of the test's query
};

std::vector<std::string> batches(const std::string& text) {
  std::vector<std::string> out;
  std::size_t from = 0;
  for (auto end = text.find(";;"); end != std::string::npos; end = text.find(";;", from)) {
    out.push_back(text.substr(from, end - from));
    from = end + 2;
  }
  out.push_back(text.substr(from));
  return out;
}

class Tetikleyici : public company::test::SirketTest {
 protected:
  void dene(const char* firma, const std::vector<std::string>& tables, const std::string& query,
            const std::vector<Durum>& cases) {
    sirket().bagla(firma);
    for (const Durum& durum : cases) {
      SCOPED_TRACE(std::string(firma) + ": " + durum.ad);
      for (const std::string& table : tables) sirket().run("TRUNCATE TABLE " + table);
      try {
        for (const std::string& batch : batches(durum.yazilan)) sirket().run(batch);
        EXPECT_EQ(sirket().rows(query), durum.beklenen);
      } catch (const db::SqlError& error) {
        ADD_FAILURE() << error.what();
      }
    }
  }
  void iki(const std::vector<std::string>& tables, const std::string& query,
           const std::vector<Durum>& cases) {
    dene(Sirket::baz, tables, query, cases);
    dene(Sirket::guncel, tables, query, cases);
  }
};

const std::string odeme =
    "SELECT Islem_ID,Islem_Tipi,Cari_ID,CONVERT(CHAR(10),Tarih,101),TAciklama,Gun,Borc,Alacak,Doviz_ID,KUR"
    " FROM ODEMEHAREKET ORDER BY Odeme_ID";

const std::string kasaEkle =
    "INSERT INTO KASAHAREKET(Tarih,Fis_No,Cari_ID,Islem_Tipi,ATutar,BTutar,Doviz_ID,KUR,Ozel,Kullanici_ID,"
    "Fatura_ID) VALUES";
const std::string tahsilat = kasaEkle + "('03/14/2012','K1',5,'Nakit Tahsilat Fişi',0,250.5,2,1.75,1,3,0);;";

TEST_F(Tetikleyici, KasaHareketininOdemesi) {
  iki({"KASAHAREKET", "ODEMEHAREKET"}, odeme,
      {{"the debit of the plan is the cash box's outgoing amount",
        tahsilat + kasaEkle + "('03/15/2012','K2',5,'Nakit Ödeme Fişi',80,0,1,0,0,3,0)",
        "1|Nakit Tahsilat Fişi|5|03/14/2012|Peşin|0|0|250.5|2|1.75\n"
        "2|Nakit Ödeme Fişi|5|03/15/2012|Peşin|0|80|0|1|0"},
       {"a movement without account gets account 0",
        kasaEkle + "('03/14/2012','K1',NULL,'Nakit Tahsilat Fişi',0,10,1,0,0,3,0)",
        "1|Nakit Tahsilat Fişi|0|03/14/2012|Peşin|0|0|10|1|0"},
       {"and its first update takes the row away",
        kasaEkle + "('03/14/2012','K1',NULL,'Nakit Tahsilat Fişi',0,10,1,0,0,3,0);;"
                   "UPDATE KASAHAREKET SET BTutar=11",
        ""},
       {"an update follows; the explanation stays",
        tahsilat + "UPDATE ODEMEHAREKET SET TAciklama='Vadeli',Sablon_ID=4,Gun=9,Durum='KAPALI';;"
                   "UPDATE KASAHAREKET SET BTutar=300,Cari_ID=6,Tarih='04/01/2012' WHERE Fis_No='K1'",
        "1|Nakit Tahsilat Fişi|6|04/01/2012|Vadeli|0|0|300|2|1.75"},
       {"a changed type finds no row of its pair",
        tahsilat + "UPDATE KASAHAREKET SET Islem_Tipi='Nakit Ödeme Fişi',BTutar=1",
        "1|Nakit Tahsilat Fişi|5|03/14/2012|Peşin|0|0|250.5|2|1.75"},
       {"deleting takes the row of the same date",
        tahsilat + "DELETE FROM KASAHAREKET WHERE Kasa_Hareket_ID=1", ""},
       {"but not one whose date was moved",
        tahsilat + "UPDATE ODEMEHAREKET SET Tarih='05/01/2012';;DELETE FROM KASAHAREKET",
        "1|Nakit Tahsilat Fişi|5|05/01/2012|Peşin|0|0|250.5|2|1.75"},
       {"the second deletion goes by the invoice",
        kasaEkle + "('03/14/2012','K1',5,'Nakit Tahsilat Fişi',0,10,1,0,0,3,77);;"
                   "INSERT INTO ODEMEHAREKET(Islem_ID,Islem_Tipi,Tarih,Borc) VALUES"
                   "(77,'Nakit Tahsilat Fişi','03/14/2012',1);;"
                   "INSERT INTO ODEMEHAREKET(Islem_ID,Islem_Tipi,Tarih,Borc) VALUES"
                   "(77,'Satış Faturası','03/14/2012',2);;"
                   "INSERT INTO ODEMEHAREKET(Islem_ID,Islem_Tipi,Tarih,Borc) VALUES"
                   "(77,'Nakit Tahsilat Fişi','03/15/2012',3);;"
                   "DELETE FROM KASAHAREKET",
        "77|Satış Faturası|NULL|03/14/2012|NULL|NULL|2|NULL|NULL|NULL\n"
        "77|Nakit Tahsilat Fişi|NULL|03/15/2012|NULL|NULL|3|NULL|NULL|NULL"}});
}

// The trigger runs for no row as well, and its plan row cannot be without a branch.
TEST_F(Tetikleyici, SatirsizEklemeGeriCevrilir) {
  sirket().bagla(Sirket::baz);
  try {
    sirket().run("INSERT INTO KASAHAREKET(Tarih,ATutar) SELECT Tarih,ATutar FROM KASAHAREKET WHERE 1=0");
    ADD_FAILURE() << "not refused";
  } catch (const db::SqlError& error) {
    EXPECT_EQ(error.serverNumber(), 515) << error.what();
  }
}

TEST_F(Tetikleyici, OdemeSatirininDigerAlanlari) {
  iki({"KASAHAREKET", "ODEMEHAREKET"},
      "SELECT Sablon_ID,Yuzde,Durum,Isyeri_ID,Ozel,Kullanici_ID FROM ODEMEHAREKET",
      {{"written", tahsilat, "0|100|AÇIK|1|1|3"},
       {"put back by an update",
        tahsilat + "UPDATE ODEMEHAREKET SET Sablon_ID=4,Yuzde=50,Durum='KAPALI',Ozel=0;;"
                   "UPDATE KASAHAREKET SET Kullanici_ID=8,Isyeri_ID=2",
        "0|100|AÇIK|2|1|8"}});
}

TEST_F(Tetikleyici, CokSatirliDegisiklikTekSatiraYansir) {
  iki({"KASAHAREKET", "ODEMEHAREKET"},
      "SELECT COUNT(*),SUM(CASE WHEN Alacak=99 THEN 1 ELSE 0 END) FROM ODEMEHAREKET",
      {{"update", tahsilat + tahsilat + tahsilat + "UPDATE KASAHAREKET SET BTutar=99", "3|1"},
       {"delete", tahsilat + tahsilat + tahsilat + "DELETE FROM KASAHAREKET", "2|0"},
       {"insert",
        tahsilat + tahsilat +
            "INSERT INTO KASAHAREKET(Tarih,Cari_ID,Islem_Tipi,ATutar,BTutar)"
            " SELECT Tarih,Cari_ID,Islem_Tipi,0,99 FROM KASAHAREKET",
        "3|1"}});
}

const std::string posSatiri = "'03/14/2012','03/31/2012','Kredi Kartı Tahsilat',7,";

TEST_F(Tetikleyici, PosHareketiIlkHalinde) {
  const std::string ekle =
      "INSERT INTO POSHAREKET(Islem_Tarih,Hesaba_Aktarim_Tarih,Islem_Tipi,Cari_ID,Tutar)"
      " VALUES(" +
      posSatiri + "120);;";
  dene(Sirket::baz, {"POSHAREKET", "ODEMEHAREKET"}, odeme,
       {{"the amount is credit", ekle, "1|Kredi Kartı Tahsilat|7|03/14/2012|Peşin|17|0|120|1|0"},
        {"and follows", ekle + "UPDATE POSHAREKET SET Tutar=130,Hesaba_Aktarim_Tarih='03/13/2012'",
         "1|Kredi Kartı Tahsilat|7|03/14/2012|Peşin|-1|0|130|1|0"},
        {"without account it goes", ekle + "UPDATE POSHAREKET SET Cari_ID=NULL", ""},
        {"deleted", ekle + "DELETE POSHAREKET", ""}});
}

TEST_F(Tetikleyici, PosHareketiGuncelHalinde) {
  const std::string ekle =
      "INSERT INTO POSHAREKET(Islem_Tarih,Hesaba_Aktarim_Tarih,Islem_Tipi,Cari_ID,Tutar,ATutar,BTutar)"
      " VALUES(" +
      posSatiri + "120,120,5);;";
  dene(Sirket::guncel, {"POSHAREKET", "ODEMEHAREKET"}, odeme,
       {{"amounts of their own, crosswise to cash", ekle,
         "1|Kredi Kartı Tahsilat|7|03/14/2012|Peşin|17|5|120|1|0"},
        {"and follow", ekle + "UPDATE POSHAREKET SET ATutar=130,BTutar=0",
         "1|Kredi Kartı Tahsilat|7|03/14/2012|Peşin|17|0|130|1|0"},
        {"without account it goes", ekle + "UPDATE POSHAREKET SET Cari_ID=0", ""},
        {"a transfer without a date has no days",
         "INSERT INTO POSHAREKET(Islem_Tarih,Islem_Tipi,Cari_ID,ATutar,BTutar)"
         " VALUES('03/14/2012','Kredi Kartı Ödeme',7,1,2)",
         "1|Kredi Kartı Ödeme|7|03/14/2012|Peşin|NULL|2|1|1|0"}});
}

const std::string bankaEkle =
    "INSERT INTO BANKAHAREKET(Tarih,Fis_No,Cari_ID,Islem_Tipi,ATutar,BTutar,Doviz_ID,KUR) VALUES";

TEST_F(Tetikleyici, BankaHareketininOdemesi) {
  const std::string havale = bankaEkle + "('03/14/2012','B1',5,'Gelen Havale',0,40,1,0);;";
  iki({"BANKAHAREKET", "ODEMEHAREKET"}, odeme,
      {{"with an account", havale, "1|Gelen Havale|5|03/14/2012|Peşin|0|0|40|1|0"},
       {"without one", bankaEkle + "('03/14/2012','B1',NULL,'Para Yatırma',0,40,1,0)", ""},
       {"an account given later brings no row",
        bankaEkle + "('03/14/2012','B1',0,'Para Yatırma',0,40,1,0);;UPDATE BANKAHAREKET SET Cari_ID=5", ""},
       {"an account taken away leaves the row as it was",
        havale + "UPDATE BANKAHAREKET SET Cari_ID=0,BTutar=41",
        "1|Gelen Havale|5|03/14/2012|Peşin|0|0|40|1|0"},
       {"changed", havale + "UPDATE BANKAHAREKET SET BTutar=0,ATutar=41,KUR=2",
        "1|Gelen Havale|5|03/14/2012|Peşin|0|41|0|1|2"},
       {"deleted", havale + "DELETE BANKAHAREKET WHERE Fis_No='B1'", ""}});
}

// Slip 1 is of 03/01/2012, slip 2 has no salesperson and is therefore in no slip list.
const std::string bordrolar =
    "INSERT INTO BORDRO(Bordro_No,Tarih,Satici_ID,Doviz_ID) VALUES('1','03/01/2012',1,1);;"
    "INSERT INTO BORDRO(Bordro_No,Tarih,Satici_ID,Doviz_ID) VALUES('2','03/02/2012',0,1);;";

// The same rows for cheques and for notes; "T" is the table, "t" its word, `ekle` the explanation on insert.
void kagitDurumlari(const std::string& table, const std::string& word, const std::string& ekle,
                    std::vector<Durum>& cases) {
  const auto kagit = [&](const std::string& tip, const std::string& cari, const std::string& bordro) {
    return "INSERT INTO " + table + "(" + word +
           "_ID,Bordro_ID,Islem_Tipi,Cari_ID,Vade,Borc,Alacak,"
           "Doviz_ID,KUR) VALUES(31," +
           bordro + ",'" + tip + "'," + cari + ",'05/30/2012',0,500,1,0);;";
  };
  const std::string ad = table == "CEK" ? "Çek" : "Senet";
  const std::string giris = ad + " Giriş";
  for (const char* tip : {" Giriş", " Çıkış(C/H)", " Çıkış(Müşteriye İade)", " Giriş(Müşteriden İade)"})
    cases.push_back({ad + tip, bordrolar + kagit(ad + tip, "5", "1"),
                     "31|" + ad + tip + "|5|03/01/2012|" + ekle + "|90|0|500|1|0"});
  const std::string tahsil = ad + " Tahsil(Elden)";
  const std::string yazilan = "31|" + giris + "|5|03/01/2012|";
  cases.push_back({"another type", bordrolar + kagit(tahsil, "5", "1"), ""});
  cases.push_back({"no account", bordrolar + kagit(giris, "NULL", "1"),
                   "31|" + giris + "|0|03/01/2012|" + ekle + "|90|0|500|1|0"});
  cases.push_back({"slip out of the list", bordrolar + kagit(giris, "5", "2"),
                   "31|" + giris + "|5|NULL|" + ekle + "|NULL|0|500|1|0"});
  cases.push_back({"changed", bordrolar + kagit(giris, "5", "1") + "UPDATE " + table + " SET Alacak=510",
                   yazilan + ekle + "|90|0|510|1|0"});
  cases.push_back({"changed without account",
                   bordrolar + kagit(giris, "5", "1") + "UPDATE " + table + " SET Alacak=510,Cari_ID=0",
                   yazilan + ekle + "|90|0|500|1|0"});
  cases.push_back(
      {"a row that is missing is written by the update",
       bordrolar + kagit(giris, "5", "1") + "DELETE ODEMEHAREKET;;UPDATE " + table + " SET Vade='03/01/2012'",
       yazilan + "Peşin|0|0|500|1|0"});
  cases.push_back(
      {"a type outside the list finds no row of its own to delete",
       bordrolar + kagit(giris, "5", "1") + "UPDATE " + table + " SET Islem_Tipi='" + tahsil + "'",
       yazilan + ekle + "|90|0|500|1|0"});
  cases.push_back({"but deletes one that has its type",
                   bordrolar + kagit(tahsil, "5", "1") +
                       "INSERT INTO ODEMEHAREKET(Islem_ID,Islem_Tipi) VALUES(31,'" + tahsil + "');;UPDATE " +
                       table + " SET Alacak=1",
                   ""});
  cases.push_back({"deleted", bordrolar + kagit(giris, "5", "1") + "DELETE " + table, ""});
  cases.push_back({"deleted after its slip",
                   bordrolar + kagit(giris, "5", "1") + "DELETE BORDRO;;DELETE " + table,
                   yazilan + ekle + "|90|0|500|1|0"});
}

TEST_F(Tetikleyici, SenetinOdemesi) {
  std::vector<Durum> cases;
  kagitDurumlari("SENET", "Senet", "Pesin", cases);
  iki({"SENET", "BORDRO", "ODEMEHAREKET"}, odeme, cases);
}

TEST_F(Tetikleyici, CekinOdemesi) {
  std::vector<Durum> cases;
  kagitDurumlari("CEK", "Cek", "Peşin", cases);
  iki({"CEK", "BORDRO", "ODEMEHAREKET"}, odeme, cases);
}

const std::string cariEkle =
    "INSERT INTO CARIHAREKET(Tarih,Cari_ID,Islem_Tipi,ATutar,BTutar,Doviz_ID,KUR,Fatura_ID) VALUES";
const std::string sanal = cariEkle + "('03/14/2012',5,'Sanal Pos İşlemi',60,0,1,0,0);;";

TEST_F(Tetikleyici, SanalPosYalnizGuncelde) {
  dene(Sirket::baz, {"CARIHAREKET", "ODEMEHAREKET"}, odeme, {{"no such trigger yet", sanal, ""}});
  dene(Sirket::guncel, {"CARIHAREKET", "ODEMEHAREKET"}, odeme,
       {{"written", sanal, "1|Sanal Pos İşlemi|5|03/14/2012|Peşin|0|60|0|1|0"},
        {"another type", cariEkle + "('03/14/2012',5,'Borç Dekontu',60,0,1,0,0)", ""},
        {"changed", sanal + "UPDATE CARIHAREKET SET ATutar=61",
         "1|Sanal Pos İşlemi|5|03/14/2012|Peşin|0|61|0|1|0"},
        {"without account nothing happens", sanal + "UPDATE CARIHAREKET SET ATutar=61,Cari_ID=0",
         "1|Sanal Pos İşlemi|5|03/14/2012|Peşin|0|60|0|1|0"},
        {"another type deletes what has its pair",
         cariEkle + "('03/14/2012',5,'Borç Dekontu',60,0,1,0,0);;"
                    "INSERT INTO ODEMEHAREKET(Islem_ID,Islem_Tipi) VALUES(1,'Borç Dekontu');;"
                    "UPDATE CARIHAREKET SET ATutar=61",
         ""},
        {"but not without an account",
         cariEkle + "('03/14/2012',NULL,'Borç Dekontu',60,0,1,0,0);;"
                    "INSERT INTO ODEMEHAREKET(Islem_ID,Islem_Tipi,Borc) VALUES(1,'Borç Dekontu',1);;"
                    "UPDATE CARIHAREKET SET ATutar=61",
         "1|Borç Dekontu|NULL|NULL|NULL|NULL|1|NULL|NULL|NULL"},
        {"deleted, with the invoice's row",
         cariEkle + "('03/14/2012',5,'Sanal Pos İşlemi',60,0,1,0,12);;"
                    "INSERT INTO ODEMEHAREKET(Islem_ID,Islem_Tipi,Tarih) VALUES"
                    "(12,'Sanal Pos İşlemi','03/14/2012');;DELETE CARIHAREKET",
         ""},
        {"an invoice's row of another type stays",
         cariEkle + "('03/14/2012',5,'Borç Dekontu',60,0,1,0,12);;"
                    "INSERT INTO ODEMEHAREKET(Islem_ID,Islem_Tipi,Tarih) VALUES"
                    "(12,'Borç Dekontu','03/14/2012');;DELETE CARIHAREKET",
         "12|Borç Dekontu|NULL|03/14/2012|NULL|NULL|NULL|NULL|NULL|NULL"}});
}

TEST_F(Tetikleyici, StokAdiYayilir) {
  std::string yazilan =
      "INSERT INTO STOKKART(Stok_Kod,Stok_Ad) VALUES('S1','Eski');;"
      "INSERT INTO STOKKART(Stok_Kod,Stok_Ad) VALUES('S2','Öteki');;";
  std::string query;
  std::vector<std::string> tables = {"STOKKART"};
  for (const char* name : {"STOKHAREKET", "FATURAHAREKET", "SIPARISHAREKET", "RECETEHAREKET"}) {
    const std::string fis = std::string(name) == "RECETEHAREKET" ? "" : "Fis_No,";
    const std::string no = fis.empty() ? "" : "'1',";
    for (const char* row : {"1,'Mal'", "1,'Hizmet'", "2,'Mal'"})
      yazilan += std::string("INSERT INTO ") + name + "(" + fis +
                 "Stok_Kod,Stok_Ad,Stok_ID,Satir_Tipi) VALUES(" + no + "'x','y'," + row + ");;";
    query += std::string(query.empty() ? "" : " UNION ALL ") + "SELECT '" + name +
             "',Stok_ID,Satir_Tipi,Stok_Kod,Stok_Ad FROM " + name;
    tables.push_back(name);
  }
  for (const char* name : {"AMBTRS", "ENVANTER", "RECETEKART"}) {
    const bool fis = std::string(name) == "AMBTRS";
    for (const char* id : {"1", "2"})
      yazilan += std::string("INSERT INTO ") + name + "(" + (fis ? "Fis_No," : "") +
                 "Stok_Kod,Stok_Ad,Stok_ID) VALUES(" + (fis ? "'1'," : "") + "'x','y'," + id + ");;";
    query += std::string(" UNION ALL SELECT '") + name + "',Stok_ID,'',Stok_Kod,Stok_Ad FROM " + name;
    tables.push_back(name);
  }
  yazilan += "UPDATE STOKKART SET Stok_Kod='S1-A',Stok_Ad='Yeni Ürün' WHERE Stok_ID=1";
  std::string beklenen;
  for (const char* name : {"STOKHAREKET", "FATURAHAREKET", "SIPARISHAREKET", "RECETEHAREKET"})
    beklenen +=
        std::string(name) + "|1|Mal|S1-A|Yeni Ürün\n" + name + "|1|Hizmet|x|y\n" + name + "|2|Mal|x|y\n";
  for (const char* name : {"AMBTRS", "ENVANTER", "RECETEKART"})
    beklenen += std::string(name) + "|1||S1-A|Yeni Ürün\n" + name + "|2||x|y\n";
  beklenen.pop_back();
  iki(tables, query, {{"all copies", yazilan, beklenen}});
  // The copies follow also an update that names no name.
  iki({"STOKKART", "ENVANTER"}, "SELECT Stok_Kod,Stok_Ad FROM ENVANTER",
      {{"any update",
        "INSERT INTO STOKKART(Stok_Kod,Stok_Ad) VALUES('S1','Ad');;"
        "INSERT INTO ENVANTER(Stok_ID,Stok_Kod) VALUES(1,'x');;UPDATE STOKKART SET KDV=18",
        "S1|Ad"}});
}

const std::vector<std::string> cariTablolari = {
    "ACILIS",          "KASAHAREKET", "SIPARISKART",   "SIPARISHAREKET",
    "STOKHAREKETKART", "STOKHAREKET", "BORDRO",        "BANKAHAREKET",
    "CEKKART",         "CEK",         "SENETKART",     "SENET",
    "CARIHAREKET",     "FATURAKART",  "FATURAHAREKET", "POSHAREKET"};

TEST_F(Tetikleyici, CariAdiYayilir) {
  std::string yazilan =
      "INSERT INTO CARIKART(Cari_Kod,Unvan) VALUES('C1','Eski');;"
      "INSERT INTO CARIKART(Cari_Kod,Unvan) VALUES('C2','Öteki');;";
  std::string query;
  std::string beklenen;
  std::vector<std::string> tables = cariTablolari;
  tables.insert(tables.end(), {"CARIKART", "ODEMEHAREKET", "CEKDURUM", "SENETDURUM"});
  for (const std::string& name : cariTablolari) {
    std::string columns, values;
    if (name == "ACILIS") columns = "CariHareket_Fis_ID,", values = "0,";
    if (name.starts_with("FATURA") || name.starts_with("STOK") || name.starts_with("SIPARIS"))
      columns = "Fis_No,", values = "'1',";
    if (name == "FATURAHAREKET" || name == "STOKHAREKET" || name == "SIPARISHAREKET")
      columns += "Stok_Kod,", values += "'s',";
    for (const char* id : {"1", "2"})
      yazilan += "INSERT INTO " + name + "(" + columns + "Cari_Kod,Cari_Unvan,Cari_ID) VALUES(" + values +
                 "'x','y'," + id + ");;";
    query += (query.empty() ? "" : " UNION ALL ") +
             ("SELECT '" + name + "',Cari_ID,Cari_Kod,Cari_Unvan FROM ") + name;
    beklenen += (beklenen.empty() ? "" : "\n") + name + "|1|C1-A|Yeni A.Ş.\n" + name + "|2|x|y";
  }
  yazilan += "UPDATE CARIKART SET Cari_Kod='C1-A',Unvan='Yeni A.Ş.' WHERE Cari_ID=1";
  iki(tables, query, {{"all copies", yazilan, beklenen}});
}

TEST_F(Tetikleyici, BorcluAdiYayilir) {
  for (const auto& [kart, hareket, durum, id] :
       {std::tuple{"CEKKART", "CEK", "CEKDURUM", "Cek_ID"},
        std::tuple{"SENETKART", "SENET", "SENETDURUM", "Senet_ID"}}) {
    const std::string k = kart, h = hareket, d = durum, i = id;
    std::string yazilan =
        "INSERT INTO CARIKART(Cari_Kod,Unvan) VALUES('C1','Eski');;"
        "INSERT INTO BORDRO(Bordro_No,Cari_ID) VALUES('1',1);;"
        "INSERT INTO BORDRO(Bordro_No,Cari_ID) VALUES('2',2);;";
    int paper = 0;
    for (const char* row : {"1,0,'M'", "1,1,'M'", "1,0,'K'", "1,0,NULL", "2,0,'M'"}) {
      yazilan += "INSERT INTO " + k + "(Borclu,Cari_ID,Ciro,Sahip) VALUES('b'," + row + ");;";
      yazilan += "INSERT INTO " + h + "(Borclu," + i + ") VALUES('b'," + std::to_string(++paper) + ");;";
    }
    for (const char* row : {"'1',1", "'0',1", "'1',2", "NULL,1"})
      yazilan += "INSERT INTO " + d + "(Cari_Unvan,Bordro_No,Bordro_ID) VALUES('y'," + row + ");;";
    yazilan += "UPDATE CARIKART SET Unvan='Yeni' WHERE Cari_ID=1";
    iki({"CARIKART", "BORDRO", k, h, d, "ODEMEHAREKET"},
        "SELECT '" + k + "'," + i + ",Borclu FROM " + k + " UNION ALL SELECT '" + h + "'," + i +
            ",Borclu FROM " + h + " UNION ALL SELECT '" + d + "',Durum_ID,Cari_Unvan FROM " + d,
        {{k, yazilan,
          k + "|1|Yeni\n" + k + "|2|b\n" + k + "|3|b\n" + k + "|4|b\n" + k + "|5|b\n" +  //
              h + "|1|Yeni\n" + h + "|2|b\n" + h + "|3|b\n" + h + "|4|b\n" + h + "|5|b\n" + d + "|1|Yeni\n" +
              d + "|2|y\n" + d + "|3|y\n" + d + "|4|y"}});
  }
}

std::string hesap(const std::string& kod) {
  return "INSERT INTO MUHKART(MHesap_Kod,MHesap_Ad) VALUES('" + kod + "','" + kod + "');;";
}

TEST_F(Tetikleyici, HesapPlani) {
  iki({"MUHKART", "MUHBAKIYE"},
      "SELECT MUHKART.MHesap_ID,MUHKART.MHesap_Kod,AnaHesaptir,Ana_Hesap_ID,MUHBAKIYE.MHesap_Kod,"
      "MUHBAKIYE.Bakiye FROM MUHKART LEFT JOIN MUHBAKIYE ON MUHBAKIYE.MHesap_ID=MUHKART.MHesap_ID"
      " ORDER BY MUHKART.MHesap_ID",
      {{"a main account is its own", hesap("120"), "1|120|1|1|120|0"},
       {"a child takes the main account's id", hesap("120") + hesap("120.01"),
        "1|120|1|1|120|0\n2|120.01|0|1|120.01|0"},
       {"the direct parent is marked too", hesap("120") + hesap("120.01") + hesap("120.01.001"),
        "1|120|1|1|120|0\n2|120.01|1|1|120.01|0\n3|120.01.001|0|1|120.01.001|0"},
       {"a child without its main account", hesap("120.01"), "1|120.01|0|0|120.01|0"},
       {"a main account that comes late marks leaves below it", hesap("120.01") + hesap("120"),
        "1|120.01|1|0|120.01|0\n2|120|1|2|120|0"},
       {"deleting the last child leaves no parent",
        hesap("120") + hesap("120.01") + "DELETE MUHKART WHERE MHesap_Kod='120.01'", "1|120|0|1|120|0"},
       {"deleting one of two",
        hesap("120") + hesap("120.01") + hesap("120.02") + "DELETE MUHKART WHERE MHesap_Kod='120.01'",
        "1|120|1|1|120|0\n3|120.02|0|1|120.02|0"},
       {"renaming moves the marks; the main account's id stays",
        hesap("120") + hesap("120.01") + hesap("121") + hesap("121.05") +
            "DELETE MUHKART WHERE MHesap_Kod='121.05';;"
            "UPDATE MUHKART SET MHesap_Kod='121.01' WHERE MHesap_Kod='120.01'",
        "1|120|0|1|120|0\n2|121.01|0|1|121.01|0\n3|121|1|3|121|0"}});
  iki({"MUHKART", "MUHBAKIYE"}, "SELECT MHesap_ID,MHesap_Kod,Bakiye FROM MUHBAKIYE ORDER BY MHesap_ID",
      {{"the balance goes with its account",
        hesap("120") + hesap("120.01") + "DELETE MUHKART WHERE MHesap_Kod='120'", "2|120.01|0"}});
}

std::string satir(int ana, int id, const std::string& kod, int borc, int alacak, int aktif) {
  const auto n = [](int value) { return std::to_string(value); };
  return "INSERT INTO MUHFISHAR(FisSat_No,Fis_ID,Tarih,Ana_Hesap_ID,MHesap_ID,MHesap_Kod,BTutar,ATutar,"
         "Dv_BTutar,Dv_ATutar,Doviz_ID,Kur,Masraf_Merkezi_ID,Entegre_ID,Modul_No,BorcMiktar,AlacakMiktar,"
         "Birim,Aktif) VALUES(1,1,'03/14/2012'," +
         n(ana) + "," + n(id) + ",'" + kod + "'," + n(borc) + "," + n(alacak) + ",0,0,1,0,0,0,0,0,0,''," +
         n(aktif) + ");;";
}

// 1: 120, 2: 120.01, 3: 120.02, 4: 100, 5: 1200
TEST_F(Tetikleyici, MuhasebeBakiyesi) {
  const std::string plan = hesap("120") + hesap("120.01") + hesap("120.02") + hesap("100") + hesap("1200");
  const std::string satirlar = satir(1, 2, "120.01", 100, 0, 1) + satir(1, 2, "120.01", 50, 0, 0) +
                               satir(1, 3, "120.02", 0, 30, 1) + satir(5, 5, "1200", 1000, 0, 1);
  const std::string once = plan + satirlar;
  iki({"MUHKART", "MUHBAKIYE", "MUHFISHAR"}, "SELECT MHesap_Kod,Bakiye FROM MUHBAKIYE ORDER BY MHesap_ID",
      {{"an insert counts all lines of the account and no parent", once,
        "120|0\n120.01|150\n120.02|-30\n100|0\n1200|1000"},
       {"an update rolls up active lines by prefix, 1200 below 120 too",
        once + "UPDATE MUHFISHAR SET ATutar=40 WHERE FisHar_ID=3",
        "120|1060\n120.01|100\n120.02|-40\n100|0\n1200|1000"},
       {"setting a line aside lowers its accounts", once + "UPDATE MUHFISHAR SET Aktif=0 WHERE FisHar_ID=1",
        "120|970\n120.01|0\n120.02|-30\n100|0\n1200|1000"},
       {"a deletion counts inactive lines again",
        once + "UPDATE MUHFISHAR SET Aktif=0 WHERE FisHar_ID=1;;DELETE MUHFISHAR WHERE FisHar_ID=2",
        "120|970\n120.01|100\n120.02|-30\n100|0\n1200|1000"},
       {"the last line of an account", once + "DELETE MUHFISHAR WHERE FisHar_ID=3",
        "120|0\n120.01|150\n120.02|0\n100|0\n1200|1000"},
       {"a line that changes its main account changes both",
        once + "UPDATE MUHFISHAR SET Ana_Hesap_ID=4,MHesap_ID=4,MHesap_Kod='100' WHERE FisHar_ID=3",
        "120|1100\n120.01|100\n120.02|0\n100|-30\n1200|1000"}});
}

}  // namespace
