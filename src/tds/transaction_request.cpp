#include "tds/transaction_request.h"

#include <algorithm>

#include "tds/bytes.h"

namespace tds {

namespace {

enum class Request : std::uint16_t {
  Address = 0,
  Propagate = 1,
  Begin = 5,
  Promote = 6,
  Commit = 7,
  Rollback = 8,
  Save = 9
};

// A name goes into a statement in brackets.
std::string bracketed(std::string name) {
  for (auto at = name.find(']'); at != std::string::npos; at = name.find(']', at + 2)) name.insert(at, "]");
  return name.empty() ? name : " [" + name + "]";
}

std::string isolation(std::uint8_t level) {
  static constexpr const char* levels[] = {
      "", "READ UNCOMMITTED", "READ COMMITTED", "REPEATABLE READ", "SERIALIZABLE", "SNAPSHOT"};
  if (level >= std::size(levels)) throw ProtocolError("an unknown level of isolation");
  return level == 0 ? std::string() : std::string("SET TRANSACTION ISOLATION LEVEL ") + levels[level] + "; ";
}

// A commit or rollback may begin the next transaction at once.
std::string next(ByteReader& from) {
  if (from.atEnd() || (from.u8() & 1) == 0) return {};
  const std::string level = isolation(from.u8());
  return "; " + level + "BEGIN TRANSACTION" + bracketed(from.text(1));
}

}  // namespace

void runTransactionRequest(std::string_view data, engine::Session& session, Answer& answer) {
  ByteReader from(data);
  const auto request = static_cast<Request>(from.u16());
  // The names that clients give are for savepoints; an outer transaction has none that is asked for again.
  switch (request) {
    case Request::Begin: {
      const std::string level = isolation(from.u8());
      return session.execute(level + "BEGIN TRANSACTION" + bracketed(from.text(1)), answer);
    }
    case Request::Commit:
      from.text(1);
      return session.execute("COMMIT TRANSACTION" + next(from), answer);
    case Request::Rollback: {
      const std::string name = bracketed(from.text(1));
      return session.execute("ROLLBACK TRANSACTION" + name + next(from), answer);
    }
    case Request::Save:
      return session.execute("SAVE TRANSACTION" + bracketed(from.text(1)), answer);
    default:
      throw engine::Error(8009, "Distributed transactions are not supported by the embedded server.");
  }
}

}  // namespace tds
