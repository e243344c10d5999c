#include "istemci.h"

#include <cstdlib>

#include "db/odbc/sqlserver.h"

namespace scenarios {

namespace {

// As the engine's own rows are shown: texts without their padding, money with two digits.
std::string shown(const db::Value& value, db::FieldType type) {
  if (value.isNull()) return "NULL";
  std::string text = value.text();
  if (type == db::FieldType::Char || type == db::FieldType::NChar) text.erase(text.find_last_not_of(' ') + 1);
  const auto* decimal = value.as<db::Decimal>();
  if (decimal && (type == db::FieldType::Money || type == db::FieldType::SmallMoney))
    return engine::displayText(engine::Datum(decimal->unscaled), {engine::TypeId::Money});
  return text;
}

class Printer : public db::BatchSink {
 public:
  explicit Printer(engine::test::PrintingSink& to) : to_(to) {}
  void onRows(std::unique_ptr<db::Rows> rows) override {
    for (std::int64_t row = 0; row < rows->count(); ++row) {
      for (std::size_t i = 0; i < rows->fields().size(); ++i)
        to_.text +=
            (i > 0 ? "\t" : "") + shown(rows->value(row, static_cast<int>(i)), rows->fields()[i].type);
      to_.text += '\n';
    }
  }
  void onRowCount(std::int64_t rows) override { to_.rowCounts.push_back(rows); }
  void onMessage(const std::string& text) override { to_.onMessage(0, text); }

 private:
  engine::test::PrintingSink& to_;
};

template <class Work>
void asEngine(Work work) {
  try {
    work();
  } catch (const db::SqlError& error) {
    throw engine::Error(error.serverNumber(), error.what());
  }
}

}  // namespace

Istemci::Istemci(std::shared_ptr<engine::Server> server, const std::string& login,
                 const std::string& password, const std::string& database) {
  if (std::getenv("ZEMBERA_AGDAN") == nullptr) {
    session_ = std::make_unique<engine::Session>(std::move(server), login, password, database);
    return;
  }
  tds::Options options;
  options.port = 0;
  options.plainOnThisMachine = true;
  listener_ = std::make_unique<tds::Server>(std::move(server), options);
  connection_ = db::makeSqlServerConnection();
  asEngine([&] {
    connection_->open({"127.0.0.1," + std::to_string(listener_->port()), login, password, database, false});
  });
}

void Istemci::execute(const std::string& batch, engine::test::PrintingSink& sink) {
  if (session_) return session_->execute(batch, sink);
  Printer printer(sink);
  asEngine([&] { connection_->run(batch, printer); });
}

}  // namespace scenarios
