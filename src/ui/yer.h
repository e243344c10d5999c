// Where windows stand: remembered per user, and never beyond the screen with its panels and their own frame.
#pragma once

#include <QSize>
#include <string_view>

class QWidget;

namespace session {
class Platform;
}

namespace ui {

// Before the window is shown: where it stood last, else `usual` in the middle of the screen.
void yerlestir(QWidget& window, session::Platform& platform, std::string_view name, QSize usual);
// Before a window of fixed size is shown: the middle of the screen, where not every window manager puts it.
void ortala(QWidget& window);
// Once it stands there: the frame that the window system put round it counts, too.
void ekranaSigdir(QWidget& window);
// When it closes.
void yeriSakla(const QWidget& window, session::Platform& platform, std::string_view name);

}  // namespace ui
