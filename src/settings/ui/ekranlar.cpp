#include "settings/ui/ekranlar.h"

#include "settings/ui/sabit_tanimlar.h"
#include "settings/ui/taksitli_satis.h"
#include "ui/ekran_kaydi.h"

namespace settings_ui {

void ekranlariTanit(ui::EkranKaydi& kayit) {
  kayit.tanit<SabitTanimlar>("SabitTanimlar_Frm");
  kayit.tanit<TaksitliSatis>("TaksitliSatisTanimlar_Frm");
}

}  // namespace settings_ui
