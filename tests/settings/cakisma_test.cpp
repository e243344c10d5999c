// Two administrators on one list; many rows in few round trips.
#include "settings/cakisma.h"

#include "company/sirket.h"
#include "db/odbc/sqlserver.h"
#include "settings/tanim.h"
#include "support/tds_server.h"

namespace {

using settings::IzgaraSatirlari;

std::string metni(const IzgaraSatirlari& satirlar) {
  std::string metin;
  for (const auto& satir : satirlar) {
    if (!metin.empty()) metin += '\n';
    for (std::size_t i = 0; i < satir.hucreler.size(); ++i) metin += (i ? "|" : "") + satir.hucreler[i];
  }
  return metin;
}

std::string toplam(const std::vector<std::string>& satirlar) {
  std::string metin;
  for (const auto& satir : satirlar) metin += (metin.empty() ? "" : "\n") + satir;
  return metin;
}

TEST(Birlestirme, KeepsTheUsersWorkAndTakesWhatOnlyOthersChanged) {
  // Identity, number, name, tick: warehouses get new identities from every save.
  const struct {
    const char* tur;
    IzgaraSatirlari okunan, simdiki, benim;
    const char *farklar, *birlesik;
  } durumlar[] = {
      {"ambar",
       {{{"1", "1", "A", "1"}}, {{"2", "2", "B", "0"}}, {{"3", "3", "C", "0"}}, {{"4", "4", "D", "0"}}},
       {{{"9", "1", "A", "1"}}, {{"8", "2", "B2", "0"}}, {{"7", "4", "D2", "0"}}, {{"6", "5", "E", "0"}}},
       {{{"1", "1", "A", "1"}},
        {{"2", "2", "B", "0"}},
        {{"3", "3", "C", "0"}},
        {{"4", "4", "BENİM", "0"}},
        {{"", "6", "F", "0"}},
        {{"", "", "", ""}}},
       "2 B: Ambar Adı: B → B2\n3 C: silindi\n4 D: Ambar Adı: D → D2\n5 E: eklendi",
       "9|1|A|1\n8|2|B2|0\n4|4|BENİM|0\n|6|F|0\n6|5|E|0\n|||"},
      {"ambar",  // both moved the tick: the user's stays
       {{{"1", "1", "A", "1"}}, {{"2", "2", "B", "0"}}, {{"3", "3", "C", "0"}}},
       {{{"1", "1", "A", "0"}}, {{"2", "2", "B", "1"}}, {{"3", "3", "C", "0"}}},
       {{{"1", "1", "A", "0"}}, {{"2", "2", "B", "0"}}, {{"3", "3", "C", "1"}}},
       "1 A: Aktif: evet → hayır\n2 B: Aktif: hayır → evet",
       "1|1|A|0\n2|2|B|0\n3|3|C|1"},
      {"doviz",  // known by identity: a code may change; what the user took out stays out
       {{{"1", "USD", "Dolar", "0"}}, {{"2", "EUR", "Avro", "0"}}},
       {{{"1", "USD", "", "0"}}, {{"2", "EURO", "Avro", "0"}}},
       {{{"2", "EUR", "Avro", "0"}}},
       "USD Dolar: Döviz Adı: Dolar → boş\nEUR Avro: Döviz Kodu: EUR → EURO",
       "2|EURO|Avro|0"},
      {"renk", {{{"1", "K", "Kara"}}}, {{{"1", "K", "Kara"}}}, {{{"1", "K", "Ak"}}}, "", "1|K|Ak"}};
  for (const auto& d : durumlar) {
    const auto kural = settings::cakismaKurali(*settings::tanimBul(d.tur));
    EXPECT_EQ(toplam(settings::aradakiFarklar(kural, d.okunan, d.simdiki)), d.farklar);
    EXPECT_EQ(metni(settings::birlestir(kural, d.okunan, d.simdiki, d.benim)), d.birlesik);
  }
}

class CakismaTest : public company::test::SirketTest {
 protected:
  void SetUp() override {
    oturum().surucu = sirket().factory.get();
    oturum().Kullanici_ID = 1;
    oturum().Secili_Firma = "GUNCEL2012";
    ASSERT_EQ(settings::Tanim_Firma_Bagla(oturum()), "");
  }
  session::Oturum& oturum() { return sirket().s.oturum; }
};

TEST_F(CakismaTest, NothingIsWrittenOverATableThatChanged) {
  sirket().run(
      "DELETE FROM RENKTANIM DELETE FROM BEDENTANIM INSERT INTO RENKTANIM(Renk_Kod,Renk_Adi) "
      "VALUES('K','Kara')");
  const auto& renk = *settings::tanimBul("renk");
  const auto& beden = *settings::tanimBul("beden");
  const auto okunan = settings::Tanim_Yukle(oturum(), renk).satirlar;
  auto benim = okunan;
  benim[0].hucreler[2] = "Kapkara";
  sirket().run("INSERT INTO RENKTANIM(Renk_Kod,Renk_Adi) VALUES('A','Ak')");
  auto kayit = settings::Tanim_Kaydet(oturum(), {{&renk, benim, okunan}, {&beden, {{{"", "XL"}}}, {}}});
  EXPECT_EQ(kayit.hata + toplam(kayit.aradaki), "Ak: eklendi");
  EXPECT_EQ(sirket().rows("SELECT Renk_Adi FROM RENKTANIM ORDER BY Renk_ID"), "Kara\nAk");
  EXPECT_EQ(sirket().rows("SELECT COUNT(*) FROM BEDENTANIM"), "0");
  EXPECT_EQ(sirket().rows("SELECT @@TRANCOUNT"), "0");
  benim = settings::birlestir(settings::cakismaKurali(renk), okunan, kayit.simdiki[0], benim);
  kayit = settings::Tanim_Kaydet(oturum(), {{&renk, benim, kayit.simdiki[0]}});
  EXPECT_EQ(kayit.hata + toplam(kayit.aradaki), "");
  EXPECT_EQ(sirket().rows("SELECT Renk_Adi FROM RENKTANIM ORDER BY Renk_ID"), "Kapkara\nAk");
}

// 5,000 rows that are there already are the longer way: each is an update that adds the row where it is gone.
TEST(TopluKayit, FiftyRowsAndMoreShareARoundTripThroughOdbc) {
  using Tur = support::TdsAnswer::Kind;
  for (const bool yeni : {true, false}) {
    support::TdsServer sunucu([](const std::string& yigin) {
      if (yigin.find("SELECT *") == std::string::npos) return support::TdsAnswer().done().data();
      return support::TdsAnswer()
          .columns({{"Renk_ID", Tur::Int}, {"Renk_Kod", Tur::Char, 10}, {"Renk_Adi", Tur::Char, 10}})
          .done(0)
          .data();
    });
    session::Oturum oturum;
    oturum.Secili_Firma = "F";
    oturum.Kullanici_ID = 1;
    oturum.Baglanti = db::makeSqlServerConnection();
    oturum.Baglanti->open({sunucu.address(), "sa", "gizli", "F", false});
    const std::size_t once = sunucu.batches().size();
    IzgaraSatirlari satirlar;
    for (int i = 0; i < 5000; ++i)
      satirlar.push_back(
          {{yeni ? "" : std::to_string(i + 1), "K" + std::to_string(i), "Renk " + std::to_string(i)}});
    const auto kayit = settings::Tanim_Kaydet(oturum, {{settings::tanimBul("renk"), satirlar, {}}});
    EXPECT_EQ(kayit.hata, "");
    const auto yiginlar = sunucu.batches();
    EXPECT_EQ(yiginlar[once],
              "BEGIN TRANSACTION SELECT * FROM  F.dbo.RENKTANIM WITH (UPDLOCK,HOLDLOCK) ORDER BY Renk_Adi");
    EXPECT_EQ(yiginlar.back(), "COMMIT TRANSACTION");
    EXPECT_LE(yiginlar.size() - once, 100U) << (yeni ? "new rows" : "rows that are there");
    std::size_t satir = 0;
    for (const std::string& yigin : yiginlar)
      for (auto at = yigin.find(",'K"); at != std::string::npos; at = yigin.find(",'K", at + 1)) ++satir;
    EXPECT_EQ(satir, 5000U);
  }
}

}  // namespace
