// Message boxes of the desktop, with Turkish buttons.
#pragma once

#include "session/ports.h"

class QWidget;

namespace ui {

// The hourglass while an operation runs that does not let the window system work.
class WaitCursor {
 public:
  WaitCursor();
  ~WaitCursor();
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
};

class DesktopBoxes : public session::Boxes {
 public:
  void message(const std::string& text, session::Icon icon = session::Icon::None,
               std::string_view title = session::defaultTitle) override;
  bool ask(const std::string& text, session::Icon icon = session::Icon::Question,
           std::string_view title = session::defaultTitle) override;
};

}  // namespace ui
