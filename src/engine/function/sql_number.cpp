// The z_ functions of numbers, and the aggregates.
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <random>

#include "engine/function/sqlite_values.h"
#include "engine/value/arithmetic_detail.h"

namespace engine {
namespace {

using Values = sqlite3_value**;

Type typeArgument(sqlite3_value* value) {
  return unpackType(sqlite3_value_int64(value));
}

Int128 exactArgument(sqlite3_value* value) {
  return sqlite3_value_type(value) == SQLITE_BLOB ? decodeDecimal(blobOf(value))
                                                  : static_cast<Int128>(sqlite3_value_int64(value));
}

int scaleOf(const Type& type) {
  return isMoney(type.id) ? 4 : type.scale;
}

void setExact(sqlite3_context* context, Int128 value, const Type& type) {
  if (type.id == TypeId::Decimal) {
    if (!fitsPrecision(value, type.precision)) throwExpressionOverflow(type.id);
    setDatum(context, decimalDatum(value, type));
  } else {
    sqlite3_result_int64(context,
                         isMoney(type.id) ? checkMoney(value, type.id) : checkInteger(value, type.id));
  }
}

void absolute(sqlite3_context* context, int, Values values) {
  const Type type = typeArgument(values[1]);
  if (isApproximate(type.id))
    return sqlite3_result_double(context, std::fabs(sqlite3_value_double(values[0])));
  const Int128 value = exactArgument(values[0]);
  setExact(context, value < 0 ? -value : value, type);
}

void signOf(sqlite3_context* context, int, Values values) {
  const Type type = typeArgument(values[1]);
  if (isApproximate(type.id)) {
    const double value = sqlite3_value_double(values[0]);
    return sqlite3_result_double(context, (value > 0) - (value < 0));
  }
  const Int128 value = exactArgument(values[0]);
  setExact(context, ((value > 0) - (value < 0)) * powerOfTen(scaleOf(type)), type);
}

// The nearest whole number on one side; of a DECIMAL(p,s) it is a DECIMAL(p,0), of MONEY a MONEY.
template <bool up>
void wholeNumber(sqlite3_context* context, int, Values values) {
  const Type type = typeArgument(values[1]);
  if (isApproximate(type.id)) {
    const double value = sqlite3_value_double(values[0]);
    return sqlite3_result_double(context, up ? std::ceil(value) : std::floor(value));
  }
  const Int128 value = exactArgument(values[0]), unit = powerOfTen(scaleOf(type));
  Int128 whole = value / unit;
  if (up && value % unit > 0) ++whole;
  if (!up && value % unit < 0) --whole;
  if (type.id == TypeId::Decimal) return setExact(context, whole, {TypeId::Decimal, 0, type.precision, 0});
  setExact(context, whole * unit, type);
}

double roundFloat(double value, std::int64_t places, bool cut) {
  if (places > 300) return value;
  if (places < -300) return 0;
  const double factor = std::pow(10.0, static_cast<double>(places < 0 ? -places : places));
  const double scaled = places < 0 ? value / factor : value * factor;
  if (!std::isfinite(scaled)) return value;
  const double whole = cut ? std::trunc(scaled) : std::round(scaled);
  return places < 0 ? whole * factor : whole / factor;
}

// z_round(value, places, cut, type)
void roundNumber(sqlite3_context* context, int, Values values) {
  const Type type = typeArgument(values[3]);
  const std::int64_t places = sqlite3_value_int64(values[1]);
  const bool cut = sqlite3_value_int64(values[2]) != 0;
  if (isApproximate(type.id))
    return sqlite3_result_double(context, roundFloat(sqlite3_value_double(values[0]), places, cut));
  const Int128 value = exactArgument(values[0]);
  const std::int64_t drop = scaleOf(type) - places;
  if (drop <= 0) return setExact(context, value, type);
  if (drop > maxPrecision) return setExact(context, 0, type);
  const Int128 unit = powerOfTen(static_cast<int>(drop));
  Int128 rounded = value;
  if (cut)
    rounded /= unit;
  else
    rescale(rounded, static_cast<int>(drop), 0);
  if (multiplyOverflows(rounded, unit, rounded)) throwExpressionOverflow(type.id);
  setExact(context, rounded, type);
}

void setFloat(sqlite3_context* context, double value) {
  if (std::isnan(value)) throw Error(3623, "An invalid floating point operation occurred.");
  if (std::isinf(value)) throwExpressionOverflow(TypeId::Float);
  sqlite3_result_double(context, value);
}

void power(sqlite3_context* context, int, Values values) {
  const double base = sqlite3_value_double(values[0]), exponent = sqlite3_value_double(values[1]);
  if (base == 0 && exponent < 0) throwDivideByZero();
  setFloat(context, std::pow(base, exponent));
}

double square(double x) {
  return x * x;
}
double cotangent(double x) {
  return 1 / std::tan(x);
}
double degrees(double x) {
  return x * (180 / std::numbers::pi);
}
double radians(double x) {
  return x * (std::numbers::pi / 180);
}
double logarithm(double x) {
  return x > 0 ? std::log(x) : std::nan("");
}
double logarithm10(double x) {
  return x > 0 ? std::log10(x) : std::nan("");
}

template <double (*function)(double)>
void ofFloat(sqlite3_context* context, int, Values values) {
  setFloat(context, function(sqlite3_value_double(values[0])));
}

void arcTangent2(sqlite3_context* context, int, Values values) {
  setFloat(context, std::atan2(sqlite3_value_double(values[0]), sqlite3_value_double(values[1])));
}

void isNumeric(sqlite3_context* context, int, Values values) {
  sqlite3_result_int(context,
                     sqlite3_value_type(values[0]) != SQLITE_NULL && isNumericText(textOf(values[0])));
}

// A seed starts the session's sequence anew.
void randomNumber(sqlite3_context* context, int count, Values values) {
  FunctionContext& session = sessionOf(context);
  if (count > 0)
    session.randomState = static_cast<std::uint64_t>(sqlite3_value_int64(values[0])) + 1;
  else if (session.randomState == 0)
    session.randomState = std::random_device()() | 1;
  std::uint64_t mixed = session.randomState += 0x9E3779B97F4A7C15ULL;  // splitmix64
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9ULL;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBULL;
  sqlite3_result_double(context, static_cast<double>((mixed ^ (mixed >> 31)) >> 11) * 0x1p-53);
}

void newId(sqlite3_context* context, int, Values) {
  std::array<unsigned char, 16> bytes;
  sqlite3_randomness(bytes.size(), bytes.data());
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0f) | 0x40);
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3f) | 0x80);
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::array<char, 3> digits;
    std::snprintf(digits.data(), digits.size(), "%02X", bytes[i]);
    text += digits.data();
    if (i == 3 || i == 5 || i == 7 || i == 9) text += '-';
  }
  setText(context, text);
}

