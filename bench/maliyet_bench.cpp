// The costing of one item with many movements (first argument, default 100,000) that lie in 1, 10 and 100
// warehouses: processor time of a trial rollover, how often the run and its proof read the movements, and how
// many rows they are given. Ratios of one run.
#include <cstdio>
#include <cstdlib>

#include "bench/devir_ortami.h"

namespace {

// How many rows the server gives to the questions for movements.
class Sayac : public db::BatchSink {
 public:
  explicit Sayac(db::BatchSink& asil) : asil_(asil) {}
  void onRows(std::unique_ptr<db::Rows> rows) override {
    sayi += rows->count();
    asil_.onRows(std::move(rows));
  }
  void onRowCount(std::int64_t rows) override { asil_.onRowCount(rows); }
  void onMessage(const std::string& text) override { asil_.onMessage(text); }
  std::int64_t pageRows() const override { return asil_.pageRows(); }
  std::int64_t sayi = 0;

 private:
  db::BatchSink& asil_;
};

struct Okuma {
  int soru = 0;
  std::int64_t satir = 0;
};

class SayanBaglanti : public support::IzleyenBaglanti {
 public:
  SayanBaglanti(std::unique_ptr<db::Connection> asil, support::Izleme& izleme, Okuma& okuma)
      : IzleyenBaglanti(std::move(asil), izleme), okuma_(okuma) {}
  void run(std::string_view batch, db::BatchSink& sink) override {
    Sayac sayac(sink);
    IzleyenBaglanti::run(batch, sayac);
    if (batch.find("Maliyet FROM KAYNAK.dbo.STOKHAREKET") == std::string_view::npos) return;
    ++okuma_.soru;
    okuma_.satir += sayac.sayi;
  }

 private:
  Okuma& okuma_;
};

class SayanSurucu : public support::IzleyenSurucu {
 public:
  using IzleyenSurucu::IzleyenSurucu;
  std::unique_ptr<db::Connection> make(const std::string& server) override {
    return std::make_unique<SayanBaglanti>(IzleyenSurucu::make(server), bos_, okuma);
  }
  Okuma okuma;

 private:
  support::Izleme bos_;
};

double olc(int hareket, int ambar, double ilk) {
  bench::DevirOrtami<SayanSurucu> ortam;
  session::Katalog_Bagla(ortam.o, "KAYNAK");
  const std::string n = std::to_string(hareket), a = std::to_string(ambar);
  ortam.o.Baglanti->execute(
      "INSERT INTO STOKKART (Stok_Kod,Stok_Ad) VALUES ('S1','Bir') DELETE FROM AMBAR DECLARE @i INT SET @i=0 "
      "WHILE @i<" +
      a + " BEGIN SET @i=@i+1 INSERT INTO AMBAR (Ambar_No) VALUES (@i) END");
  ortam.o.Baglanti->execute(
      "SET NOCOUNT ON BEGIN TRAN DECLARE @i INT SET @i=0 WHILE @i<" + n +
      " BEGIN SET @i=@i+1 INSERT INTO STOKHAREKET "
      "(Tarih,Fis_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Ambar_No,Giris,Cikis,Maliyet) VALUES "
      "(DATEADD(d,@i%360,'20120101'),'1','x','Mal',1,'S1',1+@i%" +
      a +
      ",CASE WHEN @i%3=0 THEN 0 ELSE 5 END,CASE WHEN @i%3=0 THEN 4 ELSE 0 END,@i%17+0.5) END COMMIT TRAN");
  session::Katalog_Bagla(ortam.o, "Defination_DB");
  rollover::DevirGirdisi g = ortam.girdi();
  g.deneme = true;
  ortam.surucu.okuma = {};
  rollover::DevirSonucu sonuc;
  const double sure = bench::processorOf([&] { sonuc = rollover::Devret(ortam.o, g); });
  if (!sonuc.tamam) throw std::runtime_error(sonuc.hata);
  const Okuma& okuma = ortam.surucu.okuma;
  std::printf(
      "%d movements in %d warehouses: %.2f s of the processor (%.2f of the first), asked for %d times, "
      "%.1f rows a movement, unexplained %lld\n",
      hareket, ambar, sure, ilk > 0 ? sure / ilk : 1.0, okuma.soru,
      static_cast<double>(okuma.satir) / hareket, static_cast<long long>(sonuc.kanit.aciklanmayan()));
  std::fflush(stdout);
  return sure;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const int hareket = argc > 1 ? std::atoi(argv[1]) : 100'000;
    double ilk = 0;
    for (const int ambar : {1, 10, 100}) {
      const double sure = olc(hareket, ambar, ilk);
      if (ilk == 0) ilk = sure;
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
