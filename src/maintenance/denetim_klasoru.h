// Where a proof puts what it needs for itself: a folder beside sys.inf, held by a lock inside it, so that
// what a killed proof left is known for that and goes at the next start.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/file_copy.h"

namespace maintenance {

class DenetimKlasoru {
 public:
  // Falls back to the system's folder for such files where the program's own cannot be written.
  explicit DenetimKlasoru(const std::filesystem::path& programKlasoru);
  ~DenetimKlasoru();
  DenetimKlasoru(const DenetimKlasoru&) = delete;
  DenetimKlasoru& operator=(const DenetimKlasoru&) = delete;

  const std::filesystem::path& yol() const { return yol_; }

 private:
  std::filesystem::path yol_;
  std::unique_ptr<platform::FileLock> kilit_;
};

// Those that nobody holds any more.
void denetimArtiklariniSil(const std::filesystem::path& programKlasoru);

}  // namespace maintenance
