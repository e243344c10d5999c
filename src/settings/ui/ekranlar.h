// The screens of company settings.
#pragma once

namespace ui {
class EkranKaydi;
}

namespace settings_ui {

void ekranlariTanit(ui::EkranKaydi& kayit);

}  // namespace settings_ui
