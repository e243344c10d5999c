#include "session/konsol.h"

#include <gtest/gtest.h>

#include "session/metin.h"
#include "support/fakes.h"

namespace {

using namespace session;

class KonsolTest : public testing::Test, protected support::FakeSurroundings {
 protected:
  const Dugum company{"F", "MAGAZA", 4, "", "00004"};
  const Dugum user{"K", "INCI", 7, "", ""};
  const Dugum supervisor{"K", "KORVENA", 1, "", ""};
  std::vector<std::string> databases() const {
    std::vector<std::string> names;
    for (const auto& parts : server.openings) names.push_back(parts.database);
    return names;
  }
};

TEST_F(KonsolTest, TreeInReadingOrder) {
  server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"}, {{4, "MAGAZA   ", "00004  "}});
  server.rows("FROM sysuslng", {"sysus_ID", "sysus_nm", "sysus"},
              {{7, "INCI    ", *Sifrele("abc") + "   "}, {8, "BOŞ", {}}, {9, "BOZUK", "\x01\x01"}});
  const auto nodes = Alan_Listesi_Doldur(oturum).value();
  ASSERT_EQ(nodes.size(), 6U);
  EXPECT_EQ(nodes[0].kind + nodes[0].text, "FTFirma Tanımları");
  EXPECT_EQ(nodes[1].kind + nodes[1].text + nodes[1].kod, "FMAGAZA00004");
  EXPECT_EQ(nodes[1].id, 4);
  EXPECT_EQ(nodes[2].kind + nodes[2].text, "KTKullanıcı Tanımları");
  EXPECT_EQ(nodes[3].text + nodes[3].password, "INCIabc");
  EXPECT_EQ(nodes[4].password + nodes[5].password, "");
}

TEST_F(KonsolTest, NodesTellWhoUsesWhat) {
  server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"},
              {{4, "MAGAZA", "1"}, {5, "SUBE", "2"}});
  server.rows("FROM sysuslng", {"sysus_ID", "sysus_nm", "sysus"}, {{7, "ALİ", ""}, {8, "VELİ", ""}});
  // A pair twice, and one of a company that is gone.
  server.rows("FROM sysusfrmlng", {"sysfrm_ID", "sysus_ID"}, {{4, 7}, {5, 7}, {4, 8}, {4, 8}, {9, 8}});
  std::vector<std::string> ties;
  const auto nodes = Alan_Listesi_Doldur(oturum).value();
  for (const auto& node : nodes) ties.push_back(node.baglar);
  EXPECT_EQ(ties, (std::vector<std::string>{"", "ALİ, VELİ", "ALİ", "", "MAGAZA, SUBE", "MAGAZA"}));
}

TEST_F(KonsolTest, AListThatCannotBeReadIsNoEmptyOne) {
  for (int i = 0; i < 2; ++i) server.failOpening(db::SqlError(db::ErrorKind::LinkBroken, 0, "kopuk"));
  EXPECT_EQ(Alan_Listesi_Doldur(oturum), std::nullopt);
  EXPECT_EQ(boxes.texts(), std::vector<std::string>{"kopuk"});
  server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"}, {{4, "MAGAZA", "00004"}});
  server.fail("FROM sysuslng", db::SqlError(db::ErrorKind::StatementRefused, 208, "yok"));
  EXPECT_EQ(Alan_Listesi_Doldur(oturum), std::nullopt);
}

TEST_F(KonsolTest, CompaniesTellTitlePeriodAndVersionWhereTheCatalogCan) {
  server.rows("FROM sysfrmlng", {"sysfrm_ID", "sysfrm_dbnm", "sysfrm_kd"},
              {{4, "MAGAZA", "00004"}, {5, "SUBE", "2"}});
  server.rows("DBVRSYN FROM sysfrmlng",
              {"sysfrm_ID", "sysfrm_nm", "Mali_Yil_Baslangic", "Mali_Yil_Bitis", "DBVRSYN"},
              {{5, "Şube ", {}, db::DateTime{2012, 12, 31}, "2011.001 "},
               {4, "Mağaza A.Ş.", db::DateTime{2012, 1, 1}, db::DateTime{2012, 12, 31}, "2012.002"}});
  server.rows("FROM sysuslng", {"sysus_ID", "sysus_nm", "sysus"}, {});
  const auto nodes = Alan_Listesi_Doldur(oturum).value();
  EXPECT_EQ(nodes[1].unvan + "|" + nodes[1].surum, "Mağaza A.Ş.|2012.002");
  EXPECT_EQ(nodes[1].bas, (db::DateTime{2012, 1, 1}));
  EXPECT_EQ(nodes[1].bit, (db::DateTime{2012, 12, 31}));
  EXPECT_EQ(nodes[2].unvan + "|" + nodes[2].surum, "Şube|2011.001");
  EXPECT_FALSE(nodes[2].bas || nodes[2].bit);
}

