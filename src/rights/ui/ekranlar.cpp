#include "rights/ui/ekranlar.h"

#include "rights/ui/ekle_frm.h"
#include "ui/ekran_kaydi.h"

namespace rights_ui {

void ekranlariTanit(ui::EkranKaydi& kayit) {
  kayit.tanit<EkleFrm>("Ekle_Frm");
}

}  // namespace rights_ui
