// Example data: rows per second through the embedded server, triggers and all, against prepared SQLite
// inserts of the same rows into the same tables without triggers. The argument is the scale (default 5).
// Memory is the business of a process of its own: /usr/bin/time -v zembera-cli ornek-veri.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/bare.h"
#include "catalog/sunucu_hazirla.h"
#include "company/firma_karti.h"
#include "company/ornek_veri.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/yerel_ortam.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* firma = "OLCUM";
constexpr int rowsOfTransaction = 20'000;

struct Silent : session::Boxes, session::Progress {
  void message(const std::string& text, session::Icon, std::string_view) override {
    std::fprintf(stderr, "%s\n", text.c_str());
  }
  bool ask(const std::string&, session::Icon, std::string_view) override { return true; }
  // The processor's time of each step, at the beginning of the next.
  void text(const std::string& text) override {
    const double now = bench::processorSeconds();
    if (!step_.empty()) std::printf("  %6.2f s  %s\n", now - since_, step_.c_str());
    step_ = text;
    since_ = now;
  }
  void step(std::int64_t, std::int64_t) override {}
  void whole(std::int64_t, std::int64_t) override {}
  void pump() override {}

 private:
  std::string step_;
  double since_ = 0;
};

// Of one piece of work, by the clock and by the processor.
struct Time {
  double wall = 0, processor = 0;
};

Time timeOf(const std::function<void()>& work) {
  const double before = bench::processorSeconds();
  Time time;
  time.wall = bench::seconds(work);
  time.processor = bench::processorSeconds() - before;
  return time;
}

void createCompany(session::Oturum& oturum) {
  catalog::Sunucu_Hazirla(oturum, {"Korvena", "abc", ""});
  oturum.Veri_Klasoru = oturum.Baglanti->query("SELECT sysdtyl FROM sysDTYL")->value(0, 0).trimmed();
  oturum.Yeni_Kayit = true;
  company::FirmaKarti kart;
  kart.Firma_Adi = kart.Firma_Unvani = firma;
  kart.Firma_Kodu = "00001";
  kart.Bas_Tar = "01/01/2012";
  kart.Bit_Tar = "31/12/2012";
  company::Kaydet(oturum, kart);
}

// Rows that the generator wrote and the time that it took.
std::pair<std::int64_t, Time> fill(const fs::path& folder, int scale) {
  engine::Server::create(folder / "veri", "sa", "gizli");
  const auto factory = db::makeConnectionFactory(folder);
  Silent silent;
  session::YerelSaat clock;
  session::YerelPlatform platform(folder);
  session::Oturum oturum;
  oturum.surucu = factory.get();
  oturum.kutular = &silent;
  oturum.ilerleme = &silent;
  oturum.saat = &clock;
  oturum.platform = &platform;
  oturum.Server_Adi = "(yerel)";
  oturum.SQL_Login = "sa";
  oturum.SQL_Sifre = "gizli";
  oturum.Tanim_DB_Versiyon = oturum.Firma_DB_Versiyon = "2012.002";
  createCompany(oturum);
  company::OrnekVeriSonucu sonuc;
  const long before = bench::statusKilobytes("VmRSS");
  const Time time = timeOf([&] { sonuc = company::Ornek_Veri_Yaz(oturum, firma, {scale, 1}); });
  if (!sonuc.hata.empty()) throw std::runtime_error(sonuc.hata);
  std::printf("memory before %ld kB, after %ld kB\n", before, bench::statusKilobytes("VmRSS"));
  oturum.Kayitlar.close();
  oturum.Baglanti.reset();
  return {sonuc.satir, time};
}

std::int64_t copyTable(bench::Sqlite& from, bench::Sqlite* to, const std::string& table) {
  sqlite3_stmt* source = from.prepare("SELECT * FROM \"" + table + "\"");
  const int columns = sqlite3_column_count(source);
  std::string marks = "?";
  for (int i = 1; i < columns; ++i) marks += ",?";
  sqlite3_stmt* target =
      to == nullptr ? nullptr : to->prepare("INSERT INTO \"" + table + "\" VALUES (" + marks + ")");
  std::int64_t count = 0;
  while (sqlite3_step(source) == SQLITE_ROW) {
    if (target != nullptr && count % rowsOfTransaction == 0) to->run(count == 0 ? "BEGIN" : "COMMIT; BEGIN");
    ++count;
    for (int i = 0; i < columns; ++i) {
      sqlite3_value* value = sqlite3_column_value(source, i);
      if (target != nullptr) sqlite3_bind_value(target, i + 1, value);
    }
    if (target == nullptr) continue;
    if (sqlite3_step(target) != SQLITE_DONE) throw std::runtime_error("the bare INSERT failed");
    sqlite3_reset(target);
  }
  if (target != nullptr && count > 0) to->run("COMMIT");
  sqlite3_finalize(source);
  sqlite3_finalize(target);
  return count;
}

// The same rows once more, bare, with the server's pragmas; what reading them costs is taken off.
std::pair<std::int64_t, Time> copyBare(const fs::path& folder) {
  bench::Sqlite from(folder / "veri" / (std::string(firma) + ".mdf"));
  bench::Sqlite to(folder / "bare.db");
  std::vector<std::string> tables;
  for (const std::string& table : bench::tablesOf(from)) {
    if (table == "ODEMEHAREKET" || table == "MUHBAKIYE") continue;  // their rows come from the triggers
    tables.push_back(table);
    for (const std::string& definition : bench::definitionsOf(from, table)) to.run(definition);
  }
  std::int64_t count = 0;
  const Time reading = timeOf([&] {
    for (const auto& table : tables) copyTable(from, nullptr, table);
  });
  const Time copying = timeOf([&] {
    for (const auto& table : tables) count += copyTable(from, &to, table);
  });
  return {count, {copying.wall - reading.wall, copying.processor - reading.processor}};
}

}  // namespace

int main(int argc, char** argv) {
  const int scale = argc > 1 ? std::atoi(argv[1]) : 5;
  const bench::Folder temporary;
  const fs::path& folder = temporary.path;
  int code = 0;
  try {
    const auto [rows, time] = fill(folder, scale);
    const auto [bareRows, bareTime] = copyBare(folder);
    const double perRow = time.processor / static_cast<double>(rows),
                 barePerRow = bareTime.processor / static_cast<double>(bareRows);
    std::printf("ornek-veri --olcek %d: %lld rows, %.0f rows/s   sqlite %lld rows, %.0f rows/s\n", scale,
                static_cast<long long>(rows), static_cast<double>(rows) / time.wall,
                static_cast<long long>(bareRows), static_cast<double>(bareRows) / bareTime.wall);
    std::printf("ratio of rates %.2f by the clock, %.2f by the processor (%.1f and %.1f us per row)\n",
                bareTime.wall / static_cast<double>(bareRows) * static_cast<double>(rows) / time.wall,
                barePerRow / perRow, perRow * 1e6, barePerRow * 1e6);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    code = 1;
  }
  return code;
}
