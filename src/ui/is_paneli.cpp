#include "ui/is_paneli.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/progress.h"
#include "ui/theme.h"

namespace ui {
namespace {

constexpr int kartWidth = 460;
constexpr qint64 ilkTahmin = 1500;  // milliseconds; before that a guess would jump
constexpr double ilkPay = 0.02;

}  // namespace

QString sureYazisi(qint64 saniye) {
  if (saniye < 60) return QString::number(saniye) + " sn";
  if (saniye < 3600) return QString("%1 dk %2 sn").arg(saniye / 60).arg(saniye % 60);
  return QString("%1 sa %2 dk").arg(saniye / 3600).arg(saniye % 3600 / 60);
}

QString kalanYazisi(qint64 gecen, double pay) {
  if (gecen < ilkTahmin || pay < ilkPay || pay >= 1) return {};
  return sureYazisi(qRound64(static_cast<double>(gecen) / pay * (1 - pay) / 1000));
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
