// What is peculiar to SQL Server and can be judged without one.
#include "db/odbc/sqlserver.h"

#include <gtest/gtest.h>

namespace {

using db::ErrorKind;

TEST(SqlServerText, SaysServerLoginAndDatabase) {
  struct Case {
    db::ConnectionParts parts;
    const char* expected;
  };
  const Case cases[] = {
      {{"HOST", "sa", "gizli", "master", false},
       "DRIVER={FreeTDS};SERVER=HOST;PORT=1433;TDS_Version=7.4;ClientCharset=UTF-8;UID=sa;PWD=gizli;"
       "DATABASE=master;"},
      {{"HOST,14330", "sa", "a;b}c", "2012 A", false},
       "DRIVER={FreeTDS};SERVER=HOST;PORT=14330;TDS_Version=7.4;ClientCharset=UTF-8;UID=sa;PWD={a;b}c};"
       "DATABASE=2012 A;"},
      {{"HOST\\SQLEXPRESS", "sa", "", "", false},
       "DRIVER={FreeTDS};SERVER=HOST\\SQLEXPRESS;TDS_Version=7.4;ClientCharset=UTF-8;UID=sa;PWD=;"},
      {{"tcp:.\\A,1500", "sa", "p", "d", true},
       "DRIVER={FreeTDS};SERVER=localhost;PORT=1500;TDS_Version=7.4;ClientCharset=UTF-8;"
       "Trusted_Connection=yes;DATABASE=d;"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(db::SqlServerDialect("FreeTDS").driverText(c.parts), c.expected);
  }
  EXPECT_EQ(db::SqlServerDialect("ODBC Driver 18 for SQL Server").driverText(cases[1].parts),
            "DRIVER={ODBC Driver 18 for SQL Server};SERVER=HOST,14330;TrustServerCertificate=yes;UID=sa;"
            "PWD={a;b}}c};DATABASE={2012 A};");
}

TEST(SqlServerError, TellsWhatKindItWasInTheServersWords) {
  struct Case {
    std::vector<db::Diagnostic> diagnostics;
    bool opening;
    ErrorKind kind;
    int number;
    const char* text;
  };
  const Case cases[] = {
      {{{"42S02", 208, "[FreeTDS][SQL Server]Invalid object name 'yok'."}},
       false,
       ErrorKind::StatementRefused,
       208,
       "Invalid object name 'yok'."},
      {{{"01000", 3621, "[FreeTDS][SQL Server]The statement has been terminated."},
        {"23000", 2627, "[Microsoft][ODBC Driver 17 for SQL Server][SQL Server][x] is there already."}},
       false,
       ErrorKind::StatementRefused,
       2627,
       "[x] is there already."},
      {{{"42000", 18456, "[FreeTDS][SQL Server]Login failed for user 'sa'."},
        {"08001", 0, "[FreeTDS][SQL Server]Unable to connect to data source"}},
       true,
       ErrorKind::LoginRefused,
       18456,
       "Login failed for user 'sa'."},
      {{{"08001", 0, "[FreeTDS][SQL Server]Unable to connect to data source"},
        {"28000", 18456, "[FreeTDS][SQL Server]Login failed for user 'sa'."},
        {"42000", 4060, "[FreeTDS][SQL Server]Cannot open database \"Defination_DB\"."}},
       true,
       ErrorKind::LinkBroken,
       4060,
       "Cannot open database \"Defination_DB\"."},
      {{{"08001", 0, "[unixODBC][FreeTDS][SQL Server]Unable to connect to data source"}},
       true,
       ErrorKind::LinkBroken,
       0,
       "Unable to connect to data source"},
      {{{"28000", 0, "[Microsoft][ODBC Driver 17 for SQL Server]Not trusted"}},
       true,
       ErrorKind::LoginRefused,
       0,
       "Not trusted"},
      {{{"08S01", 20006, "[FreeTDS][SQL Server]Write to the server failed"}},
       false,
       ErrorKind::LinkBroken,
       20006,
       "Write to the server failed"},
      {{{"42000", 20017, "[FreeTDS][SQL Server]Unexpected EOF from the server"}},
       false,
       ErrorKind::LinkBroken,
       20017,
       "Unexpected EOF from the server"},
      {{{"HYT00", 0, "[FreeTDS][SQL Server]Timeout expired"}},
       false,
       ErrorKind::LinkBroken,
       0,
       "Timeout expired"},
      {{}, false, ErrorKind::LinkBroken, 0, "Unspecified error"},
  };
  const db::SqlServerDialect dialect("FreeTDS");
  for (const auto& c : cases) {
    const auto error = dialect.error(c.diagnostics, c.opening);
    EXPECT_EQ(error.kind(), c.kind) << c.text;
    EXPECT_EQ(error.serverNumber(), c.number) << c.text;
    EXPECT_STREQ(error.what(), c.text);
  }
}

TEST(SqlServerMessage, PassesPrintAndNotTheRest) {
  const db::SqlServerDialect dialect("FreeTDS");
  EXPECT_TRUE(dialect.isMessage({"01000", 0, "[FreeTDS][SQL Server]merhaba"}));
  EXPECT_FALSE(dialect.isMessage({"01000", 5701, "[FreeTDS][SQL Server]Changed database context"}));
  EXPECT_FALSE(dialect.isMessage({"01004", 0, "[FreeTDS]String data, right truncated"}));
  EXPECT_FALSE(dialect.isMessage({"42000", 102, "[FreeTDS][SQL Server]Incorrect syntax"}));
}

TEST(SqlServerType, KnowsTypesByTheServersName) {
  struct Case {
    const char* name;
    int odbcType;
    db::FieldType type;
  };
  const Case cases[] = {
      {"money", SQL_DECIMAL, db::FieldType::Money},
      {"int identity", SQL_INTEGER, db::FieldType::Int},
      {"decimal() identity", SQL_DECIMAL, db::FieldType::Decimal},
      {"smalldatetime", SQL_TYPE_TIMESTAMP, db::FieldType::SmallDateTime},
      {"text", SQL_LONGVARCHAR, db::FieldType::Text},
      {"real", SQL_REAL, db::FieldType::Real},
      {"bit", SQL_BIT, db::FieldType::Bit},
      {"", SQL_BIGINT, db::FieldType::BigInt},
  };
  const db::SqlServerDialect dialect("FreeTDS");
  for (const auto& c : cases) EXPECT_EQ(dialect.fieldType(c.name, c.odbcType), c.type) << c.name;
}

// Port 1 of this machine: nobody listens there.
TEST(SqlServerConnection, AnUnreachableServerIsABrokenLink) {
  const auto connection = db::makeSqlServerConnection();
  try {
    connection->open({"127.0.0.1,1", "sa", "gizli'}parola", "master", false});
    FAIL() << "no error";
  } catch (const db::SqlError& error) {
    EXPECT_EQ(error.kind(), ErrorKind::LinkBroken) << error.what();
    EXPECT_EQ(std::string(error.what()).find("gizli"), std::string::npos);
  }
  EXPECT_EQ(connection->state(), db::State::Closed);
}

}  // namespace
