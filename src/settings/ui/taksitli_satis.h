// TaksitliSatisTanimlar_Frm: the parameters of instalment sales.
#pragma once

#include <optional>

#include "session/oturum.h"
#include "settings/parametre.h"
#include "ui/kart.h"

class QCheckBox;

namespace ui {
class ConsolePort;
}

namespace settings_ui {

class FirmaSecimi;
class ParametreFormu;

class TaksitliSatis : public ui::Kart {
  Q_OBJECT
 public:
  TaksitliSatis(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 private:
  void firmaDegisti();
  void kaydet();

  session::Oturum& oturum_;
  std::optional<settings::FirmaKaydi> Firma_Kaydi_;
  ParametreFormu* form_;
  FirmaSecimi* firma_;
  QCheckBox* kopyala_;
  QPushButton *tamam_, *karsilastir_;
};

}  // namespace settings_ui
