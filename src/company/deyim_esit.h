// Whether two SQL texts say the same: token by token, whatever blanks, line breaks and comments stand
// between.
#pragma once

#include <string_view>

namespace company {

// Words and quoted names ([a], "a", a) compare without ASCII case, literals letter for letter.
bool deyimEsit(std::string_view a, std::string_view b);

}  // namespace company
