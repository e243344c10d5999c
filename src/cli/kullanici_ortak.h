// What the commands of users and rights share.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "rights/kullanici_karti.h"
#include "rights/yetki_duzeni.h"

namespace cli {

// Options of the mail settings, for the commands that write the card.
inline constexpr std::array<Secenek, 4> postaSecenekleri = {
    {{"--smtp-sunucu", "Posta sunucusu", false, Secenek::Tur::Metin, "AD"},
     {"--smtp-kapi", "Posta sunucusunun kapısı", false, Secenek::Tur::Metin, "NO"},
     {"--smtp-kullanici", "Posta kullanıcısı", false, Secenek::Tur::Metin, "AD"},
     {"--smtp-sifre", "Posta şifresini sorar", false, Secenek::Tur::Bayrak, ""}}};

// "A,B,C" without blanks around the parts.
std::vector<std::string> virgulleBol(const std::string& metin);

// Ticks exactly the companies named; false, with the reason told, when one is unknown.
bool firmalariSec(KomutOturumu& komut, rights::KullaniciKarti& kart, const std::string& firmalar);
// Mail settings into the card; the password is asked. False when none came.
bool postayiKoy(Ortam& ortam, rights::KullaniciKarti& kart, const Degerler& values);
// Asks for the user's password.
bool sifreyiSor(Ortam& ortam, rights::KullaniciKarti& kart);

// The number of a user by name; empty, with the reason told, when there is none.
std::optional<std::int64_t> kullaniciBul(KomutOturumu& komut, const std::string& ad);

// User 1 has every right and keeps it; the console says so in the same words.
bool yoneticininki(KomutOturumu& komut, const rights::YetkiDuzeni& duzen);

}  // namespace cli
