#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "db/table_name.h"
#include "platform/files.h"
#include "session/statements.h"
#include "session/sys_inf.h"
#include "session/uyarilar.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 3> options = {
    {{"--ad", "Denetlenecek veritabanı; verilmezse hepsi", false, Secenek::Tur::Metin, "AD"},
     {"--yenile", "Önce veri dosyasını yeniler: güncel biçim, her sayfada sağlama toplamı", false,
      Secenek::Tur::Bayrak, ""},
     {"--onar", "Başkalarına açık veri klasörünü, dosyalarını ve sys.inf'i kapatır", false,
      Secenek::Tur::Bayrak, ""}}};

constexpr std::string_view more =
    "Her sayfayı sağlama toplamıyla, her dizini tablosuyla, her satırı tipleriyle karşılaştırır ve bozuk\n"
    "olanları yazar. Bulgu yoksa çıkış kodu 0, varsa 1'dir. --yenile sırasında sunucu kısa bir süre durur.\n"
    "Başkalarına açık olan klasör ve dosyalar uyarı olarak yazılır; --onar onları önce kapatır.";

class Iletiler : public db::BatchSink {
 public:
  explicit Iletiler(Ortam& ortam) : ortam_(ortam) {}
  void onRows(std::unique_ptr<db::Rows>) override {}
  void onRowCount(std::int64_t) override {}
  void onMessage(const std::string& text) override { ortam_.out << text << "\n"; }

 private:
  Ortam& ortam_;
};

std::vector<std::string> adlar(KomutOturumu& komut, const Degerler& values) {
  if (values.var("ad")) return {values.metin("ad")};
  std::vector<std::string> names;
  const auto rows = komut.oturum.Baglanti->query("SELECT name FROM master..sysdatabases ORDER BY dbid");
  for (std::int64_t i = 0; rows && i < rows->count(); ++i) names.push_back(rows->value(i, 0).trimmed());
  return names;
}

bool denetle(KomutOturumu& komut, const std::string& ad, bool yenile) {
  Iletiler iletiler(komut.ortam);
  try {
    if (yenile)
      komut.oturum.Baglanti->run("ALTER DATABASE " + db::bracketed(ad) + " SET PAGE_VERIFY CHECKSUM",
                                 iletiler);
    komut.oturum.Baglanti->run("DBCC CHECKDB (" + db::bracketed(ad) + ") WITH NO_INFOMSGS", iletiler);
    komut.ortam.out << ad << ": sağlam\n";
    return true;
  } catch (const db::SqlError& error) {
    komut.ortam.err << ad << ": " << hataSatiri(error) << "\n";
    return false;
  }
}

void kapat(KomutOturumu& komut) {
  const auto sysInf = session::sysInfYolu(komut.ortam.dizin);
  if (platform::isOpenToOthers(sysInf)) {
    if (const auto error = platform::closeToOthers(sysInf))
      komut.ortam.err << sysInf.string() << ": " << error.message() << "\n";
  }
  if (const auto yerel = komut.surucu->local(komut.oturum.Server_Adi)) yerel->remarks(true);
}

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.sunucuyuOku()) return reddedildi;
  try {
    session::Katalog_Bagla(komut.oturum, "master");
  } catch (const db::SqlError& error) {
    ortam.err << hataSatiri(error) << "\n";
    return reddedildi;
  }
  if (values.var("onar")) kapat(komut);
  for (const std::string& uyari : session::Uyarilar(komut.oturum)) ortam.err << "Uyarı: " << uyari << "\n";
  bool whole = true;
  for (const std::string& ad : adlar(komut, values))
    whole = denetle(komut, ad, values.var("yenile")) && whole;
  return whole ? tamam : reddedildi;
}

}  // namespace

const Komut& denetleKomutu() {
  static const Komut command{"denetle", "Veritabanlarının dosyalarını baştan sona denetler", more, options,
                             run};
  return command;
}

}  // namespace cli
