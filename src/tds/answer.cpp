#include "tds/answer.h"

#include "tds/bytes.h"

namespace tds {

namespace {

constexpr int databaseChanged = 5701;

}  // namespace

void Answer::remember() {
  database_ = session_.database();
  transactions_ = session_.openTransactions();
}

void Answer::flushDone() {
  if (!waiting_) return;
  const Done done = *waiting_;
  waiting_.reset();
  if (done.silent) return;
  putDone(writer_.tokens(), done.token, done.status | doneMore, done.command, done.rows, version_);
}

std::string& Answer::tokens() {
  flushDone();
  return writer_.tokens();
}

std::string Answer::transactionName(std::uint64_t number) {
  std::string name;
  putNumber(name, number, 8);
  return name;
}

void Answer::tellState() {
  if (session_.database() != database_) {
    const std::string before = std::exchange(database_, session_.database());
    putEnvironment(tokens(), Environment::Database, database_, before);
    putMessage(tokens(),
               engine::Error(databaseChanged, "Changed database context to '" + database_ + "'.", 0, 2),
               false, server_, version_);
  }
  const int before = std::exchange(transactions_, session_.openTransactions());
  if ((before > 0) == (transactions_ > 0) || version_ < Version::V72) return;
  // There is one transaction at a time: it always has the same name.
  const std::string name = transactionName(1);
  if (transactions_ > 0)
    putEnvironmentBytes(tokens(), Environment::Begin, name, {});
  else
    putEnvironmentBytes(tokens(), session_.committed() ? Environment::Commit : Environment::Rollback, {},
                        name);
}

void Answer::statementEnd(std::uint16_t status, std::uint16_t command, std::int64_t rows) {
  tellState();
  flushDone();
  if (session_.openTransactions() > 0) status |= doneInTransaction;
  waiting_ = {inProcedure_ ? token::doneInProcedure : token::done, status, command, rows};
  writer_.sendWhenFull();
}

void Answer::fail(const engine::Error& error) {
  failed_ = true;
  tellState();
  putMessage(tokens(), error, true, server_, version_);
  statementEnd(doneError, commandOther, 0);
}

void Answer::endProcedure() {
  tellState();
  flushDone();
  inProcedure_ = false;
  waiting_ = {token::doneProcedure, static_cast<std::uint16_t>(failed_ ? doneError : 0), commandExecute, 0};
  failed_ = false;
}

void Answer::end() {
  tellState();
  if (!waiting_) {
    const std::uint16_t status = session_.openTransactions() > 0 ? doneInTransaction : 0;
    waiting_ = {token::done, status, commandOther, 0};
  }
  const Done done = *waiting_;
  waiting_.reset();
  putDone(writer_.tokens(), done.token, done.status, done.command, done.rows, version_);
  writer_.end();
}

void Answer::onRows(const engine::ResultSet& rows, bool first) {
  if (first) {
    tellState();
    rows_.emplace(rows.columns(), version_);
    rows_->describe(tokens());
  }
  std::string& to = writer_.tokens();
  for (std::int64_t row = 0; row < rows.rowCount(); ++row) {
    rows_->row(to, rows, row);
    writer_.sendWhenFull();
  }
}

void Answer::onRowsEnd(std::int64_t rows, bool counted) {
  rows_.reset();
  statementEnd(counted ? doneCount : 0, commandSelect, rows);
}

void Answer::onResultSet(engine::ResultSet&& set) {
  onRows(set, true);
  onRowsEnd(set.rowCount(), true);
}

void Answer::onRowCount(std::int64_t rows) {
  statementEnd(doneCount, commandOther, rows);
}

// A change under NOCOUNT is told by the end of its batch alone; a loop of many would send nothing else.
void Answer::onCommand(engine::Command command, std::int64_t rows, bool counted) {
  using engine::Command;
  const bool changesRows = command == Command::Insert || command == Command::Update ||
                           command == Command::Delete || command == Command::SelectInto;
  const bool silent = !counted && (changesRows || inProcedure_);
  if (silent && inProcedure_) return;
  statementEnd(counted ? doneCount : 0, commandNumber(command), counted ? rows : 0);
  waiting_->silent = silent;
}

void Answer::onMessage(int number, const std::string& text) {
  onInfo(engine::Error(number, text, 0));
}

void Answer::onInfo(const engine::Error& message) {
  tellState();
  putMessage(tokens(), message, false, server_, version_);
  writer_.sendWhenFull();
}

bool Answer::onError(const engine::Error& error) {
  rows_.reset();
  fail(error);
  return true;
}

}  // namespace tds
