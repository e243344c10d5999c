// What it costs that a commit is on the disk; prints times and ratios of one run.
// With an argument only the part named:
//
//   commit      one-row INSERTs, each its own transaction, against bare SQLite with the same durability
//   group       8 sessions that commit at once against one, where a flush takes 5 ms
//   checksum    100,000 rows of 20 columns read from a cold file, with checksums and without
//   recovery    opening a database that died with a long log, against reading that log
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <thread>

#include "bench/bare.h"
#include "engine/function/functions.h"
#include "engine/server.h"
#include "engine/store/file_layer.h"

namespace {

namespace fs = std::filesystem;
using bench::seconds;

class Quiet : public engine::ResultSink {
 public:
  void onResultSet(engine::ResultSet&&) override {}
  void onRowCount(std::int64_t) override {}
  void onMessage(int, const std::string&) override {}
};

void run(engine::Session& session, const std::string& batch) {
  Quiet sink;
  session.execute(batch, sink);
}

struct Data {
  bench::Folder folder;
  std::shared_ptr<engine::Server> server = engine::Server::create(folder.path / "veri", "sa", "gizli");
  std::unique_ptr<engine::Session> session = open("master");

  Data() {
    run(*session, "CREATE DATABASE D");
    run(*session, "USE D");
  }
  std::unique_ptr<engine::Session> open(const std::string& database) {
    return std::make_unique<engine::Session>(server, "sa", "gizli", database);
  }
  fs::path file(const char* name) const { return folder.path / "veri" / name; }
};

// ---- a disk whose flush takes its time ----

namespace slow {

constexpr useconds_t flushTime = 5000;
sqlite3_io_methods methods;
const sqlite3_io_methods* real = nullptr;

int sync(sqlite3_file* file, int flags) {
  ::usleep(flushTime);
  return real->xSync(file, flags);
}

int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
  static sqlite3_vfs* base = sqlite3_vfs_find("unix");
  const int code = base->xOpen(base, name, file, flags, outFlags);
  const bool logFile = (flags & SQLITE_OPEN_WAL) != 0;
  if (code != SQLITE_OK || !logFile) return code;
  real = file->pMethods;
  methods = *real;
  methods.xSync = sync;
  file->pMethods = &methods;
  return code;
}

void install() {
  static sqlite3_vfs vfs = *sqlite3_vfs_find("unix");
  vfs.zName = "slow";
  vfs.pNext = nullptr;
  vfs.xOpen = open;
  sqlite3_vfs_register(&vfs, 1);
}

void remove() {
  sqlite3_vfs_register(sqlite3_vfs_find("unix"), 1);
}

}  // namespace slow

void commit() {
  constexpr int rows = 1500, rounds = 5;
  Data data;
  run(*data.session, "CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, A INT, B CHAR(40), C MONEY)");
  bench::Sqlite bare(data.folder.path / "ciplak.db");
  bare.run("PRAGMA synchronous=FULL; CREATE TABLE T(ID INTEGER PRIMARY KEY, A, B, C)");
  sqlite3_stmt* insert = bare.prepare("INSERT INTO T(A,B,C) VALUES(?,?,?)");
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    const double ours = seconds([&] {
      for (int i = 0; i < rows; ++i)
        run(*data.session, "INSERT INTO T (A,B,C) VALUES (" + std::to_string(i) + ",'satır " +
                               std::to_string(i) + "'," + std::to_string(i) + ".25)");
    });
    const double theirs = seconds([&] {
      for (int i = 0; i < rows; ++i) {
        sqlite3_bind_int(insert, 1, i);
        sqlite3_bind_text(insert, 2, ("satır " + std::to_string(i)).c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_int(insert, 3, i * 10000 + 2500);
        bare.once(insert);
      }
    });
    std::printf("  %.0f rows/s against %.0f\n", rows / ours, rows / theirs);
    ratios.push_back(theirs / ours);
  }
  sqlite3_finalize(insert);
  std::printf("commit: %.2f of bare SQLite's rate (at least 0.50)\n", bench::median(ratios));
}

double commitRate(Data& data, int sessions, int rows) {
  std::vector<std::unique_ptr<engine::Session>> open;
  for (int i = 0; i < sessions; ++i) open.push_back(data.open("D"));
  const double time = seconds([&] {
    std::vector<std::thread> threads;
    for (auto& session : open)
      threads.emplace_back([&session, rows] {
        for (int i = 0; i < rows; ++i) {
          try {
            run(*session, "INSERT INTO T (A) VALUES (1)");
          } catch (const engine::Error& error) {
            std::printf("  %d %s\n", error.number(), error.what());
          }
        }
      });
    for (std::thread& thread : threads) thread.join();
  });
  return sessions * rows / time;
}

