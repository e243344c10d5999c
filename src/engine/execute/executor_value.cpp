#include <cmath>

#include "engine/execute/executor.h"
#include "engine/execute/logins.h"
#include "engine/execute/server_identity.h"
#include "engine/value.h"

namespace engine {

namespace {

// A sum or product that SQLite carried on in floating point has left the range of its type.
void checkRange(const Datum& value, const Type& type) {
  if (!value.isReal()) return;
  const bool whole =
      isInteger(type.id) || isMoney(type.id) || isDateTime(type.id) || type.id == TypeId::Decimal;
  if (!whole && std::isfinite(value.real())) return;
  throw Error(8115, std::string("Arithmetic overflow error converting expression to data type ") +
                        typeName(type.id) + ".");
}

Datum negated(const Datum& value, const Type& type) {
  return unary(UnaryOp::Minus, value, type);
}

}  // namespace

BindContext Executor::bindContext() {
  BindContext context;
  context.store = &store_;
  context.database = context_.database;
  context.variables = &frame_->plan->variables;
  context.trigger = frame_->trigger;
  context.fixedLiterals = frame_->stored;
  context.structural = &frame_->plan->structural;
  context.views = &views_;
  context.access = &rights_;
  context.chain = frame_->chain;
  if (!context.variables->tables.empty()) context.tableSuffix = tableSuffix();
  return context;
}

void Executor::finishCompile(Compiled& compiled, const Binder& binder) {
  compiled.stamp = store_.catalogStamp();
  compiled.database = context_.database;
  compiled.databases.assign(binder.databases().begin(), binder.databases().end());
}

int Executor::variableSlot(const std::string& name) const {
  const int slot = frame_->plan->variables.find(name);
  if (slot < 0) throw Error(137, "Must declare the scalar variable \"" + name + "\".", 15);
  return slot;
}

void Executor::assign(int slot, const Datum& value, const Type& type) {
  checkRange(value, type);
  const auto i = static_cast<std::size_t>(slot);
  const Type& target = frame_->plan->variables.variables[i].type;
  requireImplicit(type, target);
  if (value.isNull())
    frame_->values[i] = {};
  else if (target == type)
    frame_->values[i] = value;
  else
    frame_->values[i] = convert(value, type, target, 0, false, store_.functions());
}

Datum Executor::systemValue(SystemValue value) {
  switch (value) {
    case SystemValue::RowCount:
      return rowCount_;
    case SystemValue::Error:
      return lastError_;
    case SystemValue::Identity:
      return identity_;
    case SystemValue::ScopeIdentity:
      return nesting_ > 0 || frame_->procedure ? frame_->scopeIdentity : topIdentity_;
    case SystemValue::TranCount:
      // Clients that commit by hand ask whether there is anything to end, and send nothing else when there is
      // not.
      if (implicit_) afterLoss_ = false;
      return userTransactions_ == 0 && nesting_ > 0 ? 1 : userTransactions_;
    case SystemValue::Spid:
      return context_.spid;
    case SystemValue::MaxPrecision:
      return maxPrecision;
    case SystemValue::Version:
      return serverVersion;
    case SystemValue::ServerName:
      return serverName();
    case SystemValue::DatabaseName:
      return store_.database(context_.database).name;
    case SystemValue::DatabaseId:
      return store_.database(context_.database).id;
    case SystemValue::Login:
      return context_.login;
    case SystemValue::UserName:
      return userOf(store_, context_.database, context_.login);
    case SystemValue::Now: {
      std::int64_t& now = store_.functions().statementTime;
      if (now == 0) now = currentTicks();
      return now;
    }
    case SystemValue::NextIdentity:
      identityRun_.last = nextIdentity(store_, identityRun_.database, *identityRun_.table);
      identityRun_.first = identityRun_.last;
      identityRun_.used = true;
      return identityRun_.last;
    case SystemValue::NestLevel:
      return nesting_ + procedureDepth_;
    case SystemValue::ErrorNumber:
    case SystemValue::ErrorSeverity:
    case SystemValue::ErrorState:
    case SystemValue::ErrorLine:
    case SystemValue::ErrorProcedure:
    case SystemValue::ErrorMessage:
    case SystemValue::TransactionState:
      return caughtValue(value);
  }
  return {};
}

Datum Executor::parameterValue(const ParameterSource& source) {
  Datum value;
  Type from = source.from;
  switch (source.kind) {
    case ParameterSource::Kind::Literal: {
      const bool own = source.fixed || source.index < 0;
      const Literal& literal =
          own ? source.value : (*frame_->literals)[static_cast<std::size_t>(source.index)];
      value = literalDatum(literal);
      // Texts of different lengths share a plan where only their conversion matters.
      if (!own && isCharacter(from.id) && !(source.to == source.from)) from = literalType(literal);
      if (source.negate) value = negated(value, from);
      break;
    }
    case ParameterSource::Kind::Variable:
      value = frame_->values[static_cast<std::size_t>(source.index)];
      break;
    case ParameterSource::Kind::System:
      value = systemValue(static_cast<SystemValue>(source.index));
      break;
  }
  if (value.isNull() || (source.to == from && !source.assign)) return value;
  return convert(value, from, source.to, 0, source.assign, store_.functions());
}

// A text of the batch that its column takes just as it stands; null for any other parameter.
const std::string* Executor::plainText(const ParameterSource& source) const {
  if (source.kind != ParameterSource::Kind::Literal || source.fixed || source.index < 0 || !source.assign)
    return nullptr;
  const Literal& literal = (*frame_->literals)[static_cast<std::size_t>(source.index)];
  const TypeId to = source.to.id;
  const bool sized = to == TypeId::Char || to == TypeId::VarChar;
  if (literal.kind != LiteralKind::Text || (!sized && to != TypeId::Text)) return nullptr;
  const std::string& text = literal.text;
  const bool fits = !sized || text.size() <= source.to.length;
  const bool plain =
      !text.empty() && fits && text.back() != ' ' && (isAscii(text) || (!sized && fitCp1254(text) == text));
  return plain ? &text : nullptr;
}

void Executor::bindParameters(Prepared& prepared) {
  const auto& sources = prepared.parameters();
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (sources[i].kind == ParameterSource::Kind::Literal && sources[i].fixed && prepared.fixedBound)
      continue;
    if (const std::string* text = plainText(sources[i])) {
      prepared.bindShared(static_cast<int>(i) + 1, *text);
      continue;
    }
    prepared.bindDatum(static_cast<int>(i) + 1, parameterValue(sources[i]));
  }
  prepared.fixedBound = true;
}

