#include "settings/ui/ekranlar.h"

#include "settings/ui/barkod_gramaj.h"
#include "settings/ui/el_terminali.h"
#include "settings/ui/numaralar.h"
#include "settings/ui/rapor_evrak.h"
#include "settings/ui/sabit_tanimlar.h"
#include "settings/ui/taksitli_satis.h"
#include "settings/ui/tanim_ekrani.h"
#include "ui/ekran_kaydi.h"

namespace settings_ui {

namespace {

struct TanimKaydi {
  const char* ad;  // as the console knows it
  TanimEkrani::Gorunum gorunum;
};

}  // namespace

void ekranlariTanit(ui::EkranKaydi& kayit) {
  kayit.tanit<SabitTanimlar>("SabitTanimlar_Frm");
  kayit.tanit<TaksitliSatis>("TaksitliSatisTanimlar_Frm");
  kayit.tanit<Numaralar>("Numaralar_Frm");
  kayit.tanit<BarkodGramaj>("BarkodGramajFrm");
  kayit.tanit<ElTerminali>("ElTerminaliTanimKartifrm");
  kayit.tanit<RaporEvrak>("RprEvrakTsrFrm");
  kayit.tanit<IsyeriEkrani>("MNIsyeri");
  const TanimKaydi tanimlar[] = {{"MNAmbar", {"ambar", "Ambar Tanımları", {"ambar"}}},
                                 {"MnSatici", {"satici", "Satıcı Tanımları", {"satici"}}},
                                 {"MNFiyat", {"fiyat", "Fiyat Tanımları", {"fiyat"}}},
                                 {"MNDoviz", {"doviz", "Döviz Tanımları", {"doviz"}}},
                                 {"MNRenkTanim", {"renk", "Özellik Tanımları", {"renk", "beden", "drop"}}}};
  for (const TanimKaydi& tanim : tanimlar)
    kayit.tanit(tanim.ad,
                [gorunum = tanim.gorunum](session::Oturum& oturum, ui::ConsolePort& konsol) -> ui::Kart* {
                  return new TanimEkrani(oturum, konsol, gorunum);
                });
}

}  // namespace settings_ui
