// Making a company, and writing the card of one that exists.
#include <algorithm>
#include <array>

#include "catalog/create_database.h"
#include "catalog/katalog.h"
#include "company/base_schema.h"
#include "company/firma_karti.h"
#include "company/kart_alanlari.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "rights/varsayilan.h"
#include "session/firma_bul.h"
#include "session/metin.h"
#include "session/statements.h"

namespace company {

namespace {

using session::Oturum;

const std::string katalog(catalog::catalogDatabase);

// Texts for a name that the server knows already. The blank at the end and the missing full stop belong to
// the card of an existing company alone.
struct AdVarMetni {
  std::string_view firma, kurulum;
};
constexpr AdVarMetni yeniAdVar = {
    "Bu İsimle Bir Firma Zaten Var.",
    "Bu Serverda Daha Önce Default Tanımı Yapılmış. Bu Default Tanımı Yeniden Set Etmek İster misiniz?"};
constexpr AdVarMetni eskiAdVar = {
    "Bu İsimle Bir Firma Zaten Var ",
    "Bu Serverda daha önce Default Tanımı Yapılmış. Bu Default Tanımı Yeniden Set Etmek İstermisiniz"};

// True when the query gives a row.
bool satirVar(Oturum& oturum, const std::string& sql) {
  session::Sorgu_Ac_Mesajli(oturum, oturum.Kayitlar, sql);
  return oturum.Kayitlar.state() == db::State::Open && !oturum.Kayitlar.eof();
}

// Connects to master and looks for Hedef_Firma_Adi. False with Son_Hata set when the name is taken or the
// look-up failed.
bool adBos(Oturum& oturum, const AdVarMetni& metin) {
  session::Katalog_Bagla(oturum, "master");
  oturum.Son_Hata.clear();
  if (satirVar(oturum,
               "SELECT name FROM  sysdatabases where name='" + db::escape(oturum.Hedef_Firma_Adi) + "'")) {
    oturum.Son_Hata = oturum.Katalog_Kurulumu ? metin.kurulum : metin.firma;
  }
  return oturum.Son_Hata.empty();
}

// A run that ended between CREATE DATABASE and the company's row leaves a database that no list shows. It
// is known by holding nothing at all.
bool sahipsizVeritabani(Oturum& oturum) {
  static constexpr std::array<std::string_view, 4> sunucununki = {"MASTER", "TEMPDB", "MODEL", "MSDB"};
  const std::string ad = session::Buyuk_Harf(oturum.Hedef_Firma_Adi);
  if (std::find(sunucununki.begin(), sunucununki.end(), ad) != sunucununki.end()) {
    return false;
  }
  try {
    session::Katalog_Bagla(oturum, katalog);
    if (session::Firma_Bul(oturum, oturum.Hedef_Firma_Adi)) {
      return false;
    }
    oturum.Hedef_Firma_Adi = session::Veritabani_Asil_Adi(oturum, oturum.Hedef_Firma_Adi);
    session::Katalog_Bagla(oturum, oturum.Hedef_Firma_Adi);
    // Another run that is just making it stands on it.
    const auto nesneler = oturum.Baglanti->query(
        "SELECT (SELECT COUNT(*) FROM sysobjects WHERE xtype IN ('U','V'))+(SELECT COUNT(*) FROM "
        "master.dbo.sysprocesses WHERE dbid=DB_ID() AND spid<>@@SPID)");
    return nesneler && nesneler->count() > 0 && nesneler->value(0, 0).integer() == 0;
  } catch (const db::SqlError&) {
    return false;
  }
}

// Asks whether to go on with a database left behind; then Son_Hata is cleared again.
bool kaldigiYerden(Oturum& oturum) {
  const std::string hata = oturum.Son_Hata;
  if (oturum.Katalog_Kurulumu || hata != yeniAdVar.firma || !sahipsizVeritabani(oturum) ||
      !oturum.kutular->ask("\"" + oturum.Hedef_Firma_Adi +
                               "\" adında, firma listesinde olmayan ve içi boş bir veritabanı var; yarıda "
                               "kalmış bir kurulumdan kalmış olabilir.\nFirma bu veritabanında "
                               "oluşturulsun mu?",
                           session::Icon::Question)) {
    oturum.Son_Hata = hata;
    return false;
  }
  oturum.Son_Hata.clear();
  return true;
}

std::string dosyaVarMetni(const std::string& dosya) {
  return "Bu Firma SQL SERVER Tarafından Tanınmıyor Ama Dosyası var.\n"
         "Dosya için Lütfen" +
         dosya +
         " Yoluna Bakınız.\n"
         "Eğer Bu Firmayı Oluşturmak istiyorsanız.Aşağıdaki Adımları Uygulayınız.\n"
         "1- Bu Dosyayı Yukarıda Belirtilen Yoldan Başka Bir Yere Alınız.\n"
         "2- Firmayı Oluşturunuz.\n"
         "3- Muhtemelen Var Olan Dosya Bir Korven Firmasının Bilgilerini İçerdiği İçin.\n"
         "   Bu Bilgileri Geri alabilmek SQL SERVER'i Durdurduktan Sonra Buradn Aldığınız Dosyayı Üzerine "
         "Kopyalayınız.\n"
         "\n"
         "YADA Lütfen Proram Satıcınızı Arayınız.";
}

// False with Son_Hata set when the data folder holds a file of that name: the console and the server are
// taken to run on one machine.
bool dosyaYok(Oturum& oturum) {
  const std::string dosya = catalog::dataFile(oturum.Hedef_Firma_Adi, oturum.Veri_Klasoru);
  if (platform::fileOfName(platform::hostPath(dosya))) {
    oturum.Son_Hata = dosyaVarMetni(dosya);
  }
  return oturum.Son_Hata.empty();
}

// Writes the card's fields into the current row: those that are always written, then those that are not
// empty, so that no field can be cleared. A new company also takes its dates as lock dates.
void alanlariYaz(Oturum& oturum, const FirmaKarti& kart, bool yeni) {
  for (const KartAlani& alan : kartAlanlari()) {
    if (!alan.zorunlu && session::Trim(kart.*alan.text).empty()) {
      continue;
    }
    const db::Value deger = kartDegeri(kart, alan);
    oturum.Kayitlar.set(alan.column, deger);
    if (yeni && !alan.kilit.empty()) {
      oturum.Kayitlar.set(alan.kilit, deger);
    }
  }
}

// A row of that name is the trace of a run that broke off: its database is not there any more, or was not
// made. It is written anew, for two rows of one database could not be deleted one by one. True when found.
bool eskiSatir(Oturum& oturum, const std::optional<session::FirmaSatiri>& eski) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  for (; eski && !kayitlar.eof(); kayitlar.moveNext()) {
    if (kayitlar.field("sysfrm_ID").integer() == eski->id) {
      return true;
    }
  }
  return false;
}

// True when the row is a new one.
bool katalogSatiri(Oturum& oturum, const FirmaKarti& kart, const std::optional<session::FirmaSatiri>& eski) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  const bool yeni = !eskiSatir(oturum, eski);
  if (yeni) {
    kayitlar.addNew();
  }
  alanlariYaz(oturum, kart, true);
  db::DateTime bugun = oturum.saat->now();
  bugun.hour = bugun.minute = bugun.second = bugun.millisecond = 0;
  kayitlar.set("DBVRSYN", oturum.Tanim_DB_Versiyon);
  kayitlar.set("YR_DT", bugun);
  for (const auto& [column, value] : yeniFirmaDegerleri()) {
    kayitlar.set(column, value);
  }
  kayitlar.updateBatch();
  return yeni;
}

