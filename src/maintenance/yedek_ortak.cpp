#include "maintenance/yedek_ortak.h"

#include <random>

#include "maintenance/yedek_kanit.h"
#include "platform/file_copy.h"
#include "platform/folders.h"
#include "session/statements.h"

namespace maintenance {

namespace {

namespace fs = std::filesystem;
using session::Icon;
using session::Oturum;

constexpr std::uintmax_t emniyet = std::uintmax_t{16} << 20;  // room that stays free on the disk

}  // namespace

std::error_code ozetle(Oturum& oturum, const fs::path& dosya, std::uintmax_t onceki, std::uintmax_t toplam,
                       std::string& ozet, const platform::TakeBytes& al) {
  return platform::digestFile(
      dosya,
      [&](std::uintmax_t okunan) {
        oturum.ilerleme->whole(static_cast<std::int64_t>(onceki + okunan),
                               static_cast<std::int64_t>(std::max<std::uintmax_t>(toplam, 1)));
        oturum.ilerleme->pump();
        return !oturum.ilerleme->cancelled();
      },
      ozet, al);
}

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
  const fs::path data = gercekDosya(platform::hostPath(yol));
  dosyalar.data = asilDosya(data);
  dosyalar.log = asilDosya(gercekDosya(data.parent_path() / logAdi(data.filename().string())));
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

namespace {

fs::path bosKlasor(const fs::path& dizin, const std::string& firma, const db::DateTime& gun) {
  std::string ad = yedekKlasorAdi(firma, gun);
  int sayac = 0;
  std::error_code hata;
  while (fs::exists(fs::symlink_status(dizin / ad, hata))) ad = sonrakiKlasorAdi(ad, sayac);
  return dizin / ad;
}

}  // namespace

// Two machines may back up into one folder at once, and neither may take the other's away when it ends.
fs::path yarimKlasor(const fs::path& dizin, const std::string& firma, const db::DateTime& gun) {
  constexpr std::string_view harfler = "abcdefghijkmnpqrstuvwxyz23456789";
  std::random_device rastgele;
  std::string ek = ".";
  for (int i = 0; i < 8; ++i) ek += harfler[rastgele() % harfler.size()];
  fs::path klasor = bosKlasor(dizin, firma, gun);
  klasor += ek + ".yarim";
  return klasor;
}

std::string adlandir(const Oturum& oturum, const fs::path& yarim, const std::string& firma,
                     fs::path& klasor) {
  const db::DateTime gun = oturum.saat->now();
  std::error_code hata, yok;
  do {
    klasor = bosKlasor(yarim.parent_path(), firma, gun);
    klasorunKanitlariniSil(oturum, klasor);
    hata = platform::renameDurably(yarim, klasor);
  } while (hata && fs::exists(fs::symlink_status(klasor, yok)) && fs::exists(yarim, yok));
  return hata ? "Klasör adlandırılamadı (" + klasor.string() + "): " + hata.message() : std::string();
}

fs::path asilDosya(const fs::path& yol) {
  std::error_code hata;
  const fs::path asil = fs::is_symlink(yol, hata) ? fs::canonical(yol, hata) : yol;
  return hata ? yol : asil;
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
  kanit.kesinti = sonuc.kesinti;
  if (const std::string hata = kanitYaz(oturum, kanit); !hata.empty())
    oturum.kutular->message("Yedek alındı. " + hata, Icon::Warning);
}

}  // namespace maintenance
