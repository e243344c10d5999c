// Cells in as many columns as the width has room for, read from top to bottom.
#pragma once

#include <QWidget>
#include <vector>

class QGridLayout;

namespace settings_ui {

class DuzenIzgarasi : public QWidget {
  Q_OBJECT
 public:
  // A column is at least `enAz` pixels wide; there are at most `enCok`.
  DuzenIzgarasi(int enAz, int enCok, QWidget* parent = nullptr);
  // A control, with its caption to the left or without one.
  void ekle(QWidget* yazi, QWidget* kontrol);
  // Shows or hides the cell of a control, caption and all.
  void goster(const QWidget* kontrol, bool gorunur);
  QSize minimumSizeHint() const override;  // of a single column: the columns never hold the window open

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Hucre {
    QWidget* yazi;
    QWidget* kontrol;
    bool gorunur = true;
  };
  void yerlestir();
  int enAz_, enCok_, sutun_ = 0;
  std::vector<Hucre> hucreler_;
  QGridLayout* duzen_;
};

}  // namespace settings_ui
