#include "maintenance/denetim_klasoru.h"

#include <string>

namespace maintenance {

namespace fs = std::filesystem;

namespace {

constexpr const char* on = "yedek_denetim.";
constexpr int enCok = 100;  // proofs at once

std::unique_ptr<platform::FileLock> kilitle(const fs::path& klasor) {
  return platform::FileLock::tryLock(klasor / "kilit");
}

}  // namespace

DenetimKlasoru::DenetimKlasoru(const fs::path& programKlasoru) {
  denetimArtiklariniSil(programKlasoru);
  std::error_code hata;
  for (int i = 0; i < enCok && !kilit_; ++i) {
    yol_ = programKlasoru / (on + std::to_string(i));
    if (fs::create_directory(yol_, hata)) fs::permissions(yol_, fs::perms::owner_all, hata);
    kilit_ = kilitle(yol_);
  }
  if (!kilit_) yol_ = fs::temp_directory_path();
}

DenetimKlasoru::~DenetimKlasoru() {
  std::error_code hata;
  if (kilit_) fs::remove_all(yol_, hata);
}

void denetimArtiklariniSil(const fs::path& programKlasoru) {
  std::error_code hata;
  for (fs::directory_iterator it(programKlasoru, hata), son; !hata && it != son; it.increment(hata)) {
    if (!it->path().filename().string().starts_with(on) || it->is_symlink() || !it->is_directory()) continue;
    std::error_code kalan;
    if (const auto kilit = kilitle(it->path())) fs::remove_all(it->path(), kalan);
  }
}

}  // namespace maintenance
