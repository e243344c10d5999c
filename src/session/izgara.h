// An editable grid without its widget: columns as data, rows as texts. Screens, commands and tests of one
// editor share the description of its columns.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace session {

enum class HucreTuru : std::uint8_t { Metin, Sayi, Tik, Liste };  // a tick is "1", "0" or empty

struct IzgaraKolonu {
  std::string_view anahtar, baslik;
  int genislik = 0;  // device-independent pixels
  HucreTuru tur = HucreTuru::Metin;
  bool gizli = false, salt = false;
  bool buyuk = false;  // letters go in as capitals
  int sinir = 0;       // characters that the cell takes; 0: no limit
};

struct IzgaraSatiri {
  std::vector<std::string> hucreler;
  bool gizli = false;  // removed, still there until saving
  friend bool operator==(const IzgaraSatiri&, const IzgaraSatiri&) = default;
};
using IzgaraSatirlari = std::vector<IzgaraSatiri>;

struct ListeSecenegi {
  std::string deger, yazi;
};

int kolonSirasi(std::span<const IzgaraKolonu> kolonlar, std::string_view anahtar);  // -1 when missing

// What every cell asks of a text, typed, pasted or read from a file; may change it (capitals, "evet" to
// "1"). The text of the refusal, empty when it is taken.
std::string hucreDenetle(const IzgaraKolonu& kolon, std::string& metin);
// A letter of the text that code page 1254 does not have.
std::optional<std::string> yabanciHarf(std::string_view metin);
std::size_t harfSayisi(std::string_view metin);
std::string ilkHarfler(std::string_view metin, std::size_t sayi);

// Cells as spreadsheets exchange them: tab between cells, line break between rows; a cell with tab, line
// break or quotation mark in front stands in quotation marks, doubled inside.
std::vector<std::vector<std::string>> tabloOku(std::string_view metin);
std::string tabloYaz(const std::vector<std::vector<std::string>>& satirlar);

}  // namespace session
