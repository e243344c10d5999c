#include "campaigns/dialect/query.h"

#include <algorithm>

namespace campaign {
namespace {

// The group that aggregates are over: one list of bindings a row.
using Group = std::vector<Bindings>;

struct Place {
  const Bindings& names;
  const Group* group = nullptr;
};

Cell value(const Term& term, const Place& place);

Cell columnOf(const Term& term, const Bindings& names) {
  for (auto at = names.rbegin(); at != names.rend(); ++at)
    if (at->source == term.source) return (*at->row)[static_cast<std::size_t>(term.column)];
  return {};
}

Cell truth(bool holds) {
  return holds ? 1 : 0;
}

Cell compared(const std::string& word, const Cell& a, const Cell& b) {
  if (!a || !b) return {};
  return truth(word == "=" ? *a == *b : word == "<>" ? *a != *b : word == "<" ? *a < *b : *a >= *b);
}

Cell inverted(const Cell& a) {
  return a ? truth(!*a) : Cell{};
}

// True when one is, else unknown when one is, else false.
Cell anyOf(const std::vector<Cell>& list) {
  bool unknown = false;
  for (const Cell& cell : list) {
    if (cell && *cell) return 1;
    unknown = unknown || !cell;
  }
  return unknown ? Cell{} : Cell{0};
}

Cell aggregateOf(const Term& term, const Place& place) {
  std::vector<Cell> list;
  for (const Bindings& row : *place.group) {
    const Place inside{row};
    const Cell cell = term.parts.empty() ? Cell{1} : value(*term.parts[0], inside);
    if (!cell || (term.distinct && std::find(list.begin(), list.end(), cell) != list.end())) continue;
    list.push_back(cell);
  }
  if (term.word == "COUNT") return static_cast<long>(list.size());
  if (list.empty()) return {};
  if (term.word == "MIN") return **std::min_element(list.begin(), list.end());
  if (term.word == "MAX") return **std::max_element(list.begin(), list.end());
  long sum = 0;
  for (const Cell& cell : list) sum += *cell;
  return sum;
}

std::vector<Cell> firstColumn(const Query& query, const Place& place) {
  std::vector<Cell> list;
  for (const Row& row : evaluate(query, place.names)) list.push_back(row[0]);
  return list;
}

Cell quantified(const Term& term, const Place& place) {
  const Cell left = value(*term.parts[0], place);
  std::vector<Cell> tests;
  const bool all = term.kind == Term::Kind::All;
  const std::string word = term.kind == Term::Kind::InQuery ? "=" : term.word;
  for (const Cell& cell : firstColumn(*term.query, place)) {
    const Cell test = compared(word, left, cell);
    tests.push_back(all ? inverted(test) : test);
  }
  const Cell found = anyOf(tests);
  return all || term.negated ? inverted(found) : found;
}

Cell condition(const Term& term, const Place& place) {
  const auto part = [&](std::size_t i) { return value(*term.parts[i], place); };
  switch (term.kind) {
    case Term::Kind::Compare:
      return compared(term.word, part(0), part(1));
    case Term::Kind::And:
      return inverted(anyOf({inverted(part(0)), inverted(part(1))}));
    case Term::Kind::Or:
      return anyOf({part(0), part(1)});
    case Term::Kind::Not:
      return inverted(part(0));
    case Term::Kind::IsNull:
      return truth(part(0).has_value() == term.negated);
    case Term::Kind::InList: {
      std::vector<Cell> tests;
      for (std::size_t i = 1; i < term.parts.size(); ++i) tests.push_back(compared("=", part(0), part(i)));
      return term.negated ? inverted(anyOf(tests)) : anyOf(tests);
    }
    case Term::Kind::Exists:
      return truth(evaluate(*term.query, place.names).empty() == term.negated);
    default:
      return quantified(term, place);
  }
}

Cell value(const Term& term, const Place& place) {
  switch (term.kind) {
    case Term::Kind::Column:
      return columnOf(term, place.names);
    case Term::Kind::Constant:
    case Term::Kind::Variable:
      return term.value;
    case Term::Kind::Add: {
      const Cell a = value(*term.parts[0], place), b = value(*term.parts[1], place);
      return a && b ? Cell{*a + *b} : Cell{};
    }
    case Term::Kind::Choose: {
      const Cell test = value(*term.parts[0], place);
      return value(*term.parts[test && *test ? 1 : 2], place);
    }
    case Term::Kind::Aggregate:
      return aggregateOf(term, place);
    case Term::Kind::OuterAggregate:
      return term.cached;
    case Term::Kind::Scalar: {
      const auto list = firstColumn(*term.query, place);
      return list.empty() ? Cell{} : list[0];
    }
    default:
      return condition(term, place);
  }
}

bool holds(const Term* term, const Bindings& names) {
  if (!term) return true;
  const Cell cell = value(*term, {names});
  return cell && *cell;
}

// Rows of derived tables, kept as long as their bindings.
using Store = std::vector<std::unique_ptr<Rows>>;

void emptySources(const Origin& origin, Bindings& out, std::vector<std::unique_ptr<Row>>& nulls) {
  if (origin.kind == Origin::Kind::Join) {
    emptySources(*origin.left, out, nulls);
    emptySources(*origin.right, out, nulls);
    return;
  }
  nulls.push_back(std::make_unique<Row>(8));
  out.push_back({origin.source, nulls.back().get()});
}

class From {
 public:
  explicit From(const Bindings& outside) : outside_(outside) {}

