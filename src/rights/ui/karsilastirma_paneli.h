// A view of the rights editor: what the shown user has and another lacks, in this company or in another.
#pragma once

#include <QWidget>
#include <functional>

#include "rights/yetki_duzeni.h"

class QComboBox;
class QLabel;
class QTableWidget;

namespace rights_ui {

class KarsilastirmaPaneli : public QWidget {
  Q_OBJECT
 public:
  using Gosterilen = std::function<rights::YetkiDuzeni()>;
  // `gosterilen` gives what the editor shows, unsaved changes included.
  KarsilastirmaPaneli(session::Oturum& oturum, Gosterilen gosterilen);
  // Another user or company is shown: forgets the last comparison.
  void kur(const rights::YetkiDuzeni& duzen);

 signals:
  void hakSecildi(int satir);  // a row of the tree

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void listeleriDoldur();
  void karsilastir();

  session::Oturum& oturum_;
  Gosterilen gosterilen_;
  QComboBox *kullanici_, *firma_;
  QTableWidget* liste_;
  QLabel* ozet_;
  std::string ad_;
};

}  // namespace rights_ui
