#include <sstream>

#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"
#include "db/table_name.h"
#include "platform/files.h"
#include "session/statements.h"
#include "session/sys_inf.h"
#include "session/uyarilar.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 4> options = {
    {{"--ad", "Denetlenecek veritabanı; verilmezse hepsi", false, Secenek::Tur::Metin, "VERİTABANI"},
     {"--yenile", "Önce veri dosyasını yeniler: güncel biçim, her sayfada sağlama toplamı", false,
      Secenek::Tur::Bayrak, ""},
     {"--onar", "Başkalarına açık veri klasörünü, dosyalarını ve sys.inf'i kapatır", false,
      Secenek::Tur::Bayrak, ""},
     bicimMetin}};

constexpr std::string_view more =
    "Her sayfayı sağlama toplamıyla, her dizini tablosuyla, her satırı tipleriyle karşılaştırır ve bozuk\n"
    "olanları yazar. --yenile sırasında sunucu kısa bir süre durur.\n"
    "Başkalarına açık olan klasör ve dosyalar uyarı olarak yazılır; --onar onları önce kapatır.";

class Iletiler : public db::BatchSink {
 public:
  explicit Iletiler(std::ostream& out) : out_(out) {}
  void onRows(std::unique_ptr<db::Rows>) override {}
  void onRowCount(std::int64_t) override {}
  void onMessage(const std::string& text) override { out_ << text << "\n"; }

 private:
  std::ostream& out_;
};

std::vector<std::string> adlar(KomutOturumu& komut, const Degerler& values) {
  if (values.var("ad")) return {values.metin("ad")};
  std::vector<std::string> names;
  const auto rows = komut.oturum.Baglanti->query("SELECT name FROM master..sysdatabases ORDER BY dbid");
  for (std::int64_t i = 0; rows && i < rows->count(); ++i) names.push_back(rows->value(i, 0).trimmed());
  return names;
}

// Its messages, and the failure, empty when it is whole.
struct Sonuc {
  std::string iletiler, hata;
};

Sonuc denetle(KomutOturumu& komut, const std::string& ad, bool yenile) {
  std::ostringstream metin;
  Iletiler iletiler(metin);
  Sonuc sonuc;
  try {
    if (yenile)
      komut.oturum.Baglanti->run("ALTER DATABASE " + db::bracketed(ad) + " SET PAGE_VERIFY CHECKSUM",
                                 iletiler);
    komut.oturum.Baglanti->run("DBCC CHECKDB (" + db::bracketed(ad) + ") WITH NO_INFOMSGS", iletiler);
  } catch (const db::SqlError& error) {
    sonuc.hata = hataSatiri(error);
  }
  sonuc.iletiler = metin.str();
  return sonuc;
}

// All of them; with `tablo` told at the end, else each when it is done.
bool hepsiniDenetle(KomutOturumu& komut, const Degerler& values) {
  static constexpr std::array<std::string_view, 3> basliklar = {"Ad", "Durum", "Iletiler"};
  const bool tablo = values.var("bicim") && values.metin("bicim") != "metin";
  std::vector<std::vector<std::string>> satirlar;
  bool whole = true;
  for (const std::string& ad : adlar(komut, values)) {
    const Sonuc sonuc = denetle(komut, ad, values.var("yenile"));
    whole = whole && sonuc.hata.empty();
    if (tablo) {
      satirlar.push_back({ad, sonuc.hata.empty() ? "sağlam" : "HATA", sonuc.iletiler + sonuc.hata});
      continue;
    }
    komut.ortam.out << sonuc.iletiler;
    if (sonuc.hata.empty())
      komut.ortam.haber() << ad << ": sağlam\n";
    else
      komut.ortam.err << ad << ": " << sonuc.hata << "\n";
  }
  if (tablo) sonucYaz(komut.ortam, MetinSatirlari(basliklar, satirlar), bicimi(values, Bicim::Tablo));
  return whole;
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
  for (const std::string& uyari : session::Uyarilar(komut.oturum)) uyar(ortam, uyari);
  return hepsiniDenetle(komut, values) ? tamam : reddedildi;
}

}  // namespace

const Komut& denetleKomutu() {
  static const Komut command{
      "denetle", "Veritabanlarının dosyalarını baştan sona denetler", more, options, run, bulguKodlari};
  return command;
}

}  // namespace cli
