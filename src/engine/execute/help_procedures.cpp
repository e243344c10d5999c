// sp_help, sp_helptext, sp_helpindex, sp_helpconstraint and sp_detach_db.
#include "engine/execute/ddl.h"
#include "engine/execute/procedure_call.h"

namespace engine {

namespace {

constexpr std::uint16_t lineLength = 255;

const std::string kind =
    "CONVERT(NVARCHAR(31), CASE o.type WHEN 'U' THEN 'user table' WHEN 'V' THEN 'view' WHEN 'TR' THEN "
    "'trigger' "
    "WHEN 'P' THEN 'stored procedure' WHEN 'PK' THEN 'primary key cns' WHEN 'UQ' THEN 'unique cns' WHEN 'F' "
    "THEN "
    "'foreign key cns' WHEN 'C' THEN 'check cns' ELSE 'default (maybe cns)' END)";

const std::string helpOnAll =
    "SELECT o.name AS Name, N'dbo' AS Owner, " + kind +
    " AS Object_type FROM sys.objects o ORDER BY 3 DESC, 1 "
    "SELECT t.name AS User_type, t.name AS Storage_type, CONVERT(INT, t.max_length) AS Length, CONVERT(INT, "
    "t.precision) AS Prec, CONVERT(INT, t.scale) AS Scale, 'yes' AS Nullable, 'none' AS Default_name, 'none' "
    "AS "
    "Rule_name, t.collation_name AS Collation FROM sys.types t WHERE t.is_user_defined=1";

// Of columns and parameters `c`: digits and places, of texts the characters.
constexpr const char* lengthAndDigits =
    "CONVERT(INT, c.max_length) AS Length, CONVERT(CHAR(5), CASE WHEN c.precision>0 THEN CONVERT(VARCHAR(5), "
    "c.precision) WHEN c.system_type_id IN (231,239) THEN CONVERT(VARCHAR(5), c.max_length/2) WHEN "
    "c.system_type_id IN (167,175,165,173) THEN CONVERT(VARCHAR(5), c.max_length) ELSE '' END) AS Prec, "
    "CONVERT(CHAR(5), CASE WHEN c.precision>0 THEN CONVERT(VARCHAR(5), c.scale) ELSE '' END) AS Scale";

const std::string helpOnOne =
    "SELECT o.name AS Name, N'dbo' AS Owner, " + kind +
    " AS Type, o.create_date AS Created_datetime FROM sys.objects o WHERE o.object_id=@id "
    "IF @type IN ('U','V') BEGIN SELECT c.name AS Column_name, TYPE_NAME(c.user_type_id) AS Type, 'no' AS "
    "Computed, " +
    lengthAndDigits +
    ", CASE WHEN c.is_nullable=1 THEN 'yes' ELSE 'no' END AS Nullable, CASE WHEN c.is_ansi_padded=1 THEN "
    "'no' ELSE "
    "'(n/a)' END AS TrimTrailingBlanks, CASE WHEN c.is_ansi_padded=0 THEN '(n/a)' WHEN c.is_nullable=1 THEN "
    "'yes' "
    "ELSE 'no' END AS FixedLenNullInSource, c.collation_name AS Collation FROM sys.columns c WHERE "
    "c.object_id=@id "
    "ORDER BY c.column_id "
    "IF EXISTS(SELECT 1 FROM sys.identity_columns c WHERE c.object_id=@id) SELECT c.name AS [Identity], "
    "c.seed_value AS "
    "Seed, c.increment_value AS Increment, 0 AS [Not For Replication] FROM sys.identity_columns c WHERE "
    "c.object_id=@id ELSE SELECT N'No identity column defined.' AS [Identity], CONVERT(BIGINT,NULL) AS Seed, "
    "CONVERT(BIGINT,NULL) AS Increment, CONVERT(INT,NULL) AS [Not For Replication] "
    "SELECT N'No rowguidcol column defined.' AS [RowGuidCol] END "
    "IF @type='U' SELECT N'PRIMARY' AS Data_located_on_filegroup "
    "IF @type='P' SELECT c.name AS Parameter_name, TYPE_NAME(c.user_type_id) AS Type, " +
    std::string(lengthAndDigits) +
    ", c.parameter_id AS Param_order, CASE WHEN c.system_type_id IN (175,167,239,231,35,99) THEN "
    "N'Turkish_CI_AS' END AS Collation FROM sys.parameters c WHERE c.object_id=@id ORDER BY c.parameter_id";

std::string keysOf(const TableInfo& table, const IndexInfo& index) {
  std::string keys;
  for (const IndexPart& part : index.parts)
    keys += (keys.empty() ? "" : ", ") + table.columns[static_cast<std::size_t>(part.column)].name +
            (part.descending ? "(-)" : "");
  return keys;
}

std::string describeIndex(const IndexInfo& index) {
  std::string text = index.clustered ? "clustered" : "nonclustered";
  if (index.unique) text += ", unique";
  if (index.primaryKey) text += ", primary key";
  if (index.uniqueConstraint) text += ", unique key";
  return text + " located on PRIMARY";
}

std::string columnNames(const TableInfo& table, const std::vector<int>& ids) {
  std::string names;
  for (const int id : ids)
    for (const ColumnInfo& column : table.columns)
      if (column.id == id) names += (names.empty() ? "" : ", ") + column.name;
  return names;
}

const char* actionWord(KeyAction action) {
  switch (action) {
    case KeyAction::Cascade:
      return "Cascade";
    case KeyAction::SetNull:
      return "Set Null";
    case KeyAction::SetDefault:
      return "Set Default";
    case KeyAction::NoAction:
      break;
  }
  return "No Action";
}

// The text in lines with their ends; a longer line goes on in the next row.
std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t characters = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool begins = (static_cast<unsigned char>(text[at]) & 0xC0) != 0x80;
    if (lines.empty() || lines.back().ends_with('\n') || (begins && characters == lineLength)) {
      lines.emplace_back();
      characters = 0;
    }
    lines.back() += text[at];
    characters += begins;
  }
  return lines;
}

}  // namespace

