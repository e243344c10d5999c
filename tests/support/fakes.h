// Surroundings for tests of procedures: boxes with scripted answers, a clock that stands, a registry in
// memory, a progress that records, and a server whose answers are scripted by statement text.
#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "db/connection.h"
#include "session/oturum.h"
#include "session/ports.h"

namespace support {

class FakeBoxes : public session::Boxes {
 public:
  struct Shown {
    std::string text;
    session::Icon icon = session::Icon::None;
    std::string title;
    bool question = false;
  };

  void message(const std::string& text, session::Icon icon, std::string_view title) override {
    shown.push_back({text, icon, std::string(title), false});
    if (onMessage) onMessage(text);
  }
  // Questions without a scripted answer are answered No, as the box's default is.
  bool ask(const std::string& text, session::Icon icon, std::string_view title) override {
    shown.push_back({text, icon, std::string(title), true});
    if (answers.empty()) return false;
    const bool answer = answers.front();
    answers.pop_front();
    return answer;
  }

  std::vector<std::string> texts() const {
    std::vector<std::string> out;
    for (const auto& box : shown) out.push_back(box.text);
    return out;
  }
  std::string last() const { return shown.empty() ? std::string() : shown.back().text; }

  bool waits() const override { return person; }

  bool person = true;  // acknowledges what is shown
  std::deque<bool> answers;
  std::vector<Shown> shown;
  std::function<void(const std::string&)> onMessage;  // what "happens" while a box is up
};

class FakeProgress : public session::Progress {
 public:
  void text(const std::string& text) override { texts.push_back(text); }
  void step(std::int64_t value, std::int64_t maximum) override { steps.emplace_back(value, maximum); }
  void whole(std::int64_t value, std::int64_t maximum) override { wholes.emplace_back(value, maximum); }
  void pump() override {
    ++pumped;
    if (onPump) onPump();
  }
  bool cancelled() override { return asked++ == cancelAt; }

  int asked = 0, cancelAt = -1;  // Vazgeç is pressed before the question of that number, from 0
  std::vector<std::string> texts;
  std::vector<std::pair<std::int64_t, std::int64_t>> steps, wholes;
  int pumped = 0;
  std::function<void()> onPump;
};

class FakeClock : public session::Clock {
 public:
  db::DateTime now() const override { return time; }
  db::DateTime time{2012, 3, 14, 15, 9, 26, 0};
};

class FakePlatform : public session::Platform {
 public:
  std::string registryRead(std::string_view root, std::string_view key, std::string_view value) override {
    const auto found = registry.find(path(root, key) + "\\" + std::string(value));
    return found == registry.end() ? std::string() : found->second;
  }
  void registryWrite(std::string_view root, std::string_view key, std::string_view value,
                     std::string_view text) override {
    if (readOnly) return;
    registry[path(root, key) + "\\" + std::string(value)] = text;
    keys.insert(path(root, key));
  }
  bool registryKeyIsNew(std::string_view root, std::string_view key) override {
    return !keys.contains(path(root, key));
  }
  void restart() override { ++restarts; }
  std::filesystem::path programFolder() const override { return folder; }

  static std::string path(std::string_view root, std::string_view key) {
    return std::string(root) + "\\" + std::string(key);
  }

  std::map<std::string, std::string> registry;  // ROOT\KEY\VALUE
  std::set<std::string> keys;                   // ROOT\KEY
  int restarts = 0;
  bool readOnly = false;  // as a settings file that may not be written
  std::filesystem::path folder = ".";
};

class FakeRows : public db::Rows {
 public:
  FakeRows(std::vector<db::FieldInfo> fields, std::vector<std::vector<db::Value>> rows)
      : fields_(std::move(fields)), rows_(std::move(rows)) {}

  const std::vector<db::FieldInfo>& fields() const override { return fields_; }
  std::int64_t count() const override { return static_cast<std::int64_t>(rows_.size()); }
  db::Value value(std::int64_t row, int column) const override {
    return rows_.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
  }

 private:
  std::vector<db::FieldInfo> fields_;
  std::vector<std::vector<db::Value>> rows_;
};

// What every connection of one factory talks to.
class FakeServer {
 public:
  struct Table {
    std::vector<db::FieldInfo> fields;
    std::vector<std::vector<db::Value>> rows;
  };
  struct Answer {
    std::vector<Table> tables;
    std::vector<std::int64_t> counts;
    std::vector<std::string> messages;
    std::optional<db::SqlError> error;
    int times = -1;  // how often it is given; -1 without end
  };

