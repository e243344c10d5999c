// Identity values, and SQLite's constraint messages in the server's words.
#include <cstdlib>

#include "engine/store/storage_impl.h"

namespace engine {

namespace {

std::int64_t largestOf(const Type& type) {
  switch (type.id) {
    case TypeId::TinyInt:
      return 255;
    case TypeId::SmallInt:
      return 32767;
    case TypeId::Int:
      return 2147483647;
    case TypeId::Decimal: {
      std::int64_t power = 1;
      for (int i = 0; i < type.precision; ++i) power *= 10;
      return power - 1;
    }
    default:
      return INT64_MAX;
  }
}

const ColumnInfo& identityOf(const TableInfo& table) {
  const int ordinal = table.identityColumn();
  if (ordinal < 0) throw Error(8106, "Table '" + table.name + "' does not have the identity property.");
  return table.columns[static_cast<std::size_t>(ordinal)];
}

[[noreturn]] void failOverflow(const Type& type) {
  throw Error(8115, std::string("Arithmetic overflow error converting IDENTITY to data type ") +
                        typeName(type.id) + ".");
}

lite::Stmt& statement(std::unique_ptr<lite::Stmt>& slot, sqlite3* db, const char* sql,
                      const std::string& alias) {
  if (!slot) slot = std::make_unique<lite::Stmt>(db, atAlias(sql, alias), true);
  slot->reset();
  return *slot;
}

// Moves the table's counter on by `by` and gives where it stands then; a new counter begins at `first`.
// In simple statements: an upsert with RETURNING costs SQLite a temporary table each time.
std::int64_t advance(sqlite3* db, Attached& one, std::int64_t table, std::int64_t first, std::int64_t by) {
  lite::Stmt& take =
      statement(one.takeIdentity, db, "UPDATE @.zb_identity SET last=last+?2 WHERE table_id=?1", one.alias);
  take.bind(table).bind(by).run();
  if (sqlite3_changes64(db) == 0) {
    lite::Stmt& begin =
        statement(one.beginIdentity, db, "INSERT INTO @.zb_identity VALUES(?1, ?2)", one.alias);
    begin.bind(table).bind(first).run();
    return first;
  }
  lite::Stmt& read =
      statement(one.readIdentity, db, "SELECT last FROM @.zb_identity WHERE table_id=?1", one.alias);
  read.bind(table);
  const std::int64_t last = read.step() ? read.integer(0) : first;
  read.reset();
  return last;
}

}  // namespace

std::int64_t nextIdentity(Store& store, std::string_view database, const TableInfo& table,
                          std::int64_t count) {
  const ColumnInfo& column = identityOf(table);
  Attached& one = store.impl().find(database);
  std::int64_t first = 0, span = 0;
  if (__builtin_mul_overflow(column.step, count - 1, &span) ||
      __builtin_add_overflow(column.seed, span, &first))
    failOverflow(column.type);
  std::int64_t last = advance(store.handle(), one, table.id, first, column.step * count);
  IdentityMarks& marks = store.impl().instance->identityMarks();
  std::int64_t mark = 0;
  const bool used = marks.isUsed(one.cacheKey, table.id, last - span, column.step, mark);
  if (used && (__builtin_add_overflow(mark, column.step, &last) || __builtin_add_overflow(last, span, &last)))
    failOverflow(column.type);
  const std::int64_t largest = largestOf(column.type);
  if (last > largest || last < (column.type.id == TypeId::TinyInt ? 0 : -largest - 1))
    failOverflow(column.type);
  if (used) noteIdentity(store, database, table, last);
  marks.raise(one.cacheKey, table.id, last, column.step);
  return last - span;
}

void spendIdentity(Store& store, std::string_view database, const TableInfo& table,
                   std::int64_t last) noexcept {
  try {
    store.impl().instance->identityMarks().raise(store.impl().find(database).cacheKey, table.id, last,
                                                 identityOf(table).step);
  } catch (const Error&) {
    // A database that has gone gives out no more values.
  }
}

void noteIdentity(Store& store, std::string_view database, const TableInfo& table, std::int64_t value) {
  Attached& one = store.impl().find(database);
  lite::Stmt& note = statement(one.noteIdentity, store.handle(),
                               "INSERT INTO @.zb_identity VALUES(?1, ?2) ON CONFLICT(table_id) DO UPDATE SET "
                               "last=CASE WHEN ?3>0 THEN max(last, ?2) ELSE min(last, ?2) END",
                               one.alias);
  note.bind(table.id).bind(value).bind(identityOf(table).step).run();
}

void resetIdentity(Store& store, std::string_view database, const TableInfo& table) {
  lite::Stmt remove(store.handle(),
                    atAlias("DELETE FROM @.zb_identity WHERE table_id=?", store.attach(database)));
  remove.bind(table.id).run();
  forgetIdentity(store, database, table.id);
}

void forgetIdentity(Store& store, std::string_view database, std::int64_t table) {
  store.impl().instance->identityMarks().forget(store.impl().find(database).cacheKey, table);
}

std::optional<std::int64_t> lastIdentity(Store& store, std::string_view database, const TableInfo& table) {
  lite::Stmt last(store.handle(),
                  atAlias("SELECT last FROM @.zb_identity WHERE table_id=?", store.attach(database)));
  if (last.bind(table.id).step()) return last.integer(0);
  return std::nullopt;
}

namespace {

Error duplicate(const TableInfo& table, const IndexInfo& index) {
  if (index.primaryKey || index.uniqueConstraint)
    return {2627,
            std::string("Violation of ") + (index.primaryKey ? "PRIMARY" : "UNIQUE") + " KEY constraint '" +
                index.name + "'. Cannot insert duplicate key in object 'dbo." + table.name + "'.",
            14};
  return {2601,
          "Cannot insert duplicate key row in object 'dbo." + table.name + "' with unique index '" +
              index.name + "'.",
          14};
}

// "T.a, T.b" as SQLite lists the columns of an index.
std::string listed(const TableInfo& table, const IndexInfo& index) {
  std::string text;
  for (const auto& part : index.parts)
    text += (text.empty() ? "" : ", ") + table.name + "." +
            table.columns[static_cast<std::size_t>(part.column)].name;
  return text;
}

const IndexInfo* indexByNumber(const DatabaseCatalog& catalog, const std::string& name,
                               const TableInfo*& owner) {
  char* end = nullptr;
  const std::int64_t id = std::strtoll(name.c_str() + 3, &end, 10);
  const int number = *end == '_' ? std::atoi(end + 1) : 0;
  for (const auto& [folded, table] : catalog.tables)
    for (const auto& index : table->indexes)
      if (table->id == id && index.id == number) {
        owner = table.get();
        return &index;
      }
  return nullptr;
}

}  // namespace

Error constraintError(const DatabaseCatalog& catalog, const std::string& message, const std::string& verb) {
  const auto colon = message.find(": ");
  const std::string what = colon == std::string::npos ? message : message.substr(colon + 2);
  if (message.starts_with("NOT NULL")) {
    const auto dot = what.find('.');
    return {515, "Cannot insert the value NULL into column '" + what.substr(dot + 1) + "', table '" +
                     catalog.name + ".dbo." + what.substr(0, dot) + "'; column does not allow nulls. " +
                     verb + " fails."};
  }
  if (what.starts_with("index '")) {
    const TableInfo* owner = nullptr;
    if (const IndexInfo* index = indexByNumber(catalog, what.substr(7, what.size() - 8), owner))
      return duplicate(*owner, *index);
  }
  for (const auto& [folded, table] : catalog.tables) {
    if (!what.starts_with(table->name + ".")) continue;
    for (const auto& index : table->indexes)
      if (index.unique && listed(*table, index) == what) return duplicate(*table, index);
  }
  return {2601, "Cannot insert duplicate key row: " + what + ".", 14};
}

}  // namespace engine
