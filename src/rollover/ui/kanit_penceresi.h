// Devir Kanıtı: the proof as a grid, and its way to paper and spreadsheets.
#pragma once

#include <QDialog>
#include <functional>

#include "rollover/kanit.h"
#include "session/oturum.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QTableView;

namespace rollover_ui {

class KanitModeli;

class KanitPenceresi : public QDialog {
  Q_OBJECT
 public:
  KanitPenceresi(session::Oturum& oturum, rollover::Kanit kanit, QWidget* parent = nullptr);

  // Asks for the file; a test names one without asking.
  std::function<QString(const QString& filtre, const QString& onerilen)> dosyaSor;

 private:
  QWidget* ust();
  void dosyayaYaz(const QString& uzanti);
  void maliyetAc();
  void secimDegisti();

  session::Oturum& oturum_;
  rollover::Kanit kanit_;
  KanitModeli* model_;
  QTableView* tablo_;
  QCheckBox* farklar_;
  QPushButton* maliyet_;
};

}  // namespace rollover_ui
