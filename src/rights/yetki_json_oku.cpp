// The JSON object of rights, read and written into the tables.
#include <algorithm>

#include "rights/islem.h"
#include "rights/json.h"
#include "rights/yetki_metni.h"
#include "rights/yetki_yaz.h"
#include "session/statements.h"

namespace rights {

namespace {

std::string satirda(int line, const std::string& what) {
  return "satır " + std::to_string(line) + ": " + what;
}

// Empty when the value fits the column; it is then in `out`.
std::string kolonOku(const Kolon& kolon, const JsonDeger& deger, db::Value& out) {
  const std::string ad(kolon.ad);
  if (deger.tur == JsonTuru::Null) {
    out = db::Value();
    return kolon.bosOlur ? "" : ad + " boş (null) olamaz";
  }
  switch (kolon.tur) {
    case KolonTuru::Bit:
      out = deger.sayi == 1;
      return deger.tur == JsonTuru::Sayi && (deger.sayi == 0 || deger.sayi == 1) ? ""
                                                                                 : ad + " 0 ya da 1 olabilir";
    case KolonTuru::Sayi: {
      const std::int64_t most = kolon.ad == "Kullanici_Fiyat" ? 32767 : 2147483647;
      out = deger.sayi;
      return deger.tur == JsonTuru::Sayi && deger.sayi >= 0 && deger.sayi <= most ? ""
                                                                                  : ad + " bir sayı olmalı";
    }
    case KolonTuru::Metin:
      out = deger.metin;
      return deger.tur == JsonTuru::Metin ? sigmazHatasi("Kullanici", kolon.ad, ad, deger.metin)
                                          : ad + " bir metin olmalı";
    case KolonTuru::Dizi:
      break;
  }
  out = deger.metin;
  if (deger.tur != JsonTuru::Metin || deger.metin.find_first_not_of("01") != std::string::npos)
    return ad + " yalnız 0 ve 1 içeren bir metin olmalı";
  if (deger.metin.size() != static_cast<std::size_t>(kolon.genislik))
    return ad + " " + std::to_string(kolon.genislik) + " karakter olmalı, " +
           std::to_string(deger.metin.size()) + " verilmiş";
  return "";
}

struct YerAnahtarlari {
  std::string_view kod, isaret, yer;
  JsonTuru tur;
};
constexpr YerAnahtarlari ambarAnahtarlari{"no", "merkez", "ambar", JsonTuru::Sayi};
constexpr YerAnahtarlari isyeriAnahtarlari{"kod", "varsayilan", "işyeri", JsonTuru::Metin};

// One entry of a list of places.
std::string yerOku(const YerAnahtarlari& k, const JsonNesne& nesne, int line, Yerler& yerler) {
  std::string kod;
  bool isaretli = false, kodVar = false;
  for (const auto& [ad, deger] : nesne) {
    line = deger.satir;
    if (ad == k.kod && deger.tur == k.tur) {
      kod = deger.tur == JsonTuru::Sayi ? std::to_string(deger.sayi) : deger.metin;
      kodVar = true;
    } else if (ad == k.isaret && deger.tur == JsonTuru::Sayi && (deger.sayi == 0 || deger.sayi == 1)) {
      isaretli = deger.sayi == 1;
    } else {
      return satirda(line, "\"" + ad + "\" anlaşılmadı");
    }
  }
  const auto yer =
      std::find_if(yerler.begin(), yerler.end(), [&](const YerYetkisi& y) { return y.kod == kod; });
  if (!kodVar || yer == yerler.end())
    return satirda(line, "bu firmada böyle bir " + std::string(k.yer) + " yok: " + kod);
  if (isaretli && std::any_of(yerler.begin(), yerler.end(), [](const YerYetkisi& y) { return y.varsayilan; }))
    return satirda(line, "birden çok \"" + std::string(k.isaret) + "\" olamaz");
  yer->Sec = true;
  yer->varsayilan = isaretli;
  return "";
}

std::string yerleriOku(const YerAnahtarlari& k, const JsonDeger& deger, Yerler& yerler) {
  if (deger.tur != JsonTuru::Liste) return satirda(deger.satir, "bir liste bekleniyordu");
  for (YerYetkisi& yer : yerler) yer.Sec = yer.varsayilan = false;
  for (const JsonNesne& nesne : deger.liste)
    if (std::string hata = yerOku(k, nesne, deger.satir, yerler); !hata.empty()) return hata;
  return "";
}

std::string birOku(const std::string& ad, const JsonDeger& deger, YetkiDuzeni& duzen, JsonKapsami& kapsam) {
  if (ad == "ambarlar") {
    kapsam.ambarlar = true;
    return yerleriOku(ambarAnahtarlari, deger, duzen.YetkiAmbarGrd);
  }
  if (ad == "isyerleri") {
    kapsam.isyerleri = true;
    return yerleriOku(isyeriAnahtarlari, deger, duzen.YetkiIsyeriGrd);
  }
  const auto sira = kolonSirasi(ad);
  if (!sira) return satirda(deger.satir, "bilinmeyen yetki: " + ad);
  const std::string hata = kolonOku(kolonlar()[*sira], deger, duzen.satir.degerler[*sira]);
  kapsam.kolonlar.push_back(*sira);
  return hata.empty() ? "" : satirda(deger.satir, hata);
}

// The mark of a list becomes the default, unless the object names the default itself.
void varsayilan(KolonDegerleri& degerler, const char* kolon, const Yerler& yerler, bool vardi,
                const JsonKapsami& kapsam) {
  const std::size_t sira = *kolonSirasi(kolon);
  if (std::find(kapsam.kolonlar.begin(), kapsam.kolonlar.end(), sira) != kapsam.kolonlar.end()) return;
  for (const YerYetkisi& yer : yerler)
    if (yer.varsayilan) return void(degerler.emplace_back(kolon, yer.kod));
  if (vardi) degerler.emplace_back(kolon, db::Value());
}

}  // namespace

std::string yetkiJsonOku(std::string_view json, YetkiDuzeni& duzen, JsonKapsami& kapsam) {
  const JsonSonucu okunan = jsonOku(json);
  if (!okunan.hata.empty()) return okunan.hata;
  YetkiDuzeni yeni = duzen;
  for (const auto& [ad, deger] : okunan.nesne)
    if (std::string hata = birOku(ad, deger, yeni, kapsam); !hata.empty()) return hata;
  duzen = std::move(yeni);
  return "";
}

bool yetkiJsonYaz(session::Oturum& oturum, YetkiDuzeni& duzen, const JsonKapsami& kapsam) {
  if (!katalogaBaglan(oturum)) return false;
  const bool yazildi = tekIslem(oturum, "Yetkiler kaydedilemedi; hiçbir şey değiştirilmedi.", [&] {
    db::Recordset kayitlar;
    if (!satiriAc(oturum, kayitlar, duzen.Firma_ID, duzen.Kullanici_ID)) return false;
    KolonDegerleri degerler;
    for (const std::size_t sira : kapsam.kolonlar)
      degerler.emplace_back(kolonlar()[sira].ad, duzen.satir.degerler[sira]);
    if (kapsam.ambarlar) varsayilan(degerler, "Def_Ambar_No", duzen.YetkiAmbarGrd, duzen.merkezVardi, kapsam);
    if (kapsam.isyerleri)
      varsayilan(degerler, "DEF_Isyeri_Kod", duzen.YetkiIsyeriGrd, duzen.isyeriVardi, kapsam);
    if (!satiriYaz(oturum, kayitlar, degerler)) return false;
    yerYetkileriniYaz(oturum, duzen.firma, duzen.Kullanici_ID,
                      kapsam.ambarlar ? &duzen.YetkiAmbarGrd : nullptr,
                      kapsam.isyerleri ? &duzen.YetkiIsyeriGrd : nullptr);
    return true;
  });
  if (yazildi) oturum.kutular->message("Firma İçin Yetkilendirme Tamamlandı.");
  return yazildi;
}

bool yetkiKopyala(session::Oturum& oturum, YetkiDuzeni duzen, const YetkiDuzeni& hedef) {
  duzen.Kullanici_ID = hedef.Kullanici_ID;
  duzen.Kullanici_Ad = hedef.Kullanici_Ad;
  duzen.Kullanici_Sifre = hedef.Kullanici_Sifre;
  duzen.Firma_Combo = hedef.Firma_Combo;
  duzen.Firma_ID = hedef.Firma_ID;
  duzen.firma = hedef.firma;
  duzen.merkezVardi = hedef.merkezVardi;
  duzen.isyeriVardi = hedef.isyeriVardi;
  return Yetki_Kaydet(oturum, duzen);
}

}  // namespace rights
