// The screens of the rollover.
#pragma once

namespace ui {
class EkranKaydi;
}

namespace rollover_ui {

void ekranlariTanit(ui::EkranKaydi& kayit);

}  // namespace rollover_ui
