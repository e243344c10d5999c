// What a process takes with its window open, told in one line to the process that started it.
#pragma once

#include <QEventLoop>
#include <QTimer>
#include <QWidget>
#include <cstdio>

#include "bench/status.h"

namespace bench {

// A window is there when the window system has asked for its picture and has got it.
inline void settle() {
  QEventLoop loop;
  QTimer::singleShot(1500, &loop, &QEventLoop::quit);
  loop.exec();
}

// "resident own width height": kilobytes, and the window's size.
inline void tellMemory(const QWidget& window) {
  settle();
  std::printf("%ld %ld %d %d\n", statusKilobytes("VmRSS"), statusKilobytes("RssAnon"), window.width(),
              window.height());
  std::fflush(stdout);
}

}  // namespace bench
