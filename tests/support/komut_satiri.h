// Runs zembera-cli in this process on a temporary folder, with texts as its streams.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "cli/program.h"
#include "support/temp_folder.h"

namespace support {

class KomutSatiri {
 public:
  using SurucuYapici = decltype(cli::Ortam::surucuYap);

  explicit KomutSatiri(SurucuYapici surucuYap) : surucuYap_(std::move(surucuYap)) {}
  KomutSatiri(const KomutSatiri&) = delete;
  KomutSatiri& operator=(const KomutSatiri&) = delete;

  int calistir(const std::vector<std::string>& argumanlar, const std::string& girdi = "") {
    std::istringstream in(girdi);
    std::ostringstream outStream;
    std::ostringstream errStream;
    if (doluDisk) outStream.setstate(std::ios::badbit);
    cli::Ortam ortam{in, outStream, errStream, terminal, false, dizin, surucuYap_, renkli, renkli};
    ortam.tamamlamaSuresi = std::chrono::minutes(2);  // a busy machine is no fault
    const int code = cli::calistir(ortam, argumanlar);
    out = outStream.str();
    err = errStream.str();
    return code;
  }

  const TempFolder temporary;
  const std::filesystem::path& dizin = temporary.path;
  bool terminal = false, renkli = false;
  bool doluDisk = false;  // the standard output takes nothing
  std::string out, err;   // of the last run

 private:
  SurucuYapici surucuYap_;
};

}  // namespace support
