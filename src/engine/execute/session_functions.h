// SQL functions that need the session, and how they are made known to SQLite.
#pragma once

#include <span>
#include <vector>

#include "engine/execute/executor.h"

namespace engine {

using SessionArguments = std::vector<Datum>;
using SessionFunction = Datum (*)(Executor& executor, const SessionArguments& arguments);

struct SqlEntry {
  const char* name;
  int arguments;  // -1: any number
  SessionFunction function;
  bool pure;
};

void registerEntries(Executor& executor, sqlite3* connection, std::span<const SqlEntry> entries);
// SERVERPROPERTY, OBJECTPROPERTY, OBJECT_NAME and their kin.
std::span<const SqlEntry> propertyFunctions();

}  // namespace engine
