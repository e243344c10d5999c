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

class Pages : public BatchSink {
 public:
  Pages(std::int64_t page, const std::function<void(const Rows&)>& take) : page_(page), take_(take) {}
  void onRows(std::unique_ptr<Rows> rows) override {
    if (rows->count() > 0) take_(*rows);
  }
  void onRowCount(std::int64_t) override {}
  void onMessage(const std::string&) override {}
  std::int64_t pageRows() const override { return page_; }

 private:
  std::int64_t page_;
  const std::function<void(const Rows&)>& take_;
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

void Connection::stream(std::string_view batch, std::int64_t page,
                        const std::function<void(const Rows&)>& take) {
  Pages sink(page, take);
  run(batch, sink);
}

}  // namespace db
