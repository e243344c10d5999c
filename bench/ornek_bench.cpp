// Example data: rows per second through the embedded server, triggers and all, against prepared SQLite
// inserts of the same rows into the same tables without triggers. The argument is the scale (default 5).
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

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
  void text(const std::string&) override {}
  void step(std::int64_t, std::int64_t) override {}
  void whole(std::int64_t, std::int64_t) override {}
  void pump() override {}
};

double seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
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
std::pair<std::int64_t, double> fill(const fs::path& folder, int scale) {
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
  const double time = seconds([&] { sonuc = company::Ornek_Veri_Yaz(oturum, firma, {scale, 1}); });
  if (!sonuc.hata.empty()) throw std::runtime_error(sonuc.hata);
  oturum.Kayitlar.close();
  oturum.Baglanti.reset();
  return {sonuc.satir, time};
}

class Sqlite {
 public:
  explicit Sqlite(const fs::path& file) {
    if (sqlite3_open(file.c_str(), &handle_) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(handle_));
    const auto byBytes = [](void*, int n, const void* a, int m, const void* b) {
      const int order = std::memcmp(a, b, static_cast<std::size_t>(n < m ? n : m));
      return order != 0 ? order : n - m;
    };
    sqlite3_create_collation(handle_, "TRCI", SQLITE_UTF8, nullptr, byBytes);
    run("PRAGMA journal_mode=WAL");
    run("PRAGMA synchronous=NORMAL");
  }
  ~Sqlite() { sqlite3_close(handle_); }
  void run(const std::string& sql) {
    if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(handle_));
  }
  sqlite3_stmt* prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(handle_) + (": " + sql));
    return statement;
  }
  std::vector<std::vector<std::string>> rows(const std::string& sql) {
    std::vector<std::vector<std::string>> out;
    sqlite3_stmt* statement = prepare(sql);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      std::vector<std::string>& row = out.emplace_back();
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
        row.emplace_back(text == nullptr ? "" : text);
      }
    }
    sqlite3_finalize(statement);
    return out;
  }

 private:
  sqlite3* handle_ = nullptr;
};

std::int64_t copyTable(Sqlite& from, Sqlite* to, const std::string& table) {
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

// The same rows once more, bare; what reading them costs is taken off.
std::pair<std::int64_t, double> copyBare(const fs::path& folder) {
  Sqlite from(folder / "veri" / (std::string(firma) + ".mdf"));
  Sqlite to(folder / "bare.db");
  // Rows of these two come from the triggers.
  const std::string which =
      " FROM sqlite_master WHERE tbl_name NOT LIKE 'zb_%' AND tbl_name NOT LIKE 'sqlite_%' "
      "AND tbl_name NOT IN ('ODEMEHAREKET','MUHBAKIYE') AND sql IS NOT NULL AND type IN ";
  std::vector<std::string> tables;
  for (const auto& row : from.rows("SELECT name, sql" + which + "('table')")) {
    tables.push_back(row[0]);
    to.run(row[1]);
  }
  for (const auto& row : from.rows("SELECT sql" + which + "('index')")) to.run(row[0]);
  std::int64_t count = 0;
  const double reading = seconds([&] {
    for (const auto& table : tables) copyTable(from, nullptr, table);
  });
  const double copying = seconds([&] {
    for (const auto& table : tables) count += copyTable(from, &to, table);
  });
  return {count, copying - reading};
}

}  // namespace

int main(int argc, char** argv) {
  const int scale = argc > 1 ? std::atoi(argv[1]) : 5;
  std::string name = (fs::temp_directory_path() / "zembera-ornek-XXXXXX").string();
  const fs::path folder = ::mkdtemp(name.data());
  int code = 0;
  try {
    const auto [rows, time] = fill(folder, scale);
    const auto [bareRows, bareTime] = copyBare(folder);
    const double ours = static_cast<double>(rows) / time, bare = static_cast<double>(bareRows) / bareTime;
    std::printf(
        "ornek-veri --olcek %d: %lld rows, %.0f rows/s   sqlite %lld rows, %.0f rows/s   ratio of rates "
        "%.2f\n",
        scale, static_cast<long long>(rows), ours, static_cast<long long>(bareRows), bare, ours / bare);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    code = 1;
  }
  fs::remove_all(folder);
  return code;
}
