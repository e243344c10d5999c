#include "cli/komut.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"
#include "maintenance/server_para.h"
#include "session/sys_inf.h"

namespace cli {

namespace {

using maintenance::ServerPara;
using Tur = Secenek::Tur;

constexpr std::array<Secenek, 6> options = {
    {{"--sunucu", "Yazılacak SQL Server adı", false, Tur::Metin, "SUNUCU"},
     {"--sql-giris", "Yazılacak SQL kullanıcı adı", false, Tur::Metin, "AD"},
     {"--sifre", "SQL şifresini de yazar: sorulur ya da standart girdiden okunur", false, Tur::Bayrak, ""},
     {"--girisde-degisir", "Sunucu giriş sırasında değiştirilebilir: 1 ya da 0", false, Tur::Metin, "1|0"},
     {"--dene", "Yazmadan önce bağlantıyı dener; kurulamazsa yazmaz", false, Tur::Bayrak, ""},
     bicimMetin}};
constexpr std::array<std::string_view, 2> basliklar = {"Alan", "Deger"};

ServerPara bugunku(const Ortam& ortam) {
  const auto alanlar = session::sysInfBol(session::Sys_Inf_Oku(ortam.dizin));
  ServerPara para;
  para.SunucuAdi = alanlar[1];
  para.sqlKullanici = alanlar[2];
  para.sqlSifre = alanlar[3];
  para.SNDeg = alanlar[4] == "1";
  return para;
}

void goster(Ortam& ortam, const Degerler& values, const ServerPara& para) {
  ikilileriYaz(ortam, values, basliklar,
               {{"sunucu", para.SunucuAdi},
                {"sql-giris", para.sqlKullanici},
                {"sifre", para.sqlSifre.empty() ? "yok" : "var"},
                {"girisde-degisir", *para.SNDeg ? "1" : "0"}});
}

int run(Ortam& ortam, const Degerler& values) {
  const std::string degisir = values.metin("girisde-degisir");
  if (values.var("girisde-degisir") && degisir != "1" && degisir != "0") {
    ortam.err << "--girisde-degisir 1 ya da 0 olmalı: " << degisir << "\n";
    return yanlisKullanim;
  }
  ServerPara para = bugunku(ortam);
  const bool yaz = values.var("sunucu") || values.var("sql-giris") || values.var("sifre") || !degisir.empty();
  para.SunucuAdi = values.metin("sunucu", para.SunucuAdi);
  para.sqlKullanici = values.metin("sql-giris", para.sqlKullanici);
  if (!degisir.empty()) para.SNDeg = degisir == "1";
  if (values.var("sifre")) {
    const auto sifre = sifreOku(ortam, "SQL şifresi: ", true);
    if (!sifre) {
      ortam.err << "Şifre verilmedi.\n";
      return reddedildi;
    }
    para.sqlSifre = *sifre;
  }
  KomutOturumu komut(ortam);
  if (values.var("dene")) {
    const auto deneme = maintenance::Baglantiyi_Dene(komut.oturum, para);
    (deneme.tamam ? ortam.bilgi() : ortam.err) << deneme.metin << "\n";
    if (!deneme.tamam) return reddedildi;
  }
  if (!yaz)
    goster(ortam, values, para);
  else if (!maintenance::Server_Para_Kaydet(komut.oturum, para))
    return reddedildi;
  return tamam;
}

}  // namespace

const Komut& sunucuKomutu() {
  static const Komut command{"sunucu", "Sunucu parametrelerini (sys.inf) gösterir ya da yazar",
                             "Şifre gösterilmez ve komut satırından alınmaz.", options, run};
  return command;
}

}  // namespace cli
