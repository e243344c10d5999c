#include "company/upgrade/rapor.h"

#include <array>

#include "company/upgrade/guncelle.h"

namespace company::upgrade {

namespace {

struct Satir {
  std::string_view yazi;
  std::int64_t Sayilar::*sayi;
};
constexpr std::array<Satir, 5> satirlar = {{{"Eklenen tablo", &Sayilar::tablolar},
                                            {"Eklenen kolon", &Sayilar::eklenen},
                                            {"Değişen kolon", &Sayilar::degisen},
                                            {"Onarılan satır", &Sayilar::satirlar},
                                            {"Reddedilen deyim", &Sayilar::reddedilen}}};

}  // namespace

std::string guncellemeRaporu(session::Oturum& oturum, const std::string& firmaAdi, bool deneme) {
  try {
    if (const auto engel = guncellemeEngeli(oturum, firmaAdi)) return *engel;
  } catch (const db::SqlError& hata) {
    return std::string("Veritabanı güncellenemedi: ") + hata.what();
  }
  const auto dinleyici = deneme ? Yurutucu::Dinleyici([](const DenemeAdimi&) {}) : Yurutucu::Dinleyici();
  const GuncellemeSonucu sonuc = Veritabani_Guncelle(oturum, firmaAdi, dinleyici);
  if (!sonuc.baglandi) return "";
  if (!sonuc.tamamlandi)
    return "\"" + firmaAdi + "\": güncelleme yarıda kaldı: " + sonuc.hata +
           (deneme ? "\nHiçbir şey değiştirilmedi." : "\nYeniden çalıştırıldığında kaldığı yerden sürer.");
  std::string metin =
      "\"" + firmaAdi + "\" " +
      (deneme ? "denendi; hiçbir şey değiştirilmedi. Güncelleme şunları yapacak:" : "güncellendi.");
  for (const Satir& satir : satirlar)
    metin += "\n" + std::string(satir.yazi) + ": " + std::to_string(sonuc.sayilar.*satir.sayi);
  return metin;
}

}  // namespace company::upgrade
