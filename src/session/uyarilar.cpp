#include "session/uyarilar.h"

#include "session/sys_inf.h"

namespace session {

std::vector<std::string> Uyarilar(Oturum& oturum) {
  std::vector<std::string> uyarilar;
  if (const std::string acik = sysInfUyarisi(oturum.platform->programFolder()); !acik.empty())
    uyarilar.push_back(acik);
  try {
    const auto yerel = oturum.surucu->local(oturum.Server_Adi);
    if (!yerel || !yerel->exists()) return uyarilar;
    for (const std::string& not_ : yerel->remarks()) uyarilar.push_back(not_);
  } catch (const db::SqlError&) {
    // The connection that follows tells it better.
  }
  return uyarilar;
}

void Veri_Klasoru_Belirle(Oturum& oturum, const std::string& kayitli) {
  oturum.Veri_Klasoru = kayitli;
  const auto yerel = oturum.surucu->local(oturum.Server_Adi);
  if (!yerel) return;
  std::filesystem::path klasor(kayitli);
  if (klasor.filename().empty()) klasor = klasor.parent_path();
  if (klasor == yerel->recordedFolder()) oturum.Veri_Klasoru = yerel->folder().string();
}

}  // namespace session
