// SQL functions that need the session: variables, identity values, names of the catalog.

#include <cmath>

#include "engine/execute/executor.h"
#include "engine/execute/logins.h"
#include "engine/execute/server_identity.h"
#include "engine/function/sqlite_values.h"

namespace engine {

struct SessionFunctions {
  using Arguments = std::vector<Datum>;
  using Function = Datum (*)(Executor& executor, const Arguments& arguments);

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

  struct Found {
    std::shared_ptr<const DatabaseCatalog> catalog;
    const TableInfo* table = nullptr;
    const ViewInfo* view = nullptr;
    const TriggerInfo* trigger = nullptr;
    std::string database;
  };

  static Found findObject(Executor& executor, const std::string& name) {
    const std::vector<std::string> parts = nameParts(name);
    Found found;
    found.database = executor.context_.database;
    if (parts.size() == 3) found.database = parts[0];
    if (parts.size() > 3 || !executor.store_.databaseExists(found.database)) return found;
    if (!executor.rights_.in(found.database).enter) return found;
    found.catalog = executor.store_.catalog(found.database);
    found.table = found.catalog->table(parts.back());
    found.view = found.catalog->view(parts.back());
    for (const auto& [key, table] : found.catalog->tables)
      for (const auto& trigger : table->triggers)
        if (foldName(trigger->name) == foldName(parts.back())) found.trigger = trigger.get();
    return found;
  }

  static Datum objectId(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isText()) return {};
    const Found found = findObject(executor, arguments[0].text());
    const std::string kind =
        arguments.size() > 1 && arguments[1].isText() ? foldName(arguments[1].text()) : "";
    if (found.table && (kind.empty() || kind == "u")) return found.table->id;
    if (found.view && (kind.empty() || kind == "v")) return found.view->id;
    if (found.trigger && (kind.empty() || kind == "tr")) return found.trigger->id;
    return {};
  }

  static Datum objectName(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isInteger()) return {};
    const std::int64_t id = arguments[0].integer();
    const auto catalog = executor.store_.catalog(executor.context_.database);
    for (const auto& [key, table] : catalog->tables) {
      if (table->id == id) return table->name;
      for (const auto& trigger : table->triggers)
        if (trigger->id == id) return trigger->name;
    }
    for (const auto& [key, view] : catalog->views)
      if (view->id == id) return view->name;
    return {};
  }

  static Datum columnLength(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isText() || !arguments[1].isText()) return {};
    const Found found = findObject(executor, arguments[0].text());
    if (found.table) {
      const int ordinal = found.table->columnIndex(arguments[1].text());
      if (ordinal < 0) return {};
      return storageLength(found.table->columns[static_cast<std::size_t>(ordinal)].type);
    }
    if (found.view)
      for (const ViewColumn& column : found.view->columns)
        if (foldName(column.name) == foldName(arguments[1].text())) return storageLength(column.type);
    return {};
  }

  static Datum objectProperty(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isInteger() || !arguments[1].isText()) return {};
    const std::int64_t id = arguments[0].integer();
    const std::string property = foldName(arguments[1].text());
    const auto catalog = executor.store_.catalog(executor.context_.database);
    for (const auto& [key, table] : catalog->tables) {
      if (table->id == id) {
        if (property == "istable" || property == "isusertable") return 1;
        if (property == "tablehasidentity") return table->identityColumn() >= 0 ? 1 : 0;
        return property == "isview" || property == "istrigger" ? Datum(0) : Datum();
      }
      for (const auto& trigger : table->triggers)
        if (trigger->id == id)
          return property == "istrigger" ? Datum(1) : property.starts_with("is") ? Datum(0) : Datum();
    }
    for (const auto& [key, view] : catalog->views)
      if (view->id == id)
        return property == "isview" ? Datum(1) : property.starts_with("is") ? Datum(0) : Datum();
    return {};
  }

  static Datum identCurrent(Executor& executor, const Arguments& arguments) {
    if (!arguments[0].isText()) return {};
    const Found found = findObject(executor, arguments[0].text());
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

  struct Entry {
    const char* name;
    int arguments;  // -1: any number
    Function function;
    bool pure;
  };

  struct Registered {
    Executor* executor;
    Function function;
  };

  static void call(sqlite3_context* context, int count, sqlite3_value** values) {
    const auto& registered = *static_cast<Registered*>(sqlite3_user_data(context));
    try {
      Arguments arguments;
      for (int i = 0; i < count; ++i) arguments.push_back(datumOf(values[i]));
      setDatum(context, registered.function(*registered.executor, arguments));
    } catch (const Error& error) {
      sqlite3_result_error(context, encodeError(error).c_str(), -1);
    }
  }
};

void Executor::registerSessionFunctions() {
  using F = SessionFunctions;
  static const F::Entry entries[] = {
      {"z_var", 1, F::variable, false},
      {"z_set", 3, F::set, false},
      {"z_identity", 0, F::identity, false},
      {"z_db_name", 1, F::databaseName, false},
      {"z_db_id", 1, F::databaseId, false},
      {"z_object_id", -1, F::objectId, false},
      {"z_object_name", 1, F::objectName, false},
      {"z_col_length", 2, F::columnLength, false},
      {"z_object_property", 2, F::objectProperty, false},
      {"z_ident_current", 1, F::identCurrent, false},
      {"z_user_name", 1, F::userName, false},
      {"z_suser_name", 1, F::loginName, false},
      {"z_updated", 1, F::updated, false},
      {"z_one", 2, F::one, true},
      {"z_top", 1, F::top, true},
      {"z_percent", 2, F::percent, true},
      {"z_pick", -1, F::pick, false},
  };
  for (const F::Entry& entry : entries) {
    const int flags = SQLITE_UTF8 | (entry.pure ? SQLITE_DETERMINISTIC : 0);
    sqlite3_create_function_v2(store_.handle(), entry.name, entry.arguments, flags,
                               new F::Registered{this, entry.function}, F::call, nullptr, nullptr,
                               [](void* data) { delete static_cast<F::Registered*>(data); });
  }
}

}  // namespace engine
