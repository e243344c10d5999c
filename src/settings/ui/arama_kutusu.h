// The box above a grid that goes to a row while a text is typed.
#pragma once

#include <QLineEdit>

namespace ui {
class Izgara;
}

namespace settings_ui {

class AramaKutusu : public QLineEdit {
  Q_OBJECT
 public:
  explicit AramaKutusu(ui::Izgara& izgara);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // From row `ilk` on and round; the row whose cell begins with the text, else the one that has it inside.
  void ara(int ilk);
  ui::Izgara& izgara_;
};

}  // namespace settings_ui
