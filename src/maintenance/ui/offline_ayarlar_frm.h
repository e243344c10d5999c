// Offline_AyarlarFRM: how a branch that works offline reaches its centre.
#pragma once

#include "maintenance/offline.h"
#include "ui/kart.h"

class QCheckBox;
class QLineEdit;

namespace ui {
class ConsolePort;
}

namespace maintenance_ui {

class OfflineAyarlarFrm : public ui::Kart {
  Q_OBJECT
 public:
  OfflineAyarlarFrm(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void saatMaskesi(QLineEdit* alan);
  void kaydet();

  session::Oturum& oturum_;
  std::vector<QLineEdit*> alanlar_;
  QCheckBox* otoGon_;
};

}  // namespace maintenance_ui
