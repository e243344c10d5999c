#include "company/firma_karti.h"

#include "company/kart_alanlari.h"
#include "company/standart_plan.h"
#include "session/kademe.h"
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
      oturum.Baglanti->parts().database != session::katalogVeritabani) {
    session::Katalog_Bagla(oturum, std::string(session::katalogVeritabani));
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

bool veritabaniVar(Oturum& oturum, const std::string& veritabani) {
  return session::Sorgu_Ac(oturum, oturum.Kayitlar, "SELECT DB_ID('" + db::escape(veritabani) + "')") != 0 ||
         oturum.Kayitlar.state() == db::State::Closed || oturum.Kayitlar.eof() ||
         !oturum.Kayitlar.field(0).isNull();
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
  if (!veritabaniVar(oturum, oturum.Eski_Firma_Adi)) {
    durum.Uyari = "\"" + oturum.Eski_Firma_Adi + "\" veritabanı sunucuda yok.";
    durum.StandartHesapPlani_Acik = false;
    return;
  }
  durum.StandartHesapPlani_Acik = !hesapPlaniVar(oturum, oturum.Eski_Firma_Adi);
}

// The chart that was ticked, where there is a company to take it.
PlanSonucu planYukle(Oturum& oturum, const FirmaKarti& kart, OlusturSonucu sonuc, AdVarken adVarken) {
  if (!kart.StandartHesapPlani) {
    return PlanSonucu::Yuklenemedi;
  }
  if (sonuc != OlusturSonucu::Tamam &&
      (adVarken == AdVarken::Yazma ||
       !oturum.kutular->ask("\"" + session::Trim(kart.Firma_Adi) +
                            "\" adında bir firma zaten var; yeni firma oluşturulmadı.\nStandart hesap planı "
                            "var olan bu firmaya yüklensin mi?"))) {
    return PlanSonucu::Yuklenemedi;
  }
  return Standart_Plan_Yukle(oturum, kart.Firma_Adi);
}

// The whole bar tells schema and chart together, in thousandths: the chart takes about this share.
constexpr int semaPayi = 620, butun = 1000;

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

bool Kaydet(Oturum& oturum, FirmaKarti& kart, AdVarken adVarken) {
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
  OlusturSonucu sonuc;
  {
    const session::Kademe kademe(oturum, 0, kart.StandartHesapPlani ? semaPayi : butun);
    sonuc = Firma_Olustur(oturum, kart);
  }
  if (sonuc == OlusturSonucu::Tamam || sonuc == OlusturSonucu::AdVar) {
    const session::Kademe kademe(oturum, semaPayi, butun);
    if (planYukle(oturum, kart, sonuc, adVarken) == PlanSonucu::Vazgecildi) {
      // A company that stood before stays, without the chart.
      if (oturum.Yeni_Kayit && sonuc == OlusturSonucu::Tamam) {
        sonuc = Olusturmadan_Vazgec(oturum);
      } else {
        oturum.kutular->message("Standart hesap planının yüklenmesinden vazgeçildi.",
                                session::Icon::Information);
      }
    }
  }
  kart.Vazgecildi = sonuc == OlusturSonucu::Vazgecildi;
  if (kart.Vazgecildi || sonuc == OlusturSonucu::Basarisiz) {
    return false;
  }
  session::CNN_Bagla(oturum, oturum.Server_Adi, "master");
  return true;
}

std::string Sonraki_Firma_Kodu(Oturum& oturum) {
  return session::Firma_Kod_Yeni(oturum);
}

}  // namespace company
