// Draws the program's icon in the sizes of the icon theme.
//   icon_sizes DRAWING.svg OUTPUT-FOLDER NAME SIZE...   makes SIZExSIZE/apps/NAME.png of each
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

int main(int argc, char** argv) {
  if (argc < 5) return 2;
  QSvgRenderer drawing(QFile::decodeName(argv[1]));
  for (int i = 4; i < argc && drawing.isValid(); ++i) {
    const int size = QString(argv[i]).toInt();
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.end();
    const QString folder = QString("%1/%2x%2/apps").arg(QFile::decodeName(argv[2])).arg(size);
    if (size > 0 && QDir().mkpath(folder) && image.save(folder + "/" + QFile::decodeName(argv[3]) + ".png"))
      continue;
    std::fprintf(stderr, "%s cannot be drawn with %s pixels\n", argv[1], argv[i]);
    return 1;
  }
  return drawing.isValid() ? 0 : 1;
}
