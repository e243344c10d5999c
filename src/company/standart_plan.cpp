#include "company/standart_plan.h"

#include <array>
#include <filesystem>

#include "company/plan_dosyasi.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "session/statements.h"

namespace company {

namespace {

using session::Oturum;
namespace fs = std::filesystem;

constexpr std::string_view klasorAdi = "Muhasebe Parametre";
constexpr std::string_view planAdi = "StandartPlan.txt";

// The two statement templates; `tip` is their Rapor_Tipi.
struct MaliTablo {
  std::string_view dosya;
  int tip;
  std::string_view ad;
};
constexpr std::array<MaliTablo, 2> maliTablolar = {{
    {"BILANCO.txt", 1, "Bilanço Tablosu"},
    {"KARZARAR.txt", 2, "Kar Zarar Tablosu"},
}};

struct Dosyalar {
  std::vector<HesapSatiri> hesaplar;
  std::array<std::vector<TabloSatiri>, maliTablolar.size()> tablolar;
};

// Under the program's folder; where that has none, where an installation puts it or beside the executable.
fs::path veriKlasoru(const Oturum& oturum) {
  const fs::path own = oturum.platform->programFolder() / klasorAdi;
  std::error_code error;
  if (fs::is_directory(own, error)) return own;
  const fs::path installed = platform::installedDataFolder();
  return (installed.empty() ? platform::executableFolder() : installed) / klasorAdi;
}

std::optional<std::string> dosyaOku(const Oturum& oturum, std::string_view ad) {
  return platform::readFile(veriKlasoru(oturum) / ad);
}

std::string gosterilenYol(const Oturum& oturum, std::string_view ad) {
  return oturum.platform->programFolder().string() + "\\" + std::string(klasorAdi) + "\\" + std::string(ad);
}

// Reads and checks all three files. Gives the fault, empty without one.
std::string dosyalariOku(const Oturum& oturum, Dosyalar& dosyalar) {
  const auto plan = dosyaOku(oturum, planAdi);
  if (!plan) {
    return "Standart Hesap Planı aratmak İstediniz Fakat Parmetre Dosyasını Bulamıyorum.Lütfen " +
           gosterilenYol(oturum, planAdi) + " dosyasının Varlığını Kontrol Ediniz.";
  }
  auto hesaplar = hesapPlaniOku(*plan, std::string(planAdi));
  if (!hesaplar.hata.empty()) {
    return hesaplar.hata;
  }
  dosyalar.hesaplar = std::move(hesaplar.rows);
  for (std::size_t i = 0; i < maliTablolar.size(); ++i) {
    const auto text = dosyaOku(oturum, maliTablolar[i].dosya);
    if (!text) {
      return "Mali tablo dosyası bulunamadı: " + gosterilenYol(oturum, maliTablolar[i].dosya);
    }
    auto satirlar = maliTabloOku(*text, std::string(maliTablolar[i].dosya));
    if (!satirlar.hata.empty()) {
      return satirlar.hata;
    }
    dosyalar.tablolar[i] = std::move(satirlar.rows);
  }
  return "";
}

// Raised when a statement was refused whose box has been shown already.
struct Gosterildi {};
// Raised when the user has given it up.
struct Vazgecildi {};

void ilerle(Oturum& oturum) {
  oturum.ilerleme->pump();
  if (oturum.ilerleme->cancelled()) {
    throw Vazgecildi{};
  }
}

void ac(Oturum& oturum, const std::string& sql) {
  if (session::Komut_Calistir(oturum, oturum.Kayitlar, sql) != 0) {
    throw Gosterildi{};
  }
}

void hesaplariYaz(Oturum& oturum, const std::string& veritabani, const std::vector<HesapSatiri>& hesaplar) {
  ac(oturum, "SELECT * FROM " + veritabani + ".dbo.MUHKART");
  db::DateTime tarih = oturum.saat->now();
  db::DateTime saat;
  saat.hour = tarih.hour;
  saat.minute = tarih.minute;
  saat.second = tarih.second;
  tarih.hour = tarih.minute = tarih.second = tarih.millisecond = 0;
  const auto total = static_cast<std::int64_t>(hesaplar.size());
  std::int64_t done = 0;
  for (const HesapSatiri& hesap : hesaplar) {
    const std::pair<std::string_view, db::Value> alanlar[] = {
        {"MHesap_Kod", hesap.kod},
        {"Ana_Hesap_Kod", hesap.kod},
        {"MHesap_Ad", hesap.ad},
        {"HesapSeviyesi", 1},  // whatever the account's depth
        {"Doviz_ID", 1},
        {"Aktif", true},
        {"Bakiye_Tipi", 1},
        {"Hesap_Tipi", 1},
        {"Kullanici_ID", 1},
        {"Ekleme_Tarihi", tarih},
        {"Ekleme_Saati", saat},
        {"Degistiren_Kullanici", 1},
        {"Degistirme_Tarihi", tarih},
        {"Degistirme_Saati", saat},
    };
    oturum.Kayitlar.addNew();
    for (const auto& [column, value] : alanlar) {
      oturum.Kayitlar.set(column, value);
    }
    oturum.Kayitlar.updateBatch();
    oturum.ilerleme->step(++done, total);
    ilerle(oturum);
  }
}

void maliTabloYaz(Oturum& oturum, const std::string& veritabani, const MaliTablo& tablo,
                  const std::vector<TabloSatiri>& satirlar) {
  const std::string tip = std::to_string(tablo.tip);
  ac(oturum, "INSERT INTO " + veritabani +
                 ".dbo.MUHASEBEMALITABLOKART (Rapor_Tipi,Rapor_Kodu,Rapor_Adi) VALUES (" + tip + ",'000','" +
                 std::string(tablo.ad) + "')");
  ac(oturum, "SELECT Rapor_ID FROM " + veritabani +
                 ".dbo.MUHASEBEMALITABLOKART WHERE Rapor_Kodu='000' AND Rapor_Tipi=" + tip);
  const std::int64_t raporId = oturum.Kayitlar.field("Rapor_ID").integer();
  ac(oturum, "SELECT * FROM " + veritabani + ".dbo.MUHASEBEMALITABLOHAREKET ");
  const auto& kolonlar = maliTabloKolonlari();
  for (const TabloSatiri& satir : satirlar) {
    oturum.Kayitlar.addNew();
    oturum.Kayitlar.set("Rapor_ID", raporId);
    for (std::size_t i = 0; i < satir.size(); ++i) {
      oturum.Kayitlar.set(kolonlar[i], satir[i]);
    }
    oturum.Kayitlar.updateBatch();
    ilerle(oturum);
  }
}

// All rows or none: a company with half a chart could never load the rest.
void yaz(Oturum& oturum, const std::string& veritabani, const Dosyalar& dosyalar) {
  ac(oturum, "BEGIN TRAN");
  oturum.ilerleme->text("MUHKART");
  hesaplariYaz(oturum, veritabani, dosyalar.hesaplar);
  for (std::size_t i = 0; i < maliTablolar.size(); ++i) {
    oturum.ilerleme->text(std::string(maliTablolar[i].ad));
    maliTabloYaz(oturum, veritabani, maliTablolar[i], dosyalar.tablolar[i]);
  }
  ac(oturum, "COMMIT TRAN");
  oturum.ilerleme->text("");
}

void geriAl(Oturum& oturum) {
  oturum.Kayitlar.close();
  session::Sorgu_Ac(oturum, oturum.Kayitlar, "IF @@TRANCOUNT>0 ROLLBACK TRAN");
}

}  // namespace

PlanSonucu Standart_Plan_Yukle(Oturum& oturum, const std::string& veritabani) {
  Dosyalar dosyalar;
  if (const std::string hata = dosyalariOku(oturum, dosyalar); !hata.empty()) {
    oturum.kutular->message(hata);
    return PlanSonucu::Yuklenemedi;
  }
  try {
    yaz(oturum, veritabani, dosyalar);
    return PlanSonucu::Yuklendi;
  } catch (const Vazgecildi&) {
    geriAl(oturum);
    return PlanSonucu::Vazgecildi;
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
  } catch (const Gosterildi&) {
    // its box is gone already
  }
  geriAl(oturum);
  oturum.kutular->message(
      "Standart hesap planı yüklenemedi. Engel giderildikten sonra firma kartını yeniden açıp \"Standart "
      "Hesap "
      "Planını Oluştur\" kutusunu işaretleyerek kaydediniz.",
      session::Icon::Stop);
  return PlanSonucu::Yuklenemedi;
}

}  // namespace company
