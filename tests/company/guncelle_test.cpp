// What an upgrade makes of companies in every state, and what it leaves alone.
#include <algorithm>
#include <random>

#include "company/guncelle_ortami.h"
#include "company/ornek_veri.h"

namespace {

using namespace guncelle_testi;

const std::string kontrolNo = "ALTER TABLE MUHFISKART ADD FisKartKontrol_No  FLOAT NOT NULL DEFAULT 0";

std::vector<std::string> startingWith(const std::vector<std::string>& all, const std::string& start) {
  std::vector<std::string> out;
  std::ranges::copy_if(all, std::back_inserter(out),
                       [&](const auto& text) { return text.starts_with(start); });
  return out;
}

// A value of row `row`. All tables have the same ones, so that the copies that triggers keep in step are so
// from the start.
std::string sampleValue(const std::string& table, const schema::ColumnDef& column, int row) {
  const auto tip = company::upgrade::tipBoy(column.baseType);
  const std::string number = std::to_string(row);
  // By its kind a trigger knows the rows that belong to its table.
  if (column.name == "Islem_Tipi") return "'" + table.substr(0, 9) + "'";
  if (tip.type == "NTEXT") return "N'" + number + "'";
  if (tip.type == "CHAR" || tip.type == "VARCHAR" || tip.type == "TEXT") return "'" + number + "'";
  if (tip.type == "DATETIME") return "'2012010" + number + "'";
  return tip.type == "BIT" ? "1" : number;
}

// Three rows more in every table of the company; where the first rows leave the numbers free, a row's
// identity is its other numbers, too.
void fillEveryTable(Baglam& b) {
  // By first rows or by triggers.
  static const std::set<std::string> filled{"FIYATTANIM", "ISYERITANIM", "MUHBAKIYE"};
  db::Connection& connection = b.baglan("FIRMA");
  for (const std::string& name : schema::tableOrder(schema::Stage::Base)) {
    const schema::TableDef& table = *schema::table(name);
    if (filled.contains(name)) continue;
    for (int row = 1; row <= 3; ++row) {
      std::string names, values;
      for (const schema::ColumnDef& column : table.columns) {
        if (column.identity || column.stage != schema::Stage::Base) continue;
        names += (names.empty() ? "" : ",") + column.name;
        values += (values.empty() ? "" : ",") + sampleValue(name, column, row);
      }
      const std::string sql = "INSERT INTO " + name + " (" + names + ") VALUES (" + values + ")";
      EXPECT_NO_THROW(connection.execute(sql)) << sql;
    }
  }
}

// A third way to the same schema: the statements that make every table as it is in the end.
company::Sema finalSchema(Baglam& b) {
  b.baglan("master").execute("CREATE DATABASE SON");
  db::Connection& connection = b.baglan("SON");
  for (const schema::TableDef& table : schema::tables()) {
    connection.execute(createStatement(table, schema::Stage::Upgrade));
    for (const std::string& index : table.indexes) connection.execute(index);
  }
  return company::semaOku(connection);
}

TEST_F(Guncelle, BaseCompanyGetsTheWholeSchemaAndKeepsEveryRow) {
  fillEveryTable(*b);
  const Icerik before = icerik(*b, "FIRMA");
  b->izleme.sifirla();
  const GuncellemeSonucu sonuc = b->guncelle();
  ASSERT_TRUE(sonuc.tamamlandi) << sonuc.hata;
  EXPECT_EQ(b->izleme.reddedilen, std::vector<std::string>{kontrolNo});
  EXPECT_EQ(sonuc.sayilar.reddedilen, 1);
  EXPECT_EQ(sonuc.sayilar.tablolar, 67);
  EXPECT_EQ(b->s.boxes.texts(), std::vector<std::string>{});
  herSatirDuruyor(before, icerik(*b, "FIRMA"));
  guncelOlmali();
  for (const std::string& fark : farklar(sema(*b, "FIRMA"), finalSchema(*b)))
    EXPECT_TRUE(fark.starts_with("gorunumler") || fark.starts_with("tetikleyiciler")) << fark;
  b->baglan("Defination_DB");
  EXPECT_EQ(b->deger("SELECT DBVRSYN FROM sysfrmlng WHERE sysfrm_dbnm='FIRMA'"), "2012.002");
}

TEST_F(Guncelle, ViewsAnswerAfterwards) {
  ASSERT_TRUE(b->guncelle().tamamlandi);
  db::Connection& connection = b->baglan("FIRMA");
  for (const std::string& view : schema::viewOrder(schema::Stage::Upgrade))
    EXPECT_NO_THROW(connection.query("SELECT TOP 1 * FROM " + view)) << view;
}

TEST_F(Guncelle, CurrentCompanyGetsOnlyWhatEveryRunRepeats) {
  const Icerik before = icerik(*b, "YENI");
  const company::Sema schemaBefore = sema(*b, "YENI");
  b->izleme.sifirla();
  const GuncellemeSonucu sonuc = b->guncelle("YENI");
  ASSERT_TRUE(sonuc.tamamlandi);
  EXPECT_LE(b->izleme.deyimler.size(), 300u);
  EXPECT_LE(sonuc.sayilar.gonderilen, 300);
  EXPECT_EQ(sonuc.sayilar.eklenen, 0);
  EXPECT_EQ(sonuc.sayilar.satirlar, 0);
  EXPECT_EQ(startingWith(b->izleme.deyimler, "ALTER TABLE"),
            (std::vector<std::string>{
                kontrolNo, "ALTER TABLE MUHFISHAR ALTER COLUMN Aktif BIT NOT NULL",
                "ALTER TABLE MUHASEBEENTEGRASYON ALTER column Muhasebe_Kodu CHAR(26) not null"}));
  EXPECT_EQ(startingWith(b->izleme.deyimler, "CREATE TABLE").size(), 2u);
  EXPECT_EQ(startingWith(b->izleme.deyimler, "DROP TABLE"),
            (std::vector<std::string>{"DROP TABLE PERSONELHAREKETKILIT", "DROP TABLE PERSONELKILIT"}));
  EXPECT_EQ(farklar(schemaBefore, sema(*b, "YENI")), std::vector<std::string>{});
  EXPECT_EQ(before, icerik(*b, "YENI"));
}

std::ptrdiff_t accountRows(const TabloIcerigi& payments) {
  return std::ranges::count_if(payments.at("Cari_ID"), [](const auto& id) { return id != "0"; });
}

TEST_F(Guncelle, FilledCompanyKeepsEveryRow) {
  const auto filled = company::Ornek_Veri_Yaz(b->s.oturum, "FIRMA", {});
  ASSERT_EQ(filled.hata, "");
  const Icerik before = icerik(*b, "FIRMA");
  b->izleme.sifirla();
  ASSERT_TRUE(b->guncelle().tamamlandi);
  EXPECT_EQ(b->izleme.reddedilen, std::vector<std::string>{kontrolNo});
  Icerik after = icerik(*b, "FIRMA");
  for (const auto& [table, columns] : before) {
    // A payment row of no account comes from an INSERT trigger, and the UPDATE trigger of the same table
    // takes it away at any change of the movement.
    if (table == "ODEMEHAREKET")
      EXPECT_EQ(accountRows(columns), accountRows(after[table]));
    else
      EXPECT_EQ(columns.begin()->second.size(), after[table].begin()->second.size()) << table;
  }
  std::vector<std::string> left = farklar(sema(*b, "FIRMA"), sema(*b, "YENI"));
  std::erase_if(left, [](const auto& fark) { return fark.starts_with("tablolar IP_"); });  // further counters
  EXPECT_EQ(left, std::vector<std::string>{});
}

// Columns that do not come back as they were, each for its own reason.
bool comesBackOtherwise(const schema::TableDef& table, const schema::ColumnDef& column) {
  static const std::set<std::string> others{
      "FATURAHAREKET.ISK",               // leaves its copy behind
      "MUHASEBEENTEGRASYON.Islem_Kodu",  // its default is a fill to the upgrade
  };
  // Their triggers write other rows by what a column holds.
  static const std::set<std::string> withTriggers{"BANKAHAREKET", "CARIHAREKET", "CARIKART", "CEK",
                                                  "KASAHAREKET",  "MUHFISHAR",   "MUHKART",  "POSHAREKET",
                                                  "SENET",        "STOKKART"};
  return others.contains(table.name + "." + column.name) || withTriggers.contains(table.name) ||
         (!column.nullable && column.defaultSql.empty());  // comes back nullable
}

std::vector<std::string> removals(std::mt19937& random) {
  std::vector<std::string> tables, columns;
  for (const std::string& name : schema::tableOrder(schema::Stage::Upgrade))
    if (!name.starts_with("DROP ")) tables.push_back("DROP TABLE " + name);
  for (const schema::TableDef& table : schema::tables())
    for (const schema::ColumnDef& column : table.columns)
      if (!column.identity && !comesBackOtherwise(table, column))
        columns.push_back("ALTER TABLE " + table.name + " DROP COLUMN " + column.name);
  std::ranges::shuffle(tables, random);
  std::ranges::shuffle(columns, random);
  tables.resize(10);
  columns.resize(120);
  columns.insert(columns.end(), tables.begin(), tables.end());
  return columns;
}

// A column with a declared default goes only after its constraint.
void dropDefault(db::Connection& connection, const std::string& statement) {
  const std::string head = "ALTER TABLE ", middle = " DROP COLUMN ";
  const auto at = statement.find(middle);
  if (at == std::string::npos) return;
  const std::string table = statement.substr(head.size(), at - head.size());
  const auto name = connection.query(
      "SELECT o.name FROM syscolumns c, sysobjects t, sysobjects o WHERE c.id=t.id AND o.id=c.cdefault AND "
      "t.name='" +
      table + "' AND c.name='" + statement.substr(at + middle.size()) + "'");
  if (name && name->count() > 0)
    connection.execute("ALTER TABLE " + table + " DROP CONSTRAINT " + name->value(0, 0).trimmed());
}

class GuncelleEksik : public Guncelle, public testing::WithParamInterface<unsigned> {};

TEST_P(GuncelleEksik, LostColumnsAndTablesComeBack) {
  fillEveryTable(*b);
  std::mt19937 random(GetParam());
  if (GetParam() % 2 == 0) {
    ASSERT_TRUE(b->guncelle().tamamlandi);
  }
  db::Connection& connection = b->baglan("FIRMA");
  int lost = 0;
  for (const std::string& statement : removals(random)) {
    try {
      connection.execute("BEGIN TRANSACTION");
      dropDefault(connection, statement);
      connection.execute(statement);
      connection.execute("COMMIT TRANSACTION");
      ++lost;
    } catch (const db::SqlError&) {  // not there, or part of a key or an index
      connection.execute("IF @@TRANCOUNT>0 ROLLBACK TRANSACTION");
    }
  }
  EXPECT_GT(lost, 50);
  const Icerik before = icerik(*b, "FIRMA");
  b->izleme.sifirla();
  ASSERT_TRUE(b->guncelle().tamamlandi);
  for (const std::string& refused : b->izleme.reddedilen)
    EXPECT_TRUE(refused == kontrolNo || refused.ends_with(" IS NULL")) << refused;
  herSatirDuruyor(before, icerik(*b, "FIRMA"));
  guncelOlmali();
}

INSTANTIATE_TEST_SUITE_P(Tohumlar, GuncelleEksik, testing::Range(1u, 3u));

TEST_F(Guncelle, TrialTellsWhatTheRunDoesAndChangesNothing) {
  fillEveryTable(*b);
  calistir(
      {"INSERT INTO POSHAREKET (Satis_ID,Islem_Tipi,Fis_No,Tutar,Islem_Tarih,Cari_ID) VALUES "
       "(0,'Kredi Kartı Tahsilat','F1',7,'20120105',3)",
       "ALTER TABLE FATURAHAREKET ALTER COLUMN ISK VARCHAR(60)",
       "INSERT INTO FATURAHAREKET (Stok_Kod,Fis_No,ISK) VALUES ('B','F1','10+5+3+2+1+10+5+3+2+1')",
       "DROP VIEW CARIHAREKETLERVALOR"});
  const Icerik before = icerik(*b, "FIRMA");
  const company::Sema schemaBefore = sema(*b, "FIRMA");
  b->baglan("Defination_DB").execute("UPDATE sysfrmlng SET DBVRSYN='2011.001'");
  std::vector<std::string> told, refused;
  const auto trial = company::upgrade::Veritabani_Guncelle(
      b->s.oturum, "FIRMA", [&](const company::upgrade::DenemeAdimi& adim) {
        EXPECT_EQ(adim.veritabani,
                  adim.deyimler.front().starts_with("UPDATE sysfrmlng") ? "Defination_DB" : "FIRMA");
        EXPECT_FALSE(adim.birlikte && adim.reddedilir);
        auto& to = adim.reddedilir ? refused : told;
        to.insert(to.end(), adim.deyimler.begin(), adim.deyimler.end());
      });
  ASSERT_TRUE(trial.tamamlandi) << trial.hata;
  EXPECT_EQ(before, icerik(*b, "FIRMA"));
  EXPECT_EQ(farklar(schemaBefore, sema(*b, "FIRMA")), std::vector<std::string>{});
  b->baglan("Defination_DB");
  EXPECT_EQ(b->deger("SELECT DBVRSYN FROM sysfrmlng WHERE sysfrm_dbnm='FIRMA'"), "2011.001");

  b->izleme.sifirla();
  const auto run = b->guncelle();
  ASSERT_TRUE(run.tamamlandi);
  // What a refused transaction had done before is neither here nor there.
  std::vector<std::string> sent, open;
  bool inTransaction = false;
  for (const std::string& statement : b->izleme.deyimler) {
    const bool ends = statement.ends_with(" TRANSACTION");
    if (statement.starts_with("COMMIT")) sent.insert(sent.end(), open.begin(), open.end());
    if (ends) inTransaction = statement.starts_with("BEGIN"), open.clear();
    if (ends || (statement.starts_with("SELECT") && !statement.starts_with("SELECT * INTO"))) continue;
    if (inTransaction)
      open.push_back(statement);
    else if (std::ranges::find(b->izleme.reddedilen, statement) == b->izleme.reddedilen.end())
      sent.push_back(statement);
  }
  EXPECT_EQ(told, sent);
  EXPECT_EQ(refused,
            (std::vector<std::string>{"ALTER TABLE FATURAHAREKET ALTER COLUMN ISK CHAR(20) ", kontrolNo}));
  const auto counts = [](const company::upgrade::Sayilar& n) {
    return std::vector{n.tablolar, n.eklenen, n.degisen, n.satirlar, n.reddedilen, n.gonderilen};
  };
  EXPECT_EQ(counts(trial.sayilar), counts(run.sayilar));
}

TEST_F(Guncelle, ProgressTellsWhatIsDone) {
  b->s.progress = {};
  ASSERT_TRUE(b->guncelle().tamamlandi);
  const auto& texts = b->s.progress.texts;
  for (const char* text : {"IP_MASHIZ Ekleniyor", "PERSONELKARTI Ekleniyor", "Görünümler Kontrol Ediliyor"})
    EXPECT_TRUE(std::ranges::find(texts, text) != texts.end()) << text;
  EXPECT_TRUE(std::ranges::find(texts, "MUHKART Ekleniyor") == texts.end());
  EXPECT_EQ(texts.back(), "");
  EXPECT_EQ(b->s.progress.wholes.back().first, b->s.progress.wholes.back().second);
  b->s.progress = {};
  ASSERT_TRUE(b->guncelle().tamamlandi);
  EXPECT_TRUE(std::ranges::find(b->s.progress.texts, "PERSONELKILIT Tablosu Siliniyor") !=
              b->s.progress.texts.end());
}

TEST_F(Guncelle, UnreachableDatabaseShowsTheBoxAndDoesNothing) {
  const GuncellemeSonucu sonuc = b->guncelle("YOK");
  EXPECT_FALSE(sonuc.baglandi);
  ASSERT_EQ(b->s.boxes.shown.size(), 1u);
  EXPECT_EQ(b->s.boxes.last(),
            "Veri Tabanına Bağlanılamadı. Olası Hatalar :\n"
            "- Kullanıcı Adı Yada Parola Server için Tanımsız Olabilir.\n"
            "- Bağlanılacak Veritabanı Adı Yanlış Girilmiş Olabilir\n"
            "-Service Manager Programı Kapalı yada Stop(Dur) durumunda olabilir\n"
            "-SQL server Kurulu olmayabilir");
}

}  // namespace
