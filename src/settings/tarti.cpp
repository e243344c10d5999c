#include "settings/tarti.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "session/metin.h"
#include "session/sayi.h"
#include "settings/firma_baglanti.h"
#include "settings/toplu_yazici.h"

namespace settings {

namespace {

using session::HucreTuru;
using session::IzgaraKolonu;
using session::IzgaraSatiri;
using session::IzgaraSatirlari;
using session::Oturum;

constexpr std::array kolonlar = {
    IzgaraKolonu{"Tasarim_ID", "", 0, HucreTuru::Sayi, true},
    IzgaraKolonu{"Adetli", "Adetli", 80, HucreTuru::Tik},
    IzgaraKolonu{"Bayrak_Kodu", "Bayrak Kodu", 120, HucreTuru::Metin, false, false, false, 9},
    IzgaraKolonu{"Master_Kod", "Stok Kodu", 110, HucreTuru::Sayi, false, false, false, 9},
    IzgaraKolonu{"KG", "KG Hane Sayısı", 130, HucreTuru::Sayi, false, false, false, 9},
    IzgaraKolonu{"GR", "GR Hane Sayısı", 130, HucreTuru::Sayi, false, false, false, 9},
    IzgaraKolonu{"CD", "Check Digit", 100, HucreTuru::Sayi, false, true}};

constexpr int barkodHanesi = 13;
constexpr std::string_view lutfen = "Lütfen ";

const std::string& hucre(const IzgaraSatiri& satir, TartiKolonu kolon) {
  return satir.hucreler[static_cast<std::size_t>(kolon)];
}

double sayi(const IzgaraSatiri& satir, TartiKolonu kolon) {
  std::string metin = session::Trim(hucre(satir, kolon));
  std::ranges::replace(metin, ',', '.');
  return std::atof(metin.c_str());
}

bool tamSayi(const IzgaraSatiri& satir, TartiKolonu kolon) {
  return session::Trim(hucre(satir, kolon)).find_first_not_of("0123456789") == std::string::npos;
}

struct Hane {
  TartiKolonu kolon;
  std::string_view hata;
};
constexpr std::array haneler = {
    Hane{Master_Kod, ". satırdaki Stok Kod Hane Sayısı İçin Lütfen Sayısal Bir Değer Giriniz"},
    Hane{KG, ". satırdaki KG(Kilogram) Hane Sayısı İçin Lütfen Sayısal Bir Değer Giriniz"},
    Hane{GR, ". satırdaki GR(Gram) Hane Sayısı İçin Lütfen Sayısal Bir Değer Giriniz"}};

// The message of one row; `durur` when the scan ends with it.
std::string satirHatasi(IzgaraSatiri& satir, const std::string& no, bool& durur) {
  const std::string bas = std::string(lutfen) + no;
  std::string hata;
  durur = true;
  if (!session::sayiMi(hucre(satir, Bayrak_Kodu)))
    return bas + ". satırdaki Bayrak Koduna Sayısal Bir Deger giriniz";
  if (sayi(satir, Bayrak_Kodu) <= 0) {
    hata = bas + ". satırdaki Bayrak Koduna lütfen 0(Sıfır)'dan büyük bir değer giriniz";
  } else {
    std::string& bayrak = satir.hucreler[Bayrak_Kodu];
    // Neither "1,5" nor "+7" nor "007" are digits of a barcode.
    if (sayi(satir, Bayrak_Kodu) > 99 || session::Trim(bayrak).size() > 2 || !tamSayi(satir, Bayrak_Kodu))
      return bas + ". satırdaki Bayrak Koduna 2 Haneli bir Sayı Giriniz.";
    if (session::Trim(bayrak).size() == 1) bayrak = "0" + session::Trim(bayrak);
  }
  for (const Hane& hane : haneler)
    if (!session::sayiMi(hucre(satir, hane.kolon))) return bas + std::string(hane.hata);
  const bool tam = std::ranges::all_of(haneler, [&](const Hane& hane) { return tamSayi(satir, hane.kolon); });
  if (!tam || sayi(satir, Master_Kod) + sayi(satir, KG) + sayi(satir, GR) + 3 != barkodHanesi)
    return bas + ". satırdaki barkod tasarımını 13 Haneye Tamamlayınız";
  durur = false;
  return hata;
}

std::string deyim(const IzgaraSatiri& satir) {
  const std::string& id = hucre(satir, Tasarim_ID);
  if (satir.gizli) return id.empty() ? "" : "DELETE FROM TARTIBARKOD WHERE Tasarim_ID=" + id;
  if (hucre(satir, Adetli).empty()) return {};
  const std::string bayrak = db::escape(session::Trim(hucre(satir, Bayrak_Kodu)));
  const auto rakam = [&](TartiKolonu kolon) { return std::to_string(static_cast<int>(sayi(satir, kolon))); };
  const std::string adet = hucre(satir, Adetli) == "1" ? "1" : "0";
  if (!id.empty())
    return "UPDATE TARTIBARKOD SET Bayrak_Kodu='" + bayrak + "',Master_Kod=" + rakam(Master_Kod) +
           ",KG=" + rakam(KG) + ",GR=" + rakam(GR) + ",Adetli=" + adet + " WHERE Tasarim_ID=" + id;
  return "INSERT INTO TARTIBARKOD (Bayrak_Kodu,Master_Kod,KG,GR,Adetli) VALUES ('" + bayrak + "'," +
         rakam(Master_Kod) + "," + rakam(KG) + "," + rakam(GR) + "," + adet + ")";
}

IzgaraSatirlari satirlariOku(const db::Rows& tablo) {
  IzgaraSatirlari satirlar;
  for (std::int64_t i = 0; i < tablo.count(); ++i) {
    IzgaraSatiri satir = bosTartiSatiri();
    for (std::size_t k = 0; k < CD; ++k) {
      const db::Value deger = tablo.value(i, kolonYeri(tablo, kolonlar[k].anahtar));
      satir.hucreler[k] = k == Adetli ? (deger.boolean() ? "1" : "0") : deger.trimmed();
    }
    satirlar.push_back(std::move(satir));
  }
  return satirlar;
}

// The last digit makes the weighted sum of all a multiple of ten.
char kontrolHanesi(std::string_view ilkOnIki) {
  int toplam = 0;
  for (std::size_t i = 0; i < ilkOnIki.size(); ++i) toplam += (ilkOnIki[i] - '0') * (i % 2 == 0 ? 1 : 3);
  return static_cast<char>('0' + (10 - toplam % 10) % 10);
}

}  // namespace

std::span<const IzgaraKolonu> tartiKolonlari() {
  return kolonlar;
}

IzgaraSatiri bosTartiSatiri() {
  return {{"", "", "", "", "", "", "1"}};
}

TartiListesi Tarti_Yukle(Oturum& oturum) {
  if (!oturum.Baglanti2) return {{}, "Firmanın veritabanına bağlı değil."};
  try {
    return {satirlariOku(*oturum.Baglanti2->query("SELECT * FROM TARTIBARKOD")), {}};
  } catch (const db::SqlError& hata) {
    return {{}, sqlHatasi(hata, oturum.Baglanti2->parts().database)};
  }
}

std::string Tarti_Kontrol(IzgaraSatirlari& satirlar) {
  std::string son;
  for (std::size_t i = 0; i < satirlar.size(); ++i) {
    if (satirlar[i].gizli) continue;
    bool durur = false;
    std::string hata = satirHatasi(satirlar[i], std::to_string(i + 1), durur);
    if (!hata.empty()) son = std::move(hata);
    if (durur) break;
  }
  return son;
}

CakismaKurali tartiCakismasi() {
  return {kolonlar, Tasarim_ID, Bayrak_Kodu, Bayrak_Kodu, {}};
}

ListeKaydi Tarti_Kaydet(Oturum& oturum, const IzgaraSatirlari& satirlar, const IzgaraSatirlari& okunan) {
  ListeKaydi kayit;
  try {
    TopluYazici yazici(*oturum.Baglanti2);
    kayit.simdiki.push_back(satirlariOku(*yazici.oku("SELECT * FROM TARTIBARKOD WITH (UPDLOCK,HOLDLOCK)")));
    kayit.aradaki = aradakiFarklar(tartiCakismasi(), okunan, kayit.simdiki.front());
    if (!kayit.aradaki.empty()) return kayit;
    for (const IzgaraSatiri& satir : satirlar)
      if (const std::string d = deyim(satir); !d.empty()) yazici.ekle(d);
    yazici.bitir();
  } catch (const db::SqlError& hata) {
    kayit.hata = sqlHatasi(hata, oturum.Baglanti2->parts().database);
  }
  return kayit;
}

TartiBarkodu Tarti_Coz(const IzgaraSatirlari& satirlar, std::string_view barkod) {
  TartiBarkodu sonuc;
  const std::string metin = session::Trim(barkod);
  sonuc.onUcHane = metin.size() == barkodHanesi && metin.find_first_not_of("0123456789") == std::string::npos;
  if (!sonuc.onUcHane) return sonuc;
  sonuc.kontrol = metin.back();
  sonuc.beklenen = kontrolHanesi(std::string_view(metin).substr(0, barkodHanesi - 1));
  sonuc.kontrolDogru = sonuc.kontrol == sonuc.beklenen;
  sonuc.bayrak = metin.substr(0, 2);
  for (const IzgaraSatiri& satir : satirlar) {
    std::string bayrak = session::Trim(hucre(satir, Bayrak_Kodu));
    if (bayrak.size() == 1) bayrak.insert(0, "0");
    if (satir.gizli || bayrak != sonuc.bayrak) continue;
    const auto kod = static_cast<std::size_t>(sayi(satir, Master_Kod)),
               kg = static_cast<std::size_t>(sayi(satir, KG)), gr = static_cast<std::size_t>(sayi(satir, GR));
    if (kod + kg + gr + 3 != barkodHanesi) continue;
    sonuc.tasarimVar = true;
    sonuc.adetli = hucre(satir, Adetli) == "1";
    sonuc.stokKodu = metin.substr(2, kod);
    sonuc.kg = metin.substr(2 + kod, kg);
    sonuc.gr = metin.substr(2 + kod + kg, gr);
    break;
  }
  return sonuc;
}

}  // namespace settings
