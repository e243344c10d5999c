// The look of the program, in one place: colours, spacings, style sheet, icons, text conversion.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QSize>
#include <QString>
#include <functional>
#include <string>
#include <string_view>

class QApplication;

namespace ui {

// Spacings in device-independent pixels.
inline constexpr int gapSmall = 6;
inline constexpr int gap = 12;
inline constexpr int gapLarge = 20;

// A width measured with the usual letters (9 points at 96 DPI), in device-independent pixels, for the letters
// that the desktop has chosen. Never less than it was.
int byLetters(int width);

// A Windows colour value (blue byte first) as a colour.
constexpr QRgb fromBgr(unsigned bgr) {
  return qRgb(static_cast<int>(bgr & 0xFF), static_cast<int>(bgr >> 8 & 0xFF),
              static_cast<int>(bgr >> 16 & 0xFF));
}

// Style, palette, font and Turkish locale of the whole program. Once, before the first window; the colours
// follow the desktop's from then on. `desktopPalette` tells those of the desktop, where it is not the
// toolkit.
void applyTheme(QApplication& application, std::function<QPalette()> desktopPalette = {});

// The icon src/ui/icons/NAME.svg, sharp at every scale, greyed when disabled.
QIcon icon(const QString& name);

// The same with room on its right, for a button that has its caption beside the picture. A button's icon
// size is then captionIconSize() of the picture's height.
QIcon captionIcon(const QString& name);
inline QSize captionIconSize(int height) {
  return {height + gapSmall, height};
}

inline QString text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}
inline std::string utf8(const QString& text) {
  return text.toStdString();
}

}  // namespace ui
