#include "catalog/katalog.h"

#include "session/statements.h"

namespace catalog {

namespace {

// Statements that follow the creation of a table. The folder, name and password in them are empty: this
// routine knows none.
struct AfterTable {
  std::string_view table, statement;
};
constexpr AfterTable afterTable[] = {
    {"sysDTYL", "INSERT INTO sysDTYL(sysdtyl) VALUES ('\\Data')"},
    {"sysuslng", refusedSupervisorRow},
};

}  // namespace

const std::vector<TableDef>& catalogTables() {
  static const std::vector<TableDef> all = [] {
    std::vector<TableDef> tables;
    for (const EmbeddedText& file : embeddedTexts()) {
      for (TableDef& table : parseTables(file)) {
        tables.push_back(std::move(table));
      }
    }
    return tables;
  }();
  return all;
}

void Katalog_Olustur(session::Oturum& oturum) {
  for (const TableDef& table : catalogTables()) {
    if (table.stage != Stage::Base) {
      continue;
    }
    session::Sorgu_Ac_Mesajli(oturum, oturum.Kayitlar, createStatement(table, Stage::Base));
    for (const AfterTable& after : afterTable) {
      if (after.table == table.name) {
        session::Sorgu_Ac_Mesajli(oturum, oturum.Kayitlar, after.statement);
      }
    }
  }
}

}  // namespace catalog
