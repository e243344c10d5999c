// The server login of a user.
#include "rights/islem.h"
#include "rights/kullanici_karti.h"
#include "session/metin.h"
#include "session/statements.h"

namespace rights {

using session::Oturum;

namespace {

// The table of logins by the age of the server.
std::string girisTablosu(Oturum& oturum) {
  const bool eski =
      session::Sorgu_Ac(oturum, oturum.Kayitlar, "SELECT * FROM sysobjects where name='sysxlogins'") == 0 &&
      oturum.Kayitlar.state() == db::State::Open && !oturum.Kayitlar.eof();
  return eski ? "sysxlogins" : "sysxlgns";
}

// sp_addlogin for a new name, sp_password for a known one.
bool girisiYaz(Oturum& oturum, const KullaniciKarti& kart, const std::string& ad, const std::string& sifre) {
  session::Katalog_Bagla(oturum, "master");
  if (session::Komut_Calistir(
          oturum, oturum.Kayitlar,
          "Select count(*) as Adet FROM " + girisTablosu(oturum) + " where name='" + ad + "'") != 0)
    return false;
  if (oturum.Kayitlar.field("Adet").integer() == 0) {
    return session::Komut_Calistir(oturum, oturum.Kayitlar,
                                   "exec sp_Addlogin '" + ad + "','" + sifre + "'") == 0 &&
           session::Komut_Calistir(oturum, oturum.Kayitlar,
                                   "exec sp_Addsrvrolemember N'" + ad + "',sysadmin") == 0;
  }
  if (session::Komut_Calistir(
          oturum, oturum.Kayitlar,
          "exec sp_password '" + db::escape(kart.Eski_SQL_Sifre) + "','" + sifre + "','" + ad + "'") == 0)
    return true;
  oturum.kutular->message("Kullanıcını Şifresi ile Oynanmış Bu kullanıcı Kullanılamaz");
  return false;
}

void kullaniciyiYenile(Oturum& oturum, const std::string& database, const std::string& ad, bool ekle) {
  session::Veritabani_Kullanici_Sil(oturum, database, ad);
  if (ekle) session::Veritabani_Kullanici_Ekle(oturum, database, ad);
}

std::vector<std::string> butunFirmalar(Oturum& oturum) {
  std::vector<std::string> names;
  session::Sorgu_Ac_Mesajli(
      oturum, oturum.Kayitlar,
      "SELECT sysfrm_dbnm FROM " + std::string(session::katalogVeritabani) + ".dbo.sysfrmlng");
  if (oturum.Kayitlar.state() == db::State::Closed) return names;
  for (; !oturum.Kayitlar.eof(); oturum.Kayitlar.moveNext())
    names.push_back(oturum.Kayitlar.field("sysfrm_dbnm").trimmed());
  return names;
}

}  // namespace

bool Sql_Girisi_Olustur(Oturum& oturum, const KullaniciKarti& kart, const std::string& ad,
                        const std::string& sifre) {
  return hatayiGoster(oturum, "SQL girişi oluşturulamadı.", [&] {
    if (!girisiYaz(oturum, kart, db::escape(session::Buyuk_Harf(ad)), db::escape(session::Buyuk_Harf(sifre))))
      return false;
    kullaniciyiYenile(oturum, std::string(katalogAdi), ad, true);
    if (kart.ID == "1") {
      for (const std::string& database : butunFirmalar(oturum)) kullaniciyiYenile(oturum, database, ad, true);
      return true;
    }
    for (const FirmaSatiri& firma : kart.Firmatreelist) kullaniciyiYenile(oturum, firma.ad, ad, firma.secili);
    return true;
  });
}

}  // namespace rights