  // Each result is what the origin adds to the bindings around.
  std::vector<Bindings> rows(const Origin& origin) {
    if (origin.kind == Origin::Kind::Join) return joined(origin);
    const Rows* list = origin.table ? &origin.table->rows : nullptr;
    if (!list) {
      store_.push_back(std::make_unique<Rows>(evaluate(*origin.query, outside_)));
      list = store_.back().get();
    }
    std::vector<Bindings> out;
    for (const Row& row : *list) out.push_back({{origin.source, &row}});
    return out;
  }

 private:
  std::vector<Bindings> joined(const Origin& origin) {
    const auto lefts = rows(*origin.left), rights = rows(*origin.right);
    std::vector<Bindings> out;
    std::vector<bool> met(rights.size(), false);
    Bindings noLeft, noRight;
    emptySources(*origin.left, noLeft, nulls_);
    emptySources(*origin.right, noRight, nulls_);
    const bool keepsLeft = origin.join == "LEFT JOIN" || origin.join == "FULL JOIN";
    const bool keepsRight = origin.join == "RIGHT JOIN" || origin.join == "FULL JOIN";
    for (const Bindings& left : lefts) {
      bool found = false;
      for (std::size_t i = 0; i < rights.size(); ++i) {
        Bindings both = outside_;
        both.insert(both.end(), left.begin(), left.end());
        both.insert(both.end(), rights[i].begin(), rights[i].end());
        if (!holds(origin.on.get(), both)) continue;
        found = met[i] = true;
        out.emplace_back(both.begin() + static_cast<std::ptrdiff_t>(outside_.size()), both.end());
      }
      if (found || !keepsLeft) continue;
      out.push_back(left);
      out.back().insert(out.back().end(), noRight.begin(), noRight.end());
    }
    for (std::size_t i = 0; keepsRight && i < rights.size(); ++i) {
      if (met[i]) continue;
      out.push_back(noLeft);
      out.back().insert(out.back().end(), rights[i].begin(), rights[i].end());
    }
    return out;
  }

  const Bindings& outside_;
  Store store_;
  std::vector<std::unique_ptr<Row>> nulls_;
};

std::vector<Bindings> product(const Query& query, From& from, const Bindings& outside) {
  std::vector<Bindings> out = {outside};
  for (const auto& origin : query.from) {
    const auto rows = from.rows(*origin);
    std::vector<Bindings> next;
    for (const Bindings& left : out)
      for (const Bindings& right : rows) {
        next.push_back(left);
        next.back().insert(next.back().end(), right.begin(), right.end());
      }
    out = std::move(next);
  }
  std::erase_if(out, [&](const Bindings& names) { return !holds(query.where.get(), names); });
  return out;
}

Row items(const Query& query, const Place& place) {
  Row row;
  for (const auto& item : query.items) row.push_back(value(*item, place));
  return row;
}

Rows groupedRows(const Query& query, const std::vector<Bindings>& found, const Bindings& outside) {
  std::vector<std::pair<Row, Group>> groups;
  if (query.groups.empty()) groups.emplace_back();
  for (const Bindings& names : found) {
    Row key;
    for (const auto& group : query.groups) key.push_back(value(*group, {names}));
    auto at =
        std::find_if(groups.begin(), groups.end(), [&](const auto& group) { return group.first == key; });
    if (at == groups.end()) at = groups.insert(at, {key, {}});
    at->second.push_back(names);
  }
  Rows out;
  for (const auto& [key, group] : groups) {
    const Bindings& names = group.empty() ? outside : group.front();
    const Place place{names, &group};
    for (const Term* term : query.outerAggregates) term->cached = aggregateOf(*term, place);
    if (query.having) {
      const Cell test = value(*query.having, place);
      if (!test || !*test) continue;
    }
    out.push_back(items(query, place));
  }
  return out;
}

void makeDistinct(Rows& rows) {
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
}

}  // namespace

Rows evaluate(const Query& query, const Bindings& outside) {
  From from(outside);
  const auto found = product(query, from, outside);
  Rows out;
  if (query.grouped)
    out = groupedRows(query, found, outside);
  else
    for (const Bindings& names : found) out.push_back(items(query, {names}));
  if (query.distinct) makeDistinct(out);
  if (!query.second) return out;
  const Rows more = evaluate(*query.second, outside);
  out.insert(out.end(), more.begin(), more.end());
  if (query.setWord == "UNION") makeDistinct(out);
  return out;
}

}  // namespace campaign
