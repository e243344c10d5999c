// Statements of the dialect: what they do and what comes back, across databases, with the Turkish order.
#include "engine/server/dialect.h"

namespace engine::test {
namespace {

class StatementTest : public DialectTest {};

TEST_F(StatementTest, TextNeedsNoSeparators) {
  follow({
      {"create table Çeşit(Ad char(5),[Bir Alan] int,\"Öteki\" int)insert into ÇeşiT values('Mal',1,2)update "
       "ÇEşIT set Ad='x'where Ad='Mal'select aD from Çeşit",
       "x\n"},
      {"select * from çeşit", "!208\n"},
      {"select [bir alan],\"Öteki\" from Çeşit;;select 1--sondan\nselect 2/* a */;", "1\t2\n1\n2\n"},
      {"SELECT 1 SELECT 2 FORM", "1\n2\n"},
      {"PRINT 'a' SELECT FROM", "!156\n"},
      {"PRINT 'a' SELECT 'açık", "!105\n"},
      {"PRINT 'a' SELECT (1", "!102\n"},
      {"PRINT 'a' SELECT * FROM YOK PRINT 'b'", "# a\n!208\n"},
  });
}

TEST_F(StatementTest, CollationIsTurkishEverywhere) {
  follow({
      {"CREATE TABLE K (ID INT IDENTITY,Ad CHAR(10),V VARCHAR(10))", ""},
      {"INSERT INTO K(Ad,V) VALUES('çam','İZMİR') INSERT INTO K(Ad,V) VALUES('cam','izmir') INSERT INTO "
       "K(Ad,V) VALUES('dam','IZMIR') INSERT INTO K(Ad,V) VALUES('ıgdır','ızmır') INSERT INTO K(Ad,V) "
       "VALUES('Iğdır','izmır') INSERT INTO K(Ad,V) VALUES('şam','x')",
       ""},
      {"SELECT Ad FROM K ORDER BY Ad", "cam\nçam\ndam\nıgdır\nIğdır\nşam\n"},
      {"SELECT COUNT(*) FROM K WHERE V='izmir' SELECT COUNT(*) FROM K WHERE V='IZMIR'", "2\n2\n"},
      {"SELECT COUNT(DISTINCT V) FROM K", "4\n"},
      {"SELECT COUNT(*) FROM K GROUP BY V HAVING COUNT(*)>1 ORDER BY MIN(ID)", "2\n2\n"},
      {"SELECT COUNT(*) FROM (SELECT V FROM K UNION SELECT V FROM K) T", "4\n"},
      {"SELECT ID FROM K WHERE V IN ('ıZMıR') ORDER BY ID", "3\n4\n"},
      {"SELECT ID FROM K WHERE V LIKE 'i%' ORDER BY ID", "1\n2\n5\n"},
      {"SELECT ID FROM K WHERE V LIKE '%İR' ORDER BY ID", "1\n2\n"},
      {"SELECT ID FROM K WHERE Ad LIKE '[a-d]am%' ORDER BY ID", "1\n2\n3\n"},
      {"SELECT ID FROM K WHERE Ad LIKE '[^c]am%' ORDER BY ID", "1\n3\n6\n"},
      {"SELECT ID FROM K WHERE Ad LIKE '_am' ORDER BY ID", "1\n2\n3\n6\n"},
      {"SELECT ID FROM K WHERE V LIKE 'X' SELECT ID FROM K WHERE V LIKE 'x ' SELECT ID FROM K WHERE V NOT "
       "LIKE '_z%' ORDER BY ID",
       "6\n6\n"},
      {"SELECT MAX(Ad),MIN(Ad) FROM K", "şam\tcam\n"},
      {"SELECT PATINDEX('%Ğ%',Ad),CHARINDEX('Ş',Ad) FROM K WHERE ID>4 ORDER BY ID", "2\t0\n0\t1\n"},
      {"SELECT ID FROM K WHERE Ad BETWEEN 'c' AND 'çz' ORDER BY ID", "1\n2\n"},
      {"SELECT ID FROM K WHERE '10%'  LIKE '10!%' ESCAPE '!' AND ID=1", "1\n"},
      {"CREATE UNIQUE INDEX IU ON K(V)", "!1505\n"},
      {"CREATE TABLE U (Ad VARCHAR(5) UNIQUE) INSERT INTO U VALUES('i') INSERT INTO U VALUES('I') INSERT "
       "INTO U VALUES('İ')",
       "!2627\n"},
      {"CREATE TABLE U2 (Ad VARCHAR(5)) CREATE UNIQUE INDEX IU2 ON U2(Ad) INSERT INTO U2 VALUES('a ') INSERT "
       "INTO U2 VALUES('A')",
       "!2601\n"},
      {"SELECT CASE 'İ' WHEN 'i' THEN 'e' END,CASE WHEN 'ş'='s' THEN 'e' ELSE 'h' END", "e\th\n"},
      {"SELECT Ad COLLATE Turkish_CI_AS FROM K WHERE Ad='DAM' COLLATE Turkish_CI_AS", "dam\n"},
  });
}

TEST_F(StatementTest, OtherDatabasesAreNamedInEveryStatement) {
  follow({
      {"CREATE DATABASE YENI", ""},
      {"CREATE TABLE KART (ID INT IDENTITY,Ad CHAR(5) NOT NULL) INSERT INTO KART(Ad) VALUES('bir') INSERT "
       "INTO KART(Ad) VALUES('iki')",
       ""},
      {"SELECT * INTO YENI.dbo.KART FROM KART SELECT COUNT(*) FROM YENI..KART", "2\n"},
      {"INSERT INTO YENI.dbo.KART(Ad) SELECT Ad FROM FIRMA.dbo.KART WHERE ID=2 SELECT ID,Ad FROM "
       "YENI.dbo.KART ORDER BY ID",
       "1\tbir\n2\tiki\n3\tiki\n"},
      {"UPDATE YENI..KART SET Ad='üç' WHERE ID=3 UPDATE YENI.dbo.KART SET Ad=FIRMA.dbo.KART.Ad FROM "
       "FIRMA.dbo.KART WHERE YENI.dbo.KART.ID=FIRMA.dbo.KART.ID+1 SELECT Ad FROM YENI.dbo.KART ORDER BY ID",
       "bir\nbir\niki\n"},
      {"DELETE YENI.dbo.KART FROM KART K WHERE K.ID=YENI.dbo.KART.ID AND K.Ad='iki' SELECT COUNT(*) FROM "
       "YENI..KART",
       "2\n"},
      {"DELETE FROM YENI..KART WHERE ID=3 SELECT A.Ad,B.Ad FROM FIRMA..KART A LEFT JOIN YENI..KART B ON "
       "A.ID=B.ID ORDER BY A.ID",
       "bir\tbir\niki\tNULL\n"},
      {"CREATE TABLE YENI.dbo.T2 (N INT) ALTER TABLE YENI.dbo.T2 ADD M INT CREATE INDEX IX ON YENI.dbo.T2(N) "
       "INSERT INTO YENI.dbo.T2 VALUES(1,2) SELECT M FROM YENI.dbo.T2 TRUNCATE TABLE YENI.dbo.T2 SELECT "
       "COUNT(*) FROM YENI.dbo.T2 DROP TABLE YENI.dbo.T2",
       "2\n0\n"},
      {"SELECT * FROM YENI.dbo.T2", "!208\n"},
      {"SELECT name FROM YENI.dbo.sysobjects WHERE type='U'", "KART\n"},
      {"SET IDENTITY_INSERT YENI.dbo.KART ON INSERT INTO YENI.dbo.KART(ID,Ad) VALUES(50,'el') SET "
       "IDENTITY_INSERT YENI.dbo.KART OFF INSERT INTO YENI.dbo.KART(Ad) VALUES('ek') SELECT MAX(ID) FROM "
       "YENI.dbo.KART",
       "51\n"},
      {"USE YENI SELECT DB_NAME() USE FIRMA", "YENI\n"},
      {"DROP DATABASE YENI", ""},
      {"USE YENI", "!911\n"},
      {"DROP DATABASE YENI", "!3701\n"},
      {"CREATE DATABASE FIRMA", "!1801\n"},
  });
}

TEST_F(StatementTest, Identity) {
  follow({
      {"CREATE TABLE T (ID INT IDENTITY(10,5),N INT) CREATE TABLE L (ID INT IDENTITY(100,1),N INT)", ""},
      {"CREATE TRIGGER TT ON T FOR INSERT AS INSERT INTO L(N) SELECT N FROM inserted", ""},
      {"SELECT @@IDENTITY", "NULL\n"},
      {"INSERT INTO T VALUES(1) SELECT @@IDENTITY,SCOPE_IDENTITY(),@@ROWCOUNT", "100\t10\t1\n"},
      {"INSERT INTO T(ID,N) VALUES(3,1)", "!544\n"},
      {"SET IDENTITY_INSERT T ON INSERT INTO T(N) VALUES(9)", "!545\n"},
      {"SET IDENTITY_INSERT L ON", "!8107\n"},
      {"INSERT INTO T(ID,N) VALUES(200,1) SET IDENTITY_INSERT T OFF INSERT INTO T(N) VALUES(2) SELECT "
       "MAX(ID),MIN(ID) FROM T",
       "205\t10\n"},
      {"UPDATE T SET ID=1", "!8102\n"},
      {"TRUNCATE TABLE T INSERT INTO T(N) VALUES(5) SELECT ID FROM T", "10\n"},
      {"CREATE TABLE D (ID INT IDENTITY,N INT DEFAULT 4) INSERT INTO D DEFAULT VALUES SELECT * FROM D",
       "1\t4\n"},
  });
}

// What a failed or rolled back INSERT was given stays given.
TEST_F(StatementTest, IdentityLeavesGaps) {
  follow({
      {"CREATE TABLE T (ID INT IDENTITY,N TINYINT NOT NULL) INSERT INTO T VALUES(1)", ""},
      {"INSERT INTO T VALUES(NULL)", "!515\n"},
      {"INSERT INTO T VALUES(2) SELECT MAX(ID) FROM T", "3\n"},
      {"BEGIN TRAN INSERT INTO T VALUES(3) INSERT INTO T VALUES(4) ROLLBACK INSERT INTO T VALUES(5) SELECT "
       "MAX(ID),@@IDENTITY FROM T",
       "6\t6\n"},
      {"INSERT INTO T(N) SELECT N FROM T UNION ALL SELECT NULL", "!515\n"},
      {"INSERT INTO T VALUES(6) SELECT COUNT(*) FROM T WHERE ID>10", "1\n"},
      {"TRUNCATE TABLE T INSERT INTO T VALUES(1) SELECT ID FROM T", "1\n"},
      {"BEGIN TRAN CREATE TABLE U (ID INT IDENTITY(5,-2),N INT) INSERT INTO U VALUES(1) INSERT INTO U "
       "VALUES(2) ROLLBACK CREATE TABLE U (ID INT IDENTITY(5,-2),N INT)",
       ""},
      {"INSERT INTO U VALUES(1) BEGIN TRAN INSERT INTO U VALUES(2) ROLLBACK INSERT INTO U VALUES(3) SELECT "
       "MAX(ID),MIN(ID) FROM U",
       "5\t1\n"},
  });
  const auto other = open("FIRMA");
  EXPECT_EQ(run(*other, "BEGIN TRAN INSERT INTO U VALUES(4) ROLLBACK"), "");
  EXPECT_EQ(run("INSERT INTO U VALUES(5) SELECT MIN(ID) FROM U"), "-3\n");
}

TEST_F(StatementTest, RowCounts) {
  follow({
      {"CREATE TABLE T (N INT) INSERT INTO T SELECT 1 UNION ALL SELECT 2 UNION ALL SELECT 3", ""},
      {"UPDATE T SET N=N SELECT @@ROWCOUNT", "3\n"},
      {"DECLARE @i INT UPDATE T SET N=N SET @i=5 SELECT @@ROWCOUNT", "1\n"},
      {"DECLARE @i INT SELECT @i=N FROM T SELECT @@ROWCOUNT SELECT N FROM T WHERE 1=0 SELECT @@ROWCOUNT",
       "3\n0\n"},
      {"UPDATE T SET N=N IF 1=1 SELECT @@ROWCOUNT", "0\n"},
      {"UPDATE T SET N=N PRINT 'a' SELECT @@ROWCOUNT", "# a\n0\n"},
      {"UPDATE T SET N=N DECLARE @x INT SELECT @@ROWCOUNT", "3\n"},
      {"UPDATE T SET N=N SET NOCOUNT OFF SELECT @@ROWCOUNT", "0\n"},
      {"DECLARE @s INT SET @s=0 UPDATE T SET @s=@s+N,N=@s SELECT N FROM T", "1\n3\n6\n"},
      {"DELETE TOP (1) FROM T SELECT @@ROWCOUNT UPDATE TOP (1) T SET N=9 SELECT @@ROWCOUNT", "1\n1\n"},
      {"SELECT TOP 1 N FROM T UNION SELECT 50 ORDER BY 1 DESC", "50\n9\n"},
  });
}

TEST_F(StatementTest, ConversionsThatMustBeWritten) {
  follow({
      {"CREATE TABLE T (I INT,M MONEY,F FLOAT,D DECIMAL(5,2),B BIT,V VARCHAR(30),X VARBINARY(8),DT DATETIME,"
       "N NTEXT) INSERT INTO T(DT) VALUES('20120314')",
       ""},
      {"UPDATE T SET I=DT", "!257\n"},
      {"UPDATE T SET M=DT", "!257\n"},
      {"UPDATE T SET F=DT", "!257\n"},
      {"UPDATE T SET D=DT", "!257\n"},
      {"INSERT INTO T(B) SELECT DT FROM T", "!257\n"},
      {"INSERT INTO T(X) VALUES('ab')", "!257\n"},
      {"INSERT INTO T(F) VALUES(0x41)", "!206\n"},
      {"INSERT INTO T(N) VALUES(5)", "!206\n"},
      {"DECLARE @i INT SET @i=GETDATE()", "!257\n"},
      {"DECLARE @i INT SELECT @i=DT FROM T", "!257\n"},
      {"UPDATE T SET I=CONVERT(INT,DT),X=CONVERT(VARBINARY(8),'ab'),V=DT SELECT I,V FROM T",
       "40980\tMar 14 2012 12:00AM\n"},
      {"UPDATE T SET DT=5,V=12,I='7',X=65,N='x' SELECT CONVERT(CHAR(10),DT,120),V,I FROM T",
       "1900-01-06\t12\t7\n"},
  });
  EXPECT_EQ(run("UPDATE T SET D=DT"), "!257\n");
  EXPECT_EQ(
      message,
      "Implicit conversion from data type datetime to numeric is not allowed. Use the CONVERT function to "
      "run this query.");
}

TEST_F(StatementTest, OverflowsAreNotStored) {
  follow({
      {"CREATE TABLE T (F FLOAT,I INT) INSERT INTO T VALUES(1e308,2147483647) INSERT INTO T VALUES(1e308,1)",
       ""},
      {"SELECT F*10 FROM T", "!8115\n"},
      {"SELECT COUNT(*) FROM T WHERE F*10>5", "!8115\n"},
      {"UPDATE T SET F=F*10", "!8115\n"},
      {"INSERT INTO T(F) SELECT F+F FROM T", "!8115\n"},
      {"DECLARE @f FLOAT SELECT @f=F*10 FROM T", "!8115\n"},
      {"SELECT SUM(F) FROM T", "!8115\n"},
      {"SELECT SUM(I) FROM T", "!8115\n"},
      {"SELECT AVG(I) FROM T", "!8115\n"},
      {"SELECT COUNT(*) FROM T WHERE F=1e308", "2\n"},
  });
}

TEST_F(StatementTest, LongTextIsNotCompared) {
  follow({
      {"CREATE TABLE T (ID INT,A TEXT,N NTEXT) INSERT INTO T VALUES(1,'uzun','ü') SELECT A FROM T UNION ALL "
       "SELECT 'x' SELECT ID FROM T WHERE A LIKE 'uz%' AND N IS NOT NULL",
       "uzun\nx\n1\n"},
      {"SELECT ID FROM T WHERE A='uzun'", "!402\n"},
      {"SELECT ID FROM T WHERE A IN ('uzun')", "!402\n"},
      {"SELECT A FROM T ORDER BY A", "!306\n"},
      {"SELECT A FROM T ORDER BY 1", "!306\n"},
      {"SELECT COUNT(*) FROM T GROUP BY N", "!306\n"},
      {"SELECT DISTINCT A FROM T", "!421\n"},
      {"SELECT ID,A FROM T UNION SELECT ID,A FROM T", "!5335\n"},
      {"DECLARE @t TEXT", "!2739\n"},
  });
}

// A text that is no number or date takes the whole transaction with it; other failures only the statement.
TEST_F(StatementTest, ErrorsInTransactions) {
  follow({
      {"CREATE TABLE T (N INT NOT NULL)", ""},
      {"BEGIN TRAN INSERT INTO T VALUES(1) SELECT CONVERT(INT,'x') INSERT INTO T VALUES(2)", "!245\n"},
      {"SELECT @@TRANCOUNT,COUNT(*) FROM T", "0\t0\n"},
      {"BEGIN TRAN INSERT INTO T VALUES(1) INSERT INTO T VALUES(NULL) INSERT INTO T VALUES(1/0) INSERT INTO "
       "T VALUES(2) COMMIT",
       "!515\n"},
      {"SELECT @@TRANCOUNT,COUNT(*) FROM T", "0\t2\n"},
      {"BEGIN TRAN INSERT INTO T VALUES(3) INSERT INTO YOK VALUES(1)", "!208\n"},
      {"SELECT @@TRANCOUNT ROLLBACK SELECT COUNT(*) FROM T", "1\n2\n"},
  });
}

TEST_F(StatementTest, Savepoints) {
  follow({
      {"CREATE TABLE T (N INT) CREATE TABLE L (N INT)", ""},
      {"CREATE TRIGGER TT ON T FOR INSERT AS SAVE TRAN s INSERT INTO L SELECT N FROM inserted IF "
       "EXISTS(SELECT * FROM inserted WHERE N>5) ROLLBACK TRAN s",
       ""},
      {"BEGIN TRAN INSERT INTO T VALUES(1) SAVE TRAN a INSERT INTO T VALUES(2) SAVE TRAN b INSERT INTO T "
       "VALUES(9) ROLLBACK TRAN a SELECT @@TRANCOUNT,COUNT(*) FROM T INSERT INTO T VALUES(8) COMMIT SELECT N "
       "FROM T SELECT N FROM L",
       "1\t1\n1\n8\n1\n"},
      {"BEGIN TRAN dis INSERT INTO T VALUES(3) SAVE TRAN a ROLLBACK TRAN yok", "!6401\n"},
      {"ROLLBACK TRAN dis SELECT @@TRANCOUNT,COUNT(*) FROM T", "0\t2\n"},
      {"BEGIN TRAN SAVE TRAN a CREATE TABLE U (N INT) ROLLBACK TRAN a ROLLBACK TRAN a COMMIT SELECT "
       "OBJECT_ID('U')",
       "NULL\n"},
      {"SAVE TRAN a", "!628\n"},
  });
}

TEST_F(StatementTest, PatternsOfFixedWidth) {
  follow({
      {"CREATE TABLE T (ID INT,Ad VARCHAR(10),C CHAR(5)) INSERT INTO T VALUES(1,'A ','A') INSERT INTO T "
       "VALUES(2,'ba','ba')",
       ""},
      {"DECLARE @c CHAR(5) SET @c='a' SELECT ID FROM T WHERE Ad LIKE '%'+@c SELECT ID FROM T WHERE C LIKE "
       "@c SELECT ID FROM T WHERE Ad LIKE @c+'%' SELECT ID FROM T WHERE Ad LIKE RTRIM(@c)+'%'",
       "1\n1\n"},
      {"DECLARE @c CHAR(5) SET @c='a%' SELECT ID FROM T WHERE Ad LIKE @c", ""},
      {"SELECT C+'x',COUNT(*) FROM T GROUP BY C+'x' ORDER BY 1", "A    x\t1\nba   x\t1\n"},
      {"CREATE TABLE S (ID INT IDENTITY,Ad VARCHAR(10)) INSERT INTO S(Ad) SELECT Ad FROM T ORDER BY ID DESC "
       "SELECT ID,Ad FROM S ORDER BY ID",
       "1\tba\n2\tA \n"},
  });
}

TEST_F(StatementTest, SelectForms) {
  follow({
      {"CREATE TABLE A (ID INT,Ad VARCHAR(5),N FLOAT NULL) INSERT INTO A VALUES(1,'x',1.5) INSERT INTO A "
       "VALUES(2,'y',NULL) INSERT INTO A VALUES(3,'x',4)",
       ""},
      {"SELECT TOP 1 Ad FROM A ORDER BY ID DESC SELECT TOP 2 ID i FROM A ORDER BY i DESC", "x\n3\n2\n"},
      {"SELECT Toplam=SUM(N),Ad Adi FROM A GROUP BY Ad ORDER BY Adi DESC", "NULL\ty\n5.5\tx\n"},
      {"SELECT 'x' 'ad',2 AS 'sayı'", "x\t2\n"},
      {"SELECT DISTINCT Ad FROM A ORDER BY 1 DESC", "y\nx\n"},
      {"SELECT DISTINCT Ad+'1' FROM A ORDER BY Ad+'1' DESC", "y1\nx1\n"},
      {"SELECT DISTINCT Ad+'1' FROM A ORDER BY Ad+'2' DESC", "!145\n"},
      {"SELECT ID FROM A WHERE ID=ANY(SELECT ID FROM A WHERE N>1) AND ID>=ALL(SELECT ID FROM A)", "3\n"},
      {"SELECT ID FROM A X WHERE N=(SELECT MAX(N) FROM A WHERE Ad=X.Ad)", "3\n"},
      {"SELECT (SELECT COUNT(*) FROM A B WHERE B.ID<=A.ID) FROM A ORDER BY ID", "1\n2\n3\n"},
      {"SELECT ID FROM A UNION ALL SELECT 9 ORDER BY ID DESC", "9\n3\n2\n1\n"},
      {"SELECT ID FROM A WHERE ID=1 UNION SELECT 1 UNION ALL SELECT 1", "1\n1\n"},
      {"SELECT AVG(ID),AVG(N),COUNT(N),COUNT(DISTINCT Ad),SUM(DISTINCT ID) FROM A", "2\t2.75\t2\t2\t6\n"},
      {"SELECT COUNT(*),SUM(N),MAX(Ad) FROM A WHERE 1=0", "0\tNULL\tNULL\n"},
      {"SELECT ID FROM A ORDER BY N,ID", "2\n1\n3\n"},
      {"SELECT T.Ad,X.C FROM (SELECT DISTINCT Ad FROM A) T INNER JOIN (SELECT Ad,COUNT(*) C FROM A GROUP BY "
       "Ad) X ON T.Ad=X.Ad ORDER BY T.Ad",
       "x\t2\ny\t1\n"},
      {"SELECT A.ID,B.ID FROM A FULL OUTER JOIN A B ON A.ID=B.ID+2 WHERE A.ID IS NULL OR B.ID IS NULL ORDER "
       "BY A.ID,B.ID",
       "NULL\t2\nNULL\t3\n1\tNULL\n2\tNULL\n"},
      {"SELECT CASE Ad WHEN 'X' THEN 1 WHEN 'y' THEN 2 END FROM A ORDER BY ID", "1\n2\n1\n"},
      {"SELECT ID,N INTO B FROM A WHERE ID<3 SELECT * FROM B ORDER BY ID", "1\t1.5\n2\tNULL\n"},
      {"SELECT ID INTO B FROM A", "!2714\n"},
      {"DECLARE @t VARCHAR(20) SET @t='' SELECT @t=@t+Ad FROM A ORDER BY ID SELECT @t", "xyx\n"},
      {"DECLARE @n INT SET @n=5 SELECT @n=ID FROM A WHERE ID>9 SELECT @n SET @n=(SELECT ID FROM A WHERE "
       "ID>9) SELECT @n",
       "5\nNULL\n"},
      {"SELECT ID FROM A WHERE Ad IN(SELECT Ad FROM A GROUP BY Ad HAVING COUNT(*)>1) ORDER BY ID", "1\n3\n"},
      {"SELECT 1 FROM A HAVING 1=1 SELECT 2 HAVING 1=0", "1\n"},
      {"SELECT ISNULL(Ad,'') AS X,ID+1 AS Y,'a' AS Z INTO C FROM A SELECT isnullable FROM syscolumns WHERE "
       "id=OBJECT_ID('C') ORDER BY colid",
       "0\n1\n0\n"},
      {"SELECT A.* FROM A,B WHERE A.ID=B.ID AND B.N IS NULL", "2\ty\tNULL\n"},
  });
}

TEST_F(StatementTest, TablesChange) {
  follow({
      {"CREATE TABLE T (ID INT NOT NULL,Ad CHAR(5),CONSTRAINT PK_T PRIMARY KEY CLUSTERED (ID)) INSERT INTO T "
       "VALUES(1,'bir') INSERT INTO T VALUES(2,'12')",
       ""},
      {"ALTER TABLE T ADD A INT NULL,B BIT NOT NULL DEFAULT 1,C DATETIME CONSTRAINT DF_C DEFAULT '20120314' "
       "SELECT ID,A,B,C FROM T",
       "1\tNULL\t1\tNULL\n2\tNULL\t1\tNULL\n"},
      {"ALTER TABLE T ADD Z INT NOT NULL", "!4901\n"},
      {"CREATE TABLE TD (A INT) INSERT INTO TD VALUES(1) ALTER TABLE TD ADD D INT NOT NULL CONSTRAINT DF_D "
       "DEFAULT 5 ALTER TABLE TD DROP CONSTRAINT DF_D INSERT INTO TD(A) VALUES(2)",
       "!515\n"},
      {"CREATE TABLE TV (A INT) INSERT INTO TV VALUES(1) ALTER TABLE TV ADD V INT DEFAULT 4 WITH VALUES "
       "SELECT V FROM TV",
       "4\n"},
      {"ALTER TABLE T ALTER COLUMN Ad VARCHAR(10) NOT NULL SELECT '['+Ad+']' FROM T ORDER BY ID",
       "[bir  ]\n[12   ]\n"},
      {"ALTER TABLE T ALTER COLUMN Ad INT", "!245\n"},
      {"ALTER TABLE T ALTER COLUMN Ad VARCHAR(2)", "!8152\n"},
      {"ALTER TABLE T ALTER COLUMN A INT NOT NULL", "!515\n"},
      {"UPDATE T SET Ad='7' ALTER TABLE T ALTER COLUMN Ad FLOAT SELECT Ad+1 FROM T", "8\n8\n"},
      {"ALTER TABLE T DROP COLUMN A ALTER TABLE T DROP COLUMN A", "!4924\n"},
      {"ALTER TABLE T DROP COLUMN ID", "!4922\n"},
      {"ALTER TABLE T DROP CONSTRAINT PK_T ALTER TABLE T DROP COLUMN ID SELECT * FROM T",
       "7\t1\tNULL\n7\t1\tNULL\n"},
      {"ALTER TABLE T DROP CONSTRAINT YOK", "!3728\n"},
      {"ALTER TABLE T DROP COLUMN C", "!4922\n"},
      {"ALTER TABLE T DROP CONSTRAINT DF_C ALTER TABLE T DROP COLUMN C INSERT INTO T(Ad) VALUES(3) SELECT "
       "COUNT(*),SUM(CONVERT(INT,B)) FROM T",
       "3\t3\n"},
      {"ALTER TABLE T ADD CONSTRAINT U1 UNIQUE (Ad)", "!1505\n"},
      {"DELETE T WHERE Ad=7 ALTER TABLE T ADD CONSTRAINT U1 UNIQUE (Ad) INSERT INTO T(Ad) VALUES(3)",
       "!2627\n"},
      {"ALTER TABLE T ADD CONSTRAINT DF_B2 DEFAULT 0 FOR B", "!1781\n"},
      {"CREATE UNIQUE CLUSTERED INDEX IX ON T(Ad) DROP INDEX T.IX DROP INDEX T.IX", "!3701\n"},
      {"CREATE TABLE T (A INT)", "!2714\n"},
      {"CREATE TABLE X (A INT,a INT)", "!2705\n"},
      {"DROP TABLE YOK", "!3701\n"},
      {"DROP VIEW YOK", "!3701\n"},
  });
}

TEST_F(StatementTest, ViewsKeepTheirColumns) {
  follow({
      {"CREATE TABLE T (A INT) INSERT INTO T VALUES(1)", ""},
      {"CREATE VIEW V AS SELECT * FROM T", ""},
      {"ALTER TABLE T ADD B INT SELECT * FROM V", "1\n"},
      {"CREATE VIEW W AS SELECT A,A+1 AS B FROM V UNION ALL SELECT 5,6", ""},
      {"SELECT * FROM W ORDER BY A DESC", "5\t6\n1\t2\n"},
      {"CREATE VIEW X AS SELECT * FROM YOK", "!208\n"},
      {"CREATE VIEW X AS SELECT YOK FROM T", "!207\n"},
      {"CREATE VIEW V AS SELECT 1 AS A", "!2714\n"},
      {"CREATE VIEW X AS SELECT A+1 FROM T", "!4511\n"},
      {"PRINT 'a' CREATE VIEW X AS SELECT A FROM T", "!111\n"},
      {"ALTER VIEW V AS SELECT A*10 AS A FROM T", ""},
      {"SELECT A FROM W ORDER BY 1", "5\n10\n"},
      {"DROP TABLE T SELECT * FROM W", "!208\n"},
      {"DROP VIEW W DROP VIEW V SELECT COUNT(*) FROM sysobjects WHERE type='V'", "0\n"},
  });
}

TEST_F(StatementTest, SystemTablesByTypeTable) {
  EXPECT_EQ(
      run("CREATE TABLE T (c1 CHAR,c2 CHAR(9),c3 VARCHAR(9),c4 NCHAR(9),c5 NVARCHAR(9),c6 TEXT,c7 NTEXT,c8 "
          "INT,c9 SMALLINT,d1 TINYINT,d2 BIGINT,d3 BIT,d4 REAL,d5 FLOAT,d6 MONEY,d7 SMALLMONEY,d8 DECIMAL,d9 "
          "DECIMAL(9,2),e1 NUMERIC(20,2),e2 DECIMAL(30,2),e3 DATETIME,e4 SMALLDATETIME)"),
      "");
  EXPECT_EQ(run("SELECT name,length,xtype FROM syscolumns WHERE id=OBJECT_ID('T') ORDER BY colid"),
            "c1\t1\t175\nc2\t9\t175\nc3\t9\t167\nc4\t18\t239\nc5\t18\t231\nc6\t16\t35\nc7\t16\t99\nc8\t4\t56"
            "\nc9\t2\t52\nd1\t1\t48\nd2\t8\t127\nd3\t1\t104\nd4\t4\t59\nd5\t8\t62\nd6\t8\t60\nd7\t4\t122\nd8"
            "\t9\t106\nd9\t5\t106\ne1\t13\t108\ne2\t17\t106\ne3\t8\t61\ne4\t4\t58\n");
  follow({
      {"SELECT name FROM systypes WHERE xtype IN(56,175,61,62,104) ORDER BY name",
       "bit\nchar\ndatetime\nfloat\nint\n"},
      {"SELECT isnullable FROM syscolumns WHERE id=OBJECT_ID('T') AND name='c1'", "1\n"},
      {"SELECT RTRIM(xtype),RTRIM(type) FROM sysobjects WHERE name='T'", "U\tU\n"},
      {"SELECT COUNT(*) FROM master..sysdatabases WHERE name IN('master','FIRMA')", "2\n"},
      {"SELECT name FROM master.dbo.syslogins WHERE name='sa'", "sa\n"},
      {"SELECT name FROM master.dbo.sysxlogins WHERE name='sa'", "sa\n"},
  });
}

TEST_F(StatementTest, ControlOfFlow) {
  follow({
      {"DECLARE @i INT,@t VARCHAR(20) SELECT @i=0,@t='' WHILE 1=1 BEGIN SET @i=@i+1 IF @i%2=0 CONTINUE IF "
       "@i>7 BREAK SET @t=@t+CONVERT(VARCHAR,@i) END PRINT @t",
       "# 1357\n"},
      {"IF 1=2 PRINT 'a' ELSE IF 1=1 BEGIN PRINT 'b' PRINT 'c' END ELSE PRINT 'd'", "# b\n# c\n"},
      {"IF NULL=1 PRINT 'e' ELSE PRINT 'h'", "# h\n"},
      {"WHILE NULL<>0 PRINT 'sonsuz' PRINT 'son'", "# son\n"},
      {"PRINT 1+1 RETURN PRINT 'yok'", "# 2\n"},
      {"DECLARE @a INT SET @a='5' SELECT @a+1 SET @b=1", "!137\n"},
      {"DECLARE @a CHAR(2) SET @a='abc' SELECT @a", "ab\n"},
      {"RAISERROR('Hata %s %d',16,1,'x',5)", "!50000\n"},
      {"INSERT INTO YOK VALUES(1)", "!208\n"},
      {"DECLARE @e INT CREATE TABLE E(N INT NOT NULL) INSERT INTO E VALUES(NULL) SET @e=@@ERROR INSERT INTO "
       "E VALUES(@e)",
       "!515\n"},
      {"SELECT N FROM E", "515\n"},
      {"EXEC('SELECT 1 AS A')", "1\n"},
      {"DECLARE @s VARCHAR(50) SET @s='SELECT N FROM E' EXEC(@s)", "515\n"},
  });
}

TEST_F(StatementTest, Procedures) {
  follow({
      {"EXEC sp_addlogin 'ayşe','Gizli1','FIRMA'", ""},
      {"EXEC sp_addlogin 'ayşe','x'", "!15025\n"},
      {"EXEC sp_password 'Gizli1','Gizli2','ayşe' EXEC sp_addsrvrolemember 'ayşe','sysadmin'", ""},
      {"EXEC sp_grantdbaccess 'ayşe' SELECT name FROM sysusers WHERE name='ayşe'", "ayşe\n"},
      {"EXEC sp_addrolemember 'db_owner','ayşe' EXEC sp_droprolemember 'db_owner','ayşe'", ""},
      {"EXEC sp_revokedbaccess 'ayşe' SELECT COUNT(*) FROM sysusers WHERE name='ayşe'", "0\n"},
      {"EXEC sp_droplogin 'ayşe' SELECT COUNT(*) FROM master..syslogins WHERE name='ayşe'", "0\n"},
      {"EXEC sp_droplogin 'ayşe'", "!15007\n"},
      {"EXEC sp_yok", "!2812\n"},
  });
}

struct Refusal {
  const char* batch;
  int number;
  const char* text;
};

TEST_F(StatementTest, ErrorsSayWhatTheServerSays) {
  EXPECT_EQ(
      run("CREATE TABLE T (ID INT NOT NULL CONSTRAINT PK_T PRIMARY KEY,Ad CHAR(3),K TINYINT) CREATE UNIQUE "
          "INDEX IU ON T(Ad) INSERT INTO T VALUES(1,'a',1) CREATE TABLE I (ID INT IDENTITY,N INT)"),
      "");
  const Refusal refusals[] = {
      {"SELECT * FROM", 102, "Incorrect syntax near 'FROM'."},
      {"SELECT FROM T", 156, "Incorrect syntax near the keyword 'FROM'."},
      {"SELECT @x", 137, "Must declare the scalar variable \"@x\"."},
      {"SELECT Yok FROM T", 207, "Invalid column name 'Yok'."},
      {"SELECT 1 FROM Yok", 208, "Invalid object name 'Yok'."},
      {"SELECT ID FROM T A,T B", 209, "Ambiguous column name 'ID'."},
      {"INSERT INTO T VALUES(5)", 213,
       "Column name or number of supplied values does not match table definition."},
      {"SELECT CONVERT(INT,'x')", 245,
       "Conversion failed when converting the varchar value 'x' to data type int."},
      {"INSERT INTO T(ID) VALUES(NULL)", 515,
       "Cannot insert the value NULL into column 'ID', table 'FIRMA.dbo.T'; column does not allow nulls. "
       "INSERT fails."},
      {"UPDATE T SET ID=NULL", 515,
       "Cannot insert the value NULL into column 'ID', table 'FIRMA.dbo.T'; column does not allow nulls. "
       "UPDATE fails."},
      {"INSERT INTO I(ID) VALUES(1)", 544,
       "Cannot insert explicit value for identity column in table 'I' when IDENTITY_INSERT is set to OFF."},
      {"INSERT INTO T(ID) VALUES(1)", 2627,
       "Violation of PRIMARY KEY constraint 'PK_T'. Cannot insert duplicate key in object 'dbo.T'."},
      {"INSERT INTO T VALUES(2,'A',1)", 2601,
       "Cannot insert duplicate key row in object 'dbo.T' with unique index 'IU'."},
      {"CREATE TABLE X (A INT,A INT)", 2705,
       "Column names in each table must be unique. Column name 'A' in table 'X' is specified more than "
       "once."},
      {"CREATE TABLE T (A INT)", 2714, "There is already an object named 'T' in the database."},
      {"DROP TABLE X", 3701,
       "Cannot drop the table 'X', because it does not exist or you do not have permission."},
      {"USE Yok", 911, "Database 'Yok' does not exist. Make sure that the name is entered correctly."},
      {"CREATE DATABASE FIRMA", 1801, "Database 'FIRMA' already exists. Choose a different database name."},
      {"SELECT 2147483647+1", 8115, "Arithmetic overflow error converting expression to data type int."},
      {"SELECT 1/0", 8134, "Divide by zero error encountered."},
      {"INSERT INTO T VALUES(3,'abcd',1)", 8152, "String or binary data would be truncated."},
      {"EXEC sp_yok", 2812, "Could not find stored procedure 'sp_yok'."},
      {"SELECT YOK(1)", 195, "'YOK' is not a recognized built-in function name."},
      {"SELECT ID,COUNT(*) FROM T", 8120,
       "Column 'T.ID' is invalid in the select list because it is not contained in either an aggregate "
       "function or the GROUP BY clause."},
      {"SELECT ID FROM T X GROUP BY ID HAVING K>1", 8121,
       "Column 'T.K' is invalid in the HAVING clause because it is not contained in either an aggregate "
       "function or the GROUP BY clause."},
      {"SELECT ID FROM T GROUP BY ID ORDER BY K", 8127,
       "Column \"T.K\" is invalid in the ORDER BY clause because it is not contained in either an aggregate "
       "function or the GROUP BY clause."},
      {"SELECT COUNT(*) FROM T GROUP BY 'a'", 164,
       "Each GROUP BY expression must contain at least one column that is not an outer reference."},
      {"SELECT SUM((SELECT 1)) FROM T", 130,
       "Cannot perform an aggregate function on an expression containing an aggregate or a subquery."},
      {"SELECT TOP (-1) ID FROM T", 127, "A TOP N value may not be negative."},
      {"SELECT A.ID FROM T A,I A", 1011,
       "The correlation name 'A' is specified multiple times in a FROM clause."},
      {"SELECT * FROM (SELECT 1) X", 8155, "No column name was specified for column 1 of 'X'."},
      {"SELECT * FROM (SELECT 1) X(a,b)", 8159,
       "'X' has fewer columns than were specified in the column list."},
      {"SELECT * FROM baska.T", 208, "Invalid object name 'baska.T'."},
      {"CREATE TABLE baska.X (A INT)", 2760,
       "The specified schema name \"baska\" either does not exist or you do not have permission to use it."},
      {"CREATE VIEW X AS SELECT 1 AS A INTO Y", 156, "Incorrect syntax near the keyword 'INTO'."},
      {"ALTER TABLE T ADD DEFAULT 1 FOR Yok", 1752,
       "Column 'Yok' in table 'T' is invalid for creating a default constraint."},
      {"INSERT INTO I SELECT 1,2", 213,
       "Column name or number of supplied values does not match table definition."},
      {"ALTER TABLE T ADD PRIMARY KEY (K)", 1779, "Table 'T' already has a primary key defined on it."},
      {"DROP VIEW T", 3705, "Cannot use DROP VIEW with 'T' because 'T' is a table. Use DROP TABLE."},
      {"RETURN 5", 178, "A RETURN statement with a return value cannot be used in this context."},
      {"RAISERROR('a',19,1)", 2754,
       "Error severity levels greater than 18 can only be specified by members of the sysadmin role, using "
       "the WITH LOG option."},
      {"RAISERROR(50001,16,1)", 18054,
       "Error 50001, severity 16, state 1 was raised, but no message with that error number was found in "
       "sys.messages. If error is larger than 50000, make sure the user-defined message is added using "
       "sp_addmessage."},
      {"SELECT SUBSTRING(12345,1,2)", 8116,
       "Argument data type int is invalid for argument 1 of substring function."},
      {"SELECT DISTINCT ID FROM T ORDER BY K", 145,
       "ORDER BY items must appear in the select list if SELECT DISTINCT is specified."},
      {"SELECT ID FROM T UNION SELECT 1 ORDER BY ID+1", 104,
       "ORDER BY items must appear in the select list if the statement contains a UNION, INTERSECT or EXCEPT "
       "operator."},
      {"SELECT 1 UNION SELECT 1,2", 205,
       "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal number of "
       "expressions in their target lists."},
      {"INSERT INTO T(ID) SELECT 1,2", 121,
       "The select list for the INSERT statement contains more items than the insert list. The number of "
       "SELECT values must match the number of INSERT columns."},
      {"TRUNCATE TABLE Yok", 4701,
       "Cannot find the object \"Yok\" because it does not exist or you do not have permissions."},
      {"EXEC sp_addlogin 'sa','x'", 15025, "The server principal 'sa' already exists."},
      {"EXEC sp_droplogin 'yok'", 15007, "'yok' is not a valid login or you do not have permission."},
  };
  for (const Refusal& refusal : refusals) {
    EXPECT_EQ(run(refusal.batch), "!" + std::to_string(refusal.number) + "\n") << refusal.batch << "\n"
                                                                               << message;
    EXPECT_EQ(message, refusal.text) << refusal.batch;
  }
  EXPECT_EQ(run("SELECT COUNT(*) FROM T"), "1\n");
}

}  // namespace
}  // namespace engine::test
