// The form in which tables are written down, and the statements made of it.
#include <gtest/gtest.h>

#include <stdexcept>

#include "catalog/definition.h"

namespace {

using namespace catalog;

std::string told(const std::vector<std::string>& list) {
  std::string out;
  for (const std::string& each : list) out += (out.empty() ? "" : ";") + each;
  return out;
}

// All that a table holds, a line for it and one for each column.
std::string told(const TableDef& t) {
  const auto stage = [](Stage s) { return s == Stage::Base ? "B" : "U"; };
  std::string out = t.name + "|" + stage(t.stage) + "|" + t.collation + "|" + t.keyKind + "|" + told(t.key) +
                    "|" + told(t.indexes) + "|" + told(t.firstRows) + "|" + told(t.upgradeRows) + "\n";
  for (const ColumnDef& c : t.columns)
    out += c.name + "|" + c.type + "|" + c.baseType + "|" + (c.nullable ? "n" : "") +
           (t.mayBeNull(c) ? "N" : "") + (c.identity ? "i" : "") + (c.hasFill ? "f" : "") +
           (c.completed ? "c" : "") + (c.dropped ? "d" : "") + (c.rebuild ? "r" : "") + "|" + c.defaultSql +
           "|" + c.fill + "|" + stage(c.stage) + "|" + c.askedName + "|" + std::to_string(c.askedLength) +
           "|" + c.askedDefault + "\n";
  return out;
}

const EmbeddedText file{"t.tbl",
                        "# comment\n"
                        "\n"
                        "TABLE T B COLLATE Turkish_CI_AS\n"
                        "  ID    INT       NOT NULL  IDENTITY      B\n"
                        "  Kod   CHAR(26)  NULL                    B  BASE CHAR(15)\n"
                        "  # within\n"
                        "  Ad    VARCHAR(5) NOT NULL DEFAULT ' '   B  REBUILD\n"
                        "  Gone  BIT       NULL                    B  DROPPED\n"
                        "  Not   NTEXT     NULL                    B\n"
                        "  N09..N11 TEXT   NULL      FILL 'a b'    U\n"
                        "  Sira  INT       NULL      FILL 7        U  ASKED NAME 'Sira '\n"
                        "  Aktif BIT       NOT NULL  DEFAULT 1     B  ASKED LENGTH 28 DEFAULT -1\n"
                        "  PRIMARY KEY NONCLUSTERED (Kod, ID)\n"
                        "  CREATE INDEX T1 ON T(Ad)\n"
                        "  INSERT INTO T(Ad) VALUES ('x')\n"
                        "  UPDATE T SET Ad='z'\n"
                        "  UPGRADE INSERT INTO T(Ad) VALUES ('y')\n"
                        "TABLE IKI U\n"
                        "  Bir INT NULL B\n"
                        "  AUDIT B/U\n"
                        "  PRIMARY KEY (bir)"};

TEST(TableDefinition, ReadsEverythingOfAFile) {
  const auto tables = parseTables(file);
  ASSERT_EQ(tables.size(), 2u);
  EXPECT_EQ(told(tables[0]),
            "T|B|Turkish_CI_AS|NONCLUSTERED|Kod;ID|CREATE INDEX T1 ON T(Ad)|INSERT INTO T(Ad) VALUES "
            "('x');UPDATE T SET Ad='z'|INSERT INTO T(Ad) VALUES ('y')\n"
            "ID|INT|INT|i|||B||0|\n"
            "Kod|CHAR(26)|CHAR(15)|n|||B||0|\n"
            "Ad|VARCHAR(5)|VARCHAR(5)|r|' '||B||0|\n"
            "Gone|BIT|BIT|nNd|||B||0|\n"
            "Not|NTEXT|NTEXT|nN|||B||0|\n"
            "N9|TEXT|TEXT|nNf||a b|U||0|\n"
            "N10|TEXT|TEXT|nNf||a b|U||0|\n"
            "N11|TEXT|TEXT|nNf||a b|U||0|\n"
            "Sira|INT|INT|nNf||7|U|Sira |0|\n"
            "Aktif|BIT|BIT||1||B||28|-1\n");
  EXPECT_EQ(told(tables[1]),
            "IKI|U|||bir|||\nBir|INT|INT|n|||B||0|\n"
            "YR_Kullanici|INT|INT|nNfc||0|U||0|\nYR_Tarih|DATETIME|DATETIME|nNfc||01/01/<year>|U||0|\n"
            "YR_Saat|DATETIME|DATETIME|nNfc||00:00:01|U||0|\nDeg_Kullanici|INT|INT|nNfc||0|U||0|\n"
            "Deg_Tarih|DATETIME|DATETIME|nNfc||01/01/<year>|U||0|\n"
            "Deg_Saat|DATETIME|DATETIME|nNfc||00:00:01|U||0|\n");
  EXPECT_EQ(tables[0].column("KOD"), &tables[0].columns[1]);
  EXPECT_EQ(tables[0].column("Ko"), nullptr);
}

TEST(TableDefinition, MakesTheStatementOfEitherStage) {
  const auto tables = parseTables(file);
  EXPECT_EQ(createStatement(tables[0], Stage::Base),
            "CREATE TABLE T (ID INT NOT NULL IDENTITY, Kod CHAR(15) COLLATE Turkish_CI_AS NOT NULL, "
            "Ad VARCHAR(5) COLLATE Turkish_CI_AS NOT NULL DEFAULT ' ', Gone BIT NULL, "
            "Not NTEXT COLLATE Turkish_CI_AS NULL, Aktif BIT NOT NULL DEFAULT 1, "
            "PRIMARY KEY NONCLUSTERED (Kod, ID))");
  EXPECT_EQ(createStatement(tables[0], Stage::Upgrade),
            "CREATE TABLE T (ID INT NOT NULL IDENTITY, Kod CHAR(26) COLLATE Turkish_CI_AS NOT NULL, "
            "Ad VARCHAR(5) COLLATE Turkish_CI_AS NOT NULL DEFAULT ' ', Not NTEXT COLLATE Turkish_CI_AS NULL, "
            "N9 TEXT NULL, N10 TEXT NULL, N11 TEXT NULL, Sira INT NULL, Aktif BIT NOT NULL DEFAULT 1, "
            "PRIMARY KEY NONCLUSTERED (Kod, ID))");
  // A table of the upgrade is given whole at once.
  EXPECT_EQ(createStatement(tables[1], Stage::Base), createStatement(tables[1], Stage::Upgrade));
  EXPECT_EQ(
      createStatement(tables[1], Stage::Base),
      "CREATE TABLE IKI (Bir INT NOT NULL, YR_Kullanici INT NULL, YR_Tarih DATETIME NULL, YR_Saat DATETIME "
      "NULL, Deg_Kullanici INT NULL, Deg_Tarih DATETIME NULL, Deg_Saat DATETIME NULL, PRIMARY KEY (bir))");
}

TEST(TableDefinition, TellsWhatItDoesNotKnowAndWhere) {
  const std::pair<std::string, const char*> cases[] = {
      {"  A INT NULL B\n", "1: a column before the first TABLE"},
      {"TABLE T\n", "1: TABLE name stage expected"},
      {"TABEL T B\n", "1: TABLE name stage expected"},
      {"TABLE T X\n", "1: 'X' is no stage"},
      {"TABLE T B SO\n", "1: unknown words behind the stage"},
      {"TABLE T B AS Turkish_CI_AS\n", "1: unknown words behind the stage"},
      {"TABLE T B\n\n  A INT MAYBE B\n", "3: NULL or NOT NULL expected"},
      {"TABLE T B\n  A INT NOT B\n", "2: NULL or NOT NULL expected"},
      {"TABLE T B\n  A INT NULL\n", "2: column A ends too early"},
      {"TABLE T B\n  A INT NULL DEFAULT 1\n", "2: column A ends too early"},
      {"TABLE T B\n  A INT NULL B WHATEVER\n", "2: unknown note WHATEVER"},
      {"TABLE T B\n  A INT NULL B BASE\n", "2: unknown note BASE"},
      {"TABLE T B\n  A INT NULL B DROPPED NOW\n", "2: unknown note DROPPED"},
      {"TABLE T B\n  A INT NULL B REBUILD NOW\n", "2: unknown note REBUILD"},
      {"TABLE T B\n  A INT NULL B ASKED NAME\n", "2: unknown note ASKED"},
      {"TABLE T B\n  A INT NULL B ASKED LENGTH 2 FILL 1\n", "2: unknown note ASKED"},
      {"TABLE T B\n  A INT NULL B\n  a INT NULL B\n", "3: column a twice"},
      {"TABLE T B\n  A1..B2 INT NULL B\n", "2: the ends of the run A1..B2 do not match"},
      {"TABLE T B\n  A..B INT NULL B\n", "2: the ends of the run A..B do not match"},
      {"TABLE T B\n  AUDIT X\n", "2: 'X' is no stage"},
      {"TABLE T B\n  A INT NULL B\n  PRIMARY KEY (C)\n", "3: key column C is no column"},
      {"TABLE T B\n  A INT NULL B\n  PRIMARY KEY (A\n", "3: key columns in brackets expected"},
      {"TABLE T B\n  A INT NULL B\n  PRIMARY KEY A)\n", "3: key columns in brackets expected"},
  };
  for (const auto& [text, message] : cases) {
    try {
      parseTables({"bad.tbl", text});
      ADD_FAILURE() << text;
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(error.what(), "bad.tbl:" + std::string(message)) << text;
    }
  }
}

}  // namespace
