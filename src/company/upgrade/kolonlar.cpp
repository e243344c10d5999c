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

bool hasDefault(const KolonIstegi& istek) {
  return !istek.Bos_Gecer && !istek.Varsayilan.empty();
}

// What stands behind ADD for one column.
std::string columnClause(const KolonIstegi& istek) {
  std::string text = istek.Kolon + " " + typeText(istek);
  if (hasDefault(istek)) text += " NOT NULL DEFAULT " + istek.Varsayilan;
  if (istek.Kimlik) text += " NOT NULL IDENTITY";
  return text;
}

std::string fillClause(const KolonIstegi& istek) {
  return istek.Kolon + "=" + doldurmaDegeri(istek.Tip, istek.Varsayilan);
}

bool isFilled(const KolonIstegi& istek) {
  return istek.Bos_Gecer && !istek.Varsayilan.empty();
}

// Rebuilds the table through a copy. Indexes, keys and triggers are not carried over, and that is how
// this route is meant to work. All or nothing: a refused copy must not cost the table.
void rebuildTable(Yurutucu& y, SemaGoruntusu& sema, const KolonIstegi& istek) {
  std::string alter = "ALTER TABLE YEDEK ALTER COLUMN " + istek.Kolon + " " + typeText(istek);
  if (!istek.Bos_Gecer) alter += " NOT NULL";
  if (!istek.Varsayilan.empty())
    alter += isCharType(istek.Tip) ? " DEFAULT '" + db::escape(istek.Varsayilan) + "'"
                                   : " DEFAULT " + istek.Varsayilan;
  if (istek.Kimlik) alter += " IDENTITY";
  if (y.butun({{"SELECT * INTO YEDEK FROM " + istek.Tablo},
               {"DROP TABLE " + istek.Tablo},
               {alter},
               {"SELECT * INTO " + istek.Tablo + " FROM YEDEK"},
               {"DROP TABLE YEDEK"}})) {
    ++y.sayilar().degisen;
    sema.varsayilanlariSil(istek.Tablo);
  } else {
    ++y.sayilar().reddedilen;
  }
}

void restoreDefaults(Yurutucu& y, const SemaGoruntusu& sema, const std::vector<KolonIstegi>& istekler) {
  for (const KolonIstegi& istek : istekler) {
    const KolonDurumu* durum = sema.kolon(istek.Tablo, istek.Kolon);
    if (!durum || durum->varsayilanli || durum->nullable || !hasDefault(istek)) continue;
    if (y.calistir("ALTER TABLE " + istek.Tablo + " ADD DEFAULT " + istek.Varsayilan + " FOR " + istek.Kolon))
      ++y.sayilar().degisen;
  }
}

// A column of one table with its difference and what follows it.
struct Is {
  const KolonIstegi* istek;
  Gocler gocler;
};

void appendMigrations(std::vector<Yurutucu::Adim>& adimlar, const Is& is) {
  for (const std::string& statement : is.gocler.deyimler) adimlar.push_back({statement, true});
}

void migrateAlone(Yurutucu& y, const Is& is, TabloSonucu& sonuc) {
  if (is.gocler.birlikte) {
    std::vector<Yurutucu::Adim> adimlar;
    appendMigrations(adimlar, is);
    if (y.butun(adimlar)) return;
    ++y.sayilar().reddedilen;
    sonuc.basarisizGocler.insert(is.istek->Kolon);
    return;
  }
  for (const std::string& statement : is.gocler.deyimler)
    if (!y.onar(statement)) sonuc.basarisizGocler.insert(is.istek->Kolon);
}

void remember(Yurutucu& y, SemaGoruntusu& sema, const KolonIstegi& istek) {
  ++y.sayilar().eklenen;
  const bool nullable = istek.Bos_Gecer || (istek.Varsayilan.empty() && !istek.Kimlik);
  sema.kolonYaz(istek.Tablo, istek.Kolon, {istek.Tip, istek.Boy, nullable, istek.Kimlik, hasDefault(istek)});
}

std::vector<Yurutucu::Adim> additionSteps(const KolonIstegi& istek) {
  std::vector<Yurutucu::Adim> adimlar{{eklemeMetni(istek)}};
  if (const std::string fill = doldurmaMetni(istek); !fill.empty()) adimlar.push_back({fill, true});
  return adimlar;
}

