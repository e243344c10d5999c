// CREATE TABLE, SELECT INTO's table, and what tables, keys and indexes are made of.
#include <algorithm>
#include <set>

#include "engine/execute/ddl.h"

namespace engine {

namespace ddl {

namespace {

constexpr std::size_t mostColumns = 1024;
constexpr std::size_t mostKeyColumns = 16;

bool mayBeIdentity(const Type& type) {
  switch (type.id) {
    case TypeId::TinyInt:
    case TypeId::SmallInt:
    case TypeId::Int:
    case TypeId::BigInt:
      return true;
    case TypeId::Decimal:
      return type.scale == 0 && type.precision <= 18;
    default:
      return false;
  }
}

void checkIdentity(const ColumnInfo& column, bool explicitlyNullable, const std::string& table) {
  if (!mayBeIdentity(column.type))
    throw Error(2749,
                "Identity column '" + column.name +
                    "' must be of data type int, bigint, smallint, tinyint, or decimal or numeric with a "
                    "scale of 0, and constrained to be nonnullable.");
  if (explicitlyNullable)
    throw Error(8147, "Could not create IDENTITY attribute on nullable column '" + column.name +
                          "', table '" + table + "'.");
  if (!column.defaultText.empty())
    throw Error(1754, "Defaults cannot be created on columns with an IDENTITY attribute. Table '" + table +
                          "', column '" + column.name + "'");
  if (column.step == 0)
    throw Error(2751, "Identity column '" + column.name + "' contains invalid INCREMENT.");
}

void checkColumns(const std::vector<ColumnInfo>& columns, const std::string& table) {
  if (columns.size() > mostColumns)
    throw Error(1702, "CREATE TABLE failed because column '" + columns[mostColumns].name + "' in table '" +
                          table + "' exceeds the maximum of 1024 columns.");
  std::set<std::string> seen;
  int identities = 0;
  for (const auto& column : columns) {
    if (column.name.empty())
      throw Error(
          1038,
          "An object or column name is missing or empty. For SELECT INTO statements, verify each "
          "column has a name. For other statements, look for empty alias names. Aliases defined as \"\" "
          "or [] are not allowed. Change the alias to a valid name.");
    if (!seen.insert(foldName(column.name)).second)
      throw Error(2705, "Column names in each table must be unique. Column name '" + column.name +
                            "' in table '" + table + "' is specified more than once.");
    identities += column.identity;
  }
  if (identities > 1)
    throw Error(2744, "Multiple identity columns specified for table '" + table +
                          "'. Only one identity column per table is allowed.");
}

// Columns of a primary key allow no NULL when nothing was said about them.
void closeKeyColumns(std::vector<ColumnInfo>& columns, const std::vector<ColumnDefinition>& definitions,
                     const std::vector<TableConstraint>& keys, const std::string& table) {
  for (const auto& key : keys) {
    if (key.kind != TableConstraint::Kind::PrimaryKey) continue;
    for (const auto& part : key.columns)
      for (std::size_t i = 0; i < columns.size(); ++i) {
        if (foldName(columns[i].name) != foldName(part.name)) continue;
        if (definitions[i].nullable.value_or(false))
          throw Error(8111,
                      "Cannot define PRIMARY KEY constraint on nullable column in table '" + table + "'.");
        columns[i].nullable = false;
      }
  }
}

const IndexInfo* clusteredIndex(const TableInfo& table) {
  for (const auto& index : table.indexes)
    if (index.clustered) return &index;
  return nullptr;
}

std::string indexName(const TableInfo& table, int number) {
  return "zi_" + std::to_string(table.id) + "_" + std::to_string(number);
}

void makeIndex(Change& change, const TableInfo& table, const IndexInfo& index, const std::string& name,
               const std::string& keys, const std::string& where) {
  const std::string sql = std::string("CREATE ") + (index.unique ? "UNIQUE " : "") + "INDEX " +
                          change.at(name) + " ON " + lite::quoted(table.name) + "(" + keys + ")" + where;
  const int rc = sqlite3_exec(change.db, sql.c_str(), nullptr, nullptr, nullptr);
  if (rc == SQLITE_OK) return;
  if ((rc & 0xff) == SQLITE_CONSTRAINT)
    throw Error(1505,
                "The CREATE UNIQUE INDEX statement terminated because a duplicate key was found for the "
                "object name 'dbo." +
                    table.name + "' and the index name '" + index.name + "'.");
  lite::fail(change.db, rc);
}

}  // namespace

std::string storageClass(const Type& type) {
  if (isCharacter(type.id)) return "TEXT COLLATE TRCI";
  if (isApproximate(type.id)) return "REAL";
  if (isBinary(type.id) || (type.id == TypeId::Decimal && type.precision > 18)) return "BLOB";
  return "INTEGER";
}

std::string columnSql(const ColumnInfo& column) {
  return lite::quoted(column.name) + " " + storageClass(column.type) + (column.nullable ? "" : " NOT NULL");
}

ColumnInfo columnFrom(const ColumnDefinition& definition, const std::string& table) {
  ColumnInfo column;
  column.name = definition.name;
  column.type = definition.type;
  column.identity = definition.identity;
  column.nullable = definition.nullable.value_or(!definition.identity && !definition.primaryKey);
  column.seed = definition.seed;
  column.step = definition.step;
  column.defaultText = definition.defaultText;
  column.defaultName = definition.defaultName;
  column.collation = definition.collation;
  if (column.identity) checkIdentity(column, definition.nullable.value_or(false), table);
  if (definition.primaryKey && definition.nullable.value_or(false))
    throw Error(8111, "Cannot define PRIMARY KEY constraint on nullable column in table '" + table + "'.");
  return column;
}

std::vector<TableConstraint> columnKeys(const std::vector<ColumnDefinition>& columns) {
  std::vector<TableConstraint> keys;
  for (const auto& column : columns) {
    if (!column.primaryKey && !column.unique) continue;
    TableConstraint key;
    key.kind = column.primaryKey ? TableConstraint::Kind::PrimaryKey : TableConstraint::Kind::Unique;
    key.name = column.keyName;
    key.clustered = column.clustered;
    key.nonclustered = column.nonclustered;
    key.columns.push_back({column.name, false});
    keys.push_back(std::move(key));
  }
  return keys;
}

std::vector<IndexPart> indexParts(const std::vector<IndexColumn>& columns, const TableInfo& table,
                                  const std::string& index) {
  if (columns.size() > mostKeyColumns)
    throw Error(1904,
                "The index '" + index + "' on table '" + table.name + "' has " +
                    std::to_string(columns.size()) +
                    " column names in index key list. The maximum limit for index key column list is 16.");
  std::vector<IndexPart> parts;
  for (const auto& column : columns) {
    const int ordinal = table.columnIndex(column.name);
    if (ordinal < 0)
      throw Error(1911, "Column name '" + column.name + "' does not exist in the target table or view.");
    for (const auto& earlier : parts)
      if (earlier.column == ordinal)
        throw Error(1909, "Cannot use duplicate column names in index. Column name '" + column.name +
                              "' listed more than once.");
    if (isLongText(table.columns[static_cast<std::size_t>(ordinal)].type.id))
      throw Error(1919, "Column '" + column.name + "' in table '" + table.name +
                            "' is of a type that is invalid for use as a key column in an index.");
    parts.push_back({ordinal, column.descending});
  }
  return parts;
}

IndexInfo keyFrom(const TableConstraint& constraint, const TableInfo& table) {
  IndexInfo index;
  index.name = constraint.name;
  index.unique = true;
  index.primaryKey = constraint.kind == TableConstraint::Kind::PrimaryKey;
  index.uniqueConstraint = !index.primaryKey;
  index.parts = indexParts(constraint.columns, table, constraint.name);
  index.clustered =
      constraint.clustered || (index.primaryKey && !constraint.nonclustered && !clusteredIndex(table));
  return index;
}

namespace {

// Writes the key's rows and adds it to the table.
const IndexInfo& writeKey(Change& change, TableInfo& table, const IndexInfo& index) {
  if (index.primaryKey) {
    for (const auto& other : table.indexes)
      if (other.primaryKey && change.catalog().table(table.name))
        throw Error(1779, "Table '" + table.name + "' already has a primary key defined on it.");
      else if (other.primaryKey)
        throw Error(8110, "Cannot add multiple PRIMARY KEY constraints to table '" + table.name + "'.");
    for (const auto& part : index.parts)
      if (table.columns[static_cast<std::size_t>(part.column)].nullable)
        throw Error(8111,
                    "Cannot define PRIMARY KEY constraint on nullable column in table '" + table.name + "'.");
  }
  if (const IndexInfo* other = clusteredIndex(table); other && index.clustered)
    throw Error(1902, "Cannot create more than one clustered index on table '" + table.name +
                          "'. Drop the existing clustered index '" + other->name +
                          "' before creating another.");
  IndexInfo made = change.rows.addIndex(table, index);
  const auto behind = std::find_if(table.indexes.begin(), table.indexes.end(),
                                   [&](const IndexInfo& other) { return other.id > made.id; });
  return *table.indexes.insert(behind, std::move(made));
}

}  // namespace

void makeKey(Change& change, TableInfo& table, const IndexInfo& index) {
  const IndexInfo& made = writeKey(change, table, index);
  createIndex(change, table, made, made.id);
}

void createIndex(Change& change, const TableInfo& table, const IndexInfo& index, int number) {
  std::string keys, nullKeys, anyNull;
  for (const auto& part : index.parts) {
    const ColumnInfo& column = table.columns[static_cast<std::size_t>(part.column)];
    const std::string name = lite::quoted(column.name);
    const char* const comma = keys.empty() ? "" : ", ";
    keys.append(comma).append(name).append(part.descending ? " DESC" : "");
    const std::string kind = storageClass(column.type);
    // A value that no column of the class can hold stands for NULL.
    nullKeys.append(comma).append("ifnull(").append(name).append(kind == "BLOB" ? ", 0)" : ", x'')");
    if (isCharacter(column.type.id)) nullKeys += " COLLATE TRCI";
    if (column.nullable) anyNull += (anyNull.empty() ? "" : " OR ") + name + " IS NULL";
  }
  makeIndex(change, table, index, indexName(table, number), keys, "");
  // NULLs are equal to each other in a unique index of the dialect, but not in one of SQLite.
  if (index.unique && !anyNull.empty())
    makeIndex(change, table, index, indexName(table, number) + "_n", nullKeys, " WHERE " + anyNull);
}

void dropIndex(Change& change, const TableInfo& table, int number) {
  const std::string name = indexName(table, number);
  change.run("DROP INDEX IF EXISTS " + change.at(name));
  change.run("DROP INDEX IF EXISTS " + change.at(name + "_n"));
}

void createIdentityIndex(Change& change, const TableInfo& table) {
  const int identity = table.identityColumn();
  if (identity < 0) return;
  for (const auto& index : table.indexes)
    if (index.parts.front().column == identity) return;
  change.run("CREATE INDEX IF NOT EXISTS " + change.at("zi_" + std::to_string(table.id) + "_identity") +
             " ON " + lite::quoted(table.name) + "(" +
             lite::quoted(table.columns[static_cast<std::size_t>(identity)].name) + ")");
}

namespace {

void copyRows(Change& change, const TableInfo& table, const std::vector<std::string>& values) {
  std::string copy = "INSERT INTO " + change.at("zb_rebuilt") + " SELECT ";
  for (std::size_t i = 0; i < values.size(); ++i) copy += (i ? ", " : "") + values[i];
  copy += " FROM " + change.at(table.name);
  const int rc = sqlite3_exec(change.db, copy.c_str(), nullptr, nullptr, nullptr);
  if (rc == SQLITE_OK) return;
  const std::string message = sqlite3_errmsg(change.db);
  const auto dot = message.rfind('.');
  if ((rc & 0xff) != SQLITE_CONSTRAINT || dot == std::string::npos) lite::fail(change.db, rc);
  throw Error(515, "Cannot insert the value NULL into column '" + message.substr(dot + 1) + "', table '" +
                       change.database + ".dbo." + table.name +
                       "'; column does not allow nulls. UPDATE fails.");
}

// The indexes as they stand over the new columns.
std::vector<IndexInfo> indexesOver(const std::vector<ColumnInfo>& columns, const TableInfo& table) {
  std::vector<IndexInfo> indexes = table.indexes;
  for (auto& index : indexes)
    for (auto& part : index.parts) {
      const int id = table.columns[static_cast<std::size_t>(part.column)].id;
      const auto found =
          std::find_if(columns.begin(), columns.end(), [id](const auto& c) { return c.id == id; });
      part.column = static_cast<int>(found - columns.begin());
    }
  return indexes;
}

}  // namespace

void rebuild(Change& change, const TableInfo& table, const std::vector<ColumnInfo>& columns,
             const std::vector<std::string>& values) {
  std::string definitions;
  for (const auto& column : columns) definitions += (definitions.empty() ? "" : ", ") + columnSql(column);
  const auto make = [&](const std::string& name) {
    change.run("CREATE TABLE " + change.at(name) + "(" + definitions + ")");
  };
  if (hasRows(change, table)) {
    make("zb_rebuilt");
    copyRows(change, table, values);
    change.run("DROP TABLE " + change.at(table.name));
    change.run("ALTER TABLE " + change.at("zb_rebuilt") + " RENAME TO " + lite::quoted(table.name));
  } else {
    change.run("DROP TABLE " + change.at(table.name));
    make(table.name);
  }
  TableInfo next = table;
  next.columns = columns;
  next.indexes = indexesOver(columns, table);
  for (const auto& index : next.indexes) createIndex(change, next, index, index.id);
  createIdentityIndex(change, next);
}

bool hasRows(const Change& change, const TableInfo& table) {
  lite::Stmt any(change.db, "SELECT 1 FROM " + change.at(table.name) + " LIMIT 1");
  return any.step();
}

namespace {

// The table's rows; what SQLite knows of it comes last (makeTable), see ObjectWriter.
TableInfo writeTable(Change& change, const std::string& name, std::vector<ColumnInfo> columns) {
  checkObjectName(name, change.database);
  checkColumns(columns, name);
  TableInfo table;
  table.name = name;
  const int nextColumn = static_cast<int>(columns.size()) + 1;
  table.id = change.rows.addObject(name, "U", 0, {}, 0, nextColumn);
  forgetIdentity(change.store, change.database, table.id);
  change.rows.addColumns(table, columns, 1);
  table.columns = std::move(columns);
  return table;
}

void makeTable(Change& change, TableInfo table) {
  std::string definitions;
  for (const auto& column : table.columns) {
    definitions += (definitions.empty() ? "" : ", ") + columnSql(column);
  }
  change.run("CREATE TABLE " + change.at(table.name) + "(" + definitions + ")");
  for (const auto& index : table.indexes) createIndex(change, table, index, index.id);
  createIdentityIndex(change, table);
  change.put(std::move(table));
}

}  // namespace

void run(Store& store, SessionContext& context, const CreateTableStatement& statement) {
  requireOwner(statement.name);
  createTable(store, context, databaseOf(statement.name, context), statement.name.object, statement);
}

void createTable(Store& store, SessionContext& context, const std::string& database, const std::string& name,
                 const CreateTableStatement& statement) {
  Change change(store, context, database);
  std::vector<ColumnInfo> columns;
  for (const auto& definition : statement.columns) columns.push_back(columnFrom(definition, name));
  std::vector<TableConstraint> keys = columnKeys(statement.columns);
  for (const auto& constraint : statement.constraints) {
    if (isRule(constraint)) continue;
    if (constraint.kind == TableConstraint::Kind::Default) refuseConstruct("DEFAULT ... FOR in CREATE TABLE");
    TableConstraint key;
    key.kind = constraint.kind;
    key.name = constraint.name;
    key.clustered = constraint.clustered;
    key.nonclustered = constraint.nonclustered;
    key.columns = constraint.columns;
    keys.push_back(std::move(key));
  }
  closeKeyColumns(columns, statement.columns, keys, name);
  // An explicitly clustered key decides before a primary key takes the place by default.
  std::stable_sort(keys.begin(), keys.end(),
                   [](const auto& a, const auto& b) { return a.clustered && !b.clustered; });
  TableInfo table = writeTable(change, name, std::move(columns));
  for (const auto& key : keys) writeKey(change, table, keyFrom(key, table));
  makeTable(change, std::move(table));
  // As documented, a temporary table may write foreign keys, and nobody enforces them.
  const auto isKept = [&](const TableConstraint& constraint) {
    return isRule(constraint) &&
           (database != temporaryDatabase || constraint.kind != TableConstraint::Kind::ForeignKey);
  };
  for (const auto& constraint : statement.constraints)
    if (isKept(constraint)) addRule(change, TableInfo(*change.catalog().table(name)), constraint, true);
  change.finish();
}

}  // namespace ddl

void createTableVariable(Store& store, SessionContext& context, const CreateTableStatement& statement,
                         const std::string& name) {
  ddl::createTable(store, context, temporaryDatabase, name, statement);
}

void createTableFrom(Store& store, const std::string& database, const std::string& name,
                     const std::vector<ColumnInfo>& columns) {
  SessionContext context;
  context.database = database;
  ddl::Change change(store, context, database);
  std::vector<ColumnInfo> plain = columns;
  for (auto& column : plain) {
    column.defaultText.clear();
    column.defaultName.clear();
    if (column.identity) column.nullable = false;
  }
  ddl::makeTable(change, ddl::writeTable(change, name, std::move(plain)));
  change.finish();
}

}  // namespace engine
