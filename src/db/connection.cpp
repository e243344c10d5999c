#include "db/connection.h"

namespace db {
namespace {

class FirstRows : public BatchSink {
 public:
  void onRows(std::unique_ptr<Rows> rows) override {
    if (!rows_) rows_ = std::move(rows);
  }
  void onRowCount(std::int64_t rows) override { count_ = rows; }
  void onMessage(const std::string&) override {}

  std::int64_t count() const { return count_; }
  std::unique_ptr<Rows> take() { return std::move(rows_); }

 private:
  std::unique_ptr<Rows> rows_;
  std::int64_t count_ = 0;
};

}  // namespace

std::int64_t Connection::execute(std::string_view batch) {
  FirstRows sink;
  run(batch, sink);
  return sink.count();
}

std::unique_ptr<Rows> Connection::query(std::string_view batch) {
  FirstRows sink;
  run(batch, sink);
  return sink.take();
}

}  // namespace db
