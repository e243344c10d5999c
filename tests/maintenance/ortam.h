// An embedded server with its catalog and companies that hold one table each.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "catalog/create_database.h"
#include "catalog/sunucu_hazirla.h"
#include "db/drivers.h"
#include "engine/server.h"
#include "session/statements.h"
#include "support/fakes.h"
#include "support/temp_folder.h"

namespace maintenance::test {

namespace fs = std::filesystem;

class Ortam {
 public:
  Ortam() : klasor(gecici.emplace().path), veri(klasor / "veri") { hazirla(); }
  // In a folder that stays; a server that is there already is used as it is.
  explicit Ortam(const fs::path& yer) : klasor(yer), veri(klasor / "veri") {
    if (!engine::Server::exists(veri)) {
      hazirla();
      return;
    }
    bagla();
    s.oturum.Veri_Klasoru = veri.string();
  }
  ~Ortam() { birak(); }
  Ortam(const Ortam&) = delete;
  Ortam& operator=(const Ortam&) = delete;

  void bagla() {
    surucu = db::makeConnectionFactory(klasor);
    s.oturum.surucu = surucu.get();
    s.oturum.Server_Adi = "(yerel)";
    s.oturum.Tanim_DB_Versiyon = "2012.002";
    s.platform.folder = klasor;
  }
  void birak() {
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
    surucu.reset();
  }

  void firma(const std::string& ad, const std::string& deger) {
    calistir("master", catalog::createDatabaseStatement(ad, veri.string()));
    calistir(ad, "CREATE TABLE T(A VARCHAR(50) NULL)");
    yaz(ad, deger);
    calistir("Defination_DB",
             "INSERT INTO sysfrmlng(sysfrm_nm,sysfrm_dbnm,sysfrm_kd) VALUES ('" + ad + "','" + ad + "','1')");
  }
  void yaz(const std::string& ad, const std::string& deger) {
    calistir(ad, "DELETE FROM T INSERT INTO T(A) VALUES ('" + deger + "')");
  }
  void calistir(const std::string& veritabani, const std::string& sql) {
    session::Katalog_Bagla(s.oturum, veritabani);
    s.oturum.Baglanti->execute(sql);
  }
  // The rows of a query, cells joined by "|".
  std::vector<std::string> oku(const std::string& veritabani, const std::string& sql) {
    session::Katalog_Bagla(s.oturum, veritabani);
    const auto rows = s.oturum.Baglanti->query(sql);
    std::vector<std::string> satirlar;
    for (std::int64_t row = 0; rows && row < rows->count(); ++row) {
      std::string satir;
      for (int column = 0; column < static_cast<int>(rows->fields().size()); ++column)
        satir += (column ? "|" : "") + rows->value(row, column).trimmed();
      satirlar.push_back(satir);
    }
    return satirlar;
  }
  std::string deger(const std::string& ad) {
    const auto satirlar = oku(ad, "SELECT A FROM T");
    return satirlar.size() == 1 ? satirlar.front() : std::to_string(satirlar.size()) + " satır";
  }
  bool calisiyor() { return surucu->local("(yerel)")->running(); }

  std::optional<support::TempFolder> gecici;
  const fs::path klasor, veri;
  support::FakeSurroundings s;
  std::unique_ptr<db::ConnectionFactory> surucu;

 private:
  void hazirla() {
    engine::Server::create(veri, "sa", "gizli");
    bagla();
    catalog::Sunucu_Hazirla(s.oturum, {"Korvena", "abc", ""});
    s.boxes.shown.clear();
    s.oturum.Veri_Klasoru = veri.string();
  }
};

// Names in a folder, without what the storage library keeps beside an open data file.
inline std::vector<std::string> icerik(const fs::path& klasor) {
  std::vector<std::string> adlar;
  for (const auto& giris : fs::directory_iterator(klasor)) {
    const std::string ad = giris.path().filename().string();
    if (!ad.ends_with("-wal") && !ad.ends_with("-shm")) adlar.push_back(ad);
  }
  std::sort(adlar.begin(), adlar.end());
  return adlar;
}

using Adlar = std::vector<std::string>;

}  // namespace maintenance::test
