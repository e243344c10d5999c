// What the two kinds of backup share.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "db/connection.h"
#include "maintenance/yedek.h"
#include "platform/file_copy.h"

namespace maintenance {

class Cubuk {
 public:
  Cubuk(session::Oturum& oturum, std::int64_t ust) : oturum_(oturum), ust_(ust) {
    oturum_.ilerleme->step(0, ust_);
  }
  void yaz(const std::string& metin) {
    oturum_.ilerleme->text(metin);
    oturum_.ilerleme->pump();
  }
  void adim() {
    oturum_.ilerleme->step(++deger_, ust_);
    oturum_.ilerleme->pump();
  }

 private:
  session::Oturum& oturum_;
  std::int64_t ust_, deger_ = 0;
};

constexpr std::string_view vazgecildi = "Vazgeçildi; hiçbir şey değişmedi.";

// Work of the server's that tells how far it is and can be broken off.
class PaylasilanIs {
 public:
  explicit PaylasilanIs(session::Oturum& oturum) : oturum_(oturum) {}
  db::LocalServer::Step adimi() {
    return [this](std::int64_t yapilan, std::int64_t hepsi) {
      oturum_.ilerleme->whole(yapilan, std::max<std::int64_t>(hepsi, 1));
      oturum_.ilerleme->pump();
      birakildi_ = oturum_.ilerleme->cancelled();
      return !birakildi_;
    };
  }
  bool birakildi() const { return birakildi_; }

 private:
  session::Oturum& oturum_;
  bool birakildi_ = false;
};

// The hash of a file, by bytes on the bar, of which `onceki` are done. `al` gets what is read.
std::error_code ozetle(session::Oturum& oturum, const std::filesystem::path& dosya, std::uintmax_t onceki,
                       std::uintmax_t toplam, std::string& ozet, const platform::TakeBytes& al = {});

// Shows the text; false.
bool red(session::Oturum& oturum, const std::string& metin);
// Where the server keeps the database; false when it knows none of that name.
bool veriDosyalari(session::Oturum& oturum, const std::string& firma, VeriDosyalari& dosyalar);
std::uintmax_t boyut(const std::filesystem::path& dosya);  // 0 where there is none
// Each empty on success, else a Turkish text.
std::string yerVarMi(const std::filesystem::path& klasor, std::uintmax_t gereken);
std::string klasorYap(const std::filesystem::path& klasor);
// A name of nobody else's for the folder of the backup while it is being made.
std::filesystem::path yarimKlasor(const std::filesystem::path& dizin, const std::string& firma,
                                  const db::DateTime& gun);
// Gives a whole one its own name, the first that is free; a Turkish text when it cannot be.
std::string adlandir(const session::Oturum& oturum, const std::filesystem::path& yarim,
                     const std::string& firma, std::filesystem::path& klasor);
// Behind a symbolic link the file that it names, so that a new one takes that file's place and the link
// stays.
std::filesystem::path asilDosya(const std::filesystem::path& yol);
// Keeps what was copied for the proof; `tablolar` as the live ones were, where they were counted.
void kanitla(session::Oturum& oturum, const std::string& firma, const YedekSonucu& sonuc,
             std::vector<db::TableDigest> tablolar);

}  // namespace maintenance
