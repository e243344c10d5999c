#include "company/upgrade/guncelle.h"

#include "cli/komut.h"
#include "cli/oturum_ac.h"

namespace cli {

namespace {

using company::upgrade::Sayilar;

constexpr std::array<Secenek, 2> options = {
    {{"--ad", "Güncellenecek firmanın veritabanı adı", true, Secenek::Tur::Metin, "AD"},
     {"--dene", "Yazan deyimleri çalıştırmaz, yazdırır", false, Secenek::Tur::Bayrak, ""}}};

constexpr std::string_view more =
    "Eksik tablo ve kolonları ekler, görünüm ve tetikleyicileri yeniler; yarıda kalan bir güncellemeyi "
    "tamamlar.\n"
    "Yeniden çalıştırmak zarar vermez.";

struct Sayac {
  std::string_view ad;
  std::int64_t Sayilar::*sayi;
};
constexpr std::array<Sayac, 6> sayaclar = {{{"eklenen tablo", &Sayilar::tablolar},
                                            {"eklenen kolon", &Sayilar::eklenen},
                                            {"değişen kolon", &Sayilar::degisen},
                                            {"onarılan satır", &Sayilar::satirlar},
                                            {"reddedilen deyim", &Sayilar::reddedilen},
                                            {"gönderilen deyim", &Sayilar::gonderilen}}};

void sayilariYaz(std::ostream& out, const Sayilar& sayilar) {
  for (const Sayac& sayac : sayaclar)
    out << (&sayac == sayaclar.data() ? "" : ", ") << sayac.ad << ": " << sayilar.*sayac.sayi;
  out << "\n";
}

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const std::string ad = values.metin("ad");
  if (const auto engel = company::upgrade::guncellemeEngeli(komut.oturum, ad)) {
    ortam.err << *engel << "\n";
    return reddedildi;
  }
  company::upgrade::Yurutucu::Dinleyici deneme;
  if (values.var("dene")) deneme = [&](const std::string& statement) { ortam.out << statement << "\n"; };
  const auto sonuc = company::upgrade::Veritabani_Guncelle(komut.oturum, ad, std::move(deneme));
  if (!sonuc.baglandi) return reddedildi;
  komut.ilerleme.bitir();
  if (!sonuc.tamamlandi) ortam.err << "Güncelleme yarıda kaldı: " << sonuc.hata << "\n";
  sayilariYaz(ortam.out, sonuc.sayilar);
  return sonuc.tamamlandi ? tamam : reddedildi;
}

}  // namespace

const Komut& guncelleKomutu() {
  static const Komut command{"guncelle", "Bir firmanın veritabanını bugünkü yapıya getirir", more, options,
                             run};
  return command;
}

}  // namespace cli
