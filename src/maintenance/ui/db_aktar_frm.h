// DbAktarFRm: moves company databases from another folder into the server's data folder.
#pragma once

#include "session/oturum.h"
#include "ui/kart.h"

class QCheckBox;
class QTableWidget;

namespace ui {
class ConsolePort;
}

namespace maintenance_ui {

class KlasorSecici;

class DbAktarFrm : public ui::Kart {
  Q_OBJECT
 public:
  DbAktarFrm(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;
  KlasorSecici* kaynak() { return kaynak_; }

 private:
  void kaynakDegisti();
  void hepsini(bool sec);
  void aktar();

  session::Oturum& oturum_;
  ui::ConsolePort& konsol_;
  KlasorSecici *kaynak_, *hedef_;
  QTableWidget* base_;
  QCheckBox* genel_;
  std::string hedefYolu_;  // as the catalog tells it
};

}  // namespace maintenance_ui
