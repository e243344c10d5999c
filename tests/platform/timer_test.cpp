#include "platform/timer.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/files.h"
#include "support/temp_folder.h"

namespace {

TEST(Timer, WordsReachTheProgramAsTheyAre) {
  platform::DailyTimer timer{
      "zembera-yedek", "Yedekler", "23:05", {"/opt/z cli", "--hedef", "/a b/%Y $HOME\"\\"}};
  EXPECT_EQ(platform::serviceUnit(timer),
            "[Unit]\nDescription=Yedekler\n\n[Service]\nType=oneshot\n"
            "ExecStart=\"/opt/z cli\" \"--hedef\" \"/a b/%%Y $$HOME\\\"\\\\\"\n");
  EXPECT_EQ(platform::timerUnit(timer),
            "[Unit]\nDescription=Yedekler\n\n[Timer]\nOnCalendar=*-*-* 23:05:00\nPersistent=true\n\n"
            "[Install]\nWantedBy=timers.target\n");
}

TEST(Timer, AServiceIsWrittenAndTakenAway) {
  const support::TempFolder temporary;
  const char* before = std::getenv("XDG_CONFIG_HOME");
  const std::string kept = before ? before : "";
  ::setenv("XDG_CONFIG_HOME", temporary.path.c_str(), 1);
  const platform::RunningService service{
      "zembera-deneme-yok", "Deneme", {"/opt/z sunucu", "--klasor", "/a b"}};
  EXPECT_EQ(platform::serviceStatus(service.name), "");
  platform::installService(service);  // the manager of a test machine may not be there
  const auto unit = temporary.path / "systemd" / "user" / "zembera-deneme-yok.service";
  EXPECT_EQ(platform::readFile(unit),
            "[Unit]\nDescription=Deneme\n\n[Service]\nExecStart=\"/opt/z sunucu\" \"--klasor\" \"/a b\"\n"
            "Restart=on-failure\nTimeoutStopSec=60\n\n[Install]\nWantedBy=default.target\n");
  EXPECT_NE(platform::serviceStatus(service.name), "");
  EXPECT_TRUE(platform::removeService(service.name));
  EXPECT_FALSE(platform::removeService(service.name));
  if (before)
    ::setenv("XDG_CONFIG_HOME", kept.c_str(), 1);
  else
    ::unsetenv("XDG_CONFIG_HOME");
}

TEST(Timer, IsWrittenAndTakenAway) {
  const support::TempFolder temporary;
  const char* before = std::getenv("XDG_CONFIG_HOME");
  const std::string kept = before ? before : "";
  ::setenv("XDG_CONFIG_HOME", temporary.path.c_str(), 1);
  const platform::DailyTimer timer{"zembera-deneme-yok", "Deneme", "03:00", {"/bin/true"}};
  platform::installTimer(timer);  // the manager of a test machine may not be there
  const auto folder = temporary.path / "systemd" / "user";
  EXPECT_EQ(platform::readFile(folder / "zembera-deneme-yok.service"), platform::serviceUnit(timer));
  EXPECT_EQ(platform::readFile(folder / "zembera-deneme-yok.timer"), platform::timerUnit(timer));
  EXPECT_TRUE(platform::removeTimer(timer.name));
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  EXPECT_FALSE(platform::removeTimer(timer.name));
  // What is left where one of these was killed.
  for (const char* left : {"zembera-deneme-yok.service", "zembera-deneme-yok.timer.yaziliyor-abcdef"})
    EXPECT_FALSE(platform::writeFileSafely(folder / left, "x"));
  EXPECT_FALSE(platform::removeTimer(timer.name));
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  if (before)
    ::setenv("XDG_CONFIG_HOME", kept.c_str(), 1);
  else
    ::unsetenv("XDG_CONFIG_HOME");
}

}  // namespace
