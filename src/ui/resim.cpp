#include "ui/resim.h"

#include <QEvent>

#include "ui/theme.h"

namespace ui {

Resim::Resim(int kenar, const QString& ad) : kenar_(kenar) {
  goster(ad);
}

void Resim::goster(const QString& ad) {
  ad_ = ad;
  ciz();
}

void Resim::ciz() {
  if (!ad_.isEmpty()) setPixmap(icon(ad_).pixmap(QSize(kenar_, kenar_), devicePixelRatioF()));
}

void Resim::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ciz();
}

}  // namespace ui
