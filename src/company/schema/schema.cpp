#include "company/schema/schema.h"

#include <algorithm>
#include <map>
#include <stdexcept>

namespace company::schema {

namespace {

using catalog::EmbeddedText;

constexpr std::string_view baseSuffix = ".base.sql";

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower(x) == lower(y); });
}

template <class Def>
const Def* find(const std::vector<Def>& all, std::string_view name) {
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Def& def) { return sameName(def.name, name); });
  return found == all.end() ? nullptr : &*found;
}

std::vector<TableDef> readTables() {
  std::vector<TableDef> all;
  for (const EmbeddedText& file : embeddedTexts()) {
    if (file.name.ends_with(".tbl")) {
      for (TableDef& def : catalog::parseTables(file)) {
        all.push_back(std::move(def));
      }
    }
  }
  return all;
}

// The text as a server gets it: each line break of the file with its indentation stands for one blank.
std::string withoutLayout(std::string_view text) {
  while (text.ends_with('\n')) {
    text.remove_suffix(1);
  }
  std::string out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool lineBreak = text[at] == '\n';
    out += lineBreak ? ' ' : text[at];
    while (lineBreak && at + 1 < text.size() && text[at + 1] == ' ') ++at;
  }
  return out;
}

// `folder` with a slash behind it. Base texts follow or precede their current text.
std::vector<ObjectDef> readObjects(std::string_view folder) {
  std::vector<ObjectDef> all;
  std::map<std::string, std::string, std::less<>> base;
  for (const EmbeddedText& file : embeddedTexts()) {
    if (!file.name.starts_with(folder)) {
      continue;
    }
    std::string_view name = file.name.substr(folder.size());
    if (name.ends_with(baseSuffix)) {
      base.emplace(name.substr(0, name.size() - baseSuffix.size()), withoutLayout(file.text));
    } else {
      name.remove_suffix(std::string_view(".sql").size());
      all.push_back({std::string(name), withoutLayout(file.text), ""});
    }
  }
  for (ObjectDef& def : all) {
    const auto own = base.find(def.name);
    def.baseText = own == base.end() ? def.text : own->second;
  }
  return all;
}

// order.lst: lists of names under headings in square brackets.
std::map<std::string, std::vector<std::string>> readOrder() {
  std::map<std::string, std::vector<std::string>> lists;
  std::vector<std::string>* current = nullptr;
  for (const EmbeddedText& file : embeddedTexts()) {
    if (file.name != "order.lst") {
      continue;
    }
    std::string_view rest = file.text;
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find('\n'), rest.size());
      const std::string line(rest.substr(0, end));
      rest.remove_prefix(std::min(end + 1, rest.size()));
      if (line.starts_with('[')) {
        current = &lists[line.substr(1, line.size() - 2)];
      } else if (!line.empty() && line[0] != '#' && current != nullptr) {
        current->push_back(line);
      }
    }
  }
  return lists;
}

const std::vector<std::string>& order(const std::string& kind, Stage stage) {
  static const auto lists = readOrder();
  return lists.at(kind + (stage == Stage::Base ? ".base" : ".upgrade"));
}

}  // namespace

const std::vector<TableDef>& tables() {
  static const std::vector<TableDef> all = readTables();
  return all;
}

const std::vector<ObjectDef>& views() {
  static const std::vector<ObjectDef> all = readObjects("views/");
  return all;
}

const std::vector<ObjectDef>& triggers() {
  static const std::vector<ObjectDef> all = readObjects("triggers/");
  return all;
}

const TableDef* table(std::string_view name) {
  return find(tables(), name);
}
const ObjectDef* view(std::string_view name) {
  return find(views(), name);
}
const ObjectDef* trigger(std::string_view name) {
  return find(triggers(), name);
}

const std::vector<std::string>& tableOrder(Stage stage) {
  return order("tables", stage);
}
const std::vector<std::string>& viewOrder(Stage stage) {
  return order("views", stage);
}
const std::vector<std::string>& triggerOrder(Stage stage) {
  return order("triggers", stage);
}

}  // namespace company::schema
