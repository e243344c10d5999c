#include "cli/sonuc_yaz.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <ostream>
#include <set>
#include <vector>

#include "cli/metin_satirlari.h"
#include "platform/code_page.h"

namespace cli {

namespace {

using db::FieldType;

// Fewest digits that read back the same; powers of ten only for the very large and the very small.
template <class Number>
std::string shortest(Number number) {
  std::array<char, 64> buffer{};
  char* const begin = buffer.data();
  char* const limit = begin + buffer.size();
  const auto written = [&](std::chars_format format) {
    return std::string(begin, std::to_chars(begin, limit, number, format).ptr);
  };
  const std::string scientific = written(std::chars_format::scientific);
  const int exponent = std::atoi(scientific.c_str() + scientific.find('e') + 1);
  return exponent >= -5 && exponent < 16 ? written(std::chars_format::fixed) : scientific;
}

// Exactly `scale` digits behind the point.
std::string decimalText(const db::Decimal& number, int scale) {
  const bool negative = number.unscaled < 0;
  auto magnitude = static_cast<unsigned long long>(number.unscaled);
  if (negative) magnitude = 0ULL - magnitude;
  std::string digits = std::to_string(magnitude);
  if (static_cast<int>(digits.size()) <= number.scale)
    digits.insert(0, static_cast<std::size_t>(number.scale) + 1 - digits.size(), '0');
  std::string fraction = digits.substr(digits.size() - static_cast<std::size_t>(number.scale));
  digits.resize(digits.size() - fraction.size());
  if (scale > number.scale) fraction.resize(static_cast<std::size_t>(scale), '0');
  return (negative ? "-" : "") + digits + (fraction.empty() ? "" : "." + fraction);
}

std::string hexText(const std::string& bytes) {
  static constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text = "0x";
  for (const char byte : bytes) {
    text += digits[static_cast<unsigned char>(byte) >> 4U];
    text += digits[static_cast<unsigned char>(byte) & 15U];
  }
  return text;
}

bool isNumber(FieldType type) {
  return type <= FieldType::Float;
}

std::string withoutTrailingBlanks(std::string text) {
  text.resize(text.find_last_not_of(' ') + 1);  // npos + 1 is 0
  return text;
}

std::string escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '\t':
        out += "\\t";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\\':
        out += "\\\\";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string cell(const db::Rows& rows, std::int64_t row, std::size_t column) {
  return escaped(degerMetni(rows.value(row, static_cast<int>(column)), rows.fields()[column]));
}

void writeTsv(std::ostream& out, const db::Rows& rows) {
  const auto& fields = rows.fields();
  for (std::size_t c = 0; c < fields.size(); ++c) out << (c == 0 ? "" : "\t") << escaped(fields[c].name);
  out << "\n";
  for (std::int64_t r = 0; r < rows.count(); ++r) {
    for (std::size_t c = 0; c < fields.size(); ++c) out << (c == 0 ? "" : "\t") << cell(rows, r, c);
    out << "\n";
  }
}

std::size_t widthOf(std::string_view text) {
  return platform::toUtf32(text).size();
}

void writePadded(std::ostream& out, const std::string& text, std::size_t width, bool right, bool last) {
  const std::string blanks(width - widthOf(text), ' ');
  if (right)
    out << blanks << text;
  else
    out << text << (last ? "" : blanks);
}

void writeTable(std::ostream& out, const db::Rows& rows, bool renkli) {
  const auto& fields = rows.fields();
  std::vector<std::size_t> widths;
  for (std::size_t c = 0; c < fields.size(); ++c) {
    std::size_t width = widthOf(escaped(fields[c].name));
    for (std::int64_t r = 0; r < rows.count(); ++r) width = std::max(width, widthOf(cell(rows, r, c)));
    widths.push_back(width);
  }
  const auto line = [&](auto textOf) {
    for (std::size_t c = 0; c < fields.size(); ++c) {
      out << (c == 0 ? "" : "  ");
      writePadded(out, textOf(c), widths[c], isNumber(fields[c].type), c + 1 == fields.size());
    }
    out << "\n";
  };
  if (renkli) out << kalin;
  line([&](std::size_t c) { return escaped(fields[c].name); });
  if (renkli) out << duz;
  line([&](std::size_t c) { return std::string(widths[c], '-'); });
  for (std::int64_t r = 0; r < rows.count(); ++r) line([&](std::size_t c) { return cell(rows, r, c); });
}

std::vector<std::string> jsonNames(const std::vector<db::FieldInfo>& fields) {
  std::vector<std::string> names;
  std::set<std::string> taken;
  for (std::size_t c = 0; c < fields.size(); ++c) {
    const std::string position = std::to_string(c + 1);
    std::string name = fields[c].name.empty() ? "kolon" + position : fields[c].name;
    while (!taken.insert(name).second) name += "_" + position;
    names.push_back(jsonMetni(name));
  }
  return names;
}

std::string jsonValue(const db::Value& value, const db::FieldInfo& field) {
  if (value.isNull()) return "null";
  const std::string text = degerMetni(value, field);
  return isNumber(field.type) ? text : jsonMetni(text);
}

void writeJson(std::ostream& out, const db::Rows& rows) {
  const auto names = jsonNames(rows.fields());
  out << "[";
  for (std::int64_t r = 0; r < rows.count(); ++r) {
    out << (r == 0 ? "\n  {" : ",\n  {");
    for (std::size_t c = 0; c < names.size(); ++c)
      out << (c == 0 ? "" : ", ") << names[c] << ": "
          << jsonValue(rows.value(r, static_cast<int>(c)), rows.fields()[c]);
    out << "}";
  }
  out << (rows.count() == 0 ? "]\n" : "\n]\n");
}

}  // namespace

std::string jsonMetni(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      std::array<char, 8> code{};
      std::snprintf(code.data(), code.size(), "\\u%04x", static_cast<unsigned>(c));
      out += code.data();
    } else {
      out += c;
    }
  }
  return out + "\"";
}

