#include "cli/yiginlar.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace cli {

namespace {

constexpr std::string_view white = " \t\r\n\f\v";

std::string_view stripped(std::string_view text) {
  const auto first = text.find_first_not_of(white);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(white) - first + 1);
}

// The count of a GO line; empty when the line is none.
std::optional<int> goCount(std::string_view line) {
  line = stripped(line);
  if (line.size() < 2 || (line[0] != 'g' && line[0] != 'G') || (line[1] != 'o' && line[1] != 'O'))
    return std::nullopt;
  const std::string_view rest = stripped(line.substr(2));
  if (rest.empty()) return 1;
  if (white.find(line[2]) == std::string_view::npos) return std::nullopt;
  int count = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), count);
  if (error != std::errc() || end != rest.data() + rest.size() || count < 0) return std::nullopt;
  return count;
}

std::string_view takeLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size() - 1);
  const std::string_view line = rest.substr(0, end + 1);
  rest.remove_prefix(end + 1);
  return line;
}

}  // namespace

std::vector<Yigin> yiginlaraBol(std::string_view script) {
  std::vector<Yigin> batches;
  Yigin current;
  const auto finish = [&](int count) {
    current.tekrar = count;
    // The line end before GO belongs to GO: a view's text is kept as it was written.
    for (const char end : {'\n', '\r'})
      if (current.metin.ends_with(end)) current.metin.pop_back();
    if (!stripped(current.metin).empty()) batches.push_back(current);
    current.metin.clear();
  };
  while (!script.empty()) {
    const std::string_view line = takeLine(script);
    if (const auto count = goCount(line))
      finish(*count);
    else
      current.metin += line;
  }
  finish(1);
  return batches;
}

std::string ilkSatir(std::string_view yigin) {
  while (!yigin.empty()) {
    std::string_view line = takeLine(yigin);
    if (stripped(line).empty()) continue;
    return std::string(line.substr(0, line.find_last_not_of("\r\n") + 1));
  }
  return {};
}

}  // namespace cli
