// Openings of cash boxes and bank accounts, and card receipts that the bank has not paid yet.
#include "rollover/adimlar.h"
#include "rollover/kopya.h"

namespace rollover {

namespace {

// Cash and bank are alike but for their names.
struct HesapAcilisi {
  std::string_view mesaj, hareket, kart, tip;
  Ref ref;
  std::string_view oku;               // FROM and WHERE of what opens; %k before each table of the source
  std::string_view bakiye;            // over the row
  std::string_view kolonlar, kaynak;  // columns copied from the row, and where they come from
  std::string_view kod;
};

constexpr HesapAcilisi kasaAcilisi = {
    "Kasa Açılış İşlemleri Yapılıyor...!",
    "KASAHAREKET",
    "KASAKART",
    "Kasa Açılış Fişi",
    Ref::Kasa,
    "%kKASAKART x,%kKASAAYRINTI y WHERE x.Kasa_ID=y.Kasa_ID AND ( y.AT>0 OR y.BT>0)",
    "ISNULL(y.BT,0)-ISNULL(y.AT,0)",
    "Kasa_ID,Cari_Unvan,Kasa_Kod,Kasa_Ad",
    "x.Kasa_Ad,x.Kasa_Kod,x.Kasa_Ad",
    "Kasa_Kod"};
constexpr HesapAcilisi bankaAcilisi = {"Banka Açılış İşlemleri Yapılıyor...!",
                                       "BANKAHAREKET",
                                       "HESAPKART",
                                       "Banka Açılış Fişi",
                                       Ref::Banka,
                                       "%kHESAPKART x,%kBB y WHERE x.Hesap_ID=y.Hesap_ID AND y.Bakiye<>0",
                                       "y.Bakiye",
                                       "Hesap_ID,Hesap_No,Hesap_Ad,Banka_Ad",
                                       "x.Hesap_No,x.Hesap_Ad,x.Banka_Ad",
                                       "Hesap_No"};

std::string kaynakli(const Baglam& b, std::string_view metin) {
  std::string out;
  for (std::size_t i = 0; i < metin.size(); ++i) {
    if (metin.substr(i, 2) == "%k") {
      out += b.kaynakAdi + ".dbo.";
      ++i;
    } else {
      out += metin[i];
    }
  }
  return out;
}

constexpr std::string_view ortakKolonlar =
    ",Tarih,Fis_No,Islem_Tipi,BTutar,ATutar,Saat,Gun,AY_Index,Ay,Hafta,Satici_ID,Doviz_ID,KUR,Dovizli_Tutar";

std::string ortakDegerler(const Baglam& b, std::int64_t sayac, std::string_view tip, Para bakiye) {
  const AcilisAlanlari& a = b.acilis;
  const bool arti = bakiye > Para{};
  return "," + a.tarih + ",'" + std::to_string(sayac) + "'," + tirnakli(tip) + "," +
         sqlMetni(arti ? bakiye : Para{}) + "," + sqlMetni(arti ? Para{} : -bakiye) + "," + a.saat + "," +
         a.gun + "," + a.ay + "," + a.ayAdi + "," + a.hafta + ",1,1,0,0";
}

void acilisDevret(Baglam& b, const HesapAcilisi& h) {
  const std::string kart(h.kart), kod(h.kod), id(referans(h.ref).kimlik);
  b.yap("DELETE FROM " + std::string(h.hareket) + " WHERE " + kod + "=ANY (SELECT " + kod + " FROM " +
        b.k(kart) + ") AND Islem_Tipi='" + std::string(h.tip) + "'");
  const auto rows =
      b.oku("SELECT " + b.kesinKod(h.ref, "x." + id) + " AS hedef," + std::string(h.bakiye) + " AS bakiye," +
            std::string(h.kaynak) + " FROM " + kaynakli(b, h.oku) + " ORDER BY x." + id);
  b.mesaj(std::string(h.mesaj));
  SatirYazici yazici(b, std::string(h.hareket), std::string(h.kolonlar) + std::string(ortakKolonlar), true);
  const int kolonlar = static_cast<int>(rows->fields().size());
  for (std::int64_t i = 0; i < rows->count(); ++i) {
    const Para bakiye = paraBicimle(rows->value(i, 1).real(), b.hane);
    if (bakiye == Para{}) continue;  // its number is used up all the same
    std::string degerler = rows->value(i, 0).text();
    for (int c = 2; c < kolonlar; ++c) degerler += "," + metinSql(rows->value(i, c));
    if (rows->value(i, 0).isNull())
      b.atla(h.hareket, rows->value(i, 2).text(), "Hedefte kartı yok.");
    else
      yazici.ekle(degerler + ortakDegerler(b, i + 1, h.tip, bakiye), rows->value(i, 2).text());
    b.adim(i + 1, rows->count());
  }
  yazici.bosalt();
}

}  // namespace

void Kasa_Acilis_Devret(Baglam& b) {
  if (b.ikisinde("KASAKART") && b.hedefte("KASAHAREKET")) acilisDevret(b, kasaAcilisi);
}

void Banka_Acilis_Devret(Baglam& b) {
  if (b.ikisinde("HESAPKART") && b.hedefte("BANKAHAREKET")) acilisDevret(b, bankaAcilisi);
  if (b.odak.sonraki(2)) Pos_Hareket_Devret(b);
}

// Receipts that the bank pays after the period's end. Satis_ID -1 marks them in the target.
void Pos_Hareket_Devret(Baglam& b) {
  if (!b.ikisinde("POSHAREKET") || !b.ikisinde("HESAPKART") || !b.ikisinde("POSANLASMA")) return;
  b.yap("DELETE FROM POSHAREKET WHERE Satis_ID=-1");
  b.mesaj("Pos İşlemleri Devrediliyor...!");
  Kopya k;
  k.tablo = "POSHAREKET";
  k.kimlik = kimlikKolonu(b, k.tablo);
  // The agreement is found by its number of instalments alone: of all accounts' agreements the first one.
  const std::string anlasma =
      "(SELECT MIN(n.Anlasma_ID) FROM POSANLASMA n WHERE n.Taksit_Sayisi=(SELECT MIN(e.Taksit_Sayisi) FROM " +
      b.k("POSANLASMA") + " e," + b.k("HESAPKART") +
      " c WHERE c.Hesap_ID=e.Hesap_ID AND e.Anlasma_ID=s.Anlasma_ID) AND EXISTS(SELECT * FROM HESAPKART g "
      "WHERE g.Hesap_No=(SELECT MIN(c2.Hesap_No) FROM " +
      b.k("POSANLASMA") + " e2," + b.k("HESAPKART") +
      " c2 WHERE c2.Hesap_ID=e2.Hesap_ID AND e2.Anlasma_ID=s.Anlasma_ID)))";
  k.kolonlar = kolonlariKur(b, k.tablo, {Kirpma::Kirp, false, false},
                            {{"Cari_ID", "-1"},
                             {"Satis_ID", "-1"},
                             {"Satici_ID", b.kod(Ref::Satici, "s.Satici_ID")},
                             {"Hesap_ID", b.kod(Ref::Banka, "s.Hesap_ID")},
                             {"Kasa_ID", b.kod(Ref::Kasa, "s.Kasa_ID")},
                             {"Anlasma_ID", anlasma}});
  k.kosul = "s.Anlasma_ID>0 AND s.Hesaba_Aktarim_Tarih>" + tarihSql(b.g.taraf[0].Bit_Tar) +
            " AND (s.Hesaba_Aktarildi=0 OR s.Hesaba_Aktarildi IS NULL)";
  k.ad = "s.Fis_No";
  k.tekEkle = true;
  kopyala(b, k);
}

}  // namespace rollover
