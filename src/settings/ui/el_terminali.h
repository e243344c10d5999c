// ElTerminaliTanimKartifrm: definitions of hand terminal files, with a preview of a file.
#pragma once

#include <functional>

#include "session/oturum.h"
#include "settings/terminal.h"
#include "ui/kart.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QTableWidget;

namespace ui {
class ConsolePort;
class Izgara;
}  // namespace ui

namespace settings_ui {

class ElTerminali : public ui::Kart {
  Q_OBJECT
 public:
  ElTerminali(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

  // Asked for a file; empty when the choice is given up. The test brings its own.
  std::function<QString(QWidget*)> dosyaSec;

 private:
  QWidget* alanlar();
  QWidget* onizlemeCercevesi();
  void izgaraKur();
  void listeDoldur(const std::vector<session::ListeSecenegi>& liste, const QString& secili);
  void tanimSec();
  void temizle();
  void goster(const settings::TerminalTanimi& tanim);
  settings::TerminalTanimi oku() const;
  void yeni();
  void kaydet();
  void sil();
  void onizle();
  QString kod() const;
  bool birakilir();

  session::Oturum& oturum_;
  QComboBox* Tanim_Kod_;
  QLineEdit *Tanim_ID_, *Tanim_Ad_, *Dosya_Yol_, *Ayirac_, *ParcaAdedi_;
  QCheckBox *AyiracVar_, *MiktarParcali_;
  ui::Izgara* izgara_ = nullptr;
  QTableWidget* onizleme_ = nullptr;
  QLabel* onizlemeHatasi_ = nullptr;
  bool Yeni_Kayit_ = false, dolduruluyor_ = false;
  settings::TerminalTanimi okunan_;    // as shown last
  settings::TerminalTanimi yuklenen_;  // as it stood in the table then
};

}  // namespace settings_ui
