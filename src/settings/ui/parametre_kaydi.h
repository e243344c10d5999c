// Saving a parameter screen: what the two of them share.
#pragma once

#include <optional>
#include <string>

#include "session/oturum.h"
#include "settings/parametre.h"

class QWidget;

namespace settings_ui {

class ParametreFormu;

// Stores what the form shows into the row. Faults are shown; what others changed in between is told and asked
// about. True when it is stored.
bool formuKaydet(session::Oturum& oturum, settings::FirmaKaydi& kayit, const ParametreFormu& form,
                 settings::ParametreEkrani ekran);
// Shows the row in the form; what cannot be shown is told in one box.
void formuDoldur(session::Oturum& oturum, const settings::FirmaKaydi& kayit, ParametreFormu& form);

// Compares the shown values with another company's, differences only; values can be taken over one by one.
void karsilastir(session::Oturum& oturum, const settings::FirmaKaydi& kayit, ParametreFormu& form,
                 settings::ParametreEkrani ekran, QWidget* ana);

}  // namespace settings_ui
