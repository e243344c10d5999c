#include "engine/store/data_reading.h"

#include <algorithm>
#include <cstring>

#include "engine/store/file_layer.h"
#include "engine/store/page_checksum.h"
#include "engine/store/page_map.h"
#include "engine/store/table_sums.h"

namespace engine::store {

namespace {

struct Tree {
  std::string name;
  std::uint32_t root = 0;
  bool index = false;
  int table = -1;      // whose; -1: the engine's own, small ones, which SQLite looks through at the end
  int indexOfIt = -1;  // -1: the table itself
};

// A record of a cell, with room for a payload that lies in several pages.
struct Entry {
  std::vector<Field> fields;
  std::vector<unsigned char> whole;
  std::size_t count = 0;
  std::span<Field> span() { return {fields.data(), count}; }
};

}  // namespace

class DataReading::Impl {
 public:
  Impl(sqlite3* db, std::string alias, const DatabaseCatalog& catalog) : db_(db), alias_(std::move(alias)) {
    try {
      prepare(catalog);
      findings_.told = true;
    } catch (const Malformed& bad) {
      findings_.told = true;
      findings_.doubt = bad.why;
    } catch (const Error& bad) {
      findings_.told = true;
      findings_.doubt = bad.what();
    } catch (const Unplanned&) {
      // The long way will do.
    }
  }

  void take(const char* bytes, std::size_t count) {
    if (!sound()) return;
    const auto* at = reinterpret_cast<const unsigned char*>(bytes);
    while (count > 0) {
      if (part_.empty() && count >= shape_.pageSize) {
        guardedPage(at);
        at += shape_.pageSize;
        count -= shape_.pageSize;
        continue;
      }
      const std::size_t more = std::min<std::size_t>(count, shape_.pageSize - part_.size());
      part_.insert(part_.end(), at, at + more);
      at += more;
      count -= more;
      if (part_.size() == shape_.pageSize) {
        guardedPage(part_.data());
        part_.clear();
      }
    }
  }

  DataFindings finish() {
    if (sound() && (next_ != shape_.pages + 1 || !part_.empty())) doubt("the file is of another length");
    if (sound())
      if (const auto page = map_->orphan()) doubt("page " + std::to_string(*page) + " belongs to nobody");
    for (const TableSums& table : tables_)
      if (const auto index = table.mismatch(); sound() && index)
        doubt("table " + table.plan().name + " and its index " + *index + " do not fit");
    for (const std::string& table : own_)
      if (sound()) lookThrough(table);
    if (sound()) {
      for (const TableSums& table : tables_) findings_.tables.push_back(table.digest());
      std::ranges::sort(findings_.tables, {}, &TableDigest::name);
    }
    return std::move(findings_);
  }

 private:
  bool sound() const { return findings_.told && findings_.doubt.empty(); }
  void doubt(std::string why) { findings_.doubt = std::move(why); }

  // ---- before the bytes come ----

  void prepare(const DatabaseCatalog& catalog) {
    lite::Stmt size(db_, "PRAGMA " + alias_ + ".page_size");
    size.step();
    shape_.pageSize = static_cast<std::uint32_t>(size.integer(0));
    shape_.pages = pageCount(db_, alias_);
    checksummed_ = isChecksummed(db_, alias_);
    std::vector<unsigned char> header(shape_.pageSize);
    readChecked(1, header.data());
    shape_.usable = shape_.pageSize - header[20];
    map_.emplace(shape_, [this](std::uint32_t page, unsigned char* to) { readChecked(page, to); });
    if (bigEnd32(header.data() + 28) != shape_.pages) throw Malformed{"the file is of another length"};
    constexpr std::uint32_t utf8 = 1;
    if (bigEnd32(header.data() + 52) != 0 || bigEnd32(header.data() + 56) != utf8)
      throw Unplanned{"a file of another make"};
    plan(catalog);
    for (std::size_t i = 0; i < trees_.size(); ++i)
      map_->addTree(static_cast<std::uint32_t>(i), trees_[i].root, trees_[i].index);
    map_->addFreeList(bigEnd32(header.data() + 32), bigEnd32(header.data() + 36));
  }
  void plan(const DatabaseCatalog& catalog) {
    trees_.push_back({"sqlite_schema", 1, false});
    own_.push_back("sqlite_schema");
    for (const auto& [folded, table] : catalog.tables) addTable(planTable(db_, alias_, *table));
    lite::Stmt rows(db_, "SELECT type, name, rootpage, sql LIKE '%WITHOUT ROWID' FROM " + alias_ +
                             ".sqlite_master WHERE rootpage>0");
    while (rows.step()) {
      const auto root = static_cast<std::uint32_t>(rows.integer(2));
      if (std::ranges::find(trees_, root, &Tree::root) != trees_.end()) continue;
      const bool table = rows.text(0) == "table";
      if (table) own_.push_back(rows.text(1));
      trees_.push_back({rows.text(1), root, !table || rows.integer(3) != 0});
    }
  }
  void addTable(TablePlan plan) {
    const int number = static_cast<int>(tables_.size());
    trees_.push_back({plan.name, plan.root, false, number, -1});
    for (std::size_t i = 0; i < plan.indexes.size(); ++i)
      trees_.push_back({plan.indexes[i].name, plan.indexes[i].root, true, number, static_cast<int>(i)});
    tables_.emplace_back(std::move(plan));
  }

