#include "ui/fields.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>
#include <QTimer>
#include <QVariant>
#include <vector>

#include "session/alan_gecis.h"
#include "ui/theme.h"

namespace ui {
namespace {

void paint(QWidget* control, const char* look) {
  control->setProperty("odak", look);
  control->style()->unpolish(control);
  control->style()->polish(control);
}

std::optional<int> elementIndex(const QWidget& control) {
  const QVariant index = control.property(indexProperty);
  return index.isValid() ? std::optional<int>(index.toInt()) : std::nullopt;
}

struct KeyPair {
  int qt, windows;
};
constexpr KeyPair keyPairs[] = {{Qt::Key_Left, 37}, {Qt::Key_Up, 38},     {Qt::Key_Right, 39},
                                {Qt::Key_Down, 40}, {Qt::Key_Return, 13}, {Qt::Key_Enter, 13}};

}  // namespace

void Odak_Renk(QWidget* control, const FocusColours& colours) {
  paint(control, colours.focused);
}
void Odak_Normal(QWidget* control, const FocusColours& colours) {
  paint(control, colours.normal);
}
void Alan_Sec(QLineEdit* field) {
  field->selectAll();
}

int windowsKey(int qtKey) {
  for (const KeyPair& pair : keyPairs)
    if (pair.qt == qtKey) return pair.windows;
  return 0;
}

bool Alan_Gecis_Tus(QWidget& form, int key, QWidget* control, bool inText) {
  const QList<QWidget*> controls = form.findChildren<QWidget*>();
  std::vector<session::GecisAlani> fields;
  fields.reserve(static_cast<std::size_t>(controls.size()));
  for (const QWidget* each : controls)
    fields.push_back(
        {utf8(each->objectName()), elementIndex(*each), each->isEnabled(), each->isVisibleTo(&form)});

  const std::string tag = utf8(control->property(tagProperty).toString());
  session::GecisKonumu place{tag, 0, 0, inText};
  if (const auto* field = qobject_cast<QLineEdit*>(control)) {
    // A selection's start is the caret, so that a field just selected lets go to the left.
    place.imlec = field->hasSelectedText() ? field->selectionStart() : field->cursorPosition();
    place.uzunluk = static_cast<int>(field->text().size());
  }
  const auto target = session::alanGecis(fields, place, key);
  if (!target) return false;
  controls[static_cast<qsizetype>(*target)]->setFocus(Qt::TabFocusReason);
  return true;
}

void pressByEnter(QAbstractButton* button) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* shortcut = new QShortcut(QKeySequence(key), button);
    shortcut->setContext(Qt::WidgetShortcut);
    QObject::connect(shortcut, &QShortcut::activated, button, &QAbstractButton::click);
  }
}

FieldKeys::FieldKeys(QWidget* form, const FocusColours& colours, bool enterMoves)
    : QObject(form), form_(form), colours_(colours), enterMoves_(enterMoves) {}

void FieldKeys::watch(QLineEdit* field, const char* tag) {
  field->setProperty(tagProperty, QString::fromUtf8(tag));
  Odak_Normal(field, colours_);
  field->installEventFilter(this);
}

void FieldKeys::watch(QAbstractButton* button, const char* tag) {
  button->setProperty(tagProperty, QString::fromUtf8(tag));
  button->installEventFilter(this);
}

bool FieldKeys::key(QWidget* control, int qtKey) {
  const bool enter = qtKey == Qt::Key_Return || qtKey == Qt::Key_Enter;
  if (auto* button = qobject_cast<QPushButton*>(control); button && enter) {
    button->click();
    return true;
  }
  if (enter && !enterMoves_) return false;
  const int code = windowsKey(qtKey);
  if (code == 0) return false;
  return Alan_Gecis_Tus(*form_, code, control, qobject_cast<QLineEdit*>(control) != nullptr);
}

bool FieldKeys::eventFilter(QObject* watched, QEvent* event) {
  auto* field = qobject_cast<QLineEdit*>(watched);
  switch (event->type()) {
    case QEvent::FocusIn:
      if (!field) break;
      Odak_Renk(field, colours_);
      Alan_Sec(field);
      // A click places the caret after this event and undoes the selection; it comes back with the release.
      clicked_ = static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason ? field : nullptr;
      break;
    case QEvent::MouseButtonRelease:
      if (field && clicked_ == field && !field->hasSelectedText())
        QTimer::singleShot(0, field, [field] { Alan_Sec(field); });
      clicked_ = nullptr;
      break;
    case QEvent::FocusOut:
      if (field) Odak_Normal(field, colours_);
      break;
    case QEvent::KeyPress: {
      const auto* press = static_cast<QKeyEvent*>(event);
      const bool plain = (press->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
      if (plain && key(static_cast<QWidget*>(watched), press->key())) return true;
      break;
    }
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace ui
