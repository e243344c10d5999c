// A server in a temporary folder that listens on a free port, with a database FIRMA.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <mutex>
#include <string>
#include <vector>

#include "engine/server.h"
#include "tds/client.h"
#include "tds/server.h"

namespace tds::test {

class Served : public testing::Test {
 protected:
  Served() {
    static int count = 0;
    folder = std::filesystem::temp_directory_path() /
             ("zembera-tds-" + std::to_string(getpid()) + "-" + std::to_string(++count));
    engine = engine::Server::create(folder, "sa", "gizli");
    options.port = 0;
    options.plainOnThisMachine = true;
    options.log = [this](const std::string& line) {
      const std::lock_guard lock(logMutex_);
      lines_.push_back(line);
    };
    start();
    Client first(server->port());
    first.open();
    first.batch("CREATE DATABASE FIRMA");
  }
  ~Served() override {
    server.reset();
    engine.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
  void start() {
    server.reset();
    server = std::make_unique<Server>(engine, options);
  }
  std::vector<std::string> log() {
    const std::lock_guard lock(logMutex_);
    return lines_;
  }

  std::filesystem::path folder;
  std::shared_ptr<engine::Server> engine;
  Options options;
  std::unique_ptr<Server> server;

 private:
  std::mutex logMutex_;
  std::vector<std::string> lines_;
};

}  // namespace tds::test
