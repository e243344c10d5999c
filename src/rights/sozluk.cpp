#include "rights/sozluk.h"

#include <algorithm>

namespace rights {

namespace {

constexpr KolonTuru bit = KolonTuru::Bit, sayi = KolonTuru::Sayi, metin = KolonTuru::Metin;

constexpr Kolon dizi(std::string_view ad, int genislik) {
  return {ad, KolonTuru::Dizi, genislik};
}
constexpr Kolon genel(std::string_view ad, std::string_view yazi) {
  return {ad, bit, 0, Bolum::Genel, yazi, false};
}
constexpr Kolon kutu(std::string_view ad, std::string_view yazi) {
  return {ad, bit, 0, Bolum::Kutu, yazi};
}
constexpr Kolon kasiyer(std::string_view ad, std::string_view yazi) {
  return {ad, bit, 0, Bolum::Kasiyer, yazi};
}

constexpr Kolon kolonTablosu[] = {
    {"KASA"},
    dizi("KHE", 14),
    dizi("KHD", 14),
    dizi("KHI", 14),
    dizi("KHS", 14),
    dizi("KK", 4),
    {"KB"},
    {"KR"},
    {"CARI"},
    dizi("CARHE", 5),
    dizi("CARHD", 5),
    dizi("CARHI", 5),
    dizi("CARHS", 5),
    dizi("CARK", 5),
    {"CARB"},
    {"CARR"},
    dizi("CAROS", 4),
    {"STOK"},
    dizi("STHE", 16),
    dizi("STHD", 16),
    dizi("STHI", 16),
    dizi("STHS", 16),
    dizi("STK", 4),
    {"STB"},
    {"STR"},
    dizi("STP", 4),
    {"FATURA"},
    dizi("FHE", 7),
    dizi("FHD", 7),
    dizi("FHI", 7),
    dizi("FHS", 7),
    {"FR"},
    dizi("FP", 6),
    {"SIPARIS"},
    dizi("SIPHE", 2),
    dizi("SIPHD", 2),
    dizi("SIPHI", 2),
    dizi("SIPHS", 2),
    {"SIPR"},
    {"BANKA"},
    dizi("BHE", 6),
    dizi("BHD", 6),
    dizi("BHI", 6),
    dizi("BHS", 6),
    dizi("BK", 4),
    {"BB"},
    {"BR"},
    {"BORDRO"},
    dizi("BORHE", 23),
    dizi("BORHD", 23),
    dizi("BORHI", 23),
    dizi("BORHS", 23),
    {"CEKL"},
    {"SENETL"},
    {"BORR"},
    {"URETIMEMIR"},
    {"URETIMRECETE"},
    dizi("URK", 4),
    dizi("UEK", 4),
    {"UR"},
    {"DI"},
    {"DT"},
    {"DR"},
    {"SATR"},
    {"FKG"},
    {"Personel"},
    dizi("PHE", 6),
    dizi("PHD", 6),
    dizi("PHI", 6),
    dizi("PHS", 6),
    dizi("PK", 4),
    {"PB"},
    {"PR"},
    {"Muhasebe"},
    dizi("MHE", 5),
    dizi("MHD", 5),
    dizi("MHI", 5),
    dizi("MHS", 5),
    dizi("MFN", 6),
    dizi("MK", 4),
    {"MB"},
    {"MR"},
    {"MTM"},
    dizi("MET", 4),
    genel("KRVN", "Korvena Ana Program"),
    genel("KSYR", "Kasiyer Programı"),
    genel("YZRKS", "Yazar Kasa Programı"),
    genel("TKSTL", "Taksitli Satış Programı"),
    kutu("KorvenaAnaliz", "Fr Analiz Ekranını Göster"),
    kutu("KasiyerAnaliz", "Kasiyer Analiz Ekranını Göster"),
    kutu("SipOnay", "Sipariş Onayı Yapabilir"),
    kutu("FTIY", "Fatura İptali Yapabilir"),
    kutu("FTIK", "Fatura İptalini Kaldırabilir"),
    kutu("EOV", "Ekle Onayı Verebilir"),
    kutu("DOV", "Değiştir Onayı Verebilir"),
    kutu("IOV", "İncele Onayı Verebilir"),
    kutu("SOV", "Sil Onayı Verebilir"),
    kutu("EOI", "Ekle Onayı İstesin"),
    kutu("DOI", "Değiştir Onayı İstesin"),
    kutu("IOI", "İncele Onayı İstesin"),
    kutu("SOI", "Sil Onayı İstesin"),
    kutu("GcTarih", "Geçmiş Tarihe Kayıt Yapamaz"),
    kutu("BGTahAl", "Borcu Geciken Müş. Tahsilat Alamaz"),
    {"KntGun", sayi, 0, Bolum::Kutu, "Gün Geçmiş Ödemeleri Kontrol Et"},
    {"Cari_Tipi", metin, 26, Bolum::Kutu, "Cari Hesap Yetkisi :"},
    {"Def_Ambar_No", sayi, 0, Bolum::Varsayilan, "Merkez Ambar"},
    {"DEF_Isyeri_Kod", metin, 10, Bolum::Varsayilan, "Varsayılan İşyeri"},
    {"Def_Kasa_ID", sayi, 0, Bolum::Varsayilan, "Kul. Kasa Kodu"},
    {"Def_Cari_Kod", metin, 26, Bolum::Varsayilan, "Kul. Peşin Cari Kodu"},
    kasiyer("KS_Degistirsin", "Kasa Kodunu Değiştirebilir"),
    kasiyer("CR_Degistirsin", "Cari Kodunu Değiştirebilir"),
    kasiyer("AMB_Degistirsin", "Ambar Nosunu Değiştirebilir"),
    kasiyer("SAK_Degistirsin", "Satıcı Kodunu Değiştirebilir"),
    kasiyer("OZ_Degistirsin", "Özel Kodu Değiştirebilir"),
    kasiyer("KDV_Degistirsin", "KDV Oranını Değiştirebilir"),
    kasiyer("Tarih_Degistirsin", "Tarihi Değiştirebilir"),
    kasiyer("Nakit", "Nakit Alır"),
    kasiyer("Kredi_Kart", "Kredi Kartı Alır"),
    kasiyer("CokluOdeme", "Çoklu Ödeme Yapar"),
    kasiyer("Veresiye", "Veresiye Yapar"),
    kasiyer("Iade", "İade Yapar"),
    kasiyer("Iskonto", "İskonto Yapar"),
    {"Kullanici_Fiyat", sayi, 0, Bolum::Varsayilan, "Fiyat No", false},
    {"FiyatDegistirsin", bit, 0, Bolum::Varsayilan, "Fiyatı Değiştirebilir", false},
};

using Yazilar = std::string_view;
constexpr Yazilar kartSatirlari[] = {"Ekle", "Değiştir", "İncele", "Sil"};
// The fifth place is no action on the card: it opens credit.
constexpr Yazilar cariKartSatirlari[] = {"Ekle", "Değiştir", "İncele", "Sil", "Cari Hesaba Kredi Açar"};
constexpr Yazilar kasaBelgeleri[] = {
    "Nakit Ödeme Fişi",       "Bankaya Yatırılan",       "Çek Ödemesi",   "Senet Ödemesi",
    "Nakit Tahsilat Fişi",    "Bankadan Çekilen",        "Çek Tahsilatı", "Senet Tahsilatı",
    "Alınan Hizmet Faturası", "Verilen Hizmet Faturası", "Virman Fişi",   "Açılış Fişi",
    "Parçalı Çek Tahsilatı",  "Parçalı Senet Tahsilatı"};
constexpr Yazilar cariBelgeleri[] = {"Borç Dekontu", "Alacak Dekontu", "Virman Fişi", "Açılış Fişi",
                                     "Kredi Kartı Tahsilatı"};
constexpr Yazilar stokBelgeleri[] = {"Satış İrsaliyesi",
                                     "Alış İrsaliyesi",
                                     "Ambar Fişi",
                                     "Sarf Fişi",
                                     "Üretimden Giriş Fişi",
                                     "Fire Fişi",
                                     "Açılış Fişi",
                                     "Sair Giriş",
                                     "Sair Çıkış",
                                     "Konsinye Giriş",
                                     "Konsinye Çıkış",
                                     "Alış İade İrsaliyesi",
                                     "Satış İade İrsaliyesi",
                                     "Konsinye Giriş İade",
                                     "Konsinye Çıkış İade",
                                     "Stok Sayım Fişi"};
// Eight rows over columns of seven places: the last is shown and not stored.
constexpr Yazilar faturaBelgeleri[] = {
    "Satış Faturası",         "Alış Faturası",           "Alış İade Faturası", "Satış İade Faturası",
    "Alınan Proforma Fatura", "Verilen Proforma Fatura", "Müstahsil Makbuzu",  "Masraf Hizmet Ödeme"};
constexpr Yazilar siparisBelgeleri[] = {"Alınan Sipariş", "Verilen Sipariş"};
constexpr Yazilar bankaBelgeleri[] = {"Banka İşlem Fişi", "Gelen Havale", "Giden Havale",
                                      "Virman Fişi",      "Açılış Fişi",  "Pos Aktarım Fişi"};
constexpr Yazilar bordroBelgeleri[] = {"Çek Giriş",
                                       "Senet Giriş",
                                       "Çek Çıkış (Cari Hesaba)",
                                       "Senet Çıkış (Cari Hesaba)",
                                       "Çek Devir Bordrosu",
                                       "Senet Devir Bordrosu",
                                       "Çek Çıkış (Banka Tahsil)",
                                       "Senet Çıkış (Banka Tahsil)",
                                       "Çek Çıkış (Banka Teminat)",
                                       "Senet Çıkış (Banka Teminat)",
                                       "Çek Giriş (Bankadan İade)",
                                       "Senet Giriş (Bankadan İade)",
                                       "Bankadaki Müş. Çek Tahsili",
                                       "Bankadaki Müş. Senet Tahsili",
                                       "Bankadan Çek Ödemesi",
                                       "Müşteriye Çek İade",
                                       "Müşteriye Senet İade",
                                       "Müşteriden Çek İade",
                                       "Müşteriden Senet İade",
                                       "Portföyden Çek Tahsilatı",
                                       "Portföyden Senet Tahsilatı",
                                       "Karşılıksız Müşteri Çeki",
                                       "Karşılıksız Müşteri Seneti"};
// "Pirim" is how the suite spells it.
constexpr Yazilar personelBelgeleri[] = {"Maaş Fişi",     "Puantaj Fişi",  "Maaş Ödemesi",
                                         "Pirim Ödemesi", "Avans Ödemesi", "Tazminat Ödemesi"};
constexpr Yazilar muhasebeBelgeleri[] = {"Açılış Fişi", "Tahsil Fişi", "Tediye Fişi", "Mahsup Fişi",
                                         "Kapanış Fişi"};
constexpr Yazilar stokParametreleri[] = {"Fiyat Tanımları", "Ambar Tanımları", "İşyeri Tanımları",
                                         "Beden Grupları"};
constexpr Yazilar faturaParametreleri[] = {"Hizmet Tanımları",         "Masraf Tanımları",
                                           "İndirim Tanımları",        "Satıcı Tanımları",
                                           "Satıcı Çek/Senet Zimmeti", "Müstahsil Tanımları"};
constexpr Yazilar uretimSatirlari[] = {"Üretim Reçeteleri", "Üretim Emirleri"};
constexpr Yazilar fisNumaralama[] = {"Açılış Fişlerini Numaralandır",  "Tahsil Fişlerini Numaralandır",
                                     "Tediye Fişlerini Numaralandır",  "Mahsup Fişlerini Numaralandır",
                                     "Kapanış Fişlerini Numaralandır", "Yevmiye Numaralandır"};

constexpr auto Kart = GrupTuru::Kart, Belgeler = GrupTuru::Belgeler, Satirlar = GrupTuru::Satirlar,
               Dizi = GrupTuru::Dizi, Bit = GrupTuru::Bit;

constexpr Grup kasaGruplari[] = {
    {Kart, "K", "Kasa Kartı", {"KK", "KB"}, kartSatirlari},
    {Belgeler, "H", "Kasa Hareketleri", {"KHE", "KHD", "KHI", "KHS"}, kasaBelgeleri},
    {Bit, "R", "Kasa Raporları", {"KR"}},
};
constexpr Grup cariGruplari[] = {
    {Kart, "K", "Cari Hesap Kartı", {"CARK", "CARB"}, cariKartSatirlari},
    {Belgeler, "H", "Cari Hesap Hareketleri", {"CARHE", "CARHD", "CARHI", "CARHS"}, cariBelgeleri},
    {Bit, "R", "Cari Hesap Raporları", {"CARR"}},
    {Dizi, "C", "Cari Ödeme Şablonu", {"CAROS"}, kartSatirlari},
};
constexpr Grup stokGruplari[] = {
    {Kart, "K", "Stok Kartı", {"STK", "STB"}, kartSatirlari},
    {Belgeler, "H", "Stok Hareketleri", {"STHE", "STHD", "STHI", "STHS"}, stokBelgeleri},
    {Bit, "R", "Stok Raporları", {"STR"}},
    {Dizi, "S", "Stok Parametreleri", {"STP"}, stokParametreleri},
};
constexpr Grup faturaGruplari[] = {
    {Belgeler, "H", "Fatura Hareketleri", {"FHE", "FHD", "FHI", "FHS"}, faturaBelgeleri},
    {Bit, "R", "Fatura Raporları", {"FR"}},
    {Dizi, "F", "Parametreler", {"FP"}, faturaParametreleri},
    {Bit, "SATR", "Satıcı Raporları", {"SATR"}},
    {Bit, "FKG", "Fatura Kar Gösterimi", {"FKG"}},
};
constexpr Grup siparisGruplari[] = {
    {Belgeler, "H", "Sipariş Hareketleri", {"SIPHE", "SIPHD", "SIPHI", "SIPHS"}, siparisBelgeleri},
    {Bit, "R", "Sipariş Raporları", {"SIPR"}},
};
constexpr Grup bankaGruplari[] = {
    {Kart, "K", "Banka Kartı", {"BK", "BB"}, kartSatirlari},
    {Belgeler, "H", "Banka Hareketleri", {"BHE", "BHD", "BHI", "BHS"}, bankaBelgeleri},
    {Bit, "R", "Banka Raporları", {"BR"}},
};
constexpr Grup bordroGruplari[] = {
    {Belgeler, "H", "Çek Senet Hareketleri", {"BORHE", "BORHD", "BORHI", "BORHS"}, bordroBelgeleri},
    {Bit, "R", "Çek Senet Raporları", {"BORR"}},
    {Bit, "Cek", "Çek Listesi", {"CEKL"}},
    {Bit, "Senet", "Senet Listesi", {"SENETL"}},
};
constexpr Grup uretimGruplari[] = {
    {Satirlar, "H", "Üretim Hareketleri", {"URK", "UEK"}, uretimSatirlari},
    {Bit, "R", "Üretim Raporları", {"UR"}},
};
constexpr Grup dovizGruplari[] = {
    {Bit, "R", "Döviz Raporları", {"DR"}},
    {Bit, "DI", "Döviz İşlemleri", {"DI"}},
    {Bit, "DT", "Döviz Tanımları", {"DT"}},
};
constexpr Grup personelGruplari[] = {
    {Kart, "K", "Personel Kartı", {"PK", "PB"}, kartSatirlari},
    {Belgeler, "H", "Personel Hareketleri", {"PHE", "PHD", "PHI", "PHS"}, personelBelgeleri},
    {Bit, "R", "Personel Raporları", {"PR"}},
};
constexpr Grup muhasebeGruplari[] = {
    {Kart, "K", "Muhasebe Hesap Kartı", {"MK", "MB"}, kartSatirlari},
    {Belgeler, "H", "Muhasebe Fişleri", {"MHE", "MHD", "MHI", "MHS"}, muhasebeBelgeleri},
    {Bit, "R", "Muhasebe Raporları", {"MR"}},
    // The editor reads FP into these rows and writes MFN from them: the suite's users know it so.
    {Dizi, "F", "Fiş Numaralama İşlemleri", {"MFN"}, fisNumaralama, "FP"},
    {Dizi, "E", "Entegrasyon Tanımları", {"MET"}, kartSatirlari},
    {Bit, "TM", "Toplu Muhasebeleştirme", {"MTM"}},
};

constexpr Dal dalTablosu[] = {
    {"Kasa", {"KASA"}, kasaGruplari},
    {"Cari Hesap", {"CARI"}, cariGruplari},
    {"Stok", {"STOK"}, stokGruplari},
    {"Fatura", {"FATURA"}, faturaGruplari},
    {"Sipariş", {"SIPARIS"}, siparisGruplari},
    {"Banka", {"BANKA"}, bankaGruplari},
    {"Çek Senet", {"BORDRO"}, bordroGruplari},
    {"Üretim", {"URETIMEMIR", "URETIMRECETE"}, uretimGruplari},
    {"Döviz", {}, dovizGruplari},
    {"Personel", {"Personel"}, personelGruplari},
    {"Muhasebe", {"Muhasebe"}, muhasebeGruplari},
};

constexpr std::string_view varsayilanTablosu[] = {
    "KASA",  "KHE",        "KHD",          "KHI",    "KHS",   "KK",    "KB",     "KR",      "CARI",  "CARHE",
    "CARHD", "CARHI",      "CARHS",        "CARK",   "CARB",  "CARR",  "CAROS",  "STOK",    "STHE",  "STHD",
    "STHI",  "STHS",       "STK",          "STB",    "STR",   "STP",   "FATURA", "FHE",     "FHD",   "FHI",
    "FHS",   "FP",         "FR",           "BORDRO", "BORHE", "BORHD", "BORHI",  "BORHS",   "CEKL",  "SENETL",
    "BORR",  "URETIMEMIR", "URETIMRECETE", "URK",    "UEK",   "UR",    "DI",     "DT",      "DR",    "BANKA",
    "BHE",   "BHD",        "BHI",          "BHS",    "BK",    "BB",    "BR",     "SIPARIS", "SIPHE", "SIPHD",
    "SIPHI", "SIPHS",      "SIPR",         "SATR",   "FKG"};

constexpr char kucuk(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

}  // namespace

std::span<const Kolon> kolonlar() {
  return kolonTablosu;
}
std::span<const Dal> dallar() {
  return dalTablosu;
}
std::span<const std::string_view> varsayilanKolonlar() {
  return varsayilanTablosu;
}

std::optional<std::size_t> kolonSirasi(std::string_view ad) {
  const auto same = [ad](const Kolon& k) {
    return std::equal(ad.begin(), ad.end(), k.ad.begin(), k.ad.end(),
                      [](char a, char b) { return kucuk(a) == kucuk(b); });
  };
  const auto* at = std::find_if(std::begin(kolonTablosu), std::end(kolonTablosu), same);
  if (at == std::end(kolonTablosu)) return std::nullopt;
  return static_cast<std::size_t>(at - std::begin(kolonTablosu));
}

}  // namespace rights
