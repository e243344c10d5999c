// usage: exact_campaign [cases of each family] [seed]
#include <cstdio>
#include <cstdlib>

#include "campaigns/dialect/exact_cases.h"

int main(int argc, char** argv) {
  const long long cases = argc > 1 ? std::atoll(argv[1]) : 100000;
  const unsigned long long seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
  struct Family {
    const char* name;
    campaign::Report (*run)(std::uint64_t, std::int64_t);
  };
  static constexpr Family families[] = {{"arithmetic", campaign::runArithmetic},
                                        {"conversions", campaign::runConversions},
                                        {"aggregates", campaign::runAggregates}};
  bool clean = true;
  for (const Family& family : families) {
    const campaign::Report report = family.run(seed, cases);
    for (const auto& difference : report.differences) std::printf("%s\n", difference.c_str());
    std::printf("%s: %lld cases, %zu differences\n", family.name, static_cast<long long>(report.cases),
                report.differences.size());
    clean = clean && report.differences.empty();
  }
  return clean ? 0 : 1;
}
