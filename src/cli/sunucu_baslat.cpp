#include <array>
#include <charconv>

#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"
#include "platform/folders.h"
#include "platform/timer.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

// Not the name of the package's unit, which serves the system's own folder.
constexpr const char* birim = "zembera-ag";
constexpr const char* oncekiBirim = "zembera-sunucu";  // of this user, until the unit got a name of its own
constexpr std::array<std::string_view, 2> basliklar = {"Alan", "Deger"};

constexpr std::array<Secenek, 4> options = {
    {{"--ag", "Sunucuyu ağa da açar: zembera-sunucu bu kullanıcının servisi olarak çalışır", false,
      Tur::Bayrak, ""},
     {"--adres", "Ağda dinlenecek adres (varsayılan 127.0.0.1, yalnızca bu makine)", false, Tur::Metin,
      "ADRES"},
     {"--kapi", "Ağda dinlenecek kapı (varsayılan 1433)", false, Tur::Metin, "KAPI"},
     {"--yerel-sifresiz", "Bu makinedeki programlar TLS olmadan da bağlanabilir", false, Tur::Bayrak, ""}}};

constexpr std::array<Secenek, 1> durumOptions = {{bicimMetin}};

bool kapiMi(const std::string& metin) {
  unsigned kapi = 0;
  const auto [son, hata] = std::from_chars(metin.data(), metin.data() + metin.size(), kapi);
  return hata == std::errc() && son == metin.data() + metin.size() && kapi >= 1 && kapi <= 65535;
}

// The server of sys.inf when it is one of this machine's own; told otherwise.
std::unique_ptr<db::LocalServer> yerelSunucu(KomutOturumu& komut, Ortam& ortam) {
  if (!komut.sunucuyuOku()) return nullptr;
  auto yerel = komut.surucu->local(komut.oturum.Server_Adi);
  if (!yerel)
    ortam.err << "Bu komut yalnızca yerel sunucu içindir; " << komut.oturum.Server_Adi
              << " kendi makinesinde başlatılır ve durdurulur.\n";
  return yerel;
}

int agaAc(Ortam& ortam, const Degerler& values, const db::LocalServer& yerel) {
  const std::string adres = values.metin("adres", "127.0.0.1"), kapi = values.metin("kapi", "1433");
  platform::RunningService servis;
  servis.name = birim;
  servis.description = "Zembera sunucusu";
  servis.arguments = {(platform::executableFolder() / "zembera-sunucu").string(),
                      "--klasor",
                      yerel.folder().string(),
                      "--adres",
                      adres,
                      "--kapi",
                      kapi};
  if (values.var("yerel-sifresiz")) servis.arguments.emplace_back("--yerel-sifresiz");
  platform::removeService(oncekiBirim);
  const std::string hata = platform::installService(servis);
  const auto dosya = platform::userUnitFolder() / (servis.name + ".service");
  if (!hata.empty()) {
    ortam.err << "Ağ sunucusu başlatılamadı: " << hata << "\n"
              << "Elle başlatmak için: systemctl --user enable --now " << birim << "\n";
    return reddedildi;
  }
  ortam.haber() << dosya.string() << "\n"
                << "Öteki makinelerde sunucu adı: " << adres << "," << kapi << "\n";
  return tamam;
}

int baslat(Ortam& ortam, const Degerler& values) {
  if (!values.var("ag") && (values.var("adres") || values.var("kapi") || values.var("yerel-sifresiz"))) {
    ortam.err << "--adres, --kapi ve --yerel-sifresiz --ag ile verilir.\n";
    return yanlisKullanim;
  }
  if (values.var("kapi") && !kapiMi(values.metin("kapi"))) {
    ortam.err << "--kapi 1 ile 65535 arasında olmalı: " << values.metin("kapi") << "\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  const auto yerel = yerelSunucu(komut, ortam);
  if (!yerel) return reddedildi;
  try {
    const bool calisiyordu = yerel->running();
    if (!calisiyordu) yerel->start();
    ortam.haber() << (calisiyordu ? "Sunucu zaten çalışıyor." : "Sunucu başlatıldı.") << "\n";
    for (const std::string& uyari : yerel->remarks()) uyar(ortam, uyari);
  } catch (const db::SqlError& error) {
    ortam.err << "Sunucu başlatılamadı: " << hataSatiri(error) << "\n";
    return reddedildi;
  }
  return values.var("ag") ? agaAc(ortam, values, *yerel) : tamam;
}

int durdur(Ortam& ortam, const Degerler&) {
  KomutOturumu komut(ortam);
  const auto yerel = yerelSunucu(komut, ortam);
  if (!yerel) return reddedildi;
  try {
    const bool onceki = platform::removeService(oncekiBirim);
    if (platform::removeService(birim) || onceki) ortam.haber() << "Ağ sunucusu durduruldu ve kaldırıldı.\n";
    const bool calisiyordu = yerel->running();
    if (calisiyordu) yerel->stop();
    ortam.haber() << (calisiyordu ? "Sunucu durduruldu." : "Sunucu zaten durmuş.") << "\n";
    return tamam;
  } catch (const db::SqlError& error) {
    ortam.err << "Sunucu durdurulamadı: " << hataSatiri(error) << "\n";
    return reddedildi;
  }
}

int durum(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  const auto yerel = yerelSunucu(komut, ortam);
  if (!yerel) return reddedildi;
  try {
    const bool calisiyor = yerel->running();
    std::string servis = platform::serviceStatus(birim);
    if (servis.empty()) servis = platform::serviceStatus(oncekiBirim);
    ikilileriYaz(ortam, values, basliklar,
                 {{"klasor", yerel->folder().string()},
                  {"sunucu", calisiyor ? "çalışıyor" : "durmuş"},
                  {"ag", servis.empty()       ? "kapalı"
                         : servis == "active" ? "çalışıyor"
                                              : servis}});
    return calisiyor ? tamam : reddedildi;
  } catch (const db::SqlError& error) {
    ortam.err << hataSatiri(error) << "\n";
    return reddedildi;
  }
}

}  // namespace

const Komut& sunucuBaslatKomutu() {
  static const Komut command{
      "sunucu-baslat", "Durdurulmuş yerel sunucuyu başlatır; istenirse ağa açar",
      "Durdurulmuş bir sunucuya hiçbir program bağlanamaz. --ag ile bu kullanıcının systemd servisi yazılır: "
      "zembera-ag. Kullanıcı oturum açmamışken de çalışması için: loginctl enable-linger.",
      options, baslat};
  return command;
}

const Komut& sunucuDurdurKomutu() {
  static const Komut command{"sunucu-durdur",
                             "Yerel sunucuyu durdurur, ağa açıksa kapatır",
                             "Çalışan deyimler biter; açık kalmış işlemler geri alınır.",
                             {},
                             durdur};
  return command;
}

const Komut& sunucuDurumKomutu() {
  static constexpr CikisKodlari kodlar = {"sunucu çalışıyor", "sunucu durmuş ya da sorulamadı",
                                          "yanlış kullanım"};
  static const Komut command{"sunucu-durum",
                             "Yerel sunucunun çalışıp çalışmadığını gösterir",
                             "Ağ sunucusunun durumunu da gösterir.",
                             durumOptions,
                             durum,
                             kodlar};
  return command;
}

}  // namespace cli
