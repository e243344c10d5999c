// Writing through a view of one table: its columns stand for those of the table, its condition limits the
// rows, and WITH CHECK OPTION holds for what is written.
#include <algorithm>

#include "engine/catalog.h"
#include "engine/language.h"
#include "engine/plan/binder.h"

namespace engine {
namespace {

constexpr int maxViewDepth = 32;

bool aggregates(const SelectCore& core) {
  return core.distinct || !core.groupBy.empty() || core.having ||
         std::any_of(core.items.begin(), core.items.end(),
                     [](const SelectItem& item) { return containsAggregate(*item.expr); });
}

// Why nobody writes through this query; with nothing to say it is one over one table or view.
void requireOneTable(const SelectStatement& select, const std::string& view) {
  if (select.cores.size() > 1)
    throw Error(4426,
                "View '" + view + "' is not updatable because the definition contains a UNION operator.");
  const SelectCore& core = select.cores.front();
  if (aggregates(core))
    throw Error(4403,
                "Cannot update the view or function '" + view +
                    "' because it contains aggregates, or a DISTINCT or GROUP BY clause, or PIVOT or UNPIVOT "
                    "operator.");
  if (core.from.size() != 1 || core.from.front()->kind == TableSource::Kind::Join)
    throw Error(4405, "View or function '" + view +
                          "' is not updatable because the modification affects multiple base tables.");
  const auto refuse = [](const std::string& what) {
    throw Error(50000, "Writing through a view " + what + " is not supported by the embedded server.");
  };
  if (!select.with.empty()) refuse("with a common table expression");
  if (std::any_of(core.items.begin(), core.items.end(),
                  [](const SelectItem& item) { return item.expr->kind == Expr::Kind::Window; }))
    refuse("with OVER");
  if (core.top) refuse("with TOP");
  if (core.from.front()->kind == TableSource::Kind::Derived) refuse("of a query in FROM");
}

// The columns of the inner source that a list item stands for; nothing for an expression.
std::vector<const SourceColumn*> itemColumns(const SelectItem& item, const Source& inner, std::size_t width,
                                             const ViewInfo& view, std::size_t first, bool named) {
  std::vector<const SourceColumn*> found;
  const auto byKey = [&](const std::string& key) -> const SourceColumn* {
    for (const SourceColumn& column : inner.columns)
      if (column.key == key) return &column;
    return nullptr;
  };
  if (item.expr->kind == Expr::Kind::Column) {
    found.push_back(byKey(foldName(item.expr->name)));
  } else if (item.expr->kind == Expr::Kind::Star) {
    // The columns that the view was made with, whatever * would give now.
    for (std::size_t i = 0; i < width; ++i)
      found.push_back(named ? (i < inner.columns.size() ? &inner.columns[i] : nullptr)
                            : byKey(foldName(view.columns[first + i].name)));
  } else {
    found.push_back(nullptr);
  }
  return found;
}

}  // namespace

// What stands under `name`: a table with its columns, or a view over such.
void Binder::bindUpdatable(const ObjectName& name, const std::string& database, Source& source) {
  catalogs_.push_back(context_.store->catalog(database));
  const auto catalog = catalogs_.back();
  if (const TableInfo* table = catalog->table(storedName(name))) {
    source.table = table;
    source.tableDatabase = database;
    addTableColumns(*table, catalog->name, source);
    return;
  }
  const ViewInfo* view = catalog->view(name.object);
  if (!view) throw Error(208, "Invalid object name '" + name.object + "'.");
  if (++viewDepth_ > maxViewDepth)
    throw Error(4429, "View '" + view->name + "' refers to itself or nests more than 32 levels deep.");
  bindViewTarget(*view, database, source);
  --viewDepth_;
}

void Binder::bindViewTarget(const ViewInfo& view, const std::string& database, Source& source) {
  const std::shared_ptr<const Batch> batch = viewBatch(view);
  const auto& statement = std::get<CreateViewStatement>(batch->statements.at(0)->node);
  requireOneTable(*statement.select, view.name);
  const SelectCore& core = statement.select->cores.front();
  const TableSource& from = *core.from.front();

  const BindContext outside = context_;
  context_.database = context_.chain = database;
  context_.variables = nullptr;
  context_.trigger = nullptr;
  context_.fixedLiterals = true;
  Scope scope;
  Source inner;
  inner.handle = source.handle;
  inner.aliased = !from.alias.empty();
  inner.alias = foldName(inner.aliased ? from.alias : from.name.object);
  inner.shown = inner.title = from.name.object;
  const std::string innerDatabase = resolveDatabase(from.name);
  inner.database = foldName(innerDatabase);
  bindUpdatable(from.name, innerDatabase, inner);
  scope.sources.push_back(inner);

  std::string filter = inner.rowFilter;
  if (core.where) {
    const std::string own = bindCondition(*core.where, &scope).sql;
    filter = filter.empty() ? own : "(" + filter + ") AND (" + own + ")";
  }
  const std::size_t width = view.columns.size() - std::min(view.columns.size(), core.items.size() - 1);
  for (const SelectItem& item : core.items) {
    const auto found =
        itemColumns(item, inner, width, view, source.columns.size(), !statement.columns.empty());
    for (const SourceColumn* under : found) {
      if (source.columns.size() >= view.columns.size()) break;
      const ViewColumn& shown = view.columns[source.columns.size()];
      SourceColumn column;
      if (under) {
        column = *under;
      } else if (item.expr->kind == Expr::Kind::Star) {
        throw Error(4502, "View '" + view.name + "' has other columns than its tables give now.");
      } else {
        const BoundExpr value = bindValue(*item.expr, &scope);
        column.sql = value.sql;
        column.info.type = value.type;
        column.info.nullable = value.nullable;
      }
      column.key = foldName(shown.name);
      column.info.name = shown.name;
      source.columns.push_back(std::move(column));
    }
  }
  context_ = outside;
  source.view = view.name;
  source.viewDatabase = database;
  source.table = inner.table;
  source.tableDatabase = inner.tableDatabase;
  source.rowFilter = filter;
  source.checked = statement.checkOption ? filter : inner.checked;
}

std::shared_ptr<const Batch> Binder::viewBatch(const ViewInfo& view) const {
  std::shared_ptr<const Batch> batch;
  if (context_.views) batch = (*context_.views)[view.text];
  if (!batch) batch = std::make_shared<const Batch>(parseBatch(view.text));
  if (context_.views) (*context_.views)[view.text] = batch;
  return batch;
}

int Source::ordinalOf(const std::string& column) const {
  const std::string key = foldName(column);
  for (const SourceColumn& each : columns) {
    if (each.key != key) continue;
    if (each.ordinal < 0)
      throw Error(4406, "Update or insert of view or function '" + view +
                            "' failed because it contains a derived or constant field.");
    return each.ordinal;
  }
  return -1;
}

void Binder::needTarget(const Source& source, Action action) const {
  if (source.view.empty()) return need(source.tableDatabase, source.table->name, action);
  need(source.viewDatabase, source.view, action);
  if (foldName(source.tableDatabase) != foldName(source.viewDatabase))
    need(source.tableDatabase, source.table->name, action);
}

}  // namespace engine
