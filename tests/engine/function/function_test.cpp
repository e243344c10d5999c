#include <set>

#include "engine/function/functions.h"
#include "engine/sql_fixture.h"

namespace engine {
namespace {

using namespace testing;

class Functions : public SqlFixture {
 protected:
  BoundFunction bindCall(const char* name, const std::vector<Operand>& operands, const char* part = nullptr) {
    const FunctionInfo* info = findFunction(name);
    if (!info) throw std::runtime_error(std::string("no function ") + name);
    std::vector<FunctionArgument> arguments;
    if (part) arguments.push_back({{}, {}, part});
    for (const Operand& operand : operands) {
      FunctionArgument argument{operand.type, {}, {}};
      if (info->structural >> arguments.size() & 1) argument.constant = operand.value;
      arguments.push_back(argument);
    }
    return bindFunction(*info, arguments);
  }

  std::string sqlOf(const BoundFunction& function, std::size_t operands, bool part) {
    std::vector<std::string> arguments(part ? 1 : 0);
    for (std::size_t i = 1; i <= operands; ++i) arguments.push_back('?' + std::to_string(i));
    return functionSql(function, arguments);
  }

  // The value as text, or the number of the error.
  std::string call(const char* name, const std::vector<Operand>& operands, const char* part = nullptr) {
    std::string outcome;
    const int error = errorOf([&] {
      const BoundFunction function = bindCall(name, operands, part);
      outcome = shown(evaluate(sqlOf(function, operands.size(), part), operands), function.result);
    });
    return error ? std::to_string(error) : outcome;
  }
};

struct FunctionCase {
  const char* name;
  std::vector<Operand> operands;
  const char* type;
  const char* value;
};

TEST_F(Functions, OfText) {
  const std::vector<FunctionCase> cases = {
      {"LEN", {text("ağaç  ")}, "INT", "4"},
      {"len", {fixed(10, " ab")}, "INT", "3"},
      {"LEN", {number(1234)}, "INT", "4"},
      {"LEN", {null()}, "INT", "NULL"},
      {"DATALENGTH", {fixed(10, "ab")}, "INT", "10"},
      {"DATALENGTH", {text("ağaç  ")}, "INT", "6"},
      {"DATALENGTH", {lit(LiteralKind::NText, "ağ")}, "INT", "4"},
      {"DATALENGTH", {number(5)}, "INT", "4"},
      {"DATALENGTH", {as(decimal(20, 2), "5")}, "INT", "13"},
      {"LEFT", {text("şubat"), number(2)}, "VARCHAR(2)", "şu"},
      {"LEFT", {fixed(5, "ab"), number(4)}, "VARCHAR(4)", "ab  "},
      {"LEFT", {text("abc"), number(-1)}, "VARCHAR(1)", "537"},
      {"RIGHT", {text("şubat"), number(9)}, "VARCHAR(5)", "şubat"},
      {"RIGHT", {fixed(5, "abcd"), number(2)}, "VARCHAR(2)", "d "},
      {"RIGHT", {number(1234), number(2)}, "VARCHAR(2)", "34"},
      {"SUBSTRING", {text("şubat"), number(2), number(3)}, "VARCHAR(3)", "uba"},
      {"SUBSTRING", {text("şubat"), number(-1), number(4)}, "VARCHAR(4)", "şu"},
      {"SUBSTRING", {text("şubat"), number(9), number(4)}, "VARCHAR(4)", ""},
      {"SUBSTRING", {text("şubat"), number(1), number(-4)}, "VARCHAR(1)", "537"},
      {"LTRIM", {text("  a ")}, "VARCHAR(4)", "a "},
      {"RTRIM", {text("  a ")}, "VARCHAR(4)", "  a"},
      {"RTRIM", {fixed(9, "a")}, "VARCHAR(9)", "a"},
      {"UPPER", {text("ırmak istif")}, "VARCHAR(11)", "IRMAK İSTİF"},
      {"LOWER", {text("IĞDIR İL")}, "VARCHAR(8)", "ığdır il"},
      {"REPLACE", {text("Kırmızı"), text("I"), text("")}, "VARCHAR(8000)", "Krmz"},
      {"REPLICATE", {text("ab"), number(3)}, "VARCHAR(6)", "ababab"},
      {"REPLICATE", {fixed(3, "a"), number(2)}, "VARCHAR(6)", "a  a  "},
      {"REPLICATE", {text("a"), number(-1)}, "VARCHAR(1)", "NULL"},
      {"SPACE", {number(3)}, "VARCHAR(3)", "   "},
      {"STUFF", {text("abcdef"), number(2), number(3), text("ijk")}, "VARCHAR(9)", "aijkef"},
      {"STUFF", {text("abc"), number(4), number(1), text("x")}, "VARCHAR(4)", "NULL"},
      {"REVERSE", {fixed(4, "şa")}, "VARCHAR(4)", "  aş"},
      {"STR", {floating(123.45), number(6), number(1)}, "VARCHAR(6)", " 123.5"},
      {"STR", {floating(123.45), number(2), number(2)}, "VARCHAR(2)", "**"},
      {"STR", {floating(123.456), number(6), number(4)}, "VARCHAR(6)", "123.46"},
      {"STR", {number(7)}, "VARCHAR(10)", "         7"},
      {"CHAR", {number(253)}, "CHAR(1)", "ı"},
      {"CHAR", {number(256)}, "CHAR(1)", "NULL"},
      {"NCHAR", {number(351)}, "NCHAR(1)", "ş"},
      {"ASCII", {text("İl")}, "INT", "221"},
      {"UNICODE", {text("İl")}, "INT", "304"},
      {"CHARINDEX", {text("I"), text("kırım")}, "INT", "2"},
      {"CHARINDEX", {text("ı"), text("kırım"), number(3)}, "INT", "4"},
      {"CHARINDEX", {text("x"), text("kırım")}, "INT", "0"},
      {"PATINDEX", {text("%[0-9]%"), text("şube 12")}, "INT", "6"},
      {"QUOTENAME", {text("a]b")}, "NVARCHAR(258)", "[a]]b]"},
      {"ISNULL", {fixed(3, "ab"), text("uzun metin")}, "CHAR(3)", "ab"},
      {"ISNULL", {{varChar(3), {}}, text("uzun metin")}, "VARCHAR(3)", "uzu"},
      {"ISNULL", {null(), number(1)}, "INT", "1"},
      {"ISNULL", {{{TypeId::Money}, {}}, number(0)}, "MONEY", "0.00"},
      {"COALESCE", {null(), number(1), exact("2.5")}, "DECIMAL(11,1)", "1.0"},
      {"NULLIF", {text("ısı"), text("ISI ")}, "VARCHAR(3)", "NULL"},
      {"NULLIF", {number(1), exact("1.5")}, "INT", "1"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(call(c.name, c.operands), c.value) << c.name;
    EXPECT_EQ(describe(bindCall(c.name, c.operands).result), c.type) << c.name;
  }
}

TEST_F(Functions, OfNumbers) {
  const std::vector<FunctionCase> cases = {
      {"ABS", {number(-5)}, "INT", "5"},
      {"ABS", {as({TypeId::Int}, "-2147483648")}, "INT", "8115"},
      {"ABS", {money("-1.5")}, "MONEY", "1.50"},
      {"ABS", {text("-2.5")}, "FLOAT", "2.5"},
      {"ROUND", {number(1255), number(-1)}, "INT", "1260"},
      {"ROUND", {number(-1255), number(-1)}, "INT", "-1260"},
      {"ROUND", {number(1255), number(-1), number(1)}, "INT", "1250"},
      {"ROUND", {number(1255), number(-9)}, "INT", "0"},
      {"ROUND", {money("1.2345"), number(2)}, "MONEY", "1.23"},
      {"ROUND", {exact("748.58"), number(-1)}, "DECIMAL(5,2)", "750.00"},
      {"ROUND", {exact("9.9"), number(0)}, "DECIMAL(2,1)", "8115"},
      {"ROUND", {floating(150.75), number(0)}, "FLOAT", "151"},
      {"ROUND", {floating(-2.5), number(0)}, "FLOAT", "-3"},
      {"ROUND", {floating(150.75), number(0), number(1)}, "FLOAT", "150"},
      {"FLOOR", {as(decimal(2, 1), "-1.5")}, "DECIMAL(2,0)", "-2"},
      {"CEILING", {exact("1.5")}, "DECIMAL(2,0)", "2"},
      {"FLOOR", {money("-1.5")}, "MONEY", "-2.00"},
      {"CEILING", {floating(-1.5)}, "FLOAT", "-1"},
      {"FLOOR", {number(7)}, "INT", "7"},
      {"SIGN", {money("-3")}, "MONEY", "-1.00"},
      {"SIGN", {floating(0)}, "FLOAT", "0"},
      {"POWER", {number(2), number(10)}, "INT", "1024"},
      {"POWER", {number(2), number(31)}, "INT", "232"},
      {"POWER", {floating(2), floating(0.5)}, "FLOAT", "1.41421"},
      {"SQRT", {number(16)}, "FLOAT", "4"},
      {"SQRT", {number(-1)}, "FLOAT", "3623"},
      {"LOG", {number(0)}, "FLOAT", "3623"},
      {"PI", {}, "FLOAT", "3.14159"},
      {"ISNUMERIC", {text(" $1,5 ")}, "INT", "1"},
      {"ISNUMERIC", {text("1e5")}, "INT", "1"},
      {"ISNUMERIC", {text("abc")}, "INT", "0"},
      {"ISNUMERIC", {text("")}, "INT", "0"},
      {"ISNUMERIC", {null()}, "INT", "0"},
      {"ISNUMERIC", {number(1)}, "INT", "1"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(call(c.name, c.operands), c.value) << c.name;
    EXPECT_EQ(describe(bindCall(c.name, c.operands).result), c.type) << c.name;
  }
}

struct DateCase {
  const char* name;
  const char* part;
  std::vector<Operand> operands;
  const char* value;
};

TEST_F(Functions, OfDates) {
  const std::vector<DateCase> cases = {
      {"DATEDIFF", "year", {date("2011-12-31 23:59"), date("2012-01-01")}, "1"},
      {"DATEDIFF", "yy", {date("2012-01-01"), date("2012-12-31")}, "0"},
      {"DATEDIFF", "q", {date("2012-03-31"), date("2012-04-01")}, "1"},
      {"DATEDIFF", "mm", {date("2012-03-01"), date("2011-12-31")}, "-3"},
      {"DATEDIFF", "d", {text("20120228"), date("2012-03-01")}, "2"},
      {"DATEDIFF", "dd", {date("2012-01-01 23:59:59"), date("2012-01-02")}, "1"},
      {"DATEDIFF", "wk", {date("2012-01-07"), date("2012-01-08")}, "1"},
      {"DATEDIFF", "hh", {date("1899-12-31 23:59"), date("1900-01-01")}, "1"},
      {"DATEDIFF", "mi", {date("2012-01-01 10:00:59"), date("2012-01-01 10:01:00")}, "1"},
      {"DATEDIFF", "ms", {date("2012-01-01"), date("2012-01-01 00:00:00.007")}, "7"},
      {"DATEDIFF", "ss", {date("1800-01-01"), date("2012-01-01")}, "535"},
      {"DATEADD", "month", {number(1), date("2012-01-31 10:00")}, "Feb 29 2012 10:00AM"},
      {"DATEADD", "month", {number(-12), date("2012-02-29")}, "Feb 28 2011 12:00AM"},
      {"DATEADD", "q", {number(1), date("2012-11-30")}, "Feb 28 2013 12:00AM"},
      {"DATEADD", "yyyy", {number(8000), date("2012-01-01")}, "517"},
      {"DATEADD", "day", {floating(1.9), date("2012-02-28")}, "Feb 29 2012 12:00AM"},
      {"DATEADD", "wk", {number(-1), text("2012-03-01")}, "Feb 23 2012 12:00AM"},
      {"DATEADD", "n", {number(90), date("2012-01-01 23:00")}, "Jan  2 2012 12:30AM"},
      {"DATEPART", "dw", {date("2012-01-01")}, "1"},
      {"DATEPART", "wk", {date("2012-01-01")}, "1"},
      {"DATEPART", "ww", {date("2012-01-08")}, "2"},
      {"DATEPART", "wk", {date("2011-01-01")}, "1"},
      {"DATEPART", "dy", {date("2012-12-31")}, "366"},
      {"DATEPART", "q", {date("2012-12-31")}, "4"},
      {"DATEPART", "ms", {date("2012-12-31 00:00:00.123")}, "123"},
      {"DATENAME", "month", {date("2012-12-31")}, "December"},
      {"DATENAME", "weekday", {date("2012-01-01")}, "Sunday"},
      {"DATENAME", "yyyy", {date("2012-01-01")}, "2012"},
      {"DATEPART", "fortnight", {date("2012-01-01")}, "155"},
      {"YEAR", nullptr, {text("1/2/49")}, "2049"},
      {"MONTH", nullptr, {date("2012-05-31")}, "5"},
      {"DAY", nullptr, {date("1899-12-31")}, "31"},
      {"ISDATE", nullptr, {text("02/30/2012")}, "0"},
      {"ISDATE", nullptr, {text("20120229")}, "1"},
      {"ISDATE", nullptr, {null()}, "0"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(call(c.name, c.operands, c.part), c.value) << c.name << ' ' << (c.part ? c.part : "");
  context_.dateFirst = 1;
  EXPECT_EQ(call("DATEPART", {date("2012-01-01")}, "dw"), "7");
  EXPECT_EQ(call("DATENAME", {date("2012-01-01")}, "dw"), "Sunday");
  context_.dateFormat = DateFormat::Dmy;
  EXPECT_EQ(call("MONTH", {text("03/04/2012")}), "4");
  EXPECT_EQ(call("ISDATE", {text("31/12/2012")}), "1");
  EXPECT_EQ(describe(bindCall("DATEADD", {number(1), as({TypeId::SmallDateTime}, "2012-01-01")}, "d").result),
            "SMALLDATETIME");
}

TEST_F(Functions, ClockAndChance) {
  const std::int64_t before = currentTicks();
  const Datum now = evaluate(bindCall("GETDATE", {}).sql, {});
  EXPECT_GE(now.integer(), before);
  EXPECT_LE(now.integer(), before + ticksPerHour);
  context_.statementTime = 12345;
  EXPECT_EQ(evaluate(bindCall("CURRENT_TIMESTAMP", {}).sql, {}), Datum(12345));
  const std::string newId = bindCall("NEWID", {}).sql;
  std::set<std::string> ids;
  for (const Datum& id : rows("SELECT " + newId + " FROM (SELECT 1 UNION SELECT 2 UNION SELECT 3)", {})) {
    EXPECT_EQ(id.text().size(), 36u);
    ids.insert(id.text());
  }
  EXPECT_EQ(ids.size(), 3u);
  EXPECT_EQ(call("RAND", {number(5)}), call("RAND", {number(5)}));
  EXPECT_NE(call("RAND", {}), call("RAND", {}));
}

struct AggregateCase {
  const char* name;
  std::vector<Operand> rows;
  bool distinct;
  const char* type;
  const char* value;
};

TEST_F(Functions, Aggregates) {
  const Type tinyInt{TypeId::TinyInt}, integer{TypeId::Int}, real{TypeId::Real};
  const std::vector<AggregateCase> cases = {
      {"SUM", {number(1), number(2), {integer, {}}}, false, "INT", "3"},
      {"SUM", {number(2), number(2), number(3)}, true, "INT", "5"},
      {"SUM", {number(2147483647), number(1)}, false, "INT", "8115"},
      {"SUM", {as(tinyInt, "200"), as(tinyInt, "200")}, false, "INT", "400"},
      {"SUM", {money("1.25"), money("2.5")}, false, "MONEY", "3.75"},
      {"SUM", {exact("1.25"), exact("2.50")}, false, "DECIMAL(38,2)", "3.75"},
      {"SUM",
       {as(decimal(38, 0), "99999999999999999999999999999999999999"), as(decimal(38, 0), "1")},
       false,
       "DECIMAL(38,0)",
       "8115"},
      {"SUM", {as(real, "0.5"), as(real, "0.25")}, false, "FLOAT", "0.75"},
      {"SUM", {{integer, {}}}, false, "INT", "NULL"},
      {"AVG", {number(1), number(2), number(4)}, false, "INT", "2"},
      {"AVG", {number(-1), number(-2)}, false, "INT", "-1"},
      {"AVG", {money("1"), money("2.5")}, false, "MONEY", "1.75"},
      {"AVG", {exact("1.0"), exact("2.0"), exact("2.0")}, false, "DECIMAL(38,6)", "1.666666"},
      {"AVG", {exact("1.0"), exact("2.0"), exact("2.0")}, true, "DECIMAL(38,6)", "1.500000"},
      {"AVG", {floating(1), floating(2)}, false, "FLOAT", "1.5"},
      {"COUNT", {text("ISI"), text("ısı "), text("isi"), {varChar(3), {}}}, false, "INT", "3"},
      {"COUNT", {text("ISI"), text("ısı "), text("isi")}, true, "INT", "2"},
      {"MIN", {text("ç"), text("d"), text("c")}, false, "VARCHAR(1)", "c"},
      {"MAX", {text("ı"), text("i"), text("h")}, false, "VARCHAR(1)", "i"},
      {"MAX", {as(decimal(38, 0), "-5"), as(decimal(38, 0), "-70")}, false, "DECIMAL(38,0)", "-5"},
      {"MAX", {date("2012-01-01"), date("1899-01-01")}, false, "DATETIME", "Jan  1 2012 12:00AM"},
  };
  for (const auto& c : cases) {
    const BoundFunction function = bindCall(c.name, {c.rows[0]});
    std::string source;
    for (std::size_t i = 1; i <= c.rows.size(); ++i)
      source += (i > 1 ? " UNION ALL SELECT ?" : "SELECT ?") + std::to_string(i) + " AS v";
    const std::vector<std::string> arguments = {"v"};
    const std::string sql =
        "SELECT " + functionSql(function, arguments, c.distinct) + " FROM (" + source + ')';
    std::string outcome;
    const int error = errorOf([&] { outcome = shown(rows(sql, c.rows).at(0), function.result); });
    EXPECT_EQ(error ? std::to_string(error) : outcome, c.value) << sql;
    EXPECT_EQ(describe(function.result), c.type) << c.name;
    EXPECT_TRUE(function.aggregate);
  }
  EXPECT_EQ(functionSql(bindCall("COUNT", {}), {}), "count(*)");
  EXPECT_EQ(errorOf([&] { bindCall("SUM", {text("a")}); }), 8117);
  EXPECT_EQ(errorOf([&] { bindCall("MAX", {as({TypeId::Bit}, "1")}); }), 8117);
}

TEST_F(Functions, RefusesWrongCountsAndUnknownNames) {
  EXPECT_EQ(findFunction("NO_SUCH"), nullptr);
  EXPECT_EQ(errorOf([&] { bindCall("LEFT", {text("a")}); }), 174);
  EXPECT_EQ(errorOf([&] { bindCall("ROUND", {number(1)}); }), 189);
  EXPECT_EQ(errorOf([&] { bindCall("LEN", {{{TypeId::Text}, "a"}}); }), 8116);
  EXPECT_EQ(errorOf([&] { bindCall("ABS", {date("2012-01-01")}); }), 8116);
}

}  // namespace
}  // namespace engine
