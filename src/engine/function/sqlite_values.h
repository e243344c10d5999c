// Values between SQLite and the engine, and the frame of a SQL function.
#pragma once

#include <sqlite3.h>

#include <new>
#include <span>
#include <string_view>

#include "engine/function/functions.h"
#include "engine/value.h"

namespace engine {

inline std::string_view textOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)))
              : std::string_view{};
}
inline std::string_view blobOf(sqlite3_value* value) {
  const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
  return bytes ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value)))
               : std::string_view{};
}
Datum datumOf(sqlite3_value* value);

void setText(sqlite3_context* context, std::string_view text);
void setBlob(sqlite3_context* context, std::string_view bytes);
void setDatum(sqlite3_context* context, const Datum& value);
void setError(sqlite3_context* context, const Error& error);

inline FunctionContext& sessionOf(sqlite3_context* context) {
  return *static_cast<FunctionContext*>(sqlite3_user_data(context));
}

using FunctionBody = void (*)(sqlite3_context*, int, sqlite3_value**);

// Errors leave as SQLite errors; nothing is thrown through SQLite.
template <typename Body>
void guard(sqlite3_context* context, Body body) noexcept {
  try {
    body();
  } catch (const Error& error) {
    setError(context, error);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  } catch (const std::exception& error) {
    sqlite3_result_error(context, error.what(), -1);
  }
}

template <FunctionBody body>
void guarded(sqlite3_context* context, int count, sqlite3_value** values) {
  guard(context, [&] { body(context, count, values); });
}

// NULL in, NULL out.
template <FunctionBody body>
void strict(sqlite3_context* context, int count, sqlite3_value** values) {
  for (int i = 0; i < count; ++i)
    if (sqlite3_value_type(values[i]) == SQLITE_NULL) return;
  guard(context, [&] { body(context, count, values); });
}

struct SqlFunction {
  const char* name;
  int arguments;  // -1: any number
  FunctionBody body;
  bool deterministic = true;
};

struct SqlAggregate {
  const char* name;
  FunctionBody step;
  void (*finish)(sqlite3_context*);  // also the value in the middle of a window
  FunctionBody leave;                // a row leaves the window
};

// What registerFunctions registers, by family.
std::span<const SqlFunction> coreSqlFunctions();
std::span<const SqlFunction> textSqlFunctions();
std::span<const SqlFunction> numberSqlFunctions();
std::span<const SqlFunction> dateSqlFunctions();
std::span<const SqlAggregate> sqlAggregates();

}  // namespace engine
