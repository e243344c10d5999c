#include "settings/ui/renk_paneli.h"

#include <QColorDialog>
#include <QPainter>

#include "ui/renkler.h"
#include "ui/theme.h"

namespace settings_ui {

std::optional<unsigned> renkSor(unsigned renk, QWidget* ana) {
  const QColor secilen = QColorDialog::getColor(QColor(ui::fromBgr(renk)), ana, "Renk");
  if (!secilen.isValid()) return std::nullopt;
  return static_cast<unsigned>(secilen.red() | secilen.green() << 8 | secilen.blue() << 16);
}

RenkPaneli::RenkPaneli(QWidget* parent) : QPushButton("Örnek 1.234,56", parent) {
  setAccessibleDescription("Rengi değiştirmek için tıklayın");
}

QSize RenkPaneli::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()) + 2 * ui::gap, QPushButton::sizeHint().height()};
}

void RenkPaneli::renkKoy(unsigned renk) {
  renk_ = renk;
  update();
}

void RenkPaneli::paintEvent(QPaintEvent*) {
  QPainter cizer(this);
  cizer.setRenderHint(QPainter::Antialiasing);
  const QColor zemin(ui::fromBgr(renk_)), yazi(ui::fromBgr(tumleyen(renk_)));
  const QColor cerceve = hasFocus() ? ui::renk(QColor(0xc2, 0x5f, 0x00)) : ui::renk(QColor(0x7d, 0x8c, 0x9b));
  cizer.setPen(QPen(cerceve, hasFocus() ? 2 : 1));
  cizer.setBrush(isEnabled() ? zemin : ui::renk(QColor(0xf0, 0xf2, 0xf5)));
  cizer.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 4, 4);
  cizer.setPen(yazi);
  cizer.drawText(rect(), Qt::AlignCenter, text());
}

}  // namespace settings_ui
