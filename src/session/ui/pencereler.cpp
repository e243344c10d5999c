#include "session/ui/pencereler.h"

#include "ui/tekrar.h"
#include "ui/yer.h"

namespace session_ui {

Pencereler::Pencereler(session::Oturum& oturum, SunucuHazirlayici hazirla)
    : oturum_(oturum), hazirla_(std::move(hazirla)) {
  girisAc();
}

// From the event loop: the window that goes is still at work on the click that ended it. Hidden, not closed:
// the last window that closes ends the program, as only its own button and closing the console may.
void Pencereler::girisAc() {
  if (giris_) return;
  giris_ = std::make_unique<GirisFrm>(oturum_, hazirla_);
  connect(giris_.get(), &GirisFrm::cikis, this, &Pencereler::cikis);
  connect(giris_.get(), &GirisFrm::konsolAc, this, &Pencereler::konsolAc, Qt::QueuedConnection);
  if (konsol_) konsol_->hide();
  konsol_.reset();
  ui::ortala(*giris_);
  giris_->show();
  ui::ekranDegisti();
}

// The login goes first, so that the console takes its room.
void Pencereler::konsolAc() {
  if (konsol_ || !giris_) return;
  giris_->hide();
  giris_.reset();
  konsol_ = std::make_unique<ZemberaMenu>(oturum_);
  connect(konsol_.get(), &ZemberaMenu::cikis, this, &Pencereler::cikis);
  connect(konsol_.get(), &ZemberaMenu::girisAc, this, &Pencereler::girisAc, Qt::QueuedConnection);
  connect(
      konsol_.get(), &ZemberaMenu::baglantiAyari, this,
      [this] {
        girisAc();
        giris_->baglantiAyari();
      },
      Qt::QueuedConnection);
  konsol_->show();
  ui::ekranDegisti();
}

}  // namespace session_ui
