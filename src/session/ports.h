// What a procedure cannot do itself and asks of its surroundings: the desktop, the command line and the
// tests each bring their own.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "db/value.h"

namespace session {

enum class Icon : std::uint8_t { None, Information, Question, Warning, Stop };

inline constexpr std::string_view defaultTitle = "Korvena Zembera";

class Boxes {
 public:
  virtual ~Boxes() = default;
  // Shows a text and waits until it is acknowledged. Line breaks are '\n'.
  virtual void message(const std::string& text, Icon icon = Icon::None,
                       std::string_view title = defaultTitle) = 0;
  // Whether a person is waited for behind message(): what repeats until it is acknowledged must end elsewhere.
  virtual bool waits() const { return true; }
  // Yes/No; the default answer is No. True for Yes.
  virtual bool ask(const std::string& text, Icon icon = Icon::Question,
                   std::string_view title = defaultTitle) = 0;
};

// Progress of a long run. Value and maximum are in steps of the caller's choosing.
class Progress {
 public:
  virtual ~Progress() = default;
  virtual void text(const std::string& text) = 0;                    // MesajLbl: what is being done
  virtual void step(std::int64_t value, std::int64_t maximum) = 0;   // KartBar: within the step
  virtual void whole(std::int64_t value, std::int64_t maximum) = 0;  // BarFrame: of the whole run
  virtual void pump() = 0;                                           // lets the window system run (DoEvents)
  // The user has pressed Vazgeç. Asked where a run may end with nothing half done; most runs never ask.
  virtual bool cancelled() { return false; }
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual db::DateTime now() const = 0;  // local time
};

// What differs by operating system.
class Platform {
 public:
  virtual ~Platform() = default;
  // Registry: missing keys and values read as an empty text. `root` is "HKEY_CURRENT_USER" or
  // "HKEY_LOCAL_MACHINE".
  virtual std::string registryRead(std::string_view root, std::string_view key, std::string_view value) = 0;
  virtual void registryWrite(std::string_view root, std::string_view key, std::string_view value,
                             std::string_view text) = 0;
  // True when the user has never had a value under the key (a fresh account without system settings).
  virtual bool registryKeyIsNew(std::string_view root, std::string_view key) = 0;
  // Restarts the machine (Windows) or ends the program so that it can be started anew.
  virtual void restart() = 0;
  virtual std::filesystem::path programFolder() const = 0;  // where sys.inf lies

  // The server's service on this machine. `server` is HOST, HOST\\INSTANCE or HOST,PORT.
  enum class Service : std::uint8_t { Elsewhere, Stopped, Changing, Running };
  // Elsewhere: the server runs on another machine, or nothing here controls it.
  virtual Service service(std::string_view /*server*/) { return Service::Elsewhere; }
  // Asks for start or stop and returns at once; empty, or what the system said.
  virtual std::string serviceRequest(std::string_view /*server*/, bool /*start*/) { return {}; }
};

}  // namespace session
