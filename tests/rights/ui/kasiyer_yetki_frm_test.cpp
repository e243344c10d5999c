#include "rights/ui/kasiyer_yetki_frm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

#include "ekran.h"
#include "rights/ui/arama_listesi.h"
#include "ui/izgara.h"

namespace {

using namespace screen;

class KasiyerFrmTest : public rights::test::EkranTest {
 protected:
  void SetUp() override {
    id = kullanici("ALİ", "abc", {1, 2});
    run("INSERT INTO MERKEZ.dbo.KASAKART(Kasa_Kod,Kasa_Ad) VALUES('K1','Ana') INSERT INTO "
        "MERKEZ.dbo.KASAKART(Kasa_Kod,Kasa_Ad) VALUES('L2','Yan') "
        "INSERT INTO MERKEZ.dbo.STOKKART(Stok_Kod,Stok_Ad,Aktif) VALUES('ELMA','Elma',1) INSERT INTO "
        "MERKEZ.dbo.STOKKART(Stok_Kod,Stok_Ad,Aktif) VALUES('ARMUT','Armut',1) INSERT INTO "
        "MERKEZ.dbo.TARTIBARKOD(Bayrak_Kodu,Master_Kod) VALUES('27',5)");
    o().Secili_ID = id;
    kart.resize(1000, 760);
    screen::show(kart);
    kart.ac();
  }
  ui::Izgara* izgara(const char* name) { return find<ui::Izgara>(kart, name); }
  void tikla(ui::Izgara* grid, int row, int column) {
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualRect(grid->model()->index(row, column)).center());
  }
  void sekme(int tab) { find<QTabWidget>(kart, "Sekmeler")->setCurrentIndex(tab); }
  // What is done in the list that the next click opens.
  void listede(std::function<void(rights_ui::AramaListesi&)> is) {
    QTimer::singleShot(0, &kart, [this, is] {
      auto* list = kart.findChild<rights_ui::AramaListesi*>();
      ASSERT_NE(list, nullptr);
      is(*list);
      if (list->isVisible()) list->reject();
    });
  }
  // No window manager gives the focus back when the list closes.
  void geri(QWidget* alan) {
    screen::show(kart);
    alan->setFocus();
  }
  std::int64_t id = 0;
  rights_ui::KasiyerYetkiFrm kart{o(), konsol};
  QSignalSpy kapandi{&kart, &ui::Kart::kapandi};
};

TEST_F(KasiyerFrmTest, ValuesComeFromTheirListsAndWordsTurn) {
  ui::Izgara* fis = izgara("FisGrd");
  listede([](rights_ui::AramaListesi& list) {
    auto* arama = find<QLineEdit>(list, "Arama");
    EXPECT_EQ(find<QTableWidget>(list, "TDBG2")->rowCount(), 2);
    QTest::keyClick(arama, Qt::Key_L);
    auto* timer = find<QTimer>(list, "AramaTimer");
    EXPECT_TRUE(timer->isActive());  // not searched before the typing stops
    EXPECT_EQ(find<QTableWidget>(list, "TDBG2")->rowCount(), 2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !timer->isActive(); }));
    EXPECT_EQ(find<QTableWidget>(list, "TDBG2")->rowCount(), 1);
    QTest::keyClick(arama, Qt::Key_Return);
  });
  tikla(fis, 0, 1);
  EXPECT_EQ(fis->veri().satirlar()[0].hucreler,
            (std::vector<std::string>{"Kasa Kodu", "L2", "Yan", "Değiştiremez"}));
  geri(fis);
  tikla(fis, 0, 3);
  EXPECT_EQ(fis->veri().hucre(0, 3), "Değiştirebilir");
  fis->setFocus();
  fis->git(11, 3);
  key(Qt::Key_Space);
  EXPECT_EQ(fis->veri().hucre(11, 3), "Alır");
  // A row without a word or a value takes neither.
  tikla(fis, 1, 3);
  EXPECT_EQ(fis->veri().hucre(1, 3), "");
  key(Qt::Key_F2);
  EXPECT_EQ(s.boxes.last(), "Yetkilendirme İşlemi Başarı İle Tamamlandı.");
  EXPECT_EQ(rows("SELECT Def_Kasa_ID,KS_Degistirsin,Nakit,CR_Degistirsin,Vir_Kasa_ID FROM Kullanici WHERE "
                 "Kullanici_ID=2 AND Firma_ID=1"),
            "2|1|1|0|NULL");

  fis->setFocus();
  fis->git(0, 1);
  key(Qt::Key_Delete);
  key(Qt::Key_F2);
  EXPECT_EQ(rows("SELECT Def_Kasa_ID FROM Kullanici WHERE Kullanici_ID=2 AND Firma_ID=1"), "NULL");
  key(Qt::Key_Escape);
  EXPECT_EQ(kapandi.count(), 1);
}

