// The schema upgrade: brings a company database from the base schema, or any older state, to the current
// one without losing a row. May be run again at any time; a run that broke off is completed by the next.
#pragma once

#include <optional>
#include <string>

#include "company/upgrade/sema_goruntusu.h"
#include "company/upgrade/yurutucu.h"
#include "session/oturum.h"

namespace company::upgrade {

// Why the database must not be upgraded now: no company of this server, no company database at all,
// read-only, or open in another program. Nothing when it may be. Leaves Baglanti on the database.
std::optional<std::string> guncellemeEngeli(session::Oturum& oturum, const std::string& firmaAdi);

struct GuncellemeSonucu {
  bool baglandi = false;    // false: the box about the connection was shown and nothing was done
  bool tamamlandi = false;  // false: the run broke off (link lost, disk full ...); `hata` says how
  std::string hata;
  Sayilar sayilar;
};

// The whole run on the database `firmaAdi`. With `deneme` it is taken back at its end, and every writing
// statement is told there.
GuncellemeSonucu Veritabani_Guncelle(session::Oturum& oturum, const std::string& firmaAdi,
                                     Yurutucu::Dinleyici deneme = {});

// True when the object is missing. `tip`: "U", "V" or "TR".
bool Nesne_Yok(const SemaGoruntusu& sema, const std::string& ad, const std::string& tip);
// Writes a view or trigger from its CREATE text: an existing view is dropped first, an existing trigger
// altered.
void Nesne_Yaz(Yurutucu& yurutucu, SemaGoruntusu& sema, const std::string& ad, const std::string& tip,
               const std::string& metin);
void Tablo_Sil(Yurutucu& yurutucu, SemaGoruntusu& sema, const std::string& ad);
// Writes the version into the catalog; leaves Baglanti there.
void Surum_Yaz(Yurutucu& yurutucu, const std::string& firmaAdi);

}  // namespace company::upgrade
