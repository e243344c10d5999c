// The column primitive of the upgrade: brings columns to their wanted state.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "catalog/definition.h"
#include "company/upgrade/sema_goruntusu.h"
#include "company/upgrade/yurutucu.h"

namespace company::upgrade {

enum class Sonuc : std::uint8_t { Degismedi = 0, Eklendi = 1, Tip = 2, Boy = 3, BosGecer = 4, Kimlik = 5 };

// What the upgrade asks of one column.
struct KolonIstegi {
  std::string Tablo, Kolon;
  std::string Tip;  // CHAR, INT ... in capitals
  int Boy = 0;      // as syscolumns.length reports it
  bool Bos_Gecer = true;
  bool Kimlik = false;
  std::string Varsayilan;  // default or fill value; "" for none
  bool Yedekle = false;
};

KolonIstegi kolonIstegi(const catalog::TableDef& table, const catalog::ColumnDef& column, int year);

// Compares only; each later difference overwrites the former.
Sonuc kolonFarki(const SemaGoruntusu& sema, const KolonIstegi& istek);

// Statements of the primitive.
std::string eklemeMetni(const KolonIstegi& istek);    // ALTER TABLE ... ADD ...
std::string doldurmaMetni(const KolonIstegi& istek);  // UPDATE ... SET ...; "" when nothing is filled
std::string doldurmaDegeri(const std::string& tip, const std::string& deger);  // as it stands in SQL
std::string degistirmeMetni(const KolonIstegi& istek);  // ALTER TABLE ... ALTER COLUMN ...

// One column, as the primitive does it alone.
Sonuc Kolon_Duzenle(Yurutucu& yurutucu, SemaGoruntusu& sema, const KolonIstegi& istek);
void Kolon_Sil(Yurutucu& yurutucu, SemaGoruntusu& sema, const std::string& Tablo, const std::string& Kolon);

// What must follow once the column has come out of the primitive so: statements, in their order.
struct Gocler {
  std::vector<std::string> deyimler;
  bool birlikte = false;  // all of them or none
};
using GocKaynagi = std::function<Gocler(const std::string& kolon, Sonuc sonuc)>;

// All columns of one table. A table that must be rebuilt is so first, as that costs the defaults it has;
// those that are wanted are given back at the end, also where an earlier rebuild has lost them. Added columns
// come by one ALTER TABLE and are filled by one UPDATE, a changed one by its own, each together with what
// must follow in one transaction: a run that breaks off leaves a column either missing or whole. What the
// server refuses is done again in smaller pieces, so that one refused statement costs nothing but itself.
struct TabloSonucu {
  std::map<std::string, Sonuc> kolonlar;
  std::set<std::string> basarisizGocler;  // columns with a refused statement behind them
};
TabloSonucu tabloyuDuzenle(Yurutucu& yurutucu, SemaGoruntusu& sema, const catalog::TableDef& table, int year,
                           const GocKaynagi& gocler);

}  // namespace company::upgrade
