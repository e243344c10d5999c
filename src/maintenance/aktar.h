// DbAktarFRm without its screen: moves company databases from another folder into the server's data folder
// and makes the server and the catalog know them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "session/oturum.h"

namespace maintenance {

inline constexpr std::string_view aktarBaslik = "Korvena Ticari Yazılım";

struct AktarSatiri {
  std::string Database;
  bool Sec = false;
};

// The server's data folder, trimmed; empty when the catalog does not tell one. Leaves Baglanti on it.
std::string aktarHedefi(session::Oturum& oturum);
// The databases whose data file lies in the folder, without the catalog, by name.
std::vector<AktarSatiri> aktarListesi(const std::filesystem::path& kaynak);
// A database that a server keeps for itself; it is listed like the others and never moved.
bool sunucununKendisi(const std::string& ad);
bool ayniDizin(const std::filesystem::path& a, const std::filesystem::path& b);

// Moves what is chosen. Without `genel` each database that the server does not know is made first, with a
// row and full rights for user 1; with it the files are attached and the catalog moves, too, when its files
// lie in the source folder. False when it was declined or failed, which has been shown; then files,
// databases and rows are as before and the service runs.
bool Aktar(session::Oturum& oturum, const std::filesystem::path& kaynak, const std::string& hedef,
           const std::vector<AktarSatiri>& satirlar, bool genel);

// Attaches a database that the server does not know; a refusal is passed over. True when it is known then.
bool Veritabani_Ekle(session::Oturum& oturum, const std::string& klasor, const std::string& mdf,
                     const std::string& log, const std::string& ad);

// The catalog tells where the files lie; one that was moved here tells its old place.
void Veri_Klasorunu_Yaz(session::Oturum& oturum, const std::string& klasor);

class Bakim;
enum class Hazirlik : std::uint8_t { Biliniyor, Yapildi, Engel };
// Makes the database and its company row, which `bakim` is told before; Engel has been shown.
Hazirlik Firma_Hazirla(session::Oturum& oturum, Bakim& bakim, const std::string& ad,
                       const std::string& klasor);
// Takes both away again, whatever of them there is by now; `sonKart` as it was told. A failure is shown.
void Firma_Hazirligini_Geri_Al(session::Oturum& oturum, const std::string& ad, std::int64_t sonKart);

}  // namespace maintenance
