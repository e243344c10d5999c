// Literals as written and the operators between values.
#pragma once

#include <cstdint>
#include <string>

namespace engine {

enum class LiteralKind : std::uint8_t { Null, Integer, Decimal, Float, Money, Text, NText, Binary };

// `ordinal` numbers the literals of a batch from 0 in text order, so that two batches that differ only
// in their literals have the same tree; -1 for what is no literal of the text: NULL and bare words that
// stand for a text.
struct Literal {
  LiteralKind kind = LiteralKind::Null;
  std::string text;  // digits as written, unescaped text, or the bytes of 0x...
  int ordinal = -1;
};

enum class UnaryOp : std::uint8_t { Minus, Plus, BitNot, Not };
enum class BinaryOp : std::uint8_t {
  Add,
  Subtract,
  Multiply,
  Divide,
  Modulo,
  BitAnd,
  BitOr,
  BitXor,
  Equal,
  NotEqual,
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
  And,
  Or,
};

}  // namespace engine
