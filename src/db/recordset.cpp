#include "db/recordset.h"

#include <map>
#include <optional>

#include "db/row_writer.h"

namespace db {
namespace {

// The texts are those that ADO gives.
constexpr const char* closedText = "Operation is not allowed when the object is closed.";
constexpr const char* noRowText =
    "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires a "
    "current record.";
constexpr const char* noItemText =
    "Item cannot be found in the collection corresponding to the requested name or ordinal.";
constexpr const char* readOnlyText =
    "Current Recordset does not support updating. This may be a limitation of the provider, or of the "
    "selected locktype.";

[[noreturn]] void fail(const char* text) {
  throw SqlError(ErrorKind::StatementRefused, 0, text);
}

}  // namespace

struct Recordset::Impl {
  Connection* connection = nullptr;
  std::string sql;
  Lock lock = Lock::ReadOnly;
  std::unique_ptr<Rows> rows;
  std::int64_t read = 0;      // rows that were read; rows added since follow them
  std::vector<bool> unsent;   // per added row: its INSERT was not sent yet
  std::int64_t position = 0;  // count() is end of file
  std::int64_t beforeAdding = 0;
  std::map<std::int64_t, RowChanges> written;  // values sent since the rows were read
  std::map<std::int64_t, RowChanges> pending;  // values assigned and not sent
  std::optional<RowWriter> writer;

  std::int64_t count() const { return read + static_cast<std::int64_t>(unsent.size()); }
  bool isUnsent(std::int64_t row) const {
    return row >= read && unsent[static_cast<std::size_t>(row - read)];
  }

  static const Value* assigned(const std::map<std::int64_t, RowChanges>& changes, std::int64_t row,
                               int column) {
    const auto found = changes.find(row);
    if (found == changes.end()) return nullptr;
    const auto& value = found->second[static_cast<std::size_t>(column)];
    return value ? &*value : nullptr;
  }

  // The value as the server last had it.
  Value original(std::int64_t row, int column) const {
    if (!written.empty()) {
      if (const Value* value = assigned(written, row, column)) return *value;
    }
    return row < read ? rows->value(row, column) : Value();
  }

  Value current(int column) const {
    if (!pending.empty()) {
      if (const Value* value = assigned(pending, position, column)) return *value;
    }
    return original(position, column);
  }

  RowChanges& changesOf(std::map<std::int64_t, RowChanges>& changes, std::int64_t row) const {
    auto& found = changes[row];
    found.resize(rows->fields().size());
    return found;
  }

  RowWriter& writing() {
    if (!writer) writer.emplace(*connection, sql, rows->fields());
    return *writer;
  }

  void send(std::int64_t row) {
    const auto found = pending.find(row);
    if (found == pending.end()) return;
    std::optional<std::int64_t> identity;
    if (isUnsent(row)) {
      identity = writing().insert(found->second);
      unsent[static_cast<std::size_t>(row - read)] = false;
    } else {
      writing().update(found->second, [&](int column) { return original(row, column); });
    }
    RowChanges& kept = changesOf(written, row);
    for (std::size_t i = 0; i < kept.size(); ++i) {
      if (found->second[i]) kept[i] = std::move(found->second[i]);
    }
    if (identity) kept[static_cast<std::size_t>(writer->identityField())] = Value(*identity);
    pending.erase(found);
  }

  void removeAdded(std::int64_t row) {
    unsent.erase(unsent.begin() + (row - read));
    for (auto* changes : {&written, &pending}) {
      std::map<std::int64_t, RowChanges> moved;
      for (auto& [key, value] : *changes) {
        if (key != row) moved.emplace(key > row ? key - 1 : key, std::move(value));
      }
      *changes = std::move(moved);
    }
  }
};

namespace {

template <class Impl>
Impl& opened(const std::shared_ptr<Impl>& impl) {
  if (!impl) fail(closedText);
  return *impl;
}

template <class Impl>
Impl& atRow(const std::shared_ptr<Impl>& impl) {
  Impl& open = opened(impl);
  if (open.position >= open.count()) fail(noRowText);
  return open;
}

template <class Impl>
Impl& writable(const std::shared_ptr<Impl>& impl) {
  Impl& open = opened(impl);
  if (open.lock == Lock::ReadOnly) throw SqlError(ErrorKind::StatementRefused, 0, readOnlyText);
  return open;
}

}  // namespace

void Recordset::open(Connection& connection, std::string_view sql, Cursor, Lock lock) {
  close();
  auto rows = connection.query(sql);
  if (!rows) return;
  impl_ = std::make_shared<Impl>();
  impl_->connection = &connection;
  impl_->sql = sql;
  impl_->lock = lock;
  impl_->read = rows->count();
  impl_->rows = std::move(rows);
}

void Recordset::close() {
  impl_.reset();
}

State Recordset::state() const {
  return impl_ ? State::Open : State::Closed;
}

bool Recordset::eof() const {
  const Impl& open = opened(impl_);
  return open.position >= open.count();
}

std::int64_t Recordset::recordCount() const {
  return opened(impl_).count();
}

void Recordset::moveFirst() {
  opened(impl_).position = 0;
}

void Recordset::moveNext() {
  ++atRow(impl_).position;
}

const std::vector<FieldInfo>& Recordset::fields() const {
  return opened(impl_).rows->fields();
}

int Recordset::fieldIndex(std::string_view name) const {
  const auto& all = fields();
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (sameName(all[i].name, name)) return static_cast<int>(i);
  }
  return -1;
}

Value Recordset::field(std::string_view name) const {
  const int index = fieldIndex(name);
  if (index < 0) fail(noItemText);
  return atRow(impl_).current(index);
}

Value Recordset::field(int ordinal) const {
  const Impl& open = atRow(impl_);
  if (ordinal < 0 || ordinal >= static_cast<int>(open.rows->fields().size())) fail(noItemText);
  return open.current(ordinal);
}

void Recordset::addNew() {
  Impl& open = writable(impl_);
  open.beforeAdding = open.position;
  open.position = open.count();
  open.unsent.push_back(true);
  open.changesOf(open.pending, open.position);
}

void Recordset::set(std::string_view name, Value value) {
  Impl& open = writable(impl_);
  const int index = fieldIndex(name);
  if (index < 0) fail(noItemText);
  atRow(impl_);
  open.changesOf(open.pending, open.position)[static_cast<std::size_t>(index)] = std::move(value);
}

void Recordset::update() {
  Impl& open = writable(impl_);
  open.send(open.position);
}

void Recordset::updateBatch() {
  Impl& open = writable(impl_);
  while (!open.pending.empty()) open.send(open.pending.begin()->first);
}

void Recordset::cancelUpdate() {
  Impl& open = writable(impl_);
  const std::int64_t row = open.position;
  open.pending.erase(row);
  if (row >= open.count() || !open.isUnsent(row)) return;
  open.removeAdded(row);
  open.position = open.beforeAdding;
}

}  // namespace db
