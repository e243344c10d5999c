// Runs zembera-cli in this process on a temporary folder, with texts as its streams.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "cli/program.h"

namespace support {

class KomutSatiri {
 public:
  using SurucuYapici = decltype(cli::Ortam::surucuYap);

  explicit KomutSatiri(SurucuYapici surucuYap) : surucuYap_(std::move(surucuYap)) {
    std::string name = (std::filesystem::temp_directory_path() / "zembera-cli-XXXXXX").string();
    dizin = ::mkdtemp(name.data());
  }
  ~KomutSatiri() { std::filesystem::remove_all(dizin); }
  KomutSatiri(const KomutSatiri&) = delete;
  KomutSatiri& operator=(const KomutSatiri&) = delete;

  int calistir(const std::vector<std::string>& argumanlar, const std::string& girdi = "") {
    std::istringstream in(girdi);
    std::ostringstream outStream;
    std::ostringstream errStream;
    if (doluDisk) outStream.setstate(std::ios::badbit);
    cli::Ortam ortam{in, outStream, errStream, terminal, false, dizin, surucuYap_};
    const int code = cli::calistir(ortam, argumanlar);
    out = outStream.str();
    err = errStream.str();
    return code;
  }

  std::filesystem::path dizin;
  bool terminal = false;
  bool doluDisk = false;  // the standard output takes nothing
  std::string out, err;   // of the last run

 private:
  SurucuYapici surucuYap_;
};

}  // namespace support
