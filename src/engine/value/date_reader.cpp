// Dates in text: numbers with separators, names of months, ISO 8601, times.
#include <algorithm>
#include <array>
#include <cstring>

#include "engine/value/datetime.h"
#include "engine/value/error.h"

namespace engine {
namespace {

struct Number {
  int value = 0;
  int digits = 0;
};

struct FormatName {
  const char* name;
  DateFormat format;
  const char* order;
};
constexpr std::array<FormatName, 6> formats = {{{"MDY", DateFormat::Mdy, "mdy"},
                                                {"DMY", DateFormat::Dmy, "dmy"},
                                                {"YMD", DateFormat::Ymd, "ymd"},
                                                {"YDM", DateFormat::Ydm, "ydm"},
                                                {"MYD", DateFormat::Myd, "myd"},
                                                {"DYM", DateFormat::Dym, "dym"}}};

const char* orderOf(DateFormat format) {
  return formats[static_cast<std::size_t>(format)].order;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
bool equalAscii(std::string_view left, std::string_view right) {
  return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin(),
                                                   [](char a, char b) { return lower(a) == lower(b); });
}

// 1 .. 12 for a month's name or its first three letters; 0 otherwise.
int monthOf(std::string_view word) {
  for (int i = 0; i < 12; ++i)
    if (equalAscii(word, monthNames[i]) || equalAscii(word, std::string_view(monthNames[i], 3))) return i + 1;
  return 0;
}

class DateReader {
 public:
  DateReader(std::string_view text, DateFormat format) : text_(text), format_(format) {}

  DateReading read(std::int64_t& ticks) {
    if (!scan()) return DateReading::NotADate;
    if (!resolve()) return DateReading::NotADate;
    if (!isValidDate(civil_.year, civil_.month, civil_.day)) return DateReading::OutOfRange;
    if (civil_.hour > 23 || civil_.minute > 59 || civil_.second > 59) return DateReading::OutOfRange;
    ticks = ticksFromCivil(civil_);
    return ticks > maxDateTime ? DateReading::OutOfRange : DateReading::Date;
  }

 private:
  char peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }
  void skipBlanks() {
    while (peek() == ' ' || peek() == '\t' || peek() == '\n' || peek() == '\r') ++at_;
  }

  bool number(Number& n) {
    n = {};
    while (isDigit(peek()) && n.digits < 9) {
      n.value = n.value * 10 + (peek() - '0');
      ++n.digits;
      ++at_;
    }
    return n.digits > 0 && !isDigit(peek());
  }

  std::string_view word() {
    const std::size_t start = at_;
    while (isLetter(peek())) ++at_;
    return text_.substr(start, at_ - start);
  }

  // A comma, or a dash beside the month's name: 5-Jan-2012.
  bool isMark() const {
    if (peek() == ',') return count_ > 0;
    return peek() == '-' && ((isLetter(peek(1)) && count_ > 0) || (isDigit(peek(1)) && month_ > 0));
  }

  bool scan() {
    for (skipBlanks(); at_ < text_.size(); skipBlanks()) {
      if (isDigit(peek())) {
        if (!scanNumber()) return false;
      } else if (isLetter(peek())) {
        if (!scanWord()) return false;
      } else if (isMark()) {
        ++at_;
      } else {
        return false;
      }
    }
    return true;
  }

  bool scanWord() {
    const std::string_view name = word();
    if (equalAscii(name, "T") && separated_ && numbers_[0].digits == 4 && isDigit(peek())) {
      iso_ = true;
      return true;
    }
    if (month_ > 0 || separated_) return false;
    month_ = monthOf(name);
    return month_ > 0;
  }

  bool scanNumber() {
    Number n;
    if (!number(n)) return false;
    if (peek() == ':') return scanTime(n);
    const std::size_t before = at_;
    skipBlanks();
    if (!hasTime_ && n.digits <= 2 && half() != Half::None) {
      civil_.hour = n.value;
      return finishTime();
    }
    at_ = before;
    if (count_ == 0 && month_ == 0 && std::strchr("/-.", peek()) && peek() && isDigit(peek(1)))
      return scanSeparated(n);
    if (separated_ || count_ >= 2) return false;
    numbers_[count_++] = n;
    return true;
  }

  bool scanSeparated(Number first) {
    numbers_[0] = first;
    for (int i = 1; i < 3; ++i) {
      if (!peek() || !std::strchr("/-.", peek())) return false;
      ++at_;
      if (!number(numbers_[i])) return false;
    }
    count_ = 3;
    separated_ = true;
    return true;
  }

