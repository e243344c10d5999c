// Thin RAII over SQLite's C interface, for the storage side of the engine. Failures are engine::Error.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/value.h"

namespace engine::lite {

// Throws the Error that fits an SQLite failure: what a SQL function raised (encodeError), 1222 lock time
// out, 1205 stale snapshot, 1105 disk full, 823 / 824 file damage, 3906 read-only, 3617 cancelled, 701
// memory; anything else is 8630 with SQLite's text. `file` names the damaged file when known.
[[noreturn]] void fail(sqlite3* db, int code, const std::string& file = {});

// The same errors for those who find out by other means.
Error deadlockVictim();
Error lockTimeOut();
Error cancelled();
Error diskFull();

class Stmt {
 public:
  Stmt(sqlite3* db, std::string_view sql, bool persistent = false);
  ~Stmt() { sqlite3_finalize(stmt_); }
  Stmt(const Stmt&) = delete;
  Stmt& operator=(const Stmt&) = delete;

  Stmt& bind(std::int64_t value);
  Stmt& bind(int value) { return bind(static_cast<std::int64_t>(value)); }
  Stmt& bind(std::string_view value);
  Stmt& bind(const std::string& value) { return bind(std::string_view(value)); }
  Stmt& bind(const char* value) { return bind(std::string_view(value)); }
  Stmt& bindNull();
  Stmt& bindDatum(const Datum& value);

  bool step();  // true: a row stands; throws on failure
  void run() {  // steps to the end and makes ready for the next round of bind()
    while (step()) {
    }
    reset();
  }
  void reset();

  std::int64_t integer(int column) const { return sqlite3_column_int64(stmt_, column); }
  std::string text(int column) const;
  bool isNull(int column) const { return sqlite3_column_type(stmt_, column) == SQLITE_NULL; }

 private:
  sqlite3* db_;
  sqlite3_stmt* stmt_ = nullptr;
  int next_ = 1;
};

void exec(sqlite3* db, const std::string& sql);
// "name" with its quotes doubled.
std::string quoted(std::string_view name);
// 'text' with its apostrophes doubled.
std::string literal(std::string_view text);

}  // namespace engine::lite
