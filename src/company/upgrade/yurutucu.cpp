#include "company/upgrade/yurutucu.h"

#include <algorithm>
#include <utility>

namespace company::upgrade {

void Yurutucu::denemeyeBasla() {
  if (!denemeMi()) return;
  baglanti().execute("BEGIN TRANSACTION");
  denemeIslemi_ = true;
}

void Yurutucu::denemeyiBitir() {
  if (!std::exchange(denemeIslemi_, false)) return;
  try {
    baglanti().execute("IF @@TRANCOUNT>0 ROLLBACK TRANSACTION");
  } catch (const db::SqlError&) {  // the link is gone, and the transaction with it
  }
}

void Yurutucu::bildir(std::vector<std::string> deyimler, bool birlikte, bool reddedilir) const {
  if (denemeMi()) deneme_({o_.Baglanti->parts().database, std::move(deyimler), birlikte, reddedilir});
}

// Some refusals cost the server's whole transaction; what a trial would tell after one is not what the run
// does.
void Yurutucu::denemeSuruyor() {
  if (!denemeIslemi_) return;
  const auto rows = baglanti().query("SELECT @@TRANCOUNT");
  if (!rows || rows->value(0, 0).integer() > 0) return;
  throw db::SqlError(db::ErrorKind::StatementRefused, 0,
                     "Sunucu denemenin işlemini geri aldı; deneme sürdürülemiyor.");
}

std::int64_t Yurutucu::gonder(const std::string& statement) {
  ++sayilar_.gonderilen;
  return denemeMi() && !denemeIslemi_ ? 0 : baglanti().execute(statement);
}

bool Yurutucu::tek(const std::string& statement, bool onarim) {
  bool refused = false;
  try {
    const std::int64_t rows = gonder(statement);
    if (onarim) sayilar_.satirlar += std::max<std::int64_t>(0, rows);
  } catch (const db::SqlError& error) {
    if (error.lasting()) throw;
    denemeSuruyor();
    ++sayilar_.reddedilen;
    refused = true;
  }
  bildir({statement}, false, refused);
  return !refused;
}

bool Yurutucu::calistir(const std::string& statement) {
  return tek(statement, false);
}

bool Yurutucu::onar(const std::string& statement) {
  return tek(statement, true);
}

std::unique_ptr<db::Rows> Yurutucu::oku(const std::string& statement) {
  try {
    ++sayilar_.gonderilen;
    return baglanti().query(statement);
  } catch (const db::SqlError& error) {
    if (error.lasting()) throw;
    denemeSuruyor();
    ++sayilar_.reddedilen;
    return nullptr;
  }
}

void Yurutucu::islemAc() {
  gonder(denemeMi() ? "SAVE TRANSACTION ADIM" : "BEGIN TRANSACTION");
}

void Yurutucu::geriAl() {
  try {
    gonder(denemeMi() ? "ROLLBACK TRANSACTION ADIM" : "IF @@TRANCOUNT>0 ROLLBACK TRANSACTION");
  } catch (const db::SqlError& error) {
    if (error.lasting()) throw;
  }
}

bool Yurutucu::butun(const std::vector<Adim>& adimlar) {
  std::int64_t satirlar = 0;
  islemAc();
  try {
    for (const Adim& adim : adimlar) {
      const std::int64_t rows = gonder(adim.statement);
      if (adim.onarim) satirlar += std::max<std::int64_t>(0, adim.satir >= 0 ? adim.satir : rows);
    }
    if (denemeMi())
      ++sayilar_.gonderilen;  // the run's COMMIT
    else
      gonder("COMMIT TRANSACTION");
  } catch (const db::SqlError& error) {
    if (error.kind() == db::ErrorKind::LinkBroken) throw;
    denemeSuruyor();
    geriAl();
    if (error.lasting()) throw;
    return false;
  }
  sayilar_.satirlar += satirlar;
  std::vector<std::string> deyimler;
  for (const Adim& adim : adimlar) deyimler.push_back(adim.statement);
  bildir(std::move(deyimler), true, false);
  return true;
}

std::vector<Yurutucu::Adim> Yurutucu::yiginlar(const std::vector<Adim>& adimlar) {
  constexpr std::size_t perBatch = 100;  // long enough to save round trips, short enough for any server
  std::vector<Adim> out;
  for (std::size_t i = 0; i < adimlar.size(); ++i) {
    if (i % perBatch == 0) out.push_back({"", true, 0});
    out.back().statement += adimlar[i].statement;
    out.back().satir += std::max<std::int64_t>(0, adimlar[i].satir);
  }
  return out;
}

bool Yurutucu::kabulEdilir(const std::string& statement) {
  bool accepted = true;
  islemAc();
  try {
    gonder(statement);
  } catch (const db::SqlError& error) {
    if (error.kind() == db::ErrorKind::LinkBroken) throw;
    denemeSuruyor();
    accepted = false;
  }
  geriAl();
  return accepted;
}

void Yurutucu::mesaj(const std::string& text) {
  o_.ilerleme->text(text);
  o_.ilerleme->pump();
}

void Yurutucu::adim(std::int64_t value, std::int64_t maximum) {
  o_.ilerleme->step(value, maximum);
  o_.ilerleme->pump();
}

void Yurutucu::genelKur(std::int64_t maximum) {
  genel_ = 0;
  genelSon_ = std::max<std::int64_t>(1, maximum);
  o_.ilerleme->whole(0, genelSon_);
}

void Yurutucu::genelBitir() {
  genel_ = genelSon_;
  o_.ilerleme->whole(genel_, genelSon_);
}

void Yurutucu::genelIlerle() {
  genel_ = std::min(genel_ + 1, genelSon_);
  o_.ilerleme->whole(genel_, genelSon_);
  o_.ilerleme->pump();
}

}  // namespace company::upgrade
