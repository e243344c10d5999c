#include "engine/plan/nesting.h"

#include <algorithm>
#include <array>
#include <vector>

namespace engine {
namespace {

bool isWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// Behind a quoted run that begins at `at`.
std::size_t skipQuoted(std::string_view sql, std::size_t at) {
  const char quote = sql[at++];
  while (at < sql.size() && sql[at] != quote) ++at;
  return at + 1;
}

// On the bracket that closes the one at `open`.
std::size_t closing(std::string_view sql, std::size_t open) {
  int depth = 0;
  for (std::size_t at = open; at < sql.size(); ++at) {
    if (sql[at] == '\'' || sql[at] == '"') {
      at = skipQuoted(sql, at) - 1;
    } else if (sql[at] == '(') {
      ++depth;
    } else if (sql[at] == ')' && --depth == 0) {
      return at;
    }
  }
  return sql.size();
}

bool isQuery(std::string_view inside) {
  return inside.starts_with("SELECT ");
}

bool isAggregate(std::string_view name) {
  static constexpr std::array aggregates = {"count", "sum", "avg", "min", "max", "z_one", "z_percent"};
  return name.starts_with("z_sum") || name.starts_with("z_avg") ||
         std::find(aggregates.begin(), aggregates.end(), name) != aggregates.end();
}

// Words before a bracket that make it a plain one, around a value.
bool standsBeforeValue(std::string_view word) {
  static constexpr std::array words = {"AND",  "OR",   "NOT",    "ON",     "WHERE", "WHEN",
                                       "THEN", "ELSE", "SELECT", "HAVING", "BY"};
  return word.empty() || std::find(words.begin(), words.end(), word) != words.end();
}

bool isKeyword(std::string_view word) {
  return word[0] >= 'A' && word[0] <= 'Z' && word != "CAST";
}

std::string_view wordBefore(std::string_view text, std::size_t end) {
  while (end > 0 && text[end - 1] == ' ') --end;
  std::size_t first = end;
  while (first > 0 && isWordCharacter(text[first - 1])) --first;
  return text.substr(first, end - first);
}

// False for what is no single value: joins in brackets, calls over an aggregate of the surrounding query.
bool isMovable(std::string_view inside) {
  for (std::size_t at = 0; at < inside.size(); ++at) {
    if (inside[at] == '\'' || inside[at] == '"') {
      at = skipQuoted(inside, at) - 1;
    } else if (inside[at] == '(') {
      if (isAggregate(wordBefore(inside, at))) return false;
      if (isQuery(inside.substr(at + 1))) at = closing(inside, at);
    } else if (inside.substr(at).starts_with(" JOIN ") || inside.substr(at).starts_with(" OVER ")) {
      return false;
    }
  }
  return true;
}

class Flattener {
 public:
  explicit Flattener(int depth) : depth_(depth) {}

  std::string statement(std::string_view sql) {
    const std::string main = walk(sql);
    std::string text;
    for (std::size_t i = 0; i < parts_.size(); ++i)
      text += (i ? ", zq_" : "WITH zq_") + std::to_string(i) + " AS (" + parts_[i] + ")";
    return text.empty() ? main : text + " " + main;
  }

 private:
  std::string move(const std::string& query) {
    const std::size_t slot = parts_.size();
    parts_.emplace_back();
    parts_[slot] = walk(query);
    return "zq_" + std::to_string(slot);
  }

  // Moves what begins with the bracket at `open`, if it may be moved; `out` ends before the bracket.
  bool moved(std::string_view sql, std::size_t open, std::size_t close, std::string& out) {
    const std::string_view inside = sql.substr(open + 1, close - open - 1);
    if (isQuery(inside)) {
      out += "(SELECT * FROM " + move(std::string(inside)) + ")";
      return true;
    }
    const std::string_view word = wordBefore(sql, open);
    const bool bracket = standsBeforeValue(word);
    if (!bracket && (isKeyword(word) || isAggregate(word))) return false;
    if (word.empty() && open > 0 && sql[open - 1] == '"') return false;  // columns of a table
    if (!isMovable(inside)) return false;
    const std::string value = bracket ? std::string(sql.substr(open, close + 1 - open))
                                      : std::string(word) + std::string(sql.substr(open, close + 1 - open));
    if (!bracket) out.resize(out.size() - word.size());
    out += "(SELECT zv FROM " + move("SELECT " + value + " AS zv") + ")";
    return true;
  }

  std::string walk(std::string_view sql) {
    std::string out;
    int depth = 0;
    for (std::size_t at = 0; at < sql.size(); ++at) {
      const char c = sql[at];
      if (c == '\'' || c == '"') {
        const std::size_t end = std::min(sql.size(), skipQuoted(sql, at));
        out += sql.substr(at, end - at);
        at = end - 1;
        continue;
      }
      // A recursive query keeps its parts together.
      if (c == '(' && sql.substr(at + 1).starts_with("WITH RECURSIVE ")) {
        const std::size_t close = std::min(sql.size() - 1, closing(sql, at));
        out += sql.substr(at, close + 1 - at);
        at = close;
        continue;
      }
      if (c == '(' && depth >= depth_) {
        const std::size_t close = closing(sql, at);
        if (close < sql.size() && moved(sql, at, close, out)) {
          at = close;
          continue;
        }
      }
      depth += c == '(' ? 1 : c == ')' ? -1 : 0;
      out += c;
    }
    return out;
  }

  const int depth_;
  std::vector<std::string> parts_;
};

std::string withNumbers(std::string_view sql) {
  std::string out;
  int last = 0;
  for (std::size_t at = 0; at < sql.size(); ++at) {
    if (sql[at] == '\'' || sql[at] == '"') {
      const std::size_t end = std::min(sql.size(), skipQuoted(sql, at));
      out += sql.substr(at, end - at);
      at = end - 1;
      continue;
    }
    out += sql[at];
    const bool bare = sql[at] == '?' && (at + 1 == sql.size() || sql[at + 1] < '0' || sql[at + 1] > '9');
    if (bare) out += std::to_string(++last);
  }
  return out;
}

}  // namespace

std::string withShallowNesting(std::string_view sql, int depth) {
  return Flattener(depth).statement(withNumbers(sql));
}

}  // namespace engine
