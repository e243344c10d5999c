// Production recipes, and the document counters that go on counting.
#include "rollover/adimlar.h"

namespace rollover {

void Uretimreceteleri_Devret(Baglam& b) {
  b.mesaj("Üretim Reçeteleri Devrediliyor...!");
  Tablo_Aktar(b, "RECETEKART");
  b.mesaj("Üretim Reçete Hareketleri Devrediliyor...!");
  cocuklariSil(b, "RECETEHAREKET");
  Alt_Tablo_Aktar(b, "RECETEHAREKET");
  // Both tables keep the code beside the id.
  for (const char* const tablo : {"RECETEKART", "RECETEHAREKET"}) {
    if (!b.hedefte(tablo) || !b.hedefte("STOKKART")) continue;
    const std::string t(tablo);
    b.yap("UPDATE " + t + " SET Stok_ID=STOKKART.Stok_ID  FROM STOKKART WHERE STOKKART.Stok_Kod=" + t +
          ".Stok_Kod");
  }
}

void Fis_Numaralari_Devret(Baglam& b) {
  const auto adlar = b.kaynakOku(
      "SELECT name FROM sysobjects WHERE name NOT LIKE 'IP_KN%' AND name LIKE 'IP_%' ORDER BY name");
  b.mesaj("Fiş Numaraları Devrediliyor...!");
  for (std::int64_t i = 0; i < adlar->count(); ++i) {
    const std::string ad = adlar->value(i, 0).trimmed();
    if (b.ikisinde(ad)) {
      const auto rows = b.kaynakOku("SELECT * FROM " + ad);
      try {
        if (rows && rows->count() > 0)
          b.yap("UPDATE " + ad + " SET IP=" + db::literal(rows->value(0, 0).text()));
      } catch (const db::SqlError& hata) {
        b.ayaktaMi(hata);
        b.atla(ad, rows->value(0, 0).text(), hata.what());
      }
    }
    b.adim(i + 1, adlar->count());
  }
}

}  // namespace rollover
