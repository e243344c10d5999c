// Counters, scale layouts, terminal files, report texts: their screens.
#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <fstream>

#include "ortam.h"
#include "settings/ui/barkod_gramaj.h"
#include "settings/ui/el_terminali.h"
#include "settings/ui/numaralar.h"
#include "settings/ui/rapor_evrak.h"
#include "support/temp_folder.h"
#include "ui/izgara.h"

namespace settings_ui {
namespace {

using namespace screen;

class KucukEkranlar : public test::EkranTest {
 protected:
  void ac(ui::Kart& ekran) {
    ekran.resize(1000, 650);
    screen::show(ekran);
    ekran.ac();
  }
  static ui::Izgara& izgara(QWidget& ekran) { return *find<ui::Izgara>(ekran, "FisGrd"); }
};

TEST_F(KucukEkranlar, OnlyChangedCountersAreWritten) {
  Numaralar ekran(oturum(), konsol);
  ac(ekran);
  EXPECT_EQ(izgara(ekran).veri().adet(), 28);
  izgara(ekran).git(0, "No");
  test::yaz("0000000123456");
  key(Qt::Key_Return);
  izgara(ekran).git(1, "No");
  key(Qt::Key_Delete);
  const auto deyim = deyimler([&] { key(Qt::Key_F2); });
  EXPECT_EQ(kutular().texts(), std::vector<std::string>{"Fiş Numaraları Başarı İle Ayarlandı."});
  EXPECT_EQ(std::ranges::count(deyim, "BEGIN TRANSACTION UPDATE IP_SATFATFIS SET IP='0000000123'\n"), 1);
  EXPECT_EQ(rows("BAZ2012", "SELECT IP FROM IP_SATFATFIS UNION ALL SELECT IP FROM IP_ALFATFIS"),
            "0000000123\n0000000000")
      << "an emptied cell keeps the counter";
  QSignalSpy kapandi(&ekran, &ui::Kart::kapandi);
  test::yaz("5");
  key(Qt::Key_Return);
  key(Qt::Key_Escape);
  EXPECT_EQ(kapandi.count(), 0);
  kutular().answers = {true};
  key(Qt::Key_Escape);
  EXPECT_EQ(kapandi.count(), 1);
  run("BAZ2012", "UPDATE IP_SATFATFIS SET IP='0000000000'");
}

TEST_F(KucukEkranlar, WhatOthersStoredMeanwhileIsToldAndTheUserChooses) {
  Numaralar numaralar(oturum(), konsol);
  ac(numaralar);
  izgara(numaralar).git(0, "No");
  test::yaz("5");
  key(Qt::Key_Return);
  run("BAZ2012", "UPDATE IP_SATFATFIS SET IP='0000000009' UPDATE IP_ALFATFIS SET IP='0000000007'");
  const std::string soru =
      " siz çalışırken başkası tarafından değiştirildi:\n\n%\n\nSizin değiştirdikleriniz yine de yazılsın "
      "mı? "
      "(Hayır derseniz hiçbir şey yazılmaz.)";
  const auto sorulan = [&](const std::string& ne, const std::string& fark) {
    return ne + std::string(soru).replace(soru.find('%'), 1, fark);
  };
  key(Qt::Key_F2);
  EXPECT_EQ(kutular().texts(),
            std::vector<std::string>{sorulan("Bu numaralar", "Satış Faturası: 0000000000 → 0000000009")});
  EXPECT_EQ(rows("BAZ2012", "SELECT IP FROM IP_SATFATFIS"), "0000000009");
  kutular().answers = {true};
  key(Qt::Key_F2);
  EXPECT_EQ(rows("BAZ2012", "SELECT IP FROM IP_SATFATFIS UNION ALL SELECT IP FROM IP_ALFATFIS"),
            "5\n0000000007");
  run("BAZ2012", "UPDATE IP_SATFATFIS SET IP='0000000000' UPDATE IP_ALFATFIS SET IP='0000000000'");

  run("BAZ2012",
      "DELETE FROM TARTIBARKOD INSERT INTO TARTIBARKOD(Bayrak_Kodu,Master_Kod,KG,GR) VALUES('27',5,2,3)");
  BarkodGramaj tarti(oturum(), konsol);
  ac(tarti);
  run("BAZ2012",
      "UPDATE TARTIBARKOD SET Bayrak_Kodu='29' INSERT INTO TARTIBARKOD(Bayrak_Kodu,Master_Kod,KG,GR) "
      "VALUES('30',5,2,3)");
  izgara(tarti).git(1, "Bayrak_Kodu");
  for (const char* hucre : {"28", "6", "1", "3"}) {
    test::yaz(hucre);
    key(Qt::Key_Return);
  }
  izgara(tarti).git(2, "Bayrak_Kodu");
  tikla(tarti, "SilBtn");
  kutular().shown.clear();
  key(Qt::Key_F2);
  EXPECT_EQ(kutular().texts(),
            std::vector<std::string>{sorulan("Bu tasarımlar", "27: Bayrak Kodu: 27 → 29\n30: eklendi")});
  EXPECT_EQ(rows("BAZ2012", "SELECT Bayrak_Kodu FROM TARTIBARKOD"), "29\n30");
  kutular().answers = {true};
  key(Qt::Key_F2);
  EXPECT_EQ(rows("BAZ2012", "SELECT Bayrak_Kodu FROM TARTIBARKOD ORDER BY Tasarim_ID"), "29\n30\n28");

  run("Defination_DB",
      "DELETE FROM DISVERITANIM INSERT INTO DISVERITANIM(Tanim_Kod,Tanim_Ad) VALUES('T1','Depo')");
  ElTerminali terminal(oturum(), konsol);
  ac(terminal);
  auto* kod = find<QComboBox>(terminal, "Tanim_Kod");
  type(kod->lineEdit(), "T1");
  key(Qt::Key_Return);
  type(find<QLineEdit>(terminal, "Dosya_Yol"), "a.txt");
  run("Defination_DB", "UPDATE DISVERITANIM SET Tanim_Ad='Mağaza'");
  kutular().shown.clear();
  tikla(terminal, "TamamBtn");
  EXPECT_EQ(kutular().texts(),
            std::vector<std::string>{sorulan("Bu tanım", "T1 Depo: Tanım Açıklaması: Depo → Mağaza")});
  kutular().answers = {true};
  tikla(terminal, "TamamBtn");
  EXPECT_EQ(rows("Defination_DB", "SELECT Tanim_Ad,Dosya_Yol FROM DISVERITANIM"), "Depo|a.txt");
  run("Defination_DB", "DELETE FROM DISVERITANIM");
}

TEST_F(KucukEkranlar, ALayoutIsTypedTriedAndSaved) {
  run("BAZ2012", "DELETE FROM TARTIBARKOD");
  BarkodGramaj ekran(oturum(), konsol);
  ac(ekran);
  QSignalSpy kapandi(&ekran, &ui::Kart::kapandi);
  for (const char* hucre : {"7", "5", "2", "3"}) {
    test::yaz(hucre);
    key(Qt::Key_Return);
  }
  EXPECT_EQ(izgara(ekran).veri().adet(), 2);
  EXPECT_EQ(izgara(ekran).veri().hucre(1, 6), "1");
  type(find<QLineEdit>(ekran, "DenemeBarkodu"), "0712345012501");
  EXPECT_EQ(find<QLabel>(ekran, "DenemeSonucu")->text().section("   ", 0, 3),
            "Bayrak 07   Stok kodu 12345   Kilogram 01   Gram 250");
  key(Qt::Key_F2);
  EXPECT_EQ(kutular().last(), "Lütfen 2. satırdaki Bayrak Koduna Sayısal Bir Deger giriniz");
  EXPECT_EQ(kutular().shown.back().icon, session::Icon::Stop);
  izgara(ekran).setFocus();
  izgara(ekran).git(1, "Bayrak_Kodu");
  tikla(ekran, "SilBtn");
  key(Qt::Key_F2);
  EXPECT_EQ(kapandi.count(), 1);
  EXPECT_EQ(rows("BAZ2012", "SELECT Bayrak_Kodu,Master_Kod,KG,GR,Adetli FROM TARTIBARKOD"), "07|5|2|3|0");
}

TEST_F(KucukEkranlar, ATerminalFileIsDefinedPreviewedAndDeleted) {
  run("Defination_DB", "DELETE FROM DISVERITANIM");
  const support::TempFolder klasor;
  const auto dosya = klasor.path / "t.txt";
  std::ofstream(dosya) << "8690000000017;5\n8690000000024;12\n";
  ElTerminali ekran(oturum(), konsol);
  ac(ekran);
  auto& grid = izgara(ekran);
  EXPECT_EQ(grid.veri().hucre(0, 1) + grid.veri().hucre(1, 1) + grid.veri().hucre(3, 1), "101")
      << "at design";
  grid.setFocus();
  grid.git(0, "Bas");
  key(Qt::Key_Up);
  EXPECT_EQ(focusName(), "Ayirac") << "the first row hands the key on";
  tikla(ekran, "TamamBtn");
  EXPECT_EQ(kutular().last(), "Kaydedilecek tanım yok. Yeni bir tanım için önce Yeni düğmesine basınız.");
  tikla(ekran, "EkleBtn");
  EXPECT_EQ(find<QLineEdit>(ekran, "Tanim_ID")->text(), "0");
  type(find<QComboBox>(ekran, "Tanim_Kod")->lineEdit(), "T1");
  type(find<QLineEdit>(ekran, "Tanim_Ad"), "Depo");
  ekran.dosyaSec = [&](QWidget*) { return QString::fromStdString(dosya.string()); };
  tikla(ekran, "brws");
  find<QCheckBox>(ekran, "AyiracVar")->click();
  type(find<QLineEdit>(ekran, "Ayirac"), ";;");
  EXPECT_EQ(find<QLineEdit>(ekran, "Ayirac")->text(), ";");
  auto& veri = izgara(ekran).veri();
  EXPECT_FALSE(veri.duzenlenirMi(0, 3)) << "no widths with a separator";
  EXPECT_EQ(veri.yaz(0, 1, "1") + veri.yaz(0, 2, "1") + veri.yaz(3, 1, "1") + veri.yaz(3, 2, "2"), "");
  grid.setFocus();
  grid.git(1, "Bas");
  test::yaz("4x");
  EXPECT_EQ(static_cast<QLineEdit*>(QApplication::focusWidget())->text(), "") << "cleared while it is typed";
  test::yaz("7");
  key(Qt::Key_Tab);
  EXPECT_EQ(veri.hucre(1, 2), "7");
  veri.yaz(1, 2, "");
  auto* onizleme = find<QTableWidget>(ekran, "OnizlemeGrd");
  ASSERT_EQ(onizleme->rowCount(), 2);
  EXPECT_EQ(onizleme->item(1, 0)->text() + "|" + onizleme->item(1, 1)->text(), "8690000000024|12");
  tikla(ekran, "TamamBtn");
  EXPECT_EQ(kutular().last(), "Dış Veri Aktarım Parametresi Kaydedildi.");
  EXPECT_EQ(rows("Defination_DB",
                 "SELECT Tanim_Kod,Tanim_Ad,Ayirac,Barkod,Barkod_Bas,Miktar_Bas FROM DISVERITANIM"),
            "T1|Depo|;|1|1|2");
  tikla(ekran, "SilBtn");
  EXPECT_EQ(kutular().last(), "Seçili Veri Alım Parametresi Silinecektir. Onaylıyormusunuz?");
  EXPECT_EQ(rows("Defination_DB", "SELECT COUNT(*) FROM DISVERITANIM"), "1");
  kutular().answers = {true};
  tikla(ekran, "SilBtn");
  EXPECT_EQ(rows("Defination_DB", "SELECT COUNT(*) FROM DISVERITANIM"), "0");
}

TEST_F(KucukEkranlar, ReportTextsFollowModuleAndKind) {
  run("Defination_DB", "DELETE FROM TSRSQL INSERT INTO TSRSQL(Modul,Kisim,DEF_SQL) VALUES(3,2,'SELECT 1')");
  RaporEvrak ekran(oturum(), konsol);
  ac(ekran);
  auto* metin = find<QPlainTextEdit>(ekran, "PRSQL");
  tikla(ekran, "PrtKaydet");
  EXPECT_TRUE(kutular().shown.empty()) << "without module and kind nothing happens";
  find<QTableWidget>(ekran, "PRModulFlx")->setCurrentCell(2, 1);
  EXPECT_EQ(metin->toPlainText(), "");
  find<QTableWidget>(ekran, "KisimFlx")->setCurrentCell(0, 1);
  EXPECT_EQ(metin->toPlainText(), "SELECT 1");
  metin->setFocus();
  key(Qt::Key_2);
  find<QTableWidget>(ekran, "PRModulFlx")->setCurrentCell(4, 1);
  QCoreApplication::processEvents();
  EXPECT_EQ(kutular().texts(),
            std::vector<std::string>{"Kaydedilmemiş değişiklikler var. Kaydetmeden devam etmek "
                                     "istiyor musunuz?"});
  EXPECT_EQ(find<QTableWidget>(ekran, "PRModulFlx")->currentRow(), 2);
  EXPECT_EQ(metin->toPlainText(), "2SELECT 1");
  kutular().shown.clear();
  metin->setPlainText("SELECT 2");
  tikla(ekran, "PrtKaydet");
  EXPECT_EQ(kutular().texts(), std::vector<std::string>{"Kayıt Başarı İle Gerçekleştirildi !"});
  EXPECT_EQ(rows("Defination_DB", "SELECT DEF_SQL FROM TSRSQL ORDER BY TSR_ID"), "SELECT 1\nSELECT 2");
}

}  // namespace
}  // namespace settings_ui
