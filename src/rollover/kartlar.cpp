// Card steps: cash with its counters, accounts, personnel, stock with its prices, banks.
#include <algorithm>
#include <array>

#include "rollover/adimlar.h"
#include "rollover/kopya.h"

namespace rollover {

void Muhasebe_Kartlari_Devret(Baglam& b) {
  // "Hesap Bakiyeleri Devredilsin mi?" is asked and changes nothing: ledger balances are not carried.
  Tablo_Aktar(b, "MUHKART");
}

namespace {

constexpr std::array<std::string_view, 2> kasaSayaclari = {"IP_KNTF", "IP_KNOF"};

// The two last numbers of a cash box, of the first row that its counters give together.
std::array<std::string, 2> sonNumaralar(Baglam& b, const std::string& id) {
  std::array<std::string, 2> out = {"0000000000", "0000000000"};
  const std::string t0 = std::string(kasaSayaclari[0]) + id, t1 = std::string(kasaSayaclari[1]) + id;
  // The row of the payment templates decides here, not the one of the document numbers.
  if (!b.g.secenekler.ust(ustSablon) || !b.ikisinde("KASAKART") || !b.kaynakta(t0) || !b.kaynakta(t1))
    return out;
  const auto rows = b.kaynakOku("SELECT * FROM " + t0 + "," + t1);
  if (!rows || rows->count() == 0) return out;
  for (int i = 0; i < 2; ++i) out[static_cast<std::size_t>(i)] = rows->value(0, i).trimmed();
  return out;
}

void kasaSayaci(Baglam& b, const std::string& kaynakId, const std::string& hedefId) {
  const auto numaralar = sonNumaralar(b, kaynakId);
  for (std::size_t i = 0; i < kasaSayaclari.size(); ++i) {
    const std::string tablo = std::string(kasaSayaclari[i]) + hedefId;
    if (!b.hedefte(tablo)) {
      b.yap("CREATE TABLE " + tablo + "(IP CHAR(10))");
      b.hedefTablosu(tablo);
    }
    // No deletion comes first: a repeated run adds a row.
    b.yap("INSERT INTO " + tablo + "(IP) VALUES (" + tirnakli(numaralar[i]) + ")");
  }
  b.yap("UPDATE " + Baglam::katalog("Kullanici") + " SET Def_Kasa_ID=" + hedefId +
        " WHERE Firma_ID=" + b.hedefID + " AND Def_Kasa_ID=" + kaynakId);
}

}  // namespace

void Kasa_Kartlari_Devret(Baglam& b) {
  b.mesaj("Kasa Kartları Devrediliyor....!");
  Tablo_Aktar(b, "KASAKART");
  b.mesaj("Kasa Fiş Numarası Ayarları Yapılıyor....!");
  if (b.ikisinde("KASAKART")) {
    const auto rows = b.oku("SELECT s.Kasa_ID," + b.kesinKod(Ref::Kasa, "s.Kasa_ID") +
                            " AS hedef,s.Kasa_Kod FROM " + b.k("KASAKART") + " s ORDER BY s.Kasa_ID");
    for (std::int64_t i = 0; i < rows->count(); ++i) {
      if (rows->value(i, 1).isNull())
        b.atla("KASAKART", rows->value(i, 2).trimmed(), "Hedefte kasa kartı yok; sayaçları kurulmadı.");
      else
        kasaSayaci(b, rows->value(i, 0).text(), rows->value(i, 1).text());
      b.adim(i + 1, rows->count());
    }
  }
  if (b.odak.sonraki()) Kasa_Acilis_Devret(b);
}

void Cari_Kartlari_Devret(Baglam& b) {
  b.mesaj("Cari Hesap Kartları Devrediliyor....!");
  Tablo_Aktar(b, "CARIKART");
  if (b.odak.sonraki()) Cari_Acilis_Devret(b);
}

void Personel_Kartlari_Devret(Baglam& b) {
  b.mesaj("Personel Kartları Devrediliyor....!");
  Tablo_Aktar(b, "PERSONELKARTI");
  if (b.odak.sonraki()) Personel_Acilis_Devret(b);
}

void Banka_Kartlari_Devret(Baglam& b) {
  b.mesaj("Banka Kartları Devrediliyor...!");
  Tablo_Aktar(b, "HESAPKART");
  b.mesaj("Kredi Kartı Anlaşmaları Devrediliyor...!");
  Alt_Tablo_Aktar(b, "POSANLASMA");
  if (b.odak.sonraki()) Banka_Acilis_Devret(b);
}

void Stok_Kartlari_Devret(Baglam& b) {
  b.mesaj("Stok Kartları Devrediliyor...!");
  Tablo_Aktar(b, "STOKKART");
  Stok_Fiyatlari_Devret(b);
  Sablon_Baglantisi_Duzelt(b);
  if (b.odak.sonraki()) Stok_Acilis_Devret(b);
}

namespace {

void cariFiyatlari(Baglam& b) {
  if (!b.ikisinde("CARISTOKFIYAT")) return;
  Kopya k;
  k.tablo = "CARISTOKFIYAT";
  k.kimlik = kimlikKolonu(b, k.tablo);
  k.kolonlar = kolonlariKur(b, k.tablo, {Kirpma::Kirp, true, true});
  k.sifirKolon = "Cari_ID";
  k.sifirIfade = b.kod(Ref::Cari, "s.Cari_ID");
  k.ad = "s.CariStokFiyat_ID";
  kopyala(b, k);
}

}  // namespace

void Stok_Fiyatlari_Devret(Baglam& b) {
  const bool satis = b.odak.sonraki(3), alis = b.odak.sonraki(4);
  if ((!satis && !alis) || !b.ikisinde("STOKFIYAT") || !b.ikisinde("STOKKART")) return;
  b.mesaj("Stok Fiyatları Devrediliyor...!");
  Kopya k;
  k.tablo = "STOKFIYAT";
  k.kimlik = kimlikKolonu(b, k.tablo);
  const std::string stok = b.kesinKod(Ref::Stok, "s.Stok_ID");
  k.kolonlar = kolonlariKur(b, k.tablo, {Kirpma::Ham, false, false}, {{"Stok_ID", stok}});
  for (KopyaKolonu& kolon : k.kolonlar) {
    const bool alisli = kolon.ad.find("Alis") != std::string::npos;
    if (kolon.ad == "Stok_ID" || kolon.ad == "Fiyat_ID" ||
        (!alisli && kolon.ad.find("Fiyat") == std::string::npos))
      continue;
    kolon.ifade = (alisli ? alis : satis) ? "ISNULL(" + kolon.ifade + ",0)" : "0";
    if (kolon.ifade == "0") kolon.uyar.clear();
  }
  k.kosul = stok + " IS NOT NULL";
  k.esle = "h.Stok_ID=" + stok + " AND h.Fiyat_Sira_No=s.Fiyat_Sira_No";
  // Without sale prices the number itself becomes 0: then any two prices of an item may be one row.
  k.tekrar = {stok};
  if (satis) k.tekrar.emplace_back("s.Fiyat_Sira_No");
  k.ad = "(SELECT MIN(x.Stok_Kod) FROM " + b.k("STOKKART") + " x WHERE x.Stok_ID=s.Stok_ID)";
  kopyala(b, k);
  cariFiyatlari(b);
}

// Sablon_ID of a stock card points to a size standard.
void Sablon_Baglantisi_Duzelt(Baglam& b) {
  if (!b.ikisinde("STOKKART") || !b.ikisinde("BEDENSTANDARTLARI")) return;
  const auto kolonlar = kolonlariKur(b, "STOKKART", {});
  const bool var =
      std::any_of(kolonlar.begin(), kolonlar.end(), [](const auto& k) { return k.ad == "Sablon_ID"; });
  if (!var) return;
  const auto rows = b.oku("SELECT " + b.kesinKod(Ref::Standart, "s.Sablon_ID") +
                          " AS standart,s.Stok_Kod FROM " + b.k("STOKKART") + " s WHERE s.Sablon_ID>0 AND " +
                          b.kesinKod(Ref::Standart, "s.Sablon_ID") + " IS NOT NULL ORDER BY s.Stok_ID");
  constexpr std::int64_t toplu = 50;
  for (std::int64_t i = 0; i < rows->count(); i += toplu) {
    std::string batch;
    for (std::int64_t j = i; j < std::min(i + toplu, rows->count()); ++j)
      batch += "UPDATE STOKKART SET Sablon_ID=" + rows->value(j, 0).text() +
               " WHERE Stok_Kod=" + tirnakli(rows->value(j, 1).text()) + "\n";
    b.yap(batch);
    b.adim(i, rows->count());
  }
}

}  // namespace rollover
