// The session of one command: its record with the command line's ports.
#pragma once

#include <memory>

#include "cli/kutular.h"
#include "cli/ortam.h"
#include "session/oturum.h"
#include "session/yerel_ortam.h"

namespace cli {

class KomutOturumu {
 public:
  explicit KomutOturumu(Ortam& ortam);

  // sys.inf into the session; false, with the reason told, when it names no server.
  bool sunucuyuOku();
  // The same, then connected to the catalog as its supervisor, with what a login leaves behind.
  bool katalogaBagla();
  // The company that a name means by the server's rule, as the list spells it; an unknown one as it is.
  std::string firma(const std::string& ad);

  Ortam& ortam;
  KomutKutulari kutular;
  KomutIlerlemesi ilerleme;
  session::YerelSaat saat;
  session::YerelPlatform platform;
  std::unique_ptr<db::ConnectionFactory> surucu;
  session::Oturum oturum;  // last: its connections end before the driver
};

// How a failure is told to a person: the server's number, where it gave one, and its text, in one line.
std::string hataSatiri(const db::SqlError& hata);
// The same for a failed connection; a refused login is told in the login screen's words before it.
std::string baglantiHatasi(const db::SqlError& hata);

}  // namespace cli
