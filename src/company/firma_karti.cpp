#include "company/firma_karti.h"

#include "catalog/katalog.h"
#include "company/kart_alanlari.h"
#include "company/standart_plan.h"
#include "session/konsol.h"
#include "session/metin.h"
#include "session/statements.h"
#include "session/tarih.h"

namespace company {

namespace {

using session::Oturum;

void bosKart(Oturum& oturum, FirmaKarti& kart) {
  kart = FirmaKarti{};
  const std::string yil = session::tarihYaz(oturum.saat->now()).substr(6);
  kart.Bas_Tar = "01/01/" + yil;
  kart.Bit_Tar = "31/12/" + yil;
}

// Leaves the company's row open in Kayitlar. False when it could not be had; the box has been shown.
bool firmaSatiriniAc(Oturum& oturum) {
  if (!oturum.Baglanti || oturum.Baglanti->state() != db::State::Open ||
      oturum.Baglanti->parts().database != catalog::catalogDatabase) {
    session::Katalog_Bagla(oturum, std::string(catalog::catalogDatabase));
  }
  session::Sorgu_Ac_Mesajli(
      oturum, oturum.Kayitlar,
      "SELECT * FROM sysfrmlng WHERE sysfrm_ID=" + std::to_string(oturum.Secili_ID) + "");
  if (oturum.Kayitlar.state() != db::State::Open) {
    return false;
  }
  if (oturum.Kayitlar.eof()) {
    oturum.kutular->message("Firma kaydı bulunamadı.", session::Icon::Stop);
    return false;
  }
  return true;
}

bool hesapPlaniVar(Oturum& oturum, const std::string& veritabani) {
  return session::Sorgu_Ac(oturum, oturum.Kayitlar, "SELECT TOP 1 * FROM " + veritabani + ".dbo.MUHKART") ==
             0 &&
         oturum.Kayitlar.state() == db::State::Open && !oturum.Kayitlar.eof();
}

void varOlanKart(Oturum& oturum, FirmaKarti& kart, KartDurumu& durum) {
  kart = FirmaKarti{};
  durum.Firma_Adi_Salt = true;
  try {
    if (!firmaSatiriniAc(oturum)) {
      durum.Kayit_Acik = false;
      return;
    }
    Yerlestir(oturum, kart);
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
    durum.Kayit_Acik = false;
    return;
  }
  oturum.Eski_Firma_Adi = session::Trim(kart.Firma_Adi);
  durum.StandartHesapPlani_Acik = !hesapPlaniVar(oturum, oturum.Eski_Firma_Adi);
}

void mastereBaglan(Oturum& oturum) {
  if (oturum.Baglanti && oturum.Baglanti->state() == db::State::Open) {
    oturum.Baglanti->close();
  }
  try {
    session::Katalog_Bagla(oturum, "master");
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
  }
}

}  // namespace

KartDurumu Firma_Karti_Ac(Oturum& oturum, FirmaKarti& kart) {
  KartDurumu durum;
  if (oturum.Yeni_Kayit) {
    bosKart(oturum, kart);
    durum.Frame2_Gorunur = false;
  } else {
    varOlanKart(oturum, kart, durum);
  }
  if (oturum.Inceleme) {
    durum.Kayit_Acik = false;
    durum.DurumPanel = "  Escape (Çıkış)";
  }
  return durum;
}

void Yerlestir(Oturum& oturum, FirmaKarti& kart) {
  for (const KartAlani& alan : kartAlanlari()) {
    const db::Value deger = oturum.Kayitlar.field(alan.column);
    const auto* tarih = deger.as<db::DateTime>();
    const std::string metin = tarih != nullptr ? session::tarihYaz(*tarih) : deger.trimmed();
    if (alan.zorunlu || !metin.empty()) {
      kart.*alan.text = metin;
    }
  }
}

bool Kaydet(Oturum& oturum, FirmaKarti& kart) {
  if (oturum.Inceleme) {
    return false;
  }
  oturum.Hedef_Firma_Adi = session::Trim(kart.Firma_Adi);
  oturum.Hedef_Firma_Kodu = session::Trim(kart.Firma_Kodu);
  oturum.Son_Hata.clear();
  Kayit_Kontrol(kart);
  if (!kart.Hata_Metni.empty()) {
    oturum.kutular->message(kart.Hata_Metni, session::Icon::Stop);
    return false;
  }
  // Firma_Olustur leaves its failures in Son_Hata, and the card looks at Hata_Metni only: it closes.
  Firma_Olustur(oturum, kart);
  if (kart.StandartHesapPlani) {
    Standart_Plan_Yukle(oturum, kart.Firma_Adi);
  }
  mastereBaglan(oturum);
  return true;
}

std::string Sonraki_Firma_Kodu(Oturum& oturum) {
  return session::Firma_Kod_Yeni(oturum);
}

}  // namespace company
