// The panel of the one long work that runs: over the whole window, so that nothing below looks open.
#pragma once

#include <QElapsedTimer>
#include <QWidget>

class QLabel;
class QPushButton;

namespace ui {

class ProgressPanel;

// session/sure.h
QString sureYazisi(qint64 saniye);
QString kalanYazisi(qint64 gecen, double pay);

class IsPaneli : public QWidget {
  Q_OBJECT
 public:
  IsPaneli(QWidget* pencere, const QString& baslik, bool vazgecilir);
  ProgressPanel& ilerleme() { return *ilerleme_; }
  void sureyiYaz(double pay);
  void vazgecildi();  // the button has been pressed: it cannot be pressed again
  QPushButton* vazgecBtn() { return vazgec_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ProgressPanel* ilerleme_;
  QLabel* sure_;
  QPushButton* vazgec_;
  QElapsedTimer saat_;
};

}  // namespace ui
