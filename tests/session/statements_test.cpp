#include "session/statements.h"

#include <gtest/gtest.h>

#include "support/fakes.h"

namespace {

using db::ErrorKind;
using db::SqlError;
using session::Icon;
using Texts = std::vector<std::string>;

const SqlError loginRefused(ErrorKind::LoginRefused, 18456, "Login failed for user 'sa'.");
const SqlError notTrusted(ErrorKind::LoginRefused, 18452, "Not associated with a trusted connection.");
const SqlError badName(ErrorKind::StatementRefused, 208, "Invalid object name 'yok'.");
const SqlError linkBroken(ErrorKind::LinkBroken, 0, "Connection failure");

class StatementsTest : public testing::Test {
 protected:
  void connectAll() {
    session::Veritabani_Bagla(o, 0, "sa", "gizli", "Defination_DB", "SUNUCU");
    session::Veritabani_Bagla2(o, 0, "sa", "gizli", "DB2", "SUNUCU");
    session::Veritabani_Bagla3(o, 0, "sa", "gizli", "DB3", "SUNUCU");
    server.statements.clear();
  }

  support::FakeSurroundings s;
  support::FakeServer& server = s.server;
  session::Oturum& o = s.oturum;
};

TEST_F(StatementsTest, EachConnectionIsFilledByItsOwnRoutine) {
  session::Veritabani_Bagla(o, 1, "sa", "p", "A", "S");
  session::Veritabani_Bagla2(o, 1, "sa", "p", "B", "S");
  session::Veritabani_Bagla3(o, 1, "sa", "p", "C", "S");
  session::Veritabani_Bagla4(o, 1, "sa", "p", "D", "S");
  session::Veritabani_Bagla_Devir(o, 1, "sa", "p", "E", "S");
  EXPECT_EQ(o.Baglanti->parts().database, "A");
  EXPECT_EQ(o.Baglanti2->parts().database, "B");
  EXPECT_EQ(o.Baglanti3->parts().database, "C");
  EXPECT_EQ(o.Baglanti4->parts().database, "D");
  EXPECT_EQ(o.Devir_Baglanti->parts().database, "E");
  EXPECT_EQ(o.Devir_Baglanti_Metni, "fake:S/E");
}

TEST_F(StatementsTest, IntegratedSecurityComesSecondWithTheSameFields) {
  server.failOpening(loginRefused);
  session::Veritabani_Bagla_Devir(o, 0, " sa ", "p", "K", "S");
  ASSERT_EQ(server.openings.size(), 2u);
  EXPECT_FALSE(server.openings[0].integrated);
  EXPECT_EQ(server.openings[0].login, " sa ");
  EXPECT_TRUE(server.openings[1].integrated);
  EXPECT_EQ(server.openings[1].login, "sa");
  EXPECT_EQ(server.openings[1].database, "K");
  EXPECT_EQ(o.Devir_Baglanti_Metni, "fake:S/K/integrated");
  EXPECT_TRUE(s.boxes.shown.empty());
}

TEST_F(StatementsTest, TheSecondFailureGoesUp) {
  server.failOpening(loginRefused);
  server.failOpening(notTrusted);
  try {
    session::Veritabani_Bagla(o, 0, "sa", "p", "K", "S");
    FAIL() << "no error";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.serverNumber(), 18452);
  }
  EXPECT_EQ(server.openings.size(), 2u);
}

TEST_F(StatementsTest, CnnBaglaTrimsAndShowsAFailure) {
  EXPECT_TRUE(session::CNN_Bagla(o, " S ", " K "));
  EXPECT_EQ(server.openings.back().server, "S");
  EXPECT_EQ(server.openings.back().database, "K");
  EXPECT_EQ(server.openings.back().login, "sa");
  server.failOpening(loginRefused);
  server.failOpening(linkBroken);
  EXPECT_FALSE(session::CNN_Bagla(o, "S", "K"));
  EXPECT_EQ(s.boxes.texts(), (Texts{"Connection failure"}));
}

TEST_F(StatementsTest, SorguAcIsSilent) {
  connectAll();
  server.fail("yok", badName);
  EXPECT_EQ(session::Sorgu_Ac(o, o.Kayitlar, "SELECT * FROM yok"), -1);
  EXPECT_EQ(session::Sorgu_Ac2(o, o.Kayitlar, "SELECT * FROM yok"), -1);
  EXPECT_EQ(session::Sorgu_Ac(o, o.Kayitlar, "SELECT 1"), 0);
  EXPECT_TRUE(s.boxes.shown.empty());
  EXPECT_EQ(o.Son_Hata, "");
}

TEST_F(StatementsTest, SorguAcMesajliShowsNumberAndStatement) {
  connectAll();
  server.rows("SELECT 1", {"a"}, {{1}});
  session::Sorgu_Ac_Mesajli(o, o.Kayitlar, "SELECT 1");
  server.fail("yok", badName);
  session::Sorgu_Ac_Mesajli(o, o.Kayitlar, "SELECT * FROM yok");
  EXPECT_EQ(o.Son_Hata, "-2147217900 : Invalid object name 'yok'.");
  EXPECT_EQ(s.boxes.texts(), (Texts{o.Son_Hata, "SELECT * FROM yok"}));
  EXPECT_EQ(o.Kayitlar.state(), db::State::Closed);
}

