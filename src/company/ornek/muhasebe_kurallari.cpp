#include "company/ornek/muhasebe_kurallari.h"

namespace company::ornek {

namespace {

constexpr std::array liste = {Hesap{"100", "KASA"},
                              Hesap{"101", "ALINAN ÇEKLER"},
                              Hesap{"102", "BANKALAR"},
                              Hesap{"103", "VERİLEN ÇEKLER VE ÖDEME EMİRLERİ"},
                              Hesap{"108", "DİĞER HAZIR DEĞERLER"},
                              Hesap{"120", "ALICILAR"},
                              Hesap{"121", "ALACAK SENETLERİ"},
                              Hesap{"128", "ŞÜPHELİ TİCARİ ALACAKLAR"},
                              Hesap{"153", "TİCARİ MALLAR"},
                              Hesap{"157", "DİĞER STOKLAR"},
                              Hesap{"191", "İNDİRİLECEK KDV"},
                              Hesap{"197", "SAYIM VE TESELLÜM NOKSANLARI"},
                              Hesap{"255", "DEMİRBAŞLAR"},
                              Hesap{"320", "SATICILAR"},
                              Hesap{"321", "BORÇ SENETLERİ"},
                              Hesap{"329", "DİĞER TİCARİ BORÇLAR"},
                              Hesap{"391", "HESAPLANAN KDV"},
                              Hesap{"397", "SAYIM VE TESELLÜM FAZLALARI"},
                              Hesap{"500", "SERMAYE"},
                              Hesap{"600", "YURT İÇİ SATIŞLAR"},
                              Hesap{"602", "DİĞER GELİRLER"},
                              Hesap{"610", "SATIŞTAN İADELER"},
                              Hesap{"621", "SATILAN TİCARİ MALLAR MALİYETİ"},
                              Hesap{"649", "DİĞER OLAĞAN GELİR VE KARLAR"},
                              Hesap{"659", "DİĞER OLAĞAN GİDER VE ZARARLAR"},
                              Hesap{"689", "DİĞER OLAĞANDIŞI GİDER VE ZARARLAR"},
                              Hesap{"770", "GENEL YÖNETİM GİDERLERİ"},
                              Hesap{"780", "FİNANSMAN GİDERLERİ"}};

// clang-format off
constexpr std::array gunKurallari = {
    Kural{3, "FATURAKART d"
          " WHERE d.Islem_Tipi='Satış Faturası'", "Fatura_ID", "d.Net_Tutar,d.Ara_Toplam,d.KDV_Toplam", {"120", "", ""}, {"", "600", "391"}},
    Kural{3, "FATURAKART d,KASAHAREKET k"
          " WHERE d.Islem_Tipi='Peşin Satış Faturası' AND k.Fatura_ID=d.Fatura_ID", "Fatura_ID", "d.Net_Tutar,d.Ara_Toplam,d.KDV_Toplam", {"100", "", ""}, {"", "600", "391"}},
    Kural{3, "FATURAKART d,POSHAREKET k"
          " WHERE d.Islem_Tipi='Peşin Satış Faturası' AND k.Satis_ID=d.Fatura_ID AND k.Islem_Tipi=d.Islem_Tipi", "Fatura_ID", "d.Net_Tutar,d.Ara_Toplam,d.KDV_Toplam", {"108", "", ""}, {"", "600", "391"}},
    Kural{3, "FATURAKART d"
          " WHERE d.Islem_Tipi='Satış İade Faturası'", "Fatura_ID", "d.Net_Tutar,d.Ara_Toplam,d.KDV_Toplam", {"", "610", "191"}, {"120", "", ""}},
    Kural{3, "FATURAKART d"
          " WHERE d.Islem_Tipi='Peşin İade Faturası'", "Fatura_ID", "d.Net_Tutar,d.Ara_Toplam,d.KDV_Toplam", {"", "610", "191"}, {"100", "", ""}},
    Kural{3, "FATURAKART d"
          " WHERE d.Islem_Tipi='Alış Faturası'", "Fatura_ID", "d.Net_Tutar,d.Ara_Toplam,d.KDV_Toplam", {"", "153", "191"}, {"320", "", ""}},
    Kural{3, "FATURAKART d"
          " WHERE d.Islem_Tipi='Alış İade Faturası'", "Fatura_ID", "d.Net_Tutar,d.Ara_Toplam,d.KDV_Toplam", {"320", "", ""}, {"", "153", "391"}},
    Kural{3, "FATURAKART d"
          " WHERE d.Islem_Tipi='Alınan Masraf Faturası'", "Fatura_ID", "d.Net_Tutar,d.Ara_Toplam,d.KDV_Toplam", {"", "770", "191"}, {"320", "", ""}},
    Kural{3, "FATURAKART d"
          " WHERE d.Islem_Tipi='Verilen Masraf Faturası'", "Fatura_ID", "d.Net_Tutar,d.Ara_Toplam,d.KDV_Toplam", {"120", "", ""}, {"", "602", "391"}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Satış Faturası'", nullptr, "d.Cikis*d.Maliyet", {"621", "", ""}, {"153", "", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Peşin Satış Faturası'", nullptr, "d.Cikis*d.Maliyet", {"621", "", ""}, {"153", "", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Satış İade Faturası'", nullptr, "d.Giris*d.Maliyet", {"153", "", ""}, {"621", "", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Peşin İade Faturası'", nullptr, "d.Giris*d.Maliyet", {"153", "", ""}, {"621", "", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Satış İrsaliyesi'", "Stok_HareketKart_ID", "d.Cikis*d.Maliyet", {"157", "", ""}, {"153", "", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Alış İrsaliyesi'", "Stok_HareketKart_ID", "d.Giris*d.Maliyet", {"153", "", ""}, {"329", "", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Sarf Fişi'", "Stok_HareketKart_ID", "d.Cikis*d.Maliyet", {"770", "", ""}, {"153", "", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Fire Fişi'", "Stok_HareketKart_ID", "d.Cikis*d.Maliyet", {"689", "", ""}, {"153", "", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Sair Giriş'", "Stok_HareketKart_ID", "d.Giris*d.Maliyet", {"153", "", ""}, {"397", "", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Satir_Tipi='Mal' AND d.Islem_Tipi='Sair Çıkış'", "Stok_HareketKart_ID", "d.Cikis*d.Maliyet", {"197", "", ""}, {"153", "", ""}},
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Nakit Tahsilat Fişi'", "Kasa_Hareket_ID", "d.BTutar", {"100", "", ""}, {"120", "", ""}},
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Nakit Ödeme Fişi'", "Kasa_Hareket_ID", "d.ATutar", {"320", "", ""}, {"100", "", ""}},
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Bankaya Yatırılan'", "Kasa_Hareket_ID", "d.ATutar", {"102", "", ""}, {"100", "", ""}},
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Bankadan Çekilen'", "Kasa_Hareket_ID", "d.BTutar", {"100", "", ""}, {"102", "", ""}},
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Çek Tahsilatı'", "Kasa_Hareket_ID", "d.BTutar", {"100", "", ""}, {"101", "", ""}},
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Parçalı Çek Tahsilatı'", "Kasa_Hareket_ID", "d.BTutar", {"100", "", ""}, {"101", "", ""}},
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Senet Tahsilatı'", "Kasa_Hareket_ID", "d.BTutar", {"100", "", ""}, {"121", "", ""}},
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Parçalı Senet Tahsilatı'", "Kasa_Hareket_ID", "d.BTutar", {"100", "", ""}, {"121", "", ""}},
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Senet Ödemesi'", "Kasa_Hareket_ID", "d.ATutar", {"321", "", ""}, {"100", "", ""}},
    Kural{6, "BANKAHAREKET d"
          " WHERE d.Islem_Tipi='Gelen Havale'", "Hareket_ID", "d.BTutar", {"102", "", ""}, {"120", "", ""}},
    Kural{6, "BANKAHAREKET d"
          " WHERE d.Islem_Tipi='Giden Havale'", "Hareket_ID", "d.ATutar", {"320", "", ""}, {"102", "", ""}},
    Kural{6, "BANKAHAREKET d"
          " WHERE d.Islem_Tipi='Banka İşlem Fişi'", "Hareket_ID", "d.ATutar", {"780", "", ""}, {"102", "", ""}},
    Kural{6, "BANKAHAREKET d,BANKAPOSBAGLANTI g,POSHAREKET p"
          " WHERE d.Islem_Tipi='Pos Aktarım Fişi' AND g.BankaHareket_ID=d.Hareket_ID AND p.PosHareket_ID=g.POSHareket_ID", "Hareket_ID", "d.BTutar,p.Kesinti_Tutar,p.Tutar", {"102", "780", ""}, {"", "", "108"}},
    Kural{2, "CARIHAREKET d"
          " WHERE d.Islem_Tipi='Borç Dekontu'", "Cari_Hareket_ID", "d.BTutar", {"120", "", ""}, {"649", "", ""}},
    Kural{2, "CARIHAREKET d"
          " WHERE d.Islem_Tipi='Alacak Dekontu'", "Cari_Hareket_ID", "d.ATutar", {"659", "", ""}, {"320", "", ""}},
    Kural{2, "CARIHAREKET d"
          " WHERE d.Islem_Tipi='Kredi Kartı Tahsilat'", "Cari_Hareket_ID", "d.ATutar", {"108", "", ""}, {"120", "", ""}},
    Kural{2, "CARIHAREKET d"
          " WHERE d.Islem_Tipi='Cari Virman Fişi'", "Cari_Hareket_ID", "d.ATutar", {"320", "", ""}, {"120", "", ""}},
    Kural{7, "BORDRO d"
          " WHERE d.Islem_Tipi='Çek Giriş'", "Bordro_ID", "d.Toplam_Tutar", {"101", "", ""}, {"120", "", ""}},
    Kural{7, "BORDRO d,CEK c"
          " WHERE d.Islem_Tipi='Çek Çıkış(C/H)' AND c.Bordro_ID=d.Bordro_ID AND c.Sahip='M'", "Bordro_ID", "d.Toplam_Tutar", {"320", "", ""}, {"101", "", ""}},
    Kural{7, "BORDRO d,CEK c"
          " WHERE d.Islem_Tipi='Çek Çıkış(C/H)' AND c.Bordro_ID=d.Bordro_ID AND c.Sahip='K'", "Bordro_ID", "d.Toplam_Tutar", {"320", "", ""}, {"103", "", ""}},
    Kural{7, "BORDRO d"
          " WHERE d.Islem_Tipi='Çek Çıkış(Müşteriye İade)'", "Bordro_ID", "d.Toplam_Tutar", {"120", "", ""}, {"101", "", ""}},
    Kural{7, "BORDRO d"
          " WHERE d.Islem_Tipi='Karşılıksız Müşteri Çek'", "Bordro_ID", "d.Toplam_Tutar", {"128", "", ""}, {"101", "", ""}},
    Kural{7, "BORDRO d"
          " WHERE d.Islem_Tipi='Bankadaki Müş. Çek Tahsili'", "Bordro_ID", "d.Toplam_Tutar", {"102", "", ""}, {"101", "", ""}},
    Kural{7, "BORDRO d"
          " WHERE d.Islem_Tipi='Senet Giriş'", "Bordro_ID", "d.Toplam_Tutar", {"121", "", ""}, {"120", "", ""}},
    Kural{ 7, "BORDRO d,SENET c WHERE d.Islem_Tipi='Senet Çıkış(C/H)' AND c.Bordro_ID=d.Bordro_ID AND c.Sahip='M'", "Bordro_ID", "d.Toplam_Tutar", {"320", "", ""}, {"121", "", ""}},
    Kural{ 7, "BORDRO d,SENET c WHERE d.Islem_Tipi='Senet Çıkış(C/H)' AND c.Bordro_ID=d.Bordro_ID AND c.Sahip='K'", "Bordro_ID", "d.Toplam_Tutar", {"320", "", ""}, {"321", "", ""}},
    Kural{7, "BORDRO d"
          " WHERE d.Islem_Tipi='Senet Çıkış(Müşteriye İade)'", "Bordro_ID", "d.Toplam_Tutar", {"120", "", ""}, {"121", "", ""}},
    Kural{7, "BORDRO d"
          " WHERE d.Islem_Tipi='Karşılıksız Müşteri Senet'", "Bordro_ID", "d.Toplam_Tutar", {"128", "", ""}, {"121", "", ""}},
    Kural{7, "BORDRO d"
          " WHERE d.Islem_Tipi='Bankadaki Müş. Senet Tahsili'", "Bordro_ID", "d.Toplam_Tutar", {"102", "", ""}, {"121", "", ""}},
    Kural{7, "BORDRO d"
          " WHERE d.Islem_Tipi='Bankadan Çek Ödemesi'", "Bordro_ID", "d.Toplam_Tutar", {"103", "", ""}, {"102", "", ""}}};
constexpr std::array acilis = {
    Kural{1, "KASAHAREKET d"
          " WHERE d.Islem_Tipi='Kasa Açılış Fişi'", "Kasa_Hareket_ID", "d.BTutar", {"100", "", ""}, {"500", "", ""}},
    Kural{6, "BANKAHAREKET d"
          " WHERE d.Islem_Tipi='Banka Açılış Fişi'", "Hareket_ID", "d.BTutar", {"102", "", ""}, {"500", "", ""}},
    Kural{2, "ACILIS d"
          " WHERE d.Islem_Tipi='Açılış Fişi'", nullptr, "d.BTutar,d.ATutar", {"120", "500", ""}, {"500", "320", ""}},
    Kural{4, "STOKHAREKET d"
          " WHERE d.Islem_Tipi='Açılış Fişi'", "Stok_HareketKart_ID", "d.Giris*d.Maliyet", {"153", "", ""}, {"500", "", ""}}};
// clang-format on

}  // namespace

std::span<const Hesap> hesaplar() {
  return liste;
}
std::span<const Kural> kurallar() {
  return gunKurallari;
}
std::span<const Kural> acilisKurallari() {
  return acilis;
}

}  // namespace company::ornek
