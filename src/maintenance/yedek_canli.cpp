// A backup while everybody goes on working: the embedded server copies the company as it is at one moment.
#include "maintenance/bakim.h"
#include "maintenance/servis_kontrol.h"
#include "maintenance/yedek_kaydi.h"
#include "maintenance/yedek_ortak.h"
#include "platform/file_copy.h"

namespace maintenance {

namespace {

namespace fs = std::filesystem;
using session::Icon;
using session::Oturum;

constexpr std::int64_t canliAdimi = 5;

std::string canliAl(Oturum& oturum, Bakim& bakim, const VeriDosyalari& dosyalar, const fs::path& dizin,
                    const std::string& firma, Cubuk& cubuk, YedekSonucu& sonuc,
                    std::vector<db::TableDigest>& tablolar) {
  const fs::path yarim = yarimKlasor(dizin, firma, oturum.saat->now());
  if (std::string hata = bakim.gecici(yarim); !hata.empty()) return hata;
  if (std::string hata = klasorYap(yarim); !hata.empty()) return hata;
  cubuk.yaz("Canlı Yedek Alınıyor");
  cubuk.adim();
  const auto sunucu = oturum.surucu->local(oturum.Server_Adi);
  PaylasilanIs is(oturum);
  try {
    tablolar = sunucu->copyLive(firma, yarim / dosyalar.dataAdi, yarim / dosyalar.logAdi, is.adimi());
  } catch (const db::SqlError& hata) {
    return is.birakildi() ? std::string(vazgecildi) : hata.what();
  }
  cubuk.yaz("Alınan Yedek Okunuyor");
  cubuk.adim();
  const std::pair<fs::path, std::string*> ozetler[] = {{yarim / dosyalar.dataAdi, &sonuc.dataOzeti},
                                                       {yarim / dosyalar.logAdi, &sonuc.logOzeti}};
  const std::uintmax_t toplam = boyut(ozetler[0].first) + boyut(ozetler[1].first);
  std::uintmax_t onceki = 0;
  for (const auto& [dosya, ozet] : ozetler) {
    if (const auto hata = ozetle(oturum, dosya, onceki, toplam, *ozet))
      return hata == std::errc::operation_canceled ? std::string(vazgecildi)
                                                   : dosya.string() + " okunamadı: " + hata.message();
    onceki += boyut(dosya);
  }
  cubuk.adim();
  return adlandir(oturum, yarim, firma, sonuc.klasor);
}

}  // namespace

YedekSonucu Canli_Yedekle(Oturum& oturum, const std::string& firma, const fs::path& dizin) {
  YedekSonucu sonuc;
  const auto reddet = [&](const std::string& metin) {
    red(oturum, sonuc.hata = metin);
    return sonuc;
  };
  Cubuk cubuk(oturum, canliAdimi);
  cubuk.yaz("Yedekleme İçin Gerekli Bilgiler Toplanıyor");
  if (sunucuYeri(oturum) != SunucuYeri::Yerel) return reddet("Canlı yedek yalnız yerel sunucuda alınır.");
  std::string hata;
  const auto bakim = Bakim::basla(oturum, firma + " canlı yedeği", hata);
  if (!bakim) return reddet(hata);
  std::vector<db::TableDigest> tablolar;
  try {
    VeriDosyalari dosyalar;
    if (!veriDosyalari(oturum, firma, dosyalar))
      return reddet("Bu Firmanın Kaydı Bulanamadı. Lütfen Önce Firmayı Oluşturun.");
    std::error_code yok;
    if (!fs::is_directory(dizin, yok)) hata = "Klasör bulunamadı: " + dizin.string();
    if (hata.empty()) hata = yerVarMi(dizin, boyut(dosyalar.data) + boyut(dosyalar.log));
    cubuk.adim();
    if (hata.empty()) hata = canliAl(oturum, *bakim, dosyalar, dizin, firma, cubuk, sonuc, tablolar);
  } catch (const db::SqlError& neden) {
    hata = neden.what();
  }
  if (!hata.empty()) return reddet(hata);
  bakim->bitir();
  sonuc.tamam = true;
  kanitla(oturum, firma, sonuc, std::move(tablolar));
  Yedegi_Kaydet(oturum, firma, sonuc.klasor.string());
  cubuk.yaz("İşlem Tamamlandı.");
  cubuk.adim();
  oturum.kutular->message("Yedekleme İşlemi Başarı İle Tamamlanmıştır", Icon::Information);
  return sonuc;
}

}  // namespace maintenance
