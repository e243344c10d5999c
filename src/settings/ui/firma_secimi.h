// The row with Firma_Combo on top of the screens that work on one company.
#pragma once

#include <QComboBox>
#include <QWidget>

#include "settings/parametre.h"

namespace settings_ui {

class FirmaSecimi : public QWidget {
  Q_OBJECT
 public:
  explicit FirmaSecimi(const QString& yazi, QWidget* parent = nullptr);
  // Fills the list and chooses the first without telling.
  void doldur(const std::vector<settings::Firma>& firmalar);
  std::string firma() const;  // database name; empty without any
  void sec(const std::string& firma);
  void sagaEkle(QWidget* parca);

 signals:
  void degisti();

 private:
  QComboBox* combo_;
};

}  // namespace settings_ui
