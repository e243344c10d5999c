#include "catalog/sunucu_hazirla.h"

#include <vector>

#include "catalog/create_database.h"
#include "catalog/katalog.h"
#include "platform/code_page.h"
#include "session/metin.h"
#include "session/statements.h"

namespace catalog {

namespace {

using session::Oturum;

constexpr std::size_t yoneticiUzunlugu = 15;  // sysus_nm, sysus_lgn and sysus are CHAR(15)

// Keeps the boxes of Katalog_Olustur to itself. Each failure shows two: the error, then the statement.
class Sessiz : public session::Boxes {
 public:
  explicit Sessiz(Oturum& oturum) : oturum_(oturum), before_(oturum.kutular) { oturum.kutular = this; }
  ~Sessiz() override { oturum_.kutular = before_; }
  Sessiz(const Sessiz&) = delete;
  Sessiz& operator=(const Sessiz&) = delete;

  void message(const std::string& text, session::Icon, std::string_view) override { shown_.push_back(text); }
  bool ask(const std::string& text, session::Icon, std::string_view) override {
    shown_.push_back(text);
    return false;
  }

  // The first failure other than that of `expected`; empty without one.
  std::string unexpected(std::string_view expected) const {
    for (std::size_t i = 0; i < shown_.size(); i += 2) {
      if (i + 1 >= shown_.size() || shown_[i + 1] != expected) {
        return shown_[i];
      }
    }
    return "";
  }

