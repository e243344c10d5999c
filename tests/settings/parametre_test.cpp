#include "settings/parametre.h"

#include <set>

#include "catalog/katalog.h"
#include "company/sirket.h"
#include "support/izleyen_surucu.h"

namespace {

using company::test::Sirket;
using settings::Gosterilen;
using settings::ParametreEkrani;

std::size_t sira(std::string_view kontrol) {
  return static_cast<std::size_t>(settings::parametreSirasi(kontrol));
}

class ParametreTest : public company::test::SirketTest {
 protected:
  void SetUp() override {
    oturum().surucu = &izleyen;
    sirket().bagla("Defination_DB");
    sirket().run(
        "UPDATE sysfrmlng SET DefKDV=18,KasaHareketListeTipi=1,AlistaFiyatDegis=0,KilitBasTarih='20120101',"
        "KilitBitTarih='20121231',TransferFirma='',Renk_TL=0,MakBuzSol=200,MakBuzOr=-1,DipNotTahsilat='eski',"
        "PesinIndirimi=0,DovizVar=0,VadeFarki=0,TahsilNusha=0,DefFaturaDizayn=NULL,Emanet_Ambar_No=NULL,"
        "MuafGun=0");
    izleyen.izleme.sifirla();
  }
  void TearDown() override { oturum().surucu = sirket().factory.get(); }
  session::Oturum& oturum() { return sirket().s.oturum; }
  settings::FirmaKaydi ac(const std::string& ad = Sirket::baz) {
    auto kayit = settings::Firma_Kaydi_Ac(oturum(), ad);
    EXPECT_TRUE(kayit) << oturum().Son_Hata;
    return *kayit;
  }
  Gosterilen goster(const settings::FirmaKaydi& kayit) { return settings::Parametre_Yukle(kayit, hatalar); }
  // Shows the row, changes controls, stores it; the statement that went out.
  std::string kaydet(const std::vector<std::pair<std::string_view, std::string>>& degisen,
                     ParametreEkrani ekran = ParametreEkrani::Sabit) {
    auto kayit = ac();
    Gosterilen g = goster(kayit);
    for (const auto& [kontrol, metin] : degisen) g[sira(kontrol)] = metin;
    std::string hata;
    const auto yeni = settings::saklanacak(kayit, g, ekran, hata);
    if (!yeni) return hata;
    izleyen.izleme.sifirla();
    const auto sonuc = settings::Parametre_Kaydet(oturum(), kayit, *yeni);
    if (!sonuc.yazildi) return "? " + sonuc.hata;
    if (izleyen.izleme.deyimler.size() > 1) return std::to_string(izleyen.izleme.deyimler.size()) + " deyim";
    return izleyen.izleme.deyimler.empty()
               ? ""
               : izleyen.izleme.deyimler[0].substr(0, izleyen.izleme.deyimler[0].find(" WHERE"));
  }
  std::string oku(const std::string& kolonlar) {
    return sirket().rows("SELECT " + kolonlar + " FROM sysfrmlng WHERE sysfrm_dbnm='" + Sirket::baz + "'");
  }
  std::vector<std::string> hatalar;
  support::IzleyenSurucu izleyen{db::makeConnectionFactory(sirket().folder)};
};

TEST(ParametreTablosu, EveryColumnExistsOnceAndListsCountAsTold) {
  std::set<std::string_view> sutunlar, kontroller;
  const catalog::TableDef* sysfrmlng = nullptr;
  for (const auto& tablo : catalog::catalogTables())
    if (tablo.name == "sysfrmlng") sysfrmlng = &tablo;
  ASSERT_NE(sysfrmlng, nullptr);
  std::string birden;
  for (const auto& p : settings::parametreler()) {
    EXPECT_TRUE(sutunlar.insert(p.sutun).second) << p.sutun;
    EXPECT_TRUE(kontroller.insert(p.kontrol).second) << p.kontrol;
    EXPECT_NE(sysfrmlng->column(p.sutun), nullptr) << p.sutun;
    EXPECT_FALSE(settings::parametreAdi(p).empty()) << p.kontrol;
    if (p.taban == 1) birden += std::string(p.sutun) + " ";
  }
  EXPECT_EQ(birden, "KasaHareketListeTipi KasiyerStokListeTipi MuhasebelesecekFisler ");
}

TEST_F(ParametreTest, TheScreenShowsARowByItsKinds) {
  sirket().run(
      "UPDATE sysfrmlng SET "
      "DovizVar=1,PesinIndirimi=2.5,KasaHareketListeTipi=2,AlistaFiyatDegis=2,Renk_TL=255,"
      "KilitBasTarih=NULL,TransferFirma='BASKA',DefKDV=NULL,MKTVGTUT=NULL,MakBuzOr=2,DefFaturaDizayn=' a ' "
      "WHERE sysfrm_dbnm='BAZ2012'");
  const Gosterilen g = goster(ac());
  const std::pair<std::string_view, std::string_view> beklenen[] = {{"DovizVar", "1"},
                                                                    {"RenkBedenVar", "0"},
                                                                    {"PesinIndirimi", "2,5"},
                                                                    {"DefKDV", ""},
                                                                    {"MKTVGTUT", "0,00"},
                                                                    {"KasaHareketListeTipi", "1"},
                                                                    {"AlistaFiyatDegis", "2"},
                                                                    {"Renk_TL", "255"},
                                                                    {"KilitBasTarih", "01/01/2012"},
                                                                    {"TransferFirma", "BASKA"},
                                                                    {"Ambar_No", ""},
                                                                    {"MakbuzSol", "3,5"},
                                                                    {"MakbuzOr", "3"},
                                                                    {"HesapTakipTipi", "0"},
                                                                    {"DipNotTahsilat", "eski"},
                                                                    {"DefTasarim", "a"}};
  for (const auto& [kontrol, metin] : beklenen) EXPECT_EQ(g[sira(kontrol)], metin) << kontrol;
  EXPECT_TRUE(hatalar.empty());
}

TEST_F(ParametreTest, NullInAListThatCountsFromOneIsToldAndKept) {
  sirket().run("UPDATE sysfrmlng SET KasaHareketListeTipi=NULL WHERE sysfrm_dbnm='BAZ2012'");
  EXPECT_EQ(goster(ac())[sira("KasaHareketListeTipi")], "");
  EXPECT_EQ(hatalar,
            std::vector<std::string>{"Kasa Hareketleri Listesi parametresi boş (KasaHareketListeTipi "
                                     "NULL); listeden yeniden seçiniz."});
  EXPECT_EQ(kaydet({{"DefKDV", "8"}}).find("KasaHareketListeTipi"), std::string::npos);
  EXPECT_EQ(oku("KasaHareketListeTipi"), "NULL");
}

TEST_F(ParametreTest, SavingIsOneStatementWithTheChangedColumnsOnly) {
  kaydet({});  // what never was stored before: flags of NULL become 0
  const struct {
    std::string_view kontrol, metin, deyim;
    const char *sutun, *kalan;
  } adimlar[] = {
      {"DefKDV", "abc", "UPDATE sysfrmlng SET DefKDV=0", "DefKDV", "0"},
      {"DefKDV", "1e400", "", "DefKDV", "0"},
      {"DefKDV", "8,5", "UPDATE sysfrmlng SET DefKDV=8", "DefKDV", "8"},
      {"PesinIndirimi", "1.234,56789", "UPDATE sysfrmlng SET PesinIndirimi=1234.5679", "PesinIndirimi",
       "1234.5679"},
      {"KasaHareketListeTipi", "1", "UPDATE sysfrmlng SET KasaHareketListeTipi=2", "KasaHareketListeTipi",
       "2"},
      {"AlistaFiyatDegis", "2", "UPDATE sysfrmlng SET AlistaFiyatDegis=2", "AlistaFiyatDegis", "2"},
      {"Renk_TL", "16777215", "UPDATE sysfrmlng SET Renk_TL=16777215", "CONVERT(INT,Renk_TL)", "16777215"},
      {"DefTasarim", " Kasap'ın ", "UPDATE sysfrmlng SET DefFaturaDizayn='Kasap''ın'", "DefFaturaDizayn",
       "Kasap'ın"},
      {"TransferFirma", "BAĞLANTI YOK", "", "TransferFirma", ""},
      {"KilitBitTarih", "31/02/2012", "", "CONVERT(CHAR(10),KilitBitTarih,103)", "31/12/2012"},
      {"Ambar_No", "3", "UPDATE sysfrmlng SET Emanet_Ambar_No=3", "Emanet_Ambar_No", "3"},
      {"DefKDV", "99999999999", "KDV Ön Değeri %: “99999999999” bu alana sığmıyor.", "DefKDV", "8"},
      {"PesinIndirimi", "999999999999999999",
       "Peşin Fatura İskontosu: “999999999999999999” bu alana sığmıyor.", "PesinIndirimi", "1234.5679"},
      {"DefTasarim", "日", "Fatura Dizaynı: “日” harfi kullanılamaz (1254 Türkçe kod sayfasında yok).",
       "DefFaturaDizayn", "Kasap'ın"}};
  for (const auto& adim : adimlar) {
    EXPECT_EQ(kaydet({{adim.kontrol, std::string(adim.metin)}}), adim.deyim) << adim.metin;
    EXPECT_EQ(oku(adim.sutun), adim.kalan) << adim.metin;
  }
}

TEST_F(ParametreTest, InstalmentMarginsAndDirectionKeepTheirOddities) {
  EXPECT_EQ(kaydet({}, ParametreEkrani::Taksit), "UPDATE sysfrmlng SET MakBuzSol=198,MakBuzUst=198");
  EXPECT_EQ(kaydet({{"MakbuzOr", "3"}, {"TahsilNusha", ""}, {"MakbuzUst", "x"}}, ParametreEkrani::Taksit),
            "UPDATE sysfrmlng SET TahsilNusha=1,MakBuzUst=200,MakBuzOr=3");
  // Loading does not know 3: the cell stays empty, and saving leaves the column alone.
  EXPECT_EQ(goster(ac())[sira("MakbuzOr")], "");
  EXPECT_EQ(kaydet({{"MakbuzUst", "x"}}, ParametreEkrani::Taksit), "");
  EXPECT_EQ(oku("MakBuzOr"), "3");
  EXPECT_EQ(kaydet({{"MakbuzOr", "0"}, {"MakbuzUst", "x"}}, ParametreEkrani::Taksit),
            "UPDATE sysfrmlng SET MakBuzOr=-1");
}

TEST_F(ParametreTest, TheLaterOfTwoAdministratorsIsToldAndChooses) {
  auto kayit = ac();
  std::string hata;
  Gosterilen g = goster(kayit);
  g[sira("DefKDV")] = "8";
  const auto yeni = settings::saklanacak(kayit, g, ParametreEkrani::Sabit, hata);
  sirket().run("UPDATE sysfrmlng SET DefKDV=1,MuafGun=3 WHERE sysfrm_dbnm='BAZ2012'");
  auto sonuc = settings::Parametre_Kaydet(oturum(), kayit, *yeni);
  EXPECT_FALSE(sonuc.yazildi);
  ASSERT_EQ(sonuc.aradaki.size(), 2U);
  EXPECT_EQ(sonuc.aradaki[0].parametre->sutun, "DefKDV");
  EXPECT_EQ(sonuc.aradaki[0].yeni.integer(), 1);
  EXPECT_EQ(oku("DefKDV,MuafGun"), "1|3");
  EXPECT_TRUE(settings::Parametre_Kaydet(oturum(), kayit, *yeni, true).yazildi);
  EXPECT_EQ(oku("DefKDV,MuafGun"), "8|3") << "what only the other changed stays";
}

TEST_F(ParametreTest, AVanishedRowIsTold) {
  auto kayit = ac();
  kayit.sysfrm_ID = 999;
  auto yeni = kayit.degerler;
  yeni[sira("DefKDV")] = 5;
  EXPECT_EQ(settings::Parametre_Kaydet(oturum(), kayit, yeni).hata,
            "Firma kaydı bulunamadı: firma bu arada silinmiş olabilir.");
  EXPECT_FALSE(settings::Firma_Kaydi_Ac(oturum(), "YOK"));
  EXPECT_EQ(oturum().Son_Hata, "\"YOK\" adında bir firma tanımlı değil.");
}

TEST(KilitTarihi, IsCheckedInOrder) {
  using settings::KilitAlani;
  const struct {
    const char *bas, *bit, *hata;
    KilitAlani odak;
  } durumlar[] = {{"01/01/2012", "01/01/2012", "", KilitAlani::Yok},
                  {"31/02/2012", "",
                   "Yanlış Tarih Girişinde Bulundunuz. Lütfen Kilit Başlangıç Tarihini Girişini Kontrol "
                   "Ediniz.",
                   KilitAlani::KilitBasTarih},
                  {"01/01/2012", "",
                   "Yanlış Tarih Girişinde Bulundunuz. Lütfen Kilit Bitiş Tarihini Girişini Kontrol "
                   "Ediniz.",
                   KilitAlani::KilitBitTarih},
                  {"02/01/2012", "01/01/2012",
                   "Yanlış Tarih Girişinde Bulundunuz. Kilit Bitiş Tarihi, Kilit Başlangıç Tarihinden Küçük "
                   "Olamaz.Lütfen Kilit Tarihi Girişlerini Kontrol Ediniz.",
                   KilitAlani::KilitBasTarih}};
  for (const auto& d : durumlar) {
    const auto sonuc = settings::Kilit_Tarih_Kontrol(d.bas, d.bit);
    EXPECT_EQ(sonuc.hata, d.hata);
    EXPECT_EQ(sonuc.odak, d.odak);
  }
}

TEST(DepoDegeri, IsReadStrictly) {
  const struct {
    const char *sutun, *metin, *sonuc;
  } durumlar[] = {
      {"DefKDV", "18", "18"},
      {"PesinIndirimi", "2.5", "2.5"},
      {"PesinIndirimi", "2,50", "2.5"},
      {"KilitBasTarih", "29/02/2012", "29/02/2012"},
      {"KilitBasTarih", "31/02/2012", "Kilit Başlanıç Tarihi: “31/02/2012” bir tarih değil (GG/AA/YYYY)."},
      {"DefKDV", "1e400", "KDV Ön Değeri %: “1e400” bir sayı değil."},
      {"DefKDV", "abc", "KDV Ön Değeri %: “abc” bir sayı değil."},
      {"DovizVar", "2", "Döviz Kullanacağım: “2” bu alana sığmıyor."},
      {"KasaHareketListeTipi", "0", "Kasa Hareketleri Listesi: “0” listede yok (1 - 2)."},
      {"AlistaFiyatDegis", "2", "2"},
      {"HesapTakipTipi", "Günlük", "Günlük"},
      {"HesapTakipTipi", "Yıllık", "Hesap Takip Tipi: “Yıllık” listede yok."},
      {"Renk_TL", "16777216", "Hareketlerin AnaPara Tutarlarının Yazı Rengi: “16777216” bir renk değil."},
      {"TransferFirma", "123456789012345678901234567890123456789012345678901",
       "Transfer Firma: “123456789012345678901234567890123456789012345678901” çok uzun, en çok 50 "
       "karakter girilebilir."}};
  for (const auto& d : durumlar) {
    const auto* p = settings::parametreBul(d.sutun);
    ASSERT_NE(p, nullptr);
    std::string hata;
    const auto deger = settings::depoDegeri(*p, d.metin, hata);
    EXPECT_EQ(deger ? settings::depoMetni(*p, *deger) : hata, d.sonuc) << d.sutun;
  }
}

}  // namespace
