// A fresh data folder with one server, and statements run on the storage side alone.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "engine/parser.h"
#include "engine/server.h"
#include "engine/sqlite_util.h"
#include "engine/storage.h"
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
