// The one runner of long work, for every screen:
//
//   void YedekFrm::yedekle() {
//     bool tamam = false;
//     const auto sonuc = ui::uzunIs(this, oturum_, {"Yedek alınıyor", ui::Vazgec::Var},
//                                   [&] { tamam = maintenance::Yedek_Al(oturum_, secim); });
//     if (sonuc == ui::IsSonucu::Bitti && tamam) kapan();
//   }
//
// The work runs on a thread of its own while the caller waits and the window lives. Its boxes and its
// progress (oturum.kutular, oturum.ilerleme) come to the screen by themselves; it must touch no widget, so
// read the fields before and show the outcome behind. After a third of a second a panel over the window
// shows text, both bars, the time gone and, from the whole bar, the time left. Until the end everything
// typed or clicked elsewhere is dropped, closing the window included.
#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace session {
struct Oturum;
}

namespace ui {

enum class Vazgec {
  Yok,
  Var,  // a button; the work asks oturum.ilerleme->cancelled() where it may end with nothing half done
};

struct IsTanimi {
  QString baslik;
  Vazgec vazgec = Vazgec::Yok;
};

enum class IsSonucu {
  Bitti,
  Vazgecildi,  // Vazgeç was pressed; what the work made of it, the work knows
  Reddedildi,  // another work is running: this one was not begun
};

// `ekran` is any widget of the window that waits. What the work throws is thrown here again.
IsSonucu uzunIs(QWidget* ekran, session::Oturum& oturum, const IsTanimi& tanim,
                const std::function<void()>& is);

// For work that may wait on a server that does not answer and cannot be interrupted. It gets a session
// record of its own, a copy without connections, whose outcome replaces `oturum` at the end. Vazgeç comes
// back at once and leaves the work to its fate: `is` holds copies only, nothing of the screen.
IsSonucu birakilabilirIs(QWidget* ekran, session::Oturum& oturum, const QString& baslik,
                         const std::function<void(session::Oturum&)>& is);

// While it is true nothing but the runner may use the session record: timers look here first.
bool isSuruyor();
// Small work that nobody waits for, on a thread of its own; it holds copies only.
void arkadaCalistir(std::function<void()> is);
// Work left behind or in the background still waits: the program cannot end in order.
bool birakilanIsVar();

}  // namespace ui
