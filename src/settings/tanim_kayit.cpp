#include <algorithm>

#include "catalog/katalog.h"
#include "session/firma_bul.h"
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

// The rows stay as they are read until the transaction ends.
std::string kilitliOkuma(const TanimTuru& tur) {
  std::string deyim(tur.yukleme);
  const std::string tablo = "{db}" + std::string(tur.tablo);
  deyim.insert(deyim.find(tablo) + tablo.size(), " WITH (UPDLOCK,HOLDLOCK)");
  return deyim;
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

IzgaraSatirlari satirlariOku(const TanimTuru& tur, const db::Rows* tablo) {
  IzgaraSatirlari satirlar;
  if (!tablo) return satirlar;
  struct Yer {
    int sutun;
    std::size_t hucre;
    const TabloKolonu* kolon;  // none for the identity
  };
  std::vector<Yer> yerler;
  if (!tur.kimlik.empty())
    yerler.push_back(
        {kolonYeri(*tablo, tur.kimlik), static_cast<std::size_t>(kolonu(tur, tur.kimlik)), nullptr});
  for (const TabloKolonu& t : tur.tabloKolonlari)
    yerler.push_back({kolonYeri(*tablo, t.sutun), static_cast<std::size_t>(kolonu(tur, t.anahtar)), &t});
  satirlar.resize(static_cast<std::size_t>(tablo->count()));
  for (std::int64_t i = 0; i < tablo->count(); ++i) {
    auto& hucreler = satirlar[static_cast<std::size_t>(i)].hucreler;
    hucreler.resize(tur.kolonlar.size());
    for (const Yer& yer : yerler) {
      const db::Value deger = tablo->value(i, yer.sutun);
      hucreler[yer.hucre] = yer.kolon ? gorunen(tur.kolonlar[yer.hucre], deger, *yer.kolon) : deger.trimmed();
    }
  }
  return satirlar;
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
    std::int64_t kimlik = satir->value(0, 0).integer();
    // The column's collation may hold names for one that are two databases.
    if (const auto firma =
            satir->count() > 1 ? session::Firma_Bul(oturum, oturum.Secili_Firma) : std::nullopt)
      kimlik = firma->id;
    if (!Firma_Parametre_Yukle(oturum, kimlik)) return oturum.Son_Hata;
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
  try {
    return {satirlariOku(tur, oturum.Baglanti->query(onekli(tur.yukleme, tanimOneki(oturum))).get()), {}};
  } catch (const db::SqlError& hata) {
    return {{}, sqlHatasi(hata, oturum.Secili_Firma)};
  }
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

CakismaKurali cakismaKurali(const TanimTuru& tur) {
  // A table that is written anew gives its rows new identities.
  const bool kimlikli = !tur.kimlik.empty() && tur.kayit != KayitYolu::SilVeEkle;
  CakismaKurali kural{tur.kolonlar,
                      kimlikli ? kolonu(tur, tur.kimlik) : -1,
                      kolonu(tur, tur.kod),
                      kolonu(tur, tur.adKolonu),
                      {}};
  for (const std::string_view tik : tur.tekTikler) kural.tekTikler.push_back(kolonu(tur, tik));
  return kural;
}

std::string Tanim_Kaydet(Oturum& oturum, const TanimTuru& tur, const IzgaraSatirlari& satirlar) {
  try {
    TopluYazici yazici(*oturum.Baglanti);
    silmeler(yazici, tanimOneki(oturum), tur, satirlar);
    yazmalar(yazici, oturum, tur, satirlar);
    yazici.bitir();
    return {};
  } catch (const db::SqlError& hata) {
    return sqlHatasi(hata, oturum.Secili_Firma);
  }
}

ListeKaydi Tanim_Kaydet(Oturum& oturum, const std::vector<TanimIzgarasi>& izgaralar) {
  const std::string db = tanimOneki(oturum);
  ListeKaydi kayit;
  try {
    TopluYazici yazici(*oturum.Baglanti);
    for (const TanimIzgarasi& izgara : izgaralar) {
      const TanimTuru& tur = *izgara.tur;
      kayit.simdiki.push_back(satirlariOku(tur, yazici.oku(onekli(kilitliOkuma(tur), db)).get()));
      auto farklar = aradakiFarklar(cakismaKurali(tur), izgara.okunan, kayit.simdiki.back());
      kayit.aradaki.insert(kayit.aradaki.end(), farklar.begin(), farklar.end());
    }
    if (!kayit.aradaki.empty()) return kayit;
    for (const TanimIzgarasi& izgara : izgaralar) {
      silmeler(yazici, db, *izgara.tur, izgara.satirlar);
      yazmalar(yazici, oturum, *izgara.tur, izgara.satirlar);
    }
    yazici.bitir();
  } catch (const db::SqlError& hata) {
    kayit.hata = sqlHatasi(hata, oturum.Secili_Firma);
  }
  return kayit;
}

}  // namespace settings
