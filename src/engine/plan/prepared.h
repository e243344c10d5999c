// One SQLite statement with the sources of its parameters.
#pragma once

#include <sqlite3.h>

#include "engine/plan/bound.h"
#include "engine/value.h"

namespace engine {

// One statement, ready to be prepared. `parameters[i]` belongs to ?(i+1).
struct BoundStatement {
  std::string sql;
  std::vector<ParameterSource> parameters;
};

class Prepared {
 public:
  Prepared() = default;
  // Throws the Error of SQLite's refusal.
  Prepared(sqlite3* connection, BoundStatement bound);
  ~Prepared();
  Prepared(Prepared&& other) noexcept;
  Prepared& operator=(Prepared&& other) noexcept;
  Prepared(const Prepared&) = delete;
  Prepared& operator=(const Prepared&) = delete;

  explicit operator bool() const { return statement_ != nullptr; }
  sqlite3_stmt* get() const { return statement_; }
  const std::vector<ParameterSource>& parameters() const { return parameters_; }
  void bindDatum(int index, const Datum& value);
  // `text` must stand until the statement has run.
  void bindShared(int index, const std::string& text);
  // Steps; true while a row stands. Throws through `lite::fail` except for violated constraints, which
  // come back as the SQLite code of `constraint`.
  bool step(int* constraint = nullptr);
  // Values of stored literals stay bound for good.
  bool fixedBound = false;

 private:
  sqlite3_stmt* statement_ = nullptr;
  std::vector<ParameterSource> parameters_;
};

// Resets the statement at the end of its use, whatever happened.
class PreparedUse {
 public:
  explicit PreparedUse(Prepared& prepared) : prepared_(prepared) {}
  ~PreparedUse() { sqlite3_reset(prepared_.get()); }
  PreparedUse(const PreparedUse&) = delete;
  PreparedUse& operator=(const PreparedUse&) = delete;

 private:
  Prepared& prepared_;
};

Datum columnDatum(sqlite3_stmt* statement, int column);

}  // namespace engine
