// An empty window of the toolkit, with nothing else in its process; console_memory measures against it.
//   empty_window [WIDTH HEIGHT]
#include <QApplication>
#include <QWidget>
#include <cstdlib>

#include "bench/memory.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  if (argc > 2) window.resize(std::atoi(argv[1]), std::atoi(argv[2]));
  window.show();
  bench::tellMemory(window);
  return 0;
}
