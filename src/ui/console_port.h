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
  // After a creation, with the screen left: the new company or user of that name becomes the current node and
  // is named in the status bar.
  virtual void Eklenen_Sec(const QString& /*ad*/) {}
};

}  // namespace ui
