// Expressions of chance over tables of chance, judged by exact.h.
#pragma once

#include "campaigns/dialect/chance.h"
#include "campaigns/dialect/runner.h"

namespace campaign {

// Each makes at least `cases` comparisons and stops early after twenty differences.
Report runArithmetic(std::uint64_t seed,
                     std::int64_t cases);  // operators, functions and comparisons of numbers
Report runConversions(std::uint64_t seed, std::int64_t cases);  // CAST and assignment, every pair of types
Report runAggregates(std::uint64_t seed, std::int64_t cases);   // SUM, AVG, MIN, MAX, COUNT; DISTINCT, groups

// ---- shared by them ----

Shape numberShape(Chance& chance);
Shape textShape(Chance& chance);
// A value that the type holds; texts are mostly numbers of `like`.
Value valueOf(Chance& chance, const Shape& shape, const Shape& like);
// A literal that gives the value to a column of its type.
std::string literalOf(const Value& value);

}  // namespace campaign
