// Contrast over the pairs of the style sheet and the palette, in both schemes: 4.5:1 for text, 3:1 for marks
// and the rings of the focus.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QHeaderView>
#include <QMap>
#include <QPalette>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTreeWidget>

#include "ui/renkler.h"

namespace {

struct Kural {
  QString secici;
  QMap<QString, QColor> renkler;  // property and its colour
};

std::vector<Kural> kurallar(bool koyu) {
  QFile dosya(":/theme.qss");
  EXPECT_TRUE(dosya.open(QIODevice::ReadOnly));
  const QString sayfa =
      ui::sayfaRenkleri(QString::fromUtf8(dosya.readAll()), koyu)
          .remove(QRegularExpression("/\\*.*?\\*/", QRegularExpression::DotMatchesEverythingOption));
  static const QRegularExpression blok("([^{}]+)\\{([^}]*)\\}");
  static const QRegularExpression deger("([a-z-]+)\\s*:[^;]*?(#[0-9a-fA-F]{6})");
  std::vector<Kural> sonuc;
  for (auto b = blok.globalMatch(sayfa); b.hasNext();) {
    const auto eslesen = b.next();
    Kural kural{eslesen.captured(1).simplified(), {}};
    for (auto d = deger.globalMatch(eslesen.captured(2)); d.hasNext();) {
      const auto tek = d.next();
      kural.renkler[tek.captured(1)] = QColor(tek.captured(2));
    }
    sonuc.push_back(kural);
  }
  EXPECT_GT(sonuc.size(), 60U);
  return sonuc;
}

QColor zemin(const char* acik, bool koyu) {
  return koyu ? ui::koyuRenk(QColor(acik)) : QColor(acik);
}

class Renkler : public testing::TestWithParam<bool> {};

TEST_P(Renkler, EveryTextIsReadable) {
  const bool koyu = GetParam();
  for (const Kural& kural : kurallar(koyu)) {
    for (const auto& [yazi, arka] :
         {std::pair{"color", "background"}, {"selection-color", "selection-background-color"}}) {
      if (!kural.renkler.contains(yazi)) continue;
      std::vector<QColor> zeminler;
      if (kural.renkler.contains(arka))
        zeminler = {kural.renkler[arka]};
      else if (kural.secici.contains("kenar") || kural.secici.contains("menu"))
        zeminler = {zemin("#e9eef4", koyu)};
      else
        zeminler = {zemin("#ffffff", koyu), zemin("#f3f5f8", koyu)};
      for (const QColor& z : zeminler)
        EXPECT_GE(ui::karsitlik(kural.renkler[yazi], z), 4.5)
            << kural.secici.toStdString() << " " << kural.renkler[yazi].name().toStdString() << " on "
            << z.name().toStdString();
    }
  }
}

TEST_P(Renkler, MarksAndFocusRingsStandOut) {
  const bool koyu = GetParam();
  int sinanan = 0;
  for (const Kural& kural : kurallar(koyu)) {
    const bool ring = kural.secici.contains(":focus");
    const bool field = kural.secici == "QLineEdit" || kural.secici == "QPushButton" ||
                       kural.secici == "QComboBox" || kural.secici.contains("[odak=\"renk\"]") ||
                       kural.secici.contains("[odak=\"giris\"]");
    const bool mark = kural.secici.endsWith("indicator") || kural.secici == "QScrollBar::handle" ||
                      kural.secici == "QProgressBar::chunk";
    if (!ring && !field && !mark) continue;
    for (const char* ozellik : {"border", "border-color", "border-bottom", "color", "background"}) {
      const QString ad = ozellik;
      if (!kural.renkler.contains(ad)) continue;
      if ((ad == "background" && !kural.secici.contains("handle") && !kural.secici.contains("chunk")) ||
          ad == "color")
        continue;
      ++sinanan;
      for (const char* z : {"#ffffff", "#f3f5f8"})
        EXPECT_GE(ui::karsitlik(kural.renkler[ad], zemin(z, koyu)), 3)
            << kural.secici.toStdString() << " " << ozellik << " " << kural.renkler[ad].name().toStdString()
            << " on " << zemin(z, koyu).name().toStdString();
    }
  }
  EXPECT_GT(sinanan, 10);
}

// As they are drawn: a widget that the sheet forgets shows the pale marks of the toolkit's own style.
TEST_P(Renkler, UncheckedMarksAreSeenWhereTheyAreDrawn) {
  const bool koyu = GetParam();
  const QString eskiSayfa = qApp->styleSheet();
  const QPalette eskiPalet = QApplication::palette();
  QPalette palet = eskiPalet;
  for (const auto rol : {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::Text})
    palet.setColor(rol, koyu ? ui::koyuRenk(eskiPalet.color(rol)) : eskiPalet.color(rol));
  QFile dosya(":/theme.qss");
  ASSERT_TRUE(dosya.open(QIODevice::ReadOnly));
  QApplication::setPalette(palet);
  qApp->setStyleSheet(ui::sayfaRenkleri(QString::fromUtf8(dosya.readAll()), koyu));
  {
    QCheckBox kutu;
    QRadioButton dugme;
    QTableWidget tablo(1, 1);
    tablo.horizontalHeader()->hide();
    tablo.verticalHeader()->hide();
    tablo.setShowGrid(false);
    auto* hucre = new QTableWidgetItem;
    hucre->setCheckState(Qt::Unchecked);
    tablo.setItem(0, 0, hucre);
    QTreeWidget agac;
    agac.setHeaderHidden(true);
    agac.setRootIsDecorated(false);
    (new QTreeWidgetItem(&agac))->setCheckState(0, Qt::Unchecked);
    const std::pair<QWidget*, const char*> aletler[] = {{&kutu, "check box"},
                                                        {&dugme, "radio button"},
                                                        {tablo.viewport(), "table"},
                                                        {agac.viewport(), "tree"}};
    for (const auto& [alet, ad] : aletler) {
      alet->window()->resize(200, 60);
      const QImage resim = alet->grab().toImage();
      const QColor arka = resim.pixelColor(resim.width() - 3, resim.height() - 3);
      int gorunen = 0;
      for (int y = 0; y < resim.height(); ++y)
        for (int x = 0; x < std::min(resim.width(), 40); ++x)
          gorunen += ui::karsitlik(resim.pixelColor(x, y), arka) >= 3 ? 1 : 0;
      EXPECT_GE(gorunen, 16) << ad << ": smoothing leaves a round ring half of its pixels";
    }
  }
  qApp->setStyleSheet(eskiSayfa);
  QApplication::setPalette(eskiPalet);
}

INSTANTIATE_TEST_SUITE_P(IkiDuzen, Renkler, testing::Values(false, true),
                         [](const auto& info) { return info.param ? "Koyu" : "Acik"; });

TEST(Palet, TextOnItsOwnGroundIsReadableInBothSchemes) {
  const std::pair<QPalette::ColorRole, QPalette::ColorRole> ciftler[] = {
      {QPalette::WindowText, QPalette::Window},         {QPalette::Text, QPalette::Base},
      {QPalette::ButtonText, QPalette::Button},         {QPalette::PlaceholderText, QPalette::Base},
      {QPalette::HighlightedText, QPalette::Highlight}, {QPalette::ToolTipText, QPalette::ToolTipBase}};
  const QPalette palet = QApplication::palette();
  for (const auto grup : {QPalette::Active, QPalette::Disabled})
    for (const auto& [yazi, arka] : ciftler) {
      const QColor a = palet.color(grup, yazi), b = palet.color(grup, arka);
      EXPECT_GE(ui::karsitlik(a, b), 4.5) << yazi << grup;
      EXPECT_GE(ui::karsitlik(ui::koyuRenk(a), ui::koyuRenk(b)), 4.5) << yazi << grup;
    }
}

}  // namespace