// Two runs may have found the name free at one time: the row that came first stays, the other run takes its
// own back and leaves the company alone. False for that one.
bool satirBizim(Oturum& oturum) {
  const auto rows = oturum.Baglanti->query(
      "SELECT @@IDENTITY,MIN(sysfrm_ID) FROM sysfrmlng WHERE DB_ID(RTRIM(sysfrm_dbnm))=DB_ID('" +
      db::escape(oturum.Hedef_Firma_Adi) + "')");
  if (!rows || rows->count() == 0 || rows->value(0, 1).isNull()) {
    return true;
  }
  const std::int64_t numara = rows->value(0, 0).integer();
  if (rows->value(0, 1).integer() >= numara) {
    return true;
  }
  oturum.Baglanti->execute("DELETE FROM sysfrmlng WHERE sysfrm_ID=" + std::to_string(numara));
  oturum.Son_Hata = yeniAdVar.firma;
  return false;
}

// The company belongs to user 1, with every right.
void yoneticiyeVer(Oturum& oturum, bool yeniSatir) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  session::Sorgu_Ac_Mesajli(
      oturum, kayitlar,
      "SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" + db::escape(oturum.Hedef_Firma_Adi) + "'");
  std::int64_t numara = kayitlar.field("sysfrm_ID").integer();
  // The column's collation may hold names for one that are two databases.
  if (kayitlar.recordCount() > 1) {
    numara = session::Firma_Bul(oturum, oturum.Hedef_Firma_Adi).value().id;
  }
  const std::string id = std::to_string(numara);
  if (!yeniSatir) {
    session::Sorgu_Ac_Mesajli(oturum, kayitlar,
                              "DELETE FROM sysusfrmlng WHERE sysfrm_ID=" + id + " AND sysus_ID=1");
    session::Sorgu_Ac_Mesajli(oturum, kayitlar,
                              "DELETE FROM Kullanici WHERE Firma_ID='" + id + "' AND Kullanici_ID='1'");
  }
  session::Sorgu_Ac_Mesajli(oturum, kayitlar,
                            "INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) VALUES (" + id + ",1)");
  session::Sorgu_Ac_Mesajli(oturum, kayitlar, "SELECT * FROM sysuslng WHERE sysus_ID='1'");
  const std::string ad = kayitlar.field("sysus_nm").trimmed();
  const std::string sifre = kayitlar.field("sysus").trimmed();
  session::Sorgu_Ac_Mesajli(oturum, kayitlar,
                            rights::varsayilanSatir(rights::VarsayilanTur::YeniFirma, id, "1", ad, sifre));
}

