// A key pressed twice in haste, or held down, acts once: its repetition is dropped when the screen changed
// in between, so that the second Enter does not act on what the first one brought up. The same for clicks.
#pragma once

class QCoreApplication;

namespace ui {

// Once, before the first window. The haste is that of a double click (QApplication::doubleClickInterval).
void tekrarSuzgeciKur(QCoreApplication& uygulama);
// Another screen or box stands now where the last key or click went.
void ekranDegisti();

}  // namespace ui
