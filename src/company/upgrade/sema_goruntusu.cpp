#include "company/upgrade/sema_goruntusu.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

namespace company::upgrade {
namespace {

std::string folded(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return out;
}

constexpr std::array<std::pair<std::string_view, int>, 17> fixedLengths{{
    {"BIT", 1},
    {"TINYINT", 1},
    {"SMALLINT", 2},
    {"INT", 4},
    {"BIGINT", 8},
    {"REAL", 4},
    {"FLOAT", 8},
    {"MONEY", 8},
    {"SMALLMONEY", 4},
    {"DATETIME", 8},
    {"SMALLDATETIME", 4},
    {"TEXT", 16},
    {"NTEXT", 16},
    {"DECIMAL", 9},
    {"NUMERIC", 9},
    {"CHAR", 1},
    {"VARCHAR", 1},
}};

}  // namespace

TipBoy tipBoy(std::string_view declaration) {
  const auto bracket = declaration.find('(');
  std::string type = folded(declaration.substr(0, bracket));
  while (!type.empty() && type.back() == ' ') type.pop_back();
  if (bracket != std::string_view::npos && type.find("CHAR") != std::string::npos) {
    const int n = std::atoi(std::string(declaration.substr(bracket + 1)).c_str());
    return {type, type.front() == 'N' ? 2 * n : n};
  }
  for (const auto& [name, length] : fixedLengths)
    if (name == type) return {type, length};
  return {type, 0};
}

SemaGoruntusu SemaGoruntusu::oku(db::Connection& connection, const std::string& veritabani) {
  SemaGoruntusu out;
  const auto tablo = [&](const std::string& ad) {
    return veritabani.empty() ? ad : veritabani + ".dbo." + ad + " " + ad;
  };
  if (const auto rows = connection.query("SELECT name, type FROM " + tablo("sysobjects") +
                                         " WHERE type IN ('U','V','TR')")) {
    for (std::int64_t r = 0; r < rows->count(); ++r)
      out.nesneEkle(rows->value(r, 0).trimmed(), rows->value(r, 1).trimmed());
  }
  const auto rows = connection.query(
      "SELECT sysobjects.name, syscolumns.name, systypes.name, syscolumns.length, syscolumns.isnullable, "
      "syscolumns.colstat, syscolumns.cdefault FROM " +
      tablo("syscolumns") + ", " + tablo("systypes") + ", " + tablo("sysobjects") +
      " WHERE "
      "syscolumns.xtype=systypes.xtype AND "
      "systypes.xusertype=systypes.xtype AND syscolumns.id=sysobjects.id AND sysobjects.type='U'");
  if (!rows) return out;
  for (std::int64_t r = 0; r < rows->count(); ++r) {
    KolonDurumu durum;
    durum.type = folded(rows->value(r, 2).trimmed());
    durum.length = static_cast<int>(rows->value(r, 3).integer());
    durum.nullable = rows->value(r, 4).boolean();
    durum.identity = (rows->value(r, 5).integer() & 1) != 0;
    durum.varsayilanli = rows->value(r, 6).integer() != 0;
    out.kolonYaz(rows->value(r, 0).trimmed(), rows->value(r, 1).text(), std::move(durum));
  }
  return out;
}

bool SemaGoruntusu::nesneVar(std::string_view ad, std::string_view tip) const {
  const auto it = nesneler_.find(folded(ad));
  return it != nesneler_.end() && it->second == tip;
}

const KolonDurumu* SemaGoruntusu::kolon(std::string_view tablo, std::string_view kolon) const {
  const auto table = kolonlar_.find(folded(tablo));
  if (table == kolonlar_.end()) return nullptr;
  const auto column = table->second.find(folded(kolon));
  return column == table->second.end() ? nullptr : &column->second;
}

std::size_t SemaGoruntusu::tabloSayisi() const {
  return static_cast<std::size_t>(std::count_if(nesneler_.begin(), nesneler_.end(),
                                                [](const auto& entry) { return entry.second == "U"; }));
}

void SemaGoruntusu::nesneEkle(std::string_view ad, std::string_view tip) {
  nesneler_[folded(ad)] = tip;
}

void SemaGoruntusu::nesneSil(std::string_view ad) {
  nesneler_.erase(folded(ad));
  kolonlar_.erase(folded(ad));
}

void SemaGoruntusu::kolonYaz(std::string_view tablo, std::string_view kolon, KolonDurumu durum) {
  kolonlar_[folded(tablo)][folded(kolon)] = std::move(durum);
}

void SemaGoruntusu::kolonSil(std::string_view tablo, std::string_view kolon) {
  const auto table = kolonlar_.find(folded(tablo));
  if (table != kolonlar_.end()) table->second.erase(folded(kolon));
}

void SemaGoruntusu::varsayilanlariSil(std::string_view tablo) {
  for (auto& [ad, durum] : kolonlar_[folded(tablo)]) durum.varsayilanli = false;
}

}  // namespace company::upgrade
