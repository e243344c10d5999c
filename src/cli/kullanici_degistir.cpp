#include "cli/kullanici_ortak.h"

namespace cli {

namespace {

constexpr std::array<Secenek, 6> own = {
    {{"--ad", "Değiştirilecek kullanıcının adı", true, Secenek::Tur::Metin, "KULLANICI"},
     {"--yeni-ad", "Yeni adı", false, Secenek::Tur::Metin, "AD"},
     {"--firma", "Kullanacağı firmalar, virgülle; verilmeyen firmadaki yetkileri silinir", false,
      Secenek::Tur::Metin, "FİRMA[,FİRMA…]"},
     {"--sifre", "Yeni şifre sorar", false, Secenek::Tur::Bayrak, ""},
     {"--yonetici", "Kullanıcı yöneticidir", false, Secenek::Tur::Bayrak, ""},
     {"--yonetici-degil", "Kullanıcı yönetici değildir", false, Secenek::Tur::Bayrak, ""}}};
constexpr auto options = [] {
  std::array<Secenek, own.size() + postaSecenekleri.size()> all{};
  std::copy(own.begin(), own.end(), all.begin());
  std::copy(postaSecenekleri.begin(), postaSecenekleri.end(), all.begin() + own.size());
  return all;
}();

int run(Ortam& ortam, const Degerler& values) {
  if (values.var("yonetici") && values.var("yonetici-degil")) {
    ortam.err << "--yonetici ile --yonetici-degil birlikte verilemez.\n";
    return yanlisKullanim;
  }
  KomutOturumu komut(ortam);
  if (!komut.katalogaBagla()) return reddedildi;
  const auto id = kullaniciBul(komut, values.metin("ad"));
  if (!id) return reddedildi;
  komut.oturum.Yeni_Kayit = komut.oturum.Inceleme = false;
  komut.oturum.Secili_ID = *id;
  rights::KullaniciKarti kart;
  if (!rights::Kullanici_Karti_Ac(komut.oturum, kart)) return reddedildi;
  if (values.var("yeni-ad")) kart.Kullanici_Adi = values.metin("yeni-ad");
  if (values.var("yonetici") || values.var("yonetici-degil")) kart.Yonetici = values.var("yonetici");
  if (values.var("firma") && !firmalariSec(komut, kart, values.metin("firma"))) return reddedildi;
  if (values.var("sifre") && !sifreyiSor(ortam, kart)) return reddedildi;
  if (!postayiKoy(ortam, kart, values)) return reddedildi;
  return rights::Ekle_Tamam(komut.oturum, kart).kaydedildi ? tamam : reddedildi;
}

}  // namespace

const Komut& kullaniciDegistirKomutu() {
  static const Komut command{
      "kullanici-degistir", "Bir kullanıcının adını, şifresini, firmalarını değiştirir",
      "Verilmeyen seçenekler olduğu gibi kalır. Süren firmalardaki yetkiler korunur.", options, run};
  return command;
}

}  // namespace cli
