// A run of several parts, each of which believes that it is the whole: while it lives, the progress of the
// session tells a part as the share bas to son (in thousandths) of the whole bar. A part that tells only its
// steps moves the whole by them.
#pragma once

#include "session/oturum.h"

namespace session {

class Kademe : public Progress {
 public:
  Kademe(Oturum& oturum, int bas, int son) : oturum_(oturum), asil_(*oturum.ilerleme), bas_(bas), son_(son) {
    oturum_.ilerleme = this;
  }
  ~Kademe() override { oturum_.ilerleme = &asil_; }
  Kademe(const Kademe&) = delete;
  Kademe& operator=(const Kademe&) = delete;

  void text(const std::string& text) override { asil_.text(text); }
  void step(std::int64_t value, std::int64_t maximum) override {
    asil_.step(value, maximum);
    if (!butunSoylendi_) tasi(value, maximum);
  }
  void whole(std::int64_t value, std::int64_t maximum) override {
    butunSoylendi_ = true;
    tasi(value, maximum);
  }
  void pump() override { asil_.pump(); }
  bool cancelled() override { return asil_.cancelled(); }

 private:
  void tasi(std::int64_t value, std::int64_t maximum) {
    if (maximum > 0) asil_.whole(bas_ + (son_ - bas_) * value / maximum, 1000);
  }
  Oturum& oturum_;
  Progress& asil_;
  int bas_, son_;
  bool butunSoylendi_ = false;
};

}  // namespace session
