// Message boxes of the desktop, with Turkish buttons.
#pragma once

#include "session/ports.h"

class QWidget;

namespace ui {

class DesktopBoxes : public session::Boxes {
 public:
  void message(const std::string& text, session::Icon icon = session::Icon::None,
               std::string_view title = session::defaultTitle) override;
  bool ask(const std::string& text, session::Icon icon = session::Icon::Question,
           std::string_view title = session::defaultTitle) override;
};

}  // namespace ui
