#include "settings/grup.h"

#include <array>

#include "session/metin.h"
#include "session/sayi.h"
#include "session/statements.h"
#include "settings/firma_baglanti.h"

namespace settings {

namespace {

using session::HucreTuru;
using session::IzgaraKolonu;
using session::Oturum;
using session::Trim;

constexpr std::array anaKolonlar = {
    IzgaraKolonu{"Ana_Grup_ID", "", 0, HucreTuru::Sayi, true},
    IzgaraKolonu{"Ana_Grup", "ANA GRUP TANIMLARI", 180, HucreTuru::Metin, false, false, false, 50}};
constexpr std::array baslikKolonlari = {
    IzgaraKolonu{"Alt_Grup_BasID", "", 0, HucreTuru::Sayi, true},
    IzgaraKolonu{"Sira_No", "Sıra No", 66, HucreTuru::Sayi},
    IzgaraKolonu{"Alt_Grup_Baslik", "ALT GRUP BAŞLIKLARI", 130, HucreTuru::Metin, false, false, false, 50}};
constexpr std::array altKolonlar = {
    IzgaraKolonu{"Alt_Grup_ID", "", 0, HucreTuru::Sayi, true},
    IzgaraKolonu{"Alt_Grup", "ALT GRUP TANIMLARI", 180, HucreTuru::Metin, false, false, false, 50}};

struct Tanim {
  std::string_view tablo, hata;
  std::span<const IzgaraKolonu> kolonlar;
  int ad;
  bool anaGrubaBagli, basligaBagli;
};
constexpr std::array tanimlar = {
    Tanim{"ANAGRUPTANIM", "Girmiş Olduğunuz Ana Grup Tanımı ", anaKolonlar, 1, false, false},
    Tanim{"ALTGRUPBASLIK", "Girmiş Olduğunuz Alt Grup Başlık Tanımı ", baslikKolonlari, 2, true, false},
    Tanim{"ALTGRUPTANIM", "Girmiş Olduğunuz Alt Grup Tanımı ", altKolonlar, 1, true, true}};

const Tanim& tanimi(Grup grup) {
  return tanimlar[static_cast<std::size_t>(grup)];
}

std::string baglar(const Tanim& tanim, const GrupSecimi& secim) {
  std::string kosul;
  if (tanim.anaGrubaBagli) kosul += "Ana_Grup_ID=" + std::to_string(secim.Secili_Ana_Grup_ID);
  if (tanim.basligaBagli) kosul += " AND Alt_Grup_BasID=" + std::to_string(secim.Secili_Alt_Grup_BasID);
  return kosul;
}

// The line (from 1) of another row with the same name before the first empty one; 0 without any.
std::size_t ayniAdliSatir(const session::IzgaraSatirlari& satirlar, std::size_t satir, std::size_t ad) {
  const std::string aranan = Trim(satirlar[satir].hucreler[ad]);
  for (std::size_t i = 0; i < satirlar.size(); ++i) {
    const std::string bulunan = Trim(satirlar[i].hucreler[ad]);
    if (bulunan.empty()) return 0;
    if (i != satir && bulunan == aranan) return i + 1;
  }
  return 0;
}

void yaz(Oturum& oturum, const Tanim& tanim, const session::IzgaraSatirlari& satirlar, std::size_t satir,
         const GrupSecimi& secim) {
  const auto& hucreler = satirlar[satir].hucreler;
  const std::string anahtar = session::sayiMi(hucreler[0]) ? hucreler[0] : "0";
  db::Recordset kayit;
  kayit.open(*oturum.Baglanti2,
             "SELECT * FROM " + std::string(tanim.tablo) + " WHERE " +
                 std::string(tanim.kolonlar[0].anahtar) + "=" + anahtar,
             db::Cursor::Keyset, db::Lock::BatchOptimistic);
  if (kayit.eof()) kayit.addNew();
  kayit.set(tanim.kolonlar[static_cast<std::size_t>(tanim.ad)].anahtar,
            Trim(hucreler[static_cast<std::size_t>(tanim.ad)]));
  if (tanim.anaGrubaBagli) kayit.set("Ana_Grup_ID", secim.Secili_Ana_Grup_ID);
  if (tanim.basligaBagli) kayit.set("Alt_Grup_BasID", secim.Secili_Alt_Grup_BasID);
  if (tanim.ad == 2)  // headings carry a number; without one they take the grid's
    kayit.set("Sira_No", session::sayiMi(hucreler[1]) ? db::Value(Trim(hucreler[1]))
                                                      : db::Value(static_cast<std::int64_t>(satir + 1)));
  kayit.updateBatch();
}

}  // namespace

std::span<const IzgaraKolonu> grupKolonlari(Grup grup) {
  return tanimi(grup).kolonlar;
}
int grupAdKolonu(Grup grup) {
  return tanimi(grup).ad;
}

GrupListesi Grup_Listele(Oturum& oturum, Grup grup, const GrupSecimi& secim) {
  const Tanim& tanim = tanimi(grup);
  GrupListesi liste;
  if (!oturum.Baglanti2) return {{}, "Firmanın veritabanına bağlı değil."};
  std::string sql = "SELECT * FROM " + std::string(tanim.tablo);
  if (const std::string kosul = baglar(tanim, secim); !kosul.empty()) sql += " WHERE " + kosul;
  try {
    db::Recordset kayitlar;
    kayitlar.open(*oturum.Baglanti2, sql);
    for (; !kayitlar.eof(); kayitlar.moveNext()) {
      session::IzgaraSatiri satir;
      for (const IzgaraKolonu& kolon : tanim.kolonlar)
        satir.hucreler.push_back(kayitlar.field(kolon.anahtar).trimmed());
      liste.satirlar.push_back(std::move(satir));
    }
  } catch (const db::SqlError& hata) {
    liste.hata = sqlHatasi(hata, oturum.Baglanti2->parts().database);
  }
  return liste;
}

GrupKaydi Grup_Kaydet(Oturum& oturum, Grup grup, const session::IzgaraSatirlari& satirlar, std::size_t satir,
                      const GrupSecimi& secim) {
  const Tanim& tanim = tanimi(grup);
  const std::string ad = Trim(satirlar[satir].hucreler[static_cast<std::size_t>(tanim.ad)]);
  if (const std::size_t ayni = ayniAdliSatir(satirlar, satir, static_cast<std::size_t>(tanim.ad)); ayni > 0)
    return {{}, std::string(tanim.hata) + std::to_string(ayni) + ". Satırda Girilmiş Lütfen Kontrol Ednizi."};
  if (ad.empty() && satirlar[satir].hucreler[0].empty()) return {};  // a new row without a name yet
  try {
    yaz(oturum, tanim, satirlar, satir, secim);
    db::Recordset bulunan;
    const std::string adKolonu(tanim.kolonlar[static_cast<std::size_t>(tanim.ad)].anahtar);
    std::string sql =
        "SELECT * FROM " + std::string(tanim.tablo) + " WHERE " + adKolonu + "='" + db::escape(ad) + "'";
    if (const std::string kosul = baglar(tanim, secim); !kosul.empty()) sql += " AND " + kosul;
    session::Sorgu_Ac2(oturum, bulunan, sql);
    if (bulunan.state() != db::State::Open || bulunan.eof()) return {};
    return {bulunan.field(tanim.kolonlar[0].anahtar).trimmed(), {}};
  } catch (const db::SqlError& hata) {
    return {{}, sqlHatasi(hata, oturum.Baglanti2->parts().database)};
  }
}

}  // namespace settings