  // ---- while they come ----

  void readChecked(std::uint32_t page, unsigned char* to) {
    if (page == 0 || page > shape_.pages) throw Malformed{"a reference leads out of the file"};
    if (readPage(db_, alias_, page, to))
      throw Malformed{"a page cannot be read or does not fit its checksum"};
  }

  void guardedPage(const unsigned char* bytes) {
    const std::uint32_t number = next_++;
    if (!sound()) return;
    const char* why = nullptr;
    if (number > shape_.pages)
      why = "the file is of another length";
    else if (checksummed_ &&
             storedChecksum(bytes, shape_.pageSize) != pageChecksum(bytes, shape_.pageSize, number) &&
             !isBlank(bytes, shape_.pageSize))
      why = "it does not fit its checksum";
    try {
      if (!why) page(number, bytes);
    } catch (const Malformed& bad) {
      why = bad.why;
    }
    if (why) doubt("page " + std::to_string(number) + ": " + why);
  }

  void page(std::uint32_t number, const unsigned char* bytes) {
    const PageMap::Place& place = map_->at(number);
    if (place.kind != PageMap::Kind::Leaf && place.kind != PageMap::Kind::Inner) return;
    const Tree& tree = trees_[place.tree];
    const TreePage view(bytes, number, shape_.usable);
    if (view.isIndex() != tree.index || view.isLeaf() != (place.kind == PageMap::Kind::Leaf))
      throw Malformed{"it is of another kind than its tree wants"};
    std::size_t taken = 0;
    if (tree.table < 0)
      taken = claimOverflow(view);
    else if (tree.index)
      taken = entries(number, view, tree);
    else
      taken = rows(number, view, tables_[static_cast<std::size_t>(tree.table)]);
    if (!view.isFilledBy(taken)) throw Malformed{"its cells overlap or leave a gap"};
  }

  std::size_t claimOverflow(const TreePage& view) {
    std::size_t taken = 0;
    for (int i = 0; i < view.cells(); ++i) {
      const Cell cell = view.cell(i);
      taken += cell.size;
      if (cell.overflow != 0) gather(cell, spare_.whole, true);
    }
    return taken;
  }

  std::size_t rows(std::uint32_t number, const TreePage& view, TableSums& table) {
    std::size_t taken = 0;
    const auto low = map_->before(number), high = map_->behind(number);
    bool any = low.has_value();
    std::int64_t last = any ? low->rowid : 0;
    for (int i = 0; i < view.cells(); ++i) {
      const Cell cell = view.cell(i);
      taken += cell.size;
      if ((any && cell.rowid <= last) || (high && cell.rowid > high->rowid))
        throw Malformed{"its rows are out of order"};
      last = cell.rowid;
      any = true;
      if (!view.isLeaf()) continue;
      read(cell, spare_, true);
      table.addRow(cell.rowid, spare_.span());
    }
    return taken;
  }

