#include "company/sema.h"

#include "cli/komut.h"
#include "cli/metin_satirlari.h"
#include "cli/oturum_ac.h"
#include "cli/sonuc_yaz.h"
#include "session/statements.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 5> options = {{
    {"--ad", "Yapısı yazılacak veritabanının adı", false, Secenek::Tur::Metin, "VERİTABANI"},
    bicimTsv,
    {"--karsilastir", "İki veritabanının farklarını yazar: --karsilastir BİRİNCİ İKİNCİ", false,
     Secenek::Tur::Metin, "VERİTABANI"},
    {"--metin", "Görünüm ve tetikleyici metinleriyle kolonların sıralamasını da yazar ya da karşılaştırır",
     false, Secenek::Tur::Bayrak, ""},
    {"IKINCI", "Karşılaştırılacak ikinci veritabanı", false, Secenek::Tur::Konum, ""},
}};

constexpr std::string_view more =
    "Beş liste yazar: kolonlar, anahtarlar, dizinler, görünümler, tetikleyiciler. Karşılaştırmada "
    "kolonların\n"
    "sırasına, sunucunun verdiği anahtar adlarına ve metinlerin boşluklarına bakılmaz. --metin ile yazılan "
    "liste tamdır: iki sunucu dosyalarıyla karşılaştırılabilir.";

constexpr CikisKodlari kodlar = {"tamam, karşılaştırmada fark yok", "fark var ya da işlem yapılamadı",
                                 "yanlış kullanım"};

std::optional<company::Sema> oku(KomutOturumu& komut, const std::string& ad) {
  try {
    session::Katalog_Bagla(komut.oturum, ad);
    return company::semaOku(*komut.oturum.Baglanti);
  } catch (const db::SqlError& error) {
    komut.ortam.err << ad << ": " << hataSatiri(error) << "\n";
    return std::nullopt;
  }
}

void semaYaz(std::ostream& out, const company::Sema& sema, Bicim bicim, bool metin) {
  const bool json = bicim == Bicim::Json;
  if (json) out << "{";
  bool first = true;
  for (const company::SemaBolumu& bolum : sema.bolumler) {
    if (!first) out << (json ? ",\n" : "\n");
    first = false;
    if (json) out << "\"" << bolum.ad << "\": ";
    const company::SemaBolumu kisa = metin ? company::SemaBolumu() : bolum.ayrintisiz();
    const company::SemaBolumu& yazilan = metin ? bolum : kisa;
    sonucYaz(out, MetinSatirlari(yazilan.basliklar, yazilan.satirlar), bicim);
  }
  if (json) out << "}\n";
}

constexpr std::array<std::string_view, 6> farkBasliklari = {"bolum", "ad",      "fark",
                                                            "alan",  "birinci", "ikinci"};

std::string_view farkAdi(company::SemaFarki::Tur tur) {
  using Tur = company::SemaFarki::Tur;
  return tur == Tur::YalnizBirinci  ? "yalnız birincide"
         : tur == Tur::YalnizIkinci ? "yalnız ikincide"
                                    : "değişik";
}

int karsilastir(KomutOturumu& komut, const std::string& birinci, const std::string& ikinci, Bicim bicim,
                bool siralama) {
  const auto a = oku(komut, birinci);
  if (!a) return reddedildi;
  const auto b = oku(komut, ikinci);
  if (!b) return reddedildi;
  std::vector<std::vector<std::string>> satirlar;
  for (const company::SemaFarki& fark : company::semaKarsilastir(*a, *b, siralama))
    satirlar.push_back(
        {fark.bolum, fark.ad, std::string(farkAdi(fark.tur)), fark.alan, fark.birinci, fark.ikinci});
  if (!satirlar.empty() || bicim == Bicim::Json)
    sonucYaz(komut.ortam, MetinSatirlari(farkBasliklari, satirlar), bicim);
  komut.ortam.bilgi() << "Fark sayısı: " << satirlar.size() << "\n";
  return satirlar.empty() ? tamam : reddedildi;
}

int run(Ortam& ortam, const Degerler& values) {
  const Bicim bicim = bicimi(values, Bicim::Tsv);
  const bool compare = values.var("karsilastir");
  if (compare == values.var("ad") || compare != values.var("IKINCI")) {
    ortam.err << "Ya --ad AD ya da --karsilastir BİRİNCİ İKİNCİ verilmelidir.\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.sunucuyuOku()) return reddedildi;
  if (compare)
    return karsilastir(komut, values.metin("karsilastir"), values.metin("IKINCI"), bicim,
                       values.var("metin"));
  const auto sema = oku(komut, values.metin("ad"));
  if (!sema) return reddedildi;
  semaYaz(ortam.out, *sema, bicim, values.var("metin"));
  return tamam;
}

}  // namespace

const Komut& semaKomutu() {
  static const Komut command{
      "sema", "Bir veritabanının yapısını yazar ya da iki yapıyı karşılaştırır", more, options, run, kodlar};
  return command;
}

}  // namespace cli
