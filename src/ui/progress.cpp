#include "ui/progress.h"

#include <QApplication>
#include <QEventLoop>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>

#include "session/sayi.h"
#include "ui/theme.h"

namespace ui {
namespace {

constexpr int barSteps = 1000;

void runWindowSystem() {
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

QProgressBar* makeBar(const char* name, QWidget* parent) {
  auto* bar = new QProgressBar(parent);
  bar->setObjectName(name);
  bar->setTextVisible(false);
  bar->setRange(0, barSteps);
  return bar;
}

}  // namespace

ProgressPanel::ProgressPanel(QWidget* parent)
    : QWidget(parent),
      message_(new QLabel(this)),
      stepPercent_(new QLabel(this)),
      wholePercent_(new QLabel(this)),
      step_(makeBar("KartBar", this)),
      whole_(makeBar("BarFrame", this)) {
  message_->setObjectName("MesajLbl");
  message_->setProperty("rol", "altbaslik");
  message_->setTextFormat(Qt::PlainText);
  const int percentWidth = fontMetrics().horizontalAdvance("100%  ");
  for (QLabel* label : {stepPercent_, wholePercent_}) {
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setFixedWidth(percentWidth);
    label->setProperty("rol", "altbaslik");
  }
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setVerticalSpacing(gapSmall);
  grid->addWidget(message_, 0, 0, 1, 2);
  grid->addWidget(step_, 1, 0);
  grid->addWidget(stepPercent_, 1, 1);
  grid->addWidget(whole_, 2, 0);
  grid->addWidget(wholePercent_, 2, 1);
}

void ProgressPanel::text(const std::string& text) {
  message_->setText(ui::text(text));
}

void ProgressPanel::show(QProgressBar* bar, QLabel* percent, std::int64_t value, std::int64_t maximum) {
  const double share =
      maximum > 0 ? std::clamp(static_cast<double>(value) / static_cast<double>(maximum), 0., 1.) : 0.;
  bar->setValue(static_cast<int>(share * barSteps));
  session::YuzdeCubugu cubuk{0, 100, {}};
  session::Yuzde_Goster(cubuk, static_cast<float>(share * 100), {});
  percent->setText(ui::text(cubuk.label));
}

void ProgressPanel::step(std::int64_t value, std::int64_t maximum) {
  show(step_, stepPercent_, value, maximum);
}
void ProgressPanel::whole(std::int64_t value, std::int64_t maximum) {
  show(whole_, wholePercent_, value, maximum);
}
void ProgressPanel::pump() {
  runWindowSystem();
}

void QuietProgress::pump() {
  runWindowSystem();
}

}  // namespace ui
