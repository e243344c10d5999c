// Stock openings: one slip per warehouse, one line per item, at the item's average cost.
//
// Two scratch tables stand in the target while the step runs: DEVIR_BAKIYE, the balances per warehouse and
// item, and DEVIR_HAREKET, the histories in the order of their replay. Both are read page by page, so that
// memory does not grow with the company.
#include "rollover/adimlar.h"
#include "rollover/maliyet.h"

namespace rollover {

namespace {

constexpr int bakiyeSayfasi = 2000, hareketSayfasi = 20'000;

std::optional<Para> para(const db::Value& deger) {
  if (deger.isNull()) return std::nullopt;
  return Para::sayidan(deger.real());
}

}  // namespace

Maliyetler maliyetleriHesapla(Baglam& b) {
  b.yap(
      "CREATE TABLE DEVIR_HAREKET (Sira INT NOT NULL IDENTITY(1,1) PRIMARY KEY, Stok_ID INT NULL, Giris REAL "
      "NULL, Cikis REAL "
      "NULL, Maliyet FLOAT NULL)");
  const std::int64_t toplam = b.yap(
      "INSERT INTO DEVIR_HAREKET (Stok_ID,Giris,Cikis,Maliyet) SELECT Stok_ID,Giris,Cikis,Maliyet FROM " +
      b.k("STOKHAREKET") +
      " WHERE Satir_Tipi='Mal' AND Islem_Tipi NOT LIKE 'Konsinye%' AND Stok_ID IS NOT NULL AND Tarih <= " +
      tarihSql(b.g.taraf[0].Bit_Tar) + " ORDER BY Stok_ID,Tarih,Cikis,Stok_Hareket_ID");
  Maliyetler out;
  Maliyetlendirme_AOG hesap;
  std::int64_t stok = 0, sira = 0;
  while (true) {
    const auto rows = b.oku("SELECT TOP " + std::to_string(hareketSayfasi) +
                            " Sira,Stok_ID,Giris,Cikis,Maliyet FROM DEVIR_HAREKET WHERE Sira>" +
                            std::to_string(sira) + " ORDER BY Sira");
    if (!rows || rows->count() == 0) break;
    for (std::int64_t i = 0; i < rows->count(); ++i) {
      const std::int64_t id = rows->value(i, 1).integer();
      if (id != stok) hesap = {};
      stok = id;
      hesap.isle({para(rows->value(i, 2)), para(rows->value(i, 3)), para(rows->value(i, 4))});
      out[stok] = hesap.birimMaliyet();
    }
    sira = rows->value(rows->count() - 1, 0).integer();
    b.adim(sira, toplam);
  }
  b.yap("DROP TABLE DEVIR_HAREKET");
  return out;
}

namespace {

void bakiyeleriTopla(Baglam& b) {
  b.yap(
      "CREATE TABLE DEVIR_BAKIYE (Sira INT NOT NULL IDENTITY(1,1) PRIMARY KEY, Stok_ID INT NULL, Ambar_No "
      "INT NULL, G FLOAT NULL, C "
      "FLOAT NULL)");
  b.yap(
      "INSERT INTO DEVIR_BAKIYE (Stok_ID,Ambar_No,G,C) SELECT "
      "Stok_ID,Ambar_No,SUM(ISNULL(G,0)),SUM(ISNULL(C,0)) FROM " +
      b.k("AMBBAK") +
      " WHERE Stok_ID IS NOT NULL AND Ambar_No IS NOT NULL GROUP BY Stok_ID,Ambar_No ORDER BY "
      "Ambar_No,Stok_ID");
}

class AmbarAcilisi {
 public:
  AmbarAcilisi(Baglam& b, const Maliyetler& maliyetler, std::string ambar)
      : b_(b),
        maliyetler_(maliyetler),
        ambar_(std::move(ambar)),
        yazici_(b, "STOKHAREKET",
                "Stok_HareketKart_ID,Tarih,Fis_No,Islem_No,Islem_Tipi,Satir_Tipi,Stok_ID,Stok_Kod,Stok_Ad,"
                "Ambar_No,Birim,Miktar,RB_"
                "Takip,Birim_Fiyat,KDV,ISK,ISK_Tutar,KDV_Tutar,Tutar,Carpan,Giris,Cikis,Maliyet,Saat,Gun,AY_"
                "Index,Ay,Hafta,Fatura_"
                "ID,Satici_ID,Doviz_ID,KUR,Dovizli_Tutar",
                false) {}