void addAlone(Yurutucu& y, SemaGoruntusu& sema, const Is& is, TabloSonucu& sonuc) {
  std::vector<Yurutucu::Adim> adimlar = additionSteps(*is.istek);
  if (!is.gocler.deyimler.empty()) {
    appendMigrations(adimlar, is);
    if (y.butun(adimlar)) return remember(y, sema, *is.istek);
  }
  Kolon_Duzenle(y, sema, *is.istek);
  migrateAlone(y, is, sonuc);
}

void addTogether(Yurutucu& y, SemaGoruntusu& sema, const std::vector<Is>& added, TabloSonucu& sonuc) {
  const std::string table = added.front().istek->Tablo;
  std::string add, fill;
  for (const Is& is : added) {
    add += (add.empty() ? "ALTER TABLE " + table + " ADD " : ", ") + columnClause(*is.istek);
    if (isFilled(*is.istek))
      fill += (fill.empty() ? "UPDATE " + table + " SET " : ",") + fillClause(*is.istek);
  }
  std::vector<Yurutucu::Adim> adimlar{{add}};
  if (!fill.empty()) adimlar.push_back({fill, true});
  for (const Is& is : added) appendMigrations(adimlar, is);
  if (y.butun(adimlar))
    for (const Is& is : added) remember(y, sema, *is.istek);
  else
    for (const Is& is : added) addAlone(y, sema, is, sonuc);
}

void changeAlone(Yurutucu& y, SemaGoruntusu& sema, const Is& is, TabloSonucu& sonuc) {
  if (!is.gocler.deyimler.empty() && !is.istek->Yedekle) {
    std::vector<Yurutucu::Adim> adimlar{{degistirmeMetni(*is.istek)}};
    appendMigrations(adimlar, is);
    if (y.butun(adimlar)) {
      ++y.sayilar().degisen;
      return;
    }
  }
  Kolon_Duzenle(y, sema, *is.istek);
  migrateAlone(y, is, sonuc);
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

std::string doldurmaDegeri(const std::string& tip, const std::string& deger) {
  const bool bare = tip == "MONEY" || tip == "FLOAT" || tip == "INT";
  return bare ? deger : "'" + db::escape(deger) + "'";
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
    const std::string fill = doldurmaMetni(istek);
    if (!fill.empty() && y.butun(additionSteps(istek))) {
      remember(y, sema, istek);
    } else if (y.calistir(eklemeMetni(istek))) {
      remember(y, sema, istek);
      if (!fill.empty()) y.onar(fill);
    }
    return sonuc;
  }
  if (istek.Yedekle)
    rebuildTable(y, sema, istek);
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
                           const GocKaynagi& gocler) {
  TabloSonucu out;
  std::vector<KolonIstegi> istekler;
  std::vector<Is> rebuilt, added, alone;
  bool mayBeRebuilt = false;
  for (const catalog::ColumnDef& column : table.columns)
    if (!column.dropped) istekler.push_back(kolonIstegi(table, column, year));
  for (const KolonIstegi& istek : istekler) {
    mayBeRebuilt |= istek.Yedekle;
    const Sonuc sonuc = kolonFarki(sema, istek);
    out.kolonlar[istek.Kolon] = sonuc;
    if (sonuc == Sonuc::Degismedi) continue;
    // A name with a trailing blank never matches the column that it adds; it must not spoil the others.
    const bool together = sonuc == Sonuc::Eklendi && istek.Kolon.back() != ' ';
    const bool rebuild = sonuc != Sonuc::Eklendi && istek.Yedekle;
    (rebuild ? rebuilt : together ? added : alone).push_back({&istek, gocler(istek.Kolon, sonuc)});
  }
  for (const Is& is : rebuilt) changeAlone(y, sema, is, out);
  if (!added.empty()) addTogether(y, sema, added, out);
  for (const Is& is : alone) changeAlone(y, sema, is, out);
  if (mayBeRebuilt) restoreDefaults(y, sema, istekler);
  return out;
}

}  // namespace company::upgrade
