// sys.inf, the settings of an offline branch, locks and checks of a company.
#include <sys/stat.h>

#include <fstream>
#include <sstream>

#include "maintenance/offline.h"
#include "maintenance/server_para.h"
#include "maintenance/servis.h"
#include "ortam.h"
#include "support/firma_karti.h"

namespace maintenance::test {
namespace {

using session::Icon;

std::string dosya(const fs::path& yol) {
  std::ifstream in(yol, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

class SysInf : public testing::Test {
 protected:
  SysInf() { s.platform.folder = gecici.path; }
  support::TempFolder gecici;
  support::FakeSurroundings s;
  const fs::path inf = gecici.path / "sys.inf";
};

TEST_F(SysInf, IsReadByPositionAndWrittenAsOnePrivateLine) {
  struct Durum {
    const char* satir;
    ServerPara beklenen;
    const char* yazilan;
  };
  const Durum durumlar[] = {
      {"SRV;sa;x;1;\n", {"SRV", "sa", "x", true, "", "", ""}, "SRV;sa;x;1;\n"},
      {" SRV ; sa ; x ;0;a;b;c\n", {" SRV ", " sa ", " x ", false, "", "", ""}, "SRV; sa ; x ;0;\n"},
      {"SRV;sa", {"SRV", "sa", "", std::nullopt, "", "", ""}, "SRV;sa;;0;\n"},
      {"ŞUBE\\İŞ;ğ;ü;2;\n", {"ŞUBE\\İŞ", "ğ", "ü", false, "", "", ""}, "ŞUBE\\İŞ;ğ;ü;0;\n"},
  };
  for (const Durum& durum : durumlar) {
    std::ofstream(inf) << durum.satir;
    const ServerPara para = Server_Para_Ac(s.oturum);
    EXPECT_EQ(std::tie(para.SunucuAdi, para.sqlKullanici, para.sqlSifre, para.SNDeg),
              std::tie(durum.beklenen.SunucuAdi, durum.beklenen.sqlKullanici, durum.beklenen.sqlSifre,
                       durum.beklenen.SNDeg))
        << durum.satir;
    EXPECT_TRUE(Server_Para_Kaydet(s.oturum, para));
    EXPECT_EQ(dosya(inf), durum.yazilan);
    struct stat bilgi {};
    ASSERT_EQ(::stat(inf.c_str(), &bilgi), 0);
    EXPECT_EQ(bilgi.st_mode & 0777U, 0600U);
  }
  EXPECT_TRUE(s.boxes.shown.empty());
}

TEST_F(SysInf, AsksWhenItIsMissingAndNeverEmptiesWhatIsThere) {
  const char* const soru =
      "Belirtilen Dosyada Bir Hata Tespit Edildi Dosyanın Sıfırlanarak Tekrar Oluştutulmasını İstiyormusunuz "
      "?";
  for (const bool evet : {false, true}) {
    s.boxes.shown.clear();
    s.boxes.answers = {evet};
    EXPECT_EQ(Server_Para_Ac(s.oturum).SunucuAdi, "");
    ASSERT_EQ(s.boxes.texts(), Adlar{soru});
    EXPECT_EQ(s.boxes.shown[0].title, "KORVENA TİCARİ YAZILIM");
    EXPECT_EQ(fs::exists(inf), evet);
  }
  fs::remove(inf);
  fs::create_directory(inf);
  s.boxes.answers = {true};
  EXPECT_EQ(Server_Para_Ac(s.oturum).SunucuAdi, "");
  EXPECT_TRUE(fs::is_directory(inf));
}

TEST_F(SysInf, RefusesMasterPasswordsThatDifferAndTextsThatBreakTheLine) {
  std::ofstream(inf) << "SRV;sa;x;1;\n";
  const std::pair<ServerPara, const char*> durumlar[] = {
      {{"A", "b", "c", true, "m", "bir", "iki"}, "Master Şifre Tutarsız Lütfen Kontrol Ediniz"},
      {{"A", "b", "c;d", true, "", "", ""},
       "Sunucu adında, SQL kullanıcı adında ve şifresinde noktalı virgül (;) ve satır sonu kullanılamaz."},
  };
  for (const auto& [para, metin] : durumlar) {
    s.boxes.shown.clear();
    EXPECT_FALSE(Server_Para_Kaydet(s.oturum, para));
    EXPECT_EQ(s.boxes.texts(), Adlar{metin});
    EXPECT_EQ(dosya(inf), "SRV;sa;x;1;\n");
  }
}

TEST(BaglantiyiDene, SaysWhatIsWrongInPlainWordsWithoutThePassword) {
  Ortam o;
  const std::string yok = (o.klasor / "bos").string();
  const std::pair<ServerPara, std::pair<bool, std::string>> durumlar[] = {
      {{"(yerel)", "sa", "gizli", {}, "", "", ""},
       {true, "Bağlantı kuruldu; sunucuda tanım veritabanı var."}},
      {{"(yerel)", "sa", "yanlış", {}, "", "", ""},
       {false,
        "\"(yerel)\" sunucusu cevap veriyor, ama bu SQL kullanıcı adını ya da şifresini kabul etmiyor."}},
      {{"(yerel):" + yok, "sa", "gizli", {}, "", "", ""},
       {false, "Bu makinede hazırlanmış bir yerel sunucu yok: " + yok}},
      {{" ", "sa", "gizli", {}, "", "", ""}, {false, "SQL Server adı boş."}},
  };
  for (const auto& [para, beklenen] : durumlar) {
    const BaglantiDenemesi deneme = Baglantiyi_Dene(o.s.oturum, para);
    EXPECT_EQ(deneme.tamam, beklenen.first);
    EXPECT_EQ(deneme.metin, beklenen.second);
  }
}

TEST(Offline, IsForBranchesAlone) {
  Ortam o;
  OfflineAyarlari ayarlar;
  EXPECT_EQ(Offline_Ac(o.s.oturum, ayarlar), OfflineAcilis::SubeDegil);
  EXPECT_EQ(o.s.boxes.texts(),
            Adlar{"Bilgisayarınıza Kurulmuş Olan Korvena Offline Çalışan bir Korvena Programı Değildir.\n"
                  "Eğer İsteğiniz Buysa Lütfen Program Satıcınızla Görüşünüz."});
}

// The columns' types are told nowhere: texts and dates must both do.
TEST(Offline, ReadsAndWritesItsRowWhateverTheTypes) {
  for (const bool tarihli : {false, true}) {
    Ortam o;
    const std::string tarih = tarihli ? "DATETIME" : "CHAR(10)", saat = tarihli ? "DATETIME" : "CHAR(8)";
    o.calistir(
        "Defination_DB",
        "CREATE TABLE OFFLINEAYARLAR(Sube_Kodu CHAR(10) NULL,Merkez_IP CHAR(20) NULL,Merkez_Adi CHAR(20) "
        "NULL,MerkezSa CHAR(20) NULL,MerkezSaSifre CHAR(20) NULL,MerkezFirma CHAR(20) NULL,SonTransferFirma "
        "CHAR(20) NULL,SonAlimTarih " +
            tarih + " NULL,SonAlimSaat " + saat + " NULL,GonAralik INT NULL,OtoGon BIT NULL)");
    OfflineAyarlari ayarlar;
    ASSERT_EQ(Offline_Ac(o.s.oturum, ayarlar), OfflineAcilis::Acik);
    EXPECT_EQ(ayarlar.SonAlimTarih, "01/01/1900");
    EXPECT_EQ(ayarlar.SonAlimSaat, "00:00:01");
    ayarlar = {" Ş1 ",     "10.0.0.1",   "MERKEZ",   "sa",  "o'nun", "FİRMA",
               "yazılmaz", "05/03/2006", "09:08:07", "abc", true};
    EXPECT_EQ(Offline_Kontrol(o.s.oturum, ayarlar), "");
    ASSERT_TRUE(Offline_Kaydet(o.s.oturum, ayarlar)) << o.s.boxes.last();
    OfflineAyarlari okunan;
    ASSERT_EQ(Offline_Ac(o.s.oturum, okunan), OfflineAcilis::Acik);
    EXPECT_EQ(okunan.Sube_Kodu, "Ş1");
    EXPECT_EQ(okunan.MerkezSaSifre, "o'nun");
    EXPECT_EQ(okunan.SonTransferFirma, "");
    EXPECT_EQ(okunan.SonAlimTarih, "05/03/2006");
    EXPECT_EQ(okunan.SonAlimSaat, "09:08:07");
    EXPECT_EQ(okunan.GonAralik, "0");
    EXPECT_TRUE(okunan.OtoGon);
    okunan.GonAralik = "15";
    okunan.OtoGon = false;
    ASSERT_TRUE(Offline_Kaydet(o.s.oturum, okunan));
    EXPECT_EQ(o.oku("Defination_DB", "SELECT Sube_Kodu,GonAralik,OtoGon FROM OFFLINEAYARLAR"),
              Adlar{"Ş1|15|0"});
  }
}

TEST(Offline, RefusesDatesAndTimesThatAreNone) {
  support::FakeSurroundings s;
  const char* const tarihHatasi =
      "Lütfen Son Bilgi Alım Tarihini gg/aa/yyyy Formatında Geçerli Bir Tarih Olarak Giriniz.";
  const char* const saatHatasi =
      "Lütfen Son Bilgi Alım Saatini SS/dd/ss Formatında Geçerli Bir saat Olarak Giriniz.";
  struct Durum {
    const char *tarih, *saat, *alan, *metin;
  };
  const Durum durumlar[] = {
      {"1/2/2006", "10:00:00", "SonAlimTarih", tarihHatasi},
      {"31/02/2006", "10:00:00", "SonAlimTarih", tarihHatasi},
      {"", "10:00:00", "SonAlimTarih", tarihHatasi},
      {"01/02/2006", "10:00", "SonAlimSaat", saatHatasi},
      {"01/02/2006", "24:00:00", "SonAlimSaat", saatHatasi},
      {"01/02/2006", "10:0a:00", "SonAlimSaat", saatHatasi},
      {"01/02/2006", "23:59:59", "", ""},
  };
  for (const Durum& durum : durumlar) {
    OfflineAyarlari ayarlar;
    ayarlar.SonAlimTarih = durum.tarih;
    ayarlar.SonAlimSaat = durum.saat;
    EXPECT_EQ(Offline_Kontrol(s.oturum, ayarlar), durum.alan);
    EXPECT_EQ(s.oturum.Son_Hata, durum.metin);
  }
}

TEST(Kilitler, AreClearedTableByTableInTheirOrder) {
  support::FakeSurroundings s;
  s.oturum.Baglanti = s.factory.make("SUNUCU");
  s.oturum.Baglanti->open({"SUNUCU", "sa", "gizli", "M1", false});
  EXPECT_TRUE(Kilitleri_Temizle(s.oturum));
  Adlar beklenen;
  for (const char* const ad :
       {"AMBARKILIT", "BANKAHAREKETKILIT", "BANKAKILIT", "CARIHAREKETKILIT", "CARIKILIT", "DOVIZTANIMKILIT",
        "FATURAKILIT", "FIYATTANIMKILIT", "ISYERIKILIT", "KASAHAREKETKILIT", "KASAKILIT", "MUHFISKILIT",
        "MUHKILIT", "SATICIKILIT", "SIPARISKARTKILIT", "STOKHAREKETKARTKILIT", "STOKKILIT"})
    beklenen.push_back(std::string("DELETE FROM ") + ad);
  EXPECT_EQ(s.server.statements, beklenen);
  EXPECT_EQ(s.boxes.texts(), Adlar{"Kullanıcı Kontrolü Yapıldı"});
}

// A company with one fault of each kind; each check names its rows and no others.
TEST(Denetimler, NameEachFaultAndNothingElse) {
  Ortam o;
  auto kart = support::firmaKarti("KITAP");
  o.s.oturum.Yeni_Kayit = true;
  ASSERT_TRUE(company::Kaydet(o.s.oturum, kart)) << o.s.oturum.Son_Hata;
  ASSERT_TRUE(servisFirmasi(o.s.oturum, "KITAP"));
  for (const Bulgu& bulgu : Denetle(o.s.oturum, "KITAP")) {
    EXPECT_EQ(bulgu.hata, "") << bulgu.denetim->ad;
    EXPECT_TRUE(bulgu.satirlar.empty()) << bulgu.denetim->ad;
  }
  const auto ekle = [&](const std::string& sql) { o.calistir("KITAP", sql); };
  ekle("INSERT INTO STOKHAREKETKART(Tarih,Fis_No,Fatura_ID) VALUES ('20120501','S1',777)");
  ekle("INSERT INTO FATURAKART(Tarih,Fis_No,Islem_Tipi,Cari_Kod) VALUES ('20120502','F1','Satış','C1')");
  ekle("INSERT INTO FATURAKART(Tarih,Fis_No,Islem_Tipi,Cari_Kod) VALUES ('20130101','F1','Satış','C1')");
  ekle("INSERT INTO ODEMEHAREKET(Islem_ID,Islem_Tipi,Tarih,Borc,Alacak) VALUES (999,'Satış','20120503',5,0)");
  ekle(
      "INSERT INTO STOKHAREKET(Stok_HareketKart_ID,Tarih,Fis_No,Satir_Tipi,Stok_ID,Stok_Kod) VALUES "
      "(888,'20120504','S2','Mal',55,'K1')");
  ekle("INSERT INTO CEKKART(Cek_No,Portfoy_No,Durum) VALUES ('1','P1','Portföyde')");
  ekle("INSERT INTO CEKDURUM(Cek_ID,Durum) VALUES (1,'Portföyde')");
  ekle("INSERT INTO CEKDURUM(Cek_ID,Durum) VALUES (1,'Tahsil')");
  ekle("INSERT INTO SENETKART(Senet_No,Portfoy_No,Durum) VALUES ('2','P2','Portföyde')");
  ekle("INSERT INTO SENETDURUM(Senet_ID,Durum) VALUES (1,'Protesto')");
  for (int i = 0; i < 2; ++i)
    ekle(
        "INSERT INTO MUHFISKART(Tarih,Fis_No,Islem_Tipi,Entegre_ID,Modul_No) VALUES "
        "('20120505','M1','Mahsup',0,0)");
  ekle(
      "INSERT INTO "
      "MUHFISHAR(FisSat_No,Fis_ID,Tarih,Ana_Hesap_ID,MHesap_ID,MHesap_Kod,BTutar,ATutar,Dv_BTutar,"
      "Dv_Atutar,Doviz_ID,Kur,Masraf_Merkezi_ID,Entegre_ID,Modul_No,BorcMiktar,AlacakMiktar,Birim) VALUES "
      "(1,1,'20120505',0,7,'120',10,4,0,0,0,0,0,0,0,0,0,'')");
  ekle("DELETE FROM MUHBAKIYE");
  ekle("INSERT INTO MUHBAKIYE(MHesap_ID,MHesap_Kod,Bakiye) VALUES (9,'100',5)");
  ASSERT_TRUE(servisFirmasi(o.s.oturum, "KITAP"));
  std::vector<std::string> bulunan;
  for (const Bulgu& bulgu : Denetle(o.s.oturum, "KITAP"))
    for (const auto& satir : bulgu.satirlar) {
      std::string metin = std::string(bulgu.denetim->ad);
      for (const std::string& hucre : satir) metin += "|" + hucre;
      bulunan.push_back(metin);
    }
  EXPECT_EQ(
      bulunan,
      (Adlar{"Faturası olmayan irsaliyeler|01/05/2012|S1|1", "Stok fişi olmayan faturalar|1|02/05/2012|F1",
             "Stok fişi olmayan faturalar|2|01/01/2013|F1", "Hesap bakiyesi farkları|100|5,00|0,00",
             "Hesap bakiyesi farkları|120||6,00",
             "Borcu alacağına eşit olmayan muhasebe fişleri|1|05/05/2012|M1|10,00|4,00",
             "Kartı olmayan stok satırları|1|04/05/2012|S2||55|K1",
             "Fişi olmayan stok satırları|1|04/05/2012|S2||888",
             "Belgesi olmayan ödeme satırları|1|03/05/2012|Satış|999|5,00|0,00",
             "Dönem dışındaki hareketler|FATURAKART|2|01/01/2013|F1",
             "Yinelenen fatura numaraları|Satış|F1|C1|2", "Yinelenen muhasebe fiş numaraları|Mahsup|M1|2",
             "Durumu kartından ayrılan çekler|1|1|P1|Portföyde|Tahsil",
             "Durumu kartından ayrılan senetler|1|2|P2|Portföyde|Protesto"}));
}

}  // namespace
}  // namespace maintenance::test
