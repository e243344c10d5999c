// An expression of numbers: as SQL text and as a value over one row.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "campaigns/dialect/chance.h"
#include "campaigns/dialect/exact.h"

namespace campaign {

// What an expression may name: columns and variables by their place.
struct Names {
  std::vector<Shape> columns;    // C0, C1 ...
  std::vector<Value> variables;  // @V0, @V1 ...
};

class Expression {
 public:
  // Of chance, `depth` operators deep at most.
  static std::unique_ptr<Expression> make(Chance& chance, const Names& names, int depth);
  // A chain of `length` operators that leans left.
  static std::unique_ptr<Expression> chain(Chance& chance, const Names& names, int length);

  std::string sql() const;
  Value value(const std::vector<Value>& row) const;
  Shape shape() const { return value({}).shape; }

 private:
  enum class Form : std::uint8_t { Column, Constant, Variable, Operator, Negation, Cast, Choice, Function };

  static std::unique_ptr<Expression> leaf(Chance& chance, const Names& names, bool texts);
  static std::unique_ptr<Expression> combined(Chance& chance, std::unique_ptr<Expression> left,
                                              std::unique_ptr<Expression> right);
  static std::unique_ptr<Expression> wrapped(Chance& chance, std::unique_ptr<Expression> inner);

  Form form_ = Form::Column;
  int index_ = 0;
  Value constant_;       // Constant, Variable; of a Column its type
  std::string word_;     // the operator's sign, the function's name, COALESCE or CASE
  std::string written_;  // Constant: as it stands
  Shape to_;
  int places_ = 0;
  bool cut_ = false;
  std::unique_ptr<Expression> left_, right_;
};

}  // namespace campaign
