#include "settings/firma_parametre.h"

#include <cstdlib>
#include <string_view>
#include <variant>

#include "session/metin.h"
#include "session/statements.h"

namespace settings {

namespace {

using session::FirmaParametreleri;
using session::Oturum;
using P = FirmaParametreleri;

struct Bicim {
  std::string_view sutun;
  std::string Oturum::*alan;
};
constexpr Bicim bicimler[] = {{"AnaParaVirgul", &Oturum::AnaPara_Format},
                              {"BirimFiyatVirGul", &Oturum::BirimFiyat_Format},
                              {"DovizVirgul", &Oturum::Doviz_Format},
                              {"DovizBirimFiyatVirgul", &Oturum::DovizBirimFiyat_Format},
                              {"KurVirgul", &Oturum::Kur_Format}};

// A flag, a colour, a whole number, an amount, a text; `bosKalir`: an empty column keeps what the session
// has.
struct Alan {
  std::string_view sutun;
  std::variant<bool P::*, std::int32_t P::*, double P::*, std::string P::*> alan;
  bool bosKalir = false;
};
constexpr Alan alanlar[] = {
    {"DovizVar", &P::DovizVar},
    {"RenkBedenVar", &P::RenkBedenVar},
    {"PosVar", &P::PosVar},
    {"BarkodVar", &P::BarkodVar},
    {"EmanetVar", &P::EmanetVar},
    {"OnceEmanetAl", &P::OnceEmanetAl},
    {"HareketKilit", &P::HareketKilit},
    {"SatirISK_Dahil", &P::SatirISK_Dahil},
    {"FaturaAltiISK_Dahil", &P::FaturaAltiISK_Dahil},
    {"Masraflar_Dahil", &P::Masraflar_Dahil},
    {"StokSeviyeOzelKontrol", &P::StokSeviyeOzelKontrol},
    {"KDV_Dahildir", &P::KDV_Dahildir},
    {"CariStokFiyatBagli", &P::CariStokFiyatBagli},
    {"FarkliFiyatBirlessin", &P::FarkliFiyatBirlessin},
    {"FarkliISKBirlessin", &P::FarkliISKBirlessin},
    {"TaksitliSatisModu", &P::TaksitliSatisModu},
    {"PuanVar", &P::PuanVar},
    {"Ana_Birim", &P::Ana_Birim},
    {"Birim2", &P::Birim2},
    {"Birim3", &P::Birim3},
    {"AktifBirim", &P::AktifBirim},
    {"OnlineMuhasebe", &P::OnlineMuhasebe},
    {"MuhBenzerSatirBirlestir", &P::MuhBenzerSatirBirlestir},
    {"AmbarKarNoktasidir", &P::AmbarKarNoktasidir},
    {"AmbarBakiyesiGoster", &P::AmbarBakiyesiGoster},
    {"AmbarYetkiyeBagli", &P::AmbarYetkiyeBagli},
    {"IsyeriYetkiyeBagli", &P::IsyeriYetkiyeBagli},
    {"MasraflarSatistaKardir", &P::MasraflarSatistaKardir},
    {"Renk_Ozel", &P::Renk_Ozel},
    {"Renk_TL", &P::Renk_TL},
    {"Renk_Doviz", &P::Renk_Doviz},
    {"StokMinRenk", &P::StokMinRenk},
    {"StokMaxRenk", &P::StokMaxRenk},
    {"StokSFRRenk", &P::StokSFRRenk},
    {"OzelRenkli", &P::OzelRenkli},
    {"StokMinSeviye", &P::StokMinSeviye},
    {"StokMaxSeviye", &P::StokMaxSeviye},
    {"StokSFRSeviye", &P::StokSFRSeviye},
    {"AlisverisNusha", &P::AlisverisNusha, true},
    {"TahsilNusha", &P::TahsilNusha, true},
    {"DefKDV", &P::DefKDV, true},
    {"PesinIndirimi", &P::PesinIndirimi, true},
    {"SecimdeGelecekMiktar", &P::SecimdeGelecekMiktar, true},
    {"IrsTakipSuresi", &P::IrsTakipSuresi, true},
    {"KasaHareketListeTipi", &P::KasaHareketListeTipi, true},
    {"KasiyerStokListeTipi", &P::KasiyerStokListeTipi, true},
    {"AlistaFiyatDegis", &P::AlistaFiyatDegis, true},
    {"SatistaFiyatDegis", &P::SatistaFiyatDegis, true},
    {"MuhasebelesecekFisler", &P::MuhasebelesecekFisler, true},
    {"TransferFirma", &P::TransferFirma},
};

struct Tarih {
  std::string_view sutun;
  db::DateTime P::*alan;
  db::DateTime P::*yoksa;  // what stands in for a column without a date
};
// The fiscal year first: the lock dates fall back on it.
constexpr Tarih tarihler[] = {{"Mali_Yil_Baslangic", &P::Mali_Yil_Baslangic, &P::Mali_Yil_Baslangic},
                              {"Mali_Yil_Bitis", &P::Mali_Yil_Bitis, &P::Mali_Yil_Bitis},
                              {"KilitBasTarih", &P::KilitBasTarih, &P::Mali_Yil_Baslangic},
                              {"KilitBitTarih", &P::KilitBitTarih, &P::Mali_Yil_Bitis}};

void yaz(P& p, const Alan& alan, const db::Value& deger) {
  if (alan.bosKalir && deger.trimmed().empty()) return;
  std::visit(
      [&](auto uye) {
        using T = std::remove_reference_t<decltype(p.*uye)>;
        if constexpr (std::is_same_v<T, bool>)
          p.*uye = deger.boolean();
        else if constexpr (std::is_same_v<T, std::int32_t>)
          p.*uye = static_cast<std::int32_t>(deger.integer());
        else if constexpr (std::is_same_v<T, double>)
          p.*uye = deger.real();
        else
          p.*uye = deger.trimmed();
      },
      alan.alan);
}

}  // namespace

std::string sayiBicimi(std::int64_t hane) {
  std::string bicim = "#,##0";
  for (std::int64_t i = 1; i <= hane; ++i) bicim += i == 1 ? ".0" : "0";
  return bicim;
}

bool Firma_Parametre_Yukle(Oturum& oturum, std::int64_t sysfrm_ID) {
  db::Recordset kayit;
  const std::string sql = "SELECT * FROM sysfrmlng WHERE sysfrm_ID=" + std::to_string(sysfrm_ID);
  if (session::Sorgu_Ac(oturum, kayit, sql) != 0) {
    oturum.Son_Hata = "Firma parametreleri okunamadı.";
    return false;
  }
  if (kayit.state() != db::State::Open || kayit.eof()) {
    oturum.Son_Hata = "Firma kaydı bulunamadı.";
    return false;
  }
  for (const Bicim& bicim : bicimler) oturum.*bicim.alan = sayiBicimi(kayit.field(bicim.sutun).integer());
  P& p = oturum.Parametre;
  for (const Alan& alan : alanlar) yaz(p, alan, kayit.field(alan.sutun));
  for (const Tarih& tarih : tarihler) {
    const db::Value deger = kayit.field(tarih.sutun);
    const auto* gun = deger.as<db::DateTime>();
    p.*tarih.alan = gun ? *gun : p.*tarih.yoksa;
  }
  return true;
}

}  // namespace settings
