// A disk that gives no more room, and files cut short: errors, never a signal. Each case runs in a process of
// its own, whose end is looked at.
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <csignal>

#include "engine/session_fixture.h"
#include "engine/store_fixture.h"

namespace engine::test {
namespace {

namespace fs = std::filesystem;

// What `action` returns in a process of its own, with the signal's default action; -N: ended by signal N.
int inProcess(const std::function<int()>& action) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::signal(SIGXFSZ, SIG_DFL);
    try {
      ::_exit(action());
    } catch (const std::exception& error) {
      ::fprintf(stderr, "%s\n", error.what());
      ::_exit(99);
    }
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

int errorOf(Session& session, const std::string& batch) {
  PrintingSink sink;
  return errorNumber([&] { session.execute(batch, sink); });
}

bool isWhole(const fs::path& file) {
  struct stat status {};
  return ::stat(file.c_str(), &status) == 0 && status.st_size == 4096 && status.st_blocks * 512 >= 4096;
}

class FullDisk : public StoreTest {
 protected:
  FullDisk() { server.reset(); }  // each process opens its own
  fs::path veri() const { return folder.path / "veri"; }
};

TEST_F(FullDisk, ShortenedSharedPageIsMadeWholeWithItsBlocks) {
  const fs::path lock = veri() / "server.lck";
  for (const off_t size : {0, 1, 39, 4095, 4096}) {
    SCOPED_TRACE(size);
    fs::remove(lock);
    const int fd = ::open(lock.c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(::ftruncate(fd, size), 0);  // a hole, where it is not empty
    ::close(fd);
    const auto opened = Server::open(veri());
    EXPECT_TRUE(isWhole(lock));
    EXPECT_EQ(opened->serviceState(), ServiceState::Running);
    Session session(opened, "sa", password, "master");
    EXPECT_EQ(errorOf(session, "SELECT name FROM sysdatabases"), 0);
  }
}

TEST_F(FullDisk, LimitOnTheSizeOfFilesIsAnError) {
  fs::resize_file(veri() / "server.lck", 0);
  EXPECT_EQ(inProcess([&] {
              const rlimit tiny{1024, RLIM_INFINITY};
              ::setrlimit(RLIMIT_FSIZE, &tiny);
              return errorNumber([&] { Server::open(veri()); }) == 5120 ? 0 : 1;
            }),
            0);
  EXPECT_EQ(inProcess([&] {
              Session session(Server::open(veri()), "sa", password, "master");
              if (errorOf(session, "CREATE DATABASE F") != 0) return 1;
              if (errorOf(session, "USE F CREATE TABLE T (A INT, B CHAR(2000))") != 0) return 2;
              const rlimit some{400000, RLIM_INFINITY};
              ::setrlimit(RLIMIT_FSIZE, &some);
              int rows = 0, error = 0;
              while ((error = errorOf(session, "INSERT INTO T VALUES (1,'x')")) == 0) ++rows;
              if (error != 823 || rows == 0 || rows > 2000) return 3;
              const rlimit none{RLIM_INFINITY, RLIM_INFINITY};
              ::setrlimit(RLIMIT_FSIZE, &none);
              PrintingSink sink;
              session.execute("SELECT COUNT(*) FROM T INSERT INTO T VALUES (2,'y')", sink);
              return sink.text == std::to_string(rows) + "\n" ? 0 : 4;
            }),
            0);
}

// A file system of so many bytes over `place`, seen by this process alone.
bool mountSmall(const fs::path& place, std::size_t bytes) {
  if (::unshare(CLONE_NEWNS | (::geteuid() == 0 ? 0 : CLONE_NEWUSER)) != 0) return false;
  if (::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  return ::mount("none", place.c_str(), "tmpfs", 0, ("size=" + std::to_string(bytes)).c_str()) == 0;
}

void fillUp(const fs::path& place) {
  const int fd = ::open((place / "dolgu").c_str(), O_WRONLY | O_CREAT, 0600);
  const std::string block(4096, 'x');
  while (::write(fd, block.data(), block.size()) > 0) continue;
  ::close(fd);
}

constexpr int noMount = 77;

TEST_F(FullDisk, ServerIsMadeWholeOrNotOnAFileSystemOfAnySize) {
  for (std::size_t pages = 1; pages < 120; pages += pages < 12 ? 1 : 9) {
    SCOPED_TRACE(pages);
    const int end = inProcess([&] {
      if (!mountSmall(folder.path, pages * 4096)) return noMount;
      const int error = errorNumber([&] { Server::create(veri(), "sa", password); });
      if (error != 0 && error != 5120 && error != 5123 && error != 823 && error != 1105) return 1;
      if (!Server::exists(veri())) return error != 0 ? 0 : 2;
      // Made whole, even where no room was left to open it.
      ::mount("none", folder.path.c_str(), "tmpfs", MS_REMOUNT, "size=4194304");
      Session session(Server::open(veri()), "sa", password, "master");
      return errorOf(session, "CREATE DATABASE F");
    });
    if (end == noMount) GTEST_SKIP() << "no file systems may be mounted here";
    EXPECT_EQ(end, 0);
  }
}

TEST_F(FullDisk, FullFileSystemIsToldAndTheRowsStay) {
  const int end = inProcess([&] {
    if (!mountSmall(folder.path, 2 << 20)) return noMount;
    int rows = 0;
    {
      Session session(Server::create(veri(), "sa", password), "sa", password, "master");
      if (errorOf(session, "CREATE DATABASE F") != 0) return 1;
      if (errorOf(session, "USE F CREATE TABLE T (A INT, B CHAR(2000))") != 0) return 2;
      int error = 0;
      while ((error = errorOf(session, "INSERT INTO T VALUES (1,'x')")) == 0) ++rows;
      if (error != 1105 || rows == 0) return 3;
    }
    fillUp(folder.path);
    // The page of a new process is a hole, and no block is free for it.
    const fs::path lock = veri() / "server.lck";
    fs::resize_file(lock, 0);
    fillUp(folder.path);
    fs::resize_file(lock, 4096);
    if (errorNumber([&] { Server::open(veri()); }) != 5120) return 4;
    fs::remove(folder.path / "dolgu");
    Session session(Server::open(veri()), "sa", password, "F");
    PrintingSink sink;
    session.execute("SELECT COUNT(*) FROM T DELETE FROM T INSERT INTO T VALUES (2,'y')", sink);
    return sink.text == std::to_string(rows) + "\n" ? 0 : 5;
  });
  if (end == noMount) GTEST_SKIP() << "no file systems may be mounted here";
  EXPECT_EQ(end, 0);
}

}  // namespace
}  // namespace engine::test
