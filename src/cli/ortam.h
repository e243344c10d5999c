// What a command has around it: streams, the terminal, the drivers. app/ fills it; a test brings its own.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "db/connection.h"

namespace cli {

struct Ortam {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  bool girisTerminal = false;  // a person sits before `in`
  bool hataTerminal = false;   // and looks at `err`

  std::filesystem::path dizin;  // the program's folder unless --dizin names another
  std::function<std::unique_ptr<db::ConnectionFactory>(const std::filesystem::path& dizin)> surucuYap;
  bool ciktiRenkli = false;  // colours may be written to `out`
  bool hataRenkli = false;   // and to `err`
  bool sessiz = false;       // only what was asked for, and what went wrong

  // How long a completion may ask a server: somebody waits with a finger on the key.
  std::chrono::milliseconds tamamlamaSuresi{1500};

  // Remarks about the work, and word that it is done; they go nowhere when it has to be quiet.
  std::ostream& bilgi() { return sessiz ? bos_ : err; }
  std::ostream& haber() { return sessiz ? bos_ : out; }

  std::string bekleyen{};  // told only when the command fails
  std::ostream bos_{nullptr};
};

// One line of `in`, not shown while it is typed; empty at the end of input. The prompt is written only to
// a person. With `ikiKez` a person has to type it twice; two different texts are asked for again.
std::optional<std::string> sifreOku(Ortam& ortam, const std::string& soru, bool ikiKez);

// Terminal sequences, written only where colours may be.
inline constexpr std::string_view kalin = "\033[1m", kirmizi = "\033[31m", sari = "\033[33m", duz = "\033[0m";
inline std::string boyali(bool renkli, std::string_view renk, std::string_view metin) {
  return renkli ? std::string(renk).append(metin).append(duz) : std::string(metin);
}

inline void uyar(Ortam& ortam, std::string_view metin) {
  ortam.err << boyali(ortam.hataRenkli, sari, "Uyarı:") << " " << metin << "\n";
}

// Exit codes.
inline constexpr int tamam = 0, reddedildi = 1, yanlisKullanim = 2;

}  // namespace cli
