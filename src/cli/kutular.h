// Boxes and progress on the command line: both on the error stream, so that results stay clean.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "cli/ortam.h"
#include "platform/interrupt.h"
#include "session/ports.h"

namespace cli {

class KomutKutulari : public session::Boxes {
 public:
  explicit KomutKutulari(Ortam& ortam) : ortam_(ortam) {}
  void message(const std::string& text, session::Icon icon, std::string_view title) override;
  bool waits() const override { return false; }
  // `evet` answers every question with Yes. Without it and without a terminal the answer is No.
  bool ask(const std::string& text, session::Icon icon, std::string_view title) override;

  bool gosterildi(const std::string& text) const;
  bool iletiGosterildi() const { return !shown_.empty(); }  // any message at all

  bool evet = false;

 private:
  Ortam& ortam_;
  std::vector<std::string> shown_;
};

class KomutIlerlemesi : public session::Progress {
 public:
  explicit KomutIlerlemesi(Ortam& ortam) : ortam_(ortam) {}
  ~KomutIlerlemesi() override;
  void text(const std::string& text) override;
  void step(std::int64_t value, std::int64_t maximum) override;
  void whole(std::int64_t value, std::int64_t maximum) override;
  void pump() override;
  // Ctrl-C, from the first time that the work asks until it has ended: it can end with nothing half done.
  bool cancelled() override;
  // Takes the line away, so that something else can be written.
  void bitir();

  bool satirlarla = false;  // without a terminal: each text once, in a line of its own

 private:
  using Clock = std::chrono::steady_clock;
  void draw();
  std::string left() const;

  Ortam& ortam_;
  std::string text_;
  std::int64_t percent_ = 0;
  // Of the run by bytes that is under way: how much was done when it began, and how much is now.
  std::int64_t first_ = 0, value_ = -1, maximum_ = 0;
  Clock::time_point begun_, written_;
  std::optional<platform::Interrupt> interrupt_;
  bool drawn_ = false;
};

}  // namespace cli
