#include "session/giris.h"

#include <cstdlib>

#include "session/metin.h"
#include "session/statements.h"
#include "session/sys_inf.h"
#include "session/uyarilar.h"

namespace session {

namespace {

constexpr int veritabaniYok = 4060;

void closeQuietly(Oturum& oturum) {
  try {
    if (oturum.Baglanti) oturum.Baglanti->close();
  } catch (const db::SqlError&) {
    // Whatever is left of the old connection is replaced by the one that follows.
  }
}

GirisSonucu stay(GirisOdak odak, bool sifreyiBosalt = false) {
  GirisSonucu sonuc;
  sonuc.odak = odak;
  sonuc.sifreyiBosalt = sifreyiBosalt;
  return sonuc;
}

GirisSonucu wrongPassword(Oturum& oturum) {
  oturum.kutular->message("Şifreniz Geçerli Değil!", Icon::Information);
  return stay(GirisOdak::Sifre, true);
}

GirisSonucu checkUser(Oturum& oturum) {
  Sorgu_Ac_Mesajli(oturum, oturum.Kayitlar, "SELECT * FROM sysDTYL");
  Veri_Klasoru_Belirle(oturum, oturum.Kayitlar.field("sysdtyl").trimmed());
  Sorgu_Ac_Mesajli(oturum, oturum.Kayitlar,
                   "SELECT * FROM sysuslng WHERE sysus_nm='" + db::escape(oturum.Kullanici_Adi) + "'");
  return Giris_Kontrol(oturum);
}

GirisSonucu connectionFailed(Oturum& oturum, const db::SqlError& error) {
  if (!katalogEksik(oturum, error)) return Giris_Basarisiz(oturum, error.number(), error.what());
  GirisSonucu sonuc;
  sonuc.adim = GirisSonucu::Adim::KatalogYok;
  sonuc.hataNo = error.number();
  sonuc.hataMetni = error.what();
  return sonuc;
}

}  // namespace

BolgeselSonuc Giris_Yukle(Oturum& oturum) {
  sysInfYukle(oturum);
  if (BolgeselAyarlariAyarla(oturum) == BolgeselSonuc::ProgramBitsin) return BolgeselSonuc::ProgramBitsin;
  // The last element of the key is kept nowhere in the clear.
  const std::string key = "SOFTWARE\\Microsoft\\" + Sifrele("Torkul").value_or("");
  oturum.SQL_Surum = std::atoi(Kayit_Oku(oturum, kokMakine, key, "SQLVER").c_str());
  const std::string tools = Kayit_Oku(
      oturum, kokMakine, "Software\\Microsoft\\Microsoft SQL Server\\80\\Tools\\ClientSetup", "SQLPath");
  if (!tools.empty()) oturum.SCM_Yolu = tools + "\\Binn\\scm.exe ";
  return BolgeselSonuc::Tamam;
}

GirisSonucu Giris_Tamam(Oturum& oturum, const std::string& kullanici, const std::string& sifre) {
  oturum.Program_Versiyon = oturum.Tanim_DB_Versiyon = oturum.Firma_DB_Versiyon = programSurumu;
  oturum.Giris_Hatali = 0;
  oturum.Kullanici_Adi = Buyuk_Harf(Trim(kullanici));
  const auto scrambled = Sifrele(Trim(sifre));
  // No stored password can hold a character that does not scramble.
  if (!scrambled) return wrongPassword(oturum);
  oturum.Kullanici_Sifre_Sifreli = *scrambled;
  oturum.Katalog_Adi = katalogVeritabani;
  closeQuietly(oturum);
  // A driver would take no name for this machine.
  if (Trim(oturum.Server_Adi).empty())
    return Giris_Basarisiz(oturum, static_cast<std::int32_t>(db::ErrorKind::LinkBroken),
                           sysInfEksigi(oturum.platform->programFolder()));
  try {
    Veritabani_Bagla(oturum, oturum.SQL_Surum, oturum.SQL_Login, oturum.SQL_Sifre, oturum.Katalog_Adi,
                     oturum.Server_Adi);
  } catch (const db::SqlError& error) {
    return connectionFailed(oturum, error);
  }
  try {
    return checkUser(oturum);
  } catch (const db::SqlError& error) {
    return Giris_Basarisiz(oturum, error.number(), error.what());
  }
}

GirisSonucu Giris_Basarisiz(Oturum& oturum, std::int32_t hataNo, const std::string& hataMetni) {
  const bool refused = hataNo == static_cast<std::int32_t>(db::ErrorKind::LoginRefused);
  oturum.kutular->message(refused ? std::string(girisReddi) : hataMetni, Icon::Information);
  oturum.Giris_Hatali = -1;
  GirisSonucu sonuc;
  sonuc.adim = GirisSonucu::Adim::KonsolEksik;
  return sonuc;
}

GirisSonucu Giris_Kontrol(Oturum& oturum) {
  db::Recordset& row = oturum.Kayitlar;
  if (row.state() == db::State::Open && row.eof()) {
    oturum.kutular->message("Kullanıcı Adınız Geçerli Değil!");
    return stay(GirisOdak::Kullanici);
  }
  const db::Value id = row.field("sysus_ID");
  oturum.Supervisor = id.trimmed() == "1";
  oturum.Kullanici_ID = static_cast<int>(id.integer());
  if (row.field("sysus").trimmed() != oturum.Kullanici_Sifre_Sifreli) return wrongPassword(oturum);
  for (const std::string& uyari : Uyarilar(oturum)) oturum.kutular->message(uyari, Icon::Warning);
  GirisSonucu sonuc;
  sonuc.adim = GirisSonucu::Adim::KonsolTam;
  return sonuc;
}

bool katalogEksik(Oturum& oturum, const db::SqlError& error) {
  return (error.serverNumber() == veritabaniYok || oturum.Ilk_Baglanti_Hatasi == veritabaniYok) &&
         katalogEksik(oturum);
}

bool katalogEksik(Oturum& oturum) {
  if (Trim(oturum.Server_Adi).empty()) return false;
  try {
    const auto connection = oturum.surucu->make(oturum.Server_Adi);
    connection->open({oturum.Server_Adi, oturum.SQL_Login, oturum.SQL_Sifre, "master", false});
    const auto rows = connection->query("SELECT name FROM sysdatabases WHERE name='" +
                                        std::string(katalogVeritabani) + "'");
    return rows && rows->count() == 0;
  } catch (const db::SqlError&) {
    return false;
  }
}

}  // namespace session