// z_level(level, most): that of the rows which a recursive query makes of rows of `level`.
void recursionLevel(sqlite3_context* context, int, Values values) {
  const std::int64_t level = sqlite3_value_int64(values[0]) + 1, most = sqlite3_value_int64(values[1]);
  if (most > 0 && level > most)
    throw Error(530, "The statement terminated. The maximum recursion " + std::to_string(most) +
                         " has been exhausted before statement completion.");
  sqlite3_result_int64(context, level);
}

// The argument of NTILE.
void tileCount(sqlite3_context* context, int, Values values) {
  if (sqlite3_value_type(values[0]) == SQLITE_NULL || sqlite3_value_int64(values[0]) <= 0)
    throw Error(4116, "The function 'ntile' takes only a positive int or bigint expression as its input.");
  sqlite3_result_value(context, values[0]);
}

// ---- aggregates ----

struct Sum {
  Int128 value;
  std::int64_t count;
  std::int64_t wraps;  // of `value` past its 128 bits, up less down: what overflows on the way may come back
};

// SQLite aligns a context to 8 bytes only, an Int128 wants 16: the sum travels by copy.
Sum readSum(const void* memory) {
  Sum sum;
  __builtin_memcpy(&sum, memory, sizeof sum);
  return sum;
}

void addToSum(sqlite3_context* context, int, Values values) {
  void* memory = sqlite3_aggregate_context(context, sizeof(Sum));
  if (!memory || sqlite3_value_type(values[0]) == SQLITE_NULL) return;
  Sum sum = readSum(memory);
  const Int128 added = exactArgument(values[0]);
  if (__builtin_add_overflow(sum.value, added, &sum.value)) sum.wraps += added < 0 ? -1 : 1;
  ++sum.count;
  __builtin_memcpy(memory, &sum, sizeof sum);
}

void takeFromSum(sqlite3_context* context, int, Values values) {
  void* memory = sqlite3_aggregate_context(context, sizeof(Sum));
  if (!memory || sqlite3_value_type(values[0]) == SQLITE_NULL) return;
  Sum sum = readSum(memory);
  const Int128 gone = exactArgument(values[0]);
  if (__builtin_sub_overflow(sum.value, gone, &sum.value)) sum.wraps -= gone < 0 ? -1 : 1;
  --sum.count;
  __builtin_memcpy(memory, &sum, sizeof sum);
}

