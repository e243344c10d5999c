#include "settings/ui/tanim_ekrani.h"

#include <QApplication>
#include <QClipboard>
#include <QToolButton>
#include <memory>

#include "ortam.h"
#include "ui/izgara.h"

namespace settings_ui {
namespace {

using namespace screen;

class TanimEkraniTest : public test::EkranTest {
 protected:
  static constexpr const char* db = "GUNCEL2012";
  void SetUp() override {
    EkranTest::SetUp();
    oturum().Secili_Firma = db;
    run(db,
        "DELETE FROM AMBAR INSERT INTO AMBAR(Ambar_No,Ambar_Ad,Merkez_Ambar) VALUES(1,'MERKEZ',1) "
        "DELETE FROM ISYERITANIM WHERE Isyeri_ID<>1 DELETE FROM SATICI WHERE Kullanici_ID<>0 DELETE FROM "
        "DOVIZTANIM WHERE Kullanici_ID<>0 DELETE FROM RENKTANIM DELETE FROM BEDENTANIM DELETE FROM "
        "ISYERIBAGAMBAR DELETE FROM STOKHAREKET");
  }
  void ac(std::unique_ptr<TanimEkrani> yeni) {
    ekran = std::move(yeni);
    kapandi = std::make_unique<QSignalSpy>(ekran.get(), &ui::Kart::kapandi);
    ekran->resize(1000, 650);
    screen::show(*ekran);
    ekran->ac();
  }
  void ac(std::vector<std::string_view> turler) {
    ac(std::make_unique<TanimEkrani>(oturum(), konsol, TanimEkrani::Gorunum{"ambar", "Deneme", turler}));
  }
  ui::Izgara& izgara(const char* ad = "FisGrd") { return *find<ui::Izgara>(*ekran, ad); }
  // Types into the current cell and goes on.
  void gir(const QString& metin) {
    if (!metin.isEmpty()) test::yaz(metin);
    key(Qt::Key_Return);
  }
  std::unique_ptr<TanimEkrani> ekran;
  std::unique_ptr<QSignalSpy> kapandi;
};

TEST_F(TanimEkraniTest, AWarehouseIsTypedMarkedAndSaved) {
  ac({"ambar"});
  EXPECT_EQ(konsol.durum, "Deneme     [F2 -> Kayıt]     [F3 -> Çıkış]");
  izgara().setFocus();
  izgara().git(0, "Merkez_Ambar");
  key(Qt::Key_Return);  // takes the tick off and adds a row
  EXPECT_EQ(izgara().veri().hucre(0, 3), "0");
  EXPECT_EQ(izgara().veri().hucre(1, 1), "2") << "the number above plus 1";
  key(Qt::Key_F2);
  EXPECT_EQ(kutular().last(),
            "Hiçbir Ambar Merkez Olarak Belirlenmemiş Lütfen Ambarlardan Merkez Ambar Olarak Belirleyiniz.");
  izgara().git(1, "Ambar_No");
  gir("1");
  EXPECT_EQ(kutular().last(),
            "Su An Girmiş olduğunuz Ambar Numarası Daha Önceden Bir Ambara Verilmiştir lütfen Değiştirin");
  key(Qt::Key_Escape);
  izgara().git(1, "Merkez_Ambar");
  key(Qt::Key_Space);
  EXPECT_EQ(izgara().veri().hucre(1, 3), "0") << "no tick without a name";
  izgara().git(1, "Ambar_Ad");
  gir("yeni depo");
  key(Qt::Key_Space);
  EXPECT_EQ(izgara().veri().hucre(1, 3), "1");
  key(Qt::Key_F2);
  EXPECT_EQ(kapandi->count(), 1);
  EXPECT_EQ(rows(db, "SELECT Ambar_No,Ambar_Ad,Merkez_Ambar FROM AMBAR ORDER BY Ambar_No"),
            "1|MERKEZ|0\n2|YENİ DEPO|1");
}

TEST_F(TanimEkraniTest, TheTickMovesAndMovedWarehousesKeepTheirNumber) {
  run(db,
      "INSERT INTO AMBAR(Ambar_No,Ambar_Ad,Merkez_Ambar) VALUES(2,'DEPO',0) INSERT INTO "
      "STOKHAREKET(Islem_Tipi,Ambar_No,Fis_No,Stok_Kod) VALUES('Mal',2,'1','A')");
  ac({"ambar"});
  QTest::mouseClick(izgara().viewport(), Qt::LeftButton, {},
                    izgara().visualRect(izgara().veri().index(1, 3)).center());
  EXPECT_EQ(izgara().veri().hucre(0, 3) + izgara().veri().hucre(1, 3), "01");
  EXPECT_FALSE(izgara().veri().duzenlenirMi(1, 1));
  EXPECT_TRUE(izgara().veri().duzenlenirMi(0, 1));
  izgara().setFocus();
  key(Qt::Key_Delete);
  EXPECT_EQ(kutular().last(), "Bu Ambar Hareket Görmüştür. Silinemez");
  izgara().git(0, "Ambar_No");
  kutular().answers = {true};
  key(Qt::Key_Delete);
  EXPECT_EQ(izgara().veri().adet(), 1);
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(izgara().veri().adet(), 2);
}

TEST_F(TanimEkraniTest, WorkplacesLinkTheirWarehousesAtOnce) {
  ac(std::make_unique<IsyeriEkrani>(oturum(), konsol));
  auto& bag = izgara("AmbarFlx");
  QTest::mouseClick(bag.viewport(), Qt::LeftButton, {}, bag.visualRect(bag.veri().index(0, 3)).center());
  EXPECT_EQ(rows(db, "SELECT Isyeri_ID,Ambar_No FROM ISYERIBAGAMBAR"), "1|1");
  oturum().Secili_Firma = db;
  settings::Tanim_Firma_Bagla(oturum());
  izgara().setFocus();
  izgara().git(0, "Isyeri_Adi");
  key(Qt::Key_Return);
  EXPECT_EQ(izgara().veri().adet(), 2);
  key(Qt::Key_Delete);
  EXPECT_EQ(kutular().last(), "Bu İşyeri Silinemez!");
  izgara().git(0, "Isyeri_Kodu");
  key(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(izgara().veri().hucre(1, 0), "2");
  izgara().git(1, "Isyeri_Adi");
  gir("şube ı");
  key(Qt::Key_F2);
  EXPECT_EQ(rows(db, "SELECT Isyeri_Kodu,Isyeri_Adi,Durum FROM ISYERITANIM ORDER BY Isyeri_ID"),
            "1|MERKEZ|1\n2|ŞUBE I|0");
}

TEST_F(TanimEkraniTest, RemovedWorkplacesAreHiddenUntilSavedAndAllMayNotGo) {
  run(db, "INSERT INTO ISYERITANIM(Isyeri_Kodu,Isyeri_Adi) VALUES('2','İKİ')");
  ac(std::make_unique<IsyeriEkrani>(oturum(), konsol));
  izgara().setFocus();
  izgara().git(1, "Isyeri_Kodu");
  key(Qt::Key_Delete);
  EXPECT_FALSE(izgara().isRowHidden(1)) << "the box's default is No";
  kutular().answers = {true};
  key(Qt::Key_Delete);
  EXPECT_TRUE(izgara().isRowHidden(1));
  EXPECT_EQ(izgara().satir(), 0);
  EXPECT_EQ(rows(db, "SELECT COUNT(*) FROM ISYERITANIM"), "2");
  settings::Tanim_Firma_Bagla(oturum());
  key(Qt::Key_F3);
  EXPECT_EQ(kapandi->count(), 0) << "leaving with unsaved rows is asked about";
  key(Qt::Key_F2);
  EXPECT_EQ(kapandi->count(), 1);
  EXPECT_EQ(rows(db, "SELECT Isyeri_Kodu FROM ISYERITANIM"), "1");
}

TEST_F(TanimEkraniTest, SalespeopleGetTheNextCode) {
  ac({"satici"});
  EXPECT_EQ(izgara().veri().hucre(0, 0), "1");
  izgara().setFocus();
  izgara().git(0, "Satici_Adi");
  gir("ayşe");
  key(Qt::Key_Tab);
  key(Qt::Key_Return);
  EXPECT_EQ(izgara().veri().hucre(1, 0), "2");
  key(Qt::Key_F2);
  EXPECT_EQ(kutular().last(), "2. Satırda Satıcının Adı Girilmemiştir. Lütfen Kontrol Ediniz");
  key(Qt::Key_Escape);
  izgara().git(1, "Satici_Adi");
  gir("ali");
  key(Qt::Key_F2);
  EXPECT_EQ(rows(db, "SELECT Satici_Kodu,Satici_Adi,Durum,Kullanici_ID FROM SATICI WHERE Kullanici_ID<>0"),
            "1|AYŞE|1|1\n2|ALİ|0|1");
}

TEST_F(TanimEkraniTest, PricesHaveTenRowsAndTheWarehousePriceByParameter) {
  run("Defination_DB", "UPDATE sysfrmlng SET AmbarKarNoktasidir=1 WHERE sysfrm_dbnm='GUNCEL2012'");
  ac({"fiyat"});
  EXPECT_EQ(izgara().veri().adet(), 10);
  EXPECT_FALSE(izgara().isColumnHidden(3));
  EXPECT_FALSE(izgara().veri().duzenlenirMi(0, 0));
  EXPECT_TRUE(izgara().veri().duzenlenirMi(9, 1));
  izgara().setFocus();
  izgara().git(9, "On_Deger");
  key(Qt::Key_Return);
  EXPECT_EQ(izgara().veri().adet(), 10) << "no row is added";
  EXPECT_EQ(izgara().veri().hucre(0, 2), "0") << "only one price is active";
  key(Qt::Key_Escape);
  EXPECT_EQ(kapandi->count(), 0);
  kutular().answers = {true};
  key(Qt::Key_Escape);
  EXPECT_EQ(kapandi->count(), 1);
  run("Defination_DB", "UPDATE sysfrmlng SET AmbarKarNoktasidir=0");
}

TEST_F(TanimEkraniTest, ColoursSizesAndDropsAreSavedTogether) {
  ac({"renk", "beden", "drop"});
  izgara("RenkFlx").setFocus();
  izgara("RenkFlx").git(0, "Renk_Kod");
  gir("K1");
  gir("Kırmızı");
  izgara("BedenFlx").setFocus();
  izgara("BedenFlx").git(0, "Beden");
  QApplication::clipboard()->setText("S\nM\nL\n");
  key(Qt::Key_V, Qt::ControlModifier);
  key(Qt::Key_F2);
  EXPECT_EQ(kapandi->count(), 1);
  EXPECT_EQ(rows(db, "SELECT Renk_Kod,Renk_Adi FROM RENKTANIM"), "K1|Kırmızı");
  EXPECT_EQ(rows(db, "SELECT Beden_Adi FROM BEDENTANIM ORDER BY Beden_ID"), "S\nM\nL");
}

TEST_F(TanimEkraniTest, AnOldDatabaseClosesTheGridsAndNamesTheWayOut) {
  oturum().Secili_Firma = "BAZ2012";
  ac({"renk", "beden", "drop"});
  EXPECT_FALSE(izgara("RenkFlx").isEnabled());
  EXPECT_NE(find<QLabel>(*ekran, "TanimHata")->text().indexOf("zembera-cli guncelle --ad BAZ2012"), -1);
  EXPECT_FALSE(find<QPushButton>(*ekran, "KaydetBtn")->isEnabled());
}

TEST_F(TanimEkraniTest, TheLaterAdministratorIsToldAndChooses) {
  ac({"ambar"});
  izgara().setFocus();
  izgara().git(0, "Merkez_Ambar");
  key(Qt::Key_Return);
  key(Qt::Key_Tab);
  gir("benim");
  key(Qt::Key_Space);
  run(db,
      "UPDATE AMBAR SET Ambar_Ad='ANA' INSERT INTO AMBAR(Ambar_No,Ambar_Ad,Merkez_Ambar) VALUES(2,'ONUN',0)");
  const auto kaydet = [&] {
    settings::Tanim_Firma_Bagla(oturum());
    kutular().shown.clear();
    key(Qt::Key_F2);
  };
  kaydet();
  EXPECT_EQ(kutular().texts(),
            std::vector<std::string>{
                "Bu tanımlar siz çalışırken başkası tarafından değiştirildi:\n\n1 MERKEZ: Ambar Adı: MERKEZ "
                "→ ANA\n2 "
                "ONUN: eklendi\n\nSizin değiştirdikleriniz yine de yazılsın mı? (Hayır derseniz hiçbir şey "
                "yazılmaz.)"});
  EXPECT_EQ(rows(db, "SELECT Ambar_No,Ambar_Ad FROM AMBAR ORDER BY Ambar_No"), "1|ANA\n2|ONUN");
  EXPECT_EQ(kapandi->count(), 0);
  kutular().answers = {true};
  kaydet();
  EXPECT_EQ(kapandi->count(), 1);
  EXPECT_EQ(rows(db, "SELECT Ambar_No,Ambar_Ad,Merkez_Ambar FROM AMBAR ORDER BY Ambar_No"),
            "1|MERKEZ|0\n2|BENİM|1")
      << "where both changed a row, the user's stands";
}

TEST_F(TanimEkraniTest, TypingInTheSearchBoxGoesToTheRow) {
  run(db,
      "INSERT INTO AMBAR(Ambar_No,Ambar_Ad) VALUES(12,'ŞİŞLİ DEPO') INSERT INTO AMBAR(Ambar_No,Ambar_Ad) "
      "VALUES(20,'DEPO')");
  ac({"ambar"});
  auto* kutu = find<QLineEdit>(*ekran, "FisGrd_Arama");
  type(kutu, "dep");
  EXPECT_EQ(kutu->text(), "DEP");
  EXPECT_EQ(izgara().satir(), 2) << "a beginning comes before a middle";
  type(kutu, "şi");
  EXPECT_EQ(izgara().satir(), 1);
  type(kutu, "E");
  EXPECT_EQ(izgara().satir(), 0);
  key(Qt::Key_Return);
  EXPECT_EQ(izgara().satir(), 1) << "on to the next one";
  type(kutu, "20");
  EXPECT_EQ(izgara().satir(), 2);
  key(Qt::Key_Down);
  EXPECT_EQ(focusName(), "FisGrd");
  QTest::mouseClick(find<QToolButton>(*ekran, "KapatButon"), Qt::LeftButton);
  EXPECT_EQ(kapandi->count(), 1);
}

TEST_F(TanimEkraniTest, TenThousandPastedRowsPassTheChecksOrNoneDoes) {
  ac({"ambar"});
  izgara().setFocus();
  izgara().git(0, "Ambar_No");
  key(Qt::Key_Down);
  QString blok;
  for (int no = 1; no <= 10000; ++no) blok += QString("%1\tAMBAR %1\t%2\n").arg(no).arg(no == 1);
  QApplication::clipboard()->setText(blok + "5000\tÇİFT\t0\n");
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(
      kutular().last(),
      "Yapıştırılan 10001. satır: Su An Girmiş olduğunuz Ambar Numarası Daha Önceden Bir Ambara Verilmiştir "
      "lütfen Değiştirin");
  EXPECT_EQ(izgara().veri().adet(), 1);
  EXPECT_FALSE(izgara().veri().degisti());
  QApplication::clipboard()->setText(blok);
  key(Qt::Key_V, Qt::ControlModifier);
  key(Qt::Key_F2);
  EXPECT_EQ(kapandi->count(), 1) << kutular().last();
  EXPECT_EQ(rows(db, "SELECT COUNT(*),MIN(Ambar_No),MAX(Ambar_Ad),SUM(CONVERT(INT,Merkez_Ambar)) FROM AMBAR"),
            "10000|1|AMBAR 9999|1");
}

TEST_F(TanimEkraniTest, AnEmptyTableStartsAndIsRefusedByItsRules) {
  run(db, "DELETE FROM AMBAR DELETE FROM FIYATTANIM");
  ac({"ambar"});
  key(Qt::Key_F2);
  EXPECT_EQ(kutular().last(), "Fis Boş Kaydedilemez");
  ac({"fiyat"});
  EXPECT_EQ(izgara().veri().adet(), 10);
  izgara().setFocus();
  izgara().git(1, "Fiyat_Aciklama");
  gir("toptan");
  key(Qt::Key_Space);
  key(Qt::Key_F2);
  EXPECT_EQ(rows(db, "SELECT Sira_No,Fiyat_Aciklama,On_Deger FROM FIYATTANIM WHERE Sira_No IN (2,10)"),
            "2|TOPTAN|1\n10||0");
  run(db, "UPDATE FIYATTANIM SET On_Deger=CASE Sira_No WHEN 1 THEN 1 ELSE 0 END");
}

TEST_F(TanimEkraniTest, DownMakesTheNextColourAndAnEmptyRowIsNotPassed) {
  run(db, "INSERT INTO RENKTANIM(Renk_Kod,Renk_Adi) VALUES('K','Kara')");
  ac({"renk", "beden", "drop"});
  auto& renk = izgara("RenkFlx");
  renk.setFocus();
  renk.git(0, "Renk_Kod");
  key(Qt::Key_Down);
  EXPECT_EQ(renk.veri().adet(), 2);
  EXPECT_EQ(renk.satir(), 1);
  key(Qt::Key_Down);
  EXPECT_EQ(renk.veri().adet(), 2);
  renk.veri().satirEkle(2);
  key(Qt::Key_Down);
  QCoreApplication::processEvents();
  EXPECT_EQ(renk.satir(), 1);
  EXPECT_EQ(renk.currentIndex().column(), 2) << "back to the name";
  EXPECT_TRUE(renk.property("odakta").toBool()) << "painted in orange";
  izgara("BedenFlx").setFocus();
  EXPECT_FALSE(renk.property("odakta").toBool());
}

TEST_F(TanimEkraniTest, FiveThousandRowsOpenWithoutAStatementARow) {
  std::string deyim;
  for (int i = 0; i < 5000; ++i) {
    deyim += "INSERT INTO RENKTANIM(Renk_Kod,Renk_Adi) VALUES('" + std::to_string(i) + "','R')";
    if (i % 500 != 499) continue;
    run(db, deyim);
    deyim.clear();
  }
  const auto sayi = deyimler([&] { ac({"renk", "beden", "drop"}); }).size();
  EXPECT_LE(sayi, 6U);
  EXPECT_EQ(izgara("RenkFlx").veri().adet(), 5000);
  EXPECT_TRUE(deyimler([&] {
                izgara("RenkFlx").scrollToBottom();
                izgara("RenkFlx").git(4999, "Renk");
                QCoreApplication::processEvents();
              }).empty());
}

}  // namespace
}  // namespace settings_ui
