#include "ui/boxes.h"

#include <QApplication>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "ui/tekrar.h"
#include "ui/theme.h"

namespace ui {
namespace {

constexpr int iconSize = 40, narrowest = 280;
constexpr int longWidth = 640, longHeight = 320;                            // of a text that scrolls
constexpr const char* iconNames[] = {"", "bilgi", "soru", "uyari", "dur"};  // in the order of session::Icon

// The arrow instead of the hourglass of a running operation while the program waits for an answer.
class ArrowCursor {
 public:
  ArrowCursor() { QApplication::setOverrideCursor(Qt::ArrowCursor); }
  ~ArrowCursor() { QApplication::restoreOverrideCursor(); }
  ArrowCursor(const ArrowCursor&) = delete;
  ArrowCursor& operator=(const ArrowCursor&) = delete;
};

// A refused statement can be thousands of letters long: unscrolled, its box would leave the screen and take
// the button along.
void scrollLongText(QMessageBox& box, QLabel* label) {
  const QRect room(0, 0, longWidth, longHeight);
  if (label->fontMetrics().boundingRect(room, Qt::TextWrapAnywhere, box.text()).height() <= longHeight)
    return;
  auto* view = new QPlainTextEdit(box.text());
  view->setObjectName("UzunMetin");
  view->setReadOnly(true);
  view->setFocusPolicy(Qt::ClickFocus);
  view->setMinimumSize(longWidth, longHeight);
  delete box.layout()->replaceWidget(label, view);
  label->hide();
}

// Room for the title, and one line of text stands in the middle beside its icon.
void layOut(QMessageBox& box) {
  auto* label = box.findChild<QLabel*>("qt_msgbox_label");
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  if (!label || !grid) return;
  grid->addItem(new QSpacerItem(narrowest, 0), grid->rowCount(), 0, 1, grid->columnCount());
  grid->setRowMinimumHeight(0, iconSize);
  label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  scrollLongText(box, label);
}

// Over the window in front, so that it is modal to it; a text is never taken for markup.
void prepare(QMessageBox& box, const std::string& text, session::Icon icon, std::string_view title) {
  box.setWindowTitle(ui::text(title));
  box.setTextFormat(Qt::PlainText);
  box.setText(ui::text(text));
  const QString name = iconNames[static_cast<int>(icon)];
  if (!name.isEmpty())
    box.setIconPixmap(ui::icon(name).pixmap(QSize(iconSize, iconSize), box.devicePixelRatioF()));
  layOut(box);
}

void show(QMessageBox& box) {
  const ArrowCursor arrow;
  ekranDegisti();
  box.exec();
  ekranDegisti();
}

}  // namespace

WaitCursor::WaitCursor() {
  QApplication::setOverrideCursor(Qt::WaitCursor);
}
WaitCursor::~WaitCursor() {
  QApplication::restoreOverrideCursor();
}

void DesktopBoxes::message(const std::string& text, session::Icon icon, std::string_view title) {
  QMessageBox box(QApplication::activeWindow());
  prepare(box, text, icon, title);
  QPushButton* tamam = box.addButton("Tamam", QMessageBox::AcceptRole);
  box.setDefaultButton(tamam);
  box.setEscapeButton(tamam);
  show(box);
}

bool DesktopBoxes::ask(const std::string& text, session::Icon icon, std::string_view title) {
  QMessageBox box(QApplication::activeWindow());
  prepare(box, text, icon, title);
  QPushButton* evet = box.addButton("Evet", QMessageBox::YesRole);
  QPushButton* hayir = box.addButton("Hayır", QMessageBox::NoRole);
  box.setDefaultButton(hayir);
  box.setEscapeButton(hayir);
  show(box);
  return box.clickedButton() == evet;
}

}  // namespace ui
