#include "session/firma_bilgisi.h"

#include <array>
#include <filesystem>

#include "platform/folders.h"
#include "session/sayi.h"

namespace session {

namespace {

constexpr double sayfa = 8192;  // bytes of a page of the server's files

std::unique_ptr<db::Connection> baglan(const OturumDegerleri& oturum) {
  auto baglanti = oturum.surucu->make(oturum.Server_Adi);
  baglanti->open(
      {oturum.Server_Adi, oturum.SQL_Login, oturum.SQL_Sifre, std::string(katalogVeritabani), false});
  return baglanti;
}

std::optional<db::Value> tekDeger(db::Connection& baglanti, const std::string& sql) {
  try {
    const auto satirlar = baglanti.query(sql);
    if (!satirlar || satirlar->count() == 0 || satirlar->value(0, 0).isNull()) return std::nullopt;
    return satirlar->value(0, 0);
  } catch (const db::SqlError&) {
    return std::nullopt;
  }
}

// The files themselves, where the server is this machine: no other connection stands in the way of a deletion
// then. Its files are told by the server otherwise.
std::optional<double> dosyaBoyutu(db::Connection& baglanti, const std::string& ad) {
  const auto yol =
      tekDeger(baglanti, "SELECT filename FROM master.dbo.sysdatabases WHERE name='" + db::escape(ad) + "'");
  std::error_code hata;
  if (yol) {
    const std::filesystem::path veri = platform::hostPath(yol->trimmed());
    const auto boy = std::filesystem::file_size(veri, hata);
    if (!hata) {
      const std::filesystem::path gunluk = veri.parent_path() / (veri.stem().string() + "_log.ldf");
      const auto ek = std::filesystem::file_size(gunluk, hata);
      return static_cast<double>(boy) + (hata ? 0. : static_cast<double>(ek));
    }
  }
  const auto sayfalar = tekDeger(baglanti, "SELECT SUM(CONVERT(FLOAT,size)) FROM " + ad + ".dbo.sysfiles");
  return sayfalar ? std::optional(sayfalar->real() * sayfa) : std::nullopt;
}

// A database that was made after the backup only has the name of the one that was backed up.
bool oncekininYedegi(db::Connection& baglanti, const std::string& ad, const db::DateTime& yedek) {
  const auto dogum =
      tekDeger(baglanti, "SELECT crdate FROM master.dbo.sysdatabases WHERE name='" + db::escape(ad) + "'");
  const auto* gun = dogum ? dogum->as<db::DateTime>() : nullptr;
  return gun && *gun > yedek;
}

std::optional<std::int64_t> sayi(const std::optional<db::Value>& deger) {
  return deger ? std::optional(deger->integer()) : std::nullopt;
}

}  // namespace

FirmaBilgisi Firma_Bilgisi_Oku(const OturumDegerleri& oturum, const Dugum& firma) {
  FirmaBilgisi bilgi;
  if (oturum.yedekler) bilgi.sonYedek = oturum.yedekler->sonYedek(oturum.Server_Adi, firma.text);
  try {
    const auto baglanti = baglan(oturum);
    bilgi.kullanici = sayi(
        tekDeger(*baglanti, "SELECT COUNT(*) FROM sysusfrmlng WHERE sysfrm_ID=" + std::to_string(firma.id)));
    bilgi.veritabaniVar = tekDeger(*baglanti, "SELECT DB_ID('" + db::escape(firma.text) + "')").has_value();
    if (!bilgi.veritabaniVar) return bilgi;
    bilgi.boyut = dosyaBoyutu(*baglanti, firma.text);
    if (bilgi.sonYedek && oncekininYedegi(*baglanti, firma.text, *bilgi.sonYedek)) bilgi.sonYedek.reset();
  } catch (const db::SqlError&) {
    // the server does not answer: nothing is known
  }
  return bilgi;
}

std::string boyutYazisi(double bayt) {
  constexpr std::array birimler = {"bayt", "KB", "MB", "GB", "TB"};
  std::size_t birim = 0;
  for (; bayt >= 1024 && birim + 1 < birimler.size(); ++birim) bayt /= 1024;
  return sayiyiYaz(bayt, birim < 2 ? "#,##0" : "#,##0.0") + " " + birimler[birim];
}

}  // namespace session