TEST_F(KonsolTest, PopupByKindAndRight) {
  struct Case {
    const char* kind;
    bool supervisor;
    MenuDurumu state;
  };
  const Case cases[] = {{"F", true, {true, true, true, true, false, false, true}},
                        {"F", false, {false, false, true, false, false, false, false}},
                        {"K", true, {true, true, true, true, true, true, false}},
                        {"K", false, {false, false, true, false, false, true, false}},
                        {"FT", true, {true}},
                        {"KT", true, {true}},
                        {"FT", false, {}},
                        {"SI", false, {}}};
  for (const Case& c : cases) EXPECT_EQ(menuDurumu(c.kind, c.supervisor), c.state) << c.kind << c.supervisor;
}

TEST_F(KonsolTest, KeysInTheTree) {
  EXPECT_EQ(agacKomutu(AgacOlayi::Enter, "F", true), Komut::MNDegistir);
  EXPECT_EQ(agacKomutu(AgacOlayi::CiftTik, "K", true), Komut::MNDegistir);
  EXPECT_EQ(agacKomutu(AgacOlayi::Delete, "K", true), Komut::MNSil);
  EXPECT_EQ(agacKomutu(AgacOlayi::Insert, "FT", true), Komut::MNEkle);
  EXPECT_EQ(agacKomutu(AgacOlayi::Insert, "KT", true), Komut::MNEkle);
  EXPECT_EQ(agacKomutu(AgacOlayi::Delete, "FT", true), std::nullopt);
  EXPECT_EQ(agacKomutu(AgacOlayi::CiftTik, "KT", true), std::nullopt);
  EXPECT_EQ(agacKomutu(AgacOlayi::Insert, "SI", true), std::nullopt);
  for (const auto event : {AgacOlayi::Enter, AgacOlayi::Insert, AgacOlayi::Delete, AgacOlayi::CiftTik})
    EXPECT_EQ(agacKomutu(event, "F", false), std::nullopt);
}

TEST_F(KonsolTest, ReducedConsoleKeepsTheLastTwoButtons) {
  for (std::size_t i = 0; i < menuButonlari().size(); ++i) EXPECT_EQ(menuButonlari()[i].eksikteAcik, i >= 9);
}

TEST_F(KonsolTest, CardsOpenInTheirModes) {
  auto result = MNEkle(oturum, {"KT", "", 0, "", ""});
  EXPECT_EQ(result.ekran, Ekran::Ekle_Frm);
  EXPECT_EQ(result.durum, "Yeni Kullanıcı Oluşturuluyor");
  EXPECT_TRUE(oturum.Yeni_Kayit && !oturum.Inceleme && result.paneliGizle);

  result = MNIncele(oturum, company);
  EXPECT_EQ(result.ekran, Ekran::Firma_Tanim);
  EXPECT_TRUE(!oturum.Yeni_Kayit && oturum.Inceleme);
  EXPECT_EQ(oturum.Secili_ID, 4);

  result = MNDegistir(oturum, supervisor);  // the supervisor can be changed, though not inspected
  EXPECT_EQ(result.ekran, Ekran::Ekle_Frm);
  EXPECT_FALSE(oturum.Inceleme);
  EXPECT_EQ(MNTanim(oturum, company, Ekran::MNAmbar).ekran, Ekran::MNAmbar);
  EXPECT_EQ(oturum.Secili_Firma, "MAGAZA");
  EXPECT_EQ(MNTanim(oturum, user, Ekran::MNAmbar).ekran, Ekran::Yok);
}

