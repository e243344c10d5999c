#include "session/firma_bul.h"

#include "db/table_name.h"
#include "session/metin.h"

namespace session {

namespace {

// Texts of the catalog compare by the collation of their columns, which is not always that of names.
constexpr std::string_view ayniVeritabani = "AYNI", veritabaniYok = "YOK";

}  // namespace

std::optional<FirmaSatiri> Firma_Bul(Oturum& oturum, const std::string& ad) {
  return Firma_Bul(*oturum.Baglanti, ad);
}

std::int64_t Firma_Kimligi(Oturum& oturum, db::Recordset& kayitlar, const std::string& ad) {
  const std::int64_t ilk = kayitlar.field("sysfrm_ID").integer();
  if (kayitlar.recordCount() <= 1) return ilk;
  const auto firma = Firma_Bul(oturum, ad);
  return firma ? firma->id : ilk;
}

std::optional<FirmaSatiri> Firma_Bul(db::Connection& baglanti, const std::string& ad) {
  const std::string aranan = Trim(ad);
  const auto rows = baglanti.query(
      "SELECT sysfrm_ID,sysfrm_dbnm,CASE WHEN DB_ID(RTRIM(sysfrm_dbnm))=DB_ID('" + db::escape(aranan) +
      "') THEN 'AYNI' WHEN DB_ID(RTRIM(sysfrm_dbnm)) IS NULL THEN 'YOK' ELSE '' END FROM " +
      std::string(katalogVeritabani) + ".dbo.sysfrmlng");
  std::optional<FirmaSatiri> ayni, kalinti;
  for (std::int64_t r = 0; rows && r < rows->count(); ++r) {
    const FirmaSatiri satir{rows->value(r, 0).integer(), rows->value(r, 1).trimmed()};
    const std::string durum = rows->value(r, 2).trimmed();
    if (satir.ad == aranan) return satir;
    if (durum == ayniVeritabani) ayni = satir;
    if (durum == veritabaniYok && db::sameName(satir.ad, aranan)) kalinti = satir;
  }
  return ayni ? ayni : kalinti;
}

std::string Veritabani_Asil_Adi(Oturum& oturum, const std::string& ad) {
  const auto rows = oturum.Baglanti->query("SELECT name FROM master.dbo.sysdatabases WHERE dbid=DB_ID('" +
                                           db::escape(Trim(ad)) + "')");
  return rows && rows->count() > 0 ? rows->value(0, 0).trimmed() : std::string();
}

std::optional<std::string> Veritabaninin_Sahibi(Oturum& oturum, std::int64_t id, const std::string& ad) {
  const std::string aranan = Trim(ad);
  const auto rows = oturum.Baglanti->query(
      "SELECT d.name,f.sysfrm_dbnm FROM " + std::string(katalogVeritabani) +
      ".dbo.sysfrmlng f,master.dbo.sysdatabases d WHERE "
      "d.dbid=DB_ID('" +
      db::escape(aranan) + "') AND DB_ID(RTRIM(f.sysfrm_dbnm))=d.dbid AND f.sysfrm_ID<>" +
      std::to_string(id));
  std::optional<std::string> sahibi;
  for (std::int64_t r = 0; rows && r < rows->count(); ++r) {
    const std::string asil = rows->value(r, 0).trimmed(), oteki = rows->value(r, 1).trimmed();
    if (oteki == asil) return oteki;
    if (aranan != asil) sahibi = oteki;
  }
  return sahibi;
}

}  // namespace session
