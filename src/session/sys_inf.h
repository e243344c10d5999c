// sys.inf: the one-line parameter file that says which server to use and with which SQL login.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "session/oturum.h"

namespace session {

struct SysInf {
  std::string server, login, password;
  bool girisDegisir = false;  // the server may be changed during login
};

std::filesystem::path sysInfYolu(const std::filesystem::path& programFolder);
// Why there is no server name: the file is missing, or cannot be read, or names none. In Turkish.
std::string sysInfEksigi(const std::filesystem::path& programFolder);

// The first line without its line end; empty when the file is missing. A failing read gives what was read.
std::string Sys_Inf_Oku(const std::filesystem::path& programFolder);

// Six slots filled from index 1; index 0 stays empty, the sixth field and all behind it are dropped. The
// fields are taken as they stand.
std::array<std::string, 6> sysInfBol(std::string_view line);

// Writes the file anew: rights 0600, in place at once or not at all. Empty on success, else a Turkish text.
std::string Sys_Inf_Yaz(const std::filesystem::path& programFolder, const SysInf& degerler);
std::string sysInfSatiri(const SysInf& degerler);

// Told at each login while others may read the file, for the password stands in it; empty otherwise.
std::string sysInfUyarisi(const std::filesystem::path& programFolder);

// False for a text that would break the line: it holds ";", a line end or a NUL.
bool sysInfAlaniUygun(std::string_view text);

// Server_Adi, SQL_Login, SQL_Sifre from the file in the program's folder.
void sysInfYukle(Oturum& oturum);

}  // namespace session
