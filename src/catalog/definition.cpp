#include "catalog/definition.h"

#include <algorithm>
#include <stdexcept>

namespace catalog {

namespace {

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

// Words of a line; a text in apostrophes is one word and keeps them.
std::vector<std::string> words(std::string_view line) {
  std::vector<std::string> out;
  std::size_t i = 0;
  while (i < line.size()) {
    if (line[i] == ' ') {
      ++i;
      continue;
    }
    std::size_t end = line[i] == '\'' ? line.find('\'', i + 1) : line.find(' ', i);
    if (end == std::string_view::npos) {
      end = line.size();
    } else if (line[i] == '\'') {
      ++end;
    }
    out.emplace_back(line.substr(i, end - i));
    i = end;
  }
  return out;
}

std::string bare(const std::string& word) {
  if (word.size() >= 2 && word.front() == '\'' && word.back() == '\'') {
    return word.substr(1, word.size() - 2);
  }
  return word;
}

// Reads one file line by line; every message carries the place.
class Reader {
 public:
  explicit Reader(const EmbeddedText& file) : file_(file) {}

  std::vector<TableDef> run() {
    std::string_view rest = file_.text;
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find('\n'), rest.size());
      ++line_;
      take(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return std::move(tables_);
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw std::invalid_argument(std::string(file_.name) + ":" + std::to_string(line_) + ": " + what);
  }

  void take(std::string_view line) {
    const std::size_t first = line.find_first_not_of(' ');
    if (first == std::string_view::npos || line[first] == '#') {
      return;
    }
    if (first == 0) {
      tableLine(words(line));
      return;
    }
    if (tables_.empty()) {
      fail("a column before the first TABLE");
    }
    const std::string_view text = line.substr(first);
    if (text.starts_with("INSERT ") || text.starts_with("UPDATE ")) {
      tables_.back().firstRows.emplace_back(text);
    } else if (text.starts_with("UPGRADE ")) {
      tables_.back().upgradeRows.emplace_back(text.substr(8));
    } else if (text.starts_with("CREATE ")) {
      tables_.back().indexes.emplace_back(text);
    } else if (text.starts_with("PRIMARY KEY ")) {
      keyLine(text.substr(12));
    } else {
      columnLine(words(text));
    }
  }

  Stage stageOf(const std::string& word) const {
    if (word != "B" && word != "U" && word != "B/U") {
      fail("'" + word + "' is no stage");
    }
    return word == "B" ? Stage::Base : Stage::Upgrade;
  }

  void tableLine(const std::vector<std::string>& w) {
    if (w.size() < 3 || w[0] != "TABLE") {
      fail("TABLE name stage expected");
    }
    TableDef table;
    table.name = w[1];
    table.stage = stageOf(w[2]);
    if (w.size() == 5 && w[3] == "COLLATE") {
      table.collation = w[4];
    } else if (w.size() != 3) {
      fail("unknown words behind the stage");
    }
    tables_.push_back(std::move(table));
  }

  void keyLine(std::string_view text) {
    TableDef& table = tables_.back();
    const std::size_t open = text.find('(');
    const std::size_t close = text.find(')');
    if (open == std::string_view::npos || close == std::string_view::npos) {
      fail("key columns in brackets expected");
    }
    if (open > 0) {
      table.keyKind = words(text.substr(0, open)).at(0);
    }
    std::string names(text.substr(open + 1, close - open - 1));
    std::replace(names.begin(), names.end(), ',', ' ');
    table.key = words(names);
    for (const std::string& name : table.key) {
      if (table.column(name) == nullptr) {
        fail("key column " + name + " is no column");
      }
    }
  }

  void columnLine(const std::vector<std::string>& w) {
    if (w[0] == "AUDIT" && w.size() == 2) {
      audit(w[1]);
      return;
    }
    std::size_t i = 2;
    auto next = [&]() -> const std::string& {
      if (i >= w.size()) {
        fail("column " + w[0] + " ends too early");
      }
      return w[i++];
    };
    ColumnDef column;
    column.name = w[0];
    column.type = column.baseType = w.size() > 1 ? w[1] : "";
    std::string word = next();
    if (word == "NOT") {
      column.nullable = false;
      word = next();
    }
    if (word != "NULL") {
      fail("NULL or NOT NULL expected");
    }
    word = next();
    if (word == "IDENTITY") {
      column.identity = true;
      word = next();
    } else if (word == "DEFAULT") {
      column.defaultSql = next();
      word = next();
    } else if (word == "FILL") {
      column.hasFill = true;
      column.fill = bare(next());
      word = next();
    }
    column.stage = stageOf(word);
    note(column, std::vector<std::string>(w.begin() + static_cast<std::ptrdiff_t>(i), w.end()));
    add(column);
  }