Bicim bicimi(const Degerler& degerler, Bicim yoksa) {
  if (!degerler.var("bicim")) return yoksa;
  const std::string ad = degerler.metin("bicim");
  return ad == "tsv" ? Bicim::Tsv : ad == "json" ? Bicim::Json : Bicim::Tablo;
}

std::string degerMetni(const db::Value& value, const db::FieldInfo& field) {
  if (value.isNull()) return "NULL";
  switch (field.type) {
    case FieldType::Bit:
      return value.boolean() ? "1" : "0";
    case FieldType::Real:
      return shortest(static_cast<float>(value.real()));
    case FieldType::Float:
      return shortest(value.real());
    case FieldType::Money:
    case FieldType::SmallMoney:
    case FieldType::Decimal: {
      const auto* number = value.as<db::Decimal>();
      return number != nullptr ? decimalText(*number, field.type == FieldType::Decimal ? field.scale : 4)
                               : value.text();
    }
    case FieldType::Char:
    case FieldType::NChar:
      return withoutTrailingBlanks(value.text());
    case FieldType::Binary:
    case FieldType::VarBinary: {
      const auto* bytes = value.as<db::Bytes>();
      return bytes != nullptr ? hexText(bytes->data) : value.text();
    }
    default:
      return value.text();
  }
}

void sonucYaz(std::ostream& out, const db::Rows& rows, Bicim bicim, bool renkli) {
  switch (bicim) {
    case Bicim::Tsv:
      return writeTsv(out, rows);
    case Bicim::Tablo:
      return writeTable(out, rows, renkli);
    case Bicim::Json:
      return writeJson(out, rows);
  }
}

void sonucYaz(Ortam& ortam, const db::Rows& rows, Bicim bicim) {
  sonucYaz(ortam.out, rows, bicim, ortam.ciktiRenkli);
}

void ikilileriYaz(Ortam& ortam, const Degerler& degerler, std::span<const std::string_view> basliklar,
                  const std::vector<std::vector<std::string>>& satirlar) {
  if (degerler.metin("bicim", "metin") != "metin")
    return sonucYaz(ortam, MetinSatirlari(basliklar, satirlar), bicimi(degerler, Bicim::Tablo));
  for (const auto& satir : satirlar) ortam.out << satir[0] << "\t" << satir[1] << "\n";
}

void Degisiklikler::ekle(std::string_view metin, std::vector<std::vector<std::string>> satirlar) {
  // A trial was asked for its report; of what is done a report is news.
  if (!tablo()) (degerler_.var("dene") ? ortam_.out : ortam_.haber()) << metin;
  satirlar_.insert(satirlar_.end(), std::make_move_iterator(satirlar.begin()),
                   std::make_move_iterator(satirlar.end()));
}

void Degisiklikler::bitir() {
  if (tablo()) sonucYaz(ortam_, MetinSatirlari(basliklar_, satirlar_), bicimi(degerler_, Bicim::Tablo));
}

}  // namespace cli
