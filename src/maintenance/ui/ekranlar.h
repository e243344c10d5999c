// The screens of maintenance, made known to the console.
#pragma once

namespace ui {
class EkranKaydi;
}

namespace maintenance_ui {

void ekranlariTanit(ui::EkranKaydi& kayit);

}  // namespace maintenance_ui
