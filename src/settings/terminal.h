// Definitions of text files that hand terminals produce: the table DISVERITANIM of the catalog. A line is cut
// by one separator or read by fixed start and width; nine items are known by name.
//
//   separated line = field { separator field }      an item's start is the place of its field, from 1
//   fixed line     = characters                     an item stands from its start (from 1) for its width
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "session/izgara.h"
#include "session/oturum.h"
#include "settings/cakisma.h"

namespace settings {

struct TerminalOgesi {
  std::string_view yazi, kok;  // row name; stem of its three columns
  bool tasarimdaSecili;
};
std::span<const TerminalOgesi, 9> terminalOgeleri();

struct TerminalTanimi {
  std::string Tanim_ID, Tanim_Kod, Tanim_Ad, Dosya_Yol;
  bool AyiracVar = false;
  std::string Ayirac;
  bool MiktarParcali = false;
  std::string ParcaAdedi;
  struct Oge {
    bool Secim = false;
    std::string Bas, Adet;
    friend bool operator==(const Oge&, const Oge&) = default;
  };
  std::array<Oge, 9> ogeler;
  friend bool operator==(const TerminalTanimi&, const TerminalTanimi&) = default;
};

// A definition as a row: the fields, then three columns for each item.
std::span<const session::IzgaraKolonu> terminalKolonlari();
session::IzgaraSatiri terminalSatiri(const TerminalTanimi& tanim);

// Connects Baglanti to the catalog; code and name of each definition. A failure is shown.
std::vector<session::ListeSecenegi> Terminal_Listesi(session::Oturum& oturum);
std::vector<session::ListeSecenegi> Terminal_Listesi_Yenile(session::Oturum& oturum);
// By its code; empty when there is none.
std::optional<TerminalTanimi> Terminal_Oku(session::Oturum& oturum, const std::string& kod);
std::vector<TerminalTanimi> Terminal_Tumu(session::Oturum& oturum);
// Writes over the definition's row, or a new one. The reason when nothing was written.
std::string Terminal_Kaydet(session::Oturum& oturum, const TerminalTanimi& tanim, bool yeni);
// What others changed in the definition since it was read, a line each.
std::vector<std::string> Terminal_Farklari(session::Oturum& oturum, const TerminalTanimi& okunan);
void Terminal_Sil(session::Oturum& oturum, const std::string& kimlik);

// The first lines of a file, cut by the definition: one row a line, one cell a chosen item.
struct TerminalOnizleme {
  std::vector<std::string> basliklar;
  std::vector<std::vector<std::string>> satirlar;
  std::string hata;
};
TerminalOnizleme Terminal_Onizle(const TerminalTanimi& tanim, const std::filesystem::path& dosya,
                                 std::size_t enCokSatir = 50);

}  // namespace settings
