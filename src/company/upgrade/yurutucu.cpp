#include "company/upgrade/yurutucu.h"

#include <algorithm>

namespace company::upgrade {

std::int64_t Yurutucu::gonder(const std::string& statement) {
  ++sayilar_.gonderilen;
  return baglanti().execute(statement);
}

bool Yurutucu::calistir(const std::string& statement) {
  if (denemeMi()) {
    deneme_(statement);
    return true;
  }
  try {
    gonder(statement);
    return true;
  } catch (const db::SqlError& error) {
    if (error.lasting()) throw;
    ++sayilar_.reddedilen;
    return false;
  }
}

bool Yurutucu::onar(const std::string& statement) {
  if (denemeMi()) return calistir(statement);
  try {
    sayilar_.satirlar += std::max<std::int64_t>(0, gonder(statement));
    return true;
  } catch (const db::SqlError& error) {
    if (error.lasting()) throw;
    ++sayilar_.reddedilen;
    return false;
  }
}

std::unique_ptr<db::Rows> Yurutucu::oku(const std::string& statement) {
  try {
    ++sayilar_.gonderilen;
    return baglanti().query(statement);
  } catch (const db::SqlError& error) {
    if (error.lasting()) throw;
    // A trial reads a database that lacks what the run would have added before.
    if (!denemeMi()) ++sayilar_.reddedilen;
    return nullptr;
  }
}

void Yurutucu::geriAl() {
  try {
    gonder("IF @@TRANCOUNT>0 ROLLBACK TRANSACTION");
  } catch (const db::SqlError& error) {
    if (error.lasting()) throw;
  }
}

bool Yurutucu::butun(const std::vector<Adim>& adimlar) {
  if (denemeMi()) {
    for (const Adim& adim : adimlar) deneme_(adim.statement);
    return true;
  }
  std::int64_t satirlar = 0;
  gonder("BEGIN TRANSACTION");
  try {
    for (const Adim& adim : adimlar) {
      const std::int64_t rows = gonder(adim.statement);
      if (adim.onarim) satirlar += std::max<std::int64_t>(0, rows);
    }
    gonder("COMMIT TRANSACTION");
  } catch (const db::SqlError& error) {
    if (error.kind() == db::ErrorKind::LinkBroken) throw;
    geriAl();
    if (error.lasting()) throw;
    return false;
  }
  sayilar_.satirlar += satirlar;
  return true;
}

bool Yurutucu::topluca(const std::vector<std::string>& statements) {
  constexpr std::size_t perBatch = 100;  // long enough to save round trips, short enough for any server
  std::vector<Adim> adimlar;
  for (std::size_t i = 0; i < statements.size(); ++i) {
    if (i % perBatch == 0) adimlar.push_back({"", true});
    adimlar.back().statement += statements[i];
    adimlar.back().statement += '\n';
  }
  return adimlar.empty() || butun(adimlar);
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
