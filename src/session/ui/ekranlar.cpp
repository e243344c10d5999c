#include "session/ui/ekranlar.h"

#include "company/ui/ekranlar.h"
#include "maintenance/ui/ekranlar.h"
#include "rights/ui/ekranlar.h"
#include "rollover/ui/ekranlar.h"
#include "settings/ui/ekranlar.h"

namespace session_ui {

// One line a room.
ui::EkranKaydi butunEkranlar() {
  ui::EkranKaydi kayit;
  company_ui::ekranlariTanit(kayit);
  rights_ui::ekranlariTanit(kayit);
  maintenance_ui::ekranlariTanit(kayit);
  rollover_ui::ekranlariTanit(kayit);
  settings_ui::ekranlariTanit(kayit);
  return kayit;
}

}  // namespace session_ui
