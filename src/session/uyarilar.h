// What a login tells an administrator before the work begins, and the data folder of a server that moved.
#pragma once

#include <string>
#include <vector>

#include "session/oturum.h"

namespace session {

// One text per matter: sys.inf or data files that others can read, databases that need a hand. Empty when
// all is well. Asks the local server alone; one on the network keeps its files itself.
std::vector<std::string> Uyarilar(Oturum& oturum);

// Veri_Klasoru from the row of sysDTYL. The folder in which the local server was made is told as the one in
// which it lies now.
void Veri_Klasoru_Belirle(Oturum& oturum, const std::string& kayitli);

}  // namespace session
