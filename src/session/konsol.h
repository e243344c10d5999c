// The console Zembera_Menu without its widgets: what the tree holds, which commands stand open, what each
// command does.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "session/oturum.h"

namespace session {

// Node kinds of AlanTreeList, as held in the kind column of each node.
namespace dugum {
inline constexpr std::string_view FT = "FT", F = "F", KT = "KT", K = "K", SI = "SI", Y = "Y";
}

struct Dugum {
  std::string kind;
  std::string text;
  std::int64_t id = 0;   // sysfrm_ID or sysus_ID; 0 for a branch
  std::string password;  // of a user, unscrambled; empty when it cannot be
  std::string kod;       // of a company: its code
  // Of a company the users who may use it, of a user his companies, by name and with commas between.
  std::string baglar = {};
  // Of a company, where they could be read: title, period (both days or neither), version of its schema.
  std::string unvan = {}, surum = {};
  std::optional<db::DateTime> bas = {}, bit = {};
  friend bool operator==(const Dugum&, const Dugum&) = default;
};
int resimSirasi(std::string_view kind);  // image index by kind

// The tree in reading order: branch "FT", its companies, branch "KT", its users. Nothing when one of the two
// lists could not be read; a box has told why.
std::optional<std::vector<Dugum>> Alan_Listesi_Doldur(Oturum& oturum);
// Connect to the catalog first. A failure is shown in a box and gives an empty list.
std::vector<Dugum> Firma_Listesi_Doldur(Oturum& oturum);
std::vector<Dugum> Kullanici_Listesi_Doldur(Oturum& oturum);

// What removes a company from the catalog, in its order.
std::vector<std::string> firmaSilmeCumleleri(std::int64_t id);
// Remove the rows of one company or user from the catalog, all or none. False, with the reason shown, on a
// failure.
bool Firma_Sil(Oturum& oturum, std::int64_t id);
bool Kullanici_Sil(Oturum& oturum, std::int64_t id);

// --- Popup menu
struct MenuDurumu {
  bool ekle = false, degistir = false, incele = false, sil = false, yetki = false, yetkiKasiyer = false,
       tanimlar = false;
  friend bool operator==(const MenuDurumu&, const MenuDurumu&) = default;
};
MenuDurumu menuDurumu(std::string_view kind, bool supervisor);

// --- Keys and double click in the tree
enum class AgacOlayi : std::uint8_t { Enter, Insert, Delete, CiftTik };
enum class Komut : std::uint8_t { MNEkle, MNDegistir, MNSil };
std::optional<Komut> agacKomutu(AgacOlayi olay, std::string_view kind, bool supervisor);

// --- Image buttons Menu_Buton(0) to (10)
struct MenuButonu {
  std::string_view ekran;
  std::string_view yazi, resim;  // caption and picture
  std::string_view ipucu;        // what the caption does not say
  std::string_view durum;        // status bar text; empty: none
  bool eksikteAcik;              // stays on in the reduced console
};
std::span<const MenuButonu, 11> menuButonlari();
inline constexpr MenuButonu raporEvrakButonu{"RprEvrakTsrFrm",
                                             "Rapor Evrak Tasarımları",
                                             "tasarim",
                                             "Raporların ve evrakların varsayılan SQL metinleri",
                                             "Rapor Evrak Tasarımları",
                                             true};

// --- Commands on the current node
enum class Ekran : std::uint8_t {
  Yok,
  Firma_Tanim,
  Ekle_Frm,
  Yetki_Frm,
  KasiyerYetkiFrm,
  MNIsyeri,
  MNAmbar,
  MnSatici,
  MNDoviz,
  MNFiyat,
  MNRenkTanim,
};

// Name and caption of the screen behind a command; both empty for Yok.
struct EkranBilgisi {
  std::string_view ad, yazi;
};
const EkranBilgisi& ekranBilgisi(Ekran ekran);

struct KomutSonucu {
  Ekran ekran = Ekran::Yok;    // the screen to show
  bool paneliGizle = false;    // hide anapanel first
  std::string durum;           // status bar text; empty: leave it
  bool listeyiYenile = false;  // refill the tree with Alan_Listesi_Doldur
};

KomutSonucu MNEkle(Oturum& oturum, const Dugum& secili);
KomutSonucu MNDegistir(Oturum& oturum, const Dugum& secili);
KomutSonucu MNIncele(Oturum& oturum, const Dugum& secili);
KomutSonucu MNYetki(Oturum& oturum, const Dugum& secili);
KomutSonucu MNYetkiKasiyer(Oturum& oturum, const Dugum& secili);
// The definition screens; `ekran` from MNIsyeri to MNRenkTanim.
KomutSonucu MNTanim(Oturum& oturum, const Dugum& secili, Ekran ekran);
// Asks, deletes company or user, shows what went wrong. listeyiYenile is set when something was deleted.
KomutSonucu MNSil(Oturum& oturum, const Dugum& secili);

// The next company code: the successor of the greatest one, "00001" without any.
std::string Firma_Kod_Yeni(Oturum& oturum);

}  // namespace session
