// A coloured panel: a click chooses another colour; its writing has the complement.
#pragma once

#include <QPushButton>
#include <functional>
#include <optional>

namespace settings_ui {

// Asks for a colour (blue byte first); empty when the choice is given up.
std::optional<unsigned> renkSor(unsigned renk, QWidget* ana);

class RenkPaneli : public QPushButton {
  Q_OBJECT
 public:
  explicit RenkPaneli(QWidget* parent = nullptr);
  unsigned renk() const { return renk_; }
  void renkKoy(unsigned renk);
  static unsigned tumleyen(unsigned renk) { return renk ^ 0xFFFFFF; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  unsigned renk_ = 0;
};

}  // namespace settings_ui
