// The last used document numbers of a company: the counter tables IP_<key>. All on Baglanti2, the company's
// connection.
#pragma once

#include <string>
#include <vector>

#include "session/izgara.h"
#include "session/oturum.h"

namespace settings {

struct Numara {
  std::string etiket, anahtar;
  std::string numara;  // trimmed
  bool var = true;     // false: the counter's table does not exist
};

struct NumaraListesi {
  std::vector<Numara> numaralar;  // 28 fixed ones, two for each cash account
  std::string hata;
};
NumaraListesi Numaralari_Oku(session::Oturum& oturum);

// Characters that a counter takes.
std::size_t numaraUzunlugu(std::string_view anahtar);

struct NumaraYazisi {
  std::string anahtar, numara;
};
// Writes the numbers, cut to what the counters take, in one transaction; the reason when nothing was written.
std::string Numaralari_Yaz(session::Oturum& oturum, const std::vector<NumaraYazisi>& yazilar);

}  // namespace settings
