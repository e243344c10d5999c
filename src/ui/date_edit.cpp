#include "ui/date_edit.h"

#include <QFocusEvent>
#include <QKeyEvent>

#include "session/tarih.h"
#include "ui/theme.h"

namespace ui {

constexpr int dateLength = 10;

DateEdit::DateEdit(session::Boxes& boxes, QWidget* parent) : QLineEdit(parent), boxes_(boxes) {
  setMaxLength(dateLength);
  setPlaceholderText("GG/AA/YYYY");
  connect(this, &QLineEdit::textEdited, this, &DateEdit::mask);
}

void DateEdit::keyPressEvent(QKeyEvent* event) {
  erasing_ = event->key() == Qt::Key_Backspace || event->key() == Qt::Key_Delete;
  QLineEdit::keyPressEvent(event);
}

void DateEdit::mask() {
  const session::MaskeSonucu masked = session::tarihMaskesi(utf8(text()), cursorPosition(), erasing_);
  const QString wanted = ui::text(masked.metin);
  if (wanted != text()) setText(wanted);
  setCursorPosition(masked.imlec);
}

// The check belongs to leaving the field, not to the program losing the focus or to the screen closing.
void DateEdit::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  const bool left = event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason;
  if (left && isVisible() && isEnabled() && !isReadOnly())
    setText(ui::text(session::Tarih_Alan_Dogrula(boxes_, utf8(text()), true)));
}

}  // namespace ui
