#include "company/upgrade/guncelle.h"

#include <sstream>

#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"

namespace cli {

namespace {

using company::upgrade::Sayilar;

constexpr std::array<Secenek, 3> options = {
    {{"--ad", "Güncellenecek firmanın veritabanı adı", true, Secenek::Tur::Metin, "FİRMA"},
     {"--dene", "Çalıştırıp geri alır; yazan deyimleri betik olarak yazdırır", false, Secenek::Tur::Bayrak,
      ""},
     bicimMetin}};

constexpr std::string_view more =
    "Eksik tablo ve kolonları ekler, görünüm ve tetikleyicileri yeniler; yarıda kalan bir güncellemeyi "
    "tamamlar.\n"
    "Yeniden çalıştırmak zarar vermez. --dene'nin yazdığı betik sql -i ile çalıştırılabilir; sayılar o "
    "zaman\n"
    "standart hataya yazılır.";

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

constexpr auto basliklar = [] {
  std::array<std::string_view, sayaclar.size()> adlar{};
  for (std::size_t i = 0; i < adlar.size(); ++i) adlar[i] = sayaclar[i].ad;
  return adlar;
}();

std::vector<std::string> sayiMetinleri(const Sayilar& sayilar) {
  std::vector<std::string> metinler;
  for (const Sayac& sayac : sayaclar) metinler.push_back(std::to_string(sayilar.*sayac.sayi));
  return metinler;
}

void sayilariYaz(std::ostream& out, const Sayilar& sayilar) {
  for (const Sayac& sayac : sayaclar)
    out << (&sayac == sayaclar.data() ? "" : ", ") << sayac.ad << ": " << sayilar.*sayac.sayi;
  out << "\n";
}

// A trial as a script for the command sql. Statements that go together are guarded, so that none of them runs
// once one was refused: the server then takes all of them back and no transaction is open any more.
class Betik {
 public:
  explicit Betik(std::ostream& out) : out_(out) {}

  void yaz(const company::upgrade::DenemeAdimi& adim) {
    if (adim.veritabani != veritabani_) {
      veritabani_ = adim.veritabani;
      yigin("USE [" + veritabani_ + "]");
      yigin("SET XACT_ABORT ON");
    }
    if (adim.reddedilir)
      aciklama("Sunucu reddeder: " + adim.deyimler.front());
    else if (adim.deyimler.size() == 1)
      yigin(adim.deyimler.front());
    else
      birlikte(adim.deyimler);
  }

 private:
  void yigin(std::string_view text) { out_ << text << (text.ends_with('\n') ? "" : "\n") << "GO\n"; }
  void birlikte(const std::vector<std::string>& deyimler) {
    yigin("BEGIN TRANSACTION");
    for (const std::string& deyim : deyimler)
      yigin("IF @@TRANCOUNT>0\nBEGIN\n" + deyim + (deyim.ends_with('\n') ? "END" : "\nEND"));
    yigin("IF @@TRANCOUNT>0 COMMIT TRANSACTION");
  }
  void aciklama(const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) out_ << "-- " << line << "\n";
  }

  std::ostream& out_;
  std::string veritabani_;
};

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const std::string ad = values.metin("ad");
  if (const auto engel = company::upgrade::guncellemeEngeli(komut.oturum, ad)) {
    ortam.err << *engel << "\n";
    return reddedildi;
  }
  const bool dene = values.var("dene");
  Betik betik(ortam.out);
  company::upgrade::Yurutucu::Dinleyici deneme;
  if (dene) deneme = [&](const company::upgrade::DenemeAdimi& adim) { betik.yaz(adim); };
  const auto sonuc = company::upgrade::Veritabani_Guncelle(komut.oturum, ad, std::move(deneme));
  if (!sonuc.baglandi) return reddedildi;
  komut.ilerleme.bitir();
  if (!sonuc.tamamlandi)
    ortam.err << (dene ? "Deneme yarıda kaldı: " : "Güncelleme yarıda kaldı: ") << sonuc.hata << "\n";
  if (values.metin("bicim", "metin") == "metin")
    sayilariYaz(dene ? ortam.bilgi() : ortam.haber(), sonuc.sayilar);
  else
    sonucYaz(dene ? ortam.err : ortam.out, MetinSatirlari(basliklar, {sayiMetinleri(sonuc.sayilar)}),
             bicimi(values, Bicim::Tablo));
  return sonuc.tamamlandi ? tamam : reddedildi;
}

}  // namespace

const Komut& guncelleKomutu() {
  static const Komut command{"guncelle", "Bir firmanın veritabanını bugünkü yapıya getirir", more, options,
                             run};
  return command;
}

}  // namespace cli
