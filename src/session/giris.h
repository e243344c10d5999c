// The login Giris_Frm without its screen.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/bolgesel.h"
#include "session/oturum.h"

namespace session {

// Everything that runs when the screen is loaded, in its order: sys.inf, regional check, SQLVER, SQLPath.
BolgeselSonuc Giris_Yukle(Oturum& oturum);

enum class GirisOdak : std::uint8_t { Yok, Kullanici, Sifre };

struct GirisSonucu {
  enum class Adim : std::uint8_t {
    EkrandaKal,   // the box has been shown; set the focus as told
    KonsolTam,    // close the screen, show the console
    KonsolEksik,  // the same after a failure: Giris_Hatali is -1, the console comes up reduced
    KatalogYok,   // the server answers and knows the login, but has no catalog; nothing was shown
  };
  Adim adim = Adim::EkrandaKal;
  GirisOdak odak = GirisOdak::Yok;
  bool sifreyiBosalt = false;
  // KatalogYok: the failure that Giris_Basarisiz takes when the offer to prepare the server is declined.
  std::int32_t hataNo = 0;
  std::string hataMetni;
};

// The click on TamamBtn with the texts of both fields. On KatalogYok the caller offers to prepare the
// server and calls it again, or calls Giris_Basarisiz.
GirisSonucu Giris_Tamam(Oturum& oturum, const std::string& kullanici, const std::string& sifre);

// Said when the server refuses the SQL login.
inline constexpr std::string_view girisReddi =
    "SQL Admin Kullanıcı Adı ve/veya Şifresi Hatalıdır. Giriş İzni Alınamıyor.";

// The failure handler: shows the box, sets Giris_Hatali to -1; gives KonsolEksik.
GirisSonucu Giris_Basarisiz(Oturum& oturum, std::int32_t hataNo, const std::string& hataMetni);

// The user check on the open row of sysuslng in Kayitlar. Throws db::SqlError when the recordset is closed.
GirisSonucu Giris_Kontrol(Oturum& oturum);

// The server of the session answers and knows its login, but has no catalog database.
bool katalogEksik(Oturum& oturum);
// The same behind a failed connection to the catalog: only a server that has said so (4060) is asked again.
bool katalogEksik(Oturum& oturum, const db::SqlError& error);

}  // namespace session
