#include "cli/oturum_ac.h"

#include <algorithm>

#include "maintenance/bakim.h"
#include "session/firma_bul.h"
#include "session/giris.h"
#include "session/metin.h"
#include "session/statements.h"
#include "session/sys_inf.h"
#include "session/uyarilar.h"

namespace cli {

namespace {

void loadSupervisor(session::Oturum& o) {
  o.Program_Versiyon = o.Tanim_DB_Versiyon = o.Firma_DB_Versiyon = session::programSurumu;
  o.Ondalik_Ayrac = ",";
  o.Binlik_Ayrac = ".";
  o.Katalog_Adi = session::katalogVeritabani;
  o.Kullanici_ID = 1;
  o.Supervisor = true;
  o.Kayitlar.open(*o.Baglanti, "SELECT * FROM sysDTYL");
  session::Veri_Klasoru_Belirle(o, o.Kayitlar.field("sysdtyl").trimmed());
  o.Kayitlar.open(*o.Baglanti, "SELECT sysus_nm FROM sysuslng WHERE sysus_ID=1");
  if (!o.Kayitlar.eof()) o.Kullanici_Adi = o.Kayitlar.field("sysus_nm").trimmed();
}

}  // namespace

KomutOturumu::KomutOturumu(Ortam& o)
    : ortam(o), kutular(o), ilerleme(o), platform(o.dizin), surucu(o.surucuYap(o.dizin)) {
  oturum.surucu = surucu.get();
  oturum.kutular = &kutular;
  oturum.ilerleme = &ilerleme;
  oturum.saat = &saat;
  oturum.platform = &platform;
}

bool KomutOturumu::sunucuyuOku() {
  session::sysInfYukle(oturum);
  if (!session::Trim(oturum.Server_Adi).empty()) return true;
  ortam.err << session::sysInfEksigi(ortam.dizin) << " Önce 'zembera-cli kur' komutunu çalıştırın.\n";
  return false;
}

bool KomutOturumu::katalogaBagla() {
  if (!sunucuyuOku()) return false;
  if (const std::string bitirilen = maintenance::Bakimi_Tamamla(oturum); !bitirilen.empty())
    ortam.err << bitirilen << "\n";
  try {
    session::Katalog_Bagla(oturum, std::string(session::katalogVeritabani));
    loadSupervisor(oturum);
    for (const std::string& uyari : session::Uyarilar(oturum)) uyar(ortam, uyari);
    return true;
  } catch (const db::SqlError& error) {
    if (session::katalogEksik(oturum, error))
      ortam.err << "Sunucuda Defination_DB yok. Önce 'zembera-cli kur' komutunu çalıştırın.\n";
    else
      ortam.err << "Kataloğa bağlanılamadı: " << baglantiHatasi(error) << "\n";
    return false;
  }
}

std::string KomutOturumu::firma(const std::string& ad) {
  const auto bulunan = session::Firma_Bul(oturum, ad);
  return bulunan ? bulunan->ad : ad;
}

std::string baglantiHatasi(const db::SqlError& hata) {
  if (hata.kind() != db::ErrorKind::LoginRefused) return hataSatiri(hata);
  return std::string(session::girisReddi) + " (" + hataSatiri(hata) + ")";
}

std::string hataSatiri(const db::SqlError& hata) {
  std::string text = "Msg " + std::to_string(hata.serverNumber()) + ": " + hata.what();
  std::erase(text, '\r');
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace cli
