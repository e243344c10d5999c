// What a card screen may ask of the console that shows it.
#pragma once

#include <QString>

namespace ui {

class ConsolePort {
 public:
  virtual ~ConsolePort() = default;
  // The second panel of the status bar DurumBbg: which screen is open.
  virtual void Durum_Yaz(const QString& text) = 0;
  // Fills the tree of companies and users anew; after a save.
  virtual void Alan_Listesi_Doldur() = 0;
};

}  // namespace ui
