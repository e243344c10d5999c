#include "company/ilk_kurulum.h"

#include <random>

#include "catalog/sunucu_hazirla.h"
#include "company/firma_karti.h"
#include "company/ornek_veri.h"
#include "company/upgrade/guncelle.h"
#include "platform/files.h"
#include "session/giris.h"
#include "session/kademe.h"
#include "session/metin.h"
#include "session/statements.h"

namespace company {

namespace {

using session::Oturum;

constexpr std::string_view yerel = "(yerel)", yoneticiGirisi = "sa";

// Nobody types it: it stands in sys.inf alone.
std::string sifreUret() {
  constexpr std::string_view harfler = "ABCDEFGHJKLMNPQRSTUVWXYZabcdefghijkmnpqrstuvwxyz23456789";
  constexpr int uzunluk = 24;
  std::random_device kaynak;
  std::uniform_int_distribution<std::size_t> sec(0, harfler.size() - 1);
  std::string sifre;
  for (int i = 0; i < uzunluk; ++i) sifre += harfler[sec(kaynak)];
  return sifre;
}

void kullan(Oturum& oturum, const session::SysInf& degerler) {
  oturum.Server_Adi = session::Trim(degerler.server);
  oturum.SQL_Login = degerler.login;
  oturum.SQL_Sifre = degerler.password;
}

// Puts file and session back as they were unless kept.
class Geri {
 public:
  explicit Geri(Oturum& oturum)
      : oturum_(oturum),
        dosya_(session::sysInfYolu(oturum.platform->programFolder())),
        once_(platform::readFile(dosya_)),
        degerler_{oturum.Server_Adi, oturum.SQL_Login, oturum.SQL_Sifre} {}
  ~Geri() {
    if (kalsin_) return;
    std::error_code onemsiz;
    if (once_)
      static_cast<void>(platform::writeFileSafely(dosya_, *once_));
    else
      std::filesystem::remove(dosya_, onemsiz);
    kullan(oturum_, degerler_);
  }
  Geri(const Geri&) = delete;
  Geri& operator=(const Geri&) = delete;
  void kalsin() { kalsin_ = true; }

 private:
  Oturum& oturum_;
  std::filesystem::path dosya_;
  std::optional<std::string> once_;
  session::SysInf degerler_;
  bool kalsin_ = false;
};

std::string ornekFirma(Oturum& oturum) {
  constexpr int firmaPayi = 300, veriPayi = 700, butun = 1000;
  oturum.Tanim_DB_Versiyon = session::programSurumu;
  oturum.Yeni_Kayit = true;
  oturum.Inceleme = false;
  FirmaKarti kart;
  Firma_Karti_Ac(oturum, kart);
  kart.Firma_Adi = ornekFirmaAdi;
  kart.Firma_Kodu = "00001";
  kart.Firma_Unvani = "Örnek Ticaret A.Ş.";
  kart.StandartHesapPlani = true;
  {
    const session::Kademe kademe(oturum, 0, firmaPayi);
    if (!Kaydet(oturum, kart) || !oturum.Son_Hata.empty())
      return oturum.Son_Hata.empty() ? "Örnek firma oluşturulamadı." : oturum.Son_Hata;
  }
  const std::string ad(ornekFirmaAdi);
  {
    const session::Kademe kademe(oturum, firmaPayi, veriPayi);
    if (std::string hata = Ornek_Veri_Yaz(oturum, ad, {}).hata; !hata.empty()) return hata;
  }
  // A first company that asks to be brought up to date would only puzzle.
  const session::Kademe kademe(oturum, veriPayi, butun);
  return upgrade::Veritabani_Guncelle(oturum, ad).hata;
}

std::string yaz(const Oturum& oturum, const session::SysInf& degerler) {
  return session::Sys_Inf_Yaz(oturum.platform->programFolder(), degerler);
}

}  // namespace

std::string Bu_Makineyi_Hazirla(Oturum& oturum, const IlkKurulum& kurulum) {
  if (std::string hata = catalog::yoneticiHatasi(kurulum.yonetici, kurulum.sifre); !hata.empty()) return hata;
  Geri geri(oturum);
  const auto sunucu = oturum.surucu->local(std::string(yerel));
  if (!sunucu) return "Bu programda yerel sunucu yok.";
  try {
    if (!sunucu->exists()) {
      // Written before the server is made: a server whose password nobody has would be of no use.
      const session::SysInf degerler{std::string(yerel), std::string(yoneticiGirisi), sifreUret()};
      if (std::string hata = yaz(oturum, degerler); !hata.empty()) return hata;
      kullan(oturum, degerler);
      sunucu->create(degerler.login, degerler.password);
      geri.kalsin();
    } else if (oturum.Server_Adi != yerel) {
      return "Bu makinede hazır bir sunucu var (" + sunucu->folder().string() +
             ").\nOna bağlanmak için \"Bir sunucuya bağlan\" seçeneğinde sunucu adı olarak (yerel) yazınız.";
    }
  } catch (const db::SqlError& hata) {
    return std::string("Yerel sunucu hazırlanamadı: ") + hata.what();
  }
  const catalog::KurulumRaporu rapor = catalog::Sunucu_Hazirla(oturum, {kurulum.yonetici, kurulum.sifre, {}});
  geri.kalsin();
  if (rapor.sonuc != catalog::KurulumSonucu::Hazirlandi) return rapor.metin;
  oturum.Veri_Klasoru = sunucu->folder().string();
  return kurulum.ornekVeri ? ornekFirma(oturum) : "";
}

std::string Sunucuyu_Sina(Oturum& oturum, const session::SysInf& degerler) {
  if (session::Trim(degerler.server).empty()) return "Sunucu adı boş olamaz.";
  for (const std::string* alan : {&degerler.server, &degerler.login, &degerler.password})
    if (!session::sysInfAlaniUygun(*alan)) return "Sunucu, kullanıcı adı ve şifrede ';' olamaz.";
  try {
    const std::string sunucu = session::Trim(degerler.server);
    const auto baglanti = oturum.surucu->make(sunucu);
    baglanti->open({sunucu, degerler.login, degerler.password, "master", false});
    return "";
  } catch (const db::SqlError& hata) {
    if (hata.kind() == db::ErrorKind::LoginRefused)
      return "Sunucu yanıt verdi, ama SQL kullanıcı adını ya da şifresini kabul etmedi.";
    return std::string("Sunucuya bağlanılamadı: ") + hata.what();
  }
}

std::string Sunucuya_Bagla(Oturum& oturum, const session::SysInf& degerler) {
  if (std::string hata = Sunucuyu_Sina(oturum, degerler); !hata.empty()) return hata;
  if (std::string hata = yaz(oturum, degerler); !hata.empty()) return hata;
  kullan(oturum, degerler);
  return "";
}

std::string Kurulum_Eksigi(Oturum& oturum) {
  if (session::Trim(oturum.Server_Adi).empty())
    return session::sysInfEksigi(oturum.platform->programFolder());
  const auto sunucu = oturum.surucu->local(oturum.Server_Adi);
  if (!sunucu || sunucu->exists()) return "";
  return oturum.Server_Adi + " sunucusunun klasörü yok: " + sunucu->folder().string();
}

}  // namespace company
