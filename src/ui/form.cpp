#include "ui/form.h"

#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>

namespace ui {

QLabel* caption(const QString& text, QWidget* field) {
  auto* label = new QLabel(text);
  label->setProperty("rol", "alan");
  label->setBuddy(field);
  return label;
}

QLabel* row(QGridLayout* grid, int line, const QString& text, QWidget* field) {
  QLabel* label = caption(text, field);
  grid->addWidget(label, line, 0, Qt::AlignRight | Qt::AlignVCenter);
  grid->addWidget(field, line, 1);
  return label;
}

QLabel* wrapped(const QString& text, const char* role) {
  auto* label = new QLabel(text);
  label->setProperty("rol", role);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

QWidget* scrolling(QWidget* content) {
  auto* scroll = new QScrollArea;
  scroll->setWidgetResizable(true);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setWidget(content);
  return scroll;
}

QHBoxLayout* dialogButtons(QDialog* dialog, QPushButton* main) {
  main->setProperty("rol", "ana");
  main->setDefault(true);
  auto* cancel = new QPushButton("Vazgeç");
  cancel->setObjectName("VazgecBtn");
  cancel->setAutoDefault(false);
  QObject::connect(cancel, &QPushButton::clicked, dialog, &QDialog::reject);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(main);
  buttons->addWidget(cancel);
  return buttons;
}

}  // namespace ui
