// The schema upgrade on the embedded server; prints times, ratios and counts of one run. With an argument
// only the part named:
//
//   upgrade  a base company, against its own DROP VIEW, ALTER and CREATE statements sent bare to a copy
//   rows     ALTER COLUMN and ADD on a table of a million rows: passes over the rows as SQLite counts the
//   rows
//            it steps over, and the peak of memory, against one UPDATE of every row
#include <cstdio>
#include <fstream>
#include <functional>

#include "bench/bare.h"
#include "catalog/sunucu_hazirla.h"
#include "company/firma_karti.h"
#include "company/schema/schema.h"
#include "company/upgrade/guncelle.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "support/fakes.h"
#include "support/izleyen_surucu.h"

namespace {

namespace fs = std::filesystem;
using bench::seconds;

constexpr int rounds = 5;

class Surroundings {
 public:
  explicit Surroundings(const fs::path& folder) : driver(db::makeConnectionFactory(folder)) {
    s.oturum.surucu = &driver;
    s.oturum.Server_Adi = "(yerel)";
    s.oturum.Tanim_DB_Versiyon = s.oturum.Firma_DB_Versiyon = "2012.002";
    s.platform.folder = folder;
  }
  ~Surroundings() {
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
  }
  db::Connection& connect(const std::string& database) {
    session::Katalog_Bagla(s.oturum, database);
    return *s.oturum.Baglanti;
  }

  support::FakeSurroundings s;
  support::IzleyenSurucu driver;
};

// A server with one company as the card makes it.
void makeCompany(const fs::path& folder) {
  engine::Server::create(folder / "veri", "sa", "gizli");
  Surroundings made(folder);
  catalog::Sunucu_Hazirla(made.s.oturum, {"Olcum", "olcum", ""});
  made.s.oturum.Veri_Klasoru = (folder / "veri").string();
  made.s.oturum.Yeni_Kayit = true;
  company::FirmaKarti card;
  card.Firma_Adi = card.Firma_Unvani = "FIRMA";
  card.Firma_Kodu = "00001";
  card.Bas_Tar = "01/01/2012";
  card.Bit_Tar = "31/12/2012";
  if (!company::Kaydet(made.s.oturum, card)) throw std::runtime_error(made.s.oturum.Son_Hata);
}

struct Run {
  double time = 0, processor = 0;
};

Run timed(const std::function<void()>& work) {
  const double before = bench::processorSeconds();
  const double time = seconds(work);
  return {time, bench::processorSeconds() - before};
}

// Upgrades a copy of `source` and leaves there the statements that define something.
Run upgradeCopy(const fs::path& source, std::vector<std::string>& definitions, std::size_t (&sent)[2]) {
  bench::Folder folder;
  fs::copy(source, folder.path, fs::copy_options::recursive);
  Surroundings there(folder.path);
  const auto upgrade = [&] {
    if (!company::upgrade::Veritabani_Guncelle(there.s.oturum, "FIRMA").tamamlandi)
      throw std::runtime_error("the upgrade broke off");
  };
  const Run run = timed(upgrade);
  sent[0] = there.driver.izleme.deyimler.size();
  definitions.clear();
  for (const std::string& statement : there.driver.izleme.deyimler)
    if (statement.starts_with("ALTER") || statement.starts_with("CREATE") || statement.starts_with("DROP"))
      definitions.push_back(statement);
  there.driver.izleme.sifirla();
  upgrade();
  sent[1] = there.driver.izleme.deyimler.size();
  return run;
}

Run bareCopy(const fs::path& source, const std::vector<std::string>& definitions) {
  bench::Folder folder;
  fs::copy(source, folder.path, fs::copy_options::recursive);
  Surroundings there(folder.path);
  return timed([&] {
    db::Connection& connection = there.connect("FIRMA");
    for (const std::string& statement : definitions) {
      try {
        connection.execute(statement);
      } catch (const db::SqlError&) {
        // The one column that every run asks for again is refused here as it is there.
      }
    }
  });
}

std::size_t columnsAsked() {
  std::size_t count = 0;
  for (const auto& table : company::schema::tables()) count += table.columns.size();
  return count;
}

void measureUpgrade() {
  bench::Folder folder;
  makeCompany(folder.path);
  std::vector<std::string> definitions;
  std::size_t sent[2] = {};
  std::vector<double> ours, bare, oursProcessor, bareProcessor;
  for (int round = 0; round < rounds; ++round) {
    const Run upgrade = upgradeCopy(folder.path, definitions, sent);
    const Run sentBare = bareCopy(folder.path, definitions);
    ours.push_back(upgrade.time);
    oursProcessor.push_back(upgrade.processor);
    bare.push_back(sentBare.time);
    bareProcessor.push_back(sentBare.processor);
  }
  std::printf("upgrade of a base company  %.3f s (processor %.3f s), %zu statements\n", bench::median(ours),
              bench::median(oursProcessor), sent[0]);
  std::printf("its %zu definitions bare   %.3f s (processor %.3f s)\n", definitions.size(),
              bench::median(bare), bench::median(bareProcessor));
  std::printf("ratio                      %.2f (processor %.2f)\n", bench::median(ours) / bench::median(bare),
              bench::median(oursProcessor) / bench::median(bareProcessor));
  std::printf(
      "upgrade of a current one   %zu statements; a catalog query for each column would be %zu more\n",
      sent[1], columnsAsked());
}

// ---- a million rows ----

constexpr std::int64_t manyRows = 1 << 20;

std::int64_t steppedOver = 0;

int countSteps(unsigned, void*, void* statement, void*) {
  steppedOver +=
      sqlite3_stmt_status(static_cast<sqlite3_stmt*>(statement), SQLITE_STMTSTATUS_FULLSCAN_STEP, 1);
  return 0;
}

int watchHandle(sqlite3* handle, char**, const void*) {
  return sqlite3_trace_v2(handle, SQLITE_TRACE_PROFILE, countSteps, nullptr);
}

double peakMegabytes() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) / 1024;
  return 0;
}

