#include "ui/izgara.h"

#include <QClipboard>
#include <QHeaderView>
#include <QPushButton>
#include <QShortcut>
#include <QSignalSpy>
#include <QVBoxLayout>

#include "screen.h"

namespace {

using namespace screen;
using session::HucreTuru;

ui::IzgaraModeli::Kolonlar kolonlar() {
  return {{"ID", "ID", 40, HucreTuru::Sayi, true},
          {"Kod", "Kodu", 80, HucreTuru::Metin, false, false, true, 5},
          {"Ad", "Adı", 160},
          {"Ambar", "Ambar", 120, HucreTuru::Liste},
          {"Aktif", "Aktif", 60, HucreTuru::Tik}};
}

class IzgaraTest : public testing::Test, protected support::FakeSurroundings {
 protected:
  IzgaraTest() : izgara(oturum, "Deneme.FisGrd", kolonlar(), &pencere) {
    auto* duzen = new QVBoxLayout(&pencere);
    duzen->addWidget(&izgara);
    pencere.resize(600, 300);
    izgara.listeKur("Ambar", {{"0", "0 Bağlı Değil"}, {"2", "2 Depo"}});
    izgara.doldur({{{"1", "A1", "Merkez", "2", "1"}}, {{"2", "A2", "Şube", "0", "0"}}});
    screen::show(pencere);
    izgara.setFocus();
    izgara.git(0, "Kod");
  }
  // The whole grid, a line per row, hidden rows in brackets.
  std::string hepsi() const {
    std::string metin;
    for (const auto& satir : izgara.veri().satirlar()) {
      std::string hucreler;
      for (std::size_t i = 0; i < satir.hucreler.size(); ++i) hucreler += (i ? "|" : "") + satir.hucreler[i];
      metin += (metin.empty() ? "" : "\n") + (satir.gizli ? "[" + hucreler + "]" : hucreler);
    }
    return metin;
  }
  void typeKeys(const QString& metin) {
    for (const QChar harf : metin) {
      QKeyEvent press(QEvent::KeyPress, harf.unicode() < 128 ? harf.toUpper().unicode() : 0, Qt::NoModifier,
                      QString(harf));
      QApplication::sendEvent(QApplication::focusWidget(), &press);
    }
  }
  std::pair<int, int> yer() const { return {izgara.currentIndex().row(), izgara.currentIndex().column()}; }
  QWidget pencere;
  ui::Izgara izgara;
};

TEST_F(IzgaraTest, TypingEntersTheTextAndEnterGoesOnToANewRow) {
  typeKeys("iş9");
  key(Qt::Key_Return);
  EXPECT_EQ(yer(), std::pair(0, 2));
  typeKeys("Yeni ad");
  key(Qt::Key_Tab);
  EXPECT_EQ(yer(), std::pair(0, 3));
  EXPECT_EQ(hepsi(), "1|İŞ9|Yeni ad|2|1\n2|A2|Şube|0|0");
  izgara.git(1, "Aktif");
  key(Qt::Key_Return);
  EXPECT_EQ(yer(), std::pair(2, 1));
  EXPECT_EQ(hepsi(), "1|İŞ9|Yeni ad|2|1\n2|A2|Şube|0|1\n||||");
  EXPECT_TRUE(izgara.veri().satirDegisti(0));
  EXPECT_FALSE(izgara.veri().satirDegisti(2));
  EXPECT_EQ(izgara.veri().headerData(0, Qt::Vertical, Qt::DisplayRole).toString(), "● 1");
}

TEST_F(IzgaraTest, ArrowsMoveAndLeaveAnEditorWithItsText) {
  const std::pair<Qt::Key, std::pair<int, int>> adimlar[] = {{Qt::Key_Down, {1, 1}},
                                                             {Qt::Key_Right, {1, 2}},
                                                             {Qt::Key_Up, {0, 2}},
                                                             {Qt::Key_Left, {0, 1}},
                                                             {Qt::Key_Left, {0, 1}}};
  for (const auto& [tus, sonra] : adimlar) {
    key(tus);
    EXPECT_EQ(yer(), sonra) << tus;
  }
  typeKeys("b");
  key(Qt::Key_Down);
  EXPECT_EQ(yer(), std::pair(1, 1));
  EXPECT_EQ(hepsi(), "1|B|Merkez|2|1\n2|A2|Şube|0|0");
  key(Qt::Key_Backtab, Qt::ShiftModifier);  // what a keyboard sends for Shift+Tab
  EXPECT_EQ(yer(), std::pair(0, 4));
}

TEST_F(IzgaraTest, EscapeGivesTheOldTextBackAndDoesNotReachTheScreen) {
  QPushButton cikis(&pencere);
  QShortcut escape(QKeySequence(Qt::Key_Escape), &pencere);
  QSignalSpy kapat(&escape, &QShortcut::activated);
  typeKeys("X");
  key(Qt::Key_Escape);
  EXPECT_EQ(hepsi(), "1|A1|Merkez|2|1\n2|A2|Şube|0|0");
  EXPECT_EQ(kapat.count(), 0);
  key(Qt::Key_Escape);
  EXPECT_EQ(kapat.count(), 1);
}

TEST_F(IzgaraTest, F2EditsOnlyWhereTheScreenHasNoUseForIt) {
  key(Qt::Key_F2);
  ASSERT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
  EXPECT_EQ(static_cast<QLineEdit*>(QApplication::focusWidget())->maxLength(), 5);
  key(Qt::Key_Escape);
  QShortcut f2(QKeySequence(Qt::Key_F2), &pencere);
  QSignalSpy kaydet(&f2, &QShortcut::activated);
  key(Qt::Key_F2);
  EXPECT_EQ(kaydet.count(), 1);
  EXPECT_EQ(QApplication::focusWidget(), &izgara);
}

TEST_F(IzgaraTest, ARefusedTextStaysInItsEditorUntilItIsRight) {
  izgara.veri().denetim = [](int, int, std::string& metin) {
    return metin == "KÖTÜ" ? std::string("Olmaz") : std::string();
  };
  typeKeys("kötü");
  key(Qt::Key_Return);
  EXPECT_EQ(boxes.texts(), std::vector<std::string>{"Olmaz"});
  EXPECT_EQ(yer(), std::pair(0, 1));
  auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(editor->text(), "KÖTÜ");
  EXPECT_EQ(izgara.veri().hucre(0, 1), "A1");
  typeKeys("iyi");
  key(Qt::Key_Return);
  EXPECT_EQ(izgara.veri().hucre(0, 1), "İYİ");
  EXPECT_EQ(boxes.shown.size(), 1U);
}

TEST_F(IzgaraTest, ClicksAndSpaceToggleATick) {
  const QPoint tik = izgara.visualRect(izgara.veri().index(1, 4)).center();
  QTest::mouseClick(izgara.viewport(), Qt::LeftButton, {}, tik);
  EXPECT_EQ(izgara.veri().hucre(1, 4), "1");
  key(Qt::Key_Space);
  EXPECT_EQ(izgara.veri().hucre(1, 4), "0");
}

TEST_F(IzgaraTest, ABlockOfASpreadsheetGoesInWholeOrNotAtAll) {
  izgara.git(1, "Kod");
  QApplication::clipboard()->setText("b1\tBir\t2\tevet\r\nb2\t\"İki\nsatır\"\t0\tFALSE\r\n");
  key(Qt::Key_V, Qt::ControlModifier);
  const std::string sonra = "1|A1|Merkez|2|1\n2|B1|Bir|2|1\n|B2|İki\nsatır|0|0";
  EXPECT_EQ(hepsi(), sonra);
  const struct {
    const char *blok, *hata;
  } kotuler[] = {
      {"c1\tBir\nÇOKUZUN\tİki",
       "Yapıştırılan 2. satır: Kodu: “ÇOKUZUN” çok uzun, en çok 5 karakter girilebilir."},
      {"c1\tBir\t7", "Yapıştırılan 1. satır: Ambar: “7” listede yok."},
      {"c1\tBir\t2\tbelki", "Yapıştırılan 1. satır: Aktif: “belki” evet ya da hayır değil."},
      {"c1\t日本", "Yapıştırılan 1. satır: Adı: “日” harfi kullanılamaz (1254 Türkçe kod sayfasında yok)."}};
  for (const auto& kotu : kotuler) {
    QApplication::clipboard()->setText(kotu.blok);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(boxes.last(), kotu.hata);
    EXPECT_EQ(hepsi(), sonra) << kotu.blok;
  }
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(hepsi(), "1|A1|Merkez|2|1\n2|A2|Şube|0|0");
  EXPECT_FALSE(izgara.veri().degisti());
  key(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(hepsi(), sonra);
}

TEST_F(IzgaraTest, CopyingTakesTheSelectedCellsAsText) {
  izgara.git(0, "Kod");
  for (const Qt::Key tus : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Down}) key(tus, Qt::ShiftModifier);
  key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "A1\tMerkez\t2\nA2\tŞube\t0");
}

