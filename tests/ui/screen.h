// What the tests of all screens need: finding controls by the names that users of the system know, keys to
// whatever has the focus, colours as they are seen.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPalette>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <string>

#include "support/fakes.h"

namespace screen {

// What the desktop of the tests looks like.
inline QPalette desktop{QColor(0xF0F0F0)};

template <class T>
T* find(QWidget& in, const char* name) {
  T* found = in.findChild<T*>(name);
  EXPECT_NE(found, nullptr) << name;
  return found;
}

// Shows a window and makes it the one that takes keys.
inline void show(QWidget& window) {
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
}

inline std::string focusName() {
  const QWidget* focus = QApplication::focusWidget();
  return focus ? focus->objectName().toStdString() : std::string("-");
}

// Once the dialog stands on the screen: work in the background comes first.
template <class T>
void whenModal(const std::function<void(T&)>& then, int tries = 200) {
  QTimer::singleShot(10, [then, tries] {
    if (auto* dialog = qobject_cast<T*>(QApplication::activeModalWidget()))
      then(*dialog);
    else if (tries > 0)
      whenModal<T>(then, tries - 1);
    else
      ADD_FAILURE() << "no such dialog";
  });
}

inline void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QWidget* focus = QApplication::focusWidget();
  ASSERT_NE(focus, nullptr);
  QTest::keyClick(focus, key, modifiers);
}

inline void type(QLineEdit* field, const QString& text) {
  field->setFocus();
  field->selectAll();
  // QTest knows ASCII keys only.
  for (const QChar letter : text) {
    QKeyEvent press(QEvent::KeyPress, letter.unicode() < 128 ? letter.toUpper().unicode() : 0, Qt::NoModifier,
                    QString(letter));
    QApplication::sendEvent(field, &press);
  }
}

// The background of a field as it is drawn, near its right end.
inline QRgb background(QWidget& field) {
  const QImage image = field.grab().toImage();
  return image.pixel(image.width() - 8, image.height() / 2) & 0xFFFFFF;
}

}  // namespace screen