  void yaz() {
    b_.mesaj(ambar_ + " Nolu Ambara Ait Stok Açılış İşlemleri Yapılıyor...!");
    const std::string nereden =
        " FROM DEVIR_BAKIYE d," + b_.k("STOKKART") + " s WHERE s.Stok_ID=d.Stok_ID AND d.Ambar_No=" + ambar_;
    const std::int64_t toplam = b_.oku("SELECT COUNT(*)" + nereden)->value(0, 0).integer();
    if (toplam == 0) return;
    fisAc();
    std::int64_t son = 0;
    while (satirNo_ < toplam) {
      const auto rows = b_.oku("SELECT TOP " + std::to_string(bakiyeSayfasi) +
                               " d.Sira,d.Stok_ID,d.G,d.C,s.Stok_Kod,s.Stok_Ad,s.Ana_Birim," +
                               b_.kesinKod(Ref::Stok, "d.Stok_ID") + " AS hedef" + nereden + " AND d.Sira>" +
                               std::to_string(son) + " ORDER BY d.Sira");
      if (rows->count() == 0) break;
      for (std::int64_t i = 0; i < rows->count(); ++i) satir(*rows, i);
      son = rows->value(rows->count() - 1, 0).integer();
      b_.adim(satirNo_, toplam);
    }
    yazici_.bosalt();
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

  void satir(const db::Rows& rows, std::int64_t i) {
    ++satirNo_;
    const Para net = Para::sayidan(rows.value(i, 2).real()) - Para::sayidan(rows.value(i, 3).real());
    const Para giris = net > Para{} ? net : Para{}, cikis = net > Para{} ? Para{} : net;
    if (!b_.g.STEksi && giris <= Para{}) return;
    const std::string kod = rows.value(i, 4).trimmed();
    if (rows.value(i, 7).isNull()) {
      b_.atla("STOKHAREKET", kod, "Hedefte kartı yok.");
      return;
    }
    const auto bulunan = maliyetler_.find(rows.value(i, 1).integer());
    const Para maliyet = bulunan == maliyetler_.end() ? Para{} : bulunan->second;
    const Para miktar = b_.g.STEksi ? net : giris - cikis;
    const std::string m = sqlMetni(maliyet);
    const AcilisAlanlari& a = b_.acilis;
    yazici_.ekle(fis_ + "," + a.tarih + ",'000" + ambar_ + "'," + std::to_string(satirNo_) +
                     ",'Açılış Fişi','Mal'," + rows.value(i, 7).text() + "," + tirnakli(kod) + "," +
                     metinSql(rows.value(i, 5)) + "," + ambar_ + "," + metinSql(rows.value(i, 6)) + "," +
                     sqlMetni(miktar) + ",0," + m + ",0,'0',0,0," + sqlMetni(miktar * maliyet) + ",1," +
                     sqlMetni(giris) + "," + sqlMetni(b_.g.STEksi ? -cikis : Para{}) + "," + m + "," +
                     a.saat + "," + a.gun + "," + a.ay + "," + a.ayAdi + "," + a.hafta + ",0,1,1,0,0",
                 kod);
    toplam_ = toplam_ + net * maliyet;
  }

  Baglam& b_;
  const Maliyetler& maliyetler_;
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
  Maliyetler maliyetler;
  if (b.odak.sonraki(2)) maliyetler = maliyetleriHesapla(b);
  const auto ambarlar = b.kaynakOku("SELECT Ambar_No FROM AMBAR ORDER BY Ambar_No");
  for (std::int64_t i = 0; i < ambarlar->count(); ++i)
    if (!ambarlar->value(i, 0).isNull()) AmbarAcilisi(b, maliyetler, ambarlar->value(i, 0).text()).yaz();
  b.yap("DROP TABLE DEVIR_BAKIYE");
}

}  // namespace rollover
