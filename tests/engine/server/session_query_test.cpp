// Queries: scripts in, rows out.

#include "engine/session_fixture.h"

namespace engine::test {
namespace {

class QueryTest : public SessionTest {
 protected:
  QueryTest() {
    EXPECT_EQ(
        run("CREATE TABLE KART (ID INT IDENTITY(1,1) PRIMARY KEY, Kod CHAR(6) NOT NULL, Ad VARCHAR(20) NULL,"
            " Tutar FLOAT NULL, Para MONEY NULL, Tarih DATETIME NULL, Aktif BIT NULL)"
            " CREATE TABLE HAREKET (Kart_ID INT, Borc FLOAT, Alacak FLOAT, Tip CHAR(10))"),
        "");
    EXPECT_EQ(
        run("INSERT INTO KART (Kod,Ad,Tutar,Para,Tarih,Aktif) VALUES ('A1','Elma',10,2.5,'01/31/2012',1)"
            "INSERT INTO KART (Kod,Ad,Tutar,Para,Tarih,Aktif) VALUES ('B2','Armut',20.5,NULL,'20120201',0)"
            "INSERT INTO KART (Kod,Ad) VALUES ('C3','İncir')"
            "INSERT INTO HAREKET VALUES (1,5,0,'Mal') INSERT INTO HAREKET VALUES (1,7,2,'Hizmet')"
            "INSERT INTO HAREKET VALUES (2,0,1.5,'Mal')"),
        "");
  }
};

struct Query {
  const char* sql;
  const char* rows;
};

TEST_F(QueryTest, GivesTheRowsOfTheDialect) {
  const Query queries[] = {
      // joins
      {"SELECT K.Kod,H.Borc FROM KART K,HAREKET H WHERE K.ID=H.Kart_ID ORDER BY H.Borc DESC",
       "A1\t7\nA1\t5\nB2\t0\n"},
      {"SELECT K.Kod,H.Tip FROM KART K LEFT JOIN HAREKET H ON K.ID=H.Kart_ID AND H.Tip='mal' ORDER BY 1",
       "A1\tMal\nB2\tMal\nC3\tNULL\n"},
      {"SELECT A.Kod,B.Kod,H.Tip FROM KART A,KART B LEFT JOIN HAREKET H ON B.ID=H.Kart_ID AND H.Borc=7 "
       "WHERE A.ID=2 ORDER BY B.ID",
       "B2\tA1\tHizmet\nB2\tB2\tNULL\nB2\tC3\tNULL\n"},
      {"SELECT H.Borc,K.Kod FROM HAREKET H RIGHT JOIN KART K ON K.ID=H.Kart_ID WHERE H.Borc IS NULL",
       "NULL\tC3\n"},
      {"SELECT COUNT(*) FROM KART CROSS JOIN HAREKET", "9\n"},
      // grouping
      {"SELECT Kart_ID,SUM(Borc-Alacak) AS Bakiye,COUNT(*) FROM HAREKET GROUP BY Kart_ID HAVING COUNT(*)>1",
       "1\t10\t2\n"},
      {"SELECT LEFT(Kod,1),MAX(Ad) FROM KART GROUP BY LEFT(Kod,1) ORDER BY LEFT(Kod,1) DESC",
       "C\tİncir\nB\tArmut\nA\tElma\n"},
      {"SELECT SUM(Borc),AVG(ID),MIN(Ad),COUNT(Para),COUNT(DISTINCT Tip) FROM KART,HAREKET WHERE ID=Kart_ID",
       "12\t1\tArmut\t2\t2\n"},
      {"SELECT ISNULL(SUM(Borc),0) FROM HAREKET WHERE Kart_ID=99", "0\n"},
      // subqueries
      {"SELECT Kod FROM KART WHERE ID=ANY (SELECT Kart_ID FROM HAREKET WHERE Tip='Mal') ORDER BY Kod",
       "A1\nB2\n"},
      {"SELECT Kod FROM KART WHERE NOT EXISTS (SELECT * FROM HAREKET WHERE Kart_ID=KART.ID)", "C3\n"},
      {"SELECT Kod FROM KART WHERE ID > ALL (SELECT Kart_ID FROM HAREKET)", "C3\n"},
      {"SELECT Kod FROM KART WHERE ID > ALL (SELECT Kart_ID FROM HAREKET WHERE Borc=99) ORDER BY ID",
       "A1\nB2\nC3\n"},
      {"SELECT Kod,(SELECT SUM(Borc) FROM HAREKET WHERE Kart_ID=KART.ID) AS T FROM KART ORDER BY T DESC,Kod",
       "A1\t12\nB2\t0\nC3\tNULL\n"},
      {"SELECT (SELECT Kod FROM KART)", "!512\n"},
      {"SELECT Kod FROM KART WHERE ID NOT IN (SELECT Kart_ID FROM HAREKET)", "C3\n"},
      {"SELECT T.N FROM (SELECT Kod,COUNT(*) AS N FROM KART,HAREKET WHERE ID=Kart_ID GROUP BY Kod) AS T "
       "WHERE T.N=2",
       "2\n"},
      // TOP, DISTINCT, ORDER BY
      {"SELECT TOP 2 Kod FROM KART ORDER BY Kod DESC", "C3\nB2\n"},
      {"SELECT TOP 50 PERCENT Kod FROM KART ORDER BY Kod", "A1\nB2\n"},
      {"SELECT DISTINCT Tip FROM HAREKET ORDER BY Tip", "Hizmet\nMal\n"},
      {"SELECT Kod AS Ad FROM KART ORDER BY Ad DESC", "C3\nB2\nA1\n"},
      {"SELECT Ad FROM KART ORDER BY Ad", "Armut\nElma\nİncir\n"},
      // types of UNION and CASE
      {"SELECT COUNT(*) FROM (SELECT Kod FROM KART WHERE ID=1 UNION SELECT 'a1' UNION SELECT 'Z') AS U",
       "2\n"},
      {"SELECT 1 UNION ALL SELECT 2.5", "1.0\n2.5\n"},
      {"SELECT CASE WHEN ID=1 THEN 1 ELSE 2.5 END FROM KART WHERE ID<3 ORDER BY ID", "1.0\n2.5\n"},
      {"SELECT CASE Kod WHEN 'a1' THEN 'bir' END FROM KART ORDER BY ID", "bir\nNULL\nNULL\n"},
      {"SELECT ID,0 FROM KART WHERE ID=1 UNION ALL SELECT Tutar,1 FROM KART WHERE ID=2", "1\t0\n20.5\t1\n"},
      // text: padding, concatenation, collation
      {"SELECT '['+Kod+']' FROM KART WHERE ID=1", "[A1    ]\n"},
      {"SELECT '['+RTRIM(Kod)+Ad+']' FROM KART WHERE Ad='ELMA'", "[A1Elma]\n"},
      {"SELECT Ad FROM KART WHERE Ad='incir'", "İncir\n"},
      {"SELECT Ad FROM KART WHERE Ad LIKE 'i%'", "İncir\n"},
      {"SELECT Ad+NULL FROM KART WHERE ID=1", "NULL\n"},
      {"SELECT LEN(Kod),DATALENGTH(Kod) FROM KART WHERE ID=1", "2\t6\n"},
      // numbers and dates
      {"SELECT 7/2,-7/2,7%3,7/2.0", "3\t-3\t1\t3.500000\n"},
      {"SELECT Para+1 FROM KART WHERE ID=1", "3.50\n"},
      {"SELECT ID FROM KART WHERE Tarih>='01/31/2012' AND Tarih<'02/01/2012'", "1\n"},
      {"SELECT ID FROM KART WHERE ID='2'", "2\n"},
      {"SELECT CONVERT(CHAR(10),Tarih,104) FROM KART WHERE ID=2", "01.02.2012\n"},
      {"SELECT ID FROM KART WHERE Aktif=1 OR Tutar BETWEEN 20 AND 21 ORDER BY ID", "1\n2\n"},
      {"SELECT ID FROM KART WHERE Kod IN ('a1','c3') AND ID NOT IN (2,3)", "1\n"},
      // alias forms
      {"SELECT Toplam=Borc+Alacak FROM HAREKET WHERE Kart_ID=2", "1.5\n"},
      {"SELECT FIRMA.dbo.KART.Kod FROM FIRMA.dbo.KART WHERE FIRMA.dbo.KART.ID=1", "A1\n"},
      {"SELECT K.*,1 FROM HAREKET K WHERE Kart_ID=2", "2\t0\t1.5\tMal\t1\n"},
  };
  for (const Query& query : queries) EXPECT_EQ(run(query.sql), query.rows) << query.sql << "\n" << message;
}

TEST_F(QueryTest, RefusesWithTheServersNumbers) {
  const Query queries[] = {
      {"SELECT * FROM YOKDB.dbo.KART", "!208\n"},
      {"SELECT K.Yok FROM KART K", "!207\n"},
      {"SELECT X.Kod FROM KART", "!4104\n"},
      {"SELECT 1 FROM KART,KART", "!1013\n"},
      {"SELECT Ad,COUNT(*) FROM KART GROUP BY Kod", "!8120\n"},
      {"SELECT Kod FROM KART UNION SELECT Kod,Ad FROM KART", "!205\n"},
      {"SELECT Kod FROM KART UNION SELECT * FROM KART", "!205\n"},
      {"SELECT Kod FROM KART ORDER BY 2", "!108\n"},
      {"SELECT SUM(Ad) FROM KART", "!8117\n"},
      {"SELECT Kod FROM (SELECT Kod FROM KART ORDER BY Kod) AS T", "!1033\n"},
      {"SELECT A FROM (SELECT Kod AS A,Ad AS A FROM KART) AS T", "!8156\n"},
  };
  for (const Query& query : queries) {
    EXPECT_EQ(run(query.sql), query.rows) << query.sql << "\n" << message;
    EXPECT_EQ(run("SELECT COUNT(*) FROM KART"), "3\n") << "after " << query.sql;
  }
}

TEST_F(QueryTest, TellsWhereColumnsComeFrom) {
  run("SELECT *,Tutar+1 AS X FROM FIRMA.dbo.KART");
  ASSERT_EQ(last.columns.size(), 8u);
  EXPECT_EQ(last.columns[0].baseTable, "KART");
  EXPECT_EQ(last.columns[0].baseDatabase, "FIRMA");
  EXPECT_TRUE(last.columns[0].identity);
  EXPECT_TRUE(last.columns[0].keyPart);
  EXPECT_FALSE(last.columns[1].nullable);
  EXPECT_EQ(last.columns[1].type, (Type{TypeId::Char, 6}));
  EXPECT_EQ(last.columns[7].baseColumn, "");
  EXPECT_EQ(last.columns[7].name, "X");
}

TEST_F(QueryTest, ViewsStandOnViewsAndKeepTheirColumns) {
  follow({
      {"CREATE VIEW V1 AS SELECT * FROM KART", ""},
      {"CREATE VIEW V2 AS SELECT V1.*,(SELECT SUM(Borc) FROM HAREKET WHERE Kart_ID=V1.ID) AS Borc FROM V1",
       ""},
      {"SELECT Kod,Borc FROM V2 WHERE Borc>1", "A1\t12\n"},
      {"ALTER TABLE KART ADD Ek INT NULL", ""},
      {"SELECT * FROM V2 WHERE ID=3", "3\tC3\tİncir\tNULL\tNULL\tNULL\tNULL\tNULL\n"},
      {"SELECT Ek FROM V1", "!207\n"},
      {"CREATE VIEW V3 AS SELECT * FROM YOK", "!208\n"},
      {"CREATE VIEW V4 (A,B) AS SELECT Kod,COUNT(*) FROM KART GROUP BY Kod", ""},
      {"SELECT SUM(B) FROM V4", "3\n"},
      {"CREATE VIEW V5 AS SELECT COUNT(*) FROM KART", "!4511\n"},
      {"CREATE VIEW V6 AS SELECT DISTINCT Kart_ID FROM HAREKET UNION SELECT DISTINCT ID FROM KART", ""},
      {"SELECT * FROM V6 ORDER BY 1", "1\n2\n3\n"},
      {"USE master SELECT COUNT(*) FROM FIRMA.dbo.V2 USE FIRMA", "3\n"},
  });
}

TEST_F(QueryTest, SelectIntoCarriesTypesNullAndIdentity) {
  follow({
      {"SELECT * INTO KOPYA FROM KART WHERE ID<3", ""},
      {"INSERT INTO KOPYA (Kod) VALUES ('D4') SELECT ID,Kod FROM KOPYA ORDER BY ID", "1\tA1\n2\tB2\n3\tD4\n"},
      {"INSERT INTO KOPYA (Kod) VALUES (NULL)", "!515\n"},
      {"SELECT * INTO KOPYA FROM KART", "!2714\n"},
      {"SELECT A.ID,B.Kod INTO IKI FROM KART A,KART B", ""},
      {"INSERT INTO IKI VALUES (7,'x') SELECT COUNT(*) FROM IKI", "10\n"},
      {"SELECT K.ID AS A,H.Tip INTO SOL FROM HAREKET H RIGHT JOIN KART K ON K.ID=H.Kart_ID", ""},
      {"SELECT H.Borc,K.Kod INTO SOL2 FROM HAREKET H LEFT JOIN KART K ON K.ID=H.Kart_ID+1 SELECT COUNT(*) "
       "FROM SOL2 WHERE Kod IS NULL",
       "0\n"},
      {"SELECT H.Borc,K.Kod INTO SOL3 FROM HAREKET H LEFT JOIN KART K ON K.ID=H.Kart_ID+5 SELECT COUNT(*) "
       "FROM SOL3 WHERE Kod IS NULL",
       "3\n"},
      {"CREATE DATABASE HEDEF", ""},
      {"SELECT Kod,Tutar*2 AS Iki INTO HEDEF.dbo.SONUC FROM KART", ""},
      {"SELECT Kod,Iki FROM HEDEF..SONUC WHERE Iki=41", "B2\t41\n"},
      {"SELECT COL_LENGTH('KOPYA','Kod')", "6\n"},
  });
}

TEST_F(QueryTest, PlansAreSharedBetweenLiterals) {
  run("SELECT Ad FROM KART WHERE ID=1");
  const auto before = session->planStatistics();
  EXPECT_EQ(run("SELECT Ad FROM KART WHERE ID=2"), "Armut\n");
  EXPECT_EQ(run("SELECT Ad FROM KART WHERE ID=3"), "İncir\n");
  EXPECT_EQ(session->planStatistics().hits, before.hits + 2);
  EXPECT_EQ(run("SELECT Kod FROM KART ORDER BY 1"), "A1\nB2\nC3\n");
  EXPECT_EQ(run("SELECT Kod FROM KART ORDER BY 2"), "!108\n") << "a position is no parameter";
  EXPECT_EQ(run("SELECT LEFT('abc',2)"), "ab\n");
  EXPECT_EQ(run("SELECT LEFT('abc',1)"), "a\n");
  run("ALTER TABLE KART ADD Yeni INT NULL");
  EXPECT_EQ(run("SELECT * FROM KART WHERE ID=3"), "3\tC3\tİncir\tNULL\tNULL\tNULL\tNULL\tNULL\n");
}

// Texts that are equal by the collation have different lengths; an index made for the join must find both.
// The extremes of all keys are gathered at once where the rows around are all read. Behind +0 the key is no
// column, and every row around asks for itself.
TEST_F(QueryTest, ExtremesByAKeyAreThoseThatEachRowFinds) {
  EXPECT_EQ(
      run("CREATE TABLE DURUM (ID INT IDENTITY(1,1) PRIMARY KEY, Kart INT NULL, No_ SMALLINT NULL, Ad "
          "VARCHAR(5)) CREATE TABLE DIZINLI (ID INT, Kart INT) CREATE INDEX K ON DIZINLI (Kart)"
          " INSERT INTO DURUM (Kart,No_,Ad) VALUES (1,5,'a') INSERT INTO DURUM (Kart,No_,Ad) VALUES (2,7,'b')"
          " INSERT INTO DURUM (Kart,No_,Ad) VALUES (1,3,'c') INSERT INTO DURUM (Kart,No_,Ad) VALUES "
          "(NULL,9,'d') INSERT INTO DURUM (Kart,No_,Ad) VALUES (2,NULL,'e') INSERT INTO DURUM (Kart) VALUES "
          "(7) INSERT INTO DIZINLI VALUES (4,1) INSERT INTO DIZINLI VALUES (6,1)"
          " INSERT INTO HAREKET VALUES (NULL,1,1,'x') INSERT INTO HAREKET VALUES (9,1,1,'y')"),
      "");
  EXPECT_EQ(
      run("CREATE VIEW SON AS SELECT Kod,(SELECT MAX(ID) FROM DURUM WHERE KART.ID=Kart) AS s FROM KART"), "");
  const Query queries[] = {
      {"SELECT Kod,(SELECT MAX(ID) FROM DURUM WHERE Kart=KART.ID) FROM KART ORDER BY 1",
       "A1\t3\nB2\t5\nC3\tNULL\n"},
      {"SELECT Kod,(SELECT MIN(d.No_) FROM DURUM d WHERE k.ID=d.Kart) FROM KART k ORDER BY 1",
       "A1\t3\nB2\t7\nC3\tNULL\n"},
      {"SELECT Tip,(SELECT MAX(ID) FROM DURUM WHERE Kart=Kart_ID) FROM HAREKET ORDER BY Borc,Tip",
       "Mal\t5\nx\tNULL\ny\tNULL\nMal\t3\nHizmet\t3\n"},
      // under another subquery, as the latest row of each
      {"SELECT Kod,(SELECT Ad FROM DURUM WHERE ID=(SELECT MAX(ID) FROM DURUM WHERE Kart=KART.ID)) FROM KART",
       "A1\tc\nB2\te\nC3\tNULL\n"},
      {"SELECT Kod FROM KART WHERE 5=(SELECT MAX(ID) FROM DURUM WHERE Kart=KART.ID)", "B2\n"},
      {"SELECT * FROM SON WHERE s>3", "B2\t5\n"},
      {"SELECT COUNT(*),(SELECT MAX(ID) FROM DURUM WHERE Kart=k.Aktif) FROM KART k GROUP BY k.Aktif ORDER BY "
       "1,2",
       "1\tNULL\n1\tNULL\n1\t3\n"},
      // left as they are
      {"SELECT (SELECT MAX(ID) FROM DURUM WHERE Kart=KART.ID) FROM KART WHERE Kod='B2'", "5\n"},
      {"SELECT (SELECT MAX(ID) FROM DIZINLI WHERE Kart=KART.ID) FROM KART ORDER BY ID", "6\nNULL\nNULL\n"},
      {"SELECT (SELECT MAX(Ad) FROM DURUM WHERE Kart=KART.ID) FROM KART ORDER BY ID", "c\ne\nNULL\n"},
      {"SELECT TOP 1 (SELECT MAX(ID) FROM DURUM WHERE Kart=KART.ID) FROM KART ORDER BY ID DESC", "NULL\n"},
  };
  for (const Query& query : queries) EXPECT_EQ(run(query.sql), query.rows) << query.sql;
  EXPECT_EQ(
      run("UPDATE KART SET Tutar=(SELECT MAX(ID) FROM DURUM WHERE Kart=KART.ID) SELECT Tutar FROM KART"),
      "3\n5\nNULL\n");
}

TEST_F(QueryTest, JoinsWithoutAnIndexFollowTheCollation) {
  run("CREATE TABLE SOL (ID INT, Kod CHAR(6)) CREATE TABLE SAG (ID INT, Kod CHAR(6)) INSERT INTO SAG VALUES "
      "(9,'iki')");
  for (const char* const kod : {"bir", "iki", "İKİ", "üç", "dört"})
    run("INSERT INTO SOL VALUES (1,'" + std::string(kod) + "')");
  EXPECT_EQ(run("SELECT L.Kod,G.Kod FROM SOL L JOIN SAG G ON G.Kod=L.Kod ORDER BY LEN(L.Kod),G.ID"),
            "iki\tiki\nİKİ\tiki\n");
  EXPECT_EQ(run("SELECT COUNT(*),COUNT(G.ID) FROM SOL L LEFT JOIN SAG G ON L.Kod=G.Kod"), "5\t2\n");
}

}  // namespace
}  // namespace engine::test
