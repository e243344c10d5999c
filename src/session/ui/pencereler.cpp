#include "session/ui/pencereler.h"

#include "session/ui/ekranlar.h"
#include "ui/tekrar.h"

namespace session_ui {

Pencereler::Pencereler(session::Oturum& oturum, SunucuHazirlayici hazirla)
    : oturum_(oturum), giris_(std::make_unique<GirisFrm>(oturum, std::move(hazirla))) {
  connect(giris_.get(), &GirisFrm::cikis, this, &Pencereler::cikis);
  // Later, from the event loop: the login is still at work on the click that ended it.
  connect(giris_.get(), &GirisFrm::konsolAc, this, &Pencereler::konsolAc, Qt::QueuedConnection);
  giris_->show();
}

// The login goes first, so that the console takes its room. Hidden, not closed: the last window that closes
// ends the program, as only Çıkış and closing the console may.
void Pencereler::konsolAc() {
  if (konsol_) return;
  giris_->hide();
  giris_.reset();
  konsol_ = std::make_unique<ZemberaMenu>(oturum_, butunEkranlar());
  connect(konsol_.get(), &ZemberaMenu::cikis, this, &Pencereler::cikis);
  konsol_->show();
  ui::ekranDegisti();
}

}  // namespace session_ui
