// A data folder with a database FIRMA, looked at from outside between the processes that work on it.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>

#include "engine/function/functions.h"
#include "engine/session_fixture.h"
#include "engine/store/companion.h"
#include "engine/store/file_layer.h"

namespace scenarios {

// `Client`: what runs the batches, made and used like a session.
template <class Client>
class FolderOf : public testing::Test {
 protected:
  static constexpr const char* password = "Parola1";

  FolderOf() {
    std::string name = (std::filesystem::temp_directory_path() / "zembera-scene-XXXXXX").string();
    base_ = ::mkdtemp(name.data());
    folder = base_ / "veri";
    server = engine::Server::create(folder, "sa", password);
    open("master");
    must("CREATE DATABASE FIRMA");
    must("USE FIRMA");
  }
  ~FolderOf() override {
    close();
    std::error_code ignored;
    std::filesystem::remove_all(base_, ignored);
  }

  void open(const std::string& database = "FIRMA") {
    if (!server) server = engine::Server::open(folder);
    if (server->serviceState() == engine::ServiceState::Stopped) {
      EXPECT_TRUE(server->start().empty());
    }
    session = std::make_unique<Client>(server, "sa", password, database);
  }
  void close() {
    session.reset();
    server.reset();
  }

  // What the batch prints; `!number` at its end for an error, whose text is then in `message`.
  std::string run(const std::string& batch) {
    engine::test::PrintingSink sink;
    try {
      session->execute(batch, sink);
    } catch (const engine::Error& error) {
      message = error.what();
      sink.text += "!" + std::to_string(error.number()) + '\n';
    }
    return sink.text;
  }
  void must(const std::string& batch) { ASSERT_EQ(run(batch), "") << batch << " " << message; }
  std::int64_t number(const std::string& query) {
    const std::string printed = run(query);
    EXPECT_EQ(printed.find('!'), std::string::npos) << query << " " << message;
    return std::atoll(printed.c_str());
  }

  std::filesystem::path file(const std::string& name) const { return folder / name; }

  // SQLite's own look at every data file of the folder.
  void expectWhole() const {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().extension() != ".mdf") continue;
      sqlite3* db = nullptr;
      engine::FunctionContext functions;
      const std::string name = entry.path().stem().string();
      const auto log = engine::readyCompanion(entry.path(), folder / (name + "_log.ldf"), name);
      const std::string uri = engine::store::fileUri(entry.path(), log, name);
      ASSERT_EQ(sqlite3_open_v2(uri.c_str(), &db,
                                SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI, nullptr),
                SQLITE_OK);
      engine::registerFunctions(db, &functions);
      sqlite3_stmt* check = nullptr;
      ASSERT_EQ(sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &check, nullptr), SQLITE_OK)
          << entry.path() << " " << sqlite3_errmsg(db);
      ASSERT_EQ(sqlite3_step(check), SQLITE_ROW) << entry.path() << " " << sqlite3_errmsg(db);
      EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)), "ok") << entry.path();
      sqlite3_finalize(check);
      sqlite3_close(db);
    }
  }

  static std::string readAll(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  static void writeAll(const std::filesystem::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
  }

  std::filesystem::path folder;
  std::shared_ptr<engine::Server> server;
  std::unique_ptr<Client> session;
  std::string message;

 private:
  std::filesystem::path base_;
};

using DataFolder = FolderOf<engine::Session>;

}  // namespace scenarios
