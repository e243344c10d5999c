// The parts that forms are made of: captions, rows, texts that wrap, pages that scroll, a dialog's buttons.
#pragma once

#include <QString>

class QDialog;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QWidget;

namespace ui {

// The caption of a field.
QLabel* caption(const QString& text, QWidget* field);
// "caption  field" as one row; returns the caption.
QLabel* row(QGridLayout* grid, int line, const QString& text, QWidget* field);
// `role`: one of the style sheet's.
QLabel* wrapped(const QString& text, const char* role);
// Scrolls up and down alone, and never takes the focus itself.
QWidget* scrolling(QWidget* content);
// The button that Enter presses, and "Vazgeç", which rejects the dialog.
QHBoxLayout* dialogButtons(QDialog* dialog, QPushButton* main);

}  // namespace ui
