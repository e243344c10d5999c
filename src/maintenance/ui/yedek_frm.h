// YedekFrm: backs a company up into a folder and restores it from one.
#pragma once

#include "session/oturum.h"
#include "ui/kart.h"

class QComboBox;
class QMenu;
class QTableWidget;

namespace ui {
class ConsolePort;
}

namespace maintenance_ui {

class KlasorSecici;

class YedekFrm : public ui::Kart {
  Q_OBJECT
 public:
  YedekFrm(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;
  KlasorSecici* klasorler() { return klasorler_; }

 private:
  void menuKur();
  void denetimKur();
  void uyar();  // what the stop means, and for how long
  void yedekle(bool canli);
  // Proves the backup in the folder and shows the result.
  void denetle(const std::filesystem::path& klasor);
  void geriAl();
  void servis(bool baslat);
  void yeniKlasor();
  void yenidenAdlandir();
  void klasoruSil();
  void git(const std::filesystem::path& klasor, const std::string& hata);

  session::Oturum& oturum_;
  KlasorSecici* klasorler_;
  QComboBox* firma_;
  QMenu* baba_;
  QTableWidget* denetim_;
  QPushButton *yedekle_, *canli_, *geriAl_, *denetle_;
};

}  // namespace maintenance_ui
