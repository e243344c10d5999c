// One window for who has no server yet, or wants another one.
#pragma once

#include <QDialog>

#include "session/oturum.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QStackedWidget;

namespace session_ui {

class IlkKurulumPenceresi : public QDialog {
  Q_OBJECT
 public:
  // `eksik`: why it comes up by itself; empty when it was asked for.
  IlkKurulumPenceresi(session::Oturum& oturum, const QString& eksik, QWidget* parent);

  // After it was accepted: the supervisor who was just made, both empty behind "connect to a server".
  QString yonetici() const;
  QString sifre() const;

 private:
  enum Yol { Hazirla, Baglan, Ornek };
  QWidget* yollar();
  QWidget* yoneticiSayfasi();
  QWidget* sunucuSayfasi();
  void yolDegisti();
  void denetle();
  void sina();
  void tamam();
  Yol yol() const;

  session::Oturum& oturum_;
  QRadioButton* yollar_[3];
  QStackedWidget* sayfalar_;
  QLineEdit *yonetici_, *sifre_, *tekrar_, *sunucu_, *giris_, *sqlSifre_;
  QLabel *hata_, *iyi_;
  QPushButton* tamamBtn_;
};

}  // namespace session_ui
