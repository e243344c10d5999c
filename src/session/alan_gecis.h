// Keyboard movement between the fields of a form by the map in each control's Tag; the toolkit's side
// feeds the controls and sets the focus.
//
//   tag       = left ";" up ";" right ";" down
//   part      = [ candidate { "|" candidate } ]
//   candidate = name [ "(" index ")" ]        name in any case; index for an element of a control array
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace session {

enum class GecisTusu : int { Sol = 37, Yukari = 38, Sag = 39, Asagi = 40, Enter = 13 };
// Empty for a key that the map does not know.
std::optional<GecisTusu> gecisTusu(int key);

struct GecisAdayi {
  std::string ad;
  std::optional<int> sira;
  friend bool operator==(const GecisAdayi&, const GecisAdayi&) = default;
};
// The candidates of the key's part; Enter acts like down.
std::vector<GecisAdayi> gecisAdaylari(std::string_view tag, GecisTusu tus);

// One control of the form as the walk sees it.
struct GecisAlani {
  std::string ad;
  std::optional<int> sira;
  bool acik = true;     // Enabled
  bool gorunur = true;  // Visible
};

// The field that the key leaves.
struct GecisKonumu {
  std::string_view tag;
  int imlec = 0;         // SelStart, in characters
  int uzunluk = 0;       // length of Text, in characters
  bool metinde = false;  // the caller's flag: left and right move inside the text until its ends
};

// Index into `alanlar` of the field that takes the focus; empty when the key stays in the field or no
// candidate is enabled and visible.
std::optional<std::size_t> alanGecis(std::span<const GecisAlani> alanlar, const GecisKonumu& konum, int key);

}  // namespace session
