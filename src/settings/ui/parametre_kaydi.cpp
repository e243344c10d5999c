#include "settings/ui/parametre_kaydi.h"

#include "settings/ui/karsilastirma.h"
#include "settings/ui/parametre_formu.h"
#include "settings/ui/uzerine_sor.h"

namespace settings_ui {

namespace {

std::vector<std::string> degisimler(const std::vector<settings::ParametreFarki>& aradaki) {
  std::vector<std::string> metinler;
  for (const settings::ParametreFarki& fark : aradaki)
    metinler.push_back(settings::parametreAdi(*fark.parametre) + ": " +
                       settings::depoMetni(*fark.parametre, fark.eski) + " → " +
                       settings::depoMetni(*fark.parametre, fark.yeni));
  return metinler;
}

}  // namespace

void formuDoldur(session::Oturum& oturum, const settings::FirmaKaydi& kayit, ParametreFormu& form) {
  std::vector<std::string> hatalar;
  form.goster(settings::Parametre_Yukle(kayit, hatalar));
  std::string metin;
  for (const std::string& hata : hatalar) metin += (metin.empty() ? "" : "\n") + hata;
  if (!metin.empty()) oturum.kutular->message(metin, session::Icon::Warning);
}

bool formuKaydet(session::Oturum& oturum, settings::FirmaKaydi& kayit, const ParametreFormu& form,
                 settings::ParametreEkrani ekran) {
  std::string hata;
  const auto yeni = settings::saklanacak(kayit, form.oku(), ekran, hata);
  if (!yeni) {
    oturum.kutular->message(hata, session::Icon::Stop);
    return false;
  }
  auto sonuc = settings::Parametre_Kaydet(oturum, kayit, *yeni);
  if (!sonuc.aradaki.empty()) {
    if (!uzerineSorulur(oturum, "Bu firmanın parametreleri", degisimler(sonuc.aradaki))) return false;
    sonuc = settings::Parametre_Kaydet(oturum, kayit, *yeni, true);
  }
  if (!sonuc.yazildi) oturum.kutular->message(sonuc.hata, session::Icon::Stop);
  return sonuc.yazildi;
}

void karsilastir(session::Oturum& oturum, const settings::FirmaKaydi& kayit, ParametreFormu& form,
                 settings::ParametreEkrani ekran, QWidget* ana) {
  Karsilastirma pencere(oturum, kayit, form, ekran, ana);
  pencere.exec();
}

}  // namespace settings_ui
