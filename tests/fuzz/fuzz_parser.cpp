// Any bytes through lexer, plan key and parser: an engine::Error is the only way out but success.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "engine/language/parser.h"
#include "engine/value/error.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const std::vector<engine::Token> tokens = engine::tokenize(text);
    std::vector<engine::Literal> literals;
    engine::planKey(tokens, literals);
    engine::parseTokens(text, tokens);
  } catch (const engine::Error&) {
  }
  return 0;
}
