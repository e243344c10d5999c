// Two processes do the same at once: one wins, the other is told so, nothing is there twice.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "platform/files.h"
#include "support/komut_satiri.h"
#include "support/surucu.h"

namespace {

namespace fs = std::filesystem;

class Yaris : public testing::Test {
 protected:
  struct Sonuc {
    int kod = -1;
    std::string cikti, hata;
  };

  static std::unique_ptr<db::ConnectionFactory> surucu(const fs::path& dizin) {
    return support::surucuYap(dizin);
  }
  void SetUp() override { ASSERT_EQ(calistir({"kur", "--sunucu", "(yerel)"}, "gizli\nabc\n").kod, 0); }
  // In a process of its own, once `bekle` is closed.
  pid_t baslat(const std::vector<std::string>& komut, int ad, const std::string& girdi = "", int bekle = -1) {
    const pid_t cocuk = ::fork();
    if (cocuk != 0) return cocuk;
    char bit = 0;
    if (bekle >= 0) (void)!::read(bekle, &bit, 1);
    std::istringstream in(girdi);
    std::ofstream out(dosya(ad, "out")), err(dosya(ad, "err"));
    cli::Ortam ortam{in, out, err, false, false, klasor.path, surucu};
    const int kod = cli::calistir(ortam, komut);
    out.close();
    err.close();
    ::_exit(kod);
  }
  Sonuc bitir(pid_t cocuk, int ad) {
    Sonuc sonuc;
    int durum = 0;
    ::waitpid(cocuk, &durum, 0);
    sonuc.kod = WIFEXITED(durum) ? WEXITSTATUS(durum) : -1;
    sonuc.cikti = platform::readFile(dosya(ad, "out")).value_or("");
    sonuc.hata = platform::readFile(dosya(ad, "err")).value_or("");
    return sonuc;
  }
  Sonuc calistir(const std::vector<std::string>& komut, const std::string& girdi = "") {
    return bitir(baslat(komut, 0, girdi), 0);
  }
  // Both begin at the same moment; the winner first.
  std::pair<Sonuc, Sonuc> ikisi(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    int uclar[2];
    EXPECT_EQ(::pipe(uclar), 0);
    const pid_t ilk = baslat(a, 1, "", uclar[0]), ikinci = baslat(b, 2, "", uclar[0]);
    (void)!::write(uclar[1], "xx", 2);
    Sonuc x = bitir(ilk, 1), y = bitir(ikinci, 2);
    ::close(uclar[0]);
    ::close(uclar[1]);
    if (x.kod != 0) std::swap(x, y);
    return {x, y};
  }
  std::string sor(const std::string& db, const std::string& sql) {
    return calistir({"sql", "--db", db, sql}).cikti;
  }

  support::TempFolder klasor;

 private:
  fs::path dosya(int ad, const char* ek) const { return klasor.path / (std::to_string(ad) + "." + ek); }
};

TEST_F(Yaris, OneOfTwoMakesTheCompany) {
  const auto komut = [](const std::string& ad, const char* unvan) {
    return std::vector<std::string>{"firma-olustur", "--ad", ad, "--kod", "1", "--unvan", unvan};
  };
  for (const char* ad : {"BIR", "İKİ", "uc"}) {
    SCOPED_TRACE(ad);
    const auto [kazanan, kaybeden] = ikisi(komut(ad, "Birinci"), komut(ad, "İkinci"));
    EXPECT_EQ(kazanan.kod, 0) << kazanan.hata;
    EXPECT_EQ(kaybeden.kod, 1);
    EXPECT_NE(kaybeden.hata, "");
    EXPECT_EQ(sor("Defination_DB",
                  "SELECT COUNT(*) AS n FROM sysfrmlng WHERE sysfrm_dbnm='" + std::string(ad) + "'"),
              "n\n1\n");
    EXPECT_EQ(calistir({"denetle", "--ad", ad}).kod, 0);
  }
  EXPECT_EQ(sor("Defination_DB", "SELECT COUNT(*) AS n FROM Kullanici"), "n\n3\n");
  EXPECT_EQ(sor("Defination_DB", "SELECT COUNT(*) AS n FROM sysusfrmlng"), "n\n3\n");
}

TEST_F(Yaris, TheLoserOfTwoFillingsIsNotToldToDeleteTheCompany) {
  ASSERT_EQ(calistir({"firma-olustur", "--ad", "MAGAZA", "--kod", "1", "--unvan", "M"}).kod, 0);
  const std::vector<std::string> doldur = {"ornek-veri", "--ad", "MAGAZA"};
  const auto [kazanan, kaybeden] = ikisi(doldur, doldur);
  EXPECT_EQ(kazanan.kod, 0) << kazanan.hata;
  EXPECT_EQ(kaybeden.kod, 1);
  EXPECT_EQ(kaybeden.hata.find("silip"), std::string::npos) << kaybeden.hata;
  EXPECT_EQ(sor("MAGAZA", "SELECT COUNT(*) AS n FROM STOKKART"), "n\n500\n");
}

}  // namespace
