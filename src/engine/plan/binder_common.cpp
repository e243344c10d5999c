// Common table expressions. One that is named in FROM stands there as a derived table, as often as it is
// named; a recursive one is SQLite's own, with a level that the server's limit holds down.
#include "engine/plan/binder.h"

namespace engine {
namespace {

// Expressions that name one another many times over multiply.
constexpr int mostUses = 1000, mostDepth = 64;

std::string columnNames(std::size_t count) {
  std::string list;
  for (std::size_t i = 0; i < count; ++i) list += (i ? ",c" : "c") + std::to_string(i);
  return list;
}

}  // namespace

void Binder::enterCommon(const std::vector<CommonTable>& with, std::optional<int> maxRecursion) {
  if (maxRecursion) maxRecursion_ = *maxRecursion;
  if (with.empty()) return;
  commonFrom_ = common_.size();
  for (const CommonTable& table : with) common_.push_back({&table, commonFrom_, {}, {}, {}});
  commonTo_ = common_.size();
}

int Binder::findCommon(const ObjectName& name) const {
  if (commonFrom_ == commonTo_ || !name.database.empty() || !name.owner.empty()) return -1;
  for (std::size_t i = commonTo_; i-- > commonFrom_;)
    if (foldName(common_[i].table->name) == foldName(name.object)) return static_cast<int>(i);
  return -1;
}

Binder::FromPiece Binder::bindCommon(const TableSource& at, std::size_t index, Scope& scope) {
  CommonEntry& entry = common_[index];
  if (!entry.handle.empty()) return bindRecursiveReference(at, entry, scope);
  if (++commonUses_ > mostUses || ++commonDepth_ > mostDepth) throwTooLarge();
  const CommonTable& table = *entry.table;
  const std::size_t from = std::exchange(commonFrom_, entry.first);
  const std::size_t to = std::exchange(commonTo_, index);
  CoreShape shape;
  shape.subquery = true;
  BoundSelect select = table.recursive ? bindRecursive(index) : bindSelect(*table.select, nullptr, shape);
  commonFrom_ = from;
  commonTo_ = to;
  --commonDepth_;
  return addDerived(std::move(select), table.name, at.alias.empty() ? table.name : at.alias, table.columns,
                    scope);
}

BoundSelect Binder::bindRecursive(std::size_t index) {
  const CommonTable& table = *common_[index].table;
  CoreShape shape;
  shape.subquery = true;
  BoundSelect bound = bindSelect(*table.select, nullptr, shape);
  if (!table.columns.empty() && table.columns.size() != bound.columns.size())
    throw columnListError(table.name, bound.columns.size() > table.columns.size());
  for (std::size_t i = 0; i < bound.columns.size(); ++i) {
    ResultColumn column;
    column.name = table.columns.empty() ? bound.columns[i].name : table.columns[i];
    column.type = bound.columns[i].type;
    bound.columns[i] = column;
  }
  const std::string handle = "r" + newHandle(), names = columnNames(bound.columns.size());
  CommonEntry& entry = common_[index];
  entry.handle = handle;
  entry.columns = bound.columns;
  commonTo_ = index + 1;
  std::string sql =
      "WITH RECURSIVE " + handle + "(" + names + ",zl) AS (SELECT " + names + ",0 FROM (" + bound.sql + ")";
  for (std::size_t i = 0; i < table.recursive->cores.size(); ++i)
    sql += " UNION ALL " + recursiveMember(index, i);
  entry.handle.clear();
  bound.sql = sql + ") SELECT " + names + " FROM " + handle;
  bound.limited = bound.apart = bound.singleRow = false;
  return bound;
}

}  // namespace engine
