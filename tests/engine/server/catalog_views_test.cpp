// The views of sys and INFORMATION_SCHEMA, the functions of properties, and the procedures that help.
#include "engine/session_fixture.h"

namespace engine::test {

namespace {

constexpr const char* tables =
    "CREATE TABLE Cari(ID INT IDENTITY(5,2) NOT NULL, Kod CHAR(8) NOT NULL CONSTRAINT PK_Cari PRIMARY KEY, "
    "Ad "
    "NVARCHAR(30) NULL CONSTRAINT DF_Ad DEFAULT 'yok', Bakiye DECIMAL(12,3), Tarih DATETIME, Notu NTEXT, "
    "CONSTRAINT "
    "UQ_Cari UNIQUE(Ad, Bakiye)) "
    "CREATE INDEX Cari_t ON Cari(Tarih DESC)";

}  // namespace

TEST_F(SessionTest, ShowsTheCatalogAsSysViews) {
  run(tables);
  run("CREATE VIEW Liste AS SELECT Kod, Bakiye FROM Cari");
  run("CREATE TRIGGER Cari_y ON Cari FOR INSERT AS RETURN");
  follow({
      {"SELECT name, type, type_desc, OBJECT_NAME(parent_object_id) FROM sys.objects ORDER BY object_id",
       "Cari\tU\tUSER_TABLE\tNULL\nDF_Ad\tD\tDEFAULT_CONSTRAINT\tCari\nPK_Cari\tPK\tPRIMARY_KEY_"
       "CONSTRAINT\tCari\n"
       "UQ_Cari\tUQ\tUNIQUE_CONSTRAINT\tCari\nListe\tV\tVIEW\tNULL\nCari_y\tTR\tSQL_TRIGGER\tCari\n"},
      {"SELECT name, schema_id, max_column_id_used FROM SYS.Tables SELECT name, with_check_option FROM "
       "sys.views",
       "Cari\t1\t6\nListe\t0\n"},
      {"SELECT c.name, c.column_id, t.name, c.max_length, c.precision, c.scale, c.collation_name, "
       "c.is_nullable, "
       "c.is_identity FROM sys.columns c JOIN sys.types t ON t.user_type_id=c.user_type_id WHERE "
       "c.object_id=OBJECT_ID('Cari') ORDER BY c.column_id",
       "ID\t1\tint\t4\t10\t0\tNULL\t0\t1\nKod\t2\tchar\t8\t0\t0\tTurkish_CI_AS\t0\t0\n"
       "Ad\t3\tnvarchar\t60\t0\t0\tTurkish_CI_AS\t1\t0\nBakiye\t4\tdecimal\t9\t12\t3\tNULL\t1\t0\n"
       "Tarih\t5\tdatetime\t8\t23\t3\tNULL\t1\t0\nNotu\t6\tntext\t16\t0\t0\tTurkish_CI_AS\t1\t0\n"},
      {"SELECT name, seed_value, increment_value, last_value FROM sys.identity_columns INSERT INTO Cari(Kod) "
       "VALUES('A') SELECT last_value FROM sys.identity_columns",
       "ID\t5\t2\tNULL\n5\n"},
      {"SELECT i.name, i.index_id, i.type_desc, i.is_unique, i.is_primary_key, i.is_unique_constraint, "
       "k.key_ordinal, COL_NAME(k.object_id, k.column_id), k.is_descending_key FROM sys.indexes i JOIN "
       "sys.index_columns k ON k.object_id=i.object_id AND k.index_id=i.index_id ORDER BY 2, 7",
       "PK_Cari\t1\tCLUSTERED\t1\t1\t0\t1\tKod\t0\nUQ_Cari\t2\tNONCLUSTERED\t1\t0\t1\t1\tAd\t0\n"
       "UQ_Cari\t2\tNONCLUSTERED\t1\t0\t1\t2\tBakiye\t0\nCari_t\t3\tNONCLUSTERED\t0\t0\t0\t1\tTarih\t1\n"},
      {"SELECT name, type, unique_index_id, is_system_named FROM sys.key_constraints ORDER BY name SELECT "
       "name, "
       "parent_column_id, definition FROM sys.default_constraints",
       "PK_Cari\tPK\t1\t0\nUQ_Cari\tUQ\t2\t0\nDF_Ad\t3\t('yok')\n"},
      {"SELECT name, OBJECT_NAME(parent_id), is_instead_of_trigger FROM sys.triggers SELECT "
       "OBJECT_NAME(object_id), "
       "definition FROM sys.sql_modules ORDER BY object_id",
       "Cari_y\tCari\t0\nListe\tCREATE VIEW Liste AS SELECT Kod, Bakiye FROM Cari\n"
       "Cari_y\tCREATE TRIGGER Cari_y ON Cari FOR INSERT AS RETURN\n"},
      {"SELECT name, database_id, state_desc FROM sys.databases ORDER BY database_id SELECT * FROM "
       "sys.schemas",
       "master\t1\tONLINE\nFIRMA\t5\tONLINE\ndbo\t1\t1\nguest\t2\t2\nINFORMATION_SCHEMA\t3\t3\nsys\t4\t4\n"},
      {"SELECT name FROM FIRMA.sys.tables SELECT COUNT(*) FROM master.sys.tables SELECT name FROM "
       "sys.sysobjects "
       "WHERE xtype='U' SELECT COUNT(*) FROM sys.extended_properties",
       "Cari\n0\nCari\n0\n"},
      {"SELECT 1 FROM sys.yok", "!208\n"},
      {"DELETE FROM sys.objects", "!259\n"},
      {"SELECT 1 FROM tables", "!208\n"},
      {"CREATE TABLE tables(a INT) INSERT INTO dbo.tables VALUES(7) SELECT a FROM tables SELECT COUNT(*) "
       "FROM "
       "sys.tables",
       "7\n2\n"},
  });
  EXPECT_EQ(run("SELECT * FROM sys.objects WHERE name='Cari'").substr(0, 5), "Cari\t");
  EXPECT_EQ(last.columns.size(), 12U);
}

TEST_F(SessionTest, ShowsTheCatalogAsInformationSchema) {
  run(tables);
  run("CREATE VIEW Liste AS SELECT Kod, Bakiye FROM Cari");
  follow({
      {"SELECT * FROM INFORMATION_SCHEMA.TABLES ORDER BY TABLE_NAME",
       "FIRMA\tdbo\tCari\tBASE TABLE\nFIRMA\tdbo\tListe\tVIEW\n"},
      {"SELECT * FROM information_schema.columns WHERE table_name='CARI' ORDER BY ordinal_position",
       "FIRMA\tdbo\tCari\tID\t1\tNULL\tNO\tint\tNULL\tNULL\t10\t10\t0\tNULL\tNULL\tNULL\tNULL\tNULL\tNULL\tNU"
       "LL\tNULL"
       "\tNULL\tNULL\n"
       "FIRMA\tdbo\tCari\tKod\t2\tNULL\tNO\tchar\t8\t8\tNULL\tNULL\tNULL\tNULL\tNULL\tNULL\tcp1254\tNULL\tNUL"
       "L\t"
       "Turkish_CI_AS\tNULL\tNULL\tNULL\n"
       "FIRMA\tdbo\tCari\tAd\t3\t('yok')"
       "\tYES\tnvarchar\t30\t60\tNULL\tNULL\tNULL\tNULL\tNULL\tNULL\tUNICODE\tNULL\t"
       "NULL\tTurkish_CI_AS\tNULL\tNULL\tNULL\n"
       "FIRMA\tdbo\tCari\tBakiye\t4\tNULL\tYES\tdecimal\tNULL\tNULL\t12\t10\t3\tNULL\tNULL\tNULL\tNULL\tNULL"
       "\tNULL\t"
       "NULL\tNULL\tNULL\tNULL\n"
       "FIRMA\tdbo\tCari\tTarih\t5\tNULL\tYES\tdatetime\tNULL\tNULL\tNULL\tNULL\tNULL\t3\tNULL\tNULL\tNULL\tN"
       "ULL\tNULL"
       "\tNULL\tNULL\tNULL\tNULL\n"
       "FIRMA\tdbo\tCari\tNotu\t6\tNULL\tYES\tntext\t1073741823\t2147483646\tNULL\tNULL\tNULL\tNULL\tNULL\tNU"
       "LL\t"
       "UNICODE\tNULL\tNULL\tTurkish_CI_AS\tNULL\tNULL\tNULL\n"},
      {"SELECT * FROM INFORMATION_SCHEMA.VIEWS",
       "FIRMA\tdbo\tListe\tCREATE VIEW Liste AS SELECT Kod, Bakiye FROM Cari\tNONE\tNO\n"},
      {"SELECT * FROM INFORMATION_SCHEMA.TABLE_CONSTRAINTS ORDER BY CONSTRAINT_NAME",
       "FIRMA\tdbo\tPK_Cari\tFIRMA\tdbo\tCari\tPRIMARY KEY\tNO\tNO\n"
       "FIRMA\tdbo\tUQ_Cari\tFIRMA\tdbo\tCari\tUNIQUE\tNO\tNO\n"},
      {"SELECT CONSTRAINT_NAME, TABLE_NAME, COLUMN_NAME, ORDINAL_POSITION FROM "
       "INFORMATION_SCHEMA.KEY_COLUMN_USAGE "
       "ORDER BY 1, 4 SELECT TABLE_NAME, COLUMN_NAME, CONSTRAINT_NAME FROM "
       "INFORMATION_SCHEMA.CONSTRAINT_COLUMN_USAGE ORDER BY 3, 2",
       "PK_Cari\tCari\tKod\t1\nUQ_Cari\tCari\tAd\t1\nUQ_Cari\tCari\tBakiye\t2\n"
       "Cari\tKod\tPK_Cari\nCari\tAd\tUQ_Cari\nCari\tBakiye\tUQ_Cari\n"},
      {"SELECT SCHEMA_NAME, SCHEMA_OWNER FROM INFORMATION_SCHEMA.SCHEMATA WHERE CATALOG_NAME='firma'",
       "dbo\tdbo\nguest\tguest\nINFORMATION_SCHEMA\tINFORMATION_SCHEMA\nsys\tsys\n"},
      {"SELECT * FROM INFORMATION_SCHEMA.sysobjects", "!208\n"},
  });
  for (const char* view : {"ROUTINES", "PARAMETERS", "CHECK_CONSTRAINTS", "REFERENTIAL_CONSTRAINTS"})
    EXPECT_EQ(run("SELECT COUNT(*) FROM INFORMATION_SCHEMA." + std::string(view)), "0\n") << view << message;
}

TEST_F(SessionTest, TellsProperties) {
  run(tables);
  run("CREATE TRIGGER Cari_y ON Cari FOR DELETE AS RETURN");
  values({
      {"SERVERPROPERTY('ProductVersion')", "8.00.2012"},
      {"SERVERPROPERTY('productlevel') + '.' + CONVERT(VARCHAR, SERVERPROPERTY('EngineEdition') + 1)",
       "RTM.3"},
      {"CASE WHEN SERVERPROPERTY('MachineName')=@@SERVERNAME AND SERVERPROPERTY('ServerName')=@@SERVERNAME "
       "THEN 1 END",
       "1"},
      {"SERVERPROPERTY('InstanceName')", "NULL"},
      {"SERVERPROPERTY('yok')", "NULL"},
      {"SERVERPROPERTY('Collation') + CONVERT(VARCHAR, SERVERPROPERTY('IsIntegratedSecurityOnly'))",
       "Turkish_CI_AS0"},
      {"DATABASEPROPERTYEX('firma', 'Status') + DATABASEPROPERTYEX(DB_NAME(), 'Recovery')", "ONLINESIMPLE"},
      {"DATABASEPROPERTYEX('yok', 'Status')", "NULL"},
      {"OBJECTPROPERTY(OBJECT_ID('Cari'), 'IsUserTable') + OBJECTPROPERTY(OBJECT_ID('Cari'), "
       "'TableHasIdentity')*10 + "
       "OBJECTPROPERTY(OBJECT_ID('Cari'), 'IsView')*100 + OBJECTPROPERTY(OBJECT_ID('PK_Cari'), "
       "'IsPrimaryKey')*1000 + "
       "OBJECTPROPERTY(OBJECT_ID('Cari_y'), 'IsTrigger')*10000 + OBJECTPROPERTY(OBJECT_ID('Cari'), "
       "'TableHasDeleteTrigger')*100000",
       "111011"},
      {"OBJECTPROPERTY(OBJECT_ID('Cari_y'), 'TableHasIdentity')", "NULL"},
      {"OBJECTPROPERTY(1, 'IsTable')", "NULL"},
      {"COLUMNPROPERTY(OBJECT_ID('Cari'), 'kod', 'AllowsNull')", "0"},
      {"COLUMNPROPERTY(OBJECT_ID('Cari'), 'Ad', 'Precision') + COLUMNPROPERTY(OBJECT_ID('Cari'), 'Bakiye', "
       "'Scale')",
       "33"},
      {"COLUMNPROPERTY(OBJECT_ID('Cari'), 'ID', 'IsIdentity')", "1"},
      {"COLUMNPROPERTY(OBJECT_ID('Cari'), 'yok', 'IsIdentity')", "NULL"},
      {"INDEXPROPERTY(OBJECT_ID('Cari'), 'Cari_t', 'IndexID') + 10*INDEXPROPERTY(OBJECT_ID('Cari'), "
       "'Cari_t', "
       "'IsUnique')",
       "3"},
      {"OBJECT_NAME(OBJECT_ID('dbo.UQ_Cari')) + COL_NAME(OBJECT_ID('Cari'), 4)", "UQ_CariBakiye"},
      {"OBJECT_NAME(OBJECT_ID('Cari'), DB_ID('FIRMA'))", "Cari"},
      {"OBJECT_ID('Cari', 'V')", "NULL"},
      {"SCHEMA_NAME() + SCHEMA_NAME(4) + CONVERT(VARCHAR, SCHEMA_ID('INFORMATION_schema'))", "dbosys3"},
      {"TYPE_NAME(231) + CONVERT(VARCHAR, TYPE_ID('sysname'))", "nvarchar256"},
      {"COL_LENGTH('Cari', 'Ad')", "60"},
      {"HAS_DBACCESS('FIRMA') + IS_SRVROLEMEMBER('sysadmin')", "2"},
  });
}

TEST_F(SessionTest, ShowsLoginsAndUsersToThoseWhoAdministerThem) {
  follow({{"EXEC sp_addlogin ayse, gizli EXEC sp_addlogin veli, gizli EXEC sp_grantdbaccess ayse EXEC "
           "sp_grantdbaccess veli EXEC sp_addrolemember db_datareader, ayse",
           ""},
          {"SELECT name FROM sys.server_principals WHERE type='S' ORDER BY principal_id", "sa\nayse\nveli\n"},
          {"SELECT name FROM sys.database_principals WHERE type='S' AND principal_id>4 ORDER BY name",
           "ayse\nveli\n"}});
  Session reader(server, "ayse", "gizli", "FIRMA");
  EXPECT_EQ(run(reader, "SELECT name FROM sys.server_principals WHERE type='S' ORDER BY principal_id"),
            "sa\nayse\n");
  EXPECT_EQ(run(reader, "SELECT name FROM sys.database_principals WHERE type='S' AND principal_id>4"),
            "ayse\n");
  EXPECT_EQ(run(reader,
                "SELECT USER_NAME(member_principal_id) FROM sys.database_role_members WHERE "
                "role_principal_id=16390"),
            run(reader, "SELECT USER_NAME(uid) FROM sysusers WHERE name='ayse'"));
  EXPECT_EQ(run(reader, "SELECT name FROM sys.syslogins"), "!229\n");
  EXPECT_EQ(run(reader, "SELECT IS_SRVROLEMEMBER('sysadmin'), IS_SRVROLEMEMBER('sysadmin', 'sa')"),
            "0\tNULL\n");
}

TEST_F(SessionTest, Helps) {
  run(tables);
  run("CREATE VIEW Liste AS\n SELECT Kod,\n  Bakiye FROM Cari");
  follow({
      {"EXEC sp_helptext Liste", "CREATE VIEW Liste AS\n\n SELECT Kod,\n\n  Bakiye FROM Cari\n"},
      {"EXEC sp_helptext 'dbo.Cari'", "!15197\n"},
      {"EXEC sp_helptext yok", "!15009\n"},
      {"EXEC sp_helptext 'master.dbo.Liste'", "!15250\n"},
      {"EXEC sp_helpindex Cari",
       "PK_Cari\tclustered, unique, primary key located on PRIMARY\tKod\n"
       "UQ_Cari\tnonclustered, unique, unique key located on PRIMARY\tAd, Bakiye\n"
       "Cari_t\tnonclustered located on PRIMARY\tTarih(-)\n"},
      {"EXEC sp_helpindex Liste",
       "# The object 'Liste' does not have any indexes, or you do not have permissions.\n"},
      {"EXEC sp_helpconstraint Cari",
       "PRIMARY KEY (clustered)\tPK_Cari\t(n/a)\t(n/a)\t(n/a)\t(n/a)\tKod\n"
       "UNIQUE (non-clustered)\tUQ_Cari\t(n/a)\t(n/a)\t(n/a)\t(n/a)\tAd, Bakiye\n"
       "DEFAULT on column Ad\tDF_Ad\t(n/a)\t(n/a)\t(n/a)\t(n/a)\t('yok')\n"},
  });
  EXPECT_EQ(run("EXEC sp_help"),
            "Liste\tdbo\tview\nCari\tdbo\tuser table\nUQ_Cari\tdbo\tunique cns\n"
            "PK_Cari\tdbo\tprimary key cns\nDF_Ad\tdbo\tdefault (maybe cns)\n");
  const std::string help = run("EXEC sp_help Liste");
  EXPECT_EQ(help.substr(help.find('\n') + 1),
            "Kod\tchar\tno\t8\t8\t\tno\tno\tno\tTurkish_CI_AS\n"
            "Bakiye\tdecimal\tno\t9\t12\t3\tyes\t(n/a)\t(n/a)\tNULL\n"
            "No identity column defined.\tNULL\tNULL\tNULL\nNo rowguidcol column defined.\n")
      << message;
  EXPECT_TRUE(
      run("EXEC sp_help Cari").find("ID\t5\t2\t0\nNo rowguidcol column defined.\nPRIMARY\nPK_Cari\t") !=
      std::string::npos)
      << last.text;
}

TEST_F(SessionTest, DetachesADatabaseAndAttachesItAgain) {
  follow({
      {"CREATE DATABASE DEPO", ""},
      {"CREATE TABLE DEPO..T(a INT) INSERT INTO DEPO..T VALUES(3)", ""},
      {"EXEC sp_detach_db FIRMA", "!3703\n"},
      {"EXEC sp_detach_db master", "!7940\n"},
      {"EXEC sp_detach_db yok", "!15010\n"},
      {"BEGIN TRAN EXEC sp_detach_db DEPO ROLLBACK", "!15002\n"},
      {"EXEC sp_addlogin ayse, gizli EXEC sp_detach_db 'DEPO', 'true' SELECT a FROM DEPO..T", "!208\n"},
      {"SELECT name FROM sys.databases", "master\nFIRMA\n"},
      {"CREATE DATABASE YENI ON (NAME=a, FILENAME='DEPO.mdf') LOG ON (NAME=b, FILENAME='DEPO_log.ldf') FOR "
       "ATTACH "
       "SELECT a FROM YENI..T",
       "3\n"},
  });
  Session other(server, "ayse", "gizli", "");
  EXPECT_EQ(run(other, "EXEC sp_detach_db YENI"), "!15247\n");
}

}  // namespace engine::test
