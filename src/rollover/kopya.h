// Copying rows of a table from the source into the target, matched by a key.
//
// Rows travel inside the server: a new one by INSERT ... SELECT, pages of them in one statement, an existing
// one by UPDATE ... FROM, one statement a row, because the triggers of the cards look at one row. Each column
// is an expression over the source row `s`; where a value may not fit, a condition tells for which rows it
// does, and the others are written alone, without that value. A statement that is refused is split until the
// row that is to blame stands alone and is passed over.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rollover/baglam.h"

namespace rollover {

struct KopyaKolonu {
  std::string ad;
  std::string ifade;  // over s
  std::string uyar;   // condition under which the value fits; empty for always
};

struct Kopya {
  std::string tablo;
  std::string kimlik;  // identity column, alike on both sides
  std::vector<KopyaKolonu> kolonlar;
  std::string kosul;  // which rows of s; empty for all
  std::string esle;   // when a target row h is the row s; empty: none ever is
  // What makes two rows of s one row of the target: expressions over s; empty when none ever are.
  std::vector<std::string> tekrar;
  std::string sira;       // order of the new rows over s; empty for the identity's
  std::string hedefAtla;  // target rows h that are left alone
  std::string ad;         // names a row; over s
  // Unkeyed copies look for a target row with 0 in this column and overwrite it; `sifirIfade` is what the
  // copy writes there. Empty for the others.
  std::string sifirKolon, sifirIfade;
  bool tekEkle = false;  // triggers for INSERT look at one row
};

void kopyala(Baglam& baglam, const Kopya& kopya);

// Indexes for what the triggers of a table look for, while many of its rows are written.
void tetikDizinleriKur(Baglam& baglam, std::string_view kart);
void tetikDizinleriKaldir(Baglam& baglam, std::string_view kart);

// Columns that both sides know, with their references translated; `Cari_ID` and `Stok_ID` only with
// `cariStok`. Texts are trimmed unless `ham`.
enum class Kirpma : std::uint8_t { Kirp, Ham };
struct KolonSecimi {
  Kirpma kirpma = Kirpma::Kirp;
  bool referanslar = true, cariStok = false;
};
// `ozel` names columns and the expressions that they take instead; an empty expression leaves one out.
using OzelKolonlar = std::vector<std::pair<std::string, std::string>>;
std::vector<KopyaKolonu> kolonlariKur(Baglam& baglam, const std::string& tablo, const KolonSecimi& secim,
                                      const OzelKolonlar& ozel = {});
// Identity column of a target table; empty without one.
std::string kimlikKolonu(Baglam& baglam, const std::string& tablo);

}  // namespace rollover
