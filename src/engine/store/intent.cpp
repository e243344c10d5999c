#include "engine/store/intent.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>

#include "engine/catalog.h"
#include "engine/store/shared_state.h"

namespace engine {

namespace fs = std::filesystem;

void (*intentStep)(const char* step) = nullptr;

void atIntentStep(const char* name) {
  if (intentStep) intentStep(name);
}

namespace {

constexpr std::string_view magic = "ZBINTENT1\n";
constexpr std::string_view ending = ".intent";
constexpr std::string_view temporaryEnding = ".new";
constexpr std::size_t sumSize = 32;
constexpr const char* markKey = "intent:";

class Writer {
 public:
  void number(std::int64_t value) {
    for (int i = 0; i < 8; ++i) text += static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i));
  }
  void bytes(std::string_view value) {
    number(static_cast<std::int64_t>(value.size()));
    text += value;
  }
  void value(const Datum& datum) {
    if (datum.isNull()) {
      text += 'n';
    } else if (datum.isInteger()) {
      text += 'i';
      number(datum.integer());
    } else if (datum.isReal()) {
      text += 'r';
      std::int64_t bits = 0;
      const double real = datum.real();
      std::memcpy(&bits, &real, sizeof bits);
      number(bits);
    } else if (datum.isText()) {
      text += 't';
      bytes(datum.text());
    } else {
      text += 'b';
      bytes(datum.bytes());
    }
  }
  void row(const StoredRow& row) {
    number(static_cast<std::int64_t>(row.size()));
    for (const Datum& datum : row) value(datum);
  }
  std::string text;
};

// Reads what the sum has vouched for.
class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}
  std::int64_t number() {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < 8; ++i)
      value |= static_cast<std::uint64_t>(static_cast<unsigned char>(rest_[i])) << (8 * i);
    rest_.remove_prefix(8);
    return static_cast<std::int64_t>(value);
  }
  std::string bytes() {
    const auto size = static_cast<std::size_t>(number());
    std::string value(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return value;
  }
  char letter() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }
  Datum value() {
    switch (letter()) {
      case 'i':
        return number();
      case 'r': {
        const std::int64_t bits = number();
        double real = 0;
        std::memcpy(&real, &bits, sizeof real);
        return real;
      }
      case 't':
        return bytes();
      case 'b':
        return Blob{bytes()};
      default:
        return {};
    }
  }
  StoredRow row() {
    StoredRow row(static_cast<std::size_t>(number()));
    for (Datum& datum : row) datum = value();
    return row;
  }

 private:
  std::string_view rest_;
};

std::string sumOf(std::string_view text) {
  std::string sum(sumSize, '\0');
  crypto_generichash(reinterpret_cast<unsigned char*>(sum.data()), sum.size(),
                     reinterpret_cast<const unsigned char*>(text.data()), text.size(), nullptr, 0);
  return sum;
}

void put(Writer& out, const IntentPart& part) {
  out.bytes(part.database);
  out.text.append(part.before.seed.begin(), part.before.seed.end());
  out.number(part.before.frames);
  out.number(static_cast<std::int64_t>(part.changes.size()));
  for (const RowChange& change : part.changes) {
    out.bytes(change.table);
    out.text += change.kind;
    out.text += change.keyed ? 'k' : 'v';
    out.number(change.oldRow);
    out.number(change.newRow);
    out.row(change.before);
    out.row(change.after);
  }
}

IntentPart partFrom(Reader& in) {
  IntentPart part;
  part.database = in.bytes();
  for (unsigned char& byte : part.before.seed) byte = static_cast<unsigned char>(in.letter());
  part.before.frames = static_cast<std::uint32_t>(in.number());
  part.changes.resize(static_cast<std::size_t>(in.number()));
  for (RowChange& change : part.changes) {
    change.table = in.bytes();
    change.kind = in.letter();
    change.keyed = in.letter() == 'k';
    change.oldRow = in.number();
    change.newRow = in.number();
    change.before = in.row();
    change.after = in.row();
  }
  return part;
}

std::string written(const Intent& intent) {
  Writer out;
  out.text = magic;
  out.number(intent.number);
  out.text += static_cast<char>(intent.verdict);
  put(out, intent.leader);
  out.number(static_cast<std::int64_t>(intent.others.size()));
  for (const IntentPart& other : intent.others) put(out, other);
  return out.text + sumOf(out.text);
}

