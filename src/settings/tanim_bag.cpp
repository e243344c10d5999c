#include "session/metin.h"
#include "session/statements.h"
#include "settings/firma_baglanti.h"
#include "settings/tanim.h"
#include "settings/toplu_yazici.h"

namespace settings {

namespace {

using session::IzgaraSatiri;
using session::Oturum;
using session::Trim;

struct BagTanimi {
  std::string_view tablo, bagTablosu, bag;  // of the linked rows; column that joins them
  std::string_view sira;                    // how the list is ordered, behind the join
};
constexpr BagTanimi ambarBagi = {"AMBAR", "ISYERIBAGAMBAR", "Ambar_No", ")order by Isyeri_ID DESC"};
constexpr BagTanimi saticiBagi = {"SATICI", "ISYERIBAGSATICI", "Satici_ID",
                                  ")order by  {db}ISYERIBAGSATICI.Isyeri_ID DESC"};

const BagTanimi& tanimi(Bag bag) {
  return bag == Bag::Ambar ? ambarBagi : saticiBagi;
}

std::string listeDeyimi(const BagTanimi& t, const std::string& db, const std::string& isyeriId) {
  const std::string tablo = db + std::string(t.tablo), bag = db + std::string(t.bagTablosu), sutun(t.bag);
  std::string sira(t.sira);
  if (const auto at = sira.find("{db}"); at != std::string::npos) sira.replace(at, 4, db);
  // The link itself comes with the row: whether there is one is asked once for all.
  return "SELECT " + tablo + ".*," + bag + ".Isyeri_ID FROM  " + tablo + " LEFT JOIN  " + bag + " ON( " +
         bag + "." + sutun + "= " + tablo + "." + sutun + " AND " + bag + ".Isyeri_ID=" + isyeriId + sira;
}

std::string kimlikOf(const std::string& isyeriId) {
  return isyeriId.empty() ? "0" : isyeriId;
}

// The ID of the row's code after the grid was saved; empty when it is not there.
std::string yeniKimlik(Oturum& oturum, const IzgaraSatirlari& isyerleri, int satir) {
  const std::string kod =
      session::ilkHarfler(Trim(isyerleri[static_cast<std::size_t>(satir)].hucreler[0]), 10);
  const auto bulunan = oturum.Baglanti->query("SELECT * FROM  " + tanimOneki(oturum) +
                                              "ISYERITANIM WHERE Isyeri_Kodu='" + db::escape(kod) + "'");
  return bulunan && bulunan->count() > 0 ? bulunan->value(0, 0).trimmed() : "";
}

}  // namespace

TanimListesi Bag_Listele(Oturum& oturum, Bag bag, const std::string& isyeriId) {
  TanimListesi liste;
  try {
    db::Recordset kayitlar;
    kayitlar.open(*oturum.Baglanti, listeDeyimi(tanimi(bag), tanimOneki(oturum), kimlikOf(isyeriId)));
    const auto kolonlar = bagKolonlari(bag);
    const int bagSutunu = static_cast<int>(kayitlar.fields().size()) - 1;
    for (; !kayitlar.eof(); kayitlar.moveNext()) {
      IzgaraSatiri satir;
      for (const IzgaraKolonu& kolon : kolonlar)
        satir.hucreler.push_back(kolon.anahtar == "Sec" ? (kayitlar.field(bagSutunu).isNull() ? "0" : "1")
                                                        : kayitlar.field(kolon.anahtar).trimmed());
      liste.satirlar.push_back(std::move(satir));
    }
  } catch (const db::SqlError& hata) {
    liste.hata = sqlHatasi(hata, oturum.Secili_Firma);
  }
  return liste;
}

Kontrol Bag_Kaydet(Oturum& oturum, Bag bag, const std::string& isyeriId, const IzgaraSatirlari& baglar,
                   const IzgaraSatirlari& isyerleri, int satir) {
  if (isyeriId.empty() || isyeriId == "0") return {};
  const std::string db = tanimOneki(oturum), tablo = db + std::string(tanimi(bag).bagTablosu);
  std::string kimlik = isyeriId;
  bool eskilerKalir = false;
  try {
    const auto var =
        oturum.Baglanti->query("SELECT * FROM  " + db + "ISYERITANIM WHERE Isyeri_ID=" + isyeriId);
    if (!var || var->count() == 0) {
      const TanimTuru& isyeri = *tanimBul("isyeri");
      if (Kontrol k = isyeri.kontrol(isyerleri, satir); !k.hata.empty()) return k;
      if (std::string hata = Tanim_Kaydet(oturum, isyeri, isyerleri); !hata.empty()) return {hata};
      kimlik = yeniKimlik(oturum, isyerleri, satir);
      if (kimlik.empty()) return {"İşyeri kaydedilemedi."};
      // For salespeople this path deletes from a table that does not exist: the old links stay.
      if (bag == Bag::Satici) {
        db::Recordset sonuc;
        session::Sorgu_Ac(oturum, sonuc, "DELETE FROM  " + db + "ISYERIBSATICI WHERE Isyeri_ID=" + kimlik);
        eskilerKalir = true;
      }
    }
    TopluYazici yazici(*oturum.Baglanti);
    if (!eskilerKalir) yazici.ekle("DELETE FROM  " + tablo + " WHERE Isyeri_ID=" + kimlik);
    for (const IzgaraSatiri& b : baglar) {
      if (bag == Bag::Ambar && b.hucreler[1].empty()) break;
      if (b.hucreler[3] != "1") continue;
      yazici.ekle("INSERT INTO " + tablo +
                  (bag == Bag::Ambar ? "(Isyeri_ID,Ambar_ID,Ambar_No) VALUES(" + kimlik + "," +
                                           b.hucreler[0] + "," + b.hucreler[1] + ")"
                                     : "(Isyeri_ID,Satici_ID) VALUES(" + kimlik + "," + b.hucreler[0] + ")"));
    }
    yazici.bitir();
    return {};
  } catch (const db::SqlError& hata) {
    return {sqlHatasi(hata, oturum.Secili_Firma)};
  }
}

}  // namespace settings
