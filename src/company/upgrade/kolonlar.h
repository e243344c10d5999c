// The column primitive of the upgrade: brings columns to their wanted state.
#pragma once

#include <cstdint>
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
std::string eklemeMetni(const KolonIstegi& istek);      // ALTER TABLE ... ADD ...
std::string doldurmaMetni(const KolonIstegi& istek);    // UPDATE ... SET ...; "" when nothing is filled
std::string degistirmeMetni(const KolonIstegi& istek);  // ALTER TABLE ... ALTER COLUMN ...

// One column, as the primitive does it alone.
Sonuc Kolon_Duzenle(Yurutucu& yurutucu, SemaGoruntusu& sema, const KolonIstegi& istek);
void Kolon_Sil(Yurutucu& yurutucu, SemaGoruntusu& sema, const std::string& Tablo, const std::string& Kolon);

// All columns of one table. Added columns come by one ALTER TABLE and are filled by one UPDATE, together
// with `gocler`, what must follow an added column, in one transaction: a run that breaks off leaves a
// column either missing or filled. Where the server refuses that, the columns are done one by one.
using Gocler = std::map<std::string, std::vector<std::string>>;  // column -> statements on Sonuc 1
struct TabloSonucu {
  std::map<std::string, Sonuc> kolonlar;
  std::set<std::string> basarisizGocler;  // columns whose statements were refused
};
TabloSonucu tabloyuDuzenle(Yurutucu& yurutucu, SemaGoruntusu& sema, const catalog::TableDef& table, int year,
                           const Gocler& gocler);

}  // namespace company::upgrade
