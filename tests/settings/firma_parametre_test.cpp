#include "settings/firma_parametre.h"

#include "company/sirket.h"
#include "support/fakes.h"

namespace {

using company::test::Sirket;

class FirmaParametre : public company::test::SirketTest {
 protected:
  void SetUp() override { sirket().bagla("Defination_DB"); }
  session::Oturum& oturum() { return sirket().s.oturum; }
  std::int64_t id(const std::string& ad) {
    return std::stoll(sirket().rows("SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" + ad + "'"));
  }
  void yaz(const std::string& atamalar) {
    sirket().run("UPDATE sysfrmlng SET " + atamalar + " WHERE sysfrm_dbnm='" + std::string(Sirket::baz) +
                 "'");
  }
};

TEST_F(FirmaParametre, FormatsFollowTheDecimals) {
  yaz("AnaParaVirgul=0,BirimFiyatVirGul=1,DovizVirgul=2,DovizBirimFiyatVirgul=NULL,KurVirgul=6");
  ASSERT_TRUE(settings::Firma_Parametre_Yukle(oturum(), id(Sirket::baz)));
  EXPECT_EQ(oturum().AnaPara_Format, "#,##0");
  EXPECT_EQ(oturum().BirimFiyat_Format, "#,##0.0");
  EXPECT_EQ(oturum().Doviz_Format, "#,##0.00");
  EXPECT_EQ(oturum().DovizBirimFiyat_Format, "#,##0");
  EXPECT_EQ(oturum().Kur_Format, "#,##0.000000");
}

TEST_F(FirmaParametre, ColumnsArriveByTheirKind) {
  yaz("DovizVar=1,EmanetVar=1,OnlineMuhasebe=2,AmbarYetkiyeBagli=NULL,Renk_Ozel=16777215,StokMinSeviye=2,"
      "OzelRenkli=1,TahsilNusha=3,DefKDV=NULL,PesinIndirimi=2.5,TransferFirma='BASKA'");
  oturum().Parametre.DefKDV = 8;
  oturum().Parametre.AmbarYetkiyeBagli = true;
  ASSERT_TRUE(settings::Firma_Parametre_Yukle(oturum(), id(Sirket::baz)));
  const session::FirmaParametreleri& p = oturum().Parametre;
  EXPECT_TRUE(p.DovizVar && p.EmanetVar && p.OnlineMuhasebe && p.Ana_Birim);
  EXPECT_FALSE(p.AmbarYetkiyeBagli || p.BarkodVar);
  EXPECT_EQ(p.Renk_Ozel, 16777215);
  EXPECT_EQ(p.StokMinSeviye, 2);
  EXPECT_EQ(p.OzelRenkli, 1);
  EXPECT_EQ(p.TahsilNusha, 3);
  EXPECT_EQ(p.DefKDV, 8) << "an empty column keeps what the session has";
  EXPECT_EQ(p.PesinIndirimi, 2.5);
  EXPECT_EQ(p.TransferFirma, "BASKA");
}

TEST_F(FirmaParametre, MissingLockDatesAreTheFiscalYear) {
  yaz("KilitBasTarih=NULL,KilitBitTarih='20120630'");
  ASSERT_TRUE(settings::Firma_Parametre_Yukle(oturum(), id(Sirket::baz)));
  EXPECT_EQ(oturum().Parametre.KilitBasTarih, (db::DateTime{2012, 1, 1}));
  EXPECT_EQ(oturum().Parametre.KilitBitTarih, (db::DateTime{2012, 6, 30}));
}

TEST_F(FirmaParametre, AMissingCompanyKeepsTheSession) {
  oturum().Kur_Format = "#,##0.0000";
  EXPECT_FALSE(settings::Firma_Parametre_Yukle(oturum(), 999));
  EXPECT_EQ(oturum().Son_Hata, "Firma kaydı bulunamadı.");
  EXPECT_EQ(oturum().Kur_Format, "#,##0.0000");
}

}  // namespace
