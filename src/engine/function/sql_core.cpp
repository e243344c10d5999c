// The z_ functions of conversions and operators, and the registration of all.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>

#include "engine/function/sqlite_values.h"
#include "engine/value.h"
#include "engine/value/arithmetic_detail.h"

namespace engine {
namespace {

using Values = sqlite3_value**;

// Text that stays as it is but for its trailing blanks needs no copy.
bool passText(sqlite3_context* context, sqlite3_value* value, const Type& from, const Type& to) {
  if (!isCharacter(from.id) || !isCharacter(to.id) || (isUnicode(from.id) && !isUnicode(to.id)) ||
      (isFixedText(from.id) && !isFixedText(to.id)))
    return false;
  std::string_view text = textOf(value);
  if (!isLongText(to.id) && text.size() > to.length) return false;
  if (isFixedText(to.id))
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  setText(context, text);
  return true;
}

void convertValue(sqlite3_context* context, int count, Values values) {
  if (sqlite3_value_type(values[0]) == SQLITE_NULL) return;
  const Type from = unpackType(sqlite3_value_int64(values[1])),
             to = unpackType(sqlite3_value_int64(values[2]));
  if (passText(context, values[0], from, to)) return;
  const int style = count > 3 ? sqlite3_value_int(values[3]) : 0;
  const bool assignment = count > 4 && sqlite3_value_int(values[4]) != 0;
  setDatum(context, convert(datumOf(values[0]), from, to, style, assignment, sessionOf(context)));
}

void pad(sqlite3_context* context, int, Values values) {
  const std::string_view text = textOf(values[0]);
  const std::int64_t missing = sqlite3_value_int64(values[1]) - characterCount(text);
  if (missing <= 0) return sqlite3_result_value(context, values[0]);
  std::string padded;
  padded.reserve(text.size() + static_cast<std::size_t>(missing));
  padded.append(text).append(static_cast<std::size_t>(missing), ' ');
  setText(context, padded);
}

// SQLite turns an integer that leaves 64 bits into a REAL.
template <TypeId type>
void checkRange(sqlite3_context* context, int, Values values) {
  if (sqlite3_value_type(values[0]) != SQLITE_INTEGER) {
    if (isDateTime(type)) throwDateOverflow(type);
    throwExpressionOverflow(type);
  }
  const std::int64_t value = sqlite3_value_int64(values[0]);
  if (isMoney(type))
    sqlite3_result_int64(context, checkMoney(value, type));
  else if (isDateTime(type))
    sqlite3_result_int64(context, checkTicks(value, type));
  else
    sqlite3_result_int64(context, checkInteger(value, type));
}

template <TypeId type>
void divideIntegers(sqlite3_context* context, int, Values values) {
  const std::int64_t divisor = sqlite3_value_int64(values[1]);
  if (divisor == 0) throwDivideByZero();
  sqlite3_result_int64(context,
                       checkInteger(static_cast<Int128>(sqlite3_value_int64(values[0])) / divisor, type));
}

void modulo(sqlite3_context* context, int, Values values) {
  const std::int64_t divisor = sqlite3_value_int64(values[1]);
  if (divisor == 0) throwDivideByZero();
  sqlite3_result_int64(context, divisor == -1 ? 0 : sqlite3_value_int64(values[0]) % divisor);
}

void exclusiveOr(sqlite3_context* context, int, Values values) {
  sqlite3_result_int64(context, sqlite3_value_int64(values[0]) ^ sqlite3_value_int64(values[1]));
}

void divideFloats(sqlite3_context* context, int, Values values) {
  const double divisor = sqlite3_value_double(values[1]);
  if (divisor == 0) throwDivideByZero();
  const double value = sqlite3_value_double(values[0]) / divisor;
  if (!std::isfinite(value)) throwExpressionOverflow(TypeId::Float);
  sqlite3_result_double(context, value);
}

void checkFloat(sqlite3_context* context, int, Values values) {
  if (!std::isfinite(sqlite3_value_double(values[0]))) throwExpressionOverflow(TypeId::Float);
  sqlite3_result_value(context, values[0]);
}

template <TypeId type>
void multiplyMoney(sqlite3_context* context, int, Values values) {
  sqlite3_result_int64(context,
                       moneyProduct(sqlite3_value_int64(values[0]), sqlite3_value_int64(values[1]), type));
}

template <TypeId type>
void divideMoney(sqlite3_context* context, int, Values values) {
  sqlite3_result_int64(context,
                       moneyQuotient(sqlite3_value_int64(values[0]), sqlite3_value_int64(values[1]), type));
}

void moneyToFloat(sqlite3_context* context, int, Values values) {
  sqlite3_result_double(context, decimalToDouble(sqlite3_value_int64(values[0]), 4));
}

// z_tied(condition, column): the condition, which no longer looks like a constant.
void tied(sqlite3_context* context, int, Values values) {
  sqlite3_result_value(context, values[0]);
}

// z_ar(operator, left, right, left's type, right's type)
void anyArithmetic(sqlite3_context* context, int, Values values) {
  setDatum(context, arithmetic(static_cast<BinaryOp>(sqlite3_value_int(values[0])), datumOf(values[1]),
                               unpackType(sqlite3_value_int64(values[3])), datumOf(values[2]),
                               unpackType(sqlite3_value_int64(values[4])), sessionOf(context)));
}

// z_fold(value, operand, ..., 'type op type op type ...'): a chain of operators from the left.
void foldArithmetic(sqlite3_context* context, int count, Values values) {
  std::string_view program = textOf(values[count - 1]);
  const auto next = [&program] {
    std::int64_t number = 0;
    const auto end = std::from_chars(program.data(), program.data() + program.size(), number).ptr;
    program.remove_prefix(std::min(program.size(), static_cast<std::size_t>(end - program.data()) + 1));
    return number;
  };
  Type type = unpackType(next());
  Datum value = datumOf(values[0]);
  for (int i = 1; i < count - 1; ++i) {
    const auto op = static_cast<BinaryOp>(next());
    const Type operand = unpackType(next());
    value = arithmetic(op, value, type, datumOf(values[i]), operand, sessionOf(context));
    type = arithmeticType(op, type, operand);
  }
  setDatum(context, value);
}

void negateWide(sqlite3_context* context, int, Values values) {
  setBlob(context, encodeDecimal(-decodeDecimal(blobOf(values[0]))));
}

LikePattern readPattern(sqlite3_context*, int count, Values values) {
  std::optional<char32_t> escape;
  if (count > 3) {
    const std::string_view text = textOf(values[3]);
    if (characterCount(text) > 1)
      throw Error(506, "The invalid escape character \"" + std::string(text) +
                           "\" was specified in a LIKE predicate.");
    std::size_t at = 0;
    if (!text.empty()) escape = nextCharacter(text, at);
  }
  return LikePattern(textOf(values[1]), escape);
}

// z_like(text, pattern, width of fixed text, 0 or, with blanks that count, -1[, escape]); a constant pattern
// is read once.
void like(sqlite3_context* context, int count, Values values) {
  auto* known = static_cast<LikePattern*>(sqlite3_get_auxdata(context, 1));
  std::unique_ptr<LikePattern> read;
  if (!known) {
    read = std::make_unique<LikePattern>(readPattern(context, count, values));
    known = read.get();
  }
  const std::string_view text = textOf(values[0]);
  const std::int64_t width = sqlite3_value_int64(values[2]);
  bool matches;
  if (width > 0 && known->seesPadding()) {
    std::string padded(text);
    padded.append(static_cast<std::size_t>(std::max<std::int64_t>(0, width - characterCount(text))), ' ');
    matches = known->matches(padded);
  } else {
    matches = known->matches(text, width < 0);
  }
  sqlite3_result_int(context, matches);
  if (read && count == 3)
    sqlite3_set_auxdata(context, 1, read.release(), [](void* p) { delete static_cast<LikePattern*>(p); });
}

constexpr std::array functions = {
    SqlFunction{"z_cv", 3, guarded<convertValue>},
    SqlFunction{"z_cv", 5, guarded<convertValue>},
    SqlFunction{"z_pad", 2, strict<pad>},
    SqlFunction{"z_i1", 1, strict<checkRange<TypeId::TinyInt>>},
    SqlFunction{"z_i2", 1, strict<checkRange<TypeId::SmallInt>>},
    SqlFunction{"z_i4", 1, strict<checkRange<TypeId::Int>>},
    SqlFunction{"z_i8", 1, strict<checkRange<TypeId::BigInt>>},
    SqlFunction{"z_m4", 1, strict<checkRange<TypeId::SmallMoney>>},
    SqlFunction{"z_m8", 1, strict<checkRange<TypeId::Money>>},
    SqlFunction{"z_dt", 1, strict<checkRange<TypeId::DateTime>>},
    SqlFunction{"z_sdt", 1, strict<checkRange<TypeId::SmallDateTime>>},
    SqlFunction{"z_idiv", 2, strict<divideIntegers<TypeId::Int>>},
    SqlFunction{"z_bdiv", 2, strict<divideIntegers<TypeId::BigInt>>},
    SqlFunction{"z_imod", 2, strict<modulo>},
    SqlFunction{"z_xor", 2, strict<exclusiveOr>},
    SqlFunction{"z_f8", 1, strict<checkFloat>},
    SqlFunction{"z_fdiv", 2, strict<divideFloats>},
    SqlFunction{"z_tied", 2, tied},
    SqlFunction{"z_mf", 1, strict<moneyToFloat>},
    SqlFunction{"z_mmul", 2, strict<multiplyMoney<TypeId::Money>>},
    SqlFunction{"z_smul", 2, strict<multiplyMoney<TypeId::SmallMoney>>},
    SqlFunction{"z_mdiv", 2, strict<divideMoney<TypeId::Money>>},
    SqlFunction{"z_sdiv", 2, strict<divideMoney<TypeId::SmallMoney>>},
    SqlFunction{"z_ar", 5, guarded<anyArithmetic>},
    SqlFunction{"z_fold", -1, guarded<foldArithmetic>},
    SqlFunction{"z_neg", 1, strict<negateWide>},
    SqlFunction{"z_like", 3, strict<like>},
    SqlFunction{"z_like", 4, strict<like>},
};

int collate(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return compareText({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
                     {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
}
int collateNames(void*, int leftSize, const void* left, int rightSize, const void* right) {
  return compareNames({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
                      {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
}

void require(sqlite3* connection, int code) {
  if (code != SQLITE_OK) throw Error(823, std::string("I/O error: ") + sqlite3_errmsg(connection), 24);
}

}  // namespace

Datum datumOf(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return static_cast<std::int64_t>(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
      return sqlite3_value_double(value);
    case SQLITE_TEXT:
      return std::string(textOf(value));
    case SQLITE_BLOB:
      return Blob{std::string(blobOf(value))};
    default:
      return {};
  }
}

void setText(sqlite3_context* context, std::string_view text) {
  sqlite3_result_text64(context, text.empty() ? "" : text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void setBlob(sqlite3_context* context, std::string_view bytes) {
  sqlite3_result_blob64(context, bytes.empty() ? "" : bytes.data(), bytes.size(), SQLITE_TRANSIENT);
}

void setDatum(sqlite3_context* context, const Datum& value) {
  if (value.isInteger())
    sqlite3_result_int64(context, value.integer());
  else if (value.isReal())
    sqlite3_result_double(context, value.real());
  else if (value.isText())
    setText(context, value.text());
  else if (value.isBlob())
    setBlob(context, value.bytes());
}

void setError(sqlite3_context* context, const Error& error) {
  const std::string text = encodeError(error);
  sqlite3_result_error(context, text.data(), static_cast<int>(text.size()));
}

void registerFunctions(sqlite3* connection, FunctionContext* context) {
  require(connection,
          sqlite3_create_collation_v2(connection, sqliteCollation, SQLITE_UTF8, nullptr, collate, nullptr));
  require(connection,
          sqlite3_create_collation_v2(connection, sqliteNames, SQLITE_UTF8, nullptr, collateNames, nullptr));
  for (const auto family :
       {coreSqlFunctions(), textSqlFunctions(), numberSqlFunctions(), dateSqlFunctions()}) {
    for (const SqlFunction& function : family) {
      const int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (function.deterministic ? SQLITE_DETERMINISTIC : 0);
      require(connection, sqlite3_create_function_v2(connection, function.name, function.arguments, flags,
                                                     context, function.body, nullptr, nullptr, nullptr));
    }
  }
  for (const SqlAggregate& aggregate : sqlAggregates())
    require(connection, sqlite3_create_window_function(connection, aggregate.name, 1,
                                                       SQLITE_UTF8 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC,
                                                       context, aggregate.step, aggregate.finish,
                                                       aggregate.finish, aggregate.leave, nullptr));
}

std::span<const SqlFunction> coreSqlFunctions() {
  return functions;
}

}  // namespace engine
