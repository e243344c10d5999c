// INFORMATION_SCHEMA.
#include "engine/catalog/system_table_build.h"

namespace engine::system_table {

namespace {

const Type yesNo = sized(TypeId::VarChar, 3);
const Type no = sized(TypeId::VarChar, 2);
const Type rule = sized(TypeId::VarChar, 11);

// PREFIX_CATALOG, PREFIX_SCHEMA, PREFIX_NAME
template <std::size_t N>
Fields place(const char* const (&names)[N], const std::string& object) {
  return {{names[0], sysname, databaseName, true},
          {names[1], sysname, "'dbo'", true},
          {names[2], sysname, object}};
}
constexpr const char* tableNames[] = {"TABLE_CATALOG", "TABLE_SCHEMA", "TABLE_NAME"};
constexpr const char* constraintNames[] = {"CONSTRAINT_CATALOG", "CONSTRAINT_SCHEMA", "CONSTRAINT_NAME"};
constexpr const char* uniqueNames[] = {"UNIQUE_CONSTRAINT_CATALOG", "UNIQUE_CONSTRAINT_SCHEMA",
                                       "UNIQUE_CONSTRAINT_NAME"};
constexpr const char* specificNames[] = {"SPECIFIC_CATALOG", "SPECIFIC_SCHEMA", "SPECIFIC_NAME"};
constexpr const char* routineNames[] = {"ROUTINE_CATALOG", "ROUTINE_SCHEMA", "ROUTINE_NAME"};

Field nothing(const char* name, Type type) {
  return {name, type, "NULL", true};
}

// What is told of the type of a column or parameter `c`, in three pieces as the views order them.
std::string dataType() {
  return "(SELECT t.column1 FROM " + std::string(typeRows) + " t WHERE t.column3=c.xtype)";
}
Fields lengths() {
  return {
      {"CHARACTER_MAXIMUM_LENGTH", integer,
       "CASE WHEN c.xtype IN (175,167,173,165) THEN c.length WHEN c.xtype IN (239,231) THEN c.length/2 WHEN "
       "c.xtype=35 THEN 2147483647 WHEN c.xtype=99 THEN 1073741823 END",
       true},
      {"CHARACTER_OCTET_LENGTH", integer,
       "CASE WHEN c.xtype IN (175,167,173,165,239,231) THEN c.length WHEN c.xtype=35 THEN 2147483647 WHEN "
       "c.xtype=99 THEN 2147483646 END",
       true}};
}
Fields digits() {
  return {
      {"NUMERIC_PRECISION", tiny, "CASE WHEN c.xtype NOT IN (104,58,61) AND c.xprec>0 THEN c.xprec END",
       true},
      {"NUMERIC_PRECISION_RADIX", small,
       "CASE WHEN c.xtype IN (59,62) THEN 2 WHEN c.xtype NOT IN (104,58,61) AND c.xprec>0 THEN 10 END", true},
      {"NUMERIC_SCALE", integer, "CASE WHEN c.xtype NOT IN (104,58,61,59,62) AND c.xprec>0 THEN c.xscale END",
       true}};
}
const Field moment = {"DATETIME_PRECISION", small, "CASE c.xtype WHEN 61 THEN 3 WHEN 58 THEN 0 END", true};
constexpr const char* characterSet =
    "CASE WHEN c.xtype IN (239,231,99) THEN 'UNICODE' WHEN c.xtype IN (175,167,35) THEN 'cp1254' END";
constexpr const char* collation =
    "CASE WHEN c.xtype IN (175,167,239,231,35,99) THEN CASE c.collation WHEN '' THEN 'Turkish_CI_AS' ELSE "
    "c.collation END END";
Fields characterSetFields() {
  return {nothing("CHARACTER_SET_CATALOG", sysname),
          nothing("CHARACTER_SET_SCHEMA", sysname),
          {"CHARACTER_SET_NAME", sysname, characterSet, true}};
}
Fields collationFields() {
  return {nothing("COLLATION_CATALOG", sysname),
          nothing("COLLATION_SCHEMA", sysname),
          {"COLLATION_NAME", sysname, collation, true}};
}

SystemTable schemata() {
  return make("schemata", false,
              {{"CATALOG_NAME", sysname, databaseName, true},
               {"SCHEMA_NAME", sysname, "s.column1"},
               {"SCHEMA_OWNER", sysname, "s.column1", true},
               nothing("DEFAULT_CHARACTER_SET_CATALOG", sized(TypeId::VarChar, 6)),
               nothing("DEFAULT_CHARACTER_SET_SCHEMA", sized(TypeId::VarChar, 3)),
               {"DEFAULT_CHARACTER_SET_NAME", sysname, "'cp1254'", true}},
              "(VALUES('dbo'),('guest'),('INFORMATION_SCHEMA'),('sys')) s");
}

SystemTable tables() {
  return make(
      "tables", false,
      place(tableNames, "o.name") + Fields{{"TABLE_TYPE", sized(TypeId::VarChar, 10),
                                            "CASE o.xtype WHEN 'U' THEN 'BASE TABLE' ELSE 'VIEW' END", true}},
      "@.zb_objects o WHERE o.xtype IN ('U','V')");
}

SystemTable columns() {
  return make(
      "columns", false,
      place(tableNames, "o.name") +
          Fields{{"COLUMN_NAME", sysname, "c.name", true},
                 {"ORDINAL_POSITION", integer,
                  "(SELECT count(*) FROM @.zb_columns e WHERE e.table_id=c.table_id AND e.colid<=c.colid)",
                  true},
                 {"COLUMN_DEFAULT", chunk,
                  "(SELECT CASE WHEN d.text LIKE '(%)' THEN d.text ELSE '('||d.text||')' END FROM "
                  "@.zb_objects d WHERE c.default_id<>0 AND d.id=c.default_id)",
                  true},
                 {"IS_NULLABLE", yesNo, "CASE WHEN c.nullable THEN 'YES' ELSE 'NO' END", true},
                 {"DATA_TYPE", sysname, dataType(), true}} +
          lengths() + digits() + Fields{moment} + characterSetFields() + collationFields() +
          Fields{nothing("DOMAIN_CATALOG", sysname), nothing("DOMAIN_SCHEMA", sysname),
                 nothing("DOMAIN_NAME", sysname)},
      "@.zb_columns c JOIN @.zb_objects o ON o.id=c.table_id AND o.xtype IN ('U','V')");
}

SystemTable views() {
  return make("views", false,
              place(tableNames, "o.name") +
                  Fields{{"VIEW_DEFINITION", chunk, "CASE WHEN length(o.text)<=4000 THEN o.text END", true},
                         {"CHECK_OPTION", sized(TypeId::VarChar, 7),
                          "CASE WHEN o.flags&1 THEN 'CASCADE' ELSE 'NONE' END", true},
                         {"IS_UPDATABLE", no, "'NO'"}},
              "@.zb_objects o WHERE o.xtype='V'");
}

SystemTable tableConstraints() {
  return make("table_constraints", false,
              place(constraintNames, "o.name") + place(tableNames, "p.name") +
                  Fields{{"CONSTRAINT_TYPE", rule,
                          "CASE o.xtype WHEN 'PK' THEN 'PRIMARY KEY' WHEN 'UQ' THEN 'UNIQUE' WHEN 'F' THEN "
                          "'FOREIGN KEY' ELSE 'CHECK' END",
                          true},
                         {"IS_DEFERRABLE", no, "'NO'"},
                         {"INITIALLY_DEFERRED", no, "'NO'"}},
              "@.zb_objects o JOIN @.zb_objects p ON p.id=o.parent WHERE o.xtype IN ('PK','UQ','F','C')");
}

// Constraint, table, column and place of each column of a key or foreign key.
constexpr const char* keyColumns =
    "SELECT o.id AS constraint_id, o.name AS constraint_name, o.parent AS table_id, k.colid AS colid, "
    "k.keyno AS "
    "number FROM @.zb_objects o JOIN @.zb_indexes x ON x.object_id=o.id AND x.table_id=o.parent JOIN "
    "@.zb_index_columns k ON k.table_id=x.table_id AND k.indid=x.indid WHERE o.xtype IN ('PK','UQ') UNION "
    "ALL SELECT "
    "f.id, f.name, f.parent, j.value->>0, j.key+1 FROM (SELECT id, name, parent, text FROM @.zb_objects "
    "WHERE "
    "xtype='F' LIMIT -1 OFFSET 0) f, json_each(f.text, '$.columns') j";
constexpr const char* checkColumns =
    " UNION ALL SELECT f.id, f.name, f.parent, j.value, j.key+1 FROM (SELECT id, name, parent, text FROM "
    "@.zb_objects WHERE xtype='C' LIMIT -1 OFFSET 0) f, json_each(f.text, '$.columns') j";
constexpr const char* joinedColumns =
    " u JOIN @.zb_objects p ON p.id=u.table_id JOIN @.zb_columns c ON c.table_id=u.table_id AND "
    "c.colid=u.colid";

SystemTable keyColumnUsage() {
  return make("key_column_usage", false,
              place(constraintNames, "u.constraint_name") + place(tableNames, "p.name") +
                  Fields{{"COLUMN_NAME", sysname, "c.name", true}, {"ORDINAL_POSITION", integer, "u.number"}},
              std::string("(") + keyColumns + ")" + joinedColumns);
}

SystemTable constraintColumnUsage() {
  return make("constraint_column_usage", false,
              place(tableNames, "p.name") + Fields{{"COLUMN_NAME", sysname, "c.name", true}} +
                  place(constraintNames, "u.constraint_name"),
              std::string("(") + keyColumns + checkColumns + ")" + joinedColumns);
}

SystemTable constraintTableUsage() {
  return make("constraint_table_usage", false, place(tableNames, "p.name") + place(constraintNames, "o.name"),
              "@.zb_objects o JOIN @.zb_objects p ON p.id=o.parent WHERE o.xtype IN ('PK','UQ','F','C')");
}

std::string ruleWord(const char* key) {
  return std::string("CASE o.") + key +
         " WHEN 1 THEN 'CASCADE' WHEN 2 THEN 'SET NULL' WHEN 3 THEN 'SET DEFAULT' ELSE 'NO ACTION' END";
}

SystemTable referentialConstraints() {
  return make(
      "referential_constraints", false,
      place(constraintNames, "o.name") + place(uniqueNames, "x.name") +
          Fields{{"MATCH_OPTION", sized(TypeId::VarChar, 7), "'SIMPLE'", true},
                 {"UPDATE_RULE", rule, ruleWord("updated"), true},
                 {"DELETE_RULE", rule, ruleWord("deleted"), true}},
      "(SELECT name, text->>'table' AS there, text->>'index' AS indid, text->>'update' AS updated, "
      "text->>'delete' AS deleted FROM @.zb_objects WHERE xtype='F' LIMIT -1 OFFSET 0) o JOIN @.zb_indexes x "
      "ON x.table_id=o.there AND x.indid=o.indid");
}

SystemTable checkConstraints() {
  return make(
      "check_constraints", false,
      place(constraintNames, "o.name") +
          Fields{{"CHECK_CLAUSE", chunk, "'('||CASE WHEN o.xtype='C' THEN o.text->>'text' END||')'", true}},
      "@.zb_objects o WHERE o.xtype='C'");
}

const Type longWord = sized(TypeId::NVarChar, 30);
const Type shortWord = sized(TypeId::NVarChar, 10);
const Type middleWord = sized(TypeId::NVarChar, 20);

Fields none(std::initializer_list<std::pair<const char*, Type>> names) {
  Fields fields;
  for (const auto& [name, type] : names) fields.push_back(nothing(name, type));
  return fields;
}

SystemTable routines() {
  return make(
      "routines", false,
      place(specificNames, "o.name") + place(routineNames, "o.name") +
          Fields{{"ROUTINE_TYPE", middleWord, "'PROCEDURE'", true}} +
          none({{"MODULE_CATALOG", sysname},
                {"MODULE_SCHEMA", sysname},
                {"MODULE_NAME", sysname},
                {"UDT_CATALOG", sysname},
                {"UDT_SCHEMA", sysname},
                {"UDT_NAME", sysname},
                {"DATA_TYPE", sysname},
                {"CHARACTER_MAXIMUM_LENGTH", integer},
                {"CHARACTER_OCTET_LENGTH", integer},
                {"COLLATION_CATALOG", sysname},
                {"COLLATION_SCHEMA", sysname},
                {"COLLATION_NAME", sysname},
                {"CHARACTER_SET_CATALOG", sysname},
                {"CHARACTER_SET_SCHEMA", sysname},
                {"CHARACTER_SET_NAME", sysname},
                {"NUMERIC_PRECISION", tiny},
                {"NUMERIC_PRECISION_RADIX", small},
                {"NUMERIC_SCALE", integer},
                {"DATETIME_PRECISION", small},
                {"INTERVAL_TYPE", longWord},
                {"INTERVAL_PRECISION", small},
                {"TYPE_UDT_CATALOG", sysname},
                {"TYPE_UDT_SCHEMA", sysname},
                {"TYPE_UDT_NAME", sysname},
                {"SCOPE_CATALOG", sysname},
                {"SCOPE_SCHEMA", sysname},
                {"SCOPE_NAME", sysname},
                {"MAXIMUM_CARDINALITY", plain(TypeId::BigInt)},
                {"DTD_IDENTIFIER", sysname}}) +
          Fields{{"ROUTINE_BODY", longWord, "'SQL'", true},
                 {"ROUTINE_DEFINITION", chunk, "CASE WHEN length(o.text)<=4000 THEN o.text END", true},
                 nothing("EXTERNAL_NAME", sysname),
                 nothing("EXTERNAL_LANGUAGE", longWord),
                 nothing("PARAMETER_STYLE", longWord),
                 {"IS_DETERMINISTIC", shortWord, "'NO'", true},
                 {"SQL_DATA_ACCESS", longWord, "'MODIFIES'", true},
                 nothing("IS_NULL_CALL", shortWord),
                 nothing("SQL_PATH", sysname),
                 {"SCHEMA_LEVEL_ROUTINE", shortWord, "'YES'", true},
                 {"MAX_DYNAMIC_RESULT_SETS", small, "-1", true},
                 {"IS_USER_DEFINED_CAST", shortWord, "'NO'", true},
                 {"IS_IMPLICITLY_INVOCABLE", shortWord, "'NO'", true},
                 {"CREATED", datetime, "o.crdate"},
                 {"LAST_ALTERED", datetime, "o.crdate"}},
      "@.zb_objects o WHERE o.xtype='P'");
}

SystemTable parameters() {
  return make(
      "parameters", false,
      place(specificNames, "o.name") +
          Fields{{"ORDINAL_POSITION", integer, "c.colid"},
                 {"PARAMETER_MODE", shortWord, "CASE WHEN c.identity THEN 'INOUT' ELSE 'IN' END", true},
                 {"IS_RESULT", shortWord, "'NO'", true},
                 {"AS_LOCATOR", shortWord, "'NO'", true},
                 {"PARAMETER_NAME", sysname, "c.name", true},
                 {"DATA_TYPE", sysname, dataType(), true}} +
          lengths() + collationFields() + characterSetFields() + digits() + Fields{moment} +
          none({{"INTERVAL_TYPE", longWord},
                {"INTERVAL_PRECISION", small},
                {"USER_DEFINED_TYPE_CATALOG", sysname},
                {"USER_DEFINED_TYPE_SCHEMA", sysname},
                {"USER_DEFINED_TYPE_NAME", sysname},
                {"SCOPE_CATALOG", sysname},
                {"SCOPE_SCHEMA", sysname},
                {"SCOPE_NAME", sysname}}),
      "@.zb_columns c JOIN @.zb_objects o ON o.id=c.table_id AND o.xtype='P'");
}

}  // namespace

std::vector<SystemTable> buildInformationSchema() {
  std::vector<SystemTable> all;
  for (auto build :
       {schemata, tables, columns, views, tableConstraints, keyColumnUsage, constraintColumnUsage,
        constraintTableUsage, referentialConstraints, checkConstraints, routines, parameters})
    all.push_back(build());
  return all;
}

}  // namespace engine::system_table
