// Sends the upgrade's statements, counts what they did and moves the bars. A trial sends them, too, within
// one transaction that is taken back at the end: what it tells are the statements and the counts of the run.
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

// A writing statement of a trial, or several that the run sends in one transaction.
struct DenemeAdimi {
  std::string veritabani;
  std::vector<std::string> deyimler;
  bool birlikte = false;    // all of them or none
  bool reddedilir = false;  // the server refuses it in the run, too
};

class Yurutucu {
 public:
  using Dinleyici = std::function<void(const DenemeAdimi&)>;

  // `deneme` set: a trial.
  explicit Yurutucu(session::Oturum& oturum, Dinleyici deneme = {})
      : o_(oturum), deneme_(std::move(deneme)) {}

  bool denemeMi() const { return static_cast<bool>(deneme_); }
  // The transaction of a trial on the connection's database; outside of it a trial sends no statement that
  // writes.
  void denemeyeBasla();
  void denemeyiBitir();
  session::Oturum& oturum() { return o_; }
  db::Connection& baglanti() { return *o_.Baglanti; }
  Sayilar& sayilar() { return sayilar_; }

  // One writing statement. A refusal is counted and otherwise passed over, as the upgrade wants it; false
  // then. A broken link is thrown on (db::SqlError), and so is what would refuse all that follows: a full
  // disk, a file that cannot be written or read, in a trial the loss of its transaction.
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
    std::int64_t satir = -1;  // rows that it touches, where the server's count is not what counts
  };
  bool butun(const std::vector<Adim>& adimlar);
  // Many small statements in a few round trips; each must end in a line break and tell its rows.
  static std::vector<Adim> yiginlar(const std::vector<Adim>& adimlar);
  // Whether the server would take it; changes nothing.
  bool kabulEdilir(const std::string& statement);

  void mesaj(const std::string& text);
  void adim(std::int64_t value, std::int64_t maximum);
  void genelIlerle();
  void genelKur(std::int64_t maximum);
  void genelBitir();

 private:
  std::int64_t gonder(const std::string& statement);
  bool tek(const std::string& statement, bool onarim);
  void islemAc();
  void geriAl();
  void denemeSuruyor();
  void bildir(std::vector<std::string> deyimler, bool birlikte, bool reddedilir) const;

  session::Oturum& o_;
  Dinleyici deneme_;
  bool denemeIslemi_ = false;  // the trial's transaction is open
  Sayilar sayilar_;
  std::int64_t genel_ = 0, genelSon_ = 1;
};

}  // namespace company::upgrade
