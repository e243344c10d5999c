#include "engine/catalog/system_tables.h"
#include "engine/store_fixture.h"

namespace engine::test {

class DdlTest : public StoreTest {
 protected:
  void SetUp() override {
    s.define("CREATE DATABASE A");
    s.use("A");
  }
  // Rows of a system table's query, "name=value" being left to the caller's SQL over %1.
  std::string system(const char* table, const std::string& select) {
    std::string sql = select;
    const std::string mark = "%1";
    sql.replace(sql.find(mark), mark.size(),
                "(" + systemTableSql(*findSystemTable(table), s.store.attach(s.context.database)) + ")");
    return s.values(sql);
  }
  std::string column(const std::string& table, const std::string& name) {
    const TableInfo& info = s.table(table);
    const ColumnInfo& c = info.columns.at(static_cast<std::size_t>(info.columnIndex(name)));
    return describe(c.type) + (c.nullable ? " NULL" : " NOT NULL") + (c.identity ? " IDENTITY" : "") +
           (c.defaultText.empty() ? "" : " DEFAULT");
  }
  Storing s{*server};
};

TEST_F(DdlTest, ColumnsKeepWhatTheyWereGiven) {
  s.define(
      "CREATE TABLE T (ID INT IDENTITY(5,2), Ad VARCHAR(20) NOT NULL DEFAULT '', Kod CHAR(3) PRIMARY KEY, "
      "Tutar MONEY NULL CONSTRAINT DF_Tutar DEFAULT 0, Aciklama TEXT, Oran DECIMAL(28,4), Tarih DATETIME)");
  EXPECT_EQ(column("T", "ID"), "INT NOT NULL IDENTITY");
  EXPECT_EQ(column("T", "AD"), "VARCHAR(20) NOT NULL DEFAULT");
  EXPECT_EQ(column("T", "KOD"), "CHAR(3) NOT NULL");
  EXPECT_EQ(column("T", "TUTAR"), "MONEY NULL DEFAULT");
  EXPECT_EQ(s.table("T").columns[3].defaultName, "DF_Tutar");
  EXPECT_TRUE(s.table("T").columns[1].defaultName.starts_with("DF__T__"));
  ASSERT_EQ(s.table("T").indexes.size(), 1U);
  EXPECT_TRUE(s.table("T").indexes[0].primaryKey && s.table("T").indexes[0].clustered);
  EXPECT_TRUE(s.table("T").indexes[0].name.starts_with("PK__T__"));
  EXPECT_EQ(s.values("SELECT group_concat(type, ' ') FROM pragma_table_info('T', 'd5')"),
            "INTEGER TEXT TEXT INTEGER TEXT BLOB INTEGER");
  EXPECT_EQ(errorNumber([&] { s.run("INSERT INTO @.T(Kod) VALUES('a')"); }), 8630);
}

// A program that knows format 2 alone would write past these.
TEST_F(DdlTest, RaisesTheFormatOnlyOfAFileThatNeedsIt) {
  const auto format = [&] { return s.values("SELECT value FROM @.zb_meta WHERE key='format'"); };
  s.define("CREATE TABLE P (ID INT NOT NULL PRIMARY KEY, a INT DEFAULT 1)");
  s.define("CREATE VIEW V AS SELECT ID FROM P");
  s.define("CREATE TRIGGER R ON P FOR INSERT AS PRINT 'x'");
  EXPECT_EQ(format(), "2");
  for (const char* raising :
       {"CREATE TABLE F (a INT REFERENCES P)", "ALTER TABLE P ADD CONSTRAINT C CHECK (a > 0)",
        "CREATE PROCEDURE S AS PRINT 'x'",
        "ALTER VIEW V AS SELECT ID FROM P WHERE ID > 0 WITH CHECK OPTION"}) {
    s.run("UPDATE @.zb_meta SET value=2 WHERE key='format'");
    s.define(raising);
    EXPECT_EQ(format(), "3") << raising;
  }
}

TEST_F(DdlTest, RefusedDefinitionsLeaveNothing) {
  s.define("CREATE TABLE Var (a INT, b VARCHAR(5) NOT NULL, c TEXT)");
  s.define("CREATE UNIQUE INDEX I ON Var (a)");
  struct Case {
    const char* statement;
    int error;
  };
  const Case cases[] = {
      {"CREATE TABLE VAR (a INT)", 2714},
      {"CREATE TABLE X (a INT, A INT)", 2705},
      {"CREATE TABLE X (a INT IDENTITY, b INT IDENTITY)", 2744},
      {"CREATE TABLE X (a VARCHAR(5) IDENTITY)", 2749},
      {"CREATE TABLE X (a INT IDENTITY DEFAULT 1)", 1754},
      {"CREATE TABLE X (a INT NULL PRIMARY KEY)", 8111},
      {"CREATE TABLE X (a INT NULL, CONSTRAINT P PRIMARY KEY (a))", 8111},
      {"CREATE TABLE X (a INT PRIMARY KEY, b INT PRIMARY KEY)", 8110},
      {"CREATE TABLE X (a INT, PRIMARY KEY (b))", 1911},
      {"CREATE TABLE X (a TEXT UNIQUE)", 1919},
      {"CREATE TABLE X (a INT REFERENCES Yok (a))", 1767},
      {"CREATE TABLE X (a INT CHECK (a > (SELECT 1)))", 1046},
      {"CREATE TABLE zb_objects (a INT)", 15004},
      {"CREATE TABLE tempdb..X (a INT)", 40517},
      {"CREATE INDEX I ON Var (b)", 1913},
      {"CREATE INDEX J ON Var (b, b)", 1909},
      {"CREATE INDEX J ON Var (z)", 1911},
      {"CREATE INDEX J ON Yok (z)", 1088},
      {"DROP INDEX Var.J", 3701},
      {"DROP TABLE Yok", 3701},
      {"DROP TABLE Var, Yok", 3701},
      {"DROP VIEW Var", 3705},
      {"DROP TRIGGER Yok", 3701},
      {"ALTER TABLE Yok ADD x INT", 4902},
      {"ALTER TABLE Var ADD A INT", 2705},
      {"ALTER TABLE Var DROP COLUMN z", 4924},
      {"ALTER TABLE Var DROP COLUMN a", 4922},
      {"ALTER TABLE Var ALTER COLUMN a BIGINT", 4922},
      {"ALTER TABLE Var ALTER COLUMN z BIGINT", 4924},
      {"ALTER TABLE Var DROP CONSTRAINT I", 3728},
      {"ALTER TABLE Var ADD CONSTRAINT P PRIMARY KEY (a)", 8111},
      {"ALTER VIEW Yok AS SELECT 1 AS a", 208},
      {"CREATE TRIGGER R ON Yok FOR INSERT AS PRINT 'x'", 8197},
      {"CREATE VIEW Var AS SELECT 1 AS a", 2714},
  };
  const std::string before = s.values("SELECT sql FROM @.sqlite_schema ORDER BY 1");
  const std::string objects = s.values("SELECT name FROM @.zb_objects ORDER BY 1");
  for (const auto& each : cases) {
    EXPECT_EQ(s.errorOf(each.statement), each.error) << each.statement << ": " << s.lastError;
    EXPECT_FALSE(s.store.inTransaction());
  }
  EXPECT_EQ(s.values("SELECT sql FROM @.sqlite_schema ORDER BY 1"), before);
  EXPECT_EQ(s.values("SELECT name FROM @.zb_objects ORDER BY 1"), objects);
  EXPECT_EQ(s.table("Var").columns.size(), 3U);
}

TEST_F(DdlTest, UniqueIndexesTreatNullsAndTurkishLettersAsTheServerDoes) {
  s.define("CREATE TABLE T (a INT, b VARCHAR(10)) CREATE UNIQUE INDEX U ON T (a, b)");
  s.run("INSERT INTO @.T VALUES(1, 'izmir'), (1, NULL), (NULL, NULL), (NULL, 'x')");
  const auto duplicate = [&](const std::string& values) {
    std::string text;
    EXPECT_EQ(errorNumber([&] { s.run("INSERT INTO @.T VALUES(" + values + ")"); }, &text), 8630) << values;
    const auto start = text.find("UNIQUE");
    EXPECT_NE(start, std::string::npos) << text;
    const Error error =
        constraintError(*s.store.catalog("A"), text.substr(std::min(start, text.size())), "INSERT");
    EXPECT_EQ(error.number(), 2601);
    EXPECT_NE(std::string(error.what()).find("'U'"), std::string::npos) << error.what();
  };
  duplicate("1, 'İZMİR  '");
  duplicate("1, NULL");
  duplicate("NULL, NULL");
  duplicate("NULL, 'X'");
  s.run("INSERT INTO @.T VALUES(1, 'ızmır')");
  s.define("CREATE TABLE D (a INT)");
  s.run("INSERT INTO @.D VALUES(1), (1)");
  EXPECT_EQ(s.errorOf("CREATE UNIQUE INDEX U ON D (a)"), 1505);
  EXPECT_EQ(s.errorOf("ALTER TABLE D ADD UNIQUE (a)"), 1505);
}

TEST_F(DdlTest, AddingColumnsToRows) {
  s.define("CREATE TABLE T (a INT)");
  EXPECT_EQ(s.errorOf("ALTER TABLE T ADD bos INT NOT NULL"), 0);
  s.run("INSERT INTO @.T VALUES(1, 0), (2, 0), (3, 0)");
  EXPECT_EQ(s.errorOf("ALTER TABLE T ADD dolu INT NOT NULL"), 4901);
  s.define(
      "ALTER TABLE T ADD b CHAR(5) NOT NULL DEFAULT 'xy', c INT DEFAULT 7, d MONEY NOT NULL DEFAULT -1.5, "
      "e INT IDENTITY(10,5), f DATETIME NOT NULL DEFAULT '20100102', g VARCHAR(9) NULL");
  EXPECT_EQ(
      s.values("SELECT b||'/'||coalesce(c,'NULL')||'/'||d||'/'||e||'/'||f||'/'||coalesce(g,'-') FROM @.T"),
      "xy/NULL/-15000/10/1041413760000/-|xy/NULL/-15000/15/1041413760000/-|xy/NULL/-15000/20/1041413760000/"
      "-");
  EXPECT_EQ(nextIdentity(s.store, "A", s.table("T"), 2), 25);
  EXPECT_EQ(nextIdentity(s.store, "A", s.table("T")), 35);
  EXPECT_EQ(s.errorOf("ALTER TABLE T ADD h INT NOT NULL DEFAULT GETDATE()"), 40517);
  s.context.evaluate = [](const Expr&, const Type&) { return Datum(42); };
  s.define("ALTER TABLE T ADD h INT NOT NULL DEFAULT GETDATE()");
  EXPECT_EQ(s.values("SELECT h FROM @.T"), "42|42|42");
}

TEST_F(DdlTest, AlteringColumnsConvertsTheRows) {
  struct Case {
    const char* from;
    const char* value;  // SQLite literal
    const char* to;
    int error;
    const char* result;
  };
  const Case cases[] = {
      {"CHAR(3)", "'abc'", "CHAR(9)", 0, "'abc'"},
      {"CHAR(9)", "'abc'", "CHAR(3)", 0, "'abc'"},
      {"CHAR(9)", "'abcd'", "CHAR(3)", 8152, "'abcd'"},
      {"VARCHAR(9)", "'ab   '", "VARCHAR(3)", 0, "'ab '"},
      {"CHAR(5)", "'ab'", "VARCHAR(9)", 0, "'ab   '"},
      {"VARCHAR(9)", "'ab  '", "CHAR(9)", 0, "'ab'"},
      {"VARCHAR(9)", "' 12 '", "INT", 0, "12"},
      {"VARCHAR(9)", "'x12'", "INT", 245, "'x12'"},
      {"INT", "70000", "SMALLINT", 220, "70000"},
      {"INT", "12", "BIGINT", 0, "12"},
      {"INT", "12", "VARCHAR(20)", 0, "'12'"},
      {"INT", "12", "MONEY", 0, "120000"},
      {"INT", "5", "BIT", 0, "1"},
      {"FLOAT", "2.5", "DECIMAL(10,2)", 0, "250"},
      {"INT", "NULL", "INT NOT NULL", 515, "NULL"},
      {"INT", "3", "INT NOT NULL", 0, "3"},
      {"INT NOT NULL", "3", "INT NULL", 0, "3"},
      {"VARCHAR(9) NOT NULL", "'20100102'", "DATETIME", 0, "1041413760000"},
      {"VARCHAR(9)", "'bu ne'", "DATETIME", 241, "'bu ne'"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(std::string(each.from) + " " + each.value + " -> " + each.to);
    s.define(std::string("CREATE TABLE T (n INT IDENTITY, k INT PRIMARY KEY, x ") + each.from + ", y INT)");
    s.define("CREATE INDEX Y ON T (y)");
    s.run(std::string("INSERT INTO @.T VALUES(1, 1, ") + each.value + ", 5)");
    EXPECT_EQ(s.errorOf(std::string("ALTER TABLE T ALTER COLUMN x ") + each.to), each.error) << s.lastError;
    EXPECT_EQ(s.values("SELECT quote(x)||y FROM @.T"), std::string(each.result) + "5");
    const std::string expected = each.error == 0 ? each.to : each.from;
    EXPECT_EQ(column("T", "x"), expected.ends_with("NULL") ? expected : expected + " NULL");
    EXPECT_EQ(errorNumber([&] { s.run("INSERT INTO @.T VALUES(2, 1, NULL, 6)"); }), 8630);
    EXPECT_EQ(s.values("SELECT count(*) FROM pragma_index_list('T', 'd5')"), "3");
    s.define("DROP TABLE T");
  }
}

TEST_F(DdlTest, DependentsHoldAColumn) {
  s.define(
      "CREATE TABLE T (a VARCHAR(5), b CHAR(5) DEFAULT 'x', c INT NOT NULL CONSTRAINT P PRIMARY KEY, d INT)");
  s.define("CREATE INDEX I ON T (a)");
  EXPECT_EQ(s.errorOf("ALTER TABLE T ALTER COLUMN a VARCHAR(9)"), 0);
  EXPECT_EQ(s.errorOf("ALTER TABLE T ALTER COLUMN a VARCHAR(3)"), 4922);
  EXPECT_EQ(s.errorOf("ALTER TABLE T ALTER COLUMN b CHAR(9)"), 0);
  EXPECT_EQ(s.errorOf("ALTER TABLE T ALTER COLUMN b INT"), 4922);
  EXPECT_EQ(s.errorOf("ALTER TABLE T DROP COLUMN b"), 4922);
  EXPECT_NE(s.lastError.find(s.table("T").columns[1].defaultName), std::string::npos);
  s.define("ALTER TABLE T DROP CONSTRAINT " + s.table("T").columns[1].defaultName);
  s.define("ALTER TABLE T DROP COLUMN b");
  EXPECT_EQ(s.errorOf("DROP INDEX T.P"), 3723);
  s.define("ALTER TABLE T DROP CONSTRAINT P");
  s.define("ALTER TABLE T DROP COLUMN c");
  s.define("DROP INDEX T.I");
  s.define("ALTER TABLE T DROP COLUMN d");
  EXPECT_EQ(s.errorOf("ALTER TABLE T DROP COLUMN a"), 4923);
  s.define("ALTER TABLE T ADD z INT");
  EXPECT_EQ(s.table("T").columns.back().id, 5);
  s.define("ALTER TABLE T ADD CONSTRAINT DZ DEFAULT 4 FOR z");
  EXPECT_EQ(s.table("T").columns.back().defaultText, "4");
  EXPECT_EQ(s.errorOf("ALTER TABLE T ADD DEFAULT 4 FOR z"), 1781);
}

TEST_F(DdlTest, ViewsAndTriggersComeAndGo) {
  s.define("CREATE TABLE T (a INT)");
  s.define("CREATE VIEW V AS SELECT a FROM T");
  s.define("CREATE TRIGGER R ON T FOR INSERT, DELETE AS PRINT 'a'");
  ASSERT_EQ(s.table("T").triggers.size(), 1U);
  EXPECT_TRUE(s.table("T").triggers[0]->onInsert && s.table("T").triggers[0]->onDelete);
  EXPECT_FALSE(s.table("T").triggers[0]->onUpdate);
  s.define("ALTER TRIGGER R ON T FOR UPDATE AS PRINT 'b'");
  EXPECT_EQ(s.table("T").triggers[0]->text, "CREATE TRIGGER R ON T FOR UPDATE AS PRINT 'b'");
  s.define("ALTER VIEW V AS SELECT 2 AS a");
  s.table("T");
  ASSERT_NE(s.catalog->view("v"), nullptr);
  EXPECT_EQ(s.catalog->view("v")->text, "CREATE VIEW V AS SELECT 2 AS a");
  EXPECT_EQ(s.catalog->view("v")->columns.size(), 1U);
  EXPECT_EQ(s.errorOf("CREATE TRIGGER V ON T FOR INSERT AS PRINT 'a'"), 2714);
  s.define("DROP TABLE T");
  EXPECT_EQ(s.errorOf("DROP TRIGGER R"), 3701);
  s.define("DROP VIEW V");
  EXPECT_EQ(s.values("SELECT count(*) FROM @.zb_objects"), "0");
  EXPECT_EQ(s.values("SELECT count(*) FROM @.zb_columns"), "0");
}

TEST_F(DdlTest, Renaming) {
  s.define("CREATE TABLE Eski (a INT CONSTRAINT P PRIMARY KEY, b INT) CREATE INDEX I ON Eski (b)");
  const auto rename = [&](const char* item, const char* to, const char* type) {
    return errorNumber([&] { renameItem(s.store, "A", item, to, type); });
  };
  EXPECT_EQ(rename("Eski", "Yeni", ""), 0);
  EXPECT_EQ(rename("Yeni.b", "c", "COLUMN"), 0);
  EXPECT_EQ(rename("[Yeni].I", "J", "INDEX"), 0);
  EXPECT_EQ(rename("P", "Q", "OBJECT"), 0);
  EXPECT_EQ(rename("yeni", "YENI", "OBJECT"), 0);
  EXPECT_EQ(rename("Yeni.c", "A", "COLUMN"), 15335);
  EXPECT_EQ(rename("Yok", "x", ""), 15225);
  EXPECT_EQ(rename("Yeni.z", "x", "COLUMN"), 15248);
  EXPECT_EQ(rename("Yeni", "x", "TABLO"), 15249);
  EXPECT_EQ(rename("Yeni", "Q", "OBJECT"), 15335);
  EXPECT_EQ(s.table("YENI").name, "YENI");
  EXPECT_EQ(s.table("YENI").columns[1].name, "c");
  EXPECT_EQ(s.table("YENI").indexes[0].name, "Q");
  EXPECT_EQ(s.table("YENI").indexes[1].name, "J");
  s.run("INSERT INTO @.YENI(a, c) VALUES(1, 2)");
}

TEST_F(DdlTest, IdentityValuesGoOnAcrossSessionsAndEndAtTheirType) {
  s.define("CREATE TABLE T (n TINYINT IDENTITY(250,2))");
  EXPECT_EQ(nextIdentity(s.store, "A", s.table("T")), 250);
  Storing other(*server, "A");
  EXPECT_EQ(nextIdentity(other.store, "A", other.table("T")), 252);
  noteIdentity(s.store, "A", s.table("T"), 251);
  EXPECT_EQ(lastIdentity(s.store, "A", s.table("T")), 252);
  s.store.begin();
  EXPECT_EQ(errorNumber([&] { nextIdentity(s.store, "A", s.table("T"), 2); }), 8115);
  s.store.rollback();
  EXPECT_EQ(nextIdentity(s.store, "A", s.table("T")), 254);
  resetIdentity(s.store, "A", s.table("T"));
  EXPECT_EQ(lastIdentity(s.store, "A", s.table("T")), std::nullopt);
  EXPECT_EQ(nextIdentity(s.store, "A", s.table("T"), 3), 250);
}

TEST_F(DdlTest, SelectIntoTables) {
  std::vector<ColumnInfo> columns(2);
  columns[0].name = "n";
  columns[0].type = {TypeId::Int, 0, 0, 0};
  columns[0].identity = true;
  columns[1].name = "ad";
  columns[1].type = {TypeId::VarChar, 7, 0, 0};
  createTableFrom(s.store, "A", "Kopya", columns);
  EXPECT_EQ(column("kopya", "n"), "INT NOT NULL IDENTITY");
  EXPECT_EQ(column("kopya", "ad"), "VARCHAR(7) NULL");
  EXPECT_EQ(errorNumber([&] { createTableFrom(s.store, "A", "KOPYA", columns); }), 2714);
  columns[1].name = "";
  EXPECT_EQ(errorNumber([&] { createTableFrom(s.store, "A", "K2", columns); }), 1038);
}

TEST_F(DdlTest, SystemTablesShowTheDefinitions) {
  s.define(
      "CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, Ad CHAR(12) NOT NULL, Not_ NVARCHAR(10), Tutar MONEY, "
      "Oran DECIMAL(18,2) DEFAULT 1, Uzun TEXT)");
  s.define("CREATE TRIGGER R ON T FOR INSERT AS PRINT '" + std::string(5000, 'x') + "'");
  EXPECT_EQ(system("sysobjects",
                   "SELECT name||':'||xtype||':'||type FROM %1 WHERE xtype<>'S' AND name IN "
                   "('T','R') ORDER BY name"),
            "R:TR:TR|T:U:U");
  EXPECT_EQ(
      system("syscolumns",
             "SELECT name||','||xtype||','||length||','||isnullable||','||colstat||','||colid FROM %1 WHERE "
             "id=(SELECT id FROM d5.zb_objects WHERE name='T') ORDER BY colid"),
      "ID,56,4,0,1,1|Ad,175,12,0,0,2|Not_,231,20,1,0,3|Tutar,60,8,1,0,4|Oran,106,9,1,0,5|Uzun,35,16,1,0,6");
  EXPECT_EQ(system("systypes", "SELECT name FROM %1 WHERE xtype IN (175, 56, 60) ORDER BY name"),
            "char|int|money");
  EXPECT_EQ(system("sysindexes", "SELECT count(*) FROM %1 WHERE indid=1"), "1");
  EXPECT_EQ(system("syscomments", "SELECT count(*) FROM %1 WHERE length(text)>900"), "2");
  EXPECT_EQ(system("sysusers", "SELECT name FROM %1 WHERE hasdbaccess=1"), "dbo");
  EXPECT_EQ(system("sysobjects", "SELECT count(*) FROM %1 WHERE name='sysxlogins'"), "0");
  s.context.database = "master";
  EXPECT_EQ(system("sysobjects", "SELECT count(*) FROM %1 WHERE name='sysxlogins'"), "1");
  EXPECT_EQ(system("sysdatabases", "SELECT name||dbid FROM %1 ORDER BY dbid"), "master1|A5");
  EXPECT_EQ(system("sysdatabases", "SELECT filename FROM %1 WHERE name='a'"),
            server->folder().string() + "\\A.mdf");
  EXPECT_EQ(system("syslogins", "SELECT name||sysadmin||quote(password) FROM %1"), "sa1NULL");
  for (const auto& table : systemTables()) {
    SCOPED_TRACE(table.name);
    lite::Stmt rows(s.store.handle(), systemTableSql(table, "d1"));
    while (rows.step()) {
    }
  }
}

}  // namespace engine::test
