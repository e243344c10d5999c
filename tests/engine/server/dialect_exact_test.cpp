// Arithmetic to the last digit where money was once wrong: text beside decimals, and more digits than fit.
#include "engine/server/dialect.h"

namespace engine::test {
namespace {

TEST_F(DialectTest, TextBesideADecimalIsWhatItsPartnerIs) {
  for (const std::string type : {"VARCHAR(10)", "CHAR(10)", "NVARCHAR(10)", "NCHAR(10)"}) {
    follow({
        {"CREATE TABLE P (V " + type + ", D DECIMAL(5,2)) INSERT INTO P VALUES ('7.25', 2)", ""},
        {"SELECT V*1.0, 1.0*V, V*D, D*V, V/D, D/V, V%D, D%V FROM P",
         "7.30\t7.30\t14.5000\t14.5000\t3.62500000\t0.27586206\t1.25\t2.00\n"},
        {"SELECT V+D, D+V, V-D, D-V, -D*V FROM P", "9.25\t9.25\t5.25\t-5.25\t-14.5000\n"},
        {"SELECT SUM(V*D), AVG(D*V), MAX(V*D) FROM P WHERE V*D=14.5 AND D*V<14.6",
         "14.5000\t14.500000\t14.5000\n"},
        {"UPDATE P SET D=V*D SELECT D FROM P", "14.50\n"},
        {"SELECT V*CONVERT(DECIMAL(8,0),2), V*CONVERT(DECIMAL(38,4),2), V*CONVERT(MONEY,2) FROM P",
         "14\t14.500000\t14.50\n"},
        // The text must fit its partner, whatever the result could hold.
        {"SELECT '1234.5'+CONVERT(DECIMAL(5,2),1)", "!8115\n"},
        {"SELECT V+D+V+D+V+D+V+D+V+D+V+D+V+D+V+D+V+D+V FROM P", "203.00\n"},
        {"DROP TABLE P", ""},
    });
  }
}

// Wherever else a text meets a number: it is never read with the scale of the result.
TEST_F(DialectTest, TextBesideNumbersOutsideOfPlainOperators) {
  follow({
      {"CREATE TABLE P (K INT, V VARCHAR(10), D DECIMAL(5,2), M MONEY, F FLOAT) "
       "INSERT INTO P VALUES (1,'7.25',2,3,0.5)",
       ""},
      {"SELECT V*M, M/V, V*F, V*K FROM P", "!245\n"},
      {"SELECT V*M, M/V, V*F, V-M FROM P", "21.75\t0.41\t3.625\t4.25\n"},
      {"SELECT CASE WHEN V>D*3.62 THEN D*V ELSE V END, COALESCE(NULL,V,D), ISNULL(D*V,V), NULLIF(V,7.25) "
       "FROM P",
       "14.5000\t7.25\t14.5000\tNULL\n"},
      {"DECLARE @v VARCHAR(9), @d DECIMAL(5,2), @e DECIMAL(9,4) SELECT @v='7.25', @d=2 SET @e=@v*@d SET "
       "@d*=@v SELECT @e, @d, @v*@d, -(@v*1.0)",
       "14.5000\t14.50\t105.1250\t-7.30\n"},
      {"UPDATE P SET D*=V, M=M*V SELECT D, M FROM P", "14.50\t21.75\n"},
      {"UPDATE P SET D=D/V+V%D-V SELECT D FROM P", "2.00\n"},
      {"SELECT ROUND(V,1), ABS('-7.25'), POWER('1.5',2), STR(V,6,2), FLOOR(V), SIGN('-0.5') FROM P",
       "7.3\t7.25\t2.25\t  7.25\t7\t-1\n"},
      {"SELECT K FROM P WHERE D*V IN ('14.5',0) AND V BETWEEN 7.2 AND 7.30 AND V*D=ALL(SELECT '14.5')",
       "1\n"},
      {"SELECT V+K*1.00 FROM P UNION ALL SELECT V FROM P ORDER BY 1", "7.25\n8.25\n"},
      {"SELECT -V FROM P", "!8117\n"},
      {"CREATE TABLE Q (D DECIMAL(9,3) DEFAULT '1.5'*2.0) INSERT INTO Q DEFAULT VALUES SELECT D FROM Q",
       "3.000\n"},
  });
}

TEST_F(DialectTest, ProductsOfManyDigitsKeepTheirPoint) {
  follow({
      {"CREATE TABLE T (D DECIMAL(9,2), E DECIMAL(9,2)) INSERT INTO T VALUES (1,2) INSERT INTO T VALUES "
       "(3,6)",
       ""},
      {"SELECT (D/(SELECT SUM(D) FROM T))*(E/(SELECT SUM(E) FROM T)) FROM T",
       "0.0625000000000000000\n0.5625000000000000000\n"},
  });
  values({
      {"CONVERT(DECIMAL(38,22),0.5)*CONVERT(DECIMAL(38,22),0.5)", "0.250000"},
      {"CONVERT(DECIMAL(38,22),0.5)*CONVERT(DECIMAL(38,23),0.5)", "0.250000"},
      {"CONVERT(DECIMAL(38,30),2)/3*CONVERT(DECIMAL(38,30),1)", "0.666666666666666666667"},
      {"CONVERT(DECIMAL(38,30),1.5)*CONVERT(DECIMAL(38,30),1.5)", "2.250000000000000000000"},
      {"CONVERT(DECIMAL(38,38),0.1)*CONVERT(DECIMAL(38,38),0.1)", "0.0100000000000000000000000000000000000"},
      {"1.5/CAST(7 AS INT), 1.5/7", "0.214285714285\t0.214285"},
      {"CONVERT(DECIMAL(38,0),12345)/CONVERT(DECIMAL(38,38),0.5)", "24690.000000"},
      {"CONVERT(DECIMAL(38,0),7)%CONVERT(DECIMAL(38,38),0.4)", "0.20000000000000000000000000000000000000"},
      {"CEILING(CONVERT(DECIMAL(38,37),9.1)), FLOOR(CONVERT(DECIMAL(38,37),-9.1))", "10\t-10"},
      {"CONVERT(DECIMAL(38,28),'1234567890.12345678901234567890123456789')",
       "1234567890.1234567890123456789012345679"},
      {"CONVERT(FLOAT,CONVERT(MONEY,'-70618215436458.2108'))+0e0-CONVERT(FLOAT,'-70618215436458.2108')", "0"},
  });
  follow(
      {{"CREATE TABLE B (D DECIMAL(38,0)) INSERT INTO B VALUES (99999999999999999999999999999999) "
        "INSERT INTO B VALUES (99999999999999999999999999999999) SELECT AVG(D) FROM B",
        "99999999999999999999999999999999.000000\n"}});
  // The sum is that of all rows, whatever their order made of it on the way.
  const std::string most(38, '9');
  const auto row = [&](const std::string& sign) { return "INSERT INTO S VALUES ('" + sign + most + "') "; };
  follow({{"CREATE TABLE S (D DECIMAL(38,0)) " + row("") + row("") + row("-") + row("-") + row("-") +
               "SELECT SUM(D) FROM S SELECT SUM(D) FROM S WHERE D>0",
           "-" + most + "\n!8115\n"}});
}

// No DECIMAL holds all digits of both sides; they are compared without losing one.
TEST_F(DialectTest, ComparisonsBeyondThirtyEightDigits) {
  follow({
      {"CREATE TABLE T (K INT, D DECIMAL(18,2), W DECIMAL(38,38), M MONEY) INSERT INTO T VALUES "
       "(1, 0.01, 0.00000000000000000000000000000000000001, 0.0149)",
       ""},
      {"SELECT K FROM T GROUP BY K HAVING SUM(D)>0.005 AND 0.015>SUM(D) AND SUM(D)<>0.0149 AND SUM(D)<MAX(M)",
       "1\n"},
      {"SELECT K FROM T WHERE W<>0 AND W>0 AND NOT W BETWEEN 0 AND 0 AND W NOT IN (0,1) AND 0 NOT IN (W) AND "
       "W<>ALL(SELECT 0) AND NOT W=ANY(SELECT 0) AND W>ANY(SELECT 0) AND W NOT IN (SELECT K-1 FROM T)",
       "1\n"},
      {"SELECT CASE W WHEN 0 THEN 'a' WHEN -W THEN 'b' ELSE 'c' END, CASE WHEN NULLIF(W,0) IS NULL THEN 'n' "
       "ELSE 'w' END, CASE SUM(D) WHEN 0.005 THEN 'x' WHEN 0.0100 THEN 'y' END FROM T GROUP BY W",
       "c\tw\ty\n"},
      {"SELECT t.K FROM T t JOIN (SELECT SUM(D) AS S FROM T) s ON s.S=t.D AND s.S<t.M AND s.S>t.W", "1\n"},
  });
  values({
      {"CASE WHEN CONVERT(DECIMAL(38,0),'-99999999999999999999999999999999999999')<CONVERT(DECIMAL(38,38),"
       "'-0.99999999999999999999999999999999999999') THEN 1 ELSE 0 END",
       "1"},
      {"CASE WHEN CONVERT(DECIMAL(38,0),5)=CONVERT(DECIMAL(38,37),5) AND CONVERT(DECIMAL(38,37),-5)=-5 THEN "
       "1 ELSE 0 END",
       "1"},
      {"CASE WHEN CONVERT(DECIMAL(38,37),-5.1)<-5 AND CONVERT(DECIMAL(38,37),-5.1)>-6 AND "
       "CONVERT(DECIMAL(38,37),-5.1)<CONVERT(BIGINT,0) THEN 1 ELSE 0 END",
       "1"},
  });
}

// Decided: '' is zero for every number but DECIMAL.
TEST_F(DialectTest, EmptyTextIsNoDecimal) {
  values({
      {"CAST('' AS DECIMAL)", "!8114"},
      {"CAST('  ' AS NUMERIC(9,2))", "!8114"},
      {"CONVERT(DECIMAL(38,4),N'')", "!8114"},
      {"''*1.5", "!8114"},
      {"CAST('' AS INT), CAST('' AS MONEY), CAST('' AS FLOAT), CAST('' AS BIT), CAST(' ' AS BIGINT)",
       "0\t0.00\t0\t0\t0"},
  });
  follow({
      {"CREATE TABLE T (D DECIMAL(9,2), I INT) INSERT INTO T VALUES ('', 1)", "!8114\n"},
      {"INSERT INTO T VALUES (1, '') UPDATE T SET D=''", "!8114\n"},
      {"SELECT D, I FROM T WHERE D='1'", "1.00\t0\n"},
  });
}

}  // namespace
}  // namespace engine::test