  std::size_t entries(std::uint32_t number, const TreePage& view, const Tree& tree) {
    TableSums& table = tables_[static_cast<std::size_t>(tree.table)];
    const auto index = static_cast<std::size_t>(tree.indexOfIt);
    std::size_t taken = 0;
    bool any = false;
    if (const auto low = map_->before(number)) {
      read(*low, entries_[0], false);
      any = true;
      // Its page may go when another one is looked at.
      hold(*low, entries_[0]);
    }
    int at = 0;
    for (int i = 0; i < view.cells(); ++i, at = 1 - at) {
      const Cell cell = view.cell(i);
      taken += cell.size;
      Entry& now = entries_[1 - at];
      read(cell, now, true);
      if (any) mustFollow(table, index, entries_[at].span(), now.span());
      any = true;
      table.addEntry(index, now.span());
    }
    if (view.cells() == 0) return taken;
    if (const auto high = map_->behind(number)) {
      read(*high, spare_, false);
      mustFollow(table, index, entries_[at].span(), spare_.span());
    }
    return taken;
  }
  void mustFollow(const TableSums& table, std::size_t index, std::span<Field> left, std::span<Field> right) {
    bool same = false;
    if (table.compareEntries(index, left, right, same) >= 0) throw Malformed{"its entries are out of order"};
    if (same && table.plan().indexes[index].unique) throw Malformed{"a key of a unique index stands twice"};
  }

  void read(const Cell& cell, Entry& entry, bool claim) {
    if (cell.overflow == 0) {
      entry.count = readRecord(cell.local, cell.localSize, entry.fields);
      return;
    }
    gather(cell, entry.whole, claim);
    entry.count = readRecord(entry.whole.data(), entry.whole.size(), entry.fields);
  }
  void hold(const Cell& cell, Entry& entry) {
    if (cell.overflow != 0) return;
    entry.whole.assign(cell.local, cell.local + cell.localSize);
    entry.count = readRecord(entry.whole.data(), entry.whole.size(), entry.fields);
  }
  // The whole payload of a cell that goes on in other pages.
  void gather(const Cell& cell, std::vector<unsigned char>& whole, bool claim) {
    if (cell.payload > std::uint64_t{shape_.pages} * shape_.usable)
      throw Malformed{"a row is larger than the file"};
    const auto size = static_cast<std::size_t>(cell.payload);
    whole.assign(cell.local, cell.local + cell.localSize);
    whole.reserve(size);
    overflow_.resize(shape_.pageSize);
    std::uint32_t page = cell.overflow;
    while (whole.size() < size) {
      if (claim) map_->addOverflow(page);
      readChecked(page, overflow_.data());
      const std::size_t part = std::min<std::size_t>(size - whole.size(), shape_.usable - 4);
      whole.insert(whole.end(), overflow_.data() + 4, overflow_.data() + 4 + part);
      page = bigEnd32(overflow_.data());
    }
    if (page != 0) throw Malformed{"a row goes on behind its end"};
  }

  // ---- when all have come ----

  void lookThrough(const std::string& table) {
    try {
      lite::Stmt rows(db_, "PRAGMA " + alias_ + ".integrity_check(" + lite::quoted(table) + ")");
      while (rows.step())
        if (rows.text(0) != "ok") return doubt("table " + table + ": " + rows.text(0));
    } catch (const Error& error) {
      doubt("table " + table + ": " + error.what());
    }
  }

  sqlite3* db_;
  std::string alias_;
  FileShape shape_;
  bool checksummed_ = false;
  std::vector<Tree> trees_;
  std::vector<TableSums> tables_;
  std::vector<std::string> own_;
  std::optional<PageMap> map_;
  std::uint32_t next_ = 1;
  std::vector<unsigned char> part_, overflow_;
  Entry entries_[2], spare_;
  DataFindings findings_;
};

DataReading::DataReading(sqlite3* db, const std::string& alias, const DatabaseCatalog& catalog)
    : impl_(std::make_unique<Impl>(db, alias, catalog)) {}
DataReading::~DataReading() = default;

void DataReading::take(const char* bytes, std::size_t count) {
  impl_->take(bytes, count);
}
DataFindings DataReading::finish() {
  return impl_->finish();
}

}  // namespace engine::store
