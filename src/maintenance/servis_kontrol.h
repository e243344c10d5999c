// Stop and start of the server's service, with one meaning on every kind of server: when a call has come
// back without a text, the service is in the state that was asked for.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "session/oturum.h"

namespace maintenance {

enum class SunucuYeri : std::uint8_t {
  Yerel,     // the embedded server: its files are ours
  BuMakine,  // a SQL Server whose service this machine controls
  Uzak,      // its files cannot be reached from here
};
SunucuYeri sunucuYeri(const session::Oturum& oturum);

// How long a start or stop may take.
inline constexpr std::chrono::seconds servisSuresi{60};

// Empty on success, else what is wrong, in Turkish. A service that is there already is a success.
std::string Servis_Durdur(session::Oturum& oturum);
std::string Servis_Baslat(session::Oturum& oturum);

// Lets that many seconds pass; the window lives.
void Bekle(session::Oturum& oturum, double saniye);

// Starts the service again when it goes, whatever happened meanwhile.
class ServisMolasi {
 public:
  explicit ServisMolasi(session::Oturum& oturum) : oturum_(oturum) {}
  ~ServisMolasi();
  ServisMolasi(const ServisMolasi&) = delete;
  ServisMolasi& operator=(const ServisMolasi&) = delete;

  std::string durdur();
  std::string baslat();
  double saniye() const { return saniye_; }  // how long the service was down, after baslat()

 private:
  session::Oturum& oturum_;
  bool durdu_ = false;
  std::chrono::steady_clock::time_point an_;
  double saniye_ = 0;
};

}  // namespace maintenance
