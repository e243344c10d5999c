#include "rollover/kanit_turleri.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <unordered_map>

#include "rollover/adimlar.h"

namespace rollover {

std::string kapaliMetni(const Secenekler& s, int ust, int cocuk) {
  for (const SecenekSatiri& satir : secenekSatirlari()) {
    if (satir.ust != ust) continue;
    if (satir.cocuk == 0 && !s.ust(ust)) return std::string(satir.metin);
    if (cocuk != 0 && satir.cocuk == cocuk && !s.cocuk(ust, cocuk)) return std::string(satir.metin);
  }
  return "";
}

std::string atlananNedeni(const Baglam& b, std::string_view tablolar, const std::string& kod) {
  for (const auto& a : b.sonuc.atlananlar)
    if (!a.ad.empty() && a.ad == kod.substr(0, kod.find(' ')) &&
        tablolar.find(a.tablo) != std::string_view::npos)
      return "Kayıt aktarılamadı: " + a.neden;
  return "";
}

bool miktarYuvarlamasi(const KanitSatiri& s) {
  constexpr double tekDuyarlik = 1e-6;
  return static_cast<double>(std::llabs(s.fark().birim)) <=
         1 + std::fabs(static_cast<double>(s.kaynak.birim)) * tekDuyarlik;
}

namespace {

std::int64_t yuvarlamaPayi(int hane) {
  std::int64_t pay = 5000;
  for (int i = 0; i < hane && pay > 0; ++i) pay /= 10;
  return pay + 1;
}

// Codes and a text for each, read when the first one is looked for.
class Metinler {
 public:
  explicit Metinler(std::string sql) : sql_(std::move(sql)) {}
  const std::string* bul(Baglam& b, const std::string& kod) {
    if (!sql_.empty()) {
      const auto rows = b.oku(sql_);
      for (std::int64_t i = 0; i < rows->count(); ++i)
        metinler_.emplace(rows->value(i, 0).trimmed(), rows->value(i, 1).trimmed());
      sql_.clear();
    }
    const auto at = metinler_.find(kod);
    return at == metinler_.end() ? nullptr : &at->second;
  }

 private:
  std::string sql_;
  std::unordered_map<std::string, std::string> metinler_;
};

class Turler {
 public:
  explicit Turler(Baglam& b) : b_(b), s_(b.g.secenekler) {}

  std::vector<KanitTuru> hepsi() {
    if (b_.ikisinde("KASAKART")) kasa();
    if (b_.ikisinde("HESAPKART")) banka();
    if (b_.ikisinde("POSHAREKET")) pos();
    if (b_.ikisinde("CARIKART")) cari();
    if (b_.ikisinde("PERSONELKARTI") && b_.ikisinde("PERSONELHAREKET")) personel();
    if (b_.ikisinde("SIPARISHAREKET")) siparis();
    if (b_.ikisinde("CEKKART"))
      evrak("Çek", "CEKKART", "CEKDURUM", "CEKPARCALI", "Cek_ID", "Kendi Çekimiz", "Çek Devir Bordrosu",
            ustCek);
    if (b_.ikisinde("SENETKART"))
      evrak("Senet", "SENETKART", "SENETDURUM", "SENETPARCALI", "Senet_ID", "Kendi Senedimiz",
            "Senet Devir Bordrosu", ustSenet);
    if (b_.ikisinde("MUHKART")) muhasebe();
    tanimlar();
    return std::move(turler_);
  }

 private:
  KanitTuru& ekle(std::string ad, std::string kaynak, std::string hedef, std::string kapali,
                  std::string tablolar) {
    turler_.push_back({std::move(ad),
                       std::move(kaynak),
                       std::move(hedef),
                       std::move(kapali),
                       std::move(tablolar),
                       0,
                       false,
                       {}});
    return turler_.back();
  }
  std::int64_t para() const { return yuvarlamaPayi(b_.hane); }

