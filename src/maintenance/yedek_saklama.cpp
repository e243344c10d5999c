#include "maintenance/yedek_saklama.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <tuple>

#include "maintenance/yedek_kanit.h"
#include "session/metin.h"

namespace maintenance {

namespace {

namespace fs = std::filesystem;
using Gun = std::chrono::sys_days;

Gun gunu(const db::DateTime& an) {
  return std::chrono::year(an.year) / std::chrono::month(static_cast<unsigned>(an.month)) /
         std::chrono::day(static_cast<unsigned>(an.day));
}

auto sirasi(const YedekKaydi& kayit) {
  return std::tuple(kayit.gun.year, kayit.gun.month, kayit.gun.day, kayit.sira);
}

std::ptrdiff_t icindekiler(const fs::path& klasor) {
  std::error_code hata;
  return std::distance(fs::directory_iterator(klasor, hata), fs::directory_iterator());
}

}  // namespace

std::vector<YedekKaydi> seyreltilecekler(const std::vector<YedekKaydi>& yedekler, const db::DateTime& bugun,
                                         int gun, const fs::path& kanitli) {
  std::vector<YedekKaydi> sirali = yedekler, gidecek;
  std::ranges::sort(sirali, [](const auto& a, const auto& b) { return sirasi(a) > sirasi(b); });
  const Gun simdi = gunu(bugun);
  const Gun haftaliktan = simdi - std::chrono::days(gun);
  const Gun ayliktan = haftaliktan - std::chrono::days(7 * saklananHafta);
  std::set<long> haftalar, aylar;
  for (std::size_t i = 0; i < sirali.size(); ++i) {
    const Gun g = gunu(sirali[i].gun);
    const std::chrono::year_month_day tarih(g);
    bool kalir = i == 0 || sirali[i].klasor == kanitli || g > haftaliktan;
    if (!kalir && g > ayliktan) {
      // Weeks end on Sundays.
      constexpr int pazartesi = 3;  // 1 January 1970 was a Thursday
      kalir = haftalar.insert((g.time_since_epoch().count() + pazartesi) / 7).second;
    } else if (!kalir) {
      const long ay = int(tarih.year()) * 12L + static_cast<long>(unsigned(tarih.month()));
      const std::chrono::year_month_day sinir(ayliktan);
      const long son = int(sinir.year()) * 12L + static_cast<long>(unsigned(sinir.month()));
      kalir = ay > son - saklananAy && aylar.insert(ay).second;
    }
    if (!kalir) gidecek.push_back(sirali[i]);
  }
  std::ranges::reverse(gidecek);
  return gidecek;
}

std::string Yedekleri_Seyrelt(session::Oturum& oturum, const fs::path& dizin, const std::string& firma,
                              int gun) {
  std::vector<YedekKaydi> bunun;
  // A folder of another name, or with more in it than a backup, is somebody's own.
  for (YedekKaydi& kayit : yedekleriListele(dizin))
    if (session::Buyuk_Harf(kayit.firma) == session::Buyuk_Harf(firma) && kayit.adli &&
        icindekiler(kayit.klasor) == 2)
      bunun.push_back(std::move(kayit));
  fs::path kanitli;
  for (const YedekKaniti& kanit : kanitlar(oturum, firma)) {
    if (!kanit.denetim || !kanit.saglam) continue;
    std::error_code yok;
    if (fs::is_directory(kanit.klasor, yok)) kanitli = kanit.klasor;  // the newest of them comes last
  }
  std::string hatalar;
  for (const YedekKaydi& kayit : seyreltilecekler(bunun, oturum.saat->now(), gun, kanitli)) {
    // Under another name first: a deletion that breaks off leaves nothing that looks like a backup.
    fs::path giden = kayit.klasor;
    giden += ".silinen";
    std::error_code hata;
    fs::rename(kayit.klasor, giden, hata);
    if (!hata) fs::remove_all(giden, hata);
    if (hata) hatalar += (hatalar.empty() ? "" : "; ") + kayit.klasor.string() + ": " + hata.message();
  }
  return hatalar;
}

}  // namespace maintenance
