#include "company/ornek/kelimeler.h"

#include <array>

namespace company::ornek {

namespace {

constexpr std::array gida = {Urun{"Makarna 500 G", 145},         Urun{"Pirinç Baldo 1 KG", 520},
                             Urun{"Kırmızı Mercimek 1 KG", 380}, Urun{"Bulgur Pilavlık 1 KG", 265},
                             Urun{"Ayçiçek Yağı 5 LT", 2450},    Urun{"Zeytin Siyah 900 G", 890},
                             Urun{"Salça Domates 830 G", 410},   Urun{"Çay Tomurcuk 1 KG", 1650},
                             Urun{"Bal Süzme 850 G", 1890},      Urun{"Un Ekmeklik 5 KG", 780}};
constexpr std::array temelGida = {Urun{"Ekmek Kepekli", 60}, Urun{"Ekmek Somun", 50},
                                  Urun{"Un Buğday 25 KG", 2900}, Urun{"Yufka 6'lı", 190}};
constexpr std::array temizlik = {Urun{"Çamaşır Deterjanı 6 KG", 2290}, Urun{"Bulaşık Deterjanı 750 ML", 290},
                                 Urun{"Yüzey Temizleyici 1 LT", 345},  Urun{"Çamaşır Suyu 4 LT", 420},
                                 Urun{"Sıvı Sabun 3 LT", 640},         Urun{"Yumuşatıcı 2 LT", 510},
                                 Urun{"Çöp Torbası 20'li", 175},       Urun{"Kağıt Havlu 12'li", 1150}};
constexpr std::array kirtasiye = {Urun{"Fotokopi Kağıdı A4", 650}, Urun{"Tükenmez Kalem Mavi", 75},
                                  Urun{"Kurşun Kalem 12'li", 320}, Urun{"Defter Kareli 80 YP", 210},
                                  Urun{"Klasör Geniş", 380},       Urun{"Zımba Teli 1000'li", 95},
                                  Urun{"Yapıştırıcı Stick", 145},  Urun{"Hesap Makinesi", 2450}};
constexpr std::array hirdavat = {Urun{"Vida Sunta 4x40 500'lü", 680}, Urun{"Matkap Ucu Seti", 1950},
                                 Urun{"Çekiç Ahşap Saplı", 1250},     Urun{"Pense Yalıtkan", 1480},
                                 Urun{"Silikon Şeffaf", 420},         Urun{"Priz Topraklı", 385},
                                 Urun{"Kablo 3x2.5 100 MT", 18900},   Urun{"Boya Tavan 15 KG", 6900}};
constexpr std::array tekstil = {Urun{"Tişört Pamuklu", 1590},        Urun{"Gömlek Uzun Kol", 3990},
                                Urun{"Pantolon Keten", 5490},        Urun{"Havlu 50x90", 890},
                                Urun{"Nevresim Çift Kişilik", 8900}, Urun{"Çorap 3'lü", 690}};
constexpr std::array elektronik = {Urun{"Su Isıtıcısı 1.7 LT", 5900}, Urun{"Saç Kurutma Makinesi", 6490},
                                   Urun{"Ütü Buharlı", 11900},        Urun{"Tost Makinesi", 9900},
                                   Urun{"Pil AA 4'lü", 850},          Urun{"Ampul Tasarruflu 20W", 690},
                                   Urun{"Kulaklık Kablolu", 1990},    Urun{"Uzatma Kablosu 5 MT", 1650}};
constexpr std::array mutfak = {Urun{"Tencere Seti 6 Parça", 15900},   Urun{"Tava 26 CM", 3490},
                               Urun{"Bardak Su 6'lı", 1290},          Urun{"Tabak Servis 6'lı", 2890},
                               Urun{"Çatal Kaşık Bıçak 24'lü", 6990}, Urun{"Saklama Kabı 3'lü", 1490}};

constexpr std::array gruplar = {UrunGrubu{"GDA", "GIDA", "ADET", 8, "KOLİ", 12, gida},
                                UrunGrubu{"TML", "TEMEL GIDA", "ADET", 1, "KASA", 10, temelGida},
                                UrunGrubu{"TMZ", "TEMİZLİK", "ADET", 18, "KOLİ", 6, temizlik},
                                UrunGrubu{"KRT", "KIRTASİYE", "ADET", 18, "PAKET", 20, kirtasiye},
                                UrunGrubu{"HRD", "HIRDAVAT", "ADET", 18, "KUTU", 10, hirdavat},
                                UrunGrubu{"TKS", "TEKSTİL", "ADET", 8, "PAKET", 6, tekstil},
                                UrunGrubu{"ELK", "ELEKTRİKLİ ALET", "ADET", 18, "KOLİ", 4, elektronik},
                                UrunGrubu{"MTF", "MUTFAK", "KUTU", 18, "KOLİ", 6, mutfak}};

constexpr std::array<std::string_view, 20> markaAdlari = {
    "Pelvan",   "Sarıtuna", "Gökmeva", "Ulubelen", "Çamkoz",  "Yelkıran", "Dorumis",
    "Akpervin", "Tanyaz",   "Mirakor", "Ferunal",  "Karışan", "Şenoba",   "İlmekay",
    "Üçdoruk",  "Özgüney",  "Bozkula", "Narsel",   "Vadikan", "Zeminay"};
constexpr std::array<std::string_view, 8> cesitAdlari = {"",     "Eko",   "Klasik", "Ekstra",
                                                         "Lüks", "Doğal", "Plus",   "Aile Boyu"};
constexpr std::array sehirAdlari = {Sehir{"İSTANBUL", "ÜMRANİYE", "34760", "216", "ÜMRANİYE"},
                                    Sehir{"İSTANBUL", "BAĞCILAR", "34200", "212", "BAĞCILAR"},
                                    Sehir{"ANKARA", "ÇANKAYA", "06420", "312", "ÇANKAYA"},
                                    Sehir{"İZMİR", "BORNOVA", "35040", "232", "BORNOVA"},
                                    Sehir{"BURSA", "NİLÜFER", "16110", "224", "NİLÜFER"},
                                    Sehir{"ANTALYA", "MURATPAŞA", "07100", "242", "MURATPAŞA"},
                                    Sehir{"ADANA", "SEYHAN", "01010", "322", "SEYHAN"},
                                    Sehir{"KONYA", "SELÇUKLU", "42060", "332", "SELÇUK"},
                                    Sehir{"GAZİANTEP", "ŞAHİNBEY", "27010", "342", "ŞAHİNBEY"},
                                    Sehir{"KAYSERİ", "MELİKGAZİ", "38030", "352", "ERCİYES"},
                                    Sehir{"TRABZON", "ORTAHİSAR", "61030", "462", "KARADENİZ"},
                                    Sehir{"ESKİŞEHİR", "TEPEBAŞI", "26120", "222", "YUNUS EMRE"}};
constexpr std::array<std::string_view, 20> kisiAdlari = {
    "Ahmet", "Ayşe",  "Mehmet", "Fatma", "Mustafa", "Zeynep", "Hüseyin", "Elif",   "İbrahim", "Merve",
    "Osman", "Gülay", "Yusuf",  "Selma", "Kemal",   "Nurcan", "Cengiz",  "Şebnem", "Uğur",    "Hatice"};
constexpr std::array<std::string_view, 20> soyadAdlari = {
    "YALINKILIÇ", "TOPRAKSEVER", "GÖĞÜSGEREN", "ŞENBAHÇE", "ULUDERELİ", "KAVAKÇIOĞLU", "İNCEBEL",
    "ÇAKMAKTAŞ",  "DENİZALP",    "ÖZYURTLU",   "BAŞPINAR", "TUNCALI",   "KARASAKAL",   "ERGÜVEN",
    "YAYLAGÜL",   "ALTINBAŞAK",  "SÖĞÜTLÜ",    "GÜRÇAYIR", "BİLGEHAN",  "DEMİRKANAT"};
constexpr std::array<std::string_view, 24> kokler = {
    "AKKENT",  "YILDIZELİ", "GÜNEŞLİK", "BOĞAZKENT", "ÇINARALTI", "DOĞANYURT", "ERCİYAY",  "FIRATSU",
    "GÖKBEL",  "HİSARÖNÜ",  "IŞIKSAL",  "İPEKHAN",   "KAYABAŞ",   "LALEZAR",   "MAVİDERE", "NEHİRSU",
    "ORTAOVA", "ÖZKÖPRÜ",   "PINARBEY", "SARIKAYA",  "ŞELALE",    "TUZLUÇAY",  "ÜZÜMCÜ",   "YEŞİLTEPE"};
constexpr std::array<std::string_view, 12> kollar = {"GIDA",      "MARKET",    "İNŞAAT",   "TEKSTİL",
                                                     "KIRTASİYE", "OTELCİLİK", "LOJİSTİK", "HIRDAVAT",
                                                     "PAZARLAMA", "TARIM",     "DAĞITIM",  "TEMİZLİK"};
constexpr std::array<std::string_view, 4> ekler = {"LTD. ŞTİ.", "A.Ş.", "TİCARET", "KOLL. ŞTİ."};
constexpr std::array<std::string_view, 12> sokakAdlari = {
    "Cumhuriyet Cad.", "Çınar Sok.",    "İstiklal Cad.", "Gül Sok.",   "Fatih Bulvarı", "Papatya Sok.",
    "Sanayi Cad.",     "Dereboyu Cad.", "Okul Sok.",     "Zafer Cad.", "Şehitler Cad.", "Kültür Sok."};
constexpr std::array<std::string_view, 6> subeler = {"Merkez", "Çarşı",      "Sanayi",
                                                     "Liman",  "Üniversite", "Yenişehir"};

}  // namespace

std::span<const UrunGrubu> urunGruplari() {
  return gruplar;
}
std::span<const std::string_view> markalar() {
  return markaAdlari;
}
std::span<const std::string_view> cesitler() {
  return cesitAdlari;
}
std::span<const Sehir> sehirler() {
  return sehirAdlari;
}
std::span<const std::string_view> adlar() {
  return kisiAdlari;
}
std::string_view hitap(std::size_t ad) {
  return ad % 2 == 0 ? "Bey" : "Hanım";
}
std::span<const std::string_view> soyadlar() {
  return soyadAdlari;
}
std::span<const std::string_view> firmaKokleri() {
  return kokler;
}
std::span<const std::string_view> isKollari() {
  return kollar;
}
std::span<const std::string_view> firmaEkleri() {
  return ekler;
}
std::span<const std::string_view> sokaklar() {
  return sokakAdlari;
}
std::span<const std::string_view> bankaSubeleri() {
  return subeler;
}

}  // namespace company::ornek
