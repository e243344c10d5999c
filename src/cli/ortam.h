// What a command has around it: streams, the terminal, the drivers. app/ fills it; a test brings its own.
#pragma once

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
};

// One line of `in`, not shown while it is typed; empty at the end of input. The prompt is written only to
// a person. With `ikiKez` a person has to type it twice; two different texts are asked for again.
std::optional<std::string> sifreOku(Ortam& ortam, const std::string& soru, bool ikiKez);

// Exit codes.
inline constexpr int tamam = 0, reddedildi = 1, yanlisKullanim = 2;

}  // namespace cli
