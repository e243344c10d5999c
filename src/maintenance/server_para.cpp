#include "maintenance/server_para.h"

#include "catalog/katalog.h"
#include "platform/files.h"
#include "session/metin.h"
#include "session/sys_inf.h"

namespace maintenance {

namespace {

using session::Oturum;

constexpr std::string_view baslik = "KORVENA TİCARİ YAZILIM";

bool katalogVar(db::Connection& baglanti) {
  const auto rows = baglanti.query("SELECT name FROM sysdatabases WHERE name='" +
                                   std::string(catalog::catalogDatabase) + "'");
  return rows && rows->count() > 0;
}

std::string redNedeni(const db::SqlError& hata, const std::string& sunucu) {
  if (hata.kind() == db::ErrorKind::LoginRefused)
    return "\"" + sunucu +
           "\" sunucusu cevap veriyor, ama bu SQL kullanıcı adını ya da şifresini kabul etmiyor.";
  return "\"" + sunucu + "\" sunucusuna bağlanılamadı:\n" + hata.what();
}

}  // namespace

std::string Sys_Inf_Satir_Oku(Oturum& oturum) {
  const auto folder = oturum.platform->programFolder();
  const auto file = session::sysInfYolu(folder);
  std::error_code error;
  const bool var = std::filesystem::exists(file, error);
  if (var && platform::readFile(file)) return session::Sys_Inf_Oku(folder);
  // The file that exists stays as it is, whatever the question says.
  if (oturum.kutular->ask("Belirtilen Dosyada Bir Hata Tespit Edildi Dosyanın Sıfırlanarak Tekrar "
                          "Oluştutulmasını İstiyormusunuz ?",
                          session::Icon::Question, baslik) &&
      !var) {
    if (const auto hata = platform::writeFileSafely(file, ""))
      oturum.kutular->message("sys.inf oluşturulamadı (" + folder.string() + "): " + hata.message(),
                              session::Icon::Stop);
  }
  return {};
}

ServerPara Server_Para_Ac(Oturum& oturum) {
  const auto alanlar = session::sysInfBol(Sys_Inf_Satir_Oku(oturum));
  ServerPara para;
  para.SunucuAdi = alanlar[1];
  para.sqlKullanici = alanlar[2];
  para.sqlSifre = alanlar[3];
  if (!alanlar[4].empty()) para.SNDeg = session::Trim(alanlar[4]) == "1";
  return para;
}

bool Server_Para_Kaydet(Oturum& oturum, const ServerPara& para) {
  if (para.MasterSifre != para.SifreTekrar) {
    oturum.kutular->message("Master Şifre Tutarsız Lütfen Kontrol Ediniz", session::Icon::Stop);
    return false;
  }
  for (const std::string* alan : {&para.SunucuAdi, &para.sqlKullanici, &para.sqlSifre}) {
    if (session::sysInfAlaniUygun(*alan)) continue;
    oturum.kutular->message(
        "Sunucu adında, SQL kullanıcı adında ve şifresinde noktalı virgül (;) ve satır sonu kullanılamaz.",
        session::Icon::Stop);
    return false;
  }
  const std::string hata =
      session::Sys_Inf_Yaz(oturum.platform->programFolder(),
                           {para.SunucuAdi, para.sqlKullanici, para.sqlSifre, para.SNDeg.value_or(false)});
  if (hata.empty()) return true;
  oturum.kutular->message(hata, session::Icon::Stop);
  return false;
}

BaglantiDenemesi Baglantiyi_Dene(Oturum& oturum, const ServerPara& para) {
  const std::string sunucu = session::Trim(para.SunucuAdi);
  if (sunucu.empty()) return {false, "SQL Server adı boş."};
  try {
    if (const auto yerel = oturum.surucu->local(sunucu); yerel && !yerel->exists())
      return {false, "Bu makinede hazırlanmış bir yerel sunucu yok: " + yerel->folder().string()};
    const auto baglanti = oturum.surucu->make(sunucu);
    baglanti->open({sunucu, para.sqlKullanici, para.sqlSifre, "master", false});
    if (katalogVar(*baglanti)) return {true, "Bağlantı kuruldu; sunucuda tanım veritabanı var."};
    return {true,
            "Bağlantı kuruldu, ama sunucuda tanım veritabanı (Defination_DB) yok: ilk girişte hazırlanması "
            "önerilecek."};
  } catch (const db::SqlError& hata) {
    return {false, redNedeni(hata, sunucu)};
  }
}

}  // namespace maintenance
