// The views of sys over one database.
#include "engine/catalog/system_table_build.h"

namespace engine::system_table {

namespace {

constexpr const char* noRows = "(SELECT 1) WHERE 0";

// What stands in the text of a constraint of its kind; of other objects it is no JSON.
std::string kept(const char* xtype, const char* key) {
  return std::string("CASE WHEN o.xtype='") + xtype + "' THEN o.text->>'" + key + "' END";
}

std::string actionWord(const char* key) {
  return "CASE " + kept("F", key) +
         " WHEN 0 THEN 'NO_ACTION' WHEN 1 THEN 'CASCADE' WHEN 2 THEN 'SET_NULL' WHEN 3 THEN 'SET_DEFAULT' "
         "END";
}

// As generatedName() makes them.
constexpr const char* systemNamed = "o.name GLOB '[PUDFC][KQF]__*__'||replace('dddddddd', 'd', '[0-9A-F]')";
constexpr const char* inBrackets = "CASE WHEN o.text LIKE '(%)' THEN o.text ELSE '('||o.text||')' END";

// The columns that every view of objects begins with; `o` is zb_objects.
const Fields& objectFields() {
  static const Fields fields = {
      {"name", sysname, "o.name"},
      {"object_id", integer, "o.id"},
      {"principal_id", integer, "NULL", true},
      {"schema_id", integer, "1"},
      {"parent_object_id", integer, "o.parent"},
      {"type", code, "o.xtype", true},
      {"type_desc", word,
       "CASE o.xtype WHEN 'U' THEN 'USER_TABLE' WHEN 'V' THEN 'VIEW' WHEN 'TR' THEN 'SQL_TRIGGER' WHEN 'PK' "
       "THEN 'PRIMARY_KEY_CONSTRAINT' WHEN 'UQ' THEN 'UNIQUE_CONSTRAINT' WHEN 'D' THEN 'DEFAULT_CONSTRAINT' "
       "WHEN 'F' THEN 'FOREIGN_KEY_CONSTRAINT' WHEN 'C' THEN 'CHECK_CONSTRAINT' WHEN 'P' THEN "
       "'SQL_STORED_PROCEDURE' END",
       true},
      {"create_date", datetime, "o.crdate"},
      {"modify_date", datetime, "o.crdate"},
      {"is_ms_shipped", bit, "0"},
      {"is_published", bit, "0"},
      {"is_schema_published", bit, "0"}};
  return fields;
}

SystemTable ofObjects(const char* name, const char* xtypes, const Fields& more = {}) {
  return make(
      name, false, objectFields() + more,
      std::string("@.zb_objects o") + (*xtypes ? std::string(" WHERE o.xtype IN (") + xtypes + ")" : ""));
}

SystemTable tables() {
  return ofObjects("tables", "'U'",
                   {{"lob_data_space_id", integer, "0"},
                    {"filestream_data_space_id", integer, "NULL", true},
                    {"max_column_id_used", integer, "o.next_column-1"},
                    {"lock_on_bulk_load", bit, "0"},
                    {"uses_ansi_nulls", bit, "1", true},
                    {"is_replicated", bit, "0", true},
                    {"has_replication_filter", bit, "0", true},
                    {"is_merge_published", bit, "0", true},
                    {"is_sync_tran_subscribed", bit, "0", true},
                    {"has_unchecked_assembly_data", bit, "0"},
                    {"text_in_row_limit", integer, "0", true},
                    {"large_value_types_out_of_row", bit, "0", true},
                    {"is_tracked_by_cdc", bit, "0", true},
                    {"lock_escalation", tiny, "0", true},
                    {"lock_escalation_desc", word, "'TABLE'", true}});
}

SystemTable views() {
  return ofObjects("views", "'V'",
                   {{"is_replicated", bit, "0", true},
                    {"has_replication_filter", bit, "0", true},
                    {"has_opaque_metadata", bit, "0"},
                    {"has_unchecked_assembly_data", bit, "0"},
                    {"with_check_option", bit, "o.flags&1"},
                    {"is_date_correlation_view", bit, "0"}});
}

SystemTable procedures() {
  return ofObjects("procedures", "'P'",
                   {{"is_auto_executed", bit, "0"},
                    {"is_execution_replicated", bit, "0", true},
                    {"is_repl_serializable_only", bit, "0", true},
                    {"skips_repl_constraints", bit, "0", true}});
}

SystemTable triggers() {
  return make("triggers", false,
              {{"name", sysname, "o.name"},
               {"object_id", integer, "o.id"},
               {"parent_class", tiny, "1"},
               {"parent_class_desc", word, "'OBJECT_OR_COLUMN'", true},
               {"parent_id", integer, "o.parent"},
               {"type", code, "'TR'"},
               {"type_desc", word, "'SQL_TRIGGER'", true},
               {"create_date", datetime, "o.crdate"},
               {"modify_date", datetime, "o.crdate"},
               {"is_ms_shipped", bit, "0"},
               {"is_disabled", bit, "0"},
               {"is_not_for_replication", bit, "0"},
               {"is_instead_of_trigger", bit, "0"}},
              "@.zb_objects o WHERE o.xtype='TR'");
}

SystemTable modules() {
  return make("sql_modules", false,
              {{"object_id", integer, "o.id"},
               {"definition", definition, "o.text", true},
               {"uses_ansi_nulls", bit, "1", true},
               {"uses_quoted_identifier", bit, "1", true},
               {"is_schema_bound", bit, "0", true},
               {"uses_database_collation", bit, "0", true},
               {"is_recompiled", bit, "0", true},
               {"null_on_null_input", bit, "0", true},
               {"execute_as_principal_id", integer, "NULL", true}},
              "@.zb_objects o WHERE o.xtype IN ('V','TR','P')");
}

// ---- columns; `c` is zb_columns ----

const Fields& columnFields() {
  static const Fields fields = {
      {"object_id", integer, "c.table_id"},
      {"name", sysname, "c.name", true},
      {"column_id", integer, "c.colid"},
      {"system_type_id", tiny, "c.xtype"},
      {"user_type_id", integer, "c.xtype"},
      {"max_length", small, "c.length"},
      {"precision", tiny, "c.xprec"},
      {"scale", tiny, "c.xscale"},
      {"collation_name", sysname,
       "CASE WHEN c.xtype IN (175,167,239,231,35,99) THEN CASE c.collation WHEN '' THEN 'Turkish_CI_AS' ELSE "
       "c.collation END END",
       true},
      {"is_nullable", bit, "c.nullable", true},
      {"is_ansi_padded", bit, "c.xtype IN (175,167,239,231,173,165)"},
      {"is_rowguidcol", bit, "0"},
      {"is_identity", bit, "c.identity"},
      {"is_computed", bit, "0"},
      {"is_filestream", bit, "0"},
      {"is_replicated", bit, "0", true},
      {"is_non_sql_subscribed", bit, "0", true},
      {"is_merge_published", bit, "0", true},
      {"is_dts_replicated", bit, "0", true},
      {"is_xml_document", bit, "0"},
      {"xml_collection_id", integer, "0"},
      {"default_object_id", integer, "c.default_id"},
      {"rule_object_id", integer, "0"},
      {"is_sparse", bit, "0", true},
      {"is_column_set", bit, "0", true}};
  return fields;
}

constexpr const char* tableColumns =
    "@.zb_columns c JOIN @.zb_objects o ON o.id=c.table_id AND o.xtype IN ('U','V')";

SystemTable identityColumns() {
  return make(
      "identity_columns", false,
      columnFields() + Fields{{"seed_value", plain(TypeId::BigInt), "c.seed", true},
                              {"increment_value", plain(TypeId::BigInt), "c.step", true},
                              {"last_value", plain(TypeId::BigInt),
                               "(SELECT i.last FROM @.zb_identity i WHERE i.table_id=c.table_id)", true},
                              {"is_not_for_replication", bit, "0", true}},
      std::string(tableColumns) + " WHERE c.identity=1");
}

SystemTable parameters() {
  return make("parameters", false,
              {{"object_id", integer, "c.table_id"},
               {"name", sysname, "c.name", true},
               {"parameter_id", integer, "c.colid"},
               {"system_type_id", tiny, "c.xtype"},
               {"user_type_id", integer, "c.xtype"},
               {"max_length", small, "c.length"},
               {"precision", tiny, "c.xprec"},
               {"scale", tiny, "c.xscale"},
               {"is_output", bit, "c.identity"},
               {"is_cursor_ref", bit, "0"},
               {"has_default_value", bit, "0"},
               {"is_xml_document", bit, "0"},
               {"default_value", chunk, "NULL", true},
               {"xml_collection_id", integer, "0"},
               {"is_readonly", bit, "0"}},
              "@.zb_columns c JOIN @.zb_objects o ON o.id=c.table_id AND o.xtype='P'");
}

SystemTable types() {
  return make("types", false,
              {{"name", sysname, "t.column1"},
               {"system_type_id", tiny, "t.column2"},
               {"user_type_id", integer, "t.column3"},
               {"schema_id", integer, "4"},
               {"principal_id", integer, "NULL", true},
               {"max_length", small, "t.column4"},
               {"precision", tiny, "t.column5"},
               {"scale", tiny, "t.column6"},
               {"collation_name", sysname,
                "CASE WHEN t.column2 IN (175,167,239,231,35,99) THEN 'Turkish_CI_AS' END", true},
               {"is_nullable", bit, "t.column3<>256", true},
               {"is_user_defined", bit, "0"},
               {"is_assembly_type", bit, "0"},
               {"default_object_id", integer, "0"},
               {"rule_object_id", integer, "0"},
               {"is_table_type", bit, "0"}},
              std::string(typeRows) + " t");
}

// ---- indexes and constraints ----

SystemTable indexes() {
  return make(
      "indexes", false,
      {{"object_id", integer, "i.table_id"},
       {"name", sysname, "i.name", true},
       {"index_id", integer, "i.indid"},
       {"type", tiny, "CASE WHEN i.indid<2 THEN i.indid ELSE 2 END"},
       {"type_desc", word, "CASE i.indid WHEN 0 THEN 'HEAP' WHEN 1 THEN 'CLUSTERED' ELSE 'NONCLUSTERED' END",
        true},
       {"is_unique", bit, "i.is_unique", true},
       {"data_space_id", integer, "1"},
       {"ignore_dup_key", bit, "0", true},
       {"is_primary_key", bit, "coalesce(i.xtype='PK', 0)", true},
       {"is_unique_constraint", bit, "coalesce(i.xtype='UQ', 0)", true},
       {"fill_factor", tiny, "0"},
       {"is_padded", bit, "0", true},
       {"is_disabled", bit, "0", true},
       {"is_hypothetical", bit, "0", true},
       {"allow_row_locks", bit, "1", true},
       {"allow_page_locks", bit, "1", true},
       {"has_filter", bit, "0", true},
       {"filter_definition", chunk, "NULL", true}},
      "(SELECT x.table_id, x.indid, x.name, x.is_unique, k.xtype FROM @.zb_indexes x LEFT JOIN @.zb_objects "
      "k ON "
      "x.object_id<>0 AND k.id=x.object_id UNION ALL SELECT o.id, 0, NULL, 0, NULL FROM @.zb_objects o WHERE "
      "o.xtype='U' AND NOT EXISTS(SELECT 1 FROM @.zb_indexes x WHERE x.table_id=o.id AND x.indid=1)) i");
}

SystemTable indexColumns() {
  return make("index_columns", false,
              {{"object_id", integer, "k.table_id"},
               {"index_id", integer, "k.indid"},
               {"index_column_id", integer, "k.keyno"},
               {"column_id", integer, "k.colid"},
               {"key_ordinal", tiny, "k.keyno"},
               {"partition_ordinal", tiny, "0"},
               {"is_descending_key", bit, "k.descending", true},
               {"is_included_column", bit, "0", true}},
              "@.zb_index_columns k");
}

SystemTable keyConstraints() {
  return ofObjects(
      "key_constraints", "'PK','UQ'",
      {{"unique_index_id", integer,
        "(SELECT x.indid FROM @.zb_indexes x WHERE x.table_id=o.parent AND x.object_id=o.id)", true},
       {"is_system_named", bit, systemNamed}});
}

SystemTable foreignKeys() {
  return ofObjects("foreign_keys", "'F'",
                   {{"referenced_object_id", integer, kept("F", "table"), true},
                    {"key_index_id", integer, kept("F", "index"), true},
                    {"is_disabled", bit, "o.flags&1"},
                    {"is_not_for_replication", bit, "0"},
                    {"is_not_trusted", bit, "(o.flags&2)/2"},
                    {"delete_referential_action", tiny, kept("F", "delete"), true},
                    {"delete_referential_action_desc", word, actionWord("delete"), true},
                    {"update_referential_action", tiny, kept("F", "update"), true},
                    {"update_referential_action_desc", word, actionWord("update"), true},
                    {"is_system_named", bit, systemNamed}});
}

SystemTable foreignKeyColumns() {
  return make(
      "foreign_key_columns", false,
      {{"constraint_object_id", integer, "k.id"},
       {"constraint_column_id", integer, "k.number"},
       {"parent_object_id", integer, "k.parent"},
       {"parent_column_id", integer, "k.here"},
       {"referenced_object_id", integer, "k.there_table"},
       {"referenced_column_id", integer, "k.there"}},
      "(SELECT o.id, j.key+1 AS number, o.parent, j.value->>0 AS here, o.text->>'table' AS there_table, "
      "j.value->>1 AS there FROM (SELECT id, parent, text FROM @.zb_objects WHERE xtype='F' LIMIT -1 OFFSET "
      "0) "
      "o, json_each(o.text, '$.columns') j) k");
}

SystemTable checkConstraints() {
  return ofObjects("check_constraints", "'C'",
                   {{"is_disabled", bit, "o.flags&1"},
                    {"is_not_for_replication", bit, "0"},
                    {"is_not_trusted", bit, "(o.flags&2)/2"},
                    {"parent_column_id", integer, "o.flags>>8"},
                    {"definition", definition, "'('||" + kept("C", "text") + "||')'", true},
                    {"uses_database_collation", bit, "1", true},
                    {"is_system_named", bit, systemNamed}});
}

SystemTable defaultConstraints() {
  return ofObjects("default_constraints", "'D'",
                   {{"parent_column_id", integer, "o.flags"},
                    {"definition", definition, inBrackets, true},
                    {"is_system_named", bit, systemNamed}});
}

SystemTable schemas() {
  return make("schemas", false,
              {{"name", sysname, "s.column1"},
               {"schema_id", integer, "s.column2"},
               {"principal_id", integer, "s.column3", true}},
              "(VALUES('dbo',1,1),('guest',2,2),('INFORMATION_SCHEMA',3,3),('sys',4,4)) s");
}

// What the server has nothing of: views that tools ask all the same.
SystemTable empty(const char* name, const Fields& fields) {
  return make(name, false, fields, noRows);
}

}  // namespace

std::vector<SystemTable> buildSysViews() {
  std::vector<SystemTable> all = buildServerViews();
  for (const char* name : {"objects", "all_objects"}) all.push_back(ofObjects(name, ""));
  for (const char* name : {"columns", "all_columns"})
    all.push_back(make(name, false, columnFields(), tableColumns));
  for (auto build : {tables, views, procedures, triggers, modules, identityColumns, parameters, types,
                     indexes, indexColumns, keyConstraints, foreignKeys, foreignKeyColumns, checkConstraints,
                     defaultConstraints, schemas})
    all.push_back(build());
  all.push_back(empty("extended_properties", {{"class", tiny, "0"},
                                              {"class_desc", word, "NULL", true},
                                              {"major_id", integer, "0"},
                                              {"minor_id", integer, "0"},
                                              {"name", sysname, "NULL"},
                                              {"value", chunk, "NULL", true}}));
  all.push_back(empty("computed_columns", {{"object_id", integer, "0"},
                                           {"name", sysname, "NULL", true},
                                           {"column_id", integer, "0"},
                                           {"definition", definition, "NULL", true},
                                           {"is_persisted", bit, "0"}}));
  return all;
}

}  // namespace engine::system_table