TEST_F(KonsolTest, SupervisorIsGuarded) {
  EXPECT_EQ(MNIncele(oturum, supervisor).ekran, Ekran::Yok);
  EXPECT_EQ(boxes.last(), "Supervisor olan kullanıcıyı inceleyemezsiniz!");
  EXPECT_EQ(MNYetki(oturum, supervisor).ekran, Ekran::Yok);
  EXPECT_EQ(boxes.last(), "Supervisor olan kullanıcı için yetkilendirme yapamazsınız!");
  boxes.answers = {true};
  EXPECT_FALSE(MNSil(oturum, supervisor).listeyiYenile);
  EXPECT_EQ(boxes.last(), "Supervisor olan kullanıcıyı silemezsiniz!");
  EXPECT_TRUE(server.statements.empty());
  EXPECT_EQ(MNYetki(oturum, user).ekran, Ekran::Yetki_Frm);
  EXPECT_EQ(MNYetki(oturum, company).ekran, Ekran::Yok);
}

const std::string sahibi =
    "SELECT d.name,f.sysfrm_dbnm FROM Defination_DB.dbo.sysfrmlng f,master.dbo.sysdatabases d WHERE "
    "d.dbid=DB_ID('MAGAZA') AND DB_ID(RTRIM(f.sysfrm_dbnm))=d.dbid AND f.sysfrm_ID<>4";

TEST_F(KonsolTest, DeletingACompany) {
  EXPECT_FALSE(MNSil(oturum, company).listeyiYenile);  // No
  EXPECT_EQ(boxes.shown.back().title, "Korvena");
  EXPECT_TRUE(server.openings.empty());

  boxes.answers = {true};
  EXPECT_TRUE(MNSil(oturum, company).listeyiYenile);
  EXPECT_EQ(databases(), (std::vector<std::string>{"master", "Defination_DB"}));
  EXPECT_EQ(server.statements,
            (std::vector<std::string>{
                sahibi, "DROP DATABASE MAGAZA", "BEGIN TRAN", "DELETE FROM sysusfrmlng WHERE sysfrm_ID='4'",
                "DELETE FROM Kullanici WHERE Firma_ID='4'", "DELETE FROM sysfrmlng WHERE sysfrm_ID='4'",
                "DELETE FROM Kullanici_Menu WHERE Firma_ID='4'", "COMMIT TRAN"}));
}

TEST_F(KonsolTest, NothingIsDeletedWhenTheOwnerIsNotKnown) {
  server.fail("FROM Defination_DB.dbo.sysfrmlng", db::SqlError(db::ErrorKind::LinkBroken, 0, "gone"));
  boxes.answers = {true};
  EXPECT_FALSE(MNSil(oturum, company).listeyiYenile);
  EXPECT_EQ(server.statements, (std::vector<std::string>{sahibi}));
}

TEST_F(KonsolTest, CompanyInUseKeepsItsRows) {
  server.fail("DROP DATABASE", db::SqlError(db::ErrorKind::StatementRefused, 3702, "in use"));
  boxes.answers = {true};
  EXPECT_FALSE(MNSil(oturum, company).listeyiYenile);
  EXPECT_EQ(boxes.last(), "Bu Firma Kullanımda Olabilir. Firma Bilgieri Silinemedi.");
  EXPECT_EQ(server.statements.size(), 3U);  // whose it is, the DROP, and whether there is such a database
  EXPECT_EQ(databases().back(), "Defination_DB");
}

TEST_F(KonsolTest, DeletingAUser) {
  boxes.answers = {true};
  EXPECT_TRUE(MNSil(oturum, user).listeyiYenile);
  EXPECT_EQ(server.statements,
            (std::vector<std::string>{"BEGIN TRAN", "DELETE FROM sysusfrmlng WHERE sysus_ID='7'",
                                      "DELETE FROM Kullanici WHERE Kullanici_ID='7'",
                                      "DELETE FROM sysuslng WHERE sysus_ID='7'",
                                      "DELETE FROM Kullanici_Menu WHERE Kullanici_ID='7'", "COMMIT TRAN"}));
}

TEST_F(KonsolTest, NextCompanyCode) {
  EXPECT_EQ(Firma_Kod_Yeni((oturum.Baglanti = factory.make(""), oturum)), "00001");
  server.rows("Max(sysfrm_kd)", {"SN_KD"}, {{db::Value()}});
  EXPECT_EQ(Firma_Kod_Yeni(oturum), "00001");
  server.rows("Max(sysfrm_kd)", {"SN_KD"}, {{"00009     "}});
  EXPECT_EQ(Firma_Kod_Yeni(oturum), "00010");
}

}  // namespace
