#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/code_page.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/registry.h"
#include "platform/terminal.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;

// A folder of its own as configuration home, removed afterwards.
class PlatformTest : public testing::Test {
 protected:
  void SetUp() override { ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1); }
  const support::TempFolder temporary;
  const fs::path& folder = temporary.path;
};

TEST(CodePage, EveryByteSurvivesARoundTrip) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string one(1, static_cast<char>(byte));
    EXPECT_EQ(platform::encode1254Exactly(platform::decode1254(one)), one) << byte;
  }
}

TEST(CodePage, TurkishLettersAndStrangers) {
  EXPECT_EQ(platform::encode1254("ĞİŞğış"), "\xD0\xDD\xDE\xF0\xFD\xFE");
  EXPECT_EQ(platform::encode1254("€"), "\x80");
  EXPECT_EQ(platform::encode1254("Ð中"), "??");  // Ð has no place: its Latin-1 byte is Ğ here
  EXPECT_FALSE(platform::encode1254Exactly("Ð"));
  EXPECT_FALSE(platform::encode1254Exactly("a\xFF"));
}

TEST(CodePage, Utf8Validity) {
  EXPECT_TRUE(platform::isUtf8("ışık €\xF0\x9F\x98\x80\xEF\xBF\xBD"));
  for (const char* bad : {"\x80", "\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE2\x82"})
    EXPECT_FALSE(platform::isUtf8(bad)) << bad;
  EXPECT_EQ(platform::toUtf8(platform::toUtf32("aı€\xF0\x9F\x98\x80")), "aı€\xF0\x9F\x98\x80");
}

TEST_F(PlatformTest, SafeWriteReplacesWholeFileForItsOwnerOnly) {
  const fs::path file = folder / "gizli.txt";
  ASSERT_FALSE(platform::writeFileSafely(file, "uzun eski metin"));
  ::chmod(file.c_str(), 0644);
  ASSERT_FALSE(platform::writeFileSafely(file, "yeni"));
  EXPECT_EQ(platform::readFile(file), "yeni");
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
}

