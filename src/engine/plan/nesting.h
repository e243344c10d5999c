// SQLite's parser takes text nested some ten subqueries or twenty calls deep; the dialect's limit lies
// higher.
#pragma once

#include <string>
#include <string_view>

namespace engine {

// The same statement with what lies deeper than `depth` brackets moved into common table expressions,
// whose texts are parsed one beside the other. Parameters without a number get the one that SQLite would
// have given them. What belongs to an aggregate of its surroundings stays where it is.
std::string withShallowNesting(std::string_view sql, int depth);

}  // namespace engine
