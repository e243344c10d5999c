#include "tds/procedures.h"

#include <algorithm>

#include "tds/bytes.h"

namespace tds {

namespace {

const engine::Type handleType{engine::TypeId::Int};

// Each part of a name in brackets; a number behind a semicolon, which clients add, is left out.
std::string quotedName(std::string name) {
  if (const auto number = name.rfind(';'); number != std::string::npos) name.resize(number);
  std::string out = "[";
  bool bracket = false;
  for (const char c : name) {
    if (c == '[' && !bracket) {
      bracket = true;
    } else if (c == ']') {
      bracket = false;
    } else if (c == '.' && !bracket) {
      out += "].[";
    } else {
      out += c;
    }
  }
  // An absent part between two points stays absent.
  for (auto at = out.find("[]"); at != std::string::npos; at = out.find("[]")) out.erase(at, 2);
  return out + (out.ends_with('.') || out.empty() ? "" : "]");
}

[[noreturn]] void failHandle(const Call& call) {
  throw engine::Error(8179, "Could not find prepared statement with handle " +
                                std::to_string(call.number(0).value_or(0)) + ".");
}

}  // namespace

void Procedures::run(const Call& call, Answer& answer) {
  answer.setInProcedure(true);
  switch (call.procedure) {
    case Procedure::ExecuteSql:
      executeSql(call, answer);
      break;
    case Procedure::Prepare:
      prepareOnly(call, answer);
      break;
    case Procedure::PrepExec:
      prepareAndExecute(call, answer);
      break;
    case Procedure::Execute:
      execute(call, answer);
      break;
    case Procedure::Unprepare:
      unprepare(call);
      putReturnStatus(answer.tokens(), 0);
      break;
    case Procedure::CursorOpen:
      cursors_.open(call, answer);
      break;
    case Procedure::CursorFetch:
      cursors_.fetch(call, answer);
      break;
    case Procedure::Cursor:
      cursors_.change(call, answer);
      break;
    case Procedure::CursorOption:
      cursors_.option(call, answer);
      break;
    case Procedure::CursorClose:
      cursors_.close(call, answer);
      break;
    case Procedure::Named:
      runNamed(call, answer);
      break;
    default:
      throw engine::Error(2812, "Could not find stored procedure '" + call.name + "'.");
  }
  answer.endProcedure();
}

void Procedures::runNamed(const Call& call, Answer& answer) {
  std::vector<engine::Parameter> values;
  // The first variable takes what the procedure returns.
  values.push_back({"@tds0", {engine::TypeId::Int}, 0});
  std::string text = "EXEC @tds0=" + quotedName(call.name);
  for (const CallParameter& parameter : call.parameters) {
    if (parameter.byDefault) continue;
    const std::string variable = "@tds" + std::to_string(values.size());
    text += values.size() == 1 ? " " : ",";
    if (!parameter.name.empty()) text += parameter.name + "=";
    text += variable + (parameter.output ? " OUTPUT" : "");
    values.push_back({variable, parameter.type, parameter.value});
  }
  session_.execute(text, values, answer);
  std::string& to = answer.tokens();
  const auto status = static_cast<std::int32_t>(values[0].value.isInteger() ? values[0].value.integer() : 0);
  putReturnStatus(to, status == 0 && answer.failed() ? 1 : status);
  std::size_t at = 0;
  for (std::size_t i = 0; i < call.parameters.size(); ++i) {
    if (call.parameters[i].byDefault) continue;
    const engine::Parameter& value = values[++at];
    if (call.parameters[i].output)
      putReturnValue(to, static_cast<std::uint16_t>(i), call.parameters[i].name, value.type, value.value,
                     answer.version());
  }
}

void Procedures::runPrepared(const std::string& text, const std::vector<Declared>& declared, const Call& call,
                             std::size_t from, Answer& answer, std::optional<std::int32_t> handle) {
  std::vector<engine::Parameter> values = bindValues(declared, call.parameters, from);
  session_.execute(text, values, answer);
  std::string& to = answer.tokens();
  putReturnStatus(to, answer.failed() ? 1 : 0);
  if (handle) putReturnValue(to, 0, call.parameters[0].name, handleType, *handle, answer.version());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto sent =
        std::find_if(call.parameters.begin() + static_cast<std::ptrdiff_t>(from), call.parameters.end(),
                     [&](const CallParameter& parameter) { return parameter.name == values[i].name; });
    const bool byPlace = sent == call.parameters.end() && from + i < call.parameters.size();
    const CallParameter* parameter = sent != call.parameters.end() ? &*sent
                                     : byPlace                     ? &call.parameters[from + i]
                                                                   : nullptr;
    if (!parameter || !parameter->output) continue;
    putReturnValue(to, static_cast<std::uint16_t>(from + i), parameter->name, values[i].type, values[i].value,
                   answer.version());
  }
}

// sp_executesql statement [, declarations, values ...]
void Procedures::executeSql(const Call& call, Answer& answer) {
  runPrepared(call.text(0), parseDeclarations(call.text(1)), call,
              std::min<std::size_t>(call.parameters.size(), 2), answer, std::nullopt);
}

// sp_prepare handle OUTPUT, declarations, statement; sp_prepexec with the values behind them.
std::int32_t Procedures::prepare(const Call& call) {
  if (call.parameters.size() < 3)
    throw engine::Error(
        201, "Procedure or function '" + call.name + "' expects parameter '@stmt', which was not supplied.");
  // A client that prepares anew under its old handle gives that up.
  if (const auto old = call.number(0)) prepared_.erase(static_cast<std::int32_t>(*old));
  Prepared made{call.text(2), parseDeclarations(call.text(1)), Share(allowance_)};
  made.memory.take(sizeof(Prepared) + made.text.size() + made.parameters.size() * sizeof(Declared));
  prepared_[++lastHandle_] = std::move(made);
  return lastHandle_;
}

void Procedures::prepareOnly(const Call& call, Answer& answer) {
  const std::int32_t handle = prepare(call);
  const Prepared& made = prepared_[handle];
  std::vector<engine::Parameter> parameters;
  for (const Declared& each : made.parameters) parameters.push_back(each.parameter);
  // A mistake in the statement is told when it runs.
  std::vector<engine::ResultColumn> columns;
  try {
    columns = session_.describe(made.text, parameters);
  } catch (const engine::Error&) {
    columns.clear();
  }
  if (!columns.empty() && call.number(3).value_or(0) != 0) {
    RowWriter(std::move(columns), answer.version()).describe(answer.tokens());
    answer.statementEnd(0, commandSelect, 0);
  }
  std::string& to = answer.tokens();
  putReturnStatus(to, 0);
  putReturnValue(to, 0, call.parameters[0].name, handleType, handle, answer.version());
}

void Procedures::prepareAndExecute(const Call& call, Answer& answer) {
  const std::int32_t handle = prepare(call);
  const Prepared& made = prepared_[handle];
  runPrepared(made.text, made.parameters, call, 3, answer, handle);
}

const Procedures::Prepared& Procedures::preparedAt(const Call& call) const {
  const auto handle = call.number(0);
  const auto found = handle ? prepared_.find(static_cast<std::int32_t>(*handle)) : prepared_.end();
  if (found == prepared_.end()) failHandle(call);
  return found->second;
}

void Procedures::execute(const Call& call, Answer& answer) {
  const Prepared& made = preparedAt(call);
  runPrepared(made.text, made.parameters, call, 1, answer, std::nullopt);
}

void Procedures::unprepare(const Call& call) {
  preparedAt(call);
  prepared_.erase(static_cast<std::int32_t>(*call.number(0)));
}

}  // namespace tds
