// The proof of a rollover: what the source held at its end, what the target opened with, the difference and
// its reason.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "rollover/para.h"

namespace rollover {

// A row that was passed over, or one value of it.
struct Atlanan {
  std::string tablo, ad, neden;
};

struct KanitSatiri {
  std::string tur;      // "Kasa"
  std::string kod, ad;  // empty in the total of a kind
  bool toplam = false;
  Para kaynak, hedef;
  std::string neden;  // why they differ; empty where nothing explains it
  Para fark() const { return hedef - kaynak; }
};

struct Kanit {
  std::string kaynak, hedef, kaynakDonemi, hedefDonemi, zaman;
  bool deneme = false;
  std::vector<KanitSatiri> satirlar;  // each kind's total, behind it its items that differ
  std::vector<Atlanan> atlananlar;
  std::int64_t atlananSayisi = 0;

  // Differences without a reason.
  std::int64_t aciklanmayan() const;
};

// A self-contained page that prints well, a table for spreadsheets, plain text and JSON.
std::string kanitHtml(const Kanit& kanit);
std::string kanitCsv(const Kanit& kanit);
std::string kanitMetni(const Kanit& kanit, bool yalnizcaFarklar);
std::string kanitJson(const Kanit& kanit);
// The same as a table of texts: numbers with a point, behind the items the rows that were passed over.
inline constexpr std::array<std::string_view, 7> kanitBasliklari = {"Tür",   "Kod",  "Ad",   "Kaynak",
                                                                    "Hedef", "Fark", "Neden"};
std::vector<std::vector<std::string>> kanitSatirlari(const Kanit& kanit, bool yalnizcaFarklar);
// Writes `icerik` at once or not at all; empty on success, else a Turkish text.
std::string dosyayaYaz(const std::string& yol, const std::string& icerik);

// "1.234,50" for people.
std::string paraMetni(Para deger);

}  // namespace rollover
