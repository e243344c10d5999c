// Screens run on the offscreen platform unless the environment names another.
#include <gtest/gtest.h>

#include <QApplication>

#include "screen.h"
#include "ui/theme.h"

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  ui::applyTheme(application, [] { return screen::desktop; });
  // Tests press faster than people: only those of haste itself set this.
  QApplication::setDoubleClickInterval(0);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