// A database that no list shows could be deleted by nobody.
void veritabaniniGeriAl(Oturum& oturum) {
  oturum.Kayitlar.close();
  try {
    session::Katalog_Bagla(oturum, "master");
    oturum.Baglanti->execute("DROP DATABASE " + oturum.Hedef_Firma_Adi);
  } catch (const db::SqlError&) {
    // The first failure is on its way; the next creation takes up what stays behind.
  }
}

std::string listelenemedi(const Oturum& oturum) {
  return "\"" + oturum.Hedef_Firma_Adi +
         "\" firması listeye yazılamadı.\nEngel giderildikten sonra firmayı yeniden oluşturunuz.";
}

std::string yaridaKaldi(const Oturum& oturum) {
  return "\"" + oturum.Hedef_Firma_Adi +
         "\" firmasının oluşturulması yarıda kaldı; veritabanı eksiktir.\nEngel giderildikten sonra firmayı "
         "listeden silip yeniden oluşturunuz.";
}

// Registers the company; a database that this run made goes with a row that could not be written. `durum`
// tells what stands when it throws.
void kataloglaTanit(Oturum& oturum, const FirmaKarti& kart, bool yaratildi, std::string& durum) {
  durum = listelenemedi(oturum);
  bool yeniSatir = false;
  try {
    session::Katalog_Bagla(oturum, katalog);
    const auto eski = session::Firma_Bul(oturum, oturum.Hedef_Firma_Adi);
    oturum.Kayitlar.open(*oturum.Baglanti, "Select * from sysfrmlng", db::Cursor::Keyset,
                         db::Lock::BatchOptimistic);
    yeniSatir = katalogSatiri(oturum, kart, eski);
  } catch (const db::SqlError&) {
    if (yaratildi) {
      veritabaniniGeriAl(oturum);
    }
    throw;
  }
  if (yeniSatir && !satirBizim(oturum)) {
    durum.clear();
    return;
  }
  durum = yaridaKaldi(oturum);
  yoneticiyeVer(oturum, yeniSatir);
}

