// sys.inf, in the program's folder, rights 0600 because the password stands in it in the clear:
//
//   file     = line EOL { anything }
//   line     = server ";" login ";" password ";" change ";"
//   change   = "1" | "0"                  whether the server may be changed during login
//
// EOL is the platform's line end; the text is in the platform's 8-bit form: code page 1254 on Windows,
// UTF-8 elsewhere. Nothing escapes a ";". A reader takes fields by position, any number of them; a file
// that is no UTF-8 is read as code page 1254, so that one copied from Windows serves.
#include "session/sys_inf.h"

#include <algorithm>

#include "platform/code_page.h"
#include "platform/files.h"
#include "session/metin.h"

namespace session {

namespace {

#ifdef _WIN32
constexpr std::string_view lineEnd = "\r\n";
std::string systemText(const std::string& text) {
  return platform::encode1254(text);
}
#else
constexpr std::string_view lineEnd = "\n";
std::string systemText(const std::string& text) {
  return text;
}
#endif

}  // namespace

std::filesystem::path sysInfYolu(const std::filesystem::path& programFolder) {
  return programFolder / "sys.inf";
}

std::string sysInfEksigi(const std::filesystem::path& programFolder) {
  const std::filesystem::path file = sysInfYolu(programFolder);
  std::error_code error;
  return file.string() +
         (std::filesystem::exists(file, error) ? " okunamadı ya da sunucu adı yok." : " bulunamadı.");
}

std::string Sys_Inf_Oku(const std::filesystem::path& programFolder) {
  // Only its first line counts, and no line of it is that long.
  constexpr std::size_t longest = 4096;
  std::string text = platform::readFile(sysInfYolu(programFolder), longest).value_or("");
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.erase(0, byteOrderMark.size());
  const std::string line = text.substr(0, text.find_first_of("\r\n"));
  return platform::isUtf8(line) ? line : platform::decode1254(line);
}

std::array<std::string, 6> sysInfBol(std::string_view line) {
  std::array<std::string, 6> fields;
  for (std::size_t index = 1; index < fields.size(); ++index) {
    const auto end = line.find(';');
    fields[index] = line.substr(0, end);
    if (end == std::string_view::npos) break;
    line.remove_prefix(end + 1);
  }
  return fields;
}

std::string sysInfSatiri(const SysInf& degerler) {
  return Trim(degerler.server) + ";" + degerler.login + ";" + degerler.password +
         (degerler.girisDegisir ? ";1;" : ";0;");
}

std::string Sys_Inf_Yaz(const std::filesystem::path& programFolder, const SysInf& degerler) {
  const auto error = platform::writeFileSafely(sysInfYolu(programFolder),
                                               systemText(sysInfSatiri(degerler)) + std::string(lineEnd));
  if (!error) return {};
  return "sys.inf yazılamadı (" + programFolder.string() + "): " + error.message();
}

std::string sysInfUyarisi(const std::filesystem::path& programFolder) {
  const auto file = sysInfYolu(programFolder);
  return platform::isOpenToOthers(file)
             ? file.string() +
                   " başkalarınca okunabiliyor; içinde SQL şifresi var. Kapatmak için: chmod 600 sys.inf"
             : std::string();
}

bool sysInfAlaniUygun(std::string_view text) {
  return text.find_first_of(std::string_view(";\r\n\0", 4)) == std::string_view::npos;
}

void sysInfYukle(Oturum& oturum) {
  const auto fields = sysInfBol(Sys_Inf_Oku(oturum.platform->programFolder()));
  oturum.Server_Adi = Trim(fields[1]);
  oturum.SQL_Login = fields[2];
  oturum.SQL_Sifre = fields[3];
}

}  // namespace session
