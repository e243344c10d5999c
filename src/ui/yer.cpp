#include "ui/yer.h"

#include <QGuiApplication>
#include <QRect>
#include <QScreen>
#include <QStringList>
#include <QWidget>

#include "session/ports.h"
#include "ui/theme.h"

namespace ui {
namespace {

constexpr std::string_view root = "HKEY_CURRENT_USER", key = "Software\\Korvena\\Zembera\\Pencereler";
constexpr QSize frameGuess(8, 40);  // device-independent pixels of a frame that is not there yet

// "x,y,width,height,maximized"
QList<int> numbers(const QString& text) {
  QList<int> result;
  for (const QString& part : text.split(',')) result += part.toInt();
  return result;
}

QRect inside(QRect frame, const QRect& room) {
  frame.setSize(frame.size().boundedTo(room.size()));
  frame.moveLeft(std::clamp(frame.left(), room.left(), room.right() - frame.width() + 1));
  frame.moveTop(std::clamp(frame.top(), room.top(), room.bottom() - frame.height() + 1));
  return frame;
}

}  // namespace

void yerlestir(QWidget& window, session::Platform& platform, std::string_view name, QSize usual) {
  const auto kept = numbers(text(platform.registryRead(root, key, name)));
  const bool known = kept.size() == 5 && kept[2] > 0 && kept[3] > 0;
  const QRect wanted = known ? QRect(kept[0], kept[1], kept[2], kept[3]) : QRect(QPoint(), usual);
  const QScreen* screen = known ? QGuiApplication::screenAt(wanted.center()) : nullptr;
  const QRect room = (screen ? screen : window.screen())->availableGeometry();
  window.resize(wanted.size().boundedTo(room.size() - frameGuess));
  if (screen)
    window.move(inside(QRect(wanted.topLeft(), window.size() + frameGuess), room).topLeft());
  else
    window.move(room.center() - QRect(QPoint(), window.size() + frameGuess).center());
  if (known && kept[4] != 0) window.setWindowState(window.windowState() | Qt::WindowMaximized);
}

void ortala(QWidget& window) {
  window.adjustSize();
  const QRect room = window.screen()->availableGeometry();
  const QSize frame = window.size() + frameGuess;
  window.move(inside(QRect(room.center() - QRect(QPoint(), frame).center(), frame), room).topLeft());
}

void ekranaSigdir(QWidget& window) {
  if (window.isMaximized() || window.isFullScreen()) return;
  const QRect room = window.screen()->availableGeometry();
  const QRect frame = window.frameGeometry();
  if (room.contains(frame)) return;
  const QRect fits = inside(frame, room);
  window.resize(window.size() - (frame.size() - fits.size()));
  window.move(fits.topLeft());
}

void yeriSakla(const QWidget& window, session::Platform& platform, std::string_view name) {
  const QRect place(window.normalGeometry().isValid() ? window.normalGeometry() : window.geometry());
  const QPoint corner = window.isMaximized() ? place.topLeft() : window.pos();
  platform.registryWrite(root, key, name,
                         utf8(QString("%1,%2,%3,%4,%5")
                                  .arg(corner.x())
                                  .arg(corner.y())
                                  .arg(place.width())
                                  .arg(place.height())
                                  .arg(window.isMaximized() ? 1 : 0)));
}

}  // namespace ui
