// What the controls show for a row, and what they store.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "session/metin.h"
#include "session/sayi.h"
#include "session/tarih.h"
#include "settings/parametre.h"
#include "settings/parametre_deger.h"

namespace settings {

namespace {

using session::Trim;
using T = ParametreTuru;

constexpr double twipMilimetre = 56.7;

// Stored values of MakBuzOr and the places of their texts in the list.
struct Yon {
  std::int64_t deger;
  std::string_view sira;
};
constexpr std::array yonler = {Yon{-1, "0"}, Yon{1, "1"}, Yon{2, "3"}};

// By the pattern "#,##.0": one decimal, no nought before the comma.
std::string milimetre(double twip) {
  const double mm = std::round(twip / twipMilimetre * 10) / 10;
  std::string metin = session::sayiyiYaz(mm, "#,##0.0");
  if (const std::size_t sifir = metin.find("0,"); sifir == 0 || (sifir == 1 && metin[0] == '-'))
    metin.erase(sifir, 1);
  return metin;
}

struct Baglam {
  const FirmaKaydi& kayit;
  std::vector<std::string>& hatalar;
};

std::string listeSirasi(const Parametre& p, const db::Value& deger, Baglam baglam) {
  const std::int64_t sira = deger.integer() - p.taban;
  if (p.taban > 0 && deger.isNull()) {
    baglam.hatalar.push_back(parametreAdi(p) + " parametresi boş (" + std::string(p.sutun) +
                             " NULL); listeden yeniden seçiniz.");
    return {};
  }
  return sira >= 0 && sira < static_cast<std::int64_t>(p.secenekler.size()) ? std::to_string(sira) : "";
}

std::string tarihMetni(const Parametre& p, const db::Value& deger, const FirmaKaydi& kayit) {
  const db::Value& yil = p.kontrol == "KilitBasTarih" ? kayit.Mali_Yil_Baslangic : kayit.Mali_Yil_Bitis;
  const auto* tarih = deger.as<db::DateTime>();
  if (!tarih) tarih = yil.as<db::DateTime>();
  return tarih ? session::tarihYaz(*tarih) : "";
}

std::string goster(const Parametre& p, const db::Value& deger, Baglam baglam) {
  switch (p.tur) {
    case T::Tik:
      return deger.boolean() ? "1" : "0";
    case T::Sayi:
      return deger.isNull() ? std::string(p.bos) : sayiMetni(deger, ',');
    case T::Yazi:
      return deger.trimmed();
    case T::UzunYazi:
      return deger.text();
    case T::Liste:
    case T::Secim:
      return listeSirasi(p, deger, baglam);
    case T::YaziListesi: {
      const auto at = std::ranges::find(p.secenekler, deger.trimmed());
      return at == p.secenekler.end() ? "" : std::to_string(at - p.secenekler.begin());
    }
    case T::Renk:
      return std::to_string(deger.integer() & 0xFFFFFF);
    case T::Tarih:
      return tarihMetni(p, deger, baglam.kayit);
    case T::Firma:
      return deger.trimmed().empty() ? std::string(baglantiYok) : deger.trimmed();
    case T::Ambar:
      return deger.isNull() ? "" : deger.trimmed();
    case T::Milimetre:
      return milimetre(deger.real());
    case T::Yonelim: {
      const auto at = std::ranges::find(yonler, deger.integer(), &Yon::deger);
      return at == yonler.end() ? "" : std::string(at->sira);
    }
  }
  return {};
}

std::optional<db::Value> sakla(const Parametre& p, const std::string& metin, const db::Value& eski,
                               const FirmaKaydi& kayit, std::string& hata) {
  const auto sayi = [&](const std::string& yazi) {
    return sayiDegeri(p, session::sayiMi(yazi) ? yazi : std::string(p.yoksa), ',', hata);
  };
  switch (p.tur) {
    case T::Sayi:
      return sayi(metin);
    case T::Tik:
    case T::Renk:
      return sayi(metin);
    case T::Yazi:
      return yaziDegeri(p, Trim(metin), hata);
    case T::UzunYazi:
      return yaziDegeri(p, metin, hata);
    case T::Firma:
      return yaziDegeri(p, metin == baglantiYok ? std::string() : Trim(metin), hata);
    case T::Liste:
    case T::Secim:
      if (metin.empty()) return eski;  // nothing is chosen: the column keeps what it has
      return db::Value(std::atoi(metin.c_str()) + p.taban);
    case T::YaziListesi:
      if (metin.empty()) return eski;
      return db::Value(p.secenekler[static_cast<std::size_t>(std::atoi(metin.c_str()))]);
    case T::Tarih: {
      db::DateTime tarih;
      if (session::tarihOku(metin, tarih)) return db::Value(tarih);
      return p.kontrol == "KilitBasTarih" ? kayit.Mali_Yil_Baslangic : kayit.Mali_Yil_Bitis;
    }
    case T::Ambar:
      return session::sayiMi(metin) ? sayi(metin) : db::Value();
    case T::Milimetre: {
      if (!session::sayiMi(metin)) return sayi(std::string(p.yoksa));
      std::string duz = metin;
      std::erase(duz, '.');
      std::ranges::replace(duz, ',', '.');
      const double twip = std::round(std::strtod(duz.c_str(), nullptr) * twipMilimetre);
      if (std::fabs(twip) > 32767) {
        hata = parametreAdi(p) + ": “" + metin + "” bu alana sığmıyor.";
        return std::nullopt;
      }
      return db::Value(static_cast<std::int64_t>(twip));
    }
    case T::Yonelim:
      if (metin.empty()) return eski;
      // The place in the list as it stands: "Yatay" is stored as 3, which loading does not know.
      return db::Value(metin == "0" ? -1 : std::atoi(metin.c_str()));
  }
  return eski;
}

}  // namespace

std::string anlami(const Parametre& p, const db::Value& deger) {
  if (p.tur == T::Tik) return deger.isNull() ? "" : deger.boolean() ? "Evet" : "Hayır";
  if (p.tur != T::Liste && p.tur != T::Secim && p.tur != T::Yonelim) return {};
  std::vector<std::string> hatalar;
  const std::string sira = deger.isNull() ? "" : goster(p, deger, {{}, hatalar});
  return sira.empty() ? "" : Trim(p.secenekler[static_cast<std::size_t>(std::atoi(sira.c_str()))]);
}

Gosterilen Parametre_Yukle(const FirmaKaydi& kayit, std::vector<std::string>& hatalar) {
  Gosterilen sonuc;
  const auto tablo = parametreler();
  for (std::size_t i = 0; i < tablo.size(); ++i)
    sonuc.push_back(goster(tablo[i], kayit.degerler[i], {kayit, hatalar}));
  return sonuc;
}

KilitSonucu Kilit_Tarih_Kontrol(std::string_view bas, std::string_view bit) {
  constexpr std::string_view giris = "Yanlış Tarih Girişinde Bulundunuz. ";
  db::DateTime ilk, son;
  if (!session::tarihOku(bas, ilk))
    return {std::string(giris) + "Lütfen Kilit Başlangıç Tarihini Girişini Kontrol Ediniz.",
            KilitAlani::KilitBasTarih};
  if (!session::tarihOku(bit, son))
    return {std::string(giris) + "Lütfen Kilit Bitiş Tarihini Girişini Kontrol Ediniz.",
            KilitAlani::KilitBitTarih};
  if (son < ilk)
    return {std::string(giris) +
                "Kilit Bitiş Tarihi, Kilit Başlangıç Tarihinden Küçük Olamaz.Lütfen Kilit Tarihi Girişlerini "
                "Kontrol Ediniz.",
            KilitAlani::KilitBasTarih};
  return {};
}

std::optional<std::vector<db::Value>> saklanacak(const FirmaKaydi& kayit, const Gosterilen& gosterilen,
                                                 ParametreEkrani ekran, std::string& hata) {
  std::vector<db::Value> yeni = kayit.degerler;
  const auto tablo = parametreler();
  for (std::size_t i = 0; i < tablo.size(); ++i) {
    if (tablo[i].ekran != ekran) continue;
    auto deger = sakla(tablo[i], gosterilen[i], kayit.degerler[i], kayit, hata);
    if (!deger) return std::nullopt;
    yeni[i] = std::move(*deger);
  }
  return yeni;
}

}  // namespace settings
