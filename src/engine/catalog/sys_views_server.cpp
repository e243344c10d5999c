// The views of sys over the server and over who may use it. Logins and users are for those who administer
// them; anybody sees himself and what the server has by itself.
#include "engine/catalog/system_table_build.h"

namespace engine::system_table {

namespace {

SystemTable databases() {
  return make("databases", false,
              {{"name", sysname, "b.name"},
               {"database_id", integer, "b.id"},
               {"source_database_id", integer, "NULL", true},
               {"owner_sid", sid, "x'01'", true},
               {"create_date", datetime, "b.crdate"},
               {"compatibility_level", tiny, "80"},
               {"collation_name", sysname, "'Turkish_CI_AS'", true},
               {"user_access", tiny, "0", true},
               {"user_access_desc", word, "'MULTI_USER'", true},
               {"is_read_only", bit, "0", true},
               {"is_auto_close_on", bit, "0"},
               {"is_auto_shrink_on", bit, "0", true},
               {"state", tiny, "0", true},
               {"state_desc", word, "'ONLINE'", true},
               {"is_in_standby", bit, "0", true},
               {"is_cleanly_shutdown", bit, "0", true},
               {"is_supplemental_logging_enabled", bit, "0", true},
               {"snapshot_isolation_state", tiny, "1", true},
               {"snapshot_isolation_state_desc", word, "'ON'", true},
               {"is_read_committed_snapshot_on", bit, "1", true},
               {"recovery_model", tiny, "3", true},
               {"recovery_model_desc", word, "'SIMPLE'", true},
               {"page_verify_option", tiny, "2", true},
               {"page_verify_option_desc", word, "'CHECKSUM'", true},
               {"is_ansi_nulls_on", bit, "1", true},
               {"is_ansi_padding_on", bit, "1", true},
               {"is_ansi_warnings_on", bit, "1", true},
               {"is_concat_null_yields_null_on", bit, "1", true},
               {"is_quoted_identifier_on", bit, "1", true},
               {"is_recursive_triggers_on", bit, "0", true},
               {"is_trustworthy_on", bit, "0", true},
               {"is_db_chaining_on", bit, "0", true}},
              "d1.zb_databases b WHERE b.state=0");
}

SystemTable databasePrincipals() {
  return make("database_principals", false,
              {{"name", sysname, "u.name"},
               {"principal_id", integer, "u.uid"},
               {"type", sized(TypeId::Char, 1), "CASE WHEN u.is_role THEN 'R' ELSE 'S' END"},
               {"type_desc", word, "CASE WHEN u.is_role THEN 'DATABASE_ROLE' ELSE 'SQL_USER' END", true},
               {"default_schema_name", sysname, "CASE WHEN NOT u.is_role THEN 'dbo' END", true},
               {"create_date", datetime, "u.crdate"},
               {"modify_date", datetime, "u.crdate"},
               {"owning_principal_id", integer, "CASE WHEN u.is_role THEN 1 END", true},
               {"sid", sid, "CASE u.uid WHEN 1 THEN x'01' ELSE u.sid END", true},
               {"is_fixed_role", bit, "u.is_role AND u.uid>0"}},
              "@.zb_users u WHERE u.uid<5 OR u.is_role OR z_sees('users', '@.') OR "
              "u.sid=(SELECT l.sid FROM d1.zb_logins l WHERE l.name=z_suser_name(1) COLLATE TRNAME)");
}

SystemTable roleMembers() {
  return make(
      "database_role_members", false,
      {{"role_principal_id", integer, "m.group_uid"}, {"member_principal_id", integer, "m.uid"}},
      "@.zb_members m WHERE m.uid<5 OR z_sees('users', '@.') OR m.uid IN (SELECT u.uid FROM @.zb_users u "
      "JOIN d1.zb_logins l ON l.sid=u.sid WHERE l.name=z_suser_name(1) COLLATE TRNAME)");
}

// sa is 1, the roles have the numbers that they have everywhere, logins follow behind.
constexpr const char* principals =
    "(SELECT l.name, CASE l.id WHEN 1 THEN 1 ELSE 255+l.id END AS id, l.sid, 0 AS role, l.crdate, "
    "l.default_database AS place FROM d1.zb_logins l WHERE l.id=1 OR z_sees('logins', '') OR "
    "l.name=z_suser_name(1) COLLATE TRNAME UNION ALL SELECT r.column1, r.column2, NULL, 1, (SELECT crdate "
    "FROM "
    "d1.zb_databases WHERE id=1), NULL FROM (VALUES('public',2),('sysadmin',3),('securityadmin',4),"
    "('serveradmin',5),('setupadmin',6),('processadmin',7),('diskadmin',8),('dbcreator',9),('bulkadmin',10)) "
    "r) p";

SystemTable serverPrincipals() {
  return make("server_principals", false,
              {{"name", sysname, "p.name"},
               {"principal_id", integer, "p.id"},
               {"sid", sid, "p.sid", true},
               {"type", sized(TypeId::Char, 1), "CASE WHEN p.role THEN 'R' ELSE 'S' END"},
               {"type_desc", word, "CASE WHEN p.role THEN 'SERVER_ROLE' ELSE 'SQL_LOGIN' END", true},
               {"is_disabled", bit, "0", true},
               {"create_date", datetime, "p.crdate"},
               {"modify_date", datetime, "p.crdate"},
               {"default_database_name", sysname, "p.place", true},
               {"default_language_name", sysname, "CASE WHEN NOT p.role THEN 'us_english' END", true},
               {"credential_id", integer, "NULL", true},
               {"owning_principal_id", integer, "CASE WHEN p.role THEN 1 END", true},
               {"is_fixed_role", bit, "p.role AND p.id>2"}},
              principals);
}

}  // namespace

std::vector<SystemTable> buildServerViews() {
  std::vector<SystemTable> all;
  for (auto build : {databases, databasePrincipals, roleMembers, serverPrincipals}) all.push_back(build());
  return all;
}

}  // namespace engine::system_table
