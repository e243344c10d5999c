#include "ui/picture_icon.h"

#include <QApplication>
#include <QDataStream>
#include <QFile>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPicture>
#include <QPixmapCache>
#include <QStyle>
#include <QStyleOption>

#include "ui/renkler.h"

namespace ui {
namespace {

// Larger ones are drawn straight onto the window: kept as pixels they would outlive it in the toolkit's
// cache.
constexpr int largestKept = 128;

// The drawing for the dark scheme: each point as renkler turns it.
void darken(QPixmap& pixmap) {
  QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
  for (int y = 0; y < image.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x)
      if (qAlpha(line[x]) != 0) line[x] = koyuRenk(QColor::fromRgba(line[x])).rgba();
  }
  const qreal ratio = pixmap.devicePixelRatio();
  pixmap = QPixmap::fromImage(image);
  pixmap.setDevicePixelRatio(ratio);
}

class PictureIconEngine : public QIconEngine {
 public:
  void addFile(const QString& file, const QSize&, QIcon::Mode, QIcon::State) override { file_ = file; }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    if (std::max(rect.width(), rect.height()) > largestKept) {
      draw(painter, rect);
      return;
    }
    const qreal scale = painter->device() ? painter->device()->devicePixelRatio() : qApp->devicePixelRatio();
    painter->drawPixmap(rect, pixmap(rect.size() * scale, mode, state));
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    const QString key =
        QString("%1 %2 %3 %4 %5").arg(file_).arg(size.width()).arg(size.height()).arg(mode).arg(koyuMu());
    QPixmap result;
    if (QPixmapCache::find(key, &result)) return result;
    result = drawn(size);
    if (koyuMu()) darken(result);
    if (mode != QIcon::Normal && !result.isNull()) {
      QStyleOption option;
      option.palette = QApplication::palette();
      result = QApplication::style()->generatedIconPixmap(mode, result, &option);
    }
    QPixmapCache::insert(key, result);
    return result;
  }

  QString key() const override { return "pic"; }
  QIconEngine* clone() const override { return new PictureIconEngine(*this); }

 private:
  struct Drawing {
    QRect frame;  // empty without a drawing
    QPicture picture;
  };

  Drawing load() const {
    Drawing result;
    QFile file(file_);
    if (!file.open(QIODevice::ReadOnly)) return result;
    QDataStream in(&file);
    in >> result.frame >> result.picture;
    if (in.status() != QDataStream::Ok) result.frame = {};
    return result;
  }

  // As large as fits into `size` in its own proportions; null without a drawing.
  QPixmap drawn(const QSize& size) const {
    const QSize fitted = load().frame.size().scaled(size, Qt::KeepAspectRatio);
    if (fitted.isEmpty()) return {};
    QPixmap result(fitted);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    draw(&painter, result.rect());
    return result;
  }

  void draw(QPainter* painter, const QRect& place) const {
    Drawing drawing = load();
    const QRect frame = drawing.frame;
    if (frame.isEmpty()) return;
    painter->save();
    painter->setClipRect(place);
    painter->translate(place.topLeft());
    painter->scale(static_cast<qreal>(place.width()) / frame.width(),
                   static_cast<qreal>(place.height()) / frame.height());
    painter->translate(-frame.topLeft());
    drawing.picture.play(painter);
    painter->restore();
  }

  QString file_;
};

}  // namespace

QIconEngine* PictureIconPlugin::create(const QString& file) {
  auto* engine = new PictureIconEngine;
  if (!file.isEmpty()) engine->addFile(file, {}, QIcon::Normal, QIcon::Off);
  return engine;
}

}  // namespace ui
