// A catalog, or one object of it, read from the zb_ tables.
#include "engine/catalog/catalog_rows.h"

namespace engine {

namespace {

// One pass over each zb_ table; `filter` is empty or " AND <id column>=N" by the caller's prefix.
class Loader {
 public:
  Loader(sqlite3* db, std::string_view alias, std::int64_t only) : db_(db), alias_(alias), only_(only) {}

  void run() {
    objects();
    columns();
    indexes();
    if (rules_) rules();
  }

  std::map<std::int64_t, std::shared_ptr<TableInfo>> tables;
  std::map<std::int64_t, std::shared_ptr<ViewInfo>> views;
  std::map<std::int64_t, std::shared_ptr<ProcedureInfo>> procedures;

 private:
  std::string query(std::string sql, const char* idColumn) const {
    if (only_ != 0) sql += std::string(" WHERE ") + idColumn + "=" + std::to_string(only_);
    return atAlias(sql, alias_);
  }

  void objects() {
    std::string sql =
        "SELECT id, name, xtype, parent, flags, CASE WHEN xtype IN ('V','TR','P') THEN text END "
        "FROM @.zb_objects WHERE xtype IN ('U','V','TR','P','F','C')";
    if (only_ != 0) sql += " AND (id=" + std::to_string(only_) + " OR parent=" + std::to_string(only_) + ")";
    lite::Stmt rows(db_, atAlias(sql + " ORDER BY id", alias_));
    std::vector<std::shared_ptr<TriggerInfo>> triggers;
    while (rows.step()) {
      const std::string type = rows.text(2);
      const auto id = rows.integer(0);
      if (type == "U") {
        auto table = std::make_shared<TableInfo>();
        table->id = id;
        table->name = rows.text(1);
        tables[id] = table;
      } else if (type == "V") {
        auto view = std::make_shared<ViewInfo>();
        view->id = id;
        view->name = rows.text(1);
        view->text = rows.text(5);
        views[id] = view;
      } else if (type == "P") {
        procedures[id] = std::make_shared<ProcedureInfo>(ProcedureInfo{id, rows.text(1), rows.text(5)});
      } else if (type == "TR") {
        triggers.push_back(readTrigger(rows));
      } else {
        rules_ = true;
      }
    }
    for (const auto& trigger : triggers)
      if (const auto found = tables.find(trigger->table); found != tables.end())
        found->second->triggers.push_back(trigger);
  }

  static std::shared_ptr<TriggerInfo> readTrigger(const lite::Stmt& rows) {
    auto trigger = std::make_shared<TriggerInfo>();
    trigger->id = rows.integer(0);
    trigger->name = rows.text(1);
    trigger->table = rows.integer(3);
    const auto flags = rows.integer(4);
    trigger->onInsert = flags & 1;
    trigger->onUpdate = flags & 2;
    trigger->onDelete = flags & 4;
    trigger->text = rows.text(5);
    return trigger;
  }

  void columns() {
    lite::Stmt rows(db_,
                    query("SELECT c.table_id, c.colid, c.name, c.type, c.nullable, c.identity, c.seed, "
                          "c.step, c.collation, o.text, o.name FROM @.zb_columns c LEFT JOIN @.zb_objects "
                          "o ON c.default_id<>0 AND o.id=c.default_id",
                          "c.table_id") +
                        " ORDER BY c.table_id, c.colid");
    while (rows.step()) {
      ColumnInfo column;
      column.id = static_cast<int>(rows.integer(1));
      column.name = rows.text(2);
      column.type = unpackType(rows.integer(3));
      column.nullable = rows.integer(4) != 0;
      column.identity = rows.integer(5) != 0;
      column.seed = rows.integer(6);
      column.step = rows.integer(7);
      column.collation = rows.text(8);
      column.defaultText = rows.text(9);
      column.defaultName = rows.text(10);
      const auto id = rows.integer(0);
      if (const auto table = tables.find(id); table != tables.end())
        table->second->columns.push_back(std::move(column));
      else if (const auto view = views.find(id); view != views.end())
        view->second->columns.push_back({column.name, column.type, column.nullable});
    }
    for (const auto& [id, table] : tables) table->columns.shrink_to_fit();
  }