// False when it broke off.
bool semayiYaz(Oturum& oturum) {
  session::Katalog_Bagla(oturum, oturum.Hedef_Firma_Adi);
  if (oturum.Katalog_Kurulumu) {
    catalog::Katalog_Olustur(oturum);
    return true;
  }
  return Firma_Tablolari_Olustur(oturum);
}

// False when another run has made a database of that name since it was looked for; Son_Hata says so. Any
// other failure has been shown and is left in Son_Hata.
bool veritabaniniYarat(Oturum& oturum) {
  constexpr int adAlinmis = 1801;
  const std::string sql = catalog::createDatabaseStatement(oturum.Hedef_Firma_Adi, oturum.Veri_Klasoru);
  try {
    oturum.Kayitlar.open(*oturum.Baglanti, sql, db::Cursor::Keyset, db::Lock::BatchOptimistic);
  } catch (const db::SqlError& hata) {
    if (hata.serverNumber() == adAlinmis) {
      oturum.Son_Hata = oturum.Katalog_Kurulumu ? yeniAdVar.kurulum : yeniAdVar.firma;
      return false;
    }
    oturum.Son_Hata = std::to_string(hata.number()) + " : " + hata.what();
    oturum.kutular->message(oturum.Son_Hata);
    oturum.kutular->message(sql);
  }
  return true;
}

// `durum` tells what stands when the run broke off; empty when it came to its end.
void yeniFirmaOlustur(Oturum& oturum, const FirmaKarti& kart, std::string& durum) {
  bool yaratildi = false;
  if (adBos(oturum, yeniAdVar)) {
    if (!dosyaYok(oturum)) {
      return;
    }
    if (!veritabaniniYarat(oturum)) {
      return;
    }
    yaratildi = oturum.Son_Hata.empty();
  } else if (!kaldigiYerden(oturum)) {
    return;
  }
  const bool veritabaniVar = oturum.Son_Hata.empty();
  if (!oturum.Katalog_Kurulumu) {
    // A database that was there keeps the spelling of its name.
    FirmaKarti yazilan = kart;
    yazilan.Firma_Adi = oturum.Hedef_Firma_Adi;
    kataloglaTanit(oturum, yazilan, yaratildi, durum);
  }
  // Without a database the company stays listed, and the server's own text has told why.
  if (!veritabaniVar || (oturum.Son_Hata.empty() && semayiYaz(oturum))) {
    durum.clear();
  }
}

// The database itself keeps its name.
void firmayiDegistir(Oturum& oturum, const FirmaKarti& kart) {
  if (session::Trim(oturum.Eski_Firma_Adi) != session::Trim(kart.Firma_Adi) && !adBos(oturum, eskiAdVar)) {
    return;
  }
  oturum.Katalog_Adi = katalog;
  session::Katalog_Bagla(oturum, katalog);
  if (session::Komut_Calistir(
          oturum, oturum.Kayitlar,
          "Select * from sysfrmlng WHERE sysfrm_ID= " + std::to_string(oturum.Secili_ID)) != 0) {
    return;
  }
  alanlariYaz(oturum, kart, false);
  oturum.Kayitlar.updateBatch();
}

}  // namespace

void Firma_Olustur(Oturum& oturum, const FirmaKarti& kart) {
  std::string durum;
  try {
    if (oturum.Yeni_Kayit) {
      yeniFirmaOlustur(oturum, kart, durum);
    } else {
      firmayiDegistir(oturum, kart);
    }
  } catch (const db::SqlError& hata) {
    oturum.Son_Hata = std::to_string(hata.number()) + " : " + hata.what();
    oturum.kutular->message(oturum.Son_Hata, session::Icon::Stop);
  }
  if (!durum.empty()) {
    oturum.kutular->message(durum, session::Icon::Stop);
  }
}

}  // namespace company
