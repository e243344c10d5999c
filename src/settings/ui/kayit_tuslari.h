#pragma once

namespace settings_ui {

// In the foot of the screens and in the status bar.
inline constexpr const char* kayitTuslari = "[F2 -> Kayıt]     [F3 -> Çıkış]";

}  // namespace settings_ui
