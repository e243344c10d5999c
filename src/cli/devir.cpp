#include "rollover/devir.h"

#include <charconv>

#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"
#include "session/tarih.h"

namespace cli {

namespace {

using rollover::DevirGirdisi;
using rollover::DevirTarafi;
using Tur = Secenek::Tur;

constexpr std::array<Secenek, 16> options = {{
    {"--kaynak", "Dönemi kapanan firmanın veritabanı adı", false, Tur::Metin, "FİRMA"},
    {"--hedef", "Devrin yapılacağı, var olan firma", false, Tur::Metin, "FİRMA"},
    {"--yeni-ad", "Devrin yapılacağı yeni firmanın veritabanı adı", false, Tur::Metin, "AD"},
    {"--yeni-kod", "Yeni firmanın kodu; verilmezse sıradaki", false, Tur::Metin, "KOD"},
    {"--unvan", "Yeni firmanın unvanı; verilmezse kaynağınki", false, Tur::Metin, "UNVAN"},
    {"--baslangic", "Hedef dönemin başı; verilmezse yeni firmada kaynak dönemin ertesi günü", false,
     Tur::Metin, "GG/AA/YYYY"},
    {"--bitis", "Hedef dönemin sonu; verilmezse yeni firmada o yılın son günü", false, Tur::Metin,
     "GG/AA/YYYY"},
    {"--kapat", "Kapatılacak seçenekler, yerleriyle ve virgülle: 0,2.3", false, Tur::Metin, "YOL,..."},
    {"--eksi-stok", "Eksiye düşmüş stoklar da devredilir", false, Tur::Bayrak, ""},
    {"--ciro-suresi", "Cirolu çek ve senetlerin vadesinden sonra izleneceği gün", false, Tur::Metin, "GÜN"},
    {"--dene", "Devri yapar, kanıtı gösterir, sonra hepsini geri alır", false, Tur::Bayrak, ""},
    {"--kanit", "Kanıtı dosyaya yazar; uzantısı biçimi söyler: html, csv, json ya da txt", false, Tur::Metin,
     "DOSYA"},
    bicimMetin,
    {"--yalnizca-farklar", "Ekrana yalnızca farklı satırları yazar", false, Tur::Bayrak, ""},
    {"--evet", "Soruları evet sayar", false, Tur::Bayrak, ""},
    {"--secenekler", "Devir seçeneklerini yerleriyle yazar", false, Tur::Bayrak, ""},
}};

constexpr std::string_view more =
    "Devir bir bütündür: yarıda kalırsa ya da vazgeçilirse hedef eski haline döner, yeni firma kaldırılır. "
    "Kaynak firma\nyalnızca okunur.";
constexpr CikisKodlari kodlar = {"tamam", "devir yapılamadı ya da kanıtta nedeni bilinmeyen bir fark var",
                                 "yanlış kullanım"};

int secenekleriYaz(Ortam& ortam, const Degerler& v) {
  static constexpr std::array<std::string_view, 2> basliklar = {"Yer", "Secenek"};
  std::vector<std::vector<std::string>> satirlar;
  for (const rollover::SecenekSatiri& satir : rollover::secenekSatirlari())
    satirlar.push_back({rollover::secenekYolu(satir), std::string(satir.metin)});
  ikilileriYaz(ortam, v, basliklar, satirlar);
  return tamam;
}

// The wrong use of the command's own options; empty when there is none.
std::string yanlis(const Degerler& v) {
  if (!v.var("kaynak")) return "--kaynak verilmeli.";
  if (v.var("hedef") == v.var("yeni-ad")) return "--hedef ya da --yeni-ad, ikisinden biri verilmeli.";
  for (const char* const ad : {"baslangic", "bitis"})
    if (v.var(ad) && !session::tarihMi(v.metin(ad)))
      return "Tarih GG/AA/YYYY biçiminde olmalı: " + v.metin(ad);
  const std::string sure = v.metin("ciro-suresi", "0");
  int gun = 0;
  const auto [son, hata] = std::from_chars(sure.data(), sure.data() + sure.size(), gun);
  constexpr int enCok = 36'500;
  if (hata != std::errc() || son != sure.data() + sure.size() || gun < 0 || gun > enCok)
    return "Ciro takip süresi 0 ile 36500 arasında bir gün sayısı olmalı: " + sure;
  return "";
}

std::string secenekleriKapat(const std::string& yollar, rollover::Secenekler& secenekler) {
  for (std::size_t bas = 0; bas < yollar.size();) {
    const std::size_t son = std::min(yollar.find(',', bas), yollar.size());
    const std::string yol = yollar.substr(bas, son - bas);
    const auto satir = rollover::Secenekler::bul(yol);
    if (!satir) return "Böyle bir devir seçeneği yok: " + yol + " (--secenekler hepsini yazar)";
    secenekler.koy(*satir, false);
    bas = son + 1;
  }
  return "";
}

std::string noktali(std::string tarih) {
  if (tarih.size() == 10) tarih[2] = tarih[5] = '.';
  return tarih;
}

// Both sides as the screen would have them. False when a company is unknown.
bool taraflariDoldur(KomutOturumu& komut, const Degerler& v, DevirGirdisi& g) {
  if (!rollover::Firma_Kayit_Getir(komut.oturum, komut.firma(v.metin("kaynak")), g.taraf[0])) {
    komut.ortam.err << "Kaynak firma bulunamadı: " << v.metin("kaynak") << "\n";
    return false;
  }
  DevirTarafi& hedef = g.taraf[1];
  if (v.var("yeni-ad")) {
    rollover::Yeni_Firma_Bilgileri_Olustur(komut.oturum, g.taraf);
    hedef.Firma_Adi = v.metin("yeni-ad");
    if (v.var("yeni-kod")) hedef.Firma_Kodu = v.metin("yeni-kod");
    if (v.var("unvan")) hedef.Firma_Unvani = v.metin("unvan");
  } else if (!rollover::Firma_Kayit_Getir(komut.oturum, komut.firma(v.metin("hedef")), hedef)) {
    komut.ortam.err << "Hedef firma bulunamadı: " << v.metin("hedef") << "\n";
    return false;
  }
  if (v.var("baslangic")) hedef.Bas_Tar = noktali(v.metin("baslangic"));
  if (v.var("bitis")) hedef.Bit_Tar = noktali(v.metin("bitis"));
  return true;
}

std::string kanitIcerigi(const rollover::Kanit& kanit, const std::string& dosya) {
  const auto biter = [&](std::string_view son) { return std::string_view(dosya).ends_with(son); };
  if (biter(".csv")) return rollover::kanitCsv(kanit);
  if (biter(".json")) return rollover::kanitJson(kanit);
  if (biter(".txt")) return rollover::kanitMetni(kanit, false);
  return rollover::kanitHtml(kanit);
}

void kanitiYaz(Ortam& ortam, const Degerler& v, const rollover::Kanit& kanit) {
  const bool yalnizcaFarklar = v.var("yalnizca-farklar");
  const std::string bicim = v.metin("bicim", "metin");
  if (bicim == "metin")
    ortam.out << rollover::kanitMetni(kanit, yalnizcaFarklar);
  else if (bicim == "json")
    ortam.out << rollover::kanitJson(kanit);
  else
    sonucYaz(ortam,
             MetinSatirlari(rollover::kanitBasliklari, rollover::kanitSatirlari(kanit, yalnizcaFarklar)),
             bicimi(v, Bicim::Tablo));
}

int sonucuYaz(KomutOturumu& komut, const Degerler& v, const rollover::DevirSonucu& sonuc) {
  Ortam& ortam = komut.ortam;
  if (!sonuc.tamam) {
    ortam.err << (sonuc.iptal ? "Devirden vazgeçildi." : sonuc.hata) << "\nHedefte hiçbir şey değişmedi.\n";
    return reddedildi;
  }
  kanitiYaz(ortam, v, sonuc.kanit);
  ortam.bilgi() << (v.var("dene") ? "Deneme tamamlandı; hiçbir şey yazılmadı."
                                  : "Devir İşlemi Başarı İle Tamamlandı")
                << "\n";
  if (v.var("kanit")) {
    const std::string hata =
        rollover::dosyayaYaz(v.metin("kanit"), kanitIcerigi(sonuc.kanit, v.metin("kanit")));
    if (!hata.empty()) {
      ortam.err << hata << "\n";
      return reddedildi;
    }
  }
  return sonuc.kanit.aciklanmayan() == 0 ? tamam : reddedildi;
}

int run(Ortam& ortam, const Degerler& v) {
  if (v.var("secenekler")) return secenekleriYaz(ortam, v);
  DevirGirdisi girdi;
  std::string hata = yanlis(v);
  if (hata.empty()) hata = secenekleriKapat(v.metin("kapat"), girdi.secenekler);
  if (!hata.empty()) {
    ortam.err << hata << "\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  komut.kutular.evet = v.var("evet");
  if (!taraflariDoldur(komut, v, girdi)) return reddedildi;
  girdi.STEksi = v.var("eksi-stok");
  girdi.Ciro_Takip_Suresi = v.metin("ciro-suresi");
  girdi.deneme = v.var("dene");
  hata = rollover::Devir_kontrol(girdi.taraf);
  if (!hata.empty()) {
    ortam.err << hata << "\n";
    return reddedildi;
  }
  const std::string uyari = girdi.deneme ? "" : rollover::hedefUyarisi(komut.oturum, girdi);
  if (!uyari.empty() && !komut.kutular.ask(uyari, session::Icon::Question, session::defaultTitle))
    return reddedildi;
  komut.ilerleme.satirlarla = true;
  const auto sonuc = rollover::Devret(komut.oturum, girdi);
  komut.ilerleme.bitir();
  return sonucuYaz(komut, v, sonuc);
}

}  // namespace

const Komut& devirKomutu() {
  static const Komut command{"devir", "Bir firmayı yeni mali dönemine devreder", more, options, run, kodlar};
  return command;
}

}  // namespace cli
