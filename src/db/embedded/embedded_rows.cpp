#include "db/embedded/embedded_rows.h"

#include <array>

#include "engine/server.h"

namespace db {
namespace {

using engine::TypeId;

constexpr int moneyScale = 4;
constexpr int widestIntegerPrecision = 18;  // wider decimals are kept as 16 bytes

FieldType fieldType(TypeId id) {
  if (id == TypeId::Null) return FieldType::Int;
  // Both lists name the same types in the same order, the engine's after Null.
  static_assert(static_cast<int>(FieldType::VarBinary) == static_cast<int>(TypeId::VarBinary) - 1);
  static_assert(static_cast<int>(FieldType::Char) == static_cast<int>(TypeId::Char) - 1);
  return static_cast<FieldType>(static_cast<int>(id) - 1);
}

FieldInfo fieldInfo(const engine::ResultColumn& column) {
  FieldInfo field;
  field.name = column.name;
  field.type = fieldType(column.type.id);
  field.size = column.type.id == TypeId::Decimal ? column.type.precision : column.type.length;
  field.scale = engine::isMoney(column.type.id) ? moneyScale : column.type.scale;
  field.nullable = column.nullable;
  field.identity = column.identity;
  field.keyPart = column.keyPart;
  field.baseDatabase = column.baseDatabase;
  field.baseTable = column.baseTable;
  field.baseColumn = column.baseColumn;
  return field;
}

DateTime dateOf(std::int64_t ticks) {
  const engine::Civil c = engine::civilFromTicks(ticks);
  return {c.year, c.month, c.day, c.hour, c.minute, c.second, c.millisecond};
}

std::size_t characters(std::string_view utf8) {
  std::size_t count = 0;
  for (const char c : utf8) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return count;
}

std::string padded(std::string_view text, std::size_t size) {
  const std::size_t length = characters(text);
  const std::size_t blanks = length < size ? size - length : 0;
  std::string out;
  out.reserve(text.size() + blanks);
  out.append(text).append(blanks, ' ');
  return out;
}

}  // namespace

EmbeddedRows::Form EmbeddedRows::formOf(const engine::Type& type) {
  switch (type.id) {
    case TypeId::Bit:
      return Form::Bit;
    case TypeId::SmallMoney:
    case TypeId::Money:
      return Form::Scaled;
    case TypeId::Decimal:
      return type.precision <= widestIntegerPrecision ? Form::Scaled : Form::WideDecimal;
    case TypeId::Real:
    case TypeId::Float:
      return Form::Real;
    case TypeId::SmallDateTime:
    case TypeId::DateTime:
      return Form::Date;
    case TypeId::Char:
    case TypeId::NChar:
      return Form::Padded;
    case TypeId::VarChar:
    case TypeId::NVarChar:
    case TypeId::Text:
    case TypeId::NText:
      return Form::Text;
    case TypeId::Binary:
    case TypeId::VarBinary:
      return Form::Bytes;
    default:
      return Form::Integer;
  }
}

EmbeddedRows::EmbeddedRows(engine::ResultSet&& set)
    : own_(std::make_unique<const engine::ResultSet>(std::move(set))), set_(own_.get()) {
  describe();
}

EmbeddedRows::EmbeddedRows(const engine::ResultSet& page) : set_(&page) {
  describe();
}

void EmbeddedRows::describe() {
  for (const auto& column : set_->columns()) {
    fields_.push_back(fieldInfo(column));
    forms_.push_back(formOf(column.type));
  }
}

Value EmbeddedRows::value(std::int64_t row, int column) const {
  if (set_->isNull(row, column)) return {};
  const auto index = static_cast<std::size_t>(column);
  const FieldInfo& field = fields_[index];
  switch (forms_[index]) {
    case Form::Bit:
      return set_->integer(row, column) != 0;
    case Form::Integer:
      return set_->integer(row, column);
    case Form::Real:
      return set_->real(row, column);
    case Form::Scaled:
      return Decimal{set_->integer(row, column), field.scale};
    case Form::Date:
      return dateOf(set_->integer(row, column));
    case Form::Text:
      return set_->text(row, column);
    case Form::Padded:
      return padded(set_->text(row, column), static_cast<std::size_t>(field.size));
    case Form::Bytes:
      return Bytes{std::string(set_->text(row, column))};
    case Form::WideDecimal:
      break;
  }
  // Wider than a Decimal holds: its exact digits as text.
  return engine::displayText(set_->datum(row, column), set_->columns()[index].type);
}

}  // namespace db
