#include "campaigns/dialect/runner.h"

#include <unistd.h>

#include "engine/server.h"

namespace campaign {
namespace {

Shape shapeOf(const engine::Type& type) {
  using enum engine::TypeId;
  switch (type.id) {
    case Bit:
      return {Kind::Bit};
    case TinyInt:
      return {Kind::TinyInt};
    case SmallInt:
      return {Kind::SmallInt};
    case BigInt:
      return {Kind::BigInt};
    case SmallMoney:
      return {Kind::SmallMoney};
    case Money:
      return {Kind::Money};
    case Decimal:
      return decimalShape(type.precision, type.scale);
    case Float:
      return {Kind::Float};
    case Char:
      return {Kind::Char, 0, 0, type.length};
    case VarChar:
      return {Kind::VarChar, 0, 0, type.length};
    case NVarChar:
      return {Kind::NVarChar, 0, 0, type.length};
    default:
      return {Kind::Int};
  }
}

// 16 bytes, the highest first, the sign bit flipped.
Big wideNumber(const std::string& bytes) {
  Big value;
  for (const char byte : bytes) value = value * 256 + static_cast<unsigned char>(byte);
  return value - Big::digits("170141183460469231731687303715884105728");
}

std::string cell(const engine::ResultSet& set, std::int64_t row, int column, const Shape& shape) {
  Value value;
  value.shape = shape;
  const engine::Datum datum = set.datum(row, column);
  value.null = datum.isNull();
  if (datum.isInteger()) value.exact = datum.integer();
  if (datum.isBlob()) value.exact = wideNumber(datum.bytes());
  if (datum.isReal()) value.real = datum.real();
  if (datum.isText()) value.text = datum.text();
  return value.shown();
}

class Collector : public engine::ResultSink {
 public:
  explicit Collector(Result& result) : result_(result) {}
  void onResultSet(engine::ResultSet&& set) override {
    result_.columns.clear();
    result_.rows.clear();
    for (const auto& column : set.columns())
      result_.columns.push_back({column.name, shapeOf(column.type), engine::describe(column.type)});
    for (std::int64_t row = 0; row < set.rowCount(); ++row) {
      auto& cells = result_.rows.emplace_back();
      for (std::size_t i = 0; i < result_.columns.size(); ++i)
        cells.push_back(cell(set, row, static_cast<int>(i), result_.columns[i].shape));
    }
  }
  void onRowCount(std::int64_t) override {}
  void onMessage(int, const std::string&) override {}

 private:
  Result& result_;
};

}  // namespace

struct Runner::Server {
  std::shared_ptr<engine::Server> server;
  std::unique_ptr<engine::Session> session;
};

Runner::Runner() : server_(std::make_unique<Server>()) {
  static int count = 0;
  folder_ = std::filesystem::temp_directory_path() /
            ("zembera-campaign-" + std::to_string(getpid()) + "-" + std::to_string(++count));
  server_->server = engine::Server::create(folder_, "sa", "gizli");
  server_->session = std::make_unique<engine::Session>(server_->server, "sa", "gizli", "");
  run("CREATE DATABASE K");
  run("USE K");
}

Runner::~Runner() {
  server_.reset();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

Result Runner::run(const std::string& batch) {
  Result result;
  Collector sink(result);
  try {
    server_->session->execute(batch, sink);
  } catch (const engine::Error& error) {
    result.error = error.number();
    result.message = error.what();
  }
  return result;
}

std::string Result::text() const {
  if (error) return "!" + std::to_string(error) + "\n";
  std::string out;
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) out += (i ? " " : "") + row[i];
    out += '\n';
  }
  return out;
}

void Report::differ(const std::string& what, const std::string& expected, const std::string& found) {
  differences.push_back(what + "\n  expected " + expected + "\n  found    " + found);
}

}  // namespace campaign
