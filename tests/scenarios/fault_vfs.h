// The disk as SQLite sees it, which fails when a test says so.
#pragma once

#include <sqlite3.h>

namespace scenarios {

struct Fault {
  int code = SQLITE_FULL;  // what the failing call returns
  int after = 0;           // so many writes, truncations and syncs pass first
  bool lasting = false;    // all later ones fail, too; else just the one
  bool kill = false;       // the process is killed in place of the call
  bool opens = false;      // the calls that open a file are meant, and none else
};

// While it lives, SQLite's default VFS is one that can fail. Make it before any database is opened.
class FaultyDisk {
 public:
  FaultyDisk();
  ~FaultyDisk();
  FaultyDisk(const FaultyDisk&) = delete;
  FaultyDisk& operator=(const FaultyDisk&) = delete;

  void arm(const Fault& fault);
  // Heals the disk. True when the fault has struck since arm().
  bool disarm();
  int passed() const;  // calls that came through since arm()

 private:
  sqlite3_vfs vfs_;
  sqlite3_vfs* real_;
};

}  // namespace scenarios
