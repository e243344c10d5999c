// The rollover: both sides, what is carried, the run and its proof.
#pragma once

#include <array>

#include "rollover/devir.h"
#include "ui/kart.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
namespace ui {
class ConsolePort;
class TikAgaciGorunumu;
}  // namespace ui

namespace rollover_ui {

class DevirFrm : public ui::Kart {
  Q_OBJECT
 public:
  DevirFrm(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;
  const rollover::DevirSonucu& sonuc() const { return sonuc_; }

 private:
  struct Taraf {
    QComboBox* combo = nullptr;
    std::array<QLineEdit*, 5> alan{};  // title, code, name, start, end
    std::string id;
  };
  QWidget* tarafCercevesi(int i);
  QWidget* secenekCercevesi();
  void listeleriDoldur();
  void comboDegisti(int i);
  void goster(int i, const rollover::DevirTarafi& taraf);
  rollover::DevirTarafi oku(int i) const;
  rollover::DevirGirdisi girdi(bool deneme) const;
  void tikDegisti(int satir);
  void basla(bool deneme);
  void listeleriYenile();
  void kanitGoster();

  session::Oturum& oturum_;
  ui::ConsolePort& konsol_;
  std::array<Taraf, 2> taraf_;
  rollover::Secenekler secenekler_;
  rollover::DevirSonucu sonuc_;
  ui::TikAgaciGorunumu* agac_ = nullptr;
  QCheckBox* eksi_ = nullptr;
  QLineEdit* ciro_ = nullptr;
  QPushButton *tamam_ = nullptr, *deneme_ = nullptr, *kanit_ = nullptr;
  bool doluyor_ = false;
};

}  // namespace rollover_ui
