// The screens of the company database.
#pragma once

namespace ui {
class EkranKaydi;
}

namespace company_ui {

void ekranlariTanit(ui::EkranKaydi& kayit);

}  // namespace company_ui
