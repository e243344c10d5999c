// Queries over small tables: as SQL text, and as rows found by nested loops in the order of the text.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "campaigns/dialect/chance.h"

namespace campaign {

using Cell = std::optional<long>;  // no value: NULL
using Row = std::vector<Cell>;

struct SmallTable {
  std::string name;
  int columns = 0;  // A, B, C ...
  std::vector<Row> rows;
  std::string extra;  // an index, which may change the way but not the rows
};

// The rows that names stand for while an expression is looked at, innermost last.
struct Binding {
  int source = 0;  // number of the alias
  const Row* row = nullptr;
};
using Rows = std::vector<Row>;
using Bindings = std::vector<Binding>;

struct Query;

// A number, or a condition: true 1, false 0, unknown no value.
struct Term {
  enum class Kind : std::uint8_t {
    Column,
    Constant,
    Variable,
    Add,
    Choose,  // CASE WHEN first THEN second ELSE third END
    Aggregate,
    OuterAggregate,  // of the grouped query around the one it stands in
    Scalar,
    Compare,
    And,
    Or,
    Not,
    IsNull,
    InList,
    Exists,
    InQuery,
    Any,
    All
  };
  Kind kind = Kind::Constant;
  int source = 0, column = 0;  // Column
  long value = 0;              // Constant; Variable: its value
  std::string word;            // comparison, aggregate, name of column or variable
  bool negated = false, distinct = false;
  std::vector<std::unique_ptr<Term>> parts;
  std::unique_ptr<Query> query;
  mutable Cell cached;  // OuterAggregate: its value for the group at hand

  std::string sql() const;
};

struct Origin {
  enum class Kind : std::uint8_t { Table, Derived, Join };
  Kind kind = Kind::Table;
  int source = 0;
  const SmallTable* table = nullptr;
  std::unique_ptr<Query> query;
  std::string join;  // JOIN, LEFT JOIN, RIGHT JOIN, FULL JOIN, CROSS JOIN
  std::unique_ptr<Origin> left, right;
  std::unique_ptr<Term> on;

  std::string sql() const;
};

struct Query {
  bool distinct = false;
  std::vector<std::unique_ptr<Term>> items;  // named c0, c1 ...
  std::vector<std::unique_ptr<Origin>> from;
  std::unique_ptr<Term> where, having;
  std::vector<std::unique_ptr<Term>> groups;  // columns
  bool grouped = false;
  std::vector<const Term*> outerAggregates;  // over this query's groups, standing in subqueries
  std::string setWord;                       // UNION, UNION ALL in front of `second`
  std::unique_ptr<Query> second;

  std::string sql() const;
};

// The rows in no order; `outside` are those of the queries around.
Rows evaluate(const Query& query, const Bindings& outside);

}  // namespace campaign