  void kasa() {
    ekle("Kasa bakiyeleri",
         "SELECT x.Kasa_Kod AS kod,MAX(x.Kasa_Ad) AS ad,SUM(ISNULL(y.BT,0)-ISNULL(y.AT,0)) AS deger FROM " +
             b_.k("KASAKART") + " x," + b_.k("KASAAYRINTI") +
             " y WHERE x.Kasa_ID=y.Kasa_ID AND (y.AT>0 OR y.BT>0) GROUP BY x.Kasa_Kod",
         "SELECT Kasa_Kod AS kod,MAX(Kasa_Ad) AS ad,SUM(Btutar-Atutar) AS deger FROM KASAHAREKET WHERE "
         "Islem_Tipi='Kasa Açılış Fişi' GROUP BY Kasa_Kod",
         kapaliMetni(s_, ustKasa, 1), "KASAKART,KASAHAREKET")
        .yuvarlama = para();
  }
  void banka() {
    ekle("Banka bakiyeleri",
         "SELECT x.Hesap_No AS kod,MAX(x.Hesap_Ad) AS ad,SUM(y.Bakiye) AS deger FROM " + b_.k("HESAPKART") +
             " x," + b_.k("BB") + " y WHERE x.Hesap_ID=y.Hesap_ID GROUP BY x.Hesap_No",
         "SELECT Hesap_No AS kod,MAX(Hesap_Ad) AS ad,SUM(BTutar-ATutar) AS deger FROM BANKAHAREKET WHERE "
         "Islem_Tipi='Banka Açılış Fişi' GROUP BY Hesap_No",
         kapaliMetni(s_, ustBanka, 1), "HESAPKART,BANKAHAREKET")
        .yuvarlama = para();
  }
  void pos() {
    std::string kapali = kapaliMetni(s_, ustBanka, 2);
    if (kapali.empty())
      kapali = kapaliMetni(s_, ustBanka, 1);  // the receipts hang on the step of the balances
    ekle("Kart tahsilatları (bankada bekleyen)",
         "SELECT Fis_No AS kod,MAX(Cari_Unvan) AS ad,SUM(Tutar) AS deger FROM " + b_.k("POSHAREKET") +
             " WHERE Anlasma_ID>0 AND Hesaba_Aktarim_Tarih>" + tarihSql(b_.g.taraf[0].Bit_Tar) +
             " AND (Hesaba_Aktarildi=0 OR Hesaba_Aktarildi IS NULL) GROUP BY Fis_No",
         "SELECT Fis_No AS kod,MAX(Cari_Unvan) AS ad,SUM(Tutar) AS deger FROM POSHAREKET WHERE Satis_ID=-1 "
         "GROUP BY Fis_No",
         kapali, "POSHAREKET");
  }
  void cari() {
    ekle("Cari hesap bakiyeleri",
         // Summed by id first: codes are slow to compare.
         "SELECT c.Cari_Kod AS kod,c.Unvan AS ad,h.deger FROM " + b_.k("CARIKART") +
             " c,(SELECT Cari_ID,ISNULL(SUM(BTutar),0)-ISNULL(SUM(ATutar),0) AS deger FROM " +
             b_.k("CARIHAREKETLER") + " GROUP BY Cari_ID) h WHERE c.Cari_ID=h.Cari_ID",
         "SELECT Cari_Kod AS kod,MAX(Cari_Unvan) AS ad,SUM(BTutar-ATutar) AS deger FROM ACILIS WHERE "
         "Islem_Tipi='Açılış Fişi' GROUP BY Cari_Kod",
         kapaliMetni(s_, ustCari, 1), "CARIKART,ACILIS")
        .yuvarlama = para();
  }
  void personel() {
    // The row behind the last focused one decides; its caption may speak of something else.
    ekle("Personel bakiyeleri",
         "SELECT p.Kod AS kod,MAX(p.Adi) AS ad,ISNULL(SUM(h.BTutar),0)-ISNULL(SUM(h.ATutar),0) AS deger "
         "FROM " +
             b_.k("PERSONELKARTI") + " p," + b_.k("PERSONELHAREKET") +
             " h WHERE p.Personel_ID=h.Personel_ID GROUP BY p.Kod",
         "SELECT Kod AS kod,MAX(Adi) AS ad,SUM(BTutar-ATutar) AS deger FROM PERSONELHAREKET WHERE "
         "Islem_Tipi='Açılış Fişi' GROUP BY Kod",
         b_.odak.sonraki() ? "" : "odaktaki satırın ardındaki seçenek personel açılışını belirler",
         "PERSONELKARTI,PERSONELHAREKET")
        .yuvarlama = para();
  }
  void siparis() {
    const std::string anahtar = "LTRIM(RTRIM(Fis_No))+' '+LTRIM(RTRIM(ISNULL(Islem_Tipi,'')))";
    const std::string acik = "SELECT k.Siparis_ID FROM " + b_.k("SIPARISKART") + " k WHERE k.Durum='AÇIK'";
    const std::string bekleyen = "SELECT " + anahtar +
                                 " AS kod,MAX(Cari_Unvan) AS ad,SUM(Kalan) AS deger FROM " +
                                 b_.k("SIPARISHAREKET") + " WHERE Sevk_Edilen<>Miktar AND Kalan<>0";
    const bool hicYok = b_.oku("SELECT COUNT(*) FROM " + b_.k("SIPARISKART") + " WHERE Durum='AÇIK'")
                            ->value(0, 0)
                            .integer() == 0;
    KanitTuru& t = ekle("Açık siparişler (bekleyen miktar)",
                        bekleyen + " AND Siparis_ID IN (" + acik + ") GROUP BY " + anahtar,
                        "SELECT " + anahtar +
                            " AS kod,MAX(Cari_Unvan) AS ad,SUM(Kalan) AS deger FROM SIPARISHAREKET WHERE "
                            "Kullanici_ID=-1 GROUP BY " +
                            anahtar,
                        kapaliMetni(s_, ustSiparis, 0), "SIPARISKART,SIPARISHAREKET");
    t.miktar = true;
    Baglam* const b = &b_;
    const auto islenenler = std::make_shared<Metinler>(
        "SELECT Fis_No,'' FROM SIPARISKART WHERE Kullanici_ID<>-1 OR Siparis_ID IN (SELECT Siparis_ID FROM "
        "SIPARISBAGLANTI)");
    t.ozel = [hicYok, b, islenenler](const KanitSatiri& s) -> std::string {
      if (s.kaynak == Para{})
        return hicYok ? "Açık sipariş yok; bekleyen bütün satırlar alındı"
                      : "Aynı numaralı başka belge türünün satırı";
      if (islenenler->bul(*b, s.kod.substr(0, s.kod.find(' '))) != nullptr)
        return "Sipariş hedefte işlem görmüş; olduğu gibi bırakıldı";
      return "";
    };
  }

