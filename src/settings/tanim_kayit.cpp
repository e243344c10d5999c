#include <algorithm>

#include "catalog/katalog.h"
#include "session/metin.h"
#include "session/sayi.h"
#include "session/statements.h"
#include "settings/firma_baglanti.h"
#include "settings/firma_parametre.h"
#include "settings/tanim.h"
#include "settings/toplu_yazici.h"

namespace settings {

namespace {

using session::HucreTuru;
using session::IzgaraSatiri;
using session::Oturum;
using session::Trim;

std::string onekli(std::string_view deyim, const std::string& db) {
  std::string sonuc(deyim);
  if (const auto at = sonuc.find("{db}"); at != std::string::npos) sonuc.replace(at, 4, db);
  return sonuc;
}

std::string hucre(const TanimTuru& tur, const IzgaraSatiri& satir, std::string_view anahtar) {
  const int k = kolonu(tur, anahtar);
  return k < 0 ? std::string() : Trim(satir.hucreler[static_cast<std::size_t>(k)]);
}

std::string gorunen(const IzgaraKolonu& kolon, const db::Value& deger, const TabloKolonu& t) {
  if (kolon.tur == HucreTuru::Tik) return deger.boolean() ? "1" : "0";
  if (t.sayi) return std::to_string(deger.integer());
  return deger.trimmed();
}

// What a cell stores.
std::string saklanan(const TabloKolonu& t, const std::string& metin) {
  if (t.tik) return metin == "1" ? "1" : "0";
  if (t.sayi) return session::sayiMi(metin) ? metin : "0";
  return db::literal(
      db::Value(t.kesim > 0 ? session::ilkHarfler(metin, static_cast<std::size_t>(t.kesim)) : metin));
}

struct Atamalar {
  std::string sutunlar, degerler, atama;
};

Atamalar atamalar(const Oturum& oturum, const TanimTuru& tur, const IzgaraSatiri& satir) {
  Atamalar a;
  const auto ekle = [&](std::string_view sutun, const std::string& deger) {
    const std::string virgul = a.sutunlar.empty() ? "" : ",";
    a.sutunlar += virgul + std::string(sutun);
    a.degerler += virgul + deger;
    a.atama += virgul + std::string(sutun) + "=" + deger;
  };
  if (tur.kullaniciYazilir) ekle("Kullanici_ID", std::to_string(oturum.Kullanici_ID));
  for (const TabloKolonu& t : tur.tabloKolonlari) {
    const std::string metin = hucre(tur, satir, t.anahtar);
    if (!(t.bosYazilmaz && metin.empty())) ekle(t.sutun, saklanan(t, metin));
  }
  return a;
}

void yaz(TopluYazici& yazici, const Oturum& oturum, const TanimTuru& tur, const std::string& tablo,
         const IzgaraSatiri& satir) {
  const Atamalar a = atamalar(oturum, tur, satir);
  const std::string baslik = "INSERT INTO " + tablo + "(" + a.sutunlar + ")";
  const std::string kimlik = hucre(tur, satir, tur.kimlik);
  if (kimlik.empty() || tur.kayit == KayitYolu::SilVeEkle) return yazici.satirEkle(baslik, a.degerler);
  // A row that another administrator deleted meanwhile comes back as a new one.
  yazici.ekle("UPDATE " + tablo + " SET " + a.atama + " WHERE " + std::string(tur.kimlik) + "=" + kimlik +
              " IF @@ROWCOUNT=0 " + baslik + " VALUES(" + a.degerler + ")");
}

bool biter(const TanimTuru& tur, const IzgaraSatiri& satir) {
  if (hucre(tur, satir, tur.kod).empty()) return true;
  return tur.kayit == KayitYolu::SatirSatir && hucre(tur, satir, tur.adKolonu).empty();
}

void silmeler(TopluYazici& yazici, const std::string& db, const TanimTuru& tur,
              const IzgaraSatirlari& satirlar) {
  const std::string sil = onekli(tur.silme, db);
  if (tur.kayit == KayitYolu::SilVeEkle) yazici.ekle(sil);
  if (tur.kayit == KayitYolu::SatirSatir)
    for (const IzgaraSatiri& satir : satirlar) {
      if (hucre(tur, satir, tur.kod).empty()) break;
      const std::string kimlik = hucre(tur, satir, tur.kimlik);
      if (satir.gizli && !kimlik.empty()) yazici.ekle(sil + kimlik);
    }
  if (tur.kayit == KayitYolu::OlmayaniSil) {
    std::string kalanlar;
    for (const IzgaraSatiri& satir : satirlar) {
      const std::string kimlik = hucre(tur, satir, tur.kimlik);
      if (!kimlik.empty() && !hucre(tur, satir, tur.kod).empty())
        kalanlar += " " + std::string(tur.kimlik) + "<>" + kimlik + " AND";
    }
    yazici.ekle(sil + kalanlar + (kalanlar.empty() ? "" : " ") + "Kullanici_ID<>0");
  }
}

void yazmalar(TopluYazici& yazici, const Oturum& oturum, const TanimTuru& tur,
              const IzgaraSatirlari& satirlar) {
  const std::string db = tanimOneki(oturum), tablo = db + std::string(tur.tablo);
  for (const IzgaraSatiri& satir : satirlar) {
    if (biter(tur, satir)) break;
    if (satir.gizli) continue;
    yaz(yazici, oturum, tur, tablo, satir);
    // Every stock price takes the new description of its list.
    if (tur.ad == "fiyat")
      yazici.ekle("UPDATE  " + db + "STOKFIYAT SET Fiyat_Aciklama=" +
                  db::literal(db::Value(hucre(tur, satir, "Fiyat_Aciklama"))) +
                  " WHERE Fiyat_Sira_No=" + hucre(tur, satir, "Sira_No"));
  }
}

}  // namespace

std::string tanimOneki(const Oturum& oturum) {
  return oturum.Secili_Firma + ".dbo.";
}

std::string Tanim_Firma_Bagla(Oturum& oturum) {
  try {
    session::Katalog_Bagla(oturum, std::string(catalog::catalogDatabase));
    const auto satir = oturum.Baglanti->query("SELECT sysfrm_ID FROM sysfrmlng WHERE sysfrm_dbnm='" +
                                              db::escape(oturum.Secili_Firma) + "'");
    if (!satir || satir->count() == 0)
      return "\"" + oturum.Secili_Firma + "\" adında bir firma tanımlı değil.";
    if (!Firma_Parametre_Yukle(oturum, satir->value(0, 0).integer())) return oturum.Son_Hata;
    session::Katalog_Bagla(oturum, oturum.Secili_Firma);
    return {};
  } catch (const db::SqlError& hata) {
    return "“" + oturum.Secili_Firma + "” veritabanına bağlanılamadı: " + hata.what();
  }
}

void Tanim_Firma_Birak(Oturum& oturum) {
  try {
    session::Katalog_Bagla(oturum, std::string(catalog::catalogDatabase));
  } catch (const db::SqlError&) {  // the next command tells it
  }
}

TanimListesi Tanim_Yukle(Oturum& oturum, const TanimTuru& tur) {
  TanimListesi liste;
  try {
    db::Recordset kayitlar;
    kayitlar.open(*oturum.Baglanti, onekli(tur.yukleme, tanimOneki(oturum)));
    for (; !kayitlar.eof(); kayitlar.moveNext()) {
      IzgaraSatiri satir;
      satir.hucreler.resize(tur.kolonlar.size());
      if (!tur.kimlik.empty())
        satir.hucreler[static_cast<std::size_t>(kolonu(tur, tur.kimlik))] =
            kayitlar.field(tur.kimlik).trimmed();
      for (const TabloKolonu& t : tur.tabloKolonlari) {
        const auto k = static_cast<std::size_t>(kolonu(tur, t.anahtar));
        satir.hucreler[k] = gorunen(tur.kolonlar[k], kayitlar.field(t.sutun), t);
      }
      liste.satirlar.push_back(std::move(satir));
    }
  } catch (const db::SqlError& hata) {
    liste.hata = sqlHatasi(hata, oturum.Secili_Firma);
  }
  return liste;
}

std::vector<session::ListeSecenegi> Bagli_Ambarlar(Oturum& oturum) {
  std::vector<session::ListeSecenegi> liste{{"0", "0  Bağlı Değil"}};
  const std::string db = tanimOneki(oturum);
  const bool hepsi = !oturum.Parametre.AmbarYetkiyeBagli || oturum.Kullanici_ID == 1;
  const std::string sql =
      hepsi ? "Select * FROM " + db + "AMBAR ORDER BY Ambar_No"
            : "SELECT KULLANICIAMBAR.Ambar_No,KULLANICIAMBAR.Merkez_Ambar,AMBAR.Ambar_Ad FROM " + db +
                  "KULLANICIAMBAR, " + db +
                  "AMBAR WHERE  KULLANICIAMBAR.Ambar_No=AMBAR.Ambar_No AND KULLANICIAMBAR.Kullanici_ID=" +
                  std::to_string(oturum.Kullanici_ID) + " ORDER BY KULLANICIAMBAR.Ambar_No";
  db::Recordset kayitlar;
  if (session::Sorgu_Ac(oturum, kayitlar, sql) != 0) return liste;
  for (; !kayitlar.eof(); kayitlar.moveNext()) {
    const std::string no = kayitlar.field("Ambar_No").trimmed();
    liste.push_back({no, no + "  " + kayitlar.field("Ambar_Ad").trimmed()});
  }
  return liste;
}

bool Satir_Silinir(Oturum& oturum, const TanimTuru& tur, const IzgaraSatiri& satir) {
  const SilmeKurali& kural = tur.kural;
  const auto onay = [&] { return oturum.kutular->ask(std::string(kural.soru)); };
  const std::string kimlik = tur.kimlik.empty() ? "" : hucre(tur, satir, tur.kimlik);
  const std::string aranan = hucre(tur, satir, kural.anahtar);
  if (tur.ad == "isyeri" && kimlik == "1") {
    oturum.kutular->message("Bu İşyeri Silinemez!", session::Icon::Information);
    return false;
  }
  if (kural.once && !onay()) return false;
  if (!aranan.empty() && session::sayiMi(aranan)) {
    try {
      db::Recordset kayitlar;
      kayitlar.open(*oturum.Baglanti, kural.deyim(tanimOneki(oturum), aranan));
      if (!kayitlar.eof()) {
        oturum.kutular->message(std::string(kural.kullanimda), kural.ikon);
        return false;
      }
    } catch (const db::SqlError& hata) {
      oturum.kutular->message(sqlHatasi(hata, oturum.Secili_Firma), session::Icon::Stop);
      return false;
    }
  }
  return kural.once || onay();
}

bool Ambar_Hareketli(Oturum& oturum, const std::string& ambarNo) {
  if (!session::sayiMi(ambarNo)) return false;
  db::Recordset kayitlar;
  return session::Sorgu_Ac(
             oturum, kayitlar,
             "Select Ambar_No FROM " + tanimOneki(oturum) + "STOKHAREKET WHERE Ambar_No=" + ambarNo) == 0 &&
         kayitlar.state() == db::State::Open && !kayitlar.eof();
}

std::string Tanim_Kaydet(Oturum& oturum, const TanimTuru& tur, const IzgaraSatirlari& satirlar) {
  return Tanim_Kaydet(oturum, {{&tur, satirlar}});
}

std::string Tanim_Kaydet(Oturum& oturum, const std::vector<TanimIzgarasi>& izgaralar) {
  const std::string db = tanimOneki(oturum);
  try {
    TopluYazici yazici(*oturum.Baglanti);
    for (const TanimIzgarasi& izgara : izgaralar) {
      silmeler(yazici, db, *izgara.tur, izgara.satirlar);
      yazmalar(yazici, oturum, *izgara.tur, izgara.satirlar);
    }
    yazici.bitir();
    return {};
  } catch (const db::SqlError& hata) {
    return sqlHatasi(hata, oturum.Secili_Firma);
  }
}

}  // namespace settings
