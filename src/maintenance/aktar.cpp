#include "maintenance/aktar.h"

#include <algorithm>

#include "catalog/katalog.h"
#include "company/kart_alanlari.h"
#include "maintenance/bakim.h"
#include "maintenance/servis_kontrol.h"
#include "maintenance/yedek_ortak.h"
#include "platform/folders.h"
#include "rights/varsayilan.h"
#include "session/firma_bul.h"
#include "session/metin.h"
#include "session/statements.h"

namespace maintenance {

namespace {

namespace fs = std::filesystem;
using session::Icon;
using session::Oturum;

const std::string katalog(catalog::catalogDatabase);

bool reddet(Oturum& oturum, const std::string& metin) {
  oturum.kutular->message(metin, Icon::Stop, aktarBaslik);
  return false;
}

bool biliniyor(Oturum& oturum, const std::string& ad) {
  session::Katalog_Bagla(oturum, "master");
  oturum.Kayitlar.open(*oturum.Baglanti,
                       "SELECT name FROM  sysdatabases where name='" + db::escape(ad) + "'");
  return !oturum.Kayitlar.eof();
}

std::string engelMetni(const std::string& dosya) {
  return "Bu Firma SQL SERVER Tarafından Tanınmıyor Ama Dosyası var.\n"
         "Dosya için Lütfen" +
         dosya +
         " Yoluna Bakınız.\n"
         "Eğer Bu Firmayı Oluşturmak istiyorsanız.Aşağıdaki Adımları Uygulayınız.\n"
         "1- Bu Dosyayı Yukarıda Belirtilen Yoldan Başka Bir Yere Alınız.\n"
         "2- Firmayı Oluşturunuz.\n"
         "3- Muhtemelen Var Olan Dosya Bir Korven Firmasının Bilgilerini İçerdiği İçin.\n"
         "   Bu Bilgileri Geri alabilmek SQL SERVER'i Durdurduktan Sonra Buradn Aldığınız Dosyayı Üzerine "
         "Kopyalayınız.\n"
         "YADA Lütfen Proram Satıcınızı Arayınız.";
}

std::string olusturma(const std::string& ad, const std::string& klasor) {
  const std::string dosya = db::escape(klasor) + "\\" + db::escape(ad);
  return "CREATE DATABASE " + ad + " ON ( NAME = " + ad + ", FILENAME = '" + dosya +
         ".mdf', SIZE = 10, MAXSIZE = UNLIMITED, FILEGROWTH = 10 )  LOG ON ( NAME = '" + db::escape(ad) +
         "_log',  FILENAME = '" + dosya + "_log.ldf', SIZE = 5MB, MAXSIZE = UNLIMITED, FILEGROWTH = 10 )";
}

// The row of a company that was moved here: its name everywhere, the running year, the fixed values.
void firmaSatiri(Oturum& oturum, const std::string& ad) {
  const db::DateTime simdi = oturum.saat->now();
  const std::string yil = std::to_string(simdi.year);
  company::FirmaKarti kart;
  kart.Firma_Adi = kart.Firma_Kodu = kart.Firma_Unvani = ad;
  kart.Bas_Tar = "01/01/" + yil;
  kart.Bit_Tar = "31/12/" + yil;
  db::Recordset& kayitlar = oturum.Kayitlar;
  kayitlar.open(*oturum.Baglanti, "Select * from sysfrmlng", db::Cursor::Keyset, db::Lock::BatchOptimistic);
  kayitlar.addNew();
  for (const company::KartAlani& alan : company::kartAlanlari()) {
    if (session::Trim(kart.*alan.text).empty()) continue;
    const db::Value deger = company::kartDegeri(kart, alan);
    kayitlar.set(alan.column, deger);
    if (!alan.kilit.empty()) kayitlar.set(alan.kilit, deger);
  }
  kayitlar.set("DBVRSYN", oturum.Tanim_DB_Versiyon);
  kayitlar.set("YR_DT", db::DateTime{simdi.year, simdi.month, simdi.day});
  for (const auto& [column, value] : company::yeniFirmaDegerleri()) kayitlar.set(column, value);
  kayitlar.updateBatch();
}

void yoneticiyeVer(Oturum& oturum, const std::string& ad) {
  db::Connection& baglanti = *oturum.Baglanti;
  db::Recordset& kayitlar = oturum.Kayitlar;
  kayitlar.open(baglanti, "SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" + db::escape(ad) + "'");
  const std::string id = std::to_string(session::Firma_Kimligi(oturum, kayitlar, ad));
  baglanti.execute("INSERT INTO sysusfrmlng(sysfrm_ID,sysus_ID) VALUES (" + id + ",1)");
  kayitlar.open(baglanti, "SELECT * FROM sysuslng WHERE sysus_ID='1'");
  const std::string kullanici = kayitlar.field("sysus_nm").trimmed(),
                    sifre = kayitlar.field("sysus").trimmed();
  kayitlar.close();
  baglanti.execute(rights::varsayilanSatir(rights::VarsayilanTur::YeniFirma, id, "1", kullanici, sifre));
}

struct Is {
  Oturum& oturum;
  fs::path kaynak;
  std::string hedef;  // as the server is told
  fs::path klasor;    // the same as this machine reaches it
  std::vector<std::string> adlar;
  bool genel = false;
};

// The files of the pairs, copied beside their places while everything still runs.
std::string kopyala(Is& is, Bakim& bakim, std::vector<Degisim>& degisimler) {
  std::uintmax_t toplam = 0, yapilan = 0;
  std::vector<std::pair<fs::path, fs::path>> dosyalar;
  for (const std::string& ad : is.adlar)
    for (const std::string& dosya : {ad + ".mdf", ad + "_log.ldf"}) {
      const fs::path kaynak = gercekDosya(is.kaynak / dosya);
      std::error_code hata;
      const std::uintmax_t boy = fs::file_size(kaynak, hata);
      if (hata) return "Kaynak dosya okunamadı (" + kaynak.string() + "): " + hata.message();
      toplam += boy;
      dosyalar.emplace_back(kaynak, asilDosya(gercekDosya(is.klasor / dosya)));
    }
  if (std::string metin = yerVarMi(is.klasor, toplam); !metin.empty()) return metin;
  std::error_code hata;
  for (const auto& [kaynak, hedef] : dosyalar) {
    Degisim degisim{hedef, hedef, hedef};
    degisim.yeni += ".gelen";
    degisim.eski += ".onceki";
    if (std::string metin = bakim.gecici(degisim.yeni); !metin.empty()) return metin;
    fs::remove(degisim.yeni, hata);
    is.oturum.ilerleme->text(kaynak.filename().string());
    const auto neden = platform::copyFile(kaynak, degisim.yeni, [&](std::uintmax_t bayt) {
      is.oturum.ilerleme->whole(static_cast<std::int64_t>(yapilan + bayt), static_cast<std::int64_t>(toplam));
      is.oturum.ilerleme->pump();
      return !is.oturum.ilerleme->cancelled();
    });
    if (neden == std::errc::operation_canceled) return std::string(vazgecildi);
    if (neden) return "Kopyalanamadı (" + kaynak.string() + "): " + neden.message();
    yapilan += fs::file_size(degisim.yeni, hata);
    degisimler.push_back(std::move(degisim));
  }
  return {};
}

std::string kopyalariDenetle(Is& is, const std::vector<Degisim>& degisimler) {
  const auto server = is.oturum.surucu->local(is.oturum.Server_Adi);
  for (std::size_t i = 0; server && i < is.adlar.size(); ++i) {
    is.oturum.ilerleme->text(is.adlar[i] + " denetleniyor");
    PaylasilanIs okuma(is.oturum);
    try {
      server->check(degisimler[i * 2].yeni, degisimler[i * 2 + 1].yeni, is.adlar[i], okuma.adimi());
    } catch (const db::SqlError& hata) {
      if (okuma.birakildi()) return std::string(vazgecildi);
      return "\"" + is.adlar[i] + "\" aktarılamaz: " + hata.what();
    }
  }
  return {};
}

std::string hazirla(Is& is, Bakim& bakim) {
  std::int64_t sira = 0;
  for (const std::string& ad : is.adlar) {
    is.oturum.ilerleme->step(++sira, static_cast<std::int64_t>(is.adlar.size()));
    is.oturum.ilerleme->pump();
    if (Firma_Hazirla(is.oturum, bakim, ad, is.hedef) == Hazirlik::Engel)
      return "\"" + ad + "\" hazırlanamadı; hiçbir veritabanı aktarılmadı.";
  }
  return {};
}

std::string yerlestir(Is& is, Bakim& bakim, std::vector<Degisim> degisimler) {
  Yerlestirme yer{std::move(degisimler), is.adlar, {}, {}};
  if (is.genel) {
    yer.klasor = is.hedef;
    for (const std::string& ad : is.adlar)
      if (!biliniyor(is.oturum, ad)) yer.ekle.push_back(ad);
  }
  ServisMolasi mola(is.oturum);
  if (std::string hata = mola.durdur(); !hata.empty()) return hata;
  std::string hata = bakim.degis(std::move(yer));
  if (hata.empty()) hata = bakim.yerineKoy();
  if (hata.empty()) hata = mola.baslat();
  if (hata.empty()) hata = bakim.ekleVeDene();
  if (hata.empty()) return {};
  mola.baslat();
  bakim.ekleneniBirak();
  mola.durdur();
  if (const std::string donmedi = bakim.geriKoy(); !donmedi.empty()) hata += "\n" + donmedi;
  mola.baslat();
  return hata;
}

std::string aktar(Is& is, Bakim& bakim) {
  std::vector<Degisim> degisimler;
  std::string hata = kopyala(is, bakim, degisimler);
  if (hata.empty()) hata = kopyalariDenetle(is, degisimler);
  if (hata.empty() && !is.genel) hata = hazirla(is, bakim);
  // A database made just now has files of its own, whose names may differ in letter case.
  for (Degisim& degisim : degisimler) degisim.canli = asilDosya(gercekDosya(degisim.canli));
  if (hata.empty()) hata = yerlestir(is, bakim, std::move(degisimler));
  return hata;
}

}  // namespace

std::string aktarHedefi(Oturum& oturum) {
  try {
    oturum.Katalog_Adi = katalog;
    session::Katalog_Bagla(oturum, katalog);
    oturum.Kayitlar.open(*oturum.Baglanti, "SELECT * FROM sysDTYL");
    if (!oturum.Kayitlar.eof()) return oturum.Kayitlar.field("sysdtyl").trimmed();
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), Icon::Stop);
  }
  return {};
}