  enum class Half : std::uint8_t { None, Am, Pm };
  Half half() const {
    const std::string_view two = text_.substr(std::min(at_, text_.size()), 2);
    if (isLetter(peek(2))) return Half::None;
    if (equalAscii(two, "AM")) return Half::Am;
    return equalAscii(two, "PM") ? Half::Pm : Half::None;
  }

  bool scanTime(Number hour) {
    if (hasTime_ || hour.digits > 2) return false;
    civil_.hour = hour.value;
    Number n;
    ++at_;
    if (!number(n) || n.digits > 2) return false;
    civil_.minute = n.value;
    if (peek() == ':') {
      ++at_;
      if (!number(n) || n.digits > 2) return false;
      civil_.second = n.value;
      if (!scanMilliseconds()) return false;
    }
    if (iso_ && peek() == 'Z') ++at_;
    skipBlanks();
    return finishTime();
  }

  // After a point the digits are a fraction, after a colon whole milliseconds.
  bool scanMilliseconds() {
    const char mark = peek();
    if ((mark != '.' && mark != ':') || !isDigit(peek(1))) return true;
    ++at_;
    Number n;
    if (!number(n) || n.digits > 3) return false;
    civil_.millisecond = n.value;
    if (mark == '.')
      for (int i = n.digits; i < 3; ++i) civil_.millisecond *= 10;
    return true;
  }

  bool finishTime() {
    hasTime_ = true;
    const Half which = half();
    if (which == Half::None) return true;
    at_ += 2;
    if (which == Half::Pm && civil_.hour < 12) civil_.hour += 12;
    if (which == Half::Am && civil_.hour > 12) return false;
    if (which == Half::Am && civil_.hour == 12) civil_.hour = 0;
    return true;
  }

  bool setYear(Number n) {
    if (n.digits == 3 || n.digits > 4) return false;
    civil_.year = n.digits == 4 ? n.value : n.value + (n.value < 50 ? 2000 : 1900);
    return true;
  }

  bool resolve() {
    if (separated_) return resolveSeparated();
    if (month_ > 0) return resolveNamed();
    if (count_ == 0) return true;  // a time alone, or nothing
    return count_ == 1 && resolveRun(numbers_[0]);
  }

  bool resolveSeparated() {
    std::string order = iso_ ? "ymd" : orderOf(format_);
    for (int i = 0; i < 3; ++i) {
      if (numbers_[i].digits != 4) continue;
      order.erase(order.find('y'), 1);
      order.insert(static_cast<std::size_t>(i), "y");
      break;
    }
    for (int i = 0; i < 3; ++i) {
      const Number& n = numbers_[i];
      if (order[i] == 'y') {
        if (!setYear(n)) return false;
      } else if (n.digits > 2) {
        return false;
      } else {
        (order[i] == 'm' ? civil_.month : civil_.day) = n.value;
      }
    }
    return true;
  }

  bool resolveNamed() {
    civil_.month = month_;
    if (count_ == 1) return numbers_[0].digits == 4 && setYear(numbers_[0]);
    if (count_ != 2) return false;
    const bool yearFirst = numbers_[0].digits == 4;
    const Number day = numbers_[yearFirst ? 1 : 0];
    civil_.day = day.value;
    return day.digits <= 2 && setYear(numbers_[yearFirst ? 0 : 1]);
  }

  // YYYYMMDD, YYMMDD, YYYY
  bool resolveRun(Number n) {
    if (n.digits == 4) return setYear(n);
    if (n.digits != 8 && n.digits != 6) return false;
    civil_.day = n.value % 100;
    civil_.month = n.value / 100 % 100;
    return setYear({n.value / 10000, n.digits - 4});
  }

  std::string_view text_;
  DateFormat format_;
  std::size_t at_ = 0;
  std::array<Number, 3> numbers_{};
  int count_ = 0;
  int month_ = 0;
  bool separated_ = false, hasTime_ = false, iso_ = false;
  Civil civil_;
};

}  // namespace

DateReading readDateTime(std::string_view text, DateFormat format, std::int64_t& ticks) {
  return DateReader(text, format).read(ticks);
}

DateFormat styleDateFormat(int style, DateFormat session) {
  switch (style % 100) {
    case 1:
    case 7:
    case 10:
      return DateFormat::Mdy;
    case 3:
    case 4:
    case 5:
    case 6:
      return DateFormat::Dmy;
    case 2:
    case 11:
    case 12:
    case 20:
    case 21:
    case 26:
      return DateFormat::Ymd;
    default:
      return session;
  }
}

DateFormat parseDateFormat(std::string_view name) {
  for (const FormatName& known : formats)
    if (equalAscii(name, known.name)) return known.format;
  throw Error(2741, "SET DATEFORMAT date order '" + std::string(name) + "' is invalid.");
}

}  // namespace engine
