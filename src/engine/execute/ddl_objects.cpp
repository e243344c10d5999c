// CREATE INDEX, views, triggers, DROP and sp_rename.
#include <algorithm>

#include "engine/execute/ddl.h"

namespace engine {

namespace ddl {

namespace {

struct DropKind {
  ObjectKind kind;
  const char* word;
  const char* type;
};

constexpr DropKind dropKinds[] = {
    {ObjectKind::Table, "table", "U"},
    {ObjectKind::View, "view", "V"},
    {ObjectKind::Trigger, "trigger", "TR"},
    {ObjectKind::Procedure, "procedure", "P"},
};

std::string upper(std::string word) {
  for (char& c : word) c = static_cast<char>(c - 'a' + 'A');
  return word;
}

[[noreturn]] void failDrop(const std::string& word, const std::string& name) {
  throw Error(
      3701,
      "Cannot drop the " + word + " '" + name + "', because it does not exist or you do not have permission.",
      11);
}

[[noreturn]] void failKind(const DropKind& wanted, const ObjectRow& object) {
  for (const DropKind& kind : dropKinds)
    if (object.type == kind.type)
      throw Error(3705, std::string("Cannot use DROP ") + upper(wanted.word) + " with '" + object.name +
                            "' because '" + object.name + "' is a " + kind.word + ". Use DROP " +
                            upper(kind.word) + ".");
  failDrop(wanted.word, object.name);
}

// The table or view goes with everything that hangs on it; a trigger leaves its table.
void dropObject(Change& change, const DropKind& kind, const std::string& name) {
  const ObjectRow object = findObject(change.db, change.alias, name);
  if (object.id == 0) failDrop(kind.word, name);
  if (object.type != kind.type) failKind(kind, object);
  if (kind.kind == ObjectKind::Table) {
    refuseReferenced(change, *change.catalog().table(object.name));
    change.run("DROP TABLE " + change.at(object.name));
  }
  removeObject(change.db, change.alias, object.id);
  if (kind.kind == ObjectKind::Trigger) {
    for (const auto& [folded, table] : change.catalog().tables)
      if (table->id == object.parent) {
        change.reload(table->id, table->name);
        return;
      }
  }
  change.reload(object.id, object.name);
}

std::string wordOf(ObjectKind kind) {
  for (const DropKind& known : dropKinds)
    if (known.kind == kind) return known.word;
  return "database";
}

void dropIndexByName(Change& change, const ObjectName& name) {
  const std::string full = name.owner + "." + name.object;
  if (const auto table = change.catalog().tables.find(foldName(name.owner))) {
    for (const auto& index : table->indexes) {
      if (foldName(index.name) != foldName(name.object)) continue;
      if (index.primaryKey || index.uniqueConstraint)
        throw Error(3723, "An explicit DROP INDEX is not allowed on index '" + full +
                              "'. It is being used for " + (index.primaryKey ? "PRIMARY KEY" : "UNIQUE KEY") +
                              " constraint enforcement.");
      if (referenceTo(change, *table, index.id))
        throw Error(3723, "An explicit DROP INDEX is not allowed on index '" + full +
                              "'. It is being used for FOREIGN KEY constraint enforcement.");
      dropIndex(change, *table, index.id);
      const std::string where =
          " WHERE table_id=" + std::to_string(table->id) + " AND indid=" + std::to_string(index.id);
      change.run(atAlias("DELETE FROM @.zb_indexes", change.alias) + where);
      change.run(atAlias("DELETE FROM @.zb_index_columns", change.alias) + where);
      change.reload(table->id, table->name);
      createIdentityIndex(change, *change.catalog().table(name.owner));
      return;
    }
  }
  failDrop("index", full);
}

void dropOne(Store& store, const SessionContext& context, ObjectKind kind, const ObjectName& name) {
  if (kind != ObjectKind::Index && !isKnownOwner(name.owner))
    failDrop(wordOf(kind), name.owner + "." + name.object);
  if (kind == ObjectKind::Database) {
    dropDatabase(store, context, name.object);
    return;
  }
  Change change(store, context, databaseOf(name, context));
  if (kind == ObjectKind::Index) {
    dropIndexByName(change, name);
  } else {
    for (const auto& each : dropKinds)
      if (each.kind == kind) dropObject(change, each, name.object);
  }
  change.finish();
}

// The stored text begins with CREATE, whatever made it.
std::string createText(std::string text) {
  constexpr std::string_view alter = "alter";
  for (std::size_t i = 0; i + alter.size() <= text.size(); ++i)
    if (foldName(text.substr(i, alter.size())) == alter) return text.replace(i, alter.size(), "CREATE");
  return text;
}

std::int64_t writeObject(Change& change, const ObjectName& name, const char* type, bool alter,
                         std::int64_t parent, const std::string& text, int flags) {
  if (!alter) {
    checkObjectName(name.object);
    return change.rows.addObject(name.object, type, parent, text, flags);
  }
  const ObjectRow old = findObject(change.db, change.alias, name.object);
  if (old.id == 0 || old.type != type) throw Error(208, "Invalid object name '" + name.object + "'.");
  lite::Stmt update(change.db,
                    atAlias("UPDATE @.zb_objects SET text=?, parent=?, flags=? WHERE id=?", change.alias));
  update.bind(createText(text)).bind(parent).bind(flags).bind(old.id).run();
  return old.id;
}

}  // namespace

void run(Store& store, SessionContext& context, const CreateIndexStatement& statement) {
  Change change(store, context, databaseOf(statement.table, context));
  const auto table = change.catalog().tables.find(foldName(statement.table.object));
  if (!table)
    throw Error(1088, "Cannot find the object \"" + statement.table.object +
                          "\" because it does not exist or you do not have permissions.");
  for (const auto& other : table->indexes)
    if (foldName(other.name) == foldName(statement.name))
      throw Error(1913, "The operation failed because an index or statistics with name '" + statement.name +
                            "' already exists on table '" + table->name + "'.");
  IndexInfo index;
  index.name = statement.name;
  index.unique = statement.unique;
  index.clustered = statement.clustered;
  index.parts = indexParts(statement.columns, *table, statement.name);
  TableInfo next = *table;
  makeKey(change, next, index);
  change.put(std::move(next));
  change.finish();
}

void run(Store& store, SessionContext& context, const CreateViewStatement& statement,
         const std::vector<ViewColumn>& columns) {
  requireOwner(statement.name);
  Change change(store, context, databaseOf(statement.name, context));
  const auto id = writeObject(change, statement.name, "V", statement.alter, 0, statement.text,
                              statement.checkOption ? 1 : 0);
  if (statement.checkOption) raiseFormat(change.db, change.alias);
  if (statement.alter)
    change.run(atAlias("DELETE FROM @.zb_columns WHERE table_id=", change.alias) + std::to_string(id));
  change.rows.addViewColumns(id, columns);
  if (statement.alter)
    change.reload(id, statement.name.object);
  else
    change.put(ViewInfo{id, statement.name.object, statement.text, columns});
  change.finish();
}

void run(Store& store, SessionContext& context, const CreateTriggerStatement& statement) {
  Change change(store, context, databaseOf(statement.table, context));
  const TableInfo* table = change.catalog().table(statement.table.object);
  if (!table)
    throw Error(8197, "The object '" + statement.table.object +
                          "' does not exist or is invalid for this "
                          "operation.");
  const int flags =
      (statement.onInsert ? 1 : 0) | (statement.onUpdate ? 2 : 0) | (statement.onDelete ? 4 : 0);
  const std::int64_t id = table->id;
  const std::string name = table->name;
  if (statement.alter) {
    const ObjectRow old = findObject(change.db, change.alias, statement.name.object);
    if (old.type == "TR" && old.parent != id)
      throw Error(2103, "Cannot alter trigger '" + old.name + "' on '" + name +
                            "' because this trigger does not belong to this object.");
  }
  const std::int64_t made =
      writeObject(change, statement.name, "TR", statement.alter, id, statement.text, flags);
  if (statement.alter) {
    change.reload(id, name);
  } else {
    TableInfo next = *table;
    next.triggers.push_back(
        std::make_shared<TriggerInfo>(TriggerInfo{made, statement.name.object, id, statement.onInsert,
                                                  statement.onUpdate, statement.onDelete, statement.text}));
    change.put(std::move(next));
  }
  change.finish();
}

void run(Store& store, SessionContext& context, const CreateProcedureStatement& statement) {
  requireOwner(statement.name);
  Change change(store, context, databaseOf(statement.name, context));
  const auto id = writeObject(change, statement.name, "P", statement.alter, 0, statement.text, 0);
  change.run(atAlias("DELETE FROM @.zb_columns WHERE table_id=", change.alias) + std::to_string(id));
  std::vector<ParameterInfo> parameters;
  for (const auto& each : statement.parameters) parameters.push_back({each.name, each.type, each.output});
  change.rows.addParameters(id, parameters);
  if (statement.alter)
    change.reload(id, statement.name.object);
  else
    change.put(ProcedureInfo{id, statement.name.object, statement.text});
  change.finish();
}

void run(Store& store, SessionContext& context, const DropStatement& statement) {
  if (statement.kind == ObjectKind::Database || statement.names.size() == 1) {
    for (const auto& name : statement.names) dropOne(store, context, statement.kind, name);
    return;
  }
  store.begin();
  try {
    for (const auto& name : statement.names) dropOne(store, context, statement.kind, name);
    store.commit();
  } catch (...) {
    store.rollback();
    throw;
  }
}

}  // namespace ddl

namespace {

using ddl::Change;

[[noreturn]] void failItem(const std::string& item, const std::string& database, const std::string& type) {
  throw Error(15225,
              "No item by the name of '" + item + "' could be found in the current database '" + database +
                  "', given that @itemtype was input as '" + (type.empty() ? "(null)" : type) + "'.",
              11);
}

[[noreturn]] void failTaken(const std::string& name, const char* kind) {
  throw Error(15335,
              "Error: The new name '" + name + "' is already in use as a " + kind +
                  " name and would cause a duplicate that is not permitted.",
              11);
}

void renameObject(Change& change, const ObjectRow& object, const std::string& newName) {
  ddl::checkObjectName(newName);
  const ObjectRow taken = findObject(change.db, change.alias, newName);
  if (taken.id != 0 && taken.id != object.id) failTaken(newName, "object");
  lite::Stmt update(change.db, atAlias("UPDATE @.zb_objects SET name=? WHERE id=?", change.alias));
  update.bind(newName).bind(object.id).run();
  std::int64_t shown = object.id;
  std::string shownName = object.name;
  if (object.type == "U") {
    // SQLite takes a name that differs in case alone for a second table.
    std::string from = object.name;
    if (foldName(from) == foldName(newName)) {
      change.run("ALTER TABLE " + change.at(from) + " RENAME TO zb_renamed");
      from = "zb_renamed";
    }
    change.run("ALTER TABLE " + change.at(from) + " RENAME TO " + lite::quoted(newName));
  } else if (object.parent != 0) {
    shown = object.parent;
    for (const auto& [folded, table] : change.catalog().tables)
      if (table->id == shown) shownName = table->name;
    lite::Stmt index(change.db, atAlias("UPDATE @.zb_indexes SET name=? WHERE object_id=?", change.alias));
    index.bind(newName).bind(object.id).run();
  }
  change.reload(shown, shownName);
}

void renameColumn(Change& change, const TableInfo& table, const std::string& column,
                  const std::string& newName) {
  const int ordinal = table.columnIndex(column);
  const int taken = table.columnIndex(newName);
  if (taken >= 0 && taken != ordinal) failTaken(newName, "column");
  if (newName.empty()) throw Error(1038, "An object or column name is missing or empty.");
  const ColumnInfo& old = table.columns[static_cast<std::size_t>(ordinal)];
  for (const CheckInfo& check : table.checks)
    if (std::find(check.columns.begin(), check.columns.end(), old.id) != check.columns.end())
      throw Error(15336, "Object '" + table.name + "." + old.name +
                             "' cannot be renamed because the object participates in enforced dependencies.");
  change.run("ALTER TABLE " + change.at(table.name) + " RENAME COLUMN " + lite::quoted(old.name) + " TO " +
             lite::quoted(newName));
  lite::Stmt update(change.db,
                    atAlias("UPDATE @.zb_columns SET name=? WHERE table_id=? AND colid=?", change.alias));
  update.bind(newName).bind(table.id).bind(old.id).run();
  change.reload(table.id, table.name);
}

bool renameIndex(Change& change, const TableInfo& table, const std::string& name,
                 const std::string& newName) {
  for (const auto& other : table.indexes)
    if (foldName(other.name) == foldName(newName) && foldName(other.name) != foldName(name))
      failTaken(newName, "index");
  for (const auto& index : table.indexes) {
    if (foldName(index.name) != foldName(name)) continue;
    const ObjectRow key = findObject(change.db, change.alias, index.name);
    if ((index.primaryKey || index.uniqueConstraint) && key.parent == table.id) {
      renameObject(change, key, newName);
      return true;
    }
    lite::Stmt update(change.db,
                      atAlias("UPDATE @.zb_indexes SET name=? WHERE table_id=? AND indid=?", change.alias));
    update.bind(newName).bind(table.id).bind(index.id).run();
    change.reload(table.id, table.name);
    return true;
  }
  return false;
}

}  // namespace

std::vector<std::string> nameParts(const std::string& item) {
  std::vector<std::string> parts(1);
  char closing = 0;
  for (char c : item) {
    if (closing != 0) {
      if (c == closing)
        closing = 0;
      else
        parts.back() += c;
    } else if (c == '[' || c == '"') {
      closing = c == '[' ? ']' : '"';
    } else if (c == '.') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

void renameItem(Store& store, const std::string& database, const std::string& item,
                const std::string& newName, const std::string& givenType) {
  const std::string type = foldName(givenType);
  if (!type.empty() && type != "object" && type != "column" && type != "index")
    throw Error(15249, "Error: Explicit @objtype '" + givenType + "' is unrecognized.", 11);
  SessionContext context;
  context.database = database;
  Change change(store, context, database);
  const auto parts = nameParts(item);
  if (type.empty() || type == "object") {
    const ObjectRow object = findObject(change.db, change.alias, parts.back());
    if (object.id != 0 && parts.size() <= 2) {
      renameObject(change, object, newName);
      change.finish();
      return;
    }
  }
  const TableInfo* table = parts.size() >= 2 ? change.catalog().table(parts[parts.size() - 2]) : nullptr;
  if (!table || type == "object") failItem(item, database, givenType);
  if (type != "index" && table->columnIndex(parts.back()) >= 0)
    renameColumn(change, TableInfo(*table), parts.back(), newName);
  else if (type == "column" || !renameIndex(change, TableInfo(*table), parts.back(), newName))
    throw Error(15248,
                "Either the parameter @objname is ambiguous or the claimed @objtype (" +
                    std::string(givenType.empty() ? "(null)" : givenType) + ") is wrong.",
                11);
  change.finish();
}

}  // namespace engine
