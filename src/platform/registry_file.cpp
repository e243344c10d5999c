// The registry as a file in the user's configuration folder, UTF-8:
//
//   file    = { section }
//   section = "[" root "\" key "]" LF { entry }
//   entry   = name "=" text LF          text with \\, \n and \r for backslash, line feed, carriage return
//
// Lines of any other form are kept out when the file is written again.
#ifndef _WIN32

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/files.h"
#include "platform/folders.h"
#include "platform/registry.h"

namespace platform {

namespace {

struct Entry {
  std::string name, text;
};
struct Section {
  std::string name;
  std::vector<Entry> entries;
};
using File = std::vector<Section>;

bool sameName(std::string_view a, std::string_view b) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [&](char x, char y) { return lower(x) == lower(y); });
}

std::string sectionName(std::string_view root, std::string_view key) {
  return std::string(root) + "\\" + std::string(key);
}

std::string escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '\\')
      out += "\\\\";
    else if (c == '\n')
      out += "\\n";
    else if (c == '\r')
      out += "\\r";
    else
      out += c;
  }
  return out;
}

std::string unescaped(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    const char next = text[++i];
    out += next == 'n' ? '\n' : next == 'r' ? '\r' : next;
  }
  return out;
}

void readLine(File& file, std::string_view line) {
  if (line.size() > 1 && line.front() == '[' && line.back() == ']') {
    file.push_back({std::string(line.substr(1, line.size() - 2)), {}});
    return;
  }
  const auto equals = line.find('=');
  if (file.empty() || equals == std::string_view::npos) return;
  file.back().entries.push_back({std::string(line.substr(0, equals)), unescaped(line.substr(equals + 1))});
}

// Nothing when the file is there and cannot be read.
std::optional<File> load() {
  File file;
  std::error_code error;
  const auto content = readFile(registryFile());
  if (!content && std::filesystem::exists(registryFile(), error)) return std::nullopt;
  if (error) return std::nullopt;
  const std::string text = content.value_or("");
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    readLine(file, std::string_view(text).substr(at, end - at));
    at = end + 1;
  }
  return file;
}

std::error_code save(const File& file) {
  std::string text;
  for (const Section& section : file) {
    text += "[" + section.name + "]\n";
    for (const Entry& entry : section.entries) text += entry.name + "=" + escaped(entry.text) + "\n";
  }
  std::error_code error;
  std::filesystem::create_directories(registryFile().parent_path(), error);
  return error ? error : writeFileSafely(registryFile(), text);
}

Section* findSection(File& file, std::string_view name) {
  const auto at =
      std::find_if(file.begin(), file.end(), [&](const Section& s) { return sameName(s.name, name); });
  return at == file.end() ? nullptr : &*at;
}

Entry* findEntry(Section* section, std::string_view name) {
  if (section == nullptr) return nullptr;
  auto& entries = section->entries;
  const auto at =
      std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return sameName(e.name, name); });
  return at == entries.end() ? nullptr : &*at;
}

}  // namespace

std::filesystem::path registryFile() {
  return userConfigFolder() / "kayit.ini";
}

std::string registryRead(std::string_view root, std::string_view key, std::string_view value) {
  File file = load().value_or(File{});
  const Entry* entry = findEntry(findSection(file, sectionName(root, key)), value);
  return entry != nullptr ? entry->text : std::string();
}

std::error_code registryWrite(std::string_view root, std::string_view key, std::string_view value,
                              std::string_view text) {
  // Written anew from nothing, it would lose what it holds.
  std::optional<File> loaded = load();
  if (!loaded) return std::make_error_code(std::errc::permission_denied);
  File& file = *loaded;
  const std::string name = sectionName(root, key);
  if (findSection(file, name) == nullptr) file.push_back({name, {}});
  Section* section = findSection(file, name);
  if (Entry* entry = findEntry(section, value))
    entry->text = text;
  else
    section->entries.push_back({std::string(value), std::string(text)});
  return save(file);
}

bool registryHasKey(std::string_view root, std::string_view key) {
  std::optional<File> file = load();
  // One that cannot be read is not new: nobody may take it for a fresh account's.
  if (!file) return true;
  return findSection(*file, sectionName(root, key)) != nullptr;
}

}  // namespace platform

#endif
