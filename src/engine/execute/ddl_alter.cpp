// ALTER TABLE.
#include <algorithm>

#include "engine/execute/ddl.h"
#include "engine/language.h"
#include "engine/value.h"

namespace engine::ddl {

namespace {

enum class Effort : std::uint8_t {
  Nothing,  // no value changes and none can fail
  Check,    // values stay, but one may not fit
  Convert,  // values change in place
  Rebuild,  // SQLite's declaration changes
};

bool sameLengthFamily(TypeId id) {
  return isCharacter(id) || isBinary(id);
}

bool widens(const Type& from, const Type& to) {
  if (from == to) return true;
  if (isInteger(from.id) && isInteger(to.id) && from.id != TypeId::Bit)
    return storageLength(from) <= storageLength(to) && to.id != TypeId::Bit;
  if (from.id != to.id) return false;
  if (sameLengthFamily(from.id)) return from.length <= to.length;
  return from.id == TypeId::Decimal && from.scale == to.scale && from.precision <= to.precision &&
         storageClass(from) == storageClass(to);
}

Effort effortOf(const ColumnInfo& from, const ColumnInfo& to) {
  if (from.nullable != to.nullable || storageClass(from.type) != storageClass(to.type))
    return Effort::Rebuild;
  if (widens(from.type, to.type)) return Effort::Nothing;
  const bool keepsValues = (isFixedText(from.type.id) && from.type.id == to.type.id) ||
                           (isInteger(from.type.id) && isInteger(to.type.id) && to.type.id != TypeId::Bit);
  return keepsValues ? Effort::Check : Effort::Convert;
}

const ColumnInfo& columnOf(const TableInfo& table, const std::string& name, const char* action) {
  const int ordinal = table.columnIndex(name);
  if (ordinal < 0)
    throw Error(4924, std::string("ALTER TABLE ") + action + " failed because column '" + name +
                          "' does not exist in table '" + table.name + "'.");
  return table.columns[static_cast<std::size_t>(ordinal)];
}

[[noreturn]] void refuseDependent(const std::string& kind, const std::string& object,
                                  const std::string& column, const char* action) {
  throw Error(4922, "The " + kind + " '" + object + "' is dependent on column '" + column +
                        "'.\nALTER TABLE " + action + " " + column +
                        " failed because one or more objects access this column.");
}

const IndexInfo* indexOn(const TableInfo& table, const ColumnInfo& column) {
  for (const auto& index : table.indexes)
    for (const auto& part : index.parts)
      if (table.columns[static_cast<std::size_t>(part.column)].id == column.id) return &index;
  return nullptr;
}

void checkAlterDependents(const TableInfo& table, const ColumnInfo& from, const ColumnInfo& to) {
  const bool sameKind = from.type.id == to.type.id;
  if (const IndexInfo* index = indexOn(table, from)) {
    const bool harmless = from.nullable == to.nullable &&
                          (from.type == to.type || (sameKind && sameLengthFamily(to.type.id) &&
                                                    widens(from.type, to.type) && !index->primaryKey));
    if (!harmless)
      refuseDependent(index->primaryKey || index->uniqueConstraint ? "object" : "index", index->name,
                      from.name, "ALTER COLUMN");
  }
  const bool longer = sameKind && sameLengthFamily(to.type.id);
  if (const std::string* rule = ruleOn(table, from.id, longer); rule && !(from.type == to.type))
    refuseDependent("object", *rule, from.name, "ALTER COLUMN");
  if (!from.defaultText.empty() && !sameKind)
    refuseDependent("object", from.defaultName, from.name, "ALTER COLUMN");
}

std::vector<std::string> columnNames(const TableInfo& table) {
  std::vector<std::string> names;
  for (const auto& column : table.columns) names.push_back(lite::quoted(column.name));
  return names;
}

void convertRows(Change& change, const TableInfo& table, std::size_t ordinal, const ColumnInfo& to) {
  const ColumnInfo& from = table.columns[ordinal];
  const std::string name = lite::quoted(from.name);
  const std::string value = convertSql(name, from.type, to.type, 0, true);
  switch (effortOf(from, to)) {
    case Effort::Nothing:
      return;
    case Effort::Check:
      change.run("SELECT count(" + value + ") FROM " + change.at(table.name) + " WHERE " + name +
                 " IS NOT NULL");
      return;
    case Effort::Convert:
      change.run("UPDATE " + change.at(table.name) + " SET " + name + "=" + value + " WHERE " + name +
                 " IS NOT NULL");
      return;
    case Effort::Rebuild: {
      std::vector<ColumnInfo> columns = table.columns;
      columns[ordinal] = to;
      std::vector<std::string> values = columnNames(table);
      values[ordinal] = value;
      rebuild(change, table, columns, values);
      return;
    }
  }
}

void alterColumn(Change& change, const TableInfo& table, const ColumnDefinition& definition) {
  const ColumnInfo& from = columnOf(table, definition.name, "ALTER COLUMN");
  ColumnInfo to = from;
  to.type = definition.type;
  to.nullable = definition.nullable.value_or(!from.identity);
  if (!definition.collation.empty()) to.collation = definition.collation;
  if (from.identity && to.nullable)
    throw Error(8147, "Could not create IDENTITY attribute on nullable column '" + from.name + "', table '" +
                          table.name + "'.");
  checkAlterDependents(table, from, to);
  convertRows(change, table, static_cast<std::size_t>(table.columnIndex(from.name)), to);
  setColumnType(change.db, change.alias, table.id, to);
}

// ---- ADD ----

const Expr* literalOf(const Expr& expression, bool& negative) {
  const Expr* inner = &expression;
  while (inner->kind == Expr::Kind::Unary &&
         (inner->unary == UnaryOp::Minus || inner->unary == UnaryOp::Plus) && inner->left) {
    negative ^= inner->unary == UnaryOp::Minus;
    inner = inner->left.get();
  }
  return inner->kind == Expr::Kind::Literal ? inner : nullptr;
}

Datum negated(const Datum& value) {
  if (value.isInteger()) return {-value.integer()};
  if (value.isReal()) return {-value.real()};
  return value;
}

Datum defaultValue(const Change& change, const ColumnInfo& column) {
  const ExprPtr parsed = parseExpression(column.defaultText);
  bool negative = false;
  const Expr* literal = literalOf(*parsed, negative);
  if (literal) {
    const Type type = literalType(literal->literal);
    const Datum value = literalDatum(literal->literal);
    if (!negative || value.isInteger() || value.isReal())
      return convert(negative ? negated(value) : value, type, column.type, 0, true);
  }
  if (change.context.evaluate) return change.context.evaluate(*parsed, column.type);
  refuseConstruct("DEFAULT " + column.defaultText + " for the rows of a table");
}

std::string datumSql(const Datum& value) {
  if (value.isInteger()) return std::to_string(value.integer());
  if (value.isText()) return lite::literal(value.text());
  if (value.isNull()) return "NULL";
  char buffer[40];
  if (value.isReal()) {
    std::snprintf(buffer, sizeof buffer, "%.17g", value.real());
    return buffer;
  }
  std::string hex = "x'";
  for (unsigned char byte : value.bytes()) {
    std::snprintf(buffer, sizeof buffer, "%02x", byte);
    hex += buffer;
  }
  return hex + "'";
}

[[noreturn]] void refuseEmptyColumn(const std::string& column, const std::string& table) {
  throw Error(
      4901,
      "ALTER TABLE only allows columns to be added that can contain nulls, or have a DEFAULT definition "
      "specified, or the column being added is an identity or timestamp column, or "
      "alternatively if none of the previous conditions are satisfied the table must be empty to allow "
      "addition "
      "of this column. Column '" +
          column + "' cannot be added to non-empty table '" + table +
          "' because it does not satisfy these conditions.");
}

void addIdentityColumn(Change& change, const TableInfo& table, const ColumnInfo& column) {
  std::vector<ColumnInfo> columns = table.columns;
  columns.push_back(column);
  std::vector<std::string> values = columnNames(table);
  values.push_back(std::to_string(column.seed) + "+" + std::to_string(column.step) +
                   "*(row_number() OVER (ORDER BY rowid)-1)");
  rebuild(change, table, columns, values);
  lite::Stmt count(change.db, "SELECT count(*) FROM " + change.at(table.name));
  count.step();
  const std::int64_t rows = count.integer(0);
  if (rows == 0) return;
  lite::Stmt last(change.db, atAlias("INSERT OR REPLACE INTO @.zb_identity VALUES(?, ?)", change.alias));
  last.bind(table.id).bind(column.seed + column.step * (rows - 1)).run();
}

void addOneColumn(Change& change, const TableInfo& table, const ColumnDefinition& definition) {
  if (table.columnIndex(definition.name) >= 0)
    throw Error(2705, "Column names in each table must be unique. Column name '" + definition.name +
                          "' in table '" + table.name + "' is specified more than once.");
  ColumnInfo column = columnFrom(definition, table.name);
  if (column.identity && table.identityColumn() >= 0)
    throw Error(2744, "Multiple identity columns specified for table '" + table.name +
                          "'. Only one identity column per table is allowed.");
  std::vector<ColumnInfo> added = {column};
  change.rows.addColumns(table, added);
  column = added.front();
  if (column.identity) {
    addIdentityColumn(change, table, column);
    return;
  }
  // Making an empty table anew is cheaper: SQLite reads the whole schema again after its own ADD COLUMN.
  if (!hasRows(change, table)) {
    std::vector<ColumnInfo> columns = table.columns;
    columns.push_back(column);
    rebuild(change, table, columns, std::vector<std::string>(columns.size(), "NULL"));
    return;
  }
  std::string fill;
  if (!column.nullable) {
    if (column.defaultText.empty()) refuseEmptyColumn(column.name, table.name);
    const Datum value = defaultValue(change, column);
    if (value.isNull()) refuseEmptyColumn(column.name, table.name);
    fill = " DEFAULT " + datumSql(value);
  }
  change.run("ALTER TABLE " + change.at(table.name) + " ADD COLUMN " + columnSql(column) + fill);
  if (!column.nullable || !definition.withValues || column.defaultText.empty()) return;
  change.run("UPDATE " + change.at(table.name) + " SET " + lite::quoted(column.name) + "=" +
             datumSql(defaultValue(change, column)));
}

void addDefault(Change& change, const TableInfo& table, const TableConstraint& constraint) {
  if (table.columnIndex(constraint.forColumn) < 0)
    throw Error(1752, "Column '" + constraint.forColumn + "' in table '" + table.name +
                          "' is invalid for creating a default constraint.");
  const ColumnInfo& column = columnOf(table, constraint.forColumn, "ADD CONSTRAINT");
  if (!column.defaultText.empty()) throw Error(1781, "Column already has a DEFAULT bound to it.");
  if (column.identity)
    throw Error(1754, "Defaults cannot be created on columns with an IDENTITY attribute. Table '" +
                          table.name + "', column '" + column.name + "'");
  const std::string name = constraint.name.empty() ? defaultNameOf(table, column) : constraint.name;
  const auto id = change.rows.addObject(name, "D", table.id, constraint.text, column.id);
  lite::Stmt update(
      change.db, atAlias("UPDATE @.zb_columns SET default_id=? WHERE table_id=? AND colid=?", change.alias));
  update.bind(id).bind(table.id).bind(column.id).run();
}

void add(Change& change, const AlterTableStatement& statement) {
  auto table = change.table(statement.name);
  const auto reread = [&] {
    change.reload(table->id, table->name);
    table = change.table(statement.name);
  };
  for (const auto& definition : statement.columns) {
    addOneColumn(change, *table, definition);
    reread();
  }
  for (const auto& key : columnKeys(statement.columns)) {
    TableInfo next = *table;
    makeKey(change, next, keyFrom(key, next));
    reread();
  }
  for (const auto& constraint : statement.constraints) {
    TableInfo next = *table;
    if (isRule(constraint))
      addRule(change, *table, constraint, statement.checkRows);
    else if (constraint.kind == TableConstraint::Kind::Default)
      addDefault(change, *table, constraint);
    else
      makeKey(change, next, keyFrom(constraint, next));
    reread();
  }
}

// ---- DROP ----

void dropColumn(Change& change, const TableInfo& table, const std::string& name) {
  const ColumnInfo& column = columnOf(table, name, "DROP COLUMN");
  if (const IndexInfo* index = indexOn(table, column))
    refuseDependent(index->primaryKey || index->uniqueConstraint ? "object" : "index", index->name,
                    column.name, "DROP COLUMN");
  if (!column.defaultText.empty()) refuseDependent("object", column.defaultName, column.name, "DROP COLUMN");
  if (const std::string* rule = ruleOn(table, column.id))
    refuseDependent("object", *rule, column.name, "DROP COLUMN");
  if (table.columns.size() == 1)
    throw Error(4923, "ALTER TABLE DROP COLUMN failed because '" + name +
                          "' is the only data column in table '" + table.name +
                          "'. A table must have at least one data column.");
  if (column.identity) {
    change.run("DROP INDEX IF EXISTS " + change.at("zi_" + std::to_string(table.id) + "_identity"));
    change.run(atAlias("DELETE FROM @.zb_identity WHERE table_id=", change.alias) + std::to_string(table.id));
  }
  if (hasRows(change, table)) {
    change.run("ALTER TABLE " + change.at(table.name) + " DROP COLUMN " + lite::quoted(column.name));
  } else {
    std::vector<ColumnInfo> columns = table.columns;
    columns.erase(columns.begin() + table.columnIndex(name));
    rebuild(change, table, columns, std::vector<std::string>(columns.size(), "NULL"));
  }
  lite::Stmt remove(change.db,
                    atAlias("DELETE FROM @.zb_columns WHERE table_id=? AND colid=?", change.alias));
  remove.bind(table.id).bind(column.id).run();
}

void dropConstraint(Change& change, const TableInfo& table, const std::string& name) {
  const ObjectRow object = findObject(change.db, change.alias, name);
  const bool key = object.type == "PK" || object.type == "UQ";
  const bool rule = object.type == "F" || object.type == "C";
  if (object.id == 0 || object.parent != table.id || !(key || rule || object.type == "D"))
    throw Error(3728, "'" + name + "' is not a constraint.");
  for (const auto& index : table.indexes) {
    if (!key || foldName(index.name) != foldName(name)) continue;
    std::string from;
    if (const ForeignKeyInfo* reference = referenceTo(change, table, index.id, &from))
      throw Error(3725, "The constraint '" + index.name + "' is being referenced by table '" + from +
                            "', foreign key constraint '" + reference->name + "'.");
    dropIndex(change, table, index.id);
    const std::string where =
        " WHERE table_id=" + std::to_string(table.id) + " AND indid=" + std::to_string(index.id);
    change.run(atAlias("DELETE FROM @.zb_indexes", change.alias) + where);
    change.run(atAlias("DELETE FROM @.zb_index_columns", change.alias) + where);
  }
  const std::string number = std::to_string(object.id);
  change.run(atAlias("UPDATE @.zb_columns SET default_id=0 WHERE table_id=", change.alias) +
             std::to_string(table.id) + " AND default_id=" + number);
  change.run(atAlias("DELETE FROM @.zb_objects WHERE id=", change.alias) + number);
}

}  // namespace

void run(Store& store, SessionContext& context, const AlterTableStatement& statement) {
  Change change(store, context, databaseOf(statement.name, context));
  if (statement.action == AlterTableStatement::Action::Add) {
    add(change, statement);
    change.finish();
    return;
  }
  if (statement.action == AlterTableStatement::Action::AlterColumn) {
    const auto table = change.table(statement.name);
    alterColumn(change, *table, statement.columns.front());
    change.reload(table->id, table->name);
  }
  if (statement.action == AlterTableStatement::Action::EnableConstraint ||
      statement.action == AlterTableStatement::Action::DisableConstraint) {
    const auto table = change.table(statement.name);
    switchRules(change, *table, statement.dropped,
                statement.action == AlterTableStatement::Action::EnableConstraint, statement.checkRows);
    change.reload(table->id, table->name);
    change.finish();
    return;
  }
  for (const auto& name : statement.dropped) {
    const auto table = change.table(statement.name);
    if (statement.action == AlterTableStatement::Action::DropColumn)
      dropColumn(change, *table, name);
    else
      dropConstraint(change, *table, name);
    change.reload(table->id, table->name);
    createIdentityIndex(change, *change.table(statement.name));
  }
  change.finish();
}

}  // namespace engine::ddl
