// The three grids of stock groups: main groups, their headings, the groups below. Rows are stored at once.
#pragma once

#include <QWidget>
#include <array>

#include "session/oturum.h"
#include "settings/grup.h"

class QLabel;

namespace ui {
class Izgara;
}

namespace settings_ui {

class GrupSayfasi : public QWidget {
  Q_OBJECT
 public:
  explicit GrupSayfasi(session::Oturum& oturum);
  // Fills the grids for the company of Baglanti2.
  void AnaGrup_Listele();

 private:
  void AltBaslik_Listele();
  void AltGrup_Listele();
  void listele(settings::Grup grup);
  void kaydet(settings::Grup grup);
  QWidget* sutun(settings::Grup grup, const char* ad, const char* silAdi);
  std::int64_t kimlik(settings::Grup grup, int satir) const;
  ui::Izgara& izgara(settings::Grup grup) const { return *izgaralar_[static_cast<std::size_t>(grup)]; }

  session::Oturum& oturum_;
  settings::GrupSecimi secim_;
  std::array<ui::Izgara*, 3> izgaralar_{};
  std::array<int, 3> yazilan_{-1, -1, -1};  // row of the edit that is to be stored
  QLabel* hata_;
};

}  // namespace settings_ui
