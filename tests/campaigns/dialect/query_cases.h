// Joins, groupings and subqueries of chance, judged by query.h.
#pragma once

#include "campaigns/dialect/runner.h"

namespace campaign {

Report runQueries(std::uint64_t seed, std::int64_t statements);

}  // namespace campaign
