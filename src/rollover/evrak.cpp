// Cheques and notes that are still alive, under one carry-over slip per kind.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>

#include "rollover/adimlar.h"
#include "rollover/kopya.h"
#include "session/tarih.h"

namespace rollover {

namespace {

// The twins.
struct Evrak {
  std::string_view kart, hareket, durum, parcali, kimlik, no;
  Ref ref;
  std::string_view kendi, bordroTipi, bordroNo, kartMesaji, hareketMesaji;
  std::string_view ekKolonlar;  // of the movement, comma before each
};
constexpr Evrak cek = {"CEKKART",
                       "CEK",
                       "CEKDURUM",
                       "CEKPARCALI",
                       "Cek_ID",
                       "Cek_No",
                       Ref::Cek,
                       "Kendi Çekimiz",
                       "Çek Devir Bordrosu",
                       "1",
                       "Çek Kartları Devrediliyor...!",
                       "Çek Hareketleri Devrediliyor...!",
                       ","};
constexpr Evrak senet = {"SENETKART",
                         "SENET",
                         "SENETDURUM",
                         "SENETPARCALI",
                         "Senet_ID",
                         "Senet_No",
                         Ref::Senet,
                         "Kendi Senedimiz",
                         "Senet Devir Bordrosu",
                         "2",
                         "Senet Kartları Devrediliyor...!",
                         "Senet Hareketleri Devrediliyor...!",
                         ",Tanzim_Tarih,Pul,Gerekli_Pul,Kefil_Adi,"};

// Columns of a movement that are carried as they are; the others of the table keep their defaults.
constexpr std::string_view hareketKolonlari =
    ",Portfoy_No,Vade,O_Kod,Tutar,TutarListe,Ciro,Borclu,Odeme_Yeri,Hesap_Ad,Banka_Hesap_No,Banka_Adi,Sube_"
    "Adi,Durum,Durum_Tarih,"
    "Borc,Alacak,Saat,Gun,AY_Index,Ay,Hafta,Sahip,Kullanici_ID,Ozel,Doviz_ID,KUR,DCS,";

constexpr int sonDurum = 201, sonBordro = 202;  // kinds of rows in DEVIR_KOD

class EvrakDevri {
 public:
  EvrakDevri(Baglam& b, const Evrak& e)
      : b_(b),
        e_(e),
        kart_(e.kart),
        hareket_(e.hareket),
        durum_(e.durum),
        parcali_(e.parcali),
        kimlik_(e.kimlik) {
    ciroSuresi_ = std::max(0L, std::strtol(b.g.Ciro_Takip_Suresi.c_str(), nullptr, 10));
    karsiliksiz_ = b.odak.sonraki();
  }

  void calistir() {
    for (const std::string* const t : {&kart_, &hareket_, &durum_, &parcali_})
      if (!b_.ikisinde(*t)) return;
    if (!b_.hedefte("BORDRO")) return;
    b_.mesaj(std::string(e_.kartMesaji));
    const auto sayi = b_.oku("SELECT COUNT(*) FROM " + b_.k(kart_) + " s WHERE " + secilen("s"));
    if (sayi->value(0, 0).integer() > 0) {
      bordroBul();
      kartlar();
      durumlar();
      parcalar();
    }
    b_.mesaj(std::string(e_.hareketMesaji));
    if (!bordroId_.empty()) hareketler();
  }

 private:
  std::string secilen(const std::string& s) const {
    std::string out = s + ".Durum IN ('Parçalı Tahsil','Portföyde','Bankada Tahsilde','Bankada Teminatta','" +
                      std::string(e_.kendi) + "'";
    if (karsiliksiz_) out += ",'Karşılıksız'";
    if (ciroSuresi_ > 0) out += ",'Cirolu'";
    return out + ")";
  }
  // The cards that come over: an endorsed one only for so many days behind its due date.
  std::string tasinan(const std::string& s) const {
    db::DateTime t;
    session::tarihOku(b_.g.taraf[1].Bas_Tar, t);
    const std::chrono::year_month_day sinir{
        std::chrono::sys_days{std::chrono::year{t.year} / t.month / t.day} - std::chrono::days{ciroSuresi_}};
    db::DateTime gun;
    gun.year = static_cast<int>(sinir.year());
    gun.month = static_cast<int>(static_cast<unsigned>(sinir.month()));
    gun.day = static_cast<int>(static_cast<unsigned>(sinir.day()));
    return secilen(s) + " AND NOT (" + s + ".Durum='Cirolu' AND ISNULL(" + s + ".Vade,'19000101')<" +
           tarihSql(session::tarihYaz(gun)) + ")";
  }
  // Cards that the new period has moved.
  std::string oynanan() const {
    return "(SELECT d." + kimlik_ + " FROM " + durum_ + " d WHERE d." + kimlik_ + " IS NOT NULL GROUP BY d." +
           kimlik_ + " HAVING COUNT(*)>1)";
  }

