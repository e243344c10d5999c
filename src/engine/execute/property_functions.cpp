// What the functions of properties and names tell: SERVERPROPERTY, DATABASEPROPERTYEX, OBJECTPROPERTY,
// COLUMNPROPERTY, INDEXPROPERTY, OBJECT_ID, OBJECT_NAME, COL_NAME ... NULL for what there is not.
#include <unistd.h>

#include <algorithm>
#include <array>

#include "engine/execute/logins.h"
#include "engine/execute/server_identity.h"
#include "engine/execute/session_functions.h"

namespace engine {

NamedObject Executor::namedObject(const std::string& name) {
  const std::vector<std::string> parts = nameParts(name);
  NamedObject found;
  found.name = parts.back();
  found.database = context_.database;
  if (parts.size() == 3 && !parts[0].empty()) found.database = parts[0];
  if (foldName(found.database) == temporaryDatabase) {
    found.database = temporaryDatabase;
    if (found.catalog = store_.temporaryCatalog(); found.catalog)
      found.table = found.catalog->table(parts.back());
    return found;
  }
  if (parts.size() > 3 || !store_.databaseExists(found.database)) return found;
  if (!rights_.in(found.database).enter) return found;
  found.catalog = store_.catalog(found.database);
  found.table = found.catalog->table(parts.back());
  found.view = found.catalog->view(parts.back());
  return found;
}

namespace {

struct ServerProperty {
  const char* name;  // folded
  const char* text;  // null: asked of the system
  int number;        // with an empty text
};

constexpr ServerProperty serverProperties[] = {{"productversion", "8.00.2012", 0},
                                               {"productlevel", "RTM", 0},
                                               {"edition", "Zembera SQL Edition", 0},
                                               {"engineedition", "", 2},
                                               {"collation", "Turkish_CI_AS", 0},
                                               {"isclustered", "", 0},
                                               {"isfulltextinstalled", "", 0},
                                               {"isintegratedsecurityonly", "", 0},
                                               {"issingleuser", "", 0},
                                               {"lcid", "", 1055},
                                               {"licensetype", "DISABLED", 0},
                                               {"sqlcharsetname", "cp1254", 0},
                                               {"servername", nullptr, 0},
                                               {"machinename", nullptr, 0},
                                               {"computernamephysicalnetbios", nullptr, 0}};

struct NamedValue {
  const char* name;
  const char* value;
};

// A number stands as one.
constexpr NamedValue databaseProperties[] = {{"collation", "Turkish_CI_AS"},
                                             {"recovery", "SIMPLE"},
                                             {"status", "ONLINE"},
                                             {"updateability", "READ_WRITE"},
                                             {"useraccess", "MULTI_USER"},
                                             {"isansinulldefault", "1"},
                                             {"isansinullsenabled", "1"},
                                             {"isansipaddingenabled", "1"},
                                             {"isansiwarningsenabled", "1"},
                                             {"isarithmeticabortenabled", "1"},
                                             {"isautoclose", "0"},
                                             {"isautocreatestatistics", "1"},
                                             {"isautoshrink", "0"},
                                             {"isautoupdatestatistics", "1"},
                                             {"isclosecursorsoncommitenabled", "0"},
                                             {"isfulltextenabled", "0"},
                                             {"isinstandby", "0"},
                                             {"islocalcursorsdefault", "0"},
                                             {"isnullconcat", "1"},
                                             {"isnumericroundabortenabled", "0"},
                                             {"isquotedidentifiersenabled", "1"},
                                             {"isrecursivetriggersenabled", "0"},
                                             {"istornpagedetectionenabled", "0"},
                                             {"sqlsortorder", "0"},
                                             {"version", "539"}};

// The kinds of objects, and what is asked of a kind.
struct Kind {
  const char* xtype;
  const char* property;
};
constexpr Kind kinds[] = {{"U", "istable"},       {"U", "isusertable"},   {"V", "isview"},
                          {"TR", "istrigger"},    {"P", "isprocedure"},   {"P", "isexecuted"},
                          {"V", "isexecuted"},    {"TR", "isexecuted"},   {"PK", "isprimarykey"},
                          {"UQ", "isuniquecnst"}, {"D", "isdefaultcnst"}, {"F", "isforeignkey"},
                          {"C", "ischeckcnst"},   {"PK", "isconstraint"}, {"UQ", "isconstraint"},
                          {"D", "isconstraint"},  {"F", "isconstraint"},  {"C", "isconstraint"}};

// Kinds that no object here is of.
constexpr const char* strangers[] = {
    "issystemtable", "isscalarfunction", "istablefunction", "isinlinefunction", "isextendedproc",
    "isreplproc",    "isdefault",        "isrule",          "ismsshipped",      "isencrypted",
    "isschemabound", "isindexed",        "isdeterministic", "tableisfake",      "tablehastextimage"};

bool hasKey(const TableInfo& table, bool IndexInfo::*kind) {
  return std::any_of(table.indexes.begin(), table.indexes.end(), [&](const IndexInfo& i) { return i.*kind; });
}

bool hasTrigger(const TableInfo& table, bool TriggerInfo::*event) {
  return std::any_of(table.triggers.begin(), table.triggers.end(),
                     [&](const auto& t) { return (*t).*event; });
}

// Of a table alone; nothing for another name.
Datum tableProperty(const TableInfo& table, const std::string& property) {
  if (property == "tablehasidentity") return table.identityColumn() >= 0;
  if (property == "tablehasprimarykey") return hasKey(table, &IndexInfo::primaryKey);
  if (property == "tablehasuniquecnst") return hasKey(table, &IndexInfo::uniqueConstraint);
  if (property == "tablehasclustindex") return hasKey(table, &IndexInfo::clustered);
  if (property == "tablehasindex") return !table.indexes.empty();
  if (property == "tablehasnonclustindex")
    return std::any_of(table.indexes.begin(), table.indexes.end(),
                       [](const auto& i) { return !i.clustered; });
  if (property == "tablehasinserttrigger") return hasTrigger(table, &TriggerInfo::onInsert);
  if (property == "tablehasupdatetrigger") return hasTrigger(table, &TriggerInfo::onUpdate);
  if (property == "tablehasdeletetrigger") return hasTrigger(table, &TriggerInfo::onDelete);
  if (property == "tablehascheckcnst") return !table.checks.empty();
  if (property == "tablehasforeignkey") return !table.foreignKeys.empty();
  if (property == "tablehasdefaultcnst")
    return std::any_of(table.columns.begin(), table.columns.end(),
                       [](const ColumnInfo& c) { return !c.defaultText.empty(); });
  return {};
}

struct TypeRow {
  const char* name;
  int xtype, xusertype;
};
constexpr TypeRow typeList[] = {
    {"text", 35, 35},          {"tinyint", 48, 48},      {"smallint", 52, 52}, {"int", 56, 56},
    {"smalldatetime", 58, 58}, {"real", 59, 59},         {"money", 60, 60},    {"datetime", 61, 61},
    {"float", 62, 62},         {"ntext", 99, 99},        {"bit", 104, 104},    {"decimal", 106, 106},
    {"numeric", 108, 108},     {"smallmoney", 122, 122}, {"bigint", 127, 127}, {"varbinary", 165, 165},
    {"varchar", 167, 167},     {"binary", 173, 173},     {"char", 175, 175},   {"nvarchar", 231, 231},
    {"sysname", 231, 256},     {"nchar", 239, 239}};

struct Schema {
  int id;
  const char* name;
};
constexpr Schema schemas[] = {{1, "dbo"}, {2, "guest"}, {3, "INFORMATION_SCHEMA"}, {4, "sys"}};

}  // namespace

struct PropertyFunctions {
  using Arguments = SessionArguments;

