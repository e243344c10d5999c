// What long texts and lists cost, and what is told when the memory is missing. Each case runs in a process
// that may take only so much more than it has.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>

#include "../session_fixture.h"

namespace engine::test {
namespace {

constexpr std::size_t megabyte = 1 << 20;

// Address space of this process, in bytes.
std::size_t taken() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

void allow(std::size_t more) {
  const rlimit limit{taken() + more, RLIM_INFINITY};
  ::setrlimit(RLIMIT_AS, &limit);
}

class MemoryTest : public SessionTest {
 protected:
#ifdef __SANITIZE_ADDRESS__
  void SetUp() override { GTEST_SKIP() << "the sanitizer's own maps are beyond any limit"; }
#endif

  // Runs the batch on a server of its own with so much memory more, then `after` with as much as it likes;
  // what both print, `!number` for an error.
  std::string limited(const std::string& batch, std::size_t more, const std::string& after) {
    session.reset();
    server.reset();
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
      server = Server::open(folder_);
      session = open("FIRMA");
      run("SELECT COUNT(*) FROM T");
      allow(more);
      std::string printed = run(batch);
      const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
      ::setrlimit(RLIMIT_AS, &none);
      printed += run(after);
      const bool told = ::write(ends[1], printed.data(), printed.size()) >= 0;
      ::_exit(told ? 0 : 1);
    }
    ::close(ends[1]);
    std::string printed(4096, '\0');
    printed.resize(static_cast<std::size_t>(std::max<ssize_t>(0, ::read(ends[0], printed.data(), 4096))));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    server = Server::open(folder_);
    session = open("FIRMA");
    return printed;
  }
};

TEST_F(MemoryTest, ALongTextCostsAFewTimesItsSize) {
  ASSERT_EQ(run("CREATE TABLE T (A INT, B TEXT)"), "");
  constexpr std::size_t size = 64 * megabyte;
  const std::string look = "SELECT A,DATALENGTH(B) FROM T SELECT @@TRANCOUNT";
  for (const std::string& unit : {std::string("x"), std::string("ş")}) {
    std::string part;
    while (part.size() < megabyte) part += unit;
    std::string batch = "INSERT INTO T VALUES (1,'";
    batch.reserve(size + 2 * megabyte);
    while (batch.size() < size) batch += part;
    batch += "')";
    const std::string characters = std::to_string((batch.size() - 27) / unit.size());
    // The batch itself is there before; three times its size is enough for all that is made of it.
    EXPECT_EQ(limited(batch, 3 * size + 32 * megabyte, look), "1\t" + characters + "\n0\n") << message;
    EXPECT_EQ(run("DELETE FROM T"), "");
  }
}

TEST_F(MemoryTest, MissingMemoryIsToldAndTheSessionGoesOn) {
  ASSERT_EQ(run("CREATE TABLE T (A INT, B TEXT)"), "");
  const std::string text(64 * megabyte, 'x');
  const std::string look = "INSERT INTO T VALUES (7,'y') SELECT A,DATALENGTH(B) FROM T SELECT @@TRANCOUNT";
  for (const std::size_t more : {1, 80, 140}) {
    SCOPED_TRACE(more);
    EXPECT_EQ(limited("INSERT INTO T VALUES (1,'" + text + "')", more * megabyte, look), "!701\n7\t1\n0\n");
    EXPECT_EQ(run("DELETE FROM T"), "");
    EXPECT_EQ(limited("BEGIN TRAN INSERT INTO T VALUES (2,'z') INSERT INTO T VALUES (1,'" + text +
                          "') COMMIT INSERT INTO T VALUES (3,'z')",
                      more * megabyte, look),
              "!701\n7\t1\n0\n");
    EXPECT_EQ(run("DELETE FROM T"), "");
  }
  EXPECT_EQ(limited("SELECT LEN(REPLICATE(CAST('x' AS VARCHAR(8000)),8000)+'" + text + "')", 100 * megabyte,
                    "SELECT 1"),
            "!701\n1\n");
}

TEST_F(MemoryTest, AListBeyondAnyPlanIsRefusedBeforeItCosts) {
  ASSERT_EQ(run("CREATE TABLE T (A INT)"), "");
  EXPECT_EQ(run("INSERT INTO T VALUES (5)"), "");
  const auto list = [](int count, const char* sign) {
    std::string batch = "SELECT A FROM T WHERE A IN (5";
    for (int i = 1; i < count; ++i) batch += ',' + (sign + std::to_string(i));
    return batch + ")";
  };
  EXPECT_EQ(limited(list(1'000'000, ""), 64 * megabyte, "SELECT 1"), "!8623\n1\n");
  EXPECT_EQ(limited(list(1'000'000, "-"), 96 * megabyte, "SELECT 1"), "!8623\n1\n");
  EXPECT_EQ(limited(list(100'000, ""), 200 * megabyte, "SELECT 1"), "5\n1\n");
}

}  // namespace
}  // namespace engine::test
