#include "ui/is_paneli.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "session/sure.h"
#include "ui/progress.h"
#include "ui/theme.h"

namespace ui {
namespace {

constexpr int kartWidth = 460;

}  // namespace

QString sureYazisi(qint64 saniye) {
  return text(session::sureYazisi(saniye));
}

QString kalanYazisi(qint64 gecen, double pay) {
  return text(session::kalanYazisi(gecen, pay));
}

IsPaneli::IsPaneli(QWidget* pencere, const QString& baslik, bool vazgecilir)
    : QWidget(pencere), ilerleme_(new ProgressPanel), sure_(new QLabel), vazgec_(new QPushButton("Vazgeç")) {
  setObjectName("IsPaneli");
  auto* caption = new QLabel(baslik);
  caption->setProperty("rol", "baslik");
  caption->setTextFormat(Qt::PlainText);
  caption->setWordWrap(true);
  sure_->setObjectName("IsSuresi");
  sure_->setProperty("rol", "altbaslik");
  vazgec_->setObjectName("IsVazgecBtn");

  auto* kart = new QWidget;
  kart->setProperty("rol", "kart");
  kart->setAttribute(Qt::WA_StyledBackground);
  auto* foot = new QHBoxLayout;
  foot->addWidget(sure_, 1);
  foot->addWidget(vazgec_);
  auto* layout = new QVBoxLayout(kart);
  layout->setContentsMargins(gapLarge, gapLarge, gapLarge, gapLarge);
  layout->setSpacing(gap);
  layout->addWidget(caption);
  layout->addWidget(ilerleme_);
  layout->addLayout(foot);
  kart->setMaximumWidth(kartWidth);

  auto* row = new QHBoxLayout(this);
  row->addStretch(1);
  row->addWidget(kart, 100, Qt::AlignVCenter);
  row->addStretch(1);
  // Without a parent it would be a window for a moment, and take the keys.
  vazgec_->setVisible(vazgecilir);
  hide();
  saat_.start();
  sureyiYaz(0);
}

void IsPaneli::sureyiYaz(double pay) {
  const qint64 gecen = saat_.elapsed();
  const QString kalan = kalanYazisi(gecen, pay);
  sure_->setText("Geçen süre: " + sureYazisi(gecen / 1000) +
                 (kalan.isEmpty() ? QString() : "   Kalan: yaklaşık " + kalan));
}

void IsPaneli::vazgecildi() {
  vazgec_->setEnabled(false);
  vazgec_->setText("Vazgeçiliyor…");
}

void IsPaneli::paintEvent(QPaintEvent*) {
  QColor veil = palette().color(QPalette::Window);
  veil.setAlpha(170);
  QPainter(this).fillRect(rect(), veil);
}

}  // namespace ui
