// Queries as SQL text.
#include "campaigns/dialect/query.h"

namespace campaign {
namespace {

std::string name(int source) {
  return "t" + std::to_string(source);
}

template <class List>
std::string listed(const List& list, const char* separator = ",") {
  std::string out;
  for (const auto& each : list) out += (out.empty() ? "" : separator) + each->sql();
  return out;
}

}  // namespace

std::string Term::sql() const {
  const auto part = [&](std::size_t i) { return parts[i]->sql(); };
  const std::string no = negated ? " NOT" : "";
  switch (kind) {
    case Kind::Column:
      return name(source) + "." + word;
    case Kind::Constant:
      return std::to_string(value);
    case Kind::Variable:
      return word;
    case Kind::Add:
      return "(" + part(0) + "+" + part(1) + ")";
    case Kind::Choose:
      return "CASE WHEN " + part(0) + " THEN " + part(1) + " ELSE " + part(2) + " END";
    case Kind::Aggregate:
    case Kind::OuterAggregate:
      return word + "(" + (distinct ? "DISTINCT " : "") + (parts.empty() ? "*" : part(0)) + ")";
    case Kind::Scalar:
      return "(" + query->sql() + ")";
    case Kind::Compare:
      return part(0) + word + part(1);
    case Kind::And:
      return "(" + part(0) + " AND " + part(1) + ")";
    case Kind::Or:
      return "(" + part(0) + " OR " + part(1) + ")";
    case Kind::Not:
      return "NOT (" + part(0) + ")";
    case Kind::IsNull:
      return part(0) + " IS" + no + " NULL";
    case Kind::InList: {
      std::string out = part(0) + no + " IN (";
      for (std::size_t i = 1; i < parts.size(); ++i) out += (i > 1 ? "," : "") + part(i);
      return out + ")";
    }
    case Kind::Exists:
      return (negated ? "NOT EXISTS (" : "EXISTS (") + query->sql() + ")";
    case Kind::InQuery:
      return part(0) + no + " IN (" + query->sql() + ")";
    default:
      return part(0) + word + (kind == Kind::All ? "ALL (" : "ANY (") + query->sql() + ")";
  }
}

std::string Origin::sql() const {
  if (kind == Kind::Table) return table->name + " " + name(source);
  if (kind == Kind::Derived) return "(" + query->sql() + ") " + name(source);
  const std::string inner = right->kind == Kind::Join ? "(" + right->sql() + ")" : right->sql();
  return left->sql() + " " + join + " " + inner + (on ? " ON " + on->sql() : "");
}

std::string Query::sql() const {
  std::string out = distinct ? "SELECT DISTINCT " : "SELECT ";
  for (std::size_t i = 0; i < items.size(); ++i)
    out += (i ? ", " : "") + items[i]->sql() + " AS c" + std::to_string(i);
  if (!from.empty()) out += " FROM " + listed(from, ", ");
  if (where) out += " WHERE " + where->sql();
  if (!groups.empty()) out += " GROUP BY " + listed(groups);
  if (having) out += " HAVING " + having->sql();
  if (second) out += " " + setWord + " " + second->sql();
  return out;
}

}  // namespace campaign
