// The company card Firma_Tanım without its widgets: create a company, edit its card, show it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "session/oturum.h"

namespace company {

// Texts of the card's controls, with the controls' names, and its one field.
struct FirmaKarti {
  std::string Firma_Adi, Firma_Kodu, Firma_Unvani;
  std::string Adres, Sehir, Ulke, Tel1, Tel2, Fax;
  std::string Bas_Tar, Bit_Tar;  // DD/MM/YYYY
  std::string Vergi_Dairesi, Vergi_Numarasi;
  bool StandartHesapPlani = false;
  std::string Hata_Metni;        // first fault of the card, empty without one
  std::string_view Hatali_Alan;  // the column whose text is at fault
  bool Vazgecildi = false;       // the creation was given up; nothing of it stands
};

// How the screen stands after it was opened.
struct KartDurumu {
  bool Firma_Adi_Salt = false;          // Firma_Adi is read-only
  bool Frame2_Gorunur = true;           // hidden for a new company
  bool StandartHesapPlani_Acik = true;  // off when the company has a chart already
  bool Kayit_Acik = true;               // off: KaydetBtn, Frame1, Firma_Unvani, Frame3, Frame4
  std::string DurumPanel = "  Escape (Çıkış)  F2 (Kaydet)";
  std::string Uyari;  // what is wrong with the company itself, to be shown on the card; empty: nothing
};

// Opens the card as Yeni_Kayit, Inceleme and Secili_ID of the session tell.
KartDurumu Firma_Karti_Ac(session::Oturum& oturum, FirmaKarti& kart);

// Copies the open row of Kayitlar into the card. Throws db::SqlError when there is none.
void Yerlestir(session::Oturum& oturum, FirmaKarti& kart);

// Leaves the first fault in Hata_Metni. Behind the card's own tests the name is held against what the
// server takes, and each text against its column.
void Kayit_Kontrol(FirmaKarti& kart);

enum class OlusturSonucu : std::uint8_t {
  Tamam,      // statements of the schema that were refused have shown their boxes
  AdVar,      // the server knows a database of that name; nothing was written, Son_Hata holds the card's text
  DosyaVar,   // a file of that name lies in the data folder; likewise
  Basarisiz,  // the server failed; boxes have told how, and what stands
  Vazgecildi,  // the user gave it up; everything was taken back
};

// Makes the database and its catalog rows (Yeni_Kayit), or writes the card of the company Secili_ID.
// Hedef_Firma_Adi holds the trimmed Firma_Adi. A failure leaves its text in Son_Hata.
OlusturSonucu Firma_Olustur(session::Oturum& oturum, const FirmaKarti& kart);
// Takes the company Hedef_Firma_Adi back that was just made, database and rows: Vazgecildi, or Basarisiz
// when something of it stays, which a box has told.
OlusturSonucu Olusturmadan_Vazgec(session::Oturum& oturum);

// What happens to a chart that was asked for with a name that is taken: the card asks whether it goes into
// the company that stands, the shell leaves that company alone.
enum class AdVarken : std::uint8_t { Sor, Yazma };

// KaydetBtn. True when the form is to be unloaded and the console's list refreshed; the card's own faults
// are shown in a box and keep it open, and so does a failure of the server: what was typed is not lost. A
// name that is taken and a file in the way do not keep it open: their text is left in Son_Hata, which is
// empty when all went well. A creation that the user gives up keeps it open, too.
bool Kaydet(session::Oturum& oturum, FirmaKarti& kart, AdVarken adVarken = AdVarken::Sor);

// The successor of the greatest company code, "00001" without any.
std::string Sonraki_Firma_Kodu(session::Oturum& oturum);

}  // namespace company
