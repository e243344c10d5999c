// Words of the language: comparison without case by ASCII rules, and the reserved ones.
#pragma once

#include <string>
#include <string_view>

namespace engine {

// True when `word` is `upper` but for the case of ASCII letters; `upper` is in upper case.
bool equalsKeyword(std::string_view word, std::string_view upper);
std::string upperAscii(std::string_view text);
// True for a word that cannot be an identifier without quotes.
bool isReserved(std::string_view word);

}  // namespace engine
