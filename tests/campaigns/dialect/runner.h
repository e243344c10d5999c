// The server under test: a folder of its own, one session, results as plain texts.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "campaigns/dialect/exact.h"

namespace campaign {

struct Column {
  std::string name;
  Shape shape;
  std::string type;  // as the server calls it
};

struct Result {
  int error = 0;
  std::string message;
  std::vector<Column> columns;                 // of the last result set
  std::vector<std::vector<std::string>> rows;  // as Value::shown() writes them

  // One row a line, cells with blanks between; the error when there is one.
  std::string text() const;
};

class Runner {
 public:
  Runner();
  ~Runner();
  Result run(const std::string& batch);

 private:
  struct Server;
  std::filesystem::path folder_;
  std::unique_ptr<Server> server_;
};

// What a campaign has seen.
struct Report {
  std::int64_t cases = 0;
  std::vector<std::string> differences;

  bool full() const { return differences.size() >= 20; }
  void differ(const std::string& what, const std::string& expected, const std::string& found);
};

}  // namespace campaign
