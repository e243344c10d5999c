// Company settings: saving 5,000 rows of a definition editor against prepared SQLite inserts of the same
// rows, the round trips of a save, the statements of copying parameters. Ratios of one run.

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/bare.h"
#include "catalog/sunucu_hazirla.h"
#include "company/firma_karti.h"
#include "company/upgrade/guncelle.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "session/yerel_ortam.h"
#include "settings/parametre.h"
#include "settings/tanim.h"
#include "support/izleyen_surucu.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* firma = "OLCUM";
constexpr int rowCount = 5000, rounds = 7, companies = 50;

struct Silent : session::Boxes, session::Progress {
  void message(const std::string&, session::Icon, std::string_view) override {}
  bool ask(const std::string&, session::Icon, std::string_view) override { return true; }
  void text(const std::string&) override {}
  void step(std::int64_t, std::int64_t) override {}
  void whole(std::int64_t, std::int64_t) override {}
  void pump() override {}
};

struct Surroundings {
  explicit Surroundings(const fs::path& folder)
      : platform(folder), driver(db::makeConnectionFactory(folder)) {
    engine::Server::create(folder / "veri", "sa", "gizli");
    oturum.surucu = &driver;
    oturum.kutular = &silent;
    oturum.ilerleme = &silent;
    oturum.saat = &clock;
    oturum.platform = &platform;
    oturum.Server_Adi = "(yerel)";
    oturum.SQL_Login = "sa";
    oturum.SQL_Sifre = "gizli";
    oturum.Tanim_DB_Versiyon = oturum.Firma_DB_Versiyon = "2012.002";
    oturum.Kullanici_ID = 1;
    catalog::Sunucu_Hazirla(oturum, {"Korvena", "abc", ""});
    oturum.Veri_Klasoru = oturum.Baglanti->query("SELECT sysdtyl FROM sysDTYL")->value(0, 0).trimmed();
    oturum.Yeni_Kayit = true;
    company::FirmaKarti kart;
    kart.Firma_Adi = kart.Firma_Unvani = firma;
    kart.Firma_Kodu = "00001";
    kart.Bas_Tar = "01/01/2012";
    kart.Bit_Tar = "31/12/2012";
    company::Kaydet(oturum, kart);
    company::upgrade::Veritabani_Guncelle(oturum, firma);
    oturum.Secili_Firma = firma;
    if (const std::string fault = settings::Tanim_Firma_Bagla(oturum); !fault.empty())
      throw std::runtime_error(fault);
  }
  Silent silent;
  session::YerelSaat clock;
  session::YerelPlatform platform;
  support::IzleyenSurucu driver;
  session::Oturum oturum;
};

std::string codeOf(int i) {
  return "K" + std::to_string(i);
}

settings::IzgaraSatirlari rowsToSave() {
  settings::IzgaraSatirlari rows;
  for (int i = 0; i < rowCount; ++i) rows.push_back({{"", codeOf(i), codeOf(i)}});
  return rows;
}

double saveSeconds(Surroundings& s, std::size_t& roundTrips) {
  const settings::IzgaraSatirlari rows = rowsToSave();
  s.oturum.Baglanti->execute("DELETE FROM RENKTANIM");
  s.driver.izleme.sifirla();
  std::string fault;
  const double time =
      bench::seconds([&] { fault = settings::Tanim_Kaydet(s.oturum, *settings::tanimBul("renk"), rows); });
  if (!fault.empty()) throw std::runtime_error(fault);
  roundTrips = s.driver.izleme.deyimler.size();
  return time;
}

double bareSeconds(bench::Sqlite& file) {
  file.run("DELETE FROM RENKTANIM");
  sqlite3_stmt* insert = file.prepare("INSERT INTO RENKTANIM(Renk_Kod,Renk_Adi,Kullanici_ID) VALUES(?,?,1)");
  const double time = bench::seconds([&] {
    file.run("BEGIN");
    for (int i = 0; i < rowCount; ++i) {
      const std::string code = codeOf(i);
      for (const int at : {1, 2})
        sqlite3_bind_text(insert, at, code.c_str(), static_cast<int>(code.size()), SQLITE_TRANSIENT);
      file.once(insert);
    }
    file.run("COMMIT");
  });
  sqlite3_finalize(insert);
  return time;
}

void saving(Surroundings& s, const fs::path& folder) {
  bench::Sqlite file(folder / "bare.db");
  file.run(
      "CREATE TABLE RENKTANIM(Renk_ID INTEGER PRIMARY KEY AUTOINCREMENT, Renk_Kod TEXT COLLATE TRCI, "
      "Renk_Adi TEXT "
      "COLLATE TRCI, Renk INTEGER, Kullanici_ID INTEGER)");
  std::vector<double> ratios;
  std::size_t roundTrips = 0;
  for (int i = 0; i < rounds; ++i) {
    const double ours = saveSeconds(s, roundTrips);
    const double bare = bareSeconds(file);
    ratios.push_back(ours / bare);
    std::printf("  %.1f ms against %.1f ms\n", ours * 1e3, bare * 1e3);
  }
  std::printf("saving %d rows: %.2f times the bare inserts, %zu round trips (%.0f rows each)\n", rowCount,
              bench::median(ratios), roundTrips,
              static_cast<double>(rowCount) / static_cast<double>(roundTrips));
}

void opening(Surroundings& s) {
  s.driver.izleme.sifirla();
  const double time = bench::seconds([&] { settings::Tanim_Yukle(s.oturum, *settings::tanimBul("renk")); });
  std::printf("loading %d rows: %zu statement(s), %.1f ms\n", rowCount, s.driver.izleme.deyimler.size(),
              time * 1e3);
}

void copying(Surroundings& s) {
  session::Katalog_Bagla(s.oturum, "Defination_DB");
  std::vector<std::string> names{firma};
  for (int i = 0; i < companies; ++i) {
    names.push_back("F" + std::to_string(i));
    s.oturum.Baglanti->execute("INSERT INTO sysfrmlng(sysfrm_nm,sysfrm_dbnm,sysfrm_kd) VALUES('X','" +
                               names.back() + "','" + std::to_string(i + 2) + "')");
  }
  s.driver.izleme.sifirla();
  const double time = bench::seconds([&] {
    auto rows = settings::Firma_Kayitlari(s.oturum, names);
    for (std::size_t i = 1; i < rows.size(); ++i)
      settings::Parametre_Kaydet(s.oturum, rows[i], settings::kopyalanan(rows[0], rows[i], {}));
  });
  std::printf("copying parameters to %d companies: %.2f statements a company, %.0f ms\n", companies,
              static_cast<double>(s.driver.izleme.deyimler.size()) / companies, time * 1e3);
}

}  // namespace

int main() {
  const bench::Folder temporary;
  try {
    Surroundings s(temporary.path);
    saving(s, temporary.path);
    opening(s);
    copying(s);
    s.oturum.Baglanti.reset();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
