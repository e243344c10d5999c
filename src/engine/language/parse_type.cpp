#include "engine/language/keywords.h"
#include "engine/language/sql_parser.h"

namespace engine {
namespace {

enum class Shape : std::uint8_t { Plain, Sized, Scaled, Floating };

struct TypeWord {
  std::string_view word;
  TypeId id;
  Shape shape = Shape::Plain;
  int most = 0;                  // length
  TypeId longId = TypeId::Null;  // what (MAX) stands for
};

constexpr TypeWord typeWords[] = {
    {"INT", TypeId::Int},
    {"INTEGER", TypeId::Int},
    {"SMALLINT", TypeId::SmallInt},
    {"TINYINT", TypeId::TinyInt},
    {"BIGINT", TypeId::BigInt},
    {"BIT", TypeId::Bit},
    {"MONEY", TypeId::Money},
    {"SMALLMONEY", TypeId::SmallMoney},
    {"REAL", TypeId::Real},
    {"FLOAT", TypeId::Float, Shape::Floating},
    {"DECIMAL", TypeId::Decimal, Shape::Scaled},
    {"DEC", TypeId::Decimal, Shape::Scaled},
    {"NUMERIC", TypeId::Decimal, Shape::Scaled},
    {"DATETIME", TypeId::DateTime},
    {"SMALLDATETIME", TypeId::SmallDateTime},
    {"TEXT", TypeId::Text},
    {"NTEXT", TypeId::NText},
    {"CHAR", TypeId::Char, Shape::Sized, 8000},
    {"CHARACTER", TypeId::Char, Shape::Sized, 8000},
    {"VARCHAR", TypeId::VarChar, Shape::Sized, 8000, TypeId::Text},
    {"NCHAR", TypeId::NChar, Shape::Sized, 4000},
    {"NVARCHAR", TypeId::NVarChar, Shape::Sized, 4000, TypeId::NText},
    {"BINARY", TypeId::Binary, Shape::Sized, 8000},
    {"VARBINARY", TypeId::VarBinary, Shape::Sized, 8000},
};

// Types of SQL Server that the embedded server does not have.
constexpr std::string_view foreignTypes[] = {
    "DATE",      "TIME",       "DATETIME2", "DATETIMEOFFSET", "UNIQUEIDENTIFIER", "SQL_VARIANT",
    "TIMESTAMP", "ROWVERSION", "XML",       "IMAGE",          "HIERARCHYID",      "GEOGRAPHY",
    "GEOMETRY",  "CURSOR",     "TABLE"};

constexpr std::size_t defaultCastLength = 30;
constexpr std::uint16_t maxSysname = 128;
constexpr std::int64_t defaultPrecision = 18;
constexpr std::int64_t doublePrecision = 53;
constexpr std::int64_t singlePrecision = 24;  // FLOAT(1..24) is REAL

const TypeWord* findType(std::string_view word) {
  for (const TypeWord& entry : typeWords)
    if (equalsKeyword(word, entry.word)) return &entry;
  return nullptr;
}

}  // namespace

// The type's name, brought to one of its spellings in upper case; `written` receives it as it stands.
std::string SqlParser::typeSpelling(std::string& written) {
  bool national = accept("NATIONAL");
  bool named = isName() || (isAnyWord({"DOUBLE", "CURSOR", "TABLE"}) && !national);
  if (!named) syntaxError();
  written = tokens_[pos_++].value();
  std::string spelled = upperAscii(written);
  if (spelled == "DOUBLE") {
    expect("PRECISION");
    return "FLOAT";
  }
  if (national) spelled.insert(0, "N");
  if (accept("VARYING"))
    spelled = spelled == "BINARY" ? "VARBINARY" : spelled[0] == 'N' ? "NVARCHAR" : "VARCHAR";
  return spelled;
}

void SqlParser::unknownType(const std::string& spelled, const std::string& written,
                            const Declared* declared) const {
  for (std::string_view foreign : foreignTypes)
    if (spelled == foreign) unsupported(foreign);
  if (declared)
    fail(2715, "Column, parameter, or variable #" + std::to_string(declared->position) +
                   ": Cannot find data type " + written + ".");
  fail(243, "Type " + written + " is not a defined system type.");
}

// `word` receives the type's name as written.
Type SqlParser::type(const Declared* declared, std::string* word) {
  std::string written;
  std::string spelled = typeSpelling(written);
  if (word) *word = written;
  if (spelled == "SYSNAME") return Type{TypeId::NVarChar, maxSysname, 0, 0};
  const TypeWord* found = findType(spelled);
  if (!found) unknownType(spelled, written, declared);
  Type result;
  result.id = found->id;
  if (found->shape == Shape::Sized) sizedType(result, {written, found->most, found->longId, declared});
  if (found->shape == Shape::Scaled) scaledType(result, declared);
  if (found->word == "NUMERIC") result.length = numericMark;
  if (found->shape == Shape::Floating) floatingType(result);
  return result;
}

void SqlParser::floatingType(Type& type) {
  if (!acceptSymbol('(')) return;
  std::int64_t bits = integer();
  if (bits < 1 || bits > doublePrecision) badSize(bits);
  if (bits <= singlePrecision) type.id = TypeId::Real;
  expectSymbol(')');
}

void SqlParser::badSize(std::int64_t size) const {
  fail(1001, "Line " + std::to_string(line()) + ": Length or precision specification " +
                 std::to_string(size) + " is invalid.");
}

void SqlParser::sizedType(Type& type, const Sized& sized) {
  type.length = static_cast<std::uint16_t>(sized.declared ? 1 : defaultCastLength);
  if (!acceptSymbol('(')) return;
  if (isWord("MAX")) {
    if (sized.longId == TypeId::Null) unsupported(upperAscii(sized.word) + "(MAX)");
    ++pos_;
    type = Type{sized.longId, 0, 0, 0};
  } else {
    std::int64_t length = integer();
    if (length < 1) badSize(length);
    bool named = sized.declared && !sized.declared->column.empty();
    if (length > sized.most)
      fail(131, "The size (" + std::to_string(length) + ") given to the " +
                    (named ? "column '" + std::string(sized.declared->column)
                           : "type '" + std::string(sized.word)) +
                    "' exceeds the maximum allowed for any data type (" + std::to_string(sized.most) + ").");
    type.length = static_cast<std::uint16_t>(length);
  }
  expectSymbol(')');
}

void SqlParser::scaledType(Type& type, const Declared* declared) {
  std::int64_t precision = defaultPrecision;
  std::int64_t scale = 0;
  if (acceptSymbol('(')) {
    precision = integer();
    if (acceptSymbol(',')) scale = integer();
    expectSymbol(')');
  }
  if (precision < 1) badSize(precision);
  if (precision > maxPrecision)
    fail(2750, "Column or parameter #" + std::to_string(declared ? declared->position : 1) +
                   ": Specified column precision " + std::to_string(precision) +
                   " is greater than the maximum precision of 38.");
  if (scale < 0 || scale > precision) fail(192, "The scale must be less than or equal to the precision.");
  type.precision = static_cast<std::uint8_t>(precision);
  type.scale = static_cast<std::uint8_t>(scale);
}

}  // namespace engine
