// What a program takes from the heap by its own code, and what the storage library takes, each with its peak.
// Include it in one file of a program: it replaces the global operators new and delete.
#pragma once

#include <malloc.h>
#include <sqlite3.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace bench {

struct Taken {
  std::atomic<long long> bytes{0}, peak{0};
  void add(long long size) {
    const long long now = bytes += size;
    for (long long top = peak; now > top && !peak.compare_exchange_weak(top, now);) {
    }
  }
  void restart() { peak = bytes.load(); }
};
inline Taken own, library;

// Before the library's first use.
inline void countLibrary() {
  static sqlite3_mem_methods under;
  sqlite3_config(SQLITE_CONFIG_GETMALLOC, &under);
  sqlite3_mem_methods counted = under;
  counted.xMalloc = [](int size) {
    void* const memory = under.xMalloc(size);
    if (memory != nullptr) library.add(under.xSize(memory));
    return memory;
  };
  counted.xFree = [](void* memory) {
    library.add(-static_cast<long long>(under.xSize(memory)));
    under.xFree(memory);
  };
  counted.xRealloc = [](void* memory, int size) {
    const int before = under.xSize(memory);
    void* const moved = under.xRealloc(memory, size);
    if (moved != nullptr) library.add(under.xSize(moved) - before);
    return moved;
  };
  sqlite3_config(SQLITE_CONFIG_MALLOC, &counted);
}

}  // namespace bench

void* operator new(std::size_t size) {
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  bench::own.add(static_cast<long long>(malloc_usable_size(memory)));
  return memory;
}
void operator delete(void* memory) noexcept {
  if (memory != nullptr) bench::own.add(-static_cast<long long>(malloc_usable_size(memory)));
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}