// `raise`: decimals that an average has behind those of its values.
template <TypeId type, bool average, int raise = 0>
void finishSum(sqlite3_context* context) {
  const void* memory = sqlite3_aggregate_context(context, 0);
  if (!memory) return;
  const Sum sum = readSum(memory);
  if (sum.count == 0) return;
  guard(context, [&] {
    if (sum.wraps != 0) throwExpressionOverflow(type);
    const Type result{type, 0, maxPrecision, 0};
    setExact(context, sum.value, result);  // an average's sum must fit as well
    if (!average) return;
    Int128 value = 0;
    if (!divideScaled(sum.value, raise, sum.count, value)) throwExpressionOverflow(type);
    setExact(context, value, result);
  });
}

constexpr std::array functions = {
    SqlFunction{"z_abs", 2, strict<absolute>},
    SqlFunction{"z_sign", 2, strict<signOf>},
    SqlFunction{"z_floor", 2, strict<wholeNumber<false>>},
    SqlFunction{"z_ceiling", 2, strict<wholeNumber<true>>},
    SqlFunction{"z_round", 4, strict<roundNumber>},
    SqlFunction{"z_power", 2, strict<power>},
    SqlFunction{"z_sqrt", 1, strict<ofFloat<std::sqrt>>},
    SqlFunction{"z_square", 1, strict<ofFloat<square>>},
    SqlFunction{"z_exp", 1, strict<ofFloat<std::exp>>},
    SqlFunction{"z_log", 1, strict<ofFloat<logarithm>>},
    SqlFunction{"z_log10", 1, strict<ofFloat<logarithm10>>},
    SqlFunction{"z_sin", 1, strict<ofFloat<std::sin>>},
    SqlFunction{"z_cos", 1, strict<ofFloat<std::cos>>},
    SqlFunction{"z_tan", 1, strict<ofFloat<std::tan>>},
    SqlFunction{"z_cot", 1, strict<ofFloat<cotangent>>},
    SqlFunction{"z_asin", 1, strict<ofFloat<std::asin>>},
    SqlFunction{"z_acos", 1, strict<ofFloat<std::acos>>},
    SqlFunction{"z_atan", 1, strict<ofFloat<std::atan>>},
    SqlFunction{"z_atn2", 2, strict<arcTangent2>},
    SqlFunction{"z_degrees", 1, strict<ofFloat<degrees>>},
    SqlFunction{"z_radians", 1, strict<ofFloat<radians>>},
    SqlFunction{"z_isnumeric", 1, guarded<isNumeric>},
    SqlFunction{"z_rand", 0, guarded<randomNumber>, false},
    SqlFunction{"z_rand", 1, guarded<randomNumber>, false},
    SqlFunction{"z_newid", 0, guarded<newId>, false},
    SqlFunction{"z_level", 2, guarded<recursionLevel>},
    SqlFunction{"z_tiles", 1, guarded<tileCount>},
};

constexpr std::array aggregates = {
    SqlAggregate{"z_sumi4", addToSum, finishSum<TypeId::Int, false>, takeFromSum},
    SqlAggregate{"z_sumi8", addToSum, finishSum<TypeId::BigInt, false>, takeFromSum},
    SqlAggregate{"z_summ", addToSum, finishSum<TypeId::Money, false>, takeFromSum},
    SqlAggregate{"z_sumd", addToSum, finishSum<TypeId::Decimal, false>, takeFromSum},
    SqlAggregate{"z_avgi4", addToSum, finishSum<TypeId::Int, true>, takeFromSum},
    SqlAggregate{"z_avgi8", addToSum, finishSum<TypeId::BigInt, true>, takeFromSum},
    SqlAggregate{"z_avgd0", addToSum, finishSum<TypeId::Decimal, true, 0>, takeFromSum},
    SqlAggregate{"z_avgd1", addToSum, finishSum<TypeId::Decimal, true, 1>, takeFromSum},
    SqlAggregate{"z_avgd2", addToSum, finishSum<TypeId::Decimal, true, 2>, takeFromSum},
    SqlAggregate{"z_avgd3", addToSum, finishSum<TypeId::Decimal, true, 3>, takeFromSum},
    SqlAggregate{"z_avgd4", addToSum, finishSum<TypeId::Decimal, true, 4>, takeFromSum},
    SqlAggregate{"z_avgd5", addToSum, finishSum<TypeId::Decimal, true, 5>, takeFromSum},
    SqlAggregate{"z_avgd6", addToSum, finishSum<TypeId::Decimal, true, 6>, takeFromSum},
};

}  // namespace

std::span<const SqlFunction> numberSqlFunctions() {
  return functions;
}
std::span<const SqlAggregate> sqlAggregates() {
  return aggregates;
}

}  // namespace engine
