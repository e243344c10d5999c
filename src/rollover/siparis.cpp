// Open orders with the lines that are still to be delivered.
#include "rollover/adimlar.h"
#include "rollover/kopya.h"

namespace rollover {

namespace {

const char* const acik = "Durum='AÇIK'";

void kartlar(Baglam& b) {
  Kopya k;
  k.tablo = "SIPARISKART";
  k.kimlik = kimlikKolonu(b, k.tablo);
  k.kolonlar = kolonlariKur(b, k.tablo, {Kirpma::Kirp, false, false},
                            {{"Kullanici_ID", "-1"},
                             {"Cari_ID", b.kod(Ref::Cari, "s.Cari_ID")},
                             {"Satici_ID", b.kod(Ref::Satici, "s.Satici_ID")},
                             {"Doviz_ID", b.kod(Ref::Doviz, "s.Doviz_ID")}});
  k.kosul = std::string("s.") + acik;
  k.sira = "s.Tarih,s.Saat";
  k.esle = "h.Fis_No=s.Fis_No AND h.Islem_Tipi=ISNULL(s.Islem_Tipi,'')";
  k.tekrar = {"s.Fis_No", "s.Islem_Tipi"};
  // The new period has taken the order over: its own user, or documents that hang on it.
  k.hedefAtla =
      "h.Kullanici_ID<>-1 OR (h.Kullanici_ID=-1 AND h.Siparis_ID IN (SELECT t.Siparis_ID FROM "
      "SIPARISBAGLANTI t WHERE t.Siparis_ID IS NOT NULL))";
  k.ad = "s.Fis_No";
  kopyala(b, k);
}

// Orders of the target that carry the mark, are open in the source and have nothing hanging on them: those
// that this run has written.
constexpr int tasinanTuru = 200;
const std::string tasinanlar =
    "(SELECT m.Eski FROM DEVIR_KOD m WHERE m.Tur=" + std::to_string(tasinanTuru) + ")";

std::int64_t tasinanlariTopla(Baglam& b) {
  return b.yap("INSERT INTO DEVIR_KOD (Tur,Eski,Yeni,Var) SELECT " + std::to_string(tasinanTuru) +
               ",h.Siparis_ID,0,1 FROM SIPARISKART h JOIN " + b.k("SIPARISKART") +
               " x ON x.Fis_No=h.Fis_No AND ISNULL(x.Islem_Tipi,'')=h.Islem_Tipi WHERE x." + acik +
               " AND h.Kullanici_ID=-1 AND h.Siparis_ID NOT IN (SELECT t.Siparis_ID FROM SIPARISBAGLANTI t "
               "WHERE t.Siparis_ID IS "
               "NOT NULL) GROUP BY h.Siparis_ID");
}

void satirlar(Baglam& b) {
  const bool bekleyen = b.odak.sonraki();
  const bool siparisVar = tasinanlariTopla(b) > 0;
  b.mesaj("Sipariş Hareketleri Devrediliyor...!");
  Kopya k;
  k.tablo = "SIPARISHAREKET";
  k.kimlik = kimlikKolonu(b, k.tablo);
  OzelKolonlar ozel = {{"Kullanici_ID", "-1"},
                       {"Cari_ID", b.kod(Ref::Cari, "s.Cari_ID")},
                       {"Satici_ID", b.kod(Ref::Satici, "s.Satici_ID")},
                       {"Doviz_ID", b.kod(Ref::Doviz, "s.Doviz_ID")},
                       {"Stok_ID", b.kod(Ref::Stok, "s.Stok_ID")}};
  if (bekleyen) {
    ozel.emplace_back("Miktar", "s.Kalan");
    ozel.emplace_back("Sevk_Edilen", "0");
  }
  k.kolonlar = kolonlariKur(b, k.tablo, {Kirpma::Kirp, false, false}, ozel);
  k.kosul = "s.Sevk_Edilen<>s.Miktar AND s.Kalan<>0";
  if (siparisVar) {
    b.yap("DELETE FROM SIPARISHAREKET WHERE Siparis_ID IN" + tasinanlar);
    // By the number alone: two document types with one number bring each other's lines.
    k.kosul +=
        " AND s.Fis_No IN (SELECT h.Fis_No FROM SIPARISKART h WHERE h.Siparis_ID IN " + tasinanlar + ")";
  }
  k.sira = "s.Tarih,s.Saat,s.Islem_No";
  k.ad = "s.Fis_No";
  kopyala(b, k);
}

void baglantilar(Baglam& b) {
  b.mesaj("Sipariş Bağlantıları Ayarlanıyor...!");
  // Of two orders with one number and type the first gives the link.
  b.yap(
      "UPDATE SIPARISHAREKET SET Siparis_ID=k.Siparis_ID FROM SIPARISHAREKET,(SELECT "
      "Fis_No,Islem_Tipi,MIN(Siparis_ID) AS "
      "Siparis_ID FROM SIPARISKART GROUP BY Fis_No,Islem_Tipi HAVING MAX(CASE WHEN Durum='AÇIK' THEN 1 ELSE "
      "0 END)=1) k WHERE "
      "k.Fis_No=SIPARISHAREKET.Fis_No AND k.Islem_Tipi=SIPARISHAREKET.Islem_Tipi");
}

}  // namespace

void Siparisleri_Devret(Baglam& b) {
  b.mesaj("Sipariş Kartları Devrediliyor...!");
  if (!b.ikisinde("SIPARISKART") || !b.ikisinde("SIPARISHAREKET") || !b.hedefte("SIPARISBAGLANTI")) return;
  kartlar(b);
  satirlar(b);
  baglantilar(b);
}

}  // namespace rollover
