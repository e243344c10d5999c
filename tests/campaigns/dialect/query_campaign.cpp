// usage: query_campaign [statements] [seed]
#include <cstdio>
#include <cstdlib>

#include "campaigns/dialect/query_cases.h"

int main(int argc, char** argv) {
  const long long statements = argc > 1 ? std::atoll(argv[1]) : 10000;
  const unsigned long long seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
  const campaign::Report report = campaign::runQueries(seed, statements);
  for (const auto& difference : report.differences) std::printf("%s\n", difference.c_str());
  std::printf("queries: %lld statements, %zu differences\n", static_cast<long long>(report.cases),
              report.differences.size());
  return report.differences.empty() ? 0 : 1;
}
