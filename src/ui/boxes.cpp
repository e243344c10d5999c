#include "ui/boxes.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include "ui/theme.h"

namespace ui {
namespace {

constexpr int iconSize = 40;
constexpr const char* iconNames[] = {"", "bilgi", "soru", "uyari", "dur"};  // in the order of session::Icon

// The arrow instead of the hourglass of a running operation while the program waits for an answer.
class ArrowCursor {
 public:
  ArrowCursor() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
  ~ArrowCursor() { QApplication::restoreOverrideCursor(); }
  ArrowCursor(const ArrowCursor&) = delete;
  ArrowCursor& operator=(const ArrowCursor&) = delete;
};

// Over the window in front, so that it is modal to it; a text is never taken for markup.
void prepare(QMessageBox& box, const std::string& text, session::Icon icon, std::string_view title) {
  box.setWindowTitle(ui::text(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(ui::text(text));
  const QString name = iconNames[static_cast<int>(icon)];
  if (!name.isEmpty())
    box.setIconPixmap(ui::icon(name).pixmap(QSize(iconSize, iconSize), box.devicePixelRatioF()));
}

}  // namespace

void DesktopBoxes::message(const std::string& text, session::Icon icon, std::string_view title) {
  QMessageBox box(QApplication::activeWindow());
  prepare(box, text, icon, title);
  QPushButton* tamam = box.addButton("Tamam", QMessageBox::AcceptRole);
  box.setDefaultButton(tamam);
  box.setEscapeButton(tamam);
  const ArrowCursor arrow;
  box.exec();
}

bool DesktopBoxes::ask(const std::string& text, session::Icon icon, std::string_view title) {
  QMessageBox box(QApplication::activeWindow());
  prepare(box, text, icon, title);
  QPushButton* evet = box.addButton("Evet", QMessageBox::YesRole);
  QPushButton* hayir = box.addButton("Hayır", QMessageBox::NoRole);
  box.setDefaultButton(hayir);
  box.setEscapeButton(hayir);
  const ArrowCursor arrow;
  box.exec();
  return box.clickedButton() == evet;
}

}  // namespace ui
