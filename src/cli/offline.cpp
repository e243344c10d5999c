#include "maintenance/offline.h"

#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"

namespace cli {

namespace {

using maintenance::OfflineAlani;
using maintenance::OfflineAyarlari;
using maintenance::OfflineTuru;
using Tur = Secenek::Tur;

constexpr std::array<Secenek, 3> options = {
    {{"--yaz", "Bir ayarı değiştirir; yinelenebilir. Tarih GG/AA/YYYY, saat SS:DD:ss", false, Tur::Coklu,
      "KOLON=DEĞER"},
     {"--sifre", "Merkezin SQL şifresini de yazar: sorulur ya da standart girdiden okunur", false,
      Tur::Bayrak, ""},
     bicimMetin}};
constexpr std::array<std::string_view, 2> basliklar = {"Kolon", "Deger"};

std::string gosterilen(const OfflineAlani& alan, const OfflineAyarlari& ayarlar) {
  const std::string& metin = ayarlar.*alan.metin;
  if (alan.tur != OfflineTuru::Sifre) return metin;
  return metin.empty() ? "yok" : "var";
}

// What is wrong with the assignment; empty when it was taken.
std::string ata(OfflineAyarlari& ayarlar, const std::string& atama) {
  const auto esit = atama.find('=');
  if (esit == std::string::npos) return "KOLON=DEĞER olmalı: " + atama;
  const std::string kolon = atama.substr(0, esit), deger = atama.substr(esit + 1);
  if (kolon == "OtoGon") {
    if (deger != "0" && deger != "1") return "OtoGon 1 ya da 0 olmalı: " + deger;
    ayarlar.OtoGon = deger == "1";
    return {};
  }
  for (const OfflineAlani& alan : maintenance::offlineAlanlari()) {
    if (alan.column != kolon || !alan.yazilir || alan.tur == OfflineTuru::Sifre) continue;
    ayarlar.*alan.metin = deger;
    return {};
  }
  return "Yazılabilen böyle bir ayar yok: " + kolon;
}

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  OfflineAyarlari ayarlar;
  if (!komut.katalogaBagla() ||
      maintenance::Offline_Ac(komut.oturum, ayarlar) != maintenance::OfflineAcilis::Acik)
    return reddedildi;
  if (values.liste("yaz").empty() && !values.var("sifre")) {
    std::vector<std::vector<std::string>> satirlar;
    for (const OfflineAlani& alan : maintenance::offlineAlanlari())
      satirlar.push_back({std::string(alan.column), gosterilen(alan, ayarlar)});
    satirlar.push_back({"OtoGon", ayarlar.OtoGon ? "1" : "0"});
    ikilileriYaz(ortam, values, basliklar, satirlar);
    return tamam;
  }
  for (const std::string& atama : values.liste("yaz"))
    if (const std::string hata = ata(ayarlar, atama); !hata.empty()) {
      ortam.err << hata << "\n";
      return yanlisKullanim;
    }
  if (values.var("sifre")) {
    const auto sifre = sifreOku(ortam, "Merkez SQL şifresi: ", true);
    if (!sifre) return reddedildi;
    ayarlar.MerkezSaSifre = *sifre;
  }
  if (!maintenance::Offline_Kontrol(komut.oturum, ayarlar).empty()) {
    ortam.err << komut.oturum.Son_Hata << "\n";
    return reddedildi;
  }
  return maintenance::Offline_Kaydet(komut.oturum, ayarlar) ? tamam : reddedildi;
}

}  // namespace

const Komut& offlineKomutu() {
  static const Komut command{
      "offline", "Çevrimdışı çalışan bir şubenin merkez ayarlarını gösterir ya da yazar", "", options, run};
  return command;
}

}  // namespace cli
