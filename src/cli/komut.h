// A command of zembera-cli: its options as data and the function that runs it.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/ortam.h"

namespace cli {

struct Secenek {
  // With a value, without one, by position, with a value each time it is given.
  enum class Tur { Metin, Bayrak, Konum, Coklu };
  std::string_view ad;  // as typed: "--db", "-i,--girdi", "IFADE"
  std::string_view aciklama;
  bool zorunlu = false;
  Tur tur = Tur::Metin;
  // How the help names the value, and what a shell offers for it: FİRMA, KULLANICI and VERİTABANI are names
  // that the server knows, DOSYA, KLASÖR and DİZİN are paths.
  std::string_view degerAdi = "METİN";
  std::span<const std::string_view> secimler = {};  // the only values; empty when any is taken
  std::string_view secimAdi = "biçim";              // what one of them is, told when another is given
};

// The forms that every table can be asked for; "metin" is the one to be read.
inline constexpr std::array<std::string_view, 4> tabloBicimleri = {"tsv", "tablo", "json", "metin"};
inline constexpr Secenek bicimTsv{
    "--bicim", "Tablonun biçimi (varsayılan tsv)", false, Secenek::Tur::Metin, "BİÇİM", tabloBicimleri};
inline constexpr Secenek bicimTablo{
    "--bicim", "Tablonun biçimi (varsayılan tablo)", false, Secenek::Tur::Metin, "BİÇİM", tabloBicimleri};
inline constexpr Secenek bicimMetin{
    "--bicim", "Sonucun biçimi (varsayılan metin)", false, Secenek::Tur::Metin, "BİÇİM", tabloBicimleri};

// What the codes of a command mean, from 0.
using CikisKodlari = std::array<std::string_view, 3>;
inline constexpr CikisKodlari genelKodlar = {"tamam", "işlem reddedildi ya da yapılamadı", "yanlış kullanım"};
inline constexpr CikisKodlari farkKodlari = {"fark yok", "fark var ya da karşılaştırılamadı",
                                             "yanlış kullanım"};
inline constexpr CikisKodlari bulguKodlari = {"bulgu yok", "bulgu var ya da denetlenemedi",
                                              "yanlış kullanım"};

// What was given, by the option's last name without dashes ("db", "girdi", "IFADE").
class Degerler {
 public:
  void koy(std::string ad, std::string deger) { degerler_[std::move(ad)] = std::move(deger); }
  void ekle(const std::string& ad, std::string deger) { coklular_[ad].push_back(std::move(deger)); }
  bool var(std::string_view ad) const { return degerler_.contains(ad); }
  std::string metin(std::string_view ad, std::string_view yoksa = "") const {
    const auto at = degerler_.find(ad);
    return at == degerler_.end() ? std::string(yoksa) : at->second;
  }
  const std::vector<std::string>& liste(std::string_view ad) const {
    static const std::vector<std::string> bos;
    const auto at = coklular_.find(ad);
    return at == coklular_.end() ? bos : at->second;
  }

 private:
  std::map<std::string, std::string, std::less<>> degerler_;
  std::map<std::string, std::vector<std::string>, std::less<>> coklular_;
};

struct Komut {
  std::string_view ad;
  std::string_view aciklama;
  std::string_view ek;  // further text at the end of the help; may be empty
  std::span<const Secenek> secenekler;
  int (*calistir)(Ortam& ortam, const Degerler& degerler);  // an exit code
  const CikisKodlari& kodlar = genelKodlar;
  bool gizli = false;  // for programs, not shown in the help
};

// All of them, in the order of the help.
std::span<const Komut& (*const)()> komutlar();

// One file each.
const Komut& kurKomutu();
const Komut& sqlKomutu();
const Komut& firmaListeleKomutu();
const Komut& firmaOlusturKomutu();
const Komut& firmaSilKomutu();
const Komut& guncelleKomutu();
const Komut& ornekVeriKomutu();
const Komut& semaKomutu();
const Komut& denetleKomutu();
const Komut& sunucuAyarlaKomutu();
const Komut& parametreKomutu();
const Komut& parametreKopyalaKomutu();
const Komut& parametreKarsilastirKomutu();
const Komut& numaraKomutu();
const Komut& tanimKomutu();
const Komut& devirKomutu();
const Komut& maliyetKomutu();
const Komut& kullaniciListeleKomutu();
const Komut& kullaniciEkleKomutu();
const Komut& kullaniciDegistirKomutu();
const Komut& kullaniciSilKomutu();
const Komut& yetkiGosterKomutu();
const Komut& yetkiYazKomutu();
const Komut& yetkiKopyalaKomutu();
const Komut& yetkiKarsilastirKomutu();
const Komut& yetkiCizelgeKomutu();
const Komut& kasiyerGosterKomutu();
const Komut& kasiyerYazKomutu();
const Komut& yedekleKomutu();
const Komut& yedekListeleKomutu();
const Komut& yedekDenetleKomutu();
const Komut& yedekZamanlaKomutu();
const Komut& geriAlKomutu();
const Komut& tasiKomutu();
const Komut& servisKomutu();
const Komut& sunucuKomutu();
const Komut& sunucuBaslatKomutu();
const Komut& sunucuDurdurKomutu();
const Komut& sunucuDurumKomutu();
const Komut& offlineKomutu();
const Komut& tamamlaKomutu();

}  // namespace cli
