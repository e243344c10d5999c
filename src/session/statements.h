// Connection and statement routines: the traffic of the procedures passes here. Besides them only execute and
// query of the session's connections are used, where a failure must be an exception (steps of one
// transaction, look-ups), a recordset that is opened for writing, and connections of their own where the
// session's must not be moved: a server that is only tried, the console's panel.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/oturum.h"

namespace session {

// Each makes a new connection object and opens it: first with SQL login, then, when that fails, with
// integrated security; the second failure is thrown (db::SqlError). `auth` is passed along and not read.
void Veritabani_Bagla(Oturum&, int auth, const std::string& login, const std::string& password,
                      const std::string& catalog, const std::string& server);
void Veritabani_Bagla2(Oturum&, int auth, const std::string& login, const std::string& password,
                       const std::string& catalog, const std::string& server);
void Veritabani_Bagla3(Oturum&, int auth, const std::string& login, const std::string& password,
                       const std::string& catalog, const std::string& server);
void Veritabani_Bagla4(Oturum&, int auth, const std::string& login, const std::string& password,
                       const std::string& catalog, const std::string& server);
// Also leaves the connection text of the form that succeeded in Devir_Baglanti_Metni.
void Veritabani_Bagla_Devir(Oturum&, int auth, const std::string& login, const std::string& password,
                            const std::string& catalog, const std::string& server);
// Baglanti to `catalog` at Server_Adi with the session's login.
void Katalog_Bagla(Oturum&, const std::string& catalog);
// Closes Baglanti when open, trims both arguments and connects. True on success; a failure is shown.
bool CNN_Bagla(Oturum&, const std::string& server, const std::string& catalog);

// 0, or -1 on failure, silently.
int Sorgu_Ac(Oturum&, db::Recordset&, std::string_view sql);
int Sorgu_Ac2(Oturum&, db::Recordset&, std::string_view sql);
// On failure Son_Hata takes number, " : ", text; a box shows it, a second box the statement.
void Sorgu_Ac_Mesajli(Oturum&, db::Recordset&, std::string_view sql);
// The same; false when no later statement can succeed either.
bool Sorgu_Ac_Surer(Oturum&, db::Recordset&, std::string_view sql);
// Repeats while the link is broken and the operator acknowledges; -1 on any other failure.
int Sorgu_Ac_Tekrarli(Oturum&, db::Recordset&, std::string_view sql);
// 0 or the error's number; a failure shows its text in a plain box.
std::int32_t Komut_Calistir(Oturum&, db::Recordset&, std::string_view sql);
std::int32_t Komut_Calistir2(Oturum&, db::Recordset&, std::string_view sql);

void Veritabani_Kullanici_Sil(Oturum&, const std::string& database, const std::string& name);
void Veritabani_Kullanici_Ekle(Oturum&, const std::string& database, const std::string& name);
void Versiyon_Bilgisi(Oturum&);

}  // namespace session
