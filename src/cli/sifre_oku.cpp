#include "cli/ortam.h"
#include "platform/terminal.h"

namespace cli {

namespace {

std::optional<std::string> readLine(Ortam& ortam, const std::string& soru) {
  const platform::HiddenInput hidden;
  if (ortam.girisTerminal) ortam.err << soru << ": " << std::flush;
  std::string line;
  if (!std::getline(ortam.in, line)) return std::nullopt;
  if (ortam.girisTerminal) ortam.err << "\n";
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

}  // namespace

std::optional<std::string> sifreOku(Ortam& ortam, const std::string& soru, bool ikiKez) {
  for (;;) {
    auto first = readLine(ortam, soru);
    if (!first || !ikiKez || !ortam.girisTerminal) return first;
    auto second = readLine(ortam, soru + " (tekrar)");
    if (!second || *second == *first) return second;
    ortam.err << "Şifreler aynı değil. Yeniden girin.\n";
  }
}

}  // namespace cli
