#include <gtest/gtest.h>

#include "engine/language/parser.h"
#include "engine/language/tree_text.h"

namespace engine::test {
namespace {

Batch one(const std::string& text) {
  Batch batch = parseBatch(text);
  EXPECT_EQ(batch.statements.size(), 1u) << text;
  return batch;
}

template <typename Node>
Node first(const std::string& text) {
  Batch batch = parseBatch(text);
  return std::move(std::get<Node>(batch.statements.at(0)->node));
}

TEST(ParserStatement, RunsStatementsTogether) {
  const std::pair<const char*, std::size_t> cases[] = {
      {"DECLARE @a CHAR(30)DECLARE @b INT SET @a='x'UPDATE t SET a='Mal'UPDATE t SET b=1 WHERE c='d'DELETE t",
       6},
      {";;SELECT 1;SELECT 2;", 2},
      {"IF 1=1 SELECT 1; ELSE SELECT 2 SELECT 3", 2},
      {"BEGIN TRAN INSERT t DEFAULT VALUES COMMIT ROLLBACK TRAN SAVE TRANSACTION s COMMIT WORK", 6},
      {"WHILE 1=1 BEGIN IF a=1 BREAK CONTINUE END RETURN SELECT 1", 3},
      {"sp_adduser Ali,'b' EXEC p EXECUTE q 1 SELECT 1", 4},
      {"RETURN PRINT 'a' RAISERROR('%d',16,1,5) WITH NOWAIT USE db SELECT 1", 5},
      {"CREATE TABLE t (a INT)CREATE UNIQUE INDEX i ON t (a)DROP TABLE t TRUNCATE TABLE u", 4},
      {"SET NOCOUNT ON SET DATEFORMAT dmy SET @a='x'(SELECT 1) UNION SELECT 2", 4},
      {"", 0},
  };
  for (const auto& [text, count] : cases) EXPECT_EQ(parseBatch(text).statements.size(), count) << text;
}

TEST(ParserStatement, Insert) {
  auto insert = first<InsertStatement>("INSERT Into db..t (a,[b c]) Values (1,DEFAULT),('x',-@a)");
  EXPECT_EQ(show(insert.target), "db..t");
  EXPECT_EQ(insert.columns, (std::vector<std::string>{"a", "b c"}));
  ASSERT_EQ(insert.values.size(), 2u);
  EXPECT_EQ(show(insert.values[0][1]), "DEFAULT");
  EXPECT_EQ(show(insert.values[1][1]), "(-@a)");
  EXPECT_EQ(show(*first<InsertStatement>("INSERT t SELECT 1").select), "SELECT 1");
  EXPECT_EQ(show(*first<InsertStatement>("INSERT t (SELECT 1)").select), "SELECT 1");
  EXPECT_EQ(show(*first<InsertStatement>("INSERT t (a) (SELECT 1) UNION SELECT 2").select),
            "SELECT 1 UNION SELECT 2");
  EXPECT_TRUE(first<InsertStatement>("INSERT t DEFAULT VALUES").defaultValues);
}

TEST(ParserStatement, UpdateAndDelete) {
  auto update = first<UpdateStatement>(
      "UPDATE x SET a=b.c,x.d+=1,@v=e,@w=f=2,g=DEFAULT FROM t x WITH (NOLOCK),b WHERE x.i=b.i");
  const struct {
    const char *column, *variable, *value;
  } expected[] = {
      {"a", "", "b.c"}, {"d", "", "(x.d + 1)"}, {"", "@v", "e"}, {"f", "@w", "2"}, {"g", "", "DEFAULT"}};
  ASSERT_EQ(update.set.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(update.set[i].column, expected[i].column) << i;
    EXPECT_EQ(update.set[i].variable, expected[i].variable) << i;
    EXPECT_EQ(show(update.set[i].value), expected[i].value) << i;
  }
  ASSERT_EQ(update.from.size(), 2u);
  EXPECT_EQ(show(*update.from[0]), "t x");
  EXPECT_EQ(show(update.where), "(x.i = b.i)");

  auto remove = first<DeleteStatement>("DELETE  FROM db.dbo.t FROM u WHERE u.a=t.a");
  EXPECT_EQ(show(remove.target), "db.dbo.t");
  EXPECT_EQ(show(*remove.from.at(0)), "u");
  EXPECT_EQ(show(first<DeleteStatement>("DELETE TOP (5) t").top), "5");
}

TEST(ParserStatement, CreateTableTakesAttributesInAnyOrder) {
  auto create = first<CreateTableStatement>(
      "CREATE TABLE dbo.[T 1] (ID INT IDENTITY NOT NULL, Ad CHAR (10) COLLATE Turkish_CI_AS DEFAULT 'x' NOT "
      "NULL, N int NOT NULL identity(-5,2) CONSTRAINT PK PRIMARY KEY NONCLUSTERED WITH FILLFACTOR=90 ON "
      "[PRIMARY], Tarih DATETIME NULL CONSTRAINT DF DEFAULT (getdate()), Menu TEXT, Yuzde DECIMAL(10,2) "
      "CHECK (Yuzde>0), CONSTRAINT U UNIQUE CLUSTERED (Ad DESC, N), FOREIGN KEY (N) REFERENCES k(ID)) ON "
      "[PRIMARY]");
  EXPECT_EQ(show(create.name), "dbo.T 1");
  ASSERT_EQ(create.columns.size(), 6u);
  EXPECT_TRUE(create.columns[0].identity && create.columns[0].nullable == false);
  EXPECT_EQ(create.columns[1].collation, "Turkish_CI_AS");
  EXPECT_EQ(create.columns[1].defaultText, "'x'");
  EXPECT_EQ(create.columns[1].nullable, false);
  EXPECT_EQ(create.columns[2].seed, -5);
  EXPECT_EQ(create.columns[2].step, 2);
  EXPECT_TRUE(create.columns[2].primaryKey && create.columns[2].nonclustered);
  EXPECT_EQ(create.columns[2].keyName, "PK");
  EXPECT_EQ(create.columns[3].defaultText, "(getdate())");
  EXPECT_EQ(create.columns[3].defaultName, "DF");
  EXPECT_EQ(create.columns[4].nullable, std::nullopt);
  ASSERT_EQ(create.constraints.size(), 3u);
  EXPECT_EQ(create.constraints[0].text, "Yuzde>0");
  EXPECT_TRUE(create.constraints[1].clustered && create.constraints[1].columns[0].descending);
  EXPECT_EQ(create.constraints[2].referencedColumns, std::vector<std::string>{"ID"});
}

TEST(ParserStatement, TypesHaveTheirDefaults) {
  const std::pair<const char*, const char*> cases[] = {{"CHAR", "CHAR(1)"},
                                                       {"varchar(MAX)", "TEXT"},
                                                       {"nvarchar(max)", "NTEXT"},
                                                       {"[decimal]", "DECIMAL(18,0)"},
                                                       {"numeric(5)", "NUMERIC(5,0)"},
                                                       {"float(24)", "REAL"},
                                                       {"DOUBLE PRECISION", "FLOAT"},
                                                       {"char varying(5)", "VARCHAR(5)"},
                                                       {"national character varying(5)", "NVARCHAR(5)"},
                                                       {"sysname", "NVARCHAR(128)"}};
  for (const auto& [text, type] : cases)
    EXPECT_EQ(describe(first<DeclareStatement>("DECLARE @a " + std::string(text)).variables[0].type), type)
        << text;
}

TEST(ParserStatement, AlterTable) {
  using Action = AlterTableStatement::Action;
  auto add = first<AlterTableStatement>(
      "ALTER TABLE t ADD a CHAR(5) NOT NULL DEFAULT '' WITH VALUES, b INT, CONSTRAINT d DEFAULT 0 FOR b");
  EXPECT_EQ(add.columns.size(), 2u);
  EXPECT_TRUE(add.columns[0].withValues);
  EXPECT_EQ(add.constraints.at(0).forColumn, "b");
  auto column = first<AlterTableStatement>("ALTER TABLE t ALTER column a CHAR(26) not null");
  EXPECT_EQ(column.action, Action::AlterColumn);
  EXPECT_EQ(column.columns.at(0).nullable, false);
  auto dropped = first<AlterTableStatement>("ALTER TABLE t DROP COLUMN a,COLUMN b, c");
  EXPECT_EQ(dropped.action, Action::DropColumn);
  EXPECT_EQ(dropped.dropped, (std::vector<std::string>{"a", "b", "c"}));
  EXPECT_EQ(first<AlterTableStatement>("ALTER TABLE t DROP x,CONSTRAINT y").action, Action::DropConstraint);
}

TEST(ParserStatement, DropAndIndex) {
  const std::pair<const char*, const char*> cases[] = {
      {"DROP INDEX t.i", "t.i"},     {"DROP INDEX i ON dbo.t", "t.i"}, {"DROP INDEX i ON db..t", "db.t.i"},
      {"DROP INDEX dbo.t.i", "t.i"}, {"DROP VIEW dbo.v", "dbo.v"},     {"DROP DATABASE d", "d"}};
  for (const auto& [text, name] : cases)
    EXPECT_EQ(show(first<DropStatement>(text).names.at(0)), name) << text;
  EXPECT_EQ(first<DropStatement>("DROP TABLE a,b").names.size(), 2u);
  auto index =
      first<CreateIndexStatement>("CREATE UNIQUE CLUSTERED INDEX i ON db..t (a,b DESC) WITH (FILLFACTOR=80)");
  EXPECT_TRUE(index.unique && index.clustered && index.columns.at(1).descending);
}

TEST(ParserStatement, CreateDatabase) {
  auto create = first<CreateDatabaseStatement>(
      "CREATE DATABASE D2012 ON ( NAME = D2012,FILENAME = 'C:\\V\\D2012.mdf', SIZE = 10, MAXSIZE = "
      "UNLIMITED, FILEGROWTH = 10 )  LOG ON ( NAME = 'D2012_log', FILENAME = 'C:\\V\\D2012_log.ldf', SIZE = "
      "5MB, FILEGROWTH = 10% )");
  EXPECT_EQ(create.data.at(0).logicalName, "D2012");
  EXPECT_EQ(create.data.at(0).path, "C:\\V\\D2012.mdf");
  EXPECT_EQ(create.data.at(0).maxSize, "UNLIMITED");
  EXPECT_EQ(create.log.at(0).size, "5MB");
  EXPECT_EQ(create.log.at(0).growth, "10%");
  EXPECT_TRUE(
      first<CreateDatabaseStatement>("CREATE DATABASE d ON PRIMARY (FILENAME = 'a') LOG ON (FILENAME='b') "
                                     "COLLATE Turkish_CI_AS FOR ATTACH ")
          .forAttach);
}

TEST(ParserStatement, ViewsAndTriggersKeepTheirText) {
  std::string view = "CREATE View V (a) as SELECT 1 a UNION ALL SELECT 2 -- end\n";
  EXPECT_EQ(first<CreateViewStatement>("  " + view).text, view);
  std::string trigger =
      "ALTER TRIGGER T ON K AFTER UPDATE,DELETE AS DECLARE @a CHAR(30)DECLARE @b INT SELECT @a=a FROM "
      "INSERTED IF @b<>0 BEGIN UPDATE h SET x='AÇIK' WHERE i=@b END ELSE DELETE FROM h WHERE t='Mal'UPDATE h "
      "SET c=0";
  Batch batch = one(trigger);
  const auto& create = std::get<CreateTriggerStatement>(batch.statements[0]->node);
  EXPECT_EQ(create.body.size(), 5u);
  EXPECT_TRUE(create.alter && create.onUpdate && create.onDelete && !create.onInsert);
  EXPECT_EQ(create.text, trigger);
}

TEST(ParserStatement, Exec) {
  const struct {
    const char *text, *procedure, *args;
  } cases[] = {
      {"exec sp_Addlogin 'a', N'b'", "sp_Addlogin", "'a' N'b' "},
      {"sp_dropuser Ali", "sp_dropuser", "'Ali' "},
      {"EXEC master..p @x='y',@z=-1,@w=@w, DEFAULT,NULL", "master..p", "@x='y' @z=(-1) @w=@w  NULL "},
      {"EXECUTE @r = p", "p", ""},
  };
  for (const auto& c : cases) {
    auto exec = first<ExecStatement>(c.text);
    std::string args;
    for (const ExecArgument& arg : exec.args)
      args += (arg.name.empty() ? "" : arg.name + "=") + show(arg.value) + " ";
    EXPECT_EQ(show(exec.procedure), c.procedure) << c.text;
    EXPECT_EQ(args, c.args) << c.text;
  }
  EXPECT_EQ(show(first<ExecStatement>("EXEC ('SELECT '+@a)").text), "('SELECT ' + @a)");
  EXPECT_EQ(first<ExecStatement>("EXEC @r=p").returnVariable, "@r");
}

TEST(ParserStatement, SetOptions) {
  const struct {
    const char *text, *option, *value;
  } cases[] = {
      {"SET NOCOUNT on", "NOCOUNT", "ON"},
      {"SET IDENTITY_INSERT dbo.t OFF", "IDENTITY_INSERT", "OFF"},
      {"set dateformat 'dmy'", "DATEFORMAT", "DMY"},
      {"SET LOCK_TIMEOUT -1", "LOCK_TIMEOUT", "-1"},
      {"SET TRANSACTION ISOLATION LEVEL READ UNCOMMITTED", "TRANSACTION ISOLATION LEVEL", "READ UNCOMMITTED"},
      {"SET STATISTICS IO ON", "STATISTICS IO", "ON"},
  };
  for (const auto& c : cases) {
    auto set = first<SetOptionStatement>(c.text);
    EXPECT_EQ(set.option, c.option);
    EXPECT_EQ(set.value, c.value);
  }
  EXPECT_EQ(first<BlockStatement>("SET ANSI_NULLS, ANSI_PADDING ON").body.size(), 2u);
  EXPECT_EQ(show(first<SetVariableStatement>("SET @a+=1").value), "(@a + 1)");
}

}  // namespace
}  // namespace engine::test