  // Answers to statements that contain `part`; the latest scripted wins. Without any an answer is empty.
  void rows(std::string part, std::vector<std::string> names, std::vector<std::vector<db::Value>> values,
            int times = -1) {
    std::vector<db::FieldInfo> fields;
    for (auto& name : names) {
      db::FieldInfo field;
      field.name = std::move(name);
      fields.push_back(std::move(field));
    }
    table(std::move(part), {std::move(fields), std::move(values)}, times);
  }
  void table(std::string part, Table table, int times = -1) {
    Answer answer;
    answer.tables.push_back(std::move(table));
    answer.times = times;
    script.emplace_back(std::move(part), std::move(answer));
  }
  void count(std::string part, std::int64_t rows) {
    Answer answer;
    answer.counts.push_back(rows);
    script.emplace_back(std::move(part), std::move(answer));
  }
  void fail(std::string part, db::SqlError error, int times = -1) {
    Answer answer;
    answer.error = std::move(error);
    answer.times = times;
    script.emplace_back(std::move(part), std::move(answer));
  }
  // The next openings fail so, in order; nothing lets one through.
  void failOpening(db::SqlError error) { openErrors.emplace_back(std::move(error)); }

  void run(std::string_view batch, db::BatchSink& sink) {
    if (beforeRun) beforeRun(batch);
    statements.emplace_back(batch);
    for (auto entry = script.rbegin(); entry != script.rend(); ++entry) {
      Answer& answer = entry->second;
      if (answer.times == 0 || batch.find(entry->first) == std::string_view::npos) continue;
      if (answer.times > 0) --answer.times;
      for (const auto& table : answer.tables) {
        sink.onRows(std::make_unique<FakeRows>(table.fields, table.rows));
      }
      for (const auto rows : answer.counts) sink.onRowCount(rows);
      for (const auto& text : answer.messages) sink.onMessage(text);
      if (answer.error) throw *answer.error;
      return;
    }
  }

  std::vector<std::pair<std::string, Answer>> script;
  std::deque<std::optional<db::SqlError>> openErrors;
  std::vector<db::ConnectionParts> openings;            // also those that failed
  std::vector<std::string> statements;                  // of all connections
  std::deque<std::vector<std::string>> connectionLogs;  // of each, in the order made: "DATABASE> statement"
  std::function<void(std::string_view)> beforeRun;      // a slow server
  std::vector<db::TableColumn> columns;                 // what tableColumns() tells of every table
};

class FakeConnection : public db::Connection {
 public:
  explicit FakeConnection(FakeServer& server) : server_(server), log_(server.connectionLogs.emplace_back()) {}

  void open(const db::ConnectionParts& parts) override {
    server_.openings.push_back(parts);
    if (!server_.openErrors.empty()) {
      const auto error = server_.openErrors.front();
      server_.openErrors.pop_front();
      if (error) throw *error;
    }
    parts_ = parts;
    state_ = db::State::Open;
  }
  void close() override { state_ = db::State::Closed; }
  db::State state() const override { return state_; }
  std::string connectionText() const override {
    return "fake:" + parts_.server + "/" + parts_.database + (parts_.integrated ? "/integrated" : "");
  }
  const db::ConnectionParts& parts() const override { return parts_; }
  void run(std::string_view batch, db::BatchSink& sink) override {
    log_.push_back(parts_.database + "> " + std::string(batch));
    server_.run(batch, sink);
  }
  std::vector<db::TableColumn> tableColumns(const std::string&, const std::string&) override {
    return server_.columns;
  }

 private:
  FakeServer& server_;
  std::vector<std::string>& log_;
  db::ConnectionParts parts_;
  db::State state_ = db::State::Closed;
};

class FakeFactory : public db::ConnectionFactory {
 public:
  explicit FakeFactory(FakeServer& server) : server_(server) {}
  std::unique_ptr<db::Connection> make(const std::string&) override {
    return std::make_unique<FakeConnection>(server_);
  }

 private:
  FakeServer& server_;
};

// A session record with every port filled.
struct FakeSurroundings {
  FakeServer server;
  FakeFactory factory{server};
  FakeBoxes boxes;
  FakeProgress progress;
  FakeClock clock;
  FakePlatform platform;
  session::Oturum oturum;

  FakeSurroundings() {
    oturum.surucu = &factory;
    oturum.kutular = &boxes;
    oturum.ilerleme = &progress;
    oturum.saat = &clock;
    oturum.platform = &platform;
    oturum.Server_Adi = "SUNUCU";
    oturum.SQL_Login = "sa";
    oturum.SQL_Sifre = "gizli";
  }
};

}  // namespace support
