// A disk that is full or fails at the n-th write, for every n until the statement gets through.
#include "fault_vfs.h"
#include "folder_fixture.h"
#include "istemci.h"

namespace scenarios {
namespace {

struct Step {
  const char* what;
  const char* statement;
  const char* undo;  // brings back what was before; empty: nothing
};

// Registered before the folder's files are opened.
struct DiskFirst {
  FaultyDisk disk;
};

class BadDisk : public DiskFirst, public FolderOf<Istemci> {
 protected:
  std::string content() {
    return run(
        "SELECT * FROM T ORDER BY ID SELECT * FROM AYNA ORDER BY ID SELECT name,xtype FROM sysobjects "
        "ORDER BY name SELECT name,xtype,length FROM syscolumns WHERE id=OBJECT_ID('T') ORDER BY colid "
        "SELECT name FROM master..sysdatabases ORDER BY name SELECT name FROM master..syslogins "
        "SELECT @@TRANCOUNT");
  }
  void fill() {
    must("CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, A INT NULL, B CHAR(200) NULL)");
    must("CREATE TABLE AYNA (ID INT, B CHAR(200))");
    must("CREATE TRIGGER TE ON T FOR INSERT AS INSERT INTO AYNA SELECT ID,B FROM INSERTED");
    must("CREATE TRIGGER TS ON T FOR DELETE AS DELETE FROM AYNA WHERE ID IN (SELECT ID FROM DELETED)");
    for (int i = 0; i < 10; ++i) must("INSERT INTO T (A,B) VALUES (" + std::to_string(i) + ",'x')");
    must("INSERT INTO T (A,B) SELECT x.A,'y' FROM T x,T y");
  }
  // Fails at every n until the statement passes untouched by the fault.
  void strike(const Step& step, const Fault& kind) {
    const std::string before = content();
    bool struck = true;
    for (int n = 0; struck; ++n) {
      SCOPED_TRACE(std::string(step.what) + ", " + std::to_string(n) + (kind.lasting ? " lasting" : "") +
                   " code " + std::to_string(kind.code));
      ASSERT_LT(n, 2000);
      Fault fault = kind;
      fault.after = n;
      disk.arm(fault);
      const std::string printed = run(step.statement);
      struck = disk.disarm();
      const std::string now = content();
      if (!printed.empty()) {
        EXPECT_TRUE(struck) << printed << message;
        EXPECT_EQ(printed, (kind.code & 0xff) == SQLITE_FULL ? "!1105\n" : "!823\n") << message;
        ASSERT_EQ(now, before) << message;
      } else {
        EXPECT_NE(now, before);
        if (*step.undo) must(step.undo);
        ASSERT_EQ(content(), before);
      }
    }
  }
};

const Step steps[] = {
    {"insert with trigger", "INSERT INTO T (A,B) SELECT A+1000,B FROM T", "DELETE FROM T WHERE A>=1000"},
    {"update", "UPDATE T SET A=A+1000", "UPDATE T SET A=A-1000"},
    {"transaction",
     "SET XACT_ABORT ON BEGIN TRAN UPDATE T SET A=A+1000 INSERT INTO T (A) VALUES (-77) COMMIT TRAN",
     "DELETE FROM T WHERE A=-77 UPDATE T SET A=A-1000"},
    {"table", "CREATE TABLE Y (A INT PRIMARY KEY, B CHAR(5))", "DROP TABLE Y"},
    {"view", "CREATE VIEW Y AS SELECT A FROM T", "DROP VIEW Y"},
    {"column's type", "ALTER TABLE T ALTER COLUMN A BIGINT", "ALTER TABLE T ALTER COLUMN A INT"},
    {"select into", "SELECT * INTO Y FROM T", "DROP TABLE Y"},
    {"login", "EXEC sp_addlogin 'yeni','Parola1'", "EXEC sp_droplogin 'yeni'"},
};

TEST_F(BadDisk, AFailedStatementLeavesNothing) {
  fill();
  for (const Step& step : steps)
    for (const Fault& kind : {Fault{SQLITE_FULL, 0, true}, Fault{SQLITE_IOERR_WRITE, 0, false}})
      strike(step, kind);
  close();
  expectWhole();
}

class BadOpen : public DiskFirst, public DataFolder {};

TEST_F(BadOpen, AFileThatCannotBeOpenedOnceIsOpenedTheNextTime) {
  must("CREATE TABLE T (ID INT IDENTITY PRIMARY KEY, A INT)");
  for (int i = 0; i < 9; ++i) must("INSERT INTO T VALUES (" + std::to_string(i) + ")");
  bool struck = true;
  for (int n = 0; struck; ++n) {
    SCOPED_TRACE(n);
    disk.arm({SQLITE_CANTOPEN, n, false, false, true});
    const std::string printed = run("CREATE DATABASE YENI");
    struck = disk.disarm();
    EXPECT_TRUE(printed.empty() || printed == "!5120\n") << printed << message;
    if (!printed.empty()) must("CREATE DATABASE YENI");
    must("CREATE TABLE YENI..T (A INT) INSERT INTO YENI..T VALUES (1)");
    must("DROP DATABASE YENI");
  }
  // By a second session, which then writes the log into the file and is the last to close it.
  for (int n = 0; n < 4; ++n) {
    SCOPED_TRACE(n);
    must("UPDATE T SET A=A+1");
    auto first = std::move(session);
    session = std::make_unique<engine::Session>(server, "sa", password, "master");
    disk.arm({SQLITE_CANTOPEN, n, false, false, true});
    run("SELECT COUNT(*) FROM FIRMA..T");
    disk.disarm();
    must("UPDATE FIRMA..T SET A=A-1 DBCC CHECKDB ('FIRMA') WITH NO_INFOMSGS");
    first.reset();
    close();
    open();
    EXPECT_EQ(run("SELECT COUNT(*),SUM(A) FROM T"), "9\t36\n") << message;
  }
}

TEST_F(BadDisk, DatabasesAreMadeAndDroppedWholly) {
  const auto stands = [&] {
    return number("SELECT COUNT(*) FROM master..sysdatabases WHERE name='YENI'") != 0;
  };
  for (const Fault& kind : {Fault{SQLITE_FULL, 0, true}, Fault{SQLITE_IOERR_FSYNC, 0, false}}) {
    bool struck = true;
    for (int n = 0; struck; ++n) {
      SCOPED_TRACE("create, " + std::to_string(n) + (kind.lasting ? " lasting" : ""));
      ASSERT_LT(n, 500);
      disk.arm({kind.code, n, kind.lasting});
      const std::string printed = run("CREATE DATABASE YENI");
      struck = disk.disarm();
      EXPECT_EQ(stands(), printed.empty()) << printed << message;
      if (!printed.empty()) {
        EXPECT_EQ(printed, kind.code == SQLITE_FULL ? "!1105\n" : "!823\n") << message;
        must("CREATE DATABASE YENI");
      }
      must("CREATE TABLE YENI..T (A INT) INSERT INTO YENI..T VALUES (1)");
      must("DROP DATABASE YENI");
    }
    struck = true;
    for (int n = 0; struck; ++n) {
      SCOPED_TRACE("drop, " + std::to_string(n) + (kind.lasting ? " lasting" : ""));
      ASSERT_LT(n, 500);
      must("CREATE DATABASE YENI");
      must("CREATE TABLE YENI..T (A INT) INSERT INTO YENI..T VALUES (1)");
      disk.arm({kind.code, n, kind.lasting});
      const std::string printed = run("DROP DATABASE YENI");
      struck = disk.disarm();
      if (stands()) {
        EXPECT_EQ(printed, kind.code == SQLITE_FULL ? "!1105\n" : "!823\n") << message;
        EXPECT_EQ(run("SELECT A FROM YENI..T"), "1\n") << message;
        must("DROP DATABASE YENI");
      } else {
        EXPECT_EQ(printed, "") << message;
      }
    }
  }
  close();
  expectWhole();
}

TEST_F(BadDisk, AStopThatCannotWriteLosesNothing) {
  fill();
  bool struck = true;
  for (int n = 0; struck && n < 200; ++n) {
    must("UPDATE T SET A=A+1");
    const std::string before = content();
    disk.arm({SQLITE_FULL, n, true});
    server->stop();
    struck = disk.disarm();
    EXPECT_TRUE(server->start().empty());
    ASSERT_EQ(content(), before) << n;
  }
  EXPECT_FALSE(struck);
  close();
  expectWhole();
}

}  // namespace
}  // namespace scenarios
