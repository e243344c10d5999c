// Which company of the catalog a name means. Names of databases compare by the server's own rule; nothing
// else in the program compares them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "session/oturum.h"

namespace session {

struct FirmaSatiri {
  std::int64_t id = 0;  // sysfrm_ID
  std::string ad;       // sysfrm_dbnm, trimmed
};

// The company that lists the name as it is written, else the one whose database the server finds under it,
// else one without a database whose name differs in the case of ASCII letters alone. Baglanti may stand on
// any database of the server. Throws db::SqlError.
std::optional<FirmaSatiri> Firma_Bul(Oturum& oturum, const std::string& ad);
std::optional<FirmaSatiri> Firma_Bul(db::Connection& baglanti, const std::string& ad);

// The company of an open recordset over sysfrmlng, asked for by `ad`. The column's collation may hold names
// for one that are two databases: then it is looked for as above.
std::int64_t Firma_Kimligi(Oturum& oturum, db::Recordset& kayitlar, const std::string& ad);

// The server's own spelling of a database's name; empty when it knows none. Throws db::SqlError.
std::string Veritabani_Asil_Adi(Oturum& oturum, const std::string& ad);

// Another company of the list whose row leads to the database `ad` of the company `id`, and to which the
// database belongs rather: it is listed there as the server spells it. A deletion of `id` must not take
// the database along. Throws db::SqlError.
std::optional<std::string> Veritabaninin_Sahibi(Oturum& oturum, std::int64_t id, const std::string& ad);

}  // namespace session
