// The screens of the whole program.
#pragma once

#include "ui/ekran_kaydi.h"

namespace session_ui {

ui::EkranKaydi butunEkranlar();

}  // namespace session_ui
