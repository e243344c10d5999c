#include "company/sema.h"

#include <gtest/gtest.h>

#include "company/deyim_esit.h"
#include "support/fakes.h"

namespace {

using company::Sema;
using company::SemaFarki;

// A server whose catalog holds one table with a key, an index, a trigger and a view.
struct Katalog {
  support::FakeServer server;
  std::vector<std::vector<db::Value>> kolonlar = {
      {"STOKKART", "Stok_ID", "int", 4, 10, 0, 0, 0, 1, db::Value()},
      {"STOKKART", "Stok_Kod", "char", 26, 26, db::Value(), 0, 0, 0, "Turkish_CI_AS"},
      {"STOKKART", "RafOmru", "int", 4, 10, 0, 0, 901, 0, db::Value()},
      {"STOKKART", "Tutar", "decimal", 9, 18, 2, 1, 0, 0, db::Value()},
      {"AMBAR", "Ad", "nchar", 30, 15, db::Value(), 1, 0, 0, "Latin1_General_BIN"},
  };
  std::vector<std::vector<db::Value>> dizinler = {
      {"STOKKART", "PK__STOKKART__1A2B", 2 + 16 + 2048, "Stok_ID", 1},
      {"STOKKART", "IND_KOD", 2, "Stok_Kod", 1},
      {"STOKKART", "IND_KOD", 2, "RafOmru", 2},
      {"STOKKART", "_WA_Sys_1", 64 + 8388608, "Tutar", 1},
  };
  std::vector<std::vector<db::Value>> metinler = {
      {901, "((0))"}, {902, "CREATE VIEW SB AS\nSELECT "}, {902, "1 AS a"}, {903, "CREATE TRIGGER T ..."}};
  std::vector<std::vector<db::Value>> nesneler = {{902, "SB", "V ", db::Value()},
                                                  {903, "T", "TR", "STOKKART"}};

