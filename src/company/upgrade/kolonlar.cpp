#include "company/upgrade/kolonlar.h"

#include <algorithm>

#include "db/value.h"

namespace company::upgrade {
namespace {

bool isCharType(const std::string& type) {
  return type == "CHAR" || type == "VARCHAR";
}

std::string typeText(const KolonIstegi& istek) {
  return isCharType(istek.Tip) ? istek.Tip + "(" + std::to_string(istek.Boy) + ") " : istek.Tip;
}

// What stands behind ADD for one column.
std::string columnClause(const KolonIstegi& istek) {
  std::string text = istek.Kolon + " " + typeText(istek);
  if (!istek.Bos_Gecer && !istek.Varsayilan.empty()) text += " NOT NULL DEFAULT " + istek.Varsayilan;
  if (istek.Kimlik) text += " NOT NULL IDENTITY";
  return text;
}

std::string fillClause(const KolonIstegi& istek) {
  const bool bare = istek.Tip == "MONEY" || istek.Tip == "FLOAT" || istek.Tip == "INT";
  return istek.Kolon + "=" + (bare ? istek.Varsayilan : "'" + db::escape(istek.Varsayilan) + "'");
}

bool isFilled(const KolonIstegi& istek) {
  return istek.Bos_Gecer && !istek.Varsayilan.empty();
}

void remember(SemaGoruntusu& sema, const KolonIstegi& istek) {
  const bool nullable = istek.Bos_Gecer || (istek.Varsayilan.empty() && !istek.Kimlik);
  sema.kolonYaz(istek.Tablo, istek.Kolon, {istek.Tip, istek.Boy, nullable, istek.Kimlik});
}

// Rebuilds the table through a copy. Indexes, keys and triggers are not carried over, and that is how
// this route is meant to work. All or nothing: a refused copy must not cost the table.
void rebuildTable(Yurutucu& y, const KolonIstegi& istek) {
  std::string alter = "ALTER TABLE YEDEK ALTER COLUMN " + istek.Kolon + " " + typeText(istek);
  if (!istek.Bos_Gecer) alter += " NOT NULL";
  if (!istek.Varsayilan.empty())
    alter += isCharType(istek.Tip) ? " DEFAULT '" + db::escape(istek.Varsayilan) + "'"
                                   : " DEFAULT " + istek.Varsayilan;
  if (istek.Kimlik) alter += " IDENTITY";
  if (!y.butun({{"SELECT * INTO YEDEK FROM " + istek.Tablo},
                {"DROP TABLE " + istek.Tablo},
                {alter},
                {"SELECT * INTO " + istek.Tablo + " FROM YEDEK"},
                {"DROP TABLE YEDEK"}}))
    ++y.sayilar().reddedilen;
}

void addTogether(Yurutucu& y, SemaGoruntusu& sema, const std::vector<const KolonIstegi*>& added,
                 const Gocler& gocler, TabloSonucu& sonuc) {
  const std::string table = added.front()->Tablo;
  std::string add, fill;
  for (const KolonIstegi* istek : added) {
    add += (add.empty() ? "ALTER TABLE " + table + " ADD " : ", ") + columnClause(*istek);
    if (isFilled(*istek)) fill += (fill.empty() ? "UPDATE " + table + " SET " : ",") + fillClause(*istek);
  }
  std::vector<Yurutucu::Adim> adimlar{{add}};
  if (!fill.empty()) adimlar.push_back({fill, true});
  for (const KolonIstegi* istek : added)
    if (const auto goc = gocler.find(istek->Kolon); goc != gocler.end())
      for (const std::string& statement : goc->second) adimlar.push_back({statement, true});
  if (y.butun(adimlar)) {
    y.sayilar().eklenen += static_cast<std::int64_t>(added.size());
    for (const KolonIstegi* istek : added) remember(sema, *istek);
    return;
  }
  for (const KolonIstegi* istek : added) {
    Kolon_Duzenle(y, sema, *istek);
    if (const auto goc = gocler.find(istek->Kolon); goc != gocler.end())
      for (const std::string& statement : goc->second)
        if (!y.onar(statement)) sonuc.basarisizGocler.insert(istek->Kolon);
  }
}

}  // namespace

KolonIstegi kolonIstegi(const catalog::TableDef& table, const catalog::ColumnDef& column, int year) {
  KolonIstegi istek;
  const TipBoy tip = tipBoy(column.type);
  istek.Tablo = table.name;
  istek.Kolon = column.askedName.empty() ? column.name : column.askedName;
  istek.Tip = tip.type;
  istek.Boy = column.askedLength != 0 ? column.askedLength : tip.length;
  istek.Bos_Gecer = table.mayBeNull(column);
  istek.Kimlik = column.identity;
  istek.Yedekle = column.rebuild;
  istek.Varsayilan = !column.askedDefault.empty() ? column.askedDefault
                     : column.hasFill             ? column.fill
                                                  : column.defaultSql;
  if (const auto mark = istek.Varsayilan.find("<year>"); mark != std::string::npos)
    istek.Varsayilan.replace(mark, 6, std::to_string(year));
  return istek;
}

Sonuc kolonFarki(const SemaGoruntusu& sema, const KolonIstegi& istek) {
  const KolonDurumu* durum = sema.kolon(istek.Tablo, istek.Kolon);
  if (!durum) return Sonuc::Eklendi;
  Sonuc sonuc = Sonuc::Degismedi;
  if (durum->length != istek.Boy) sonuc = Sonuc::Boy;
  if (durum->type != istek.Tip) sonuc = Sonuc::Tip;
  if (durum->nullable != istek.Bos_Gecer) sonuc = Sonuc::BosGecer;
  if (durum->identity != istek.Kimlik) sonuc = Sonuc::Kimlik;
  return sonuc;
}

std::string eklemeMetni(const KolonIstegi& istek) {
  return "ALTER TABLE " + istek.Tablo + " ADD " + columnClause(istek);
}

std::string doldurmaMetni(const KolonIstegi& istek) {
  return isFilled(istek) ? "UPDATE " + istek.Tablo + " SET " + fillClause(istek) : "";
}

std::string degistirmeMetni(const KolonIstegi& istek) {
  std::string text = "ALTER TABLE " + istek.Tablo + " ALTER COLUMN " + istek.Kolon + " " + typeText(istek);
  if (!istek.Bos_Gecer) text += " NOT NULL";
  if (istek.Kimlik) text += " IDENTITY";
  return text;
}

Sonuc Kolon_Duzenle(Yurutucu& y, SemaGoruntusu& sema, const KolonIstegi& istek) {
  const Sonuc sonuc = kolonFarki(sema, istek);
  if (sonuc == Sonuc::Degismedi) return sonuc;
  if (sonuc == Sonuc::Eklendi) {
    if (!y.calistir(eklemeMetni(istek))) return sonuc;
    ++y.sayilar().eklenen;
    if (const std::string fill = doldurmaMetni(istek); !fill.empty()) y.onar(fill);
    remember(sema, istek);
    return sonuc;
  }
  if (istek.Yedekle)
    rebuildTable(y, istek);
  else if (y.calistir(degistirmeMetni(istek)))
    ++y.sayilar().degisen;
  return sonuc;
}

void Kolon_Sil(Yurutucu& y, SemaGoruntusu& sema, const std::string& Tablo, const std::string& Kolon) {
  if (!sema.kolon(Tablo, Kolon)) return;
  if (y.calistir("ALTER TABLE " + Tablo + " DROP COLUMN " + Kolon)) {
    ++y.sayilar().degisen;
    sema.kolonSil(Tablo, Kolon);
  }
}

TabloSonucu tabloyuDuzenle(Yurutucu& y, SemaGoruntusu& sema, const catalog::TableDef& table, int year,
                           const Gocler& gocler) {
  TabloSonucu out;
  std::vector<KolonIstegi> istekler;
  std::vector<const KolonIstegi*> added, alone;
  for (const catalog::ColumnDef& column : table.columns)
    if (!column.dropped) istekler.push_back(kolonIstegi(table, column, year));
  for (const KolonIstegi& istek : istekler) {
    const Sonuc sonuc = kolonFarki(sema, istek);
    out.kolonlar[istek.Kolon] = sonuc;
    if (sonuc == Sonuc::Degismedi) continue;
    // A name with a trailing blank never matches the column that it adds; it must not spoil the others.
    const bool together = sonuc == Sonuc::Eklendi && istek.Kolon.back() != ' ';
    (together ? added : alone).push_back(&istek);
  }
  if (!added.empty()) addTogether(y, sema, added, gocler, out);
  for (const KolonIstegi* istek : alone) Kolon_Duzenle(y, sema, *istek);
  return out;
}

}  // namespace company::upgrade
