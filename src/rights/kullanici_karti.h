// The user card Ekle_Frm without its widgets: a user, the companies he may use, a row of rights for each.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "session/oturum.h"

namespace rights {

// A row of Firmatreelist.
struct FirmaSatiri {
  std::int64_t id = 0;
  std::string ad;
  bool secili = false;
};

// Texts of the card's controls, with the controls' names.
struct KullaniciKarti {
  std::string Kullanici_Adi, Kullanici_Sifre, Sifre_Onay, Sifreli_sifre, ID;
  bool Yonetici = false;
  std::string smtpserver, smtpserverport, sendusername, sendpassword;
  std::vector<FirmaSatiri> Firmatreelist;

  std::string Eski_Ad;           // as the card was opened
  std::string Eski_SQL_Sifre;    // what Sql_Girisi_Olustur hands to sp_password
  std::string Okunamayan_Sifre;  // scrambled text that cannot be read back; kept while no other is typed
};

enum class KullaniciOdak : std::uint8_t { Yok, Kullanici_Adi, Kullanici_Sifre };

// Opens the card as Yeni_Kayit, Inceleme and Secili_ID of the session tell. False when the user could not be
// read; the reason has been shown.
bool Kullanici_Karti_Ac(session::Oturum& oturum, KullaniciKarti& kart);

// Fill Firmatreelist: without ticks; with those of the user.
bool Firma_Listesi(session::Oturum& oturum, KullaniciKarti& kart);
bool Firma_Getir(session::Oturum& oturum, KullaniciKarti& kart, const std::string& sysusId);

// Leaves in Son_Hata what is wrong with the letters of a password, or nothing.
void Sifre_Kontrol(session::Oturum& oturum, const std::string& text);

struct KullaniciSonucu {
  bool kaydedildi = false;  // close the card and fill the console's tree anew
  KullaniciOdak odak = KullaniciOdak::Yok;
};
// The click on Ekle_Tamam.
KullaniciSonucu Ekle_Tamam(session::Oturum& oturum, KullaniciKarti& kart);
// Saves when both passwords agree; else says so.
KullaniciSonucu Sifre_Onayla(session::Oturum& oturum, KullaniciKarti& kart);
// Writes the card, whole or not at all.
KullaniciSonucu Kullanici_Kaydet(session::Oturum& oturum, KullaniciKarti& kart);

// Writes the card's ids, name and password into the user's row of rights in a company, the rights untouched.
bool Kullanici_Yetki_Kopyala(session::Oturum& oturum, const KullaniciKarti& kart, std::int64_t firmaId,
                             std::int64_t kullaniciId);

// The server login of a user, and his database users in the catalog and in the ticked companies. Stands by
// itself: users log in through the one SQL login of sys.inf, so no save calls it. False when it broke off.
bool Sql_Girisi_Olustur(session::Oturum& oturum, const KullaniciKarti& kart, const std::string& ad,
                        const std::string& sifre);

// A user at a glance.
struct KullaniciOzeti {
  std::int64_t id = 0;
  std::string ad;
  bool yonetici = false;
  std::vector<std::string> firmalar;  // databases
};
// All users by name, in two reads; a failure is shown and gives none.
std::vector<KullaniciOzeti> kullaniciOzetleri(session::Oturum& oturum);

}  // namespace rights
