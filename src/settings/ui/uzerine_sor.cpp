#include "settings/ui/uzerine_sor.h"

namespace settings_ui {

bool uzerineSorulur(session::Oturum& oturum, std::string_view ne, const std::vector<std::string>& farklar) {
  constexpr std::size_t enCok = 12;
  std::string metin = std::string(ne) + " siz çalışırken başkası tarafından değiştirildi:\n";
  for (std::size_t i = 0; i < farklar.size() && i < enCok; ++i) metin += "\n" + farklar[i];
  if (farklar.size() > enCok)
    metin += "\n… ve " + std::to_string(farklar.size() - enCok) + " değişiklik daha";
  return oturum.kutular->ask(
      metin + "\n\nSizin değiştirdikleriniz yine de yazılsın mı? (Hayır derseniz hiçbir şey yazılmaz.)");
}

}  // namespace settings_ui
