// Files from before the checksums get them at their next upgrade.
#include <sqlite3.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include "company/guncelle_ortami.h"
#include "engine/catalog/sqlite_util.h"
#include "engine/function/functions.h"
#include "engine/store/companion.h"
#include "engine/store/file_layer.h"

namespace {

using namespace guncelle_testi;

std::string oku(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

class GuncelleSaglama : public Guncelle {
 protected:
  fs::path veri() const { return klasor / "veri"; }

  // The pair as the program's first version wrote it: no room for sums in the pages, a companion of text.
  void ilkBicimeCevir() {
    b.reset();
    const fs::path data = veri() / "FIRMA.mdf", log = veri() / "FIRMA_log.ldf", made = veri() / "eski";
    const std::string family = engine::readCompanion(log, "FIRMA");
    sqlite3* db = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI;
    ASSERT_EQ(sqlite3_open_v2(made.c_str(), &db, flags, nullptr), SQLITE_OK);
    engine::FunctionContext functions;
    engine::registerFunctions(db, &functions);
    engine::lite::exec(db, "ATTACH '" + engine::store::fileUri(data, log, "FIRMA") + "' AS yeni");
    engine::lite::exec(db, "PRAGMA writable_schema=ON");
    std::vector<std::string> statements, copies;
    {
      engine::lite::Stmt objects(db,
                                 "SELECT name,sql,type FROM yeni.sqlite_master WHERE sql IS NOT NULL "
                                 "ORDER BY type='index',rowid");
      while (objects.step()) {
        const std::string name = '"' + objects.text(0) + '"';
        if (objects.text(0) != "sqlite_sequence") statements.push_back(objects.text(1));
        if (objects.text(2) == "table")
          copies.push_back("INSERT INTO main." + name + " SELECT * FROM yeni." + name);
      }
    }
    for (const auto& statement : statements) engine::lite::exec(db, statement);
    for (const auto& statement : copies) engine::lite::exec(db, statement);
    engine::lite::exec(db, "UPDATE main.zb_meta SET value=1 WHERE key='format'; DETACH yeni");
    engine::lite::exec(db, "PRAGMA journal_mode=WAL");
    sqlite3_close(db);
    fs::rename(made, data);
    std::ofstream(log, std::ios::trunc) << "ZEMBERA-LOG 1\ndatabase FIRMA\nfamily " << family << "\nend\n";
    ASSERT_EQ(oku(data)[20], 0);
    b = std::make_unique<Baglam>(klasor);
  }

  // Turns one bit of a page in the middle; the number of the error that reading all tables then tells.
  std::string cevirVeOku() {
    b.reset();
    const fs::path data = veri() / "FIRMA.mdf";
    std::string bytes = oku(data);
    const std::size_t at = bytes.find("BirSatirlikIz");
    EXPECT_NE(at, std::string::npos);
    bytes[at + 3] ^= 4;
    std::ofstream(data, std::ios::binary | std::ios::trunc) << bytes;
    b = std::make_unique<Baglam>(klasor);
    try {
      return satir();
    } catch (const db::SqlError& error) {
      return "!" + std::to_string(error.serverNumber());
    }
  }
  std::string satir() { return b->satirlar("SELECT Unvan FROM CARIKART WHERE Cari_Kod='IZ'"); }
};

TEST_F(GuncelleSaglama, FileWithoutChecksumsGetsThemAndATurnedBitIsSeen) {
  calistir({"INSERT INTO CARIKART (Cari_Kod,Unvan) VALUES ('IZ','BirSatirlikIz')"});
  ilkBicimeCevir();
  EXPECT_EQ(satir(), "BirSatirlikIz");
  EXPECT_NE(cevirVeOku(), "BirSatirlikIz");  // served as it lies there: nothing could be seen
  EXPECT_NE(satir()[0], '!');
  calistir({"UPDATE CARIKART SET Unvan='BirSatirlikIz' WHERE Cari_Kod='IZ'"});
  const Icerik once = icerik(*b, "FIRMA");
  const auto sonuc = b->guncelle();
  ASSERT_TRUE(sonuc.tamamlandi) << sonuc.hata;
  herSatirDuruyor(once, icerik(*b, "FIRMA"));
  guncelOlmali();
  yenidenAc();
  EXPECT_EQ(satir(), "BirSatirlikIz");
  EXPECT_EQ(cevirVeOku(), "!824");
}

TEST_F(GuncelleSaglama, FileWithChecksumsIsNotBuiltAnew) {
  b->baglan("FIRMA").execute("ALTER DATABASE [firma] SET PAGE_VERIFY CHECKSUM");
  b.reset();
  struct stat once {
  }, sonra{};
  ASSERT_EQ(::stat((veri() / "FIRMA.mdf").c_str(), &once), 0);
  b = std::make_unique<Baglam>(klasor);
  b->baglan("FIRMA").execute("ALTER DATABASE [firma] SET PAGE_VERIFY CHECKSUM");
  b.reset();
  ASSERT_EQ(::stat((veri() / "FIRMA.mdf").c_str(), &sonra), 0);
  EXPECT_EQ(once.st_ino, sonra.st_ino);
  b = std::make_unique<Baglam>(klasor);
}

// A trial changes nothing, but tells the statement first.
TEST_F(GuncelleSaglama, ATrialTellsTheStatementAndLeavesTheFile) {
  ilkBicimeCevir();
  std::vector<std::string> first;
  const auto deneme = company::upgrade::Veritabani_Guncelle(b->s.oturum, "FIRMA", [&](const auto& deyimler) {
    if (first.empty()) first = deyimler.deyimler;
  });
  ASSERT_TRUE(deneme.tamamlandi) << deneme.hata;
  EXPECT_EQ(first, std::vector<std::string>{"ALTER DATABASE [FIRMA] SET PAGE_VERIFY CHECKSUM"});
  b.reset();
  EXPECT_EQ(oku(veri() / "FIRMA.mdf")[20], 0);
}

}  // namespace
