// CHECK and FOREIGN KEY: how they are defined, switched off and on, and what they keep from being changed.
//
// Both are rows of zb_objects (C, F) under their table. What they say is JSON in the text:
//   C  {"text": condition, "columns": [colid ...]}
//   F  {"table": id, "index": indid, "delete": action, "update": action, "columns": [[colid here, there]
//   ...]}
// flags: 1 disabled, 2 not trusted, and from bit 8 on the column of a condition that names only one.
#include <algorithm>
#include <set>

#include "engine/execute/ddl.h"
#include "engine/language.h"
#include "engine/plan/binder.h"

namespace engine::ddl {

namespace {

constexpr int disabledFlag = 1, untrustedFlag = 2, columnShift = 8;
constexpr std::int64_t keysPerTable = 1024;

std::string jsonText(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    if (static_cast<unsigned char>(c) < 0x20) {
      char buffer[8];
      std::snprintf(buffer, sizeof buffer, "\\u%04x", static_cast<unsigned>(c));
      out += buffer;
    } else {
      out += c;
    }
  }
  return out + '"';
}

// A name for a constraint that got none; those of a table that stands have numbers of their own.
std::string freeName(const Change& change, const char* prefix, const TableInfo& table) {
  for (std::int64_t number = table.id * keysPerTable + keysPerTable - 1;; --number) {
    std::string name = generatedName(prefix, table.name, number);
    if (findObject(change.db, change.alias, name).id == 0) return name;
  }
}

bool isIn(const std::vector<int>& list, int value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

// ---- CHECK ----

CheckInfo checkFrom(const Change& change, const TableInfo& table, const TableConstraint& constraint) {
  if (containsSubquery(*constraint.value))
    throw Error(1046, "Subqueries are not allowed in this context. Only scalar expressions are allowed.", 15);
  CheckInfo check;
  check.name = constraint.name.empty() ? freeName(change, "CK", table) : constraint.name;
  check.text = constraint.text;
  forEachColumn(*constraint.value, [&](const Expr& column) {
    const int ordinal = table.columnIndex(column.name);
    if (ordinal < 0) return;  // the name of a date part, or what binding refuses
    const int id = table.columns[static_cast<std::size_t>(ordinal)].id;
    if (!isIn(check.columns, id)) check.columns.push_back(id);
  });
  std::sort(check.columns.begin(), check.columns.end());
  return check;
}

void writeCheck(Change& change, const TableInfo& table, CheckInfo& check) {
  std::string list;
  for (const int column : check.columns) list += (list.empty() ? "" : ",") + std::to_string(column);
  const int flags = (check.untrusted ? untrustedFlag : 0) |
                    (check.columns.size() == 1 ? check.columns.front() << columnShift : 0);
  check.id = change.rows.addObject(
      check.name, "C", table.id, "{\"text\":" + jsonText(check.text) + ",\"columns\":[" + list + "]}", flags);
}

// ---- FOREIGN KEY ----

std::shared_ptr<const TableInfo> referencedTable(const Change& change, const TableInfo& table,
                                                 const TableConstraint& constraint, const std::string& name) {
  const ObjectName& to = constraint.references;
  if (!to.database.empty() && foldName(to.database) != foldName(change.database))
    throw Error(1763, "Cross-database foreign key references are not supported. Foreign key '" + name + "'.");
  if (isKnownOwner(to.owner) && foldName(to.object) == foldName(table.name))
    return std::make_shared<const TableInfo>(table);
  auto found = change.catalog().tables.find(foldName(to.object));
  if (!found || !isKnownOwner(to.owner))
    throw Error(1767, "Foreign key '" + name + "' references invalid table '" + to.object + "'.");
  return found;
}

const ColumnInfo& keyColumn(const TableInfo& in, const std::string& column, const std::string& key,
                            bool referencing) {
  const int ordinal = in.columnIndex(column);
  if (ordinal < 0)
    throw Error(referencing ? 1769 : 1770, "Foreign key '" + key + "' references invalid column '" + column +
                                               "' in " + (referencing ? "referencing" : "referenced") +
                                               " table '" + in.name + "'.");
  return in.columns[static_cast<std::size_t>(ordinal)];
}

void checkTypes(const TableInfo& table, const ColumnInfo& here, const TableInfo& there,
                const ColumnInfo& column, const std::string& key) {
  if (here.type == column.type) return;
  const std::string pair = "'" + there.name + "." + column.name + "' is not the same ";
  const std::string other =
      " as referencing column '" + table.name + "." + here.name + "' in foreign key '" + key + "'.";
  if (here.type.id != column.type.id) throw Error(1778, "Column " + pair + "data type" + other);
  throw Error(1753, "Column " + pair + "length or scale" + other +
                        " Columns participating in a foreign key relationship must be defined with the same "
                        "length and scale.");
}

// The unique index over exactly these columns of the table.
int keyIndex(const TableInfo& there, const std::vector<std::pair<int, int>>& columns,
             const std::string& key) {
  for (const IndexInfo& index : there.indexes) {
    if (!index.unique || index.parts.size() != columns.size()) continue;
    const bool same = std::all_of(index.parts.begin(), index.parts.end(), [&](const IndexPart& part) {
      const int id = there.columns[static_cast<std::size_t>(part.column)].id;
      return std::any_of(columns.begin(), columns.end(), [&](const auto& each) { return each.second == id; });
    });
    if (same) return index.id;
  }
  throw Error(1776, "There are no primary or candidate keys in the referenced table '" + there.name +
                        "' that match the referencing column list in the foreign key '" + key + "'.");
}

std::vector<std::string> referencedColumns(const TableInfo& there, const TableConstraint& constraint,
                                           const std::string& key) {
  if (!constraint.referencedColumns.empty()) return constraint.referencedColumns;
  std::vector<std::string> names;
  for (const IndexInfo& index : there.indexes)
    if (index.primaryKey)
      for (const IndexPart& part : index.parts)
        names.push_back(there.columns[static_cast<std::size_t>(part.column)].name);
  if (names.empty())
    throw Error(1773, "Foreign key '" + key + "' has implicit reference to object '" + there.name +
                          "' which does not have a primary key defined on it.");
  return names;
}

void checkActions(const TableInfo& table, const ForeignKeyInfo& key) {
  for (const auto& [here, there] : key.columns)
    for (const ColumnInfo& column : table.columns) {
      if (column.id != here || column.nullable) continue;
      for (const KeyAction action : {key.onDelete, key.onUpdate}) {
        if (action == KeyAction::SetNull)
          throw Error(1761,
                      "Cannot create the foreign key \"" + key.name +
                          "\" with the SET NULL referential action, because one or more referencing columns "
                          "are not nullable.");
        if (action == KeyAction::SetDefault && column.defaultText.empty())
          throw Error(1762, "Cannot create the foreign key \"" + key.name +
                                "\" with the SET DEFAULT referential action, because one or more referencing "
                                "not-nullable columns lack a default constraint.");
      }
    }
}

// Every table that a DELETE or UPDATE of a table goes on to, by one way only.
class Ways {
 public:
  Ways(const Change& change, const TableInfo& table, const ForeignKeyInfo& added) {
    for (const auto& [folded, each] : change.catalog().tables)
      for (const ForeignKeyInfo& key : each->foreignKeys) edges_.push_back({key.table, each->id, &key});
    edges_.push_back({added.table, table.id, &added});
  }
  bool unique() {
    for (const Edge& start : edges_)
      for (const bool update : {false, true}) {
        seen_.clear();
        if (!visit(start.from, update)) return false;
      }
    return true;
  }

 private:
  struct Edge {
    std::int64_t from, to;
    const ForeignKeyInfo* key;
  };
  bool visit(std::int64_t table, bool update) {
    if (!seen_.insert(table).second) return false;
    return std::all_of(edges_.begin(), edges_.end(), [&](const Edge& edge) {
      const KeyAction action = update ? edge.key->onUpdate : edge.key->onDelete;
      if (edge.from != table || action == KeyAction::NoAction) return true;
      return visit(edge.to, update || action != KeyAction::Cascade);
    });
  }
  std::vector<Edge> edges_;
  std::set<std::int64_t> seen_;
};

ForeignKeyInfo foreignKeyFrom(const Change& change, const TableInfo& table,
                              const TableConstraint& constraint) {
  ForeignKeyInfo key;
  key.name = constraint.name.empty() ? freeName(change, "FK", table) : constraint.name;
  const auto there = referencedTable(change, table, constraint, key.name);
  key.table = there->id;
  key.onDelete = constraint.onDelete;
  key.onUpdate = constraint.onUpdate;
  const std::vector<std::string> names = referencedColumns(*there, constraint, key.name);
  if (names.size() != constraint.columns.size())
    throw Error(8139,
                "Number of referencing columns in foreign key differs from number of referenced columns, "
                "table '" +
                    table.name + "'.");
  for (std::size_t i = 0; i < names.size(); ++i) {
    const ColumnInfo& here = keyColumn(table, constraint.columns[i].name, key.name, true);
    const ColumnInfo& other = keyColumn(*there, names[i], key.name, false);
    checkTypes(table, here, *there, other, key.name);
    key.columns.emplace_back(here.id, other.id);
  }
  key.index = keyIndex(*there, key.columns, key.name);
  checkActions(table, key);
  const bool acts = key.onDelete != KeyAction::NoAction || key.onUpdate != KeyAction::NoAction;
  if (acts && !Ways(change, table, key).unique())
    throw Error(1785,
                "Introducing FOREIGN KEY constraint '" + key.name + "' on table '" + table.name +
                    "' may cause cycles or multiple cascade paths. Specify ON DELETE NO ACTION or ON UPDATE "
                    "NO ACTION, or modify other FOREIGN KEY constraints.");
  return key;
}

void writeForeignKey(Change& change, const TableInfo& table, ForeignKeyInfo& key) {
  std::string list;
  for (const auto& [here, there] : key.columns)
    list += (list.empty() ? "[" : ",[") + std::to_string(here) + "," + std::to_string(there) + "]";
  const std::string text =
      "{\"table\":" + std::to_string(key.table) + ",\"index\":" + std::to_string(key.index) +
      ",\"delete\":" + std::to_string(static_cast<int>(key.onDelete)) +
      ",\"update\":" + std::to_string(static_cast<int>(key.onUpdate)) + ",\"columns\":[" + list + "]}";
  key.id = change.rows.addObject(key.name, "F", table.id, text, key.untrusted ? untrustedFlag : 0);
}

void setFlags(Change& change, std::int64_t id, int clear, int set) {
  lite::Stmt update(change.db,
                    atAlias("UPDATE @.zb_objects SET flags=(flags & ~?) | ? WHERE id=?", change.alias));
  update.bind(clear).bind(set).bind(id).run();
}

}  // namespace

bool isRule(const TableConstraint& constraint) {
  return constraint.kind == TableConstraint::Kind::Check ||
         constraint.kind == TableConstraint::Kind::ForeignKey;
}

// In the table as it stands in the change's catalog, which knows the constraint afterwards.
void addRule(Change& change, const TableInfo& table, const TableConstraint& constraint, bool checkRows) {
  TableInfo next = table;
  if (constraint.kind == TableConstraint::Kind::Check) {
    CheckInfo check = checkFrom(change, table, constraint);
    check.untrusted = !checkRows;
    if (change.context.verify) change.context.verify(change.database, next, &check, nullptr, checkRows);
    writeCheck(change, table, check);
    next.checks.push_back(std::move(check));
  } else {
    ForeignKeyInfo key = foreignKeyFrom(change, table, constraint);
    key.untrusted = !checkRows;
    if (checkRows && change.context.verify) change.context.verify(change.database, next, nullptr, &key, true);
    writeForeignKey(change, table, key);
    next.foreignKeys.push_back(std::move(key));
  }
  change.put(std::move(next));
}

// ALTER TABLE .. [WITH CHECK] CHECK | NOCHECK CONSTRAINT; no name: all.
void switchRules(Change& change, const TableInfo& table, const std::vector<std::string>& names, bool on,
                 bool checkRows) {
  const auto meant = [&](const std::string& name) {
    return names.empty() || std::any_of(names.begin(), names.end(), [&](const std::string& each) {
             return foldName(each) == foldName(name);
           });
  };
  const auto apply = [&](std::int64_t id) {
    if (on)
      setFlags(change, id, disabledFlag | (checkRows ? untrustedFlag : 0), 0);
    else
      setFlags(change, id, 0, disabledFlag | untrustedFlag);
  };
  std::size_t found = 0;
  for (const CheckInfo& check : table.checks) {
    if (!meant(check.name)) continue;
    if (on && checkRows && change.context.verify)
      change.context.verify(change.database, table, &check, nullptr, true);
    apply(check.id);
    ++found;
  }
  for (const ForeignKeyInfo& key : table.foreignKeys) {
    if (!meant(key.name)) continue;
    if (on && checkRows && change.context.verify)
      change.context.verify(change.database, table, nullptr, &key, true);
    apply(key.id);
    ++found;
  }
  if (found >= names.size()) return;
  for (const std::string& name : names)
    if (findObject(change.db, change.alias, name).parent != table.id)
      throw Error(4917, "Constraint '" + name + "' does not exist.");
  throw Error(11415, "Object '" + names.front() +
                         "' cannot be disabled or enabled. This action applies only to foreign key and check "
                         "constraints.");
}

void refuseReferenced(const Change& change, const TableInfo& table) {
  for (const auto& [folded, other] : change.catalog().tables)
    for (const ForeignKeyInfo& key : other->foreignKeys)
      if (key.table == table.id && other->id != table.id)
        throw Error(3726, "Could not drop object '" + table.name +
                              "' because it is referenced by a FOREIGN KEY constraint.");
}

const ForeignKeyInfo* referenceTo(const Change& change, const TableInfo& table, int index,
                                  std::string* from) {
  for (const auto& [folded, other] : change.catalog().tables)
    for (const ForeignKeyInfo& key : other->foreignKeys)
      if (key.table == table.id && key.index == index) {
        if (from) *from = other->name;
        return &key;
      }
  return nullptr;
}

const std::string* ruleOn(const TableInfo& table, int column, bool keysOnly) {
  for (const ForeignKeyInfo& key : table.foreignKeys)
    for (const auto& [here, there] : key.columns)
      if (here == column) return &key.name;
  if (keysOnly) return nullptr;
  for (const CheckInfo& check : table.checks)
    if (isIn(check.columns, column)) return &check.name;
  return nullptr;
}

}  // namespace engine::ddl