  void indexes() {
    lite::Stmt rows(
        db_, query("SELECT i.table_id, i.indid, i.name, i.is_unique, i.is_clustered, o.xtype, k.colid, "
                   "k.descending, k.keyno FROM @.zb_indexes i JOIN @.zb_index_columns k ON "
                   "k.table_id=i.table_id AND k.indid=i.indid LEFT JOIN @.zb_objects o ON "
                   "i.object_id<>0 AND o.id=i.object_id",
                   "i.table_id") +
                 " ORDER BY i.table_id, i.indid, k.keyno");
    while (rows.step()) {
      const auto found = tables.find(rows.integer(0));
      if (found == tables.end()) continue;
      TableInfo& table = *found->second;
      if (rows.integer(8) == 1) {
        IndexInfo index;
        index.name = rows.text(2);
        index.unique = rows.integer(3) != 0;
        index.clustered = rows.integer(4) != 0;
        index.primaryKey = rows.text(5) == "PK";
        index.uniqueConstraint = rows.text(5) == "UQ";
        index.id = static_cast<int>(rows.integer(1));
        table.indexes.push_back(std::move(index));
      }
      IndexPart part;
      for (std::size_t i = 0; i < table.columns.size(); ++i)
        if (table.columns[i].id == rows.integer(6)) part.column = static_cast<int>(i);
      part.descending = rows.integer(7) != 0;
      table.indexes.back().parts.push_back(part);
    }
  }

  // What CHECK and FOREIGN KEY say stands as JSON in their text; a row for each column.
  void rules() {
    constexpr int disabled = 1, untrusted = 2;
    std::string from = "SELECT * FROM @.zb_objects WHERE xtype IN ('F','C')";
    if (only_ != 0) from += " AND parent=" + std::to_string(only_);
    lite::Stmt rows(db_, atAlias("SELECT o.id, o.name, o.xtype, o.parent, o.flags, o.text->>'text', "
                                 "o.text->>'table', o.text->>'index', o.text->>'delete', o.text->>'update', "
                                 "CASE o.xtype WHEN 'C' THEN j.value ELSE j.value->>0 END, "
                                 "CASE o.xtype WHEN 'F' THEN j.value->>1 END FROM (" +
                                     from +
                                     " LIMIT -1 OFFSET 0) o LEFT JOIN json_each(o.text, '$.columns') j "
                                     "ORDER BY o.id, j.key",
                                 alias_));
    while (rows.step()) {
      const auto found = tables.find(rows.integer(3));
      if (found == tables.end()) continue;
      TableInfo& table = *found->second;
      const auto id = rows.integer(0), flags = rows.integer(4);
      const auto begin = [&](auto& list) -> auto& {
        if (!list.empty() && list.back().id == id) return list.back();
        auto& rule = list.emplace_back();
        rule.id = id;
        rule.name = rows.text(1);
        rule.disabled = (flags & disabled) != 0;
        rule.untrusted = (flags & untrusted) != 0;
        return rule;
      };
      if (rows.text(2) == "C") {
        CheckInfo& check = begin(table.checks);
        check.text = rows.text(5);
        if (!rows.isNull(10)) check.columns.push_back(static_cast<int>(rows.integer(10)));
        continue;
      }
      ForeignKeyInfo& key = begin(table.foreignKeys);
      key.table = rows.integer(6);
      key.index = static_cast<int>(rows.integer(7));
      key.onDelete = static_cast<KeyAction>(rows.integer(8));
      key.onUpdate = static_cast<KeyAction>(rows.integer(9));
      key.columns.emplace_back(static_cast<int>(rows.integer(10)), static_cast<int>(rows.integer(11)));
    }
  }

  sqlite3* db_;
  std::string_view alias_;
  std::int64_t only_;
  bool rules_ = false;
};

}  // namespace

std::shared_ptr<DatabaseCatalog> loadCatalog(sqlite3* db, std::string_view alias, const std::string& name) {
  auto catalog = std::make_shared<DatabaseCatalog>();
  catalog->name = name;
  catalog->version = catalogVersion(db, alias);
  Loader loader(db, alias, 0);
  loader.run();
  for (const auto& [id, table] : loader.tables) catalog->tables.put(foldName(table->name), table);
  for (const auto& [id, view] : loader.views) catalog->views.put(foldName(view->name), view);
  for (const auto& [id, procedure] : loader.procedures)
    catalog->procedures.put(foldName(procedure->name), procedure);
  return catalog;
}

std::shared_ptr<TableInfo> loadTable(sqlite3* db, std::string_view alias, std::int64_t id) {
  Loader loader(db, alias, id);
  loader.run();
  return loader.tables[id];
}

std::shared_ptr<ViewInfo> loadView(sqlite3* db, std::string_view alias, std::int64_t id) {
  Loader loader(db, alias, id);
  loader.run();
  return loader.views[id];
}

std::shared_ptr<ProcedureInfo> loadProcedure(sqlite3* db, std::string_view alias, std::int64_t id) {
  Loader loader(db, alias, id);
  loader.run();
  return loader.procedures[id];
}

}  // namespace engine
