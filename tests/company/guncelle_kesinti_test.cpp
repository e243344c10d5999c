// Runs that break off, and databases that must not be upgraded.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "company/guncelle_ortami.h"

namespace {

using namespace guncelle_testi;
using company::upgrade::guncellemeEngeli;

// Rows for the migrations and repairs, so that a step lost on the way shows.
const std::vector<std::string>& hazirlik() {
  static const std::vector<std::string> statements{
      "ALTER TABLE AMBTRS DROP COLUMN Karsi_Ambar_No",
      "ALTER TABLE MUHKART DROP COLUMN Ana_Hesap_Kod",
      "ALTER TABLE STOKKART DROP COLUMN AktifBirim",
      "ALTER TABLE STOKHAREKETKART DROP COLUMN FaturaTuru",
      "INSERT INTO STOKHAREKETKART (Fis_No,Islem_Tipi,Ambar_No,Fatura_ID) VALUES ('T1','Ambar Fişi(Ç)',1,1)",
      "INSERT INTO STOKHAREKETKART (Fis_No,Islem_Tipi,Ambar_No) VALUES ('T1','Ambar Fişi(G)',2)",
      "INSERT INTO FATURAKART (Fis_No,FaturaTuru) VALUES ('FT1','Açık')",
      "INSERT INTO AMBTRS (Stok_Kod,Fis_No,Islem_Tipi) VALUES ('A','T1','Ambar Fişi(Ç)')",
      "INSERT INTO AMBTRS (Stok_Kod,Fis_No,Islem_Tipi) VALUES ('B','T1','Ambar Fişi(G)')",
      "INSERT INTO MUHKART (MHesap_Kod,MHesap_Ad) VALUES ('120.01','B')",
      "INSERT INTO STOKKART (Stok_Kod,Ana_Birim) VALUES ('A2','KG')",
      "INSERT INTO CARIKART (Cari_Kod,Unvan) VALUES ('C1','Ali')",
      "INSERT INTO POSHAREKET (Satis_ID,Islem_Tipi,Fis_No,Cari_ID,Tutar,Islem_Tarih) VALUES (0,'Kredi Kartı "
      "Tahsilat','P1',1,70,'20120105')",
      "INSERT INTO MUHASEBEBAGLANTI (MFis_ID,Entegre_ID,Entegre_Islem_Tipi,Modul_No) VALUES (1,1,'Kredi "
      "Kartı Tahsilat',2)"};
  return statements;
}

class GuncelleKesinti : public Guncelle {
 protected:
  GuncelleKesinti() {
    calistir(hazirlik());
    b.reset();
    fs::copy(klasor, kaynak, fs::copy_options::recursive);
    b = std::make_unique<Baglam>(klasor);
    b->izleme.sifirla();
    EXPECT_TRUE(b->guncelle().tamamlandi);
    deyimSayisi = b->izleme.deyimler.size();
    beklenen = icerik(*b, "FIRMA");
  }
  ~GuncelleKesinti() override { fs::remove_all(kaynak); }

  void bastanBasla() {
    b.reset();
    fs::remove_all(klasor);
    fs::copy(kaynak, klasor, fs::copy_options::recursive);
    b = std::make_unique<Baglam>(klasor);
  }
  void tamamlanmali() {
    const GuncellemeSonucu sonuc = b->guncelle();
    ASSERT_TRUE(sonuc.tamamlandi) << sonuc.hata;
    guncelOlmali();
    EXPECT_EQ(icerik(*b, "FIRMA"), beklenen);
  }

