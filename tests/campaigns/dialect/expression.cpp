#include "campaigns/dialect/expression.h"

#include "campaigns/dialect/exact_cases.h"

namespace campaign {
namespace {

Value nothing(const Shape& shape) {
  Value out;
  out.shape = shape;
  out.null = true;
  return out;
}

// 7, 12.50, 0.005: an exact literal with its type.
Value literalNumber(Chance& chance, std::string& written) {
  Value out;
  if (chance.oneIn(2)) {
    out.literal = true;
    out.shape = {Kind::Int};
    out.exact = chance.oneIn(4) ? chance.below(100000) : chance.below(12);
    written = out.exact.text();
    return out;
  }
  const int scale = chance.between(1, 5);
  out.exact = chance.below(chance.oneIn(3) ? 100000000 : 2000);
  const std::string text = pointed(out.exact, scale);
  const std::string whole = text.substr(0, text.find('.'));
  out.shape = decimalShape(static_cast<int>(whole == "0" ? 0 : whole.size()) + scale, scale);
  written = text;
  return out;
}

}  // namespace

std::unique_ptr<Expression> Expression::leaf(Chance& chance, const Names& names, bool texts) {
  auto out = std::make_unique<Expression>();
  const int what = chance.below(8);
  if (what == 0 || names.columns.empty()) {
    out->form_ = Form::Constant;
    out->constant_ = literalNumber(chance, out->written_);
    return out;
  }
  if (what == 1 && !names.variables.empty()) {
    out->form_ = Form::Variable;
    out->index_ = chance.below(static_cast<int>(names.variables.size()));
    out->constant_ = names.variables[static_cast<std::size_t>(out->index_)];
    if (texts || !out->constant_.shape.text()) return out;
  }
  out->form_ = Form::Column;
  out->index_ = chance.below(static_cast<int>(names.columns.size()));
  out->constant_ = nothing(names.columns[static_cast<std::size_t>(out->index_)]);
  return texts || !out->constant_.shape.text() ? std::move(out) : leaf(chance, names, texts);
}

std::unique_ptr<Expression> Expression::combined(Chance& chance, std::unique_ptr<Expression> left,
                                                 std::unique_ptr<Expression> right) {
  static constexpr const char* signs[] = {"+", "-", "*", "*", "/", "/", "%"};
  auto out = std::make_unique<Expression>();
  out->form_ = Form::Operator;
  out->word_ = chance.of(signs);
  out->left_ = std::move(left);
  out->right_ = std::move(right);
  if (out->left_->shape().text() && out->right_->shape().text()) out->right_ = leaf(chance, {}, false);
  if (chance.oneIn(2)) std::swap(out->left_, out->right_);
  const bool approximate =
      out->left_->shape().kind == Kind::Float || out->right_->shape().kind == Kind::Float;
  if (approximate && out->word_ == "%") out->word_ = "*";
  return out;
}

std::unique_ptr<Expression> Expression::wrapped(Chance& chance, std::unique_ptr<Expression> inner) {
  auto out = std::make_unique<Expression>();
  const Shape shape = inner->shape();
  const bool exact = shape.kind != Kind::Float && !shape.text();
  const bool plain = inner->form_ == Form::Column || inner->form_ == Form::Variable;
  switch (chance.below(3)) {
    case 0:
      if (shape.text()) return inner;
      out->form_ = Form::Negation;
      break;
    case 1:
      if (!exact && !plain) return inner;
      out->form_ = Form::Cast;
      out->to_ = numberShape(chance);
      if (shape.text() && out->to_.kind == Kind::Float) out->to_ = {Kind::Money};
      break;
    default: {
      static constexpr const char* names[] = {"ABS", "FLOOR", "CEILING", "ROUND"};
      if (!exact) return inner;
      out->form_ = Form::Function;
      out->word_ = chance.of(names);
      out->places_ = chance.between(-3, 6);
      out->cut_ = chance.oneIn(4);
    }
  }
  out->left_ = std::move(inner);
  return out;
}

std::unique_ptr<Expression> Expression::make(Chance& chance, const Names& names, int depth) {
  if (depth == 0) return leaf(chance, names, true);
  if (chance.oneIn(7)) return wrapped(chance, make(chance, names, depth - 1));
  auto left = make(chance, names, chance.below(depth));
  auto right = make(chance, names, depth - 1);
  if (!chance.oneIn(8)) return combined(chance, std::move(left), std::move(right));
  if (left->shape().text() || right->shape().text())
    return combined(chance, std::move(left), std::move(right));
  auto out = std::make_unique<Expression>();
  out->form_ = Form::Choice;
  out->word_ = chance.oneIn(2) ? "COALESCE" : "CASE";
  out->left_ = std::move(left);
  out->right_ = std::move(right);
  return out;
}

std::unique_ptr<Expression> Expression::chain(Chance& chance, const Names& names, int length) {
  auto out = leaf(chance, names, false);
  for (int i = 0; i < length; ++i) {
    auto next = std::make_unique<Expression>();
    next->form_ = Form::Operator;
    next->left_ = std::move(out);
    next->right_ = leaf(chance, names, true);
    const bool approximate =
        next->left_->shape().kind == Kind::Float || next->right_->shape().kind == Kind::Float;
    static constexpr const char* signs[] = {"+", "-", "+", "*", "/"};
    next->word_ = chance.of(signs);
    if (approximate) next->word_ = "+";  // a product of many would leave what a FLOAT holds exactly
    out = std::move(next);
  }
  return out;
}

std::string Expression::sql() const {
  switch (form_) {
    case Form::Column:
      return "C" + std::to_string(index_);
    case Form::Constant:
      return written_;
    case Form::Variable:
      return "@V" + std::to_string(index_);
    case Form::Operator:
      return "(" + left_->sql() + word_ + right_->sql() + ")";
    case Form::Negation:
      return "(-(" + left_->sql() + "))";
    case Form::Cast:
      return "CAST(" + left_->sql() + " AS " + to_.sql() + ")";
    case Form::Choice:
      if (word_ == "COALESCE") return "COALESCE(" + left_->sql() + "," + right_->sql() + ")";
      return "CASE WHEN ID%2=0 THEN " + left_->sql() + " ELSE " + right_->sql() + " END";
    default:
      return word_ + "(" + left_->sql() +
             (word_ == "ROUND" ? "," + std::to_string(places_) + (cut_ ? ",1" : "") : "") + ")";
  }
}

// row[0] is ID; of no row at all the value is NULL of its type.
Value Expression::value(const std::vector<Value>& row) const {
  switch (form_) {
    case Form::Column:
      return row.empty() ? constant_ : row[static_cast<std::size_t>(index_) + 1];
    case Form::Constant:
    case Form::Variable:
      return constant_;
    case Form::Operator:
      return operate(word_[0], left_->value(row), right_->value(row));
    case Form::Negation: {
      Value out = negated(left_->value(row));
      out.literal = out.literal && left_->form_ == Form::Constant;
      return out;
    }
    case Form::Cast:
      return converted(left_->value(row), to_);
    case Form::Choice: {
      Value first = left_->value(row), second = right_->value(row);
      const Shape shape = commonShape(first.shape, second.shape);
      if (row.empty()) return nothing(shape);
      const bool takesFirst =
          word_ == "COALESCE" ? !first.null || !first.errors.empty() : (row[0].exact % Big(2)).zero();
      Value out = converted(takesFirst ? first : second, shape);
      out.open = out.open || (word_ == "COALESCE" && first.open);
      return out;
    }
    default:
      return function(word_, left_->value(row), places_, cut_);
  }
}

}  // namespace campaign
