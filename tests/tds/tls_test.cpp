// Encryption: who gets in with what, and that the real driver's words come through it whole.
#include <fstream>

#include "db/odbc/sqlserver.h"
#include "db/recordset.h"
#include "tds/served.h"

namespace {

using namespace tds::test;

// The last option but two has one byte, which the rest of the values follows.
std::uint8_t offered(const std::string& answer) {
  constexpr std::size_t versionSize = 6;
  return static_cast<std::uint8_t>(answer.at(answer.find('\xFF') + 1 + versionSize));
}

TEST_F(Served, AgreesOnEncryption) {
  constexpr std::uint8_t off = 0, on = 1, unable = 2, required = 3;
  const struct {
    bool plainAllowed;
    std::uint8_t asked, answered;
  } cases[] = {{true, off, off},       {true, on, on},  {true, unable, unable},    {true, required, on},
               {false, off, required}, {false, on, on}, {false, unable, required}, {false, required, on}};
  for (const auto& each : cases) {
    options.plainOnThisMachine = each.plainAllowed;
    start();
    Client client(server->port());
    client.send(0x12, preLogin(each.asked));
    EXPECT_EQ(offered(client.receive()), each.answered) << each.plainAllowed << int{each.asked};
    // Whoever cannot, where he must, is not listened to any more.
    if (each.asked == unable && !each.plainAllowed) {
      EXPECT_TRUE(client.closed());
    }
  }
  for (const bool plainAllowed : {false, true}) {
    options.plainOnThisMachine = plainAllowed;
    start();
    Client old(server->port());
    old.send(0x10, login(0x74000004, "sa", "gizli", ""));
    if (plainAllowed)
      EXPECT_NE(old.printed().find("login"), std::string::npos);
    else
      EXPECT_TRUE(old.closed());
  }
}

TEST_F(Served, TheDriverComesThroughTls) {
  for (const bool plainAllowed : {true, false}) {
    options.plainOnThisMachine = plainAllowed;
    start();
    auto connection = db::makeSqlServerConnection();
    connection->open({"127.0.0.1," + std::to_string(server->port()), "sa", "gizli", "FIRMA", false});
    const std::string words(20000, 'x');
    EXPECT_EQ(connection->query("SELECT '" + words + "' AS a")->value(0, 0).text(), words);
    connection->close();
    try {
      connection->open({"127.0.0.1," + std::to_string(server->port()), "sa", "yanlis", "FIRMA", false});
      FAIL() << "no error";
    } catch (const db::SqlError& error) {
      EXPECT_EQ(error.serverNumber(), 18456);
    }
  }
  EXPECT_EQ(std::filesystem::status(folder / "zembera-sunucu.pem").permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(Served, ACertificateThatIsNoneIsTold) {
  options.certificate = folder / "bos.pem";
  std::ofstream(options.certificate) << "x";
  try {
    start();
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_NE(std::string(error.what()).find("bos.pem"), std::string::npos) << error.what();
  }
}

}  // namespace
