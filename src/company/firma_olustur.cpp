// Making a company, and writing the card of one that exists.
#include <algorithm>
#include <array>
#include <utility>

#include "catalog/create_database.h"
#include "catalog/katalog.h"
#include "company/base_schema.h"
#include "company/firma_karti.h"
#include "company/kart_alanlari.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "rights/varsayilan.h"
#include "session/firma_bul.h"
#include "session/konsol.h"
#include "session/metin.h"
#include "session/statements.h"

namespace company {

namespace {

using session::Oturum;

const std::string katalog(session::katalogVeritabani);

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

// Shows a failure that ended a step, and leaves it in Son_Hata.
void hatayiGoster(Oturum& oturum, const db::SqlError& hata) {
  oturum.Son_Hata = std::to_string(hata.number()) + " : " + hata.what();
  oturum.kutular->message(oturum.Son_Hata, session::Icon::Stop);
}

enum class AdDurumu : std::uint8_t { Bos, Dolu, Bilinmiyor };

// Connects to master and looks for Hedef_Firma_Adi. Without an answer the usual boxes have been shown and
// Son_Hata holds the failure.
AdDurumu adaBak(Oturum& oturum) {
  session::Katalog_Bagla(oturum, "master");
  oturum.Son_Hata.clear();
  session::Sorgu_Ac_Mesajli(
      oturum, oturum.Kayitlar,
      "SELECT name FROM  sysdatabases where name='" + db::escape(oturum.Hedef_Firma_Adi) + "'");
  if (!oturum.Son_Hata.empty()) {
    return AdDurumu::Bilinmiyor;
  }
  return oturum.Kayitlar.state() == db::State::Open && !oturum.Kayitlar.eof() ? AdDurumu::Dolu
                                                                              : AdDurumu::Bos;
}

OlusturSonucu adVar(Oturum& oturum, const AdVarMetni& metin) {
  oturum.Son_Hata = oturum.Katalog_Kurulumu ? metin.kurulum : metin.firma;
  return OlusturSonucu::AdVar;
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
  } catch (const db::SqlError& hata) {
    // Who could not look does not say that the name is taken.
    constexpr int durdu = 17142, duruyor = 6005;
    const bool koptu = hata.kind() == db::ErrorKind::LinkBroken && hata.serverNumber() == 0;
    if (koptu || hata.serverNumber() == durdu || hata.serverNumber() == duruyor) throw;
    return false;
  }
}

// Whether to go on with a database that was left behind.
bool kaldigiYerdenSor(Oturum& oturum) {
  return oturum.kutular->ask("\"" + oturum.Hedef_Firma_Adi +
                                 "\" adında, firma listesinde olmayan ve içi boş bir veritabanı var; yarıda "
                                 "kalmış bir kurulumdan kalmış olabilir.\nFirma bu veritabanında "
                                 "oluşturulsun mu?",
                             session::Icon::Question);
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
// made. It goes with all that hangs on it, so that the new company has no one else's address, parameters and
// users; two rows of one database could not be deleted one by one, either.
void eskiSatiriSil(Oturum& oturum, std::int64_t id) {
  for (const std::string& cumle : session::firmaSilmeCumleleri(id)) {
    oturum.Baglanti->execute(cumle);
  }
}

void satirYaz(Oturum& oturum, const FirmaKarti& kart) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  kayitlar.open(*oturum.Baglanti, "Select * from sysfrmlng", db::Cursor::Keyset, db::Lock::BatchOptimistic);
  kayitlar.addNew();
  alanlariYaz(oturum, kart, true);
  db::DateTime bugun = oturum.saat->now();
  bugun.hour = bugun.minute = bugun.second = bugun.millisecond = 0;
  kayitlar.set("DBVRSYN", oturum.Tanim_DB_Versiyon);
  kayitlar.set("YR_DT", bugun);
  for (const auto& [column, value] : yeniFirmaDegerleri()) {
    kayitlar.set(column, value);
  }
  kayitlar.updateBatch();
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
  return false;
}

// The company belongs to user 1, with every right.
void yoneticiyeVer(Oturum& oturum) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  session::Sorgu_Ac_Mesajli(
      oturum, kayitlar,
      "SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" + db::escape(oturum.Hedef_Firma_Adi) + "'");
  const std::string id = std::to_string(session::Firma_Kimligi(oturum, kayitlar, oturum.Hedef_Firma_Adi));
  session::Sorgu_Ac_Mesajli(oturum, kayitlar,
                            "INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) VALUES (" + id + ",1)");
  session::Sorgu_Ac_Mesajli(oturum, kayitlar, "SELECT * FROM sysuslng WHERE sysus_ID='1'");
  const std::string ad = kayitlar.field("sysus_nm").trimmed();
  const std::string sifre = kayitlar.field("sysus").trimmed();
  session::Sorgu_Ac_Mesajli(oturum, kayitlar,
                            rights::varsayilanSatir(rights::VarsayilanTur::YeniFirma, id, "1", ad, sifre));
}

