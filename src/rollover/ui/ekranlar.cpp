#include "rollover/ui/ekranlar.h"

#include "rollover/ui/devir_frm.h"
#include "ui/ekran_kaydi.h"

namespace rollover_ui {

void ekranlariTanit(ui::EkranKaydi& kayit) {
  kayit.tanit<DevirFrm>("DevirFrm");
}

}  // namespace rollover_ui
