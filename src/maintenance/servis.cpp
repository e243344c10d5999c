#include "maintenance/servis.h"

#include <array>

#include "catalog/katalog.h"
#include "session/firma_bul.h"
#include "session/metin.h"
#include "session/sayi.h"
#include "session/statements.h"
#include "session/tarih.h"

namespace maintenance {

namespace {

using session::Oturum;

constexpr std::array<std::string_view, 17> tablolar = {
    "AMBARKILIT",  "BANKAHAREKETKILIT", "BANKAKILIT",       "CARIHAREKETKILIT",
    "CARIKILIT",   "DOVIZTANIMKILIT",   "FATURAKILIT",      "FIYATTANIMKILIT",
    "ISYERIKILIT", "KASAHAREKETKILIT",  "KASAKILIT",        "MUHFISKILIT",
    "MUHKILIT",    "SATICIKILIT",       "SIPARISKARTKILIT", "STOKHAREKETKARTKILIT",
    "STOKKILIT"};

constexpr std::array<Denetim, 12> sorgular = {{
    {"Faturası olmayan irsaliyeler", "Bir faturaya bağlı görünen, ama o fatura bulunmayan stok fişleri.",
     "SELECT Tarih,Fis_No,Stok_HareketKart_ID FROM STOKHAREKETKART  WHERE  Fatura_ID<>0  AND Fatura_ID  IS "
     "NOT NULL  AND  NOT Fatura_ID = ANY (SELECT Fatura_ID FROM FATURAKART)",
     DenetimGrubi::FaturaIrsaliye},
    {"Stok fişi olmayan faturalar", "Hiçbir stok fişinin göstermediği faturalar.",
     "SELECT Fatura_ID,Tarih,Fis_No FROM FATURAKART WHERE  NOT Fatura_ID = ANY (SELECT Fatura_ID FROM "
     "STOKHAREKETKART)",
     DenetimGrubi::FaturaIrsaliye},
    {"Hesap bakiyesi farkları",
     "Saklanan hesap bakiyesi, hesabın fiş satırlarının toplamından başka ya da hiç yok.",
     "SELECT B.MHesap_Kod,B.Bakiye,ISNULL(H.Toplam,0) AS Hareketler FROM MUHBAKIYE B LEFT JOIN (SELECT "
     "MHesap_ID,SUM(BTutar-ATutar) AS Toplam FROM MUHFISHAR GROUP BY MHesap_ID) H ON H.MHesap_ID=B.MHesap_ID "
     "WHERE ABS(ISNULL(B.Bakiye,0)-ISNULL(H.Toplam,0))>=0.005 UNION ALL SELECT MAX(M.MHesap_Kod),NULL,"
     "SUM(M.BTutar-M.ATutar) FROM MUHFISHAR M LEFT JOIN MUHBAKIYE K ON K.MHesap_ID=M.MHesap_ID WHERE "
     "K.MHesap_ID IS NULL GROUP BY M.MHesap_ID HAVING ABS(SUM(M.BTutar-M.ATutar))>=0.005 ORDER BY 1"},
    {"Borcu alacağına eşit olmayan muhasebe fişleri",
     "Fişin borç ve alacak satırlarının toplamları tutmuyor.",
     "SELECT K.Fis_ID,K.Tarih,K.Fis_No,SUM(H.BTutar) AS Borc,SUM(H.ATutar) AS Alacak FROM MUHFISKART K JOIN "
     "MUHFISHAR H ON H.Fis_ID=K.Fis_ID GROUP BY K.Fis_ID,K.Tarih,K.Fis_No HAVING "
     "ABS(SUM(H.BTutar)-SUM(H.ATutar))>=0.005 ORDER BY K.Fis_ID"},
    {"Kartı olmayan stok satırları", "Stok kartı silinmiş ya da hiç olmamış hareket satırları.",
     "SELECT H.Stok_Hareket_ID,H.Tarih,H.Fis_No,H.Islem_Tipi,H.Stok_ID,H.Stok_Kod FROM STOKHAREKET H LEFT "
     "JOIN "
     "STOKKART S ON S.Stok_ID=H.Stok_ID WHERE H.Satir_Tipi='Mal' AND S.Stok_ID IS NULL ORDER BY "
     "H.Stok_Hareket_ID"},
    {"Fişi olmayan stok satırları", "Bağlı olduğu stok fişi bulunmayan hareket satırları.",
     "SELECT H.Stok_Hareket_ID,H.Tarih,H.Fis_No,H.Islem_Tipi,H.Stok_HareketKart_ID FROM STOKHAREKET H LEFT "
     "JOIN "
     "STOKHAREKETKART K ON K.Stok_HareketKart_ID=H.Stok_HareketKart_ID WHERE H.Stok_HareketKart_ID<>0 AND "
     "K.Stok_HareketKart_ID IS NULL ORDER BY H.Stok_Hareket_ID"},
    {"Belgesi olmayan ödeme satırları", "Ödeme planı satırının doğduğu belge artık yok.",
     "SELECT O.Odeme_ID,O.Tarih,O.Islem_Tipi,O.Islem_ID,O.Borc,O.Alacak FROM ODEMEHAREKET O WHERE NOT EXISTS "
     "(SELECT 1 FROM KASAHAREKET K WHERE K.Kasa_Hareket_ID=O.Islem_ID AND K.Islem_Tipi=O.Islem_Tipi) AND NOT "
     "EXISTS (SELECT 1 FROM BANKAHAREKET B WHERE B.Hareket_ID=O.Islem_ID AND B.Islem_Tipi=O.Islem_Tipi) AND "
     "NOT "
     "EXISTS (SELECT 1 FROM CARIHAREKET C WHERE C.Cari_Hareket_ID=O.Islem_ID AND C.Islem_Tipi=O.Islem_Tipi) "
     "AND "
     "NOT EXISTS (SELECT 1 FROM ACILIS A WHERE A.Cari_Hareket_ID=O.Islem_ID AND A.Islem_Tipi=O.Islem_Tipi) "
     "AND "
     "NOT EXISTS (SELECT 1 FROM FATURAKART F WHERE F.Fatura_ID=O.Islem_ID AND F.Islem_Tipi=O.Islem_Tipi) AND "
     "NOT EXISTS (SELECT 1 FROM POSHAREKET P WHERE P.PosHareket_ID=O.Islem_ID AND P.Islem_Tipi=O.Islem_Tipi) "
     "AND NOT EXISTS (SELECT 1 FROM CEK E WHERE E.Cek_ID=O.Islem_ID AND E.Islem_Tipi=O.Islem_Tipi) AND NOT "
     "EXISTS (SELECT 1 FROM SENET S WHERE S.Senet_ID=O.Islem_ID AND S.Islem_Tipi=O.Islem_Tipi) ORDER BY "
     "O.Odeme_ID"},
    {"Dönem dışındaki hareketler", "Tarihi, firmanın mali yılının dışında kalan hareketler.",
     "SELECT 'CARIHAREKET' AS Tablo,Cari_Hareket_ID AS Kayit,Tarih,Fis_No FROM CARIHAREKET WHERE Tarih<@BAS "
     "OR "
     "Tarih>=@BIT UNION ALL SELECT 'KASAHAREKET',Kasa_Hareket_ID,Tarih,Fis_No FROM KASAHAREKET WHERE "
     "Tarih<@BAS "
     "OR Tarih>=@BIT UNION ALL SELECT 'BANKAHAREKET',Hareket_ID,Tarih,Fis_No FROM BANKAHAREKET WHERE "
     "Tarih<@BAS "
     "OR Tarih>=@BIT UNION ALL SELECT 'FATURAKART',Fatura_ID,Tarih,Fis_No FROM FATURAKART WHERE Tarih<@BAS "
     "OR "
     "Tarih>=@BIT UNION ALL SELECT 'STOKHAREKETKART',Stok_HareketKart_ID,Tarih,Fis_No FROM STOKHAREKETKART "
     "WHERE "
     "Tarih<@BAS OR Tarih>=@BIT UNION ALL SELECT 'MUHFISKART',Fis_ID,Tarih,Fis_No FROM MUHFISKART WHERE "
     "Tarih<@BAS OR Tarih>=@BIT ORDER BY 1,2"},
    {"Yinelenen fatura numaraları", "Aynı tür, numara ve carinin birden çok faturası var.",
     "SELECT Islem_Tipi,Fis_No,Cari_Kod,COUNT(*) AS Adet FROM FATURAKART WHERE Fis_No<>'' GROUP BY "
     "Islem_Tipi,Fis_No,Cari_Kod HAVING COUNT(*)>1 ORDER BY Islem_Tipi,Fis_No,Cari_Kod"},
    {"Yinelenen muhasebe fiş numaraları", "Aynı türden aynı numaralı birden çok muhasebe fişi var.",
     "SELECT Islem_Tipi,Fis_No,COUNT(*) AS Adet FROM MUHFISKART WHERE Fis_No<>'' GROUP BY Islem_Tipi,Fis_No "
     "HAVING COUNT(*)>1 ORDER BY Islem_Tipi,Fis_No"},
    {"Durumu kartından ayrılan çekler", "Çekin son durum kaydı, kartında yazılı durumdan başka.",
     "SELECT K.Cek_ID,K.Cek_No,K.Portfoy_No,K.Durum AS Kart,D.Durum AS Son_Durum FROM CEKKART K JOIN "
     "CEKDURUM D "
     "ON D.Cek_ID=K.Cek_ID WHERE D.Durum_ID=(SELECT MAX(X.Durum_ID) FROM CEKDURUM X WHERE X.Cek_ID=K.Cek_ID) "
     "AND D.Durum<>K.Durum ORDER BY K.Cek_ID"},
    {"Durumu kartından ayrılan senetler", "Senedin son durum kaydı, kartında yazılı durumdan başka.",
     "SELECT K.Senet_ID,K.Senet_No,K.Portfoy_No,K.Durum AS Kart,D.Durum AS Son_Durum FROM SENETKART K JOIN "
     "SENETDURUM D ON D.Senet_ID=K.Senet_ID WHERE D.Durum_ID=(SELECT MAX(X.Durum_ID) FROM SENETDURUM X WHERE "
     "X.Senet_ID=K.Senet_ID) AND D.Durum<>K.Durum ORDER BY K.Senet_ID"},
}};

std::string hucre(const db::Value& deger) {
  if (const auto* tarih = deger.as<db::DateTime>()) return session::tarihYaz(*tarih);
  if (const auto* sayi = deger.as<double>()) return session::sayiyiYaz(*sayi, "#,##0.00");
  return deger.trimmed();
}

struct Donem {
  std::string bas, bit;  // SQL literals; `bit` is the day behind the last one
};

void yerineKoy(std::string& sql, std::string_view ad, const std::string& deger) {
  for (auto at = sql.find(ad); at != std::string::npos; at = sql.find(ad, at + deger.size()))
    sql.replace(at, ad.size(), deger);
}

Bulgu calistir(db::Connection& baglanti, const Denetim& denetim, const Donem& donem) {
  Bulgu bulgu;
  bulgu.denetim = &denetim;
  std::string sql(denetim.sql);
  yerineKoy(sql, "@BAS", donem.bas);
  yerineKoy(sql, "@BIT", donem.bit);
  try {
    const auto rows = baglanti.query(sql);
    if (!rows) return bulgu;
    for (const auto& field : rows->fields()) bulgu.basliklar.push_back(field.name);
    for (std::int64_t row = 0; row < rows->count(); ++row) {
      std::vector<std::string> satir;
      for (int column = 0; column < static_cast<int>(bulgu.basliklar.size()); ++column)
        satir.push_back(hucre(rows->value(row, column)));
      bulgu.satirlar.push_back(std::move(satir));
    }
  } catch (const db::SqlError& hata) {
    if (hata.lasting()) throw;
    bulgu.hata = hata.what();
  }
  return bulgu;
}

// The fiscal period of the company from its row in the catalog, whatever database Baglanti stands on.
Donem donem(Oturum& oturum, const std::string& firma) {
  Donem sonuc{"'17530101'", "'99991231'"};
  const auto satir = session::Firma_Bul(oturum, firma);
  if (!satir) return sonuc;
  const auto rows = oturum.Baglanti->query("SELECT Mali_Yil_Baslangic,DATEADD(day,1,Mali_Yil_Bitis) FROM " +
                                           std::string(catalog::catalogDatabase) +
                                           ".dbo.sysfrmlng WHERE sysfrm_ID=" + std::to_string(satir->id));
  if (!rows || rows->count() == 0) return sonuc;
  if (const db::Value bas = rows->value(0, 0); !bas.isNull()) sonuc.bas = db::literal(bas);
  if (const db::Value bit = rows->value(0, 1); !bit.isNull()) sonuc.bit = db::literal(bit);
  return sonuc;
}

template <typename Alinir>
std::vector<Bulgu> topla(Oturum& oturum, const Donem& sinirlar, Alinir&& alinir) {
  std::vector<Bulgu> bulgular;
  std::int64_t sira = 0;
  for (const Denetim& denetim : sorgular) {
    oturum.ilerleme->step(++sira, static_cast<std::int64_t>(sorgular.size()));
    if (!alinir(denetim)) continue;
    if (oturum.ilerleme->cancelled()) break;
    oturum.ilerleme->text(std::string(denetim.ad));
    oturum.ilerleme->pump();
    bulgular.push_back(calistir(*oturum.Baglanti, denetim, sinirlar));
  }
  return bulgular;
}

}  // namespace

std::vector<std::string> firmaAdlari(Oturum& oturum) {
  std::vector<std::string> adlar;
  try {
    oturum.Katalog_Adi = catalog::catalogDatabase;
    session::Katalog_Bagla(oturum, oturum.Katalog_Adi);
    const auto rows = oturum.Baglanti->query("SELECT sysfrm_dbnm,sysfrm_kd FROM sysfrmlng");
    for (std::int64_t row = 0; rows && row < rows->count(); ++row)
      adlar.push_back(rows->value(row, 0).trimmed());
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
  }
  return adlar;
}

bool servisFirmasi(Oturum& oturum, const std::string& firma) {
  try {
    oturum.Katalog_Adi = firma;
    session::Katalog_Bagla(oturum, firma);
    return true;
  } catch (const db::SqlError& hata) {
    oturum.kutular->message(hata.what(), session::Icon::Stop);
    return false;
  }
}

std::span<const std::string_view> kilitTablolari() {
  return tablolar;
}

bool Kilitleri_Temizle(Oturum& oturum) {
  bool hepsi = true;
  for (const std::string_view tablo : tablolar)
    hepsi =
        session::Komut_Calistir(oturum, oturum.Kayitlar, "DELETE FROM " + std::string(tablo)) == 0 && hepsi;
  if (hepsi) oturum.kutular->message("Kullanıcı Kontrolü Yapıldı");
  return hepsi;
}

std::vector<Kilit> kilitler(Oturum& oturum) {
  std::string sql;
  for (const std::string_view tablo : tablolar)
    sql += (sql.empty() ? "" : " UNION ALL ") + ("SELECT '" + std::string(tablo)) +
           "' AS Tablo,COUNT(*) AS Kayitlar FROM " + std::string(tablo);
  std::vector<Kilit> sonuc;
  const auto rows = oturum.Baglanti->query(sql);
  for (std::int64_t row = 0; rows && row < rows->count(); ++row)
    if (rows->value(row, 1).integer() > 0)
      sonuc.push_back({rows->value(row, 0).trimmed(), rows->value(row, 1).integer()});
  return sonuc;
}

std::span<const Denetim> denetimler() {
  return sorgular;
}

std::vector<Bulgu> Denetle(Oturum& oturum, const std::string& firma) {
  return topla(oturum, donem(oturum, firma), [](const Denetim&) { return true; });
}

std::vector<Bulgu> Fatura_Irsaliye_Baglantilari(Oturum& oturum) {
  return topla(oturum, {}, [](const Denetim& d) { return d.grup == DenetimGrubi::FaturaIrsaliye; });
}

}  // namespace maintenance
