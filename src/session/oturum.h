// The one session record. Set at login, read everywhere; app/ makes it and hands it down.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "db/connection.h"
#include "db/recordset.h"
#include "session/firma_parametreleri.h"
#include "session/ports.h"

namespace session {

inline constexpr std::string_view katalogVeritabani = "Defination_DB";
// Of the program, of the catalog and of the company databases that it makes.
inline constexpr std::string_view programSurumu = "2012.002";

class YedekBilgisi;

// Everything but the connections.
struct OturumDegerleri {
  // Text
  std::string Program_Versiyon, Tanim_DB_Versiyon, Firma_DB_Versiyon;  // "2012.002" after login
  std::string Server_Adi, SQL_Login, SQL_Sifre;                        // sys.inf, fields 1 to 3
  std::string Katalog_Adi;
  std::string Veri_Klasoru;
  std::string Kullanici_Adi, Kullanici_Sifre_Sifreli;
  std::string SCM_Yolu;
  std::string Ondalik_Ayrac, Binlik_Ayrac;
  std::string Son_Hata;
  std::string Secili_Firma, Firma_DB_Adi;
  std::string Hedef_Firma_Adi, Hedef_Firma_Kodu, Eski_Firma_Adi;
  std::string Devir_Baglanti_Metni;
  // Number patterns of the company in work ("#,##0.00"); loaded with its parameters
  std::string AnaPara_Format, BirimFiyat_Format, Doviz_Format, DovizBirimFiyat_Format, Kur_Format;
  FirmaParametreleri Parametre;

  // Numbers and flags
  int Kullanici_ID = 0;
  bool Supervisor = false;
  int SQL_Surum = 0;
  int Ilk_Baglanti_Hatasi = 0;  // the server's own number for the failed first attempt to connect; 0: none
  int Giris_Hatali = 0;         // -1 after a failed login: the console comes up reduced
  bool Yeni_Kayit = false;
  bool Inceleme = false;
  std::int64_t Secili_ID = 0;
  bool Katalog_Kurulumu = false;

  // Ports; owned by app/ or the test, never null while a procedure runs
  db::ConnectionFactory* surucu = nullptr;
  Boxes* kutular = nullptr;
  Progress* ilerleme = nullptr;
  Clock* saat = nullptr;
  Platform* platform = nullptr;
  YedekBilgisi* yedekler = nullptr;  // null where nobody keeps account of backups
};

struct Oturum : OturumDegerleri {
  // Connections and the shared recordset
  std::unique_ptr<db::Connection> Baglanti, Baglanti2, Baglanti3, Baglanti4, Devir_Baglanti, Kaynak_Baglanti;
  db::Recordset Kayitlar;
};

}  // namespace session
