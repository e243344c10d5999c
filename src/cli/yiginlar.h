// Splitting of a script into batches.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

struct Yigin {
  std::string metin;
  int tekrar = 1;
};

// Cuts at each line that holds GO alone, in any case, with an optional count ("GO 3") that repeats the
// batch before it; the line end before it is its own. Batches of nothing but white space are left out.
std::vector<Yigin> yiginlaraBol(std::string_view script);

// The first line of a batch that holds anything.
std::string ilkSatir(std::string_view yigin);

}  // namespace cli
