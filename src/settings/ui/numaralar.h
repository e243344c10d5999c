// Numaralar_Frm: the last used document numbers of a company.
#pragma once

#include "session/oturum.h"
#include "settings/numara.h"
#include "ui/kart.h"

class QLabel;

namespace ui {
class ConsolePort;
class Izgara;
}  // namespace ui

namespace settings_ui {

class FirmaSecimi;

class Numaralar : public ui::Kart {
  Q_OBJECT
 public:
  Numaralar(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 private:
  void firmaDegisti();
  void kaydet();
  bool baskasininki(const std::vector<settings::NumaraYazisi>& yazilar);
  session::Oturum& oturum_;
  FirmaSecimi* firma_;
  ui::Izgara* izgara_;
  QLabel* hata_;
  QPushButton* tamam_;
  std::string secili_;
  std::vector<bool> var_;  // whether the row's counter exists
};

}  // namespace settings_ui
