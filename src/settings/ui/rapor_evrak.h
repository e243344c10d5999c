// RprEvrakTsrFrm: default SQL texts of reports and documents.
#pragma once

#include "session/oturum.h"
#include "ui/kart.h"

class QLabel;
class QPlainTextEdit;
class QTableWidget;

namespace ui {
class ConsolePort;
}

namespace settings_ui {

class RaporEvrak : public ui::Kart {
  Q_OBJECT
 public:
  RaporEvrak(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 private:
  void yukle();
  void geri(QTableWidget* tablo, int satir, int sutun);
  void kaydet();
  bool birakilir();
  session::Oturum& oturum_;
  QTableWidget *PRModulFlx_, *KisimFlx_;
  QPlainTextEdit* PRSQL_;
  int Secili_Modul_ = 0, Secili_Kisim_ = 0;
};

}  // namespace settings_ui
