// Openings of current accounts, with their average due day, and of employees.
#include <chrono>
#include <cmath>

#include "rollover/adimlar.h"
#include "session/tarih.h"

namespace rollover {

namespace {

std::chrono::sys_days gunu(const std::string& tarih) {
  db::DateTime t;
  session::tarihOku(tarih, t);
  return std::chrono::sys_days{std::chrono::year{t.year} / t.month / t.day};
}

// The net balance through the money format: credit first, then debit. Not both are above 0.
struct NetBakiye {
  Para alacak, borc;
};
NetBakiye netBakiye(double AT, double BT, int hane) {
  NetBakiye n;
  if (AT - BT > 0)
    n.alacak = paraBicimle(AT - BT, hane);
  else
    n.borc = paraBicimle(BT - AT, hane);
  return n;
}

// A new header slip; its id.
std::string baslikYaz(Baglam& b, const std::string& tablo, const std::string& kimlik) {
  b.yap("DELETE FROM " + tablo + " WHERE Islem_Tipi='Açılış Fişi'");
  b.yap("INSERT INTO " + tablo + " (Tarih,Fis_No,Islem_Tipi,ATutar,BTutar) VALUES (" + b.acilis.tarih +
        ",1,'Açılış Fişi',0,0)");
  const auto rows = b.oku("SELECT MIN(" + kimlik + ") FROM " + tablo + " WHERE Islem_Tipi='Açılış Fişi'");
  return rows->value(0, 0).text();
}

std::string dovizDegerleri(double DB, int hane) {
  if (DB >= 0) return sayiMetni(db::literal(DB)) + ",'0'," + sayiMetni(db::literal(DB));
  // A negative balance shows as a credit and, without its sign, as the amount.
  const std::string mutlak = sayiMetni(sqlMetni(paraBicimle(-DB, hane)));
  return "'0'," + mutlak + "," + mutlak;
}

constexpr std::int64_t sayfa = 2000;

// DEVIR_CARI: sums of every account with movements, in the order of the ids; DEVIR_VALOR: what the average
// due day needs. Both stand in the target while the step runs, and are read page by page. Gives the accounts.
std::int64_t cariToplamlari(Baglam& b) {
  b.yap(
      "CREATE TABLE DEVIR_CARI (Sira INT NOT NULL IDENTITY(1,1) PRIMARY KEY, Cari_ID INT NULL, AT FLOAT "
      "NULL, "
      "BT FLOAT NULL, DB FLOAT NULL) CREATE TABLE DEVIR_VALOR (Cari_ID INT NOT NULL PRIMARY KEY, AT FLOAT "
      "NULL, BT FLOAT NULL, BA FLOAT NULL, AA FLOAT NULL)");
  return b.yap(
      "INSERT INTO DEVIR_CARI (Cari_ID,AT,BT,DB) SELECT c.Cari_ID,h.AT,h.BT,h.DB FROM " + b.k("CARIKART") +
      " c,(SELECT Cari_ID,ISNULL(SUM(ATutar),0) AS AT,ISNULL(SUM(BTutar),0) AS "
      "BT,ISNULL(SUM(Dovizli_Tutar2),0) "
      "AS DB FROM " +
      b.k("CARIHAREKETLER") +
      " GROUP BY Cari_ID) h WHERE c.Cari_ID=h.Cari_ID AND (h.AT>0 OR h.BT>0 OR h.DB<>0) ORDER BY c.Cari_ID");
}
void valorToplamlari(Baglam& b) {
  const std::string gun = "Datediff(d," + tarihSql(b.g.taraf[0].Bas_Tar) + ",Vade)";
  b.yap("INSERT INTO DEVIR_VALOR (Cari_ID,AT,BT,BA,AA) SELECT Cari_ID,SUM(ATutar),SUM(BTutar),SUM(BTutar*" +
        gun + "),SUM(ATutar*" + gun + ") FROM " + b.k("CARIHAREKETLERVALOR") +
        " WHERE Cari_ID IN (SELECT Cari_ID FROM DEVIR_CARI) GROUP BY Cari_ID");
}

std::string acilisKolonlari(const AcilisAlanlari& a) {
  return a.saat + "," + a.gun + "," + a.ay + "," + a.ayAdi + "," + a.hafta;
}

}  // namespace

std::int64_t Valor_Hesapla(const ValorToplami& t, const std::string& basTar0, const std::string& basTar1,
                           bool kesirli) {
  // A quotient passes through its text: where that has a comma, the reading stops there.
  const auto bolum = [&](double x, double y) {
    if (x == 0 || y == 0) return 0.0;
    return kesirli ? x / y : std::trunc(x / y);
  };
  const double A = bolum(t.AA, t.AT), B = bolum(t.BA, t.BT);
  double D = B - A;
  D += t.AT > t.BT ? A : B;
  constexpr double enUzak = 1e7;  // beyond it no date is left; such a day is written as 0 anyway
  if (!(std::fabs(D) < enUzak)) return static_cast<std::int64_t>(enUzak);
  const auto gun = static_cast<std::int64_t>(std::nearbyint(D));
  return (gunu(basTar0) - gunu(basTar1)).count() + gun;
}

namespace {

void cariSayfasi(Baglam& b, std::int64_t bas, const std::string& fis, SatirYazici& yazici) {
  const auto rows =
      b.oku("SELECT d.Sira,c.Cari_Kod,c.Unvan,d.AT,d.BT,d.DB," + b.kesinKod(Ref::Cari, "d.Cari_ID") +
            " AS hedef,v.AT,v.BT,v.AA,v.BA FROM " + b.k("CARIKART") +
            " c,DEVIR_CARI d LEFT JOIN DEVIR_VALOR v ON v.Cari_ID=d.Cari_ID WHERE "
            "c.Cari_ID=d.Cari_ID AND d.Sira>" +
            std::to_string(bas) + " AND d.Sira<=" + std::to_string(bas + sayfa) + " ORDER BY d.Sira");
  constexpr std::int64_t enUzakVade = 1000;
  for (std::int64_t i = 0; i < rows->count(); ++i) {
    const auto sayi = [&](int kolon) {
      const db::Value v = rows->value(i, kolon);
      return v.isNull() ? 0.0 : v.real();
    };
    const auto n = netBakiye(sayi(3), sayi(4), b.hane);
    if (n.alacak <= Para{} && n.borc <= Para{}) continue;
    const std::string kod = rows->value(i, 1).trimmed();
    if (rows->value(i, 6).isNull()) {
      b.atla("ACILIS", kod, "Hedefte kartı yok.");
      continue;
    }
    std::int64_t gun = Valor_Hesapla({sayi(7), sayi(8), sayi(9), sayi(10)}, b.g.taraf[0].Bas_Tar,
                                     b.g.taraf[1].Bas_Tar, b.o.Ondalik_Ayrac == ".");
    if (gun > enUzakVade || gun < -enUzakVade) gun = 0;
    yazici.ekle(b.acilis.tarih + ",'" + rows->value(i, 0).text() + "','Açılış Fişi'," +
                    sayiMetni(rows->value(i, 6).text()) + "," + tirnakli(kod) + "," +
                    metinSql(rows->value(i, 2)) + "," + sayiMetni(sqlMetni(n.alacak)) + "," +
                    sayiMetni(sqlMetni(n.borc)) + "," + acilisKolonlari(b.acilis) + ",1,1,0," +
                    dovizDegerleri(sayi(5), b.hane) + "," + sayiMetni(std::to_string(gun)) + "," + fis,
                kod);
  }
}

}  // namespace

void Cari_Acilis_Devret(Baglam& b) {
  if (!b.ikisinde("CARIKART") || !b.hedefte("ACILIS") || !b.hedefte("CARIHAREKET")) return;
  b.yap("DELETE FROM ACILIS WHERE Cari_Kod=ANY (SELECT Cari_Kod FROM " + b.k("CARIKART") + ")");
  const std::int64_t toplam = cariToplamlari(b);
  b.mesaj("Cari Hesap Açılış İşlemleri Yapılıyor...!");
  if (toplam > 0) {
    const std::string fis = baslikYaz(b, "CARIHAREKET", "Cari_Hareket_ID");
    valorToplamlari(b);
    SatirYazici yazici(
        b, "ACILIS",
        "Tarih,Fis_No,Islem_Tipi,Cari_ID,Cari_Kod,Cari_Unvan,ATutar,BTutar,Saat,Gun,AY_Index,Ay,Hafta,Satici_"
        "ID,Doviz_ID,KUR,Dovizli_Borc,Dovizli_Alacak,Dovizli_Tutar,Vade,CariHareket_Fis_ID",
        false);
    for (std::int64_t bas = 0; bas < toplam; bas += sayfa) {
      cariSayfasi(b, bas, fis, yazici);
      b.adim(std::min(bas + sayfa, toplam), toplam);
    }
    yazici.bosalt();
  }
  b.yap("DROP TABLE DEVIR_VALOR DROP TABLE DEVIR_CARI");
}

void Personel_Acilis_Devret(Baglam& b) {
  if (!b.hedefte("PERSONELHAREKET") || !b.hedefte("PERSONELHAREKETKART")) return;
  b.yap("DELETE FROM PERSONELHAREKET WHERE Islem_Tipi='Açılış Fişi'");
  if (!b.ikisinde("PERSONELKARTI") || !b.kaynakta("PERSONELHAREKET")) return;
  const std::string A = "ISNULL(SUM(h.ATutar),0)", B = "ISNULL(SUM(h.BTutar),0)";
  const auto rows = b.oku("SELECT p.Personel_ID,p.Kod,p.Adi," + A + " AS AT," + B + " AS BT," +
                          b.kesinKod(Ref::Personel, "p.Personel_ID") + " AS hedef FROM " +
                          b.k("PERSONELKARTI") + " p," + b.k("PERSONELHAREKET") +
                          " h WHERE p.Personel_ID=h.Personel_ID GROUP BY p.Personel_ID,p.Kod,p.Adi HAVING(" +
                          A + ">0 OR " + B + ">0) ORDER BY p.Personel_ID");
  b.mesaj("Personel Hesap Açılış İşlemleri Yapılıyor...!");
  if (rows->count() == 0) return;
  const std::string fis = baslikYaz(b, "PERSONELHAREKETKART", "Personel_HareketKart_ID");
  SatirYazici yazici(b, "PERSONELHAREKET",
                     "Tarih,Fis_No,Islem_Tipi,Personel_ID,Kod,Adi,ATutar,BTutar,Saat,Gun,AY_Index,Ay,Hafta,"
                     "Doviz_ID,KUR,Dovizli_"
                     "Tutar,Personel_HareketKart_ID",
                     false);
  for (std::int64_t i = 0; i < rows->count(); ++i) {
    const auto n = netBakiye(rows->value(i, 3).real(), rows->value(i, 4).real(), b.hane);
    if (n.alacak <= Para{} && n.borc <= Para{}) continue;
    const std::string kod = rows->value(i, 1).trimmed();
    if (rows->value(i, 5).isNull()) {
      b.atla("PERSONELHAREKET", kod, "Hedefte kartı yok.");
      continue;
    }
    yazici.ekle(b.acilis.tarih + ",'" + std::to_string(i + 1) + "','Açılış Fişi'," +
                    sayiMetni(rows->value(i, 5).text()) + "," + tirnakli(kod) + "," +
                    metinSql(rows->value(i, 2)) + "," + sayiMetni(sqlMetni(n.alacak)) + "," +
                    sayiMetni(sqlMetni(n.borc)) + "," + acilisKolonlari(b.acilis) + ",1,0,0," + fis,
                kod);
    b.adim(i + 1, rows->count());
  }
  yazici.bosalt();
}

}  // namespace rollover
