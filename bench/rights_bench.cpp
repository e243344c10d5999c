// Rights of users; prints counts and ratios of one run:
//
//   editor  statements of opening, of another company and of saving, with 300 warehouses and 300 workplaces;
//           counted singly, whatever batches they are sent in
//   ticks   a tick that spreads over the whole tree, against walking the tree once
//   sheet   reads and time of the sheet of a company with 200 users
#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>

#include "bench/bare.h"
#include "catalog/sunucu_hazirla.h"
#include "company/firma_karti.h"
#include "db/drivers.h"
#include "engine/language.h"
#include "engine/server.h"
#include "rights/cizelge.h"
#include "rights/haklar.h"
#include "rights/kullanici_karti.h"
#include "rights/varsayilan.h"
#include "session/statements.h"
#include "support/fakes.h"
#include "support/izleyen_surucu.h"

namespace {

constexpr int places = 300, users = 200, rounds = 2000;

class Server {
 public:
  Server() : driver(made(folder.path)) {
    s.oturum.surucu = &driver;
    s.oturum.Server_Adi = "(yerel)";
    s.oturum.Tanim_DB_Versiyon = s.oturum.Firma_DB_Versiyon = "2012.002";
    s.oturum.Supervisor = true;
    s.platform.folder = folder.path;
    catalog::Sunucu_Hazirla(s.oturum, {"Olcum", "olcum", ""});
    s.oturum.Veri_Klasoru = (folder.path / "veri").string();
    for (const char* name : {"BIR", "IKI"}) company(name);
    user();
  }
  ~Server() {
    s.oturum.Kayitlar.close();
    s.oturum.Baglanti.reset();
  }

  void run(const std::string& sql) { s.oturum.Baglanti->execute(sql); }
  std::size_t statements(const std::function<bool()>& work) {
    driver.izleme.sifirla();
    if (!work()) throw std::runtime_error(s.boxes.last());
    std::size_t count = 0;
    for (const std::string& batch : driver.izleme.deyimler)
      count += engine::parseBatch(batch).statements.size();
    return count;
  }

  bench::Folder folder;
  support::FakeSurroundings s;
  support::IzleyenSurucu driver;

 private:
  static std::unique_ptr<db::ConnectionFactory> made(const std::filesystem::path& path) {
    engine::Server::create(path / "veri", "sa", "gizli");
    return db::makeConnectionFactory(path);
  }
  void company(const char* name) {
    s.oturum.Yeni_Kayit = true;
    company::FirmaKarti card;
    card.Firma_Adi = card.Firma_Unvani = name;
    card.Firma_Kodu = "00001";
    card.Bas_Tar = "01/01/2012";
    card.Bit_Tar = "31/12/2012";
    company::Kaydet(s.oturum, card);
    session::Katalog_Bagla(s.oturum, name);
    run("INSERT INTO KASAKART(Kasa_Kod) VALUES('K1')");
    for (int i = 2; i <= places; ++i)
      run("INSERT INTO AMBAR(Ambar_No) VALUES(" + std::to_string(i) +
          ") INSERT INTO ISYERITANIM(Isyeri_Kodu) VALUES('" + std::to_string(i) + "')");
  }
  void user() {
    rights::KullaniciKarti card;
    rights::Kullanici_Karti_Ac(s.oturum, card);
    card.Kullanici_Adi = "ALİ";
    for (auto& each : card.Firmatreelist) each.secili = true;
    rights::Ekle_Tamam(s.oturum, card);
  }
};

void editor(Server& server) {
  rights::YetkiDuzeni duzen;
  auto& o = server.s.oturum;
  o.Secili_ID = 2;
  const auto open = server.statements([&] { return rights::Yetki_Yukle(o, duzen) && duzen.okundu; });
  const auto other = server.statements([&] { return rights::Firma_Sec(o, duzen, "IKI"); });
  for (std::size_t i = 0; i < duzen.YetkiAmbarGrd.size(); i += 2) {
    rights::secimiCevir(duzen.YetkiAmbarGrd, i);
    rights::secimiCevir(duzen.YetkiIsyeriGrd, i);
  }
  rights::varsayilanYap(duzen.YetkiAmbarGrd, 4, true);
  rights::varsayilanYap(duzen.YetkiIsyeriGrd, 6, true);
  duzen.Def_Kasa_Kod = "K1";
  const auto save = server.statements([&] { return rights::TamamBtn(o, duzen); });
  std::printf(
      "editor with %zu warehouses and %zu workplaces: opening %zu statements (at most 12), another company "
      "%zu "
      "(at most 8), saving %zu (at most 10)\n",
      duzen.YetkiAmbarGrd.size(), duzen.YetkiIsyeriGrd.size(), open, other, save);
}

// One root over the whole tree, so that one tick reaches every row.
void ticks() {
  std::vector<session::TikSatiri> rows{{1, "Hepsi"}};
  for (session::TikSatiri row : rights::yetkiAgaci().satirlar) {
    ++row.seviye;
    rows.push_back(std::move(row));
  }
  session::TikAgaci tree(std::move(rows));
  double before = bench::processorSeconds();
  for (int i = 0; i < rounds; ++i)
    for (int row = 0; row < tree.boy(); ++row) benchmark::DoNotOptimize(tree.isaretli(row));
  const double walk = (bench::processorSeconds() - before) / rounds;
  before = bench::processorSeconds();
  for (int i = 0; i < rounds; ++i) {
    tree.degistir(0, i % 2 == 0);
    benchmark::ClobberMemory();
  }
  const double spread = (bench::processorSeconds() - before) / rounds;
  before = bench::processorSeconds();
  for (int i = 0; i < rounds; ++i) tree.yaziyaUygula("Ekle", i % 2 == 0);
  const double apply = (bench::processorSeconds() - before) / rounds;
  std::printf(
      "ticks over %d rows: walk %.2f us, spread %.2f us, ratio %.2f (at most 5), \"Ekle\" everywhere %.2f "
      "us\n",
      tree.boy(), walk * 1e6, spread * 1e6, spread / walk, apply * 1e6);
}

void sheet(Server& server) {
  session::Katalog_Bagla(server.s.oturum, "Defination_DB");
  for (int i = 3; i < users + 1; ++i) {
    const std::string id = std::to_string(i), name = "K" + id;
    server.run("INSERT INTO sysuslng(sysus_nm,sysus_lgn) VALUES('" + name + "','" + name + "')");
    server.run(rights::varsayilanSatir(rights::VarsayilanTur::YeniKullanici, "1", id, name, "x"));
  }
  rights::Cizelge table;
  const auto reads = server.statements([&] { return rights::cizelgeOku(server.s.oturum, "BIR", table); });
  std::size_t size = 0;
  const double before = bench::processorSeconds();
  size = rights::cizelgeHtml(table, rights::cizelgeSatirlari(table, {})).size();
  std::printf("sheet of %zu users: %zu statement (1), page of %zu kB in %.1f ms\n", table.kullanicilar.size(),
              reads, size / 1024, (bench::processorSeconds() - before) * 1e3);
}

}  // namespace

int main() {
  Server server;
  editor(server);
  ticks();
  sheet(server);
}