  void evrak(const std::string& ad, const std::string& kart, const std::string& durum,
             const std::string& parcali, const std::string& kimlik, const std::string& kendi,
             const std::string& tip, int ust) {
    const std::string yasayan =
        "Durum IN ('Parçalı Tahsil','Portföyde','Bankada Tahsilde','Bankada Teminatta','" + kendi +
        "','Karşılıksız','Cirolu')";
    const std::string kapali = kapaliMetni(s_, ust, 0);
    const bool karsiliksiz = s_.cocuk(ust, 1);
    const bool ciro = std::strtol(b_.g.Ciro_Takip_Suresi.c_str(), nullptr, 10) > 0;
    const std::string kaynakKart = b_.k(kart);
    Baglam* const b = &b_;
    const auto durumlar = std::make_shared<Metinler>("SELECT Portfoy_No,Durum FROM " + kaynakKart +
                                                     " WHERE Durum IN ('Karşılıksız','Cirolu')");
    const auto oynananlar = std::make_shared<Metinler>("SELECT h.Portfoy_No,'' FROM " + kart + " h WHERE h." +
                                                       kimlik + " IN (SELECT d." + kimlik + " FROM " + durum +
                                                       " d GROUP BY d." + kimlik + " HAVING COUNT(*)>1)");
    const auto nedeni = [=](const KanitSatiri& s) -> std::string {
      const std::string* const d = s.hedef == Para{} ? durumlar->bul(*b, s.kod) : nullptr;
      if (d != nullptr && *d == "Karşılıksız" && !karsiliksiz)
        return "Seçenek kapalı: karşılıksızlar devredilmedi";
      if (d != nullptr && *d == "Cirolu")
        return ciro ? "Cirolu, takip süresi geçmiş" : "Cirolu, takip süresi verilmedi";
      return oynananlar->bul(*b, s.kod) != nullptr ? "Hedefte işlem görmüş; olduğu gibi bırakıldı" : "";
    };
    ekle(ad + " tutarları",
         "SELECT Portfoy_No AS kod,MAX(Cari_Unvan) AS ad,SUM(Tutar) AS deger FROM " + kaynakKart + " WHERE " +
             yasayan + " GROUP BY Portfoy_No",
         "SELECT Portfoy_No AS kod,MAX(Cari_Unvan) AS ad,SUM(Tutar) AS deger FROM " + kart +
             " WHERE Islem_Tipi='" + tip + "' GROUP BY Portfoy_No",
         kapali, kart)
        .ozel = nedeni;
    ekle(ad + " parçalı tahsilatları",
         "SELECT k.Portfoy_No AS kod,MAX(k.Cari_Unvan) AS ad,SUM(p.Tahsil_Tutar) AS deger FROM " +
             kaynakKart + " k," + b_.k(parcali) + " p WHERE p." + kimlik + "=k." + kimlik +
             " AND k.Durum='Parçalı Tahsil' GROUP BY k.Portfoy_No",
         "SELECT k.Portfoy_No AS kod,MAX(k.Cari_Unvan) AS ad,SUM(p.Tahsil_Tutar) AS deger FROM " + kart +
             " k," + parcali + " p WHERE p." + kimlik + "=k." + kimlik + " AND k.Islem_Tipi='" + tip +
             "' AND k.Durum='Parçalı Tahsil' GROUP BY k.Portfoy_No",
         kapali, kart + "," + parcali)
        .ozel = nedeni;
  }

