#include "maintenance/ui/ekranlar.h"

#include "maintenance/ui/db_aktar_frm.h"
#include "maintenance/ui/offline_ayarlar_frm.h"
#include "maintenance/ui/server_para_frm.h"
#include "maintenance/ui/servis_menu.h"
#include "maintenance/ui/yedek_frm.h"
#include "ui/ekran_kaydi.h"

namespace maintenance_ui {

void ekranlariTanit(ui::EkranKaydi& kayit) {
  kayit.tanit<YedekFrm>("YedekFrm");
  kayit.tanit<ServisMenu>("ServisMenu");
  kayit.tanit<OfflineAyarlarFrm>("Offline_AyarlarFRM");
  kayit.tanit<ServerParaFrm>("ServerParaFrm");
  kayit.tanit<DbAktarFrm>("DbAktarFRm");
}

}  // namespace maintenance_ui
