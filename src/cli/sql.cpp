#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"
#include "cli/yiginlar.h"
#include "platform/code_page.h"
#include "session/statements.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 7> options = {{
    {"--db", "Veritabanının adı", true, Secenek::Tur::Metin, "VERİTABANI"},
    bicimTsv,
    {"-i,--girdi", "İfadeler bu dosyadan okunur", false, Secenek::Tur::Metin, "DOSYA"},
    {"--yanki", "Her yığının sonucundan önce '## ' ile ilk satırı; hatalar yerlerinde '!! Msg …' olarak",
     false, Secenek::Tur::Bayrak, ""},
    {"--dur", "İlk hatada durur", false, Secenek::Tur::Bayrak, ""},
    {"--olc", "Sonunda süreyi ve plan önbelleğinin isabet oranını yazar", false, Secenek::Tur::Bayrak, ""},
    {"IFADE", "Çalıştırılacak ifadeler; verilmezse dosyadan ya da standart girdiden okunur", false,
     Secenek::Tur::Konum, ""},
}};

constexpr std::string_view more =
    "Yığınlar, yalnızca GO yazan satırlarla ayrılır (GO 3: önceki yığın üç kez). Satır sayıları ve iletiler\n"
    "standart hataya yazılır. Bir hata kendi yığınını bitirir; sonraki yığın çalışır. tsv: NULL, \\t, \\n,\n"
    "\\r, \\\\; tarih YYYY-AA-GG SS:DD:ss.mmm; BIT 0 ya da 1.";

// Writes each result as it comes.
class Writer : public db::BatchSink {
 public:
  Writer(Ortam& ortam, Bicim bicim) : ortam_(ortam), bicim_(bicim) {}

  void onRows(std::unique_ptr<db::Rows> rows) override {
    if (separate_) ortam_.out << "\n";
    separate_ = true;
    sonucYaz(ortam_.out, *rows, bicim_);
    onRowCount(rows->count());
  }
  void onRowCount(std::int64_t rows) override { ortam_.bilgi() << "(" << rows << " satır)\n"; }
  void onMessage(const std::string& text) override { ortam_.err << text << "\n"; }

  // A line of another kind has been written: no blank line is due.
  void restart() { separate_ = false; }

 private:
  Ortam& ortam_;
  Bicim bicim_;
  bool separate_ = false;
};

// Whatever can be read: a file, a pipe, the standard input by its name.
std::optional<std::string> readInput(const std::string& path) {
  std::error_code error;
  std::ifstream in(path, std::ios::binary);
  if (!in || std::filesystem::is_directory(path, error)) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(in), {});
}

std::optional<std::string> scriptOf(Ortam& ortam, const Degerler& values) {
  if (values.var("IFADE")) return values.metin("IFADE");
  if (values.var("girdi")) return readInput(values.metin("girdi"));
  std::ostringstream text;
  text << ortam.in.rdbuf();
  return text.str();
}

std::string asUtf8(std::string script) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (script.starts_with(mark)) script.erase(0, mark.size());
  return platform::isUtf8(script) ? script : platform::decode1254(script);
}

class Run {
 public:
  Run(KomutOturumu& komut, Bicim bicim, const Degerler& values)
      : komut_(komut), writer_(komut.ortam, bicim), echo_(values.var("yanki")), stop_(values.var("dur")) {}

  int all(const std::vector<Yigin>& batches) {
    for (const Yigin& batch : batches) {
      for (int i = 0; i < batch.tekrar; ++i) {
        one(batch.metin);
        if (failed_ && stop_) return reddedildi;
      }
    }
    return failed_ ? reddedildi : tamam;
  }

  std::int64_t count() const { return count_; }

 private:
  void one(const std::string& batch) {
    ++count_;
    if (echo_) {
      komut_.ortam.out << "## " << ilkSatir(batch) << "\n";
      writer_.restart();
    }
    try {
      komut_.oturum.Baglanti->run(batch, writer_);
    } catch (const db::SqlError& error) {
      failed_ = true;
      if (echo_)
        komut_.ortam.out << "!! " << hataSatiri(error) << "\n";
      else
        komut_.ortam.err << hataSatiri(error) << "\n";
    }
    komut_.ortam.out.flush();
  }

  KomutOturumu& komut_;
  Writer writer_;
  bool echo_, stop_;
  bool failed_ = false;
  std::int64_t count_ = 0;
};

void writeMeasures(KomutOturumu& komut, std::int64_t batches, std::chrono::steady_clock::duration time) {
  const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(time).count();
  std::ostream& err = komut.ortam.err;
  err << "Süre: " << microseconds / 1000 << "." << (microseconds / 100) % 10 << " ms, yığın: " << batches;
  if (const auto plans = komut.oturum.Baglanti->planCounters()) {
    const std::int64_t all = plans->hits + plans->misses;
    err << ", plan önbelleği: isabet " << plans->hits << ", ıska " << plans->misses << ", oran %"
        << (all == 0 ? 0 : plans->hits * 100 / all);
  }
  err << "\n";
}

bool connect(KomutOturumu& komut, const std::string& database) {
  if (!komut.sunucuyuOku()) return false;
  try {
    session::Katalog_Bagla(komut.oturum, database);
    return true;
  } catch (const db::SqlError& error) {
    komut.ortam.err << hataSatiri(error) << "\n";
    return false;
  }
}

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tsv);
  if (values.var("IFADE") && values.var("girdi")) {
    ortam.err << "İfade ve dosya birlikte verilemez.\n";
    return yanlisKullanim;
  }
  const auto script = scriptOf(ortam, values);
  if (!script) {
    ortam.err << "Dosya okunamadı: " << values.metin("girdi") << "\n";
    return reddedildi;
  }
  KomutOturumu komut(ortam);
  if (!connect(komut, values.metin("db"))) return reddedildi;
  Run batches(komut, bicim, values);
  const auto start = std::chrono::steady_clock::now();
  const int code = batches.all(yiginlaraBol(asUtf8(*script)));
  if (values.var("olc")) writeMeasures(komut, batches.count(), std::chrono::steady_clock::now() - start);
  return code;
}

}  // namespace

const Komut& sqlKomutu() {
  static const Komut command{"sql", "sys.inf'in sunucusunda SQL yığınları çalıştırır", more, options, run};
  return command;
}

}  // namespace cli
