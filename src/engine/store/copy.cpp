#include "engine/store/copy.h"

#include <algorithm>

#include "engine/catalog.h"
#include "engine/store/companion.h"
#include "engine/store/file_handle.h"
#include "engine/store/file_layer.h"
#include "engine/store/log_format.h"
#include "engine/store/row_mix.h"

namespace engine {

namespace fs = std::filesystem;

namespace {

using store::Mix;

constexpr int pagesAtOnce = 512;

void addValue(Mix& mix, sqlite3_stmt* row, int column) {
  const int type = sqlite3_column_type(row, column);
  mix.add(static_cast<std::uint64_t>(type));
  switch (type) {
    case SQLITE_INTEGER:
      mix.add(static_cast<std::uint64_t>(sqlite3_column_int64(row, column)));
      break;
    case SQLITE_FLOAT:
      mix.add(sqlite3_column_double(row, column));
      break;
    case SQLITE_TEXT:
    case SQLITE_BLOB: {
      const void* bytes = sqlite3_column_blob(row, column);
      mix.add(bytes, static_cast<std::size_t>(sqlite3_column_bytes(row, column)));
      break;
    }
    default:
      break;
  }
}

// How far the rows of all tables have come, as far as their numbers tell.
class RowCount {
 public:
  explicit RowCount(const CopyStep& step) : step_(step) {}

  void expect(std::int64_t rows) { all_ += rows; }
  void add() {
    constexpr std::int64_t often = 20000;
    if (++done_ % often == 0 && step_ && !step_(std::min(done_, all_), std::max<std::int64_t>(all_, 1)))
      throw Error(3617, "The statement has been terminated by the user.");
  }

 private:
  const CopyStep& step_;
  std::int64_t done_ = 0, all_ = 0;
};

TableDigest digest(sqlite3* db, const std::string& alias, const TableInfo& table, RowCount& count) {
  std::string columns;
  for (const ColumnInfo& column : table.columns)
    columns += (columns.empty() ? "" : ",") + lite::quoted(column.name);
  sqlite3_stmt* rows = nullptr;
  const std::string sql = "SELECT " + columns + " FROM " + alias + "." + lite::quoted(table.name);
  if (const int rc = sqlite3_prepare_v2(db, sql.c_str(), -1, &rows, nullptr); rc != SQLITE_OK)
    lite::fail(db, rc);
  TableDigest out{table.name, 0, 0};
  int rc = SQLITE_OK;
  while ((rc = sqlite3_step(rows)) == SQLITE_ROW) {
    Mix mix;
    for (int i = 0, count = sqlite3_column_count(rows); i < count; ++i) addValue(mix, rows, i);
    ++out.rows;
    out.sum += mix.sum();
    try {
      count.add();
    } catch (...) {
      sqlite3_finalize(rows);
      throw;
    }
  }
  sqlite3_finalize(rows);
  if (rc != SQLITE_DONE) lite::fail(db, rc);
  return out;
}

class Backup {
 public:
  Backup(sqlite3* to, sqlite3* from) : to_(to), backup_(sqlite3_backup_init(to, "main", from, "main")) {
    if (!backup_) lite::fail(to, sqlite3_errcode(to));
  }
  ~Backup() { sqlite3_backup_finish(backup_); }
  Backup(const Backup&) = delete;
  Backup& operator=(const Backup&) = delete;

  void run(const CopyStep& step) {
    int rc = SQLITE_OK;
    while (rc == SQLITE_OK) {
      rc = sqlite3_backup_step(backup_, pagesAtOnce);
      if (rc != SQLITE_OK && rc != SQLITE_DONE) lite::fail(to_, rc);
      const int all = sqlite3_backup_pagecount(backup_);
      if (step && !step(all - sqlite3_backup_remaining(backup_), all))
        throw Error(3617, "The statement has been terminated by the user.");
    }
  }

 private:
  sqlite3* to_;
  sqlite3_backup* backup_;
};

}  // namespace

std::vector<TableDigest> digestTables(sqlite3* db, const std::string& alias, const CopyStep& step) {
  std::vector<TableDigest> out;
  RowCount count(step);
  const auto catalog = loadCatalog(db, alias, "");
  for (const auto& [folded, table] : catalog->tables) {
    lite::Stmt last(db, "SELECT max(rowid) FROM " + alias + "." + lite::quoted(table->name));
    if (last.step()) count.expect(last.integer(0));
  }
  for (const auto& [folded, table] : catalog->tables) out.push_back(digest(db, alias, *table, count));
  std::ranges::sort(out, {}, &TableDigest::name);
  return out;
}

namespace {

// Takes away what was made, unless it has become whole.
struct Made {
  fs::path data, log;
  bool whole = false;
  ~Made() {
    if (whole) return;
    std::error_code ignored;
    try {
      if (!data.empty()) removeDataFile(data);
    } catch (const Error&) {
      // The failure that led here is the one to tell.
    }
    if (!log.empty()) fs::remove(log, ignored);
  }
};

}  // namespace

std::vector<TableDigest> copyLive(const DatabaseFiles& given, const DatabaseFiles& to, const CopyStep& step) {
  const DatabaseFiles from = {given.data, readyCompanion(given.data, given.log, given.name), given.name};
  std::vector<TableDigest> digests;
  Made made;
  makeEmpty(to.data);
  made.data = to.data;
  writeCompanion(to.log, to.name, readCompanion(from.log, from.name));
  made.log = to.log;
  {
    const FileHandle source(from, false), copy(to, true);
    reserveChecksums(copy);
    lite::exec(copy, "PRAGMA journal_mode=OFF");
    // The moment of the copy: whatever is committed later is seen neither by it nor by the digests.
    lite::exec(source, "BEGIN; SELECT count(*) FROM sqlite_master");
    // The pages count for one half of the work, the rows for the other.
    Backup(copy, source).run([&](std::int64_t done, std::int64_t all) {
      return !step || step(done, 2 * all);
    });
    digests = digestTables(source, "main", [&](std::int64_t done, std::int64_t all) {
      return !step || step(all + done, 2 * all);
    });
    lite::exec(source, "COMMIT");
  }
  if (!settleDataFile(to)) throw Error(823, "I/O error detected in file '" + to.data.string() + "'.", 24);
  made.whole = true;
  return digests;
}

bool isSettled(const DatabaseFiles& files) {
  const auto log = store::readStart(files.log, store::framesBegin);
  const auto data = store::readStart(files.data, store::markOffset + store::markSize);
  if (log.empty() || !store::isDataFile(data)) return false;
  const auto head = store::readLogHead({reinterpret_cast<const char*>(log.data()), log.size()});
  const unsigned char* bytes = data.data() + store::markOffset;
  if (!head || head->version != 2 || store::isUnmarked(bytes)) return false;
  const store::Mark mark = store::decodeMark(bytes);
  return mark.identity == store::identityOf(head->family) && mark.complete && !mark.inUse &&
         store::isBlankLogHeader(log.data() + store::logOrigin);
}

}  // namespace engine
