// What exists in one database, as read from the system tables of its file. Immutable once built; a
// change makes a new one with a higher version.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/value.h"

namespace engine {

// ASCII lower case: the folding of identifiers. Turkish letters stay as they are.
std::string foldName(std::string_view name);

struct ColumnInfo {
  std::string name;
  Type type;
  bool nullable = true;
  bool identity = false;
  std::int64_t seed = 1, step = 1;
  std::string defaultText;  // T-SQL text of the DEFAULT; empty for none
  std::string defaultName;  // its constraint's name
  std::string collation;    // as declared; empty for the server's
  int id = 0;               // syscolumns.colid, never reused within a table
};

struct IndexPart {
  int column = 0;  // ordinal in TableInfo::columns
  bool descending = false;
};

struct IndexInfo {
  std::string name;
  bool unique = false;
  bool clustered = false;
  bool primaryKey = false;
  bool uniqueConstraint = false;
  std::vector<IndexPart> parts;
  int id = 0;  // sysindexes.indid: 1 for the clustered one, others from 2
};

struct TriggerInfo {
  std::int64_t id = 0;
  std::string name;
  std::int64_t table = 0;
  bool onInsert = false, onUpdate = false, onDelete = false;
  std::string text;  // from CREATE TRIGGER on
};

struct CheckInfo {
  std::int64_t id = 0;
  std::string name;
  std::string text;          // the condition as written
  std::vector<int> columns;  // colids that it names
  bool disabled = false;
  bool untrusted = false;  // rows from before were not looked at
};

struct ForeignKeyInfo {
  std::int64_t id = 0;
  std::string name;
  std::int64_t table = 0;                    // referenced
  int index = 0;                             // the unique one there, IndexInfo::id
  std::vector<std::pair<int, int>> columns;  // colids here and there
  KeyAction onDelete = KeyAction::NoAction, onUpdate = KeyAction::NoAction;
  bool disabled = false, untrusted = false;
};

struct TableInfo {
  std::int64_t id = 0;
  std::string name;
  std::vector<ColumnInfo> columns;
  std::vector<IndexInfo> indexes;
  std::vector<std::shared_ptr<const TriggerInfo>> triggers;  // in order of creation
  std::vector<CheckInfo> checks;
  std::vector<ForeignKeyInfo> foreignKeys;

  int columnIndex(std::string_view name) const;  // -1 when there is none
  int identityColumn() const;                    // -1 when there is none
};

struct ViewColumn {
  std::string name;
  Type type;
  bool nullable = true;
};

struct ViewInfo {
  std::int64_t id = 0;
  std::string name;
  std::string text;                 // from CREATE VIEW on
  std::vector<ViewColumn> columns;  // fixed at creation
};

struct ProcedureInfo {
  std::int64_t id = 0;
  std::string name;
  std::string text;  // from CREATE PROCEDURE on
};

// A parameter as the catalog shows it.
struct ParameterInfo {
  std::string name;  // with @
  Type type;
  bool output = false;
};

// Objects by foldName of their name. A copy shares what it does not change, since each definition
// statement makes a new catalog of hundreds of objects that differs from the last one in one of them.
template <class T>
class ObjectMap {
 public:
  using Shard = std::map<std::string, std::shared_ptr<const T>, std::less<>>;

  // Null when there is none.
  std::shared_ptr<const T> find(std::string_view folded) const {
    const auto& shard = shards_[place(folded)];
    if (!shard) return nullptr;
    const auto found = shard->find(folded);
    return found == shard->end() ? nullptr : found->second;
  }
  void put(const std::string& folded, std::shared_ptr<const T> object) {
    auto next = copyOf(folded);
    (*next)[folded] = std::move(object);
    shards_[place(folded)] = std::move(next);
  }
  void erase(const std::string& folded) {
    if (!find(folded)) return;
    auto next = copyOf(folded);
    next->erase(folded);
    shards_[place(folded)] = std::move(next);
  }

  // Pairs of folded name and object, in no particular order.
  class Iterator {
   public:
    Iterator(const ObjectMap& map, std::size_t shard) : map_(map), shard_(shard) { enter(); }
    const typename Shard::value_type& operator*() const { return *at_; }
    Iterator& operator++() {
      if (++at_ == map_.shards_[shard_]->end()) {
        ++shard_;
        enter();
      }
      return *this;
    }
    bool operator!=(const Iterator& other) const {
      return shard_ != other.shard_ || (shard_ < shardCount && at_ != other.at_);
    }

   private:
    void enter() {
      while (shard_ < shardCount && (!map_.shards_[shard_] || map_.shards_[shard_]->empty())) ++shard_;
      if (shard_ < shardCount) at_ = map_.shards_[shard_]->begin();
    }

    const ObjectMap& map_;
    std::size_t shard_;
    typename Shard::const_iterator at_;
  };
  Iterator begin() const { return {*this, 0}; }
  Iterator end() const { return {*this, shardCount}; }

 private:
  static constexpr std::size_t shardCount = 32;

  static std::size_t place(std::string_view folded) {
    return std::hash<std::string_view>{}(folded) % shardCount;
  }
  std::shared_ptr<Shard> copyOf(std::string_view folded) const {
    const auto& shard = shards_[place(folded)];
    return shard ? std::make_shared<Shard>(*shard) : std::make_shared<Shard>();
  }

  std::array<std::shared_ptr<const Shard>, shardCount> shards_;
};

// Everything belongs to dbo; a name may say so or leave it out.
bool isKnownOwner(std::string_view owner);

struct DatabaseCatalog {
  std::string name;
  std::int64_t version = 0;
  ObjectMap<TableInfo> tables;
  ObjectMap<ViewInfo> views;
  ObjectMap<ProcedureInfo> procedures;

  const TableInfo* table(std::string_view name) const;
  const ViewInfo* view(std::string_view name) const;
};

}  // namespace engine
