// The commands on company settings, on an embedded server with companies that share one catalog.
#include <gtest/gtest.h>

#include <algorithm>

#include "catalog/sunucu_hazirla.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "session/sys_inf.h"
#include "support/fakes.h"
#include "support/izleyen_surucu.h"
#include "support/komut_satiri.h"

namespace {

// One connection's statements, across the runs of the program.
struct SayanSurucu : db::ConnectionFactory {
  SayanSurucu(std::unique_ptr<db::ConnectionFactory> asil, support::Izleme& izleme)
      : asil_(std::move(asil)), izleme_(izleme) {}
  std::unique_ptr<db::Connection> make(const std::string& server) override {
    return std::make_unique<support::IzleyenBaglanti>(asil_->make(server), izleme_);
  }
  std::unique_ptr<db::LocalServer> local(const std::string& server) override { return asil_->local(server); }
  std::unique_ptr<db::ConnectionFactory> asil_;
  support::Izleme& izleme_;
};

// The rows of the catalog are enough: no company database is opened.
class ParametreKomutlari : public testing::Test {
 protected:
  support::Izleme izleme;
  support::KomutSatiri cli{[this](const std::filesystem::path& dizin) {
    return std::make_unique<SayanSurucu>(db::makeConnectionFactory(dizin), izleme);
  }};

