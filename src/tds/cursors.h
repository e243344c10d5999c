// Server cursors, as drivers open them for recordsets that are scrolled or changed row by row.
//
// The rows are read once, when the cursor opens, and kept as they go to the client. One that was changed
// through the cursor is read anew by its key before the next fetch.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tds/allowance.h"
#include "tds/answer.h"
#include "tds/rpc.h"

namespace tds {

class Cursors {
 public:
  Cursors(engine::Session& session, Allowance& allowance) : session_(session), allowance_(allowance) {}

  void open(const Call& call, Answer& answer);
  void fetch(const Call& call, Answer& answer);
  void change(const Call& call, Answer& answer);  // sp_cursor
  void option(const Call& call, Answer& answer);
  void close(const Call& call, Answer& answer);
  void reset() { cursors_.clear(); }

 private:
  struct Row {
    std::string bytes;  // its ROW token, but for the status behind the columns
    std::vector<engine::Datum> key;
    bool missing = false;  // deleted since the cursor was opened
  };
  struct Cursor {
    std::string text;
    std::vector<engine::Parameter> parameters;
    std::vector<engine::ResultColumn> columns;
    std::vector<std::size_t> keys;  // places of the key's columns; empty: the rows cannot be changed
    std::vector<Row> rows;
    std::int64_t first = 0, last = 0;  // of the rows that were fetched last, from 1; 0 before the first
    bool stale = false;
    Share memory;
  };
  class Reader;
  struct Change;

  Cursor& at(const Call& call);
  void refresh(Cursor& cursor);
  void move(Cursor& cursor, std::int64_t kind, std::int64_t row, std::int64_t count) const;
  void sendRows(const Cursor& cursor, Answer& answer) const;
  void changeRow(Cursor& cursor, const Row& row, const Call& call, bool update, Answer& answer);
  void insertRow(const Cursor& cursor, const Call& call, Answer& answer);

  engine::Session& session_;
  Allowance& allowance_;
  std::map<std::int32_t, Cursor> cursors_;
  std::int32_t lastHandle_ = 180150000;  // as large as drivers expect them; told apart from statements
};

}  // namespace tds
