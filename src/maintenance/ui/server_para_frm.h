// ServerParaFrm: which server the program uses, and with which SQL login.
#pragma once

#include "maintenance/server_para.h"
#include "ui/kart.h"

class QCheckBox;
class QLabel;
class QLineEdit;

namespace ui {
class ConsolePort;
}

namespace maintenance_ui {

class ServerParaFrm : public ui::Kart {
  Q_OBJECT
 public:
  ServerParaFrm(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 private:
  maintenance::ServerPara oku() const;
  void kaydet();
  void dene();

  session::Oturum& oturum_;
  std::vector<QLineEdit*> alanlar_;
  QCheckBox* snDeg_;
  QLabel* sonuc_;
};

}  // namespace maintenance_ui
