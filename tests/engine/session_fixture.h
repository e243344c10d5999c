// A server in a temporary folder; runs batches and prints what comes back: a line per row with tabs
// between the cells, `# text` per message, `!number` for the error that ends the batch.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engine/server.h"
#include "engine/value/convert.h"

namespace engine::test {

class PrintingSink : public ResultSink {
 public:
  void onResultSet(ResultSet&& set) override {
    for (std::int64_t row = 0; row < set.rowCount(); ++row) {
      for (std::size_t i = 0; i < set.columns().size(); ++i) {
        if (i > 0) text += '\t';
        const int column = static_cast<int>(i);
        text += set.isNull(row, column) ? "NULL" : displayText(set.datum(row, column), set.columns()[i].type);
      }
      text += '\n';
    }
    columns = set.columns();
  }
  void onRowCount(std::int64_t rows) override { rowCounts.push_back(rows); }
  void onMessage(int, const std::string& message) override { text += "# " + message + '\n'; }

  std::string text;
  std::vector<ResultColumn> columns;
  std::vector<std::int64_t> rowCounts;
};

// Batches in a row on one fresh server, each with what it prints.
struct Step {
  std::string batch, printed;
};

class SessionTest : public testing::Test {
 protected:
  SessionTest() {
    static int count = 0;
    folder_ = std::filesystem::temp_directory_path() /
              ("zembera-session-" + std::to_string(getpid()) + "-" + std::to_string(++count));
    server = Server::create(folder_, "sa", "gizli");
    session = open();
    EXPECT_EQ(run("CREATE DATABASE FIRMA"), "");
    EXPECT_EQ(run("USE FIRMA"), "");
  }
  ~SessionTest() override {
    session.reset();
    server.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::unique_ptr<Session> open(const std::string& database = "") {
    return std::make_unique<Session>(server, "sa", "gizli", database);
  }
  std::string run(const std::string& batch) { return run(*session, batch); }
  std::string run(Session& on, const std::string& batch) {
    last = PrintingSink();
    try {
      on.execute(batch, last);
    } catch (const Error& error) {
      last.text += "!" + std::to_string(error.number()) + '\n';
      message = error.what();
    }
    return last.text;
  }

  void follow(const std::vector<Step>& steps) {
    for (const Step& step : steps) EXPECT_EQ(run(step.batch), step.printed) << step.batch << "\n" << message;
  }
  // Single expressions with the text of their value.
  void values(const std::vector<Step>& expressions) {
    for (const Step& step : expressions)
      EXPECT_EQ(run("SELECT " + step.batch), step.printed + "\n") << step.batch << "\n" << message;
  }

  std::filesystem::path folder_;
  std::shared_ptr<Server> server;
  std::unique_ptr<Session> session;
  PrintingSink last;
  std::string message;  // of the last error
};

}  // namespace engine::test