 private:
  Oturum& oturum_;
  session::Boxes* before_;
  std::vector<std::string> shown_;
};

// What goes into the supervisor's row.
struct YoneticiSatiri {
  std::string ad, sifreli;
};

YoneticiSatiri yoneticiSatiri(const KurulumBilgisi& bilgi) {
  return {session::Buyuk_Harf(session::Trim(bilgi.yonetici)),
          session::Sifrele(session::Trim(bilgi.sifre)).value_or("")};
}

bool katalogVar(Oturum& oturum) {
  const auto rows = oturum.Baglanti->query("SELECT name FROM  sysdatabases where name='" +
                                           std::string(catalogDatabase) + "'");
  return rows && rows->count() > 0;
}

// Folder of the server's own databases, without the separator at its end.
std::string sunucuKlasoru(Oturum& oturum) {
  const auto rows = oturum.Baglanti->query("SELECT filename FROM sysdatabases WHERE name='master'");
  if (!rows || rows->count() == 0) {
    return "";
  }
  const std::string file = rows->value(0, 0).trimmed();
  const std::size_t separator = file.find_last_of("\\/");
  return separator == std::string::npos ? "" : file.substr(0, separator);
}

// Columns and tables that the first text does not have; a column at a time, for not every server knows a list.
void eklemeleriYap(Oturum& oturum) {
  for (const TableDef& table : catalogTables()) {
    if (table.stage == Stage::Upgrade) {
      oturum.Baglanti->execute(createStatement(table, Stage::Upgrade));
      continue;
    }
    for (const ColumnDef& column : table.columns) {
      if (column.stage == Stage::Upgrade)
        oturum.Baglanti->execute("ALTER TABLE " + table.name + " ADD " +
                                 columnText(table, column, Stage::Upgrade));
    }
  }
}

void satirlariYaz(Oturum& oturum, const YoneticiSatiri& yonetici, const std::string& klasor) {
  db::Connection& baglanti = *oturum.Baglanti;
  baglanti.execute("INSERT INTO VRSYN(DEFDBVRSYN) VALUES ('" + std::string(session::programSurumu) + "')");
  baglanti.execute("UPDATE sysDTYL SET sysdtyl='" + db::escape(klasor) + "'");
  // The refused row of Katalog_Olustur may have used up number 1, which alone makes a supervisor.
  const std::string ad = db::escape(yonetici.ad);
  baglanti.execute(
      "SET IDENTITY_INSERT sysuslng ON "
      "INSERT INTO sysuslng(sysus_ID,sysus_nm,sysus_lgn,sysus,Yonetici,sendusing,smtpserver,smtpserverport,"
      "smtpauthenticate,sendusername,sendpassword) VALUES (1,'" +
      ad + "','" + ad + "','" + db::escape(yonetici.sifreli) +
      "',1,1,' ',' ',1,' ',' ') "
      "SET IDENTITY_INSERT sysuslng OFF");
}

// Fills the empty catalog database that Baglanti stands on. Gives the failure, empty without one.
std::string katalogDoldur(Oturum& oturum, const YoneticiSatiri& yonetici, const std::string& klasor) {
  {
    Sessiz sessiz(oturum);
    Katalog_Olustur(oturum);
    if (std::string hata = sessiz.unexpected(refusedSupervisorRow); !hata.empty()) {
      return hata;
    }
  }
  oturum.Son_Hata.clear();
  eklemeleriYap(oturum);
  satirlariYaz(oturum, yonetici, klasor);
  return "";
}

void geriAl(Oturum& oturum) {
  try {
    oturum.Kayitlar.close();
    session::Katalog_Bagla(oturum, "master");
    oturum.Baglanti->execute("DROP DATABASE " + std::string(catalogDatabase));
  } catch (const db::SqlError&) {
    // The server is gone; the first failure is the one to report.
  }
}

KurulumRaporu basarisiz(const std::string& hata) {
  return {KurulumSonucu::Basarisiz, "Sunucu hazırlanamadı: " + hata};
}

}  // namespace

std::string yoneticiHatasi(const std::string& ad, const std::string& sifre) {
  const auto sayfa = platform::encode1254Exactly(session::Buyuk_Harf(session::Trim(ad)));
  const std::string kirpik = session::Trim(sifre);
  if (!sayfa) {
    return "Yönetici adında Türkçe kod sayfasında (1254) olmayan karakter var.";
  }
  if (sayfa->empty()) {
    return "Yönetici adı boş olamaz.";
  }
  if (sayfa->size() > yoneticiUzunlugu) {
    return "Yönetici adı en çok 15 karakter olabilir.";
  }
  if (kirpik.empty()) {
    return "Yönetici şifresi boş olamaz.";
  }
  if (platform::toUtf32(kirpik).size() > yoneticiUzunlugu) {
    return "Yönetici şifresi en çok 15 karakter olabilir.";
  }
  if (!session::Sifrele(kirpik)) {
    return "Yönetici şifresinde Türkçe harf ya da bu şifrelemeye sığmayan karakter olamaz.";
  }
  return "";
}

KurulumRaporu Sunucu_Hazirla(Oturum& oturum, const KurulumBilgisi& bilgi) {
  if (const std::string hata = yoneticiHatasi(bilgi.yonetici, bilgi.sifre); !hata.empty()) {
    return {KurulumSonucu::Reddedildi, hata};
  }
  const YoneticiSatiri yonetici = yoneticiSatiri(bilgi);
  bool yaratildi = false;
  std::string hata;
  try {
    session::Katalog_Bagla(oturum, "master");
    if (katalogVar(oturum)) {
      return {KurulumSonucu::ZatenVar, "Bu sunucu daha önce hazırlanmış. Hiçbir şey değiştirilmedi."};
    }
    const std::string klasor = bilgi.veriKlasoru.empty() ? sunucuKlasoru(oturum) : bilgi.veriKlasoru;
    if (klasor.empty()) {
      return {KurulumSonucu::Reddedildi, "Veri klasörü bulunamadı. Lütfen klasörü belirtiniz."};
    }
    oturum.Baglanti->execute(createDatabaseStatement(std::string(catalogDatabase), klasor));
    yaratildi = true;
    session::Katalog_Bagla(oturum, std::string(catalogDatabase));
    hata = katalogDoldur(oturum, yonetici, klasor);
  } catch (const db::SqlError& error) {
    hata = error.what();
  }
  if (hata.empty()) {
    return {KurulumSonucu::Hazirlandi, "Sunucu hazırlandı."};
  }
  if (yaratildi) {
    geriAl(oturum);
  }
  return basarisiz(hata);
}

}  // namespace catalog
