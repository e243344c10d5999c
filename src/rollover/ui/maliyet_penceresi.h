// The costing of one item, row by row.
#pragma once

#include <QDialog>

#include "session/oturum.h"

namespace rollover_ui {

class MaliyetPenceresi : public QDialog {
  Q_OBJECT
 public:
  MaliyetPenceresi(session::Oturum& oturum, const std::string& firma, const std::string& stokKod,
                   QWidget* parent = nullptr);
};

}  // namespace rollover_ui
