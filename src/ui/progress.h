// Progress of long runs: a panel that a screen embeds, and the port that leads to it.
#pragma once

#include <QWidget>

#include "session/ports.h"

class QLabel;
class QProgressBar;

namespace ui {

// MesajLbl over KartBar (within the step) and BarFrame (of the whole run).
class ProgressPanel : public QWidget, public session::Progress {
  Q_OBJECT
 public:
  explicit ProgressPanel(QWidget* parent = nullptr);
  void text(const std::string& text) override;
  void step(std::int64_t value, std::int64_t maximum) override;
  void whole(std::int64_t value, std::int64_t maximum) override;
  void pump() override;

 private:
  void show(QProgressBar* bar, QLabel* percent, std::int64_t value, std::int64_t maximum);
  QLabel *message_, *stepPercent_, *wholePercent_;
  QProgressBar *step_, *whole_;
};

// For runs with no screen of their own: only keeps the window system alive.
class QuietProgress : public session::Progress {
 public:
  void text(const std::string&) override {}
  void step(std::int64_t, std::int64_t) override {}
  void whole(std::int64_t, std::int64_t) override {}
  void pump() override;
};

}  // namespace ui
