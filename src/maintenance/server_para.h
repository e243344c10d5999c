// ServerParaFrm without its screen: the parameter file sys.inf.
#pragma once

#include <optional>
#include <string>

#include "session/oturum.h"

namespace maintenance {

struct ServerPara {
  std::string SunucuAdi, sqlKullanici, sqlSifre;
  std::optional<bool> SNDeg;                       // empty: the file does not say
  std::string MasterAd, MasterSifre, SifreTekrar;  // compared, never stored
};

// The first line of the file. When there is none or it cannot be read, asks whether to begin it anew.
std::string Sys_Inf_Satir_Oku(session::Oturum& oturum);
ServerPara Server_Para_Ac(session::Oturum& oturum);

// Writes the file whole or not at all. False after a refusal, which is shown: the screen stays.
bool Server_Para_Kaydet(session::Oturum& oturum, const ServerPara& para);

// Tries what is entered before it is written; what came of it in plain words, without the password.
struct BaglantiDenemesi {
  bool tamam = false;
  std::string metin;
};
BaglantiDenemesi Baglantiyi_Dene(session::Oturum& oturum, const ServerPara& para);

}  // namespace maintenance
