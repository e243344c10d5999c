#include "company/schema/schema.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <stdexcept>

namespace {

using catalog::EmbeddedText;
using catalog::parseTables;
using company::schema::ColumnDef;
using company::schema::createStatement;
using company::schema::ObjectDef;
using company::schema::Stage;
using company::schema::TableDef;
namespace schema = company::schema;

std::set<std::string> namesOfStage(Stage stage) {
  std::set<std::string> names;
  for (const TableDef& table : schema::tables()) {
    if (table.stage == stage) {
      names.insert(table.name);
    }
  }
  return names;
}

std::set<std::string> asSet(const std::vector<std::string>& names) {
  return {names.begin(), names.end()};
}

TEST(Schema, HoldsEveryObject) {
  EXPECT_EQ(schema::tables().size(), 194u);
  EXPECT_EQ(schema::views().size(), 86u);
  EXPECT_EQ(schema::triggers().size(), 26u);
  EXPECT_EQ(namesOfStage(Stage::Base).size(), 127u);
  EXPECT_EQ(schema::viewOrder(Stage::Base).size(), 80u);
  EXPECT_EQ(schema::viewOrder(Stage::Upgrade).size(), 86u);
  EXPECT_EQ(schema::triggerOrder(Stage::Base).size(), 23u);
  EXPECT_EQ(schema::triggerOrder(Stage::Upgrade).size(), 20u);
}

TEST(Schema, OrderOfTheBaseSchemaNamesEveryBaseTableOnce) {
  const auto& order = schema::tableOrder(Stage::Base);
  EXPECT_EQ(asSet(order), namesOfStage(Stage::Base));
  EXPECT_EQ(order.size(), asSet(order).size());
}

TEST(Schema, OrderOfTheUpgradeNamesEveryLaterTable) {
  const auto order = asSet(schema::tableOrder(Stage::Upgrade));
  for (const std::string& name : namesOfStage(Stage::Upgrade)) {
    EXPECT_TRUE(order.contains(name)) << name;
  }
  for (std::string name : order) {
    name = name.starts_with("DROP ") ? name.substr(5) : name;
    EXPECT_NE(schema::table(name), nullptr) << name;
  }
}

TEST(Schema, OrdersNameOnlyKnownViewsAndTriggers) {
  for (Stage stage : {Stage::Base, Stage::Upgrade}) {
    for (const std::string& name : schema::viewOrder(stage)) {
      EXPECT_NE(schema::view(name), nullptr) << name;
    }
    for (const std::string& name : schema::triggerOrder(stage)) {
      EXPECT_NE(schema::trigger(name), nullptr) << name;
    }
  }
}

TEST(Schema, TextsCreateTheObjectThatTheirFileNames) {
  auto check = [](const std::vector<ObjectDef>& all, const std::string& kind) {
    for (const ObjectDef& def : all) {
      for (std::string text : {def.text, def.baseText}) {
        std::transform(text.begin(), text.begin() + 12, text.begin(), ::toupper);
        EXPECT_EQ(text.rfind("CREATE " + kind + " " + def.name, 0), 0u) << def.name;
      }
    }
  };
  check(schema::views(), "VIEW");
  check(schema::triggers(), "TRIGGER");
}

struct ColumnCase {
  const char* table;
  std::size_t base, all;  // columns in a new company; all that are described
};

class TableColumns : public testing::TestWithParam<ColumnCase> {};

TEST_P(TableColumns, AreComplete) {
  const TableDef* table = schema::table(GetParam().table);
  ASSERT_NE(table, nullptr);
  const auto base = std::count_if(table->columns.begin(), table->columns.end(),
                                  [](const ColumnDef& c) { return c.stage == Stage::Base; });
  EXPECT_EQ(static_cast<std::size_t>(base), GetParam().base);
  EXPECT_EQ(table->columns.size(), GetParam().all);
}

INSTANTIATE_TEST_SUITE_P(Schema, TableColumns,
                         testing::Values(ColumnCase{"FILTRELER", 0, 201}, ColumnCase{"stokkart", 68, 102},
                                         ColumnCase{"AMBAR", 11, 11}, ColumnCase{"IP_BARKOD", 1, 1},
                                         ColumnCase{"MUHKILIT", 3, 3}),
                         [](const auto& info) { return std::string(info.param.table); });

TEST(Schema, KeepsWhatIsParticularToAColumn) {
  const TableDef& stok = *schema::table("STOKKART");
  EXPECT_EQ(stok.column("Birim2_Katsayi")->baseType, "REAL");
  EXPECT_EQ(stok.column("Birim2_Katsayi")->type, "FLOAT");
  EXPECT_EQ(stok.column("StTur")->fill, "MM");
  EXPECT_TRUE(stok.column("RB_Takip")->dropped);
  EXPECT_EQ(schema::table("CARIKART")->column("HesapTuru")->fill, "Alıcı + Satıcı");
  EXPECT_EQ(schema::table("MUHFISHAR")->column("Aktif")->askedLength, 28);
  EXPECT_EQ(schema::table("MUHFISKART")->column("FisKartKontrol_No")->askedName, "FisKartKontrol_No ");
  EXPECT_TRUE(schema::table("KASAKART")->column("Kasa_Kod")->rebuild);
  const ColumnDef* audit = schema::table("PERSONELKARTI")->column("Deg_Tarih");
  EXPECT_TRUE(audit->completed);
  EXPECT_EQ(audit->fill, "01/01/<year>");
}

TEST(Schema, PointOfSaleTriggersHaveAnOlderForm) {
  EXPECT_NE(schema::trigger("POSODEMEEKLE")->baseText.find("@Alacak=Tutar"), std::string::npos);
  EXPECT_NE(schema::trigger("POSODEMEEKLE")->text.find("@Alacak=ATutar"), std::string::npos);
  EXPECT_EQ(schema::trigger("STOKUPDATE")->baseText, schema::trigger("STOKUPDATE")->text);
}

// Others compare the texts letter by letter: no layout of the files may come into them. The sums are over the
// texts as the servers have always had them.
TEST(Schema, TextsOfViewsAndTriggersAreTheExactOnes) {
  EXPECT_EQ(schema::view("CARITOPLAM")->text.find('\n'), std::string::npos);
  EXPECT_EQ(
      schema::trigger("MUHBAKIYEHESAPLASIL")->text,
      "CREATE TRIGGER MUHBAKIYEHESAPLASIL ON MUHFISHAR FOR DELETE AS DECLARE @MHesap_ID INT SELECT "
      "@MHesap_ID=MHesap_ID FROM DELETED UPDATE MUHBAKIYE SET Bakiye=(SELECT ISNULL(SUM(BTutar-ATutar),0) "
      "FROM MUHFISHAR WHERE MUHFISHAR.MHesap_ID =@MHesap_ID) WHERE MHesap_ID=@MHesap_ID");
  const auto sum = [](const std::vector<schema::ObjectDef>& all) {
    const auto hash = [](const std::string& text) {
      std::uint64_t out = 0xcbf29ce484222325;
      for (const char c : text) out = (out ^ static_cast<unsigned char>(c)) * 0x100000001b3;
      return out;
    };
    std::uint64_t out = 0;
    for (const schema::ObjectDef& def : all) out += hash(def.text) + 3 * hash(def.baseText);
    return out;
  };
  EXPECT_EQ(sum(schema::views()), 0x5542760bb5e53306U);
  EXPECT_EQ(sum(schema::triggers()), 0xc419e2a9aad89fa2U);
}

}  // namespace
