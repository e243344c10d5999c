// Waiting for each other across processes, and what killed ones leave in the shared state.
#include <fcntl.h>
#include <unistd.h>

#include <thread>

#include "engine/store/login_guard.h"
#include "engine/store/shared_state.h"
#include "scenarios/folder_fixture.h"
#include "scenarios/other_process.h"

namespace scenarios {
namespace {

namespace fs = std::filesystem;

class Bekleme : public DataFolder {
 protected:
  void SetUp() override {
    must("CREATE TABLE T (A INT) INSERT INTO T VALUES (0)");
    must("CREATE DATABASE KOMSU");
    must("CREATE TABLE KOMSU..K (A INT) INSERT INTO KOMSU..K VALUES (0)");
    close();
    other = std::make_unique<OtherProcess>(folder, password, "FIRMA");
    open();
  }
  void TearDown() override { other.reset(); }
  void writeNumber(int index, std::uint64_t value) {
    const int handle = ::open(file("server.lck").c_str(), O_RDWR);
    ASSERT_EQ(::pwrite(handle, &value, sizeof value, index * 8), 8);
    ::close(handle);
  }
  std::unique_ptr<OtherProcess> other;
};

TEST_F(Bekleme, LockTimeoutIsTheSessionsOwn) {
  ASSERT_EQ(other->run("BEGIN TRAN UPDATE T SET A=1"), "");
  EXPECT_EQ(run("SET LOCK_TIMEOUT 50 UPDATE T SET A=2"), "!1222\n");
  EXPECT_EQ(run("SET LOCK_TIMEOUT 0 UPDATE T SET A=2 PRINT 'sonra'"), "!1222\n");
  EXPECT_EQ(run("SELECT A FROM T"), "0\n");  // readers do not wait
  // Without a limit it waits for the end of the other's transaction, longer than the limit was.
  must("SET LOCK_TIMEOUT -1");
  std::thread later([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    EXPECT_EQ(other->run("COMMIT TRAN"), "");
  });
  EXPECT_EQ(run("UPDATE T SET A=A+10"), "");
  later.join();
  EXPECT_EQ(run("SELECT A FROM T"), "11\n");
}

TEST_F(Bekleme, WaitingEndsByCancelAndByTheStopOfTheService) {
  ASSERT_EQ(other->run("BEGIN TRAN UPDATE T SET A=1"), "");
  std::thread later([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    session->cancel();
  });
  EXPECT_EQ(run("UPDATE T SET A=2"), "!3617\n");
  later.join();
  std::thread stopping([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    server->stop();
  });
  EXPECT_EQ(run("UPDATE T SET A=2"), "!17142\n");
  stopping.join();
  EXPECT_TRUE(server->start().empty());
  EXPECT_EQ(run("SELECT A FROM T"), "0\n");
}

TEST_F(Bekleme, CircleOfWaitingSessionsLosesOneOfThem) {
  must("BEGIN TRAN UPDATE T SET A=1");
  ASSERT_EQ(other->run("USE KOMSU BEGIN TRAN UPDATE K SET A=1"), "");
  other->send("UPDATE FIRMA..T SET A=2 COMMIT TRAN");
  const std::string mine = run("UPDATE KOMSU..K SET A=2 COMMIT TRAN");
  const std::string its = other->receive();
  EXPECT_TRUE((mine.empty() && its == "!1205\n") || (mine == "!1205\n" && its.empty())) << mine << its;
  EXPECT_EQ(number("SELECT @@TRANCOUNT"), 0);
  const std::string won = mine.empty() ? "1" : "2";
  EXPECT_EQ(run("SELECT T.A,K.A FROM T,KOMSU..K K"), mine.empty() ? "1\t2\n" : "2\t1\n");
}

// Four processes that write as fast as they can: while all of them want to, each comes to its turn.
TEST_F(Bekleme, NobodyStarves) {
  constexpr int writers = 4, longestGap = 60;
  must("CREATE TABLE SIRA (ID INT IDENTITY PRIMARY KEY, W INT)");
  std::vector<std::unique_ptr<OtherProcess>> processes;
  for (int w = 0; w < writers; ++w)
    processes.push_back(std::make_unique<OtherProcess>(folder, password, "FIRMA"));
  for (int w = 0; w < writers; ++w)
    processes[static_cast<std::size_t>(w)]->send(
        "DECLARE @i INT,@j INT SET @i=0 WHILE @i<120 BEGIN BEGIN TRAN INSERT INTO SIRA (W) VALUES (" +
        std::to_string(w) + ") SET @j=0 WHILE @j<500 SET @j=@j+1 COMMIT TRAN SET @i=@i+1 END");
  for (auto& process : processes) EXPECT_EQ(process->receive(), "");
  while (!processes.empty()) processes.pop_back();  // the later ones hold the pipes of the earlier
  std::string order = run("SELECT W FROM SIRA ORDER BY ID");
  std::erase(order, '\n');
  ASSERT_EQ(order.size(), 120U * writers);
  // From the moment when the last one has begun to that when the first one is ready.
  std::size_t begin = 0, end = order.size();
  for (char w = '0'; w < '0' + writers; ++w) {
    begin = std::max(begin, order.find(w));
    end = std::min(end, order.rfind(w));
  }
  for (char w = '0'; w < '0' + writers; ++w)
    for (std::size_t at = begin; at < end;) {
      const std::size_t next = order.find(w, at + 1);
      EXPECT_LE(next - at, longestGap) << w << " in " << order;
      at = next;
    }
}

// Wrong passwords of one process hold back the next answer of another, and only for that name.
TEST_F(Bekleme, WrongPasswordsCountForAllProcesses) {
  using Pauses = std::vector<std::int64_t>;
  struct Guard {
    explicit Guard(const fs::path& lockFile) : page(lockFile) { guard.shareFailures(page.operator->()); }
    bool enter(const std::string& login, const std::string& password) {
      return guard.verify(login, password, "dogru");
    }
    Pauses pauses;
    engine::SharedState page;
    engine::LoginGuard guard{{[this](std::chrono::milliseconds time) { pauses.push_back(time.count()); },
                              [](const std::string& hash, std::string_view word) { return hash == word; }}};
  };
  const auto elsewhere = [&](int times, const char* password) {
    const pid_t child = inChild([&] {
      Guard there(file("server.lck"));
      for (int i = 0; i < times; ++i)
        if (there.enter("kasiyer", password) != (std::string(password) == "dogru")) ::_exit(3);
    });
    EXPECT_EQ(waitChild(child), 0);
  };
  close();
  elsewhere(3, "yanlis");
  elsewhere(2, "yanlis");
  Guard here(file("server.lck"));
  EXPECT_FALSE(here.enter("kasiyer", "yanlis"));
  EXPECT_FALSE(here.enter("baska", "yanlis"));
  EXPECT_EQ(here.pauses, (Pauses{500}));
  elsewhere(1, "dogru");  // who knows the password ends it for everybody else
  Guard third(file("server.lck"));
  EXPECT_FALSE(third.enter("kasiyer", "yanlis"));
  EXPECT_EQ(third.pauses, Pauses{});
  // Stray bytes lock nobody out for good.
  for (int i = 10; i < 10 + 3 * 64; ++i) writeNumber(i, ~std::uint64_t{0});
  Guard after(file("server.lck"));
  EXPECT_TRUE(after.enter("kasiyer", "dogru"));
  EXPECT_EQ(after.pauses, Pauses{});
  open();
}

TEST_F(Bekleme, SharedStateHeals) {
  constexpr int stopped = 1, begun = 2, intents = 4;
  for (const std::uint64_t garbage : {std::uint64_t{1}, std::uint64_t{77}, ~std::uint64_t{0}}) {
    writeNumber(stopped, garbage);
    EXPECT_EQ(run("SELECT 5"), "5\n") << garbage;
    writeNumber(begun, garbage);
    writeNumber(intents, garbage);
    EXPECT_EQ(run("SELECT A FROM T"), "0\n");
    EXPECT_EQ(other->run("SELECT A FROM T"), "0\n");
  }
  std::uint64_t page[6] = {};
  const int handle = ::open(file("server.lck").c_str(), O_RDONLY);
  ASSERT_EQ(::pread(handle, page, sizeof page, 0), static_cast<ssize_t>(sizeof page));
  ::close(handle);
  EXPECT_EQ(page[2], page[3]);  // equal again: nobody looks into the files at each statement
  EXPECT_EQ(page[4], page[5]);
  must("CREATE TABLE YENI (A INT)");
  EXPECT_EQ(other->run("SELECT COUNT(*) FROM YENI"), "0\n");
}

}  // namespace
}  // namespace scenarios
