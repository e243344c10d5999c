// The folders that backups lie in, and the server's own backup on another machine.
#include <algorithm>
#include <charconv>
#include <tuple>

#include "maintenance/yedek.h"
#include "maintenance/yedek_kaydi.h"
#include "platform/file_copy.h"
#include "session/metin.h"
#include "session/statements.h"

namespace maintenance {

namespace fs = std::filesystem;
using session::Icon;
using session::Oturum;

namespace {

bool yolHatasi(const fs::path& yol, const std::error_code& neden, std::string& hata) {
  if (!neden) return false;
  hata = yol.string() + ": " + neden.message();
  return true;
}

bool adUygun(const std::string& ad, std::string& hata) {
  if (ad.find_first_of(std::string_view("/\\\t\n\0", 5)) == std::string::npos && ad != "." && ad != "..")
    return true;
  hata = "Klasör adı uygun değil: " + ad;
  return false;
}

bool sunucuda(Oturum& oturum, std::initializer_list<std::string> deyimler) {
  try {
    session::Katalog_Bagla(oturum, "master");
    for (const std::string& deyim : deyimler) oturum.Baglanti->execute(deyim);
    return true;
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), Icon::Stop);
    return false;
  }
}

// DDDD_MM_GG and an optional _N behind the company's name.
bool klasorAdi(const std::string& ad, const std::string& firma, YedekKaydi& kayit) {
  if (!ad.starts_with(firma + "_")) return false;
  std::string_view kalan = std::string_view(ad).substr(firma.size());
  int* const sayilar[] = {&kayit.gun.year, &kayit.gun.month, &kayit.gun.day};
  for (int* sayi : sayilar) {
    if (kalan.empty() || kalan[0] != '_') return false;
    const auto [son, hata] = std::from_chars(kalan.data() + 1, kalan.data() + kalan.size(), *sayi);
    if (hata != std::errc()) return false;
    kalan.remove_prefix(static_cast<std::size_t>(son - kalan.data()));
  }
  while (!kalan.empty() && kalan[0] == '_') kalan.remove_prefix(1);
  return std::from_chars(kalan.data(), kalan.data() + kalan.size(), kayit.sira).ptr ==
         kalan.data() + kalan.size();
}

}  // namespace

bool Sunucuda_Yedekle(Oturum& oturum, const std::string& firma, const std::string& yol) {
  const std::string dosya = " DISK='" + db::escape(yol) + "'";
  if (!sunucuda(oturum, {"BACKUP DATABASE " + firma + " TO" + dosya + " WITH CHECKSUM",
                         "RESTORE VERIFYONLY FROM" + dosya + " WITH CHECKSUM"}))
    return false;
  Yedegi_Kaydet(oturum, firma, yol);
  oturum.kutular->message("Yedekleme İşlemi Başarı İle Tamamlanmıştır", Icon::Information);
  return true;
}

bool Sunucuda_Geri_Al(Oturum& oturum, const std::string& firma, const std::string& yol) {
  const std::string dosya = " DISK='" + db::escape(yol) + "'";
  if (!sunucuda(oturum, {"RESTORE VERIFYONLY FROM" + dosya + " WITH CHECKSUM",
                         "RESTORE DATABASE " + firma + " FROM" + dosya + " WITH REPLACE,CHECKSUM"}))
    return false;
  oturum.kutular->message("Geri Alma İşlemi Başarı İle Tamamlanmıştır", Icon::Information);
  return true;
}

// "Yeni", then "Yeni1"; a name that is no longer the plain one always starts from "Yeni" again.
std::string yeniKlasorAdi(const fs::path& dizin) {
  std::string ad = "Yeni";
  std::error_code hata;
  for (int sayac = 1; fs::exists(dizin / ad, hata); ++sayac) ad = "Yeni" + std::to_string(sayac);
  return ad;
}

fs::path klasorOlustur(const fs::path& dizin, const std::string& ad, std::string& hata) {
  std::error_code neden;
  if (!adUygun(ad, hata)) return {};
  const fs::path klasor = dizin / ad;
  if (!fs::create_directory(klasor, neden) && !neden) neden = std::make_error_code(std::errc::file_exists);
  return yolHatasi(klasor, neden, hata) ? fs::path() : dizin;
}

fs::path klasorAdlandir(const fs::path& klasor, const std::string& ad, std::string& hata) {
  std::error_code neden;
  if (!adUygun(ad, hata)) return {};
  const fs::path yeni = klasor.parent_path() / ad;
  if (fs::exists(fs::symlink_status(yeni, neden)) && yeni != klasor) {
    hata = "Bu adda bir klasör var: " + yeni.string();
    return {};
  }
  fs::rename(klasor, yeni, neden);
  return yolHatasi(klasor, neden, hata) ? fs::path() : yeni;
}

fs::path klasorSil(Oturum& oturum, const fs::path& klasor, std::string& hata) {
  if (!klasor.has_relative_path()) return {};
  if (!oturum.kutular->ask(std::string(klasorSilSorusu), Icon::Stop)) return {};
  std::error_code neden;
  for (fs::directory_iterator it(klasor, neden), son; !neden && it != son; it.increment(neden)) {
    if (it->is_symlink() || !it->is_directory()) continue;
    for (fs::directory_iterator alt(it->path(), neden); !neden && alt != son; alt.increment(neden)) {
      if (alt->is_symlink() || !alt->is_directory()) continue;
      hata = "Klasörün içinde iki düzeyden derin klasörler var; önce onları siliniz: " + alt->path().string();
      return {};
    }
  }
  if (!neden) fs::remove_all(klasor, neden);
  return yolHatasi(klasor, neden, hata) ? fs::path() : klasor.parent_path();
}

std::vector<YedekKaydi> yedekleriListele(const fs::path& dizin) {
  std::vector<YedekKaydi> kayitlar;
  std::error_code hata;
  for (fs::directory_iterator it(dizin, hata), son; !hata && it != son; it.increment(hata)) {
    if (!it->is_directory() || it->path().extension() == ".yarim" || it->path().extension() == ".silinen")
      continue;
    YedekKaydi kayit;
    std::string data, log;
    kayit.klasor = it->path();
    kayit.firma = yedekFirmasi(klasorDosyalari(kayit.klasor), data, log);
    if (kayit.firma.empty()) continue;
    kayit.adli = klasorAdi(kayit.klasor.filename().string(), kayit.firma, kayit);
    std::error_code boy;
    for (const std::string& ad : {data, log}) kayit.boyut += fs::file_size(kayit.klasor / ad, boy);
    kayitlar.push_back(std::move(kayit));
  }
  std::sort(kayitlar.begin(), kayitlar.end(), [](const YedekKaydi& a, const YedekKaydi& b) {
    return std::tie(a.firma, a.gun, a.sira, a.klasor) < std::tie(b.firma, b.gun, b.sira, b.klasor);
  });
  return kayitlar;
}

}  // namespace maintenance
