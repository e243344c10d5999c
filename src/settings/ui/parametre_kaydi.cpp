#include "settings/ui/parametre_kaydi.h"

#include "settings/ui/karsilastirma.h"
#include "settings/ui/parametre_formu.h"

namespace settings_ui {

namespace {

std::string degisimler(const std::vector<settings::ParametreFarki>& aradaki) {
  constexpr std::size_t enCok = 12;
  std::string metin;
  for (std::size_t i = 0; i < aradaki.size() && i < enCok; ++i)
    metin += "\n" + settings::parametreAdi(*aradaki[i].parametre) + ": " +
             settings::depoMetni(*aradaki[i].parametre, aradaki[i].eski) + " → " +
             settings::depoMetni(*aradaki[i].parametre, aradaki[i].yeni);
  if (aradaki.size() > enCok) metin += "\n… ve " + std::to_string(aradaki.size() - enCok) + " parametre daha";
  return metin;
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
    const bool uzerine = oturum.kutular->ask(
        "Bu firmanın parametreleri siz çalışırken başkası tarafından değiştirildi:\n" +
        degisimler(sonuc.aradaki) +
        "\n\nSizin değiştirdiğiniz parametreler yine de yazılsın mı? (Hayır derseniz hiçbir şey yazılmaz.)");
    if (!uzerine) return false;
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
