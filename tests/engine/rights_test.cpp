// What each login may do: logins x statements x ways of naming the object.
#include <functional>

#include "engine/session_fixture.h"

namespace engine::test {
namespace {

// One login per role, each a user of FIRMA unless it says otherwise; all stand on master.
class RightsTest : public SessionTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(run("CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, A INT) INSERT INTO T (A) VALUES (1) "
                  "CREATE TABLE IZ (A INT)"),
              "");
    ASSERT_EQ(run("CREATE VIEW V AS SELECT A FROM T"), "");
    ASSERT_EQ(run("CREATE TRIGGER TR ON T FOR INSERT AS INSERT INTO IZ SELECT A FROM INSERTED"), "");
    ASSERT_EQ(run("CREATE DATABASE KOMSU"), "");
    ASSERT_EQ(run("CREATE TABLE KOMSU..K (A INT) INSERT INTO KOMSU..K VALUES (7)"), "");
    for (const char* login :
         {"yabanci", "sahip", "okur", "yazar", "tanimci", "kapali", "komsu", "duz", "yonetici"})
      ASSERT_EQ(run(std::string("EXEC sp_addlogin '") + login + "','p'"), "");
    for (const auto& [user, role] : {std::pair{"sahip", "db_owner"},
                                     {"okur", "db_datareader"},
                                     {"yazar", "db_datawriter"},
                                     {"tanimci", "db_ddladmin"},
                                     {"kapali", "db_owner"},
                                     {"kapali", "db_denydatareader"},
                                     {"duz", ""}}) {
      run(std::string("EXEC sp_grantdbaccess '") + user + "'");
      if (*role) {
        ASSERT_EQ(run(std::string("EXEC sp_addrolemember '") + role + "','" + user + "'"), "");
      }
    }
    ASSERT_EQ(run("EXEC KOMSU..sp_grantdbaccess 'komsu' EXEC KOMSU..sp_addrolemember 'db_owner','komsu'"),
              "");
    ASSERT_EQ(run("EXEC sp_addsrvrolemember 'yonetici','sysadmin' USE master"), "");
  }
  Session& as(const std::string& login) {
    auto& made = sessions_[login];
    if (!made) made = std::make_unique<Session>(server, login, "p", "master");
    return *made;
  }
  // The last line of what it prints: an error or the last row, or nothing.
  std::string outcome(const std::string& login, const std::string& batch) {
    std::string text = run(as(login), batch);
    if (!text.empty()) text.pop_back();
    const auto line = text.rfind('\n');
    return line == std::string::npos ? text : text.substr(line + 1);
  }

 private:
  std::map<std::string, std::unique_ptr<Session>> sessions_;
};

