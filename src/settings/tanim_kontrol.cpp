#include "settings/tanim_kontrol.h"

#include <cstdlib>
#include <unordered_map>

#include "session/metin.h"
#include "session/sayi.h"

namespace settings {

namespace {

using session::Trim;

int adet(const IzgaraSatirlari& satirlar) {
  return static_cast<int>(satirlar.size());
}

std::string hucre(const IzgaraSatirlari& satirlar, int satir, int kolon) {
  return Trim(satirlar[static_cast<std::size_t>(satir)].hucreler[static_cast<std::size_t>(kolon)]);
}

bool gizli(const IzgaraSatirlari& satirlar, int satir) {
  return satirlar[static_cast<std::size_t>(satir)].gizli;
}

std::string no(int satir) {
  return std::to_string(satir + 1);
}

// --- Workplaces and salespeople: one walk, two vocabularies

struct KodluSozler {
  std::string_view kodKolonu, bos, adYok, kodYok, ayniIlk, ayniSon;
};
constexpr int kod = 0, ad = 1;  // both grids begin with them

constexpr KodluSozler isyeriSozleri = {"Isyeri_Kodu",
                                       "Bütün İşyerlerini Silemezsiniz.",
                                       ". Satırda İşyerinin Adı Girilmemiştir. Lütfen Kontrol Ediniz",
                                       ". Satırda İşyeri Kodu Girilmemiş.Lütfen Girişleri KOntrol Ediniz",
                                       ". Satırla ",
                                       ". Satırda Aynı İşyeri Koduna Rastlanmıştır"};
// "Satırdsa" is the system's own spelling.
constexpr KodluSozler saticiSozleri = {"Satici_Kodu",
                                       "Fis Boş Kaydedilemez",
                                       ". Satırda Satıcının Adı Girilmemiştir. Lütfen Kontrol Ediniz",
                                       ". Satırda Satıcı Kodu Girilmemiş.Lütfen Girişleri KOntrol Ediniz",
                                       ". Satırla ",
                                       ". Satırdsa Aynı Satıcı Koduna Rastlanmıştır"};

bool kalanVar(const IzgaraSatirlari& satirlar) {
  for (int i = 0; i < adet(satirlar); ++i) {
    if (hucre(satirlar, i, kod).empty() || hucre(satirlar, i, ad).empty()) return false;
    if (!gizli(satirlar, i)) return true;
  }
  return false;
}

Kontrol kodluKontrol(const IzgaraSatirlari& satirlar, int satir, const KodluSozler& s) {
  if (!kalanVar(satirlar)) return {std::string(s.bos)};
  for (int i = 0; i < adet(satirlar) && !hucre(satirlar, i, kod).empty(); ++i)
    if (!gizli(satirlar, i) && hucre(satirlar, i, ad).empty())
      return {no(i) + std::string(s.adYok), i, s.kodKolonu};
  for (int i = satir + 1; satir >= 0 && i < adet(satirlar); ++i)
    if (!gizli(satirlar, i) && hucre(satirlar, i, kod).empty() && !hucre(satirlar, i, ad).empty())
      return {no(i) + std::string(s.kodYok), i, s.kodKolonu};
  // The first pair of the same code, found in one walk: 5,000 rows against each other would take a while.
  // A removed row that had the code does not count.
  std::unordered_map<std::string, int> ilk;
  Kontrol sonuc;
  int enKucuk = adet(satirlar);
  for (int i = 0; i < adet(satirlar); ++i) {
    const std::string metin = hucre(satirlar, i, kod);
    if (gizli(satirlar, i) || metin.empty()) continue;
    const auto [yer, yeni] = ilk.emplace(metin, i);
    if (yeni || yer->second >= enKucuk) continue;
    enKucuk = yer->second;
    sonuc = {no(enKucuk) + std::string(s.ayniIlk) + no(i) + std::string(s.ayniSon)};
  }
  return sonuc;
}

// --- Warehouses, prices, currencies: keys that may not come twice

struct AnahtarSozleri {
  int kolon, ad;
  bool sayi;
  std::string_view sayiDegil, ayni, bos;
};
constexpr AnahtarSozleri ambarGiris = {
    1,
    2,
    true,
    "Lütfen Ambar Numarasına Sayı Giriniz",
    "Su An Girmiş olduğunuz Ambar Numarası Daha Önceden Bir Ambara Verilmiştir lütfen Değiştirin",
    "Lütfen Ambar Numarası Giriniz"};
constexpr AnahtarSozleri ambarKayit = {
    1,
    2,
    true,
    "Lütfen Ambar Numarasına Sayı Giriniz",
    "Su An Girmiş Olduğunuz Ambar Numarası Daha Önceden Bir Ambara Verilmiştir Lütfen Değiştirin",
    "Lütfen Ambar Numarası Giriniz"};
constexpr AnahtarSozleri fiyatGiris = {
    0,
    1,
    true,
    "Lütfen Fiyat Numarasına Sayı Giriniz",
    "Şu An Girmiş Olduğunuz Fiyat Numarası Daha Önceden Bir Fiyata Verilmiştir lütfen Değiştirin",
    "Lütfen Fiyat Numarası Giriniz"};
constexpr AnahtarSozleri fiyatKayit = {
    0,
    1,
    true,
    "Lütfen Fiyat Numarasına Sayı Giriniz",
    "Su An Girmiş olduğunuz Fiyat Numarası Daha Önceden Bir Fiyata Verilmiştir Lütfen Değiştirin",
    "Lütfen Fiyat Numarası Giriniz"};
constexpr AnahtarSozleri dovizGiris = {
    1,
    2,
    false,
    "",
    "Şu An Girmiş olduğunuz Döviz kodu Daha Önceden Bir Dövize Verilmiştir lütfen Değiştirin",
    "Lütfen Döviz Kodunu Giriniz"};
constexpr AnahtarSozleri dovizKayit = {
    1,
    2,
    false,
    "",
    "Şu An Girmiş olduğunuz Döviz Kodu Daha Önceden Bir Dövize Verilmiştir lütfen Değiştirin",
    "Lütfen Döviz Kodunu Giriniz"};

std::string anahtarKontrol(const std::string& metin, const std::string& isim, bool ayniVar,
                           const AnahtarSozleri& s) {
  const std::string yeni = Trim(metin);
  if (yeni.empty()) return Trim(isim).empty() ? "" : std::string(s.bos);
  if (s.sayi && !session::sayiMi(yeni)) return std::string(s.sayiDegil);
  return ayniVar ? std::string(s.ayni) : "";
}

bool ayniAnahtarVar(const IzgaraSatirlari& satirlar, int satir, const AnahtarSozleri& s) {
  const std::string aranan = anahtarNormu(s.sayi, hucre(satirlar, satir, s.kolon));
  for (int i = 0; i < adet(satirlar); ++i)
    if (i != satir && !gizli(satirlar, i) && anahtarNormu(s.sayi, hucre(satirlar, i, s.kolon)) == aranan)
      return true;
  return false;
}

// The current cell again, as the grid checks it on leaving.
Kontrol gecerliHucre(const IzgaraSatirlari& satirlar, int satir, const AnahtarSozleri& s,
                     std::string_view kolon) {
  if (satir < 0 || satir >= adet(satirlar)) return {};
  std::string hata = anahtarKontrol(hucre(satirlar, satir, s.kolon), hucre(satirlar, satir, s.ad),
                                    ayniAnahtarVar(satirlar, satir, s), s);
  return hata.empty() ? Kontrol{} : Kontrol{std::move(hata), satir, kolon};
}

bool isaretli(const IzgaraSatirlari& satirlar, int kolon) {
  for (int i = 0; i < adet(satirlar); ++i)
    if (!gizli(satirlar, i) && hucre(satirlar, i, kolon) == "1") return true;
  return false;
}

// A last row that has nothing but the number that the grid gave it.
bool kendiliginden(const IzgaraSatirlari& satirlar, int satir) {
  for (int i = satir + 1; i < adet(satirlar); ++i)
    if (!hucre(satirlar, i, 1).empty() || !hucre(satirlar, i, 2).empty()) return false;
  const int ustteki = satir > 0 ? std::atoi(hucre(satirlar, satir - 1, 1).c_str()) : 0;
  return hucre(satirlar, satir, 2).empty() && hucre(satirlar, satir, 3) != "1" &&
         std::atoi(hucre(satirlar, satir, 1).c_str()) == ustteki + 1;
}

std::string ambarSatiri(const std::string& numara, const std::string& isim, int satir) {
  if (numara.empty()) return no(satir) + " Nolu Satırdaki Ambar Numarası Boş Geçilmiştir.";
  if (!session::sayiMi(numara))
    return no(satir) +
           " Nolu Satırdaki Ambar Numarası İçinde Harflere yada Noktalama İşaretlerine Rastlandı. \nLütfen "
           "Girişleri Düzeltiniz";
  if (std::atof(numara.c_str()) == 0)
    return no(satir) +
           " Nolu Satırda 0(SIFIR) Nolu Ambar Tanıtılmıştır. Lütfen Bu Ambarın Numarasını Değiştiriniz";
  return isim.empty() ? no(satir) + " Nolu Satırdaki Ambar Adı Boş Geçilmiştir." : "";
}

}  // namespace

std::string anahtarNormu(bool sayi, const std::string& metin) {
  const std::string kirpik = Trim(metin);
  return sayi && session::sayiMi(kirpik) ? std::to_string(std::atof(kirpik.c_str())) : kirpik;
}

Kontrol isyeriKontrol(const IzgaraSatirlari& satirlar, int satir) {
  return kodluKontrol(satirlar, satir, isyeriSozleri);
}
Kontrol saticiKontrol(const IzgaraSatirlari& satirlar, int satir) {
  return kodluKontrol(satirlar, satir, saticiSozleri);
}
Kontrol kontrolsuz(const IzgaraSatirlari&, int) {
  return {};
}

Kontrol ambarKontrol(const IzgaraSatirlari& satirlar, int satir) {
  if (Kontrol k = gecerliHucre(satirlar, satir, ambarKayit, "Ambar_No"); !k.hata.empty()) return k;
  for (int i = 0; i < adet(satirlar); ++i) {
    const std::string numara = hucre(satirlar, i, 1), isim = hucre(satirlar, i, 2);
    if ((numara.empty() && isim.empty()) || kendiliginden(satirlar, i)) break;
    if (std::string hata = ambarSatiri(numara, isim, i); !hata.empty())
      return {std::move(hata), i, isim.empty() ? "Ambar_Ad" : "Ambar_No"};
  }
  if (satirlar.empty() || hucre(satirlar, 0, 2).empty()) return {"Fis Boş Kaydedilemez"};
  if (!isaretli(satirlar, 3))
    return {"Hiçbir Ambar Merkez Olarak Belirlenmemiş Lütfen Ambarlardan Merkez Ambar Olarak Belirleyiniz."};
  return {};
}

Kontrol fiyatKontrol(const IzgaraSatirlari& satirlar, int satir) {
  if (Kontrol k = gecerliHucre(satirlar, satir, fiyatKayit, "Fiyat_Aciklama"); !k.hata.empty()) return k;
  if (!isaretli(satirlar, 2)) return {"Lütfen Fiyatlardan Birini Aktif Fiyat Olarak İşaretleyiniz"};
  return {};
}

Kontrol dovizKontrol(const IzgaraSatirlari& satirlar, int satir) {
  if (Kontrol k = gecerliHucre(satirlar, satir, dovizKayit, "Doviz_Kod"); !k.hata.empty()) return k;
  for (int i = 0; i < adet(satirlar); ++i) {
    const bool kodsuz = hucre(satirlar, i, 1).empty();
    if (kodsuz && hucre(satirlar, i, 2).empty()) break;
    if (kodsuz) return {no(i) + " Nolu Döviz Kodu Boş Geçilmiştir.", i, "Doviz_Kod"};
  }
  return {};
}

std::string ambarKodKontrol(const std::string& metin, const std::string& isim, bool ayniVar) {
  return anahtarKontrol(metin, isim, ayniVar, ambarGiris);
}
std::string fiyatKodKontrol(const std::string& metin, const std::string& isim, bool ayniVar) {
  return anahtarKontrol(metin, isim, ayniVar, fiyatGiris);
}
std::string dovizKodKontrol(const std::string& metin, const std::string& isim, bool ayniVar) {
  return anahtarKontrol(metin, isim, ayniVar, dovizGiris);
}

}  // namespace settings
