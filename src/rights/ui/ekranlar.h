// The screens of users and rights.
#pragma once

namespace ui {
class EkranKaydi;
}

namespace rights_ui {

void ekranlariTanit(ui::EkranKaydi& kayit);

}  // namespace rights_ui
