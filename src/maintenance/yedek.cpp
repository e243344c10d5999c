// Backup and restore of one company by its two files.
#include "maintenance/yedek.h"

#include <algorithm>
#include <functional>

#include "maintenance/bakim.h"
#include "maintenance/servis_kontrol.h"
#include "maintenance/yedek_kanit.h"
#include "maintenance/yedek_kaydi.h"
#include "maintenance/yedek_ortak.h"
#include "platform/folders.h"
#include "session/metin.h"
#include "session/statements.h"
#include "session/tarih.h"

namespace maintenance {

namespace {

namespace fs = std::filesystem;
using session::Icon;
using session::Oturum;

constexpr std::int64_t yedekAdimi = 48, geriAdimi = 50;
std::string okunurMu(const VeriDosyalari& dosyalar) {
  for (const fs::path& dosya : {dosyalar.data, dosyalar.log}) {
    std::error_code hata;
    if (!fs::is_regular_file(dosya, hata)) return "Veritabanı dosyası bulunamadı: " + dosya.string();
  }
  return {};
}

// One file of the two, with its share of the bytes shown.
struct Kopya {
  fs::path kaynak, hedef;
  std::string* ozet = nullptr;
};

std::string kopyala(Oturum& oturum, const Kopya& kopya, const std::string& metin, std::uintmax_t onceki,
                    std::uintmax_t toplam) {
  const auto hata = platform::copyFile(
      kopya.kaynak, kopya.hedef,
      [&](std::uintmax_t yapilan) {
        oturum.ilerleme->whole(static_cast<std::int64_t>(onceki + yapilan),
                               static_cast<std::int64_t>(std::max<std::uintmax_t>(toplam, 1)));
        oturum.ilerleme->pump();
        return !oturum.ilerleme->cancelled();
      },
      kopya.ozet);
  if (hata == std::errc::operation_canceled) return std::string(vazgecildi);
  return hata ? metin + " yazılamadı (" + kopya.hedef.string() + "): " + hata.message() : std::string();
}

// Steps 6 to 10: everything between the stop and the start.
std::string yedekAl(Oturum& oturum, Bakim& bakim, const VeriDosyalari& dosyalar, const fs::path& dizin,
                    const std::string& firma, Cubuk& cubuk, YedekSonucu& sonuc) {
  cubuk.yaz("Dosyalar Yedekleniyor !!");
  cubuk.adim();
  cubuk.adim();
  ServisMolasi mola(oturum);
  if (std::string hata = mola.durdur(); !hata.empty()) return hata;
  cubuk.adim();
  const fs::path yarim = yarimKlasor(dizin, firma, oturum.saat->now());
  if (std::string hata = bakim.gecici(yarim); !hata.empty()) return hata;
  if (std::string hata = klasorYap(yarim); !hata.empty()) return hata;
  const std::uintmax_t data = boyut(dosyalar.data), toplam = data + boyut(dosyalar.log);
  if (std::string hata = yerVarMi(dizin, toplam); !hata.empty()) return hata;
  cubuk.yaz("Data Dosyası Yedekleniyor");
  cubuk.adim();
  if (std::string hata = kopyala(oturum, {dosyalar.data, yarim / dosyalar.dataAdi, &sonuc.dataOzeti},
                                 "Data dosyası", 0, toplam);
      !hata.empty())
    return hata;
  cubuk.yaz("LOG Dosyası Yedekleniyor");
  cubuk.adim();
  if (std::string hata = kopyala(oturum, {dosyalar.log, yarim / dosyalar.logAdi, &sonuc.logOzeti},
                                 "Log dosyası", data, toplam);
      !hata.empty())
    return hata;
  if (std::string hata = adlandir(oturum, yarim, firma, sonuc.klasor); !hata.empty()) return hata;
  const std::string hata = mola.baslat();
  sonuc.kesinti = mola.saniye();
  cubuk.adim();
  return hata;
}

}  // namespace

std::string yedekKlasorAdi(const std::string& firma, const db::DateTime& gun) {
  const std::string tarih = session::tarihYaz(gun);  // DD/MM/YYYY
  return firma + "_" + tarih.substr(6, 4) + "_" + tarih.substr(3, 2) + "_" + tarih.substr(0, 2);
}

// The cut is made for one digit: from 10 on the name keeps a stray one, and that stays.
std::string sonrakiKlasorAdi(const std::string& ad, int& sayac) {
  const std::string govde = sayac == 0 ? ad : ad.substr(0, ad.size() - 2);
  return govde + "_" + std::to_string(++sayac);
}

std::string logAdi(std::string_view dataAdi) {
  return std::string(dataAdi.substr(0, dataAdi.size() - std::min<std::size_t>(dataAdi.size(), 4))) +
         "_LOG.ldf";
}

fs::path gercekDosya(const fs::path& yol) {
  std::error_code hata;
  if (fs::exists(fs::symlink_status(yol, hata))) return yol;
  const std::string aranan = session::Buyuk_Harf(yol.filename().string());
  for (fs::directory_iterator it(yol.parent_path(), hata), son; !hata && it != son; it.increment(hata))
    if (session::Buyuk_Harf(it->path().filename().string()) == aranan) return it->path();
  return yol;
}

std::optional<double> Beklenen_Kesinti(Oturum& oturum, const std::string& firma) {
  constexpr double bilinmeyenHiz = 100e6;  // bytes a second, as long as nothing has been measured here
  if (sunucuYeri(oturum) == SunucuYeri::Uzak) return std::nullopt;
  VeriDosyalari dosyalar;
  try {
    if (!veriDosyalari(oturum, firma, dosyalar)) return std::nullopt;
  } catch (const db::SqlError&) {
    return std::nullopt;
  }
  double hiz = bilinmeyenHiz;
  for (const YedekKaniti& kanit : kanitlar(oturum))  // the newest comes last
    if (kanit.kesinti > 0) hiz = static_cast<double>(kanit.data.boyut + kanit.log.boyut) / kanit.kesinti;
  constexpr double enAz = 0.1;
  return std::max(enAz, static_cast<double>(boyut(dosyalar.data) + boyut(dosyalar.log)) / hiz);
}

YedekSonucu Yedekle(Oturum& oturum, const std::string& firma, const fs::path& dizin) {
  YedekSonucu sonuc;
  const auto reddet = [&](const std::string& metin) {
    red(oturum, sonuc.hata = metin);
    return sonuc;
  };
  Cubuk cubuk(oturum, yedekAdimi);
  cubuk.yaz("Yedekleme İçin Gerekli Bilgiler Toplanıyor");
  std::string hata;
  const auto bakim = Bakim::basla(oturum, firma + " yedeği", hata);
  if (!bakim) return reddet(hata);
  try {
    if (sunucuYeri(oturum) == SunucuYeri::Uzak)
      return reddet(
          "Sunucu başka bir makinede: dosyalarına buradan ulaşılamaz. Yedek, sunucunun kendi "
          "yedekleme "
          "komutuyla o makinedeki bir klasöre alınır.");
    VeriDosyalari dosyalar;
    cubuk.adim();
    if (!veriDosyalari(oturum, firma, dosyalar))
      return reddet("Bu Firmanın Kaydı Bulanamadı. Lütfen Önce Firmayı Oluşturun.");
    cubuk.adim();
    hata = okunurMu(dosyalar);
    std::error_code yok;
    if (hata.empty() && !fs::is_directory(dizin, yok)) hata = "Klasör bulunamadı: " + dizin.string();
    if (hata.empty()) hata = yerVarMi(dizin, boyut(dosyalar.data) + boyut(dosyalar.log));
    if (hata.empty()) hata = yedekAl(oturum, *bakim, dosyalar, dizin, firma, cubuk, sonuc);
  } catch (const db::SqlError& neden) {
    hata = neden.what();
  }
  if (!hata.empty()) return reddet(hata);
  bakim->bitir();
  sonuc.tamam = true;
  kanitla(oturum, firma, sonuc, {});
  Yedegi_Kaydet(oturum, firma, sonuc.klasor.string());
  cubuk.yaz("İşlem Tamamlandı.");
  cubuk.adim();
  oturum.kutular->message("Yedekleme İşlemi Başarı İle Tamamlanmıştır", Icon::Information);
  return sonuc;
}

std::vector<std::string> klasorDosyalari(const fs::path& klasor) {
  std::vector<std::string> adlar;
  std::error_code hata;
  for (fs::directory_iterator it(klasor, hata), son; !hata && it != son; it.increment(hata))
    if (!it->is_directory(hata)) adlar.push_back(it->path().filename().string());
  std::sort(adlar.begin(), adlar.end(), [](const std::string& a, const std::string& b) {
    const std::string buyukA = session::Buyuk_Harf(a), buyukB = session::Buyuk_Harf(b);
    return buyukA == buyukB ? a < b : buyukA < buyukB;
  });
  return adlar;
}

std::string yedekFirmasi(const std::vector<std::string>& dosyalar, std::string& data, std::string& log) {
  const auto mdf = std::find_if(dosyalar.begin(), dosyalar.end(), [](const std::string& ad) {
    return ad.size() > 4 && session::Buyuk_Harf(ad.substr(ad.size() - 3)) == "MDF";
  });
  if (mdf == dosyalar.end()) return {};
  const std::string aranan = session::Buyuk_Harf(logAdi(*mdf));
  const auto ldf = std::find_if(dosyalar.begin(), dosyalar.end(),
                                [&](const std::string& ad) { return session::Buyuk_Harf(ad) == aranan; });
  if (ldf == dosyalar.end()) return {};
  data = *mdf;
  log = *ldf;
  return mdf->substr(0, mdf->size() - 4);
}

namespace {

fs::path ekli(const fs::path& yol, const char* ek) {
  fs::path sonuc = yol;
  sonuc += ek;
  return sonuc;
}

// What stands in the copy, before anything live is touched. Only the embedded server's files can be read.
std::string kopyayiDenetle(Oturum& oturum, const fs::path& data, const fs::path& log, const std::string& ad) {
  const auto server = oturum.surucu->local(oturum.Server_Adi);
  if (!server) return {};
  oturum.ilerleme->text("Kopya Denetleniyor");
  PaylasilanIs is(oturum);
  try {
    server->check(data, log, ad, is.adimi());
    return {};
  } catch (const db::SqlError& hata) {
    return is.birakildi() ? std::string(vazgecildi) : std::string("Bu yedek kullanılamaz: ") + hata.what();
  }
}

// Steps 9 and 10. On a failure the live files are back in their place and the service runs.
std::string geriAl(Oturum& oturum, Bakim& bakim, const VeriDosyalari& canli, const fs::path& klasor,
                   const std::string& data, const std::string& log, const std::string& ad, Cubuk& cubuk) {
  const fs::path yeniData = ekli(canli.data, ".geri"), yeniLog = ekli(canli.log, ".geri");
  const std::uintmax_t dataBoyu = boyut(klasor / data), toplam = dataBoyu + boyut(klasor / log);
  if (std::string hata = yerVarMi(canli.data.parent_path(), toplam); !hata.empty()) return hata;
  for (const fs::path& yol : {yeniData, yeniLog}) {
    if (std::string hata = bakim.gecici(yol); !hata.empty()) return hata;
    std::error_code yoktu;
    fs::remove(yol, yoktu);
  }
  cubuk.yaz("DATA Dosyası Geri Alınıyor");
  cubuk.adim();
  std::string ozet;
  if (std::string hata = kopyala(oturum, {klasor / data, yeniData, &ozet}, "Data dosyası", 0, toplam);
      !hata.empty())
    return hata;
  if (const std::string baskasi = baskasininYedegi(oturum, ad, ozet); !baskasi.empty())
    return "Bu yedek kullanılamaz: " + baskasi;
  cubuk.yaz("LOG Dosyası Geri Alınıyor");
  cubuk.adim();
  if (std::string hata = kopyala(oturum, {klasor / log, yeniLog}, "Log dosyası", dataBoyu, toplam);
      !hata.empty())
    return hata;
  if (std::string hata = kopyayiDenetle(oturum, yeniData, yeniLog, ad); !hata.empty()) return hata;

  ServisMolasi mola(oturum);
  if (std::string hata = mola.durdur(); !hata.empty()) return hata;
  Yerlestirme is;
  is.degisimler = {{yeniData, canli.data, ekli(canli.data, ".onceki")},
                   {yeniLog, canli.log, ekli(canli.log, ".onceki")}};
  is.dene = {ad};
  std::string hata = bakim.degis(std::move(is));
  if (hata.empty()) hata = bakim.yerineKoy();
  cubuk.adim();
  if (hata.empty()) hata = mola.baslat();
  if (hata.empty()) hata = bakim.ekleVeDene();
  if (hata.empty()) return {};
  const std::string neden = hata;
  if (std::string durmadi = mola.durdur(); !durmadi.empty()) return neden + "\n" + durmadi;
  if (std::string donmedi = bakim.geriKoy(); !donmedi.empty())
    return neden + "\nEski dosyalar yerine konamadı: " + donmedi;
  mola.baslat();
  return "Geri alınan veritabanı açılamadı; önceki bilgiler yerine kondu.\n" + neden;
}

}  // namespace

bool Geri_Al(Oturum& oturum, const fs::path& klasor) {
  std::string data, log;
  const std::string ad = yedekFirmasi(klasorDosyalari(klasor), data, log);
  if (ad.empty()) {
    oturum.kutular->message("Bu Klasör Geri Alınabilecek Bir Firma Bilgisi İçermiyor.");
    return false;
  }
  try {
    VeriDosyalari canli;
    if (!veriDosyalari(oturum, ad, canli)) {
      oturum.kutular->message("Bu Firmanın Kaydı Bulanamadı. Lütfen Önce Firmayı Oluşturun.", Icon::Warning);
      return false;
    }
    if (!oturum.kutular->ask(
            "Geri Alınmak İstenen Firmanın Şu An Var Olan Bilgileri Daha Yeni Yeni Olabilir.\n"
            "Bu durumda Eski Verilere Tekrar Ulaşamayacaksınız.\n"
            "Önerilen :\n"
            "Önce Var Olan Bilgilerin Bir Yedeği Alınıp, Daha Sonra Yedekten Geri Alma İşlemi Yapmaktır.\n"
            "Yinede Devam Etmek İstiyormusunuz?"))
      return false;
    Cubuk cubuk(oturum, geriAdimi);
    cubuk.yaz("Geri Alma İçin Gerekli Bilgiler Toplanıyor");
    std::string hata;
    const auto bakim = Bakim::basla(oturum, ad + " geri alma", hata);
    if (!bakim) return red(oturum, hata);
    hata = geriAl(oturum, *bakim, canli, klasor, data, log, ad, cubuk);
    if (!hata.empty()) return red(oturum, hata);
    bakim->bitir();
    cubuk.yaz("İşlem Tamamlandı.");
    cubuk.adim();
  } catch (const db::SqlError& neden) {
    return red(oturum, neden.what());
  }
  oturum.kutular->message("Geri Alma İşlemi Başarı İle Tamamlanmıştır", Icon::Information);
  return true;
}

}  // namespace maintenance
