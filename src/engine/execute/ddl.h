// Parts that the definition statements share.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/catalog.h"
#include "engine/execute/definition.h"
#include "engine/store.h"

namespace engine::ddl {

// A change of one database's definitions: takes the write lock and is rolled back unless finished.
class Change {
 public:
  Change(Store& store, const SessionContext& context, const std::string& database);
  ~Change();
  Change(const Change&) = delete;
  Change& operator=(const Change&) = delete;

  Store& store;
  const SessionContext& context;
  std::string database;
  sqlite3* db;
  std::string alias;
  ObjectWriter rows;

  const DatabaseCatalog& catalog() const { return *catalog_; }
  std::shared_ptr<const TableInfo> table(const ObjectName& name) const;  // 4902 when there is none
  std::string at(std::string_view name) const;                           // alias."name"
  void run(const std::string& sql) const { lite::exec(db, sql); }
  // Take over an object as it was just written, or what the zb_ tables now say of it.
  void put(TableInfo table);
  void put(ViewInfo view);
  void put(ProcedureInfo procedure);
  void reload(std::int64_t id, const std::string& oldName);
  void finish();

 private:
  DatabaseCatalog& next();

  std::shared_ptr<const DatabaseCatalog> catalog_;
  std::shared_ptr<DatabaseCatalog> next_;  // catalog_ once it differs from what it was
  bool finished_ = false;
};

std::string databaseOf(const ObjectName& name, const SessionContext& context);
void requireOwner(const ObjectName& name);  // throws 2760

// ---- columns and keys ----

// INTEGER, REAL, BLOB or TEXT COLLATE TRCI.
std::string storageClass(const Type& type);
std::string columnSql(const ColumnInfo& column);
// Checks what concerns the column alone (identity, default). `table` is for the texts of errors.
ColumnInfo columnFrom(const ColumnDefinition& definition, const std::string& table);
// The keys that the definitions of columns carry, as table constraints.
std::vector<TableConstraint> columnKeys(const std::vector<ColumnDefinition>& columns);
// ---- CHECK and FOREIGN KEY (ddl_constraint.cpp) ----

bool isRule(const TableConstraint& constraint);
void addRule(Change& change, const TableInfo& table, const TableConstraint& constraint, bool checkRows);
void switchRules(Change& change, const TableInfo& table, const std::vector<std::string>& names, bool on,
                 bool checkRows);
void refuseReferenced(const Change& change, const TableInfo& table);  // 3726
// A foreign key to this index, and the table that it is of; null when there is none.
const ForeignKeyInfo* referenceTo(const Change& change, const TableInfo& table, int index,
                                  std::string* from = nullptr);
// The name of a rule over the column; null when there is none.
const std::string* ruleOn(const TableInfo& table, int column, bool keysOnly = false);

// ---- more of keys ----

// Column ordinals of an index; 1911, 1909, 1904, 1919.
std::vector<IndexPart> indexParts(const std::vector<IndexColumn>& columns, const TableInfo& table,
                                  const std::string& indexName);
IndexInfo keyFrom(const TableConstraint& constraint, const TableInfo& table);
// Makes the index and adds it to `table` with its number and name.
void makeKey(Change& change, TableInfo& table, const IndexInfo& index);

// ---- SQLite's side of an index ----

void createIndex(Change& change, const TableInfo& table, const IndexInfo& index, int number);
void dropIndex(Change& change, const TableInfo& table, int number);
// The index that finds a row by its identity value, unless another one begins with it.
void createIdentityIndex(Change& change, const TableInfo& table);

bool hasRows(const Change& change, const TableInfo& table);
// A table with its rows made anew: `columns` are the new ones, `values` an expression for each.
void rebuild(Change& change, const TableInfo& table, const std::vector<ColumnInfo>& columns,
             const std::vector<std::string>& values);

// `database`: where it is to lie; tempdb takes temporary names, and no other does.
void checkObjectName(const std::string& name, const std::string& database = {});
[[noreturn]] void refuseConstruct(const std::string& construct);

void createTable(Store& store, SessionContext& context, const std::string& database, const std::string& name,
                 const CreateTableStatement& statement);

// ---- one per statement ----

void run(Store& store, SessionContext& context, const CreateTableStatement& statement);
void run(Store& store, SessionContext& context, const AlterTableStatement& statement);
void run(Store& store, SessionContext& context, const CreateIndexStatement& statement);
void run(Store& store, SessionContext& context, const DropStatement& statement);
void run(Store& store, SessionContext& context, const CreateDatabaseStatement& statement);
void run(Store& store, SessionContext& context, const CreateTriggerStatement& statement);
void run(Store& store, SessionContext& context, const CreateProcedureStatement& statement);
void run(Store& store, SessionContext& context, const CreateViewStatement& statement,
         const std::vector<ViewColumn>& columns);

void dropDatabase(Store& store, const SessionContext& context, const std::string& name);
// sp_detach_db: 3703, 7940.
void detachDatabase(Store& store, const SessionContext& context, const std::string& name);
// Ends what a broken-off CREATE or DROP DATABASE left behind; `only` empty: all of them. What cannot be
// ended stays for the next time and keeps nobody else from working.
std::vector<LeftOver> cleanUnfinished(Store& store, const std::string& only = {});

}  // namespace engine::ddl
