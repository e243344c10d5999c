// The tokens of an answer besides columns and rows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/server.h"
#include "tds/login.h"
#include "tds/types.h"

namespace tds {

// What the server says of itself. Drivers tell by the name which dialect they speak to.
inline constexpr std::string_view productName = "Microsoft SQL Server";
inline constexpr std::uint8_t productMajor = 8, productMinor = 0;
inline constexpr std::uint16_t productBuild = 2012;

inline constexpr std::uint16_t doneMore = 0x01, doneError = 0x02, doneInTransaction = 0x04, doneCount = 0x10,
                               doneAttention = 0x20;
// What a DONE tells of its statement.
inline constexpr std::uint16_t commandNone = 0, commandSelect = 0xC1, commandExecute = 0xE0,
                               commandOther = 0xFD;
std::uint16_t commandNumber(engine::Command command);

enum class Environment : std::uint8_t {
  Database = 1,
  Language = 2,
  PacketSize = 4,
  Collation = 7,
  Begin = 8,
  Commit = 9,
  Rollback = 10,
  Reset = 18,
};

// ERROR (`failure`) or INFO.
void putMessage(std::string& to, const engine::Error& message, bool failure, const std::string& server,
                Version version);
void putDone(std::string& to, std::uint8_t token, std::uint16_t status, std::uint16_t command,
             std::int64_t rows, Version version);
void putEnvironment(std::string& to, Environment what, std::string_view now, std::string_view before);
// The same with bytes instead of texts.
void putEnvironmentBytes(std::string& to, Environment what, std::string_view now, std::string_view before);
void putLoginAck(std::string& to, std::uint32_t version);
void putReturnStatus(std::string& to, std::int32_t status);
void putReturnValue(std::string& to, std::uint16_t ordinal, const std::string& name, const engine::Type& type,
                    const engine::Datum& value, Version version);
// ORDER: the result is sorted by these columns, from 1.
void putOrder(std::string& to, const std::vector<std::uint16_t>& columns);

}  // namespace tds
