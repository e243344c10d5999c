// Rows as INSERT statements, and the way that they take to the server.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "db/connection.h"

namespace company::ornek {

// What the upgrade has added to a table: its columns and, of those that it fills in the rows it finds, the
// values for a new row, as SQL with a comma before each.
struct TabloEki {
  std::set<std::string, std::less<>> kolonlar;
  std::string dolguKolonlari, dolgular;
};

// One row of a table. Amounts are written as text literals: the server's plan for the statement then does not
// depend on how many digits they have.
class Kayit {
 public:
  explicit Kayit(std::string_view tablo, const TabloEki* ek = nullptr);
  Kayit& metin(std::string_view kolon, std::string_view deger);
  Kayit& sayi(std::string_view kolon, std::int64_t deger);
  Kayit& para(std::string_view kolon, std::int64_t kurus);
  Kayit& zaman(std::string_view kolon, const db::DateTime& deger);
  // Where the company has the column already.
  Kayit& varsaPara(std::string_view kolon, std::int64_t kurus);
  Kayit& varsaSayi(std::string_view kolon, std::int64_t deger);
  // An expression or a variable; also several columns and their values at once, commas between.
  Kayit& ham(std::string_view kolon, std::string_view sql);

  const std::string& tablo() const { return tablo_; }
  std::string kolonlar() const { return ek_ ? kolonlar_ + ek_->dolguKolonlari : kolonlar_; }
  std::string degerler() const { return ek_ ? degerler_ + ek_->dolgular : degerler_; }
  std::string sql() const;

 private:
  bool var(std::string_view kolon) const { return ek_ && ek_->kolonlar.contains(kolon); }

  std::string tablo_, kolonlar_, degerler_;
  const TabloEki* ek_;
};

std::string paraMetni(std::int64_t kurus);  // "1234.50"

// Rows of one table in one statement; none for no row.
std::string topluSql(std::span<const Kayit> kayitlar);

// Sends statements in transactions of very many rows.
class Yazici {
 public:
  explicit Yazici(db::Connection& baglanti) : baglanti_(baglanti) {}

  // Opens the first transaction; from here on no other run of the kind comes in before it ends.
  void basla(const std::string& kilit);
  // One batch that writes `satir` rows.
  void calistir(const std::string& batch, std::int64_t satir);
  // A statement that writes as many rows as the server says.
  void topluEkle(const std::string& statement);
  // The same as calistir(), and its one number.
  std::int64_t numara(const std::string& batch, std::int64_t satir);
  // A row whose turn comes when enough of its table are there; the table must have no trigger.
  void biriktir(Kayit kayit);
  // Sends what has been gathered.
  void bosalt();
  // The end: everything sent and committed.
  void bitir();
  void geriAl() noexcept;

  std::int64_t satir() const { return satir_; }
  // Some of it stands whatever comes.
  bool islendi() const { return islendi_; }
  db::Connection& baglanti() { return baglanti_; }

 private:
  void say(std::int64_t satir);

  db::Connection& baglanti_;
  std::vector<Kayit> bekleyen_;
  std::int64_t satir_ = 0, islemde_ = 0;
  bool acik_ = false, islendi_ = false;
};

}  // namespace company::ornek
