// The user card Ekle_Frm: new user, changed card, inspection.
#pragma once

#include <vector>

#include "rights/kullanici_karti.h"
#include "session/oturum.h"
#include "ui/kart.h"

class QCheckBox;
class QGroupBox;
class QLineEdit;
class QListWidget;

namespace ui {
class ConsolePort;
}

namespace rights_ui {

class EkleFrm : public ui::Kart {
  Q_OBJECT
 public:
  EkleFrm(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 private:
  QGroupBox* alanCercevesi(const char* ad, const QString& baslik, int grup);
  QGroupBox* firmaCercevesi();
  void tuslar();
  void goster();
  void oku();
  void konumYaz();
  void kaydet();

  session::Oturum& oturum_;
  ui::ConsolePort& konsol_;
  rights::KullaniciKarti kart_;
  std::vector<QLineEdit*> alanlar_;  // in the order of the field table
  QCheckBox* yonetici_ = nullptr;
  QListWidget* firmalar_ = nullptr;
  QLineEdit* konum_ = nullptr;
  QPushButton *tamam_ = nullptr, *vazgec_ = nullptr;
};

}  // namespace rights_ui
