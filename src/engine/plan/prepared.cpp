#include "engine/plan/prepared.h"

#include <array>
#include <string_view>
#include <utility>

#include "engine/catalog.h"
#include "engine/function/sqlite_values.h"
#include "engine/plan/nesting.h"

namespace engine {
namespace {

// Brackets that one text may keep open, tried in turn: how much SQLite's parser takes depends on what
// stands in them.
constexpr std::array depths = {20, 12, 8, 5, 3};

int prepare(sqlite3* connection, const std::string& sql, sqlite3_stmt** statement) {
  return sqlite3_prepare_v3(connection, sql.c_str(), static_cast<int>(sql.size()) + 1,
                            SQLITE_PREPARE_PERSISTENT, statement, nullptr);
}

bool isTooDeep(sqlite3* connection, int code) {
  return code == SQLITE_ERROR &&
         std::string_view(sqlite3_errmsg(connection)).find("parser stack overflow") != std::string_view::npos;
}

}  // namespace

Prepared::Prepared(sqlite3* connection, BoundStatement bound) : parameters_(std::move(bound.parameters)) {
  int code = prepare(connection, bound.sql, &statement_);
  for (const int depth : depths) {
    if (!isTooDeep(connection, code)) break;
    code = prepare(connection, withShallowNesting(bound.sql, depth), &statement_);
  }
  if (code != SQLITE_OK) lite::fail(connection, code);
}

Prepared::~Prepared() {
  sqlite3_finalize(statement_);
}

Prepared::Prepared(Prepared&& other) noexcept
    : fixedBound(other.fixedBound),
      statement_(std::exchange(other.statement_, nullptr)),
      parameters_(std::move(other.parameters_)) {}

Prepared& Prepared::operator=(Prepared&& other) noexcept {
  std::swap(statement_, other.statement_);
  std::swap(parameters_, other.parameters_);
  std::swap(fixedBound, other.fixedBound);
  return *this;
}

void Prepared::bindDatum(int index, const Datum& value) {
  if (value.isNull())
    sqlite3_bind_null(statement_, index);
  else if (value.isInteger())
    sqlite3_bind_int64(statement_, index, value.integer());
  else if (value.isReal())
    sqlite3_bind_double(statement_, index, value.real());
  else if (value.isText())
    sqlite3_bind_text(statement_, index, value.text().data(), static_cast<int>(value.text().size()),
                      SQLITE_TRANSIENT);
  else
    sqlite3_bind_blob(statement_, index, value.bytes().data(), static_cast<int>(value.bytes().size()),
                      SQLITE_TRANSIENT);
}

void Prepared::bindShared(int index, const std::string& text) {
  sqlite3_bind_text(statement_, index, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

bool Prepared::step(int* constraint) {
  const int code = sqlite3_step(statement_);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  sqlite3* connection = sqlite3_db_handle(statement_);
  if (sqlite3_extended_errcode(connection) == SQLITE_CONSTRAINT_COMMITHOOK) throw lite::deadlockVictim();
  if (constraint && (code & 0xff) == SQLITE_CONSTRAINT) {
    *constraint = sqlite3_extended_errcode(connection);
    return false;
  }
  lite::fail(connection, code);
}

Datum columnDatum(sqlite3_stmt* statement, int column) {
  return datumOf(sqlite3_column_value(statement, column));
}

}  // namespace engine
