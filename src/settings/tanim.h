// The small reference tables of a company: workplaces, warehouses, salespeople, prices, currencies, colours,
// sizes, drops. Each editor is told by data (columns, keys, guards, confirmations, way of saving) with its
// own rules beside it. The screens work on Baglanti, which stands on the company's database while one is
// open.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "session/izgara.h"
#include "session/oturum.h"
#include "settings/cakisma.h"

namespace settings {

using session::IzgaraKolonu;
using session::IzgaraSatirlari;

// How rows leave the grid.
enum class SatirSilme : std::uint8_t {
  Yok,     // they do not
  Gizle,   // hidden, deleted from the table when saved
  Cikar,   // out of the grid at once
  Kaydir,  // the rows below move up, the last one is cleared
};
enum class KayitYolu : std::uint8_t {
  SatirSatir,    // delete the hidden ones, then insert or update
  SilVeEkle,     // delete all, insert all
  OlmayaniSil,   // delete what is not in the grid, then insert or update
  EkleDegistir,  // insert or update, no delete
};

// A column of the grid in the table.
struct TabloKolonu {
  std::string_view anahtar, sutun;  // grid column, table column
  int kesim = 0;                    // characters stored; 0: as it is
  bool bosYazilmaz = false;         // left alone when the cell is empty
  bool sayi = false;                // a number, 0 without one
  bool tik = false;
};

struct SilmeKurali {
  std::string_view soru;        // confirmation
  bool once = true;             // asked before the guard
  std::string_view kullanimda;  // shown when the guard finds something
  session::Icon ikon = session::Icon::Information;
  // The guard's statement for a row's key; `db` is the prefix of the tables.
  std::string (*deyim)(const std::string& db, const std::string& anahtar) = nullptr;
  std::string_view anahtar;  // grid column that the guard looks for
};

// What an editor checks, and with which words.
struct Kontrol {
  std::string hata;
  int satir = -1;  // where the editor goes, from 0; -1: stays
  std::string_view kolon = {};
};

struct TanimTuru {
  std::string_view ad;     // on the command line
  std::string_view ekran;  // name of the form
  std::string_view baslik;
  std::string_view izgara;  // name of the grid
  std::string_view tablo;
  std::string_view kimlik;          // identity column; hidden in the grid. Empty where rows have none there
  std::string_view yukleme, silme;  // statements; "{db}" stands for the prefix of the tables
  std::span<const IzgaraKolonu> kolonlar;
  std::span<const TabloKolonu> tabloKolonlari;
  std::string_view kod, adKolonu;               // grid columns; a row ends the grid without them
  std::span<const std::string_view> tekTikler;  // ticks that only one row has
  SatirSilme satirSilme;
  KayitYolu kayit;
  bool kullaniciYazilir;  // Kullanici_ID takes the session's user
  SilmeKurali kural;
  Kontrol (*kontrol)(const IzgaraSatirlari& satirlar, int satir);
  // A text for the key column of a row with that name, and whether another row has it: the refusal in the
  // grid, empty when it may stay.
  std::string (*kodKontrol)(const std::string& metin, const std::string& isim, bool ayniVar);
  bool satirEklenir = true, escapeCikar = false, turuncu = false;
  int enCokSatir = 0;  // rows that take edits; 0: all
};

std::span<const TanimTuru> tanimTurleri();
const TanimTuru* tanimBul(std::string_view ad);
int kolonu(const TanimTuru& tur, std::string_view anahtar);  // -1 when missing

// How often each key stands in the grid.
class AnahtarSayaci {
 public:
  AnahtarSayaci(const TanimTuru& tur, const IzgaraSatirlari& satirlar);
  // Whether a row whose key is `eski` would share `yeni` with another one.
  bool baskasinda(const std::string& eski, const std::string& yeni) const;
  void degisti(const std::string& eski, const std::string& yeni);

 private:
  std::string norm(const std::string& metin) const;
  bool sayi_;
  std::unordered_map<std::string, int> sayilar_;
};

// --- Opening and closing

// Puts Baglanti on the company's database (Secili_Firma) and loads its parameters. The reason when it cannot.
std::string Tanim_Firma_Bagla(session::Oturum& oturum);
// Puts Baglanti back on the catalog.
void Tanim_Firma_Birak(session::Oturum& oturum);
std::string tanimOneki(const session::Oturum& oturum);  // "FIRMA.dbo."

struct TanimListesi {
  IzgaraSatirlari satirlar;
  std::string hata;
};
TanimListesi Tanim_Yukle(session::Oturum& oturum, const TanimTuru& tur);
// Entries of the column Ambar_No, "0" first.
std::vector<session::ListeSecenegi> Bagli_Ambarlar(session::Oturum& oturum);

// --- Rows

// The successor of a code, with the oddities that the system has: "Z" gives "AA", "Y" gives "ZZ", "99" gives
// "00". Empty for an empty text.
std::string Sonraki_Kod(std::string_view kod);

// What stands against the row's removal; asks for the confirmation itself. True when it may go. Boxes are
// shown.
bool Satir_Silinir(session::Oturum& oturum, const TanimTuru& tur, const session::IzgaraSatiri& satir);

// Whether a warehouse has movements: its number is then read-only.
bool Ambar_Hareketli(session::Oturum& oturum, const std::string& ambarNo);

// --- Saving

// Writes the grid in one transaction; the reason when the server refused something and nothing was written.
std::string Tanim_Kaydet(session::Oturum& oturum, const TanimTuru& tur, const IzgaraSatirlari& satirlar);

// The grids of one screen, written in one transaction over tables that nobody changed meanwhile.
struct TanimIzgarasi {
  const TanimTuru* tur;
  IzgaraSatirlari satirlar, okunan;  // what is in the grid; the table as it was read
};
ListeKaydi Tanim_Kaydet(session::Oturum& oturum, const std::vector<TanimIzgarasi>& izgaralar);
CakismaKurali cakismaKurali(const TanimTuru& tur);

// --- Links of a workplace

enum class Bag : std::uint8_t { Ambar, Satici };
std::span<const IzgaraKolonu> bagKolonlari(Bag bag);
TanimListesi Bag_Listele(session::Oturum& oturum, Bag bag, const std::string& isyeriId);
// Stores the ticks of the grid at once. `isyerleri` is saved first when the workplace's row is gone; `satir`
// is its row. The fault, empty when it is stored.
Kontrol Bag_Kaydet(session::Oturum& oturum, Bag bag, const std::string& isyeriId,
                   const IzgaraSatirlari& baglar, const IzgaraSatirlari& isyerleri, int satir);

}  // namespace settings
