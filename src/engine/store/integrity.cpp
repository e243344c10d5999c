#include "engine/store/integrity.h"

#include <algorithm>
#include <limits>
#include <map>

#include "engine/store/file_layer.h"

namespace engine {

namespace {

// What SQLite says of an index, by a part of its words, and the server's number for it.
struct Complaint {
  const char* words;
  int number;
};
constexpr Complaint complaints[] = {
    {"missing from index", 8951},
    {"wrong # of entries in index", 8952},
    {"non-unique entry in index", 2512},
    {"NULL value in", 8970},
};
constexpr int tableError = 8939;

bool isDamage(const Error& error) {
  return error.number() == 824 || error.number() == 823;
}

std::string between(const std::string& column, std::int64_t low, std::int64_t high) {
  return "typeof(" + column + ")<>'integer' OR " + column + " NOT BETWEEN " + std::to_string(low) + " AND " +
         std::to_string(high);
}

template <class Number>
std::string withinType(const std::string& column) {
  return between(column, std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max());
}

std::string notOf(const std::string& column, const char* kind, int longest = 0) {
  std::string text = "typeof(" + column + ")<>'" + kind + "'";
  if (longest > 0) text += " OR length(" + column + ")>" + std::to_string(longest);
  return text;
}

std::int64_t power10(int digits) {
  std::int64_t power = 1;
  for (int i = 0; i < digits; ++i) power *= 10;
  return power;
}

// True for a value that the type cannot hold (type.h tells the physical forms).
std::string outside(const std::string& column, const Type& type) {
  constexpr int shortDecimal = 18;
  // Ticks of 1753-01-01 and of the last one of 9999-12-31.
  constexpr std::int64_t ticksPerDay = 300LL * 86400, firstDay = -53690, daysEnd = 2958464;
  switch (type.id) {
    case TypeId::Bit:
      return between(column, 0, 1);
    case TypeId::TinyInt:
      return withinType<std::uint8_t>(column);
    case TypeId::SmallInt:
      return withinType<std::int16_t>(column);
    case TypeId::Int:
    case TypeId::SmallMoney:
      return withinType<std::int32_t>(column);
    case TypeId::BigInt:
    case TypeId::Money:
      return notOf(column, "integer");
    case TypeId::Decimal:
      if (type.precision > shortDecimal) return notOf(column, "blob") + " OR length(" + column + ")<>16";
      return between(column, 1 - power10(type.precision), power10(type.precision) - 1);
    case TypeId::Real:
    case TypeId::Float:
      return "typeof(" + column + ") NOT IN ('real','integer')";
    case TypeId::SmallDateTime:
    case TypeId::DateTime:
      return between(column, firstDay * ticksPerDay, daysEnd * ticksPerDay - 1);
    case TypeId::Binary:
    case TypeId::VarBinary:
      return notOf(column, "blob", type.length);
    case TypeId::Text:
    case TypeId::NText:
      return notOf(column, "text");
    case TypeId::Char:
    case TypeId::VarChar:
    case TypeId::NChar:
    case TypeId::NVarChar:
      return notOf(column, "text", type.length);
    case TypeId::Null:
      break;
  }
  return "0";
}

class Check {
 public:
  Check(Store& store, const std::string& database) : store_(store), database_(database) {
    catalog_ = store.catalog(database);
    alias_ = store.attach(database);
    report_.checksummed = store::isChecksummed(store.handle(), alias_);
  }

  IntegrityReport run(const std::string& only) {
    std::map<std::string, const TableInfo*> tables;
    for (const auto& [folded, table] : catalog_->tables)
      if (only.empty() || folded == foldName(only)) tables[folded] = table.get();
    if (!only.empty() && tables.empty())
      throw Error(2501,
                  "Cannot find a table or object with the name \"" + only + "\". Check the system catalog.");
    if (only.empty()) pages();
    countPages();
    for (const auto& [folded, table] : tables) check(*table);
    return std::move(report_);
  }

