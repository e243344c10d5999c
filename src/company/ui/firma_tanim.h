// The company card Firma_Tanım: new company, changed card, inspection.
#pragma once

#include <vector>

#include "session/oturum.h"
#include "ui/kart.h"

class QBoxLayout;
class QCheckBox;
class QGroupBox;
class QLineEdit;

namespace company {
struct FirmaKarti;
struct KartDurumu;
}  // namespace company
namespace ui {
class ConsolePort;
}  // namespace ui

namespace company_ui {

class FirmaTanim : public ui::Kart {
  Q_OBJECT
 public:
  FirmaTanim(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void cerceveler();
  void ambarCercevesi();
  void tuslar();
  void goster(const company::FirmaKarti& kart, const company::KartDurumu& durum);
  company::FirmaKarti oku() const;
  void hataliAlanaGit(std::string_view sutun);
  void kaydet();
  void cikis();

  session::Oturum& oturum_;
  ui::ConsolePort& konsol_;
  std::vector<QLineEdit*> alanlar_;  // in the order of the field table
  QCheckBox* hesapPlani_ = nullptr;
  QGroupBox *frame1_ = nullptr, *frame2_ = nullptr, *frame3_ = nullptr, *frame4_ = nullptr;
  QBoxLayout* altCerceveler_ = nullptr;  // Frame3 and Frame4
  QLabel* uyari_ = nullptr;              // what is wrong with the company itself
  QLabel* kural_ = nullptr;              // rules of a new company's name
  bool listeEski_ = false;               // a failed save may have changed the console's list
  QPushButton *kaydetBtn_ = nullptr, *cikisBtn_ = nullptr;
};

}  // namespace company_ui
