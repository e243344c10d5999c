// What the benchmarks share: a bare SQLite file to measure against, a clock, and medians.
#pragma once

#include <sqlite3.h>
#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/status.h"
#include "engine/server.h"

namespace bench {

template <class Work>
double seconds(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

// Of all threads: what is left of a time when others keep the machine busy.
inline double processorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

inline double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

// A folder that goes with its object.
class Folder {
 public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "zembera_bench_XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    path = name;
  }
  ~Folder() {
    std::error_code error;
    std::filesystem::remove_all(path, error);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::filesystem::path path;
};

// With the pragmas that the embedded server sets. Its collation compares bytes here: the cheapest there is.
class Sqlite {
 public:
  explicit Sqlite(const std::filesystem::path& file) {
    if (sqlite3_open(file.c_str(), &handle_) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(handle_));
    const auto byBytes = [](void*, int n, const void* a, int m, const void* b) {
      const int order = std::memcmp(a, b, static_cast<std::size_t>(n < m ? n : m));
      return order != 0 ? order : n - m;
    };
    sqlite3_create_collation(handle_, "TRCI", SQLITE_UTF8, nullptr, byBytes);
    sqlite3_busy_timeout(handle_, 10000);
    run("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA secure_delete=OFF; "
        "PRAGMA cache_size=-8000; PRAGMA wal_autocheckpoint=2000; PRAGMA temp_store=FILE");
  }
  ~Sqlite() { sqlite3_close_v2(handle_); }
  Sqlite(const Sqlite&) = delete;
  Sqlite& operator=(const Sqlite&) = delete;

  void run(const std::string& sql) {
    if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail(sql);
  }
  sqlite3_stmt* prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) fail(sql);
    return statement;
  }
  // First column of the rows.
  std::vector<std::string> texts(const std::string& sql) {
    std::vector<std::string> out;
    sqlite3_stmt* statement = prepare(sql);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
      out.emplace_back(text ? text : "");
    }
    sqlite3_finalize(statement);
    return out;
  }
  void once(sqlite3_stmt* statement) {
    if (sqlite3_step(statement) != SQLITE_DONE) fail("a prepared statement");
    sqlite3_reset(statement);
  }

 private:
  [[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(std::string(sqlite3_errmsg(handle_)) + ": " + what.substr(0, 200));
  }
  sqlite3* handle_ = nullptr;
};

// A database of the server's folder as it is now, for bare SQLite, which does not find the log of the
// original.
inline std::filesystem::path settledCopy(const std::filesystem::path& folder, const std::string& database) {
  const std::filesystem::path data = folder.parent_path() / (database + ".kopya"),
                              log = data.string() + "_log";
  std::filesystem::remove(data);
  std::filesystem::remove(log);
  engine::Server::open(folder)->copyLive(database, data, log, {});
  return data;
}

// The user's tables and their indexes as CREATE statements, each table before its indexes.
inline std::vector<std::string> definitionsOf(Sqlite& file, const std::string& table) {
  return file.texts("SELECT sql FROM sqlite_master WHERE tbl_name='" + table +
                    "' COLLATE NOCASE AND sql IS NOT NULL ORDER BY type='index', rowid");
}
inline std::vector<std::string> tablesOf(Sqlite& file) {
  return file.texts(
      "SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'zb\\_%' ESCAPE '\\' "
      "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid");
}

}  // namespace bench
