#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "session/statements.h"

namespace cli {

namespace {

constexpr std::array<std::string_view, 2> dayanikliliklar = {"tam", "ertelenmis"};
constexpr std::array<Secenek, 1> options = {
    {{"--dayaniklilik", "tam: kayıt diske yazılınca bildirilir; ertelenmis: yazılmadan bildirilir", true,
      Secenek::Tur::Metin, "DEĞER", dayanikliliklar, "dayanıklılık"}}};

constexpr std::string_view more =
    "ertelenmis daha hızlıdır, ama elektrik kesilirse bildirilmiş son kayıtlar yok olabilir; program kapanır "
    "ya\n"
    "da öldürülürse bir şey kaybolmaz. Açık oturumlar yeniden bağlanınca uyar. Yalnız gömülü sunucu içindir.";

class Sessiz : public db::BatchSink {
 public:
  void onRows(std::unique_ptr<db::Rows>) override {}
  void onRowCount(std::int64_t) override {}
  void onMessage(const std::string&) override {}
};

int run(Ortam& ortam, const Degerler& values) {
  const std::string wanted = values.metin("dayaniklilik");
  KomutOturumu komut(ortam);
  if (!komut.sunucuyuOku()) return reddedildi;
  if (!komut.oturum.Server_Adi.starts_with("(yerel)")) {
    ortam.err << "Bu ayar yalnız gömülü sunucu içindir.\n";
    return reddedildi;
  }
  try {
    Sessiz sessiz;
    session::Katalog_Bagla(komut.oturum, "master");
    komut.oturum.Baglanti->run(std::string("ALTER DATABASE [master] SET DELAYED_DURABILITY = ") +
                                   (wanted == "tam" ? "DISABLED" : "FORCED"),
                               sessiz);
  } catch (const db::SqlError& error) {
    ortam.err << hataSatiri(error) << "\n";
    return reddedildi;
  }
  ortam.haber() << (wanted == "tam"
                        ? "Dayanıklılık: tam.\n"
                        : "Dayanıklılık: ertelenmiş. Elektrik kesilirse son kayıtlar yok olabilir.\n");
  return tamam;
}

}  // namespace

const Komut& sunucuAyarlaKomutu() {
  static const Komut command{"sunucu-ayarla", "Gömülü sunucunun dayanıklılığını seçer", more, options, run};
  return command;
}

}  // namespace cli
