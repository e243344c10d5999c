// What the campaigns share. Each is a program that a person runs for as long as he likes:
//
//   campaign_NAME [rounds] [seed]
//
// It prints what it finds, with the seed of the round, and ends with 1 when that was anything.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>

#include "engine/server.h"

namespace campaign {

namespace fs = std::filesystem;

constexpr const char* password = "Parola1";

struct Arguments {
  int rounds;
  unsigned seed;
};
inline Arguments arguments(int count, char** values, int rounds) {
  return {count > 1 ? std::atoi(values[1]) : rounds,
          count > 2 ? static_cast<unsigned>(std::atoll(values[2])) : 20120131U};
}

class Folder {
 public:
  Folder() {
    std::string name = (fs::temp_directory_path() / "zembera-campaign-XXXXXX").string();
    if (!::mkdtemp(name.data())) std::abort();
    path = name;
  }
  ~Folder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  fs::path path;
};

inline std::string readAll(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}
inline void writeAll(const fs::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

// Cells with tabs, rows with line ends; errors as !number.
class Texts : public engine::ResultSink {
 public:
  void onResultSet(engine::ResultSet&& set) override {
    for (std::int64_t row = 0; row < set.rowCount(); ++row)
      for (std::size_t column = 0; column < set.columns().size(); ++column) {
        const int at = static_cast<int>(column);
        text += set.isNull(row, at) ? "NULL" : displayText(set.datum(row, at), set.columns()[column].type);
        text += column + 1 == set.columns().size() ? '\n' : '\t';
      }
  }
  void onRowCount(std::int64_t) override {}
  void onMessage(int number, const std::string& message) override {
    messages += std::to_string(number) + " " + message + "\n";
  }
  std::string text, messages;
};

struct Answer {
  std::string text, messages, error;
  int number = 0;
};
inline Answer run(engine::Session& session, const std::string& batch) {
  Texts sink;
  Answer answer;
  try {
    session.execute(batch, sink);
  } catch (const engine::Error& error) {
    answer.number = error.number();
    answer.error = error.what();
  }
  answer.text = std::move(sink.text);
  answer.messages = std::move(sink.messages);
  return answer;
}

inline std::unique_ptr<engine::Session> open(const fs::path& folder, const std::string& database) {
  auto server = engine::Server::open(folder);
  if (server->serviceState() == engine::ServiceState::Stopped) server->start();
  return std::make_unique<engine::Session>(server, "sa", password, database);
}

}  // namespace campaign
