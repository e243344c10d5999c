// What a statement gives back, as tokens.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "engine/server.h"
#include "tds/packet.h"
#include "tds/tokens.h"
#include "tds/value_writer.h"

namespace tds {

// One answer to one message of the client. Every DONE waits until it is known whether something follows.
class Answer : public engine::ResultSink {
 public:
  Answer(PacketWriter& writer, engine::Session& session, Version version, const std::string& server)
      : writer_(writer), session_(session), version_(version), server_(server) {
    remember();
  }

  // Inside a procedure call statements end with DONEINPROC.
  void setInProcedure(bool inside) { inProcedure_ = inside; }
  // An error that ends the batch.
  void fail(const engine::Error& error);
  // The end of a procedure call, of which more may follow in the same message.
  void endProcedure();
  // A statement's end without rows.
  void statementEnd(std::uint16_t status, std::uint16_t command, std::int64_t rows);
  // The last DONE, and everything is sent.
  void end();
  // Tells what the session's database and transaction have become.
  void tellState();
  // The name that the changed transaction has in the protocol.
  static std::string transactionName(std::uint64_t number);

  void sendWhenFull() { writer_.sendWhenFull(); }
  std::string& tokens();  // for what the caller adds itself; a waiting DONE goes before it
  Version version() const { return version_; }
  bool failed() const { return failed_; }

  void onResultSet(engine::ResultSet&& set) override;
  void onRowCount(std::int64_t rows) override;
  void onCommand(engine::Command command, std::int64_t rows, bool counted) override;
  void onMessage(int number, const std::string& text) override;
  void onInfo(const engine::Error& message) override;
  bool onError(const engine::Error& error) override;
  std::int64_t rowsAtATime() const override { return 64; }
  void onRows(const engine::ResultSet& rows, bool first) override;
  void onRowsEnd(std::int64_t rows, bool counted) override;

 private:
  struct Done {
    std::uint8_t token;
    std::uint16_t status, command;
    std::int64_t rows;
    bool silent = false;  // told only when nothing follows it
  };
  void remember();
  void flushDone();

  PacketWriter& writer_;
  engine::Session& session_;
  Version version_;
  const std::string& server_;
  bool inProcedure_ = false, failed_ = false;
  std::optional<Done> waiting_;
  std::optional<RowWriter> rows_;
  std::string database_;
  int transactions_ = 0;
};

}  // namespace tds