std::vector<AktarSatiri> aktarListesi(const fs::path& kaynak) {
  std::vector<AktarSatiri> satirlar;
  for (const std::string& dosya : klasorDosyalari(kaynak)) {
    const auto uzanti = std::min(dosya.find(".mdf"), dosya.find(".MDF"));
    if (uzanti == std::string::npos || dosya.find(katalog) != std::string::npos) continue;
    satirlar.push_back({dosya.substr(0, uzanti), false});
  }
  return satirlar;
}

bool sunucununKendisi(const std::string& ad) {
  constexpr std::string_view adlar[] = {"MASTER", "MODEL", "MSDB", "MSDBDATA", "TEMPDB"};
  return std::ranges::find(adlar, session::Buyuk_Harf(ad)) != std::end(adlar);
}

bool ayniDizin(const fs::path& a, const fs::path& b) {
  std::error_code hata;
  if (fs::equivalent(a, b, hata)) return true;
  return fs::weakly_canonical(a, hata) == fs::weakly_canonical(b, hata);
}

bool Veritabani_Ekle(Oturum& oturum, const std::string& klasor, const std::string& mdf,
                     const std::string& log, const std::string& ad) {
  if (biliniyor(oturum, ad)) return true;
  const std::string dizin = db::escape(klasor) + "\\";
  try {
    oturum.Baglanti->execute("CREATE DATABASE " + ad + " ON PRIMARY (FILENAME = '" + dizin + db::escape(mdf) +
                             "')  LOG ON  (FILENAME = '" + dizin + db::escape(log) + "')  FOR ATTACH ");
  } catch (const db::SqlError& hata) {
    if (hata.lasting()) throw;
  }
  return biliniyor(oturum, ad);
}

