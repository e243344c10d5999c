// INSERT, UPDATE and DELETE through views of one table.
#include "engine/session_fixture.h"

namespace engine::test {

namespace {

class ViewTargetTest : public SessionTest {
 protected:
  ViewTargetTest() {
    run("CREATE TABLE Stok(ID INT IDENTITY NOT NULL, Ad VARCHAR(10) NOT NULL, Fiyat MONEY DEFAULT 9, Depo "
        "CHAR(1)) "
        "INSERT INTO Stok SELECT 'bir', 1, 'A' UNION ALL SELECT 'iki', 2, 'B' UNION ALL SELECT 'uc', 3, 'A'");
  }
};

}  // namespace

TEST_F(ViewTargetTest, WritesRowsUnderOtherNames) {
  run("CREATE VIEW ADepo(No, Isim, Tutar, Yer, Iki) AS SELECT s.ID, Ad, Fiyat, Depo, Fiyat * 2 FROM Stok s "
      "WHERE Depo = "
      "'A'");
  run("CREATE VIEW Ucuz AS SELECT * FROM ADepo WHERE Iki < 5");
  follow({
      {"UPDATE ADepo SET Tutar = Iki + 10 WHERE Isim > 'a' SELECT Fiyat FROM Stok ORDER BY ID",
       "12.00\n2.00\n16.00\n"},
      {"UPDATE Ucuz SET Isim = 'x' UPDATE ADepo SET Tutar = 1 WHERE No = 1 UPDATE Ucuz SET Isim = 'ucuz' "
       "SELECT Ad FROM "
       "Stok ORDER BY ID",
       "ucuz\niki\nuc\n"},
      {"INSERT INTO ADepo(Isim, Yer) VALUES('dort', 'B') INSERT INTO FIRMA..Ucuz(Isim, Yer, Tutar) SELECT "
       "'bes', 'A', 2 "
       "SELECT * FROM Stok WHERE ID > 3",
       "4\tdort\t9.00\tB\n5\tbes\t2.00\tA\n"},
      {"DELETE ADepo WHERE Iki > 20 DELETE FROM Ucuz WHERE Yer = 'A' AND No <> 1 SELECT ID FROM Stok ORDER "
       "BY ID",
       "1\n2\n4\n"},
      {"UPDATE ADepo SET Iki = 4", "!4406\n"},
      {"INSERT INTO ADepo VALUES('a', 1, 'A', 4)", "!4406\n"},
      {"INSERT INTO ADepo(Yok) VALUES(1)", "!207\n"},
      {"INSERT INTO ADepo(Tutar) VALUES(1)", "!515\n"},
      {"UPDATE ADepo SET No = 4", "!8102\n"},
      {"TRUNCATE TABLE ADepo", "!4708\n"},
      {"SET IDENTITY_INSERT ADepo ON", "!8105\n"},
      {"UPDATE ADepo SET Isim = 'y' FROM Stok s WHERE s.ID = No + 1 AND s.Ad = 'iki' SELECT Ad FROM Stok "
       "WHERE ID = 1",
       "y\n"},
  });
  EXPECT_EQ(run("UPDATE ADepo SET Iki = 4"), "!4406\n");
  EXPECT_EQ(
      message,
      "Update or insert of view or function 'ADepo' failed because it contains a derived or constant field.");
}

TEST_F(ViewTargetTest, HoldsTheCheckOption) {
  run("CREATE VIEW ADepo AS SELECT ID, Ad, Fiyat, Depo FROM Stok WHERE Depo = 'A'");
  run("CREATE VIEW Ucuz AS SELECT * FROM ADepo WHERE Fiyat < 3 WITH CHECK OPTION");
  run("CREATE VIEW Kisa AS SELECT * FROM Ucuz WHERE LEN(Ad) < 5");
  follow({
      {"SELECT name, with_check_option FROM sys.views ORDER BY name SELECT CHECK_OPTION FROM "
       "INFORMATION_SCHEMA.VIEWS "
       "WHERE TABLE_NAME = 'Ucuz'",
       "ADepo\t0\nKisa\t0\nUcuz\t1\nCASCADE\n"},
      {"INSERT INTO Ucuz(Ad, Fiyat, Depo) VALUES('a', 4, 'A')", "!550\n"},
      {"INSERT INTO Ucuz(Ad, Fiyat, Depo) SELECT Ad, 1, Depo FROM Stok", "!550\n"},
      {"INSERT INTO Ucuz(Ad, Fiyat) VALUES('a', 1)", "!550\n"},
      {"UPDATE Kisa SET Fiyat = 5", "!550\n"},
      {"SELECT COUNT(*), SUM(Fiyat) FROM Stok", "3\t6.00\n"},
      {"UPDATE Kisa SET Ad = 'cok uzun' INSERT INTO Ucuz(Ad, Fiyat, Depo) VALUES('b', 2, 'a') UPDATE ADepo "
       "SET Depo = 'C' "
       "WHERE Fiyat = 3 DELETE FROM Ucuz WHERE Ad = 'b' SELECT Ad, Depo FROM Stok ORDER BY ID",
       "cok uzun\tA\niki\tB\nuc\tC\n"},
  });
  EXPECT_EQ(run("UPDATE Kisa SET Fiyat = 5 INSERT INTO Ucuz(Ad, Fiyat, Depo) VALUES('a', 4, 'A')"), "!550\n");
  EXPECT_EQ(message,
            "The attempted insert or update failed because the target view either specifies WITH CHECK "
            "OPTION or spans "
            "a view that specifies WITH CHECK OPTION and one or more rows resulting from the operation did "
            "not qualify "
            "under the CHECK OPTION constraint.");
}

TEST_F(ViewTargetTest, KeepsTriggersRulesAndRights) {
  run("CREATE TABLE Iz(Ad VARCHAR(20)) ALTER TABLE Stok ADD CONSTRAINT CK CHECK (Fiyat > 0)");
  run("CREATE TRIGGER Stok_u ON Stok FOR UPDATE AS INSERT INTO Iz SELECT d.Ad + '>' + i.Ad FROM inserted i, "
      "deleted d WHERE "
      "i.ID = d.ID AND UPDATE(Ad)");
  run("CREATE VIEW V AS SELECT Ad AS Isim, Fiyat FROM Stok WHERE Depo = 'B'");
  run("EXEC sp_addlogin ayse, gizli EXEC sp_grantdbaccess ayse EXEC sp_addrolemember db_datareader, ayse");
  follow({{"UPDATE V SET Isim = 'yeni' SELECT Ad FROM Iz", "iki>yeni\n"},
          {"UPDATE V SET Fiyat = -1", "!547\n"}});
  Session reader(server, "ayse", "gizli", "FIRMA");
  EXPECT_EQ(run(reader, "DELETE FROM V"), "!229\n");
  EXPECT_EQ(message, "The DELETE permission was denied on the object 'V', database 'FIRMA', schema 'dbo'.");
}

TEST_F(ViewTargetTest, TellsWhichViewsAreNotWrittenThrough) {
  struct Refused {
    const char* select;
    int number;
  };
  const Refused cases[] = {
      {"SELECT DISTINCT Ad FROM Stok", 4403},
      {"SELECT Depo AS Ad, COUNT(*) AS n FROM Stok GROUP BY Depo", 4403},
      {"SELECT MAX(Ad) AS Ad FROM Stok", 4403},
      {"SELECT a.Ad FROM Stok a, Stok b", 4405},
      {"SELECT a.Ad FROM Stok a JOIN Stok b ON a.ID = b.ID", 4405},
      {"SELECT Ad FROM Stok UNION ALL SELECT Ad FROM Stok", 4426},
      {"SELECT TOP 2 Ad FROM Stok", 50000},
      {"SELECT Ad FROM (SELECT Ad FROM Stok) s", 50000},
      {"SELECT 'a' AS Ad FROM Stok", 4406},
  };
  int number = 0;
  for (const Refused& each : cases) {
    const std::string view = "V" + std::to_string(++number);
    EXPECT_EQ(run("CREATE VIEW " + view + " AS " + each.select), "") << each.select << message;
    const std::string refusal = "!" + std::to_string(each.number) + "\n";
    EXPECT_EQ(run("UPDATE " + view + " SET Ad = 'z'"), refusal) << each.select;
    if (each.number != 4406) {
      EXPECT_EQ(run("DELETE FROM " + view), refusal) << each.select;
    }
  }
  EXPECT_EQ(run("SELECT COUNT(*) FROM Stok WHERE Ad = 'z'"), "0\n");
}

}  // namespace engine::test