TEST_F(PlatformTest, FailedWriteLeavesNothingBehind) {
  const fs::path target = folder / "klasor";
  fs::create_directories(target / "dolu");
  EXPECT_TRUE(platform::writeFileSafely(target, "x"));  // a folder cannot be replaced by a file
  EXPECT_TRUE(platform::writeFileSafely(folder / "yok" / "a", "x"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 1);
  EXPECT_FALSE(platform::readFile(target));
}

TEST_F(PlatformTest, RegistryKeepsValuesWhateverTheyHold) {
  EXPECT_FALSE(platform::registryHasKey("HKEY_CURRENT_USER", "Control Panel\\International"));
  EXPECT_EQ(platform::registryRead("HKEY_CURRENT_USER", "A", "b"), "");
  const std::string odd = "a=b\\n\n[c]\r";
  ASSERT_FALSE(platform::registryWrite("HKEY_CURRENT_USER", "Control Panel\\International", "sDate", odd));
  ASSERT_FALSE(platform::registryWrite("HKEY_CURRENT_USER", "Control Panel\\International", "sDecimal", ","));
  ASSERT_FALSE(platform::registryWrite("HKEY_LOCAL_MACHINE", "Control Panel\\International", "sDate", "x"));
  ASSERT_FALSE(platform::registryWrite("HKEY_CURRENT_USER", "control panel\\INTERNATIONAL", "SDECIMAL", "."));
  EXPECT_EQ(platform::registryRead("HKEY_CURRENT_USER", "Control Panel\\International", "sDate"), odd);
  EXPECT_EQ(platform::registryRead("HKEY_CURRENT_USER", "Control Panel\\International", "sDecimal"), ".");
  EXPECT_EQ(platform::registryRead("HKEY_LOCAL_MACHINE", "Control Panel\\International", "sDate"), "x");
  EXPECT_TRUE(platform::registryHasKey("HKEY_CURRENT_USER", "Control Panel\\International"));
}

TEST_F(PlatformTest, RegistryOutlivesADamagedFile) {
  fs::create_directories(folder / "zembera");
  ASSERT_FALSE(
      platform::writeFileSafely(platform::registryFile(), "=\n[x\nq=1\n[HKEY_CURRENT_USER\\K]\nv=1"));
  EXPECT_EQ(platform::registryRead("HKEY_CURRENT_USER", "K", "v"), "1");
  ASSERT_FALSE(platform::registryWrite("HKEY_CURRENT_USER", "K", "w", "2"));
  EXPECT_EQ(platform::registryRead("HKEY_CURRENT_USER", "K", "v"), "1");
}

// A folder in its place is as unreadable as a file without rights is to anyone but root.
TEST_F(PlatformTest, ARegistryThatCannotBeReadIsNotWrittenAnew) {
  fs::create_directories(platform::registryFile() / "dolu");
  EXPECT_EQ(platform::registryRead("HKEY_CURRENT_USER", "K", "v"), "");
  EXPECT_TRUE(platform::registryHasKey("HKEY_CURRENT_USER", "K")) << "no fresh account";
  EXPECT_EQ(platform::registryWrite("HKEY_CURRENT_USER", "K", "v", "1"), std::errc::permission_denied);
  EXPECT_TRUE(fs::exists(platform::registryFile() / "dolu"));
}

// What is left of a prompt that ended: the terminal as it was, whatever ended it.
TEST_F(PlatformTest, AHiddenPromptGivesTheTerminalItsEchoBack) {
  for (const int ending : {0, SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_TRUE(master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0);
    const int terminal = ::open(::ptsname(master), O_RDWR | O_NOCTTY);
    const auto echoes = [&] {
      termios mode{};
      return ::tcgetattr(terminal, &mode) == 0 && (mode.c_lflag & ECHO) != 0;
    };
    ASSERT_TRUE(echoes());
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
      ::dup2(terminal, STDIN_FILENO);
      {
        const platform::HiddenInput hidden;
        if (::write(ready[1], "r", 1) != 1) ::_exit(2);
        char byte;
        if (ending == 0 && ::read(STDIN_FILENO, &byte, 1) != 1) ::_exit(3);
        if (ending != 0) ::pause();
      }
      ::_exit(0);
    }
    char byte;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    EXPECT_FALSE(echoes());
    if (ending == 0) {
      ASSERT_EQ(::write(master, "x\n", 2), 2);
    } else {
      ::kill(child, ending);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(ending == 0 ? WIFEXITED(status) : WIFSIGNALED(status) && WTERMSIG(status) == ending)
        << ending;
    EXPECT_TRUE(echoes()) << ending;
    for (const int end : {master, terminal, ready[0], ready[1]}) ::close(end);
  }
}

TEST(Folders, BackslashSeparatesFolders) {
  EXPECT_EQ(platform::hostPath("veri\\FIRMA.mdf"), fs::path("veri") / "FIRMA.mdf");
  EXPECT_EQ(platform::hostPath("/srv/veri\\FIRMA_log.ldf").filename(), "FIRMA_log.ldf");
}

// Where sys.inf is looked for, by what stands where.
TEST(Folders, ProgramFolderOfEachKindOfInstallation) {
  const support::TempFolder temporary;
  const auto own = temporary.path / "bin", users = temporary.path / "ev", systems = temporary.path / "etc";
  struct Case {
    bool installed, ownFile, usersFile, systemsFolder, systemsFile;
    std::filesystem::path chosen;
  };
  const Case cases[] = {
      {false, false, false, false, false, own},    // a carried folder that can be written
      {false, true, true, true, true, own},        // its own sys.inf before all others
      {true, true, false, false, false, users},    // never beside an installed program
      {true, false, true, true, true, users},      // the user's own before the system's
      {true, false, false, true, true, systems},   // which is for those who may read it
      {true, false, false, true, false, systems},  // or make it
      {true, false, false, false, false, users},
  };
  for (const Case& c : cases) {
    for (const auto& folder : {own, users, systems}) std::filesystem::remove_all(folder);
    for (const auto& folder : {own, users}) std::filesystem::create_directories(folder);
    if (c.systemsFolder) std::filesystem::create_directories(systems);
    if (c.ownFile) std::ofstream(own / "sys.inf") << "a";
    if (c.usersFile) std::ofstream(users / "sys.inf") << "a";
    if (c.systemsFile) std::ofstream(systems / "sys.inf") << "a";
    EXPECT_EQ(platform::chooseProgramFolder({own, users, systems, c.installed}), c.chosen) << &c - cases;
  }
}

TEST(Terminal, ColoursAndBarsByTheEnvironment) {
  struct Case {
    const char *term, *noColor;
    bool draws, colours;
  };
  const Case cases[] = {{"xterm", nullptr, true, true},
                        {"xterm", "", true, true},
                        {"xterm", "1", true, false},
                        {"dumb", nullptr, false, false},
                        {"dumb", "1", false, false}};
  for (const Case& c : cases) {
    ::setenv("TERM", c.term, 1);
    if (c.noColor)
      ::setenv("NO_COLOR", c.noColor, 1);
    else
      ::unsetenv("NO_COLOR");
    EXPECT_EQ(platform::terminalDraws(), c.draws) << c.term;
    EXPECT_EQ(platform::coloursWanted(), c.colours) << c.term;
  }
  ::unsetenv("NO_COLOR");
}

}  // namespace
