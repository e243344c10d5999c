// Several clients on one database: who waits for whom, and what each gets.
#include <set>
#include <thread>

#include "tds/served.h"

namespace {

using namespace tds::test;

TEST_F(Served, WritersOfARowTakeTurnsAndReadersDoNotWait) {
  Client first(server->port()), second(server->port()), reader(server->port());
  for (Client* client : {&first, &second, &reader}) client->open(0x74000004, "FIRMA");
  first.batch("CREATE TABLE T(A INT) INSERT INTO T VALUES(1)");
  EXPECT_EQ(first.batch("BEGIN TRAN UPDATE T SET A=A+1"),
            "environment 8: 0x0100000000000000 <- 0x\ndone 1 transaction\n");
  EXPECT_EQ(second.batch("SET LOCK_TIMEOUT 0 UPDATE T SET A=7"),
            "error 1222/16/1 line 1: Lock request time out period exceeded.\ndone error\n");
  second.send(1, headers() + utf16("SET LOCK_TIMEOUT -1 UPDATE T SET A=A*10 SELECT A FROM T"));
  const std::string one = "columns A:int4\nrow 1\ndone select 1\n";
  EXPECT_EQ(reader.batch("SELECT A FROM T"), one);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_EQ(reader.batch("SELECT A FROM T"), one);
  EXPECT_EQ(first.batch("COMMIT"), "environment 9: 0x <- 0x0100000000000000\ndone\n");
  EXPECT_EQ(second.printed(), "done 1 more\ncolumns A:int4\nrow 20\ndone select 1\n");
}

TEST_F(Served, NumbersOfRowsNeverRepeat) {
  constexpr int clients = 4, rows = 50;
  Client maker(server->port());
  maker.open(0x74000004, "FIRMA");
  maker.batch("CREATE TABLE T(ID INT IDENTITY, A INT)");
  std::vector<std::vector<std::string>> told(clients);
  std::vector<std::thread> threads;
  for (int who = 0; who < clients; ++who)
    threads.emplace_back([&, who] {
      Client client(server->port());
      client.open(0x74000004, "FIRMA");
      for (int i = 0; i < rows; ++i)
        // Every fifth is taken back; its number is not given again.
        told[static_cast<std::size_t>(who)].push_back(client.batch(
            std::string("BEGIN TRAN SET NOCOUNT ON INSERT INTO T(A) VALUES(1) SELECT @@IDENTITY AS i ") +
            (i % 5 == 0 ? "ROLLBACK" : "COMMIT")));
    });
  for (auto& thread : threads) thread.join();
  std::set<std::string> distinct;
  for (const auto& each : told)
    for (const std::string& answer : each) {
      const auto at = answer.find("row ");
      ASSERT_NE(at, std::string::npos) << answer;
      distinct.insert(answer.substr(at, answer.find('\n', at) - at));
    }
  EXPECT_EQ(distinct.size(), static_cast<std::size_t>(clients * rows));
  EXPECT_EQ(maker.batch("SELECT COUNT(*) AS c, COUNT(DISTINCT ID) AS d FROM T"),
            "columns c:int4 d:int4\nrow 160 160\ndone select 1\n");
}

TEST_F(Served, ListsItsClients) {
  Client client(server->port()), other(server->port());
  client.open(0x74000004, "FIRMA");
  other.open();
  const std::string own = client.batch("SELECT @@SPID AS s"), its = other.batch("SELECT @@SPID AS s");
  EXPECT_NE(own, its);
  EXPECT_EQ(client.batch("SELECT RTRIM(hostname) AS h, RTRIM(program_name) AS p, RTRIM(loginame) AS l, "
                         "DB_NAME(dbid) AS d FROM master..sysprocesses WHERE spid=@@SPID"),
            "columns h:nvarchar(256) p:nvarchar(256) l:nvarchar(256) d:nvarchar(256)\n"
            "row 'test' 'prog' 'sa' 'FIRMA'\ndone select 1\n");
  const std::string listed = client.batch("EXEC sp_who");
  std::size_t clients = 0;
  for (auto at = listed.find("\nrow "); at != std::string::npos; at = listed.find("\nrow ", at + 1))
    ++clients;
  EXPECT_EQ(clients, 2u) << listed;
}

}  // namespace