TEST_F(KasiyerFrmTest, BoxesObjectsScalesAndShortcutsAreSaved) {
  sekme(1);
  for (const char* name : {"StoguSesleSoyle", "DirektIslem", "Depozito"})
    QTest::mouseClick(find<QCheckBox>(kart, name), Qt::LeftButton, {}, QPoint(8, 12));
  type(find<QLineEdit>(kart, "RaporYazici"), "yazıcı 1");
  type(find<QLineEdit>(kart, "TerPort"), "COM1234567890");
  sekme(2);
  tikla(izgara("NesnelerGRD"), 2, 0);
  tikla(izgara("NesnelerGRD"), 3, 1);
  tikla(izgara("TeraziGRD"), 0, 0);
  sekme(3);
  ui::Izgara* stok = izgara("StokFlx");
  stok->git(4, 0);
  listede([](rights_ui::AramaListesi& list) {
    EXPECT_EQ(list.objectName(), "StokFrm");
    auto* rows = find<QTableWidget>(list, "TDBG1");
    EXPECT_EQ(rows->item(0, 0)->text(), "ARMUT");
    find<QComboBox>(list, "Liste_Tipi")->setCurrentIndex(2);
    EXPECT_EQ(rows->rowCount(), 0);
    EXPECT_FALSE(find<QPushButton>(list, "SecBtn")->isEnabled());
    find<QComboBox>(list, "Liste_Tipi")->setCurrentIndex(0);
    rows->setCurrentCell(1, 0);
    QTest::mouseClick(find<QPushButton>(list, "SecBtn"), Qt::LeftButton);
  });
  QTest::mouseClick(find<QPushButton>(kart, "StokSecBtn"), Qt::LeftButton);
  EXPECT_EQ(stok->veri().hucre(4, 0), "ELMA");
  geri(stok);
  key(Qt::Key_F2);
  EXPECT_EQ(rows("SELECT SesliUyari,SatisListesiGoster,YakaKarti,RaporYazici,Teraziler,BelgeNo,OzelKod,FisNo "
                 "FROM KASIYERCONFIG"),
            "1|1|0|yazıcı 1|27|1|1|0");
  EXPECT_EQ(rows("SELECT Depozito,TerPort FROM Kullanici WHERE Kullanici_ID=2 AND Firma_ID=1"),
            "1|COM1234567");
  EXPECT_EQ(rows("SELECT S_No,Stok_ID FROM KSKISAYOL"), "5|1");

  // Another company starts from its own settings; back again, everything stands as it was saved.
  find<QComboBox>(kart, "Firma_Combo")->setFocus();
  key(Qt::Key_Down);
  EXPECT_FALSE(find<QCheckBox>(kart, "Depozito")->isChecked());
  EXPECT_EQ(stok->veri().hucre(4, 0), "");
  key(Qt::Key_Up);
  EXPECT_TRUE(find<QCheckBox>(kart, "Depozito")->isChecked());
  EXPECT_EQ(stok->veri().hucre(4, 0), "ELMA");
  stok->git(4, 0);
  QTest::mouseClick(find<QPushButton>(kart, "StokSilBtn"), Qt::LeftButton);
  key(Qt::Key_F2);
  EXPECT_EQ(rows("SELECT S_No FROM KSKISAYOL"), "");
}

TEST_F(KasiyerFrmTest, ABlankInAnEmptyFieldSearchesInside) {
  listede([](rights_ui::AramaListesi& list) {
    auto* arama = find<QLineEdit>(list, "Arama");
    QTest::keyClick(arama, Qt::Key_Space);
    EXPECT_EQ(arama->text(), "%");
    QTest::keyClick(find<QTableWidget>(list, "TDBG2"), Qt::Key_2);  // typed over the list
    EXPECT_EQ(arama->text(), "%2");
    QTest::keyClick(find<QTableWidget>(list, "TDBG2"), Qt::Key_Return);
  });
  tikla(izgara("FisGrd"), 0, 1);
  EXPECT_EQ(izgara("FisGrd")->veri().hucre(0, 1), "L2");
}

}  // namespace
