// The lookup list: typing searches once the typing stops; a double click, Enter or SecBtn chooses.
#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "rights/kasiyer.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;
class QTimer;

namespace rights_ui {

class AramaListesi : public QDialog {
  Q_OBJECT
 public:
  AramaListesi(session::Oturum& oturum, const rights::KasiyerDuzeni& duzen, rights::AramaTuru tur,
               QWidget* parent);
  // The row chosen; after Accepted.
  const rights::AramaSatiri& secilen() const { return secilen_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ara();
  void sec();

  session::Oturum& oturum_;
  const rights::KasiyerDuzeni& duzen_;
  rights::AramaTuru tur_;
  QLineEdit* arama_;
  QComboBox* listeTipi_ = nullptr;
  QTableWidget* liste_;
  QLabel* ozet_;
  QPushButton* secBtn_;
  QTimer* saat_;
  bool adaGore_ = false;
  std::vector<rights::AramaSatiri> satirlar_;
  rights::AramaSatiri secilen_;
};

}  // namespace rights_ui