void group() {
  slow::install();
  {
    Data data;
    run(*data.session, "CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, A INT)");
    constexpr int rows = 200, many = 8;
    std::vector<double> ratios;
    for (int round = 0; round < 3; ++round) {
      const double one = commitRate(data, 1, rows), all = commitRate(data, many, rows);
      std::printf("  one session %.0f rows/s, %d sessions %.0f\n", one, many, all);
      ratios.push_back(all / one);
    }
    std::printf("group: 8 sessions commit %.1f times as fast as one (at least 3)\n", bench::median(ratios));
  }
  slow::remove();
}

void dropFromCache(const fs::path& file) {
  const int fd = ::open(file.c_str(), O_RDONLY);
  ::fsync(fd);
  ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
  ::close(fd);
}

void checksum() {
  constexpr int rows = 100000, columns = 20, rounds = 7;
  Data data;
  std::string definition = "ID INT PRIMARY KEY", values = "1";
  for (int i = 1; i < columns; ++i) {
    definition += ", C" + std::to_string(i) + (i % 3 == 0 ? " CHAR(20)" : " INT");
    values += i % 3 == 0 ? ",'metin " + std::to_string(i) + "'" : "," + std::to_string(i * 1000);
  }
  run(*data.session, "CREATE TABLE T (" + definition + ")");
  run(*data.session, "INSERT INTO T VALUES (" + values + ")");
  std::string list = "ID+(SELECT MAX(ID) FROM T)";
  for (int i = 1; i < columns; ++i) list += ",C" + std::to_string(i);
  for (int have = 1; have < rows; have *= 2)
    run(*data.session, "INSERT INTO T SELECT TOP " + std::to_string(std::min(have, rows - have)) + " " +
                           list + " FROM T ORDER BY ID");
  run(*data.session, "USE master");
  data.session.reset();
  data.server->stop();
  const fs::path summed = data.file("D.mdf"), plain = data.folder.path / "duz.db";
  // The same rows in the same layout, read without the layer.
  fs::copy_file(summed, plain);
  const auto read = [&](const std::string& uri) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(uri.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI | SQLITE_OPEN_CREATE,
                        nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(db));
    engine::FunctionContext functions;
    engine::registerFunctions(db, &functions);
    sqlite3_exec(db, "PRAGMA cache_size=-8000", nullptr, nullptr, nullptr);
    sqlite3_stmt* all = nullptr;
    if (sqlite3_prepare_v2(db, "SELECT * FROM T", -1, &all, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(db));
    std::int64_t sum = 0;
    while (sqlite3_step(all) == SQLITE_ROW)
      for (int i = 0; i < columns; ++i) sum += sqlite3_column_bytes(all, i) + sqlite3_column_int(all, i);
    sqlite3_finalize(all);
    sqlite3_close(db);
    return sum;
  };
  const std::string ours = engine::store::fileUri(summed, data.file("D_log.ldf"), "D");
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    dropFromCache(summed);
    const double with = seconds([&] { read(ours); });
    dropFromCache(plain);
    const double without = seconds([&] { read("file:" + plain.string()); });
    std::printf("  %.3f s with, %.3f s without\n", with, without);
    ratios.push_back(with / without);
  }
  std::printf("checksum: reading takes %.2f times as long (at most 1.15)\n", bench::median(ratios));
}

void recovery() {
  bench::Folder folder;
  const pid_t child = ::fork();
  if (child == 0) {
    auto server = engine::Server::create(folder.path / "veri", "sa", "gizli");
    engine::Session session(server, "sa", "gizli", "master");
    run(session, "CREATE DATABASE D");
    run(session, "USE D CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, B VARCHAR(8000))");
    // In one transaction, which no checkpoint divides.
    run(session, "BEGIN TRAN");
    for (int i = 0; i < 30000; ++i)
      run(session, "INSERT INTO T (B) VALUES (REPLICATE('" + std::to_string(i) + "'," +
                       std::to_string(7000 / std::to_string(i).size()) + "))");
    run(session, "COMMIT");
    ::kill(::getpid(), SIGKILL);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  const fs::path log = folder.path / "veri" / "D_log.ldf";
  const double megabytes = static_cast<double>(fs::file_size(log)) / 1e6;
  const double reading = seconds([&] {
    std::ifstream in(log, std::ios::binary);
    std::vector<char> block(1 << 20);
    while (in.read(block.data(), static_cast<std::streamsize>(block.size()))) {
    }
  });
  auto server = engine::Server::open(folder.path / "veri");
  engine::Session session(server, "sa", "gizli", "master");
  const double opening = seconds([&] { run(session, "SELECT COUNT(*) FROM D..T"); });
  std::printf("recovery: %.0f MB of log in %.2f s, %.2f s of it reading: %.2f s for 100 MB (at most 1)\n",
              megabytes, opening, reading, (opening - reading) / megabytes * 100);
}

}  // namespace

int main(int count, char** values) {
  const std::string only = count > 1 ? values[1] : "";
  const struct {
    const char* name;
    void (*measure)();
  } parts[] = {{"commit", commit}, {"group", group}, {"checksum", checksum}, {"recovery", recovery}};
  for (const auto& part : parts)
    if (only.empty() || only == part.name) part.measure();
}
