// Writing the till's settings.
#include "rights/islem.h"
#include "rights/kasiyer.h"
#include "rights/yetki_yaz.h"

namespace rights {

using session::Oturum;

namespace {

std::string kosul(const KasiyerDuzeni& duzen) {
  return " WHERE Kullanici_ID=" + duzen.Kullanici_ID + " and Firma_ID=" + duzen.Firma_ID;
}

// What is stored for a code of the screen; NULL for none. A code that the company does not have is told and
// ends the save.
bool degeriBul(Oturum& oturum, const FisTanimi& tanim, const std::string& kod, db::Value& deger) {
  deger = db::Value();
  if (kod.empty()) return true;
  const AramaTanimi& a = aramaTanimi(tanim.arama);
  const std::string sql = "SELECT " + std::string(a.id) + " AS Deger FROM " + std::string(a.tablo) +
                          " WHERE " +
                          (a.sayi ? "CONVERT(VARCHAR(12)," + std::string(a.kod) + ")" : std::string(a.kod)) +
                          "='" + db::escape(kod) + "'";
  db::Recordset row;
  row.open(*(a.katalogda ? oturum.Baglanti : oturum.Baglanti3), sql);
  if (row.eof()) {
    oturum.kutular->message(std::string(tanim.yazi) + " bulunamadı: " + kod, session::Icon::Stop);
    return false;
  }
  deger = row.field("Deger");
  return true;
}

}  // namespace

bool Kasiyer_Kaydet(Oturum& oturum, const KasiyerDuzeni& duzen) {
  db::Recordset row;
  if (!satiriAc(oturum, row, duzen.Firma_ID, duzen.Kullanici_ID)) return false;
  const auto koy = [&row](std::string_view name, const db::Value& value) {
    if (row.fieldIndex(name) >= 0) row.set(name, value);
  };
  for (std::size_t i = 0; i < fisTanimlari().size(); ++i) {
    const FisTanimi& tanim = fisTanimlari()[i];
    if (!tanim.deger.empty()) {
      db::Value deger;
      if (!degeriBul(oturum, tanim, duzen.FisGrd[i].Yetkisi, deger)) return false;
      // The price may not be NULL.
      koy(tanim.deger, deger.isNull() && tanim.arama == AramaTuru::Fiyat ? db::Value(0) : deger);
    }
    if (!tanim.hak.empty()) koy(tanim.hak, duzen.FisGrd[i].Yetkisi2);
  }
  for (std::size_t i = 0; i < kasiyerKolonlari().size(); ++i)
    koy(kasiyerKolonlari()[i].ad, duzen.kolonlar[i]);
  row.update();
  return true;
}

void Config_Kaydet(Oturum& oturum, const KasiyerDuzeni& duzen) {
  oturum.Baglanti->execute("DELETE FROM KASIYERCONFIG" + kosul(duzen));
  db::Recordset row;
  row.open(*oturum.Baglanti, "SELECT * FROM KASIYERCONFIG" + kosul(duzen), db::Cursor::Keyset,
           db::Lock::BatchOptimistic);
  row.addNew();
  row.set("Kullanici_ID", duzen.Kullanici_ID);
  row.set("Firma_ID", duzen.Firma_ID);
  for (std::size_t i = 0; i < ayarTanimlari().size(); ++i) {
    const AyarTanimi& tanim = ayarTanimlari()[i];
    row.set(tanim.kolon, tanim.tur == AyarTuru::Metin ? db::Value(duzen.ayarlar[i].trimmed())
                                                      : db::Value(duzen.ayarlar[i].boolean()));
  }
  std::string secilen;
  for (const TeraziSatiri& terazi : duzen.TeraziGRD)
    if (terazi.Sec) secilen += (secilen.empty() ? "" : ";") + terazi.kod;
  row.set("Teraziler", secilen);
  row.update();
}

void Kisayol_Kaydet(Oturum& oturum, const KasiyerDuzeni& duzen) {
  std::string batch = "DELETE FROM KSKISAYOL" + kosul(duzen);
  for (std::size_t i = 0; i < duzen.StokFlx.size(); ++i) {
    if (duzen.StokFlx[i].Stok_ID == 0) continue;
    batch += "\nINSERT INTO KSKISAYOL(S_No,Stok_ID,Kullanici_ID,Firma_ID) VALUES (" + std::to_string(i + 1) +
             "," + std::to_string(duzen.StokFlx[i].Stok_ID) + "," + duzen.Kullanici_ID + "," +
             duzen.Firma_ID + ")";
  }
  oturum.Baglanti->execute(batch);
}

bool Kasiyer_Yetki_Kaydet(Oturum& oturum, const KasiyerDuzeni& duzen) {
  if (!duzen.okundu) {
    oturum.kutular->message("Bu firmadaki kasiyer ayarları okunamadı; hiçbir şey yazılmadı.",
                            session::Icon::Stop);
    return false;
  }
  if (!katalogaBaglan(oturum)) return false;
  const bool yazildi = tekIslem(oturum, "Kasiyer yetkileri kaydedilemedi; hiçbir şey değiştirilmedi.", [&] {
    if (!Kasiyer_Kaydet(oturum, duzen)) return false;
    Config_Kaydet(oturum, duzen);
    Kisayol_Kaydet(oturum, duzen);
    return true;
  });
  if (yazildi) oturum.kutular->message("Yetkilendirme İşlemi Başarı İle Tamamlandı.");
  return yazildi;
}

}  // namespace rights
