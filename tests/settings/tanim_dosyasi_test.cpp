#include "settings/tanim_dosyasi.h"

#include "company/sirket.h"

namespace {

class TanimDosyasi : public company::test::SirketTest {
 protected:
  void SetUp() override {
    oturum().surucu = sirket().factory.get();
    oturum().Kullanici_ID = 1;
    ac("ambar");
    sirket().run(
        "DELETE FROM AMBAR INSERT INTO AMBAR(Ambar_No,Ambar_Ad,Merkez_Ambar) VALUES(1,'MERKEZ',1) DELETE "
        "FROM ISYERITANIM WHERE Isyeri_ID<>1 DELETE FROM TARTIBARKOD");
  }
  session::Oturum& oturum() { return sirket().s.oturum; }
  const settings::ListeTuru& ac(const char* ad) {
    const auto& tur = *settings::listeTuru(ad);
    EXPECT_EQ(settings::Liste_Bagla(oturum(), tur, "GUNCEL2012"), "");
    return tur;
  }
  std::string al(const char* ad, const std::string& metin, bool dene = false) {
    const auto sonuc = settings::Liste_Yukle(oturum(), ac(ad), metin, dene);
    return sonuc.hata.empty() ? std::to_string(sonuc.eklenen) + "+" + std::to_string(sonuc.degisen)
                              : sonuc.hata;
  }
  std::string ambarlar() {
    return sirket().rows("SELECT Ambar_No,Ambar_Ad,Merkez_Ambar FROM AMBAR ORDER BY Ambar_No");
  }
};

TEST_F(TanimDosyasi, RowsAreMergedByKeyAndTicksMove) {
  EXPECT_EQ(al("ambar", "Ambar_No\tAmbar_Ad\tMerkez_Ambar\n2\tdepo\tevet\n", true), "1+1");
  EXPECT_EQ(ambarlar(), "1|MERKEZ|1") << "a trial writes nothing";
  EXPECT_EQ(al("ambar",
               "\xEF\xBB\xBF"
               "Ambar_No\tAmbar_Ad\tMerkez_Ambar\r\n2\tdepo\tevet\r\n"),
            "1+1");
  EXPECT_EQ(ambarlar(), "1|MERKEZ|0\n2|DEPO|1");
  EXPECT_EQ(al("ambar", "Ambar_No\tAmbar_Ad\n1\tANA\n"), "0+1");
  EXPECT_EQ(ambarlar(), "1|ANA|0\n2|DEPO|1");
  EXPECT_EQ(al("ambar", "Ambar_No\tAmbar_Ad\n1\tANA\n"), "0+0");
}

TEST_F(TanimDosyasi, ARefusedRowNamesItsLineAndNothingIsWritten) {
  const struct {
    const char *tur, *dosya, *hata;
  } durumlar[] = {
      {"ambar", "Ambar_No\tYok\n", "Satır 1: bilinmeyen kolon: Yok"},
      {"ambar", "Ambar_No\tAmbar_No\n", "Satır 1: kolon iki kez verilmiş: Ambar_No"},
      {"ambar", "Ambar_No\tAmbar_Ad\n2\tDEPO\n3\n", "Satır 3: 2 alan bekleniyordu, 1 var."},
      {"ambar", "Ambar_No\tAmbar_Ad\n2\t\xDE\n", "Satır 2: dosya UTF-8 değil."},
      {"ambar", "Ambar_No\tAmbar_Ad\n2\tDEPO\n2\tIKI\n", "Satır 3: aynı kayıt 2. satırda da var."},
      {"ambar", "Ambar_No\tAmbar_Ad\n2\tDEPO\nx\tIKI\n", "Satır 3: Lütfen Ambar Numarasına Sayı Giriniz"},
      {"ambar", "Ambar_No\tAmbar_Ad\n2\t1234567890123456\n",
       "Satır 2: Ambar Adı: “1234567890123456” çok uzun, en çok 15 karakter girilebilir."},
      {"ambar", "Ambar_No\tAmbar_Ad\n2\t日\n",
       "Satır 2: Ambar Adı: “日” harfi kullanılamaz (1254 Türkçe kod sayfasında yok)."},
      {"ambar", "Ambar_No\tAmbar_Ad\n0\tSIFIR\n",
       "Satır 2: 2 Nolu Satırda 0(SIFIR) Nolu Ambar Tanıtılmıştır. Lütfen Bu Ambarın Numarasını "
       "Değiştiriniz"},
      {"ambar", "Ambar_ID\tAmbar_Ad\n99999\tA\n", "Satır 2: Ambar_ID 99999 olan bir satır yok."},
      {"isyeri", "Isyeri_Kodu\tIsyeri_Adi\tAmbar_No\n2\tŞUBE\t77\n",
       "Satır 2: Bağlı Ambar: “77” listede yok."},
      {"isyeri", "Isyeri_Kodu\tIsyeri_Adi\n2\t\n",
       "Satır 2: 2. Satırda İşyerinin Adı Girilmemiştir. Lütfen Kontrol Ediniz"},
      {"fiyat", "Sira_No\tFiyat_Aciklama\n11\tON BİR\n", "Satır 2: En çok 10 satır olabilir."},
      {"tarti", "Bayrak_Kodu\tMaster_Kod\tKG\tGR\n27\t5\t2\t3\n28\t6\t2\t3\n",
       "Satır 3: Lütfen 2. satırdaki barkod tasarımını 13 Haneye Tamamlayınız"},
      {"rapor", "Modul\tKisim\tDEF_SQL\n1\t6\tx\n", "Satır 2: Kisim 1 ile 5 arasında bir sayı olmalı."},
      {"terminal", "Tanim_Kod\tBarkod_Bas\nT\tx\n", "Satır 2: Barkod_Bas: “x” bir sayı değil."}};
  for (const auto& d : durumlar) EXPECT_EQ(al(d.tur, d.dosya), d.hata);
  ac("ambar");
  EXPECT_EQ(ambarlar(), "1|MERKEZ|1");
  EXPECT_EQ(sirket().rows("SELECT COUNT(*) FROM TARTIBARKOD"), "0");
  EXPECT_EQ(sirket().rows("SELECT Isyeri_Kodu FROM ISYERITANIM"), "1");
}

TEST_F(TanimDosyasi, CatalogListsTakeTheirLines) {
  ac("terminal");
  sirket().run("DELETE FROM DISVERITANIM DELETE FROM TSRSQL");
  EXPECT_EQ(
      al("terminal", "Tanim_Kod\tTanim_Ad\tAyiracVar\tAyirac\tBarkod\tBarkod_Bas\nT1\tDepo\t1\t;\t1\t2\n"),
      "1+0");
  EXPECT_EQ(al("terminal", "Tanim_Kod\tTanim_Ad\nT1\tŞube\n"), "0+1");
  EXPECT_EQ(sirket().rows("SELECT Tanim_Kod,Tanim_Ad,Ayirac,Barkod,Barkod_Bas FROM DISVERITANIM"),
            "T1|Şube|;|1|2");
  EXPECT_EQ(al("rapor", "Modul\tKisim\tDEF_SQL\n1\t2\tSELECT\\n1\n"), "1+0");
  EXPECT_EQ(sirket().rows("SELECT Modul,Kisim,DEF_SQL FROM TSRSQL"), "1|2|SELECT\n1");
  EXPECT_EQ(al("tarti", "Bayrak_Kodu\tMaster_Kod\tKG\tGR\n27\t5\t2\t3\n"), "1+0");
  EXPECT_EQ(sirket().rows("SELECT COUNT(*) FROM GUNCEL2012.dbo.TARTIBARKOD"), "1");
}

}  // namespace
