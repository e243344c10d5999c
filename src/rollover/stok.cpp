// Stock openings: one slip per warehouse, one line per item, at the item's average cost.
//
// Two scratch tables stand in the target while the step runs: DEVIR_BAKIYE, the balances per warehouse and
// item, and DEVIR_ACILIS, the few figures of a line that are worked out here, in currency arithmetic. The
// lines themselves are written by the server from both and the item's card. All is read page by page, so that
// memory does not grow with the company.
#include "rollover/adimlar.h"
#include "rollover/maliyet.h"

namespace rollover {

namespace {

constexpr std::int64_t sayfa = 2000;

void bakiyeleriTopla(Baglam& b) {
  b.yap(
      "CREATE TABLE DEVIR_BAKIYE (Sira INT NOT NULL IDENTITY(1,1) PRIMARY KEY, Stok_ID INT NULL, Ambar_No "
      "INT NULL, G FLOAT NULL, C FLOAT NULL) CREATE TABLE DEVIR_ACILIS (Sira INT NOT NULL PRIMARY KEY, No "
      "INT NOT NULL, Miktar MONEY NOT NULL, Maliyet MONEY NOT NULL, Tutar MONEY NOT NULL)");
  b.yap(
      "INSERT INTO DEVIR_BAKIYE (Stok_ID,Ambar_No,G,C) SELECT "
      "a.Stok_ID,a.Ambar_No,SUM(ISNULL(a.G,0)),SUM(ISNULL(a.C,0)) FROM " +
      b.k("AMBBAK") + " a," + b.k("STOKKART") +
      " s WHERE s.Stok_ID=a.Stok_ID AND a.Ambar_No IS NOT NULL GROUP BY a.Stok_ID,a.Ambar_No ORDER BY "
      "a.Ambar_No,a.Stok_ID");
}

// Balances of one warehouse, from `ilk` to `son` of their order.
struct AmbarAraligi {
  std::int64_t ilk = 0, son = 0, sayi = 0;
};
std::map<std::string, AmbarAraligi> ambarAraliklari(Baglam& b) {
  std::map<std::string, AmbarAraligi> out;
  const auto rows = b.oku("SELECT Ambar_No,MIN(Sira),MAX(Sira),COUNT(*) FROM DEVIR_BAKIYE GROUP BY Ambar_No");
  for (std::int64_t i = 0; i < rows->count(); ++i)
    out[rows->value(i, 0).text()] = {rows->value(i, 1).integer(), rows->value(i, 2).integer(),
                                     rows->value(i, 3).integer()};
  return out;
}

class AmbarAcilisi {
 public:
  // `maliyetler`: null when costs are not carried.
  AmbarAcilisi(Baglam& b, const Maliyetler* maliyetler, std::string ambar)
      : b_(b),
        maliyetler_(maliyetler),
        ambar_(std::move(ambar)),
        yazici_(b, "DEVIR_ACILIS", "Sira,No,Miktar,Maliyet,Tutar", false) {
    yazici_.gecici();
  }

  void yaz(const AmbarAraligi& aralik) {
    b_.mesaj(ambar_ + " Nolu Ambara Ait Stok Açılış İşlemleri Yapılıyor...!");
    if (aralik.sayi == 0) return;
    fisAc();
    for (std::int64_t bas = aralik.ilk; bas <= aralik.son; bas += sayfa) {
      const std::int64_t bitis = std::min(bas + sayfa - 1, aralik.son);
      hesapla(bas, bitis);
      satirlariEkle(bas, bitis);
      b_.adim(bitis - aralik.ilk + 1, aralik.sayi);
    }
    const std::string metin = UnVey_Frmt(toplam_, ".");
    b_.yap("UPDATE STOKHAREKETKART SET Burut_Tutar=" + metin + ",Ara_Toplam=" + metin +
           ",Net_Tutar=" + metin + " WHERE Stok_HareketKart_ID =" + fis_);
  }

 private:
  void fisAc() {
    const AcilisAlanlari& a = b_.acilis;
    b_.yap(
        "INSERT INTO STOKHAREKETKART "
        "(Tarih,Fis_No,Islem_Tipi,Burut_Tutar,Indirim_Toplam,Ara_Toplam,KDV_Toplam,NeT_Tutar,ATutar,"
        "BTutar,Saat,Gun,Ay_Index,Ay,Hafta,Fatura_ID,Satici_ID,Doviz_ID,Kur,Dovizli_Tutar,KDV_Dahil) VALUES "
        "(" +
        a.tarih + ",'000" + ambar_ + "','Açılış Fişi',0,0,0,0,0,0,0," + a.saat + "," + a.gun + "," + a.ay +
        "," + a.ayAdi + "," + a.hafta + ",0,1,1,0,0,0)");
    fis_ = b_.oku("SELECT MIN(Stok_HareketKart_ID) FROM STOKHAREKETKART WHERE Fis_No='000" + ambar_ +
                  "' AND Islem_Tipi = 'Açılış Fişi'")
               ->value(0, 0)
               .text();
  }

  static std::string arasinda(std::int64_t bas, std::int64_t bitis) {
    return ".Sira BETWEEN " + std::to_string(bas) + " AND " + std::to_string(bitis);
  }

