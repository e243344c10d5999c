#include <cstdio>

#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "maintenance/yedek.h"
#include "session/firma_bul.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

constexpr std::array<Secenek, 3> options = {
    {{"--ad", "Yedeklenecek firmanın veritabanı adı", true, Tur::Metin, "AD"},
     {"--hedef", "Yedek klasörünün açılacağı klasör", false, Tur::Metin, "KLASÖR"},
     {"--sunucu-dosyasi", "Başka makinedeki sunucuda, o makinenin diskinde yazılacak dosya", false,
      Tur::Metin, "YOL"}}};

std::string saniye(double sure) {
  char metin[32];
  std::snprintf(metin, sizeof metin, "%.1f", sure);
  std::string sonuc = metin;
  if (const auto nokta = sonuc.find('.'); nokta != std::string::npos) sonuc[nokta] = ',';
  return sonuc;
}

int run(Ortam& ortam, const Degerler& values) {
  if (values.var("hedef") == values.var("sunucu-dosyasi")) {
    ortam.err << "--hedef ya da --sunucu-dosyasi, ikisinden biri verilmeli.\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const std::string ad = firmaBul(komut, values.metin("ad"));
  if (ad.empty()) return reddedildi;
  if (values.var("sunucu-dosyasi"))
    return maintenance::Sunucuda_Yedekle(komut.oturum, ad, values.metin("sunucu-dosyasi")) ? tamam
                                                                                           : reddedildi;
  const auto sonuc = maintenance::Yedekle(komut.oturum, ad, tamYol(values.metin("hedef")));
  komut.ilerleme.bitir();
  if (!sonuc.tamam) return reddedildi;
  ortam.err << "Sunucu " << saniye(sonuc.kesinti) << " saniye kapalı kaldı.\n";
  ortam.out << sonuc.klasor.string() << "\n";
  return tamam;
}

}  // namespace

std::string firmaBul(KomutOturumu& komut, const std::string& ad) {
  const auto firma = session::Firma_Bul(komut.oturum, ad);
  if (firma) return firma->ad;
  komut.ortam.err << "Bu isimle bir firma yok: " << ad << "\n";
  return {};
}

const Komut& yedekleKomutu() {
  static const Komut command{
      "yedekle", "Bir firmanın iki dosyasını yeni bir klasöre yedekler",
      "Dosyalar kopyalanırken sunucu durur, sonra her durumda yeniden başlar. Son satır, açılan klasördür.",
      options, run};
  return command;
}

}  // namespace cli
