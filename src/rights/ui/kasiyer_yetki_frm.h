// The till's rights and settings KasiyerYetkiFrm.
#pragma once

#include <vector>

#include "rights/kasiyer.h"
#include "session/oturum.h"
#include "ui/kart.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QTabWidget;

namespace ui {
class ConsolePort;
class Izgara;
}  // namespace ui

namespace rights_ui {

class KasiyerYetkiFrm : public ui::Kart {
  Q_OBJECT
 public:
  KasiyerYetkiFrm(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 private:
  QWidget* firmaSatiri();
  QWidget* fisSekmesi();
  QWidget* ayarSekmesi();
  QWidget* nesneSekmesi();
  QWidget* kisayolSekmesi();
  void altAlta(QBoxLayout* yanlar);
  ui::Izgara* tikIzgarasi(const char* ad, const char* kod, const char* yazi);

  void firmaSecildi(int sira);
  void goster();
  void fisGoster();
  void kisayolGoster();
  void oku();
  void degerSec(int satir);
  void degerSil(int satir);
  void stokSec(int satir);
  void kaydet();

  session::Oturum& oturum_;
  rights::KasiyerDuzeni duzen_;
  QComboBox* firma_ = nullptr;
  QTabWidget* sekmeler_ = nullptr;
  ui::Izgara *fis_ = nullptr, *nesneler_ = nullptr, *teraziler_ = nullptr, *stoklar_ = nullptr;
  // By place in the tables: a check box or a field.
  std::vector<QWidget*> kolonlar_, ayarlar_;
  QPushButton *tamam_ = nullptr, *cikis_ = nullptr;
  bool gosteriyor_ = false;
};

}  // namespace rights_ui
