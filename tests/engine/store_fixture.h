// A fresh data folder with one server, and statements run on the storage side alone.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>

#include "engine/catalog/sqlite_util.h"
#include "engine/execute/definition.h"
#include "engine/language/parser.h"
#include "engine/server.h"
#include "support/temp_folder.h"

namespace engine::test {

using support::TempFolder;

// One session of the storage side: definitions through runDefinition, rows through SQLite.
class Storing {
 public:
  explicit Storing(Server& server, std::string database = "master") : store(server.sharedInstance()) {
    context.database = std::move(database);
    if (context.database != "master") use(context.database);
  }

  void use(const std::string& database) {
    store.beginStatement();
    store.useDatabase(database);
    store.endStatement();
    context.database = database;
  }
  void define(const std::string& text) {
    const Batch batch = parseBatch(text);
    for (const auto& statement : batch.statements) {
      store.beginStatement();
      struct End {
        Store& store;
        ~End() { store.endStatement(); }
      } end{store};
      runDefinition(store, context, *statement, {{"a", {TypeId::Int, 0, 0, 0}, true}});
    }
  }
  // The number of the error, 0 when there was none.
  int errorOf(const std::string& text) {
    try {
      define(text);
    } catch (const Error& error) {
      lastError = error.what();
      return error.number();
    }
    return 0;
  }
  // "@." stands for the current database.
  void run(const std::string& sql) { lite::exec(store.handle(), at(sql)); }
  // All values of the first column, joined by '|'.
  std::string values(const std::string& sql) {
    lite::Stmt rows(store.handle(), at(sql));
    std::string all;
    while (rows.step())
      all += (all.empty() ? "" : "|") + (rows.isNull(0) ? std::string("NULL") : rows.text(0));
    return all;
  }
  const TableInfo& table(const std::string& name) {
    store.beginStatement();
    catalog = store.catalog(context.database);
    store.endStatement();
    const TableInfo* found = catalog->table(name);
    if (!found) throw std::runtime_error("no table " + name);
    return *found;
  }
  std::string at(std::string sql) {
    const std::string alias = store.attach(context.database);
    for (auto place = sql.find("@."); place != std::string::npos; place = sql.find("@."))
      sql.replace(place, 1, alias);
    return sql;
  }

  Store store;
  SessionContext context;
  std::shared_ptr<const DatabaseCatalog> catalog;
  std::string lastError;
};

// A session of another process on the same folder.
class OtherProcess {
 public:
  // Returns when the process has done `first` in the database.
  OtherProcess(const Server& server, const std::string& database, const std::function<void(Storing&)>& first,
               const std::function<bool(Storing&)>& last = {}) {
    int ready[2], leave[2];
    if (::pipe(ready) != 0 || ::pipe(leave) != 0) throw std::runtime_error("no pipe");
    child_ = ::fork();
    if (child_ == 0) {
      try {
        char byte = 'x';
        auto own = Server::open(server.folder());
        Storing session(*own, database);
        first(session);
        if (::write(ready[1], &byte, 1) != 1 || ::read(leave[0], &byte, 1) != 1) ::_exit(2);
        ::_exit(!last || last(session) ? 0 : 3);
      } catch (const std::exception&) {
        ::_exit(4);
      }
    }
    ::close(ready[1]);
    ::close(leave[0]);
    leave_ = leave[1];
    char byte = 0;
    ready_ = ::read(ready[0], &byte, 1) == 1;
    ::close(ready[0]);
  }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  ~OtherProcess() {
    if (child_ > 0) end();
  }

  bool ready() const { return ready_; }
  // Lets it go on to `last`, which ends it: 0 when that was true.
  int end() {
    const bool told = ::write(leave_, "x", 1) == 1;
    ::close(leave_);
    int status = 1;
    ::waitpid(child_, &status, 0);
    child_ = 0;
    return told ? status : -1;
  }

 private:
  pid_t child_ = 0;
  int leave_ = -1;
  bool ready_ = false;
};

class StoreTest : public ::testing::Test {
 protected:
  static constexpr const char* password = "Parola1";
  TempFolder folder;
  std::shared_ptr<Server> server = Server::create(folder.path / "veri", "sa", password);
  std::filesystem::path file(const std::string& name) const { return server->folder() / name; }
};

inline int errorNumber(const std::function<void()>& action, std::string* text = nullptr) {
  try {
    action();
  } catch (const Error& error) {
    if (text) *text = error.what();
    return error.number();
  }
  return 0;
}

inline std::string readAll(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline void writeAll(const std::filesystem::path& path, const std::string& content) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

}  // namespace engine::test