TEST_F(IzgaraTest, TenThousandPastedRowsAreOneStep) {
  QString blok;
  for (int i = 0; i < 10000; ++i) blok += QString("K%1\tAd %1\t0\t0\n").arg(i);
  QApplication::clipboard()->setText(blok);
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(izgara.veri().adet(), 10000);
  EXPECT_EQ(izgara.veri().hucre(9999, 2), "Ad 9999");
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(hepsi(), "1|A1|Merkez|2|1\n2|A2|Şube|0|0");
}

TEST_F(IzgaraTest, RemovedRowsHideAndComeBack) {
  izgara.veri().gizle(0);
  EXPECT_TRUE(izgara.isRowHidden(0));
  EXPECT_EQ(hepsi(), "[1|A1|Merkez|2|1]\n2|A2|Şube|0|0");
  EXPECT_TRUE(izgara.veri().degisti());
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_FALSE(izgara.isRowHidden(0));
  izgara.veri().satirCikar(0);
  EXPECT_TRUE(izgara.veri().degisti());
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_FALSE(izgara.veri().degisti());
}

TEST_F(IzgaraTest, LeavingWithUnsavedRowsAsks) {
  EXPECT_TRUE(izgara.birakilir());
  EXPECT_TRUE(boxes.shown.empty());
  typeKeys("Z");
  key(Qt::Key_Return);
  EXPECT_FALSE(izgara.birakilir());
  boxes.answers = {true};
  EXPECT_TRUE(izgara.birakilir());
  EXPECT_EQ(boxes.last(), "Kaydedilmemiş satırlar var. Kaydetmeden çıkmak istiyor musunuz?");
}

