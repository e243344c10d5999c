#include "ui/uzun_is.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "session/oturum.h"
#include "ui/is_paneli.h"
#include "ui/progress.h"

namespace ui {
namespace {

constexpr int panelGecikmesi = 300, tazeleme = 60;  // milliseconds

bool suruyor = false;  // on the screen's thread
std::atomic<int> birakilanlar{0};

struct Kutu {
  std::string metin, baslik;
  session::Icon simge;
  bool soru, yanit = false, kapandi = false;
};

struct Pay {
  std::int64_t deger = 0, enCok = 0;
  double oran() const { return enCok > 0 ? static_cast<double>(deger) / static_cast<double>(enCok) : 0; }
};

// What the work and the screen share. The work may outlive the screen's interest in it.
struct Ortak {
  std::mutex kilit;
  std::condition_variable degisti;
  std::string metin;
  Pay adim, butun;
  bool konustu = false, yeni = false;
  Kutu* kutu = nullptr;
  bool bitti = false, birakildi = false;
  std::exception_ptr hata;
  QObject* uyanan = nullptr;
  std::atomic<bool> vazgecildi{false};

  // With the lock held.
  void uyandir() const {
    if (uyanan) QCoreApplication::postEvent(uyanan, new QEvent(QEvent::User));
  }
};

// Kept only, never waited for: the screen looks when it has time.
class Ilerleme : public session::Progress {
 public:
  explicit Ilerleme(Ortak& ortak) : ortak_(ortak) {}
  void text(const std::string& text) override {
    yaz([&] { ortak_.metin = text; });
  }
  void step(std::int64_t value, std::int64_t maximum) override {
    yaz([&] { ortak_.adim = {value, maximum}; });
  }
  void whole(std::int64_t value, std::int64_t maximum) override {
    yaz([&] { ortak_.butun = {value, maximum}; });
  }
  void pump() override {}
  bool cancelled() override { return ortak_.vazgecildi; }

 private:
  template <class Degistir>
  void yaz(Degistir degistir) {
    const std::lock_guard tut(ortak_.kilit);
    degistir();
    ortak_.konustu = ortak_.yeni = true;
  }
  Ortak& ortak_;
};

class Kutular : public session::Boxes {
 public:
  explicit Kutular(Ortak& ortak) : ortak_(ortak) {}
  void message(const std::string& text, session::Icon icon, std::string_view title) override {
    goster({text, std::string(title), icon, false});
  }
  bool ask(const std::string& text, session::Icon icon, std::string_view title) override {
    return goster({text, std::string(title), icon, true});
  }

 private:
  // Work that was left behind is told No.
  bool goster(Kutu kutu) {
    std::unique_lock tut(ortak_.kilit);
    if (ortak_.birakildi) return false;
    ortak_.kutu = &kutu;
    ortak_.uyandir();
    ortak_.degisti.wait(tut, [&] { return kutu.kapandi || ortak_.birakildi; });
    ortak_.kutu = nullptr;
    return kutu.yanit;
  }
  Ortak& ortak_;
};

struct Calisma {
  Ortak ortak;
  Ilerleme ilerleme{ortak};
  Kutular kutular{ortak};
  session::Oturum ayri;  // of work that may be left behind
  std::function<void()> is;
};

void isParcacigi(const std::shared_ptr<Calisma>& calisma) {
  std::exception_ptr hata;
  try {
    calisma->is();
  } catch (...) {
    hata = std::current_exception();
  }
  Ortak& ortak = calisma->ortak;
  const std::lock_guard tut(ortak.kilit);
  ortak.hata = hata;
  ortak.bitti = true;
  if (ortak.birakildi) --birakilanlar;
  ortak.uyandir();
}

// The screen's side: waits, shows, and keeps everybody else's input away.
class Bekleyen : public QObject {
 public:
  Bekleyen(QWidget* ekran, Ortak& ortak, session::Boxes& kutular, const IsTanimi& tanim, bool birakilir)
      : ortak_(ortak), kutular_(kutular), birakilir_(birakilir), pencere_(ekran->window()) {
    panel_ = new IsPaneli(pencere_, tanim.baslik, tanim.vazgec == Vazgec::Var);
    if (tanim.vazgec == Vazgec::Var)
      connect(panel_->vazgecBtn(), &QPushButton::clicked, this, &Bekleyen::vazgec);
    connect(&goster_, &QTimer::timeout, this, &Bekleyen::paneliGoster);
    connect(&tazele_, &QTimer::timeout, this, &Bekleyen::tazele);
    goster_.setSingleShot(true);
    goster_.start(panelGecikmesi);
    tazele_.start(tazeleme);
    QApplication::setOverrideCursor(Qt::BusyCursor);
    suruyor = true;
    qApp->installEventFilter(this);
    const std::lock_guard tut(ortak_.kilit);
    ortak_.uyanan = this;
  }
  ~Bekleyen() override {
    // What is still on its way belongs to the time of the work.
    QCoreApplication::processEvents();
    qApp->removeEventFilter(this);
    suruyor = false;
    QApplication::restoreOverrideCursor();
    paneliKaldir();
  }
  Bekleyen(const Bekleyen&) = delete;
  Bekleyen& operator=(const Bekleyen&) = delete;