  Sema oku() {
    server.rows("FROM syscomments", {"id", "text"}, metinler);
    server.rows("syscolumns.isnullable", {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}, kolonlar);
    server.rows("FROM sysobjects, sysindexes", {"a", "b", "c", "d", "e"}, dizinler);
    server.rows("LEFT JOIN sysobjects", {"a", "b", "c", "d"}, nesneler);
    support::FakeFactory factory(server);
    const auto connection = factory.make("");
    connection->open({});
    return company::semaOku(*connection);
  }
};

std::string satirlar(const Sema& sema, std::size_t bolum) {
  std::string out;
  for (const auto& satir : sema.bolumler[bolum].satirlar) {
    for (const auto& alan : satir) out += alan + "|";
    out += "\n";
  }
  return out;
}

std::string farkMetni(const Sema& a, const Sema& b, bool siralama = false) {
  std::string out;
  for (const SemaFarki& f : company::semaKarsilastir(a, b, siralama))
    out += std::string(f.tur == SemaFarki::Tur::Degisik         ? "~"
                       : f.tur == SemaFarki::Tur::YalnizBirinci ? "<"
                                                                : ">") +
           f.bolum + " " + f.ad + " " + f.alan + " " + f.birinci + " " + f.ikinci + "\n";
  return out;
}

TEST(SemaTest, ReadsTypesDefaultsKeysAndTexts) {
  const Sema sema = Katalog().oku();
  EXPECT_EQ(satirlar(sema, 0),
            "STOKKART|Stok_ID|INT|NOT NULL||IDENTITY||\n"
            "STOKKART|Stok_Kod|CHAR(26)|NOT NULL|||Turkish_CI_AS|\n"
            "STOKKART|RafOmru|INT|NOT NULL|0|||\nSTOKKART|Tutar|DECIMAL(18,2)|NULL||||\n"
            "AMBAR|Ad|NCHAR(15)|NULL|||Latin1_General_BIN|\n");
  EXPECT_EQ(satirlar(sema, 1), "STOKKART|PRIMARY KEY|Stok_ID|CLUSTERED|\n");
  EXPECT_EQ(satirlar(sema, 2), "STOKKART|IND_KOD|UNIQUE|NONCLUSTERED|Stok_Kod,RafOmru|\n");
  EXPECT_EQ(satirlar(sema, 3), "SB|CREATE VIEW SB AS\nSELECT 1 AS a|\n");
  EXPECT_EQ(satirlar(sema, 4), "T|STOKKART|CREATE TRIGGER T ...|\n");
  const char* brief[] = {"tablo kolon tip null varsayilan kimlik ", "tablo anahtar kolonlar kume ",
                         "tablo dizin tekil kume kolonlar ", "gorunum ", "tetikleyici tablo "};
  for (std::size_t i = 0; i < sema.bolumler.size(); ++i) {
    const auto bolum = sema.bolumler[i].ayrintisiz();
    std::string basliklar;
    for (const auto baslik : bolum.basliklar) basliklar += std::string(baslik) + " ";
    EXPECT_EQ(basliklar, brief[i]);
    for (const auto& satir : bolum.satirlar) EXPECT_EQ(satir.size(), bolum.basliklar.size());
  }
}

TEST(SemaTest, OrderKeyNamesCaseAndBracketsAreNoDifference) {
  Katalog other;
  std::swap(other.kolonlar[0], other.kolonlar[2]);
  other.kolonlar[3][1] = "TUTAR";
  other.dizinler[0][1] = "PK__STOKKART__9999";
  other.metinler[0][1] = "0";
  other.metinler[1][1] = "create view [SB] AS -- laid out otherwise\n  SELECT\t";
  other.kolonlar[4][9] = "Turkish_CI_AS";
  EXPECT_EQ(farkMetni(Katalog().oku(), other.oku()), "");
  EXPECT_EQ(farkMetni(Katalog().oku(), other.oku(), true),
            "~kolonlar AMBAR.Ad siralama Latin1_General_BIN Turkish_CI_AS\n");
}

TEST(SemaTest, TextsAreEqualByTheirTokens) {
  struct Case {
    const char *a, *b;
    bool equal;
  };
  const Case cases[] = {{"", "", true},
                        {"", " \n/* x */-- y", true},
                        {"SELECT a,b", "select A , B", true},
                        {"a+b", "a + b", true},
                        {"a b", "ab", false},
                        {"a", "a b", false},
                        {"'x y'", "'x  y'", false},
                        {"'Mal'", "'mal'", false},
                        {"'a''b'", "'a''b'", true},
                        {"'a' 'b'", "'a''b'", false},
                        {"'--'", "''", false},
                        {"[a b]", "\"A b\"", true},
                        {"[a]", "'a'", false},
                        {"[a]]b]", "[a]]c]", false},
                        {"a -- b\nc", "a c", true},
                        {"a - b", "a b", false},
                        {"a/*b*/c", "a c", true},
                        {"a/*b", "a", true},
                        {"ş", "Ş", false},  // the case of ASCII letters only
                        {"'open", "'open'", true}};
  for (const Case& c : cases) {
    EXPECT_EQ(company::deyimEsit(c.a, c.b), c.equal) << c.a << " | " << c.b;
    EXPECT_EQ(company::deyimEsit(c.b, c.a), c.equal) << c.a << " | " << c.b;
  }
}

TEST(SemaTest, TellsEachDifferenceOnce) {
  struct Case {
    void (*change)(Katalog&);
    const char* text;
  };
  const Case cases[] = {
      {[](Katalog& k) { k.kolonlar.erase(k.kolonlar.begin() + 3); }, "<kolonlar STOKKART.Tutar   \n"},
      {[](Katalog& k) {
         k.kolonlar.push_back({"AMBAR", "Yeni", "text", 16, 0, 0, 1, 0, 0, ""});
       },
       ">kolonlar AMBAR.Yeni   \n"},
      {[](Katalog& k) { k.kolonlar[1][3] = 30; }, "~kolonlar STOKKART.Stok_Kod tip CHAR(26) CHAR(30)\n"},
      {[](Katalog& k) { k.kolonlar[1][6] = 1; }, "~kolonlar STOKKART.Stok_Kod null NOT NULL NULL\n"},
      {[](Katalog& k) { k.metinler[0][1] = "(1)"; }, "~kolonlar STOKKART.RafOmru varsayilan 0 1\n"},
      {[](Katalog& k) { k.kolonlar.pop_back(); }, "<tablolar AMBAR   \n"},
      {[](Katalog& k) { k.dizinler[2][3] = "Tutar"; },
       "~dizinler STOKKART.IND_KOD kolonlar Stok_Kod,RafOmru Stok_Kod,Tutar\n"},
      {[](Katalog& k) { k.dizinler[0][2] = 2 + 2048; },
       "~anahtarlar STOKKART.PRIMARY KEY.Stok_ID kume CLUSTERED NONCLUSTERED\n"},
      {[](Katalog& k) { k.nesneler.erase(k.nesneler.begin()); }, "<gorunumler SB   \n"},
      {[](Katalog& k) { k.metinler[3][1] = "CREATE TRIGGER T x"; },
       "~tetikleyiciler T metin CREATE TRIGGER T ... CREATE TRIGGER T x\n"},
  };
  for (const Case& c : cases) {
    Katalog other;
    c.change(other);
    EXPECT_EQ(farkMetni(Katalog().oku(), other.oku()), c.text);
  }
}

TEST(SemaTest, AMissingTableTakesItsColumnsAndKeysWithIt) {
  Katalog other;
  other.kolonlar.erase(other.kolonlar.begin(), other.kolonlar.begin() + 4);
  other.dizinler.clear();
  other.nesneler.pop_back();
  EXPECT_EQ(farkMetni(Katalog().oku(), other.oku()), "<tablolar STOKKART   \n");
}

}  // namespace