  void bordroBul() {
    const std::string ara = "SELECT Bordro_ID,Bordro_No FROM BORDRO WHERE Islem_Tipi='" +
                            std::string(e_.bordroTipi) + "' ORDER BY Bordro_ID";
    auto rows = b_.oku(ara);
    if (rows->count() == 0) {
      const AcilisAlanlari& a = b_.acilis;
      b_.yap(
          "INSERT INTO BORDRO "
          "(Tarih,Bordro_No,Islem_Tipi,Toplam_Tutar,Ortalama_Vade,Saat,Gun,Ay_Index,Ay,Hafta,Ozel,Kullanici_"
          "ID,"
          "Satici_ID,Doviz_ID,Kur,Dovizli_Tutar) VALUES (" +
          a.tarih + ",'" + std::string(e_.bordroNo) + "','" + std::string(e_.bordroTipi) + "',0," + a.tarih +
          "," + a.saat + "," + a.gun + "," + a.ay + "," + a.ayAdi + "," + a.hafta + ",0,1,1,1,0,0)");
      rows = b_.oku(ara);
    }
    bordroId_ = rows->value(0, 0).text();
    bordroNo_ = tirnakli(rows->value(0, 1).text());
  }
  std::string tip() const { return "'" + std::string(e_.bordroTipi) + "'"; }

  void kartlar() {
    Kopya k;
    k.tablo = kart_;
    k.kimlik = kimlikKolonu(b_, kart_);
    k.kolonlar = kolonlariKur(b_, kart_, {Kirpma::Kirp, false, false},
                              {{"Satici_ID", b_.kod(Ref::Satici, "s.Satici_ID")},
                               {"Cari_ID", b_.kod(Ref::Cari, "s.Cari_ID")},
                               {"Hesap_ID", b_.kod(Ref::Banka, "s.Hesap_ID")},
                               {"Bordro_ID", bordroId_},
                               {"Bordro_No", bordroNo_},
                               {"Islem_Tipi", tip()},
                               {"Tip_No", ""},
                               {"Modul_No", ""}});
    k.kosul = tasinan("s");
    k.esle = "h.Portfoy_No=ISNULL(s.Portfoy_No,'')";
    k.tekrar = {"s.Portfoy_No"};
    k.hedefAtla = "h." + kimlik_ + " IN " + oynanan();
    k.ad = "s.Portfoy_No";
    kopyala(b_, k);
  }

  // One status row per card, of the last source card of that number.
  void durumlar() {
    const std::string hedef = b_.kesinKod(e_.ref, "s." + kimlik_), tur = std::to_string(sonDurum);
    b_.yap("DELETE FROM DEVIR_KOD WHERE Tur=" + tur);
    b_.yap("INSERT INTO DEVIR_KOD (Tur,Eski,Yeni,Var) SELECT " + tur +
           ",x.hedef,MAX(x.kaynak),1 FROM (SELECT " + hedef + " AS hedef,s." + kimlik_ + " AS kaynak FROM " +
           b_.k(kart_) + " s WHERE " + tasinan("s") + ") x WHERE x.hedef IS NOT NULL AND x.hedef NOT IN " +
           oynanan() + " GROUP BY x.hedef");
    const std::string nereden =
        " FROM DEVIR_KOD m," + b_.k(kart_) + " s WHERE m.Tur=" + tur + " AND s." + kimlik_ + "=m.Yeni";
    const std::string kullanici = std::to_string(b_.o.Kullanici_ID), durum = "LTRIM(RTRIM(s.Durum))",
                      unvan = "LTRIM(RTRIM(s.Cari_Unvan))";
    b_.yap("UPDATE " + durum_ + " SET Kullanici_ID=" + kullanici + ",Bordro_ID=" + bordroId_ + ",Durum=" +
           durum + ",Durum_Tarih=" + b_.acilis.tarih + ",Bordro_No=" + bordroNo_ + ",Cari_Unvan=" + unvan +
           ",Islem_Tipi=" + tip() + " FROM " + durum_ + ",DEVIR_KOD m," + b_.k(kart_) +
           " s WHERE m.Tur=" + tur + " AND s." + kimlik_ + "=m.Yeni AND m.Eski=" + durum_ + "." + kimlik_);
    b_.sonuc.eklenen +=
        b_.yap("INSERT INTO " + durum_ + " (Kullanici_ID,Bordro_ID," + kimlik_ +
               ",Durum,Durum_Tarih,Bordro_No,Cari_Unvan,Islem_Tipi) SELECT " + kullanici + "," + bordroId_ +
               ",m.Eski," + durum + "," + b_.acilis.tarih + "," + bordroNo_ + "," + unvan + "," + tip() +
               nereden + " AND m.Eski NOT IN (SELECT d." + kimlik_ + " FROM " + durum_ + " d WHERE d." +
               kimlik_ + " IS NOT NULL) ORDER BY s." + kimlik_);
    b_.adim(1, 1);
  }