bool parsed(std::string_view text, Intent& intent) {
  if (text.size() < magic.size() + sumSize || !text.starts_with(magic)) return false;
  const std::string_view body = text.substr(0, text.size() - sumSize);
  if (sumOf(body) != text.substr(body.size())) return false;
  Reader in(body.substr(magic.size()));
  intent.number = in.number();
  intent.verdict = static_cast<Verdict>(in.letter());
  intent.leader = partFrom(in);
  intent.others.resize(static_cast<std::size_t>(in.number()));
  for (IntentPart& other : intent.others) other = partFrom(in);
  return true;
}

std::string contentOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Held by the owner. Whoever ends what he left needs none: one alone does so at a time.
constexpr std::int64_t ownersLock = 0;

[[noreturn]] void failWrite(const fs::path& file, int error) {
#ifdef EDQUOT
  if (error == EDQUOT) throw lite::diskFull();
#endif
  if (error == ENOSPC) throw lite::diskFull();
  throw Error(5123, "CREATE FILE encountered operating system error " + std::to_string(error) + "(" +
                        std::strerror(error) + ") while attempting to open or create the physical file '" +
                        file.string() + "'.");
}

void bindRow(lite::Stmt& statement, const StoredRow& row) {
  for (const Datum& datum : row) statement.bindDatum(datum);
}

std::string columnsWhere(const std::vector<std::string>& columns) {
  std::string sql;
  for (const std::string& column : columns) sql += (sql.empty() ? " WHERE " : " AND ") + column + " IS ?";
  return sql;
}

std::vector<std::string> columnNames(sqlite3* db, const std::string& alias, const std::string& table) {
  std::vector<std::string> names;
  lite::Stmt info(db, "SELECT name FROM pragma_table_info(?, ?) ORDER BY cid");
  for (info.bind(table).bind(alias); info.step();) names.push_back(lite::quoted(info.text(0)));
  return names;
}

}  // namespace

bool Intent::concerns(std::string_view foldedName) const {
  return foldName(leader.database) == foldedName ||
         std::any_of(others.begin(), others.end(),
                     [&](const IntentPart& other) { return foldName(other.database) == foldedName; });
}

fs::path intentFile(const fs::path& folder, std::int64_t number) {
  return folder / ("islem" + std::to_string(number) + std::string(ending));
}

IntentFile::IntentFile(const fs::path& folder, const Intent& intent, SharedPage& page)
    : file_(intentFile(folder, intent.number)), page_(page), number_(intent.number) {
  const fs::path temporary = file_.string() + std::string(temporaryEnding);
  page_.intentsBegun.fetch_add(1);
  handle_ = system::File::createNew(temporary);
  if (!handle_.valid()) {
    const int error = errno;
    page_.intentsEnded.fetch_add(1);
    failWrite(temporary, error);
  }
  atIntentStep("made");
  const bool whole = handle_.lock(ownersLock, system::File::Lock::Exclusive, false) &&
                     handle_.writeAll(written(intent)) && handle_.flush();
  atIntentStep("written");
  if (!whole || !system::replace(temporary, file_)) {
    const int error = errno;
    system::remove(temporary);
    page_.intentsEnded.fetch_add(1);
    failWrite(file_, error);
  }
  system::flushFolder(folder);
  atIntentStep("named");
}

IntentFile::~IntentFile() {
  if (keep_) return;
  atIntentStep("committed");
  // In this order: a record that nobody knows of does no harm, a commit that nobody knows of does.
  page_.intentsEnded.fetch_add(1);
  system::remove(file_);
  atIntentStep("removed");
}

std::unique_ptr<LeftIntent> LeftIntent::take(const fs::path& file) {
  auto handle = system::File::openExisting(file);
  if (!handle.valid() || handle.lockedByOthers(ownersLock)) return nullptr;
  std::unique_ptr<LeftIntent> left(new LeftIntent(file, std::move(handle)));
  if (parsed(contentOf(file), left->intent) && !file.string().ends_with(temporaryEnding)) return left;
  left->remove();
  return nullptr;
}

