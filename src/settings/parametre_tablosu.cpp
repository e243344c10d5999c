#include <algorithm>
#include <stdexcept>

#include "settings/parametre.h"

namespace settings {

namespace {

using enum ParametreTuru;
using C = Cerceve;
constexpr auto S = ParametreEkrani::Sabit;
constexpr auto T = ParametreEkrani::Taksit;

// The lists, letter by letter as the system has them, its slips of the pen included.
constexpr std::string_view kasaListesi[] = {"Standart Liste", "GünlükListe"};
constexpr std::string_view kasiyerListesi[] = {"Standart Liste", "Girişli Liste"};
constexpr std::string_view fiyatYenile[] = {"Hayır", "Kullanıcıya Sor", "Evet"};
constexpr std::string_view ozelRenkli[] = {"Yazı Rengi", "Zemin Rengi"};
constexpr std::string_view minSeviye[] = {"Miniumum Seviye Kontrolü Yapma",
                                          "Stok Minimum Seviyenin Altına Düşerse Beni Uyar",
                                          "Stok Minumum Seviyenin Altına Düşmesin"};
constexpr std::string_view maxSeviye[] = {"Maksimum Seviye Kontrolü Yapma",
                                          "Maksimum Seviyenin Üstüne Çıkarsa Beni Uyar",
                                          "Maksimum Seviyenin Üstüne Çıkmasın"};
constexpr std::string_view sifirSeviye[] = {
    "Bakiye Negatif Olabilir", "Bakiye Negatif Olacağı zaman Beni Uyar", "Bakiye Negatif Olmasın"};
constexpr std::string_view muhasebelesecek[] = {"Hepsi", "Özel Olanlar", "Özel Olmayanlar"};
constexpr std::string_view takipTipi[] = {"Aylık", "Günlük"};
constexpr std::string_view vadeTipi[] = {"Günlük", "Aylık"};
constexpr std::string_view iptalDurumu[] = {"NORMAL", "İHTARLIK ", "AVUKATLIK", "İCRALIK"};
// The third entry is empty: "Yatay" stands at position 3, while 2 is what loading knows.
constexpr std::string_view yonelim[] = {"Varsayılan", "Dikey", "", "Yatay"};

constexpr Parametre tablo[] = {
    {S, C::Genel, Tik, "DovizVar", "Döviz Kullanacağım", "DovizVar"},
    {S, C::Genel, Tik, "RenkBedenVar", "Renk Beden Ayrımı Kullanacağım", "RenkBedenVar"},
    {S, C::Genel, Tik, "PosVar", "Kredi Kartı İle Satış Yapıyorum", "PosVar"},
    {S, C::Genel, Tik, "BarkodVar", "Barkod Kullanacağım", "BarkodVar"},
    {S, C::Genel, Tik, "HareketKilit", "Onayladığım Hareketler Değiştirilemesin", "HareketKilit"},
    {S, C::Genel, Tik, "KDV_Dahildir", "Satış Faturalarım KDV Dahil Olarak Gelsin", "KDV_Dahildir"},
    {S, C::Genel, Tik, "AlisKDV_Dahildir", "Alış Faturalarım KDV Dahil Olarak Gelsin", "AlisKDV_Dahildir"},
    {S, C::Genel, Tik, "AmbarBakiyesiGoster", "İşlem Esnasında Bağlı Ambar Bakiyesi Göster",
     "AmbarBakiyesiGoster"},
    {S, C::Genel, Tik, "AmbarYetkiyeBagli", "Ambar Seçimlerinde Kullanıcı Yetkilerine Bak",
     "AmbarYetkiyeBagli"},
    {S, C::Genel, Tik, "IsyeriYetkiyeBagli", "İşyeri Seçimlerinde Kullanıcı Yetkilerine Bak",
     "IsyeriYetkiyeBagli"},
    {S, C::Genel, Tik, "FarkliFiyatBirlessin", "Fiyatı Farklı Satırlarda Birleşsin", "FarkliFiyatBirlessin"},
    {S, C::Genel, Tik, "FarkliISKBirlessin", "İskontosu Farklı Satırlarda Birleşsin", "FarkliISKBirlessin"},
    {S, C::Genel, Tik, "CariStokFiyatBagli", "Cari Hesaba Özel Stok Fiyatı Bağlayacağım",
     "CariStokFiyatBagli"},
    {S, C::Genel, Tik, "TaksitliSatisModu", "Kasiyerde Taksitli Satış Kullanacağım", "TaksitliSatisModu"},
    {S, C::Genel, Tik, "PuanVar", "Müşterilerime Puan Vermek İstiyorum", "PuanVar"},
    {S, C::Genel, Tik, "GrupStok", "Grup Stok Kullanacam", "GrupStok"},
    {S, C::Genel, Tik, "SeriTakip", "Seri Takibi Kullanacam", "SeriTakibiVar"},
    {S, C::Genel, Tik, "IrsaliyeOnay", "İrsaliye Onayı Kullan", "IrsaliyeOnay"},
    {S, C::Genel, Tik, "SiparisOnay", "Şipariş Onayı Kullan", "SiparisOnay"},
    {S, C::Genel, Tik, "SiparisRezerv", "Şiparişte Rezerv Kullan", "SiparisRezerv"},
    {S, C::Genel, Tik, "SipCrBakEtkile", "Sipariş Cari Bakiyeyi Etkilesin", "SipCrBakEtkile"},
    {S, C::Genel, Tik, "IrCrBakEtkile", "İrsaliye Cari Bakiyeyi Etkilesin", "IrCrBakEtkile"},
    {S, C::Genel, Tik, "EMailKullan", "E-Mail Kullan", "EMailKullan"},
    {S, C::Genel, Tik, "MsnKullan", "İç Haberleşme Kullan", "MsnKullan"},
    {S, C::Genel, Tik, "AmbarTrfOnay", "Ambar Transferinde Onay Kullan", "AmbarTrfOnay"},
    {S, C::Genel, Tik, "OtoPos", "Açılışta Pos Aktarım Uyarısı Yap", "OtoPos"},
    {S, C::Genel, Tik, "CiftBirimSatis", "İşlem Esnasında 2. Birim Değerini Göster", "CiftBirimSatis"},
    {S, C::Genel, Tik, "AlBelgeKont", "Alış Faturasında Belge No Kontrolü Yap", "AlBelgeKont"},
    {S, C::Genel, Tik, "CekVadeTahKont", "Vadesi Gelmemiş Çeklerin Tahsilini Kontrol Et", "CekVadeTahKont"},
    {S, C::Genel, Tik, "CrHsKont", "Tüm İşlemlerde Cari Hesap Türünü Kontrol Et", "CrHsKont"},
    {S, C::Genel, Tik, "SipKont", "Fatura Barkodlu Sevk Kontolü Yapabilir", "SipKont"},
    {S, C::Genel, Tik, "LotKul", "İşlemlerde Seri Lot Girişi Yapabilir", "LotKul"},
    {S, C::Genel, Tik, "KsyrDvt", "Kasiyerde Devir Teslim Kullan", "KsyrDvt"},
    {S, C::Genel, Tik, "HrgBrSetDeg", "Hareket Görmüş Stok Birim Setini Değiştirebilir", "HrgBrSetDeg"},
    {S, C::Genel, Tik, "IsOnay", "İşlem Onayı Kullan (Ekle-Değiştir-İncele-Sil)", "IsOnay"},
    {S, C::Genel, Tik, "MKTVG", "Maktu Vergi Kullan", "MKTVG"},
    {S, C::Genel, Tik, "OzSip", "Özel Grup Fiyatlı Sipariş Kullan", "OzSip"},
    {S, C::Genel, Tik, "HzTh", "Tüm Carilere Hızlı Tahsilat Aç", "HzTh"},
    {S, C::Genel, Tik, "AnaYaz", "Evrak Yazımlarında Stok Ana Grubunu Yazdır", "AnaYaz"},
    {S, C::Genel, Sayi, "DefKDV", "KDV Ön Değeri %", "DefKDV"},
    {S, C::Genel, Sayi, "PesinIndirimi", "Peşin Fatura İskontosu", "PesinIndirimi"},
    {S, C::Genel, Sayi, "SecimdeGelecekMiktar", "Stok Seçim Ön Değeri", "SecimdeGelecekMiktar", {}, 0, "0"},
    {S, C::Genel, Sayi, "IrsTakipSuresi", "İrsaliye takip Süresi", "IrsTakipSuresi", {}, 0, "0"},
    {S, C::Genel, Sayi, "MKTVGTUT", "Maktu Vergi Tutarı", "MKTVGTUT", {}, 0, "0,00"},
    {S, C::Genel, Sayi, "AMKTVGTUT", "Asgari Maktu Vergi Tutarı", "AMKTVGTUT", {}, 0, "0,00"},
    {S, C::Genel, Sayi, "BrGrm", "Br Gramaj :", "BrGrm", {}, 0, "0,00"},
    {S, C::Genel, Yazi, "DefTasarim", "Fatura Dizaynı : ", "DefFaturaDizayn"},
    {S, C::Genel, Yazi, "DefIrsaliyeTasarim", "İrsaliye Dizaynı : ", "DefIrsaliyeDizayn"},
    {S, C::Genel, Liste, "KasaHareketListeTipi", "Kasa Hareketleri Listesi", "KasaHareketListeTipi",
     kasaListesi, 1},
    {S, C::Genel, Liste, "KasiyerStokListeTipi", "Kasiyer Stok Listesi", "KasiyerStokListeTipi",
     kasiyerListesi, 1},
    {S, C::Genel, Liste, "AlistaFiyatDegis", "Alışta Fiyat Yenile", "AlistaFiyatDegis", fiyatYenile, 0},
    {S, C::Genel, Liste, "SatistaFiyatDegis", "Satışta Fiyat Yenile", "SatistaFiyatDegis", fiyatYenile, 0},
    {S, C::Genel, Liste, "OzelRenkli", "Özel olarak işretlediğim  Hareketlerin", "OzelRenkli", ozelRenkli, 0},
    {S, C::Genel, Renk, "Renk_Ozel", "", "Renk_Ozel"},
    {S, C::Genel, Renk, "Renk_TL", "Hareketlerin AnaPara Tutarlarının Yazı Rengi", "Renk_TL"},
    {S, C::Genel, Renk, "Renk_Doviz", "Hareketlerin Döviz Tutarlarının Yazı Rengi", "Renk_Doviz"},
    {S, C::StokSeviye, Liste, "StokMinSeviye", "", "StokMinSeviye", minSeviye, 0},
    {S, C::StokSeviye, Renk, "StokMinRenk", "", "StokMinRenk"},
    {S, C::StokSeviye, Liste, "StokMaxSeviye", "", "StokMaxSeviye", maxSeviye, 0},
    {S, C::StokSeviye, Renk, "StokMaxRenk", "", "StokMaxRenk"},
    {S, C::StokSeviye, Liste, "StokSFRSeviye", "", "StokSFRSeviye", sifirSeviye, 0},
    {S, C::StokSeviye, Renk, "StokSFRRenk", "", "StokSFRRenk"},
    {S, C::StokSeviye, Tik, "StokSeviyeOzelKontrol", "Stok Seviye Kontrolünde Özel Durumuna Dikkat Et",
     "StokSeviyeOzelKontrol"},
    {S, C::StokBakiye, Tik, "Ana_Birim", "Stok Listesinde Ana Birim Bakiyesi Göster", "Ana_Birim"},
    {S, C::StokBakiye, Tik, "Birim2", "Stok Listesinde 2. Birim Bakiyesi Göster", "Birim2"},
    {S, C::StokBakiye, Tik, "Birim3", "Stok Listesinde 3. Birim Bakiyesi Göster", "Birim3"},
    {S, C::StokBakiye, Tik, "AktifBirim", "Stok Listesinde Aktif Birim Bakiyesi Göster", "AktifBirim"},
    {S, C::Maliyet, Tik, "SatirISK_Dahil", "Satır İskontolarını Malın Maliyetine Dahil Et", "SatirISK_Dahil"},
    {S, C::Maliyet, Tik, "FaturaAltiISK_Dahil", "Fatura Altı İskontoları Malın Maliyetine Dahil Et",
     "FaturaAltiISK_Dahil"},
    {S, C::Maliyet, Tik, "Masraflar_Dahil", "Masrafları Malın Maliyetine Dahil Et", "Masraflar_Dahil"},
    {S, C::Maliyet, Tik, "AmbarKarNoktasidir", "Ambar Fişi Maliyetlerini Dahil Et", "AmbarKarNoktasidir"},
    {S, C::Maliyet, Tik, "MasraflarSatistaKardir", "Masrafları Satışta Kar Hesabına Dahil Et",
     "MasraflarSatistaKardir"},
    {S, C::Muhasebe, Tik, "OnlineMuhasebe", "Online Entegrasyon Yap", "OnlineMuhasebe"},
    {S, C::Muhasebe, Tik, "MuhBenzerSatirBirlestir", "Muhasebeleştirirken Benzer Satırları Birleştir",
     "MuhBenzerSatirBirlestir"},
    {S, C::Muhasebe, Liste, "MuhasebelesecekFisler", "Muhasebeleşebilecek Fişler", "MuhasebelesecekFisler",
     muhasebelesecek, 1},
    {S, C::Muhasebe, Firma, "TransferFirma", "Transfer Firma :", "TransferFirma"},
    {S, C::Virgul, Sayi, "AnaParaVirgul", "Tutar Haneleri", "AnaParaVirgul"},
    {S, C::Virgul, Sayi, "BirimFiyatVirGul", "Birim Fiyat Haneleri ", "BirimFiyatVirGul"},
    {S, C::Virgul, Sayi, "DovizVirgul", "Dövizli Tutar Haneleri", "DovizVirgul"},
    {S, C::Virgul, Sayi, "DovizBirimFiyatVirgul", "Dövizli Birim Fiyat Haneleri", "DovizBirimFiyatVirgul"},
    {S, C::Virgul, Sayi, "KurVirgul", "Kur Haneleri", "KurVirgul"},
    {S, C::Kilit, Tarih, "KilitBasTarih", "Kilit Başlanıç Tarihi ", "KilitBasTarih"},
    {S, C::Kilit, Tarih, "KilitBitTarih", "Kilit BitişTarihi ", "KilitBitTarih"},
    {S, C::Emanet, Tik, "EmanetVar", "Emanet Kullanacağım", "EmanetVar"},
    {S, C::Emanet, Tik, "OnceEmanetAl", "Faturayı Önce Emanete Al", "OnceEmanetAl"},
    {S, C::Emanet, Ambar, "Ambar_No", "Emanet Ambarı", "Emanet_Ambar_No"},
    {S, C::Web, Tik, "WebKullan", "Web'te Kullan", "WebKullan"},

    {T, C::Taksit, YaziListesi, "HesapTakipTipi", "Hesap Takip Tipi ", "HesapTakipTipi", takipTipi},
    {T, C::Taksit, Sayi, "MuafGun", "Gecikme Faizinden Muaf Gün Sayısı", "MuafGun"},
    {T, C::Taksit, Sayi, "VadeFarki", "Aylık Gecikme Faizi Oranı", "VadeFarki"},
    {T, C::Taksit, Liste, "VadeFarkiTipi", "Gecikme Faizi Hesap Tipi", "VadeFarkiTipi", vadeTipi, 0},
    {T, C::Taksit, Sayi, "SatisVadeFarki", "Satışta Uygulanacak Vade Farkı %", "SatisVadeFarki"},
    {T, C::Taksit, Sayi, "KrediLimiti", "Varsayılan Kredi Limiti", "KrediLimiti"},
    {T, C::Taksit, Sayi, "Pesinat", "Varsayılan Peşinat Yüzdesi", "Pesinat"},
    {T, C::Taksit, Sayi, "TaksitSayisi", "Varsayılan Taksit Sayısı", "TaksitSayisi"},
    {T, C::SatisIptal, Secim, "SatisYapma", "SATIŞ İPTAL DURUMU ", "SatisYapma", iptalDurumu, 0},
    {T, C::SatisIptal, Sayi, "IhtarSayisi", "", "IhtarSayisi"},
    {T, C::TahsilatIptal, Secim, "TahsilatYapma", "TAHSİLAT İPTAL DURUMU", "TahsilatYapma", iptalDurumu, 0},
    {T, C::TahsilatIptal, Sayi, "TahsilatIhtarSayisi", "", "TahsilatIhtarSayisi"},
    {T, C::Makbuz, Sayi, "TahsilNusha", "Tahsil Fişi Nusha Sayısı", "TahsilNusha", {}, 0, "", "1"},
    {T, C::Makbuz, Sayi, "AlisVerisNusha", "Alışveriş Fişi Nüsha Sayısı", "AlisVerisNusha", {}, 0, "", "1"},
    {T, C::Makbuz, Milimetre, "MakbuzSol", "Sol Boşluk", "MakBuzSol", {}, 0, "", "200"},
    {T, C::Makbuz, Milimetre, "MakbuzUst", "Üst Boşluk", "MakBuzUst", {}, 0, "", "200"},
    {T, C::Makbuz, Yonelim, "MakbuzOr", "Yönelim", "MakBuzOr", yonelim},
    {T, C::Makbuz, Tik, "DotMatrix", "Dotmatrix Yazıcı", "DotMatrix"},
    {T, C::DipNot, UzunYazi, "DipNotTahsilat", "Tahsilat Makbuzu DipNotu", "DipNotTahsilat"},
    {T, C::DipNot, UzunYazi, "DipNotAlisVeris", "Alışveriş Fişi DipNotu", "DipNotAlisVeris"},
};

// Names for the parameters whose control has no caption of its own.
struct Adsiz {
  std::string_view kontrol, ad;
};
constexpr Adsiz adsizlar[] = {{"Renk_Ozel", "Özel hareketlerin rengi"},
                              {"StokMinSeviye", "Minimum stok seviyesi"},
                              {"StokMinRenk", "Minimum stok seviyesinin rengi"},
                              {"StokMaxSeviye", "Maksimum stok seviyesi"},
                              {"StokMaxRenk", "Maksimum stok seviyesinin rengi"},
                              {"StokSFRSeviye", "Negatif bakiye"},
                              {"StokSFRRenk", "Negatif bakiyenin rengi"},
                              {"IhtarSayisi", "Satış iptali ihtar sayısı"},
                              {"TahsilatIhtarSayisi", "Tahsilat iptali ihtar sayısı"}};

bool ayniAd(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) {
    const auto kucuk = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return kucuk(x) == kucuk(y);
  });
}

}  // namespace

std::span<const Parametre> parametreler() {
  return tablo;
}

const Parametre* parametreBul(std::string_view sutun) {
  const auto at = std::ranges::find_if(tablo, [&](const Parametre& p) { return ayniAd(p.sutun, sutun); });
  return at == std::end(tablo) ? nullptr : at;
}

int parametreSirasi(std::string_view kontrol) {
  const auto at = std::ranges::find(tablo, kontrol, &Parametre::kontrol);
  if (at == std::end(tablo)) throw std::logic_error("no such parameter: " + std::string(kontrol));
  return static_cast<int>(at - std::begin(tablo));
}

std::string parametreAdi(const Parametre& parametre) {
  std::string_view ad = parametre.yazi;
  for (const Adsiz& adsiz : adsizlar)
    if (adsiz.kontrol == parametre.kontrol) ad = adsiz.ad;
  while (!ad.empty() && (ad.back() == ' ' || ad.back() == ':')) ad.remove_suffix(1);
  return std::string(ad);
}

}  // namespace settings
