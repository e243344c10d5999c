// Calls of procedures as clients send them, several in one message.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/server.h"
#include "tds/login.h"
#include "tds/value_reader.h"

namespace tds {

// Procedures that are called by a number instead of their name.
enum class Procedure : std::uint16_t {
  Named = 0,
  Cursor = 1,
  CursorOpen = 2,
  CursorPrepare = 3,
  CursorExecute = 4,
  CursorPrepExec = 5,
  CursorUnprepare = 6,
  CursorFetch = 7,
  CursorOption = 8,
  CursorClose = 9,
  ExecuteSql = 10,
  Prepare = 11,
  Execute = 12,
  PrepExec = 13,
  PrepExecRpc = 14,
  Unprepare = 15,
};

struct CallParameter {
  std::string name;     // with @; empty by position
  bool output = false;  // its value is wanted back
  bool byDefault = false;
  engine::Type type;
  engine::Datum value;
};

struct Call {
  Procedure procedure = Procedure::Named;
  std::string name;  // as sent; the number's own name when called by number
  bool noMetadata = false;
  std::vector<CallParameter> parameters;

  // The value of a parameter by position as a number or text; empty when it is missing or NULL.
  std::optional<std::int64_t> number(std::size_t index) const;
  std::string text(std::size_t index) const;
};

// Of one call, as a SQL Server has it.
inline constexpr std::size_t mostParameters = 2100;

// `data` behind its headers. Throws ProtocolError, and Error for types that the server does not have and for
// too many parameters (8003).
std::vector<Call> readCalls(std::string_view data, Version version);

// "@P1 int, @P2 varchar(20) OUTPUT" as variables without values. Throws Error 2715, 102.
struct Declared {
  engine::Parameter parameter;
  bool output = false;
};
std::vector<Declared> parseDeclarations(std::string_view text);
// Gives the variables their values, by name where one is sent, in the type that is declared; 8144, 8145,
// 8178.
std::vector<engine::Parameter> bindValues(const std::vector<Declared>& declared,
                                          const std::vector<CallParameter>& values, std::size_t from);

}  // namespace tds
