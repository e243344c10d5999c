// The options of zembera-sunucu, for its parser and its manual page.
#pragma once

#include "cli/komut.h"

namespace app {

inline constexpr std::array<cli::Secenek, 8> sunucuSecenekleri = {
    {{"--klasor", "Veri klasörü", true, cli::Secenek::Tur::Metin, "KLASÖR"},
     {"--adres", "Dinlenecek adres (varsayılan 127.0.0.1)", false, cli::Secenek::Tur::Metin, "ADRES"},
     {"--kapi", "Dinlenecek kapı (varsayılan 1433; 0: boş bir kapı)", false, cli::Secenek::Tur::Metin, "NO"},
     {"--baglanti", "En çok bağlantı (varsayılan 1000)", false, cli::Secenek::Tur::Metin, "SAYI"},
     {"--sertifika", "TLS sertifikası, PEM (yoksa veri klasöründe kendisi bir tane yapar)", false,
      cli::Secenek::Tur::Metin, "DOSYA"},
     {"--anahtar", "Sertifikanın anahtarı, PEM (yoksa sertifika dosyasında)", false, cli::Secenek::Tur::Metin,
      "DOSYA"},
     {"--yerel-sifresiz", "Bu makinedeki programlar TLS olmadan da bağlanabilir", false,
      cli::Secenek::Tur::Bayrak, ""},
     {"--surum", "Sürümü yazar", false, cli::Secenek::Tur::Bayrak, ""}}};
inline constexpr std::string_view sunucuAciklamasi =
    "Bir veri klasörünü ağdaki programlara SQL Server olarak sunar";
inline constexpr cli::CikisKodlari sunucuKodlari = {
    "sunucu durduruldu", "klasör açılamadı ya da adres dinlenemedi", "yanlış kullanım"};

}  // namespace app
