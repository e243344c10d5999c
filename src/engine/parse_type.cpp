#include "engine/keywords.h"
#include "engine/sql_parser.h"

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
constexpr std::int64_t maxPrecision = 38;
constexpr std::int64_t singlePrecision = 24;  // FLOAT(1..24) is REAL

const TypeWord* findType(std::string_view word) {
  for (const TypeWord& entry : typeWords)
    if (equalsKeyword(word, entry.word)) return &entry;
  return nullptr;
}

}  // namespace

// `declaration`: of a column or variable named `what`, where CHAR alone is CHAR(1); else the target of a
// conversion, where it is CHAR(30). `word` receives the type's name as written.
Type SqlParser::type(bool declaration, std::string_view what, std::string* word) {
  bool national = accept("NATIONAL");
  bool named = isName() || (isAnyWord({"DOUBLE", "CURSOR", "TABLE"}) && !national);
  if (!named) syntaxError();
  std::size_t first = pos_;
  std::string written = tokens_[pos_++].value();
  if (word) *word = written;
  std::string spelled = upperAscii(written);
  if (spelled == "DOUBLE") {
    expect("PRECISION");
    spelled = "FLOAT";
  }
  if (spelled == "SYSNAME") return Type{TypeId::NVarChar, maxSysname, 0, 0};
  if (accept("VARYING"))
    spelled = spelled == "BINARY" ? "VARBINARY" : spelled[0] == 'N' ? "NVARCHAR" : "VARCHAR";
  if (national) spelled.insert(0, "N");
  const TypeWord* found = findType(spelled);
  if (!found) {
    for (std::string_view foreign : foreignTypes)
      if (spelled == foreign) unsupported(foreign);
    pos_ = first;
    if (declaration)
      fail(2715, "Column, parameter, or variable " + std::string(what) + ": Cannot find data type " +
                     written + ".");
    fail(243, "Type " + written + " is not a defined system type.");
  }
  Type result;
  result.id = found->id;
  switch (found->shape) {
    case Shape::Plain:
      break;
    case Shape::Sized:
      sizedType(result, {written, what, found->most, found->longId, declaration});
      break;
    case Shape::Scaled:
      scaledType(result, what);
      break;
    case Shape::Floating:
      if (acceptSymbol('(')) {
        std::int64_t bits = integer();
        if (bits < 1 || bits > 53) badSize(bits);
        if (bits <= singlePrecision) result.id = TypeId::Real;
        expectSymbol(')');
      }
      break;
  }
  return result;
}

void SqlParser::badSize(std::int64_t size) const {
  fail(1001, "Line " + std::to_string(line()) + ": Length or precision specification " +
                 std::to_string(size) + " is invalid.");
}

void SqlParser::sizedType(Type& type, const Sized& sized) {
  type.length = static_cast<std::uint16_t>(sized.declaration ? 1 : defaultCastLength);
  if (!acceptSymbol('(')) return;
  if (isWord("MAX")) {
    if (sized.longId == TypeId::Null) unsupported(upperAscii(sized.word) + "(MAX)");
    ++pos_;
    type = Type{sized.longId, 0, 0, 0};
  } else {
    std::int64_t length = integer();
    if (length < 1) badSize(length);
    if (length > sized.most)
      fail(131, "The size (" + std::to_string(length) + ") given to the " +
                    (sized.declaration ? "column '" + std::string(sized.what)
                                       : "type '" + std::string(sized.word)) +
                    "' exceeds the maximum allowed for any data type (8000).");
    type.length = static_cast<std::uint16_t>(length);
  }
  expectSymbol(')');
}

void SqlParser::scaledType(Type& type, std::string_view what) {
  std::int64_t precision = defaultPrecision;
  std::int64_t scale = 0;
  if (acceptSymbol('(')) {
    precision = integer();
    if (acceptSymbol(',')) scale = integer();
    expectSymbol(')');
  }
  if (precision < 1) badSize(precision);
  if (precision > maxPrecision)
    fail(2750, "Column or parameter " + (what.empty() ? "#1" : std::string(what)) +
                   ": Specified column precision " + std::to_string(precision) +
                   " is greater than the maximum precision of 38.");
  if (scale < 0 || scale > precision) fail(192, "The scale must be less than or equal to the precision.");
  type.precision = static_cast<std::uint8_t>(precision);
  type.scale = static_cast<std::uint8_t>(scale);
}

}  // namespace engine