void Veri_Klasorunu_Yaz(Oturum& oturum, const std::string& klasor) {
  session::Katalog_Bagla(oturum, katalog);
  oturum.Baglanti->execute("UPDATE sysDTYL SET sysdtyl='" + db::escape(klasor) + "'");
}

Hazirlik Firma_Hazirla(Oturum& oturum, Bakim& bakim, const std::string& ad, const std::string& klasor) {
  if (biliniyor(oturum, ad)) return Hazirlik::Biliniyor;
  const std::string dosya = klasor + "\\" + ad + ".mdf";
  std::error_code yok;
  if (fs::exists(gercekDosya(platform::hostPath(dosya)), yok)) {
    oturum.kutular->message(engelMetni(dosya), Icon::None, aktarBaslik);
    return Hazirlik::Engel;
  }
  session::Katalog_Bagla(oturum, katalog);
  const auto son = oturum.Baglanti->query("SELECT ISNULL(MAX(sysfrm_ID),0) FROM sysfrmlng");
  if (const std::string hata = bakim.hazirlanacak(ad, son->value(0, 0).integer()); !hata.empty()) {
    reddet(oturum, hata);
    return Hazirlik::Engel;
  }
  session::Katalog_Bagla(oturum, "master");
  oturum.Baglanti->execute(olusturma(ad, klasor));
  session::Katalog_Bagla(oturum, katalog);
  firmaSatiri(oturum, ad);
  yoneticiyeVer(oturum, ad);
  return Hazirlik::Yapildi;
}

