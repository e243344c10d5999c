#include "engine/language.h"
#include "rights/islem.h"
#include "rights/ortam.h"
#include "rights/yetki_duzeni.h"

namespace {

using rights::YetkiDuzeni;
using rights::YetkiSatiri;
using Texts = std::vector<std::string>;

// The row of the tree by its words: "Kasa/Kasa Kartı/Sil".
int satir(const std::string& yol) {
  const session::TikAgaci agac(rights::yetkiAgaci().satirlar);
  int at = -1;
  std::istringstream words(yol);
  for (std::string word; std::getline(words, word, '/');) {
    int next = -1;
    for (const int row : agac.cocuklar(at))
      if (agac.satir(row).yazi == word) next = row;
    EXPECT_GE(next, 0) << yol;
    at = next;
  }
  return at;
}

class YetkiTest : public rights::test::OrtamTest {
 protected:
  void SetUp() override {
    id = kullanici("ALİ", "abc", {1, 2});
    for (const char* db : {"MERKEZ", "SUBE"}) {
      const std::string d = std::string(db) + ".dbo.";
      run("INSERT INTO " + d + "AMBAR(Ambar_No,Ambar_Ad) VALUES(2,'Depo') INSERT INTO " + d +
          "AMBAR(Ambar_No,Ambar_Ad) VALUES(3,'Raf') INSERT INTO " + d +
          "ISYERITANIM(Isyeri_Kodu,Isyeri_Adi) VALUES('İ''2','Şube') INSERT INTO " + d +
          "KASAKART(Kasa_Kod,Kasa_Ad) VALUES('K1','Ana') INSERT INTO " + d +
          "KASAKART(Kasa_Kod,Kasa_Ad) VALUES('K''2','Yan')");
    }
    run("INSERT INTO MERKEZ.dbo.CARIKART(Cari_Kod,Unvan) VALUES('P','Peşin')");
  }
  YetkiDuzeni ac() {
    YetkiDuzeni duzen;
    o().Secili_ID = id;
    EXPECT_TRUE(rights::Yetki_Yukle(o(), duzen));
    s.boxes.shown.clear();
    surucu.izleme.sifirla();
    return duzen;
  }
  std::string kolon(const std::string& names, int firma = 1) {
    return rows("SELECT " + names +
                " FROM Kullanici WHERE Kullanici_ID=2 AND Firma_ID=" + std::to_string(firma));
  }
  std::string ambarlar(const std::string& db = "MERKEZ") {
    return rows("SELECT Kullanici_ID,Ambar_No,Merkez_Ambar FROM " + db +
                ".dbo.KULLANICIAMBAR ORDER BY Kullanici_ID,Ambar_No");
  }
  std::string isyerleri(const std::string& db = "MERKEZ") {
    return rows("SELECT Kullanici_ID,Isyeri_Kodu,Def_Isyeri FROM " + db +
                ".dbo.KULLANICIISYERI ORDER BY Kullanici_ID,Isyeri_Kodu");
  }
  std::int64_t id = 0;
};

TEST_F(YetkiTest, OpensOnTheFirstCompanyWithEveryTickOfTheDefaultRow) {
  const YetkiDuzeni duzen = ac();
  EXPECT_EQ(duzen.Firma_Combo, (Texts{"MERKEZ", "SUBE"}));
  EXPECT_EQ(duzen.Firma_ID, "1");
  // All but what the default row leaves to NULL: two branches, and the eighth document of the invoices; the
  // numbering of slips shows what FP holds.
  Texts off;
  for (int i = 0; i < duzen.treelist.boy(); ++i)
    if (!duzen.treelist.isaretli(i) && duzen.treelist.satir(i).seviye < 4)
      off.push_back(duzen.treelist.satir(i).yazi);
  ASSERT_GE(off.size(), 3u);
  EXPECT_EQ(off[0], "Masraf Hizmet Ödeme");
  EXPECT_EQ(off[1], "Personel");
  EXPECT_TRUE(duzen.treelist.isaretli(satir("Muhasebe/Fiş Numaralama İşlemleri/Yevmiye Numaralandır")));
  EXPECT_FALSE(duzen.treelist.isaretli(satir("Muhasebe")));
  EXPECT_TRUE(duzen.treelist.isaretli(satir("Döviz")));
  EXPECT_EQ(duzen.YetkiAmbarGrd,
            (rights::Yerler{
                {"1", "Merkez", false, false}, {"2", "Depo", false, false}, {"3", "Raf", false, false}}));
  EXPECT_EQ(duzen.YetkiIsyeriGrd,
            (rights::Yerler{{"1", "MERKEZ", false, false}, {"İ'2", "Şube", false, false}}));
}

TEST_F(YetkiTest, ASavedRowReadsBackAsShown) {
  YetkiDuzeni duzen = ac();
  auto& agac = duzen.treelist;
  agac.degistir(satir("Kasa/Kasa Hareketleri/Çek Ödemesi/Değiştir"), false);
  agac.degistir(satir("Cari Hesap"), false);
  agac.degistir(satir("Cari Hesap/Cari Hesap Kartı/Cari Hesaba Kredi Açar"), true);
  agac.degistir(satir("Fatura/Fatura Hareketleri/Masraf Hizmet Ödeme"), true);
  agac.degistir(satir("Üretim/Üretim Hareketleri/Üretim Emirleri/Sil"), false);
  agac.degistir(satir("Muhasebe/Muhasebe Fişleri/Mahsup Fişi/İncele"), true);
  agac.degistir(satir("Muhasebe/Fiş Numaralama İşlemleri/Tahsil Fişlerini Numaralandır"), false);
  for (const char* name : {"KRVN", "KSYR", "EOV", "GcTarih", "BGTahAl", "Iskonto"}) duzen.satir[name] = true;
  for (const char* name : {"YZRKS", "TKSTL", "SipOnay"}) duzen.satir[name] = false;
  duzen.satir["KntGun"] = 15;
  duzen.satir["Cari_Tipi"] = "Alıcı";
  rights::varsayilanYap(duzen.YetkiAmbarGrd, 0, true);
  rights::varsayilanYap(duzen.YetkiAmbarGrd, 2, true);
  rights::secimiCevir(duzen.YetkiAmbarGrd, 0);
  rights::varsayilanYap(duzen.YetkiIsyeriGrd, 1, true);
  duzen.Def_Kasa_Kod = "K'2";
  duzen.Def_Cari_Kod = "P";
  EXPECT_TRUE(rights::TamamBtn(o(), duzen));
  EXPECT_EQ(s.boxes.texts(), Texts{"Firma İçin Yetkilendirme Tamamlandı."});
  EXPECT_EQ(kolon("KASA,KHE,KHD,CARI,CARHE,CARK,CARB,CAROS,FHE,FATURA,URETIMEMIR,URETIMRECETE,URK,UEK"),
            "1|11111111111111|11011111111111|1|00000|00001|0|0000|1111111|1|1|1|1111|1110");
  EXPECT_EQ(kolon("Muhasebe,MHE,MHI,MFN,FP,MET,Personel,PHE"), "1|00000|00010|101111|111111|0000|0|000000");
  EXPECT_EQ(kolon("KRVN,KSYR,YZRKS,TKSTL,EOV,GcTarih,BGTahAl,Iskonto,SipOnay,KntGun,Cari_Tipi,Def_Ambar_No,"
                  "DEF_Isyeri_Kod,Def_Kasa_ID,Def_Cari_Kod"),
            "1|1|0|0|1|1|1|1|0|15|Alıcı|3|İ'2|2|P");
  EXPECT_EQ(ambarlar(), "2|3|1");
  EXPECT_EQ(isyerleri(), "2|İ'2|1");
  EXPECT_EQ(kolon("KHE,CARK", 2), "11111111111111|11111");
  EXPECT_EQ(ambarlar("SUBE"), "");

  const YetkiDuzeni again = ac();
  EXPECT_EQ(again.YetkiAmbarGrd, duzen.YetkiAmbarGrd);
  EXPECT_EQ(again.YetkiIsyeriGrd, duzen.YetkiIsyeriGrd);
  EXPECT_EQ(again.Def_Kasa_Kod, "K'2");
  // But for the eighth document, which has no place, and the numbering, which is read elsewhere.
  std::string differs;
  for (int i = 0; i < agac.boy(); ++i)
    if (agac.isaretli(i) != again.treelist.isaretli(i)) differs += agac.satir(i).yazi + ";";
  EXPECT_EQ(differs, "Masraf Hizmet Ödeme;Ekle;Değiştir;İncele;Sil;Tahsil Fişlerini Numaralandır;");
}

TEST_F(YetkiTest, PlacesFollowTheirTicks) {
  YetkiDuzeni duzen = ac();
  run("INSERT INTO MERKEZ.dbo.KULLANICIAMBAR(Kullanici_ID,Ambar_No,Merkez_Ambar) VALUES(9,1,1)");
  for (const std::size_t i : {0, 1, 2}) rights::secimiCevir(duzen.YetkiAmbarGrd, i);
  rights::varsayilanYap(duzen.YetkiAmbarGrd, 1, true);
  ASSERT_TRUE(rights::TamamBtn(o(), duzen));
  EXPECT_EQ(ambarlar(), "2|1|0\n2|2|1\n2|3|0\n9|1|1");
  const std::string kept =
      rows("SELECT Yetki_ID FROM MERKEZ.dbo.KULLANICIAMBAR WHERE Kullanici_ID=2 AND Ambar_No=3");

  duzen = ac();
  rights::secimiCevir(duzen.YetkiAmbarGrd, 1);  // the central one goes, and with it the mark
  ASSERT_TRUE(rights::TamamBtn(o(), duzen));
  EXPECT_EQ(ambarlar(), "2|1|0\n2|3|0\n9|1|1");
  EXPECT_EQ(kolon("Def_Ambar_No,DEF_Isyeri_Kod"), "NULL|1");
  EXPECT_EQ(rows("SELECT Yetki_ID FROM MERKEZ.dbo.KULLANICIAMBAR WHERE Kullanici_ID=2 AND Ambar_No=3"), kept);
}

TEST_F(YetkiTest, CopyingWritesWhatIsShownIntoTheChosenCompany) {
  YetkiDuzeni duzen = ac();
  duzen.treelist.degistir(satir("Stok"), false);
  rights::varsayilanYap(duzen.YetkiAmbarGrd, 1, true);
  duzen.Def_Kasa_Kod = "K1";
  duzen.Kopyala = true;
  EXPECT_TRUE(rights::Firma_Sec(o(), duzen, "SUBE"));
  EXPECT_FALSE(duzen.treelist.isaretli(satir("Stok")));
  EXPECT_TRUE(rights::TamamBtn(o(), duzen));
  EXPECT_EQ(kolon("STOK,STHE,KASA,Def_Ambar_No", 2), "0|0000000000000000|1|2");
  EXPECT_EQ(kolon("STOK,STHE", 1), "1|1111111111111111");
  EXPECT_EQ(ambarlar("SUBE"), "2|2|1");
  EXPECT_EQ(ambarlar(), "");
  duzen.Kopyala = false;
  EXPECT_TRUE(rights::Firma_Sec(o(), duzen, "MERKEZ"));
  EXPECT_TRUE(duzen.treelist.isaretli(satir("Stok")));
}

// Other programs write the row, too.
TEST_F(YetkiTest, OddStringsGrantNothingThatNobodyTicked) {
  run("ALTER TABLE Kullanici ALTER COLUMN SIPHE CHAR(9)");
  run("UPDATE Kullanici SET KHE=NULL,KHD='1',KHI='1x1 "
      "2',KHS='',KK='xy11',KASA=NULL,URETIMEMIR=1,URETIMRECETE=0,DI=NULL,SIPHE='011111111' WHERE "
      "Kullanici_ID=2 AND Firma_ID=1");
  YetkiDuzeni duzen = ac();
  EXPECT_FALSE(duzen.treelist.isaretli(satir("Kasa")));
  EXPECT_FALSE(duzen.treelist.isaretli(satir("Üretim")));
  ASSERT_TRUE(rights::TamamBtn(o(), duzen));
  EXPECT_EQ(kolon("KHE,KHD,KHI,KHS,KK,KASA,URETIMEMIR,URETIMRECETE,DI,SIPHE"),
            "00000000000000|10000000000000|10100000000000|00000000000000|0011|0|0|0|0|01");
}

// Statements counted singly, whatever batches they are sent in.
TEST_F(YetkiTest, StatementsStayFew) {
  for (const char* db : {"MERKEZ", "SUBE"})
    run("DECLARE @i INT SET @i=4 WHILE @i<=300 BEGIN INSERT INTO " + std::string(db) +
        ".dbo.AMBAR(Ambar_No,Ambar_Ad) VALUES(@i,'A') INSERT INTO " + db +
        ".dbo.ISYERITANIM(Isyeri_Kodu) VALUES(CONVERT(VARCHAR(5),@i)) SET @i=@i+1 END");
  const auto say = [&](const std::function<bool()>& is) {
    surucu.izleme.sifirla();
    EXPECT_TRUE(is()) << s.boxes.last();
    std::size_t count = 0;
    for (const std::string& batch : surucu.izleme.deyimler)
      count += engine::parseBatch(batch).statements.size();
    return count;
  };
  YetkiDuzeni duzen;
  o().Secili_ID = id;
  EXPECT_LE(say([&] { return rights::Yetki_Yukle(o(), duzen) && duzen.okundu; }), 12u);
  ASSERT_EQ(duzen.YetkiAmbarGrd.size(), 300u);
  for (std::size_t i = 0; i < 299; ++i)
    rights::secimiCevir(duzen.YetkiAmbarGrd, i), rights::secimiCevir(duzen.YetkiIsyeriGrd, i);
  rights::varsayilanYap(duzen.YetkiAmbarGrd, 7, true);
  rights::varsayilanYap(duzen.YetkiIsyeriGrd, 9, true);
  duzen.Def_Kasa_Kod = "K1";
  EXPECT_LE(say([&] { return rights::TamamBtn(o(), duzen); }), 10u);
  EXPECT_EQ(surucu.izleme.deyimler.front(), rights::islemBasi);
  EXPECT_EQ(surucu.izleme.deyimler.back(), "COMMIT TRAN");
  EXPECT_EQ(rows("SELECT COUNT(*),SUM(CONVERT(INT,Merkez_Ambar)) FROM MERKEZ.dbo.KULLANICIAMBAR") + " " +
                rows("SELECT COUNT(*),SUM(CONVERT(INT,Def_Isyeri)) FROM MERKEZ.dbo.KULLANICIISYERI"),
            "299|1 299|1");
  EXPECT_LE(say([&] { return rights::Firma_Sec(o(), duzen, "SUBE"); }), 8u);
}

// Between opening and saving; what the catalog had taken already goes back, too.
TEST_F(YetkiTest, ACompanyThatCannotBeWrittenIsToldAndNothingStays) {
  YetkiDuzeni duzen = ac();
  duzen.treelist.degistir(satir("Banka"), false);
  rights::varsayilanYap(duzen.YetkiAmbarGrd, 1, true);
  const std::string before = hersey();
  const std::string yazilamadi = "Yetkiler kaydedilemedi; hiçbir şey değiştirilmedi.\n";
  const struct {
    std::function<void()> boz, duzelt;
    std::string text;
  } cases[] = {
      {[&] {
         surucu.izleme.once = [&](std::size_t) {
           if (surucu.izleme.deyimler.back().find("MERKEZ.dbo.KULLANICI") != std::string::npos)
             throw db::SqlError(db::ErrorKind::StatementRefused, 3906, "salt okunur");
         };
       },
       [&] { surucu.izleme.sifirla(); }, "-2147217900 : salt okunur"},
      {[&] { run("USE MERKEZ BEGIN TRAN UPDATE AMBAR SET Ambar_Ad='Başka'"); },
       [&] { run("ROLLBACK TRAN USE Defination_DB"); },
       "Bilgiler başka bir program tarafından kilitlenmiş; lütfen biraz sonra yeniden deneyiniz."},
  };
  for (const auto& c : cases) {
    s.boxes.shown.clear();
    YetkiDuzeni copy = duzen;
    c.boz();
    EXPECT_FALSE(rights::TamamBtn(o(), copy)) << c.text;
    c.duzelt();
    EXPECT_EQ(s.boxes.texts(), Texts{yazilamadi + c.text});
    EXPECT_EQ(hersey(), before) << c.text;
  }
  EXPECT_TRUE(rights::TamamBtn(o(), duzen));
  EXPECT_NE(hersey(), before);

  // The whole database: it cannot be opened either, and what stands in the catalog is left alone.
  const std::string rights = rows("SELECT * FROM Kullanici ORDER BY ID");
  o().Kayitlar.close();
  run("DROP DATABASE MERKEZ");
  s.boxes.shown.clear();
  duzen.treelist.degistir(satir("Stok"), false);
  EXPECT_FALSE(rights::TamamBtn(o(), duzen));
  EXPECT_TRUE(s.boxes.last().starts_with(yazilamadi)) << s.boxes.last();
  EXPECT_FALSE(rights::Firma_Sec(o(), duzen, "MERKEZ"));
  EXPECT_FALSE(rights::TamamBtn(o(), duzen));
  EXPECT_EQ(s.boxes.last(),
            "Bu firmanın yetkileri okunamadı; kaydedilirse verilmiş yetkiler silinir. Hiçbir şey yazılmadı.");
  EXPECT_EQ(rows("SELECT * FROM Kullanici ORDER BY ID"), rights);
}

TEST_F(YetkiTest, MessagesOfWhatIsMissing) {
  YetkiDuzeni duzen = ac();
  duzen.Firma_ID = "";
  EXPECT_FALSE(rights::TamamBtn(o(), duzen));
  EXPECT_EQ(s.boxes.last(), "Yetkilendirme Yapacağınız Firmayı Seçmelisiniz.");
  EXPECT_EQ(s.boxes.shown.back().title, "Tuvra Zembera");
  duzen = ac();
  duzen.Firma_Combo.clear();
  EXPECT_FALSE(rights::Yetki_Kaydet(o(), duzen));
  EXPECT_EQ(s.boxes.last(), "Bu Kullanıcı Hiçbir firmayı Kulanamaz Duruma Getirilmiş. Yetki Tanımlanamaz");
  duzen = ac();
  run("DELETE FROM Kullanici WHERE Kullanici_ID=2 AND Firma_ID=1");
  EXPECT_FALSE(rights::TamamBtn(o(), duzen));
  EXPECT_EQ(s.boxes.texts(),
            Texts{"Bu kullanıcının bu firmadaki yetki kaydı başka bir yerden silinmiş; kaydedilemedi."});
  run("DELETE FROM Kullanici WHERE Kullanici_ID=2");
  EXPECT_FALSE(rights::Yetki_Yukle(o(), duzen));
  EXPECT_EQ(s.boxes.last(), "Lütfen Bu Kullanıcının Kullanacağı En Az Bir Firma Seçiniz");
}

TEST_F(YetkiTest, AWorkplaceCodeThatItsTableCannotHoldIsTold) {
  run("INSERT INTO MERKEZ.dbo.ISYERITANIM(Isyeri_Kodu) VALUES('UZUNKOD')");
  YetkiDuzeni duzen = ac();
  rights::secimiCevir(duzen.YetkiIsyeriGrd, 2);
  EXPECT_FALSE(rights::TamamBtn(o(), duzen));
  EXPECT_NE(s.boxes.last().find("KULLANICIISYERI tablosu işyeri kodlarının hepsini tutamıyor"),
            std::string::npos)
      << s.boxes.last();
  EXPECT_EQ(isyerleri(), "");
}

}  // namespace
