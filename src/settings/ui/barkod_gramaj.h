// BarkodGramajFrm: scale barcode layouts, with a tester.
#pragma once

#include "session/izgara.h"
#include "session/oturum.h"
#include "ui/kart.h"

class QLabel;
class QLineEdit;

namespace ui {
class ConsolePort;
class Izgara;
}  // namespace ui

namespace settings_ui {

class FirmaSecimi;

class BarkodGramaj : public ui::Kart {
  Q_OBJECT
 public:
  BarkodGramaj(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 private:
  QWidget* deneme();
  void firmaDegisti();
  void sil();
  void kaydet();
  void barkodDene();
  session::Oturum& oturum_;
  FirmaSecimi* firma_;
  ui::Izgara* izgara_;
  QLabel *hata_, *sonuc_ = nullptr;
  QLineEdit* barkod_ = nullptr;
  QPushButton* tamam_;
  std::string secili_;
  session::IzgaraSatirlari okunan_;  // the table as it was read
};

}  // namespace settings_ui
