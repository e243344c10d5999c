// A year rolled over, by scale of the example data (arguments, default 1 10): processor time of the run onto
// an empty upgraded company with its proof, its statements, its memory, and the floor: the same rows written
// by set-based SQL in the bare storage library (devir_taban.h). Ratios of one run.
//
//   devir_bench 1 10 100
#include <cstdio>
#include <cstdlib>

#include "bench/devir_ortami.h"
#include "bench/devir_taban.h"
#include "bench/own_memory.h"
#include "company/ornek_veri.h"

namespace {

// What a statement per row and two per reference would be: counted from the rows, not sent.
std::int64_t satirSatir(db::Connection& c) {
  struct Tablo {
    const char* ad;
    int referans;
  };
  constexpr Tablo tablolar[] = {{"STOKKART", 13},   {"CARIKART", 4},      {"STOKFIYAT", 1}, {"MUHKART", 1},
                                {"CEKKART", 4},     {"CEK", 5},           {"SENETKART", 4}, {"SENET", 5},
                                {"SIPARISKART", 3}, {"SIPARISHAREKET", 4}};
  std::int64_t toplam = 0;
  for (const Tablo& t : tablolar)
    toplam += c.query(std::string("SELECT COUNT(*) FROM HEDEF.dbo.") + t.ad)->value(0, 0).integer() *
              (2 + 2 * t.referans);
  // Openings: card, history or due day, row.
  for (const char* const t : {"STOKHAREKET", "ACILIS"})
    toplam += c.query(std::string("SELECT COUNT(*) FROM HEDEF.dbo.") + t)->value(0, 0).integer() * 3;
  return toplam;
}

std::int64_t kartSayisi(db::Connection& c) {
  std::int64_t toplam = 0;
  for (const char* const t : {"STOKKART", "CARIKART", "CEKKART", "SENETKART", "MUHKART", "SIPARISKART"})
    toplam += c.query(std::string("SELECT COUNT(*) FROM KAYNAK.dbo.") + t)->value(0, 0).integer();
  return toplam;
}

double olc(int olcek, double ilk) {
  bench::DevirOrtami<support::IzleyenSurucu> ortam;
  session::Oturum& o = ortam.o;
  support::Izleme& izleme = ortam.surucu.izleme;
  const auto yalnizSayisi = [&](std::size_t) { std::string().swap(izleme.deyimler.back()); };
  izleme.sonra = yalnizSayisi;  // their texts would outgrow everything else
  const auto veri = company::Ornek_Veri_Yaz(o, "KAYNAK", {olcek, 1});
  if (!veri.hata.empty()) throw std::runtime_error(veri.hata);
  session::Katalog_Bagla(o, "Defination_DB");
  const rollover::DevirGirdisi g = ortam.girdi();
  const std::int64_t kart = kartSayisi(*o.Baglanti);
  izleme.sifirla();
  izleme.sonra = yalnizSayisi;
  const long once = bench::statusKilobytes("RssAnon");
  const long long kendiOnce = bench::own.bytes, kitaplikOnce = bench::library.bytes;
  bench::own.restart();
  bench::library.restart();
  rollover::DevirSonucu sonuc;
  const double sure = bench::processorOf([&] { sonuc = rollover::Devret(o, g); });
  if (!sonuc.tamam) throw std::runtime_error(sonuc.hata);
  const long long kendi = bench::own.peak - kendiOnce, kitaplik = bench::library.peak - kitaplikOnce;
  const auto deyim = static_cast<std::int64_t>(izleme.deyimler.size());
  const std::int64_t saf = satirSatir(*o.Baglanti);
  o.Kayitlar.close();
  o.Baglanti.reset();
  bench::DevirTabani taban(ortam.temporary.path);
  const double tabanSure = taban.olc();
  if (const std::string farklar = taban.farklar(); !farklar.empty())
    std::printf("the floor's rows differ from those of the run:\n%s", farklar.c_str());
  std::printf(
      "scale %d: source %lld rows, written %lld, %.2f s of the processor, floor %.2f s (ratio %.1f), %lld "
      "statements (naive %lld, %.0f times), memory: own peak %lld kB (%.0f bytes for each of %lld cards), "
      "library's "
      "peak %lld kB, resident %+ld kB, unexplained %lld",
      olcek, static_cast<long long>(veri.satir), static_cast<long long>(sonuc.eklenen), sure, tabanSure,
      sure / tabanSure, static_cast<long long>(deyim), static_cast<long long>(saf),
      static_cast<double>(saf) / static_cast<double>(deyim), kendi / 1024,
      static_cast<double>(kendi) / static_cast<double>(kart), static_cast<long long>(kart), kitaplik / 1024,
      bench::statusKilobytes("RssAnon") - once, static_cast<long long>(sonuc.kanit.aciklanmayan()));
  if (ilk > 0) std::printf(", time per scale %.2f of the first", sure / olcek / ilk);
  std::printf("\n");
  std::fflush(stdout);
  return sure / olcek;
}

}  // namespace

int main(int argc, char** argv) {
  bench::countLibrary();
  try {
    double ilk = 0;
    for (int i = 1; i < std::max(argc, 3); ++i) {
      const int olcek = i < argc ? std::atoi(argv[i]) : (i == 1 ? 1 : 10);
      const double birim = olc(std::max(1, olcek), ilk);
      if (ilk == 0) ilk = birim;
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
