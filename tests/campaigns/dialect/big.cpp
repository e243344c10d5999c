#include "campaigns/dialect/big.h"

#include <algorithm>

namespace campaign {
namespace {

constexpr std::uint32_t base = 1'000'000'000;
constexpr int limbDigits = 9;

}  // namespace

Big::Big(std::int64_t value) : negative_(value < 0) {
  std::uint64_t rest = negative_ ? -static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
  for (; rest > 0; rest /= base) limbs_.push_back(static_cast<std::uint32_t>(rest % base));
}

Big Big::digits(std::string_view text) {
  Big out;
  out.negative_ = !text.empty() && text[0] == '-';
  if (out.negative_) text.remove_prefix(1);
  while (!text.empty()) {
    const std::size_t size = std::min<std::size_t>(limbDigits, text.size());
    std::uint32_t limb = 0;
    for (const char c : text.substr(text.size() - size))
      limb = limb * 10 + static_cast<std::uint32_t>(c - '0');
    out.limbs_.push_back(limb);
    text.remove_suffix(size);
  }
  out.trim();
  return out;
}

Big Big::tenTo(int exponent) {
  return digits("1" + std::string(static_cast<std::size_t>(exponent), '0'));
}

void Big::trim() {
  while (!limbs_.empty() && limbs_.back() == 0) limbs_.pop_back();
  if (limbs_.empty()) negative_ = false;
}

Big Big::absolute() const {
  return negative_ ? -*this : *this;
}

std::string Big::text() const {
  if (limbs_.empty()) return "0";
  std::string out = std::to_string(limbs_.back());
  for (std::size_t i = limbs_.size() - 1; i-- > 0;) {
    const std::string limb = std::to_string(limbs_[i]);
    out += std::string(limbDigits - limb.size(), '0') + limb;
  }
  return (negative_ ? "-" : "") + out;
}

int Big::digitCount() const {
  return zero() ? 0 : static_cast<int>(absolute().text().size());
}

Big Big::operator-() const {
  Big out = *this;
  out.negative_ = !negative_ && !limbs_.empty();
  return out;
}

int Big::compareMagnitude(const Big& a, const Big& b) {
  if (a.limbs_.size() != b.limbs_.size()) return a.limbs_.size() < b.limbs_.size() ? -1 : 1;
  for (std::size_t i = a.limbs_.size(); i-- > 0;)
    if (a.limbs_[i] != b.limbs_[i]) return a.limbs_[i] < b.limbs_[i] ? -1 : 1;
  return 0;
}

Big operator+(const Big& a, const Big& b) {
  const bool aLarger = Big::compareMagnitude(a, b) >= 0;
  const Big &large = aLarger ? a : b, &small = aLarger ? b : a;
  const bool same = a.negative_ == b.negative_;
  Big out;
  out.negative_ = large.negative_;
  std::int64_t carry = 0;
  for (std::size_t i = 0; i < large.limbs_.size(); ++i) {
    const std::int64_t other = i < small.limbs_.size() ? small.limbs_[i] : 0;
    std::int64_t sum = large.limbs_[i] + (same ? other : -other) + carry;
    carry = sum < 0 ? -1 : sum >= base ? 1 : 0;
    sum -= carry * static_cast<std::int64_t>(base);
    out.limbs_.push_back(static_cast<std::uint32_t>(sum));
  }
  if (carry > 0) out.limbs_.push_back(1);
  out.trim();
  return out;
}

Big operator*(const Big& a, const Big& b) {
  Big out;
  out.negative_ = a.negative_ != b.negative_;
  out.limbs_.assign(a.limbs_.size() + b.limbs_.size(), 0);
  for (std::size_t i = 0; i < a.limbs_.size(); ++i) {
    std::uint64_t carry = 0;
    for (std::size_t j = 0; j < b.limbs_.size() || carry > 0; ++j) {
      std::uint64_t sum = out.limbs_[i + j] + carry;
      if (j < b.limbs_.size()) sum += static_cast<std::uint64_t>(a.limbs_[i]) * b.limbs_[j];
      out.limbs_[i + j] = static_cast<std::uint32_t>(sum % base);
      carry = sum / base;
    }
  }
  out.trim();
  return out;
}

// Limb by limb from the top; each digit of the quotient by halving.
Big operator/(const Big& a, const Big& b) {
  const Big divisor = b.absolute();
  Big out, rest;
  out.limbs_.assign(a.limbs_.size(), 0);
  for (std::size_t i = a.limbs_.size(); i-- > 0;) {
    rest.limbs_.insert(rest.limbs_.begin(), a.limbs_[i]);
    rest.trim();
    std::uint32_t low = 0, high = base - 1;
    while (low < high) {
      const std::uint32_t middle = low + (high - low + 1) / 2;
      if (rest < divisor * Big(middle))
        high = middle - 1;
      else
        low = middle;
    }
    out.limbs_[i] = low;
    rest = rest - divisor * Big(low);
  }
  out.negative_ = a.negative_ != b.negative_;
  out.trim();
  return out;
}

bool operator<(const Big& a, const Big& b) {
  if (a.negative_ != b.negative_) return a.negative_;
  const int order = Big::compareMagnitude(a, b);
  return a.negative_ ? order > 0 : order < 0;
}

Big dividedRounding(const Big& a, const Big& b) {
  const Big quotient = a / b, rest = (a % b).absolute();
  if (rest + rest < b.absolute()) return quotient;
  return a.negative() != b.negative() ? quotient - 1 : quotient + 1;
}

Big atScale(const Big& value, int from, int to) {
  return to >= from ? value * Big::tenTo(to - from) : dividedRounding(value, Big::tenTo(from - to));
}

}  // namespace campaign
