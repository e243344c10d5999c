// Progress of long runs: a panel that a screen embeds, and the port that leads to it.
#pragma once

#include <QWidget>

#include "session/oturum.h"
#include "session/ports.h"
#include "ui/boxes.h"

class QLabel;
class QProgressBar;

namespace ui {

// MesajLbl over KartBar (within the step) and BarFrame (of the whole run). Hidden until a run speaks.
class ProgressPanel : public QWidget, public session::Progress {
  Q_OBJECT
 public:
  explicit ProgressPanel(QWidget* parent = nullptr);
  void text(const std::string& text) override;
  void step(std::int64_t value, std::int64_t maximum) override;
  void whole(std::int64_t value, std::int64_t maximum) override;
  void pump() override;
  void reset();

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

// Leads the session's progress to a panel while it lives. The screen around the panel takes no input
// during that time: a second click must not start a second run.
class ProgressScope {
 public:
  ProgressScope(session::Oturum& oturum, ProgressPanel& panel);
  ~ProgressScope();
  ProgressScope(const ProgressScope&) = delete;
  ProgressScope& operator=(const ProgressScope&) = delete;

 private:
  session::Oturum& oturum_;
  session::Progress* before_;
  ProgressPanel& panel_;
  WaitCursor wait_;
};

}  // namespace ui
