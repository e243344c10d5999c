#include "engine/catalog/sqlite_util.h"

#include "engine/catalog/failure.h"

namespace engine::lite {

namespace {

std::string about(const std::string& file) {
  return file.empty() ? std::string() : " in file '" + file + "'";
}

// Statements that go beyond what SQLite takes, by a part of its words for it.
struct Bound {
  const char* words;
  int number;
  const char* text;
};

constexpr const char* tooDeep =
    "Some part of your SQL statement is nested too deeply. Rewrite the query or break it up into smaller "
    "queries.";
constexpr const char* tooLarge =
    "The query processor ran out of internal resources and could not produce a query plan. Simplify the "
    "query.";
constexpr Bound bounds[] = {
    {"parser stack overflow", 191, tooDeep},
    {"Expression tree is too large", 191, tooDeep},
    {"too many terms in", 8623, tooLarge},
    {"too many columns", 8623, tooLarge},
    {"too many SQL variables", 8623, tooLarge},
    {"variable number must be between", 8623, tooLarge},
    {"too many arguments on function", 8623, tooLarge},
    {"too many references to", 8623, tooLarge},
    {"too many FROM clause terms", 106, "Too many table names in the query. The maximum allowable is 64."},
    {"tables in a join", 106, "Too many table names in the query. The maximum allowable is 64."},
    {"string or blob too big", 8152, "String or binary data would be truncated."},
};

void failAtBound(const std::string& text) {
  for (const Bound& bound : bounds)
    if (text.find(bound.words) != std::string::npos) throw Error(bound.number, bound.text, 15);
}

[[noreturn]] void failByPrimaryCode(sqlite3* db, int code, const std::string& file) {
  const std::string text = sqlite3_errmsg(db);
  switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      if (code == SQLITE_BUSY_SNAPSHOT) throw deadlockVictim();
      throw lockTimeOut();
    case SQLITE_FULL:
      throw diskFull();
    case SQLITE_IOERR:
      // The companion file of the log could not be made for want of room.
      if (code == SQLITE_IOERR_SHMSIZE) throw diskFull();
      throw Error(823, "I/O error (" + text + ") detected" + about(file) + ".", 24);
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      throw Error(824, "A logical consistency-based I/O error was detected" + about(file) + ": " + text + ".",
                  24);
    case SQLITE_READONLY:
      throw Error(3906, "Failed to update database because the database is read-only.");
    case SQLITE_CANTOPEN:
      throw Error(5120, "Unable to open the physical file" + about(file) + ": " + text + ".");
    case SQLITE_INTERRUPT:
      throw cancelled();
    case SQLITE_NOMEM:
      throw Error(701, "There is insufficient system memory to run this query.", 17);
    case SQLITE_TOOBIG:
      throw Error(8152, "String or binary data would be truncated.");
    default:
      failAtBound(text);
      throw Error(8630, "Internal Query Processor Error: " + text, 17);
  }
}

}  // namespace

Error deadlockVictim() {
  return Error(1205,
               "Transaction was deadlocked on lock resources with another process and has been chosen as the "
               "deadlock victim. Rerun the transaction.",
               13);
}
Error lockTimeOut() {
  return Error(1222, "Lock request time out period exceeded.");
}
Error cancelled() {
  return Error(3617, "The request has been canceled.", 11);
}
Error diskFull() {
  return Error(1105, "Could not allocate space because the disk is full.", 17);
}

void fail(sqlite3* db, int code, const std::string& file) {
  rethrowEncoded(sqlite3_errmsg(db));
  if (const auto failure = takeFailure(code)) throw Error(*failure);
  const int extended = sqlite3_extended_errcode(db);
  failByPrimaryCode(db, (extended & 0xff) == (code & 0xff) ? extended : code, file);
}

Stmt::Stmt(sqlite3* db, std::string_view sql, bool persistent) : db_(db) {
  const unsigned flags = persistent ? SQLITE_PREPARE_PERSISTENT : 0;
  const int rc = sqlite3_prepare_v3(db, sql.data(), static_cast<int>(sql.size()), flags, &stmt_, nullptr);
  if (rc != SQLITE_OK) fail(db, rc);
}

Stmt& Stmt::bind(std::int64_t value) {
  sqlite3_bind_int64(stmt_, next_++, value);
  return *this;
}

Stmt& Stmt::bind(std::string_view value) {
  sqlite3_bind_text64(stmt_, next_++, value.data() ? value.data() : "", value.size(), SQLITE_TRANSIENT,
                      SQLITE_UTF8);
  return *this;
}

Stmt& Stmt::bindDatum(const Datum& value) {
  if (value.isInteger()) return bind(value.integer());
  if (value.isText()) return bind(value.text());
  if (value.isReal()) {
    sqlite3_bind_double(stmt_, next_++, value.real());
    return *this;
  }
  if (!value.isBlob()) return bindNull();
  const std::string& bytes = value.bytes();
  sqlite3_bind_blob64(stmt_, next_++, bytes.empty() ? "" : bytes.data(), bytes.size(), SQLITE_TRANSIENT);
  return *this;
}

Stmt& Stmt::bindNull() {
  sqlite3_bind_null(stmt_, next_++);
  return *this;
}

bool Stmt::step() {
  const int rc = sqlite3_step(stmt_);
  if (rc == SQLITE_ROW) return true;
  if (rc == SQLITE_DONE) return false;
  try {
    fail(db_, rc);
  } catch (...) {
    reset();
    throw;
  }
}

void Stmt::reset() {
  sqlite3_reset(stmt_);
  sqlite3_clear_bindings(stmt_);
  next_ = 1;
}

std::string Stmt::text(int column) const {
  const auto* data = static_cast<const char*>(sqlite3_column_blob(stmt_, column));
  return data ? std::string(data, static_cast<std::size_t>(sqlite3_column_bytes(stmt_, column)))
              : std::string();
}

void exec(sqlite3* db, const std::string& sql) {
  const int rc = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
  if (rc != SQLITE_OK) fail(db, rc);
}

namespace {
std::string enclosed(std::string_view text, char mark) {
  std::string out(1, mark);
  for (char c : text) {
    if (c == mark) out += mark;
    out += c;
  }
  return out += mark;
}
}  // namespace

std::string quoted(std::string_view name) {
  return enclosed(name, '"');
}
std::string literal(std::string_view text) {
  return enclosed(text, '\'');
}

}  // namespace engine::lite
