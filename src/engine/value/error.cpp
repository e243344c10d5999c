#include "engine/value/error.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace engine {
namespace {

// Statement level errors: the batch goes on with its next statement.
constexpr std::array goesOn = {
    220,   229,   232,   234,   242,  244,  248,   262,   306,   916,   1088,  8197,  15247, 517,
    535,   536,   537,   3623,  512,  515,  544,   545,   547,   550,   911,   1505,  1801,  1802,
    1913,  2601,  2627,  2705,  2714, 2812, 3621,  3701,  3702,  3902,  3903,  4901,  4902,  4922,
    4924,  5133,  5170,  1222,  8101, 8106, 8115,  8134,  8152,  8705,  15007, 15014, 15023, 15025,
    15151, 15174, 15410, 50000, 201,  266,  1753,  1761,  1762,  1763,  1767,  1769,  1770,  1773,
    1776,  1778,  1785,  3703,  3725, 3726, 4403,  4405,  4406,  4426,  4708,  4712,  4917,  7940,
    8105,  8139,  8143,  8144,  8145, 8162, 15002, 15009, 15010, 15197, 15250, 15336,
};

constexpr std::string_view mark = "\x01zerr:";

}  // namespace

bool endsBatch(int number) {
  return std::find(goesOn.begin(), goesOn.end(), number) == goesOn.end();
}

bool endsTransaction(int number) {
  constexpr std::array conversions = {235, 241, 245, 1205, 8114};
  return std::find(conversions.begin(), conversions.end(), number) != conversions.end();
}

std::string encodeError(const Error& error) {
  std::string text(mark);
  text += std::to_string(error.number()) + ':' + std::to_string(error.severity()) + ':' +
          std::to_string(error.state()) + ':' + std::to_string(error.line()) + ':';
  return text + error.what();
}

void rethrowEncoded(const char* text) {
  if (!text) return;
  std::string_view rest(text);
  const auto start = rest.find(mark);
  if (start == std::string_view::npos) return;
  rest.remove_prefix(start + mark.size());
  std::array<int, 4> fields{};
  for (int& field : fields) {
    const auto [end, code] = std::from_chars(rest.data(), rest.data() + rest.size(), field);
    if (code != std::errc() || end == rest.data() + rest.size() || *end != ':') return;
    rest.remove_prefix(end - rest.data() + 1);
  }
  Error error(fields[0], std::string(rest), fields[1], fields[2]);
  error.setLine(fields[3]);
  throw error;
}

}  // namespace engine
