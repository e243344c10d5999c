#include "rights/kasiyer_sozluk.h"

#include <algorithm>

namespace rights {

namespace {

constexpr AramaTanimi aramalar[] = {
    {AramaTuru::Kasa, "KASAKART", "Kasa_ID", "Kasa_Kod", "Kasa_Ad", "Kasa Kodu", "Kasa Adı", false, false},
    {AramaTuru::Cari, "CARIKART", "Cari_Kod", "Cari_Kod", "Unvan", "Cari Kodu", "Cari Ünvan", false, false},
    {AramaTuru::Ambar, "AMBAR", "Ambar_No", "Ambar_No", "Ambar_Ad", "Ambar No", "Ambar Adı", true, false},
    {AramaTuru::Satici, "SATICI", "Satici_ID", "Satici_Kodu", "Satici_Adi", "Satıcı Kodu", "Satıcı Adı",
     false, false},
    {AramaTuru::Isyeri, "ISYERITANIM", "Isyeri_Kodu", "Isyeri_Kodu", "Isyeri_Adi", "İsyeri Kodu",
     "İşyeri Adı", false, false},
    {AramaTuru::Fiyat, "FIYATTANIM", "Sira_No", "Sira_No", "Fiyat_Aciklama", "Fiyat No", "Fiyat Adı", true,
     false},
    {AramaTuru::Kullanici, "Kullanici", "Kullanici_ID", "Kullanici_Ad", "Kullanici_Ad", "Kullanıcı",
     "Kullanıcı Adı", false, true},
    {AramaTuru::Stok, "STOKKART", "Stok_ID", "Stok_Kod", "Stok_Ad", "Stok Kodu", "Stok Adı", false, false},
};

constexpr FisTanimi fisTablosu[] = {
    {"Kasa Kodu", "Def_Kasa_ID", AramaTuru::Kasa, "KS_Degistirsin", degistirir},
    {"Virman Kasa Kodu", "Vir_Kasa_ID", AramaTuru::Kasa},
    {"Cari Kodu", "Def_Cari_Kod", AramaTuru::Cari, "CR_Degistirsin", degistirir},
    {"Ambar No", "Def_Ambar_No", AramaTuru::Ambar, "AMB_Degistirsin", degistirir},
    {"Satıcı Kodu", "Def_Satici", AramaTuru::Satici, "SAK_Degistirsin", degistirir},
    {"İşyeri Kodu", "DEF_Isyeri_Kod", AramaTuru::Isyeri},
    {"Fiyat No", "Kullanici_Fiyat", AramaTuru::Fiyat, "FiyatDegistirsin", degistirir},
    {"Devredilen Kullanıcı", "Dvt_Kullanici", AramaTuru::Kullanici},
    {"Özel Kod", "", AramaTuru::Yok, "OZ_Degistirsin", degistirir},
    {"KDV", "", AramaTuru::Yok, "KDV_Degistirsin", degistirir},
    {"Tarih", "", AramaTuru::Yok, "Tarih_Degistirsin", degistirir},
    {"Nakit", "", AramaTuru::Yok, "Nakit", alir},
    {"Kredi Kartı", "", AramaTuru::Yok, "Kredi_Kart", alir},
    {"Çoklu Ödeme", "", AramaTuru::Yok, "CokluOdeme", yapar},
    {"Veresiye", "", AramaTuru::Yok, "Veresiye", yapar},
    {"İade", "", AramaTuru::Yok, "Iade", yapar},
    {"İskonto", "", AramaTuru::Yok, "Iskonto", yapar},
};

constexpr Kolon bit(std::string_view ad, std::string_view yazi) {
  return {ad, KolonTuru::Bit, 0, Bolum::Kasiyer, yazi};
}
constexpr Kolon metin(std::string_view ad, int genislik, std::string_view yazi) {
  return {ad, KolonTuru::Metin, genislik, Bolum::Kasiyer, yazi};
}
// "Mesajıı" and "Kapanya" are how the till's users know them.
constexpr Kolon kolonTablosu[] = {
    bit("ISK", "İskonto Oranı Girebilir"),
    bit("MiktarDegistir", "Miktarı Değiştirebilir"),
    bit("TerOnline", "Online Terazi Bağlantısı"),
    metin("TerPort", 10, "Terazi Port No :"),
    bit("OnlineYazarKasa", "Online Yazar Kasa Bağlantısı"),
    metin("YazarKasaPort", 10, "Yazar Kasa Port No :"),
    bit("MusGos", "Müşteri Göstergesi"),
    metin("MusGosPort", 10, "Gösterge Port No :"),
    metin("GosMesaj", 50, "Gösterge Mesajıı : "),
    bit("SatisBeklet", "Satış Bekletme"),
    bit("SatisBekletKnt", "Çıkış Yapılırken Bekleyen Satışları Kontrol Et"),
    bit("Depozito", "Depozito Kullansın"),
    bit("Kampanya", "Kapanya Kullansın"),
    bit("OtoYaz", "Kayıt Sonrası Otomatik Yazdır"),
    bit("KisiIade", "İadede Cari Hesap Satış Kontrolü Yap"),
};

constexpr AyarTanimi kutu(std::string_view kontrol, std::string_view kolon, std::string_view yazi) {
  return {AyarTuru::Kutu, kolon, yazi, kontrol};
}
constexpr AyarTanimi yaziAyari(std::string_view kolon, std::string_view yazi) {
  return {AyarTuru::Metin, kolon, yazi, kolon};
}
constexpr AyarTanimi nesne(std::string_view yazi, std::string_view ad) {
  return {AyarTuru::Nesne, ad, yazi, ad};
}
constexpr AyarTanimi ayarTablosu[] = {
    kutu("DokunmatikEkran", "DokunmatikEkran", "Dokunmatik Ekran Kullanıyorum"),
    kutu("YakaKarti", "YakaKarti", "Yaka Kartıyla Giriş Yapacağım"),
    kutu("DirektIslem", "SatisListesiGoster", "Satış Listesi Görünmeden Hemen İşleme Başlasın"),
    kutu("StoguSesleSoyle", "SesliUyari", "Stok Bilgisi Girildikten Sonra Sesle Uyar"),
    kutu("YalnizcaSen", "SadeceKasiyerKullan", "Bu Bilgisayarda Sadece Bu Program Kullanılabilir"),
    kutu("SadeceBarkod", "SadeceBarkodlaGiris", "Bu Bilgisayarda Sadece Barkodla Giriş Yapılabilir."),
    kutu("GecikmisiGoster", "GecikmisGoster", "Veresiye Satışta Gecikmiş Borcu Göster"),
    kutu("SatistaBakiyeGoster", "KasaBakiyeGoster", "Satış Esnasında Kasa Bakiyesi Göster"),
    kutu("ListedeBakiye", "ToplalariGoster", "Satış Listesinde Toplamları Göster"),
    kutu("AyniBarkodTopla", "IkiDefaOkunaniTopla", "Aynı Barkod İki Defa Okunursa Topla"),
    kutu("Kisayol", "Kisayol", "Kısayol Kullanıyorum"),
    kutu("KayitsizCikis", "KayitsizCikis", "Kayıt İşlemi Tamamlamadan Çıkış Yapma"),
    yaziAyari("FaturaDizayn", "Fatura Dizaynı :"),
    yaziAyari("TaksilFisDizayn", "Taksit Fişi Dizaynı :"),
    yaziAyari("FarmYazici", "Form Yazıcısı :"),
    yaziAyari("RaporYazici", "Rapor Yazıcısı :"),
    nesne("Fiş No", "FisNo"),
    nesne("Tarih", "Tarih"),
    nesne("Belge No", "BelgeNo"),
    nesne("Özel Kod", "OzelKod"),
    nesne("Cari Kodu", "CariKod"),
    nesne("Cari Adı", "CariAd"),
    nesne("Kasa Kodu", "KasaKod"),
    nesne("Kasa Adı", "KasaAd"),
    nesne("Ambar No", "AmbarNo"),
    nesne("Satıcı Kodu", "SaticiKod"),
    nesne("İşyeri Kodu", "IsyeriKod"),
    nesne("Özel", "Ozel"),
    nesne("KDV Dahildir", "KDVDahil"),
    nesne("İade İşlemidir", "IadeIslemi"),
    nesne("Satır Iskontosu", "SatirISK"),
    nesne("Ödenen Tutar", "OdenenTutar"),
    nesne("Bürüt Tutar", "BurutTutar"),
    nesne("İndirim Toplam", "IndirimTutar"),
    nesne("Ara Toplam", "AraToplam"),
    nesne("KDV toplam", "KDVToplam"),
    nesne("Net Tutar", "NetTutar"),
    nesne("Çıkış Butonu", "CikisButon"),
    nesne("Satır Açıklaması", "SatirAciklama"),
};

}  // namespace

const AramaTanimi& aramaTanimi(AramaTuru tur) {
  return *std::find_if(std::begin(aramalar), std::end(aramalar),
                       [tur](const AramaTanimi& a) { return a.tur == tur; });
}
std::span<const FisTanimi> fisTanimlari() {
  return fisTablosu;
}
std::span<const Kolon> kasiyerKolonlari() {
  return kolonTablosu;
}
std::span<const AyarTanimi> ayarTanimlari() {
  return ayarTablosu;
}

}  // namespace rights
