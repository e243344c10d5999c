// A company's creation that breaks off anywhere: when the cause is gone, the console deletes what stands and
// the card makes the company again, whole, with its chart. Another company beside it stays as it was.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "catalog/sunucu_hazirla.h"
#include "company/sema.h"
#include "engine/server.h"
#include "fault_vfs.h"
#include "other_process.h"
#include "session/konsol.h"
#include "session/statements.h"
#include "support/fakes.h"
#include "support/firma_karti.h"
#include "support/izleyen_surucu.h"
#include "support/surucu.h"

namespace scenarios {
namespace {

namespace fs = std::filesystem;

constexpr const char* firma = "YENI2012";
constexpr const char* komsu = "KOMSU2012";
const std::string yarida = "\"YENI2012\" firmasının oluşturulması yarıda kaldı; veritabanı eksiktir.";
const std::string listelenemedi = "\"YENI2012\" firması listeye yazılamadı.";
const std::string plansiz = "Standart hesap planı yüklenemedi.";

// One program on the server's folder.
class Program {
 public:
  explicit Program(const fs::path& folder) : surucu(support::surucuYap(folder)) {
    s.oturum.surucu = &surucu;
    s.oturum.Server_Adi = "(yerel)";
    s.oturum.Tanim_DB_Versiyon = "2012.002";
    s.oturum.Veri_Klasoru = (folder / "veri").string();
    s.platform.folder = ZEMBERA_DATA;
  }
  ~Program() {
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  void olustur(const std::string& ad) {
    auto kart = support::firmaKarti(ad);
    kart.StandartHesapPlani = true;
    s.oturum.Yeni_Kayit = true;
    s.boxes.shown.clear();
    company::Kaydet(s.oturum, kart);
  }
  std::vector<session::Dugum> dugumler(const std::string& ad) {
    auto nodes = session::Firma_Listesi_Doldur(s.oturum);
    std::erase_if(nodes, [&](const session::Dugum& n) { return n.text != ad; });
    return nodes;
  }
  bool sil(const session::Dugum& node) {
    kimseKalmasin(node.text);
    s.boxes.shown.clear();
    s.boxes.answers = {true, true};
    const bool gone = session::MNSil(s.oturum, node).listeyiYenile;
    s.boxes.answers.clear();
    return gone;
  }
  db::Connection& bagla(const std::string& database) {
    session::Katalog_Bagla(s.oturum, database);
    return *s.oturum.Baglanti;
  }
  std::int64_t sayi(const std::string& database, const std::string& sql) {
    const auto rows = bagla(database).query(sql);
    return rows->value(0, 0).integer();
  }
  // A server on the network notices a moment later that a client has gone.
  void kimseKalmasin(const std::string& ad) {
    const std::string others =
        "SELECT COUNT(*) FROM sysprocesses WHERE dbid=DB_ID('" + ad + "') AND spid<>@@SPID";
    for (int i = 0; i < 100 && sayi("master", others) != 0; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  bool sunucuBiliyor(const std::string& ad) {
    return sayi("master", "SELECT COUNT(*) FROM sysdatabases WHERE name='" + ad + "'") != 0;
  }
  // What the catalog holds of the company, and how many rows each of its tables has.
  std::string hal(const std::string& ad) {
    std::string out;
    const std::string id = "(SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" + ad + "')";
    for (const std::string& from :
         {"sysfrmlng WHERE sysfrm_ID IN " + id, "sysusfrmlng WHERE sysfrm_ID IN " + id,
          "Kullanici WHERE Firma_ID IN " + id})
      out += std::to_string(sayi("Defination_DB", "SELECT COUNT(*) FROM " + from)) + " ";
    const auto tables = bagla(ad).query("SELECT name FROM sysobjects WHERE type='U' ORDER BY name");
    for (std::int64_t i = 0; i < tables->count(); ++i)
      out += std::to_string(s.oturum.Baglanti->query("SELECT COUNT(*) FROM " + tables->value(i, 0).trimmed())
                                ->value(0, 0)
                                .integer()) +
             " ";
    return out;
  }
  company::Sema sema(const std::string& ad) { return company::semaOku(bagla(ad)); }
  bool gosterildi(const std::string& begin) const {
    const auto texts = s.boxes.texts();
    return std::any_of(texts.begin(), texts.end(), [&](const auto& t) { return t.starts_with(begin); });
  }

  support::FakeSurroundings s;
  support::IzleyenSurucu surucu;
};

class FirmaKesinti : public testing::Test {
 protected:
  FirmaKesinti() : klasor(yeniKlasor()) {
    fs::copy(taban().klasor, klasor, fs::copy_options::recursive);
    ac();
  }
  ~FirmaKesinti() override {
    p.reset();
    fs::remove_all(klasor);
  }

  void ac() { p = std::make_unique<Program>(klasor); }
  void yenidenAc() {
    p.reset();
    ac();
  }
  // Cause gone: the console deletes whatever is listed, the card makes it again.
  void toparlan() {
    const auto nodes = p->dugumler(firma);
    ASSERT_LE(nodes.size(), 1U);
    for (const auto& node : nodes) {
      ASSERT_TRUE(p->sil(node)) << p->s.boxes.last();
      EXPECT_FALSE(p->sunucuBiliyor(firma));
    }
    const bool kaldi = p->sunucuBiliyor(firma);
    p->s.boxes.answers = {true};
    p->olustur(firma);
    p->s.boxes.answers.clear();
    ASSERT_EQ(p->s.oturum.Son_Hata, "");
    ASSERT_EQ(p->s.boxes.shown.size(), kaldi ? 1U : 0U) << p->s.boxes.last();
    tamOlmali();
    ASSERT_TRUE(p->sil(p->dugumler(firma).at(0)));
  }
  // The card has told that something broke off, and where; before anything was made the look-up's own
  // failure is all there is to tell.
  void anlatildi() {
    const auto texts = p->s.boxes.texts();
    if (!texts.empty() && texts.back().starts_with("SELECT name FROM  sysdatabases")) return;
    EXPECT_TRUE(p->gosterildi(yarida) || p->gosterildi(listelenemedi) || p->gosterildi(plansiz) ||
                p->gosterildi("CREATE DATABASE"))
        << (texts.empty() ? "nothing" : texts.back());
  }
  void tamOlmali() {
    EXPECT_EQ(p->hal(firma), taban().hal);
    EXPECT_TRUE(company::semaKarsilastir(taban().sema, p->sema(firma)).empty());
    EXPECT_EQ(p->hal(komsu), taban().hal);
    EXPECT_EQ(p->dugumler(firma).size(), 1U);
  }

  fs::path klasor;
  std::unique_ptr<Program> p;
  FaultyDisk disk;  // the last: no database is open yet, none is when it goes

 private:
  struct Taban {
    fs::path klasor = yeniKlasor();
    company::Sema sema;
    std::string hal;
    std::size_t deyimler = 0;
    Taban() {
      engine::Server::create(klasor / "veri", "sa", "gizli");
      Program program(klasor);
      catalog::Sunucu_Hazirla(program.s.oturum, {"Korvena", "abc", ""});
      program.surucu.izleme.sifirla();
      program.olustur(komsu);
      deyimler = program.surucu.izleme.deyimler.size();
      sema = program.sema(komsu);
      hal = program.hal(komsu);
      EXPECT_EQ(program.s.boxes.texts(), std::vector<std::string>{});
    }
    ~Taban() { fs::remove_all(klasor); }
  };

 protected:
  static const Taban& taban() {
    static const Taban made;
    return made;
  }
  static fs::path yeniKlasor() {
    std::string name = (fs::temp_directory_path() / "zembera-kesinti-XXXXXX").string();
    return ::mkdtemp(name.data());
  }
};

// `parts` numbers below `end`, the first ones all: much happens before the first table.
std::vector<int> yerler(int first, int end, int parts) {
  std::vector<int> out;
  for (int i = 0; i < first; ++i) out.push_back(i);
  for (int i = 0; i < parts; ++i) out.push_back(first + (end - first) * i / parts + i);
  return out;
}

TEST_F(FirmaKesinti, DiskIsFullAtAnyWrite) {
  disk.arm({SQLITE_FULL, 1 << 30, true});
  p->olustur(firma);
  const int writes = disk.passed();
  disk.disarm();
  tamOlmali();
  ASSERT_TRUE(p->sil(p->dugumler(firma).at(0)));
  for (const int at : yerler(2, writes, 4)) {
    const Fault fault = at % 2 == 0 ? Fault{SQLITE_FULL, at, true} : Fault{SQLITE_IOERR_WRITE, at, false};
    SCOPED_TRACE(std::to_string(at) + " of " + std::to_string(writes));
    disk.arm(fault);
    p->olustur(firma);
    ASSERT_TRUE(disk.disarm());
    if (p->s.boxes.shown.empty())  // only the copying of the log back into the file failed, and is made up
      tamOlmali();
    else
      anlatildi();
    toparlan();
    if (HasFatalFailure()) return;
  }
}

TEST_F(FirmaKesinti, ServiceStopsAtAnyStatement) {
  const int statements = static_cast<int>(taban().deyimler);
  for (const int at : yerler(4, statements, 3)) {
    SCOPED_TRACE(at);
    p->surucu.izleme.sifirla();
    p->surucu.izleme.once = [&](std::size_t number) {
      if (static_cast<int>(number) == at + 1) p->surucu.local("(yerel)")->stop();
    };
    p->olustur(firma);
    p->surucu.izleme.sifirla();
    anlatildi();
    yenidenAc();
    p->surucu.local("(yerel)")->start();
    toparlan();
    if (HasFatalFailure()) return;
  }
}

TEST_F(FirmaKesinti, ProcessIsKilledAtAnyMoment) {
  std::mt19937 random(20120131);
  for (const int at : yerler(0, static_cast<int>(taban().deyimler), 4)) {
    SCOPED_TRACE(at);
    p.reset();
    int sent[2];
    ASSERT_EQ(::pipe(sent), 0);
    const pid_t child = inChild([&] {
      Program own(klasor);
      own.surucu.izleme.once = [&](std::size_t) {
        if (::write(sent[1], "x", 1) != 1) ::_exit(3);
      };
      own.olustur(firma);
      ::pause();
    });
    ::close(sent[1]);
    char byte;
    for (int i = 0; i <= at; ++i) ASSERT_EQ(::read(sent[0], &byte, 1), 1);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
    killChild(child);
    ::close(sent[0]);
    ac();
    toparlan();
    if (HasFatalFailure()) return;
  }
}

// What a killed process leaves between two statements, and what persons leave.
TEST_F(FirmaKesinti, DatabaseWithoutARowIsTakenUpOnlyWhenItIsEmptyAndWanted) {
  p->bagla("master").execute("CREATE DATABASE YENI2012");
  p->olustur(firma);
  EXPECT_EQ(p->s.oturum.Son_Hata, "Bu İsimle Bir Firma Zaten Var.");
  ASSERT_EQ(p->s.boxes.shown.size(), 2U);  // whether to go on with it, and whether its chart is wanted
  EXPECT_TRUE(p->s.boxes.shown[0].question);
  EXPECT_TRUE(p->s.boxes.shown[1].question);
  EXPECT_TRUE(p->dugumler(firma).empty());
  // A service that stops while that is being found out has not told that the name is taken.
  for (std::size_t at = 1; at < 4; ++at) {
    SCOPED_TRACE(at);
    p->surucu.izleme.sifirla();
    p->surucu.izleme.once = [&](std::size_t number) {
      if (number == at + 1) p->surucu.local("(yerel)")->stop();
    };
    p->olustur(firma);
    p->surucu.izleme.sifirla();
    EXPECT_EQ(p->s.oturum.Son_Hata.find("Zaten Var"), std::string::npos);
    EXPECT_FALSE(p->s.boxes.texts().empty());
    yenidenAc();
    p->surucu.local("(yerel)")->start();
  }
  toparlan();

  p->bagla("master").execute("CREATE DATABASE BASKA CREATE TABLE BASKA..T (A INT)");
  for (const char* name : {"BASKA", komsu}) {
    p->olustur(name);
    EXPECT_EQ(p->s.boxes.texts(),
              std::vector<std::string>{"\"" + std::string(name) +
                                       "\" adında bir firma zaten var; yeni firma oluşturulmadı.\nStandart "
                                       "hesap planı var olan bu firmaya yüklensin mi?"});
  }
  EXPECT_EQ(p->sayi("BASKA", "SELECT COUNT(*) FROM sysobjects WHERE type='U'"), 1);
  EXPECT_EQ(p->hal(komsu), taban().hal);
}

TEST_F(FirmaKesinti, RowOrFileWithoutADatabaseIsNoObstacleForGood) {
  // A data file is refused and left alone.
  const fs::path file = klasor / "veri" / "YENI2012.mdf";
  std::ofstream(file) << "somebody's";
  p->olustur(firma);
  EXPECT_TRUE(p->s.oturum.Son_Hata.starts_with("Bu Firma SQL SERVER Tarafından Tanınmıyor Ama Dosyası var."));
  EXPECT_TRUE(p->dugumler(firma).empty());
  EXPECT_EQ(fs::file_size(file), 10U);
  fs::remove(file);
  toparlan();
  // Its companion is found by the server alone: the company is listed without a database.
  std::ofstream(klasor / "veri" / "YENI2012_log.ldf") << "somebody's";
  p->olustur(firma);
  EXPECT_TRUE(p->gosterildi("CREATE DATABASE YENI2012"));
  p->olustur(firma);
  fs::remove(klasor / "veri" / "YENI2012_log.ldf");
  ASSERT_EQ(p->dugumler(firma).size(), 1U);
  // The second question may be answered with No.
  p->s.boxes.answers = {true, false};
  EXPECT_FALSE(session::MNSil(p->s.oturum, p->dugumler(firma)[0]).listeyiYenile);
  EXPECT_EQ(p->s.boxes.last(), "Bu Firma Kullanımda Olabilir. Firma Bilgieri Silinemedi.");
  // Made without having been deleted: the row is the new company's.
  p->olustur(firma);
  EXPECT_EQ(p->s.boxes.texts(), std::vector<std::string>{});
  tamOlmali();
  // A deletion that broke off behind the DROP.
  p->bagla("master").execute("DROP DATABASE YENI2012");
  toparlan();
}

TEST_F(FirmaKesinti, ChartThatBrokeOffIsLoadedFromTheOpenedCard) {
  p->surucu.izleme.sifirla();
  p->surucu.izleme.once = [&](std::size_t number) {
    if (number + 40 == taban().deyimler) disk.arm({SQLITE_FULL, 0, true});
  };
  p->olustur(firma);
  p->surucu.izleme.sifirla();
  ASSERT_TRUE(disk.disarm());
  EXPECT_TRUE(p->gosterildi(plansiz));
  EXPECT_EQ(p->sayi(firma, "SELECT COUNT(*) FROM MUHKART"), 0);
  company::FirmaKarti kart;
  p->s.oturum.Yeni_Kayit = false;
  p->s.oturum.Secili_ID = p->dugumler(firma).at(0).id;
  p->s.boxes.shown.clear();
  ASSERT_TRUE(company::Firma_Karti_Ac(p->s.oturum, kart).StandartHesapPlani_Acik);
  kart.StandartHesapPlani = true;
  EXPECT_TRUE(company::Kaydet(p->s.oturum, kart));
  EXPECT_EQ(p->s.boxes.texts(), std::vector<std::string>{});
  tamOlmali();
}

}  // namespace
}  // namespace scenarios