void LeftIntent::remove() {
  system::remove(file_);
}

void LeftIntent::rewrite() const {
  const fs::path temporary = file_.string() + std::string(temporaryEnding);
  system::remove(temporary);
  {
    const auto made = system::File::createNew(temporary);
    if (!made.valid()) failWrite(temporary, errno);
    if (!made.writeAll(written(intent)) || !made.flush()) {
      const int error = errno;
      system::remove(temporary);
      failWrite(file_, error);
    }
  }
  if (!system::replace(temporary, file_)) {
    const int error = errno;
    system::remove(temporary);
    failWrite(file_, error);
  }
  system::flushFolder(file_.parent_path());
}

bool isLeft(const fs::path& file, const std::vector<std::string>& databases) {
  {
    const auto handle = system::File::openForReading(file);
    if (!handle.valid() || handle.lockedByOthers(ownersLock) || file.string().ends_with(temporaryEnding))
      return false;
  }
  Intent intent;
  if (!parsed(contentOf(file), intent)) return false;
  return std::any_of(databases.begin(), databases.end(),
                     [&](const std::string& name) { return intent.concerns(name); });
}

std::vector<fs::path> intentFiles(const fs::path& folder) {
  std::vector<fs::path> found;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (name.ends_with(ending) || name.ends_with(std::string(ending) + std::string(temporaryEnding)))
      found.push_back(entry->path());
  }
  return found;
}

void applyChange(sqlite3* db, const std::string& alias, const RowChange& change, bool forward) {
  const std::string table = alias + "." + lite::quoted(change.table);
  const std::vector<std::string> columns = columnNames(db, alias, change.table);
  // What is to go and what is to come; both by row number where the table has them.
  const bool removes = forward ? change.kind != 'I' : change.kind != 'D';
  const bool adds = forward ? change.kind != 'D' : change.kind != 'I';
  const StoredRow& gone = forward ? change.before : change.after;
  const StoredRow& come = forward ? change.after : change.before;
  if (removes && change.keyed) {
    lite::Stmt remove(db, "DELETE FROM " + table + " WHERE rowid=?");
    remove.bind(forward ? change.oldRow : change.newRow).run();
  } else if (removes) {
    lite::Stmt remove(db, "DELETE FROM " + table + columnsWhere(columns));
    bindRow(remove, gone);
    remove.run();
  }
  if (!adds) return;
  std::string names, marks;
  for (std::size_t i = 0; i < come.size() && i < columns.size(); ++i) {
    names += (i ? "," : "") + columns[i];
    marks += i ? ",?" : "?";
  }
  // A column INTEGER PRIMARY KEY is the row number under another name.
  lite::Stmt add(db, "INSERT OR REPLACE INTO " + table + "(" + names + (change.keyed ? ",rowid" : "") +
                         ") VALUES(" + marks + (change.keyed ? ",?" : "") + ")");
  bindRow(add, come);
  if (change.keyed) add.bind(forward ? change.newRow : change.oldRow);
  add.run();
}

bool isMarked(sqlite3* db, const std::string& alias, std::int64_t number) {
  lite::Stmt find(db, atAlias("SELECT 1 FROM @.zb_meta WHERE key=?", alias));
  return find.bind(markKey + std::to_string(number)).step();
}

void setMark(sqlite3* db, const std::string& alias, std::int64_t number, bool set) {
  const char* sql =
      set ? "INSERT OR REPLACE INTO @.zb_meta(key, value) VALUES(?, 1)" : "DELETE FROM @.zb_meta WHERE key=?";
  lite::Stmt statement(db, atAlias(sql, alias));
  statement.bind(markKey + std::to_string(number)).run();
}

void dropOldMarks(sqlite3* db, const std::string& alias, const fs::path& folder) {
  std::vector<std::int64_t> old;
  {
    lite::Stmt marks(db,
                     atAlias("SELECT substr(key, 8) FROM @.zb_meta WHERE key>=? AND key<'intent;'", alias));
    for (marks.bind(markKey); marks.step();) old.push_back(std::atoll(marks.text(0).c_str()));
  }
  std::error_code error;
  for (const std::int64_t number : old)
    if (!fs::exists(intentFile(folder, number), error)) setMark(db, alias, number, false);
}

}  // namespace engine
