// Values of expressions as the server gives them: literals, types, text, numbers, dates, functions.
#include "engine/server/dialect.h"

namespace engine::test {
namespace {

TEST_F(DialectTest, LiteralsAndOperators) {
  values({
      {"'Ali''nin'", "Ali'nin"},
      {"N'Çağrı'+'x'", "Çağrıx"},
      {"1e3", "1000"},
      {".5", "0.5"},
      {"-.5+1", "0.5"},
      {"CONVERT(VARCHAR(1),0x41)", "A"},
      {"1/*a /* b */ c*/+1", "2"},
      {"CASE WHEN 1<>2 AND 1!=2 AND NOT 1!<2 AND 2!<2 THEN 'e' ELSE 'h' END", "e"},
      {"7 % 4, -7 % 4, 7 / -2", "3\t-3\t-3"},
      {"5 & 6, 5 | 6, 5 ^ 6, ~5", "4\t7\t3\t-6"},
      {"2+3*4-(1+1)", "12"},
      {"CONVERT(DECIMAL(38,2),1.25)+CONVERT(DECIMAL(38,2),1.25)", "2.50"},
      {"- -1", "1"},
      {"1.5+1, 1.5*2.25, 1.0/3.0", "2.5\t3.375\t0.333333"},
      {"10/4, 10/4.0, 10/4e0", "2\t2.500000\t2.5"},
      {"1.0/3, 10/3.0, (10)/3.0, 2*1.5, 100/3.0", "0.333333\t3.333333\t3.333333\t3.0\t33.333333"},
      {"CONVERT(DECIMAL(10,2),5)/3, CONVERT(DECIMAL(10,2),5)/-003", "1.666666\t-1.666666"},
      {"CASE WHEN 2.50*2=5 AND 5 IN (5.00) THEN 7/2.0 END", "3.500000"},
      {"CASE WHEN NULL=NULL THEN 1 WHEN NOT NULL=1 THEN 2 ELSE 3 END", "3"},
      {"CASE WHEN NULL IS NULL AND 1 IS NOT NULL THEN 'e' END", "e"},
      {"'a'+NULL+'b'", "NULL"},
      {"1+NULL", "NULL"},
      {"CASE WHEN 1 IN (2,NULL) THEN 1 WHEN 1 NOT IN (2,NULL) THEN 2 ELSE 3 END", "3"},
      {"CASE WHEN 5 NOT BETWEEN 1 AND 4 THEN 'e' END", "e"},
  });
}

TEST_F(DialectTest, CharactersOfFixedAndVaryingWidth) {
  follow({
      {"DECLARE @c CHAR(4),@v VARCHAR(4),@d CHAR,@n NCHAR(3) SELECT @c='ab',@v='ab  ',@d='xy',@n=N'ş' "
       "SELECT '['+@c+']','['+@v+']','['+@d+']','['+@n+']',DATALENGTH(@c),DATALENGTH(@v),DATALENGTH(@n),"
       "LEN(@c),LEN(@v)",
       "[ab  ]\t[ab  ]\t[x]\t[ş  ]\t4\t4\t6\t2\t2\n"},
      {"DECLARE @c CHAR(3) SELECT '['+LEFT(@c,1)+']' SET @c='a' SELECT "
       "'['+LEFT(@c,2)+']','['+RIGHT(@c,1)+']',"
       "'['+SUBSTRING(@c,2,5)+']'",
       "NULL\n[a ]\t[ ]\t[  ]\n"},
      {"SELECT 1 WHERE 'a  '='a' SELECT 2 WHERE '  a'='a' SELECT 3 WHERE 'A'='a'", "1\n3\n"},
      {"SELECT '['+CONVERT(CHAR(5),'ab')+']','['+CONVERT(VARCHAR(1),'ab')+']','['+CAST('ab' AS CHAR(3))+']'",
       "[ab   ]\t[a]\t[ab ]\n"},
      {"SELECT LEN(CONVERT(VARCHAR,'123456789012345678901234567890ABC')),LEN(CAST('"
       "123456789012345678901234567890ABC' AS CHAR))",
       "30\t30\n"},
      {"CREATE TABLE W (A VARCHAR(3),B CHAR(3),C NVARCHAR(3),T TEXT)", ""},
      {"INSERT INTO W(A) VALUES('abc   ') SELECT DATALENGTH(A) FROM W", "3\n"},
      {"INSERT INTO W(A) VALUES('abcd')", "!8152\n"},
      {"INSERT INTO W(B) VALUES('abcd')", "!8152\n"},
      {"INSERT INTO W(C) VALUES(N'abcd')", "!8152\n"},
      {"UPDATE W SET B='abcd'", "!8152\n"},
      {"INSERT INTO W(A) SELECT 'ab' UNION ALL SELECT 'abcd'", "!8152\n"},
      {"SELECT COUNT(*) FROM W", "1\n"},
      {"INSERT INTO W(A,B,C) VALUES('д','ł',N'Ωł') SELECT A,B,C FROM W WHERE B IS NOT NULL", "?\tl\tΩł\n"},
      {"INSERT INTO W(T) VALUES(REPLICATE('x',5000)) SELECT DATALENGTH(T) FROM W WHERE T LIKE 'xx%'",
       "5000\n"},
  });
}

TEST_F(DialectTest, TextAndNumbers) {
  values({
      {"'5'+3", "8"},
      {"'5'+'3'", "53"},
      {"' 12 '+0", "12"},
      {"''+0", "0"},
      {"CONVERT(VARCHAR,12.50)", "12.50"},
      {"CONVERT(VARCHAR(20),CONVERT(FLOAT,1234567.0))", "1.23457e+006"},
      {"CONVERT(VARCHAR(20),CONVERT(FLOAT,0.1))", "0.1"},
      {"CONVERT(VARCHAR(20),CONVERT(MONEY,1234.5678))", "1234.57"},
      {"CONVERT(VARCHAR(20),CONVERT(MONEY,1234.5678),1)", "1,234.57"},
      {"CONVERT(VARCHAR(20),CONVERT(MONEY,1234.5678),2)", "1234.5678"},
      {"CONVERT(VARCHAR(2),12345)", "*"},
      {"CONVERT(CHAR(5),12)+'|'", "12   |"},
      {"CONVERT(INT,2.9),CONVERT(INT,-2.9),CONVERT(INT,CONVERT(FLOAT,2.9))", "2\t-2\t2"},
      {"CONVERT(BIT,5),CONVERT(BIT,0),CONVERT(BIT,-1),CONVERT(BIT,'true'),CONVERT(BIT,'0')", "1\t0\t1\t1\t0"},
      {"CONVERT(DECIMAL(10,2),2.345),CONVERT(DECIMAL,2.5),CONVERT(NUMERIC(5,1),'7.25')", "2.35\t3\t7.3"},
      {"CONVERT(MONEY,'1,234.5')", "1234.50"},
      {"CONVERT(SMALLINT,'-7'),CONVERT(TINYINT,255),CONVERT(BIGINT,'9000000000')", "-7\t255\t9000000000"},
      {"ISNULL(NULL,'x'),ISNULL(CONVERT(CHAR(2),NULL),'xyz'),ISNULL(1,2.5)", "x\txy\t1"},
      {"COALESCE(NULL,NULL,3),NULLIF(1,1),NULLIF(1,2)", "3\tNULL\t1"},
      {"CASE WHEN 1=1 THEN 1 ELSE 2.50 END", "1.00"},
      {"CONVERT(VARCHAR,CONVERT(MONEY,1.2345)*CONVERT(MONEY,1.2345),2),CONVERT(MONEY,10)*1.5",
       "1.5240\t15.00000"},
      {"ROUND(CONVERT(MONEY,2.5555),2),ROUND(CONVERT(MONEY,-2.5),0),ROUND(7,-1)", "2.56\t-3.00\t10"},
      {"'['+CASE WHEN 1=1 THEN CONVERT(CHAR(3),'a') ELSE 'x' END+']'", "[a  ]"},
      {"CONVERT(VARCHAR,CONVERT(MONEY,10)/3,2),CONVERT(MONEY,1.005)*2", "3.3333\t2.01"},
      {"1 WHERE 1=CONVERT(BIT,'1')", "1"},
  });
}

TEST_F(DialectTest, TextFunctions) {
  values({
      {"LEN('ab  '),LEN('  ab'),LEN(''),LEN(NULL)", "2\t4\t0\tNULL"},
      {"LEFT('abc',2),LEFT('abc',9),LEFT('abc',0)", "ab\tabc\t"},
      {"RIGHT('abc',2),RIGHT('abc',9)", "bc\tabc"},
      {"SUBSTRING('abcdef',2,3),SUBSTRING('abc',0,2),SUBSTRING('abc',-1,3),SUBSTRING('abc',9,1)",
       "bcd\ta\ta\t"},
      {"'['+LTRIM('  a ')+']','['+RTRIM(' a  ')+']'", "[a ]\t[ a]"},
      {"UPPER('iıçşğüö'),LOWER('İIÇŞĞÜÖ')", "İIÇŞĞÜÖ\tiıçşğüö"},
      {"REPLACE('aXbxc','x','-'),REPLACE('abc','','-'),REPLACE('iİ','İ','')", "a-b-c\tabc\t"},
      {"REPLICATE('ab',3),REPLICATE('x',0),REPLICATE('x',-1)", "ababab\t\tNULL"},
      {"'['+SPACE(3)+']'", "[   ]"},
      {"STUFF('abcdef',2,3,'X'),STUFF('abc',0,1,'X'),STUFF('abc',9,1,'X'),STUFF('abc',1,2,NULL)",
       "aXef\tNULL\tNULL\tc"},
      {"REVERSE('abcç')", "çcba"},
      {"STR(12.345,8,2),STR(12.5),STR(123456,3)", "   12.35\t        13\t***"},
      {"CHAR(65),CHAR(254),CHAR(300),ASCII('A'),ASCII('ş'),ASCII('')", "A\tş\tNULL\t65\t254\tNULL"},
      {"CHARINDEX('B','abcb'),CHARINDEX('b','abcb',3),CHARINDEX('z','abc'),CHARINDEX('I','kızıl')",
       "2\t4\t0\t2"},
      {"PATINDEX('%.%','120.01'),PATINDEX('%[0-9]%','ab3'),PATINDEX('b%','abc'),PATINDEX('%I%','sır')",
       "4\t3\t0\t2"},
  });
}

TEST_F(DialectTest, NumberFunctions) {
  values({
      {"ABS(-5),ABS(-2.5),SIGN(-3),SIGN(0)", "5\t2.5\t-1\t0"},
      {"ROUND(2.345,2),ROUND(1250,-2),ROUND(2.567,1,1),ROUND(-2.5,0)", "2.350\t1300\t2.500\t-3.0"},
      {"CEILING(9.9),FLOOR(-9.99),CEILING(.5),FLOOR(-0.5),SIGN(-0.5)", "10\t-10\t1\t-1\t-1.0"},
      {"FLOOR(2.7),FLOOR(-2.1),CEILING(2.1),CEILING(-2.9)", "2\t-3\t3\t-2"},
      {"POWER(2,10),POWER(2.0,3),SQRT(16)", "1024\t8.0\t4"},
      {"ISNUMERIC('12'),ISNUMERIC('1e5'),ISNUMERIC('x'),ISNUMERIC(''),ISNUMERIC('-'),ISNUMERIC('1,5')",
       "1\t1\t0\t0\t1\t1"},
      {"ISDATE('02/30/2012'),ISDATE('02/29/2012'),ISDATE('x'),ISDATE('20121231')", "0\t1\t0\t1"},
  });
}

TEST_F(DialectTest, DatesAreRead) {
  const std::string same = "CASE WHEN CONVERT(DATETIME,'";
  for (const char* text : {"03/14/2012", "3/14/2012", "3-14-12", "03.14.2012", "20120314", "2012-03-14",
                           "2012/03/14", "2012-03-14T00:00:00", "03/14/2012 00:00", "20120314 00:00:00.000",
                           "Mar 14 2012", "120314", "03/14/2012 12:00 AM", "14 March 2012"})
    EXPECT_EQ(run("SELECT " + same + text + "')='20120314' THEN 'e' ELSE 'h' END"), "e\n") << text << message;
  values({
      {"CONVERT(CHAR(19),CONVERT(DATETIME,'14:05'),120)", "1900-01-01 14:05:00"},
      {"CONVERT(CHAR(19),CONVERT(DATETIME,'03/14/2012 2:05 PM'),120)", "2012-03-14 14:05:00"},
      {"CONVERT(CHAR(19),CONVERT(DATETIME,'03/14/2012 2:05:07PM'),120)", "2012-03-14 14:05:07"},
      {"CONVERT(CHAR(10),CONVERT(DATETIME,'1/1/49'),120),CONVERT(CHAR(10),CONVERT(DATETIME,'1/1/50'),120)",
       "2049-01-01\t1950-01-01"},
      {"CONVERT(CHAR(10),CONVERT(DATETIME,''),120),CONVERT(CHAR(10),CONVERT(DATETIME,0),120)",
       "1900-01-01\t1900-01-01"},
      {"CONVERT(CHAR(10),CONVERT(DATETIME,'14/03/"
       "2012',103),120),CONVERT(CHAR(10),CONVERT(DATETIME,'14.03.2012',"
       "104),120)",
       "2012-03-14\t2012-03-14"},
      {"CONVERT(CHAR(23),CONVERT(DATETIME,'20120314 10:00:00.005'),121)", "2012-03-14 10:00:00.007"},
      {"CONVERT(CHAR(16),CONVERT(SMALLDATETIME,'20120314 10:00:31'),120)", "2012-03-14 10:01"},
      {"CONVERT(CHAR(10),CONVERT(DATETIME,'20120229')+1,120),CONVERT(CHAR(10),CONVERT(DATETIME,'20120301')-1,"
       "120)",
       "2012-03-01\t2012-02-29"},
      {"CONVERT(INT,CONVERT(DATETIME,'19000111'))", "10"},
      {"CONVERT(VARCHAR(30),CONVERT(DATETIME,'20120304')),CONVERT(VARCHAR(30),CONVERT(DATETIME,'20120304 "
       "14:05:06.7'),109)",
       "Mar  4 2012 12:00AM\tMar  4 2012  2:05:06:700PM"},
  });
}

TEST_F(DialectTest, DateFunctions) {
  values({
      {"DATEDIFF(d,'20120228','20120301'),DATEDIFF(m,'20120131','20120201'),DATEDIFF(yy,'20111231','20120101'"
       ")",
       "2\t1\t1"},
      {"DATEDIFF(hh,'10:59','11:00'),DATEDIFF(n,'10:00','11:30'),DATEDIFF(ss,'10:00','09:59')", "1\t90\t-60"},
      {"DATEDIFF(wk,'20120303','20120304'),DATEDIFF(qq,'20120331','20120401'),DATEDIFF(dd,NULL,'20120101')",
       "1\t1\tNULL"},
      {"CONVERT(CHAR(10),DATEADD(m,1,'20120131'),120),CONVERT(CHAR(10),DATEADD(yy,1,'20120229'),120)",
       "2012-02-29\t2013-02-28"},
      {"CONVERT(CHAR(10),DATEADD(d,-1,'20120301'),120),CONVERT(CHAR(19),DATEADD(mi,90,'20120301'),120)",
       "2012-02-29\t2012-03-01 01:30:00"},
      {"DATEADD(d,NULL,GETDATE()),DATEADD(d,1,NULL)", "NULL\tNULL"},
      {"DATEPART(yy,'20120314'),DATEPART(mm,'20120314'),DATEPART(dy,'20120314'),DATEPART(dw,'20120314')",
       "2012\t3\t74\t4"},
      {"DATEPART(hh,'14:05:06'),DATEPART(mi,'14:05:06'),DATEPART(ss,'14:05:06'),DATEPART(qq,'20120701')",
       "14\t5\t6\t3"},
      {"DATENAME(mm,'20120314'),DATENAME(dw,'20120314'),DATENAME(yy,'20120314')", "March\tWednesday\t2012"},
      {"DAY('20120314'),MONTH('20120314'),YEAR('20120314')", "14\t3\t2012"},
      {"CASE WHEN ABS(DATEDIFF(ss,GETDATE(),GETDATE()))<2 THEN 'e' END", "e"},
  });
}

TEST_F(DialectTest, NamesAndIdentityOfTheServer) {
  values({
      {"DB_NAME(),DB_ID('yok')", "FIRMA\tNULL"},
      {"USER_NAME(),SUSER_NAME()", "dbo\tsa"},
      {"CASE WHEN @@VERSION LIKE 'Microsoft SQL Server%' OR LEN(@@VERSION)>0 THEN 'e' END", "e"},
      {"CASE WHEN LEN(@@SERVERNAME)>0 THEN 'e' END", "e"},
      {"LEN(NEWID())", "36"},
      {"@@TRANCOUNT,@@ERROR", "0\t0"},
      {"OBJECT_ID('YOK')", "NULL"},
  });
}

}  // namespace
}  // namespace engine::test
