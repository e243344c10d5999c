// The parameters of a company: every control of SabitTanimlar_Frm and TaksitliSatisTanimlar_Frm with its
// column of sysfrmlng, told once as data. Loading, saving, copying, comparing, the command line and the tests
// walk this table.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/value.h"
#include "session/oturum.h"

namespace settings {

enum class ParametreTuru : std::uint8_t {
  Tik,          // check box
  Sayi,         // number; a text that is none is written as `yoksa`
  Yazi,         // text, trimmed
  UzunYazi,     // text as it stands
  Liste,        // position in `secenekler`, counted from `taban`
  YaziListesi,  // the chosen text itself
  Secim,        // option group, index from 0
  Renk,         // colour value, blue byte first
  Tarih,        // day; without one the fiscal year's
  Firma,        // database of another company
  Ambar,        // number of a warehouse of the company
  Milimetre,    // shown in millimetres, stored in twips
  Yonelim,      // print direction
};

enum class ParametreEkrani : std::uint8_t { Sabit, Taksit };

// Frames in the order of the screen; Sekme is the tab of SSTab1 (0 to 4), -1 outside of it.
enum class Cerceve : std::uint8_t {
  Genel,
  StokSeviye,
  StokBakiye,
  Maliyet,
  Muhasebe,
  Virgul,
  Kilit,
  Emanet,
  Web,
  Taksit,
  SatisIptal,
  TahsilatIptal,
  Makbuz,
  DipNot,
};

struct Parametre {
  ParametreEkrani ekran;
  Cerceve cerceve;
  ParametreTuru tur;
  std::string_view kontrol, yazi, sutun;
  std::span<const std::string_view> secenekler = {};
  int taban = 0;
  std::string_view bos = "";     // shown for NULL
  std::string_view yoksa = "0";  // written for a text that is no number
};

std::span<const Parametre> parametreler();
const Parametre* parametreBul(std::string_view sutun);  // ASCII case ignored
int parametreSirasi(std::string_view kontrol);          // index into parametreler(); throws when unknown

inline constexpr std::string_view baglantiYok = "BAĞLANTI YOK";

// One value per parameter, in the table's order. On a screen: a tick "1" or "0", a list's place from 0 (empty
// where none is chosen), a colour as a number, a date GG/AA/YYYY, numbers with a comma.
using Gosterilen = std::vector<std::string>;

// The company's row as it was read.
struct FirmaKaydi {
  std::int64_t sysfrm_ID = 0;
  std::string sysfrm_dbnm;
  std::vector<db::Value> degerler;  // one per parameter
  db::Value Mali_Yil_Baslangic, Mali_Yil_Bitis;
};

// The caption of a parameter for lists and messages, without the blanks and colons around it.
std::string parametreAdi(const Parametre& parametre);

// --- Reading

struct Firma {
  std::string sysfrm_dbnm, sysfrm_kd;
};
// Connects Baglanti to the catalog and lists the companies; a failure is shown and gives none.
std::vector<Firma> Firma_Listesi(session::Oturum& oturum);

// The row by the company's database name. Empty, with the reason in Son_Hata, when there is none or it cannot
// be read.
std::optional<FirmaKaydi> Firma_Kaydi_Ac(session::Oturum& oturum, const std::string& ad);
// Several rows by one statement, in the order of `adlar`; a missing one is told in Son_Hata and gives none.
std::vector<FirmaKaydi> Firma_Kayitlari(session::Oturum& oturum, const std::vector<std::string>& adlar);

// What the controls show for a row. A parameter that cannot be shown, as NULL in a list that counts from 1,
// leaves its control empty and its text in `hatalar`.
Gosterilen Parametre_Yukle(const FirmaKaydi& kayit, std::vector<std::string>& hatalar);

// A stored value as a person writes it: dates GG/AA/YYYY, decimals with a point, flags 1 and 0; "NULL".
std::string depoMetni(const Parametre& parametre, const db::Value& deger);
// The other way, strictly; empty with the reason in `hata`.
std::optional<db::Value> depoDegeri(const Parametre& parametre, std::string_view metin, std::string& hata);

// --- Saving

enum class KilitAlani : std::uint8_t { Yok, KilitBasTarih, KilitBitTarih };
struct KilitSonucu {
  std::string hata;
  KilitAlani odak = KilitAlani::Yok;
};
KilitSonucu Kilit_Tarih_Kontrol(std::string_view bas, std::string_view bit);

struct ParametreFarki {
  const Parametre* parametre;
  db::Value eski, yeni;
};
// Where two rows differ.
std::vector<ParametreFarki> farklar(const std::vector<db::Value>& eski, const std::vector<db::Value>& yeni);

// What the shown values of one screen would store into the row; of the other screen's parameters what is
// there. Empty with the reason in `hata` when a value does not fit its column.
std::optional<std::vector<db::Value>> saklanacak(const FirmaKaydi& kayit, const Gosterilen& gosterilen,
                                                 ParametreEkrani ekran, std::string& hata);

struct KayitSonucu {
  bool yazildi = false;
  std::string hata;                     // refused; nothing was written
  std::vector<ParametreFarki> aradaki;  // what others changed since the row was read; nothing was written
};
// Writes the columns that differ from the row as read, by one statement that finds the row unchanged; with
// `uzerine` also over what others changed. On success the row becomes what is stored now.
KayitSonucu Parametre_Kaydet(session::Oturum& oturum, FirmaKaydi& kayit, const std::vector<db::Value>& yeni,
                             bool uzerine = false);

// The values of `hedef` after copying `kaynak` into it: the columns named, or all. The deposit warehouse is
// the company's own and goes over only when it is named.
std::vector<db::Value> kopyalanan(const FirmaKaydi& kaynak, const FirmaKaydi& hedef,
                                  const std::vector<const Parametre*>& secilen);
// The text of a stored choice ("Evet"); empty for a parameter without choices.
std::string anlami(const Parametre& parametre, const db::Value& deger);

// Whether the deposit warehouse has deposit movements. Asks on Baglanti2, the company's connection; an unread
// table counts as none.
bool Emanet_Ambari_Hareketli(session::Oturum& oturum, const std::string& ambarNo);
inline constexpr std::string_view emanetAmbariHatasi = "Emanet Ambarı Hareket Görmüştür Değiştiremezsiniz";

}  // namespace settings
