// Sends the upgrade's statements, counts what they did and moves the bars. In a trial it sends nothing
// that writes: it hands the statements to a listener instead.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "session/oturum.h"

namespace company::upgrade {

struct Sayilar {
  std::int64_t tablolar = 0;    // tables added
  std::int64_t eklenen = 0;     // columns added
  std::int64_t degisen = 0;     // columns changed
  std::int64_t satirlar = 0;    // rows repaired: fills, migrations, repairs
  std::int64_t reddedilen = 0;  // statements that the server refused
  std::int64_t gonderilen = 0;  // statements sent in all, reads included
};

class Yurutucu {
 public:
  using Dinleyici = std::function<void(const std::string& statement)>;

  // `deneme` set: a trial.
  explicit Yurutucu(session::Oturum& oturum, Dinleyici deneme = {})
      : o_(oturum), deneme_(std::move(deneme)) {}

  bool denemeMi() const { return static_cast<bool>(deneme_); }
  session::Oturum& oturum() { return o_; }
  db::Connection& baglanti() { return *o_.Baglanti; }
  Sayilar& sayilar() { return sayilar_; }

  // One writing statement. A refusal is counted and otherwise passed over, as the upgrade wants it; false
  // then. A broken link is thrown on (db::SqlError), and so is what would refuse all that follows: a full
  // disk, a file that cannot be written or read.
  bool calistir(const std::string& statement);
  // The same, with its rows counted as repaired.
  bool onar(const std::string& statement);
  // A reading statement; null when it was refused.
  std::unique_ptr<db::Rows> oku(const std::string& statement);

  // Runs `statements` in one transaction: all of them, or none and false, nothing counted as refused.
  // Rows are counted as repaired when `onarim` is set.
  struct Adim {
    std::string statement;
    bool onarim = false;
  };
  bool butun(const std::vector<Adim>& adimlar);
  // Many small statements in a few round trips, all in one transaction.
  bool topluca(const std::vector<std::string>& statements);

  void mesaj(const std::string& text);
  void adim(std::int64_t value, std::int64_t maximum);
  void genelIlerle();
  void genelKur(std::int64_t maximum);
  void genelBitir();

 private:
  std::int64_t gonder(const std::string& statement);
  void geriAl();

  session::Oturum& o_;
  Dinleyici deneme_;
  Sayilar sayilar_;
  std::int64_t genel_ = 0, genelSon_ = 1;
};

}  // namespace company::upgrade
