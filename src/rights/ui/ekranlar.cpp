#include "rights/ui/ekranlar.h"

#include "rights/ui/ekle_frm.h"
#include "rights/ui/kasiyer_yetki_frm.h"
#include "rights/ui/yetki_frm.h"
#include "ui/ekran_kaydi.h"

namespace rights_ui {

void ekranlariTanit(ui::EkranKaydi& kayit) {
  kayit.tanit<EkleFrm>("Ekle_Frm");
  kayit.tanit<YetkiFrm>("Yetki_Frm");
  kayit.tanit<KasiyerYetkiFrm>("KasiyerYetkiFrm");
}

}  // namespace rights_ui