// The object that an argument names, in the procedure's database: 15250, 15009.
ObjectRow ProcedureCall::named(int index) {
  here();
  const std::vector<std::string> parts = nameParts(text(index));
  if (parts.size() == 3 && foldName(parts[0]) != foldName(database_))
    throw Error(
        15250,
        "The database name component of the object qualifier must be the name of the current database.");
  const ObjectRow object = findObject(store().handle(), store().attach(database_), parts.back());
  if (object.id == 0)
    throw Error(15009, "The object '" + text(index) + "' does not exist in database '" +
                           store().database(database_).name + "' or is invalid for this operation.");
  return object;
}

std::shared_ptr<const TableInfo> ProcedureCall::namedTable(int index) {
  const ObjectRow object = named(index);
  return store().catalog(database_)->tables.find(foldName(object.name));
}

void ProcedureCall::help() {
  if (!values_[0]) {
    std::vector<engine::Parameter> none;
    here();
    return query(helpOnAll, none);
  }
  const ObjectRow object = named(0);
  std::vector<engine::Parameter> variables = {{"@id", {TypeId::Int}, object.id},
                                              {"@type", {TypeId::Char, 2}, object.type}};
  query(helpOnOne, variables);
  if (object.type != "U") return;
  helpIndexes();
  helpConstraints();
}

void ProcedureCall::helpText() {
  const ObjectRow object = named(0);
  lite::Stmt row(store().handle(),
                 atAlias("SELECT CASE xtype WHEN 'C' THEN text->>'text' WHEN 'F' THEN '' ELSE text END FROM "
                         "@.zb_objects WHERE id=?",
                         store().attach(database_)));
  row.bind(object.id).step();
  const std::string whole = row.text(0);
  if (whole.empty()) throw Error(15197, "There is no text for object '" + text(0) + "'.");
  ResultSet set({column("Text", {TypeId::NVarChar, lineLength})});
  for (const std::string& line : linesOf(whole)) {
    set.beginRow();
    set.addText(line);
  }
  tell(std::move(set));
}

