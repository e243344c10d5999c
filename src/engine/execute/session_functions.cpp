// SQL functions that need the session: variables, identity values, names of the catalog.

#include "engine/execute/session_functions.h"

#include <cmath>

#include "engine/execute/executor.h"
#include "engine/execute/logins.h"
#include "engine/function/sqlite_values.h"

namespace engine {

struct SessionFunctions {
  using Arguments = SessionArguments;

  static Datum variable(Executor& executor, const Arguments& arguments) {
    return executor.frame_->values.at(static_cast<std::size_t>(arguments[0].integer()));
  }

  static Datum set(Executor& executor, const Arguments& arguments) {
    const int slot = static_cast<int>(arguments[0].integer());
    executor.assign(slot, arguments[2], unpackType(arguments[1].integer()));
    return arguments[2];
  }

  static Datum identity(Executor& executor, const Arguments&) {
    auto& run = executor.identityRun_;
    if (!run.used) {
      run.first = run.last = nextIdentity(executor.store_, run.database, *run.table);
      run.used = true;
    } else {
      run.last += run.step;
    }
    return run.last;
  }

  static Datum databaseName(Executor& executor, const Arguments& arguments) {
    if (arguments[0].isNull()) return {};
    for (const DatabaseEntry& entry : executor.store_.databases())
      if (entry.id == arguments[0].integer()) return entry.name;
    return {};
  }

  static Datum databaseId(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isText() || !executor.store_.databaseExists(arguments[0].text())) return {};
    return executor.store_.database(arguments[0].text()).id;
  }

  static Datum identCurrent(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isText()) return {};
    const NamedObject found = executor.namedObject(arguments[0].text());
    if (!found.table || found.table->identityColumn() < 0) return {};
    const auto last = lastIdentity(executor.store_, found.database, *found.table);
    return last.value_or(found.table->columns[static_cast<std::size_t>(found.table->identityColumn())].seed);
  }

  static Datum userName(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isInteger()) return {};
    if (arguments[0].integer() == 1) return "dbo";
    return executor.systemValue(SystemValue::UserName);
  }

  static Datum loginName(Executor& executor, const Arguments&) {
    return executor.systemValue(SystemValue::Login);
  }

  // UPDATE(column) in a trigger: was it set by the statement? An INSERT sets all, a DELETE none.
  static Datum updated(Executor& executor, const Arguments& arguments) {
    const Frame& frame = *executor.frame_;
    if (!frame.trigger) return 0;
    const int ordinal = frame.trigger->table->columnIndex(arguments[0].text());
    if (!frame.updated) return frame.event == TriggerEvent::Insert ? 1 : 0;
    for (const int column : *frame.updated)
      if (column == ordinal) return 1;
    return 0;
  }

  static Datum one(Executor&, const Arguments& arguments) {
    if (arguments[0].integer() > 1)
      throw Error(
          512,
          "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, "
          "<, <= , >, >= or when the subquery is used as an expression.");
    return arguments[1];
  }

  static Datum top(Executor&, const Arguments& arguments) {
    if (arguments[0].isInteger() && arguments[0].integer() < 0)
      throw Error(127, "A TOP N value may not be negative.");
    if (!arguments[0].isInteger())
      throw Error(1060, "The number of rows in the TOP clause must be an integer.");
    return arguments[0];
  }

  static Datum percent(Executor&, const Arguments& arguments) {
    const double share = arguments[1].isReal() ? arguments[1].real() : -1;
    if (share < 0 || share > 100) throw Error(1031, "Percent values must be between 0 and 100.");
    return static_cast<std::int64_t>(std::ceil(static_cast<double>(arguments[0].integer()) * share / 100));
  }

  static Datum pick(Executor&, const Arguments& arguments) { return arguments[0]; }
};

void Executor::registerSessionFunctions() {
  using F = SessionFunctions;
  static const SqlEntry entries[] = {
      {"z_var", 1, F::variable, false},
      {"z_set", 3, F::set, false},
      {"z_identity", 0, F::identity, false},
      {"z_db_name", 1, F::databaseName, false},
      {"z_db_id", 1, F::databaseId, false},
      {"z_ident_current", 1, F::identCurrent, false},
      {"z_user_name", 1, F::userName, false},
      {"z_suser_name", 1, F::loginName, false},
      {"z_updated", 1, F::updated, false},
      {"z_one", 2, F::one, true},
      {"z_top", 1, F::top, true},
      {"z_percent", 2, F::percent, true},
      {"z_pick", -1, F::pick, false},
  };
  registerEntries(*this, store_.handle(), entries);
  registerEntries(*this, store_.handle(), propertyFunctions());
}

namespace {

struct Registered {
  Executor* executor;
  SessionFunction function;
};

void call(sqlite3_context* context, int count, sqlite3_value** values) {
  const auto& registered = *static_cast<Registered*>(sqlite3_user_data(context));
  try {
    SessionArguments arguments;
    for (int i = 0; i < count; ++i) arguments.push_back(datumOf(values[i]));
    setDatum(context, registered.function(*registered.executor, arguments));
  } catch (const Error& error) {
    sqlite3_result_error(context, encodeError(error).c_str(), -1);
  }
}

}  // namespace

void registerEntries(Executor& executor, sqlite3* connection, std::span<const SqlEntry> entries) {
  for (const SqlEntry& entry : entries) {
    const int flags = SQLITE_UTF8 | (entry.pure ? SQLITE_DETERMINISTIC : 0);
    sqlite3_create_function_v2(connection, entry.name, entry.arguments, flags,
                               new Registered{&executor, entry.function}, call, nullptr, nullptr,
                               [](void* data) { delete static_cast<Registered*>(data); });
  }
}

}  // namespace engine
