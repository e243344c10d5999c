#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include "screen.h"
#include "ui/theme.h"

namespace {

int farthest(const QImage& left, const QImage& right) {
  int most = 0;
  for (int y = 0; y < left.height(); ++y)
    for (int x = 0; x < left.width(); ++x)
      for (int shift = 0; shift < 32; shift += 8)
        most = std::max(most, std::abs(static_cast<int>(left.pixel(x, y) >> shift & 0xFF) -
                                       static_cast<int>(right.pixel(x, y) >> shift & 0xFF)));
  return most;
}

// What was recorded when the program was built is the drawing, at small sizes and where it is not kept.
TEST(Icons, LookAsTheyAreDrawn) {
  const QDir drawings(ZEMBERA_DATA "/../src/ui/icons");
  const QStringList files = drawings.entryList({"*.svg"});
  ASSERT_FALSE(files.isEmpty());
  for (const QString& file : files) {
    QSvgRenderer drawing(drawings.filePath(file));
    for (const int edge : {16, 24, 200}) {
      const QSize size = drawing.viewBox().size().scaled(QSize(edge, edge), Qt::KeepAspectRatio);
      QImage wanted(size, QImage::Format_ARGB32_Premultiplied), shown(wanted);
      wanted.fill(Qt::transparent);
      shown.fill(Qt::transparent);
      QPainter drawer(&wanted), painter(&shown);
      drawing.render(&drawer);
      ui::icon(file.chopped(4)).paint(&painter, shown.rect());
      EXPECT_LE(farthest(wanted, shown), 8) << qPrintable(file) << " " << edge;
    }
  }
}

TEST(Icons, AreGreyedWhenDisabled) {
  const QImage normal = ui::icon("firma").pixmap(QSize(24, 24), 1.0).toImage();
  const QImage disabled = ui::icon("firma").pixmap(QSize(24, 24), 1.0, QIcon::Disabled).toImage();
  ASSERT_EQ(normal.size(), QSize(24, 24));
  EXPECT_NE(normal, disabled);
}

}  // namespace
