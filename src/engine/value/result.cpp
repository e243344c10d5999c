#include "engine/value/result.h"

#include <algorithm>
#include <cstring>

namespace engine {
namespace {

constexpr std::size_t firstChunk = std::size_t{4} * 1024;
constexpr std::size_t largestChunk = std::size_t{1024} * 1024;

}  // namespace

const char* ResultSet::keep(std::string_view value) {
  if (value.empty()) return "";
  if (chunkSize_ - chunkUsed_ < value.size()) {
    const std::size_t grown = chunkSize_ == 0 ? firstChunk : std::min(chunkSize_ * 2, largestChunk);
    chunkSize_ = std::max(grown, value.size());
    chunks_.push_back(std::make_unique_for_overwrite<char[]>(chunkSize_));
    chunkUsed_ = 0;
  }
  char* place = chunks_.back().get() + chunkUsed_;
  std::memcpy(place, value.data(), value.size());
  chunkUsed_ += value.size();
  return place;
}

void ResultSet::clearRows() {
  cells_.clear();
  if (chunks_.size() > 1) {
    std::swap(chunks_.front(), chunks_.back());
    chunks_.resize(1);
  }
  chunkUsed_ = 0;
  rows_ = 0;
}

void ResultSet::addNull() {
  Cell cell{Kind::Null, 0, {}};
  cells_.push_back(cell);
}

void ResultSet::addInteger(std::int64_t value) {
  Cell cell{Kind::Integer, 0, {}};
  cell.integer = value;
  cells_.push_back(cell);
}

void ResultSet::addReal(double value) {
  Cell cell{Kind::Real, 0, {}};
  cell.real = value;
  cells_.push_back(cell);
}

void ResultSet::addText(std::string_view value) {
  Cell cell{Kind::Text, static_cast<std::uint32_t>(value.size()), {}};
  cell.text = keep(value);
  cells_.push_back(cell);
}

void ResultSet::addBlob(std::string_view value) {
  Cell cell{Kind::Blob, static_cast<std::uint32_t>(value.size()), {}};
  cell.text = keep(value);
  cells_.push_back(cell);
}

const ResultSet::Cell& ResultSet::cell(std::int64_t row, int column) const {
  return cells_.at(static_cast<std::size_t>(row) * columns_.size() + static_cast<std::size_t>(column));
}

bool ResultSet::isNull(std::int64_t row, int column) const {
  return cell(row, column).kind == Kind::Null;
}

std::int64_t ResultSet::integer(std::int64_t row, int column) const {
  const Cell& c = cell(row, column);
  if (c.kind == Kind::Integer) return c.integer;
  return c.kind == Kind::Real ? static_cast<std::int64_t>(c.real) : 0;
}

double ResultSet::real(std::int64_t row, int column) const {
  const Cell& c = cell(row, column);
  if (c.kind == Kind::Real) return c.real;
  return c.kind == Kind::Integer ? static_cast<double>(c.integer) : 0;
}

std::string_view ResultSet::text(std::int64_t row, int column) const {
  const Cell& c = cell(row, column);
  if (c.kind != Kind::Text && c.kind != Kind::Blob) return {};
  return {c.text, c.length};
}

Datum ResultSet::datum(std::int64_t row, int column) const {
  const Cell& c = cell(row, column);
  switch (c.kind) {
    case Kind::Null:
      return {};
    case Kind::Integer:
      return c.integer;
    case Kind::Real:
      return c.real;
    case Kind::Text:
      return std::string(c.text, c.length);
    case Kind::Blob:
      return Blob{std::string(c.text, c.length)};
  }
  return {};
}

}  // namespace engine