TEST_F(RightsTest, StatementsOfEveryLoginByEveryWayOfNaming) {
  // The last two are told as the first and the one before them.
  const std::vector<std::string> logins = {"yabanci", "duz",   "okur",  "yazar",   "tanimci",
                                           "kapali",  "sahip", "komsu", "yonetici"};
  struct Case {
    std::string statement;              // % stands before the name
    std::vector<std::string> outcomes;  // in the order of the logins
  };
  const Case cases[] = {
      {"SELECT A FROM %T", {"!916", "!229", "1", "!229", "!229", "!229", "1"}},
      {"SELECT A FROM %V", {"!916", "!229", "1", "!229", "!229", "!229", "1"}},
      {"SELECT 5 WHERE EXISTS(SELECT * FROM %T)", {"!916", "!229", "5", "!229", "!229", "!229", "5"}},
      {"INSERT INTO %T (A) VALUES (1)", {"!916", "!229", "!229", "", "!229", "", ""}},
      {"INSERT INTO %IZ SELECT 3", {"!916", "!229", "!229", "", "!229", "", ""}},
      {"UPDATE %T SET A=1", {"!916", "!229", "!229", "", "!229", "", ""}},
      {"UPDATE %T SET A=A+0", {"!916", "!229", "!229", "!229", "!229", "!229", ""}},
      {"UPDATE %T SET A=1 WHERE A=9", {"!916", "!229", "!229", "!229", "!229", "!229", ""}},
      {"DELETE FROM %T WHERE A=9", {"!916", "!229", "!229", "!229", "!229", "!229", ""}},
      {"DELETE FROM %IZ", {"!916", "!229", "!229", "", "!229", "", ""}},
      {"SELECT COUNT(*) FROM %sysobjects WHERE name='T'", {"!916", "1", "1", "1", "1", "1", "1"}},
      {"CREATE TABLE %YENI (A INT) DROP TABLE %YENI", {"!916", "!262", "!262", "!262", "", "", ""}},
      {"SELECT 1 AS A INTO %YENI DROP TABLE %YENI", {"!916", "!262", "!262", "!262", "", "", ""}},
      {"ALTER TABLE %IZ ADD B INT ALTER TABLE %IZ DROP COLUMN B",
       {"!916", "!1088", "!1088", "!1088", "", "", ""}},
      {"CREATE INDEX IX ON %IZ (A)", {"!916", "!1088", "!1088", "!1088", "", "", ""}},
      {"TRUNCATE TABLE %IZ", {"!916", "!1088", "!1088", "!1088", "", "", ""}},
      {"DROP TABLE %T2", {"!916", "!3701", "!3701", "!3701", "!3701", "!3701", "!3701"}},
      {"SET IDENTITY_INSERT %T ON SET IDENTITY_INSERT %T OFF",
       {"!916", "!1088", "!1088", "!1088", "", "", ""}},
      {"DECLARE @a INT SET @a=(SELECT MAX(A) FROM %T)", {"!916", "!229", "", "!229", "!229", "!229", ""}},
      {"IF EXISTS(SELECT * FROM %V) PRINT 'x'", {"!916", "!229", "# x", "!229", "!229", "!229", "# x"}},
      {"INSERT INTO %IZ SELECT A FROM %T WHERE A=99", {"!916", "!229", "!229", "!229", "!229", "!229", ""}},
      {"DELETE FROM %IZ FROM %T T WHERE T.A=99", {"!916", "!229", "!229", "!229", "!229", "!229", ""}},
      {"DBCC CHECKTABLE ('%T') WITH NO_INFOMSGS", {"!916", "!2557", "!2557", "!2557", "", "", ""}},
      {"EXEC %sp_rename 'IZ','IZ'", {"!916", "!15247", "!15247", "!15247", "", "", ""}},
      {"EXEC %sp_grantdbaccess 'yok'", {"!916", "!15247", "!15247", "!15247", "!15247", "!15007", "!15007"}},
      {"EXEC %sp_addrolemember 'db_owner','yabanci'",
       {"!916", "!15247", "!15247", "!15247", "!15247", "!15410", "!15410"}},
      {"EXEC %sp_dropuser 'yok'", {"!916", "!15247", "!15247", "!15247", "!15247", "!15008", "!15008"}},
  };
  struct Way {
    const char *prefix, *before;
    bool asText = false;
  };
  const auto literal = [](const std::string& text) {
    std::string out = "'";
    for (const char c : text) out += c == '\'' ? "''" : std::string(1, c);
    return out + "'";
  };
  for (const Case& c : cases) {
    for (const Way& way : {Way{"FIRMA.dbo.", ""}, Way{"FIRMA..", ""}, Way{"[firma].[dbo].", ""},
                           Way{"FIRMA..", "", true}, Way{"", "USE FIRMA "}, Way{"dbo.", "USE FIRMA "}}) {
      const bool procedure = c.statement.starts_with("EXEC");
      if (procedure && std::string(way.prefix) == "dbo.") continue;
      std::string statement = c.statement;
      for (std::size_t at; (at = statement.find('%')) != std::string::npos;)
        statement.replace(at, 1, way.prefix);
      if (way.asText) statement = "EXEC(" + literal(statement) + ")";
      for (std::size_t i = 0; i < logins.size(); ++i) {
        const std::string& expected = c.outcomes[i < c.outcomes.size() ? i : i == logins.size() - 1 ? 6 : 0];
        const bool used = *way.before != 0;
        // Who cannot come in stays where he was, and finds nothing of that name there.
        if (used && expected == "!916") {
          EXPECT_EQ(outcome(logins[i], "USE FIRMA"), "!916") << logins[i];
          continue;
        }
        EXPECT_EQ(outcome(logins[i], way.before + statement), expected)
            << logins[i] << ": " << way.before << statement << " " << message;
        if (used) outcome(logins[i], "USE master");
        if (c.statement.starts_with("CREATE INDEX") && expected.empty())
          run("USE FIRMA DROP INDEX IZ.IX USE master");
      }
    }
  }
}

