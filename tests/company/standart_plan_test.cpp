#include "company/standart_plan.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "company/plan_dosyasi.h"
#include "support/fakes.h"
#include "support/temp_folder.h"

namespace {

using company::hesapPlaniOku;
using company::HesapSatiri;
using company::maliTabloOku;
namespace fs = std::filesystem;

TEST(HesapPlani, ReadsBothEncodings) {
  const std::vector<HesapSatiri> expected = {{"100", "KASA"}, {"101", "ALINAN ÇEKLER"}};
  EXPECT_EQ(hesapPlaniOku("100;KASA\r\n\r\nno sign\r\n101;ALINAN ÇEKLER\r\n<end>\r\nbehind", "f").rows,
            expected);
  EXPECT_EQ(hesapPlaniOku("100;KASA\n101;ALINAN \xC7"
                          "EKLER\n<END>",
                          "f")
                .rows,
            expected);
  EXPECT_EQ(hesapPlaniOku("\xEF\xBB\xBF"
                          "100;KASA\n101;ALINAN ÇEKLER\n<END>\n",
                          "f")
                .rows,
            expected);
}

struct FaultCase {
  const char* name;
  std::string text;
  const char* part;  // of the fault
};
class PlanFault : public testing::TestWithParam<FaultCase> {};
class TableFault : public testing::TestWithParam<FaultCase> {};

TEST_P(PlanFault, IsTold) {
  const auto read = hesapPlaniOku(GetParam().text, "StandartPlan.txt");
  EXPECT_NE(read.hata.find(GetParam().part), std::string::npos) << read.hata;
  EXPECT_NE(read.hata.find("StandartPlan.txt"), std::string::npos) << read.hata;
}

INSTANTIATE_TEST_SUITE_P(
    Plan, PlanFault,
    testing::Values(FaultCase{"Empty", "", "boş"}, FaultCase{"NoEnd", "100;KASA\n", "<END>"},
                    FaultCase{"NoAccount", "text\n<END>\n", "hesap yok"},
                    FaultCase{"Utf16", std::string("1\0;\0A\0\n\0", 8), "kodlaması"},
                    FaultCase{"Twice", "100;A\n100;B\n<END>\n", "satır 2"},
                    FaultCase{"NoCode", ";A\n<END>\n", "kodu boş"},
                    FaultCase{"Long", "100;" + std::string(61, 'A') + "\n<END>\n", "çok uzun"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_P(TableFault, IsTold) {
  const auto read = maliTabloOku(GetParam().text, "BILANCO.txt");
  EXPECT_NE(read.hata.find(GetParam().part), std::string::npos) << read.hata;
}

INSTANTIATE_TEST_SUITE_P(Table, TableFault,
                         testing::Values(FaultCase{"Number", "x;1;\n<END>\n", "Satir_No"},
                                         FaultCase{"Range", "40000;1;\n<END>\n", "Satir_No"},
                                         FaultCase{"Many", std::string(40, ';') + "\n<END>\n", "çok"},
                                         FaultCase{"Twice", "1;1;\n1;2;\n<END>\n", "iki kez"}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(MaliTablo, LineMayStopEarly) {
  const auto read = maliTabloOku("1;1;;;dropped\n2;3;10;A- HAZIR;\n<END>\n", "BILANCO.txt");
  EXPECT_EQ(read.hata, "");
  ASSERT_EQ(read.rows.size(), 2u);
  EXPECT_EQ(read.rows[0], (std::vector<std::string>{"1", "1", "", ""}));
  EXPECT_EQ(company::maliTabloKolonlari().front(), "Satir_No");
}

std::string fileText(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(ShippedFiles, AreWhole) {
  const fs::path folder = fs::path(ZEMBERA_DATA) / "Muhasebe Parametre";
  const auto plan = hesapPlaniOku(fileText(folder / "StandartPlan.txt"), "StandartPlan.txt");
  EXPECT_EQ(plan.hata, "");
  EXPECT_GT(plan.rows.size(), 250u);
  for (const char* name : {"BILANCO.txt", "KARZARAR.txt"}) {
    const auto table = maliTabloOku(fileText(folder / name), name);
    EXPECT_EQ(table.hata, "") << name;
    EXPECT_GT(table.rows.size(), 40u) << name;
  }
}

class StandartPlan : public testing::Test {
 protected:
  StandartPlan() {
    fs::create_directories(folder / "Muhasebe Parametre");
    s.platform.folder = folder;
    s.oturum.Baglanti = s.factory.make("");
    write("StandartPlan.txt", "100;KASA\n<END>\n");
    write("BILANCO.txt", "1;1;\n<END>\n");
    write("KARZARAR.txt", "1;1;\n<END>\n");
    s.server.rows("SELECT Rapor_ID", {"Rapor_ID"}, {{4}});
    s.server.rows("SELECT * FROM F.dbo.MUHKART", planColumns, {});
    auto columns = company::maliTabloKolonlari();
    columns.push_back("Rapor_ID");
    s.server.rows("MUHASEBEMALITABLOHAREKET ", columns, {});
  }
  void write(const char* name, const char* text) {
    std::ofstream(folder / "Muhasebe Parametre" / name) << text;
  }
  bool sent(std::string_view part) const {
    for (const std::string& statement : s.server.statements) {
      if (statement.find(part) != std::string::npos) {
        return true;
      }
    }
    return false;
  }

  const std::vector<std::string> planColumns = {"MHesap_Kod",        "Ana_Hesap_Kod",
                                                "MHesap_Ad",         "HesapSeviyesi",
                                                "Doviz_ID",          "Aktif",
                                                "Bakiye_Tipi",       "Hesap_Tipi",
                                                "Kullanici_ID",      "Ekleme_Tarihi",
                                                "Degistirme_Tarihi", "Ekleme_Saati",
                                                "Degistirme_Saati",  "Degistiren_Kullanici"};
  const support::TempFolder temporary;
  const fs::path& folder = temporary.path;
  support::FakeSurroundings s;
};

TEST_F(StandartPlan, WritesChartAndTemplates) {
  EXPECT_EQ(company::Standart_Plan_Yukle(s.oturum, "F"), company::PlanSonucu::Yuklendi);
  EXPECT_TRUE(s.boxes.shown.empty()) << s.boxes.last();
  EXPECT_TRUE(sent("VALUES (1,'000','Bilanço Tablosu')"));
  EXPECT_TRUE(sent("VALUES (2,'000','Kar Zarar Tablosu')"));
  EXPECT_EQ(s.server.statements.back(), "COMMIT TRAN");
}

TEST_F(StandartPlan, MissingTemplateWritesNothing) {
  fs::remove(folder / "Muhasebe Parametre" / "KARZARAR.txt");
  EXPECT_EQ(company::Standart_Plan_Yukle(s.oturum, "F"), company::PlanSonucu::Yuklenemedi);
  EXPECT_EQ(s.boxes.shown.size(), 1u);
  EXPECT_TRUE(s.server.statements.empty());
}

TEST_F(StandartPlan, MissingChartIsToldInItsWords) {
  fs::remove(folder / "Muhasebe Parametre" / "StandartPlan.txt");
  EXPECT_EQ(company::Standart_Plan_Yukle(s.oturum, "F"), company::PlanSonucu::Yuklenemedi);
  EXPECT_EQ(s.boxes.last(),
            "Standart Hesap Planı aratmak İstediniz Fakat Parmetre Dosyasını Bulamıyorum.Lütfen " +
                folder.string() +
                "\\Muhasebe Parametre\\StandartPlan.txt dosyasının Varlığını Kontrol Ediniz.");
}

TEST_F(StandartPlan, RefusedRowTakesAllBack) {
  s.server.fail("INSERT INTO F.dbo.MUHASEBEMALITABLOKART",
                db::SqlError(db::ErrorKind::StatementRefused, 2627, "duplicate"));
  EXPECT_EQ(company::Standart_Plan_Yukle(s.oturum, "F"), company::PlanSonucu::Yuklenemedi);
  ASSERT_EQ(s.boxes.shown.size(), 2U);
  EXPECT_EQ(s.boxes.shown[0].text, "duplicate");
  EXPECT_TRUE(s.boxes.shown[1].text.starts_with("Standart hesap planı yüklenemedi."));
  EXPECT_EQ(s.server.statements.back(), "IF @@TRANCOUNT>0 ROLLBACK TRAN");
  EXPECT_FALSE(sent("COMMIT"));
}

}  // namespace