 private:
  template <class Work>
  bool guarded(Work&& work) {
    try {
      work();
      return true;
    } catch (const Error& error) {
      if (!isDamage(error)) throw;
      tell(error.number(), error.what());
      return false;
    }
  }
  void tell(int number, const std::string& text) {
    const bool told = std::any_of(report_.findings.begin(), report_.findings.end(),
                                  [&](const Finding& each) { return each.text == text; });
    if (!told) report_.findings.push_back({number, text});
  }

  // What the log still holds goes into the file first, as far as other sessions let it.
  void pages() {
    sqlite3* db = store_.handle();
    if (!store_.inTransaction()) lite::exec(db, "PRAGMA " + alias_ + ".wal_checkpoint");
    for (std::uint32_t page = 1, count = store::pageCount(db, alias_); page <= count; ++page)
      if (const auto damage = store::checkPage(db, alias_, page)) tell(damage->number(), damage->what());
  }

  void countPages() {
    try {
      lite::Stmt rows(store_.handle(), "SELECT name, pageno FROM dbstat WHERE schema=? AND aggregate=1");
      rows.bind(alias_);
      while (rows.step()) pageCounts_[foldName(rows.text(0))] = rows.integer(1);
    } catch (const Error&) {
      // Damage shows in the table that has it.
    }
  }

  void check(const TableInfo& table) {
    bool whole = guarded([&] { structure(table); });
    CheckedTable checked{table.name, table.id, 0, pageCounts_[foldName(table.name)]};
    whole = guarded([&] { checked.rows = values(table); }) && whole;
    if (whole) report_.tables.push_back(checked);
  }

  void structure(const TableInfo& table) {
    lite::Stmt rows(store_.handle(),
                    "PRAGMA " + alias_ + ".integrity_check(" + lite::quoted(table.name) + ")");
    while (rows.step()) {
      const std::string text = rows.text(0);
      if (text == "ok") continue;
      int number = tableError;
      for (const Complaint& each : complaints)
        if (text.find(each.words) != std::string::npos) number = each.number;
      tell(number,
           "Table error: table '" + table.name + "' (ID " + std::to_string(table.id) + "). " + text + ".");
    }
  }

  std::int64_t values(const TableInfo& table) {
    std::string sql = "SELECT count(*)";
    for (const ColumnInfo& column : table.columns) {
      const std::string name = lite::quoted(column.name);
      sql += ", sum(" + name + " IS NOT NULL AND (" + outside(name, column.type) + "))";
      sql += ", sum(" + std::string(column.nullable ? "0" : name + " IS NULL") + ")";
    }
    lite::Stmt rows(store_.handle(), sql + " FROM " + alias_ + "." + lite::quoted(table.name));
    if (!rows.step()) return 0;
    const std::string at =
        "Object ID " + std::to_string(table.id) + ", table '" + table.name + "'. Column \"";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      const ColumnInfo& column = table.columns[i];
      const int place = static_cast<int>(1 + 2 * i);
      if (const auto bad = rows.integer(place))
        tell(2570, at + column.name + "\" value is out of range for data type \"" + typeName(column.type.id) +
                       "\" in " + std::to_string(bad) + " rows. Update column to a legal value.");
      if (const auto bad = rows.integer(place + 1))
        tell(8970,
             at + column.name + "\" was created NOT NULL, but is NULL in " + std::to_string(bad) + " rows.");
    }
    return rows.integer(0);
  }

  Store& store_;
  std::string database_, alias_;
  std::shared_ptr<const DatabaseCatalog> catalog_;
  std::map<std::string, std::int64_t> pageCounts_;
  IntegrityReport report_;
};

}  // namespace

IntegrityReport checkIntegrity(Store& store, const std::string& database, const std::string& table) {
  return Check(store, database).run(table);
}

}  // namespace engine
