// What stands beside the tree: the current node and the commands open on it.
#pragma once

#include <QWidget>
#include <vector>

#include "session/firma_bilgisi.h"

class QAction;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ui {
class Resim;
}

namespace session_ui {

class BilgiOkuyucu;
struct OkunanBilgi;

class DugumPaneli : public QWidget {
  Q_OBJECT
 public:
  // One button per action; it follows the action's state.
  DugumPaneli(const session::Oturum& oturum, const std::vector<QAction*>& komutlar);
  // `altSayisi`: companies or users under a branch.
  void goster(const session::Dugum& dugum, int altSayisi);
  void bos();  // no tree: the login failed
  // Before a command: the reading in the background is ended.
  void birak();

 signals:
  void guncelle(bool deneme);
  void girisAc();  // the way back to the login
  void baglantiAyari();

 private:
  void doldur(const QString& resim, const QString& baslik, const QString& altbaslik);
  void satir(const QString& yazi, const QString& deger);
  void firmaSatirlari(const OkunanBilgi* bilgi);
  void bilgiGeldi(qint64 id, const OkunanBilgi& bilgi);
  QWidget* guncelleSatiri();
  QWidget* girisSatiri();

  const session::Oturum& oturum_;
  session::Dugum dugum_;
  ui::Resim* resim_;
  QLabel *altbaslik_, *ipucu_, *geride_;
  QLineEdit* baslik_;
  struct Satir {
    QLabel* yazi;
    QLineEdit* deger;
  };
  std::vector<Satir> satirlar_;
  std::size_t dolu_ = 0;  // rows in use
  QWidget *komutlar_, *guncelle_, *giris_;
  BilgiOkuyucu* okuyucu_;
};

}  // namespace session_ui