// Leaves no transaction open on a connection that is used again.
void islemiGeriAl(Oturum& oturum) {
  oturum.Kayitlar.close();
  session::Sorgu_Ac(oturum, oturum.Kayitlar, "IF @@TRANCOUNT>0 ROLLBACK TRAN");
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

enum class Liste : std::uint8_t { Bizim, Baskasinin, Yazilamadi };

// Registers the company; a database that this run made goes with a row that could not be written.
Liste listeyeYaz(Oturum& oturum, const FirmaKarti& kart, bool yaratildi) {
  try {
    session::Katalog_Bagla(oturum, katalog);
    const auto eski = session::Firma_Bul(oturum, oturum.Hedef_Firma_Adi);
    if (eski) {
      oturum.Baglanti->execute("BEGIN TRAN");
      eskiSatiriSil(oturum, eski->id);
    }
    satirYaz(oturum, kart);
    if (eski) {
      oturum.Baglanti->execute("COMMIT TRAN");
      return Liste::Bizim;
    }
  } catch (const db::SqlError& hata) {
    islemiGeriAl(oturum);
    if (yaratildi) {
      veritabaniniGeriAl(oturum);
    }
    hatayiGoster(oturum, hata);
    return Liste::Yazilamadi;
  }
  return satirBizim(oturum) ? Liste::Bizim : Liste::Baskasinin;
}

// The company's rows, all or none.
void satirlariSil(Oturum& oturum) {
  session::Katalog_Bagla(oturum, katalog);
  const auto satir = session::Firma_Bul(oturum, oturum.Hedef_Firma_Adi);
  if (!satir) {
    return;
  }
  oturum.Baglanti->execute("BEGIN TRAN");
  eskiSatiriSil(oturum, satir->id);
  oturum.Baglanti->execute("COMMIT TRAN");
}

// False when it broke off; statements that were refused have shown their boxes.
bool sahibineVer(Oturum& oturum) {
  const std::string onceki = std::exchange(oturum.Son_Hata, {});
  try {
    yoneticiyeVer(oturum);
  } catch (const db::SqlError& hata) {
    hatayiGoster(oturum, hata);
  }
  if (!oturum.Son_Hata.empty()) {
    return false;
  }
  oturum.Son_Hata = onceki;
  return true;
}

SemaYazimi semayiYaz(Oturum& oturum) {
  try {
    session::Katalog_Bagla(oturum, oturum.Hedef_Firma_Adi);
    if (oturum.Katalog_Kurulumu) {
      catalog::Katalog_Olustur(oturum);
      return SemaYazimi::Tamam;
    }
    return Firma_Tablolari_Olustur(oturum);
  } catch (const db::SqlError& hata) {
    hatayiGoster(oturum, hata);
    return SemaYazimi::Kesildi;
  }
}

enum class Yaratma : std::uint8_t { Oldu, AdAlinmis, Reddedildi };

// Another run may have made a database of that name since it was looked for. A refusal has been shown and is
// left in Son_Hata.
Yaratma veritabaniniYarat(Oturum& oturum) {
  constexpr int adAlinmis = 1801;
  const std::string sql = catalog::createDatabaseStatement(oturum.Hedef_Firma_Adi, oturum.Veri_Klasoru);
  try {
    oturum.Kayitlar.open(*oturum.Baglanti, sql, db::Cursor::Keyset, db::Lock::BatchOptimistic);
    return Yaratma::Oldu;
  } catch (const db::SqlError& hata) {
    if (hata.serverNumber() == adAlinmis) {
      return Yaratma::AdAlinmis;
    }
    oturum.Son_Hata = std::to_string(hata.number()) + " : " + hata.what();
    oturum.kutular->message(oturum.Son_Hata);
    oturum.kutular->message(sql);
    return Yaratma::Reddedildi;
  }
}

OlusturSonucu yarimKaldi(Oturum& oturum, const std::string& kalan) {
  oturum.kutular->message(kalan, session::Icon::Stop);
  return OlusturSonucu::Basarisiz;
}

// Everything behind CREATE DATABASE.
OlusturSonucu tanitVeDoldur(Oturum& oturum, const FirmaKarti& kart, Yaratma yaratma) {
  if (!oturum.Katalog_Kurulumu) {
    // A database that was there keeps the spelling of its name.
    FirmaKarti yazilan = kart;
    yazilan.Firma_Adi = oturum.Hedef_Firma_Adi;
    switch (listeyeYaz(oturum, yazilan, yaratma == Yaratma::Oldu)) {
      case Liste::Yazilamadi:
        return yarimKaldi(oturum, listelenemedi(oturum));
      case Liste::Baskasinin:
        return adVar(oturum, yeniAdVar);
      case Liste::Bizim:
        break;
    }
    if (!sahibineVer(oturum)) {
      return yarimKaldi(oturum, yaridaKaldi(oturum));
    }
  }
  // Without a database the company stays listed, and the server's own text has told why.
  if (yaratma == Yaratma::Reddedildi) {
    return OlusturSonucu::Basarisiz;
  }
  switch (semayiYaz(oturum)) {
    case SemaYazimi::Tamam:
      return OlusturSonucu::Tamam;
    case SemaYazimi::Vazgecildi:
      return Olusturmadan_Vazgec(oturum);
    case SemaYazimi::Kesildi:
      break;
  }
  return yarimKaldi(oturum, yaridaKaldi(oturum));
}

OlusturSonucu yeniFirmaOlustur(Oturum& oturum, const FirmaKarti& kart) {
  const AdDurumu ad = adaBak(oturum);
  if (ad == AdDurumu::Bilinmiyor) {
    return OlusturSonucu::Basarisiz;
  }
  if (ad == AdDurumu::Dolu) {
    if (oturum.Katalog_Kurulumu || !sahipsizVeritabani(oturum) || !kaldigiYerdenSor(oturum)) {
      return adVar(oturum, yeniAdVar);
    }
    // Not made by this run: it is not taken back when its row cannot be written.
    return tanitVeDoldur(oturum, kart, Yaratma::AdAlinmis);
  }
  if (!dosyaYok(oturum)) {
    return OlusturSonucu::DosyaVar;
  }
  if (oturum.ilerleme->cancelled()) {
    return OlusturSonucu::Vazgecildi;
  }
  const Yaratma yaratma = veritabaniniYarat(oturum);
  return yaratma == Yaratma::AdAlinmis ? adVar(oturum, yeniAdVar) : tanitVeDoldur(oturum, kart, yaratma);
}

// The database itself keeps its name.
OlusturSonucu firmayiDegistir(Oturum& oturum, const FirmaKarti& kart) {
  if (session::Trim(oturum.Eski_Firma_Adi) != session::Trim(kart.Firma_Adi)) {
    const AdDurumu ad = adaBak(oturum);
    if (ad != AdDurumu::Bos) {
      return ad == AdDurumu::Dolu ? adVar(oturum, eskiAdVar) : OlusturSonucu::Basarisiz;
    }
  }
  oturum.Katalog_Adi = katalog;
  session::Katalog_Bagla(oturum, katalog);
  if (session::Komut_Calistir(
          oturum, oturum.Kayitlar,
          "Select * from sysfrmlng WHERE sysfrm_ID= " + std::to_string(oturum.Secili_ID)) != 0) {
    return OlusturSonucu::Basarisiz;
  }
  alanlariYaz(oturum, kart, false);
  oturum.Kayitlar.updateBatch();
  return OlusturSonucu::Tamam;
}

}  // namespace

// The database first, as a deletion does it: rows without it can still be deleted from the list. A database
// that was found empty goes, too: filled in part it could be taken up by nobody.
OlusturSonucu Olusturmadan_Vazgec(Oturum& oturum) {
  oturum.Kayitlar.close();
  try {
    session::Katalog_Bagla(oturum, "master");
    oturum.Baglanti->execute("DROP DATABASE " + oturum.Hedef_Firma_Adi);
    satirlariSil(oturum);
    return OlusturSonucu::Vazgecildi;
  } catch (const db::SqlError& hata) {
    islemiGeriAl(oturum);
    hatayiGoster(oturum, hata);
    return yarimKaldi(oturum, yaridaKaldi(oturum));
  }
}

OlusturSonucu Firma_Olustur(Oturum& oturum, const FirmaKarti& kart) {
  try {
    return oturum.Yeni_Kayit ? yeniFirmaOlustur(oturum, kart) : firmayiDegistir(oturum, kart);
  } catch (const db::SqlError& hata) {
    hatayiGoster(oturum, hata);
    return OlusturSonucu::Basarisiz;
  }
}

}  // namespace company