  void note(ColumnDef& column, const std::vector<std::string>& w) const {
    if (w.empty()) {
      return;
    }
    if (w[0] == "BASE" && w.size() == 2) {
      column.baseType = w[1];
    } else if (w[0] == "DROPPED" && w.size() == 1) {
      column.dropped = true;
    } else if (w[0] == "REBUILD" && w.size() == 1) {
      column.rebuild = true;
    } else if (w[0] == "ASKED" && w.size() == 3 && w[1] == "NAME") {
      column.askedName = bare(w[2]);
    } else if (w[0] == "ASKED" && w.size() == 5 && w[1] == "LENGTH" && w[3] == "DEFAULT") {
      column.askedLength = std::stoi(w[2]);
      column.askedDefault = w[4];
    } else {
      fail("unknown note " + w[0]);
    }
  }

  void add(const ColumnDef& column) {
    const std::size_t dots = column.name.find("..");
    if (dots == std::string::npos) {
      if (tables_.back().column(column.name) != nullptr) {
        fail("column " + column.name + " twice");
      }
      tables_.back().columns.push_back(column);
      return;
    }
    const std::string first = column.name.substr(0, dots);
    const std::string last = column.name.substr(dots + 2);
    const std::size_t digits = first.find_first_of("0123456789");
    if (digits == std::string::npos || last.substr(0, digits) != first.substr(0, digits)) {
      fail("the ends of the run " + column.name + " do not match");
    }
    for (int n = std::stoi(first.substr(digits)); n <= std::stoi(last.substr(digits)); ++n) {
      ColumnDef one = column;
      one.name = first.substr(0, digits) + std::to_string(n);
      add(one);
    }
  }

  void audit(const std::string& stage) {
    struct Part {
      const char *name, *type, *fill;
    };
    static constexpr Part parts[] = {
        {"YR_Kullanici", "INT", "0"},
        {"YR_Tarih", "DATETIME", "01/01/<year>"},
        {"YR_Saat", "DATETIME", "00:00:01"},
        {"Deg_Kullanici", "INT", "0"},
        {"Deg_Tarih", "DATETIME", "01/01/<year>"},
        {"Deg_Saat", "DATETIME", "00:00:01"},
    };
    for (const Part& part : parts) {
      ColumnDef column;
      column.name = part.name;
      column.type = column.baseType = part.type;
      column.stage = stageOf(stage);
      column.completed = stage == "B/U";
      column.hasFill = column.completed;
      column.fill = column.completed ? part.fill : "";
      add(column);
    }
  }

  const EmbeddedText& file_;
  int line_ = 0;
  std::vector<TableDef> tables_;
};

bool isText(std::string_view type) {
  return type.starts_with("CHAR") || type.starts_with("VARCHAR") || type == "TEXT" || type == "NTEXT";
}

}  // namespace

const ColumnDef* TableDef::column(std::string_view columnName) const {
  const auto found = std::find_if(columns.begin(), columns.end(),
                                  [&](const ColumnDef& c) { return sameName(c.name, columnName); });
  return found == columns.end() ? nullptr : &*found;
}

bool TableDef::mayBeNull(const ColumnDef& column) const {
  return column.nullable && std::none_of(key.begin(), key.end(), [&](const std::string& name) {
           return sameName(name, column.name);
         });
}

std::vector<TableDef> parseTables(const EmbeddedText& file) {
  return Reader(file).run();
}

std::string columnText(const TableDef& table, const ColumnDef& column, Stage stage) {
  const std::string& type = stage == Stage::Base ? column.baseType : column.type;
  std::string text = column.name + " " + type;
  if (!table.collation.empty() && column.stage == Stage::Base && isText(type)) {
    text += " COLLATE " + table.collation;
  }
  text += table.mayBeNull(column) ? " NULL" : " NOT NULL";
  if (column.identity) {
    text += " IDENTITY";
  }
  if (!column.defaultSql.empty()) {
    text += " DEFAULT " + column.defaultSql;
  }
  return text;
}

std::string createStatement(const TableDef& table, Stage stage) {
  std::string text;
  for (const ColumnDef& column : table.columns) {
    const bool wanted = stage == Stage::Upgrade
                            ? !column.dropped
                            : column.stage == Stage::Base || table.stage == Stage::Upgrade;
    if (wanted) {
      text += (text.empty() ? "" : ", ") + columnText(table, column, stage);
    }
  }
  if (!table.key.empty()) {
    text += ", PRIMARY KEY " + (table.keyKind.empty() ? "" : table.keyKind + " ") + "(";
    for (std::size_t i = 0; i < table.key.size(); ++i) {
      text += (i == 0 ? "" : ", ") + table.key[i];
    }
    text += ")";
  }
  return "CREATE TABLE " + table.name + " (" + text + ")";
}

}  // namespace catalog
