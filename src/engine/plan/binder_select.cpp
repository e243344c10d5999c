#include <algorithm>

#include "engine/plan/binder.h"
#include "engine/value.h"

namespace engine {

struct Binder::BoundCore {
  Scope scope;
  std::vector<BoundExpr> items;
  std::vector<const Expr*> written;  // the items as they stand in the text; null for those of *
  std::vector<std::string> names;
  std::vector<std::string> variables;
  std::string from, where, groupBy, having, limit;
  std::string groupColumns;  // of scope.gathered
  const Expr* top = nullptr;
  bool topPercent = false;
  bool distinct = false;
  bool sorted = false;      // `from` gives the rows in their final order
  bool aggregated = false;  // aggregates without GROUP BY: one row
  std::string level;        // of the recursive part of a common table expression
};

namespace {

bool containsColumn(const Expr& expr) {
  if (expr.kind == Expr::Kind::Column || expr.select) return true;
  const auto inside = [](const ExprPtr& e) { return e && containsColumn(*e); };
  if (inside(expr.left) || inside(expr.right)) return true;
  if (std::any_of(expr.args.begin(), expr.args.end(), inside)) return true;
  return std::any_of(expr.whens.begin(), expr.whens.end(),
                     [&](const WhenClause& w) { return inside(w.when) || inside(w.then); });
}

bool isStarOf(const Source& source, const Expr& star) {
  return star.table.empty() || source.alias == foldName(star.table);
}

int starWidth(const Scope& scope, const Expr& star) {
  int width = 0;
  for (const Source& source : scope.sources)
    if (isStarOf(source, star)) width += static_cast<int>(source.columns.size());
  return width;
}

constexpr const char* setWords[] = {" UNION ", " UNION ALL ", " EXCEPT ", " INTERSECT "};  // by SetOp
// SQLite takes at most 500 arms in one UNION, and walks through them by recursion.
constexpr std::size_t armsTogether = 400, mostArms = 10000;

// A query as the first arm of another one. OFFSET keeps SQLite from making one UNION of both again.
std::string enclosed(const std::string& sql, const std::vector<Type>& types) {
  std::string list;
  for (std::size_t i = 0; i < types.size(); ++i) {
    const std::string name = "c" + std::to_string(i);
    list += (i ? ", " : "") + name;
    if (isCharacter(types[i].id)) list += std::string(" COLLATE ") + sqliteCollation;
    list += " AS " + name;
  }
  return "SELECT " + list + " FROM (" + sql + " LIMIT -1 OFFSET 0)";
}

}  // namespace

std::string withCollation(const BoundExpr& expr) {
  if (!isCharacter(expr.type.id) || expr.column) return expr.sql;
  return expr.sql + " COLLATE " + sqliteCollation;
}

Error notSortable() {
  return Error(
      306,
      "The text, ntext, and image data types cannot be compared or sorted, except when using IS NULL or "
      "LIKE operator.");
}

void keepApart(BoundSelect& select) {
  if (select.apart) return;
  if (select.sql.back() == unionEnd) select.sql.pop_back();
  select.sql += select.limited ? " OFFSET 0" : " LIMIT -1 OFFSET 0";
  select.apart = true;
}

BoundSelect Binder::bindQuery(const SelectStatement& select) {
  return bindSelect(select, nullptr, {});
}

BoundSelect Binder::bindViewQuery(const SelectStatement& select, bool throughViews) {
  throughViews_ = throughViews;
  viewQuery_ = true;
  CoreShape shape;
  shape.subquery = true;
  context_.variables = nullptr;
  context_.fixedLiterals = true;
  return bindSelect(select, nullptr, shape);
}

// Where the rows decide over nothing but themselves (no DISTINCT, no UNION), each expression is
// converted at its place, so that constants are converted once and ahead.
BoundSelect Binder::bindSource(const SelectStatement& select, const std::vector<const ColumnInfo*>& targets,
                               bool named) {
  CoreShape shape;
  shape.named = named;
  const bool direct = select.cores.size() == 1 && !select.cores[0].distinct && select.orderBy.empty();
  if (direct) shape.targets = &targets;
  BoundSelect bound = bindSelect(select, nullptr, shape);
  if (direct) return bound;
  const std::string handle = newHandle();
  std::string sql;
  for (std::size_t i = 0; i < bound.columns.size() && i < targets.size(); ++i) {
    BoundExpr column;
    column.sql = handle + ".c" + std::to_string(i);
    column.type = bound.columns[i].type;
    sql += (i ? ", " : "SELECT ") + assignTo(column, *targets[i]).sql;
  }
  // Merged, the rows of an identity column would be numbered before they are sorted.
  if (!select.orderBy.empty()) keepApart(bound);
  bound.sql = sql + " FROM (" + bound.sql + ") AS " + handle;
  return bound;
}

void Binder::bindCore(const SelectStatement& select, std::size_t index, Scope* parent, const CoreShape& shape,
                      BoundCore& out) {
  const SelectCore& core = select.cores[index];
  out.scope.parent = parent;
  out.scope.core = &core;
  out.distinct = core.distinct;
  out.top = core.top.get();
  out.topPercent = core.topPercent;
  if (!core.from.empty()) out.from = " FROM " + bindFrom(core.from, out.scope);
  if (core.where) out.where = " WHERE " + bindCondition(*core.where, &out.scope).sql;
  for (const ExprPtr& group : core.groupBy) {
    if (!containsColumn(*group))
      throw Error(
          164, "Each GROUP BY expression must contain at least one column that is not an outer reference.");
    BoundExpr bound = bindValue(*group, &out.scope);
    if (isLongText(bound.type.id)) throw notSortable();
    out.groupBy += (out.groupBy.empty() ? " GROUP BY " : ", ") + withCollation(bound);
    out.scope.groups.emplace_back(group.get(), std::move(bound));
  }
  out.scope.hasGroupBy = !core.groupBy.empty();
  const bool counted = std::any_of(core.items.begin(), core.items.end(), [&](const SelectItem& item) {
    return aggregatesItself(*item.expr, out.scope);
  });
  out.scope.grouped = out.scope.hasGroupBy || core.having || counted;
  out.aggregated = out.scope.grouped && !out.scope.hasGroupBy;
  for (const auto& [written, bound] : out.scope.groups) out.scope.groupSqls.push_back(bound.sql);
  if (out.scope.grouped && subqueriesAskAggregates(select, core)) gather(out);
  out.scope.aggregatesAllowed = true;
  if (stepwise_ && !parent && !shape.subquery && !out.scope.grouped && !select.orderBy.empty())
    sortBeforeAssigning(select, out);
  bindItems(core, shape, out);
  // SQLite takes a HAVING without GROUP BY only beside an aggregate.
  if (out.aggregated && !counted && out.scope.gathered.empty())
    out.items[0].sql = "iif(count(*)>=0," + out.items[0].sql + ",NULL)";
  if (core.having) {
    out.scope.clause = Scope::Clause::Having;
    out.having = bindCondition(*core.having, &out.scope).sql;
  }
}

// From here on the list names groups and aggregates as columns of a query of their own.
void Binder::gather(BoundCore& out) {
  out.scope.gathered = newHandle();
  for (std::size_t i = 0; i < out.scope.groups.size(); ++i) {
    BoundExpr& group = out.scope.groups[i].second;
    out.groupColumns += (i ? ", " : "") + withCollation(group) + " AS g" + std::to_string(i);
    group.sql = out.scope.gathered + ".g" + std::to_string(i);
  }
}

// FROM and what follows it, of a core whose groups stand in a query of their own.
std::string Binder::gatheredSql(const BoundCore& core) {
  std::string list = core.groupColumns;
  // SQLite makes one group of all rows only where it counts something.
  const std::vector<std::string> one = {"count(*)"};
  const auto& aggregates = core.scope.aggregates.empty() ? one : core.scope.aggregates;
  for (std::size_t i = 0; i < aggregates.size(); ++i)
    list += (list.empty() ? "" : ", ") + aggregates[i] + " AS a" + std::to_string(i);
  return " FROM (SELECT " + list + core.from + core.where + core.groupBy + ") AS " + core.scope.gathered +
         (core.having.empty() ? "" : " WHERE " + core.having);
}

// SQLite computes a select list before it sorts. Where the list assigns variables that it reads, the rows
// are therefore sorted in a subquery of their own; OFFSET keeps SQLite from merging the two.
void Binder::sortBeforeAssigning(const SelectStatement& select, BoundCore& out) {
  std::string order;
  for (const OrderItem& item : select.orderBy)
    order += (order.empty() ? " ORDER BY " : ", ") + withCollation(bindValue(*item.expr, &out.scope)) +
             (item.descending ? " DESC" : "");
  const std::string handle = newHandle();
  std::string columns;
  int count = 0;
  for (Source& source : out.scope.sources)
    for (SourceColumn& column : source.columns) {
      const std::string name = "k" + std::to_string(count++);
      if (!columns.empty()) columns += ", ";
      columns.append(column.sql).append(" AS ").append(name);
      column.sql = handle;
      column.sql.append(".").append(name);
    }
  if (columns.empty()) return;
  const std::string limit = out.top ? topLimit(*out.top, out.topPercent, "SELECT 1" + out.from + out.where)
                                    : std::string(" LIMIT -1");
  out.from = " FROM (SELECT " + columns + out.from + out.where + order + limit + " OFFSET 0) AS " + handle;
  out.where.clear();
  out.top = nullptr;
  out.sorted = true;
}

void Binder::bindItems(const SelectCore& core, const CoreShape& shape, BoundCore& out) {
  int width = 0;
  for (const SelectItem& item : core.items)
    width += item.expr->kind == Expr::Kind::Star ? starWidth(out.scope, *item.expr) : 1;
  const int surplus = shape.columnCount < 0 ? 0 : std::max(0, width - shape.columnCount);
  for (const SelectItem& item : core.items) {
    if (item.expr->kind == Expr::Kind::Star) {
      expandStar(*item.expr, shape, surplus, out);
      continue;
    }
    out.items.push_back(bindValue(*item.expr, &out.scope));
    out.written.resize(out.items.size());
    out.written.back() = item.expr.get();
    const BoundExpr& bound = out.items.back();
    out.names.push_back(!item.alias.empty() ? item.alias : bound.column ? item.expr->name : std::string());
    if (!item.variable.empty()) out.variables.push_back(item.variable);
  }
  for (const BoundExpr& item : out.items)
    if (core.distinct && isLongText(item.type.id))
      throw Error(421, std::string("The ") + typeName(item.type.id) +
                           " data type cannot be selected as DISTINCT because it is not comparable.");
  if (!out.variables.empty() && out.variables.size() != out.items.size())
    throw Error(141,
                "A SELECT statement that assigns a value to a variable must not be combined with "
                "data-retrieval operations.",
                15);
}

// Inside a view `*` gives what it gave at creation: by name where the view took the names of its
// tables, else as many columns as the view has.
void Binder::expandStar(const Expr& star, const CoreShape& shape, int surplus, BoundCore& out) {
  bool found = false;
  int left = starWidth(out.scope, star) - surplus;
  for (const Source& source : out.scope.sources) {
    if (!isStarOf(source, star)) continue;
    found = true;
    for (const SourceColumn& column : source.columns) {
      if (shape.starNames) {
        const std::size_t position = out.items.size();
        if (position >= shape.starNames->size() || foldName((*shape.starNames)[position]) != column.key)
          continue;
      } else if (left-- <= 0) {
        continue;
      }
      Expr name;
      name.kind = Expr::Kind::Column;
      name.name = column.info.name;
      BoundExpr bound;
      bound.sql = column.sql;
      bound.type = column.info.type;
      bound.nullable = column.info.nullable;
      bound.column = true;
      bound.origin = column.info;
      const auto group = std::find(out.scope.groupSqls.begin(), out.scope.groupSqls.end(), bound.sql);
      if (out.scope.grouped && group == out.scope.groupSqls.end())
        throw ungroupedColumn(out.scope, source, column);
      if (out.scope.grouped)
        bound.sql =
            out.scope.groups[static_cast<std::size_t>(group - out.scope.groupSqls.begin())].second.sql;
      out.items.push_back(std::move(bound));
      out.names.push_back(column.info.name);
    }
  }
  if (found) return;
  if (star.table.empty()) throw Error(263, "Must specify table to select from.");
  throw Error(107, "The column prefix '" + star.table +
                       "' does not match with a table name or alias name used in the query.");
}

std::string Binder::topLimit(const Expr& top, bool percent, const std::string& countSql) {
  const BoundExpr count = bindValue(top, nullptr);
  if (!percent) return " LIMIT z_top(" + convert(count, {TypeId::BigInt}).sql + ")";
  return " LIMIT (SELECT z_percent(count(*), " + convert(count, {TypeId::Float}).sql + ") FROM (" + countSql +
         "))";
}

// One term: a position, an output name, or an expression over the tables.
std::string Binder::orderTerm(const OrderItem& item, BoundCore& core, bool outputOnly) {
  const Expr& expr = *item.expr;
  const auto position = [](std::size_t index) { return std::to_string(index + 1); };
  if (expr.kind == Expr::Kind::Literal && expr.literal.kind == LiteralKind::Integer) {
    const long number = std::strtol(expr.literal.text.c_str(), nullptr, 10);
    if (number >= 1 && number <= static_cast<long>(core.items.size()) &&
        isLongText(core.items[static_cast<std::size_t>(number - 1)].type.id))
      throw notSortable();
    if (number < 1 || number > static_cast<long>(core.items.size()))
      throw Error(108, "The ORDER BY position number " + expr.literal.text +
                           " is out of range of the number of items in the select list.");
    return position(static_cast<std::size_t>(number - 1));
  }
  if (expr.kind == Expr::Kind::Column && expr.table.empty())
    for (std::size_t i = 0; i < core.names.size(); ++i)
      if (foldName(core.names[i]) == foldName(expr.name)) {
        if (isLongText(core.items[i].type.id)) throw notSortable();
        return position(i);
      }
  if (outputOnly && core.scope.sources.empty() && expr.kind == Expr::Kind::Column)
    throw Error(207, "Invalid column name '" + expr.name + "'.");
  // Literals of a DISTINCT list and of ORDER BY belong to the statement's shape, so that they may be
  // compared.
  for (std::size_t i = 0; core.distinct && i < core.written.size(); ++i)
    if (core.written[i] && expr.kind != Expr::Kind::Column && sameExpr(*core.written[i], expr))
      return position(i);
  core.scope.clause = Scope::Clause::OrderBy;
  const BoundExpr bound = bindValue(expr, &core.scope);
  if (isLongText(bound.type.id)) throw notSortable();
  for (std::size_t i = 0; i < core.items.size(); ++i)
    if (core.items[i].sql == bound.sql) return position(i);
  if (outputOnly)
    throw core.distinct
        ? Error(145, "ORDER BY items must appear in the select list if SELECT DISTINCT is specified.", 15)
        : Error(104,
                "ORDER BY items must appear in the select list if the statement contains a UNION, INTERSECT "
                "or EXCEPT operator.",
                15);
  return withCollation(bound);
}

std::string Binder::orderBy(const SelectStatement& select, BoundCore& core, bool outputOnly) {
  std::string sql;
  if (core.sorted) return sql;
  for (const OrderItem& item : select.orderBy) {
    sql += sql.empty() ? " ORDER BY " : ", ";
    sql += orderTerm(item, core, outputOnly) + (item.descending ? " DESC" : "");
  }
  return sql;
}

std::string Binder::coreSql(const BoundCore& core, const std::vector<Type>& types, const CoreShape& shape) {
  std::string sql = core.distinct ? "SELECT DISTINCT " : "SELECT ";
  for (std::size_t i = 0; i < core.items.size(); ++i) {
    std::string item;
    if (stepwise_ && !core.variables.empty())
      item = "z_set(" + std::to_string(stepwiseSlots_.at(i)) + "," + std::to_string(packType(types[i])) +
             "," + convert(core.items[i], types[i]).sql + ")";
    else if (shape.targets)
      item = assignTo(core.items[i], *(*shape.targets)[i]).sql;
    else
      item = withCollation(convert(core.items[i], types[i]));
    sql += (i ? ", " : "") + item + " AS c" + std::to_string(i);
  }
  if (!core.level.empty()) sql += ", " + core.level;
  if (!core.scope.gathered.empty()) return sql + gatheredSql(core);
  return sql + core.from + core.where + core.groupBy + (core.having.empty() ? "" : " HAVING " + core.having);
}

// The columns that come out: types common to all cores, names of the first.
std::vector<Type> Binder::outputColumns(const std::vector<BoundCore>& cores, const std::vector<SetOp>& ops,
                                        BoundSelect& bound) {
  const BoundCore& first = cores[0];
  std::vector<Type> types;
  for (std::size_t i = 0; i < first.items.size(); ++i) {
    Type type;
    bool nullable = false;
    for (const BoundCore& core : cores) {
      type = commonType(type, core.items[i].type);
      // What EXCEPT and INTERSECT leave comes from their left side.
      const std::size_t at = static_cast<std::size_t>(&core - cores.data());
      const bool adds = at == 0 || ops[at - 1] == SetOp::Union || ops[at - 1] == SetOp::UnionAll;
      nullable = nullable || (adds && core.items[i].nullable);
    }
    types.push_back(type.id == TypeId::Null ? Type{TypeId::Int} : type);
    ResultColumn column;
    const BoundExpr& item = first.items[i];
    if (cores.size() == 1 && item.column && !item.outer) column = item.origin;
    column.name = first.names[i];
    column.type = types.back();
    column.nullable = nullable;
    bound.columns.push_back(std::move(column));
  }
  return types;
}

std::vector<Binder::BoundCore> Binder::bindCores(const SelectStatement& select, Scope* parent,
                                                 const CoreShape& shape) {
  if (select.cores.size() > mostArms) throwTooLarge();
  std::vector<BoundCore> cores(select.cores.size());
  CoreShape coreShape = shape;
  for (std::size_t i = 0; i < cores.size(); ++i) {
    bindCore(select, i, parent, coreShape, cores[i]);
    if (cores[i].items.size() != cores[0].items.size())
      throw Error(
          205,
          "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal number "
          "of expressions in their target lists.");
    coreShape.starNames = nullptr;
  }
  if (shape.subquery && !select.orderBy.empty() && !cores[0].top)
    throw Error(1033,
                "The ORDER BY clause is invalid in views, inline functions, derived tables, subqueries, and "
                "common table expressions, unless TOP or FOR XML is also specified.");
  if (shape.targets && shape.targets->size() != cores[0].items.size()) {
    if (!shape.named)
      throw Error(213, "Column name or number of supplied values does not match table definition.");
    const bool fewer = cores[0].items.size() < shape.targets->size();
    throw Error(fewer ? 120 : 121, std::string("The select list for the INSERT statement contains ") +
                                       (fewer ? "fewer" : "more") +
                                       " items than the insert list. The number of SELECT values must match "
                                       "the number of INSERT columns.");
  }
  return cores;
}

// One SELECT of the recursive part: its columns have exactly the types of the anchor's.
std::string Binder::recursiveMember(std::size_t index, std::size_t member) {
  const SelectStatement& select = *common_[index].table->recursive;
  const std::string& name = common_[index].table->name;
  CoreShape shape;
  shape.subquery = true;
  BoundCore core;
  bindCore(select, member, nullptr, shape, core);
  const CommonEntry& entry = common_[index];
  if (core.items.size() != entry.columns.size())
    throw Error(205,
                "All queries combined using a UNION, INTERSECT or EXCEPT operator must have an equal number "
                "of expressions in their target lists.");
  if (core.scope.grouped)
    throw Error(
        467,
        "GROUP BY, HAVING, or aggregate functions are not allowed in the recursive part of a recursive "
        "common table expression '" +
            name + "'.");
  std::vector<Type> types;
  for (std::size_t i = 0; i < core.items.size(); ++i) {
    types.push_back(entry.columns[i].type);
    if (core.items[i].type != types.back() && core.items[i].type.id != TypeId::Null)
      throw Error(240, "Types don't match between the anchor and the recursive part in column \"" +
                           entry.columns[i].name + "\" of recursive query \"" + name + "\".");
  }
  core.level = "z_level(" + entry.level + "," + std::to_string(maxRecursion_) + ")";
  return coreSql(core, types, shape);
}

// Whether the list names a column of a query around.
bool Binder::namesOuterColumn(const BoundCore& core) {
  return std::any_of(core.items.begin(), core.items.end(),
                     [](const BoundExpr& item) { return item.column && item.outer; });
}

BoundSelect Binder::bindSelect(const SelectStatement& select, Scope* parent, const CoreShape& shape) {
  if (!select.with.empty() || select.maxRecursion) enterCommon(select.with, select.maxRecursion);
  std::vector<BoundCore> cores = bindCores(select, parent, shape);
  BoundCore& first = cores[0];
  const bool single = cores.size() == 1;
  BoundSelect bound;
  const std::vector<Type> types = outputColumns(cores, select.setOps, bound);
  const bool distinct =
      std::any_of(select.setOps.begin(), select.setOps.end(), [](SetOp op) { return op != SetOp::UnionAll; });
  for (const Type& type : types)
    if (distinct && isLongText(type.id))
      throw Error(5335,
                  std::string("The data type ") + typeName(type.id) +
                      " cannot be used as an operand to the UNION, INTERSECT or EXCEPT operators because it "
                      "is not comparable.");
  const std::string order = orderBy(select, first, !single || first.distinct);
  for (std::size_t i = 0; i < cores.size(); ++i) {
    const std::string sql = coreSql(cores[i], types, shape);
    if (i > 0 && i % armsTogether == 0) bound.sql = enclosed(bound.sql, types);
    if (i > 0) bound.sql += setWords[static_cast<std::size_t>(select.setOps[i - 1])];
    if (!cores[i].top) {
      bound.sql += sql;
    } else if (single) {
      bound.sql = sql + order + topLimit(*cores[i].top, cores[i].topPercent, sql);
    } else {
      bound.sql += "SELECT * FROM (" + sql + topLimit(*cores[i].top, cores[i].topPercent, sql) + ")";
    }
  }
  if (!single || !first.top) bound.sql += order;
  bound.variables = first.variables;
  bound.singleRow = single && (first.aggregated || first.from.empty());
  bound.limited = single && first.top;
  if (!single) bound.sql += unionEnd;
  bound.outerColumn = std::any_of(cores.begin(), cores.end(), namesOuterColumn);
  for (const SelectCore& core : select.cores)
    if (core.into) bound.into = &core;
  return bound;
}

}  // namespace engine
