// A client of a server: in its process, or with ZEMBERA_AGDAN=1 through a listener and the ODBC driver.
#pragma once

#include <memory>
#include <string>

#include "db/connection.h"
#include "engine/server.h"
#include "engine/session_fixture.h"
#include "tds/server.h"

namespace scenarios {

class Istemci {
 public:
  // Throws engine::Error.
  Istemci(std::shared_ptr<engine::Server> server, const std::string& login, const std::string& password,
          const std::string& database);
  // Prints the batch's results; throws engine::Error with the server's number.
  void execute(const std::string& batch, engine::test::PrintingSink& sink);

 private:
  std::unique_ptr<engine::Session> session_;
  std::unique_ptr<tds::Server> listener_;
  std::unique_ptr<db::Connection> connection_;
};

}  // namespace scenarios
