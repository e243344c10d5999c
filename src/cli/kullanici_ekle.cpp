#include "cli/kullanici_ortak.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 3> own = {
    {{"--ad", "Kullanıcının adı; büyük harfe çevrilir", true, Secenek::Tur::Metin, "AD"},
     {"--firma", "Kullanacağı firmaların veritabanı adları, virgülle", true, Secenek::Tur::Metin,
      "FİRMA[,FİRMA…]"},
     {"--yonetici", "Kullanıcı yöneticidir", false, Secenek::Tur::Bayrak, ""}}};
constexpr auto options = [] {
  std::array<Secenek, own.size() + postaSecenekleri.size()> all{};
  std::copy(own.begin(), own.end(), all.begin());
  std::copy(postaSecenekleri.begin(), postaSecenekleri.end(), all.begin() + own.size());
  return all;
}();

int run(Ortam& ortam, const Degerler& values) {
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  komut.oturum.Yeni_Kayit = true;
  komut.oturum.Inceleme = false;
  rights::KullaniciKarti kart;
  if (!rights::Kullanici_Karti_Ac(komut.oturum, kart)) return reddedildi;
  kart.Kullanici_Adi = values.metin("ad");
  kart.Yonetici = values.var("yonetici");
  if (!firmalariSec(komut, kart, values.metin("firma")) || !sifreyiSor(ortam, kart) ||
      !postayiKoy(ortam, kart, values))
    return reddedildi;
  return rights::Ekle_Tamam(komut.oturum, kart).kaydedildi ? tamam : reddedildi;
}

}  // namespace

const Komut& kullaniciEkleKomutu() {
  static const Komut command{
      "kullanici-ekle", "Kullanıcı kartının denetimleriyle yeni bir kullanıcı ekler",
      "Kullanıcı, verilen her firmada bütün yetkilerle başlar. Şifre sorulur; terminal yoksa\n"
      "standart girdinin ilk satırıdır, --smtp-sifre verilmişse ikinci satır posta şifresidir.",
      options, run};
  return command;
}

}  // namespace cli
