// The login screen.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "session/oturum.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace session {
struct GirisSonucu;
}

namespace session_ui {

// Makes catalog and supervisor on the session's server. Empty on success, else a Turkish text.
using SunucuHazirlayici =
    std::function<std::string(session::Oturum&, const std::string& yonetici, const std::string& sifre)>;

class GirisFrm : public QWidget {
  Q_OBJECT
 public:
  // The session is loaded already (session::Giris_Yukle).
  GirisFrm(session::Oturum& oturum, SunucuHazirlayici hazirla);
  // The window that prepares this machine or names another server.
  void baglantiAyari();

 signals:
  void konsolAc();  // once: the login is over, with or without a catalog (Giris_Hatali)
  void cikis();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QWidget* soldakiResim();
  QWidget* alanlar();
  QWidget* etkisizAlanlar();
  void tuslariBagla();
  void tamam();
  void sunucuyuYaz();
  session::GirisSonucu dene(const QString& kullanici, const QString& sifre);
  session::GirisSonucu katalogsuz(const session::GirisSonucu& sonuc);
  void uygula(const session::GirisSonucu& sonuc);

  session::Oturum& oturum_;
  SunucuHazirlayici hazirla_;
  QLineEdit *kullanici_, *sifre_, *server_, *sqlSa_, *sqlSaSifre_, *msKullanici_, *msSifre_;
  QLabel* sunucuLbl_ = nullptr;
  QPushButton *tamamBtn_, *cikisBtn_, *tm_;
  bool suruyor_ = false, bitti_ = false;
};

}  // namespace session_ui
