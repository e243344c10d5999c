#include "rights/ui/yetki_frm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

#include "ekran.h"
#include "ui/izgara.h"
#include "ui/tik_agaci.h"

namespace {

using namespace screen;

class YetkiFrmTest : public rights::test::EkranTest {
 protected:
  void SetUp() override {
    id = kullanici("ALİ", "abc", {1, 2});
    run("INSERT INTO MERKEZ.dbo.AMBAR(Ambar_No,Ambar_Ad) VALUES(2,'Depo') INSERT INTO "
        "MERKEZ.dbo.KASAKART(Kasa_Kod) VALUES('K1')");
  }
  void ac() {
    o().Secili_ID = id;
    kart.resize(1000, 760);
    screen::show(kart);
    kart.ac();
  }
  ui::TikAgaciGorunumu& agac() { return *find<ui::TikAgaciGorunumu>(kart, "treelist"); }
  // The row with that caption, counted from the top.
  int satir(const char* yazi) {
    for (int i = 0; i < agac().agac().boy(); ++i)
      if (agac().agac().satir(i).yazi == yazi) return i;
    ADD_FAILURE() << yazi;
    return 0;
  }
  void tiklaHucre(ui::Izgara* grid, int row, int column) {
    const QRect cell = grid->visualRect(grid->model()->index(row, column));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
  }
  std::string kolon(const std::string& names, int firma = 1) {
    return rows("SELECT " + names +
                " FROM Kullanici WHERE Kullanici_ID=2 AND Firma_ID=" + std::to_string(firma));
  }
  std::int64_t id = 0;
  rights_ui::YetkiFrm kart{o(), konsol};
  QSignalSpy kapandi{&kart, &ui::Kart::kapandi};
};

TEST_F(YetkiFrmTest, TicksAreChangedByKeysAndSaved) {
  ac();
  EXPECT_EQ(focusName(), "Firma_Combo");
  agac().setFocus();
  agac().setCurrentIndex(agac().model().index(0));
  key(Qt::Key_Space);  // Kasa and everything below it
  agac().goster(satir("Çek Ödemesi"));
  key(Qt::Key_Space);  // comes back with the branch above it
  key(Qt::Key_F2);
  EXPECT_EQ(s.boxes.last(), "Firma İçin Yetkilendirme Tamamlandı.");
  EXPECT_EQ(kolon("KASA,KHE,KHS,KK,KB,KR,CARI"), "1|00100000000000|00100000000000|0000|0|0|1");
  key(Qt::Key_Escape);
  EXPECT_EQ(kapandi.count(), 1);
}

TEST_F(YetkiFrmTest, TheFiveBoxesGoOverTheWholeTree) {
  ac();
  auto* ekle = find<QCheckBox>(kart, "EkleCbx");
  QTest::mouseClick(ekle, Qt::LeftButton, {}, QPoint(8, 12));
  EXPECT_TRUE(ekle->isChecked());
  EXPECT_TRUE(agac().agac().isaretli(satir("Personel Kartı") + 1));
  EXPECT_TRUE(agac().agac().isaretli(satir("Personel Kartı")));
  EXPECT_FALSE(agac().agac().isaretli(satir("Personel")));  // the parent alone follows
  for (const char* name : {"EkleCbx", "BakiyeCbx", "BakiyeCbx"})
    QTest::mouseClick(find<QCheckBox>(kart, name), Qt::LeftButton, {}, QPoint(8, 12));
  key(Qt::Key_F2);
  EXPECT_EQ(kolon("KHE,KHD,STK,KB,CARB,PHE,CAROS"), "00000000000000|11111111111111|0111|0|0|000000|0111");
}

TEST_F(YetkiFrmTest, CopyingKeepsWhatIsShown) {
  ac();
  agac().setFocus();
  agac().setCurrentIndex(agac().model().index(satir("Stok")));
  key(Qt::Key_Space);
  QTest::mouseClick(find<QCheckBox>(kart, "Kopyala"), Qt::LeftButton, {}, QPoint(8, 12));
  find<QComboBox>(kart, "Firma_Combo")->setFocus();
  key(Qt::Key_Down);
  EXPECT_EQ(find<QComboBox>(kart, "Firma_Combo")->currentText(), "SUBE");
  EXPECT_FALSE(agac().agac().isaretli(satir("Stok")));
  key(Qt::Key_F2);
  EXPECT_EQ(kolon("STOK,STHE", 2), "0|0000000000000000");
  EXPECT_EQ(kolon("STOK", 1), "1");
  // Without it the company's own rights are read.
  QTest::mouseClick(find<QCheckBox>(kart, "Kopyala"), Qt::LeftButton, {}, QPoint(8, 12));
  find<QComboBox>(kart, "Firma_Combo")->setFocus();
  key(Qt::Key_Up);
  EXPECT_TRUE(agac().agac().isaretli(satir("Stok")));
}

TEST_F(YetkiFrmTest, GridsAndBoxesAreSaved) {
  ac();
  tiklaHucre(find<ui::Izgara>(kart, "YetkiGenelGrd"), 2, 1);  // beside the box
  QTest::mouseClick(find<QCheckBox>(kart, "BGTahAl"), Qt::LeftButton, {}, QPoint(8, 12));
  EXPECT_TRUE(find<QLineEdit>(kart, "KntGun")->isEnabled());
  type(find<QLineEdit>(kart, "KntGun"), "30");
  find<QComboBox>(kart, "Def_Kasa_Kod")->setCurrentText("K1");
  find<QComboBox>(kart, "HesapTuruFlx")->setCurrentText("Satıcı");
  auto* tabs = find<QTabWidget>(kart, "Sekmeler");
  tabs->setCurrentIndex(1);
  tiklaHucre(find<ui::Izgara>(kart, "YetkiKasiyerGrd"), 7, 0);
  tabs->setCurrentIndex(2);
  auto* ambar = find<ui::Izgara>(kart, "YetkiAmbarGrd");
  tiklaHucre(ambar, 0, 3);
  tiklaHucre(ambar, 1, 3);  // takes the mark from the first
  EXPECT_EQ(ambar->veri().satirlar()[0].hucreler, (std::vector<std::string>{"1", "1", "Merkez", "0"}));
  EXPECT_EQ(ambar->veri().satirlar()[1].hucreler, (std::vector<std::string>{"1", "2", "Depo", "1"}));
  tiklaHucre(ambar, 0, 2);
  EXPECT_EQ(ambar->veri().hucre(0, 0), "0");
  ambar->setFocus();
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(ambar->veri().hucre(0, 0), "1");
  tiklaHucre(ambar, 1, 0);  // the step taken back stays taken back, and the mark goes with the tick
  EXPECT_EQ(ambar->veri().satirlar()[0].hucreler[0] + ambar->veri().satirlar()[1].hucreler[3], "10");
  tiklaHucre(ambar, 1, 3);
  tiklaHucre(ambar, 0, 0);
  key(Qt::Key_F2);
  EXPECT_EQ(s.boxes.last(), "Firma İçin Yetkilendirme Tamamlandı.");
  EXPECT_EQ(
      kolon("KRVN,KSYR,YZRKS,TKSTL,BGTahAl,KntGun,Def_Kasa_ID,Cari_Tipi,KS_Degistirsin,Nakit,Def_Ambar_No"),
      "1|1|0|1|1|30|1|Satıcı|0|1|2");
  EXPECT_EQ(rows("SELECT Ambar_No,Merkez_Ambar FROM MERKEZ.dbo.KULLANICIAMBAR"), "2|1");
}

TEST_F(YetkiFrmTest, ARightIsFoundByItsWords) {
  ac();
  key(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(focusName(), "Arama");
  type(find<QLineEdit>(kart, "Arama"), "çek iade");
  auto* found = find<QListWidget>(kart, "AramaSonuc");
  ASSERT_TRUE(found->isVisible());
  EXPECT_EQ(found->item(1)->text(), "Çek Senet › Çek Senet Hareketleri › Müşteriye Çek İade");
  key(Qt::Key_Return);
  key(Qt::Key_Down);
  EXPECT_EQ(agac().currentIndex().data().toString(), "Müşteriye Çek İade");
  EXPECT_FALSE(agac().visualRect(agac().currentIndex()).isEmpty());
  key(Qt::Key_Return);
  EXPECT_EQ(focusName(), "treelist");
  type(find<QLineEdit>(kart, "Arama"), "yoktur");
  EXPECT_EQ(found->item(0)->text(), "Bu sözlerle bir yetki yok.");
}

TEST_F(YetkiFrmTest, TheMenuOpensAndClosesTheTree) {
  ac();
  for (const char* action : {"MnTumunuAc", "MnTumunuKapa"}) {
    QTimer::singleShot(0, &kart, [&] {
      auto* menu = find<QMenu>(kart, "MnHepsi");
      menu->findChild<QAction*>(action)->trigger();
      menu->close();
    });
    emit agac().customContextMenuRequested(QPoint(5, 5));
    EXPECT_EQ(agac().isExpanded(agac().model().index(satir("Çek Ödemesi"))),
              std::string(action) == "MnTumunuAc");
  }
}

TEST_F(YetkiFrmTest, ComparisonTellsTheDifferenceWithWhatIsShown) {
  kullanici("VELİ", "abc", {1});
  ac();
  agac().setFocus();
  agac().setCurrentIndex(agac().model().index(satir("Banka Raporları")));
  key(Qt::Key_Space);
  find<QTabWidget>(kart, "Sekmeler")->setCurrentIndex(3);
  find<QComboBox>(kart, "Karsi_Kullanici")->setCurrentText("VELİ");
  QTest::mouseClick(find<QPushButton>(kart, "KarsilastirBtn"), Qt::LeftButton);
  auto* list = find<QTableWidget>(kart, "FarkGrd");
  ASSERT_GE(list->rowCount(), 1);
  EXPECT_EQ(list->item(0, 0)->text(), "Banka › Banka Raporları");
  EXPECT_EQ(list->item(0, 1)->text() + list->item(0, 2)->text(), "yokvar");
  EXPECT_EQ(list->horizontalHeaderItem(2)->text(), "VELİ");
  agac().collapseAll();
  list->setCurrentCell(0, 0);
  EXPECT_EQ(agac().currentIndex().data().toString(), "Banka Raporları");
}

TEST_F(YetkiFrmTest, AUserWithoutACompanyClosesTheScreen) {
  run("DELETE FROM Kullanici WHERE Kullanici_ID=2");
  ac();
  EXPECT_EQ(s.boxes.last(), "Lütfen Bu Kullanıcının Kullanacağı En Az Bir Firma Seçiniz");
  QCoreApplication::processEvents();
  EXPECT_EQ(kapandi.count(), 1);
}

}  // namespace
