// What stands beside the tree: the current node and the commands open on it.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

class QAction;
class QGridLayout;
class QHBoxLayout;
class QLabel;

namespace session {
struct Dugum;
struct Oturum;
}  // namespace session

namespace session_ui {

class DugumPaneli : public QWidget {
  Q_OBJECT
 public:
  // One button per action; it follows the action's state.
  DugumPaneli(const session::Oturum& oturum, const std::vector<QAction*>& komutlar);
  // `altSayisi`: companies or users under a branch.
  void goster(const session::Dugum& dugum, int altSayisi);
  void bos();  // no tree: the login failed

 private:
  void doldur(const QString& resim, const QString& baslik, const QString& altbaslik);
  void satir(int sira, const QString& yazi, const QString& deger);
  const session::Oturum& oturum_;
  QLabel *resim_, *baslik_, *altbaslik_, *ipucu_;
  std::vector<std::pair<QLabel*, QLabel*>> satirlar_;
  QWidget* komutlar_;
};

}  // namespace session_ui
