// The commands on definitions and counters, on a company of its own server.
#include <fstream>

#include "company/sirket.h"
#include "session/sys_inf.h"
#include "support/komut_satiri.h"

namespace {

class TanimKomutlari : public company::test::SirketTest {
 protected:
  support::KomutSatiri cli{
      [](const std::filesystem::path& dizin) { return db::makeConnectionFactory(dizin); }};

  void SetUp() override {
    session::Sys_Inf_Yaz(cli.dizin, {"(yerel):" + (sirket().folder / "veri").string(), "sa", "gizli", false});
    sirket().bagla("GUNCEL2012");
    sirket().run(
        "DELETE FROM AMBAR INSERT INTO AMBAR(Ambar_No,Ambar_Ad,Merkez_Ambar) VALUES(1,'Merkez',1) INSERT "
        "INTO "
        "AMBAR(Ambar_No,Ambar_Ad,Merkez_Ambar) VALUES(2,'DEPO',0) DELETE FROM RENKTANIM INSERT INTO "
        "RENKTANIM(Renk_Kod,Renk_Adi) VALUES('M1','Mavi') INSERT INTO RENKTANIM(Renk_Kod,Renk_Adi) "
        "VALUES('M2','Mavi') DELETE FROM BEDENTANIM INSERT INTO BEDENTANIM(Beden_Adi) VALUES('X''L') DELETE "
        "FROM "
        "DROPTANIM INSERT INTO DROPTANIM(Drop_Adi) VALUES('6') DELETE FROM DOVIZTANIM WHERE Kullanici_ID<>0 "
        "INSERT INTO DOVIZTANIM(Doviz_Kod,Doviz_Ad,Kullanici_ID) VALUES('usd','Dolar',1) DELETE FROM SATICI "
        "WHERE Kullanici_ID<>0 INSERT INTO SATICI(Satici_Kodu,Satici_Adi,Kullanici_ID) VALUES('a1','ayşe',1) "
        "DELETE FROM TARTIBARKOD INSERT INTO TARTIBARKOD(Bayrak_Kodu,Master_Kod,KG,GR) VALUES('27',5,2,3) "
        "INSERT INTO TARTIBARKOD(Bayrak_Kodu,Master_Kod,KG,GR,Adetli) VALUES('27',6,1,3,1)");
    sirket().bagla("Defination_DB");
    sirket().run(
        "DELETE FROM DISVERITANIM INSERT INTO "
        "DISVERITANIM(Tanim_Kod,Tanim_Ad,Dosya_Yol,AyiracVar,Ayirac,Barkod,"
        "Barkod_Bas) VALUES('t1','Depo','C:\\el\\t.txt',1,'"
        "\t"
        "',1,2) DELETE FROM TSRSQL INSERT INTO "
        "TSRSQL(Modul,Kisim,DEF_SQL) VALUES(1,2,'SELECT 1\r\n\tFROM t') INSERT INTO "
        "TSRSQL(Modul,Kisim,DEF_SQL) "
        "VALUES(1,2,'SELECT 1\r\n\tFROM t')");
  }
  void TearDown() override { sirket().bagla("Defination_DB"); }
  int tanim(const std::string& tur, const std::vector<std::string>& kalan, const std::string& girdi = "") {
    std::vector<std::string> arguman{"tanim", tur, "--ad", "GUNCEL2012"};
    arguman.insert(arguman.end(), kalan.begin(), kalan.end());
    return cli.calistir(arguman, girdi);
  }
  static std::string firmada(const std::string& sql) {
    sirket().bagla("GUNCEL2012");
    return sirket().rows(sql);
  }
};

TEST_F(TanimKomutlari, WhatAListPrintsGoesBackWithoutChange) {
  const struct {
    const char *tur, *ilkSatir;
    int satir;
  } turler[] = {{"isyeri", "Isyeri_Kodu\tIsyeri_Adi\tAmbar_No\tAktif\tIsyeri_ID", 1},
                {"ambar", "Ambar_ID\tAmbar_No\tAmbar_Ad\tMerkez_Ambar", 2},
                {"satici", "Satici_Kodu\tSatici_Adi\tAmbar_No\tAktif\tSatici_ID", 1},
                {"fiyat", "Sira_No\tFiyat_Aciklama\tOn_Deger\tAmbar_Fiyati", 10},
                {"doviz", "Doviz_ID\tDoviz_Kod\tDoviz_Ad\tDefault_Doviz", 1},
                {"renk", "Renk_ID\tRenk_Kod\tRenk", 2},
                {"beden", "Beden_ID\tBeden", 1},
                {"drop", "Drop_ID\tDrop", 1},
                {"tarti", "Tasarim_ID\tAdetli\tBayrak_Kodu\tMaster_Kod\tKG\tGR\tCD", 2},
                {"terminal",
                 "Tanim_ID\tTanim_Kod\tTanim_Ad\tDosya_Yol\tAyiracVar\tAyirac\tMiktarParcali\tParcaAdedi", 1},
                {"rapor", "Modul\tKisim\tDEF_SQL", 2}};
  for (const auto& t : turler) {
    ASSERT_EQ(tanim(t.tur, {}), 0) << t.tur << cli.err;
    const std::string liste = cli.out;
    EXPECT_TRUE(liste.starts_with(t.ilkSatir)) << liste;
    EXPECT_EQ(std::ranges::count(liste, '\n'), t.satir + 1) << liste;
    EXPECT_EQ(tanim(t.tur, {"-i", "-"}, liste), 0) << t.tur << cli.err;
    EXPECT_EQ(cli.out, "0 satır eklendi, 0 satır değişti\n") << t.tur;
    ASSERT_EQ(tanim(t.tur, {}), 0);
    EXPECT_EQ(cli.out, liste) << t.tur;
  }
}

TEST_F(TanimKomutlari, AListOfAnotherCompanyFindsRowsByTheirKeys) {
  const std::string iki = firmada("SELECT Ambar_ID FROM AMBAR WHERE Ambar_No=2");
  // The identity stands on number 2 here; number 3 is new all the same.
  const std::string dosya =
      "Ambar_ID\tAmbar_No\tAmbar_Ad\tMerkez_Ambar\n" + iki + "\t3\tŞUBE\t0\n77\t1\tANA\t1\n";
  EXPECT_EQ(tanim("ambar", {"-i", "-", "--dene"}, dosya), 0) << cli.err;
  EXPECT_EQ(cli.out, "~ 1  Ambar_Ad: Merkez -> ANA\n+ 3\n1 satır eklenecek, 1 satır değişecek\n");
  EXPECT_EQ(tanim("ambar", {"-i", "-", "--dene", "--bicim", "tsv"}, dosya), 0) << cli.err;
  EXPECT_EQ(cli.out, "Islem\tSatir\tKolon\tEski\tYeni\ndegistir\t1\tAmbar_Ad\tMerkez\tANA\nekle\t3\t\t\t\n");
  EXPECT_EQ(firmada("SELECT Ambar_No,Ambar_Ad FROM AMBAR ORDER BY Ambar_No"), "1|Merkez\n2|DEPO");
  const auto yol = (cli.dizin / "ambar.tsv").string();
  std::ofstream(yol) << dosya;
  EXPECT_EQ(tanim("ambar", {"-i", yol}), 0) << cli.err;
  EXPECT_EQ(firmada("SELECT Ambar_No,Ambar_Ad,Merkez_Ambar FROM AMBAR ORDER BY Ambar_No"),
            "1|ANA|1\n2|DEPO|0\n3|ŞUBE|0");
}

TEST_F(TanimKomutlari, RefusalsAreToldAndNothingIsWritten) {
  const struct {
    std::vector<std::string> arguman;
    const char* girdi;
    int kod;
    const char* err;
  } durumlar[] = {
      {{"tanim", "doviz", "--ad", "GUNCEL2012", "-i", "-"},
       "Doviz_Kod\tDoviz_Ad\nEUR\tAvro\nCOKUZUNKOD1\tX\n",
       1,
       "Satır 3: Döviz Kodu: “COKUZUNKOD1” çok uzun, en çok 10 karakter girilebilir.\nHiçbir şey "
       "yazılmadı.\n"},
      {{"tanim", "doviz", "--ad", "GUNCEL2012", "-i", "-"},
       "Doviz_Kod\tDoviz_Ad\nEUR\n",
       1,
       "Satır 2: 2 alan bekleniyordu, 1 var.\nHiçbir şey yazılmadı.\n"},
      {{"tanim", "doviz", "--ad", "GUNCEL2012", "-i", "-"},
       "Doviz_Kod\tDoviz_Ad\nEUR\t\xDE\n",
       1,
       "Satır 2: dosya UTF-8 değil.\nHiçbir şey yazılmadı.\n"},
      {{"tanim", "doviz", "--ad", "GUNCEL2012", "-i", "-"},
       "",
       1,
       "Dosya boş; ilk satırı kolon adları olmalı.\nHiçbir şey yazılmadı.\n"},
      {{"tanim", "doviz", "--ad", "GUNCEL2012", "-i", "/yok.tsv"}, "", 1, "Dosya okunamadı: /yok.tsv\n"},
      {{"tanim", "doviz", "--ad", "YOK"}, "", 1, "\"YOK\" adında bir firma tanımlı değil.\n"},
      {{"tanim", "renk", "--ad", "BAZ2012"},
       "",
       1,
       "“BAZ2012” veritabanı eski yapıda (Invalid object name 'BAZ2012.dbo.RENKTANIM'.)\nÖnce güncelleyiniz: "
       "zembera-cli guncelle --ad BAZ2012\n"},
      {{"tanim", "doviz"}, "", 2, "Zorunlu seçenek verilmedi: --ad\n"},
      {{"tanim", "koli", "--ad", "GUNCEL2012"},
       "",
       2,
       "Bilinmeyen tanım türü: koli (isyeri, ambar, satici, fiyat, doviz, renk, beden, drop, tarti, "
       "terminal ya da rapor)\n"},
      {{"numara", "--ad", "YOK"}, "", 1, "\"YOK\" adında bir firma tanımlı değil.\n"},
      {{"numara", "--ad", "GUNCEL2012", "--yaz", "BODEK=5", "--yaz", "YOK=1"},
       "",
       1,
       "Bilinmeyen sayaç: YOK\nHiçbir şey yazılmadı.\n"},
      {{"numara", "--ad", "GUNCEL2012", "--yaz", "BODEK="},
       "",
       1,
       "ANAHTAR=NO bekleniyordu: BODEK=\nHiçbir şey yazılmadı.\n"},
      {{"numara", "--ad", "GUNCEL2012", "--yaz", "BODEK=日"},
       "",
       1,
       "BODEK: “日” harfi kullanılamaz (1254 Türkçe kod sayfasında yok).\nHiçbir şey yazılmadı.\n"}};
  for (const auto& d : durumlar) {
    EXPECT_EQ(cli.calistir(d.arguman, d.girdi), d.kod);
    EXPECT_EQ(cli.err, d.err);
    EXPECT_EQ(cli.out, "");
  }
  EXPECT_EQ(firmada("SELECT Doviz_Kod FROM DOVIZTANIM WHERE Kullanici_ID<>0"), "usd");
  EXPECT_EQ(firmada("SELECT IP FROM IP_BODEK"), "0000000000");
}

TEST_F(TanimKomutlari, CountersAreListedTriedAndWritten) {
  sirket().bagla("GUNCEL2012");
  sirket().run("DELETE FROM KASAKART INSERT INTO KASAKART(Kasa_Kod) VALUES('K1')");
  const std::string kasa = firmada("SELECT Kasa_ID FROM KASAKART");
  EXPECT_EQ(cli.calistir({"numara", "--ad", "GUNCEL2012", "--bicim", "tsv"}), 0) << cli.err;
  EXPECT_TRUE(cli.out.starts_with("Anahtar\tNumara\tEtiket\nSATFATFIS\t0000000000\tSatış Faturası\n"))
      << cli.out;
  EXPECT_TRUE(cli.out.ends_with("\nKNTF" + kasa + "\t\tK1 Kodlu Kasa Tahsilat\nKNOF" + kasa +
                                "\t\tK1 Kodlu Kasa Ödeme\n"))
      << cli.out;
  EXPECT_EQ(std::ranges::count(cli.out, '\n'), 31);
  const std::vector<std::string> yaz{"numara", "--ad",      "GUNCEL2012", "--yaz", "BODEK=12345678901",
                                     "--yaz",  "BARKOD=869"};
  auto dene = yaz;
  dene.push_back("--dene");
  const std::string rapor = "BODEK: 0000000000 -> 1234567890\nBARKOD: 00000000000000000000000 -> 869\n";
  EXPECT_EQ(cli.calistir(dene), 0) << cli.err;
  EXPECT_EQ(cli.out, rapor);
  EXPECT_EQ(firmada("SELECT IP FROM IP_BODEK"), "0000000000");
  EXPECT_EQ(cli.calistir(yaz), 0) << cli.err;
  EXPECT_EQ(cli.out, rapor);
  EXPECT_EQ(firmada("SELECT IP FROM IP_BODEK") + firmada("SELECT IP FROM IP_BARKOD"), "1234567890869");
  EXPECT_EQ(cli.calistir({"numara", "--ad", "GUNCEL2012", "--yaz", "KNTF" + kasa + "=1"}), 1);
  EXPECT_EQ(cli.err, "IP_KNTF" + kasa + " tablosu yok.\nHiçbir şey yazılmadı.\n");
  sirket().run(
      "UPDATE IP_BODEK SET IP='0000000000' UPDATE IP_BARKOD SET IP='00000000000000000000000' DELETE FROM "
      "KASAKART");
}

}  // namespace
