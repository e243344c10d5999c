#include "engine/catalog/system_tables.h"

#include "engine/catalog/catalog_rows.h"
#include "engine/catalog/system_table_build.h"

namespace engine {

using namespace system_table;

namespace {

// TDS's number of the type and the old user type, by xtype.
constexpr const char* tdsTypes =
    "(SELECT 175 AS x, 47 AS t, 1 AS u UNION ALL VALUES(167,39,2),(239,47,0),(231,39,0),(35,35,19),(99,35,0),"
    "(56,56,7),(52,52,6),(48,48,5),(127,63,0),(104,50,16),(59,59,23),(62,62,8),(60,60,11),(122,122,21),"
    "(106,55,24),(108,63,10),(61,61,12),(58,58,22),(173,45,3),(165,37,4))";

SystemTable objects(const std::string& systemRows) {
  const std::string from =
      "(SELECT id, name, xtype, parent, crdate, CASE WHEN xtype IN ('PK','UQ') THEN 'K' ELSE xtype END AS "
      "type, "
      "CASE WHEN xtype='U' THEN 1610612736 ELSE 0 END AS status, CASE WHEN xtype='TR' AND flags&4 THEN 1 "
      "ELSE 0 "
      "END AS category FROM @.zb_objects UNION ALL SELECT id, name, 'S', 0, (SELECT min(crdate) FROM "
      "@.zb_users), "
      "'S', -536870911, 2 FROM (" +
      systemRows + ") WHERE NOT master_only OR '@.'='d1.') o";
  return make(
      "sysobjects", false,
      {{"name", sysname, "o.name"},
       {"id", integer, "o.id"},
       {"xtype", code, "o.xtype"},
       {"uid", small, "1"},
       {"info", small, "(SELECT count(*) FROM @.zb_columns c WHERE c.table_id=o.id)"},
       {"status", integer, "o.status"},
       {"base_schema_ver", integer, "0"},
       {"replinfo", integer, "0"},
       {"parent_obj", integer, "o.parent"},
       {"crdate", datetime, "o.crdate"},
       {"ftcatid", small, "0"},
       {"schema_ver", integer, "0"},
       {"stats_schema_ver", integer, "0"},
       {"type", code, "o.type", true},
       {"userstat", small, "CASE WHEN o.xtype IN ('U','S') THEN 1 ELSE 0 END", true},
       {"sysstat", small,
        "CASE o.xtype WHEN 'U' THEN 3 WHEN 'V' THEN 2 WHEN 'TR' THEN 8 WHEN 'S' THEN 1 "
        "WHEN 'D' THEN 6 ELSE 11 END",
        true},
       {"indexdel", small, "0", true},
       {"refdate", datetime, "o.crdate"},
       {"version", integer, "0", true},
       {"deltrig", integer,
        "CASE WHEN o.xtype='U' THEN coalesce((SELECT max(t.id) FROM @.zb_objects t WHERE t.parent=o.id AND "
        "t.xtype='TR' AND t.flags&4), 0) ELSE o.parent END",
        true},
       {"instrig", integer,
        "coalesce((SELECT max(t.id) FROM @.zb_objects t WHERE o.xtype='U' AND t.parent=o.id AND "
        "t.xtype='TR' AND t.flags&1), 0)",
        true},
       {"updtrig", integer,
        "coalesce((SELECT max(t.id) FROM @.zb_objects t WHERE o.xtype='U' AND t.parent=o.id AND "
        "t.xtype='TR' AND t.flags&2), 0)",
        true},
       {"seltrig", integer, "0", true},
       {"category", integer, "o.category", true},
       {"cache", small, "0", true}},
      from);
}

SystemTable columns() {
  return make(
      "syscolumns", false,
      {{"name", sysname, "c.name", true},
       {"id", integer, "c.table_id"},
       {"xtype", tiny, "c.xtype"},
       {"typestat", tiny, "CASE WHEN c.nullable THEN 0 ELSE 1 END"},
       {"xusertype", small, "c.xtype", true},
       {"length", small, "c.length"},
       {"xprec", tiny, "c.xprec"},
       {"xscale", tiny, "c.xscale"},
       {"colid", small, "c.colid"},
       {"xoffset", small, "0"},
       {"bitpos", tiny, "0"},
       {"reserved", tiny, "0"},
       {"colstat", small, "CASE WHEN o.xtype='P' THEN 0 ELSE c.identity END"},
       {"cdefault", integer, "c.default_id"},
       {"domain", integer, "0"},
       {"number", small, "o.xtype='P'"},
       {"colorder", small,
        "(SELECT count(*) FROM @.zb_columns e WHERE e.table_id=c.table_id AND e.colid<=c.colid)"},
       {"offset", small, "0"},
       {"collationid", integer, "CASE WHEN c.xtype IN (175,167,239,231,35,99) THEN 53263 END", true},
       {"language", integer, "0"},
       {"status", tiny, "CASE WHEN o.xtype='P' THEN c.identity*64 ELSE c.identity*128 END + c.nullable*8",
        true},
       {"type", tiny, "t.t"},
       {"usertype", small, "t.u", true},
       {"printfmt", sized(TypeId::VarChar, 255), "NULL", true},
       {"prec", small,
        "CASE WHEN c.xtype IN (175,167,173,165) THEN c.length WHEN c.xtype IN (239,231) THEN c.length/2 "
        "WHEN c.xtype IN (35,99) THEN NULL ELSE c.xprec END",
        true},
       {"scale", integer, "CASE WHEN c.xtype IN (175,167,239,231,35,99,173,165) THEN NULL ELSE c.xscale END",
        true},
       {"iscomputed", integer, "0", true},
       {"isoutparam", integer, "CASE WHEN o.xtype='P' THEN c.identity ELSE 0 END", true},
       {"isnullable", integer, "c.nullable", true},
       {"collation", sysname,
        "CASE WHEN c.xtype IN (175,167,239,231,35,99) THEN CASE c.collation WHEN '' THEN 'Turkish_CI_AS' "
        "ELSE c.collation END END",
        true}},
      std::string("@.zb_columns c JOIN @.zb_objects o ON o.id=c.table_id JOIN ") + tdsTypes +
          " t ON t.x=c.xtype");
}

SystemTable types() {
  return make(
      "systypes", false,
      {{"name", sysname, "t.column1"},
       {"xtype", tiny, "t.column2"},
       {"status", tiny, "0"},
       {"xusertype", small, "t.column3", true},
       {"length", small, "t.column4"},
       {"xprec", tiny, "t.column5"},
       {"xscale", tiny, "t.column6"},
       {"tdefault", integer, "0"},
       {"domain", integer, "0"},
       {"uid", small, "1"},
       {"reserved", small, "0"},
       {"collationid", integer, "CASE WHEN t.column2 IN (175,167,239,231,35,99) THEN 53263 END", true},
       {"usertype", small, "coalesce(u.u, 18)", true},
       {"variable", plain(TypeId::Bit), "t.column2 IN (167,231,165)"},
       {"allownulls", plain(TypeId::Bit), "t.column3<>256", true},
       {"type", tiny, "d.t"},
       {"prec", small,
        "CASE WHEN t.column5>0 THEN t.column5 WHEN t.column2 IN (35,99) THEN NULL WHEN t.column2 IN "
        "(239,231) THEN t.column4/2 ELSE t.column4 END",
        true},
       {"scale", tiny, "CASE WHEN t.column5>0 THEN t.column6 END", true},
       {"collation", sysname, "CASE WHEN t.column2 IN (175,167,239,231,35,99) THEN 'Turkish_CI_AS' END",
        true}},
      std::string(typeRows) + " t JOIN " + tdsTypes + " d ON d.x=t.column2 LEFT JOIN " + tdsTypes +
          " u ON u.x=t.column3");
}

SystemTable indexes() {
  // A table without clustered index has a row of number 0 under its own name.
  return make(
      "sysindexes", false,
      {{"id", integer, "i.table_id"},
       {"status", integer, "i.status", true},
       {"indid", small, "i.indid"},
       {"keycnt", small, "i.keys"},
       {"groupid", small, "1"},
       {"OrigFillFactor", tiny, "0"},
       {"name", sysname, "i.name", true}},
      "(SELECT x.table_id, x.indid, x.name, x.is_unique*2 + x.is_clustered*16 + CASE k.xtype WHEN 'PK' THEN "
      "2048 WHEN 'UQ' THEN 4096 ELSE 0 END AS status, (SELECT count(*) FROM @.zb_index_columns p WHERE "
      "p.table_id=x.table_id AND p.indid=x.indid) AS keys FROM @.zb_indexes x LEFT JOIN @.zb_objects k ON "
      "k.id=x.object_id UNION ALL SELECT o.id, 0, o.name, 0, 0 FROM @.zb_objects o WHERE o.xtype='U' AND NOT "
      "EXISTS(SELECT 1 FROM @.zb_indexes x WHERE x.table_id=o.id AND x.indid=1)) i");
}

SystemTable indexKeys() {
  return make("sysindexkeys", false,
              {{"id", integer, "k.table_id"},
               {"indid", small, "k.indid"},
               {"colid", small, "k.colid"},
               {"keyno", small, "k.keyno"}},
              "@.zb_index_columns k");
}

SystemTable comments() {
  // Long texts lie in pieces of 4000 characters.
  return make("syscomments", false,
              {{"id", integer, "p.id"},
               {"number", small, "CASE WHEN p.xtype='D' THEN 0 ELSE 1 END"},
               {"colid", small, "p.piece"},
               {"status", small, "2"},
               {"texttype", small, "2", true},
               {"language", small, "0", true},
               {"encrypted", plain(TypeId::Bit), "0", true},
               {"compressed", plain(TypeId::Bit), "0", true},
               {"text", chunk, "substr(p.text, p.piece*4000-3999, 4000)", true}},
              "(WITH RECURSIVE piece(id, xtype, text, piece) AS (SELECT id, xtype, CASE xtype WHEN 'C' THEN "
              "text->>'text' ELSE text END, 1 FROM @.zb_objects WHERE text<>'' AND xtype<>'F' UNION ALL "
              "SELECT id, xtype, text, piece+1 FROM piece WHERE length(text)>piece*4000) SELECT * "
              "FROM piece) p");
}

SystemTable users() {
  return make("sysusers", false,
              {{"uid", small, "u.uid"},
               {"status", small, "CASE WHEN u.uid<5 THEN 0 ELSE 2 END", true},
               {"name", sysname, "u.name"},
               {"sid", sid, "u.sid", true},
               {"createdate", datetime, "u.crdate"},
               {"updatedate", datetime, "u.crdate"},
               {"altuid", small, "CASE WHEN u.is_role THEN 1 ELSE 0 END", true},
               {"gid", small, "CASE WHEN u.is_role THEN u.uid ELSE 0 END", true},
               {"hasdbaccess", integer, "CASE WHEN u.uid=1 OR u.sid IS NOT NULL THEN 1 ELSE 0 END", true},
               {"islogin", integer, "1-u.is_role", true},
               {"isntname", integer, "0", true},
               {"isntgroup", integer, "0", true},
               {"isntuser", integer, "0", true},
               {"issqluser", integer, "1-u.is_role", true},
               {"isaliased", integer, "0", true},
               {"issqlrole", integer, "u.is_role", true},
               {"isapprole", integer, "0", true}},
              "@.zb_users u");
}

SystemTable members() {
  return make("sysmembers", false, {{"memberuid", small, "m.uid"}, {"groupuid", small, "m.group_uid"}},
              "@.zb_members m");
}

SystemTable files() {
  return make(
      "sysfiles", false,
      {{"fileid", small, "f.fileid"},
       {"groupid", small, "2-f.fileid"},
       {"status", integer, "CASE f.fileid WHEN 1 THEN 2 ELSE 66 END"},
       {"name", sized(TypeId::NChar, 128), "f.name"},
       {"filename", sized(TypeId::NChar, 260), "f.filename"}},
      "(SELECT 1 AS fileid, name, file_name AS filename FROM d1.zb_databases WHERE 'd'||id||'.'='@.' UNION "
      "ALL SELECT 2, name||'_log', substr(file_name, 1, length(file_name)-4)||'_log.ldf' FROM "
      "d1.zb_databases WHERE 'd'||id||'.'='@.') f");
}

SystemTable databases() {
  return make("sysdatabases", true,
              {{"name", sysname, "b.name"},
               {"dbid", small, "b.id"},
               {"sid", sid, "x'01'", true},
               {"mode", small, "0", true},
               {"status", integer, "CASE b.id WHEN 1 THEN 24 ELSE 16 END", true},
               {"status2", integer, "1090519040", true},
               {"crdate", datetime, "b.crdate"},
               {"reserved", datetime, "0", true},
               {"category", integer, "0", true},
               {"cmptlevel", tiny, "80"},
               {"filename", longName,
                "CASE WHEN instr(b.data,'/')=0 THEN z_folder()||char(92)||b.data ELSE b.file_name END", true},
               {"version", small, "539", true}},
              "@.zb_databases b WHERE b.state=0");
}

// The sessions of this process, and one row for each database that those of other processes stand on: how
// many they are is not known.
SystemTable processes() {
  return make(
      "sysprocesses", true,
      {{"spid", small, "u.spid"},
       {"kpid", small, "0"},
       {"blocked", small, "0"},
       {"waittime", integer, "0"},
       {"dbid", small, "u.dbid"},
       {"uid", small, "1"},
       {"cpu", integer, "0"},
       {"login_time", datetime, "u.login_time", true},
       {"last_batch", datetime, "u.last_batch", true},
       {"ecid", small, "0"},
       {"open_tran", small, "u.transactions"},
       {"status", sized(TypeId::NChar, 30), "CASE u.running WHEN 1 THEN 'runnable' ELSE 'sleeping' END"},
       {"hostname", sized(TypeId::NChar, 128), "u.host"},
       {"program_name", sized(TypeId::NChar, 128), "u.program"},
       {"hostprocess", sized(TypeId::NChar, 10), "u.process"},
       {"cmd", sized(TypeId::NChar, 16), "CASE u.running WHEN 1 THEN 'SELECT' ELSE 'AWAITING COMMAND' END"},
       {"loginame", sized(TypeId::NChar, 128), "u.login"}},
      "(SELECT s.value->>'spid' AS spid, s.value->>'dbid' AS dbid, s.value->>'running' AS running, "
      "s.value->>'transactions' AS transactions, s.value->>'login_time' AS login_time, "
      "s.value->>'last_batch' AS "
      "last_batch, s.value->>'login' AS login, s.value->>'host' AS host, s.value->>'program' AS program, "
      "s.value->>'process' AS process FROM json_each(z_sessions()) s UNION ALL SELECT 1000+d.id, d.id, 0, 0, "
      "NULL, "
      "NULL, '', '', '', '' FROM @.zb_databases d WHERE d.state=0 AND z_db_users(d.id)&2 AND NOT "
      "EXISTS(SELECT 1 "
      "FROM json_each(z_sessions()) s WHERE s.value->>'dbid'=d.id AND s.value->>'own'=0)) u");
}

SystemTable logins() {
  static const char* const roleFields[] = {"sysadmin",     "securityadmin", "serveradmin", "setupadmin",
                                           "processadmin", "diskadmin",     "dbcreator",   "bulkadmin"};
  std::vector<std::string> expressions;
  for (const char* role : roleFields)
    expressions.push_back("EXISTS(SELECT 1 FROM @.zb_server_roles r WHERE r.login_id=l.id AND r.role='" +
                          std::string(role) + "')");
  std::vector<Field> fields = {
      {"sid", sid, "l.sid", true},          {"status", small, "9", true},
      {"createdate", datetime, "l.crdate"}, {"updatedate", datetime, "l.crdate"},
      {"name", sysname, "l.name", true},    {"dbname", sysname, "l.default_database", true},
      {"password", sysname, "NULL", true},  {"language", sysname, "'us_english'", true},
      {"denylogin", integer, "0", true},    {"hasaccess", integer, "1", true},
      {"isntname", integer, "0", true},     {"isntgroup", integer, "0", true},
      {"isntuser", integer, "0", true}};
  for (std::size_t i = 0; i < std::size(roleFields); ++i)
    fields.push_back({roleFields[i], integer, expressions[i], true});
  fields.push_back({"loginname", sysname, "l.name"});
  return make("syslogins", true, fields, "@.zb_logins l");
}

SystemTable oldLogins() {
  return make(
      "sysxlogins", true,
      {{"srvid", small, "NULL", true},
       {"sid", sid, "l.sid", true},
       {"xstatus", small, "18"},
       {"xdate1", datetime, "l.crdate"},
       {"xdate2", datetime, "l.crdate"},
       {"name", sysname, "l.name", true},
       {"password", sized(TypeId::VarBinary, 256), "NULL", true},
       {"dbid", small,
        "coalesce((SELECT b.id FROM @.zb_databases b WHERE b.name=l.default_database COLLATE TRNAME), 1)"},
       {"language", sysname, "'us_english'", true}},
      "@.zb_logins l");
}

std::vector<SystemTable> build() {
  std::vector<SystemTable> all;
  all.push_back(columns());
  all.push_back(types());
  all.push_back(indexes());
  all.push_back(indexKeys());
  all.push_back(comments());
  all.push_back(users());
  all.push_back(members());
  all.push_back(files());
  all.push_back(databases());
  all.push_back(processes());
  all.push_back(logins());
  all.push_back(oldLogins());
  std::string rows = "SELECT 1 AS id, 'sysobjects' AS name, 0 AS master_only";
  for (std::size_t i = 0; i < all.size(); ++i)
    rows += " UNION ALL SELECT " + std::to_string(i + 2) + ", '" + all[i].name + "', " +
            (all[i].masterOnly ? "1" : "0");
  all.insert(all.begin(), objects(rows));
  return all;
}

}  // namespace

const std::vector<SystemTable>& systemTables() {
  static const std::vector<SystemTable> tables = build();
  return tables;
}

const SystemTable* findSystemTable(std::string_view name) {
  const std::string folded = foldName(name);
  for (const auto& table : systemTables())
    if (table.name == folded) return &table;
  return nullptr;
}

namespace {
constexpr std::string_view sysSchema = "sys";
}

bool isSystemSchema(std::string_view owner) {
  const std::string folded = foldName(owner);
  return folded == sysSchema || folded == "information_schema";
}

const std::vector<SystemTable>& schemaViews(std::string_view schema) {
  static const std::vector<SystemTable> sys = buildSysViews(), information = buildInformationSchema();
  return foldName(schema) == sysSchema ? sys : information;
}

const SystemTable* findSchemaView(std::string_view schema, std::string_view name) {
  const std::string folded = foldName(name);
  for (const auto& view : schemaViews(schema))
    if (view.name == folded) return &view;
  return foldName(schema) == sysSchema ? findSystemTable(name) : nullptr;
}

std::string systemTableSql(const SystemTable& table, std::string_view databaseAlias) {
  // The alias also stands in text comparisons, which tell the databases apart.
  return atAlias(table.query, databaseAlias);
}

}  // namespace engine
