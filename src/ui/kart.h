// The frame of every card screen: heading, body, foot with key hints and buttons. A screen leaves through
// kapan() and does its work through isYap(); both survive being asked twice.
#pragma once

#include <QWidget>
#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

#include "ui/uzun_is.h"

class QGroupBox;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace ui {

class Kart : public QWidget {
  Q_OBJECT
 public:
  Kart(const QString& iconName, const QString& caption, QWidget* parent = nullptr);

  // Prepares the screen from the session record; called each time before it is shown.
  virtual void ac() = 0;

 signals:
  void kapandi();

 protected:
  void showEvent(QShowEvent* event) override;
  // Leaves the screen. Nothing happens while a work runs, and the console takes the first time only.
  void kapan();
  // The work of a button on the one runner (ui/uzun_is.h). True when it ran to its end: not refused because
  // another one is running, not ended by Vazgeç.
  bool isYap(session::Oturum& oturum, const IsTanimi& tanim, const std::function<void()>& is);

  QVBoxLayout* body() { return body_; }
  QHBoxLayout* foot() { return foot_; }
  QLabel* heading() { return caption_; }
  QLabel* subheading() { return subcaption_; }
  QLabel* hint() { return hint_; }  // DurumPanel

  QGroupBox* frame(const char* name, const QString& caption);
  // A main button is filled; its icon is the light form NAME_ana.
  QPushButton* button(const char* name, const QString& caption, const QString& iconName, bool main = false);
  // "Kaydet", pressed by F2 too, and "Çıkış", pressed by the keys.
  std::pair<QPushButton*, QPushButton*> saveAndLeave(const char* saveName, const char* leaveName,
                                                     std::initializer_list<int> leaveKeys = {Qt::Key_F3,
                                                                                             Qt::Key_Escape});

  // Called with every new size: whether the card is narrower than that. What stands side by side goes below
  // each other there.
  void darOlunca(int genislik, std::function<void(bool dar)> is);
  void resizeEvent(QResizeEvent* event) override;

  // A key that presses a button wherever the focus is.
  void shortcut(int key, QPushButton* button);

 private:
  QLabel *caption_, *subcaption_, *hint_;
  QVBoxLayout* body_;
  QHBoxLayout* foot_;
  std::vector<std::pair<int, std::function<void(bool)>>> darlar_;
};

}  // namespace ui
