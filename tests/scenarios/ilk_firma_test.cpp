// From an empty folder to a company and back, on the embedded server, by the commands a person types.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "session/giris.h"
#include "session/sys_inf.h"
#include "support/fakes.h"
#include "support/komut_satiri.h"
#include "support/surucu.h"

namespace {

namespace fs = std::filesystem;

class IlkFirma : public testing::Test {
 protected:
  support::KomutSatiri cli{support::surucuYap};

  void kur(const std::string& password = "Fabrika1") {
    ASSERT_EQ(cli.calistir({"kur", "--sunucu", "(yerel)"}, "sql-gizli\n" + password + "\n"), 0) << cli.err;
  }
  int olustur(const std::string& name, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments{
        "firma-olustur", "--ad",        name,         "--kod",   "00001",     "--unvan",
        "Şeker'in A.Ş.", "--baslangic", "01/01/2012", "--bitis", "31/12/2012"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return cli.calistir(arguments);
  }
  std::string sql(const std::string& database, const std::string& statement) {
    EXPECT_EQ(cli.calistir({"sql", "--db", database, statement}), 0) << cli.err;
    return cli.out;
  }
};

TEST_F(IlkFirma, KurToFirmaSil) {
  kur();
  struct stat status {};
  ASSERT_EQ(::stat(session::sysInfYolu(cli.dizin).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(sql("Defination_DB", "SELECT sysus_ID,sysus_nm FROM sysuslng"),
            "sysus_ID\tsysus_nm\n1\tKORVENA\n");

  ASSERT_EQ(olustur("MAGAZA", {"--sehir", "İzmir"}), 0) << cli.err;
  EXPECT_EQ(cli.err, "");
  ASSERT_EQ(cli.calistir({"firma-listele"}), 0) << cli.err;
  EXPECT_EQ(cli.out,
            "Ad\tKod\tUnvan\tBaslangic\tBitis\nMAGAZA\t00001\tŞeker'in A.Ş.\t01/01/2012\t31/12/2012\n");
  EXPECT_EQ(sql("MAGAZA", "SELECT COUNT(*) AS n FROM STOKKART"), "n\n0\n");
  EXPECT_EQ(sql("Defination_DB", "SELECT sysus_ID FROM sysusfrmlng"), "sysus_ID\n1\n");
  EXPECT_TRUE(fs::exists(cli.dizin / "veri" / "MAGAZA.mdf"));

  EXPECT_EQ(olustur("MAGAZA"), 1);
  EXPECT_NE(cli.err.find("Bu İsimle Bir Firma Zaten Var."), std::string::npos) << cli.err;

  ASSERT_EQ(cli.calistir({"firma-sil", "--ad", "MAGAZA", "--evet"}), 0) << cli.err;
  ASSERT_EQ(cli.calistir({"firma-listele"}), 0);
  EXPECT_EQ(cli.out, "Ad\tKod\tUnvan\tBaslangic\tBitis\n");
  EXPECT_FALSE(fs::exists(cli.dizin / "veri" / "MAGAZA.mdf"));
  EXPECT_EQ(sql("Defination_DB", "SELECT COUNT(*) AS n FROM Kullanici"), "n\n0\n");
  ASSERT_EQ(olustur("MAGAZA"), 0) << cli.err;  // and may come again
}

TEST_F(IlkFirma, RefusedCardsWriteNothing) {
  kur();
  struct Case {
    std::vector<std::string> more;
    const char* name;
    const char* text;
  };
  const Case cases[] = {{{}, "9MAGAZA", "Database Adı Numara ile Başlayamaz"},
                        {{}, "MAG'AZA", "Database Adı içinde TekTırnak(') İşareti Olamaz."},
                        {{}, "", "Database Adını boş geçemezsiniz."},
                        {{"--baslangic", "31/02/2012"}, "MAGAZA", "Firmamnın Mali Başlangıç Tarihi"},
                        {{}, "tempdb", "Bu İsimle Bir Firma Zaten Var."},
                        {{}, "MODEL", "Bu İsimle Bir Firma Zaten Var."},
                        {{}, "Master", "Bu İsimle Bir Firma Zaten Var."},
                        {{}, "msdb", "Bu İsimle Bir Firma Zaten Var."},
                        {{}, "defination_DB", "Bu İsimle Bir Firma Zaten Var."},
                        {{}, "Plan", "\"Plan\" SQL Server'ın ayrılmış bir sözcüğüdür; Database Adı Olamaz."},
                        {{}, "MAGBORU", "Ama Dosyası var."},
                        {{}, "MAGKLASOR", "Ama Dosyası var."}};
  const fs::path veri = cli.dizin / "veri";
  ASSERT_EQ(::mkfifo((veri / "MAGBORU.mdf").c_str(), 0600), 0);
  fs::create_directory(veri / "MAGKLASOR.mdf");
  ::alarm(120);  // nobody waits for the pipe's other end
  for (const Case& c : cases) {
    std::vector<std::string> arguments{"firma-olustur", "--ad", c.name, "--kod", "00001", "--unvan", "U"};
    arguments.insert(arguments.end(), c.more.begin(), c.more.end());
    EXPECT_EQ(cli.calistir(arguments), 1) << c.text;
    EXPECT_NE(cli.err.find(c.text), std::string::npos) << cli.err;
  }
  ::alarm(0);
  EXPECT_EQ(sql("master", "SELECT name FROM sysdatabases ORDER BY dbid"), "name\nmaster\nDefination_DB\n");
  EXPECT_EQ(sql("Defination_DB", "SELECT COUNT(*) AS n FROM sysfrmlng"), "n\n0\n");
}

TEST_F(IlkFirma, ChartThatCannotBeReadIsToldAndCounted) {
  kur();
  fs::create_directories(cli.dizin / "Muhasebe Parametre");  // the program's folder goes first, and is empty
  EXPECT_EQ(olustur("MAGAZA", {"--hesap-plani"}), 1);
  EXPECT_NE(cli.err.find("StandartPlan.txt dosyasının Varlığını Kontrol Ediniz."), std::string::npos)
      << cli.err;
  EXPECT_EQ(sql("MAGAZA", "SELECT COUNT(*) AS n FROM MUHKART"), "n\n0\n");
}

TEST_F(IlkFirma, SecondKurChangesNothing) {
  kur();
  ASSERT_EQ(olustur("MAGAZA"), 0) << cli.err;
  EXPECT_EQ(cli.calistir({"kur", "--sunucu", "(yerel)"}, "yanlis\nBaska1\n"), 1);
  EXPECT_EQ(cli.calistir({"kur", "--sunucu", "(yerel)"}, "sql-gizli\nBaska1\n"), 0) << cli.err;
  EXPECT_NE(cli.out.find("zaten var"), std::string::npos);
  ASSERT_EQ(cli.calistir({"firma-listele"}), 0) << cli.err;
  EXPECT_NE(cli.out.find("MAGAZA"), std::string::npos);
}

// Letters that scramble onto bytes without a character of their own in the code page.
TEST_F(IlkFirma, LoginAfterKurWithEveryKindOfPassword) {
  for (const char* password : {"Fabrika1", "@GHIJKLMNOP", "aAzZ09.-_!"}) {
    support::KomutSatiri one{support::surucuYap};
    ASSERT_EQ(one.calistir({"kur", "--sunucu", "(yerel)", "--yonetici", "inci"},
                           std::string("p\n") + password + "\n"),
              0)
        << one.err;
    support::FakeSurroundings around;
    around.platform.folder = one.dizin;
    const auto factory = support::surucuYap(one.dizin);
    around.oturum.surucu = factory.get();
    ASSERT_EQ(session::Giris_Yukle(around.oturum), session::BolgeselSonuc::Tamam);
    EXPECT_EQ(session::Giris_Tamam(around.oturum, "inci", password).adim,
              session::GirisSonucu::Adim::KonsolTam)
        << password << ": " << around.boxes.last();
    EXPECT_TRUE(around.oturum.Supervisor);
    around.oturum.Kayitlar.close();
    around.oturum.Baglanti.reset();
  }
}

}  // namespace
