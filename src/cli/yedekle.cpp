#include <charconv>
#include <cstdio>

#include "catalog/katalog.h"
#include "cli/bakim_ortak.h"
#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/sonuc_yaz.h"
#include "maintenance/servis.h"
#include "maintenance/yedek_denetim.h"
#include "maintenance/yedek_saklama.h"
#include "session/firma_bul.h"

namespace cli {

namespace {

using Tur = Secenek::Tur;

constexpr std::array<Secenek, 8> options = {
    {{"--ad", "Yedeklenecek firmanın veritabanı adı", false, Tur::Metin, "FİRMA"},
     {"--hepsi", "Bütün firmaları ve kataloğu yedekler; her biri için bir satır yazar", false, Tur::Bayrak,
      ""},
     {"--hedef", "Yedek klasörlerinin açılacağı klasör", false, Tur::Metin, "KLASÖR"},
     {"--canli", "Sunucuyu durdurmadan, herkes çalışırken alır (yerel sunucu)", false, Tur::Bayrak, ""},
     {"--sakla", "--hepsi ile: son GÜN günden eskileri seyreltir (haftada bir, sonra ayda bir kalır)", false,
      Tur::Metin, "GÜN"},
     {"--denetimsiz", "Alınan yedeği denetlemez", false, Tur::Bayrak, ""},
     {"--sunucu-dosyasi", "Başka makinedeki sunucuda, o makinenin diskinde yazılacak dosya", false,
      Tur::Metin, "YOL"},
     bicimMetin}};
constexpr std::array<std::string_view, 3> basliklar = {"Ad", "Durum", "Yer"};

constexpr CikisKodlari kodlar = {"tamam", "yedeklerden biri bile alınamadı ya da denetimden geçmedi",
                                 "yanlış kullanım"};

std::string saniye(double sure) {
  char metin[32];
  std::snprintf(metin, sizeof metin, "%.1f", sure);
  std::string sonuc = metin;
  if (const auto nokta = sonuc.find('.'); nokta != std::string::npos) sonuc[nokta] = ',';
  return sonuc;
}

struct Is {
  std::filesystem::path hedef;
  bool canli = false, denetle = true;
};

maintenance::YedekSonucu al(KomutOturumu& komut, const Is& is, const std::string& ad) {
  if (const auto sure = is.canli ? std::nullopt : maintenance::Beklenen_Kesinti(komut.oturum, ad))
    komut.ortam.bilgi() << "Sunucu yaklaşık " << saniye(*sure) << " saniye kapalı kalacak.\n";
  auto sonuc = is.canli ? maintenance::Canli_Yedekle(komut.oturum, ad, is.hedef)
                        : maintenance::Yedekle(komut.oturum, ad, is.hedef);
  komut.ilerleme.bitir();
  if (!sonuc.tamam) return sonuc;
  if (!is.canli) komut.ortam.bilgi() << "Sunucu " << saniye(sonuc.kesinti) << " saniye kapalı kaldı.\n";
  if (!is.denetle || !komut.surucu->local(komut.oturum.Server_Adi)) return sonuc;
  const auto denetim = maintenance::Yedek_Denetle(komut.oturum, sonuc.klasor);
  komut.ilerleme.bitir();
  for (const auto& satir : denetim.satirlar)
    if (satir.durum == maintenance::DenetimSatiri::Durum::Kusur) {
      komut.ortam.err << satir.konu << ": " << satir.aciklama << "\n";
      if (sonuc.hata.empty()) sonuc.hata = "Denetimden geçmedi: " + satir.aciklama;
    }
  if (!denetim.calisti) {
    sonuc.hata = "Yedek alındı, denetlenmedi.";
    komut.ortam.err << sonuc.hata << "\n";
  }
  if (sonuc.hata.empty())
    komut.ortam.bilgi() << "Yedek denetlendi: " << denetim.tablo << " tablo, " << denetim.satir
                        << " satır.\n";
  return sonuc;
}

// Name, outcome, and the folder or the reason.
std::vector<std::string> satirYap(const std::string& ad, const std::filesystem::path& klasor,
                                  std::string hata) {
  for (char& c : hata)
    if (c == '\n') c = ' ';
  return {ad, hata.empty() ? "tamam" : "HATA", hata.empty() ? klasor.string() : hata};
}

// One line a company, for the mail of a timer, as soon as it is done; what went well is news only.
int hepsiniAl(KomutOturumu& komut, const Is& is, int sakla, const Degerler& values) {
  const bool tablo = values.metin("bicim", "metin") != "metin";
  std::vector<std::vector<std::string>> satirlar;
  std::vector<std::string> adlar = maintenance::firmaAdlari(komut.oturum);
  adlar.emplace_back(catalog::catalogDatabase);
  bool hepsiTamam = adlar.size() > 1 || komut.oturum.Son_Hata.empty();
  for (const std::string& ad : adlar) {
    const auto sonuc = al(komut, is, ad);
    std::string hata = sonuc.hata;
    if (hata.empty() && sakla > 0) hata = maintenance::Yedekleri_Seyrelt(komut.oturum, is.hedef, ad, sakla);
    satirlar.push_back(satirYap(ad, sonuc.klasor, hata));
    const auto& satir = satirlar.back();
    if (!tablo)
      (hata.empty() ? komut.ortam.haber() : komut.ortam.out)
          << satir[0] << "\t" << satir[1] << "\t" << satir[2] << "\n";
    hepsiTamam = hepsiTamam && hata.empty();
  }
  if (tablo) sonucYaz(komut.ortam, MetinSatirlari(basliklar, satirlar), bicimi(values, Bicim::Tablo));
  return hepsiTamam ? tamam : reddedildi;
}

int yanlis(Ortam& ortam, const char* metin) {
  ortam.err << metin << "\n";
  return yanlisKullanim;
}

int run(Ortam& ortam, const Degerler& values) {
  if (values.var("ad") == values.var("hepsi"))
    return yanlis(ortam, "--ad ya da --hepsi, ikisinden biri verilmeli.");
  if (values.var("hedef") == values.var("sunucu-dosyasi"))
    return yanlis(ortam, "--hedef ya da --sunucu-dosyasi, ikisinden biri verilmeli.");
  if (values.var("hepsi") && values.var("sunucu-dosyasi"))
    return yanlis(ortam, "--hepsi ile --sunucu-dosyasi birlikte verilmez.");
  int sakla = 0;
  if (values.var("sakla")) {
    const std::string metin = values.metin("sakla");
    const auto [son, hata] = std::from_chars(metin.data(), metin.data() + metin.size(), sakla);
    if (hata != std::errc() || son != metin.data() + metin.size() || sakla < 1 || !values.var("hepsi"))
      return yanlis(ortam, "--sakla, --hepsi ile ve en az 1 gün olarak verilir.");
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const Is is{tamYol(values.metin("hedef")), values.var("canli"), !values.var("denetimsiz")};
  if (values.var("hepsi")) return hepsiniAl(komut, is, sakla, values);
  const std::string ad = firmaBul(komut, values.metin("ad"));
  if (ad.empty()) return reddedildi;
  if (values.var("sunucu-dosyasi"))
    return maintenance::Sunucuda_Yedekle(komut.oturum, ad, values.metin("sunucu-dosyasi")) ? tamam
                                                                                           : reddedildi;
  const auto sonuc = al(komut, is, ad);
  if (!sonuc.tamam) return reddedildi;
  if (values.metin("bicim", "metin") == "metin")
    ortam.haber() << sonuc.klasor.string() << "\n";
  else
    sonucYaz(ortam, MetinSatirlari(basliklar, {satirYap(ad, sonuc.klasor, sonuc.hata)}),
             bicimi(values, Bicim::Tablo));
  return sonuc.hata.empty() ? tamam : reddedildi;
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
      "yedekle",
      "Bir firmanın ya da hepsinin iki dosyasını yeni bir klasöre yedekler ve yedeği denetler",
      "Dosyalar kopyalanırken sunucu durur, sonra her durumda yeniden başlar; --canli ile hiç durmaz. Son "
      "satır, açılan klasördür. --hepsi her firma için \"AD TAB tamam|HATA TAB klasör|neden\" yazar. "
      "--sakla eskileri siler: son GÜN günün hepsi, önceki sekiz haftanın ve "
      "on iki ayın en yenisi, en son alınan ve denetimden en son geçen kalır.",
      options,
      run,
      kodlar};
  return command;
}

}  // namespace cli
