// SET IMPLICIT_TRANSACTIONS ON, which clients set for COMMIT and ROLLBACK by hand: a statement outside of a
// transaction begins one.
#include <algorithm>

#include "engine/execute/executor.h"

namespace engine {
namespace {

bool keepsLock(const TableSource& source) {
  switch (source.kind) {
    case TableSource::Kind::Table:
      return source.keepsLock;
    case TableSource::Kind::Derived:
      return false;
    case TableSource::Kind::Join:
      return keepsLock(*source.left) || keepsLock(*source.right);
  }
  return false;
}

bool keepsLock(const SelectCore& core) {
  return std::any_of(core.from.begin(), core.from.end(),
                     [](const auto& source) { return keepsLock(*source); });
}

enum class Need : std::uint8_t { Nothing, Reading, Writing };

Need needOf(const SelectStatement& select, bool repeatable) {
  Need need = Need::Nothing;
  for (const SelectCore& core : select.cores) {
    if (core.into || keepsLock(core)) return Need::Writing;
    if (!core.from.empty()) need = repeatable ? Need::Writing : Need::Reading;
  }
  return need;
}

// What the statement takes a transaction for.
Need needOf(const Statement& statement, bool repeatable, bool open) {
  const auto& node = statement.node;
  if (const auto* select = std::get_if<SelectPtr>(&node)) return needOf(**select, repeatable);
  if (const auto* transaction = std::get_if<TransactionStatement>(&node)) {
    if (transaction->action == TransactionAction::Save && open) return Need::Writing;
    return transaction->action == TransactionAction::Begin ? Need::Reading : Need::Nothing;
  }
  const bool none =
      std::holds_alternative<DeclareStatement>(node) || std::holds_alternative<SetVariableStatement>(node) ||
      std::holds_alternative<SetOptionStatement>(node) || std::holds_alternative<PrintStatement>(node) ||
      std::holds_alternative<RaiserrorStatement>(node) || std::holds_alternative<ThrowStatement>(node) ||
      std::holds_alternative<UseStatement>(node);
  return none ? Need::Nothing : Need::Writing;
}

}  // namespace

// Begun by a reader, the transaction is counted and holds nothing: READ COMMITTED keeps no lock behind a
// SELECT, and the one lock of this server would hold up everybody who writes. The first change takes it.
void Executor::beginImplicitly(const Statement& statement) {
  if (levels_ > 0 || nesting_ > 0 || (!implicit_ && userTransactions_ == 0)) return;
  if (doomed_ || afterLoss_) return;  // the client has to end what is lost first
  const Need need = needOf(statement, repeatable_, userTransactions_ > 0);
  if (need == Need::Nothing) return;
  if (userTransactions_ == 0) {
    userTransactions_ = 1;
    transactionName_.clear();
  }
  if (need == Need::Writing) beginTransaction();
}

}  // namespace engine
