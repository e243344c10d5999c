#include "engine/plan/plan_cache.h"

#include "engine/value.h"

namespace engine {

bool Plan::fits(const std::vector<Literal>& now) const {
  for (const int ordinal : structural) {
    const auto i = static_cast<std::size_t>(ordinal);
    if (i >= now.size() || i >= literals.size() || now[i].text != literals[i].text ||
        now[i].text.size() > longLiteral)
      return false;
  }
  return true;
}

namespace {

void requireNew(const std::string& name, const VariableTable& table) {
  if (table.find(name) < 0 && !table.hasTable(name)) return;
  throw Error(134,
              "The variable name '" + name +
                  "' has already been declared. Variable names must be unique within a query "
                  "batch or stored procedure.",
              15);
}

void add(const std::string& name, const Type& type, VariableTable& table) {
  requireNew(name, table);
  table.variables.push_back({foldName(name), type});
}

void collect(const Statement& statement, VariableTable& table) {
  if (const auto* declare = std::get_if<DeclareStatement>(&statement.node)) {
    for (const VariableDeclaration& variable : declare->variables) add(variable.name, variable.type, table);
    for (const CreateTableStatement& variable : declare->tables) {
      requireNew(variable.name.object, table);
      table.tables.push_back(&variable);
    }
  } else if (const auto* block = std::get_if<BlockStatement>(&statement.node)) {
    for (const StatementPtr& inner : block->body) collect(*inner, table);
  } else if (const auto* branch = std::get_if<IfStatement>(&statement.node)) {
    collect(*branch->then, table);
    if (branch->otherwise) collect(*branch->otherwise, table);
  } else if (const auto* loop = std::get_if<WhileStatement>(&statement.node)) {
    collect(*loop->body, table);
  } else if (const auto* attempt = std::get_if<TryStatement>(&statement.node)) {
    for (const StatementPtr& inner : attempt->body) collect(*inner, table);
    for (const StatementPtr& inner : attempt->handler) collect(*inner, table);
  }
}

}  // namespace

VariableTable collectVariables(const std::vector<StatementPtr>& statements) {
  VariableTable table;
  for (const StatementPtr& statement : statements) collect(*statement, table);
  return table;
}

VariableTable procedureVariables(const CreateProcedureStatement& procedure) {
  VariableTable table;
  for (const ProcedureParameter& parameter : procedure.parameters) add(parameter.name, parameter.type, table);
  for (const StatementPtr& statement : procedure.body) collect(*statement, table);
  return table;
}

std::shared_ptr<Plan> PlanCache::find(const std::string& key, const std::vector<Literal>& literals) {
  const auto [begin, end] = byKey_.equal_range(key);
  for (auto at = begin; at != end; ++at) {
    if (!at->second->plan->fits(literals)) continue;
    entries_.splice(entries_.begin(), entries_, at->second);
    ++statistics_.hits;
    return at->second->plan;
  }
  ++statistics_.misses;
  return nullptr;
}

void PlanCache::add(const std::string& key, std::shared_ptr<Plan> plan) {
  entries_.push_front({key, std::move(plan)});
  byKey_.emplace(key, entries_.begin());
  if (entries_.size() <= capacity) return;
  const auto oldest = std::prev(entries_.end());
  const auto [begin, end] = byKey_.equal_range(oldest->key);
  for (auto at = begin; at != end; ++at)
    if (at->second == oldest) {
      byKey_.erase(at);
      break;
    }
  entries_.pop_back();
}

void PlanCache::clear() {
  byKey_.clear();
  entries_.clear();
}

}  // namespace engine
