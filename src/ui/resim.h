// An icon on a card: drawn anew when the colours change.
#pragma once

#include <QLabel>

namespace ui {

class Resim : public QLabel {
 public:
  explicit Resim(int kenar, const QString& ad = {});  // device-independent pixels
  void goster(const QString& ad);                     // src/ui/icons/NAME.svg

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ciz();
  int kenar_;
  QString ad_;
};

}  // namespace ui
