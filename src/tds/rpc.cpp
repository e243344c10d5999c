#include "tds/rpc.h"

#include <algorithm>
#include <array>

namespace tds {

namespace {

constexpr std::array<const char*, 16> names = {"",
                                               "sp_cursor",
                                               "sp_cursoropen",
                                               "sp_cursorprepare",
                                               "sp_cursorexecute",
                                               "sp_cursorprepexec",
                                               "sp_cursorunprepare",
                                               "sp_cursorfetch",
                                               "sp_cursoroption",
                                               "sp_cursorclose",
                                               "sp_executesql",
                                               "sp_prepare",
                                               "sp_execute",
                                               "sp_prepexec",
                                               "sp_prepexecrpc",
                                               "sp_unprepare"};

constexpr std::uint16_t byNumber = 0xFFFF;
constexpr std::uint8_t oldSeparator = 0x80, separator = 0xFF, noExecution = 0xFE;

std::string lower(std::string text) {
  for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return text;
}

Procedure procedureOf(const std::string& name) {
  const std::string folded = lower(name.substr(name.rfind('.') + 1));
  const auto found = std::find(names.begin() + 1, names.end(), folded);
  return found == names.end() ? Procedure::Named : static_cast<Procedure>(found - names.begin());
}

void readName(ByteReader& from, Call& call) {
  const std::uint16_t length = from.u16();
  if (length == byNumber) {
    const std::uint16_t number = from.u16();
    if (number == 0 || number >= names.size()) throw ProtocolError("a procedure of an unknown number");
    call.procedure = static_cast<Procedure>(number);
    call.name = names[number];
    return;
  }
  constexpr std::uint16_t longest = 1046;
  if (length > longest) throw ProtocolError("a procedure's name that is too long");
  call.name = fromUtf16(from.bytes(std::size_t{2} * length));
  call.procedure = procedureOf(call.name);
}

[[noreturn]] void failParameters() {
  throw engine::Error(8003,
                      "The incoming tabular data stream (TDS) remote procedure call (RPC) protocol stream is "
                      "incorrect. Too many parameters were provided in this RPC request. The maximum is " +
                          std::to_string(mostParameters) + ".");
}

bool isSeparator(std::uint8_t byte, Version version) {
  return version < Version::V72 ? byte == oldSeparator : byte == separator || byte == noExecution;
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// One declaration: name [AS] type [= default] [OUT | OUTPUT].
Declared parseDeclaration(std::string_view text) {
  const auto nameEnd = text.find_first_of(" \t\r\n");
  if (text.empty() || text[0] != '@' || nameEnd == std::string_view::npos)
    throw engine::Error(102, "Incorrect syntax near '" + std::string(text) + "'.", 15);
  Declared declared;
  declared.parameter.name = text.substr(0, nameEnd);
  // It becomes part of a batch: nothing but a name.
  const bool plain =
      std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(nameEnd), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
               byte >= 0x80 || c == '_' || c == '@' || c == '#' || c == '$';
      });
  if (!plain) throw engine::Error(102, "Incorrect syntax near '" + declared.parameter.name + "'.", 15);
  std::string rest(trimmed(text.substr(nameEnd)));
  const auto takeWord = [&](std::string_view word) {
    if (rest.size() <= word.size() || lower(rest.substr(rest.size() - word.size())) != word) return false;
    const char before = rest[rest.size() - word.size() - 1];
    if (before != ' ' && before != '\t' && before != ')' && before != '\n') return false;
    rest = std::string(trimmed(std::string_view(rest).substr(0, rest.size() - word.size())));
    return true;
  };
  declared.output = takeWord("output") || takeWord("out");
  if (const auto equals = rest.find('='); equals != std::string::npos)
    rest = std::string(trimmed(std::string_view(rest).substr(0, equals)));
  if (lower(rest).starts_with("as ")) rest.erase(0, 3);
  declared.parameter.type = parseType(rest);
  return declared;
}

}  // namespace

std::optional<std::int64_t> Call::number(std::size_t index) const {
  if (index >= parameters.size() || parameters[index].value.isNull()) return std::nullopt;
  const CallParameter& parameter = parameters[index];
  return engine::convert(parameter.value, parameter.type, {engine::TypeId::Int}).integer();
}

std::string Call::text(std::size_t index) const {
  if (index >= parameters.size() || !parameters[index].value.isText()) return {};
  return parameters[index].value.text();
}

std::vector<Call> readCalls(std::string_view data, Version version) {
  constexpr std::uint16_t noMetadata = 2;
  constexpr std::uint8_t output = 1, byDefault = 2;
  constexpr std::size_t mostCalls = 65536;
  std::vector<Call> calls;
  ByteReader from(data);
  while (!from.atEnd()) {
    if (calls.size() == mostCalls) throw ProtocolError("too many calls in one message");
    Call& call = calls.emplace_back();
    readName(from, call);
    call.noMetadata = (from.u16() & noMetadata) != 0;
    while (!from.atEnd()) {
      const std::uint8_t length = from.u8();
      if (isSeparator(length, version)) break;
      if (call.parameters.size() == mostParameters) failParameters();
      CallParameter& parameter = call.parameters.emplace_back();
      parameter.name = fromUtf16(from.bytes(std::size_t{2} * length));
      const std::uint8_t status = from.u8();
      parameter.output = (status & output) != 0;
      parameter.byDefault = (status & byDefault) != 0;
      TypedValue value = readValue(from);
      parameter.type = value.type;
      parameter.value = std::move(value.value);
    }
  }
  return calls;
}

std::vector<Declared> parseDeclarations(std::string_view text) {
  std::vector<Declared> found;
  int depth = 0;
  std::size_t start = 0;
  for (std::size_t i = 0; i <= text.size(); ++i) {
    const char c = i < text.size() ? text[i] : ',';
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (i < text.size() && (c != ',' || depth > 0)) continue;
    const std::string_view part = trimmed(text.substr(start, i - start));
    if (found.size() == mostParameters) failParameters();
    if (!part.empty() || i < text.size()) found.push_back(parseDeclaration(part));
    start = i + 1;
  }
  return found;
}

std::vector<engine::Parameter> bindValues(const std::vector<Declared>& declared,
                                          const std::vector<CallParameter>& values, std::size_t from) {
  std::vector<engine::Parameter> bound;
  for (const Declared& each : declared) bound.push_back(each.parameter);
  std::vector<bool> given(declared.size());
  for (std::size_t i = from; i < values.size(); ++i) {
    std::size_t index = i - from;
    if (!values[i].name.empty())
      index = static_cast<std::size_t>(std::find_if(declared.begin(), declared.end(),
                                                    [&](const Declared& each) {
                                                      return engine::compareNames(each.parameter.name,
                                                                                  values[i].name) == 0;
                                                    }) -
                                       declared.begin());
    if (index >= declared.size()) {
      if (!values[i].name.empty())
        throw engine::Error(8145, values[i].name + " is not a parameter for the prepared statement.");
      throw engine::Error(8144, "Procedure or function has too many arguments specified.");
    }
    given[index] = true;
    bound[index].value = values[i].value.isNull()
                             ? engine::Datum()
                             : engine::convert(values[i].value, values[i].type, bound[index].type);
  }
  for (std::size_t i = 0; i < given.size(); ++i)
    if (!given[i])
      throw engine::Error(8178, "The parameterized query expects the parameter '" +
                                    declared[i].parameter.name + "', which was not supplied.");
  return bound;
}

}  // namespace tds
