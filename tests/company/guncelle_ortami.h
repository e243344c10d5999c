// Company databases to upgrade: made once per test program and copied for each test.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "catalog/sunucu_hazirla.h"
#include "company/schema/schema.h"
#include "company/sema.h"
#include "company/upgrade/guncelle.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "support/fakes.h"
#include "support/firma_karti.h"
#include "support/izleyen_surucu.h"
#include "support/satirlar.h"

namespace guncelle_testi {

namespace fs = std::filesystem;
namespace schema = company::schema;
using company::upgrade::GuncellemeSonucu;

inline fs::path yeniKlasor() {
  std::string name = (fs::path(testing::TempDir()) / "guncelle_XXXXXX").string();
  return mkdtemp(name.data());
}

// One session on one server folder.
class Baglam {
 public:
  explicit Baglam(fs::path folder)
      : klasor(std::move(folder)), surucu(db::makeConnectionFactory(klasor)), izleme(surucu.izleme) {
    s.oturum.surucu = &surucu;
    s.oturum.Server_Adi = "(yerel)";
    s.oturum.Tanim_DB_Versiyon = "2012.002";
    s.platform.folder = ZEMBERA_DATA;
  }
  ~Baglam() {
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
  }
  Baglam(const Baglam&) = delete;
  Baglam& operator=(const Baglam&) = delete;

  db::Connection& baglan(const std::string& database) {
    session::Katalog_Bagla(s.oturum, database);
    return *s.oturum.Baglanti;
  }
  void firmaYarat(const std::string& ad, const std::string& kod) {
    s.oturum.Yeni_Kayit = true;
    auto kart = support::firmaKarti(ad, kod);
    ASSERT_TRUE(company::Kaydet(s.oturum, kart)) << s.oturum.Son_Hata;
  }
  GuncellemeSonucu guncelle(const std::string& ad = "FIRMA") {
    return company::upgrade::Veritabani_Guncelle(s.oturum, ad);
  }
  std::string deger(const std::string& sql) {
    const auto rows = s.oturum.Baglanti->query(sql);
    return rows && rows->count() > 0 ? rows->value(0, 0).trimmed() : "<yok>";
  }
  std::string satirlar(const std::string& sql) { return support::satirlar(baglan("FIRMA").query(sql)); }

  fs::path klasor;
  support::FakeSurroundings s;
  support::IzleyenSurucu surucu;
  support::Izleme& izleme;
};

// A server with two companies: FIRMA as the card makes it, and YENI made so and upgraded.
class Taban {
 public:
  static const fs::path& klasor() {
    static const Taban taban;
    return taban.klasor_;
  }

 private:
  Taban() : klasor_(yeniKlasor()) {
    engine::Server::create(klasor_ / "veri", "sa", "gizli");
    Baglam b(klasor_);
    EXPECT_EQ(catalog::Sunucu_Hazirla(b.s.oturum, {"Korvena", "abc", ""}).sonuc,
              catalog::KurulumSonucu::Hazirlandi);
    b.s.oturum.Veri_Klasoru = b.deger("SELECT sysdtyl FROM sysDTYL");
    b.firmaYarat("FIRMA", "00001");
    b.firmaYarat("YENI", "00002");
    EXPECT_TRUE(b.guncelle("YENI").tamamlandi);
    EXPECT_EQ(b.s.boxes.texts(), std::vector<std::string>{});
  }
  ~Taban() { fs::remove_all(klasor_); }
  fs::path klasor_;
};

inline company::Sema sema(Baglam& b, const std::string& ad) {
  return company::semaOku(b.baglan(ad));
}

inline std::vector<std::string> farklar(const company::Sema& birinci, const company::Sema& ikinci) {
  std::vector<std::string> out;
  for (const company::SemaFarki& f : company::semaKarsilastir(birinci, ikinci))
    out.push_back(f.bolum + " " + f.ad + " " + f.alan + " [" + f.birinci + "|" + f.ikinci + "]");
  return out;
}

// The rows of every table, column by column, as a company stands.
using TabloIcerigi = std::map<std::string, std::vector<std::string>>;  // column -> values in row order
using Icerik = std::map<std::string, TabloIcerigi>;

inline Icerik icerik(Baglam& b, const std::string& ad) {
  Icerik out;
  db::Connection& connection = b.baglan(ad);
  const auto names = connection.query("SELECT name FROM sysobjects WHERE type='U' ORDER BY name");
  for (std::int64_t t = 0; t < names->count(); ++t) {
    const std::string table = names->value(t, 0).trimmed();
    const auto rows = connection.query("SELECT * FROM " + table);
    TabloIcerigi& content = out[table];
    for (std::size_t c = 0; c < rows->fields().size(); ++c) {
      std::vector<std::string>& values = content[rows->fields()[c].name];
      for (std::int64_t r = 0; r < rows->count(); ++r)
        values.push_back(rows->value(r, static_cast<int>(c)).trimmed());
    }
  }
  return out;
}

// Every table and column of `once` stands in `sonra` with the same values. Locks of persons are thrown
// away by every upgrade, and two old columns of the stock card are removed.
inline void herSatirDuruyor(const Icerik& once, const Icerik& sonra) {
  static const std::set<std::string> atilan{"PERSONELHAREKETKILIT", "PERSONELKILIT"};
  static const std::set<std::string> silinen{"RB_Takip", "Seri_Takibi"};
  for (const auto& [table, columns] : once) {
    if (atilan.contains(table)) continue;
    const auto there = sonra.find(table);
    ASSERT_NE(there, sonra.end()) << table;
    for (const auto& [column, values] : columns) {
      if (silinen.contains(column)) continue;
      const auto found = there->second.find(column);
      ASSERT_NE(found, there->second.end()) << table << "." << column;
      EXPECT_EQ(values, found->second) << table << "." << column;
    }
  }
}

class Guncelle : public testing::Test {
 protected:
  Guncelle() : klasor(yeniKlasor()) {
    fs::copy(Taban::klasor(), klasor, fs::copy_options::recursive);
    b = std::make_unique<Baglam>(klasor);
  }
  ~Guncelle() override {
    b.reset();
    fs::remove_all(klasor);
  }
  // Closes everything and opens it anew, as another program would.
  void yenidenAc() {
    b.reset();
    b = std::make_unique<Baglam>(klasor);
  }
  void calistir(const std::vector<std::string>& statements) {
    for (const std::string& statement : statements)
      EXPECT_NO_THROW(b->baglan("FIRMA").execute(statement)) << statement;
  }
  void guncelOlmali() { EXPECT_EQ(farklar(sema(*b, "FIRMA"), sema(*b, "YENI")), std::vector<std::string>{}); }

  fs::path klasor;
  std::unique_ptr<Baglam> b;
};

}  // namespace guncelle_testi
