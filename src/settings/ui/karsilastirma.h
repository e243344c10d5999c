// The differences between the shown parameters and those of another company.
#pragma once

#include <QDialog>

#include "session/oturum.h"
#include "settings/parametre.h"

class QComboBox;
class QLabel;
class QPushButton;
class QTableWidget;

namespace settings_ui {

class ParametreFormu;

class Karsilastirma : public QDialog {
  Q_OBJECT
 public:
  Karsilastirma(session::Oturum& oturum, const settings::FirmaKaydi& kayit, ParametreFormu& form,
                settings::ParametreEkrani ekran, QWidget* ana);

 private:
  void listele();
  void al();
  std::string yazi(std::size_t sira, const std::string& deger) const;

  session::Oturum& oturum_;
  ParametreFormu& form_;
  settings::ParametreEkrani ekran_;
  settings::Gosterilen diger_;
  std::vector<std::size_t> siralar_;  // of the rows
  QComboBox* firma_;
  QTableWidget* liste_;
  QLabel* sonuc_;
  QPushButton* al_;
};

}  // namespace settings_ui
