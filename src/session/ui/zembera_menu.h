// The console: tree of companies and users, settings buttons, and the place where every screen opens.
#pragma once

#include <QMainWindow>
#include <functional>
#include <map>
#include <string>

#include "session/konsol.h"
#include "session/oturum.h"
#include "session/ui/ekranlar.h"
#include "ui/console_port.h"

class QAction;
class QLabel;
class QMenu;
class QStackedWidget;
class QToolButton;
class QTreeWidget;

namespace ui {
class Kart;
}

namespace session_ui {

class AgacPaneli;
class DugumPaneli;

// A command on the current node as the popup and the panel show it.
struct KomutSatiri {
  const char *ad, *yazi, *resim, *ipucu;
  session::KomutSonucu (*islem)(session::Oturum&, const session::Dugum&);
  bool ayri;
};

class ZemberaMenu : public QMainWindow, public ui::ConsolePort {
  Q_OBJECT
 public:
  explicit ZemberaMenu(session::Oturum& oturum, ui::EkranKaydi ekranlar = butunEkranlar());

  // One screen more.
  void ekranTanit(const std::string& ad, ui::EkranKaydi::Yapici yapici);

  void Durum_Yaz(const QString& text) override;
  void Alan_Listesi_Doldur() override;
  void Eklenen_Sec(const QString& ad) override;

 signals:
  void cikis();
  void girisAc();        // back to the login
  void baglantiAyari();  // the window of the server settings, then the login

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void menuleriKur();
  void popupKur();
  QAction* komutEkle(const KomutSatiri& satir);
  QWidget* kenarCubugu();
  QWidget* anaPanel();
  void durumCubugu();

  void listeyiOku(bool birakilir);
  void yenile();
  void suzgeceGit();
  void guncelle(bool deneme);
  void adlariYaz();
  void dugumDegisti();
  void popupGoster(const QPoint& yer);
  void agacOlayi(session::AgacOlayi olay);
  // Runs a command on the current node and opens what it asks for.
  void komut(const QString& yazi, const std::function<session::KomutSonucu(const session::Dugum&)>& islem);
  void sonucuUygula(const session::KomutSonucu& sonuc);
  QToolButton* kenarButonu(const char* ad, const session::MenuButonu& buton);
  void menuButonu(const session::MenuButonu& buton);
  void ekranAc(const std::string& ad, const QString& yazi);
  void kartKapandi(const ui::Kart* kart);
  bool ekranAcik() const;  // a card stands over the tree
  void ekranlariGoster();
  void kenarAc(bool acik);

  session::Oturum& oturum_;
  ui::EkranKaydi ekranlar_;
  std::map<std::string, ui::Kart*> kartlar_;
  std::map<QString, QAction*> komutlar_;
  std::vector<QToolButton*> menuButonlari_;
  QToolButton* command1_ = nullptr;
  QToolButton* tus_ = nullptr;
  AgacPaneli* agacPaneli_ = nullptr;
  QTreeWidget* agac_ = nullptr;
  DugumPaneli* ayrinti_ = nullptr;
  QStackedWidget* yigin_ = nullptr;
  QWidget* anapanel_ = nullptr;
  QMenu* popup_ = nullptr;
  QMenu* tanimlar_ = nullptr;
  QLabel* durum_ = nullptr;
  bool dugumEkrani_ = false;  // what is open was opened on the current node
};

}  // namespace session_ui
