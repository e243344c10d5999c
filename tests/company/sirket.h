// Two companies on one embedded server, made once for all tests of a program: BAZ as the card makes it,
// GUNCEL after the upgrade. Statements in, rows out as text.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>

#include "catalog/sunucu_hazirla.h"
#include "company/schema/schema.h"
#include "company/upgrade/guncelle.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "support/fakes.h"
#include "support/firma_karti.h"
#include "support/satirlar.h"

namespace company::test {

class Sirket {
 public:
  static constexpr const char* baz = "BAZ2012";
  static constexpr const char* guncel = "GUNCEL2012";

  Sirket() {
    std::string name = (std::filesystem::temp_directory_path() / "zembera_sirket_XXXXXX").string();
    folder = mkdtemp(name.data());
    engine::Server::create(folder / "veri", "sa", "gizli");
    factory = db::makeConnectionFactory(folder);
    s.oturum.surucu = factory.get();
    s.oturum.Server_Adi = "(yerel)";
    s.oturum.Tanim_DB_Versiyon = "2012.002";
    s.oturum.Firma_DB_Versiyon = "2012.002";
    s.platform.folder = ZEMBERA_DATA;
    catalog::Sunucu_Hazirla(s.oturum, {"Korvena", "abc", ""});
    s.oturum.Veri_Klasoru = s.oturum.Baglanti->query("SELECT sysdtyl FROM sysDTYL")->value(0, 0).trimmed();
    yarat(baz, "00001");
    yarat(guncel, "00002");
    upgrade::Veritabani_Guncelle(s.oturum, guncel);
  }
  ~Sirket() {
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
    factory.reset();
    std::error_code error;
    std::filesystem::remove_all(folder, error);
  }
  Sirket(const Sirket&) = delete;
  Sirket& operator=(const Sirket&) = delete;

  void yarat(const std::string& ad, const std::string& kod) {
    s.oturum.Yeni_Kayit = true;
    auto kart = support::firmaKarti(ad, kod);
    Kaydet(s.oturum, kart);
  }
  void bagla(const std::string& database) { session::Katalog_Bagla(s.oturum, database); }
  void run(const std::string& sql) { s.oturum.Baglanti->execute(sql); }
  std::string rows(const std::string& sql) { return support::satirlar(s.oturum.Baglanti->query(sql)); }

  std::filesystem::path folder;
  support::FakeSurroundings s;
  std::unique_ptr<db::ConnectionFactory> factory;
};

// The companies are made at the first test; each test empties the tables that it writes.
class SirketTest : public testing::Test {
 protected:
  static Sirket& sirket() {
    static Sirket made;
    return made;
  }
};

}  // namespace company::test