  void SetUp() override {
    engine::Server::create(cli.dizin / "veri", "sa", "gizli");
    session::Sys_Inf_Yaz(cli.dizin, {"(yerel)", "sa", "gizli", false});
    support::FakeSurroundings s;
    const auto surucu = db::makeConnectionFactory(cli.dizin);
    s.oturum.surucu = surucu.get();
    s.oturum.Server_Adi = "(yerel)";
    catalog::Sunucu_Hazirla(s.oturum, {"Korvena", "abc", ""});
    for (const char* ad : {"A", "B", "C"})
      s.oturum.Baglanti->execute(
          std::string("INSERT INTO sysfrmlng(sysfrm_nm,sysfrm_dbnm,sysfrm_kd,DefKDV,Mali_Yil_Baslangic,"
                      "KilitBasTarih,KilitBitTarih) VALUES('X','") +
          ad + "','" + ad + "',18,'20120101','20120101','20121231')");
    s.oturum.Baglanti->execute(
        "UPDATE sysfrmlng SET DefKDV=8,Emanet_Ambar_No=4,DipNotTahsilat='Teşekkürler' "
        "WHERE sysfrm_dbnm='A'");
    s.oturum.Baglanti.reset();
  }
  std::string sql(const std::string& deyim) {
    cli.calistir({"sql", "--db", "Defination_DB", deyim});
    return cli.out;
  }
};

TEST_F(ParametreKomutlari, ListNamesValueMeaningAndCaption) {
  EXPECT_EQ(cli.calistir({"parametre", "--ad", "A", "--bicim", "tsv"}), 0) << cli.err;
  EXPECT_TRUE(cli.out.starts_with("Kolon\tDeger\tAnlam\tBaslik\nDovizVar\tNULL\t\tDöviz Kullanacağım\n"));
  EXPECT_NE(cli.out.find("\nDefKDV\t8\t\tKDV Ön Değeri %\n"), std::string::npos);
  EXPECT_NE(cli.out.find("\nAlistaFiyatDegis\t0\tHayır\tAlışta Fiyat Yenile\n"), std::string::npos);
  EXPECT_NE(cli.out.find("\nKilitBitTarih\t31/12/2012\t\tKilit BitişTarihi\n"), std::string::npos);
  EXPECT_EQ(cli.calistir({"parametre", "--ad", "A", "--bicim", "json"}), 0);
  EXPECT_NE(cli.out.find("\"Baslik\": \"KDV Ön Değeri %\""), std::string::npos) << cli.out.substr(0, 300);
  EXPECT_EQ(cli.calistir({"parametre", "--ad", "YOK"}), 1);
  EXPECT_EQ(cli.err, "\"YOK\" adında bir firma tanımlı değil.\n");
}

TEST_F(ParametreKomutlari, WritingIsAllOrNothing) {
  const struct {
    std::vector<std::string> yaz;
    int kod;
    const char *out, *err;
  } durumlar[] = {
      {{"DefKDV=20", "dovizvar=1"},
       0,
       "B: 2 parametre değişti\nDovizVar: NULL -> 1  (Döviz Kullanacağım)\nDefKDV: 18 -> 20  (KDV Ön Değeri "
       "%)\n",
       ""},
      {{"DefKDV=1", "DovizVar=belki"},
       1,
       "",
       "Döviz Kullanacağım: “belki” bir sayı değil.\nHiçbir şey yazılmadı.\n"},
      {{"DefKDV=1", "Yok=1"}, 1, "", "Bilinmeyen parametre: Yok\nHiçbir şey yazılmadı.\n"},
      {{"DefKDV"}, 1, "", "KOLON=DEĞER bekleniyordu: DefKDV\nHiçbir şey yazılmadı.\n"},
      {{"KilitBitTarih=01/01/2011"},
       1,
       "",
       "Yanlış Tarih Girişinde Bulundunuz. Kilit Bitiş Tarihi, Kilit Başlangıç Tarihinden Küçük "
       "Olamaz.Lütfen Kilit Tarihi Girişlerini Kontrol Ediniz.\nHiçbir şey yazılmadı.\n"}};
  for (const auto& d : durumlar) {
    std::vector<std::string> arguman{"parametre", "--ad", "B"};
    for (const auto& yaz : d.yaz) arguman.insert(arguman.end(), {"--yaz", yaz});
    EXPECT_EQ(cli.calistir(arguman), d.kod);
    EXPECT_EQ(cli.out, d.out);
    EXPECT_EQ(cli.err, d.err);
    EXPECT_EQ(sql("SELECT DefKDV,DovizVar FROM sysfrmlng WHERE sysfrm_dbnm='B'"),
              "DefKDV\tDovizVar\n20\t1\n");
  }
}

TEST_F(ParametreKomutlari, CopyingReachesEveryTargetAndLeavesTheDepositWarehouse) {
  const std::vector<std::string> komut{"parametre-kopyala", "--kaynak", "A", "--hedef", "B", "--hedef", "C"};
  auto deneme = komut;
  deneme.push_back("--dene");
  EXPECT_EQ(cli.calistir(deneme), 0) << cli.err;
  EXPECT_EQ(cli.out.substr(0, cli.out.find('\n')), "B: 2 parametre değişecek");
  EXPECT_EQ(sql("SELECT DefKDV FROM sysfrmlng ORDER BY sysfrm_kd"), "DefKDV\n8\n18\n18\n");
  EXPECT_EQ(cli.calistir(komut), 0) << cli.err;
  EXPECT_EQ(
      cli.out,
      "B: 2 parametre değişti\nDefKDV: 18 -> 8  (KDV Ön Değeri %)\nDipNotTahsilat: NULL -> Teşekkürler  "
      "(Tahsilat Makbuzu DipNotu)\nC: 2 parametre değişti\nDefKDV: 18 -> 8  (KDV Ön Değeri "
      "%)\nDipNotTahsilat: NULL -> Teşekkürler  (Tahsilat Makbuzu DipNotu)\n");
  EXPECT_EQ(sql("SELECT DefKDV,Emanet_Ambar_No FROM sysfrmlng ORDER BY sysfrm_kd"),
            "DefKDV\tEmanet_Ambar_No\n8\t4\n8\tNULL\n8\tNULL\n");
  EXPECT_EQ(cli.calistir({"parametre-karsilastir", "A", "B"}), 1);
  EXPECT_EQ(cli.out,
            "Kolon            A  B     Baslik\n---------------  -  ----  -------------\nEmanet_Ambar_No  4  "
            "NULL  Emanet Ambarı\n");
  EXPECT_EQ(cli.calistir({"parametre-karsilastir", "B", "C"}), 0);
  EXPECT_EQ(cli.out, "Parametreler aynı.\n");
  EXPECT_EQ(cli.calistir({"parametre-kopyala", "--kaynak", "A", "--hedef", "B", "--hedef", "YOK"}), 1);
  EXPECT_EQ(cli.err, "\"YOK\" adında bir firma tanımlı değil.\nHiçbir şey yazılmadı.\n");
}

TEST_F(ParametreKomutlari, CopyingTakesOneStatementACompanyAndOneForAllOfThem) {
  izleme.sifirla();
  const std::vector<std::string> komut{"parametre-kopyala", "--kaynak", "A", "--hedef", "B", "--hedef", "C"};
  EXPECT_EQ(cli.calistir(komut), 0) << cli.err;
  const auto okuma =
      std::ranges::find(izleme.deyimler, "SELECT * FROM sysfrmlng WHERE sysfrm_dbnm IN ('A','B','C')");
  ASSERT_EQ(izleme.deyimler.end() - okuma, 3);
  for (const int firma : {1, 2})
    EXPECT_TRUE(okuma[firma].starts_with("UPDATE sysfrmlng SET DefKDV=8,DipNotTahsilat='Teşekkürler' WHERE "))
        << okuma[firma];
  EXPECT_EQ(cli.calistir(komut), 0);
  EXPECT_EQ(cli.out, "B: 0 parametre değişti\nC: 0 parametre değişti\n");
}

TEST_F(ParametreKomutlari, AnOlderCatalogIsToldWithTheWayOut) {
  sql("ALTER TABLE sysfrmlng DROP COLUMN AnaYaz");
  EXPECT_EQ(cli.calistir({"parametre", "--ad", "A"}), 1);
  EXPECT_EQ(cli.err,
            "Tanımlama veritabanı eski yapıda: sysfrmlng tablosunda “AnaYaz” kolonu yok. Veritabanlarını "
            "zembera-cli guncelle ile güncelleyiniz.\n");
}

}  // namespace
