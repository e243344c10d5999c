// Making a company, and writing the card of one that exists.
#include <filesystem>

#include "catalog/create_database.h"
#include "catalog/katalog.h"
#include "company/base_schema.h"
#include "company/firma_karti.h"
#include "company/kart_alanlari.h"
#include "platform/folders.h"
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

// Connects to master and looks for Hedef_Firma_Adi. False with Son_Hata set when the name is taken or the
// look-up failed.
bool adBos(Oturum& oturum, const AdVarMetni& metin) {
  session::Katalog_Bagla(oturum, "master");
  oturum.Son_Hata.clear();
  session::Sorgu_Ac_Mesajli(
      oturum, oturum.Kayitlar,
      "SELECT name FROM  sysdatabases where name='" + db::escape(oturum.Hedef_Firma_Adi) + "'");
  if (oturum.Kayitlar.state() == db::State::Open && !oturum.Kayitlar.eof()) {
    oturum.Son_Hata = oturum.Katalog_Kurulumu ? metin.kurulum : metin.firma;
  }
  return oturum.Son_Hata.empty();
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

void katalogSatiri(Oturum& oturum, const FirmaKarti& kart) {
  db::Recordset& kayitlar = oturum.Kayitlar;
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

// The company belongs to user 1, with every right.
void yoneticiyeVer(Oturum& oturum) {
  db::Recordset& kayitlar = oturum.Kayitlar;
  session::Sorgu_Ac_Mesajli(
      oturum, kayitlar,
      "SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" + db::escape(oturum.Hedef_Firma_Adi) + "'");
  const std::string id = std::to_string(kayitlar.field("sysfrm_ID").integer());
  session::Sorgu_Ac_Mesajli(oturum, kayitlar,
                            "INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) VALUES (" + id + ",1)");
  session::Sorgu_Ac_Mesajli(oturum, kayitlar, "SELECT * FROM sysuslng WHERE sysus_ID='1'");
  const std::string ad = kayitlar.field("sysus_nm").trimmed();
  const std::string sifre = kayitlar.field("sysus").trimmed();
  session::Sorgu_Ac_Mesajli(oturum, kayitlar, yetkiSatiri(id, ad, sifre));
}

// Registers the company. A failure here would leave a database that no list shows: it is dropped again
// when this run made it.
void kataloglaTanit(Oturum& oturum, const FirmaKarti& kart, bool yaratildi) {
  try {
    session::Katalog_Bagla(oturum, katalog);
    if (session::Komut_Calistir(oturum, oturum.Kayitlar, "Select * from sysfrmlng") == 0) {
      katalogSatiri(oturum, kart);
      yoneticiyeVer(oturum);
      return;
    }
  } catch (const db::SqlError&) {
    oturum.Kayitlar.close();
    if (yaratildi) {
      session::Katalog_Bagla(oturum, "master");
      oturum.Baglanti->execute("DROP DATABASE " + oturum.Hedef_Firma_Adi);
    }
    throw;
  }
}

void yeniFirmaOlustur(Oturum& oturum, const FirmaKarti& kart) {
  if (!adBos(oturum, yeniAdVar) || !dosyaYok(oturum)) {
    return;
  }
  session::Sorgu_Ac_Mesajli(oturum, oturum.Kayitlar,
                            catalog::createDatabaseStatement(oturum.Hedef_Firma_Adi, oturum.Veri_Klasoru));
  if (!oturum.Katalog_Kurulumu) {
    kataloglaTanit(oturum, kart, oturum.Son_Hata.empty());
  }
  if (!oturum.Son_Hata.empty()) {
    return;
  }
  session::Katalog_Bagla(oturum, oturum.Hedef_Firma_Adi);
  if (oturum.Katalog_Kurulumu) {
    catalog::Katalog_Olustur(oturum);
  } else {
    Firma_Tablolari_Olustur(oturum);
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
  try {
    if (oturum.Yeni_Kayit) {
      yeniFirmaOlustur(oturum, kart);
    } else {
      firmayiDegistir(oturum, kart);
    }
  } catch (const db::SqlError& hata) {
    oturum.Son_Hata = std::to_string(hata.number()) + " : " + hata.what();
    oturum.kutular->message(oturum.Son_Hata, session::Icon::Stop);
  }
}

}  // namespace company
