// What is told of a company that is behind, against what the upgrade makes of it.
#include "company/sirket.h"
#include "company/upgrade/eksik.h"

namespace {

using company::test::Sirket;
using company::upgrade::eksikYazisi;

using SemaEksigi = company::test::SirketTest;

std::string eksik(const Sirket& s, const char* firma) {
  const auto okunan = company::upgrade::Sema_Eksigi_Oku(s.s.oturum, firma);
  return okunan ? eksikYazisi(*okunan) : "okunamadı";
}

TEST_F(SemaEksigi, ABaseCompanyIsBehindAndTheUpgradeLeavesNothing) {
  EXPECT_EQ(eksik(sirket(), Sirket::baz), "67 tablo, 421 kolon, 9 görünüm eksik");
  EXPECT_EQ(eksik(sirket(), Sirket::guncel), "");
  EXPECT_EQ(eksik(sirket(), "YOK2012"), "okunamadı");
}

TEST_F(SemaEksigi, EachKindOfDifferenceIsSeenByItself) {
  Sirket& s = sirket();
  const std::pair<const char*, const char*> durumlar[] = {
      {"DROP TABLE SABLONKART", "1 tablo eksik"},
      {"ALTER TABLE CARIKART DROP COLUMN Ilce", "1 kolon eksik"},
      {"ALTER TABLE CARIKART ALTER COLUMN Unvan CHAR(5)", "1 kolon eksik"},
      {"DROP VIEW AMBBAK", "1 görünüm eksik"},
      {"DROP TRIGGER STOKUPDATE", "1 görünüm eksik"},
      {"CREATE TABLE BASKASININ(A INT) ALTER TABLE STOKKART ADD BASKASININ INT", ""}};
  for (const auto& [deyim, beklenen] : durumlar) {
    s.bagla(Sirket::guncel);
    s.run("BEGIN TRANSACTION");
    s.run(deyim);
    EXPECT_EQ(
        eksikYazisi(company::upgrade::semaEksigi(company::upgrade::SemaGoruntusu::oku(*s.s.oturum.Baglanti))),
        beklenen)
        << deyim;
    s.run("ROLLBACK TRANSACTION");
  }
}

}  // namespace
