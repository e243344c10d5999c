#include "ui/tekrar.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

namespace ui {
namespace {

// One kind of press: `hangi` is the key or the mouse button.
class Basis {
 public:
  // True when it is to be dropped.
  bool geldi(int hangi) {
    const bool tekrar =
        hangi == son_ && saat_.isValid() && saat_.elapsed() < QApplication::doubleClickInterval();
    saat_.start();
    son_ = hangi;
    if (!tekrar) degisti_ = false;
    return tekrar && degisti_;
  }
  void ekranDegisti() { degisti_ = true; }

 private:
  QElapsedTimer saat_;
  int son_ = 0;
  bool degisti_ = false;
};

class Suzgec : public QObject {
 public:
  using QObject::QObject;
  void ekranDegisti() {
    tus_.ekranDegisti();
    fare_.ekranDegisti();
  }

 protected:
  bool eventFilter(QObject* alan, QEvent* event) override {
    if (!alan->isWidgetType()) return false;
    switch (event->type()) {
      case QEvent::ShortcutOverride: {  // the first that is heard of a key
        const int tus = static_cast<QKeyEvent*>(event)->key();
        bekleyen_ = tus;
        dusen_ = tus_.geldi(tus);
        if (dusen_) event->accept();
        return dusen_;
      }
      case QEvent::KeyPress: {
        const int tus = static_cast<QKeyEvent*>(event)->key();
        const bool dusur = tus == bekleyen_ ? dusen_ : tus_.geldi(tus);
        bekleyen_ = 0;
        return dusur;
      }
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonDblClick: {
        const auto* fare = static_cast<QMouseEvent*>(event);
        const bool ayniBasis = fare->timestamp() != 0 && fare->timestamp() == fareZamani_;
        fareZamani_ = fare->timestamp();
        return !ayniBasis && fare_.geldi(static_cast<int>(fare->button()));
      }
      default:
        return false;
    }
  }

 private:
  Basis tus_, fare_;
  int bekleyen_ = 0;
  bool dusen_ = false;
  quint64 fareZamani_ = 0;  // of the press that parents see again
};

QPointer<Suzgec> suzgec;

}  // namespace

void tekrarSuzgeciKur(QCoreApplication& uygulama) {
  suzgec = new Suzgec(&uygulama);
  uygulama.installEventFilter(suzgec);
}

void ekranDegisti() {
  if (suzgec) suzgec->ekranDegisti();
}

}  // namespace ui
