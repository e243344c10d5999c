// Every object of a company database works on the embedded server: tables are made, views answer, and
// triggers run on every table that has one.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "catalog/katalog.h"
#include "company/base_schema.h"
#include "company/schema/schema.h"
#include "engine/server.h"

namespace {

using catalog::Stage;
using catalog::TableDef;
namespace schema = company::schema;

class IgnoringSink : public engine::ResultSink {
 public:
  void onResultSet(engine::ResultSet&&) override {}
  void onRowCount(std::int64_t) override {}
  void onMessage(int, const std::string&) override {}
};

class SchemaSession : public testing::TestWithParam<Stage> {
 protected:
  SchemaSession()
      : folder_(std::filesystem::temp_directory_path() / ("zembera-schema-" + std::to_string(getpid()))),
        server_(engine::Server::create(folder_, "sa", "gizli")),
        session_(server_, "sa", "gizli", "") {
    runs("CREATE DATABASE ORNEK", "CREATE DATABASE");
    runs("USE ORNEK", "USE");
  }
  ~SchemaSession() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  void runs(const std::string& statement, const std::string& name) {
    try {
      session_.execute(statement, sink_);
    } catch (const engine::Error& error) {
      ADD_FAILURE() << name << ": " << error.number() << " " << error.what() << "\n"
                    << statement.substr(0, 300);
    }
  }

  std::filesystem::path folder_;
  std::shared_ptr<engine::Server> server_;
  engine::Session session_;
  IgnoringSink sink_;
};

TEST_P(SchemaSession, Works) {
  const Stage stage = GetParam();
  for (const std::string& name : schema::tableOrder(Stage::Base)) {
    const TableDef* table = schema::table(name);
    ASSERT_TRUE(table) << name;
    runs(createStatement(*table, stage), name);
    for (const std::string& row : table->firstRows) runs(company::isaretleriDoldur(row, {2012, 3, 14}), name);
  }
  for (const TableDef& table : schema::tables())
    if (stage == Stage::Upgrade && std::ranges::find(schema::tableOrder(Stage::Base), table.name) ==
                                       schema::tableOrder(Stage::Base).end())
      runs(createStatement(table, stage), table.name);
  const auto text = [&](const schema::ObjectDef& def) {
    return stage == Stage::Base ? def.baseText : def.text;
  };
  // The upgrade meets the views of the base schema.
  if (stage == Stage::Upgrade) runs(schema::view("POSHAREKETOPLAM")->text, "POSHAREKETOPLAM");
  for (const std::string& name : schema::viewOrder(stage))
    if (stage == Stage::Base || name != "POSHAREKETOPLAM") runs(text(*schema::view(name)), name);
  for (const std::string& name : schema::triggerOrder(Stage::Base)) runs(text(*schema::trigger(name)), name);
  for (const std::string& name : schema::viewOrder(stage)) runs("SELECT * FROM " + name, name);
  const struct {
    const char *table, *columns, *values, *change;
  } rows[] = {
      {"KASAHAREKET", "Cari_ID,ATutar", "3,5", "ATutar=6"},
      {"POSHAREKET", "Cari_ID,Tutar", "3,5", "Tutar=6"},
      {"BANKAHAREKET", "Cari_ID,ATutar", "3,5", "ATutar=6"},
      {"SENET", "Cari_ID,Islem_Tipi", "3,'Senet Giriş'", "Borc=6"},
      {"CEK", "Cari_ID,Borc", "3,5", "Borc=6"},
      {"STOKKART", "Stok_Kod,Stok_Ad", "'S1','Elma'", "Stok_Ad='Armut'"},
      {"CARIKART", "Cari_Kod,Unvan", "'C1','Ali'", "Unvan='Veli'"},
      {"MUHKART", "MHesap_Kod,MHesap_Ad", "'120','A'", "MHesap_Kod='121'"},
      {"MUHKART", "MHesap_Kod,MHesap_Ad", "'120.01','B'", "MHesap_Kod='121.01' WHERE MHesap_Kod='120.01'"},
      {"MUHFISHAR",
       "FisSat_No,Fis_ID,Tarih,Ana_Hesap_ID,MHesap_ID,MHesap_Kod,BTutar,ATutar,Dv_BTutar,Dv_Atutar,Doviz_ID,"
       "Kur,Masraf_Merkezi_ID,Entegre_ID,Modul_No,BorcMiktar,AlacakMiktar,Birim",
       "1,1,'01/31/2012',1,2,'121.01',5,0,0,0,1,1,0,0,0,0,0,'AD'", "Aktif=0"},
  };
  for (const auto& row : rows) {
    const std::string table = row.table;
    runs("INSERT INTO " + table + " (" + row.columns + ") VALUES (" + row.values + ")", table);
    runs("UPDATE " + table + " SET " + row.change, table);
  }
  for (const auto& row : rows) runs(std::string("DELETE FROM ") + row.table, row.table);
}

INSTANTIATE_TEST_SUITE_P(Stages, SchemaSession, testing::Values(Stage::Base, Stage::Upgrade));

}  // namespace
