// What the procedures of the protocol do: statements with parameters, prepared statements, cursors.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tds/allowance.h"
#include "tds/answer.h"
#include "tds/cursors.h"
#include "tds/rpc.h"

namespace tds {

// The calls of one connection.
class Procedures {
 public:
  // `most`: bytes that prepared statements and cursors may take together; 701 beyond.
  Procedures(engine::Session& session, std::size_t most)
      : session_(session), allowance_(most), cursors_(session, allowance_) {}

  // One call, to the end of its DONEPROC. Throws what ends the batch; the caller tells that.
  void run(const Call& call, Answer& answer);
  // What was prepared is gone.
  void reset() {
    prepared_.clear();
    cursors_.reset();
  }

 private:
  struct Prepared {
    std::string text;
    std::vector<Declared> parameters;
    Share memory;
  };

  void runNamed(const Call& call, Answer& answer);
  void executeSql(const Call& call, Answer& answer);
  std::int32_t prepare(const Call& call);
  void prepareOnly(const Call& call, Answer& answer);
  void prepareAndExecute(const Call& call, Answer& answer);
  void execute(const Call& call, Answer& answer);
  void unprepare(const Call& call);
  void runPrepared(const std::string& text, const std::vector<Declared>& declared, const Call& call,
                   std::size_t from, Answer& answer, std::optional<std::int32_t> handle);
  const Prepared& preparedAt(const Call& call) const;

  engine::Session& session_;
  Allowance allowance_;
  Cursors cursors_;
  std::map<std::int32_t, Prepared> prepared_;
  std::int32_t lastHandle_ = 0;
};

}  // namespace tds
