// Making a company, and writing the card of one that exists.
#include <algorithm>
#include <array>
#include <filesystem>

#include "catalog/create_database.h"
#include "catalog/katalog.h"
#include "company/base_schema.h"
#include "company/firma_karti.h"
#include "company/kart_alanlari.h"
#include "platform/folders.h"
#include "rights/varsayilan.h"
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
    if (satirVar(oturum, "SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" +
                             db::escape(oturum.Hedef_Firma_Adi) + "'")) {
      return false;
    }
    session::Katalog_Bagla(oturum, oturum.Hedef_Firma_Adi);
    const auto nesneler = oturum.Baglanti->query("SELECT COUNT(*) FROM sysobjects WHERE xtype IN ('U','V')");
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
  std::error_code error;
  if (std::filesystem::exists(platform::hostPath(dosya), error)) {
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
bool eskiSatir(Oturum& oturum) {
  const std::string ad = session::Buyuk_Harf(oturum.Hedef_Firma_Adi);
  db::Recordset& kayitlar = oturum.Kayitlar;
  for (; !kayitlar.eof(); kayitlar.moveNext()) {
    if (session::Buyuk_Harf(kayitlar.field("sysfrm_dbnm").trimmed()) == ad) {
      return true;
    }
  }
  return false;
}

// True when the row is a new one.
bool katalogSatiri(Oturum& oturum, const FirmaKarti& kart) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  const bool yeni = !eskiSatir(oturum);
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

// The company belongs to user 1, with every right.
void yoneticiyeVer(Oturum& oturum, bool yeniSatir) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  session::Sorgu_Ac_Mesajli(
      oturum, kayitlar,
      "SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" + db::escape(oturum.Hedef_Firma_Adi) + "'");
  const std::string id = std::to_string(kayitlar.field("sysfrm_ID").integer());
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
    oturum.Kayitlar.open(*oturum.Baglanti, "Select * from sysfrmlng", db::Cursor::Keyset,
                         db::Lock::BatchOptimistic);
    yeniSatir = katalogSatiri(oturum, kart);
  } catch (const db::SqlError&) {
    if (yaratildi) {
      veritabaniniGeriAl(oturum);
    }
    throw;
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

// `durum` tells what stands when the run broke off; empty when it came to its end.
void yeniFirmaOlustur(Oturum& oturum, const FirmaKarti& kart, std::string& durum) {
  bool yaratildi = false;
  if (adBos(oturum, yeniAdVar)) {
    if (!dosyaYok(oturum)) {
      return;
    }
    session::Sorgu_Ac_Mesajli(oturum, oturum.Kayitlar,
                              catalog::createDatabaseStatement(oturum.Hedef_Firma_Adi, oturum.Veri_Klasoru));
    yaratildi = oturum.Son_Hata.empty();
  } else if (!kaldigiYerden(oturum)) {
    return;
  }
  const bool veritabaniVar = oturum.Son_Hata.empty();
  if (!oturum.Katalog_Kurulumu) {
    kataloglaTanit(oturum, kart, yaratildi, durum);
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
