#include <gtest/gtest.h>

#include "engine/language/parser.h"
#include "engine/language/tree_text.h"

namespace engine::test {
namespace {

struct Case {
  const char* text;
  const char* tree;
};

TEST(ParserExpression, BindsAsSqlServerDoes) {
  const Case cases[] = {
      {"1+2*3", "(1 + (2 * 3))"},
      {"10-4-3", "((10 - 4) - 3)"},
      {"(1+2)*3", "((1 + 2) * 3)"},
      {"8/-2*2", "(8 / (-(2 * 2)))"},
      {"~1+2", "((~1) + 2)"},
      {"1&2|3^4+5", "((((1 & 2) | 3) ^ 4) + 5)"},
      {"- -1", "(-(-1))"},
      {"'a''b'+N'ş'", "('a'b' + N'ş')"},
      {"'x' COLLATE Turkish_CI_AS+'y'", "(('x' COLLATE Turkish_CI_AS) + 'y')"},
      {"3000000000", "d3000000000"},
      {"1e3+.5+$2.5+0xAbc", "(((f1e3 + d.5) + $2.5) + 0x\x0A\xBC)"},
      {"SK. O_Kod", "SK.O_Kod"},
      {"db..t.c", "db..t.c"},
      {"[a b].\"c d\"", "a b.c d"},
      {"Left(@k,@n)", "LEFT(@k, @n)"},
      {"char(65)", "char(65)"},
      {"COUNT(DISTINCT x)+COUNT(*)", "(COUNT(DISTINCT x) + COUNT(*))"},
      {"DATEDIFF(D,@a,@b)", "DATEDIFF(D, @a, @b)"},
      {"CURRENT_TIMESTAMP", "CURRENT_TIMESTAMP()"},
      {"CONVERT(CHAR,a)", "CONVERT(CHAR(30), a)"},
      {"convert(varchar(10),t,104)", "CONVERT(VARCHAR(10), t, 104)"},
      {"CAST(a AS DECIMAL(10,2))", "CAST(a AS DECIMAL(10,2))"},
      {"CASE a WHEN 1 THEN 'x' ELSE NULL END", "CASE(a WHEN 1 THEN 'x' ELSE NULL)"},
      {"case when a>1 or not b=2 then 1 end", "CASE( WHEN ((a > 1) OR (NOT (b = 2))) THEN 1)"},
      {"(SELECT 1)", "{SELECT 1}"},
      {"((SELECT 1)+2)", "({SELECT 1} + 2)"},
      {"((SELECT 1) UNION (SELECT 2))", "{SELECT 1 UNION SELECT 2}"},
      {"@@ROWCOUNT", "@@ROWCOUNT"},
  };
  for (const Case& c : cases) EXPECT_EQ(show(parseExpression(c.text)), c.tree) << c.text;
}

TEST(ParserExpression, ReadsConditions) {
  const Case cases[] = {
      {"a=1 OR b=2 AND c=3", "((a = 1) OR ((b = 2) AND (c = 3)))"},
      {"(a=1 OR b=2) AND (c+1)*2>d", "(((a = 1) OR (b = 2)) AND (((c + 1) * 2) > d))"},
      {"NOT a=1 AND b=2", "((NOT (a = 1)) AND (b = 2))"},
      {"NOT x IS NULL", "(NOT (x IS NULL))"},
      {"a< >1 AND b> =2 AND c!=3", "(((a <> 1) AND (b >= 2)) AND (c <> 3))"},
      {"a NOT IN (1,2)", "(a NOT IN [1, 2])"},
      {"a IN(SELECT b FROM t)", "(a IN {SELECT b FROM t})"},
      {"a BETWEEN 1 AND 2 AND b NOT BETWEEN 3 AND 4", "((a BETWEEN 1 AND 2) AND (b NOT BETWEEN 3 AND 4))"},
      {"a LIKE 'x!%' ESCAPE '!'", "(a LIKE 'x!%' ESCAPE '!')"},
      {"NOT Kod =ANY(SELECT Kod FROM t)", "(NOT (Kod = ANY {SELECT Kod FROM t}))"},
      {"a>ALL (SELECT 1) OR a<SOME(SELECT 2)", "((a > ALL {SELECT 1}) OR (a < ANY {SELECT 2}))"},
      {"NOT EXISTS (SELECT * FROM t)", "(NOT EXISTS {SELECT * FROM t})"},
      {"UPDATE(Kod) AND (Tip='Mal'OR Tip='Masraf')", "(UPDATE(Kod) AND ((Tip = 'Mal') OR (Tip = 'Masraf')))"},
      {"((((a)))=((1)))", "(a = 1)"},
  };
  for (const Case& c : cases) {
    Batch batch = parseBatch("IF " + std::string(c.text) + " PRINT 1");
    EXPECT_EQ(show(std::get<IfStatement>(batch.statements.at(0)->node).condition), c.tree) << c.text;
  }
}

TEST(ParserSelect, ReadsWholeStatements) {
  const Case cases[] = {
      {"SELECT * FROM t", "SELECT * FROM t"},
      {"select top 10 percent t.*,d..t.* from t", "SELECT TOP 10% t.*, d..t.* FROM t"},
      {"SELECT DISTINCT TOP (@n) a Ad,b AS 'B C',Tip=c,'x'=d INTO db..y FROM t",
       "SELECT DISTINCT TOP @n a AS Ad, b AS B C, c AS Tip, d AS x INTO db..y FROM t"},
      {"SELECT @a=x,@b+=1 FROM t", "SELECT @a:=x, @b:=(@b + 1) FROM t"},
      {"SELECT COUNT(x) Tahsil_Adedi,0 Value,1as AT", "SELECT COUNT(x) AS Tahsil_Adedi, 0 AS Value, 1 AS AT"},
      {"SELECT 1 FROM a,dbo.b x (NOLOCK),db..c WITH (NOLOCK) WHERE 1=1",
       "SELECT 1 FROM a, dbo.b x, db..c WHERE (1 = 1)"},
      {"SELECT 1 FROM a LEFT OUTER JOIN b ON (a.x=b.x) JOIN c ON 1=1 CROSS JOIN d",
       "SELECT 1 FROM (((a LEFT b ON (a.x = b.x)) JOIN c ON (1 = 1)) CROSS d)"},
      {"SELECT 1 FROM a JOIN b FULL JOIN c ON 1=1 ON 2=2",
       "SELECT 1 FROM (a JOIN (b FULL c ON (1 = 1)) ON (2 = 2))"},
      {"SELECT 1 FROM (a RIGHT JOIN b ON 1=1) JOIN (SELECT 1 x) AS d(y) ON 2=2",
       "SELECT 1 FROM ((a RIGHT b ON (1 = 1)) JOIN {SELECT 1 AS x} d(y) ON (2 = 2))"},
      {"SELECT 1 FROM ((SELECT 1 a) x JOIN t ON 1=1)", "SELECT 1 FROM ({SELECT 1 AS a} x JOIN t ON (1 = 1))"},
      {"SELECT 1 FROM ((SELECT 1 a) UNION (SELECT 2)) x", "SELECT 1 FROM {SELECT 1 AS a UNION SELECT 2} x"},
      {"SELECT a FROM t GROUP BY a,b HAVING SUM(c)>0 ORDER BY 1 DESC,a ASC,b",
       "SELECT a FROM t GROUP a, b HAVING (SUM(c) > 0) ORDER 1 DESC, a, b"},
      {"SELECT 1 UNION SELECT 2 UNION ALL SELECT 3 ORDER BY 1",
       "SELECT 1 UNION SELECT 2 UNION ALL SELECT 3 ORDER 1"},
      {"SELECT 1 UNION ALL (SELECT 2 UNION SELECT 3)",
       "SELECT 1 UNION ALL SELECT * FROM {SELECT 2 UNION SELECT 3}"},
      {"(SELECT 1 UNION SELECT 2) UNION ALL SELECT 3", "SELECT 1 UNION SELECT 2 UNION ALL SELECT 3"},
      {"(SELECT TOP 1 a FROM t ORDER BY a) ORDER BY 1",
       "SELECT * FROM {SELECT TOP 1 a FROM t ORDER a} ORDER 1"},
      {"SELECT Ağırlık,[İş Yeri] FROM ŞUBE OPTION (FAST 1)", "SELECT Ağırlık, İş Yeri FROM ŞUBE"},
      {"SELECT\ta --x\n/* y /* z */ */FROM t;", "SELECT a FROM t"},
  };
  for (const Case& c : cases) {
    Batch batch = parseBatch(c.text);
    ASSERT_EQ(batch.statements.size(), 1u) << c.text;
    EXPECT_EQ(show(*std::get<SelectPtr>(batch.statements[0]->node)), c.tree);
  }
}

}  // namespace
}  // namespace engine::test