TEST_F(RightsTest, DefinitionsAreRefusedByTheirOwnNumbers) {
  struct Case {
    const char *login, *statement, *outcome;
  };
  const Case cases[] = {
      {"okur", "USE FIRMA CREATE TABLE X (A INT)", "!262"},
      {"yabanci", "CREATE TABLE X (A INT)", "!262"},
      {"yabanci", "CREATE DATABASE X", "!262"},
      {"sahip", "CREATE DATABASE X", "!262"},
      {"yabanci", "DROP DATABASE FIRMA", "!3701"},
      {"okur", "DROP DATABASE FIRMA", "!3701"},
      {"tanimci", "DROP DATABASE FIRMA", "!3701"},
      {"komsu", "DROP DATABASE FIRMA", "!3701"},
      {"sahip", "DROP DATABASE KOMSU", "!3701"},
      {"yabanci", "DROP DATABASE YOK", "!3701"},
      {"yabanci", "DBCC CHECKDB ('FIRMA') WITH NO_INFOMSGS", "!916"},
      {"komsu", "DBCC CHECKTABLE ('FIRMA..T') WITH NO_INFOMSGS", "!916"},
      {"okur", "DBCC CHECKDB ('FIRMA') WITH NO_INFOMSGS", "!7983"},
      {"tanimci", "DBCC CHECKDB ('FIRMA') WITH NO_INFOMSGS", "!7983"},
      {"tanimci", "DBCC CHECKDB WITH NO_INFOMSGS", "!7983"},
      {"sahip", "DBCC CHECKDB ('firma') WITH NO_INFOMSGS", ""},
      {"okur", "ALTER DATABASE FIRMA SET DELAYED_DURABILITY = DISABLED", "!5011"},
      {"komsu", "ALTER DATABASE FIRMA SET PAGE_VERIFY CHECKSUM", "!5011"},
      {"komsu", "ALTER DATABASE YOK SET PAGE_VERIFY CHECKSUM", "!5011"},
      {"sahip", "ALTER DATABASE FIRMA SET DELAYED_DURABILITY = DISABLED", ""},
      {"komsu", "DROP DATABASE KOMSU", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(outcome(c.login, c.statement), c.outcome) << c.login << ": " << c.statement << message;
    outcome(c.login, "USE master");
  }
  EXPECT_EQ(outcome("okur", "USE FIRMA EXEC('CREATE VIEW X AS SELECT 1 AS A')"), "!262");
  EXPECT_EQ(outcome("okur", "EXEC('CREATE TRIGGER X ON T FOR INSERT AS PRINT 1')"), "!8197");
  EXPECT_EQ(outcome("okur", "EXEC('ALTER VIEW V AS SELECT 1 AS A')"), "!208");
  EXPECT_EQ(run("SELECT name FROM master..sysdatabases WHERE name IN ('FIRMA','KOMSU')"), "FIRMA\n");
}

TEST_F(RightsTest, LoginsAreForSysadminAlone) {
  for (const char* who : {"yabanci", "sahip"}) {
    for (const char* table : {"master..syslogins", "master.dbo.sysxlogins", "[master]..[SYSLOGINS]"})
      EXPECT_EQ(outcome(who, std::string("SELECT name FROM ") + table), "!229") << who << table;
    EXPECT_EQ(outcome(who, "EXEC('SELECT COUNT(*) FROM master..sysxlogins')"), "!229");
    EXPECT_EQ(outcome(who, "EXEC sp_addlogin 'x','y'"), "!15247");
    EXPECT_EQ(outcome(who, "EXEC sp_droplogin 'okur'"), "!15247");
    EXPECT_EQ(outcome(who, "EXEC sp_password NULL,'x','sa'"), "!15247");
    EXPECT_EQ(outcome(who, std::string("EXEC sp_addsrvrolemember '") + who + "','sysadmin'"), "!15247");
  }
  // A view of somebody else does not open them, nor does a view in a database of one's own.
  ASSERT_EQ(run("USE FIRMA"), "");
  ASSERT_EQ(run("CREATE VIEW GIZLI AS SELECT name FROM master..sysxlogins"), "");
  EXPECT_EQ(outcome("sahip", "SELECT * FROM FIRMA..GIZLI"), "!229");
  // securityadmin keeps logins, but cannot take over sysadmin.
  ASSERT_EQ(run("EXEC sp_addsrvrolemember 'duz','securityadmin'"), "");
  EXPECT_EQ(outcome("duz", "EXEC sp_addlogin 'x','y'"), "");
  EXPECT_EQ(outcome("duz", "EXEC sp_password NULL,'z','x'"), "");
  EXPECT_EQ(outcome("duz", "EXEC sp_password NULL,'z','sa'"), "!15247");
  EXPECT_EQ(outcome("duz", "EXEC sp_addsrvrolemember 'duz','sysadmin'"), "!15247");
  EXPECT_EQ(outcome("duz", "EXEC sp_addsrvrolemember 'x','securityadmin'"), "");
  EXPECT_EQ(outcome("duz", "ALTER DATABASE KOMSU SET DELAYED_DURABILITY = FORCED"), "!5011");
}

TEST_F(RightsTest, ViewsAndTriggersWorkByTheirOwnersRightInTheirOwnDatabase) {
  // The trigger writes into a table that the writer could not read, the view reads one that is not the
  // reader's.
  EXPECT_EQ(outcome("yazar", "INSERT INTO FIRMA..T (A) VALUES (4)"), "");
  EXPECT_EQ(run("SELECT A FROM FIRMA..IZ"), "4\n");
  ASSERT_EQ(run("USE FIRMA"), "");
  ASSERT_EQ(run("CREATE TRIGGER TR2 ON IZ FOR INSERT AS DELETE FROM T WHERE A=4 UPDATE T SET A=A+1"), "");
  EXPECT_EQ(outcome("yazar", "INSERT INTO FIRMA..IZ VALUES (5)"), "");
  EXPECT_EQ(run("SELECT A FROM T"), "2\n");
  // Another database is another owner's: the login's own right counts there.
  ASSERT_EQ(run("CREATE VIEW ORTAK AS SELECT A FROM KOMSU..K"), "");
  EXPECT_EQ(outcome("okur", "SELECT A FROM FIRMA..ORTAK"), "!916");
  ASSERT_EQ(run("ALTER TRIGGER TR2 ON IZ FOR INSERT AS INSERT INTO KOMSU..K VALUES (1)"), "");
  EXPECT_EQ(outcome("yazar", "INSERT INTO FIRMA..IZ VALUES (5)"), "!916");
  EXPECT_EQ(run("SELECT COUNT(*) FROM KOMSU..K"), "1\n");
}

TEST_F(RightsTest, ChangesOfRolesCountAtOnceAlsoForWhatIsCompiled) {
  const std::string read = "SELECT COUNT(*) FROM FIRMA..IZ";
  EXPECT_EQ(outcome("duz", read), "!229");
  run("USE FIRMA");
  ASSERT_EQ(run("EXEC sp_addrolemember 'db_datareader','duz'"), "");
  EXPECT_EQ(outcome("duz", read), "0");
  ASSERT_EQ(run("EXEC sp_droprolemember 'db_datareader','duz'"), "");
  EXPECT_EQ(outcome("duz", read), "!229");
  EXPECT_EQ(outcome("okur", read), "0");
  ASSERT_EQ(run("EXEC sp_dropuser 'okur'"), "");
  EXPECT_EQ(outcome("okur", read), "!916");
  ASSERT_EQ(run("EXEC sp_addsrvrolemember 'okur','sysadmin'"), "");
  EXPECT_EQ(outcome("okur", read), "0");
}

TEST_F(RightsTest, MakerOwnsHisDatabase) {
  ASSERT_EQ(run("EXEC sp_addsrvrolemember 'duz','dbcreator'"), "");
  EXPECT_EQ(outcome("duz", "CREATE DATABASE BENIM"), "");
  EXPECT_EQ(outcome("duz", "CREATE TABLE BENIM..X (A INT) INSERT INTO BENIM..X VALUES (3)"), "");
  EXPECT_EQ(outcome("duz", "USE BENIM SELECT USER_NAME()"), "dbo");
  EXPECT_EQ(outcome("okur", "SELECT * FROM BENIM..X"), "!916");
  EXPECT_EQ(run("SELECT A FROM BENIM..X"), "3\n");
  EXPECT_EQ(outcome("duz", "USE master DROP DATABASE BENIM"), "");
}

}  // namespace
}  // namespace engine::test
