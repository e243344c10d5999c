// The rights editor Yetki_Frm: the tree of rights, the grids and boxes beside it, search and comparison.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "rights/yetki_duzeni.h"
#include "session/oturum.h"
#include "ui/kart.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QTabWidget;

namespace ui {
class ConsolePort;
class Izgara;
class TikAgaciGorunumu;
}  // namespace ui

namespace rights_ui {

class KarsilastirmaPaneli;

class YetkiFrm : public ui::Kart {
  Q_OBJECT
 public:
  YetkiFrm(session::Oturum& oturum, ui::ConsolePort& konsol);
  void ac() override;

 private:
  QWidget* firmaSatiri();
  QWidget* agacTarafi();
  QWidget* tumuneUygula();
  QWidget* sekmeler();
  QWidget* genelSekmesi();
  QWidget* kasiyerSekmesi();
  QWidget* yerSekmesi();
  ui::Izgara* bayrakIzgarasi(const char* ad, rights::Bolum bolum);
  ui::Izgara* yerIzgarasi(const char* ad, const char* kod, const char* isaret, const char* isaretBasligi,
                          rights::Yerler rights::YetkiDuzeni::*yerler);
  QCheckBox* kutu(const rights::Kolon& kolon);
  void agacMenusu(const QPoint& yer);
  void ara(const QString& sozler);

  void firmaSecildi(int sira);
  void goster();
  void yerleriGoster(ui::Izgara* izgara, const rights::Yerler& yerler);
  void yerYazildi(ui::Izgara* izgara, rights::Yerler& yerler, int satir, int kolon);
  void oku();
  void kaydet();

  session::Oturum& oturum_;
  ui::ConsolePort& konsol_;
  rights::YetkiDuzeni duzen_;
  QComboBox *firma_ = nullptr, *kasa_ = nullptr, *cari_ = nullptr, *hesapTuru_ = nullptr;
  QCheckBox* kopyala_ = nullptr;
  ui::TikAgaciGorunumu* agac_ = nullptr;
  QLineEdit *arama_ = nullptr, *gun_ = nullptr;
  QListWidget* bulunanlar_ = nullptr;
  QTabWidget* sekmeler_ = nullptr;
  std::vector<std::pair<QCheckBox*, std::size_t>> kutular_;  // by column
  ui::Izgara *genel_ = nullptr, *kasiyer_ = nullptr, *ambar_ = nullptr, *isyeri_ = nullptr;
  KarsilastirmaPaneli* karsilastirma_ = nullptr;
  QPushButton *tamam_ = nullptr, *cikis_ = nullptr;
  bool gosteriyor_ = false;
};

}  // namespace rights_ui
