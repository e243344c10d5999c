// Turns the program's icons into recorded painter commands, so that it shows them sharp at every scale
// without an SVG reader in memory.
//   icon_pictures OUTPUT-FOLDER FILE.svg...   makes NAME.pic of each
#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPicture>
#include <QSvgRenderer>
#include <cstdio>

namespace {

bool convert(const QString& from, const QString& to) {
  QSvgRenderer drawing(from);
  if (!drawing.isValid() || drawing.animated()) return false;
  const QRect frame = drawing.viewBox();
  QPicture picture;
  QPainter painter(&picture);
  drawing.render(&painter, frame);
  painter.end();
  QFile file(to);
  if (!file.open(QIODevice::WriteOnly)) return false;
  QDataStream out(&file);
  out << frame << picture;  // the picture itself knows only how far the paint went
  return file.flush() && out.status() == QDataStream::Ok;
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 2; i < argc; ++i) {
    const QString file = QFile::decodeName(argv[i]);
    const QString to = QFile::decodeName(argv[1]) + "/" + QFileInfo(file).completeBaseName() + ".pic";
    if (convert(file, to)) continue;
    std::fprintf(stderr, "%s cannot be recorded\n", argv[i]);
    return 1;
  }
  return 0;
}
