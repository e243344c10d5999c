#include "session/statements.h"

#include <array>
#include <optional>

#include "session/metin.h"

namespace session {
namespace {

using db::Cursor;
using db::Lock;
using db::SqlError;

void baglan(Oturum& oturum, std::unique_ptr<db::Connection>& baglanti, const db::ConnectionParts& parcalar) {
  baglanti = oturum.surucu->make(parcalar.server);
  baglanti->open(parcalar);
}

void iki_yoldan_baglan(Oturum& oturum, std::unique_ptr<db::Connection>& baglanti, const std::string& login,
                       const std::string& password, const std::string& catalog, const std::string& server) {
  oturum.Ilk_Baglanti_Hatasi = 0;
  try {
    baglan(oturum, baglanti, {server, login, password, catalog, false});
  } catch (const SqlError& hata) {
    oturum.Ilk_Baglanti_Hatasi = hata.serverNumber();
    baglan(oturum, baglanti, {server, Trim(login), password, catalog, true});
  }
}

// Runs the statement on the recordset; gives the failure, if any.
std::optional<SqlError> ac(const std::unique_ptr<db::Connection>& baglanti, db::Recordset& kayitlar,
                           std::string_view sql, Cursor cursor, Lock lock) {
  kayitlar.close();
  if (!baglanti) {
    return SqlError(db::ErrorKind::StatementRefused, 0,
                    "The connection cannot be used to perform this operation. It is either closed or invalid "
                    "in this context.");
  }
  try {
    kayitlar.open(*baglanti, sql, cursor, lock);
    return std::nullopt;
  } catch (const SqlError& hata) {
    return hata;
  }
}

std::int32_t calistir(Oturum& oturum, const std::unique_ptr<db::Connection>& baglanti,
                      db::Recordset& kayitlar, std::string_view sql) {
  const auto hata = ac(baglanti, kayitlar, sql, Cursor::Keyset, Lock::BatchOptimistic);
  if (!hata) return 0;
  oturum.kutular->message(hata->what());
  return hata->number();
}

}  // namespace

void Veritabani_Bagla(Oturum& oturum, int, const std::string& login, const std::string& password,
                      const std::string& catalog, const std::string& server) {
  iki_yoldan_baglan(oturum, oturum.Baglanti, login, password, catalog, server);
}

void Veritabani_Bagla2(Oturum& oturum, int, const std::string& login, const std::string& password,
                       const std::string& catalog, const std::string& server) {
  iki_yoldan_baglan(oturum, oturum.Baglanti2, login, password, catalog, server);
}

void Veritabani_Bagla3(Oturum& oturum, int, const std::string& login, const std::string& password,
                       const std::string& catalog, const std::string& server) {
  iki_yoldan_baglan(oturum, oturum.Baglanti3, login, password, catalog, server);
}

void Veritabani_Bagla4(Oturum& oturum, int, const std::string& login, const std::string& password,
                       const std::string& catalog, const std::string& server) {
  iki_yoldan_baglan(oturum, oturum.Baglanti4, login, password, catalog, server);
}

void Veritabani_Bagla_Devir(Oturum& oturum, int, const std::string& login, const std::string& password,
                            const std::string& catalog, const std::string& server) {
  iki_yoldan_baglan(oturum, oturum.Devir_Baglanti, login, password, catalog, server);
  oturum.Devir_Baglanti_Metni = oturum.Devir_Baglanti->connectionText();
}

void Katalog_Bagla(Oturum& oturum, const std::string& catalog) {
  Veritabani_Bagla(oturum, oturum.SQL_Surum, oturum.SQL_Login, oturum.SQL_Sifre, catalog, oturum.Server_Adi);
}

bool CNN_Bagla(Oturum& oturum, const std::string& server, const std::string& catalog) {
  try {
    if (oturum.Baglanti && oturum.Baglanti->state() == db::State::Open) oturum.Baglanti->close();
    Veritabani_Bagla(oturum, oturum.SQL_Surum, oturum.SQL_Login, oturum.SQL_Sifre, Trim(catalog),
                     Trim(server));
    return true;
  } catch (const SqlError& hata) {
    oturum.kutular->message(hata.what());
    return false;
  }
}

int Sorgu_Ac(Oturum& oturum, db::Recordset& kayitlar, std::string_view sql) {
  return ac(oturum.Baglanti, kayitlar, sql, Cursor::Keyset, Lock::ReadOnly) ? -1 : 0;
}

int Sorgu_Ac2(Oturum& oturum, db::Recordset& kayitlar, std::string_view sql) {
  return ac(oturum.Baglanti2, kayitlar, sql, Cursor::Keyset, Lock::ReadOnly) ? -1 : 0;
}

bool Sorgu_Ac_Surer(Oturum& oturum, db::Recordset& kayitlar, std::string_view sql) {
  const auto hata = ac(oturum.Baglanti, kayitlar, sql, Cursor::Keyset, Lock::BatchOptimistic);
  if (!hata) return true;
  oturum.Son_Hata = std::to_string(hata->number()) + " : " + hata->what();
  oturum.kutular->message(oturum.Son_Hata);
  oturum.kutular->message(std::string(sql));
  return !hata->lasting();
}

void Sorgu_Ac_Mesajli(Oturum& oturum, db::Recordset& kayitlar, std::string_view sql) {
  Sorgu_Ac_Surer(oturum, kayitlar, sql);
}

int Sorgu_Ac_Tekrarli(Oturum& oturum, db::Recordset& kayitlar, std::string_view sql) {
  while (const auto hata = ac(oturum.Baglanti3, kayitlar, sql, Cursor::Static, Lock::ReadOnly)) {
    oturum.kutular->message(hata->what());
    if (hata->kind() != db::ErrorKind::LinkBroken) {
      oturum.kutular->message(hata->what(), Icon::Stop);
      oturum.kutular->message(std::string(sql), Icon::Stop);
      // The text of the first connection, though the statement ran on the third.
      oturum.kutular->message(oturum.Baglanti ? oturum.Baglanti->connectionText() : std::string());
      return -1;
    }
    oturum.kutular->message(
        "SQL Server Bağlantı Hatası Tekrar Denenecektir.Lütfen Programı Kapatmayınız. Lütfen Ağ ve Bağlantı "
        "Ayarlarınız Kontrol Ettikten Sonra Tamam Tuşuna Basınız.");
    if (!oturum.kutular->waits()) return -1;
  }
  return 0;
}

std::int32_t Komut_Calistir(Oturum& oturum, db::Recordset& kayitlar, std::string_view sql) {
  return calistir(oturum, oturum.Baglanti, kayitlar, sql);
}

std::int32_t Komut_Calistir2(Oturum& oturum, db::Recordset& kayitlar, std::string_view sql) {
  return calistir(oturum, oturum.Baglanti2, kayitlar, sql);
}

void Veritabani_Kullanici_Sil(Oturum& oturum, const std::string& database, const std::string& name) {
  Katalog_Bagla(oturum, database);
  const std::string ad = db::escape(Buyuk_Harf(name));
  Sorgu_Ac(oturum, oturum.Kayitlar, "SELECT name FROM sysusers where Name='" + ad + "'");
  if (oturum.Kayitlar.recordCount() != 0) {
    Komut_Calistir(oturum, oturum.Kayitlar, "exec sp_dropuser '" + ad + "'");
  }
}

void Veritabani_Kullanici_Ekle(Oturum& oturum, const std::string& database, const std::string& name) {
  static constexpr std::array<std::string_view, 7> roller = {
      "db_owner",          "db_accessadmin", "db_securityadmin", "db_ddladmin",
      "db_backupoperator", "db_datareader",  "db_datawriter"};
  Katalog_Bagla(oturum, database);
  const std::string ad = db::escape(Buyuk_Harf(name));
  Komut_Calistir(oturum, oturum.Kayitlar, "exec sp_grantdbaccess N'" + ad + "', N'" + ad + "'");
  for (const auto rol : roller) {
    Komut_Calistir(oturum, oturum.Kayitlar,
                   "exec sp_addrolemember N'" + std::string(rol) + "', N'" + ad + "'");
  }
}

void Versiyon_Bilgisi(Oturum& oturum) {
  oturum.kutular->message("Versiyon Bilgisi :" + std::string(53, ' ') +
                          "\nProgram Versiyonu : " + oturum.Program_Versiyon +
                          "\nTanımlama Veritabanı Versiyonu : " + oturum.Tanim_DB_Versiyon +
                          "\nFirma Veritabanı Versiyonu : " + oturum.Firma_DB_Versiyon);
}

}  // namespace session