  void muhasebe() {
    ekle("Muhasebe bakiyeleri (borç kalanı)",
         "SELECT m.MHesap_Kod AS kod,MAX(m.MHesap_Ad) AS ad,SUM(h.BTutar-h.ATutar) AS deger FROM " +
             b_.k("MUHKART") + " m," + b_.k("MUHFISHAR") +
             " h WHERE h.MHesap_ID=m.MHesap_ID AND h.Aktif=1 GROUP BY m.MHesap_Kod HAVING "
             "SUM(h.BTutar-h.ATutar)>0.00005",
         "SELECT m.MHesap_Kod AS kod,MAX(m.MHesap_Ad) AS ad,SUM(h.BTutar-h.ATutar) AS deger FROM MUHKART "
         "m,MUHFISHAR h WHERE h.MHesap_ID=m.MHesap_ID AND "
         "h.Islem_Tipi='Açılış Fişi' GROUP BY m.MHesap_Kod",
         "", "MUHKART")
        .ozel = [](const KanitSatiri&) {
      return std::string("Muhasebe bakiyeleri devredilmez; açılış fişi muhasebede kesilir");
    };
  }

  void tanimlar() {
    struct Tanim {
      std::string_view ad, tablo, kolon;
      int ust;
    };
    static constexpr std::array<Tanim, 22> hepsi = {
        {{"Hesap planı", "MUHKART", "MHesap_Kod", ustMuhasebe},
         {"Döviz tanımları", "DOVIZTANIM", "Doviz_Kod", ustDoviz},
         {"Satıcılar", "SATICI", "Satici_Kodu", ustSatici},
         {"Ambarlar", "AMBAR", "Ambar_No", ustAmbar},
         {"Hizmetler", "HIZMETTANIM", "Kod", ustHizmet},
         {"Masraflar", "MASRAFTANIM", "Kod", ustMasraf},
         {"İndirimler", "INDIRIMTANIM", "Kod", ustIndirim},
         {"Fiyat tanımları", "FIYATTANIM", "Sira_No", ustFiyat},
         {"Ödeme şablonları", "SABLONKART", "Sablon_Kod", ustSablon},
         {"İşyerleri", "ISYERITANIM", "Isyeri_Kodu", ustIsyeri},
         {"KDV grupları", "KDVGRUPLARI", "Departman_No", -1},
         {"Tartı barkodları", "TARTIBARKOD", "Bayrak_Kodu", -1},
         {"Renkler", "RENKTANIM", "Renk_Adi", -1},
         {"Bedenler", "BEDENTANIM", "Beden_Adi", -1},
         {"Droplar", "DROPTANIM", "Drop_Adi", -1},
         {"Beden standartları", "BEDENSTANDARTLARI", "Standart_Kod", -1},
         {"Kasa kartları", "KASAKART", "Kasa_Kod", ustKasa},
         {"Cari hesap kartları", "CARIKART", "Cari_Kod", ustCari},
         {"Personel kartları", "PERSONELKARTI", "Kod", -1},
         {"Stok kartları", "STOKKART", "Stok_Kod", ustStok},
         {"Banka kartları", "HESAPKART", "Hesap_No", ustBanka},
         {"Üretim reçeteleri", "RECETEKART", "Recete_Kod", ustRecete}}};
    for (const Tanim& t : hepsi) {
      if (!b_.ikisinde(t.tablo)) continue;
      const std::string tablo(t.tablo), kolon(t.kolon), kaynak = b_.k(tablo);
      ekle(std::string(t.ad),
           "SELECT " + kolon + " AS kod,'' AS ad,1 AS deger FROM " + kaynak + " WHERE " + kolon +
               " IS NOT NULL GROUP BY " + kolon,
           "SELECT " + kolon + " AS kod,'' AS ad,1 AS deger FROM " + tablo + " WHERE " + kolon +
               " IN (SELECT " + kolon + " FROM " + kaynak + ") GROUP BY " + kolon,
           t.ust < 0 ? "" : kapaliMetni(s_, t.ust, 0), tablo);
    }
  }

  Baglam& b_;
  const Secenekler& s_;
  std::vector<KanitTuru> turler_;
};

}  // namespace

std::vector<KanitTuru> kanitTurleri(Baglam& b) {
  return Turler(b).hepsi();
}

}  // namespace rollover
