// An empty window of the toolkit, with nothing else in its process; console_memory measures against it.
#include <QApplication>
#include <QWidget>

#include "bench/memory.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  window.resize(1120, 720);  // as the console is
  window.show();
  bench::tellMemory();
  return 0;
}
