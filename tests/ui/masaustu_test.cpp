// The program follows the desktop while it runs: from light to dark and back, with every open window.
#include <QApplication>
#include <QCheckBox>
#include <QVBoxLayout>

#include "screen.h"
#include "ui/date_edit.h"
#include "ui/renkler.h"
#include "ui/resim.h"
#include "ui/theme.h"

namespace {

using namespace screen;

// The colour that covers most of it.
QRgb zemin(QWidget& widget) {
  const QImage resim = widget.grab().toImage();
  std::map<QRgb, int> sayi;
  for (int y = 0; y < resim.height(); ++y)
    for (int x = 0; x < resim.width(); ++x) ++sayi[resim.pixel(x, y) & 0xFFFFFF];
  return std::ranges::max_element(sayi, {}, [](const auto& each) { return each.second; })->first;
}

// The colour of a drawing's line, on whatever ground.
QRgb cizgi(const QPixmap& resim) {
  const QImage image = resim.toImage().convertToFormat(QImage::Format_ARGB32);
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (qAlpha(image.pixel(x, y)) == 255) return image.pixel(x, y) & 0xFFFFFF;
  return 0;
}

void masaustuDegisti(const QColor& zemin, QWidget& pencere) {
  desktop = QPalette(zemin);
  QEvent degisim(QEvent::ThemeChange);
  QApplication::sendEvent(&pencere, &degisim);
  QCoreApplication::processEvents();
}

TEST(Masaustu, DarkAndLightFollowWhileWindowsAreOpen) {
  QWidget pencere;
  auto* layout = new QVBoxLayout(&pencere);
  auto* alan = new QLineEdit;
  auto* resim = new ui::Resim(48, "firma");
  layout->addWidget(alan);
  layout->addWidget(resim);
  layout->addStretch(1);
  pencere.resize(400, 300);
  screen::show(pencere);
  ASSERT_FALSE(ui::koyuMu());
  const QRgb acikCizgi = cizgi(resim->pixmap());
  for (int tur = 0; tur < 2; ++tur) {
    EXPECT_EQ(zemin(pencere), 0xF3F5F8U);
    EXPECT_EQ(zemin(*alan), 0xFFFFFFU);
    EXPECT_EQ(cizgi(resim->pixmap()), acikCizgi);
    masaustuDegisti(QColor(0x202020), pencere);
    EXPECT_TRUE(ui::koyuMu());
    EXPECT_EQ(zemin(pencere), ui::koyuRenk(QColor(0xF3F5F8)).rgb() & 0xFFFFFF);
    EXPECT_EQ(zemin(*alan), ui::koyuRenk(Qt::white).rgb() & 0xFFFFFF);
    EXPECT_EQ(cizgi(resim->pixmap()), ui::koyuRenk(QColor(acikCizgi)).rgb() & 0xFFFFFF);
    masaustuDegisti(QColor(0xF0F0F0), pencere);
  }
}

TEST(Masaustu, AChosenSchemeStays) {
  QWidget pencere;
  screen::show(pencere);
  ui::renkDuzeniSec(ui::RenkDuzeni::Acik);
  masaustuDegisti(QColor(0x202020), pencere);
  EXPECT_FALSE(ui::koyuMu());
  ui::renkDuzeniSec(ui::RenkDuzeni::Masaustu);
  masaustuDegisti(QColor(0xF0F0F0), pencere);
  EXPECT_FALSE(ui::koyuMu());
}

}  // namespace
