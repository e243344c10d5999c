#include "tds/tokens.h"

#include "tds/bytes.h"
#include "tds/value_writer.h"

namespace tds {

namespace {

// A token that tells its length first.
void putSized(std::string& to, std::uint8_t token, const std::string& inside) {
  putNumber(to, token, 1);
  putNumber(to, inside.size(), 2);
  to += inside;
}

}  // namespace

void putMessage(std::string& to, const engine::Error& message, bool failure, const std::string& server,
                Version version) {
  std::string inside;
  putNumber(inside, static_cast<std::uint32_t>(message.number()), 4);
  putNumber(inside, static_cast<std::uint8_t>(message.state()), 1);
  putNumber(inside, static_cast<std::uint8_t>(message.severity()), 1);
  putText(inside, message.what(), 2);
  putText(inside, server, 1);
  putText(inside, message.procedure(), 1);
  putNumber(inside, static_cast<std::uint32_t>(message.line()), version >= Version::V72 ? 4 : 2);
  putSized(to, failure ? token::error : token::info, inside);
}

void putDone(std::string& to, std::uint8_t token, std::uint16_t status, std::uint16_t command,
             std::int64_t rows, Version version) {
  putNumber(to, token, 1);
  putNumber(to, status, 2);
  putNumber(to, command, 2);
  putNumber(to, static_cast<std::uint64_t>(rows), version >= Version::V72 ? 8 : 4);
}

void putEnvironment(std::string& to, Environment what, std::string_view now, std::string_view before) {
  std::string inside(1, static_cast<char>(what));
  putText(inside, now, 1);
  putText(inside, before, 1);
  putSized(to, token::environment, inside);
}

void putEnvironmentBytes(std::string& to, Environment what, std::string_view now, std::string_view before) {
  std::string inside(1, static_cast<char>(what));
  putNumber(inside, now.size(), 1);
  inside += now;
  putNumber(inside, before.size(), 1);
  inside += before;
  putSized(to, token::environment, inside);
}

std::uint16_t commandNumber(engine::Command command) {
  using engine::Command;
  switch (command) {
    case Command::Insert:
      return 0xC3;
    case Command::Update:
      return 0xC5;
    case Command::Delete:
      return 0xC4;
    case Command::SelectInto:
      return 0xC2;
    case Command::CreateTable:
      return 0xC6;
    case Command::AlterTable:
      return 0xD8;
    case Command::DropTable:
      return 0xC7;
    case Command::CreateIndex:
      return 0xC8;
    case Command::DropIndex:
      return 0xC9;
    case Command::CreateDatabase:
      return 0xCB;
    case Command::DropDatabase:
      return 0xCC;
    case Command::CreateView:
      return 0xCF;
    case Command::DropView:
      return 0xD0;
    case Command::CreateTrigger:
      return 0xDD;
    case Command::DropTrigger:
      return 0xE1;
    case Command::CreateProcedure:
      return 0xDE;
    case Command::DropProcedure:
      return 0xDF;
  }
  return commandOther;
}

void putLoginAck(std::string& to, std::uint32_t version) {
  std::string inside(1, '\1');
  for (int shift = 24; shift >= 0; shift -= 8) inside += static_cast<char>(version >> shift & 0xFF);
  putText(inside, productName, 1);
  inside += {static_cast<char>(productMajor), static_cast<char>(productMinor),
             static_cast<char>(productBuild >> 8), static_cast<char>(productBuild & 0xFF)};
  putSized(to, token::loginAck, inside);
}

void putReturnStatus(std::string& to, std::int32_t status) {
  putNumber(to, token::returnStatus, 1);
  putNumber(to, static_cast<std::uint32_t>(status), 4);
}

void putReturnValue(std::string& to, std::uint16_t ordinal, const std::string& name, const engine::Type& type,
                    const engine::Datum& value, Version version) {
  constexpr std::uint8_t outputParameter = 1;
  constexpr std::uint16_t nullable = 1;
  putNumber(to, token::returnValue, 1);
  putNumber(to, ordinal, 2);
  putText(to, name, 1);
  putNumber(to, outputParameter, 1);
  putNumber(to, 0, version >= Version::V72 ? 4 : 2);
  putNumber(to, nullable, 2);
  writeType(to, type);
  writeValue(to, type, value);
}

void putOrder(std::string& to, const std::vector<std::uint16_t>& columns) {
  putNumber(to, token::order, 1);
  putNumber(to, 2 * columns.size(), 2);
  for (const std::uint16_t column : columns) putNumber(to, column, 2);
}

}  // namespace tds
