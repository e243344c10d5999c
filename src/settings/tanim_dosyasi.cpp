#include "settings/tanim_dosyasi.h"

#include <algorithm>
#include <map>
#include <optional>

#include "platform/code_page.h"
#include "session/metin.h"

namespace settings {

namespace {

using session::IzgaraSatiri;
using session::Oturum;
using Satir = std::vector<std::string>;

// --- Reading

std::string coz(std::string_view hucre) {
  std::string sonuc;
  for (std::size_t i = 0; i < hucre.size(); ++i) {
    if (hucre[i] != '\\' || i + 1 == hucre.size()) {
      sonuc += hucre[i];
      continue;
    }
    const char c = hucre[++i];
    sonuc += c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
  }
  return sonuc;
}

std::vector<std::string_view> bol(std::string_view metin, char ayirac) {
  std::vector<std::string_view> parcalar;
  std::size_t bas = 0;
  for (std::size_t son = metin.find(ayirac); son != std::string_view::npos; son = metin.find(ayirac, bas)) {
    parcalar.push_back(metin.substr(bas, son - bas));
    bas = son + 1;
  }
  parcalar.push_back(metin.substr(bas));
  return parcalar;
}

std::string satirBasi(std::size_t satir) {
  return "Satır " + std::to_string(satir) + ": ";
}

struct Dosya {
  std::string hata;
  std::vector<int> kolonlar;  // of the header
  struct Kayit {
    std::size_t satir;  // line of the file, from 1
    Satir hucreler;
  };
  std::vector<Kayit> kayitlar;
};

std::string baslikOku(const ListeTuru& tur, std::string_view satir, Dosya& dosya) {
  for (const std::string_view ad : bol(satir, '\t')) {
    const int k = session::kolonSirasi(tur.kolonlar, ad);
    if (k < 0) return satirBasi(1) + "bilinmeyen kolon: " + std::string(ad);
    if (std::ranges::find(dosya.kolonlar, k) != dosya.kolonlar.end())
      return satirBasi(1) + "kolon iki kez verilmiş: " + std::string(ad);
    dosya.kolonlar.push_back(k);
  }
  return {};
}

Dosya oku(const ListeTuru& tur, std::string_view metin) {
  Dosya dosya;
  if (metin.starts_with("\xEF\xBB\xBF")) metin.remove_prefix(3);
  if (metin.empty()) dosya.hata = "Dosya boş; ilk satırı kolon adları olmalı.";
  const auto satirlar = bol(metin, '\n');
  for (std::size_t i = 0; i < satirlar.size() && dosya.hata.empty(); ++i) {
    std::string_view satir = satirlar[i];
    if (satir.ends_with('\r')) satir.remove_suffix(1);
    if (!platform::isUtf8(satir)) {
      dosya.hata = satirBasi(i + 1) + "dosya UTF-8 değil.";
      return dosya;
    }
    if (i == 0) {
      if (dosya.hata = baslikOku(tur, satir, dosya); !dosya.hata.empty()) return dosya;
      continue;
    }
    if (satir.empty()) continue;
    const auto hucreler = bol(satir, '\t');
    if (hucreler.size() != dosya.kolonlar.size()) {
      dosya.hata = satirBasi(i + 1) + std::to_string(dosya.kolonlar.size()) + " alan bekleniyordu, " +
                   std::to_string(hucreler.size()) + " var.";
      return dosya;
    }
    Dosya::Kayit kayit{i + 1, {}};
    for (const auto hucre : hucreler) kayit.hucreler.push_back(hucre == "NULL" ? "" : coz(hucre));
    dosya.kayitlar.push_back(std::move(kayit));
  }
  return dosya;
}

// --- Merging

struct Birlesme {
  std::string hata;
  IzgaraSatirlari satirlar;
  std::vector<int> dokunulan;              // rows, in the order of the file
  std::map<int, std::size_t> dosyaSatiri;  // row to line
};

// Rows by the text of one column.
std::map<std::string, int> dizin(const IzgaraSatirlari& satirlar, int kolon) {
  std::map<std::string, int> sonuc;
  for (std::size_t i = 0; kolon >= 0 && i < satirlar.size(); ++i)
    sonuc.emplace(session::Trim(satirlar[i].hucreler[static_cast<std::size_t>(kolon)]), static_cast<int>(i));
  return sonuc;
}

struct Dizinler {
  std::map<std::string, int> kimlikler, kodlar;
};

// The trimmed text of the line for a column of the list; empty when the file does not have it.
std::string verilen(const Dosya& dosya, const Dosya::Kayit& kayit, int kolon) {
  const auto at = std::ranges::find(dosya.kolonlar, kolon);
  if (kolon < 0 || at == dosya.kolonlar.end()) return {};
  return session::Trim(kayit.hucreler[static_cast<std::size_t>(at - dosya.kolonlar.begin())]);
}

// Rows without a key are found by everything that they hold.
int ayniSatir(const Dosya& dosya, const Dosya::Kayit& kayit, const IzgaraSatirlari& eski, const Birlesme& b) {
  for (std::size_t i = 0; i < eski.size(); ++i) {
    bool ayni = !b.dosyaSatiri.contains(static_cast<int>(i));
    for (std::size_t k = 0; ayni && k < dosya.kolonlar.size(); ++k)
      ayni = eski[i].hucreler[static_cast<std::size_t>(dosya.kolonlar[k])] == kayit.hucreler[k];
    if (ayni) return static_cast<int>(i);
  }
  return -1;
}

// The row that a line of the file belongs to; -1 for a new one.
int hedefBul(const ListeTuru& tur, const Dosya& dosya, const Dosya::Kayit& kayit, const IzgaraSatirlari& eski,
             const Dizinler& dizinler, const Birlesme& b) {
  const int kod = session::kolonSirasi(tur.kolonlar, tur.kod);
  if (kod < 0) return ayniSatir(dosya, kayit, eski, b);
  const std::string id = verilen(dosya, kayit, session::kolonSirasi(tur.kolonlar, tur.kimlik)),
                    anahtar = verilen(dosya, kayit, kod);
  if (const auto at = dizinler.kimlikler.find(id); !id.empty() && at != dizinler.kimlikler.end()) {
    const auto& hucreler = eski[static_cast<std::size_t>(at->second)].hucreler;
    if (anahtar.empty() || anahtar == session::Trim(hucreler[static_cast<std::size_t>(kod)]))
      return at->second;
  }
  for (const std::string& aranan : {anahtar, session::Buyuk_Harf(anahtar)})
    if (const auto at = dizinler.kodlar.find(aranan); !aranan.empty() && at != dizinler.kodlar.end())
      return at->second;
  return -1;
}

Birlesme birlestir(const ListeTuru& tur, const Dosya& dosya, const IzgaraSatirlari& eski) {
  Birlesme b{{}, eski, {}, {}};
  const int kimlik = session::kolonSirasi(tur.kolonlar, tur.kimlik),
            kod = session::kolonSirasi(tur.kolonlar, tur.kod);
  Dizinler dizinler{dizin(eski, kimlik), dizin(eski, kod)};
  for (const Dosya::Kayit& kayit : dosya.kayitlar) {
    const std::string id = verilen(dosya, kayit, kimlik), anahtar = verilen(dosya, kayit, kod);
    int hedef = hedefBul(tur, dosya, kayit, eski, dizinler, b);
    if (hedef < 0 && !id.empty() && anahtar.empty()) {
      b.hata = satirBasi(kayit.satir) + std::string(tur.kimlik) + " " + id + " olan bir satır yok.";
      return b;
    }
    if (hedef < 0) {
      hedef = static_cast<int>(b.satirlar.size());
      b.satirlar.push_back({std::vector<std::string>(tur.kolonlar.size()), false});
      if (!anahtar.empty()) dizinler.kodlar.emplace(anahtar, hedef);
    }
    if (const auto [at, yeni] = b.dosyaSatiri.emplace(hedef, kayit.satir); !yeni) {
      b.hata = satirBasi(kayit.satir) + "aynı kayıt " + std::to_string(at->second) + ". satırda da var.";
      return b;
    }
    b.dokunulan.push_back(hedef);
    for (std::size_t i = 0; i < dosya.kolonlar.size(); ++i) {
      const auto k = static_cast<std::size_t>(dosya.kolonlar[i]);
      if (static_cast<int>(k) == kimlik) continue;
      std::string metin = kayit.hucreler[i];
      std::string& hucre = b.satirlar[static_cast<std::size_t>(hedef)].hucreler[k];
      if (metin == hucre) continue;  // what is stored may stay as it is
      if (const std::string hata = session::hucreDenetle(tur.kolonlar[k], metin); !hata.empty()) {
        b.hata = satirBasi(kayit.satir) + hata;
        return b;
      }
      hucre = std::move(metin);
    }
  }
  return b;
}

// --- What changes

std::string adi(const ListeTuru& tur, const IzgaraSatiri& satir) {
  const int kod = session::kolonSirasi(tur.kolonlar, tur.kod);
  std::string ad;
  for (std::size_t i = 0; i < satir.hucreler.size(); ++i)
    if (kod < 0 || static_cast<int>(i) == kod)
      ad += (ad.empty() ? "" : " / ") + session::ilkHarfler(satir.hucreler[i], 40);
  return ad;
}

void farklariBul(const ListeTuru& tur, const IzgaraSatirlari& eski, const IzgaraSatirlari& yeni,
                 DosyaSonucu& sonuc) {
  for (std::size_t i = 0; i < yeni.size(); ++i) {
    if (i >= eski.size()) {
      ++sonuc.eklenen;
      sonuc.farklar.push_back({adi(tur, yeni[i])});
      continue;
    }
    SatirFarki fark{adi(tur, yeni[i])};
    for (std::size_t k = 0; k < tur.kolonlar.size(); ++k)
      if (eski[i].hucreler[k] != yeni[i].hucreler[k])
        fark.kolonlar.push_back(
            {std::string(tur.kolonlar[k].anahtar), eski[i].hucreler[k], yeni[i].hucreler[k]});
    if (fark.kolonlar.empty()) continue;
    ++sonuc.degisen;
    sonuc.farklar.push_back(std::move(fark));
  }
}

}  // namespace

DosyaSonucu Liste_Yukle(Oturum& oturum, const ListeTuru& tur, std::string_view metin, bool dene) {
  DosyaSonucu sonuc;
  const Dosya dosya = oku(tur, metin);
  if (!dosya.hata.empty()) return {dosya.hata};
  const TanimListesi eski = tur.yukle(oturum, tur);
  if (!eski.hata.empty()) return {eski.hata};
  Birlesme b = birlestir(tur, dosya, eski.satirlar);
  if (!b.hata.empty()) return {b.hata};
  if (const Kontrol k = tur.kontrol(oturum, tur, b.satirlar, b.dokunulan); !k.hata.empty()) {
    const auto at = b.dosyaSatiri.find(k.satir);
    return {(at == b.dosyaSatiri.end() ? std::string() : satirBasi(at->second)) + k.hata};
  }
  farklariBul(tur, eski.satirlar, b.satirlar, sonuc);
  if (!dene && sonuc.eklenen + sonuc.degisen > 0)
    if (std::string hata = tur.kaydet(oturum, tur, eski.satirlar, b.satirlar, b.dokunulan); !hata.empty())
      return {std::move(hata)};
  return sonuc;
}

}  // namespace settings
