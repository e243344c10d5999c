// The masked date field: GG/AA/YYYY.
#pragma once

#include <QLineEdit>

namespace session {
class Boxes;
}

namespace ui {

class DateEdit : public QLineEdit {
  Q_OBJECT
 public:
  // `boxes` shows what is wrong with a date when the field is left.
  explicit DateEdit(session::Boxes& boxes, QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void mask();
  session::Boxes& boxes_;
  bool erasing_ = false;  // the last key was backspace or delete
};

}  // namespace ui
