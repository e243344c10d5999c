// Every statement of a company database and of the catalog is one that the embedded server understands.
#include <gtest/gtest.h>

#include "catalog/create_database.h"
#include "catalog/katalog.h"
#include "company/base_schema.h"
#include "company/schema/schema.h"
#include "engine/language/parser.h"
#include "engine/value/error.h"
#include "rights/varsayilan.h"

namespace {

using catalog::Stage;
using catalog::TableDef;
namespace schema = company::schema;

void parses(const std::string& statement, const std::string& name) {
  try {
    EXPECT_FALSE(engine::parseBatch(statement).statements.empty()) << name;
  } catch (const engine::Error& error) {
    ADD_FAILURE() << name << ": " << error.what() << "\n" << statement.substr(0, 400);
  }
}

void parses(const TableDef& table) {
  parses(createStatement(table, Stage::Base), table.name);
  parses(createStatement(table, Stage::Upgrade), table.name);
  for (const auto* list : {&table.firstRows, &table.upgradeRows, &table.indexes}) {
    for (const std::string& statement : *list) {
      parses(company::isaretleriDoldur(statement, {2012, 3, 14}), table.name);
    }
  }
}

TEST(SchemaSql, TablesOfACompany) {
  for (const TableDef& table : schema::tables()) {
    parses(table);
  }
}

TEST(SchemaSql, TablesOfTheCatalog) {
  for (const TableDef& table : catalog::catalogTables()) {
    parses(table);
  }
  parses(catalog::createDatabaseStatement("ORNEK", "C:\\VERI"), "CREATE DATABASE");
  parses(rights::varsayilanSatir(rights::VarsayilanTur::YeniFirma, "1", "1", "KORVENA", "x"), "Kullanici");
}

TEST(SchemaSql, ViewsAndTriggers) {
  for (const auto* all : {&schema::views(), &schema::triggers()}) {
    for (const schema::ObjectDef& def : *all) {
      parses(def.text, def.name);
      parses(def.baseText, def.name + " (base)");
    }
  }
}

}  // namespace
