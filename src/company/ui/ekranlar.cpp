#include "company/ui/ekranlar.h"

#include "company/ui/firma_tanim.h"
#include "ui/ekran_kaydi.h"

namespace company_ui {

void ekranlariTanit(ui::EkranKaydi& kayit) {
  kayit.tanit<FirmaTanim>("Firma_Tanım");
}

}  // namespace company_ui
