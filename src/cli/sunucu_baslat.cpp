#include "cli/komut.h"
#include "cli/oturum_ac.h"

namespace cli {

namespace {

int run(Ortam& ortam, const Degerler&) {
  KomutOturumu komut(ortam);
  if (!komut.sunucuyuOku()) return reddedildi;
  const auto yerel = komut.surucu->local(komut.oturum.Server_Adi);
  if (!yerel) {
    ortam.err << "Bu komut yalnızca yerel sunucu içindir; " << komut.oturum.Server_Adi
              << " kendi makinesinde başlatılır.\n";
    return reddedildi;
  }
  try {
    const bool calisiyordu = yerel->running();
    if (!calisiyordu) yerel->start();
    ortam.haber() << (calisiyordu ? "Sunucu zaten çalışıyor." : "Sunucu başlatıldı.") << "\n";
    for (const std::string& uyari : yerel->remarks()) uyar(ortam, uyari);
    return tamam;
  } catch (const db::SqlError& error) {
    ortam.err << "Sunucu başlatılamadı: " << hataSatiri(error) << "\n";
    return reddedildi;
  }
}

}  // namespace

const Komut& sunucuBaslatKomutu() {
  static const Komut command{"sunucu-baslat",
                             "Durdurulmuş yerel sunucuyu başlatır",
                             "Durdurulmuş bir sunucuya hiçbir program bağlanamaz.",
                             {},
                             run};
  return command;
}

}  // namespace cli
