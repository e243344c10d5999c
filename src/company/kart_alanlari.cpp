#include "company/kart_alanlari.h"

#include <algorithm>

#include "catalog/katalog.h"
#include "session/metin.h"
#include "session/tarih.h"

namespace company {

namespace {

constexpr KartAlani alanlar[] = {
    {"sysfrm_nm", &FirmaKarti::Firma_Unvani, "Firma Unvanı", false, true},
    {"sysfrm_dbnm", &FirmaKarti::Firma_Adi, "Database Adı", false, true},
    {"sysfrm_kd", &FirmaKarti::Firma_Kodu, "Firma Kodu", false, true},
    {"Mali_Yil_Baslangic", &FirmaKarti::Bas_Tar, "Mali Yıl Başlangıç", true, false, "KilitBasTarih"},
    {"Mali_Yil_Bitis", &FirmaKarti::Bit_Tar, "Mali Yıl Bitiş", true, false, "KilitBitTarih"},
    {"Adres", &FirmaKarti::Adres, "Adres"},
    {"sehir", &FirmaKarti::Sehir, "Şehir"},
    {"Ulke", &FirmaKarti::Ulke, "Ülke"},
    {"Tel1", &FirmaKarti::Tel1, "Telefon (1)"},
    {"Tel2", &FirmaKarti::Tel2, "Telefon (2)"},
    {"Fax", &FirmaKarti::Fax, "Fax"},
    {"Vergi_Dairesi", &FirmaKarti::Vergi_Dairesi, "Vergi Dairesi"},
    {"Vergi_Numarasi", &FirmaKarti::Vergi_Numarasi, "Vergi Numarası"},
};

const std::pair<std::string_view, db::Value> yeniFirma[] = {
    {"AnaParaVirgul", 2},
    {"BirimFiyatVirGul", 2},
    {"DovizVirgul", 2},
    {"DovizBirimFiyatVirgul", 2},
    {"KurVirgul", 4},
    {"DovizVar", false},
    {"RenkBedenVar", false},
    {"PosVar", true},
    {"BarkodVar", false},
    {"EmanetVar", false},
    {"OnceEmanetAl", false},
    {"HareketKilit", false},
    {"OzelRenkli", 0},
    {"Renk_Ozel", 0},
    {"Renk_Doviz", 0},
    {"Renk_TL", 0},
    {"SatirISK_Dahil", true},
    {"FaturaAltiISK_Dahil", true},
    {"Masraflar_Dahil", true},
    {"StokMinSeviye", 0},
    {"StokMinRenk", 16777215},
    {"StokMaxSeviye", 0},
    {"StokMaxRenk", 16777215},
    {"StokSFRSeviye", 0},
    {"StokSFRRenk", 16777215},
    {"StokSeviyeOzelKontrol", 0},
    {"KDV_Dahildir", 0},
    {"CariStokFiyatBagli", 0},
    {"FarkliISKBirlessin", 0},
    {"PuanVar", false},
    {"DefKDV", 18},
    {"PesinIndirimi", 0},
    {"SecimdeGelecekMiktar", 1},
    {"IrsTakipSuresi", 15},
    {"KasaHareketListeTipi", 1},
    {"KasiyerStokListeTipi", 1},
    {"AlistaFiyatDegis", 0},
    {"SatistaFiyatDegis", 0},
    {"MuhasebelesecekFisler", 1},
    {"OnlineMuhasebe", false},
    {"MuhBenzerSatirBirlestir", true},
    {"TransferFirma", ""},
    {"AmbarKarNoktasidir", 0},
    {"AmbarBakiyesiGoster", 0},
    {"AmbarYetkiyeBagli", 0},
    {"IsyeriYetkiyeBagli", 0},
    {"MasraflarSatistaKardir", 1},
    {"HesapTakipTipi", "Aylık"},
    {"MuafGun", 0},
    {"VadeFarki", 0},
    {"SatisVadeFarki", 0},
    {"VadeFarkiTipi", 1},
    {"KrediLimiti", 0},
    {"Pesinat", 0},
    {"TaksitSayisi", 0},
    {"SatisYapma", 3},
    {"IhtarSayisi", 0},
    {"TahsilatYapma", 3},
    {"TahsilatIhtarSayisi", 0},
    {"DipNotTahsilat", "ÖDEMENİZ İÇİN TEŞEKKÜR EDERİZ"},
    {"DipNotAlisVeris", "MAĞAZAMIZI TERCİH ETTİĞİNİZ İÇİN TEŞEKKÜR EDERİZ"},
    {"Yazarkasa", 1},
    {"FarkliFiyatBirlessin", 0},
    {"TaksitliSatisModu", false},
};

}  // namespace

std::span<const KartAlani> kartAlanlari() {
  return alanlar;
}

const KartAlani& kartAlani(std::string_view column) {
  return *std::find_if(std::begin(alanlar), std::end(alanlar),
                       [&](const KartAlani& alan) { return alan.column == column; });
}

std::size_t kartAlaniGenisligi(std::string_view column) {
  static const catalog::TableDef& firmalar =
      *std::ranges::find(catalog::catalogTables(), std::string("sysfrmlng"), &catalog::TableDef::name);
  const std::string& type = firmalar.column(column)->type;
  return type.starts_with("CHAR(") ? std::stoul(type.substr(5)) : 0;
}

db::Value kartDegeri(const FirmaKarti& kart, const KartAlani& alan) {
  const std::string metin = session::Trim(kart.*alan.text);
  db::DateTime tarih;
  if (alan.tarih && session::tarihOku(metin, tarih)) {
    return tarih;
  }
  return metin;
}

std::span<const std::pair<std::string_view, db::Value>> yeniFirmaDegerleri() {
  return yeniFirma;
}

}  // namespace company