  static std::string textOf(const Datum& value) {
    return value.isText() ? foldName(value.text()) : std::string();
  }

  static std::string alias(Executor& executor, const std::string& database) {
    return executor.store_.attach(database);
  }

  // ---- server and databases ----

  static Datum serverProperty(Executor&, const Arguments& arguments) {
    const std::string name = textOf(arguments[0]);
    if (name == "processid") return static_cast<std::int64_t>(getpid());
    for (const ServerProperty& each : serverProperties) {
      if (name != each.name) continue;
      if (!each.text) return serverName();
      if (*each.text) return each.text;
      // A list of several properties is a list of texts.
      return arguments[1].integer() ? Datum(each.number) : Datum(std::to_string(each.number));
    }
    return {};
  }

  static Datum databaseProperty(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isText() || !executor.store_.databaseExists(arguments[0].text())) return {};
    const std::string name = textOf(arguments[1]);
    for (const NamedValue& each : databaseProperties) {
      if (name != each.name) continue;
      const bool number = each.value[0] >= '0' && each.value[0] <= '9';
      if (number && arguments[2].integer()) return std::atoi(each.value);
      return each.value;
    }
    return {};
  }

  static Datum hasAccess(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isText() || !executor.store_.databaseExists(arguments[0].text())) return {};
    return executor.rights_.in(arguments[0].text()).enter;
  }

  static Datum isServerRole(Executor& executor, const Arguments& arguments) {
    static constexpr std::array roles = {"sysadmin",     "securityadmin", "serveradmin", "setupadmin",
                                         "processadmin", "diskadmin",     "dbcreator",   "bulkadmin"};
    const std::string role = textOf(arguments[0]);
    if (std::find(roles.begin(), roles.end(), role) == roles.end()) return {};
    if (arguments.size() > 1 && arguments[1].isText() &&
        foldName(arguments[1].text()) != foldName(executor.context_.login))
      return executor.rights_.serverRole("securityadmin")
                 ? Datum(isServerRoleMember(executor.store_, arguments[1].text(), role))
                 : Datum();
    return executor.rights_.serverRole(role);
  }

  // May the session see all logins, or all users of the database with this alias?
  static Datum sees(Executor& executor, const Arguments& arguments) {
    if (textOf(arguments[0]) == "logins") return executor.rights_.serverRole("securityadmin");
    for (const DatabaseEntry& entry : executor.store_.databases())
      if ("d" + std::to_string(entry.id) + "." == arguments[1].text()) {
        const DatabaseRights& rights = executor.rights_.in(entry.name);
        return rights.owner || rights.users;
      }
    return 0;
  }

  // ---- objects ----

  static Datum objectId(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isText()) return {};
    const NamedObject found = executor.namedObject(arguments[0].text());
    if (!found.catalog) return {};
    const std::string kind = arguments.size() > 1 ? textOf(arguments[1]) : "";
    if (found.table && (kind.empty() || kind == "u")) return found.table->id;
    if (found.view && (kind.empty() || kind == "v")) return found.view->id;
    const ObjectRow object =
        engine::findObject(executor.store_.handle(), alias(executor, found.database), found.name);
    if (object.id == 0 || (!kind.empty() && foldName(object.type) != kind)) return {};
    return object.id;
  }

  // The row of an object in the current database, or in that of the given number.
  static ObjectRow objectOf(Executor& executor, const Datum& id, const Datum& database = {}) {
    if (!id.isInteger()) return {};
    std::string name = executor.context_.database;
    if (database.isInteger()) {
      name.clear();
      for (const DatabaseEntry& entry : executor.store_.databases())
        if (entry.id == database.integer() && executor.rights_.in(entry.name).enter) name = entry.name;
      if (name.empty()) return {};
    }
    lite::Stmt row(
        executor.store_.handle(),
        atAlias("SELECT id, name, xtype, parent FROM @.zb_objects WHERE id=?", alias(executor, name)));
    if (!row.bind(id.integer()).step()) return {};
    return {row.integer(0), row.text(1), row.text(2), row.integer(3)};
  }

  static Datum objectName(Executor& executor, const Arguments& arguments) {
    const ObjectRow object = objectOf(executor, arguments[0], arguments.size() > 1 ? arguments[1] : Datum());
    return object.id == 0 ? Datum() : Datum(object.name);
  }

  static Datum objectSchema(Executor& executor, const Arguments& arguments) {
    return objectName(executor, arguments).isNull() ? Datum() : Datum("dbo");
  }

  static const TableInfo* tableOf(const DatabaseCatalog& catalog, const ObjectRow& object) {
    return object.type == "U" ? catalog.table(object.name) : nullptr;
  }

  static Datum objectProperty(Executor& executor, const Arguments& arguments) {
    const ObjectRow object = objectOf(executor, arguments[0]);
    const std::string property = textOf(arguments[1]);
    if (object.id == 0) return {};
    if (property == "ownerid" || property == "schemaid") return 1;
    if (property == "execisansinullson" || property == "execisquotedidenton")
      return object.type == "P" || object.type == "TR" || object.type == "V" ? Datum(1) : Datum();
    bool known = false;
    for (const Kind& kind : kinds) {
      if (property != kind.property) continue;
      if (object.type == kind.xtype) return 1;
      known = true;
    }
    if (known || std::any_of(std::begin(strangers), std::end(strangers),
                             [&](const char* stranger) { return property == stranger; }))
      return 0;
    const auto catalog = executor.store_.catalog(executor.context_.database);
    const TableInfo* table = tableOf(*catalog, object);
    return table ? tableProperty(*table, property) : Datum();
  }

  // ---- columns and indexes ----

  static Datum columnLength(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isText() || !arguments[1].isText()) return {};
    const NamedObject found = executor.namedObject(arguments[0].text());
    if (found.table) {
      const int ordinal = found.table->columnIndex(arguments[1].text());
      if (ordinal < 0) return {};
      return storageLength(found.table->columns[static_cast<std::size_t>(ordinal)].type);
    }
    if (found.view)
      for (const ViewColumn& column : found.view->columns)
        if (foldName(column.name) == foldName(arguments[1].text())) return storageLength(column.type);
    return {};
  }

  static Datum columnName(Executor& executor, const Arguments& arguments) {
    const ObjectRow object = objectOf(executor, arguments[0]);
    if (object.id == 0 || !arguments[1].isInteger()) return {};
    lite::Stmt row(executor.store_.handle(),
                   atAlias("SELECT name FROM @.zb_columns WHERE table_id=? AND colid=?",
                           alias(executor, executor.context_.database)));
    if (!row.bind(object.id).bind(arguments[1].integer()).step()) return {};
    return row.text(0);
  }

  static Datum columnProperty(Executor& executor, const Arguments& arguments) {
    const ObjectRow object = objectOf(executor, arguments[0]);
    if (object.id == 0 || !arguments[1].isText()) return {};
    lite::Stmt row(
        executor.store_.handle(),
        atAlias("SELECT c.colid, c.nullable, c.identity, c.xtype, c.length, c.xprec, c.xscale, (SELECT "
                "count(*) FROM @.zb_columns e WHERE e.table_id=c.table_id AND e.colid<=c.colid) FROM "
                "@.zb_columns c WHERE c.table_id=? AND c.name=? COLLATE NOCASE",
                alias(executor, executor.context_.database)));
    if (!row.bind(object.id).bind(arguments[1].text()).step()) return {};
    const std::int64_t type = row.integer(3), length = row.integer(4), digits = row.integer(5);
    const bool unicode = type == 231 || type == 239,
               sized = unicode || type == 167 || type == 175 || type == 165 || type == 173;
    const bool isLong = type == 35 || type == 99;
    const std::string property = textOf(arguments[2]);
    if (property == "allowsnull") return row.integer(1);
    if (property == "columnid") return row.integer(0);
    if (property == "ordinal") return row.integer(7);
    if (property == "isidentity") return object.type == "P" ? 0 : row.integer(2);
    if (property == "isoutparam") return object.type == "P" ? row.integer(2) : 0;
    if (property == "precision")
      return sized ? (unicode ? length / 2 : length) : isLong ? 2147483647 : digits;
    if (property == "scale") return digits > 0 ? Datum(row.integer(6)) : Datum();
    if (property == "charmaxlen")
      return sized ? Datum(unicode ? length / 2 : length) : isLong ? Datum(2147483647) : Datum();
    if (property == "usesansitrim") return sized ? Datum(1) : Datum();
    for (const char* never :
         {"iscomputed", "isrowguidcol", "iscursortype", "isfulltextindexed", "isidnotforrepl",
          "isdeterministic", "isindexable", "ishidden", "issparse", "iscolumnset", "isxmlindexable"})
      if (property == never) return never == std::string("isindexable") ? Datum(!isLong) : Datum(0);
    return {};
  }

  static Datum indexProperty(Executor& executor, const Arguments& arguments) {
    const ObjectRow object = objectOf(executor, arguments[0]);
    const auto catalog = executor.store_.catalog(executor.context_.database);
    const TableInfo* table = tableOf(*catalog, object);
    if (!table || !arguments[1].isText()) return {};
    const std::string property = textOf(arguments[2]);
    for (const IndexInfo& index : table->indexes) {
      if (foldName(index.name) != foldName(arguments[1].text())) continue;
      if (property == "indexid") return index.id;
      if (property == "isclustered") return index.clustered;
      if (property == "isunique") return index.unique;
      if (property == "indexdepth") return 1;
      for (const char* never :
           {"indexfillfactor", "ispadindex", "isautostatistics", "isstatistics", "ishypothetical",
            "isfulltextkey", "isdisabled", "ispagelockdisallowed", "isrowlockdisallowed"})
        if (property == never) return 0;
    }
    return {};
  }

  // ---- types and schemas ----

  static Datum typeNameOf(Executor&, const Arguments& arguments) {
    for (const TypeRow& type : typeList)
      if (arguments[0].isInteger() && type.xusertype == arguments[0].integer()) return type.name;
    return {};
  }
  static Datum typeId(Executor&, const Arguments& arguments) {
    if (!arguments[0].isText()) return {};
    for (const TypeRow& type : typeList)
      if (nameParts(foldName(arguments[0].text())).back() == type.name) return type.xusertype;
    return {};
  }
  static Datum schemaName(Executor&, const Arguments& arguments) {
    if (arguments.empty()) return "dbo";
    for (const Schema& schema : schemas)
      if (arguments[0].isInteger() && schema.id == arguments[0].integer()) return schema.name;
    return {};
  }
  static Datum schemaId(Executor&, const Arguments& arguments) {
    if (arguments.empty()) return 1;
    for (const Schema& schema : schemas)
      if (foldName(schema.name) == textOf(arguments[0])) return schema.id;
    return {};
  }
};

std::span<const SqlEntry> propertyFunctions() {
  using F = PropertyFunctions;
  static const SqlEntry entries[] = {{"z_object_id", -1, F::objectId, false},
                                     {"z_object_name", -1, F::objectName, false},
                                     {"z_object_schema", -1, F::objectSchema, false},
                                     {"z_object_property", 2, F::objectProperty, false},
                                     {"z_col_length", 2, F::columnLength, false},
                                     {"z_col_name", 2, F::columnName, false},
                                     {"z_column_property", 3, F::columnProperty, false},
                                     {"z_index_property", 3, F::indexProperty, false},
                                     {"z_server_property", 2, F::serverProperty, false},
                                     {"z_database_property", 3, F::databaseProperty, false},
                                     {"z_has_dbaccess", 1, F::hasAccess, false},
                                     {"z_is_srvrolemember", -1, F::isServerRole, false},
                                     {"z_sees", 2, F::sees, false},
                                     {"z_type_name", 1, F::typeNameOf, false},
                                     {"z_type_id", 1, F::typeId, false},
                                     {"z_schema_name", -1, F::schemaName, false},
                                     {"z_schema_id", -1, F::schemaId, false}};
  return entries;
}

}  // namespace engine