void forgetPeak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

void fillTable(db::Connection& connection) {
  connection.execute(
      "CREATE TABLE HAREKET (ID INT NOT NULL IDENTITY, Kod CHAR(15), Ad CHAR(50), Katsayi REAL, Tutar FLOAT, "
      "Adet INT, Tarih DATETIME, Durum BIT)");
  connection.execute(
      "INSERT INTO HAREKET (Kod,Ad,Katsayi,Tutar,Adet,Tarih,Durum) VALUES "
      "('ST0001','Elma',1.5,12.25,7,'20120105',1)");
  for (std::int64_t rows = 1; rows < manyRows; rows *= 2)
    connection.execute(
        "INSERT INTO HAREKET (Kod,Ad,Katsayi,Tutar,Adet,Tarih,Durum) SELECT "
        "Kod,Ad,Katsayi,Tutar,Adet+1,Tarih,Durum FROM HAREKET");
}

void measureRows() {
  sqlite3_auto_extension(reinterpret_cast<void (*)()>(reinterpret_cast<void*>(watchHandle)));
  bench::Folder folder;
  engine::Server::create(folder.path / "veri", "sa", "gizli");
  Surroundings there(folder.path);
  there.s.oturum.SQL_Login = "sa";
  there.connect("master").execute("CREATE DATABASE OLCUM");
  db::Connection& connection = there.connect("OLCUM");
  fillTable(connection);
  const char* const statements[] = {
      "UPDATE HAREKET SET Tutar=2",
      "ALTER TABLE HAREKET ALTER COLUMN Kod CHAR(20)",
      "ALTER TABLE HAREKET ALTER COLUMN Ad CHAR(40)",
      "ALTER TABLE HAREKET ALTER COLUMN Katsayi FLOAT",
      "ALTER TABLE HAREKET ALTER COLUMN Adet CHAR(20)",
      "ALTER TABLE HAREKET ALTER COLUMN Durum BIT NOT NULL",
      "ALTER TABLE HAREKET ADD Kilit BIT",
      "ALTER TABLE HAREKET ADD Isyeri_ID INT NOT NULL DEFAULT 1",
      "ALTER TABLE HAREKET ADD A INT, B CHAR(10), C FLOAT NOT NULL DEFAULT 0",
      "ALTER TABLE HAREKET ADD E INT, F INT\nUPDATE HAREKET SET E=0,F=0",
      "ALTER TABLE HAREKET DROP COLUMN A",
  };
  std::printf("\n%lld rows, file %.0f MB, first line for comparison\n", static_cast<long long>(manyRows),
              static_cast<double>(fs::file_size(folder.path / "veri" / "OLCUM.mdf")) / 1e6);
  std::printf("%8s %7s %9s  statement\n", "time", "passes", "memory");
  for (const char* statement : statements) {
    forgetPeak();
    const double before = peakMegabytes();
    steppedOver = 0;
    const double time = seconds([&] { connection.execute(statement); });
    std::printf("%6.2f s %7.2f %+6.1f MB  %s\n", time,
                static_cast<double>(steppedOver) / static_cast<double>(manyRows), peakMegabytes() - before,
                statement);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string part = argc > 1 ? argv[1] : "";
  if (part.empty() || part == "upgrade") measureUpgrade();
  if (part.empty() || part == "rows") measureRows();
}