void Firma_Hazirligini_Geri_Al(Oturum& oturum, const std::string& ad, std::int64_t sonKart) {
  oturum.Kayitlar.close();
  try {
    session::Katalog_Bagla(oturum, katalog);
    const std::string kart = "(SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" + db::escape(ad) +
                             "' AND sysfrm_ID>" + std::to_string(sonKart) + ")";
    for (const char* const tablo :
         {"Kullanici WHERE Firma_ID", "sysusfrmlng WHERE sysfrm_ID", "sysfrmlng WHERE sysfrm_ID"})
      oturum.Baglanti->execute(std::string("DELETE FROM ") + tablo + " IN " + kart);
    if (!biliniyor(oturum, ad)) return;
    session::Katalog_Bagla(oturum, "master");
    oturum.Baglanti->execute("DROP DATABASE " + ad);
  } catch (const db::SqlError& hata) {
    oturum.kutular->message("\"" + ad + "\" için yapılan hazırlık geri alınamadı: " + hata.what(),
                            Icon::Warning, aktarBaslik);
  }
}

bool Aktar(Oturum& oturum, const fs::path& kaynak, const std::string& hedef,
           const std::vector<AktarSatiri>& satirlar, bool genel) {
  Is is{oturum, kaynak, hedef, platform::hostPath(hedef), {}, genel};
  if (ayniDizin(kaynak, is.klasor))
    return oturum.kutular->message(
               "Programın Kurulu Olduğu Dizin İle Seçmiş Olduğunuz Dizin Aynı Lütfen Kontrol Ediniz.",
               Icon::None, aktarBaslik),
           false;
  for (const AktarSatiri& satir : satirlar)
    if (satir.Sec && !satir.Database.empty()) is.adlar.push_back(satir.Database);
  for (const std::string& ad : is.adlar)
    if (sunucununKendisi(ad))
      return reddet(oturum, "\"" + ad + "\" sunucunun kendi veritabanıdır, taşınmaz. İşaretini kaldırınız.");
  if (genel &&
      !oturum.kutular->ask("Aynı Olan Dosyalar Değiştirilecek Devam Etmek İstediğinize Eminmisiniz ?",
                           Icon::Stop, aktarBaslik))
    return false;
  std::error_code yok;
  if (genel && fs::exists(gercekDosya(kaynak / (katalog + ".mdf")), yok))
    is.adlar.insert(is.adlar.begin(), katalog);
  if (is.adlar.empty()) return reddet(oturum, "Aktarılacak bir veritabanı seçiniz.");
  if (sunucuYeri(oturum) == SunucuYeri::Uzak)
    return reddet(oturum, "Sunucu başka bir makinede: dosyalarına buradan ulaşılamaz.");
  std::string hata;
  const auto bakim = Bakim::basla(oturum, "aktarma", hata);
  if (!bakim) return reddet(oturum, hata);
  try {
    hata = aktar(is, *bakim);
  } catch (const db::SqlError& neden) {
    hata = neden.what();
  }
  if (!hata.empty()) {
    bakim->hazirligiGeriAl();
    return reddet(oturum, hata);
  }
  bakim->bitir();
  oturum.kutular->message("Aktarım İşlemi Başarı İle Gerçekleştirildi.", Icon::None, aktarBaslik);
  return true;
}

}  // namespace maintenance
