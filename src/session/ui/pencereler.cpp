#include "session/ui/pencereler.h"

namespace session_ui {

Pencereler::Pencereler(session::Oturum& oturum, SunucuHazirlayici hazirla)
    : oturum_(oturum), giris_(std::make_unique<GirisFrm>(oturum, std::move(hazirla))) {
  connect(giris_.get(), &GirisFrm::cikis, this, &Pencereler::cikis);
  connect(giris_.get(), &GirisFrm::konsolAc, this, &Pencereler::konsolAc);
  giris_->show();
}

// The console comes up while the login closes; only Çıkış and closing the console end the program.
void Pencereler::konsolAc() {
  konsol_ = std::make_unique<ZemberaMenu>(oturum_);
  connect(konsol_.get(), &ZemberaMenu::cikis, this, &Pencereler::cikis);
  konsol_->show();
  giris_->close();
  // The login is still at work on the click that brought us here, and nobody comes back to it.
  giris_.release()->deleteLater();
}

}  // namespace session_ui
