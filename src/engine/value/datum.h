// One value in its physical form (see type.h); the static type travels beside it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>

namespace engine {

struct Blob {
  std::string bytes;
  friend bool operator==(const Blob&, const Blob&) = default;
};

class Datum {
 public:
  Datum() = default;
  Datum(std::int64_t v) : v_(v) {}
  Datum(int v) : v_(static_cast<std::int64_t>(v)) {}
  Datum(double v) : v_(v) {}
  Datum(std::string v) : v_(std::move(v)) {}
  Datum(const char* v) : v_(std::string(v)) {}
  Datum(Blob v) : v_(std::move(v)) {}

  bool isNull() const { return v_.index() == 0; }
  bool isInteger() const { return v_.index() == 1; }
  bool isReal() const { return v_.index() == 2; }
  bool isText() const { return v_.index() == 3; }
  bool isBlob() const { return v_.index() == 4; }
  std::int64_t integer() const { return std::get<1>(v_); }
  double real() const { return std::get<2>(v_); }
  const std::string& text() const { return std::get<3>(v_); }
  const std::string& bytes() const { return std::get<4>(v_).bytes; }

  friend bool operator==(const Datum&, const Datum&) = default;

 private:
  std::variant<std::monostate, std::int64_t, double, std::string, Blob> v_;
};

}  // namespace engine