  void parcalar() {
    const std::string parcaliKart =
        "m.Tur=" + std::to_string(sonDurum) + " AND s." + kimlik_ + "=m.Yeni AND s.Durum='Parçalı Tahsil'";
    b_.yap("DELETE FROM " + parcali_ + " WHERE " + kimlik_ + " IN (SELECT m.Eski FROM DEVIR_KOD m," +
           b_.k(kart_) + " s WHERE " + parcaliKart + ")");
    b_.sonuc.eklenen +=
        b_.yap("INSERT INTO " + parcali_ + " (" + kimlik_ +
               ",Kasa_Hareket_ID,Tahsil_Tarih,Tahsil_Tutar,Fis_No,Dovizli_Tutar) SELECT m.Eski,0,p."
               "Tahsil_Tarih,p.Tahsil_Tutar,p.Fis_No,p.Dovizli_Tutar FROM DEVIR_KOD m," +
               b_.k(kart_) + " s," + b_.k(parcali_) + " p WHERE " + parcaliKart + " AND p." + kimlik_ +
               "=s." + kimlik_ + " ORDER BY s." + kimlik_ + ",p.ID");
  }

  // A card's movement at its latest slip.
  void hareketler() {
    const std::string tur = std::to_string(sonBordro);
    b_.yap("DELETE FROM DEVIR_KOD WHERE Tur=" + tur);
    b_.yap("INSERT INTO DEVIR_KOD (Tur,Eski,Yeni,Var) SELECT " + tur + ",d." + kimlik_ +
           ",MAX(d.Bordro_ID),1 FROM " + b_.k(durum_) + " d," + b_.k(kart_) + " s WHERE d." + kimlik_ +
           "=s." + kimlik_ + " AND d.Bordro_ID IS NOT NULL AND " + secilen("s") + " GROUP BY d." + kimlik_);
    const auto sonuncu = [&](const std::string& s) {
      return "EXISTS(SELECT * FROM DEVIR_KOD m WHERE m.Tur=" + tur + " AND m.Eski=" + s + "." + kimlik_ +
             " AND m.Yeni=" + s + ".Bordro_ID)";
    };
    const auto karttan = [&](const std::string& kolon) {
      return "(SELECT c." + kolon + " FROM " + b_.k(kart_) + " c WHERE c." + kimlik_ + "=s." + kimlik_ + ")";
    };
    // An endorsed one stands in the name of the party that it was endorsed to.
    const auto taraf = [](const std::string& cirolu, const std::string& diger) {
      return "CASE WHEN s.Durum='Cirolu' THEN " + cirolu + " ELSE " + diger + " END";
    };
    Kopya k;
    k.tablo = hareket_;
    k.kimlik = kimlikKolonu(b_, hareket_);
    const auto kirp = [](const std::string& ifade) { return "LTRIM(RTRIM(" + ifade + "))"; };
    const OzelKolonlar ozel = {
        {kimlik_, b_.kod(e_.ref, "s." + kimlik_)},
        {std::string(e_.no), kirp("s." + std::string(e_.no))},
        {"Satici_ID", b_.kod(Ref::Satici, "s.Satici_ID")},
        {"Hesap_ID", b_.kod(Ref::Banka, "s.Hesap_ID")},
        {"Cari_ID", taraf(b_.kod(Ref::Cari, "s.Cari_ID"), b_.kod(Ref::Cari, karttan("Cari_ID")))},
        {"Cari_Kod", kirp(taraf("s.Cari_Kod", karttan("Cari_Kod")))},
        {"Cari_Unvan", kirp(taraf("s.Cari_Unvan", karttan("Cari_Unvan")))},
        {"Bordro_ID", bordroId_},
        {"Bordro_No", bordroNo_},
        {"Islem_Tipi", tip()}};
    k.kolonlar = kolonlariKur(b_, hareket_, {Kirpma::Kirp, false, false}, ozel);
    std::erase_if(k.kolonlar, [&](const KopyaKolonu& kolon) {
      const std::string ad = "," + kolon.ad + ",";
      const bool ozeldir =
          std::any_of(ozel.begin(), ozel.end(), [&](const auto& o) { return o.first == kolon.ad; });
      return !ozeldir && hareketKolonlari.find(ad) == std::string_view::npos &&
             e_.ekKolonlar.find(ad) == std::string_view::npos;
    });
    k.kosul = sonuncu("s");
    k.esle = "h.Portfoy_No=ISNULL(s.Portfoy_No,'')";
    k.tekrar = {"s.Portfoy_No"};
    k.hedefAtla = "h." + kimlik_ + " IN " + oynanan();
    k.ad = "s.Portfoy_No";
    kopyala(b_, k);
  }

  Baglam& b_;
  const Evrak& e_;
  std::string kart_, hareket_, durum_, parcali_, kimlik_, bordroId_, bordroNo_;
  long ciroSuresi_ = 0;
  bool karsiliksiz_ = false;
};

}  // namespace

void Cekleri_Devret(Baglam& b) {
  EvrakDevri(b, cek).calistir();
}

void Senetleri_Devret(Baglam& b) {
  EvrakDevri(b, senet).calistir();
}

}  // namespace rollover
