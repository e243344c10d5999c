// One maintenance run at a time on a program's folder and on a local server's, which several programs may
// share, and what it is about to do written down before it does it, so that a run that was killed is ended at
// the next start: what it had not made whole goes, what was whole is put in place, and the service comes up
// again.
//
//   bakim.kayit = "bakim 1" LF "is" TAB name LF { line LF }
//   line        = "sil" TAB path                  a copy under way, or an old file that has had its day
//               | "koy" TAB new TAB live TAB old  `new` takes the place of `live`, which is kept as `old`;
//               `old`
//                                                 is empty where there was no `live`
//               | "ileri"                         every `new` is whole: go on instead of back
//               | "ekle" TAB database TAB folder  not known to the server before: is attached from the
//               folder,
//                                                 which the catalog tells from then on
//               | "dene" TAB database             must open before `old` goes
//               | "hazir" TAB database TAB id     made by this run together with its card, whose row is
//               younger
//                                                 than `id`; going back takes both away
//
// The file lies beside sys.inf together with the lock bakim.kilit.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_copy.h"
#include "session/oturum.h"

namespace maintenance {

struct Degisim {
  std::filesystem::path yeni, canli, eski;
};
struct Yerlestirme {
  std::vector<Degisim> degisimler;
  std::vector<std::string> dene;  // databases that must open afterwards
  std::string klasor;             // as the server is told; empty: as before
  std::vector<std::string> ekle;
};

class Bakim {
 public:
  // Null with the reason in `hata` when another run goes on. Ends what an earlier one left.
  static std::unique_ptr<Bakim> basla(session::Oturum& oturum, const std::string& is, std::string& hata);
  // What was not finished is undone; the service is the caller's.
  ~Bakim();
  Bakim(const Bakim&) = delete;
  Bakim& operator=(const Bakim&) = delete;

  // Each empty on success, else a Turkish text.
  std::string gecici(const std::filesystem::path& yol);                           // before it is made
  std::string hazirlanacak(const std::string& veritabani, std::int64_t sonKart);  // before it is made
  std::string degis(Yerlestirme is);                                              // before the next two
  std::string yerineKoy();   // with the service down: both files of each pair, the old ones kept
  std::string ekleVeDene();  // with the service up: what the server must know, and open
  std::string geriKoy();     // the old ones back; called with the service down
  void ekleneniBirak();      // what ekleVeDene() attached; with the service up, before geriKoy()
  void hazirligiGeriAl();    // what was made; with the service up
  void bitir();              // all is well: the old ones go

 private:
  friend std::string Bakimi_Tamamla(session::Oturum& oturum);
  struct Kilit {
    std::unique_ptr<platform::FileLock> program, sunucu;
    bool tutuldu = false;
  };
  static Kilit kilitle(session::Oturum& oturum);
  Bakim(session::Oturum& oturum, Kilit kilit);
  bool oku();
  std::string yaz() const;
  void temizle();
  bool tamamla();

  struct Hazirlanan {
    std::string ad;
    std::int64_t sonKart;
  };
  session::Oturum& oturum_;
  Kilit kilit_;
  std::filesystem::path kayit_;
  std::string is_;
  std::vector<std::filesystem::path> gecici_;
  std::vector<Hazirlanan> hazirlanan_;
  Yerlestirme yer_;
  bool ileri_ = false, acik_ = true;
};

// At the start of a program: ends what a killed run left. What was done, for a person; empty when nothing
// was.
std::string Bakimi_Tamamla(session::Oturum& oturum);

// True when the server opens the database and answers from it.
bool veritabaniAcilir(session::Oturum& oturum, const std::string& ad, std::string& hata);

}  // namespace maintenance