  // The figures of the lines that open.
  void hesapla(std::int64_t bas, std::int64_t bitis) {
    const auto rows =
        b_.oku("SELECT d.Sira,d.Stok_ID,d.G,d.C,CASE WHEN " + b_.kesinKod(Ref::Stok, "d.Stok_ID") +
               " IS NULL THEN 0 ELSE 1 END AS hedefte FROM DEVIR_BAKIYE d WHERE d" + arasinda(bas, bitis) +
               " ORDER BY d.Sira");
    for (std::int64_t i = 0; i < rows->count(); ++i) {
      ++satirNo_;
      const Para net = Para::sayidan(rows->value(i, 2).real()) - Para::sayidan(rows->value(i, 3).real());
      if (!b_.g.STEksi && net <= Para{}) continue;
      const std::string sira = rows->value(i, 0).text();
      if (rows->value(i, 4).integer() == 0) {
        b_.atla("STOKHAREKET", adi(sira), "Hedefte kartı yok.");
        continue;
      }
      const Para maliyet = maliyetler_ == nullptr ? Para{} : maliyetler_->bul(rows->value(i, 1).integer());
      toplam_ = toplam_ + net * maliyet;
      std::string degerler = sayiMetni(sira) + "," + sayiMetni(std::to_string(satirNo_));
      for (const Para para : {net, maliyet, net * maliyet}) degerler += "," + sayiMetni(sqlMetni(para));
      yazici_.ekle(std::move(degerler), sira);
    }
    yazici_.bosalt();
  }

  // Halves a page that is refused until the line to blame stands alone.
  void satirlariEkle(std::int64_t bas, std::int64_t bitis) {
    try {
      b_.sonuc.eklenen += b_.yap(ekleDeyimi(bas, bitis));
    } catch (const db::SqlError& hata) {
      b_.ayaktaMi(hata);
      if (bas == bitis) {
        b_.atla("STOKHAREKET", adi(std::to_string(bas)), hata.what());
        return;
      }
      const std::int64_t orta = bas + (bitis - bas) / 2;
      satirlariEkle(bas, orta);
      satirlariEkle(orta + 1, bitis);
    }
  }

  std::string ekleDeyimi(std::int64_t bas, std::int64_t bitis) {
    const AcilisAlanlari& a = b_.acilis;
    const std::string giris = "CASE WHEN m.Miktar>0 THEN m.Miktar ELSE 0 END",
                      cikis = "CASE WHEN m.Miktar>0 THEN 0 ELSE -m.Miktar END";
    return "INSERT INTO STOKHAREKET (Stok_HareketKart_ID,Tarih,Fis_No,Islem_No,Islem_Tipi,Satir_Tipi,"
           "Stok_ID,Stok_Kod,Stok_Ad,Ambar_No,Birim,Miktar,RB_Takip,Birim_Fiyat,KDV,ISK,ISK_Tutar,"
           "KDV_Tutar,Tutar,Carpan,Giris,Cikis,Maliyet,Saat,Gun,AY_Index,Ay,Hafta,Fatura_ID,Satici_ID,"
           "Doviz_ID,KUR,Dovizli_Tutar) SELECT " +
           fis_ + "," + a.tarih + ",'000" + ambar_ + "',m.No,'Açılış Fişi','Mal'," +
           b_.kesinKod(Ref::Stok, "d.Stok_ID") +
           ",LTRIM(RTRIM(s.Stok_Kod)),LTRIM(RTRIM(s.Stok_Ad)),d.Ambar_No,LTRIM(RTRIM(s.Ana_Birim)),m.Miktar,"
           "0,m.Maliyet,0,'0',0,0,m.Tutar,1," +
           giris + "," + cikis + ",m.Maliyet," + a.saat + "," + a.gun + "," + a.ay + "," + a.ayAdi + "," +
           a.hafta + ",0,1,1,0,0 FROM DEVIR_ACILIS m,DEVIR_BAKIYE d," + b_.k("STOKKART") +
           " s WHERE d.Sira=m.Sira AND s.Stok_ID=d.Stok_ID AND m" + arasinda(bas, bitis) + " ORDER BY m.Sira";
  }

  std::string adi(const std::string& sira) {
    const auto rows = b_.oku("SELECT s.Stok_Kod FROM DEVIR_BAKIYE d," + b_.k("STOKKART") +
                             " s WHERE s.Stok_ID=d.Stok_ID AND d.Sira=" + sira);
    return rows->count() > 0 ? rows->value(0, 0).trimmed() : "";
  }

  Baglam& b_;
  const Maliyetler* maliyetler_;
  std::string ambar_, fis_;
  SatirYazici yazici_;
  std::int64_t satirNo_ = 0;
  Para toplam_;
};

}  // namespace

void Stok_Acilis_Devret(Baglam& b) {
  if (!b.ikisinde("STOKKART") || !b.ikisinde("STOKHAREKET") || !b.hedefte("STOKHAREKETKART")) return;
  b.yap("DELETE FROM STOKHAREKETKART WHERE Islem_Tipi='Açılış Fişi'");
  b.yap("DELETE FROM STOKHAREKET WHERE Islem_Tipi='Açılış Fişi'");
  if (!b.kaynakta("AMBAR")) return;
  bakiyeleriTopla(b);
  std::optional<Maliyetler> birim;
  if (b.odak.sonraki(2)) birim = maliyetler(b);
  const Maliyetler* const m = birim ? &*birim : nullptr;
  auto araliklar = ambarAraliklari(b);
  std::set<std::string> acilan;
  const auto ambarlar = b.kaynakOku("SELECT Ambar_No FROM AMBAR ORDER BY Ambar_No");
  for (std::int64_t i = 0; i < ambarlar->count(); ++i) {
    if (ambarlar->value(i, 0).isNull()) continue;
    const std::string no = ambarlar->value(i, 0).text();
    // A number that two warehouses share opens twice.
    if (!acilan.insert(no).second) b.yap("DELETE FROM DEVIR_ACILIS");
    AmbarAcilisi(b, m, no).yaz(araliklar[no]);
  }
  b.yap("DROP TABLE DEVIR_ACILIS DROP TABLE DEVIR_BAKIYE");
}

}  // namespace rollover
