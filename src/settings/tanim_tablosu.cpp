#include <algorithm>
#include <array>

#include "settings/tanim.h"
#include "settings/tanim_kontrol.h"

namespace settings {

namespace {

using session::HucreTuru;
using enum HucreTuru;
using K = IzgaraKolonu;
using T = TabloKolonu;

constexpr bool gizli = true, acik = false, salt = true, yazilir = false, buyuk = true, oldugu = false;

constexpr std::array isyeriKolonlari = {K{"Isyeri_Kodu", "İşyeri Kodu", 110, Metin, acik, yazilir, buyuk},
                                        K{"Isyeri_Adi", "İşyeri Adı", 260, Metin, acik, yazilir, buyuk},
                                        K{"Ambar_No", "Bağlı Ambar", 140, Liste, gizli},
                                        K{"Aktif", "Aktif", 70, Tik},
                                        K{"Isyeri_ID", "İşyeri  ID", 0, Sayi, gizli}};
constexpr std::array isyeriTablosu = {
    T{"Isyeri_Kodu", "Isyeri_Kodu", 10}, T{"Isyeri_Adi", "Isyeri_Adi", 50, true},
    T{"Ambar_No", "Ambar_No", 0, false, true}, T{"Aktif", "Durum", 0, false, false, true}};

constexpr std::array saticiKolonlari = {
    K{"Satici_Kodu", "Satıcı Kodu", 110, Metin, acik, yazilir, buyuk},
    K{"Satici_Adi", "Satıcı Adı", 260, Metin, acik, yazilir, buyuk}, K{"Ambar_No", "Bağlı Ambar", 150, Liste},
    K{"Aktif", "Aktif", 70, Tik}, K{"Satici_ID", "Satıcı ID", 0, Sayi, gizli}};
constexpr std::array saticiTablosu = {
    T{"Satici_Kodu", "Satici_Kodu", 10}, T{"Satici_Adi", "Satici_Adi", 50, true},
    T{"Ambar_No", "Ambar_No", 0, false, true}, T{"Aktif", "Durum", 0, false, false, true}};

constexpr std::array ambarKolonlari = {
    K{"Ambar_ID", "", 0, Sayi, gizli}, K{"Ambar_No", "Ambar No", 100, Sayi, acik, yazilir, buyuk, 9},
    K{"Ambar_Ad", "Ambar Adı", 260, Metin, acik, yazilir, buyuk, 15}, K{"Merkez_Ambar", "Aktif", 80, Tik}};
constexpr std::array ambarTablosu = {T{"Ambar_No", "Ambar_No", 0, false, true}, T{"Ambar_Ad", "Ambar_Ad"},
                                     T{"Merkez_Ambar", "Merkez_Ambar", 0, false, false, true}};

constexpr std::array fiyatKolonlari = {
    K{"Sira_No", "Fiyat No", 80, Sayi, acik, salt, buyuk, 9},
    K{"Fiyat_Aciklama", "Fiyat Açıklaması", 340, Metin, acik, yazilir, buyuk, 50},
    K{"On_Deger", "Aktif", 80, Tik}, K{"Ambar_Fiyati", "Ambar Fiyatı", 100, Tik, gizli},
    K{"Btn", "", 0, Metin, gizli}};
constexpr std::array fiyatTablosu = {T{"Sira_No", "Sira_No", 0, false, true},
                                     T{"Fiyat_Aciklama", "Fiyat_Aciklama"},
                                     T{"On_Deger", "On_Deger", 0, false, false, true},
                                     T{"Ambar_Fiyati", "Ambar_Fiyati", 0, false, false, true}};

constexpr std::array dovizKolonlari = {
    K{"Doviz_ID", "", 0, Sayi, gizli}, K{"Doviz_Kod", "Döviz Kodu", 120, Metin, acik, yazilir, oldugu, 10},
    K{"Doviz_Ad", "Döviz Adı", 240, Metin, acik, yazilir, oldugu, 15}, K{"Default_Doviz", "Aktif", 80, Tik}};
constexpr std::array dovizTablosu = {T{"Doviz_Kod", "Doviz_Kod"}, T{"Doviz_Ad", "Doviz_Ad"},
                                     T{"Default_Doviz", "Default_Doviz", 0, false, false, true}};

constexpr std::array renkKolonlari = {K{"Renk_ID", "", 0, Sayi, gizli},
                                      K{"Renk_Kod", "RENK KODU", 100, Metin, acik, yazilir, oldugu, 10},
                                      K{"Renk", "RENK", 130, Metin, acik, yazilir, oldugu, 10}};
constexpr std::array renkTablosu = {T{"Renk_Kod", "Renk_Kod"}, T{"Renk", "Renk_Adi"}};
constexpr std::array bedenKolonlari = {K{"Beden_ID", "", 0, Sayi, gizli},
                                       K{"Beden", "BEDEN", 160, Metin, acik, yazilir, oldugu, 10}};
constexpr std::array bedenTablosu = {T{"Beden", "Beden_Adi"}};
constexpr std::array dropKolonlari = {K{"Drop_ID", "", 0, Sayi, gizli},
                                      K{"Drop", "DROP", 160, Metin, acik, yazilir, oldugu, 10}};
constexpr std::array dropTablosu = {T{"Drop", "Drop_Adi"}};

constexpr std::array<std::string_view, 1> merkez = {"Merkez_Ambar"}, varsayilanDoviz = {"Default_Doviz"};
constexpr std::array<std::string_view, 2> fiyatTikleri = {"On_Deger", "Ambar_Fiyati"};

std::string isyeriKullanimi(const std::string& db, const std::string& id) {
  constexpr std::string_view tablolar[] = {"KASAHAREKET", "CARIHAREKET",  "FATURAKART", "STOKHAREKETKART",
                                           "SIPARISKART", "BANKAHAREKET", "BORDRO"};
  std::string sql;
  for (const auto tablo : tablolar)
    sql += (sql.empty() ? "" : "UNION ") + ("SELECT Isyeri_ID FROM " + db + std::string(tablo)) +
           " WHERE Isyeri_ID='" + db::escape(id) + "' ";
  return sql;
}
std::string saticiKullanimi(const std::string& db, const std::string& id) {
  return "Select * FROM " + db + "SATICIANALIZ WHERE Satici_ID='" + db::escape(id) + "'";
}
std::string ambarKullanimi(const std::string& db, const std::string& no) {
  return "Select Ambar_No FROM " + db + "STOKHAREKET WHERE Ambar_No=" + no;
}
std::string dovizKullanimi(const std::string& db, const std::string& id) {
  return "Select Doviz_ID FROM " + db + "DOVIZKONTROL WHERE Doviz_ID=" + id;
}

constexpr auto bilgi = session::Icon::Information, hata = session::Icon::Stop;
constexpr std::string_view satirSoru = "Satırı silmek istediğinizden emin misiniz?";

constexpr TanimTuru turler[] = {
    {"isyeri",
     "Isyeri_Tanimlari",
     "İşyeri Tanımları",
     "FisGrd",
     "ISYERITANIM",
     "Isyeri_ID",
     "SELECT * FROM {db}ISYERITANIM ",
     "DELETE FROM {db}ISYERITANIM WHERE Isyeri_ID=",
     isyeriKolonlari,
     isyeriTablosu,
     "Isyeri_Kodu",
     "Isyeri_Adi",
     {},
     SatirSilme::Gizle,
     KayitYolu::SatirSatir,
     true,
     {satirSoru, false, "Bu İşyerine ait hareketler var.Silinemez!", bilgi, isyeriKullanimi, "Isyeri_ID"},
     isyeriKontrol,
     nullptr},
    {"ambar",
     "Ambar_Tanimlari",
     "Ambar Tanımları",
     "FisGrd",
     "AMBAR",
     "Ambar_ID",
     "SELECT * FROM  {db}AMBAR",
     "DELETE FROM  {db}AMBAR",
     ambarKolonlari,
     ambarTablosu,
     "Ambar_No",
     "Ambar_Ad",
     merkez,
     SatirSilme::Cikar,
     KayitYolu::SilVeEkle,
     false,
     {"Ambar Tanımını Silmek istediğinizden Eminmisiniz", false, "Bu Ambar Hareket Görmüştür. Silinemez",
      hata, ambarKullanimi, "Ambar_No"},
     ambarKontrol,
     ambarKodKontrol},
    // Unlike the others its delete statement has no database in front: it acts on the current one.
    {"satici",
     "Satici_Tanimlari",
     "Satıcı Tanımları",
     "FisGrd",
     "SATICI",
     "Satici_ID",
     "SELECT * FROM  {db}SATICI WHERE NOT Kullanici_ID=0 ORDER BY Satici_Kodu",
     "DELETE FROM SATICI WHERE Satici_ID=",
     saticiKolonlari,
     saticiTablosu,
     "Satici_Kodu",
     "Satici_Adi",
     {},
     SatirSilme::Gizle,
     KayitYolu::SatirSatir,
     true,
     {satirSoru, true, "Bu satıcıya ait hareketler var.Silinemez!", bilgi, saticiKullanimi, "Satici_ID"},
     saticiKontrol,
     nullptr},
    {"fiyat",
     "Fiyat_Tanimlari",
     "Fiyat Tanımları",
     "FisGrd",
     "FIYATTANIM",
     "",
     "SELECT * FROM  {db}FIYATTANIM",
     "DELETE FROM  {db}FIYATTANIM",
     fiyatKolonlari,
     fiyatTablosu,
     "Sira_No",
     "Fiyat_Aciklama",
     fiyatTikleri,
     SatirSilme::Yok,
     KayitYolu::SilVeEkle,
     false,
     {},
     fiyatKontrol,
     fiyatKodKontrol,
     false,
     true,
     false,
     10},
    {"doviz",
     "Doviz_Tanimlari",
     "Döviz Tanımları",
     "FisGrd",
     "DOVIZTANIM",
     "Doviz_ID",
     "SELECT * FROM  {db}DOVIZTANIM WHERE Kullanici_ID<>0",
     "DELETE FROM  {db}DOVIZTANIM WHERE ",
     dovizKolonlari,
     dovizTablosu,
     "Doviz_Kod",
     "Doviz_Ad",
     varsayilanDoviz,
     SatirSilme::Kaydir,
     KayitYolu::OlmayaniSil,
     true,
     {"Döviz Tanımını Slmek İstediğinizden Eminmisiniz ?", true,
      "Bu döviz koduyla işlemleriniz mevcut. Silinemez", hata, dovizKullanimi, "Doviz_ID"},
     dovizKontrol,
     dovizKodKontrol,
     true,
     true,
     true},
    {"renk",
     "RenkBedenDropTnmFrm",
     "Renkler",
     "RenkFlx",
     "RENKTANIM",
     "Renk_ID",
     "SELECT * FROM  {db}RENKTANIM ORDER BY Renk_Adi",
     "",
     renkKolonlari,
     renkTablosu,
     "Renk",
     "Renk",
     {},
     SatirSilme::Yok,
     KayitYolu::EkleDegistir,
     true,
     {},
     kontrolsuz,
     nullptr,
     true,
     true,
     true},
    {"beden",
     "RenkBedenDropTnmFrm",
     "Bedenler",
     "BedenFlx",
     "BEDENTANIM",
     "Beden_ID",
     "SELECT * FROM  {db}BEDENTANIM ORDER BY Beden_Adi",
     "",
     bedenKolonlari,
     bedenTablosu,
     "Beden",
     "Beden",
     {},
     SatirSilme::Yok,
     KayitYolu::EkleDegistir,
     true,
     {},
     kontrolsuz,
     nullptr,
     true,
     true,
     true},
    {"drop",
     "RenkBedenDropTnmFrm",
     "Droplar",
     "DropFlx",
     "DROPTANIM",
     "Drop_ID",
     "SELECT * FROM  {db}DROPTANIM ORDER BY Drop_Adi",
     "",
     dropKolonlari,
     dropTablosu,
     "Drop",
     "Drop",
     {},
     SatirSilme::Yok,
     KayitYolu::EkleDegistir,
     true,
     {},
     kontrolsuz,
     nullptr,
     true,
     true,
     true},
};

constexpr std::array ambarBagKolonlari = {
    K{"Ambar_ID", "", 0, Sayi, gizli}, K{"Ambar_No", "Ambar No", 90, Sayi, acik, salt},
    K{"Ambar_Ad", "Ambar Adı", 190, Metin, acik, salt}, K{"Sec", "Seç", 60, Tik}};
constexpr std::array saticiBagKolonlari = {
    K{"Satici_ID", "", 0, Sayi, gizli}, K{"Satici_Kodu", "Satıcı Kodu", 90, Metin, acik, salt},
    K{"Satici_Adi", "Satıcı Adı", 170, Metin, acik, salt}, K{"Sec", "Seç", 60, Tik}};

}  // namespace

std::span<const TanimTuru> tanimTurleri() {
  return turler;
}

const TanimTuru* tanimBul(std::string_view ad) {
  const auto at = std::ranges::find(turler, ad, &TanimTuru::ad);
  return at == std::end(turler) ? nullptr : at;
}

int kolonu(const TanimTuru& tur, std::string_view anahtar) {
  return session::kolonSirasi(tur.kolonlar, anahtar);
}

std::span<const IzgaraKolonu> bagKolonlari(Bag bag) {
  if (bag == Bag::Ambar) return ambarBagKolonlari;
  return saticiBagKolonlari;
}

}  // namespace settings
