#include "db/table_name.h"

#include <gtest/gtest.h>

namespace {

TEST(TableOfSelect, FindsTheOneTable) {
  struct Case {
    const char* sql;
    const char* database;
    const char* table;
  };
  const Case cases[] = {
      {"SELECT * FROM sysfrmlng", "", "sysfrmlng"},
      {"select a,b from dbo.STOKKART where a='FROM x, y'", "", "STOKKART"},
      {"SELECT * FROM DB1.dbo.CARIKART WITH WHERE Cari_Kod='a'", "DB1", "CARIKART"},
      {"SELECT * FROM [2012 A]..[Satış]]ler] s ORDER BY a,b", "2012 A", "Satış]ler"},
      {"SELECT (SELECT MAX(x) FROM t2) m FROM t1 WHERE a IN (SELECT b FROM t3)", "", "t1"},
      {"/* FROM x */ SELECT a -- FROM y\n FROM z", "", "z"},
      {"SELECT [from] FROM t;", "", "t"},
  };
  for (const auto& c : cases) {
    const auto found = db::tableOfSelect(c.sql);
    ASSERT_TRUE(found) << c.sql;
    EXPECT_EQ(found->database, c.database) << c.sql;
    EXPECT_EQ(found->table, c.table) << c.sql;
  }
}

TEST(TableOfSelect, RefusesWhatHasNoSingleTable) {
  for (const char* sql :
       {"", "SELECT 1", "UPDATE t SET a=1", "SELECT * FROM a, b", "SELECT * FROM a INNER JOIN b ON a.x=b.x",
        "SELECT a FROM t UNION ALL SELECT a FROM u", "SELECT a FROM t GROUP BY a", "SELECT DISTINCT a FROM t",
        "SELECT * FROM (SELECT 1 a) t", "SELECT * FROM f(1)", "SELECT * FROM", "SELECT * FROM a.b.c.d"}) {
    EXPECT_FALSE(db::tableOfSelect(sql)) << sql;
  }
}

}  // namespace
