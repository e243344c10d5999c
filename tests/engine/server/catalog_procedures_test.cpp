// What drivers ask of the catalog.
#include "engine/session_fixture.h"

namespace engine::test {

TEST_F(SessionTest, TellsDriversOfTablesColumnsAndKeys) {
  run("CREATE TABLE Kart(ID INT IDENTITY NOT NULL, Ad VARCHAR(20) NULL DEFAULT 'x', Tutar DECIMAL(9,2) NOT "
      "NULL, "
      "Tarih DATETIME, Notu NTEXT, CONSTRAINT PK_Kart PRIMARY KEY(Tutar, ID))");
  run("CREATE UNIQUE INDEX Ad_i ON Kart(Ad)");
  run("CREATE VIEW Gorunum AS SELECT ID FROM Kart");
  const Step steps[] = {
      {"EXEC sp_tables 'Ka%'", "FIRMA\tdbo\tKart\tTABLE\tNULL\n"},
      {"EXEC sp_tables @table_type='''VIEW'',''TABLE'''",
       "FIRMA\tdbo\tKart\tTABLE\tNULL\nFIRMA\tdbo\tGorunum\tVIEW\tNULL\n"},
      {"EXEC sp_tables '', '', '%'", "FIRMA\tNULL\tNULL\tNULL\tNULL\nmaster\tNULL\tNULL\tNULL\tNULL\n"},
      {"EXEC sp_tables @table_name='', @table_owner='', @table_qualifier='', @table_type='%'",
       "NULL\tNULL\tNULL\tSYSTEM TABLE\tNULL\nNULL\tNULL\tNULL\tTABLE\tNULL\nNULL\tNULL\tNULL\tVIEW\tNULL\n"},
      {"EXEC sp_columns @table_name='Kart', @ODBCVer=3",
       "FIRMA\tdbo\tKart\tID\t4\tint identity\t10\t4\t0\t10\t0\tNULL\tNULL\t4\tNULL\tNULL\t1\tNO\t56\n"
       "FIRMA\tdbo\tKart\tAd\t12\tvarchar\t20\t20\tNULL\tNULL\t1\tNULL\t'x'\t12\tNULL\t20\t2\tYES\t39\n"
       "FIRMA\tdbo\tKart\tTutar\t3\tdecimal\t9\t11\t2\t10\t0\tNULL\tNULL\t3\tNULL\tNULL\t3\tNO\t55\n"
       "FIRMA\tdbo\tKart\tTarih\t93\tdatetime\t23\t16\t3\tNULL\t1\tNULL\tNULL\t9\t3\tNULL\t4\tYES\t61\n"
       "FIRMA\tdbo\tKart\tNotu\t-10\tntext\t1073741823\t2147483646\tNULL\tNULL\t1\tNULL\tNULL\t-10\tNULL\t"
       "2147483646\t5\tYES\t35\n"},
      {"USE master EXEC FIRMA..sp_columns Kart, dbo, FIRMA, 'Tar%' SELECT DB_NAME() USE FIRMA",
       "FIRMA\tdbo\tKart\tTarih\t11\tdatetime\t23\t16\t3\tNULL\t1\tNULL\tNULL\t9\t3\tNULL\t4\tYES\t61\nmaster"
       "\n"},
      {"EXEC sp_pkeys 'Kart'", "FIRMA\tdbo\tKart\tTutar\t1\tPK_Kart\nFIRMA\tdbo\tKart\tID\t2\tPK_Kart\n"},
      {"EXEC sp_statistics 'Kart'",
       "FIRMA\tdbo\tKart\tNULL\tNULL\tNULL\t0\tNULL\tNULL\tNULL\tNULL\tNULL\tNULL\n"
       "FIRMA\tdbo\tKart\t0\tKart\tPK_Kart\t1\t1\tTutar\tA\tNULL\tNULL\tNULL\n"
       "FIRMA\tdbo\tKart\t0\tKart\tPK_Kart\t1\t2\tID\tA\tNULL\tNULL\tNULL\n"
       "FIRMA\tdbo\tKart\t0\tKart\tAd_i\t3\t1\tAd\tA\tNULL\tNULL\tNULL\n"},
      {"EXEC sp_special_columns @table_name='Kart', @ODBCVer=3",
       "1\tID\t4\tint identity\t10\t4\t0\t1\n1\tTutar\t3\tdecimal\t9\t11\t2\t1\n"},
      {"EXEC sp_fkeys @pktable_name='Kart'", ""},
      {"EXEC sp_stored_procedures", ""},
      {"EXEC sp_datatype_info 4, 3",
       "int\t4\t10\tNULL\tNULL\tNULL\t1\t0\t2\t0\t0\t0\tint\t0\t0\t4\tNULL\t10\tNULL\t7\n"},
      {"EXEC sp_server_info 16", "16\tIDENTIFIER_CASE\tMIXED\n"},
      {"EXEC sp_columns", "!201\n"},
      {"EXEC sp_pkeys @yok='x'", "!8145\n"},
  };
  for (const Step& step : steps) EXPECT_EQ(run(step.batch), step.printed) << step.batch << message;
  EXPECT_EQ(run("EXEC sp_databases").substr(0, 6), "master");
  // Also inside of a transaction, which stays as it was.
  EXPECT_EQ(run("BEGIN TRAN INSERT INTO Kart(Tutar) VALUES(1) EXEC sp_pkeys Yok SELECT COUNT(*) FROM Kart "
                "ROLLBACK"),
            "1\n");
}

}  // namespace engine::test