CompiledValue& Executor::compiledValue(const Expr& expr, bool condition) {
  return compiled<CompiledValue>(&expr, [&] {
    auto made = std::make_unique<CompiledValue>();
    Binder binder(bindContext());
    const BoundExpr bound = condition ? binder.bindCondition(expr, nullptr) : binder.bindValue(expr, nullptr);
    made->type = bound.type;
    BoundStatement statement = binder.finish("SELECT " + bound.sql);
    if (bound.parameter >= 0)
      made->direct = statement.parameters.at(0);
    else
      made->query = Prepared(store_.handle(), std::move(statement));
    finishCompile(*made, binder);
    return made;
  });
}

Datum Executor::evaluate(const Expr& expr, Type& type) {
  CompiledValue& value = compiledValue(expr, false);
  type = value.type;
  if (value.direct) return parameterValue(*value.direct);
  bindParameters(value.query);
  PreparedUse use(value.query);
  if (!value.query.step()) return {};
  return columnDatum(value.query.get(), 0);
}

bool Executor::evaluateCondition(const Expr& expr) {
  CompiledValue& value = compiledValue(expr, true);
  bindParameters(value.query);
  PreparedUse use(value.query);
  return value.query.step() && sqlite3_column_int(value.query.get(), 0) != 0;
}

}  // namespace engine
