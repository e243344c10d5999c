// ServisMenu: clears what clients left locked, and shows what does not fit together in a company's books.
#pragma once

#include "maintenance/servis.h"
#include "ui/kart.h"

class QComboBox;
class QListWidget;
class QTableWidget;

namespace ui {
class ConsolePort;
}

namespace maintenance_ui {

class ServisMenu : public ui::Kart {
  Q_OBJECT
 public:
  ServisMenu(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void islemlerKur();
  QWidget* bulguPaneli();
  void cevir(int satir);
  bool secili(int satir) const;
  void basla();
  void denetle();
  void goster(std::vector<maintenance::Bulgu> bulgular);
  void bulguSecildi(int sira);
  void kopyala();
  void csvYaz();

  session::Oturum& oturum_;
  QComboBox* firma_;
  QTableWidget *islemler_, *satirlar_;
  QListWidget* bulguListesi_;
  QLabel* anlam_;
  QPushButton *kopyala_, *csv_;
  std::vector<maintenance::Bulgu> bulgular_;
};

}  // namespace maintenance_ui
