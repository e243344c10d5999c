// The first steps on a machine or server: what the login offers a newcomer.
#pragma once

#include <string>

#include "session/oturum.h"
#include "session/sys_inf.h"

namespace company {

struct IlkKurulum {
  std::string yonetici, sifre;  // the supervisor as typed
  bool ornekVeri = false;       // with a company of example data
};
inline constexpr std::string_view ornekFirmaAdi = "ORNEK";

// Prepares a server in this machine's process under "(yerel)": writes sys.inf with a password of its own
// making, makes the server where there is none, catalog and supervisor, and the example company. Leaves
// Server_Adi, SQL_Login and SQL_Sifre of the session on it. Empty on success, else a Turkish text; sys.inf
// is then as it was.
std::string Bu_Makineyi_Hazirla(session::Oturum& oturum, const IlkKurulum& kurulum);

// Whether the server answers and knows the login. Empty when it does, else a Turkish text.
std::string Sunucuyu_Sina(session::Oturum& oturum, const session::SysInf& degerler);
// Tests, then writes sys.inf and takes its values into the session. Empty on success.
std::string Sunucuya_Bagla(session::Oturum& oturum, const session::SysInf& degerler);

// There is no server to log in to: sys.inf names none, or a local one whose folder is not there. In Turkish;
// empty when a login may be tried.
std::string Kurulum_Eksigi(session::Oturum& oturum);

}  // namespace company