TEST_F(StatementsTest, KomutCalistirGivesTheNumberAndGoesOn) {
  connectAll();
  server.fail("yok", badName);
  EXPECT_EQ(session::Komut_Calistir(o, o.Kayitlar, "DELETE FROM yok"), -2147217900);
  EXPECT_EQ(session::Komut_Calistir2(o, o.Kayitlar, "DELETE FROM yok"), -2147217900);
  EXPECT_EQ(session::Komut_Calistir(o, o.Kayitlar, "DELETE FROM var"), 0);
  EXPECT_EQ(s.boxes.texts(), (Texts{"Invalid object name 'yok'.", "Invalid object name 'yok'."}));
  EXPECT_EQ(s.boxes.shown[0].icon, Icon::None);
  EXPECT_EQ(server.statements.size(), 3u);
}

TEST_F(StatementsTest, ARoutineWithoutItsConnectionFailsAsAStatement) {
  EXPECT_EQ(session::Sorgu_Ac(o, o.Kayitlar, "SELECT 1"), -1);
  EXPECT_EQ(session::Sorgu_Ac_Tekrarli(o, o.Kayitlar, "SELECT 1"), -1);
}

TEST_F(StatementsTest, KomutCalistirOpensRowsThatCanBeWritten) {
  connectAll();
  server.rows("SELECT * FROM T", {"a"}, {{1}});
  EXPECT_EQ(session::Komut_Calistir(o, o.Kayitlar, "SELECT * FROM T"), 0);
  o.Kayitlar.set("a", 2);
  o.Kayitlar.update();
  EXPECT_EQ(server.statements.back(), "UPDATE [T] SET [a]=2 WHERE [a]=1");
}

TEST_F(StatementsTest, SorguAcTekrarliRepeatsWhileTheLinkIsBroken) {
  connectAll();
  const std::string again =
      "SQL Server Bağlantı Hatası Tekrar Denenecektir.Lütfen Programı Kapatmayınız. Lütfen Ağ ve Bağlantı "
      "Ayarlarınız Kontrol Ettikten Sonra Tamam Tuşuna Basınız.";
  server.fail("SELECT", linkBroken, 3);
  EXPECT_EQ(session::Sorgu_Ac_Tekrarli(o, o.Kayitlar, "SELECT 1"), 0);
  EXPECT_EQ(server.statements.size(), 4u);
  EXPECT_EQ(s.boxes.texts(),
            (Texts{"Connection failure", again, "Connection failure", again, "Connection failure", again}));
}

TEST_F(StatementsTest, SorguAcTekrarliEndsWhereNobodyAcknowledges) {
  connectAll();
  s.boxes.person = false;
  server.fail("SELECT", linkBroken, 3);
  EXPECT_EQ(session::Sorgu_Ac_Tekrarli(o, o.Kayitlar, "SELECT 1"), -1);
  EXPECT_EQ(server.statements, Texts{"SELECT 1"});
}

TEST_F(StatementsTest, SorguAcTekrarliEndsOnAnyOtherFailure) {
  connectAll();
  server.fail("yok", badName);
  EXPECT_EQ(session::Sorgu_Ac_Tekrarli(o, o.Kayitlar, "SELECT yok"), -1);
  EXPECT_EQ(s.boxes.texts(), (Texts{"Invalid object name 'yok'.", "Invalid object name 'yok'.", "SELECT yok",
                                    "fake:SUNUCU/Defination_DB"}));
  const Icon icons[] = {Icon::None, Icon::Stop, Icon::Stop, Icon::None};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(s.boxes.shown[i].icon, icons[i]) << i;
}

TEST_F(StatementsTest, KullaniciEkleMakesTheUserAMemberOfEveryRole) {
  session::Veritabani_Kullanici_Ekle(o, "FIRMA1", "ali'");
  EXPECT_EQ(o.Baglanti->parts().database, "FIRMA1");
  EXPECT_EQ(server.statements,
            (Texts{"exec sp_grantdbaccess N'ALİ''', N'ALİ'''", "exec sp_addrolemember N'db_owner', N'ALİ'''",
                   "exec sp_addrolemember N'db_accessadmin', N'ALİ'''",
                   "exec sp_addrolemember N'db_securityadmin', N'ALİ'''",
                   "exec sp_addrolemember N'db_ddladmin', N'ALİ'''",
                   "exec sp_addrolemember N'db_backupoperator', N'ALİ'''",
                   "exec sp_addrolemember N'db_datareader', N'ALİ'''",
                   "exec sp_addrolemember N'db_datawriter', N'ALİ'''"}));
}

TEST_F(StatementsTest, KullaniciSilDropsOnlyAUserThatIsThere) {
  server.rows("sysusers", {"name"}, {});
  session::Veritabani_Kullanici_Sil(o, "FIRMA1", "ali");
  EXPECT_EQ(server.statements, (Texts{"SELECT name FROM sysusers where Name='ALİ'"}));
  server.rows("sysusers", {"name"}, {{"ALİ"}});
  session::Veritabani_Kullanici_Sil(o, "FIRMA1", "ali");
  EXPECT_EQ(server.statements.back(), "exec sp_dropuser 'ALİ'");
}

TEST_F(StatementsTest, VersiyonBilgisiShowsFourLines) {
  o.Program_Versiyon = "2012.002";
  o.Tanim_DB_Versiyon = "2012.003";
  o.Firma_DB_Versiyon = "2012.004";
  session::Versiyon_Bilgisi(o);
  EXPECT_EQ(s.boxes.last(),
            "Versiyon Bilgisi :                                                     \n"
            "Program Versiyonu : 2012.002\nTanımlama Veritabanı Versiyonu : 2012.003\n"
            "Firma Veritabanı Versiyonu : 2012.004");
  EXPECT_EQ(s.boxes.shown.back().title, "Korvena Zembera");
}

}  // namespace