TEST_F(IzgaraTest, WidthsAreKept) {
  pencere.resize(900, 300);
  QTest::qWait(600);
  EXPECT_EQ(platform.registryRead("HKEY_CURRENT_USER", "Software\\Korvena\\Zembera\\Izgara", "Deneme.FisGrd"),
            "")
      << "a wider window is no wish for widths";
  izgara.horizontalHeader()->resizeSection(2, 231);
  QTRY_COMPARE_WITH_TIMEOUT(QString::fromStdString(platform.registryRead(
                                "HKEY_CURRENT_USER", "Software\\Korvena\\Zembera\\Izgara", "Deneme.FisGrd")),
                            QString("0,80,231,120,") + QString::number(izgara.columnWidth(4)), 2000);
  ui::Izgara ikinci(oturum, "Deneme.FisGrd", kolonlar());
  EXPECT_EQ(ikinci.columnWidth(2), 231);
}

TEST_F(IzgaraTest, ARowThatMayNotBeEnteredIsLeft) {
  izgara.girilir = [this](int satir) { return satir == 0 || !izgara.veri().hucre(satir - 1, 1).empty(); };
  izgara.veri().satirEkle(2);
  izgara.veri().satirEkle(3);
  izgara.git(2, "Kod");
  key(Qt::Key_Down);
  QCoreApplication::processEvents();
  EXPECT_EQ(yer(), std::pair(2, 1));
}

}  // namespace
