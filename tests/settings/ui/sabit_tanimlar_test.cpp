#include "settings/ui/sabit_tanimlar.h"

#include <QCheckBox>
#include <QComboBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

#include "ortam.h"
#include "settings/ui/karsilastirma.h"
#include "settings/ui/parametre_formu.h"
#include "settings/ui/renk_paneli.h"
#include "settings/ui/taksitli_satis.h"
#include "ui/izgara.h"

namespace settings_ui {
namespace {

using namespace screen;

class SabitTanimlarTest : public test::EkranTest {
 protected:
  void SetUp() override {
    EkranTest::SetUp();
    run("Defination_DB",
        "UPDATE sysfrmlng SET DefKDV=18,MKTVG=0,Renk_TL=255,Emanet_Ambar_No=1,KilitBasTarih='20120101',"
        "KilitBitTarih='20121231',KasaHareketListeTipi=1,AnaParaVirgul=2,DefFaturaDizayn=NULL,MakBuzSol=200 "
        "UPDATE sysfrmlng SET DefKDV=8,PosVar=0 WHERE sysfrm_dbnm='GUNCEL2012'");
    ekran.resize(1000, 700);
    screen::show(ekran);
    acilis = deyimler([&] { ekran.ac(); });
  }
  QLineEdit* alan(const char* ad) { return find<QLineEdit>(ekran, ad); }
  void firma(int sira) { find<QComboBox>(ekran, "Firma_Combo")->setCurrentIndex(sira); }
  std::string oku(const std::string& ad, const std::string& sutunlar) {
    return rows("Defination_DB", "SELECT " + sutunlar + " FROM sysfrmlng WHERE sysfrm_dbnm='" + ad + "'");
  }
  SabitTanimlar ekran{oturum(), konsol};
  std::vector<std::string> acilis;
};

TEST_F(SabitTanimlarTest, OpensWithFewStatements) {
  EXPECT_LE(acilis.size(), 8U);
  EXPECT_EQ(alan("DefKDV")->text(), "18");
  EXPECT_EQ(find<QComboBox>(ekran, "TransferFirma")->currentText(), "BAĞLANTI YOK");
  EXPECT_EQ(find<QComboBox>(ekran, "Ambar_No")->currentText(), "1  Merkez");
  EXPECT_EQ(alan("KilitBasTarih")->text(), "01/01/2012");
  // The company has the base tables only.
  EXPECT_NE(find<QLabel>(ekran, "GrupHata")->text().indexOf("zembera-cli guncelle --ad BAZ2012"), -1);
}

TEST_F(SabitTanimlarTest, SavesTheChangedColumnsOnly) {
  tikla(ekran, "TamamBtn");  // settles what no one stored before
  find<QCheckBox>(ekran, "DovizVar")->click();
  type(alan("DefKDV"), "20");
  find<QComboBox>(ekran, "KasaHareketListeTipi")->setCurrentIndex(1);
  const auto deyim = deyimler([&] { key(Qt::Key_F2); });
  EXPECT_EQ(kutular().last(), "Firma Parametreleri Kaydedildi.");
  ASSERT_EQ(deyim.size(), 1U);
  EXPECT_TRUE(deyim[0].starts_with("UPDATE sysfrmlng SET DovizVar=1,DefKDV=20,KasaHareketListeTipi=2 WHERE"));
  EXPECT_EQ(oku("BAZ2012", "DovizVar,DefKDV,KasaHareketListeTipi"), "1|20|2");
  run("Defination_DB", "UPDATE sysfrmlng SET DovizVar=0");
}

TEST_F(SabitTanimlarTest, WrongLockDatesAreShownAndNothingIsWritten) {
  find<QTabWidget>(ekran, "SSTab1")->setCurrentIndex(3);
  type(alan("KilitBitTarih"), "01012011");
  tikla(ekran, "TamamBtn");
  EXPECT_EQ(kutular().last(),
            "Yanlış Tarih Girişinde Bulundunuz. Kilit Bitiş Tarihi, Kilit Başlangıç Tarihinden Küçük "
            "Olamaz.Lütfen Kilit Tarihi Girişlerini Kontrol Ediniz.");
  EXPECT_EQ(kutular().shown.back().icon, session::Icon::Stop);
  EXPECT_EQ(focusName(), "KilitBasTarih");
  EXPECT_EQ(oku("BAZ2012", "CONVERT(CHAR(10),KilitBitTarih,103)"), "31/12/2012");
}

TEST_F(SabitTanimlarTest, KopyalaCarriesTheShownValuesToAnotherCompany) {
  type(alan("DefKDV"), "33");
  find<QCheckBox>(ekran, "Kopyala")->click();
  firma(1);
  EXPECT_EQ(alan("DefKDV")->text(), "33");
  EXPECT_FALSE(find<QLabel>(ekran, "GrupHata")->isVisibleTo(&ekran))
      << "the groups are those of the new company";
  tikla(ekran, "TamamBtn");
  EXPECT_EQ(oku("GUNCEL2012", "DefKDV,PosVar"), "33|1");
  EXPECT_EQ(oku("BAZ2012", "DefKDV"), "18");
  find<QCheckBox>(ekran, "Kopyala")->click();
  firma(0);
  EXPECT_EQ(alan("DefKDV")->text(), "18");
}

TEST_F(SabitTanimlarTest, ColoursComeFromTheChooserAndCancellingLeavesThem) {
  auto* panel = find<RenkPaneli>(ekran, "Renk_TL");
  EXPECT_EQ(panel->renk(), 255U);
  EXPECT_EQ(RenkPaneli::tumleyen(255), 0xFFFF00U);
  ekran.form().renkSec = [](unsigned, QWidget*) { return std::nullopt; };
  panel->click();
  EXPECT_EQ(panel->renk(), 255U);
  ekran.form().renkSec = [](unsigned, QWidget*) { return std::optional(0x102030U); };
  panel->click();
  tikla(ekran, "TamamBtn");
  EXPECT_EQ(oku("BAZ2012", "CONVERT(INT,Renk_TL)"), std::to_string(0x102030));
}

TEST_F(SabitTanimlarTest, TheFlatTaxShowsItsFieldsAndDesignsLoseFolderAndEnding) {
  EXPECT_FALSE(alan("MKTVGTUT")->isVisibleTo(&ekran));
  EXPECT_FALSE(find<QLabel>(ekran, "Label2")->isVisibleTo(&ekran));
  find<QCheckBox>(ekran, "MKTVG")->click();
  for (const char* ad : {"MKTVGTUT", "AMKTVGTUT", "BrGrm"}) EXPECT_TRUE(alan(ad)->isVisibleTo(&ekran)) << ad;
  EXPECT_TRUE(find<QLabel>(ekran, "MKTVGTUTLbl")->isVisibleTo(&ekran));
  ekran.dosyaSec = [](QWidget*) { return QString("C:\\Dizayn\\Fatura A4.v2.ftr"); };
  tikla(ekran, "FaturaDizayn");
  EXPECT_EQ(alan("DefTasarim")->text(), "Fatura A4");
  ekran.dosyaSec = [](QWidget*) { return QString(); };
  tikla(ekran, "FaturaDizayn");
  EXPECT_EQ(alan("DefTasarim")->text(), "Fatura A4");
}

TEST_F(SabitTanimlarTest, DecimalsShowHowANumberWillLook) {
  auto* ornek = find<QLabel>(ekran, "AnaParaVirgulOnizleme");
  EXPECT_EQ(ornek->text(), "→ 1.234.567,89");
  type(alan("AnaParaVirgul"), "0");
  EXPECT_EQ(ornek->text(), "→ 1.234.568");
  type(alan("AnaParaVirgul"), "4");
  EXPECT_EQ(ornek->text(), "→ 1.234.567,8912");
}

TEST_F(SabitTanimlarTest, TheDepositWarehouseWithMovementsStays) {
  run("BAZ2012",
      "INSERT INTO AMBAR(Ambar_No,Ambar_Ad) VALUES(2,'Depo') "
      "INSERT INTO STOKHAREKET(Islem_Tipi,Ambar_No,Fis_No,Stok_Kod) VALUES('Emanet Alım',1,'1','A')");
  ekran.ac();
  auto* ambar = find<QComboBox>(ekran, "Ambar_No");
  ambar->setCurrentIndex(1);
  EXPECT_EQ(kutular().last(), "Emanet Ambarı Hareket Görmüştür Değiştiremezsiniz");
  EXPECT_EQ(ambar->currentText(), "1  Merkez");
  run("BAZ2012", "DELETE FROM STOKHAREKET");
  ambar->setCurrentIndex(1);
  EXPECT_EQ(ambar->currentText(), "2  Depo");
  run("BAZ2012", "DELETE FROM AMBAR WHERE Ambar_No=2");
}

TEST_F(SabitTanimlarTest, TheLaterAdministratorChooses) {
  type(alan("DefKDV"), "5");
  run("Defination_DB", "UPDATE sysfrmlng SET DefKDV=1,MuafGun=9 WHERE sysfrm_dbnm='BAZ2012'");
  tikla(ekran, "TamamBtn");
  EXPECT_TRUE(kutular().shown.back().question);
  EXPECT_NE(kutular().last().find("KDV Ön Değeri %: 18 → 1"), std::string::npos) << kutular().last();
  EXPECT_EQ(oku("BAZ2012", "DefKDV"), "1");
  kutular().answers = {true};
  tikla(ekran, "TamamBtn");
  EXPECT_EQ(oku("BAZ2012", "DefKDV,MuafGun"), "5|9");
  run("Defination_DB", "UPDATE sysfrmlng SET MuafGun=0");
}

TEST_F(SabitTanimlarTest, BadInputIsToldAndNothingIsWritten) {
  run("Defination_DB", "UPDATE sysfrmlng SET KasaHareketListeTipi=NULL WHERE sysfrm_dbnm='BAZ2012'");
  ekran.ac();
  EXPECT_EQ(kutular().texts(),
            std::vector<std::string>{"Kasa Hareketleri Listesi parametresi boş (KasaHareketListeTipi NULL); "
                                     "listeden yeniden seçiniz."});
  EXPECT_EQ(find<QComboBox>(ekran, "KasaHareketListeTipi")->currentIndex(), -1);
  kutular().shown.clear();
  const struct {
    const char *alan, *metin, *hata;
  } durumlar[] = {
      {"DefKDV", "99999999999", "KDV Ön Değeri %: “99999999999” bu alana sığmıyor."},
      {"DefTasarim", "日", "Fatura Dizaynı: “日” harfi kullanılamaz (1254 Türkçe kod sayfasında yok)."},
      {"KilitBasTarih", "31022012",
       "Yanlış Tarih Girişinde Bulundunuz. Lütfen Kilit Başlangıç Tarihini Girişini Kontrol Ediniz."}};
  for (const auto& d : durumlar) {
    const QString eski = alan(d.alan)->text();
    type(alan(d.alan), d.metin);
    tikla(ekran, "TamamBtn");
    EXPECT_EQ(kutular().last(), d.hata);
    EXPECT_EQ(kutular().shown.back().icon, session::Icon::Stop);
    EXPECT_EQ(oku("BAZ2012", "DefKDV,DefFaturaDizayn,CONVERT(CHAR(10),KilitBasTarih,103)"),
              "18|NULL|01/01/2012");
    alan(d.alan)->setText(eski);
  }
}

TEST_F(SabitTanimlarTest, ACompanyThatGoesMeanwhileIsTold) {
  run("Defination_DB",
      "INSERT INTO sysfrmlng(sysfrm_nm,sysfrm_dbnm,sysfrm_kd,KilitBasTarih,KilitBitTarih) "
      "VALUES('G','GIDEN','00003','20120101','20121231')");
  ekran.ac();
  firma(2);
  EXPECT_TRUE(kutular().last().starts_with("“GIDEN” veritabanına bağlanılamadı: ")) << kutular().last();
  run("Defination_DB", "DELETE FROM sysfrmlng WHERE sysfrm_dbnm='GIDEN'");
  tikla(ekran, "TamamBtn");
  EXPECT_EQ(kutular().last(), "Firma kaydı bulunamadı: firma bu arada silinmiş olabilir.");
  firma(0);
  firma(2);
  EXPECT_EQ(kutular().last(), "\"GIDEN\" adında bir firma tanımlı değil.");
  EXPECT_FALSE(find<QPushButton>(ekran, "TamamBtn")->isEnabled());
}

TEST_F(SabitTanimlarTest, GroupsAreStoredRowByRowAndDuplicatesAreRefused) {
  run("GUNCEL2012", "DELETE FROM ANAGRUPTANIM DELETE FROM ALTGRUPBASLIK DELETE FROM ALTGRUPTANIM");
  firma(1);
  find<QTabWidget>(ekran, "SSTab1")->setCurrentIndex(4);
  auto* ana = find<ui::Izgara>(ekran, "AnaGrupFlx");
  auto* baslik = find<ui::Izgara>(ekran, "AltBasFlx");
  auto* alt = find<ui::Izgara>(ekran, "AltGrupFlx");
  const auto gir = [](ui::Izgara* izgara, int satir, const char* kolon, const QString& metin) {
    izgara->duzenle(satir, kolon);
    test::yaz(metin);
    key(Qt::Key_Return);
  };
  gir(ana, 0, "Ana_Grup", "Gıda");
  gir(ana, 1, "Ana_Grup", "Giyim");
  ana->git(0, "Ana_Grup");
  gir(baslik, 0, "Alt_Grup_Baslik", "Marka");
  baslik->git(0, "Alt_Grup_Baslik");
  gir(alt, 0, "Alt_Grup", "Yerli");
  gir(ana, 2, "Ana_Grup", "Gıda");
  EXPECT_EQ(kutular().last(), "Girmiş Olduğunuz Ana Grup Tanımı 1. Satırda Girilmiş Lütfen Kontrol Ednizi.");
  const std::string sonuc =
      rows("GUNCEL2012",
           "SELECT a.Ana_Grup,b.Sira_No,b.Alt_Grup_Baslik,c.Alt_Grup FROM ANAGRUPTANIM a LEFT "
           "JOIN ALTGRUPBASLIK b ON b.Ana_Grup_ID=a.Ana_Grup_ID LEFT JOIN ALTGRUPTANIM c ON "
           "c.Ana_Grup_ID=a.Ana_Grup_ID AND c.Alt_Grup_BasID=b.Alt_Grup_BasID ORDER BY "
           "a.Ana_Grup_ID");
  EXPECT_EQ(sonuc, "Gıda|1|Marka|Yerli\nGiyim|NULL|NULL|NULL");
  ana->git(1, "Ana_Grup");
  EXPECT_EQ(baslik->veri().adet(), 1) << "the other main group has no headings";
}

TEST_F(SabitTanimlarTest, DifferencesToAnotherCompanyAreTakenOneByOne) {
  std::vector<std::string> satirlar;
  QTimer::singleShot(0, [&] {
    auto* pencere = ekran.findChild<QDialog*>("Karsilastirma");
    auto* liste = find<QTableWidget>(*pencere, "FarkGrd");
    for (int i = 0; i < liste->rowCount(); ++i)
      satirlar.push_back(liste->item(i, 0)->text().toStdString() + "|" +
                         liste->item(i, 1)->text().toStdString() + "|" +
                         liste->item(i, 2)->text().toStdString());
    liste->setCurrentCell(1, 0);
    tikla(*pencere, "AlBtn");
    EXPECT_EQ(liste->rowCount(), 1);
    pencere->accept();
  });
  tikla(ekran, "KarsilastirBtn");
  EXPECT_EQ(satirlar,
            (std::vector<std::string>{"Kredi Kartı İle Satış Yapıyorum|Evet|Hayır", "KDV Ön Değeri %|18|8"}));
  EXPECT_EQ(alan("DefKDV")->text(), "8");
  EXPECT_EQ(oku("BAZ2012", "DefKDV"), "18") << "nothing is written before Kaydet";
}

TEST_F(SabitTanimlarTest, InstalmentParametersSaveTheirWay) {
  TaksitliSatis taksit(oturum(), konsol);
  screen::show(taksit);
  taksit.ac();
  EXPECT_EQ(find<QLineEdit>(taksit, "MakbuzSol")->text(), "3,5");
  QTest::mouseClick(find<QAbstractButton>(taksit, "SatisYapma_2"), Qt::LeftButton);
  type(find<QLineEdit>(taksit, "IhtarSayisi"), "x");
  type(find<QLineEdit>(taksit, "TahsilNusha"), "");
  tikla(taksit, "TamamBtn");
  EXPECT_EQ(kutular().texts(), std::vector<std::string>{"Taksitli Satış Parametreleri Kaydedildi."});
  EXPECT_EQ(focusName(), "IhtarSayisi");
  EXPECT_EQ(oku("BAZ2012", "MakBuzSol,SatisYapma,IhtarSayisi,TahsilNusha"), "198|2|0|1");
}

}  // namespace
}  // namespace settings_ui
