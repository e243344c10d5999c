// One table while its rows and the entries of its indexes pass by, in any order of their pages: sums that do
// not depend on the order tell whether each row has its entries and each entry its row.
#pragma once

#include <optional>
#include <span>

#include "engine/store/table_digest.h"
#include "engine/store/table_plan.h"

namespace engine::store {

class TableSums {
 public:
  explicit TableSums(TablePlan plan);

  const TablePlan& plan() const { return plan_; }
  // Malformed: the row is not one of this table.
  void addRow(std::int64_t rowid, std::span<Field> fields);
  void addEntry(std::size_t index, std::span<const Field> fields);
  // Negative, zero, positive; the rowid counts last. Sets `sameKey` when all but the rowid is equal and
  // none of it NULL.
  int compareEntries(std::size_t index, std::span<const Field> left, std::span<const Field> right,
                     bool& sameKey) const;

  TableDigest digest() const { return {plan_.name, rows_, sum_}; }
  // The index that does not fit the table.
  std::optional<std::string> mismatch() const;

 private:
  struct Sum {
    std::int64_t count = 0;
    std::uint64_t sum = 0;
    bool operator==(const Sum&) const = default;
  };
  void addToIndexes(std::int64_t rowid);

  TablePlan plan_;
  std::int64_t rows_ = 0;
  std::uint64_t sum_ = 0;
  std::vector<Field> row_;
  std::vector<Sum> ofRows_, ofEntries_;  // by index
};

}  // namespace engine::store