  fs::path kaynak = klasor.string() + "_kaynak";
  std::size_t deyimSayisi = 0;
  Icerik beklenen;
};

TEST_F(GuncelleKesinti, LostLinkIsToldAndTheNextRunCompletes) {
  std::mt19937 random(7);
  for (int i = 0; i < 4; ++i) {
    const std::size_t at = 3 + random() % (deyimSayisi - 4);
    SCOPED_TRACE(at);
    bastanBasla();
    const auto breakAt = [&](std::size_t number) {
      if (number == at) throw db::SqlError(db::ErrorKind::LinkBroken, 0, "Bağlantı koptu");
    };
    (i % 2 == 0 ? b->izleme.once : b->izleme.sonra) = breakAt;
    const GuncellemeSonucu sonuc = b->guncelle();
    EXPECT_FALSE(sonuc.tamamlandi);
    EXPECT_EQ(sonuc.hata, "Bağlantı koptu");
    yenidenAc();
    tamamlanmali();
  }
}

TEST_F(GuncelleKesinti, KilledRunIsCompletedByTheNext) {
  std::mt19937 random(11);
  for (int i = 0; i < 3; ++i) {
    const std::size_t at = 3 + random() % (deyimSayisi - 4);
    SCOPED_TRACE(at);
    bastanBasla();
    b.reset();
    const pid_t child = fork();
    if (child == 0) {
      Baglam own(klasor);
      own.izleme.sonra = [&](std::size_t number) {
        if (number == at) raise(SIGKILL);
      };
      own.guncelle();
      _exit(1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    b = std::make_unique<Baglam>(klasor);
    tamamlanmali();
  }
}

// A limit on the size of files stands for the full disk.
TEST_F(GuncelleKesinti, FullDiskIsToldAndTheNextRunCompletes) {
  bastanBasla();
  struct rlimit before {};
  getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit small = before;
  small.rlim_cur = fs::file_size(klasor / "veri" / "FIRMA.mdf") + 65536;
  setrlimit(RLIMIT_FSIZE, &small);
  const GuncellemeSonucu sonuc = b->guncelle();
  yenidenAc();
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_FALSE(sonuc.tamamlandi);
  EXPECT_NE(sonuc.hata, "");
  yenidenAc();
  tamamlanmali();
}

TEST_F(Guncelle, WhatIsNoCompanyIsRefused) {
  b->baglan("master").execute("CREATE DATABASE BASKA");
  b->baglan("BASKA").execute("CREATE TABLE AMBAR (A INT)");
  EXPECT_EQ(guncellemeEngeli(b->s.oturum, "YOK'SA"), "\"YOK'SA\" adında bir firma tanımlı değil.");
  EXPECT_EQ(guncellemeEngeli(b->s.oturum, "BASKA"), "\"BASKA\" adında bir firma tanımlı değil.");
  b->baglan("Defination_DB")
      .execute("INSERT INTO sysfrmlng (sysfrm_kd,sysfrm_nm,sysfrm_dbnm) VALUES ('9','B','BASKA')");
  EXPECT_EQ(guncellemeEngeli(b->s.oturum, "BASKA"),
            "\"BASKA\" bir firma veritabanı değil; hiçbir şey değiştirilmedi.");
  b->baglan("Defination_DB").execute("UPDATE sysfrmlng SET sysfrm_dbnm='SILINMIS' WHERE sysfrm_dbnm='BASKA'");
  EXPECT_NE(guncellemeEngeli(b->s.oturum, "SILINMIS").value_or("").find("hiçbir şey değiştirilmedi"),
            std::string::npos);
  EXPECT_EQ(guncellemeEngeli(b->s.oturum, "FIRMA"), std::nullopt);
}

TEST_F(Guncelle, ReadOnlyFileIsRefusedAndNothingStaysOpen) {
  b->izleme.once = [&](std::size_t) {
    if (b->izleme.deyimler.back().starts_with("CREATE TABLE"))
      throw db::SqlError(db::ErrorKind::StatementRefused, 3906,
                         "Failed to update database because the database is read-only.");
  };
  const auto engel = guncellemeEngeli(b->s.oturum, "FIRMA");
  ASSERT_TRUE(engel);
  EXPECT_NE(engel->find("\"FIRMA\" veritabanı güncellenemez; hiçbir şey değiştirilmedi.\n"),
            std::string::npos);
  EXPECT_NE(engel->find("read-only"), std::string::npos);
  b->izleme.once = {};
  EXPECT_EQ(b->deger("SELECT @@TRANCOUNT"), "0");
  // A file that turns read-only on the way ends the run.
  b->izleme.once = [&](std::size_t) {
    if (b->izleme.deyimler.back().starts_with("CREATE TABLE"))
      throw db::SqlError(db::ErrorKind::StatementRefused, 3906, "read-only");
  };
  const GuncellemeSonucu sonuc = b->guncelle();
  EXPECT_FALSE(sonuc.tamamlandi);
  EXPECT_EQ(sonuc.hata, "read-only");
}

TEST_F(Guncelle, DatabaseInUseIsRefused) {
  const std::string inUse =
      "\"FIRMA\" veritabanı başka bir bağlantı tarafından kullanılıyor; hiçbir şey değiştirilmedi.";
  const Icerik before = icerik(*b, "FIRMA");
  {
    Baglam other(klasor);
    other.baglan("FIRMA");
    EXPECT_EQ(guncellemeEngeli(b->s.oturum, "FIRMA"), inUse);
  }
  EXPECT_EQ(guncellemeEngeli(b->s.oturum, "FIRMA"), std::nullopt);
  b.reset();

  int ready[2], done[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(done), 0);
  const pid_t child = fork();
  char byte = 0;
  if (child == 0) {
    Baglam own(klasor);
    own.baglan("FIRMA");
    if (write(ready[1], "r", 1) != 1 || read(done[0], &byte, 1) != 1) _exit(1);
    _exit(0);
  }
  ASSERT_EQ(read(ready[0], &byte, 1), 1);
  b = std::make_unique<Baglam>(klasor);
  EXPECT_EQ(guncellemeEngeli(b->s.oturum, "FIRMA"), inUse);
  ASSERT_EQ(write(done[1], "d", 1), 1);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(guncellemeEngeli(b->s.oturum, "FIRMA"), std::nullopt);
  EXPECT_EQ(icerik(*b, "FIRMA"), before);
  for (const int end : {ready[0], ready[1], done[0], done[1]}) close(end);
}

}  // namespace
