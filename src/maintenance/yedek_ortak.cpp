#include "maintenance/yedek_ortak.h"

#include "maintenance/yedek_kanit.h"
#include "platform/folders.h"
#include "session/statements.h"

namespace maintenance {

namespace {

namespace fs = std::filesystem;
using session::Icon;
using session::Oturum;

constexpr std::uintmax_t emniyet = std::uintmax_t{16} << 20;  // room that stays free on the disk

}  // namespace

bool red(Oturum& oturum, const std::string& metin) {
  oturum.ilerleme->text("");
  oturum.kutular->message(metin, Icon::Stop);
  return false;
}

bool veriDosyalari(Oturum& oturum, const std::string& firma, VeriDosyalari& dosyalar) {
  session::Katalog_Bagla(oturum, "master");
  oturum.Kayitlar.open(*oturum.Baglanti,
                       "SELECT filename FROM sysdatabases WHERE name='" + db::escape(firma) + "'");
  if (oturum.Kayitlar.eof()) return false;
  const std::string yol = oturum.Kayitlar.field("filename").trimmed();
  oturum.Kayitlar.close();
  oturum.Baglanti->close();
  const auto bolum = yol.find_last_of("\\/");
  dosyalar.dataAdi = yol.substr(bolum == std::string::npos ? 0 : bolum + 1);
  dosyalar.logAdi = logAdi(dosyalar.dataAdi);
  dosyalar.data = gercekDosya(platform::hostPath(yol));
  dosyalar.log = gercekDosya(dosyalar.data.parent_path() / logAdi(dosyalar.data.filename().string()));
  return true;
}

std::uintmax_t boyut(const fs::path& dosya) {
  std::error_code hata;
  const auto sonuc = fs::file_size(dosya, hata);
  return hata ? 0 : sonuc;
}

std::string yerVarMi(const fs::path& klasor, std::uintmax_t gereken) {
  std::error_code hata;
  const fs::space_info yer = fs::space(klasor, hata);
  if (hata || yer.available >= gereken + emniyet) return {};
  return "Diskte yeterli yer yok: " + klasor.string() + "\nGereken " + std::to_string((gereken >> 20) + 17) +
         " MB, boş " + std::to_string(yer.available >> 20) + " MB.";
}

std::string klasorYap(const fs::path& klasor) {
  std::error_code hata;
  if (!fs::create_directory(klasor, hata))
    return "Klasör oluşturulamadı (" + klasor.string() + "): " + hata.message();
  fs::permissions(klasor, fs::perms::owner_all, hata);
  return {};
}

fs::path bosKlasor(const fs::path& dizin, const std::string& firma, const db::DateTime& gun) {
  std::string ad = yedekKlasorAdi(firma, gun);
  int sayac = 0;
  std::error_code hata;
  while (fs::exists(fs::symlink_status(dizin / ad, hata))) ad = sonrakiKlasorAdi(ad, sayac);
  return dizin / ad;
}

void kanitla(Oturum& oturum, const std::string& firma, const YedekSonucu& sonuc,
             std::vector<db::TableDigest> tablolar) {
  std::string data, log;
  yedekFirmasi(klasorDosyalari(sonuc.klasor), data, log);
  YedekKaniti kanit;
  kanit.firma = firma;
  kanit.klasor = sonuc.klasor;
  kanit.zaman = oturum.saat->now();
  kanit.data = {sonuc.dataOzeti, boyut(sonuc.klasor / data)};
  kanit.log = {sonuc.logOzeti, boyut(sonuc.klasor / log)};
  kanit.tablolar = std::move(tablolar);
  if (const std::string hata = kanitYaz(oturum, kanit); !hata.empty())
    oturum.kutular->message("Yedek alındı. " + hata, Icon::Warning);
}

}  // namespace maintenance
