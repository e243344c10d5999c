// A driver around another one: it notes every statement, tells which were refused, and lets a test act
// before or after the n-th.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "db/connection.h"

namespace support {

struct Izleme {
  std::vector<std::string> deyimler;             // in the order sent
  std::vector<std::string> reddedilen;           // those the server refused
  std::function<void(std::size_t)> once, sonra;  // get the number of the statement, from 1
  bool satirSatir = false;  // batches go line by line, so that each statement of them is one of these
  void sifirla() { *this = {}; }
};

class IzleyenBaglanti : public db::Connection {
 public:
  IzleyenBaglanti(std::unique_ptr<db::Connection> asil, Izleme& izleme)
      : asil_(std::move(asil)), izleme_(izleme) {}

  void open(const db::ConnectionParts& parts) override { asil_->open(parts); }
  void close() override { asil_->close(); }
  db::State state() const override { return asil_->state(); }
  std::string connectionText() const override { return asil_->connectionText(); }
  const db::ConnectionParts& parts() const override { return asil_->parts(); }
  std::vector<db::TableColumn> tableColumns(const std::string& database, const std::string& table) override {
    return asil_->tableColumns(database, table);
  }
  void run(std::string_view batch, db::BatchSink& sink) override {
    for (std::size_t at = 0, end = 0; at <= batch.size(); at = end + 1) {
      end = izleme_.satirSatir ? std::min(batch.find('\n', at), batch.size()) : batch.size();
      gonder(batch.substr(at, end - at), sink);
    }
  }

 private:
  void gonder(std::string_view batch, db::BatchSink& sink) {
    izleme_.deyimler.emplace_back(batch);
    const std::size_t number = izleme_.deyimler.size();
    if (izleme_.once) izleme_.once(number);
    try {
      asil_->run(batch, sink);
    } catch (const db::SqlError&) {
      izleme_.reddedilen.emplace_back(batch);
      throw;
    }
    if (izleme_.sonra) izleme_.sonra(number);
  }

  std::unique_ptr<db::Connection> asil_;
  Izleme& izleme_;
};

class IzleyenSurucu : public db::ConnectionFactory {
 public:
  explicit IzleyenSurucu(std::unique_ptr<db::ConnectionFactory> asil) : asil_(std::move(asil)) {}
  std::unique_ptr<db::Connection> make(const std::string& server) override {
    return std::make_unique<IzleyenBaglanti>(asil_->make(server), izleme);
  }
  std::unique_ptr<db::LocalServer> local(const std::string& server) override { return asil_->local(server); }

  Izleme izleme;

 private:
  std::unique_ptr<db::ConnectionFactory> asil_;
};

}  // namespace support
