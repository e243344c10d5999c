// SabitTanimlar_Frm: the parameters of a company and its stock groups.
#pragma once

#include <functional>
#include <optional>

#include "session/oturum.h"
#include "settings/parametre.h"
#include "ui/kart.h"

class QCheckBox;
class QLabel;
class QTabWidget;

namespace ui {
class ConsolePort;
}

namespace settings_ui {

class FirmaSecimi;
class GrupSayfasi;
class ParametreFormu;

class SabitTanimlar : public ui::Kart {
  Q_OBJECT
 public:
  SabitTanimlar(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

  // Asked for a design file; empty when the choice is given up. The test brings its own.
  std::function<QString(QWidget*)> dosyaSec;
  ParametreFormu& form() { return *form_; }

 private:
  QWidget* genelSekme();
  QWidget* stokSekme();
  QWidget* maliyetSekme();
  QWidget* digerSekme();
  QWidget* webSekme();
  QWidget* riskTanimi();
  QWidget* islemTipTanimlari();
  QWidget* dizaynDugmesi(const char* ad, const char* alan);
  QLabel* onizleme(const char* ad);
  void firmaDegisti();
  void ikinciBolum(const std::string& firma);
  void parametreDegisti(int sira);
  void emanetAmbari();
  void kaydet();

  session::Oturum& oturum_;
  std::optional<settings::FirmaKaydi> Firma_Kaydi_;
  ParametreFormu* form_;
  FirmaSecimi* firma_;
  QCheckBox* kopyala_;
  QTabWidget* sekmeler_;
  GrupSayfasi* gruplar_ = nullptr;
  QPushButton *tamam_, *karsilastir_;
  std::vector<std::pair<std::size_t, QLabel*>> onizlemeler_;
  std::string emanetNo_;  // warehouse when the row was loaded
  bool dolduruluyor_ = false;
};

}  // namespace settings_ui
