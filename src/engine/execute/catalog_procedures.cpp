#include "engine/execute/catalog_procedures.h"

#include <vector>

#include "engine/catalog.h"

namespace engine {

namespace {

// What ODBC calls each type, by xtype: number in ODBC 3 and 2, digits, bytes handed over, places, radix.
// NULL digits and bytes: those of the column.
constexpr const char* typeFacts =
    "(SELECT 35 AS x, -1 AS d3, -1 AS d2, 2147483647 AS p, 2147483647 AS l, NULL AS s, NULL AS r UNION ALL "
    "SELECT 48,-6,-6,3,1,0,10 UNION ALL SELECT 52,5,5,5,2,0,10 UNION ALL SELECT 56,4,4,10,4,0,10 UNION ALL "
    "SELECT 58,93,11,16,16,0,NULL UNION ALL SELECT 59,7,7,7,4,NULL,10 UNION ALL SELECT 60,3,3,19,21,4,10 "
    "UNION "
    "ALL SELECT 61,93,11,23,16,3,NULL UNION ALL SELECT 62,6,6,15,8,NULL,10 UNION ALL SELECT "
    "99,-10,-10,1073741823,2147483646,NULL,NULL UNION ALL SELECT 104,-7,-7,1,1,NULL,NULL UNION ALL SELECT "
    "106,3,3,NULL,NULL,NULL,10 UNION ALL SELECT 108,2,2,NULL,NULL,NULL,10 UNION ALL SELECT "
    "122,3,3,10,12,4,10 "
    "UNION ALL SELECT 127,-5,-5,19,8,0,10 UNION ALL SELECT 165,-3,-3,NULL,NULL,NULL,NULL UNION ALL SELECT "
    "167,12,12,NULL,NULL,NULL,NULL UNION ALL SELECT 173,-2,-2,NULL,NULL,NULL,NULL UNION ALL SELECT "
    "175,1,1,NULL,NULL,NULL,NULL UNION ALL SELECT 231,-9,-9,NULL,NULL,NULL,NULL UNION ALL SELECT "
    "239,-8,-8,NULL,NULL,NULL,NULL)";

// What is told of a column `c` of type `y` with the facts `t`.
constexpr const char* columnFacts =
    "CONVERT(SMALLINT, CASE WHEN @ODBCVer='3' THEN t.d3 ELSE t.d2 END) AS DATA_TYPE, "
    "y.name + CASE WHEN c.colstat=1 THEN CASE WHEN c.xtype IN (106,108) THEN '() identity' ELSE ' identity' "
    "END "
    "ELSE '' END AS TYPE_NAME, "
    "CONVERT(INT, ISNULL(t.p, c.prec)) AS \"PRECISION\", "
    "CONVERT(INT, ISNULL(t.l, CASE WHEN c.xtype IN (106,108) THEN c.prec + 2 ELSE c.length END)) AS LENGTH, "
    "CONVERT(SMALLINT, CASE WHEN c.xtype IN (106,108) THEN c.scale ELSE t.s END) AS SCALE";

constexpr const char* place = "DB_NAME() AS TABLE_QUALIFIER, N'dbo' AS TABLE_OWNER, o.name AS TABLE_NAME";

const std::string joinedTypes =
    std::string("JOIN systypes y ON y.xusertype=c.xusertype JOIN ") + typeFacts + " t ON t.x=c.xtype";

const std::string tables =
    "IF @table_qualifier='%' AND @table_name='' AND @table_owner='' "
    "SELECT name AS TABLE_QUALIFIER, CONVERT(NVARCHAR(128),NULL) AS TABLE_OWNER, CONVERT(NVARCHAR(128),NULL) "
    "AS "
    "TABLE_NAME, CONVERT(VARCHAR(32),NULL) AS TABLE_TYPE, CONVERT(VARCHAR(254),NULL) AS REMARKS FROM "
    "master..sysdatabases ORDER BY name "
    "ELSE IF @table_owner='%' AND @table_name='' AND @table_qualifier='' "
    "SELECT CONVERT(NVARCHAR(128),NULL) AS TABLE_QUALIFIER, N'dbo' AS TABLE_OWNER, "
    "CONVERT(NVARCHAR(128),NULL) AS "
    "TABLE_NAME, CONVERT(VARCHAR(32),NULL) AS TABLE_TYPE, CONVERT(VARCHAR(254),NULL) AS REMARKS "
    "ELSE IF @table_type='%' AND @table_name='' AND @table_owner='' AND @table_qualifier='' "
    "SELECT CONVERT(NVARCHAR(128),NULL) AS TABLE_QUALIFIER, CONVERT(NVARCHAR(128),NULL) AS TABLE_OWNER, "
    "CONVERT(NVARCHAR(128),NULL) AS TABLE_NAME, x.n AS TABLE_TYPE, CONVERT(VARCHAR(254),NULL) AS REMARKS "
    "FROM "
    "(SELECT 'SYSTEM TABLE' AS n UNION ALL SELECT 'TABLE' UNION ALL SELECT 'VIEW') x ORDER BY x.n "
    "ELSE SELECT a.* FROM (SELECT " +
    std::string(place) +
    ", CASE o.xtype WHEN 'U' THEN 'TABLE' WHEN 'V' THEN 'VIEW' ELSE 'SYSTEM TABLE' END AS TABLE_TYPE, "
    "CONVERT(VARCHAR(254),NULL) AS REMARKS FROM sysobjects o WHERE o.xtype IN ('U','V','S')) a WHERE "
    "(@table_name IS NULL OR a.TABLE_NAME LIKE @table_name) AND (@table_owner IS NULL OR a.TABLE_OWNER LIKE "
    "@table_owner) AND (@table_type IS NULL OR @table_type='' OR @table_type='%' OR "
    "CHARINDEX('''' + a.TABLE_TYPE + '''', @table_type)>0) ORDER BY a.TABLE_TYPE, a.TABLE_NAME";

const std::string columns =
    "SELECT " + std::string(place) + ", c.name AS COLUMN_NAME, " + columnFacts +
    ", CONVERT(SMALLINT, t.r) AS RADIX, CONVERT(SMALLINT, c.isnullable) AS NULLABLE, "
    "CONVERT(VARCHAR(254),NULL) AS "
    "REMARKS, m.text AS COLUMN_DEF, CONVERT(SMALLINT, CASE WHEN t.d3=93 THEN 9 ELSE t.d3 END) AS "
    "SQL_DATA_TYPE, "
    "CONVERT(SMALLINT, CASE WHEN t.d3=93 THEN 3 END) AS SQL_DATETIME_SUB, CONVERT(INT, CASE WHEN c.xtype IN "
    "(35,99) THEN t.l WHEN c.xtype IN (165,167,173,175,231,239) THEN c.length END) AS CHAR_OCTET_LENGTH, "
    "CONVERT(INT, c.colorder) AS ORDINAL_POSITION, CONVERT(VARCHAR(254), CASE WHEN c.isnullable=1 THEN 'YES' "
    "ELSE "
    "'NO' END) AS IS_NULLABLE, CONVERT(TINYINT, c.type) AS SS_DATA_TYPE "
    "FROM sysobjects o JOIN syscolumns c ON c.id=o.id " +
    joinedTypes +
    " LEFT JOIN syscomments m ON m.id=c.cdefault AND m.colid=1 WHERE o.xtype IN ('U','V') AND o.name LIKE "
    "@table_name AND (@table_owner IS NULL OR N'dbo' LIKE @table_owner) AND (@column_name IS NULL OR c.name "
    "LIKE "
    "@column_name) ORDER BY o.name, c.colorder";

const std::string primaryKeys =
    "SELECT " + std::string(place) +
    ", c.name AS COLUMN_NAME, CONVERT(SMALLINT, k.keyno) AS KEY_SEQ, i.name AS PK_NAME FROM sysobjects o "
    "JOIN "
    "sysindexes i ON i.id=o.id AND (i.status & 2048)<>0 JOIN sysindexkeys k ON k.id=i.id AND k.indid=i.indid "
    "JOIN "
    "syscolumns c ON c.id=k.id AND c.colid=k.colid WHERE o.xtype='U' AND o.name=@table_name ORDER BY o.name, "
    "k.keyno";

const std::string statistics =
    "SELECT a.* FROM (SELECT " + std::string(place) +
    ", CONVERT(SMALLINT,NULL) AS NON_UNIQUE, CONVERT(NVARCHAR(128),NULL) AS INDEX_QUALIFIER, "
    "CONVERT(NVARCHAR(128),NULL) AS INDEX_NAME, CONVERT(SMALLINT,0) AS TYPE, CONVERT(SMALLINT,NULL) AS "
    "SEQ_IN_INDEX, CONVERT(NVARCHAR(128),NULL) AS COLUMN_NAME, CONVERT(CHAR(1),NULL) AS COLLATION, "
    "CONVERT(INT,NULL) AS CARDINALITY, CONVERT(INT,NULL) AS PAGES, CONVERT(VARCHAR(128),NULL) AS "
    "FILTER_CONDITION FROM sysobjects o WHERE o.xtype='U' AND o.name=@table_name UNION ALL SELECT " +
    place +
    ", CONVERT(SMALLINT, CASE WHEN (i.status & 2)<>0 THEN 0 ELSE 1 END), o.name, i.name, CONVERT(SMALLINT, "
    "CASE "
    "WHEN (i.status & 16)<>0 THEN 1 ELSE 3 END), CONVERT(SMALLINT, k.keyno), c.name, 'A', NULL, NULL, NULL "
    "FROM "
    "sysobjects o JOIN sysindexes i ON i.id=o.id AND i.indid>0 JOIN sysindexkeys k ON k.id=i.id AND "
    "k.indid=i.indid JOIN syscolumns c ON c.id=k.id AND c.colid=k.colid WHERE o.xtype='U' AND "
    "o.name=@table_name "
    "AND (@index_name IS NULL OR i.name LIKE @index_name) AND (@is_unique IS NULL OR @is_unique<>'Y' OR "
    "(i.status "
    "& 2)<>0)) a ORDER BY a.NON_UNIQUE, a.TYPE, a.INDEX_NAME, a.SEQ_IN_INDEX";

// The key of the rows: the primary key, else the identity column.
const std::string specialColumns =
    "SELECT CONVERT(SMALLINT,1) AS SCOPE, c.name AS COLUMN_NAME, " + std::string(columnFacts) +
    ", CONVERT(SMALLINT,1) AS PSEUDO_COLUMN FROM sysobjects o JOIN syscolumns c ON c.id=o.id " + joinedTypes +
    " WHERE o.xtype='U' AND o.name=@table_name AND ISNULL(@col_type,'R')='R' AND (EXISTS(SELECT 1 FROM "
    "sysindexes "
    "i JOIN sysindexkeys k ON k.id=i.id AND k.indid=i.indid WHERE i.id=o.id AND (i.status & 2048)<>0 AND "
    "k.colid=c.colid) OR (c.colstat=1 AND NOT EXISTS(SELECT 1 FROM sysindexes i WHERE i.id=o.id AND "
    "(i.status & "
    "2048)<>0))) ORDER BY c.colorder";

const std::string foreignKeys =
    "SELECT DB_NAME() AS PKTABLE_QUALIFIER, N'dbo' AS PKTABLE_OWNER, a.p AS PKTABLE_NAME, a.pc AS "
    "PKCOLUMN_NAME, "
    "DB_NAME() AS FKTABLE_QUALIFIER, N'dbo' AS FKTABLE_OWNER, a.f AS FKTABLE_NAME, a.fc AS FKCOLUMN_NAME, "
    "CONVERT(SMALLINT, a.n) AS KEY_SEQ, CONVERT(SMALLINT, CASE a.u WHEN 0 THEN 1 WHEN 1 THEN 0 ELSE a.u END) "
    "AS "
    "UPDATE_RULE, CONVERT(SMALLINT, CASE a.d WHEN 0 THEN 1 WHEN 1 THEN 0 ELSE a.d END) AS DELETE_RULE, a.k "
    "AS FK_NAME, "
    "a.i AS PK_NAME, CONVERT(SMALLINT,7) AS DEFERRABILITY FROM (SELECT OBJECT_NAME(k.referenced_object_id) "
    "AS p, "
    "COL_NAME(c.referenced_object_id, c.referenced_column_id) AS pc, OBJECT_NAME(k.parent_object_id) AS f, "
    "COL_NAME(c.parent_object_id, c.parent_column_id) AS fc, c.constraint_column_id AS n, "
    "k.update_referential_action AS u, k.delete_referential_action AS d, k.name AS k, i.name AS i FROM "
    "sys.foreign_keys k JOIN sys.foreign_key_columns c ON c.constraint_object_id=k.object_id JOIN "
    "sys.indexes i ON "
    "i.object_id=k.referenced_object_id AND i.index_id=k.key_index_id) a WHERE (@pktable_name IS NULL OR "
    "a.p=@pktable_name) AND (@fktable_name IS NULL OR a.f=@fktable_name) ORDER BY a.p, a.f, a.k, a.n";
const std::string procedures =
    "SELECT DB_NAME() AS PROCEDURE_QUALIFIER, N'dbo' AS PROCEDURE_OWNER, o.name AS PROCEDURE_NAME, -1 AS "
    "NUM_INPUT_PARAMS, -1 AS NUM_OUTPUT_PARAMS, -1 AS NUM_RESULT_SETS, CONVERT(VARCHAR(254),NULL) AS "
    "REMARKS, "
    "CONVERT(SMALLINT,2) AS PROCEDURE_TYPE FROM sysobjects o WHERE o.xtype='P' AND (@sp_name IS NULL OR "
    "o.name LIKE "
    "@sp_name) ORDER BY o.name";

// RETURN_VALUE first, then the parameters.
const std::string procedureColumns =
    "SELECT a.* FROM (SELECT DB_NAME() AS PROCEDURE_QUALIFIER, N'dbo' AS PROCEDURE_OWNER, o.name AS "
    "PROCEDURE_NAME, "
    "N'@RETURN_VALUE' AS COLUMN_NAME, CONVERT(SMALLINT,5) AS COLUMN_TYPE, CONVERT(SMALLINT,4) AS DATA_TYPE, "
    "N'int' AS "
    "TYPE_NAME, CONVERT(INT,10) AS \"PRECISION\", CONVERT(INT,4) AS LENGTH, CONVERT(SMALLINT,0) AS SCALE, "
    "CONVERT(SMALLINT,10) AS RADIX, CONVERT(SMALLINT,0) AS NULLABLE, CONVERT(VARCHAR(254),NULL) AS REMARKS, "
    "CONVERT(NVARCHAR(4000),NULL) AS COLUMN_DEF, CONVERT(SMALLINT,4) AS SQL_DATA_TYPE, "
    "CONVERT(SMALLINT,NULL) AS "
    "SQL_DATETIME_SUB, CONVERT(INT,NULL) AS CHAR_OCTET_LENGTH, CONVERT(INT,0) AS ORDINAL_POSITION, "
    "CONVERT(VARCHAR(254),'NO') AS IS_NULLABLE, CONVERT(TINYINT,56) AS SS_DATA_TYPE FROM sysobjects o WHERE "
    "o.xtype='P' AND o.name LIKE @procedure_name UNION ALL SELECT DB_NAME(), N'dbo', o.name, c.name, "
    "CONVERT(SMALLINT, CASE c.isoutparam WHEN 1 THEN 2 ELSE 1 END), " +
    std::string(columnFacts) +
    ", CONVERT(SMALLINT, t.r), CONVERT(SMALLINT,1), NULL, NULL, CONVERT(SMALLINT, CASE WHEN t.d3=93 THEN 9 "
    "ELSE t.d3 "
    "END), CONVERT(SMALLINT, CASE WHEN t.d3=93 THEN 3 END), CONVERT(INT, CASE WHEN c.xtype IN (35,99) THEN "
    "t.l WHEN "
    "c.xtype IN (165,167,173,175,231,239) THEN c.length END), CONVERT(INT, c.colid), 'YES', CONVERT(TINYINT, "
    "c.type) "
    "FROM sysobjects o JOIN syscolumns c ON c.id=o.id " +
    joinedTypes +
    " WHERE o.xtype='P' AND o.name LIKE @procedure_name) a WHERE @column_name IS NULL OR a.COLUMN_NAME LIKE "
    "@column_name ORDER BY a.PROCEDURE_NAME, a.ORDINAL_POSITION";

const std::string dataTypes =
    "SELECT y.name AS TYPE_NAME, CONVERT(SMALLINT, CASE WHEN @ODBCVer='3' THEN t.d3 ELSE t.d2 END) AS "
    "DATA_TYPE, "
    "CONVERT(INT, ISNULL(t.p, CASE WHEN y.xtype IN (231,239) THEN 4000 WHEN y.xtype IN (106,108) THEN 38 "
    "ELSE 8000 "
    "END)) AS \"PRECISION\", CASE WHEN y.xtype IN (35,167,175,58,61) THEN '''' WHEN y.xtype IN (99,231,239) "
    "THEN "
    "'N''' WHEN y.xtype IN (165,173) THEN '0x' WHEN y.xtype IN (60,122) THEN '$' END AS LITERAL_PREFIX, CASE "
    "WHEN "
    "y.xtype IN (35,167,175,58,61,99,231,239) THEN '''' END AS LITERAL_SUFFIX, CASE WHEN y.xtype IN "
    "(106,108) THEN "
    "'precision,scale' WHEN y.xtype IN (165,173) THEN 'max length' WHEN y.xtype IN (167,175,231,239) THEN "
    "'max "
    "length' END AS CREATE_PARAMS, CONVERT(SMALLINT,1) AS NULLABLE, CONVERT(SMALLINT,0) AS CASE_SENSITIVE, "
    "CONVERT(SMALLINT, CASE WHEN y.xtype IN (35,99) THEN 1 WHEN y.xtype IN (167,175,231,239,58,61) THEN 3 "
    "ELSE 2 "
    "END) AS SEARCHABLE, CONVERT(SMALLINT, CASE WHEN y.xtype=48 THEN 1 WHEN t.r=10 THEN 0 END) AS "
    "UNSIGNED_ATTRIBUTE, CONVERT(SMALLINT, CASE WHEN y.xtype IN (60,122) THEN 1 ELSE 0 END) AS MONEY, "
    "CONVERT(SMALLINT, CASE WHEN t.r=10 THEN 0 END) AS AUTO_INCREMENT, y.name AS LOCAL_TYPE_NAME, "
    "CONVERT(SMALLINT, CASE WHEN y.xtype IN (106,108) THEN 0 ELSE t.s END) AS MINIMUM_SCALE, "
    "CONVERT(SMALLINT, "
    "CASE WHEN y.xtype IN (106,108) THEN 38 ELSE t.s END) AS MAXIMUM_SCALE, CONVERT(SMALLINT, CASE WHEN "
    "t.d3=93 "
    "THEN 9 ELSE t.d3 END) AS SQL_DATA_TYPE, CONVERT(SMALLINT, CASE WHEN t.d3=93 THEN 3 END) AS "
    "SQL_DATETIME_SUB, "
    "CONVERT(INT, t.r) AS NUM_PREC_RADIX, CONVERT(SMALLINT,NULL) AS INTERVAL_PRECISION, CONVERT(SMALLINT, "
    "y.usertype) AS USERTYPE FROM systypes y JOIN " +
    std::string(typeFacts) +
    " t ON t.x=y.xtype WHERE y.name<>N'sysname' AND (@data_type IS NULL OR @data_type='0' OR CONVERT(INT, "
    "@data_type)=CASE WHEN @ODBCVer='3' THEN t.d3 ELSE t.d2 END) ORDER BY 2, 1";

const std::string serverInfo =
    "SELECT a.i AS attribute_id, CONVERT(VARCHAR(60), a.n) AS attribute_name, CONVERT(VARCHAR(255), a.v) AS "
    "attribute_value FROM (SELECT 1 AS i, 'DBMS_NAME' AS n, 'Microsoft SQL Server' AS v UNION ALL SELECT 2, "
    "'DBMS_VER', @@VERSION UNION ALL SELECT 10, 'OWNER_TERM', 'owner' UNION ALL SELECT 11, 'TABLE_TERM', "
    "'table' "
    "UNION ALL SELECT 12, 'MAX_OWNER_NAME_LENGTH', '128' UNION ALL SELECT 13, 'TABLE_LENGTH', '128' UNION "
    "ALL "
    "SELECT 14, 'MAX_QUAL_LENGTH', '128' UNION ALL SELECT 15, 'COLUMN_LENGTH', '128' UNION ALL SELECT 16, "
    "'IDENTIFIER_CASE', 'MIXED' UNION ALL SELECT 17, 'TX_ISOLATION', '8' UNION ALL SELECT 18, "
    "'COLLATION_SEQ', "
    "'Turkish_CI_AS' UNION ALL SELECT 19, 'SAVEPOINT_SUPPORT', 'Y' UNION ALL SELECT 20, 'MULTI_RESULT_SETS', "
    "'Y' "
    "UNION ALL SELECT 22, 'ACCESSIBLE_TABLES', 'Y' UNION ALL SELECT 100, 'USERID_LENGTH', '128' UNION ALL "
    "SELECT "
    "101, 'QUALIFIER_TERM', 'database' UNION ALL SELECT 102, 'NAMED_TRANSACTIONS', 'Y' UNION ALL SELECT 103, "
    "'SPROC_AS_LANGUAGE', 'Y' UNION ALL SELECT 104, 'ACCESSIBLE_SPROC', 'Y' UNION ALL SELECT 105, "
    "'MAX_INDEX_COLS', '16' UNION ALL SELECT 106, 'RENAME_TABLE', 'Y' UNION ALL SELECT 107, 'RENAME_COLUMN', "
    "'Y' "
    "UNION ALL SELECT 108, 'DROP_COLUMN', 'Y' UNION ALL SELECT 109, 'INCREASE_COLUMN_LENGTH', 'Y' UNION ALL "
    "SELECT "
    "110, 'DDL_IN_TRANSACTION', 'Y' UNION ALL SELECT 111, 'DESCENDING_INDEXES', 'Y' UNION ALL SELECT 112, "
    "'SP_RENAME', 'Y') a WHERE @attribute_id IS NULL OR a.i=CONVERT(INT, @attribute_id) ORDER BY a.i";

const std::string who =
    "SELECT p.spid, p.ecid, p.status, p.loginame, p.hostname, CONVERT(CHAR(5), p.blocked) AS blk, d.name AS "
    "dbname, "
    "p.cmd FROM master..sysprocesses p LEFT JOIN master..sysdatabases d ON d.dbid=p.dbid WHERE @loginame IS "
    "NULL OR "
    "p.loginame=@loginame OR (@loginame='active' AND p.cmd<>'AWAITING COMMAND') OR CONVERT(VARCHAR(10), "
    "p.spid)=@loginame ORDER BY p.spid";

const std::vector<CatalogProcedure>& all() {
  static const std::vector<CatalogProcedure> list = {
      {"sp_tables",
       {"@table_name", "@table_owner", "@table_qualifier", "@table_type", "@fUsePattern"},
       tables},
      {"sp_columns",
       {"@table_name", "@table_owner", "@table_qualifier", "@column_name", "@ODBCVer"},
       columns,
       true},
      {"sp_pkeys", {"@table_name", "@table_owner", "@table_qualifier"}, primaryKeys, true},
      {"sp_statistics",
       {"@table_name", "@table_owner", "@table_qualifier", "@index_name", "@is_unique", "@accuracy"},
       statistics,
       true},
      {"sp_special_columns",
       {"@table_name", "@table_owner", "@table_qualifier", "@col_type", "@scope", "@nullable", "@ODBCVer"},
       specialColumns,
       true},
      {"sp_fkeys",
       {"@pktable_name", "@pktable_owner", "@pktable_qualifier", "@fktable_name", "@fktable_owner",
        "@fktable_qualifier"},
       foreignKeys},
      {"sp_stored_procedures", {"@sp_name", "@sp_owner", "@sp_qualifier", "@fUsePattern"}, procedures},
      {"sp_sproc_columns",
       {"@procedure_name", "@procedure_owner", "@procedure_qualifier", "@column_name", "@ODBCVer",
        "@fUsePattern"},
       procedureColumns,
       true},
      {"sp_datatype_info", {"@data_type", "@ODBCVer"}, dataTypes},
      {"sp_server_info", {"@attribute_id"}, serverInfo},
      {"sp_who", {"@loginame"}, who},
  };
  return list;
}

}  // namespace

const CatalogProcedure* findCatalogProcedure(const std::string& name) {
  for (const CatalogProcedure& procedure : all())
    if (foldName(name) == procedure.name) return &procedure;
  return nullptr;
}

}  // namespace engine
