// Clients that break off, go away, send rubbish or stop reading.
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "tds/served.h"

namespace {

using namespace tds::test;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

const char* const endless = "WHILE 1=1 SET NOCOUNT ON";
// For machines that have much to do; an end takes a tenth of a second.
constexpr milliseconds patience{20000};
constexpr std::uint8_t batchType = 1, attentionType = 6;

class Breaking : public Served {
 protected:
  // As a second client sees it; waits for at most `limit`.
  bool becomes(const std::string& query, const std::string& printed, milliseconds limit) {
    Client other(server->port());
    other.open(0x74000004, "FIRMA");
    const auto end = steady_clock::now() + limit;
    while (steady_clock::now() < end) {
      if (other.batch(query) == printed) return true;
      std::this_thread::sleep_for(milliseconds(20));
    }
    return false;
  }
  bool onlyConnection(milliseconds limit) {
    const auto end = steady_clock::now() + limit;
    while (server->connections() > 0 && steady_clock::now() < end)
      std::this_thread::sleep_for(milliseconds(10));
    return server->connections() == 0;
  }
};

TEST_F(Breaking, AnAttentionEndsTheStatementAndIsAcknowledged) {
  Client client(server->port());
  client.open(0x74000004, "FIRMA");
  client.batch("CREATE TABLE T(A INT) BEGIN TRAN INSERT INTO T VALUES(1)");
  client.send(batchType, headers() + utf16(endless));
  std::this_thread::sleep_for(milliseconds(150));
  client.send(attentionType, "");
  EXPECT_EQ(client.printed(), "environment 10: 0x <- 0x0100000000000000\ndone\n");
  EXPECT_EQ(client.printed(), "done attention\n");
  EXPECT_EQ(client.batch("SELECT A FROM T"), "columns A:int4\ndone select\n");
}

// It came too late: the answer is whole and the acknowledgement follows it.
TEST_F(Breaking, AnAttentionBehindTheAnswerIsAcknowledgedOnly) {
  Client client(server->port());
  client.open();
  EXPECT_EQ(client.batch("SELECT 1 AS a"), "columns a:int4\nrow 1\ndone select 1\n");
  client.send(attentionType, "");
  EXPECT_EQ(client.printed(), "done attention\n");
  EXPECT_EQ(client.batch("SELECT 2 AS a"), "columns a:int4\nrow 2\ndone select 1\n");
}

TEST_F(Breaking, AClientThatGoesAwayLeavesNothing) {
  for (const bool running : {false, true}) {
    Client client(server->port());
    client.open(0x74000004, "FIRMA");
    client.batch("CREATE TABLE T(A INT)");
    client.batch("BEGIN TRAN INSERT INTO T VALUES(1)");
    if (running) client.send(batchType, headers() + utf16(endless));
    std::this_thread::sleep_for(milliseconds(50));
    client.hangUp();
    // Taken at once, for the lock is free again.
    EXPECT_TRUE(becomes("SET LOCK_TIMEOUT 10000 DELETE FROM T SELECT COUNT(*) AS c FROM T",
                        "done 0 more\ncolumns c:int4\nrow 0\ndone select 1\n", patience));
    Client(server->port()).open();
    Client cleaner(server->port());
    cleaner.open(0x74000004, "FIRMA");
    cleaner.batch("DROP TABLE T");
  }
}

TEST_F(Breaking, RubbishEndsItsConnectionAlone) {
  const std::string good = preLogin(2), goodLogin = login(0x74000004, "sa", "gizli", "");
  std::string farLogin = goodLogin, longLogin = goodLogin;
  farLogin.replace(40, 2, "\xFF\xFF");
  longLogin.replace(42, 2, "\xFF\x7F");
  const std::string greeted = packet(0x12, good);
  const struct {
    const char* what;
    std::string bytes;
  } cases[] = {
      {"a length below the header's", packet(0x12, 7, "")},
      {"a length beyond the largest", packet(0x12, 0xFFFF, std::string(100, 'x'))},
      {"a statement before the login", packet(batchType, headers() + utf16("SELECT 1"))},
      {"a statement instead of the login", greeted + packet(batchType, headers() + utf16("SELECT 1"))},
      {"an option that lies behind the end", packet(0x12, std::string("\x01\x00\xFF\x00\x01\xFF", 6))},
      {"options without an end", packet(0x12, std::string("\x00\x00\x0B\x00\x06", 5))},
      {"an empty PRELOGIN", packet(0x12, "")},
      {"an endless PRELOGIN",
       [&] {
         std::string all;
         for (int i = 0; i < 20; ++i) {
           std::string part = packet(0x12, 4008, std::string(4000, 'x'));
           part[1] = 0;
           all += part;
         }
         return all;
       }()},
      {"a login cut short", greeted + packet(0x10, goodLogin.substr(0, 50))},
      {"a name that lies behind the end", greeted + packet(0x10, farLogin)},
      {"a name that is too long", greeted + packet(0x10, longLogin)},
      {"an old version", greeted + packet(0x10, login(0x70000000, "sa", "gizli", ""))},
      {"a web browser", "GET / HTTP/1.1\r\nHost: x\r\n\r\n"},
      {"headers longer than the message",
       greeted + packet(0x10, goodLogin) + packet(batchType, number(500, 4))},
      {"headers shorter than their length",
       greeted + packet(0x10, goodLogin) + packet(batchType, number(1, 4))},
      {"a call cut short", greeted + packet(0x10, goodLogin) + packet(3, headers() + number(0xFFFF, 2))},
      {"a call of an unknown number",
       greeted + packet(0x10, goodLogin) + packet(3, headers() + call(99, {}))},
      {"a message of an unknown type", greeted + packet(0x10, goodLogin) + packet(0x33, headers())},
  };
  for (const auto& each : cases) {
    Client client(server->port());
    client.sendRaw(each.bytes);
    while (!client.receive().empty()) {
    }
    EXPECT_TRUE(onlyConnection(patience)) << each.what;
  }
  Client after(server->port());
  after.open();
  EXPECT_EQ(after.batch("SELECT 1 AS a"), "columns a:int4\nrow 1\ndone select 1\n");
}

TEST_F(Breaking, ALoginThatNeverComesIsNotWaitedFor) {
  options.loginPatience = std::chrono::seconds(1);
  start();
  Client silent(server->port()), half(server->port());
  half.send(0x12, preLogin(2));
  half.receive();
  EXPECT_TRUE(silent.closed());
  EXPECT_TRUE(half.closed());
  // One that goes on talking, a byte at a time, gets no longer.
  Client slow(server->port());
  const std::string greeting = packet(0x12, preLogin(2));
  const auto begun = steady_clock::now();
  std::size_t sent = 0;
  for (char byte = 0; sent < greeting.size(); ++sent) {
    if (recv(slow.descriptor(), &byte, 1, MSG_DONTWAIT) == 0) break;
    slow.sendRaw(greeting.substr(sent, 1));
    std::this_thread::sleep_for(milliseconds(100));
  }
  EXPECT_LT(sent, greeting.size()) << (steady_clock::now() - begun) / milliseconds(1);
  EXPECT_TRUE(onlyConnection(patience));
}

TEST_F(Breaking, ConnectionsHaveALimit) {
  options.mostConnections = 3;
  start();
  std::vector<std::unique_ptr<Client>> clients;
  for (int i = 0; i < 3; ++i) {
    clients.push_back(std::make_unique<Client>(server->port()));
    EXPECT_NE(clients.back()->open().find("login"), std::string::npos);
  }
  Client fourth(server->port());
  EXPECT_EQ(
      fourth.open(),
      "error 17809/20/1 line 0: Could not connect because the maximum number of '3' user connections has "
      "already been reached. The system administrator can use sp_configure to increase the maximum value. "
      "The connection has been closed.\ndone error\n");
  EXPECT_TRUE(fourth.closed());
  EXPECT_EQ(server->connections(), 3u);
  clients.pop_back();
  for (int i = 0; i < 100 && server->connections() > 2; ++i) std::this_thread::sleep_for(milliseconds(10));
  Client again(server->port());
  EXPECT_NE(again.open().find("login"), std::string::npos);
}

// What a client leaves behind here and what it sends at once.
TEST_F(Breaking, TheMemoryOfAClientIsLimited) {
  options.largestKept = 100000;
  options.largestRequest = 200000;
  start();
  Client client(server->port());
  client.open(0x74000004, "FIRMA");
  const std::string statement = "SELECT 1 AS a --" + std::string(2000, 'x');
  const auto prepare = [&] {
    return client.rpc(
        call(11, {nullIntParameter("", true), textParameter("", ""), textParameter("", statement)}));
  };
  const auto prepared = [](int handle) {
    return "status 0\nreturn  int4 " + std::to_string(handle) + "\ndoneproc\n";
  };
  const auto tooMuch = [](int line) {
    return "error 701/17/1 line " + std::to_string(line) +
           ": There is insufficient system memory to run this query.\ndoneinproc more error\ndoneproc "
           "error\n";
  };
  int handles = 0;
  while (handles < 100 && prepare() == prepared(handles + 1)) ++handles;
  EXPECT_GT(handles, 30);
  EXPECT_LT(handles, 50);
  EXPECT_EQ(prepare(), tooMuch(0));
  EXPECT_EQ(client.rpc(call(15, {intParameter("", 1)})), "status 0\ndoneproc\n");
  EXPECT_EQ(prepare(), prepared(handles + 1));
  // A reset gives all of it back.
  EXPECT_EQ(client.batch("SELECT 1 AS a", 8),
            "environment 18: 0x <- 0x\ncolumns a:int4\nrow 1\ndone select 1\n");
  EXPECT_EQ(prepare(), prepared(handles + 2));

  client.batch(
      "CREATE TABLE T(A CHAR(1000)) INSERT INTO T VALUES('x') DECLARE @i INT SET @i=0 SET NOCOUNT ON WHILE "
      "@i<8 "
      "BEGIN INSERT INTO T SELECT * FROM T SET @i=@i+1 END SET NOCOUNT OFF");
  const auto open = [&](const std::string& query) {
    return client.rpc(call(2, {nullIntParameter("", true), textParameter("", query)}));
  };
  EXPECT_EQ(open("SELECT A FROM T"), tooMuch(1));
  EXPECT_EQ(open("SELECT TOP 1 A FROM T").find("error"), std::string::npos);

  EXPECT_EQ(client.batch("SELECT 1 --" + std::string(120000, 'x')),
            "error 701/17/1 line 0: There is insufficient system memory to run this query: a request may "
            "have 200000 "
            "bytes.\ndone error\n");
  std::vector<std::string> parameters(2101, intParameter("", 1));
  EXPECT_EQ(
      client.rpc(namedCall("sp_x", parameters)),
      "error 8003/16/1 line 0: The incoming tabular data stream (TDS) remote procedure call (RPC) protocol "
      "stream is incorrect. Too many parameters were provided in this RPC request. The maximum is 2100.\n"
      "done error\n");
  EXPECT_EQ(client.batch("SELECT 1 AS a"), "columns a:int4\nrow 1\ndone select 1\n");
}

TEST_F(Breaking, AStopLetsStatementsFinishAndIdleClientsGo) {
  options.stopPatience = std::chrono::seconds(300);
  start();
  Client idle(server->port()), busy(server->port());
  idle.open();
  busy.open(0x74000004, "FIRMA");
  busy.send(
      batchType,
      headers() + utf16("DECLARE @i INT SET @i=0 SET NOCOUNT ON WHILE @i<300000 SET @i=@i+1 SELECT @i AS i"));
  ASSERT_TRUE(becomes("SELECT COUNT(*) AS c FROM master..sysprocesses WHERE cmd='SELECT' AND spid<>@@SPID",
                      "columns c:int4\nrow 1\ndone select 1\n", patience));
  server->stop();
  EXPECT_TRUE(idle.closed());
  EXPECT_EQ(busy.printed(), "columns i:int4\nrow 300000\ndone select\n");
  EXPECT_TRUE(busy.closed());
}

TEST_F(Breaking, AStopDoesNotWaitForEver) {
  options.stopPatience = std::chrono::seconds(1);
  start();
  Client busy(server->port());
  busy.open();
  busy.send(batchType, headers() + utf16(endless));
  std::this_thread::sleep_for(milliseconds(100));
  server->stop();
  EXPECT_EQ(server->connections(), 0u);
}

// The rows wait in the statement, not in memory; who writes is not held up.
TEST_F(Breaking, AClientThatStopsReadingHoldsUpItselfAlone) {
  Client reader(server->port());
  reader.open(0x74000004, "FIRMA");
  reader.batch(
      "CREATE TABLE T(A CHAR(1000)) INSERT INTO T VALUES('x') SET NOCOUNT ON DECLARE @i INT SET @i=0 "
      "WHILE @i<10 BEGIN INSERT INTO T SELECT * FROM T SET @i=@i+1 END");
  const auto resident = [] {
    std::ifstream statm("/proc/self/statm");
    long pages = 0;
    statm >> pages >> pages;
    return pages * sysconf(_SC_PAGESIZE);
  };
  const long before = resident();
  reader.send(batchType, headers() + utf16("SELECT a.A FROM T a, T b"));
  std::this_thread::sleep_for(milliseconds(500));
  constexpr long most = 16L * 1024 * 1024;
  EXPECT_LT(resident() - before, most);
  EXPECT_TRUE(becomes("UPDATE TOP (1) T SET A='y' SELECT COUNT(*) AS c FROM T WHERE A='y'",
                      "done 1 more\ncolumns c:int4\nrow 1\ndone select 1\n", patience));
  reader.hangUp();
  EXPECT_TRUE(onlyConnection(patience));
}

TEST_F(Breaking, AKilledClientIsSentAway) {
  Client victim(server->port()), killer(server->port());
  victim.open(0x74000004, "FIRMA");
  killer.open(0x74000004, "FIRMA");
  victim.batch("CREATE TABLE T(A INT) BEGIN TRAN INSERT INTO T VALUES(1)");
  const std::string spid = victim.batch("SELECT @@SPID AS s");
  const std::string number = spid.substr(spid.find("row ") + 4, 2);
  EXPECT_EQ(killer.batch("KILL " + number), "done\n");
  EXPECT_EQ(killer.batch("SET LOCK_TIMEOUT 10000 DELETE FROM T"), "done 0\n");
  EXPECT_TRUE(victim.closed());
  // Its socket goes first, then its session.
  const std::string count =
      "SELECT COUNT(*) AS c FROM master..sysprocesses WHERE loginame='sa' AND program_name='prog'";
  const std::string alone = "columns c:int4\nrow 1\ndone select 1\n";
  for (int i = 0; i < 200 && killer.batch(count) != alone; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(killer.batch(count), alone);
}

TEST_F(Breaking, AnAddressInUseIsTold) {
  tds::Options second = options;
  second.port = server->port();
  EXPECT_THROW(tds::Server(engine, second), std::system_error);
  second.address = "yok";
  EXPECT_THROW(tds::Server(engine, second), std::system_error);
}

}  // namespace