  void bekle() { dongu_.exec(); }
  bool birakildi() const { return birakildi_; }

 protected:
  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) return QObject::event(event);
    isle();
    return true;
  }

  bool eventFilter(QObject* alan, QEvent* event) override {
    if (alan == pencere_ && event->type() == QEvent::Resize) panel_->setGeometry(pencere_->rect());
    if (!girdi(event->type()) || kutuAcik_) return false;
    const auto* widget = qobject_cast<QWidget*>(alan);
    // A window of the window system hands its events on to widgets.
    if (!widget && event->type() != QEvent::Shortcut) return false;
    if (widget && (widget == panel_ || panel_->isAncestorOf(widget))) return anahtar(event);
    event->setAccepted(event->type() != QEvent::Close);
    return true;
  }

 private:
  static bool girdi(QEvent::Type tur) {
    switch (tur) {
      case QEvent::KeyPress:
      case QEvent::KeyRelease:
      case QEvent::ShortcutOverride:
      case QEvent::Shortcut:
      case QEvent::InputMethod:
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
      case QEvent::ContextMenu:
      case QEvent::TabletPress:
      case QEvent::TabletRelease:
      case QEvent::TouchBegin:
      case QEvent::TouchUpdate:
      case QEvent::TouchEnd:
      case QEvent::DragEnter:
      case QEvent::Drop:
      case QEvent::Close:
        return true;
      default:
        return false;
    }
  }

  // Escape on the panel is Vazgeç; no other key leads out of it.
  bool anahtar(QEvent* event) {
    if (event->type() != QEvent::KeyPress) return false;
    const int tus = static_cast<QKeyEvent*>(event)->key();
    if (tus == Qt::Key_Escape && panel_->vazgecBtn()->isVisible()) panel_->vazgecBtn()->click();
    const bool dugme = tus == Qt::Key_Space || tus == Qt::Key_Return || tus == Qt::Key_Enter;
    if (dugme && panel_->vazgecBtn()->hasFocus() && !static_cast<QKeyEvent*>(event)->isAutoRepeat())
      panel_->vazgecBtn()->click();
    return true;
  }

  void isle() {
    std::unique_lock tut(ortak_.kilit);
    if (ortak_.kutu && !kutuAcik_) {
      Kutu& kutu = *ortak_.kutu;
      tut.unlock();
      kutuAcik_ = true;
      // A refusal at once is shown over the screen that it is about.
      goster_.stop();
      if (kutu.soru)
        kutu.yanit = kutular_.ask(kutu.metin, kutu.simge, kutu.baslik);
      else
        kutular_.message(kutu.metin, kutu.simge, kutu.baslik);
      kutuAcik_ = false;
      if (!panel_->isVisible()) goster_.start(panelGecikmesi);
      tut.lock();
      kutu.kapandi = true;
      ortak_.degisti.notify_all();
    }
    if (ortak_.bitti) dongu_.quit();
  }

  void vazgec() {
    ortak_.vazgecildi = true;
    panel_->setFocus(Qt::PopupFocusReason);
    panel_->vazgecildi();
    if (!birakilir_) return;
    const std::lock_guard tut(ortak_.kilit);
    if (ortak_.bitti) return;
    birakildi_ = ortak_.birakildi = true;
    ortak_.uyanan = nullptr;
    ++birakilanlar;
    ortak_.degisti.notify_all();
    dongu_.quit();
  }

  void tazele() {
    std::unique_lock tut(ortak_.kilit);
    const Pay adim = ortak_.adim, butun = ortak_.butun;
    const std::string metin = ortak_.metin;
    const bool yeni = ortak_.yeni;
    ortak_.yeni = false;
    tut.unlock();
    if (yeni) {
      panel_->ilerleme().text(metin);
      panel_->ilerleme().step(adim.deger, adim.enCok);
      panel_->ilerleme().whole(butun.deger, butun.enCok);
    }
    panel_->sureyiYaz(butun.oran());
  }

