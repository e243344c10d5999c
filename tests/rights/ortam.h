// An embedded server with the catalog and two companies, MERKEZ (1) and SUBE (2), and a log of statements.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "catalog/sunucu_hazirla.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "rights/kullanici_karti.h"
#include "session/statements.h"
#include "support/fakes.h"
#include "support/firma_karti.h"
#include "support/izleyen_surucu.h"
#include "support/satirlar.h"
#include "support/temp_folder.h"

namespace rights::test {

inline void baglan(support::FakeSurroundings& s, db::ConnectionFactory& surucu) {
  s.oturum.surucu = &surucu;
  s.oturum.Server_Adi = "(yerel)";
  s.oturum.Tanim_DB_Versiyon = s.oturum.Firma_DB_Versiyon = "2012.002";
  s.oturum.Supervisor = true;
  s.oturum.Kullanici_ID = 1;
  s.platform.folder = ZEMBERA_DATA;
}

// Made once for all tests of a program; each takes a copy.
inline const std::filesystem::path& hazirKlasor() {
  static const support::TempFolder made;
  static const bool filled = [] {
    engine::Server::create(made.path / "veri", "sa", "gizli");
    const auto surucu = db::makeConnectionFactory(made.path);
    support::FakeSurroundings s;
    baglan(s, *surucu);
    catalog::Sunucu_Hazirla(s.oturum, {"Korvena", "abc", ""});
    s.oturum.Veri_Klasoru = (made.path / "veri").string();
    for (const char* ad : {"MERKEZ", "SUBE"}) {
      s.oturum.Yeni_Kayit = true;
      auto kart = support::firmaKarti(ad);
      company::Kaydet(s.oturum, kart);
    }
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
    return true;
  }();
  EXPECT_TRUE(filled);
  return made.path;
}

class Ortam {
 public:
  Ortam() : surucu(kopya(klasor.path)) {
    baglan(s, surucu);
    bagla("Defination_DB");
  }
  ~Ortam() {
    o().Kayitlar.close();
    o().Baglanti.reset();
    o().Baglanti3.reset();
  }
  Ortam(const Ortam&) = delete;
  Ortam& operator=(const Ortam&) = delete;

  session::Oturum& o() { return s.oturum; }
  void bagla(const std::string& database) { session::Katalog_Bagla(o(), database); }
  void run(const std::string& sql) {
    rows("SELECT 1");
    bakis_->execute(sql);
  }
  // Rows joined by newlines, values by '|', trimmed; on a connection of its own.
  std::string rows(const std::string& sql) {
    if (!bakis_) {
      bakis_ = bakan->make("(yerel)");
      bakis_->open({"(yerel)", "sa", "gizli", "Defination_DB", false});
    }
    return support::satirlar(bakis_->query(sql));
  }
  // All rows that the procedures of this room write.
  std::string hersey() {
    std::string out;
    for (const char* tablo : {"sysuslng", "sysusfrmlng", "Kullanici", "Kullanici_Menu", "KASIYERCONFIG",
                              "KSKISAYOL", "MERKEZ.dbo.KULLANICIAMBAR", "MERKEZ.dbo.KULLANICIISYERI",
                              "SUBE.dbo.KULLANICIAMBAR", "SUBE.dbo.KULLANICIISYERI"})
      out += std::string(tablo) + ":\n" + rows("SELECT * FROM " + std::string(tablo)) + "\n";
    return out;
  }
  // A user of the companies with those numbers; gives his id.
  std::int64_t kullanici(const std::string& ad, const std::string& sifre,
                         std::vector<std::int64_t> firmalar) {
    o().Yeni_Kayit = true;
    o().Inceleme = false;
    KullaniciKarti kart;
    Kullanici_Karti_Ac(o(), kart);
    kart.Kullanici_Adi = ad;
    kart.Kullanici_Sifre = kart.Sifre_Onay = sifre;
    for (FirmaSatiri& firma : kart.Firmatreelist)
      firma.secili = std::find(firmalar.begin(), firmalar.end(), firma.id) != firmalar.end();
    EXPECT_TRUE(Ekle_Tamam(o(), kart).kaydedildi) << s.boxes.last();
    return std::stoll(rows("SELECT MAX(sysus_ID) FROM sysuslng"));
  }

  support::TempFolder klasor;
  support::FakeSurroundings s;
  support::IzleyenSurucu surucu;
  std::unique_ptr<db::ConnectionFactory> bakan = db::makeConnectionFactory(klasor.path);

 private:
  std::unique_ptr<db::Connection> bakis_;
  static std::unique_ptr<db::ConnectionFactory> kopya(const std::filesystem::path& folder) {
    std::filesystem::copy(hazirKlasor(), folder, std::filesystem::copy_options::recursive);
    return db::makeConnectionFactory(folder);
  }
};

class OrtamTest : public testing::Test, protected Ortam {};

}  // namespace rights::test
