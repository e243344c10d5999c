// A company to roll over, GUNCEL2012, and what a test says of the rows that come out.
#pragma once

#include "company/sirket.h"
#include "rollover/devir.h"

namespace rollover::test {

class DevirTest : public company::test::SirketTest {
 protected:
  static constexpr const char* kaynak = company::test::Sirket::guncel;

  company::test::Sirket& s() { return sirket(); }
  void SetUp() override {
    s().bagla(kaynak);
    // Every row of the source goes, but for those that a new company has.
    for (const char* const tablo : {"STOKKART",      "STOKHAREKET",   "STOKFIYAT",      "AMBTRS",
                                    "CARIKART",      "CARIHAREKET",   "ACILIS",         "KASAKART",
                                    "KASAHAREKET",   "HESAPKART",     "BANKAHAREKET",   "POSANLASMA",
                                    "POSHAREKET",    "SIPARISKART",   "SIPARISHAREKET", "CEKKART",
                                    "CEK",           "CEKDURUM",      "CEKPARCALI",     "SENETKART",
                                    "SENET",         "SENETDURUM",    "PERSONELKARTI",  "PERSONELHAREKET",
                                    "SABLONKART",    "SABLONHAREKET", "RECETEKART",     "RECETEHAREKET",
                                    "CARISTOKFIYAT", "ODEMEHAREKET",  "MUHKART",        "BEDENSTANDARTLARI"})
      s().run(std::string("DELETE FROM ") + tablo);
    s().run("DELETE FROM SATICI WHERE Satici_Kodu<>'Yok'");
    s().s.boxes.shown.clear();
  }
  void TearDown() override { kaldir(); }
  // Connections end before the statics of the libraries do.
  static void TearDownTestSuite() {
    sirket().s.oturum.Kayitlar.close();
    sirket().s.oturum.Baglanti.reset();
  }

  DevirGirdisi girdi(const std::string& hedef = "YENI2013") {
    s().bagla("Defination_DB");
    DevirGirdisi g;
    EXPECT_TRUE(Firma_Kayit_Getir(s().s.oturum, kaynak, g.taraf[0]));
    if (!Firma_Kayit_Getir(s().s.oturum, hedef, g.taraf[1])) {
      Yeni_Firma_Bilgileri_Olustur(s().s.oturum, g.taraf);
      g.taraf[1].Firma_Adi = hedef;
    }
    return g;
  }
  // Runs and stands on the target.
  DevirSonucu devret(const DevirGirdisi& g) {
    DevirSonucu sonuc = Devret(s().s.oturum, g);
    EXPECT_TRUE(sonuc.tamam) << sonuc.hata;
    if (sonuc.tamam && !g.deneme) s().bagla(g.taraf[1].Firma_Adi);
    return sonuc;
  }
  std::string satirlar(const std::string& sql) { return s().rows(sql); }
  void kaldir(const std::string& hedef = "YENI2013") {
    s().bagla("master");
    if (s().rows("SELECT name FROM sysdatabases WHERE name='" + hedef + "'").empty()) return;
    s().run("DROP DATABASE " + hedef);
    s().run(
        "DELETE FROM Defination_DB.dbo.Kullanici WHERE Firma_ID IN (SELECT sysfrm_ID FROM "
        "Defination_DB.dbo.sysfrmlng WHERE sysfrm_dbnm='" +
        hedef + "')");
    s().run(
        "DELETE FROM Defination_DB.dbo.sysusfrmlng WHERE sysfrm_ID IN (SELECT sysfrm_ID FROM "
        "Defination_DB.dbo.sysfrmlng WHERE sysfrm_dbnm='" +
        hedef + "')");
    s().run("DELETE FROM Defination_DB.dbo.sysfrmlng WHERE sysfrm_dbnm='" + hedef + "'");
  }
};

}  // namespace rollover::test