  // Focus goes over as to a popup: a field that is left so is not checked.
  void paneliGoster() {
    odak_ = pencere_->focusWidget();
    panel_->setGeometry(pencere_->rect());
    panel_->show();
    panel_->raise();
    panel_->setFocusPolicy(Qt::StrongFocus);
    QWidget* hedef = panel_->vazgecBtn()->isVisible() ? static_cast<QWidget*>(panel_->vazgecBtn()) : panel_;
    hedef->setFocus(Qt::PopupFocusReason);
    for (QObject* child : pencere_->children()) {
      auto* widget = qobject_cast<QWidget*>(child);
      if (!widget || widget == panel_ || widget->isWindow() || !widget->isEnabled()) continue;
      widget->setEnabled(false);
      kapatilanlar_.emplace_back(widget);
    }
  }

  void paneliKaldir() {
    const bool gorundu = panel_->isVisible();
    for (const QPointer<QWidget>& widget : kapatilanlar_)
      if (widget) widget->setEnabled(true);
    delete panel_;
    if (gorundu && odak_ && odak_->isVisible()) odak_->setFocus(Qt::PopupFocusReason);
  }

  Ortak& ortak_;
  session::Boxes& kutular_;
  const bool birakilir_;
  bool birakildi_ = false, kutuAcik_ = false;
  QWidget* pencere_;
  IsPaneli* panel_;
  QPointer<QWidget> odak_;
  std::vector<QPointer<QWidget>> kapatilanlar_;
  QTimer goster_, tazele_;
  QEventLoop dongu_;
};

// True when it came to its end; false when it was left behind.
bool yurut(QWidget* ekran, session::Boxes& kutular, const IsTanimi& tanim, bool birakilir,
           const std::shared_ptr<Calisma>& calisma) {
  Bekleyen bekleyen(ekran, calisma->ortak, kutular, tanim, birakilir);
  std::thread parcacik(isParcacigi, calisma);
  bekleyen.bekle();
  if (bekleyen.birakildi()) {
    parcacik.detach();
    return false;
  }
  parcacik.join();
  return true;
}

}  // namespace

IsSonucu uzunIs(QWidget* ekran, session::Oturum& oturum, const IsTanimi& tanim,
                const std::function<void()>& is) {
  if (suruyor) return IsSonucu::Reddedildi;
  const auto calisma = std::make_shared<Calisma>();
  calisma->is = is;
  session::Boxes* const kutular = oturum.kutular;
  session::Progress* const ilerleme = oturum.ilerleme;
  oturum.kutular = &calisma->kutular;
  oturum.ilerleme = &calisma->ilerleme;
  yurut(ekran, *kutular, tanim, false, calisma);
  oturum.kutular = kutular;
  oturum.ilerleme = ilerleme;
  if (calisma->ortak.hata) std::rethrow_exception(calisma->ortak.hata);
  return calisma->ortak.vazgecildi ? IsSonucu::Vazgecildi : IsSonucu::Bitti;
}

IsSonucu birakilabilirIs(QWidget* ekran, session::Oturum& oturum, const QString& baslik,
                         const std::function<void(session::Oturum&)>& is) {
  if (suruyor) return IsSonucu::Reddedildi;
  const auto calisma = std::make_shared<Calisma>();
  static_cast<session::OturumDegerleri&>(calisma->ayri) = oturum;
  calisma->ayri.kutular = &calisma->kutular;
  calisma->ayri.ilerleme = &calisma->ilerleme;
  calisma->is = [is, ham = calisma.get()] { is(ham->ayri); };
  if (!yurut(ekran, *oturum.kutular, {baslik, Vazgec::Var}, true, calisma)) return IsSonucu::Vazgecildi;
  calisma->ayri.kutular = oturum.kutular;
  calisma->ayri.ilerleme = oturum.ilerleme;
  oturum = std::move(calisma->ayri);
  if (calisma->ortak.hata) std::rethrow_exception(calisma->ortak.hata);
  return IsSonucu::Bitti;
}

bool isSuruyor() {
  return suruyor;
}

void arkadaCalistir(std::function<void()> is) {
  ++birakilanlar;
  std::thread([is = std::move(is)] {
    is();
    --birakilanlar;
  }).detach();
}

bool birakilanIsVar() {
  return birakilanlar > 0;
}

}  // namespace ui