void ProcedureCall::helpIndexes() {
  const auto table = namedTable(0);
  if (!table || table->indexes.empty()) {
    if (executor_.resultsWanted())
      executor_.sink_->onInfo(Error(
          15472, "The object '" + text(0) + "' does not have any indexes, or you do not have permissions.",
          10));
    return;
  }
  constexpr std::uint16_t description = 210, keys = 2078;
  ResultSet set({column("index_name", nameType), column("index_description", {TypeId::VarChar, description}),
                 column("index_keys", {TypeId::NVarChar, keys})});
  for (const IndexInfo& index : table->indexes) {
    set.beginRow();
    set.addText(index.name);
    set.addText(describeIndex(index));
    set.addText(keysOf(*table, index));
  }
  tell(std::move(set));
}

void ProcedureCall::helpConstraints() {
  const auto table = namedTable(0);
  constexpr std::uint16_t kind = 146, keys = 2126, replication = 19, action = 11, status = 8;
  ResultSet set({column("constraint_type", {TypeId::NVarChar, kind}), column("constraint_name", nameType),
                 column("delete_action", {TypeId::NVarChar, action}),
                 column("update_action", {TypeId::NVarChar, action}),
                 column("status_enabled", {TypeId::VarChar, status}),
                 column("status_for_replication", {TypeId::VarChar, replication}),
                 column("constraint_keys", {TypeId::NVarChar, keys})});
  const auto add = [&](const std::vector<std::string>& cells) {
    set.beginRow();
    for (const std::string& cell : cells) set.addText(cell);
  };
  if (table) {
    for (const IndexInfo& index : table->indexes) {
      if (!index.primaryKey && !index.uniqueConstraint) continue;
      add({std::string(index.primaryKey ? "PRIMARY KEY" : "UNIQUE") +
               (index.clustered ? " (clustered)" : " (non-clustered)"),
           index.name, "(n/a)", "(n/a)", "(n/a)", "(n/a)", keysOf(*table, index)});
    }
    for (const ColumnInfo& of : table->columns)
      if (!of.defaultText.empty())
        add({"DEFAULT on column " + of.name, of.defaultName, "(n/a)", "(n/a)", "(n/a)", "(n/a)",
             "(" + of.defaultText + ")"});
    for (const CheckInfo& check : table->checks)
      add({check.columns.size() == 1 ? "CHECK on column " + columnNames(*table, check.columns)
                                     : "CHECK Table Level ",
           check.name, "(n/a)", "(n/a)", check.disabled ? "Disabled" : "Enabled", "Is_For_Replication",
           "(" + check.text + ")"});
    for (const ForeignKeyInfo& key : table->foreignKeys) {
      std::vector<int> columns;
      for (const auto& [mine, theirs] : key.columns) columns.push_back(mine);
      add({"FOREIGN KEY", key.name, actionWord(key.onDelete), actionWord(key.onUpdate),
           key.disabled ? "Disabled" : "Enabled", "Is_For_Replication", columnNames(*table, columns)});
    }
  }
  if (set.rowCount() > 0) return tell(std::move(set));
  if (executor_.resultsWanted())
    executor_.sink_->onInfo(
        Error(15469,
              "No constraints are defined on object '" + text(0) + "', or you do not have permissions.", 10));
}

void ProcedureCall::detach() {
  const std::string name = text(0);
  if (!store().databaseExists(name))
    throw Error(15010, "The database '" + name +
                           "' does not exist. Supply a valid database name. To see available "
                           "databases, use sys.databases.");
  rights().needProcedure(rights().serverRole("sysadmin") || rights().in(name).dbo);
  if (store().inTransaction())
    throw Error(15002, "The procedure 'sys.sp_detach_db' cannot be executed within a transaction.");
  ddl::detachDatabase(store(), executor_.context_, name);
}

}  // namespace engine
