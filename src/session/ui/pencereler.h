// The program's windows in their order: the login, then the console in its place.
#pragma once

#include <QObject>
#include <memory>

#include "session/ui/giris_frm.h"
#include "session/ui/zembera_menu.h"

namespace session_ui {

class Pencereler : public QObject {
  Q_OBJECT
 public:
  // Shows the login. The session is loaded already (session::Giris_Yukle).
  Pencereler(session::Oturum& oturum, SunucuHazirlayici hazirla);

 signals:
  void cikis();

 private:
  void konsolAc();
  void girisAc();

  session::Oturum& oturum_;
  SunucuHazirlayici hazirla_;
  std::unique_ptr<GirisFrm> giris_;
  std::unique_ptr<ZemberaMenu> konsol_;
};

}  // namespace session_ui
