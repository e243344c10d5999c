#include "ui/date_edit.h"

#include <QFocusEvent>
#include <QKeyEvent>

#include "session/tarih.h"
#include "ui/theme.h"

namespace ui {

DateEdit::DateEdit(session::Boxes& boxes, QWidget* parent) : QLineEdit(parent), boxes_(boxes) {
  setPlaceholderText("GG/AA/YYYY");
  connect(this, &QLineEdit::textEdited, this, &DateEdit::mask);
}

void DateEdit::keyPressEvent(QKeyEvent* event) {
  const bool back = event->key() == Qt::Key_Backspace, forward = event->key() == Qt::Key_Delete;
  erasing_ = back || forward;
  // A separator between two parts is stepped over: without it their digits would run together.
  const int caret = cursorPosition();
  if (erasing_ && !hasSelectedText()) {
    const bool behind = back && caret > 0 && caret < text().size() && text().at(caret - 1) == '/';
    const bool before = forward && caret + 1 < text().size() && text().at(caret) == '/';
    if (behind || before) setCursorPosition(behind ? caret - 1 : caret + 1);
  }
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
    setText(ui::text(session::Tarih_Alan_Dogrula(boxes_, session::tarihTamamla(utf8(text())), true)));
}

}  // namespace ui
