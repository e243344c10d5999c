#include "db/table_name.h"

#include <algorithm>
#include <array>
#include <vector>

#include "engine/server.h"

namespace db {
namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool isWordChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '@' ||
         c == '#' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

struct Token {
  std::string text;
  bool quoted = false;  // a bracketed or double-quoted name, or a text literal
};

// Position behind a token in quotes that begins at `from`; its inside goes to `out`.
std::size_t readQuoted(std::string_view sql, std::size_t from, char close, std::string& out) {
  std::size_t i = from + 1;
  for (; i < sql.size(); ++i) {
    if (sql[i] != close) {
      out += sql[i];
    } else if (i + 1 < sql.size() && sql[i + 1] == close) {
      out += sql[i++];
    } else {
      return i + 1;
    }
  }
  return i;
}

std::size_t skipComment(std::string_view sql, std::size_t from) {
  const bool line = sql.substr(from, 2) == "--";
  const auto end = line ? sql.find('\n', from) : sql.find("*/", from + 2);
  if (end == std::string_view::npos) return sql.size();
  return line ? end + 1 : end + 2;
}

std::vector<Token> tokens(std::string_view sql) {
  std::vector<Token> out;
  for (std::size_t i = 0; i < sql.size();) {
    const char c = sql[i];
    const auto pair = sql.substr(i, 2);
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
      ++i;
    } else if (pair == "--" || pair == "/*") {
      i = skipComment(sql, i);
    } else if (c == '[' || c == '"' || c == '\'') {
      Token token{"", true};
      i = readQuoted(sql, i, c == '[' ? ']' : c, token.text);
      out.push_back(std::move(token));
    } else {
      const std::size_t start = i++;
      if (isWordChar(c)) {
        while (i < sql.size() && isWordChar(sql[i])) ++i;
      }
      out.push_back({std::string(sql.substr(start, i - start)), false});
    }
  }
  return out;
}

bool isWord(const Token& token, std::string_view word) {
  return !token.quoted && sameName(token.text, word);
}

bool isName(const Token& token) {
  return token.quoted || isWordChar(token.text.front());
}

// Index of the outermost FROM; 0 when there is none or the statement is not a plain SELECT.
std::size_t findFrom(const std::vector<Token>& all) {
  if (all.empty() || !isWord(all[0], "select")) return 0;
  std::size_t from = 0;
  int depth = 0;
  for (std::size_t i = 1; i < all.size(); ++i) {
    if (all[i].quoted) continue;
    if (all[i].text == "(") ++depth;
    if (all[i].text == ")") --depth;
    if (depth != 0) continue;
    static constexpr std::array<std::string_view, 6> barred = {"union", "group", "having",
                                                               "join",  "into",  "distinct"};
    for (const auto word : barred) {
      if (sameName(all[i].text, word)) return 0;
    }
    if (from == 0 && isWord(all[i], "from")) from = i;
  }
  return from;
}

}  // namespace

bool sameName(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

bool reservedWord(std::string_view name) {
  return engine::isReserved(name);
}

std::optional<TableName> tableOfSelect(std::string_view sql) {
  const auto all = tokens(sql);
  const std::size_t from = findFrom(all);
  if (from == 0) return std::nullopt;

  std::vector<std::string> parts;
  std::size_t i = from + 1;
  for (; i < all.size(); ++i) {
    if (!all[i].quoted && all[i].text == ".") {
      if (parts.empty()) return std::nullopt;
      if (i + 1 < all.size() && !all[i + 1].quoted && all[i + 1].text == ".") parts.emplace_back();
      continue;
    }
    const bool afterDot = !parts.empty() && !all[i - 1].quoted && all[i - 1].text == ".";
    if (!isName(all[i]) || (!parts.empty() && !afterDot)) break;
    parts.push_back(all[i].text);
  }
  if (parts.empty() || parts.size() > 3) return std::nullopt;
  for (; i < all.size(); ++i) {
    if (isWord(all[i], "where") || isWord(all[i], "order") || isWord(all[i], ";")) break;
    if (!all[i].quoted && (all[i].text == "," || all[i].text == "(")) return std::nullopt;
  }
  return TableName{parts.size() == 3 ? parts[0] : "", parts.back()};
}

std::string bracketed(std::string_view name) {
  std::string out = "[";
  for (const char c : name) {
    out += c;
    if (c == ']') out += c;
  }
  return out + "]";
}

std::string qualifiedName(const TableName& table) {
  if (table.database.empty()) return bracketed(table.table);
  return bracketed(table.database) + ".dbo." + bracketed(table.table);
}

}  // namespace db
